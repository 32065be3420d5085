// SPDX-License-Identifier: MIT
#include "tests/files/managerfixture.h"
#include "tests/shell/windowfixture.h"

using namespace tests;

/// How the dialog deletes files.
class FileManagerDeleteTest : public QObject {
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void delete_without_a_row_asks_nothing();
    void delete_asks_and_removes_data();
    void delete_asks_and_removes();
    void delete_question_has_no_first_and_yes_second_data();
    void delete_question_has_no_first_and_yes_second();
    void delete_of_an_open_document_closes_it_data();
    void delete_of_an_open_document_closes_it();
    void failed_deletion_is_told_and_the_row_stays();
    void deletion_means_the_file_in_small_letters();

private:
    static void deleteRow(FileManager& dialog, int row) {
        child<QListWidget>(dialog, "listWidget")->setCurrentRow(row);
        press(dialog, "pushButtonDeleteSelectFile");
    }

    std::unique_ptr<TemporaryRoot> m_Root;
};

void FileManagerDeleteTest::init() {
    m_Root = std::make_unique<TemporaryRoot>();
    QVERIFY(m_Root->isValid());
}

void FileManagerDeleteTest::cleanup() {
    m_Root.reset();
}

void FileManagerDeleteTest::delete_without_a_row_asks_nothing() {
    QVERIFY(m_Root->write("/MarkFile/plate.mkf", "x"));
    FileManager dialog(nullptr, FileManagerManage, MarkFileDocument);
    DialogAnswerer answerer;
    press(dialog, "pushButtonDeleteSelectFile");
    QCOMPARE(answerer.seen().size(), 0);
    QVERIFY(m_Root->exists("/MarkFile/plate.mkf"));
}

void FileManagerDeleteTest::delete_asks_and_removes_data() {
    QTest::addColumn<MarkFileType>("kind");
    QTest::addColumn<QString>("file");
    QTest::addColumn<QString>("question");
    QTest::addColumn<bool>("yes");
    QTest::newRow("document, yes") << MarkFileDocument << "/MarkFile/b.mkf"
                                   << "是否删除文件" << true;
    QTest::newRow("document, no") << MarkFileDocument << "/MarkFile/b.mkf"
                                  << "是否删除文件" << false;
    const QString project = "/MarkFile/MultiDocMarkFile/b.mdf";
    QTest::newRow("project, yes") << MarkFileProject << project << "是否删除多文档文件" << true;
    QTest::newRow("project, no") << MarkFileProject << project << "是否删除多文档文件" << false;
}

void FileManagerDeleteTest::delete_asks_and_removes() {
    QFETCH(MarkFileType, kind);
    QFETCH(QString, file);
    QFETCH(QString, question);
    QFETCH(bool, yes);
    for (char const* name :
         {"/MarkFile/a.mkf", "/MarkFile/b.mkf", "/MarkFile/MultiDocMarkFile/a.mdf", "/MarkFile/MultiDocMarkFile/b.mdf"})
        QVERIFY(m_Root->write(name, "x"));
    FileManager dialog(nullptr, FileManagerManage, kind);
    DialogAnswerer answerer;
    answerer.press(yes ? QMessageBox::Yes : QMessageBox::No);
    deleteRow(dialog, 1);
    QCOMPARE(answerer.titles(), QStringList("是否删除"));
    QCOMPARE(answerer.texts(), QStringList(question));
    QCOMPARE(m_Root->exists(file), !yes);
    QCOMPARE(listed(dialog), yes ? QStringList("a") : QStringList({"a", "b"}));
    int left = 0;
    for (char const* name :
         {"/MarkFile/a.mkf", "/MarkFile/b.mkf", "/MarkFile/MultiDocMarkFile/a.mdf", "/MarkFile/MultiDocMarkFile/b.mdf"})
        left += m_Root->exists(name);
    QCOMPARE(left, yes ? 3 : 4);
}

void FileManagerDeleteTest::delete_question_has_no_first_and_yes_second_data() {
    QTest::addColumn<QString>("sheet");
    QTest::newRow("plain") << QString();
    QFile file(":/myQSS.qss");
    QVERIFY(file.open(QIODevice::ReadOnly));
    QTest::newRow("the program's style") << QString::fromUtf8(file.readAll());
}

void FileManagerDeleteTest::delete_question_has_no_first_and_yes_second() {
    QFETCH(QString, sheet);
    qApp->setStyleSheet(sheet);
    QVERIFY(m_Root->write("/MarkFile/a.mkf", "x"));
    FileManager dialog(nullptr, FileManagerManage, MarkFileDocument);
    DialogAnswerer answerer;
    int no = -1;
    int yes = -1;
    bool noIsDefault = false;
    answerer.fillAndPress(
        [&](QWidget& shown) {
            auto& box = dynamic_cast<QMessageBox&>(shown);
            no = box.button(QMessageBox::No)->x();
            yes = box.button(QMessageBox::Yes)->x();
            noIsDefault = box.defaultButton() == box.button(QMessageBox::No);
            QCOMPARE(box.buttons().size(), 2);
        },
        QStringLiteral("No"));
    deleteRow(dialog, 0);
    QVERIFY2(0 <= no && no < yes, qPrintable(QString("no at %1, yes at %2").arg(no).arg(yes)));
    qApp->setStyleSheet(QString());
    QVERIFY(noIsDefault);
    QVERIFY(m_Root->exists("/MarkFile/a.mkf"));
}

void FileManagerDeleteTest::delete_of_an_open_document_closes_it_data() {
    QTest::addColumn<bool>("yes");
    QTest::addColumn<bool>("byPath");
    QTest::newRow("yes") << true << false;
    QTest::newRow("no") << false << false;
    QTest::newRow("opened by its path, yes") << true << true;
    QTest::newRow("opened by its path, no") << false << true;
}

void FileManagerDeleteTest::delete_of_an_open_document_closes_it() {
    QFETCH(bool, yes);
    QFETCH(bool, byPath);
    resetMachine();
    RunningWindow window;
    const QString plate = byPath ? m_Root->path("/MarkFile/plate.mkf") : "plate";
    window.newDocument(1, plate);
    window.newDocument(1, "other");
    QVERIFY(window->IsFileOpened(plate));
    FileManager dialog(&*window, FileManagerManage, MarkFileDocument);
    QCOMPARE(listed(dialog), QStringList({"other", "plate"}));
    DialogAnswerer answerer;
    answerer.press(yes ? QMessageBox::Yes : QMessageBox::No);
    deleteRow(dialog, 1);
    QCOMPARE(answerer.titles(), QStringList("是否删除"));
    QCOMPARE(answerer.texts(), QStringList("文件已打开,是否关闭文件并删除"));
    QCOMPARE(window->IsFileOpened(plate), !yes);
    QCOMPARE(m_Root->exists("/MarkFile/plate.mkf"), !yes);
    QVERIFY(window->IsFileOpened("other"));
}

void FileManagerDeleteTest::failed_deletion_is_told_and_the_row_stays() {
    QVERIFY(m_Root->write("/MarkFile/plate.mkf", "x"));
    FileManager dialog(nullptr, FileManagerManage, MarkFileDocument);
    // What cannot be removed as a file: a folder that took its place since the list was made.
    QVERIFY(QFile::remove(m_Root->path("/MarkFile/plate.mkf")));
    QVERIFY(QDir().mkpath(m_Root->path("/MarkFile/plate.mkf")));
    DialogAnswerer answerer;
    answerer.press(QMessageBox::Yes).press(QMessageBox::Ok);
    deleteRow(dialog, 0);
    QCOMPARE(answerer.texts(), QStringList({"是否删除文件", "删除失败"}));
    QCOMPARE(listed(dialog), QStringList("plate"));
}

/// Names are known in small letters only: a file in capitals leaves the list and stays on the disk.
void FileManagerDeleteTest::deletion_means_the_file_in_small_letters() {
    QVERIFY(m_Root->write("/MarkFile/Plate.mkf", "x"));
    FileManager dialog(nullptr, FileManagerManage, MarkFileDocument);
    QCOMPARE(listed(dialog), QStringList("plate"));
    DialogAnswerer answerer;
    answerer.press(QMessageBox::Yes);
    deleteRow(dialog, 0);
    QCOMPARE(answerer.texts(), QStringList("是否删除文件"));
    QCOMPARE(listed(dialog), QStringList());
    QVERIFY(m_Root->exists("/MarkFile/Plate.mkf"));
    dialog.LoadFiles();
    QCOMPARE(listed(dialog), QStringList("plate"));
}

QTEST_MAIN(FileManagerDeleteTest)
#include "tst_filemanagerdelete.moc"
