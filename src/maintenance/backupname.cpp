// SPDX-License-Identifier: MIT
#include "maintenance/backupname.h"

#include "engine/languagemanager.h"
#include "maintenance/filenametext.h"
#include "ui_backupname.h"

#include <QMessageBox>
#include <algorithm>

namespace {

/// The longest extension that a backup gets.
constexpr char kLongestExtension[] = ".BakMarkFile";

QString text(char const* key) {
    return LanguageManager::GetLanText(key);
}

} // namespace

BackUpName::BackUpName(const QSet<QString>& names, QWidget* parent, bool import)
    : QDialog(parent)
    , bImport(import)
    , m_Names(names)
    , ui(std::make_unique<Ui_BackUpName>()) {
    ui->setupUi(this);
    ui->checkBoxImportConfig->setVisible(import);
    QStringList sorted = names.values();
    std::sort(sorted.begin(), sorted.end());
    ui->listWidget->addItems(sorted);
    SetUIText();
}

BackUpName::~BackUpName() = default;

void BackUpName::SetUIText() {
    setWindowTitle(text(bImport ? "导入备份文件" : "备份文件"));
    ui->lineEditFileName->setPlaceholderText(text("请输入备份文件名"));
    ui->checkBoxImportConfig->setText(text("同时恢复打开的文档列表"));
    ui->pushButtonOK->setText(text("确定"));
    ui->pushButtonCancel->setText(text("取消"));
}

/// What keeps the name from being taken; empty for a good one. A new backup lies on a stick, so its name must be one
/// that a stick can hold.
QString BackUpName::Fault(QString const& name) const {
    if (name.isEmpty())
        return text("请输入备份文件名");
    if (bImport)
        return m_Names.contains(name) ? QString() : text("请输入正确的文件名");
    if (m_Names.contains(name))
        return text("文件名已存在,请重新输入");
    const tessera::FileNameFault fault =
        tessera::fileNameFault(name, QLatin1String(kLongestExtension), tessera::FileNamePlace::Stick);
    return fault == tessera::FileNameFault::None ? QString() : text(tessera::FileNameFaultKey(fault));
}

void BackUpName::on_pushButtonOK_clicked() {
    const QString name = ui->lineEditFileName->text().trimmed();
    bImportConfig = ui->checkBoxImportConfig->isChecked();
    const QString fault = Fault(name);
    if (!fault.isEmpty()) {
        QMessageBox::information(this, text("错误"), fault);
        return;
    }
    strFileName = name;
    accept();
}

void BackUpName::on_pushButtonCancel_clicked() {
    reject();
}

void BackUpName::on_listWidget_itemDoubleClicked(QListWidgetItem* item) {
    ui->lineEditFileName->setText(item->text());
}
