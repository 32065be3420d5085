// SPDX-License-Identifier: MIT
#pragma once

#include <QDialog>
#include <QString>
#include <QVector>
#include <memory>

class Ui_ImportTTFFont;

/// Appends name and path of every ".ttf" file, in capitals or not, in `dir` and below it: the files of a folder before
/// its folders. Hidden ones are left out, and a folder that a link leads back to is looked at once.
void SearchTTFFiles(QString dir, QVector<QString>& paths, QVector<QString>& names);

/// Where fonts come from and where the system looks for those of its users.
struct FontFolders {
    QString media = QStringLiteral("/media");
    QString target = QStringLiteral("/usr/share/fonts/truetype/fontusers");
};

/// Takes TrueType fonts from removable media into the system: they are copied to the fonts of the users, the system's
/// font cache is renewed, and this program can use them at once. Main thread.
class ImportTTFFont : public QDialog {
    Q_OBJECT
public:
    explicit ImportTTFFont(QWidget* parent = nullptr, FontFolders folders = {});
    ~ImportTTFFont() override;

    void SetUIText();
    /// The ".ttf" files on the media now.
    void SearchTTFFont(QVector<QString>& paths, QVector<QString>& names) const;

private slots:
    void on_pushButtonSearch_clicked();
    void on_listWidget_itemDoubleClicked();
    void on_pushButton_clicked();
    void on_listWidget_2_itemDoubleClicked();
    void on_pushButton_2_clicked();
    void on_pushButtonImport_clicked();
    void on_pushButtonClose_clicked();

private:
    void Choose(int found);
    int CopyChosen() const;

    std::unique_ptr<Ui_ImportTTFFont> ui;
    FontFolders m_Folders;
    QVector<QString> m_FoundNames;
    QVector<QString> m_FoundPaths;
    QVector<QString> m_ChosenNames;
    QVector<QString> m_ChosenPaths;
};
