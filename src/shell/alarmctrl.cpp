// SPDX-License-Identifier: MIT
#include "shell/alarmctrl.h"

#include "shell/lamppixmap.h"
#include "ui_alarmctrl.h"

#include <QMouseEvent>

AlarmCtrl::AlarmCtrl(QWidget* parent)
    : QWidget(parent)
    , ui(new Ui_AlarmCtrl)
    , m_RedPixmap(tessera::LampPixmap("red"))
    , m_GreenPixmap(tessera::LampPixmap("green"))
    , m_YellowPixmap(tessera::LampPixmap("yellow")) {
    ui->setupUi(this);
}

AlarmCtrl::~AlarmCtrl() = default;

/// The poll sets the colour again and again; only a change is worth a new layout of the status bar.
void AlarmCtrl::SetStatus(AlarmColor color) {
    if (m_nColor == color)
        return;
    m_nColor = color;
    switch (color) {
    case AlarmGreen:
        ui->labelImg->setPixmap(m_GreenPixmap);
        break;
    case AlarmRed:
        ui->labelImg->setPixmap(m_RedPixmap);
        break;
    default:
        ui->labelImg->setPixmap(m_YellowPixmap);
        break;
    }
}

void AlarmCtrl::SetStatus(QString const& text) {
    ui->labelText->setText(text);
}

void AlarmCtrl::SetStatus(AlarmColor color, QString const& text) {
    SetStatus(color);
    SetStatus(text);
}

void AlarmCtrl::mouseReleaseEvent(QMouseEvent* event) {
    if (m_bClickable)
        emit clicked();
    QWidget::mouseReleaseEvent(event);
}
