// SPDX-License-Identifier: MIT
#pragma once

#include <QDialog>
#include <QSet>
#include <QString>
#include <memory>

class QListWidgetItem;
class Ui_BackUpName;

/// Asks for the name of a backup: a new one to be written, or one that is there to be brought back. Names are compared
/// letter for letter. Short-lived, run with exec(). Main thread.
class BackUpName : public QDialog {
    Q_OBJECT
public:
    /// `names` are the backups that are there, without extension.
    BackUpName(const QSet<QString>& names, QWidget* parent, bool import);
    ~BackUpName() override;

    /// The name, once the dialog was accepted.
    QString FileName() const { return strFileName; }
    /// With an import: bring back the set of open documents too.
    bool ImportConfigFile() const { return bImportConfig; }

private slots:
    void on_pushButtonOK_clicked();
    void on_pushButtonCancel_clicked();
    void on_listWidget_itemDoubleClicked(QListWidgetItem* item);

private:
    void SetUIText();
    QString Fault(QString const& name) const;

    QString strFileName;
    bool bImport = false;
    bool bImportConfig = false;
    QSet<QString> m_Names;
    std::unique_ptr<Ui_BackUpName> ui;
};
