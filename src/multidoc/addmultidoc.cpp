// SPDX-License-Identifier: MIT
#include "multidoc/addmultidoc.h"

#include "engine/languagemanager.h"
#include "engine/marklog.h"
#include "files/filemanager.h"
#include "multidoc/trigerdoc.h"
#include "ui_addmultidoc.h"

#include <QDir>
#include <QMessageBox>
#include <algorithm>

namespace {

/// Inputs that can be chosen here.
constexpr int kChoosableInputs = 10;

QString text(char const* key) {
    return LanguageManager::GetLanText(key);
}

unsigned int checkedBits(std::array<QCheckBox*, 32> const& boxes) {
    unsigned int bits = 0;
    for (unsigned int i = 0; i < boxes.size(); ++i)
        bits |= boxes[i]->isChecked() ? 1U << i : 0U;
    return bits;
}

} // namespace

AddMultiDoc::AddMultiDoc(TrigerDoc* doc, bool edit, QWidget* parent)
    : QDialog(parent)
    , m_pDoc(doc)
    , ui(std::make_unique<Ui_AddMultiDoc>()) {
    ui->setupUi(this);
    SetUIText(edit);
    InitUI();
    LoadFiles();
    ui->comboBox->setEnabled(!edit);
    ShowDoc();
}

AddMultiDoc::~AddMultiDoc() = default;

void AddMultiDoc::SetUIText(bool edit) {
    setWindowTitle(text(edit ? "编辑文档" : "添加文档"));
    ui->labelFile->setText(text("文档"));
    for (QLabel* label : {ui->labelMask0, ui->labelMask1})
        label->setText(text("有效"));
    for (QLabel* label : {ui->labelValue0, ui->labelValue1})
        label->setText(text("取反"));
    ui->pushButtonOK->setText(text("确定"));
    ui->pushButtonCancel->setText(text("取消"));
}

void AddMultiDoc::InitUI() {
    for (int i = 0; i < kInputs; ++i) {
        const auto place = static_cast<size_t>(i);
        m_Masks.at(place) = findChild<QCheckBox*>(QStringLiteral("checkBoxM%1").arg(i));
        m_Values.at(place) = findChild<QCheckBox*>(QStringLiteral("checkBoxV%1").arg(i));
        m_Masks.at(place)->setEnabled(false);
        m_Values.at(place)->setEnabled(false);
        connect(m_Masks.at(place), &QCheckBox::stateChanged, this, &AddMultiDoc::OnCheckStateChange);
    }
    std::for_each(m_Masks.begin(), m_Masks.begin() + kChoosableInputs, [](QCheckBox* box) { box->setEnabled(true); });
}

/// The ending counts in small letters only: a run opens NAME.mkf, which a NAME.MKF is not. A name with a line end in it
/// cannot be kept in a project, where it would be two lines.
void AddMultiDoc::LoadFiles() {
    const QString folder = FileManager::GetFilePath();
    if (!QDir().mkpath(folder))
        MarkLog::Instance()->ShowNote_Error(folder + QStringLiteral(": not made"));
    QStringList files = QDir(folder).entryList(QDir::Files);
    files.sort(Qt::CaseSensitive);
    const QString extension = QStringLiteral(".mkf");
    for (QString const& file : qAsConst(files)) {
        if (file.endsWith(extension) && !file.contains(QLatin1Char('\n')) && !file.contains(QLatin1Char('\r')))
            ui->comboBox->addItem(file.chopped(extension.size()));
    }
    ui->comboBox->setCurrentIndex(-1);
}

void AddMultiDoc::ShowDoc() {
    for (unsigned int i = 0; i < kInputs; ++i) {
        m_Masks.at(i)->setChecked((m_pDoc->m_nMask >> i & 1U) != 0);
        m_Values.at(i)->setChecked((m_pDoc->m_nValue >> i & 1U) != 0);
    }
    const int index = ui->comboBox->findText(m_pDoc->m_FileName, Qt::MatchExactly | Qt::MatchCaseSensitive);
    if (index >= 0)
        ui->comboBox->setCurrentIndex(index);
}

/// A value box that cannot be reached any more keeps its mark; the trigger rule looks at watched inputs only.
void AddMultiDoc::OnCheckStateChange(int) {
    const auto mask = std::find(m_Masks.begin(), m_Masks.end(), sender());
    if (mask != m_Masks.end())
        m_Values.at(static_cast<size_t>(mask - m_Masks.begin()))->setEnabled((*mask)->isChecked());
}

void AddMultiDoc::on_pushButtonOK_clicked() {
    if (ui->comboBox->currentIndex() < 0) {
        QMessageBox::warning(this, text("错误"), text("请选择文件"));
        return;
    }
    const unsigned int mask = checkedBits(m_Masks);
    if (mask == 0) {
        QMessageBox::warning(this, text("错误"), text("请设置触发输入"));
        return;
    }
    m_pDoc->m_FileName = ui->comboBox->currentText();
    m_pDoc->m_nValue = checkedBits(m_Values);
    m_pDoc->m_nMask = mask;
    accept();
}

void AddMultiDoc::on_pushButtonCancel_clicked() {
    reject();
}
