// SPDX-License-Identifier: MIT
#include "shell/leftpanel.h"

#include "ui_leftpanel.h"

LeftPanel::LeftPanel(QWidget* parent)
    : QFrame(parent)
    , ui(new Ui_LeftPanel) {
    ui->setupUi(this);
}

LeftPanel::~LeftPanel() = default;

QWidget* LeftPanel::StatusView() const {
    return ui->widgetStatus;
}

QWidget* LeftPanel::FileList() const {
    return ui->widgetFileList;
}

QWidget* LeftPanel::ObjList() const {
    return ui->widgetObjList;
}

void LeftPanel::AddStatusWidged(QWidget* widget) {
    ui->verticalLayoutStatus->addWidget(widget);
}

void LeftPanel::AddFileWidged(QWidget* widget) {
    ui->verticalLayoutFile->addWidget(widget);
}

void LeftPanel::AddListWidget(QWidget* widget) {
    ui->verticalLayoutObj->addWidget(widget);
}
