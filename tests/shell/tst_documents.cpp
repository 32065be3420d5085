// SPDX-License-Identifier: MIT
#include "engine/vzlistviewex.h"
#include "shell/leftpanel.h"
#include "tests/shell/documentsfixture.h"

#include <QSignalSpy>
#include <QTabWidget>

using namespace tests;

/// The open documents: how each way of opening, switching and closing keeps views, paths and rows together.
class DocumentsTest : public QObject, protected DocumentsFixture {
    Q_OBJECT

private slots:
    void init() { begin(); }
    void cleanup() { end(); }

    void an_open_path_is_only_activated();
    void an_unreadable_file_changes_nothing();
    void a_new_document_is_stored_and_listed();
    void a_name_that_is_open_comes_up_twice();
    void closing_the_active_document_activates_another();
    void set_current_by_index_data();
    void set_current_by_index();
    void set_current_without_a_document();
    void set_current_by_path();
    void the_row_below_a_closed_one_becomes_active();
    void all_are_closed_from_the_last_to_the_first();
    void an_opened_view_gives_its_inner_list_to_the_panel();
    void a_moved_row_moves_its_view_alone();
    void an_active_row_without_a_view_leaves_all_as_it_is();
    void a_closed_row_out_of_range_is_ignored();
    void a_moved_row_out_of_range_is_ignored();
    void unknown_paths_give_nothing();
    void a_pushed_document_is_taken_over();
    void a_bad_pushed_document_is_refused();
    void the_manual_tab_follows_its_file_data();
    void the_manual_tab_follows_its_file();
    void the_manual_switch_is_stored();
    void the_manual_switch_is_written_in_place_and_only_when_it_changes();
    void a_document_under_run_can_be_closed_data();
    void a_document_under_run_can_be_closed();
    void another_document_can_be_closed_without_ending_the_run();
};

void DocumentsTest::an_open_path_is_only_activated() {
    window().NewFile(file("a"));
    window().NewFile(file("b"));
    QRulerView* a = window().GetDoc(file("a"));
    QVERIFY(a);
    writeRecent("not to be touched");
    window().OpenFile(file("a"));
    QCOMPARE(openNames(), (QStringList{"a", "b"}));
    QCOMPARE(rowNames(), openNames());
    QCOMPARE(window().GetActiveView(), a);
    QCOMPARE(rows()->currentRow(), 0);
    QCOMPARE(recent(), QByteArray("not to be touched"));
    // Nor does a second time.
    window().OpenFile(file("a"));
    QCOMPARE(window().GetActiveView(), a);
    QCOMPARE(recent(), QByteArray("not to be touched"));
}

void DocumentsTest::an_unreadable_file_changes_nothing() {
    QVERIFY(m_Root.write(QStringLiteral("/MarkFile/bad.mkf"), "not a document"));
    window().OpenFile(file("bad"));
    window().OpenFile(file("missing"));
    QVERIFY(window().GetDocs().isEmpty());
    QVERIFY(!window().IsFileOpened(file("bad")));
    QVERIFY(!window().GetActiveView());
    QVERIFY(!m_Root.exists(QStringLiteral("/MarkFile/RecentFile.of")));
    QCOMPARE(m_Window->child<QWidget>("tabFile")->findChildren<QRulerView*>().size(), 0);
    QCOMPARE(rows()->count(), 0);
}

void DocumentsTest::a_new_document_is_stored_and_listed() {
    window().NewFile(QStringLiteral("plate"));
    QVERIFY(m_Root.exists(QStringLiteral("/MarkFile/plate.mkf")));
    const QString path = window().GetActiveView()->GetFileName();
    QVERIFY(window().IsFileOpened(path));
    QCOMPARE(recent(), "1\n" + path.toUtf8() + "\n");
}

void DocumentsTest::a_name_that_is_open_comes_up_twice() {
    QVERIFY(window().NewFile(file("a")));
    QVERIFY(window().NewFile(file("a")));
    QCOMPARE(window().GetDocs().size(), 2);
    QCOMPARE(rowNames(), (QStringList{"a", "a"}));
    QCOMPARE(window().GetActiveView(), window().GetDocs().at(1));
    QCOMPARE(recent(), "2\n" + file("a").toUtf8() + "\n" + file("a").toUtf8() + "\n");
    // Closed by the name they share, the first goes first.
    QRulerView* second = window().GetDocs().at(1);
    window().CloseFile(file("a"));
    QCOMPARE(window().GetDocs(), QVector<QRulerView*>{second});
    QVERIFY(window().IsFileOpened(file("a")));
    window().CloseFile(file("a"));
    QVERIFY(window().GetDocs().isEmpty());
    QVERIFY(!window().IsFileOpened(file("a")));
}

void DocumentsTest::closing_the_active_document_activates_another() {
    window().NewFile(file("a"));
    window().NewFile(file("b"));
    window().CloseFile(file("b"));
    QCOMPARE(openNames(), QStringList{"a"});
    QCOMPARE(window().GetActiveView(), window().GetDoc(file("a")));
    QVERIFY(!window().IsFileOpened(file("b")));
    QVERIFY(recent().startsWith("1\n" + file("a").toUtf8() + "\n"));
    window().CloseFile(file("never opened"));
    QCOMPARE(openNames(), QStringList{"a"});
    window().NewFile(file("b"));
    window().NewFile(file("c"));
    window().CloseFile(file("a"));
    QCOMPARE(window().GetActiveView(), window().GetDoc(file("c")));
    QCOMPARE(rowNames(), openNames());
}

void DocumentsTest::set_current_by_index_data() {
    QTest::addColumn<int>("index");
    QTest::addColumn<bool>("accepted");
    QTest::addColumn<QString>("active");
    QTest::newRow("negative") << -1 << false << QStringLiteral("b");
    QTest::newRow("first") << 0 << true << QStringLiteral("a");
    QTest::newRow("second") << 1 << true << QStringLiteral("b");
    QTest::newRow("count: accepted, nothing there") << 2 << true << QString();
    QTest::newRow("beyond the count") << 3 << false << QStringLiteral("b");
}

void DocumentsTest::set_current_by_index() {
    QFETCH(int, index);
    QFETCH(bool, accepted);
    QFETCH(QString, active);
    window().NewFile(file("a"));
    window().NewFile(file("b"));
    QCOMPARE(window().SetCurDoc(index), accepted);
    const QRulerView* view = window().GetActiveView();
    QCOMPARE(baseName(view), active);
    QCOMPARE(rows()->currentRow(), openNames().indexOf(active));
}

void DocumentsTest::set_current_without_a_document() {
    QVERIFY(window().SetCurDoc(0));
    QVERIFY(!window().SetCurDoc(1));
    QVERIFY(!window().SetCurDoc(-1));
    QVERIFY(!window().GetActiveView());
}

void DocumentsTest::set_current_by_path() {
    window().NewFile(file("a"));
    window().NewFile(file("b"));
    QVERIFY(!window().SetCurDoc(file("c")));
    QVERIFY(!window().GetDoc(file("c")));
    QVERIFY(window().SetCurDoc(file("a")));
    QCOMPARE(window().GetActiveView(), window().GetDoc(file("a")));
    // Open by its path, while its view bears another name by now: accepted, and nothing changes.
    window().GetDoc(file("b"))->SetFileName(file("renamed"));
    QVERIFY(window().SetCurDoc(file("b")));
    QCOMPARE(window().GetActiveView(), window().GetDoc(file("a")));
}

void DocumentsTest::the_row_below_a_closed_one_becomes_active() {
    for (char const* name : {"a", "b", "c"})
        window().NewFile(file(name));
    window().SetCurDoc(1);
    window().CloseFile(file("b"));
    QCOMPARE(activeName(), QStringLiteral("c"));
    window().CloseFile(file("c"));
    QCOMPARE(activeName(), QStringLiteral("a"));
    window().CloseFile(file("a"));
    QVERIFY(!window().GetActiveView());
    QCOMPARE(rows()->count(), 0);
}

void DocumentsTest::all_are_closed_from_the_last_to_the_first() {
    QStringList closed;
    for (char const* name : {"a", "b", "c"}) {
        window().NewFile(file(name));
        connect(window().GetActiveView(), &QRulerView::SubWndClosed, this,
                [&closed](QString const& path) { closed.append(QFileInfo(path).completeBaseName()); });
    }
    window().CloseAllFile();
    QCOMPARE(closed, (QStringList{"c", "b", "a"}));
    QCOMPARE(recent().left(2), QByteArray("0\n"));
}

void DocumentsTest::an_opened_view_gives_its_inner_list_to_the_panel() {
    makeFile(QStringLiteral("stored"));
    QWidget* panel = m_Window->child<LeftPanel>("LeftPanel")->ObjList();
    window().OpenFile(QStringLiteral("stored"));
    QCOMPARE(window().GetActiveView()->GetObjListView()->parentWidget(), panel);
    QVERIFY(window().GetActiveView()->GetObjListView()->isVisible());
    window().NewFile(QStringLiteral("made"));
    QCOMPARE(window().GetActiveView()->GetShowObjList()->parentWidget(), panel);
    QVERIFY(window().GetActiveView()->GetObjListView()->isVisible());
    QVERIFY(!window().GetDoc(QStringLiteral("stored"))->GetObjListView()->isVisible());
}

void DocumentsTest::a_moved_row_moves_its_view_alone() {
    for (char const* name : {"a", "b", "c"})
        window().NewFile(QString::fromLatin1(name));
    const QByteArray list = recent();
    QRulerView* active = window().GetActiveView();
    QTest::keyClick(rows(), Qt::Key_Up);
    QTest::keyClick(rows(), Qt::Key_Up);
    QCOMPARE(openNames(), (QStringList{"c", "a", "b"}));
    QCOMPARE(rowNames(), openNames());
    QCOMPARE(window().GetActiveView(), active);
    QVERIFY(active->isVisible());
    QCOMPARE(recent(), list);
    // Rows and views are still matched: the one that is chosen is the one that comes up.
    rows()->setCurrentRow(2);
    QCOMPARE(activeName(), QStringLiteral("b"));
    // What rewrites the file keeps the order of opening.
    window().NewFile(QStringLiteral("d"));
    QCOMPARE(recent(), QByteArray("4\na\nb\nc\nd\n"));
}

void DocumentsTest::an_active_row_without_a_view_leaves_all_as_it_is() {
    window().NewFile(file("a"));
    QRulerView* view = window().GetActiveView();
    for (int index : {1, 7}) {
        emit fileList()->ActivDocChanged(index);
        QVERIFY(!window().GetActiveView());
        QVERIFY(view->isVisible());
        emit fileList()->ActivDocChanged(0);
        QCOMPARE(window().GetActiveView(), view);
    }
    emit fileList()->ActivDocChanged(-1);
    QVERIFY(!window().GetActiveView());
    QVERIFY(view->isVisible());
}

void DocumentsTest::a_closed_row_out_of_range_is_ignored() {
    window().NewFile(file("a"));
    writeRecent("not to be touched");
    for (int index : {-1, 1, 9})
        emit fileList()->ClosedFile(index, true);
    QCOMPARE(openNames(), QStringList{"a"});
    QCOMPARE(recent(), QByteArray("not to be touched"));
}

void DocumentsTest::a_moved_row_out_of_range_is_ignored() {
    window().NewFile(file("a"));
    window().NewFile(file("b"));
    emit fileList()->ChangeFileIndex(0, 2);
    emit fileList()->ChangeFileIndex(-1, 0);
    QCOMPARE(openNames(), (QStringList{"a", "b"}));
}

void DocumentsTest::unknown_paths_give_nothing() {
    window().NewFile(file("a"));
    QVERIFY(!window().GetDoc(file("b")));
    QVERIFY(!window().SetCurDoc(file("b")));
    QVERIFY(!window().IsFileOpened(file("b")));
    window().CloseFile(file("b"));
    QCOMPARE(openNames(), QStringList{"a"});
    // The set that is handed out is a copy.
    window().GetDocs().clear();
    QCOMPARE(window().GetDocs().size(), 1);
}

void DocumentsTest::a_pushed_document_is_taken_over() {
    window().NewFile(file("received"));
    window().GetActiveView()->AddMarkPoint(QPointF(1, 2));
    QVERIFY(window().GetActiveView()->SaveDoc());
    QVERIFY(window().SyncFileData(file("received"), file("pushed")));
    QCOMPARE(openNames(), (QStringList{"received", "pushed"}));
    QCOMPARE(window().GetActiveView()->GetFileName(), file("pushed"));
    QVERIFY(window().IsFileOpened(file("pushed")));
    QVERIFY(m_Root.exists(QStringLiteral("/MarkFile/pushed.mkf")));
    QCOMPARE(window().GetActiveView()->GetToolLayer(0), 0);
}

void DocumentsTest::a_bad_pushed_document_is_refused() {
    QVERIFY(!window().SyncFileData(file("missing"), file("pushed")));
    QVERIFY(window().GetDocs().isEmpty());
    QVERIFY(recent().isEmpty());
    QCOMPARE(rows()->count(), 0);
    QCOMPARE(m_Window->child<QWidget>("tabFile")->findChildren<QRulerView*>().size(), 0);
}

void DocumentsTest::the_manual_tab_follows_its_file_data() {
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<bool>("visible");
    QTest::newRow("missing") << QByteArray() << false;
    QTest::newRow("0") << QByteArray("0\n") << false;
    QTest::newRow("1") << QByteArray("1\n") << true;
    QTest::newRow("2") << QByteArray("2") << true;
    QTest::newRow("word") << QByteArray("yes\n") << false;
}

void DocumentsTest::the_manual_tab_follows_its_file() {
    QFETCH(QByteArray, bytes);
    QFETCH(bool, visible);
    m_Window.reset();
    if (!bytes.isEmpty())
        QVERIFY(m_Root.write(QStringLiteral("/ini/ShowDoc.ini"), bytes));
    start();
    const auto* tabs = m_Window->child<QTabWidget>("tabWidgetMian");
    QCOMPARE(tabs->isTabVisible(tabs->count() - 1), visible);
    QCOMPARE(window().IsShowDoc(), visible);
    QCOMPARE(action("actionShowDoc")->isChecked(), visible);
}

void DocumentsTest::the_manual_switch_is_stored() {
    const auto* tabs = m_Window->child<QTabWidget>("tabWidgetMian");
    action("actionShowDoc")->trigger();
    QCOMPARE(m_Root.read(QStringLiteral("/ini/ShowDoc.ini")), QByteArray("1\n"));
    QVERIFY(tabs->isTabVisible(1));
    action("actionShowDoc")->trigger();
    QCOMPARE(m_Root.read(QStringLiteral("/ini/ShowDoc.ini")), QByteArray("0\n"));
    QVERIFY(!tabs->isTabVisible(1));
}

void DocumentsTest::the_manual_switch_is_written_in_place_and_only_when_it_changes() {
    const QString name = QStringLiteral("/ini/ShowDoc.ini");
    QVERIFY(m_Root.write(name, "1\nleft over\n"));
    start();
    window().SetShowDoc(true);
    QCOMPARE(m_Root.read(name), QByteArray("1\nleft over\n"));
    window().SetShowDoc(false);
    QCOMPARE(m_Root.read(name), QByteArray("0\nleft over\n"));
    QVERIFY(QFile::remove(m_Root.path(name)));
    window().SetShowDoc(false);
    QVERIFY(!m_Root.exists(name));
}

void DocumentsTest::a_document_under_run_can_be_closed_data() {
    QTest::addColumn<bool>("active");
    QTest::newRow("the active one") << true;
    QTest::newRow("one that is not active any more") << false;
}

void DocumentsTest::a_document_under_run_can_be_closed() {
    QFETCH(bool, active);
    window().NewFile(file("a"));
    window().GetActiveView()->AddMarkPoint(QPointF(0, 0));
    window().ShowNormalMarkWindow();
    machine().setSpeed(0.0001);
    window().IOStartRun();
    QTRY_COMPARE(machine().state().activity, sim::SimActivity::Running);
    if (!active)
        window().NewFile(file("b"));
    window().CloseFile(file("a"));
    QVERIFY(!Form_Marking::Instance()->IsRunning());
    QCOMPARE(window().GetDocs().size(), active ? 0 : 1);
    QTRY_VERIFY(window().centralWidget()->isEnabled());
}

void DocumentsTest::another_document_can_be_closed_without_ending_the_run() {
    window().NewFile(file("other"));
    window().NewFile(file("a"));
    window().GetActiveView()->AddMarkPoint(QPointF(0, 0));
    window().ShowNormalMarkWindow();
    machine().setSpeed(0.0001);
    window().IOStartRun();
    QTRY_COMPARE(machine().state().activity, sim::SimActivity::Running);
    window().CloseFile(file("other"));
    QCOMPARE(openNames(), QStringList{"a"});
    QVERIFY(Form_Marking::Instance()->IsRunning());
    Form_Marking::Instance()->StopMark();
    QTRY_VERIFY(window().centralWidget()->isEnabled());
}

QTEST_MAIN(DocumentsTest)
#include "tst_documents.moc"
