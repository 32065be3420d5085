// SPDX-License-Identifier: GPL-2.0-or-later
#include "engine/msgbox.h"

#include "engine/languagemanager.h"
#include "simengine/dialogs/dialogparts.h"

#include <QApplication>
#include <QMessageBox>
#include <QPushButton>

int msgBox::show(QString const& title, QString const& text, int buttons) {
    QMessageBox box(QApplication::activeWindow());
    box.setObjectName(QStringLiteral("msgBox"));
    box.setWindowTitle(title);
    box.setTextFormat(Qt::PlainText);
    box.setText(text);
    QPushButton* ok = box.addButton(LanguageManager::GetLanText("确定"), QMessageBox::AcceptRole);
    ok->setObjectName(QStringLiteral("pushButtonOK"));
    ok->setMinimumSize(96, sim::kTouchHeight);
    box.setDefaultButton(ok);
    if (buttons == 2) {
        QPushButton* cancel = box.addButton(LanguageManager::GetLanText("取消"), QMessageBox::RejectRole);
        cancel->setObjectName(QStringLiteral("pushButtonCancel"));
        cancel->setMinimumSize(96, sim::kTouchHeight);
        box.setEscapeButton(cancel);
    }
    box.exec();
    return box.clickedButton() == ok ? 1 : 0;
}
