// SPDX-License-Identifier: MIT
#pragma once

#include <QPixmap>
#include <QTimer>
#include <QWidget>
#include <memory>

class Ui_CardMirrorStatus;

/// Small window above the others that shows what the marking card and the scan head report, and holds the card's alarm
/// time. Main thread.
class CardMirrorStatus : public QWidget {
    Q_OBJECT
public:
    /// Makes the window, hidden, at the first call: as a window of `parent`, which then ends it. The card must be
    /// registered by then.
    static CardMirrorStatus* Instance(QWidget* parent = nullptr);
    /// Null until it is made.
    static CardMirrorStatus* Existing() { return m_pInstance; }
    ~CardMirrorStatus() override;

    void SetUIText();

public slots:
    /// Reads the card's status words, every 100 ms while the window is shown. With the card closed everything stays as
    /// it was last shown. (To have the widget repainted there is repaint().)
    void update();

protected:
    void showEvent(QShowEvent* event) override;
    void hideEvent(QHideEvent* event) override;
    void changeEvent(QEvent* event) override;

private slots:
    void on_pushButtonSave_clicked();
    void on_pushButtonClearAlarm_clicked();

private:
    explicit CardMirrorStatus(QWidget* parent);

    static CardMirrorStatus* m_pInstance;
    std::unique_ptr<Ui_CardMirrorStatus> ui;
    QPixmap m_OffPixmap;
    QPixmap m_OnPixmap;
    QTimer m_Timer;
};
