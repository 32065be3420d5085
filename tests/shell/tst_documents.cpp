// SPDX-License-Identifier: MIT
#include "engine/vzlistviewex.h"
#include "support/approot.h"
#include "tests/shell/windowfixture.h"
#include "tests/support/dialoganswerer.h"

#include <QAction>
#include <QDir>
#include <QFileInfo>
#include <QLabel>
#include <QSignalSpy>
#include <QTabWidget>
#include <QToolBar>

using namespace tests;

/// The open documents and what the window shows of the active one.
class DocumentsTest : public QObject {
    Q_OBJECT

private slots:
    void initTestCase();
    void init();
    void cleanup();

    void an_open_path_is_only_activated();
    void an_unreadable_file_changes_nothing();
    void a_new_document_is_stored_and_listed();
    void a_name_that_is_open_comes_up_twice();
    void closing_the_active_document_activates_another();
    void closing_the_last_document_disables_what_needs_one();
    void set_current_by_index_data();
    void set_current_by_index();
    void set_current_by_path();
    void only_the_active_view_and_its_list_are_visible();
    void recent_file_comes_back_at_the_next_start();
    void recent_paths_with_capitals_drop_out();
    void recent_lines_beyond_the_count_are_ignored();
    void a_shorter_recent_list_leaves_old_lines();
    void reset_without_an_open_file_reads_nothing();
    void reset_reads_the_set_anew_and_keeps_the_active_one();
    void a_pushed_document_is_taken_over();
    void a_bad_pushed_document_is_refused();
    void the_manual_tab_follows_its_file_data();
    void the_manual_tab_follows_its_file();
    void the_manual_switch_is_stored();
    void selection_enables_its_actions();
    void undo_and_redo_follow_the_document();
    void tools_exclude_one_another();
    void tools_without_a_document_stay_off();
    void pointer_position_is_shown();
    void save_shows_a_box();
    void save_all_shows_one_box_even_without_a_document();
    void the_views_callback_is_the_windows();
    void a_document_under_run_can_be_closed_data();
    void a_document_under_run_can_be_closed();
    void another_document_can_be_closed_without_ending_the_run();

private:
    TemporaryRoot m_Root;
    std::unique_ptr<RunningWindow> m_Window;
    MainWindow& window() { return **m_Window; }
    void start() {
        m_Window.reset();
        m_Window = std::make_unique<RunningWindow>();
    }
    QAction* action(char const* name) { return m_Window->child<QAction>(name); }
    QString file(char const* name) { return m_Root.path(QStringLiteral("/MarkFile/%1.mkf").arg(QLatin1String(name))); }
    QByteArray recent() { return m_Root.read(QStringLiteral("/MarkFile/RecentFile.of")); }
    QStringList openNames() {
        QStringList names;
        for (QRulerView* view : window().GetDocs())
            names.append(QFileInfo(view->GetFileName()).completeBaseName());
        return names;
    }
};

void DocumentsTest::initTestCase() {
    QVERIFY(m_Root.isValid());
}

void DocumentsTest::init() {
    QDir(m_Root.path(QStringLiteral("/MarkFile"))).removeRecursively();
    QFile::remove(m_Root.path(QStringLiteral("/ini/ShowDoc.ini")));
    resetMachine();
    start();
}

void DocumentsTest::cleanup() {
    m_Window.reset();
}

void DocumentsTest::an_open_path_is_only_activated() {
    window().NewFile(file("a"));
    window().NewFile(file("b"));
    QRulerView* a = window().GetDoc(file("a"));
    QVERIFY(a);
    const QDateTime written = QFileInfo(m_Root.path(QStringLiteral("/MarkFile/RecentFile.of"))).lastModified();
    window().OpenFile(file("a"));
    QCOMPARE(window().GetDocs().size(), 2);
    QCOMPARE(window().GetActiveView(), a);
    QCOMPARE(QFileInfo(m_Root.path(QStringLiteral("/MarkFile/RecentFile.of"))).lastModified(), written);
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
}

void DocumentsTest::a_new_document_is_stored_and_listed() {
    window().NewFile(QStringLiteral("plate"));
    QVERIFY(m_Root.exists(QStringLiteral("/MarkFile/plate.mkf")));
    const QString path = window().GetActiveView()->GetFileName();
    QVERIFY(window().IsFileOpened(path));
    QCOMPARE(recent(), "1\n" + path.toUtf8() + "\n");
}

void DocumentsTest::a_name_that_is_open_comes_up_twice() {
    window().NewFile(file("a"));
    window().NewFile(file("a"));
    QCOMPARE(window().GetDocs().size(), 2);
    QCOMPARE(recent(), "2\n" + file("a").toUtf8() + "\n" + file("a").toUtf8() + "\n");
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
}

void DocumentsTest::closing_the_last_document_disables_what_needs_one() {
    window().NewFile(file("a"));
    QVERIFY(action("actionSaveFile")->isEnabled());
    QVERIFY(action("actionComposite")->isEnabled());
    window().CloseAllFile();
    QVERIFY(!window().GetActiveView());
    for (char const* name : {"actionSaveAll",      "actionSaveFile",      "actionUnDo",           "actionReDo",
                             "actionAlignLeft",    "actionAlignCenterH",  "actionAlignRight",     "actionAlignTop",
                             "actionAlignCenterV", "actionAlignBottom",   "actionsameWidth",      "actionsameHeight",
                             "actionsameSize",     "actionmirrorTB",      "actionmirrorLR",       "actionarrayObj",
                             "actionalienation",   "actionTeaching",      "actionRedLoopPreview", "actionComposite",
                             "actionUnComposite",  "actionCompositeLine", "actionUnCompositeLine"})
        QVERIFY2(!action(name)->isEnabled(), name);
    QVERIFY(!m_Window->child<QToolBar>("toolbar_AddMarkTool")->isEnabled());
    for (char const* name : {"action_NewFile", "actionOpenFlie", "actionSort"})
        QVERIFY2(action(name)->isEnabled(), name);
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
    QCOMPARE(view ? QFileInfo(view->GetFileName()).completeBaseName() : QString(), active);
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

void DocumentsTest::only_the_active_view_and_its_list_are_visible() {
    window().NewFile(file("a"));
    window().NewFile(file("b"));
    window().OpenFile(file("a"));
    for (QRulerView* view : window().GetDocs()) {
        const bool active = view == window().GetActiveView();
        QCOMPARE(view->isVisible(), active);
        QCOMPARE(view->GetShowObjList()->isVisible(), active);
        QCOMPARE(view->GetObjListView()->window(), static_cast<QWidget*>(&window()));
    }
}

void DocumentsTest::recent_file_comes_back_at_the_next_start() {
    window().NewFile(QStringLiteral("b"));
    window().NewFile(QStringLiteral("a"));
    window().SetCurDoc(0);
    QVERIFY(
        QMetaObject::invokeMethod(&window(), "OnChangeFileIndex", Qt::DirectConnection, Q_ARG(int, 1), Q_ARG(int, 0)));
    QCOMPARE(openNames(), (QStringList{"a", "b"}));
    QCOMPARE(recent(), QByteArray("2\nb\na\n"));
    start();
    // The order of opening, not that of the tabs.
    QCOMPARE(openNames(), (QStringList{"b", "a"}));
}

void DocumentsTest::recent_paths_with_capitals_drop_out() {
    window().NewFile(QStringLiteral("Plate"));
    window().NewFile(QStringLiteral("b"));
    start();
    QCOMPARE(openNames(), QStringList{"b"});
    QCOMPARE(recent().left(4), QByteArray("1\nb\n"));
}

void DocumentsTest::recent_lines_beyond_the_count_are_ignored() {
    window().NewFile(file("a"));
    window().NewFile(file("b"));
    m_Window.reset();
    QVERIFY(m_Root.write(QStringLiteral("/MarkFile/RecentFile.of"), "0\n" + file("a").toUtf8() + "\n"));
    start();
    QVERIFY(window().GetDocs().isEmpty());
}

void DocumentsTest::a_shorter_recent_list_leaves_old_lines() {
    window().NewFile(file("a"));
    window().NewFile(file("bb"));
    const QByteArray longer = recent();
    window().CloseFile(file("bb"));
    const QByteArray head = "1\n" + file("a").toUtf8() + "\n";
    QCOMPARE(recent(), head + longer.mid(head.size()));
}

void DocumentsTest::reset_without_an_open_file_reads_nothing() {
    window().NewFile(file("a"));
    window().CloseAllFile();
    QVERIFY(m_Root.write(QStringLiteral("/MarkFile/RecentFile.of"), "1\n" + file("a").toUtf8() + "\n"));
    window().ResetFiles();
    QVERIFY(window().GetDocs().isEmpty());
}

void DocumentsTest::reset_reads_the_set_anew_and_keeps_the_active_one() {
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

void DocumentsTest::selection_enables_its_actions() {
    window().NewFile(file("a"));
    QRulerView* view = window().GetActiveView();
    emit view->SelectChanged(0, 0, 1, 1, 0, 1, 1);
    QVERIFY(action("actionmirrorTB")->isEnabled());
    QVERIFY(action("actionarrayObj")->isEnabled());
    QVERIFY(!action("actionAlignLeft")->isEnabled());
    QVERIFY(!action("actionComposite")->isEnabled());
    QCOMPARE(m_Window->child<QLabel>("labelSelectCnt")->text(), QStringLiteral("选择对象个数:1"));
    emit view->SelectChanged(0, 0, 1, 1, 0, 2, 1);
    QVERIFY(action("actionAlignLeft")->isEnabled());
    QVERIFY(action("actionsameSize")->isEnabled());
    QVERIFY(action("actionComposite")->isEnabled());
    emit view->SelectChanged(0, 0, 1, 1, 0, 0, -1);
    QVERIFY(!action("actionmirrorLR")->isEnabled());
    QVERIFY(!action("actionAlignTop")->isEnabled());
    // A view that is not active any more is not listened to.
    window().NewFile(file("b"));
    emit view->SelectChanged(0, 0, 1, 1, 0, 5, 1);
    QCOMPARE(m_Window->child<QLabel>("labelSelectCnt")->text(), QStringLiteral("选择对象个数:0"));
}

void DocumentsTest::undo_and_redo_follow_the_document() {
    window().NewFile(file("a"));
    QRulerView* view = window().GetActiveView();
    QVERIFY(!action("actionUnDo")->isEnabled());
    view->AddMarkPoint(QPointF(0, 0));
    QTRY_VERIFY(action("actionUnDo")->isEnabled());
    QVERIFY(!action("actionReDo")->isEnabled());
    action("actionUnDo")->trigger();
    QTRY_VERIFY(action("actionReDo")->isEnabled());
    QVERIFY(!action("actionUnDo")->isEnabled());
    action("actionReDo")->trigger();
    QTRY_VERIFY(action("actionUnDo")->isEnabled());
}

void DocumentsTest::tools_exclude_one_another() {
    window().NewFile(file("a"));
    const QRulerView* view = window().GetActiveView();
    const struct {
        char const* name;
        OperatorOnView op;
    } tools[] = {{"actionAddPoint", OperatorAddPoint},
                 {"actionaddLine", OperatorAddLine},
                 {"actionAddRect", OperatorAddRect},
                 {"actionAddCircle", OperatorAddCircle},
                 {"actionAddText", OperatorAddText},
                 {"actionTeachCircle", OperatorTeachCircle},
                 {"actionTeachArc", OperatorTeachArc},
                 {"actionscaleRegion", OperatorZoomRegion},
                 {"Select", OperatorSelect}};
    for (auto const& tool : tools) {
        action(tool.name)->trigger();
        QCOMPARE(view->GetOperatorOnView(), tool.op);
        for (auto const& other : tools)
            QVERIFY2(action(other.name)->isChecked() == (other.name == tool.name), other.name);
    }
    action("actionAddRect")->trigger();
    action("actionAddRect")->trigger();
    QCOMPARE(view->GetOperatorOnView(), OperatorSelect);
    QVERIFY(action("Select")->isChecked());
    QVERIFY(!action("actionAddRect")->isChecked());
    action("Select")->trigger();
    QVERIFY(action("Select")->isChecked());
}

void DocumentsTest::tools_without_a_document_stay_off() {
    for (char const* name : {"actionTeachCircle", "actionscaleRegion"}) {
        action(name)->trigger();
        QVERIFY2(!action(name)->isChecked(), name);
    }
    for (char const* name : {"actionzoomIn", "actionzoomOut", "actionscaleSelect", "actionscaleReset", "actionSort"})
        action(name)->trigger();
}

void DocumentsTest::pointer_position_is_shown() {
    window().NewFile(file("a"));
    emit window().GetActiveView()->MouseMoveEvent(QPointF(-1.23456, 20), QPoint(3, 4));
    QCOMPARE(m_Window->child<QLabel>("labelMousePos")->text(), QStringLiteral("X:-1.235,Y:20.000"));
}

void DocumentsTest::save_shows_a_box() {
    window().NewFile(file("a"));
    DialogAnswerer answerer;
    answerer.press(QMessageBox::Ok);
    action("actionSaveFile")->trigger();
    QVERIFY(answerer.waitUntilAnswered());
    QCOMPARE(answerer.seen().at(0).title, QStringLiteral("保存"));
    QCOMPARE(answerer.seen().at(0).text, QStringLiteral("保存成功"));
    // A directory in the file's place cannot be replaced.
    QVERIFY(QFile::remove(file("a")));
    QVERIFY(QDir().mkpath(file("a")));
    answerer.press(QMessageBox::Ok);
    action("actionSaveFile")->trigger();
    QVERIFY(answerer.waitUntilAnswered());
    QCOMPARE(answerer.seen().at(1).text, QStringLiteral("保存失败"));
}

void DocumentsTest::save_all_shows_one_box_even_without_a_document() {
    for (int documents : {0, 2}) {
        for (int i = 0; i < documents; ++i)
            window().NewFile(file(i ? "a" : "b"));
        DialogAnswerer answerer;
        answerer.press(QMessageBox::Ok);
        QVERIFY(QMetaObject::invokeMethod(&window(), "onSaveAllFile", Qt::DirectConnection));
        QVERIFY(answerer.waitUntilAnswered());
        QCOMPARE(answerer.texts(), QStringList{QStringLiteral("保存成功")});
    }
}

void DocumentsTest::the_views_callback_is_the_windows() {
    window().NewFile(file("a"));
    QRulerView* view = window().GetActiveView();
    view->SetCallBackMirrorPt(nullptr);
    QCOMPARE(window().GetCurDoc(), view);
    QVERIFY(window().GetActiveView() == window().GetCurDoc());
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
