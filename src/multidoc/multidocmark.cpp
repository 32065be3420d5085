// SPDX-License-Identifier: MIT
#include "multidoc/multidocmark.h"

#include "engine/authoritymanager.h"
#include "engine/languagemanager.h"
#include "engine/marklog.h"
#include "engine/showdebugino.h"
#include "files/filemanager.h"
#include "multidoc/addmultidoc.h"
#include "multidoc/patterns.h"
#include "multidoc/projectfile.h"
#include "shell/mainwindow.h"
#include "support/durablefile.h"
#include "ui_multidocmark.h"

#include <QFile>
#include <QMessageBox>
#include <algorithm>
#include <unistd.h>

namespace {

/// What a row asks for, px.
constexpr QSize kRowSize(100, 32);
/// Pairs of entries that the warning names.
constexpr int kNamedClashes = 8;

QString text(char const* key) {
    return LanguageManager::GetLanText(key);
}

/// Writes in place without cutting off what is behind, which readers do not look at; a failure is logged and told.
void rewrite(QString const& path, QByteArray const& bytes) {
    const tessera::DurableResult result = tessera::writeFileKeepingTail(path, bytes);
    if (result)
        return;
    MarkLog::Instance()->ShowNote_Error(result.message());
    ShowDebugIno::ShowText({text("多文档保存失败")}, {DebugInfoAlarm});
}

QByteArray contentOf(QString const& path) {
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

} // namespace

void MultiDocMark::OpenDoc(QString const& path) {
    const QVector<TrigerDoc> docs = tessera::ReadProject(contentOf(path));
    ClearDocs();
    for (TrigerDoc const& doc : docs)
        Append(doc);
    ShowEntries();
}

void MultiDocMark::SaveDoc(QString const& name) {
    rewrite(tessera::ProjectPath(name), tessera::WriteProject(m_Docs));
}

void MultiDocMark::ReadRecent() {
    if (!QFile::exists(tessera::RecentProjectPath()))
        return;
    const QString name = tessera::ReadRecentProject(contentOf(tessera::RecentProjectPath()));
    if (!QFile::exists(tessera::ProjectPath(name)))
        return;
    OpenDoc(tessera::ProjectPath(name));
    m_CurFile = name;
    UpDateWindowText();
}

void MultiDocMark::SetCurMultiMarkFile(QString const& name) {
    m_CurFile = name;
    rewrite(tessera::RecentProjectPath(), tessera::WriteRecentProject(name));
    UpDateWindowText();
}

void MultiDocMark::AddDoc(TrigerDoc& doc) {
    Append(doc);
    ShowEntries();
}

void MultiDocMark::Append(TrigerDoc const& doc) {
    m_Owned.push_back(std::make_unique<TrigerDoc>(doc));
    TrigerDoc* entry = m_Owned.back().get();
    entry->ResetDoc();
    m_Docs.append(entry);
    auto* item = new QListWidgetItem(entry->m_FileName);
    item->setSizeHint(kRowSize);
    ui->listWidget->addItem(item);
}

void MultiDocMark::RemoveDoc(int index) {
    if (index < 0 || index >= m_Docs.size())
        return;
    TrigerDoc const* doc = m_Docs.takeAt(index);
    const auto owned = std::find_if(m_Owned.begin(), m_Owned.end(),
                                    [doc](std::unique_ptr<TrigerDoc> const& other) { return other.get() == doc; });
    m_Removed.push_back(std::move(*owned));
    m_Owned.erase(owned);
    m_Runs.Forget(doc);
    delete ui->listWidget->takeItem(index);
    ShowEntries();
}

void MultiDocMark::ClearDocs() {
    m_Docs.clear();
    m_Owned.clear();
    m_Runs.Clear();
    ui->listWidget->clear();
    ShowEntries();
}

void MultiDocMark::ChangeIndex(int from, int to) {
    if (from < 0 || to < 0 || from == to || from >= m_Docs.size() || to >= m_Docs.size())
        return;
    std::swap(m_Docs[from], m_Docs[to]);
    ui->listWidget->insertItem(to, ui->listWidget->takeItem(from));
    ui->listWidget->setCurrentRow(to);
    ShowEntries();
}

void MultiDocMark::ShowEntries() {
    const int inputs = tessera::ShownInputs(m_Docs);
    for (int row = 0; row < m_Docs.size(); ++row) {
        QListWidgetItem* item = ui->listWidget->item(row);
        item->setData(tessera::ProjectPattern, tessera::PatternText(*m_Docs.at(row)));
        item->setData(tessera::ProjectInputCount, inputs);
        ShowRuns(m_Docs.at(row));
    }
    m_pHeader->Show(ui->listWidget, inputs);
    ShowClashes();
}

void MultiDocMark::ShowRuns(TrigerDoc const* doc) {
    const auto place = std::find(m_Docs.begin(), m_Docs.end(), doc);
    if (place == m_Docs.end())
        return;
    QListWidgetItem* item = ui->listWidget->item(int(place - m_Docs.begin()));
    item->setData(tessera::ProjectLastRun, m_Runs.LastRun(doc));
    item->setData(tessera::ProjectRunCount, m_Runs.Count(doc));
}

/// Only warns: a plant may know that its inputs never change together.
void MultiDocMark::ShowClashes() {
    const QString warning =
        tessera::ClashText(tessera::FindClashes(m_Docs, kNamedClashes), text("可能同时触发,只运行靠前的文档"),
                           text("%1对文档仅在多个输入同时变化时同时触发,只运行靠前的文档"));
    ui->labelClash->setText(warning);
    ui->labelClash->setVisible(!warning.isEmpty());
}

void MultiDocMark::UpDateWindowText() {
    setWindowTitle(text("多文档运行") + QStringLiteral("V0:") + m_CurFile);
    // A kiosk shows no titles.
    ui->labelProject->setText(m_CurFile);
    SetUIEnable();
}

/// During a run SetUI holds the buttons.
void MultiDocMark::SetUIEnable() {
    if (m_Thread.isRunning())
        return;
    for (QPushButton* button : {ui->pushButtonAdd, ui->pushButtonDel, ui->pushButtonMoveUp, ui->pushButtonMoveDown,
                                ui->pushButtonEdit, ui->pushButtonRun})
        button->setEnabled(HasFile());
}

bool MultiDocMark::CanSave() const {
    return AuthorityManager::CanSaveFile() && HasFile();
}

/// Kept: whatever the operator answers, nothing is saved here. What is to be kept is saved by the button for it.
void MultiDocMark::AskForSave() {
    if (CanSave())
        QMessageBox::question(this, text("是否保存"), text("是否保存当前多文档"), QMessageBox::Yes | QMessageBox::No);
}

void MultiDocMark::StoreAs(QString const& name) {
    SaveDoc(name);
    SetCurMultiMarkFile(name);
}

/// Kept: everything is written out also when no project was made.
void MultiDocMark::OnNew() {
    if (!AuthorityManager::CanNewFile())
        return;
    AskForSave();
    FileManager dialog(this, FileManagerNew, MarkFileProject);
    if (dialog.exec() == QDialog::Accepted) {
        ClearDocs();
        StoreAs(dialog.GetFileName());
    }
    ::sync();
}

void MultiDocMark::OnOpen() {
    if (!AuthorityManager::CanOpenFile())
        return;
    FileManager dialog(this, FileManagerOpen, MarkFileProject);
    if (dialog.exec() != QDialog::Accepted || dialog.GetFileName() == m_CurFile)
        return;
    const QString path = tessera::ProjectPath(dialog.GetFileName());
    if (!QFile::exists(path)) {
        QMessageBox::information(this, text("打开失败"), text("文件不存在"));
        return;
    }
    AskForSave();
    OpenDoc(path);
    SetCurMultiMarkFile(dialog.GetFileName());
    ::sync();
}

void MultiDocMark::OnSave() {
    if (!CanSave())
        return;
    SaveDoc(m_CurFile);
    ::sync();
}

void MultiDocMark::OnSaveAs() {
    if (!CanSave())
        return;
    FileManager dialog(this, FileManagerSaveAs, MarkFileProject);
    if (dialog.exec() != QDialog::Accepted)
        return;
    StoreAs(dialog.GetFileName());
    ::sync();
}

/// Kept: asks for the right to save of someone who only wants to look, too.
void MultiDocMark::OnMangerFile() {
    if (CanSave())
        FileManager(this, FileManagerManage, MarkFileProject).exec();
}

void MultiDocMark::on_pushButtonAdd_clicked() {
    if (!AuthorityManager::CanAddMarkShape())
        return;
    TrigerDoc doc;
    if (AddMultiDoc(&doc, false, nullptr).exec() == QDialog::Accepted)
        AddDoc(doc);
}

void MultiDocMark::on_pushButtonEdit_clicked() {
    const int row = ui->listWidget->currentRow();
    if (!AuthorityManager::CanAddMarkShape() || row < 0 || row >= m_Docs.size())
        return;
    AddMultiDoc(m_Docs.at(row), true, nullptr).exec();
    ShowEntries();
}

void MultiDocMark::on_pushButtonDel_clicked() {
    const int row = ui->listWidget->currentRow();
    if (!AuthorityManager::CanDeleteFile() || row < 0)
        return;
    if (QMessageBox::question(this, text("是否删除"), text("是否删除指定文档")) == QMessageBox::Yes)
        RemoveDoc(row);
}

void MultiDocMark::on_pushButtonMoveUp_clicked() {
    const int row = ui->listWidget->currentRow();
    ChangeIndex(row, row - 1);
}

void MultiDocMark::on_pushButtonMoveDown_clicked() {
    const int row = ui->listWidget->currentRow();
    ChangeIndex(row, row + 1);
}

void MultiDocMark::on_listWidget_itemDoubleClicked(QListWidgetItem* item) {
    MainWindow::Instance()->OpenFile(item->text());
}
