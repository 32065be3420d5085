// SPDX-License-Identifier: MIT
#pragma once

#include <QPixmap>
#include <QString>
#include <QWidget>
#include <memory>

class Ui_AlarmCtrl;

/// Colour of an indicator.
enum AlarmColor { AlarmGreen = 0, AlarmYellow = 1, AlarmRed = 2 };

/// Indicator of the status bar: a lamp and a text. Main thread.
class AlarmCtrl : public QWidget {
    Q_OBJECT
public:
    explicit AlarmCtrl(QWidget* parent = nullptr);
    ~AlarmCtrl() override;

    /// A release of the mouse is told by clicked(); off at first.
    void SetClickable(bool clickable) { m_bClickable = clickable; }
    void SetStatus(AlarmColor color);
    void SetStatus(QString const& text);
    void SetStatus(AlarmColor color, QString const& text);

signals:
    void clicked();

protected:
    void mouseReleaseEvent(QMouseEvent* event) override;

private:
    bool m_bClickable = false;
    int m_nColor = -1; ///< none shown so far
    std::unique_ptr<Ui_AlarmCtrl> ui;
    QPixmap m_RedPixmap;
    QPixmap m_GreenPixmap;
    QPixmap m_YellowPixmap;
};
