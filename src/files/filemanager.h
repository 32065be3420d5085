// SPDX-License-Identifier: MIT
#pragma once

#include <QDialog>
#include <QString>
#include <QVector>
#include <memory>

class QListWidgetItem;
class Ui_FileManager;

namespace tessera {
class ArchiveResult;
}

/// What a FileManager is opened for. The values are fixed.
enum FileManagerType { FileManagerNew = 0, FileManagerOpen = 1, FileManagerManage = 2, FileManagerSaveAs = 3 };

/// The kind of file that a FileManager shows. The values are fixed.
enum MarkFileType {
    MarkFileDocument = 0, ///< mark documents ".mkf"
    MarkFileProject = 1   ///< multi-document projects ".mdf"
};

/// The one dialog through which mark documents and multi-document projects are named, chosen, deleted, backed up to a
/// USB stick and brought back from one. Names are shown and returned in small letters and without extension, whatever
/// the letters of the file. Short-lived, run with exec(). Main thread.
class FileManager : public QDialog {
    Q_OBJECT
public:
    FileManager(QWidget* parent, FileManagerType mode, MarkFileType kind);
    ~FileManager() override;

    /// The name chosen or typed; to be asked after the dialog was accepted.
    QString GetFileName() const { return m_FileName; }
    /// The folder of the mark documents, with a slash at its end.
    static QString GetFilePath();

    /// Shows what there is of the kind; makes the folder when it is missing.
    void LoadFiles();
    void SetUIText();

private slots:
    void on_pushButtonOK_clicked();
    void on_pushButtonCancel_clicked();
    void on_listWidget_itemDoubleClicked(QListWidgetItem* item);
    void on_listWidget_currentRowChanged(int row);
    void on_pushButtonDeleteSelectFile_clicked();
    void on_pushButtonBackUpSelectFile_clicked();
    void on_pushButtonImportFile_clicked();

private:
    /// An empty name: the operator left the dialog.
    struct BackupChoice {
        QString name;
        bool withLists = false;
    };

    QString Folder() const;
    QString Extension() const;
    QString TypedName() const;
    void AcceptTyped();
    void AcceptSelected();
    BackupChoice AskBackupName(QString const& folder, bool import);
    void Import(QString const& file, BackupChoice const& choice);
    void ShowFault(char const* what, tessera::ArchiveResult const& result);

    FileManagerType m_Mode;
    MarkFileType m_Kind;
    QString m_FileName;
    QVector<QString> m_Names;
    std::unique_ptr<Ui_FileManager> ui;
};
