// SPDX-License-Identifier: MIT
#pragma once

#include <QDialog>
#include <QPointF>
#include <memory>

class QLineEdit;

namespace Ui {
class FormTeaching;
}

/// Steers the pilot beam to a place on the workpiece, by arrows or by a press in the document view, and makes it a mark
/// point. Made hidden; stays on top. Hidden it still sends the beam to the places pressed in the view, which the taught
/// circles and arcs need. Main thread.
class FormTeaching : public QDialog {
    Q_OBJECT
public:
    explicit FormTeaching(QWidget* parent = nullptr);
    ~FormTeaching() override;

public slots:
    /// Escape closes, which ends teaching.
    void reject() override;

signals:
    void FormClosed();

protected:
    void closeEvent(QCloseEvent* event) override;

private slots:
    /// The operator pressed at this place of the view, mm.
    void onChangePos(QPointF point);
    void on_pushButtonUp_clicked();
    void on_pushButtonDown_clicked();
    void on_pushButtonLeft_clicked();
    void on_pushButtonRight_clicked();
    void on_pushButtonMoveCenter_clicked();
    void on_pushButtonRecordPoint_clicked();

private:
    void ConnectSteps();
    /// Sends the beam one step on in each direction given as -1, 0 or 1.
    void Step(int x, int y);

    std::unique_ptr<Ui::FormTeaching> ui;
    double m_Step = 1.0; ///< mm
    double m_PosX = 0.0; ///< mm
    double m_PosY = 0.0; ///< mm
};
