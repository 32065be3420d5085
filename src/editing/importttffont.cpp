// SPDX-License-Identifier: MIT
#include "editing/importttffont.h"

#include "engine/languagemanager.h"
#include "engine/marklog.h"
#include "ui_importttffont.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QFontDatabase>
#include <QMessageBox>
#include <QProcess>
#include <QSet>

namespace {

QString text(char const* key) {
    return LanguageManager::GetLanText(key);
}

void search(QString const& dir, QSet<QString>& seen, QVector<QString>& paths, QVector<QString>& names) {
    const QString real = QFileInfo(dir).canonicalFilePath();
    if (real.isEmpty() || seen.contains(real))
        return;
    seen.insert(real);
    for (QFileInfo const& entry : QDir(dir).entryInfoList(QDir::Dirs | QDir::Files, QDir::DirsLast)) {
        const QString name = entry.fileName();
        if (entry.isFile() && name.endsWith(QLatin1String(".ttf"), Qt::CaseInsensitive)) {
            names.append(name);
            paths.append(entry.filePath());
        } else if (entry.isDir() && name != QLatin1String(".") && name != QLatin1String("..")) {
            search(entry.filePath(), seen, paths, names);
        }
    }
}

void fill(QListWidget* list, QVector<QString> const& names) {
    list->clear();
    for (QString const& name : names)
        list->addItem(name);
}

} // namespace

void SearchTTFFiles(QString dir, QVector<QString>& paths, QVector<QString>& names) {
    QSet<QString> seen;
    search(dir, seen, paths, names);
}

ImportTTFFont::ImportTTFFont(QWidget* parent, FontFolders folders)
    : QDialog(parent)
    , ui(new Ui_ImportTTFFont)
    , m_Folders(std::move(folders)) {
    ui->setupUi(this);
    SetUIText();
}

ImportTTFFont::~ImportTTFFont() = default;

void ImportTTFFont::SetUIText() {
    setWindowTitle(text("ImportTTFFont"));
    ui->labelTitle->setText(text("ImportTTFFont"));
    ui->pushButton->setText(text("-->"));
    ui->pushButton_2->setText(text("<--"));
    ui->pushButtonSearch->setText(text("Search"));
    ui->pushButtonImport->setText(text("Import"));
    ui->pushButtonClose->setText(text("退出"));
}

void ImportTTFFont::SearchTTFFont(QVector<QString>& paths, QVector<QString>& names) const {
    paths.clear();
    names.clear();
    SearchTTFFiles(m_Folders.media, paths, names);
}

void ImportTTFFont::on_pushButtonSearch_clicked() {
    SearchTTFFont(m_FoundPaths, m_FoundNames);
    fill(ui->listWidget, m_FoundNames);
}

/// Two files of one name would be one file in the font folder.
void ImportTTFFont::Choose(int found) {
    if (found < 0 || found >= m_FoundNames.size() || m_ChosenNames.contains(m_FoundNames[found]))
        return;
    m_ChosenNames.append(m_FoundNames[found]);
    m_ChosenPaths.append(m_FoundPaths[found]);
    ui->listWidget_2->addItem(m_FoundNames[found]);
}

void ImportTTFFont::on_listWidget_itemDoubleClicked() {
    Choose(ui->listWidget->currentRow());
}

void ImportTTFFont::on_pushButton_clicked() {
    for (int i = 0; i < m_FoundNames.size(); ++i)
        Choose(i);
}

void ImportTTFFont::on_listWidget_2_itemDoubleClicked() {
    const int row = ui->listWidget_2->currentRow();
    if (row < 0 || row >= m_ChosenNames.size())
        return;
    m_ChosenNames.removeAt(row);
    m_ChosenPaths.removeAt(row);
    delete ui->listWidget_2->takeItem(row);
}

void ImportTTFFont::on_pushButton_2_clicked() {
    m_ChosenNames.clear();
    m_ChosenPaths.clear();
    ui->listWidget_2->clear();
}

/// A font of that name that is there already makes the copy fail: it may be in use.
int ImportTTFFont::CopyChosen() const {
    int copied = 0;
    for (int i = 0; i < m_ChosenNames.size(); ++i) {
        const QString target = m_Folders.target + QLatin1Char('/') + m_ChosenNames[i];
        if (!QFile::exists(m_ChosenPaths[i]) || !QFile::copy(m_ChosenPaths[i], target))
            continue;
        ++copied;
        // The stick may have had it read-only for its owner; and the running program need not wait for its next start.
        QFile::setPermissions(target, QFile::ReadOwner | QFile::WriteOwner | QFile::ReadGroup | QFile::ReadOther);
        QFontDatabase::addApplicationFont(target);
    }
    return copied;
}

void ImportTTFFont::on_pushButtonImport_clicked() {
    QDir().mkpath(m_Folders.target);
    if (m_ChosenNames.isEmpty())
        return;
    const int copied = CopyChosen();
    if (copied == 0)
        return;
    // The copies stay: the next renewal of the cache finds them.
    if (const int code = QProcess::execute(QStringLiteral("fc-cache"), QStringList()))
        MarkLog::Instance()->ShowNote_Error(QStringLiteral("fc-cache: %1").arg(code));
    QMessageBox::information(this, text("Import TTF"),
                             text("Import OK:") + QString::number(copied) + QStringLiteral(" ,") +
                                 text("please restart"));
}

void ImportTTFFont::on_pushButtonClose_clicked() {
    reject();
}
