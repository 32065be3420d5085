// SPDX-License-Identifier: MIT
#include "files/filemanager.h"

#include "engine/filehelpers.h"
#include "engine/languagemanager.h"
#include "engine/marklog.h"
#include "files/copymarkfile.h"
#include "files/markfilebackup.h"
#include "maintenance/archivetext.h"
#include "maintenance/backupname.h"
#include "maintenance/filenametext.h"
#include "maintenance/notice.h"
#include "maintenance/workprogress.h"
#include "shell/mainwindow.h"
#include "support/approot.h"
#include "support/temporaryfolder.h"
#include "ui_filemanager.h"

#include <QCoreApplication>
#include <QDialogButtonBox>
#include <QDir>
#include <QFile>
#include <QMessageBox>
#include <unistd.h>

namespace {

QString text(char const* key) {
    return LanguageManager::GetLanText(key);
}

char const* titleOf(FileManagerType mode) {
    switch (mode) {
    case FileManagerNew:
        return "新建文档";
    case FileManagerSaveAs:
        return "另存为";
    case FileManagerOpen:
        return "打开文档";
    case FileManagerManage:
        break;
    }
    return "文档管理";
}

/// The order of buttons is a matter of style, which here is told by a sheet; the box has asked for it already.
void showNoFirst(QMessageBox& box) {
    auto* buttons = box.findChild<QDialogButtonBox*>();
    constexpr char noBeforeYes[] = "QDialogButtonBox { button-layout: 3 }";
    buttons->setStyleSheet(QLatin1String(noBeforeYes));
    buttons->ensurePolished(); // the sheet counts from here on
    QEvent change(QEvent::StyleChange);
    QCoreApplication::sendEvent(buttons, &change);
}

/// Asks before something is lost: No stands first and is what a return key gives.
bool isConfirmed(QWidget* parent, char const* question) {
    QMessageBox box(QMessageBox::Question, text("是否删除"), text(question), QMessageBox::NoButton, parent);
    box.addButton(QMessageBox::No);
    box.addButton(QMessageBox::Yes);
    box.setDefaultButton(QMessageBox::No);
    showNoFirst(box);
    return box.exec() == QMessageBox::Yes;
}

char const* deleteQuestion(MarkFileType kind, bool open) {
    if (kind == MarkFileProject)
        return "是否删除多文档文件";
    return open ? "文件已打开,是否关闭文件并删除" : "是否删除文件";
}

} // namespace

FileManager::FileManager(QWidget* parent, FileManagerType mode, MarkFileType kind)
    : QDialog(parent)
    , m_Mode(mode)
    , m_Kind(kind)
    , ui(std::make_unique<Ui_FileManager>()) {
    ui->setupUi(this);
    const bool named = mode == FileManagerNew || mode == FileManagerSaveAs;
    const bool managed = mode == FileManagerManage;
    ui->lineEditAddFileName->setVisible(named);
    ui->pushButtonDeleteSelectFile->setVisible(managed);
    ui->pushButtonBackUpSelectFile->setVisible(managed);
    ui->pushButtonImportFile->setVisible(managed);
    SetUIText();
    LoadFiles();
}

FileManager::~FileManager() = default;

QString FileManager::GetFilePath() {
    return tessera::rootPath(QStringLiteral("/MarkFile/"));
}

QString FileManager::Folder() const {
    return tessera::rootPath(m_Kind == MarkFileProject ? QStringLiteral("/MarkFile/MultiDocMarkFile")
                                                       : QStringLiteral("/MarkFile"));
}

QString FileManager::Extension() const {
    return m_Kind == MarkFileProject ? QStringLiteral(".mdf") : QStringLiteral(".mkf");
}

void FileManager::SetUIText() {
    setWindowTitle(text(titleOf(m_Mode)));
    ui->lineEditAddFileName->setPlaceholderText(text("请输入文档名字"));
    ui->pushButtonOK->setText(text("确定"));
    ui->pushButtonCancel->setText(text("取消"));
    ui->pushButtonDeleteSelectFile->setText(text("删除"));
    ui->pushButtonBackUpSelectFile->setText(text("备份到U盘"));
    ui->pushButtonImportFile->setText(text("从U盘导入"));
}

void FileManager::LoadFiles() {
    m_Names.clear();
    ui->listWidget->clear();
    const QString folder = Folder();
    if (!QDir().mkpath(folder))
        MarkLog::Instance()->ShowNote_Error(folder + QStringLiteral(": not made"));
    QStringList files = QDir(folder).entryList(QDir::Files);
    files.sort(Qt::CaseSensitive);
    for (QString const& file : qAsConst(files)) {
        const QString name = file.toLower();
        if (!name.endsWith(Extension()))
            continue;
        m_Names.append(name.chopped(Extension().size()));
        ui->listWidget->addItem(m_Names.last());
    }
}

void FileManager::on_pushButtonOK_clicked() {
    if (m_Mode == FileManagerOpen)
        AcceptSelected();
    else if (m_Mode == FileManagerManage)
        accept();
    else
        AcceptTyped();
}

/// A typed extension is dropped: document views take a name that has one for the file itself, so that "a.mkf" would
/// overwrite "a" without the question.
QString FileManager::TypedName() const {
    const QString name = ui->lineEditAddFileName->text().trimmed().toLower();
    return name.endsWith(Extension()) ? name.chopped(Extension().size()).trimmed() : name;
}

void FileManager::AcceptTyped() {
    const QString name = TypedName();
    if (name.isEmpty()) {
        QMessageBox::warning(this, text("错误"), text("请输入文档名字"));
        return;
    }
    const tessera::FileNameFault fault = tessera::fileNameFault(name, Extension(), tessera::FileNamePlace::Machine);
    if (fault != tessera::FileNameFault::None) {
        QMessageBox::warning(this, text("错误"), text(tessera::FileNameFaultKey(fault)));
        return;
    }
    if (m_Names.contains(name)) {
        const QString question = QStringLiteral("%1 \"%2\" %3").arg(text("打标文件"), name, text("已存在"));
        if (tessera::ShowNotice(this, QMessageBox::Question, text("是否覆盖"), question,
                                QMessageBox::Yes | QMessageBox::No) != QMessageBox::Yes)
            return;
    }
    m_FileName = name;
    accept();
}

void FileManager::AcceptSelected() {
    const QList<QListWidgetItem*> selected = ui->listWidget->selectedItems();
    if (selected.isEmpty()) {
        QMessageBox::information(this, text("错误"), text("请选择要打开的文件"));
        return;
    }
    m_FileName = selected.first()->text();
    accept();
}

void FileManager::on_pushButtonCancel_clicked() {
    reject();
}

void FileManager::on_listWidget_itemDoubleClicked(QListWidgetItem* item) {
    ui->lineEditAddFileName->setText(item->text());
}

void FileManager::on_listWidget_currentRowChanged(int) {}

void FileManager::on_pushButtonDeleteSelectFile_clicked() {
    const int row = ui->listWidget->currentRow();
    if (row < 0)
        return;
    const QString name = ui->listWidget->item(row)->text();
    const QString path = Folder() + QLatin1Char('/') + name + Extension();
    // A document may have been opened by its path too.
    MainWindow* window = m_Kind == MarkFileDocument ? MainWindow::Instance() : nullptr;
    const bool open = window && (window->IsFileOpened(name) || window->IsFileOpened(path));
    if (!isConfirmed(this, deleteQuestion(m_Kind, open)))
        return;
    if (open) {
        window->CloseFile(name);
        window->CloseFile(path);
    }
    if (!QFile::remove(path) && QFile::exists(path)) {
        QMessageBox::warning(this, text("错误"), text("删除失败"));
        return;
    }
    ::sync();
    m_Names.removeAt(row);
    delete ui->listWidget->takeItem(row);
}

void FileManager::ShowFault(char const* what, tessera::ArchiveResult const& result) {
    char const* reason = tessera::ArchiveFaultKey(result.fault());
    if (!reason)
        return;
    MarkLog::Instance()->ShowNote_Error(result.message());
    tessera::ShowNotice(this, QMessageBox::Warning, text("错误"), text(what) + QLatin1Char('\n') + text(reason));
}

void FileManager::on_pushButtonBackUpSelectFile_clicked() {
    const QString folder = tessera::StickBackupFolder();
    if (folder.isEmpty()) {
        QMessageBox::information(this, text("错误"), text("请先插入U盘,再备份"));
        return;
    }
    const QString name = AskBackupName(folder, false).name;
    if (name.isEmpty())
        return;
    tessera::ArchiveResult result;
    WorkProgress progress(this, text("正在备份,请稍候"));
    progress.Run([&](tessera::WorkControl& control) { result = tessera::WriteMarkFileBackup(folder, name, control); });
    ShowFault("备份失败", result);
}

FileManager::BackupChoice FileManager::AskBackupName(QString const& folder, bool import) {
    QSet<QString> names;
    GetFileExtInPath(folder, QLatin1String(tessera::backupExtension), names);
    BackUpName dialog(names, this, import);
    if (dialog.exec() != Accepted)
        return {};
    return {dialog.FileName(), dialog.ImportConfigFile()};
}

void FileManager::on_pushButtonImportFile_clicked() {
    const QString folder = tessera::StickBackupFolder();
    if (folder.isEmpty()) {
        QMessageBox::information(this, text("错误"), text("请先插入U盘,再备份"));
        return;
    }
    const BackupChoice choice = AskBackupName(folder, true);
    if (choice.name.isEmpty())
        return;
    const QString file = folder + QLatin1Char('/') + choice.name + QLatin1String(tessera::backupExtension);
    if (!QFile::exists(file)) {
        tessera::ShowNotice(this, QMessageBox::Information, text("错误"), text("选中的备份文件不存在:") + choice.name);
        return;
    }
    Import(file, choice);
}

void FileManager::Import(QString const& file, BackupChoice const& choice) {
    const tessera::TemporaryFolder work;
    tessera::ArchiveResult result(tessera::ArchiveFault::NotWritten, work.path());
    if (work.isValid()) {
        WorkProgress progress(this, text("正在导入,请稍候"));
        progress.Run([&](tessera::WorkControl& control) {
            result = tessera::UnpackMarkFileBackup(file, work.path(), choice.name, control);
        });
    }
    if (!result) {
        ShowFault("导入失败", result);
        return;
    }
    const QString unpacked = work.filePath(choice.name);
    CopyMarkFile(unpacked, tessera::rootPath(QStringLiteral("/MarkFile")));
    // After the documents: the lists never name one that is still to come.
    if (choice.withLists && !tessera::ImportRecentLists(unpacked))
        QMessageBox::warning(this, text("错误"), text("打开的文档列表恢复失败"));
    ::sync();
    if (MainWindow* window = MainWindow::Instance())
        window->ResetFiles();
    LoadFiles();
}
