// SPDX-License-Identifier: MIT
#include "tests/shell/documentsfixture.h"

#include <QSignalSpy>

using namespace tests;

/// What comes back at the next start, and what the file of the open documents holds.
class RecentFilesTest : public QObject, protected DocumentsFixture {
    Q_OBJECT

private slots:
    void init() { begin(); }
    void cleanup() { end(); }

    void recent_file_comes_back_at_the_next_start();
    void recent_paths_with_capitals_drop_out();
    void recent_lines_beyond_the_count_are_ignored();
    void a_shorter_recent_list_leaves_old_lines();
    void reset_without_an_open_file_reads_nothing();
    void reset_reads_the_set_anew_and_keeps_the_active_one();
    void a_missing_recent_file_is_an_empty_set();
    void no_readable_path_leaves_the_recent_file_alone();
    void unreadable_recent_documents_drop_out_data();
    void unreadable_recent_documents_drop_out();
    void restored_documents_show_the_active_one_alone();
    void restored_documents_are_listened_to();
    void reset_writes_nothing_while_it_closes();
    void reset_without_the_former_active_one_keeps_the_last();
    void ten_restarts_keep_the_set();
};

void RecentFilesTest::recent_file_comes_back_at_the_next_start() {
    window().NewFile(QStringLiteral("b"));
    window().NewFile(QStringLiteral("a"));
    QTest::keyClick(rows(), Qt::Key_Up);
    QCOMPARE(openNames(), (QStringList{"a", "b"}));
    QCOMPARE(recent(), QByteArray("2\nb\na\n"));
    start();
    // The order of opening, not that of the rows.
    QCOMPARE(openNames(), (QStringList{"b", "a"}));
    QCOMPARE(rowNames(), openNames());
    QCOMPARE(activeName(), QStringLiteral("a"));
    QCOMPARE(recent(), QByteArray("2\nb\na\n"));
}

void RecentFilesTest::recent_paths_with_capitals_drop_out() {
    window().NewFile(QStringLiteral("Plate"));
    window().NewFile(QStringLiteral("b"));
    start();
    QCOMPARE(openNames(), QStringList{"b"});
    QCOMPARE(recent().left(4), QByteArray("1\nb\n"));
}

void RecentFilesTest::recent_lines_beyond_the_count_are_ignored() {
    window().NewFile(file("a"));
    window().NewFile(file("b"));
    m_Window.reset();
    QVERIFY(m_Root.write(QStringLiteral("/MarkFile/RecentFile.of"), "0\n" + file("a").toUtf8() + "\n"));
    start();
    QVERIFY(window().GetDocs().isEmpty());
}

void RecentFilesTest::a_shorter_recent_list_leaves_old_lines() {
    window().NewFile(file("a"));
    window().NewFile(file("bb"));
    const QByteArray longer = recent();
    window().CloseFile(file("bb"));
    const QByteArray head = "1\n" + file("a").toUtf8() + "\n";
    QCOMPARE(recent(), head + longer.mid(head.size()));
}

void RecentFilesTest::reset_without_an_open_file_reads_nothing() {
    window().NewFile(file("a"));
    window().CloseAllFile();
    QVERIFY(m_Root.write(QStringLiteral("/MarkFile/RecentFile.of"), "1\n" + file("a").toUtf8() + "\n"));
    window().ResetFiles();
    QVERIFY(window().GetDocs().isEmpty());
}

void RecentFilesTest::reset_reads_the_set_anew_and_keeps_the_active_one() {
    window().NewFile(QStringLiteral("a"));
    window().NewFile(QStringLiteral("b"));
    window().SetCurDoc(0);
    const QByteArray list = recent();
    QSignalSpy gone(window().GetActiveView(), &QObject::destroyed);
    window().ResetFiles();
    QCOMPARE(gone.count(), 1);
    QCOMPARE(recent(), list);
    QCOMPARE(openNames(), (QStringList{"a", "b"}));
    QCOMPARE(window().GetActiveView(), window().GetDoc(QStringLiteral("a")));
    window().NewFile(QStringLiteral("c"));
    QVERIFY(recent().startsWith("3\n"));
}

void RecentFilesTest::a_missing_recent_file_is_an_empty_set() {
    QVERIFY(!m_Root.exists(QStringLiteral("/MarkFile/RecentFile.of")));
    QVERIFY(window().GetDocs().isEmpty());
}

void RecentFilesTest::no_readable_path_leaves_the_recent_file_alone() {
    const QByteArray bytes("2\nGone\nnever there\n");
    writeRecent(bytes);
    start();
    QVERIFY(window().GetDocs().isEmpty());
    QCOMPARE(rows()->count(), 0);
    QCOMPARE(recent(), bytes);
}

void RecentFilesTest::unreadable_recent_documents_drop_out_data() {
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<QStringList>("open");
    QTest::addColumn<QByteArray>("head"); ///< what the recent file begins with afterwards
    const QByteArray two("2\na\nb\n");
    const QStringList both{"a", "b"};
    QTest::newRow("as written") << two << both << two;
    QTest::newRow("missing file in the middle") << QByteArray("3\na\ngone\nb\n") << both << two;
    QTest::newRow("missing file at the end") << QByteArray("3\na\nb\ngone\n") << both << two;
    QTest::newRow("damaged file at the head") << QByteArray("3\nbad\na\nb\n") << both << two;
    QTest::newRow("a path twice") << QByteArray("3\na\na\nb\n") << both << two;
    QTest::newRow("a path twice, once in capitals") << QByteArray("3\na\nA\nb\n") << both << two;
    QTest::newRow("capitals in the list, small letters on the disk") << QByteArray("2\nA\nB\n") << both << two;
    QTest::newRow("blanks around a path") << QByteArray("2\n  a \n\tb\n") << both << two;
    QTest::newRow("lines of another system") << QByteArray("2\r\na\r\nb\r\n") << both << two;
    QTest::newRow("more lines than the count") << QByteArray("1\na\nb\n") << QStringList{"a"} << QByteArray("1\na\n");
    QTest::newRow("fewer lines than the count") << QByteArray("9\na\nb") << both << two;
    QTest::newRow("a count beyond all bounds") << QByteArray("2000000000\na\nb\n") << both << two;
    QTest::newRow("a count of 0") << QByteArray("0\na\n") << QStringList() << QByteArray("0\na\n");
    QTest::newRow("a negative count") << QByteArray("-1\na\n") << QStringList() << QByteArray("-1\na\n");
    QTest::newRow("no count") << QByteArray("a\nb\n") << QStringList() << QByteArray("a\nb\n");
    QTest::newRow("empty") << QByteArray() << QStringList() << QByteArray();
}

void RecentFilesTest::unreadable_recent_documents_drop_out() {
    QFETCH(QByteArray, bytes);
    QFETCH(QStringList, open);
    QFETCH(QByteArray, head);
    m_Window.reset();
    makeFile(QStringLiteral("a"));
    makeFile(QStringLiteral("b"));
    QVERIFY(m_Root.write(QStringLiteral("/MarkFile/bad.mkf"), "not a document"));
    writeRecent(bytes);
    start();
    QCOMPARE(openNames(), open);
    QCOMPARE(rowNames(), open);
    QCOMPARE(activeName(), open.isEmpty() ? QString() : open.last());
    QCOMPARE(recent().left(head.size()), head);
    QCOMPARE(m_Window->child<QWidget>("tabFile")->findChildren<QRulerView*>().size(), open.size());
}

void RecentFilesTest::restored_documents_show_the_active_one_alone() {
    for (char const* name : {"a", "b", "c"})
        window().NewFile(QString::fromLatin1(name));
    start();
    QCOMPARE(window().GetDocs().size(), 3);
    for (QRulerView* view : window().GetDocs()) {
        const bool active = view == window().GetActiveView();
        QCOMPARE(view->isVisible(), active);
        QCOMPARE(view->GetShowObjList()->isVisible(), active);
    }
    rows()->setCurrentRow(0);
    QVERIFY(window().GetDocs().at(0)->GetShowObjList()->isVisible());
    QVERIFY(!window().GetDocs().at(2)->GetShowObjList()->isVisible());
}

void RecentFilesTest::restored_documents_are_listened_to() {
    window().NewFile(QStringLiteral("a"));
    window().GetActiveView()->AddMarkPoint(QPointF(0, 0));
    QVERIFY(window().GetActiveView()->SaveDoc());
    start();
    QVERIFY(!action("actionUnDo")->isEnabled());
    window().GetActiveView()->AddMarkPoint(QPointF(1, 0));
    QTRY_VERIFY(action("actionUnDo")->isEnabled());
    window().CloseFile(QStringLiteral("a"));
    QVERIFY(!window().IsFileOpened(QStringLiteral("a")));
    QCOMPARE(recent().left(2), QByteArray("0\n"));
}

void RecentFilesTest::reset_writes_nothing_while_it_closes() {
    window().NewFile(QStringLiteral("a"));
    window().NewFile(QStringLiteral("b"));
    // An import has put a set of its own there.
    makeFile(QStringLiteral("imported"));
    const QByteArray imported("2\nimported\nb\n");
    writeRecent(imported);
    window().SetCurDoc(1);
    window().ResetFiles();
    QCOMPARE(openNames(), (QStringList{"imported", "b"}));
    QCOMPARE(activeName(), QStringLiteral("b"));
    QCOMPARE(recent(), imported);
}

void RecentFilesTest::reset_without_the_former_active_one_keeps_the_last() {
    window().NewFile(QStringLiteral("a"));
    window().NewFile(QStringLiteral("b"));
    writeRecent("1\na\n");
    window().ResetFiles();
    QCOMPARE(openNames(), QStringList{"a"});
    QCOMPARE(activeName(), QStringLiteral("a"));
    window().CloseFile(QStringLiteral("a"));
    QCOMPARE(recent().left(2), QByteArray("0\n"));
}

void RecentFilesTest::ten_restarts_keep_the_set() {
    for (int i = 0; i < 5; ++i)
        window().NewFile(QStringLiteral("document-%1").arg(i));
    const QByteArray list = recent();
    for (int turn = 0; turn < 10; ++turn) {
        start();
        QCOMPARE(window().GetDocs().size(), 5);
        QCOMPARE(recent(), list);
    }
}

QTEST_MAIN(RecentFilesTest)
#include "tst_recentfiles.moc"
