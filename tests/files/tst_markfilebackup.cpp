// SPDX-License-Identifier: MIT
#include "engine/authoritymanager.h"
#include "engine/languagemanager.h"
#include "files/markfilebackup.h"
#include "support/workcontrol.h"
#include "tests/files/managerfixture.h"
#include "tests/files/stickfixture.h"
#include "tests/shell/windowfixture.h"

#include <QAction>
#include <QCheckBox>
#include <QMap>
#include <QProcess>
#include <QRandomGenerator>

using namespace tests;

namespace {

constexpr char kBackUp[] = "pushButtonBackUpSelectFile";
constexpr char kImport[] = "pushButtonImportFile";

using Files = QMap<QString, QByteArray>;

} // namespace

/// Backups of the mark files on a stick, by the buttons of the dialog.
class MarkFileBackupTest : public QObject {
    Q_OBJECT

private slots:
    void initTestCase();
    void init();
    void cleanup();

    void without_a_stick_both_say_so_data();
    void without_a_stick_both_say_so();
    void backup_is_written_beside_those_there();
    void backup_is_left_by_cancelling_the_name();
    void backup_and_import_give_the_same_set_byte_for_byte();
    void lists_of_open_files_come_only_when_asked_for_data();
    void lists_of_open_files_come_only_when_asked_for();
    void import_opens_the_documents_of_the_imported_list();
    void backup_that_is_gone_is_told();
    void stick_that_takes_no_file_is_told();
    void stick_that_is_pulled_out_is_told_and_nothing_is_left();
    void cancelled_backup_leaves_nothing();
    void cancelled_import_leaves_nothing();
    void hostile_backup_is_refused_and_changes_nothing_data();
    void hostile_backup_is_refused_and_changes_nothing();
    void backup_larger_than_the_free_space_is_refused();
    void overlong_list_is_refused();
    void names_cannot_reach_out_of_the_temporary_folder();
    void file_manager_needs_the_right_to_delete();

private:
    /// Answers the dialog that asks for the name of a backup with "set" once `done` has been done.
    static void nameAfter(DialogAnswerer& answerer, std::function<void()> const& done) {
        answerer.fillAndPress(
            [done](QWidget& dialog) {
                dialog.findChild<QLineEdit*>("lineEditFileName")->setText("set");
                done();
            },
            "pushButtonOK");
    }
    /// Answers the dialog that asks for the name of a backup.
    static void name(DialogAnswerer& answerer, QString const& text, bool withLists = false) {
        answerer.fillAndPress(
            [text, withLists](QWidget& dialog) {
                QCOMPARE(dialog.objectName(), QString("BackUpName"));
                dialog.findChild<QLineEdit*>("lineEditFileName")->setText(text);
                dialog.findChild<QCheckBox*>("checkBoxImportConfig")->setChecked(withLists);
            },
            "pushButtonOK");
    }
    /// Answers conflicts: overwrites all.
    static void overwriteAll(DialogAnswerer& answerer) {
        answerer.fillAndPress(
            [](QWidget& dialog) { dialog.findChild<QCheckBox*>("checkBoxApplyAll")->setChecked(true); }, "确定");
    }
    /// Imports a backup, which replaces what is there already.
    static void importBackup(FileManager& dialog, QString const& text, bool withLists = false) {
        DialogAnswerer answerer;
        answerer.leave("WorkProgress");
        name(answerer, text, withLists);
        overwriteAll(answerer);
        press(dialog, kImport);
    }
    void writeBackup(QString const& text) {
        FileManager dialog(nullptr, FileManagerManage, MarkFileDocument);
        DialogAnswerer answerer;
        answerer.leave("WorkProgress");
        name(answerer, text);
        press(dialog, kBackUp);
    }
    Files markFiles() const {
        Files files;
        QDir const folder(m_Root->path("/MarkFile"));
        for (char const* below : {"", "MultiDocMarkFile/"}) {
            for (QString const& file : QDir(folder.filePath(below)).entryList(QDir::Files | QDir::Hidden))
                files.insert(below + file, m_Root->read("/MarkFile/" + (below + file)));
        }
        return files;
    }
    bool put(QString const& file, QByteArray const& bytes) { return m_Root->write("/MarkFile/" + file, bytes); }
    QString backup(QString const& text) const { return m_Stick->path("/VZBackup/" + text + ".BakMarkFile"); }

    const QTemporaryDir m_Archives;
    std::unique_ptr<TemporaryRoot> m_Root;
    std::unique_ptr<Stick> m_Stick;
};

void MarkFileBackupTest::initTestCase() {
    QCOMPARE(QProcess::execute(PYTHON_PROGRAM, {MAKE_ARCHIVES, m_Archives.path()}), 0);
}

void MarkFileBackupTest::init() {
    m_Root = std::make_unique<TemporaryRoot>();
    m_Stick = std::make_unique<Stick>();
    QVERIFY(m_Root->isValid());
}

void MarkFileBackupTest::cleanup() {
    const QStringList left = m_Stick->temporaries();
    m_Stick.reset();
    m_Root.reset();
    QCOMPARE(left, QStringList());
}

void MarkFileBackupTest::without_a_stick_both_say_so_data() {
    QTest::addColumn<QString>("button");
    QTest::newRow("backup") << kBackUp;
    QTest::newRow("import") << kImport;
}

void MarkFileBackupTest::without_a_stick_both_say_so() {
    QFETCH(QString, button);
    QVERIFY(m_Stick->pullOut());
    FileManager dialog(nullptr, FileManagerManage, MarkFileDocument);
    DialogAnswerer answerer;
    answerer.press(QMessageBox::Ok);
    press(dialog, button.toLatin1());
    QCOMPARE(answerer.titles(), QStringList("错误"));
    QCOMPARE(answerer.texts(), QStringList("请先插入U盘,再备份"));
    QCOMPARE(QDir(m_Stick->mediaRoot()).entryList(QDir::AllEntries | QDir::NoDotAndDotDot), QStringList());
}

void MarkFileBackupTest::backup_is_written_beside_those_there() {
    QVERIFY(put("a.mkf", "a"));
    QVERIFY(m_Stick->write("/VZBackup/old.BakMarkFile", "kept"));
    QVERIFY(m_Stick->write("/VZBackup/program.VZMarkBak", "kept"));
    FileManager dialog(nullptr, FileManagerManage, MarkFileDocument);
    DialogAnswerer answerer;
    answerer.leave("WorkProgress");
    QStringList listed;
    answerer.fillAndPress(
        [&](QWidget& shown) {
            auto const* list = shown.findChild<QListWidget*>("listWidget");
            for (int row = 0; row < list->count(); ++row)
                listed.append(list->item(row)->text());
            shown.findChild<QLineEdit*>("lineEditFileName")->setText(" Plates 1 ");
        },
        "pushButtonOK");
    press(dialog, kBackUp);
    QCOMPARE(answerer.titles(), QStringList("备份文件"));
    QCOMPARE(listed, QStringList("old"));
    QCOMPARE(QDir(m_Stick->path("/VZBackup")).entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot),
             QStringList({"old.BakMarkFile", "Plates 1.BakMarkFile", "program.VZMarkBak"}));
    QFile written(backup("Plates 1"));
    QVERIFY(written.open(QIODevice::ReadOnly));
    QCOMPARE(written.read(4), QByteArray("PK\x03\x04"));
}

void MarkFileBackupTest::backup_is_left_by_cancelling_the_name() {
    QVERIFY(put("a.mkf", "a"));
    FileManager dialog(nullptr, FileManagerManage, MarkFileDocument);
    for (char const* button : {kBackUp, kImport}) {
        DialogAnswerer answerer;
        answerer.press("pushButtonCancel");
        press(dialog, button);
    }
    QCOMPARE(QDir(m_Stick->path("/VZBackup")).entryList(QDir::Files), QStringList());
    QCOMPARE(markFiles(), (Files{{"a.mkf", "a"}}));
}

void MarkFileBackupTest::backup_and_import_give_the_same_set_byte_for_byte() {
    const int count = qMax(100, qEnvironmentVariableIntValue("TESSERA_DOCUMENTS"));
    QRandomGenerator random(20240229);
    for (int i = 0; i < count; ++i) {
        QByteArray bytes(random.bounded(40000), '\0');
        for (char& c : bytes)
            c = static_cast<char>(random.bounded(i % 2 == 0 ? 256 : 4));
        const QString document = QString(i % 7 == 0 ? "齿轮 %1" : "plate%1").arg(i);
        QVERIFY(put(document + ".mkf", bytes));
        if (i % 10 == 1) // projects come back beside a document of their name
            QVERIFY(put("MultiDocMarkFile/" + document + ".mdf", bytes.left(300)));
    }
    QVERIFY(put("RecentFile.of", "1\nplate1\n") && put("MultiDocMarkFile/recent", "plate1\n"));
    const Files before = markFiles();
    QElapsedTimer timer;
    timer.start();
    writeBackup("all");
    const qint64 written = timer.restart();
    QVERIFY(QFile::exists(backup("all")));
    QVERIFY(QDir(m_Root->path("/MarkFile")).removeRecursively());
    FileManager dialog(nullptr, FileManagerManage, MarkFileDocument);
    DialogAnswerer answerer;
    answerer.leave("WorkProgress");
    name(answerer, "all", true);
    press(dialog, kImport);
    qInfo("%d documents: written in %lld ms, brought back in %lld ms", count, written, timer.elapsed());
    const Files after = markFiles();
    QCOMPARE(after.keys(), before.keys());
    QVERIFY(after == before);
    QCOMPARE(dialog.findChild<QListWidget*>("listWidget")->count(), count);
}

void MarkFileBackupTest::lists_of_open_files_come_only_when_asked_for_data() {
    QTest::addColumn<bool>("asked");
    QTest::newRow("asked for") << true;
    QTest::newRow("not asked for") << false;
}

void MarkFileBackupTest::lists_of_open_files_come_only_when_asked_for() {
    QFETCH(bool, asked);
    QVERIFY(put("a.mkf", "a") && put("RecentFile.of", "1\na\n") && put("MultiDocMarkFile/recent", "then"));
    writeBackup("b");
    QVERIFY(put("a.mkf", "later") && put("RecentFile.of", "0\n") && put("MultiDocMarkFile/recent", "now"));
    FileManager dialog(nullptr, FileManagerManage, MarkFileDocument);
    importBackup(dialog, "b", asked);
    QCOMPARE(markFiles(), (Files{{"a.mkf", "a"},
                                 {"RecentFile.of", asked ? "1\na\n" : "0\n"},
                                 {"MultiDocMarkFile/recent", asked ? "then" : "now"}}));
}

void MarkFileBackupTest::import_opens_the_documents_of_the_imported_list() {
    resetMachine();
    RunningWindow window;
    window.newDocument(2, "one");
    window.newDocument(3, "two");
    for (QRulerView* view : window->GetDocs())
        QVERIFY(view->SaveDoc());
    writeBackup("set");
    window->CloseFile("two");
    window.newDocument(1, "three");
    QVERIFY(QFile::remove(m_Root->path("/MarkFile/two.mkf")));
    QVERIFY(!window->IsFileOpened("two") && window->IsFileOpened("three"));
    FileManager dialog(&*window, FileManagerManage, MarkFileDocument);
    importBackup(dialog, "set", true);
    QVERIFY(window->IsFileOpened("one") && window->IsFileOpened("two") && !window->IsFileOpened("three"));
    QVERIFY(m_Root->exists("/MarkFile/three.mkf"));
    QCOMPARE(dialog.findChild<QListWidget*>("listWidget")->count(), 3);
}

void MarkFileBackupTest::backup_that_is_gone_is_told() {
    QVERIFY(m_Stick->write("/VZBackup/set.BakMarkFile", "x"));
    FileManager dialog(nullptr, FileManagerManage, MarkFileDocument);
    DialogAnswerer answerer;
    answerer.leave("WorkProgress");
    nameAfter(answerer, [this] { QVERIFY(QFile::remove(backup("set"))); });
    answerer.press(QMessageBox::Ok);
    press(dialog, kImport);
    QCOMPARE(answerer.titles().last(), "错误");
    QCOMPARE(answerer.texts().last(), "选中的备份文件不存在:set");
}

void MarkFileBackupTest::stick_that_takes_no_file_is_told() {
    QVERIFY(put("a.mkf", "a"));
    // A folder cannot be replaced by the backup, whoever runs the test.
    QVERIFY(QDir().mkpath(backup("set")));
    FileManager dialog(nullptr, FileManagerManage, MarkFileDocument);
    DialogAnswerer answerer;
    answerer.leave("WorkProgress");
    name(answerer, "set");
    answerer.press(QMessageBox::Ok);
    press(dialog, kBackUp);
    QCOMPARE(answerer.titles().last(), "错误");
    QCOMPARE(answerer.texts().last(), "备份失败\n文件写入失败,请检查磁盘空间");
    QCOMPARE(QDir(m_Stick->path("/VZBackup")).entryList(QDir::Files | QDir::Hidden), QStringList());
}

void MarkFileBackupTest::stick_that_is_pulled_out_is_told_and_nothing_is_left() {
    QVERIFY(put("a.mkf", "a"));
    FileManager dialog(nullptr, FileManagerManage, MarkFileDocument);
    DialogAnswerer answerer;
    answerer.leave("WorkProgress");
    nameAfter(answerer, [this] { QVERIFY(m_Stick->pullOut()); });
    answerer.press(QMessageBox::Ok);
    press(dialog, kBackUp);
    QCOMPARE(answerer.texts().last(), "备份失败\n文件写入失败,请检查磁盘空间");
    QCOMPARE(QDir(m_Stick->mediaRoot()).entryList(QDir::AllEntries | QDir::NoDotAndDotDot), QStringList());
}

void MarkFileBackupTest::cancelled_backup_leaves_nothing() {
    QVERIFY(put("a.mkf", QByteArray(1000000, 'a')));
    tessera::WorkControl control;
    control.cancel();
    const QString folder = tessera::StickBackupFolder();
    QCOMPARE(tessera::WriteMarkFileBackup(folder, "set", control).fault(), tessera::ArchiveFault::Cancelled);
    QCOMPARE(QDir(folder).entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot), QStringList());
}

void MarkFileBackupTest::cancelled_import_leaves_nothing() {
    QVERIFY(put("a.mkf", "a"));
    writeBackup("set");
    tessera::WorkControl control;
    control.cancel();
    const QTemporaryDir work;
    QCOMPARE(tessera::UnpackMarkFileBackup(backup("set"), work.path(), "set", control).fault(),
             tessera::ArchiveFault::Cancelled);
    QVERIFY(!QFileInfo::exists(work.filePath("set")));
}

void MarkFileBackupTest::hostile_backup_is_refused_and_changes_nothing_data() {
    QTest::addColumn<QString>("archive");
    QTest::addColumn<QString>("reason");
    QTest::newRow("up") << "name up"
                        << "压缩包内有不安全的文件名";
    QTest::newRow("absolute") << "name absolute"
                              << "压缩包内有不安全的文件名";
    QTest::newRow("link") << "link to a folder"
                          << "压缩包内有链接或特殊文件";
    QTest::newRow("twice") << "same name"
                           << "压缩包内有重复的文件名";
    QTest::newRow("encrypted") << "encrypted"
                               << "压缩包已加密";
    QTest::newRow("damaged") << "packed bytes changed"
                             << "压缩包内的数据已损坏";
    QTest::newRow("cut short") << "first half"
                               << "文件已损坏或不是压缩包";
    QTest::newRow("no archive") << "text"
                                << "文件已损坏或不是压缩包";
}

void MarkFileBackupTest::hostile_backup_is_refused_and_changes_nothing() {
    QFETCH(QString, archive);
    QFETCH(QString, reason);
    QVERIFY(put("a.mkf", "mine") && put("good.mkf", "mine") && put("RecentFile.of", "1\na\n"));
    const Files before = markFiles();
    QVERIFY(QDir().mkpath(m_Stick->path("/VZBackup")));
    QVERIFY(QFile::copy(m_Archives.filePath(archive + ".zip"), backup("set")));
    FileManager dialog(nullptr, FileManagerManage, MarkFileDocument);
    DialogAnswerer answerer;
    answerer.leave("WorkProgress");
    name(answerer, "set", true);
    answerer.press(QMessageBox::Ok);
    press(dialog, kImport);
    QCOMPARE(answerer.titles().last(), "错误");
    QCOMPARE(answerer.texts().last(), "导入失败\n" + reason);
    QCOMPARE(markFiles(), before);
}

void MarkFileBackupTest::backup_larger_than_the_free_space_is_refused() {
    QFile file(backup("set"));
    QVERIFY(m_Stick->write("/VZBackup/set.BakMarkFile", "x"));
    const qint64 free = tessera::ArchiveLimits::forFolder(m_Stick->temporaryRoot()).bytes;
    QVERIFY2(file.resize(free + 1000000000), qPrintable(file.errorString())); // sparse: it takes no room
    tessera::WorkControl control;
    const QTemporaryDir work;
    QCOMPARE(tessera::UnpackMarkFileBackup(file.fileName(), work.path(), "set", control).fault(),
             tessera::ArchiveFault::TooLarge);
    QCOMPARE(QDir(work.path()).entryList(QDir::AllEntries | QDir::NoDotAndDotDot), QStringList());
}

void MarkFileBackupTest::overlong_list_is_refused() {
    QVERIFY(put("RecentFile.of", "1\na\n"));
    QTemporaryDir unpacked;
    QFile list(unpacked.filePath("RecentFile.of"));
    QVERIFY(list.open(QIODevice::WriteOnly) && list.resize(256 * 1024 + 1));
    QVERIFY(!tessera::ImportRecentLists(unpacked.path()));
    QCOMPARE(markFiles(), (Files{{"RecentFile.of", "1\na\n"}}));
    QVERIFY(list.resize(256 * 1024));
    QVERIFY(tessera::ImportRecentLists(unpacked.path()));
}

void MarkFileBackupTest::names_cannot_reach_out_of_the_temporary_folder() {
    // What others keep below the temporary folder under the backup's own name.
    QVERIFY(put("a.mkf", "a"));
    QDir const temporary(m_Stick->temporaryRoot());
    QVERIFY(temporary.mkpath("set") && QFile::link(m_Root->path("/elsewhere"), temporary.filePath("set.zip")));
    writeBackup("set");
    FileManager dialog(nullptr, FileManagerManage, MarkFileDocument);
    importBackup(dialog, "set");
    QVERIFY(!m_Root->exists("/elsewhere"));
    QCOMPARE(m_Stick->temporaries().size(), 2);
    QVERIFY(QFile::remove(temporary.filePath("set.zip")) && temporary.rmdir("set"));
}

void MarkFileBackupTest::file_manager_needs_the_right_to_delete() {
    resetMachine();
    RunningWindow window;
    QVERIFY(AuthorityManager::CanDeleteFile());
    DialogAnswerer answerer;
    answerer.press("pushButtonOK");
    window.child<QAction>("actionFileManager")->trigger();
    QCOMPARE(answerer.titles(), QStringList("文档管理"));
    SystemParam::Instance()->SetEnableUserManager(true);
    const bool allowed = AuthorityManager::CanDeleteFile();
    if (!allowed)
        window.child<QAction>("actionFileManager")->trigger();
    SystemParam::Instance()->SetEnableUserManager(false);
    QVERIFY(!allowed);
    QCOMPARE(answerer.seen().size(), 1);
}

QTEST_MAIN(MarkFileBackupTest)
#include "tst_markfilebackup.moc"
