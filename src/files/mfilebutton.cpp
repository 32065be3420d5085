// SPDX-License-Identifier: MIT
#include "files/mfilebutton.h"

#include "engine/languagemanager.h"
#include "files/filelistview.h"
#include "ui_mfilebutton.h"

MFileButton::MFileButton(FileListView* view, QString const& name)
    : ui(new Ui_MFileButton)
    , m_pView(view) {
    ui->setupUi(this);
    ui->pushButton->setIcon(QIcon(QStringLiteral(":/Icon/Res/delete.png")));
    SetFileName(name);
    SetUIText();
}

MFileButton::~MFileButton() = default;

void MFileButton::SetFileName(QString const& name) {
    m_FileName = name;
    ui->label->setText(QLatin1Char(' ') + name);
    ui->label->setToolTip(name);
}

/// A style sheet is dear, and every row is told of every change.
void MFileButton::SetCurrent(bool current) {
    if (current == m_bCurrent)
        return;
    m_bCurrent = current;
    ui->label->setStyleSheet(current ? QStringLiteral("color: red;") : QString());
}

void MFileButton::SetUIText() {
    const QString text = LanguageManager::GetLanText("删除文档");
    ui->pushButton->setToolTip(text);
    ui->pushButton->setAccessibleName(text);
}

/// The view may end this row before the call comes back.
void MFileButton::on_pushButton_clicked() {
    m_pView->CloseFile(GetFileName(), true);
}
