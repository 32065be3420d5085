// SPDX-License-Identifier: MIT
#include "shell/mainwindow.h"

#include "engine/authoritymanager.h"
#include "engine/languagemanager.h"
#include "engine/marklog.h"
#include "engine/qrulerview.h"
#include "engine/vzlistviewex.h"
#include "files/filelistview.h"
#include "files/filemanager.h"
#include "multidoc/multidocmark.h"
#include "remote/externalresponse.h"
#include "run/form_marking.h"
#include "shell/leftpanel.h"
#include "shell/recentfile.h"
#include "support/approot.h"
#include "support/durablefile.h"
#include "ui_mainwindow.h"

#include <QFile>
#include <QMessageBox>
#include <QPointer>

namespace {

QString recentFile() {
    return FileManager::GetFilePath() + QStringLiteral("RecentFile.of");
}

QString showDocFile() {
    return tessera::rootPath(QStringLiteral("/ini/ShowDoc.ini"));
}

/// Writes in place without cutting off what is behind; a failure is logged.
void rewrite(QString const& path, QByteArray const& bytes) {
    const tessera::DurableResult result = tessera::writeFileKeepingTail(path, bytes);
    if (!result)
        MarkLog::Instance()->ShowNote_Error(result.message());
}

/// Stores the document and tells whether that worked; a failure is logged.
bool save(QRulerView* view) {
    if (view->SaveDoc())
        return true;
    MarkLog::Instance()->ShowNote_Error(view->GetFileName() + QStringLiteral(": not saved"));
    return false;
}

void showSaved(QWidget* parent, bool saved) {
    const QString title = LanguageManager::GetLanText("保存");
    if (saved)
        QMessageBox::information(parent, title, LanguageManager::GetLanText("保存成功"));
    else
        QMessageBox::warning(parent, title, LanguageManager::GetLanText("保存失败"));
}

} // namespace

QRulerView* MainWindow::GetCurDoc() {
    QRulerView* view = m_pCurDoc;
    if (view)
        view->SetCallBackMirrorPt(&MainWindow::GetCurMirrorPt);
    return view;
}

QRulerView* MainWindow::GetDoc(QString const& path) const {
    for (QRulerView* view : m_Docs) {
        if (view->GetFileName() == path)
            return view;
    }
    return nullptr;
}

bool MainWindow::IsFileOpened(QString const& path) const {
    return m_OpenFiles.contains(path);
}

bool MainWindow::SetCurDoc(int index) {
    if (index < 0 || index > m_OpenFiles.size())
        return false;
    m_pFileList->SetActive(index);
    ResetLayerData();
    return true;
}

bool MainWindow::SetCurDoc(QString const& path) {
    if (!IsFileOpened(path))
        return false;
    Activate(path);
    ResetLayerData();
    return true;
}

void MainWindow::Activate(QString const& path) {
    const int index = m_Docs.indexOf(GetDoc(path));
    if (index >= 0)
        m_pFileList->SetActive(index);
}

/// Of a document that is the active one already the pens stay as they are shown, with what is typed and not applied.

void MainWindow::OpenFile(QString const& path) {
    if (IsFileOpened(path)) {
        Activate(path);
        return;
    }
    auto* view = new QRulerView(ui->tabFile);
    view->SetFileName(path);
    if (!view->ReadDoc()) {
        delete view;
        return;
    }
    AddObjList(view);
    view->GetObjListView()->setParent(m_pLeftPanel->ObjList());
    m_pLeftPanel->AddListWidget(view->GetObjListView());
    ShowNewView(view);
    m_Docs.append(view);
    AppendOpendFile(path);
}

bool MainWindow::NewFile(QString const& name) {
    auto* view = new QRulerView(ui->tabFile);
    view->SetFileName(name);
    const QString path = view->GetFileName();
    const bool saved = save(view);
    m_Docs.append(view);
    AppendOpendFile(path);
    AddObjList(view);
    ShowNewView(view);
    return saved;
}

/// A name that is open already is not refused: its file then has two views, and both lists two entries.
void MainWindow::on_actDoc_New_triggered() {
    if (!AuthorityManager::CanNewFile())
        return;
    FileManager dialog(this, FileManagerNew, MarkFileDocument);
    if (dialog.exec() == QDialog::Accepted && !NewFile(dialog.GetFileName()))
        showSaved(this, false);
}

void MainWindow::onOpenFile() {
    if (!AuthorityManager::CanOpenFile())
        return;
    FileManager dialog(this, FileManagerOpen, MarkFileDocument);
    if (dialog.exec() == QDialog::Accepted)
        OpenFile(dialog.GetFileName());
}

/// The document that was active when the dialog came up is meant, whatever a host does meanwhile.
void MainWindow::SaveAs() {
    const QPointer<QRulerView> view = GetActiveView();
    if (!AuthorityManager::CanSaveFile() || !view)
        return;
    FileManager dialog(this, FileManagerSaveAs, MarkFileDocument);
    if (dialog.exec() != QDialog::Accepted || !view)
        return;
    const QString old = view->GetFileName();
    view->SetFileName(dialog.GetFileName());
    const QString now = view->GetFileName();
    const int index = m_OpenFiles.indexOf(old);
    if (index >= 0)
        m_OpenFiles[index] = now;
    m_pFileList->ChangeFileName(old, now);
    ResetRecentFile();
    showSaved(this, save(view));
}

/// The list takes the row out and reports back what is to be closed.
void MainWindow::CloseFile(QString const& path) {
    if (IsFileOpened(path))
        m_pFileList->RemoveItem(path, false);
}

/// Each close takes its path out of the list that is walked.
void MainWindow::CloseAllFile() {
    for (int i = m_OpenFiles.size() - 1; i >= 0; --i) {
        const QString path = m_OpenFiles.value(i);
        CloseFile(path);
    }
}

void MainWindow::ResetFiles() {
    m_bSaveRecent = false;
    QRulerView const* active = GetActiveView();
    const QString name = active ? active->GetFileName() : QString();
    if (!m_OpenFiles.isEmpty()) {
        CloseAllFile();
        ReadRecentFile();
        MultiDocMark::Instance()->ReadRecent();
    }
    Activate(name);
    m_bSaveRecent = true;
}

bool MainWindow::SyncFileData(QString const& first, QString const& second) {
    auto* view = new QRulerView(ui->tabFile);
    if (!view->ReadDoc(first, second)) {
        delete view;
        return false;
    }
    const QString path = view->GetFileName();
    save(view);
    m_Docs.append(view);
    AppendOpendFile(path);
    AddObjList(view);
    ShowNewView(view);
    return true;
}

/// The new row makes the newest view the active one.
void MainWindow::AppendOpendFile(QString const& path) {
    m_OpenFiles.append(path);
    m_pFileList->AddFile(path);
    ResetRecentFile();
}

/// The object list of a view that is active already stays to be seen.
void MainWindow::AddObjList(QRulerView* view) {
    QWidget* list = view->GetShowObjList();
    list->setParent(m_pLeftPanel->ObjList());
    m_pLeftPanel->AddListWidget(list);
    ShowObjList(view, view == m_pCurDoc);
}

/// What every way of opening a document does with its view in the end.
void MainWindow::ShowNewView(QRulerView* view) {
    ui->verticalLayout_2->addWidget(view);
    connect(view, &QRulerView::RedoUnDo, this, &MainWindow::enableRedoUndo);
    connect(view, &QRulerView::SubWndClosed, this, &MainWindow::onSubWndClosed);
    view->show();
}

void MainWindow::ShowObjList(QRulerView* view, bool show) {
    view->GetShowObjList()->setVisible(show);
    view->GetObjListView()->setVisible(show);
}

void MainWindow::on_ActivDocChanged(int index) {
    if (index < 0 || index >= m_Docs.size()) {
        SetUIChangeDoc(nullptr);
        return;
    }
    for (int i = 0; i < m_Docs.size(); ++i)
        m_Docs.at(i)->setVisible(i == index);
    SetUIChangeDoc(m_Docs.at(index));
}

/// A document that cannot be stored stays open, so that nothing is lost.
void MainWindow::on_CloseFile(int index, bool saveFirst) {
    if (index < 0 || index >= m_Docs.size())
        return;
    QRulerView* view = m_Docs.at(index);
    if (saveFirst && !save(view)) {
        m_pFileList->InsertFile(index, view->GetFileName());
        showSaved(this, false);
        return;
    }
    m_Docs.removeAt(index);
    DeleteView(view);
    ResetRecentFile();
}

/// A run that marks this document ends first, though another one may be active by now; then the key thread lets go of
/// it.
void MainWindow::DeleteView(QRulerView* view) {
    const bool active = view == m_pCurDoc;
    Form_Marking* dialog = Form_Marking::Instance();
    if (dialog && (active || dialog->IsMarking(view)))
        dialog->StopAndWait();
    if (active)
        SetUIChangeDoc(nullptr);
    ExternalResponse* response = ExternalResponse::Instance();
    if (response->IsMarking(view))
        response->StopRunAndWait();
    if (MultiDocMark* project = MultiDocMark::Instance())
        project->ForgetView(view);
    { const std::lock_guard<std::mutex> lock(m_DocUseLock); }
    delete view;
}

void MainWindow::OnChangeFileIndex(int from, int to) {
    if (from >= 0 && from < m_Docs.size() && to >= 0 && to < m_Docs.size())
        m_Docs.move(from, to);
}

void MainWindow::onSubWndClosed(QString path) {
    m_OpenFiles.removeOne(path);
    ResetRecentFile();
}

void MainWindow::ReadRecentFile() {
    QFile file(recentFile());
    if (!file.open(QIODevice::ReadOnly))
        return;
    const QVector<QString> paths = tessera::ReadRecentList(file.readAll());
    file.close();
    for (QString const& path : paths) {
        if (IsFileOpened(path))
            continue;
        auto* view = new QRulerView(ui->tabFile);
        view->SetFileName(path);
        if (!view->ReadDoc()) {
            delete view;
            continue;
        }
        AddObjList(view);
        m_Docs.append(view);
        AppendOpendFile(path);
        view->setWindowState(Qt::WindowMaximized);
        ShowNewView(view);
    }
}

void MainWindow::ResetRecentFile() {
    if (m_bSaveRecent)
        rewrite(recentFile(), tessera::WriteRecentList(m_OpenFiles));
}

bool MainWindow::IsShowDoc() {
    QFile file(showDocFile());
    m_bShowDoc = file.open(QIODevice::ReadOnly) && file.readLine().trimmed().toInt() != 0;
    return m_bShowDoc;
}

void MainWindow::SetShowDoc(bool show) {
    if (show == m_bShowDoc)
        return;
    m_bShowDoc = show;
    rewrite(showDocFile(), show ? "1\n" : "0\n");
}

void MainWindow::on_actionShowDoc_triggered(bool) {
    SetShowDoc(ui->actionShowDoc->isChecked());
    ui->tabWidgetMian->setTabVisible(ui->tabWidgetMian->count() - 1, m_bShowDoc);
}

void MainWindow::on_actionNew_triggered() {
    on_actDoc_New_triggered();
}

void MainWindow::on_actionOpen_triggered() {
    onOpenFile();
}

void MainWindow::on_actionSaveAs_triggered() {
    SaveAs();
}

void MainWindow::on_actionSave_triggered() {
    onSaveFile();
}

void MainWindow::onSaveFile() {
    QRulerView* view = GetActiveView();
    if (AuthorityManager::CanSaveFile() && view)
        showSaved(this, save(view));
}

void MainWindow::onSaveAllFile() {
    if (!AuthorityManager::CanSaveFile())
        return;
    bool saved = true;
    for (QRulerView* view : qAsConst(m_Docs))
        saved = save(view) && saved;
    showSaved(this, saved);
}
