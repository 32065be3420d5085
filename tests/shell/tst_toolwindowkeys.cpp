// SPDX-License-Identifier: MIT
#include "multidoc/multidocmark.h"
#include "run/formteaching.h"
#include "run/redlooppreview.h"
#include "tests/shell/windowcase.h"

#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QWindow>

using namespace tests;

namespace {

/// Slow enough that a job of one point is still under way when the test looks at it.
constexpr double kSlow = 0.0001;

} // namespace

/// Keys that are pressed while a tool window of the main window is the active one. They come by way of the window
/// system, to whatever has the focus there.
class ToolWindowKeysTest : public QObject, private WindowCase {
    Q_OBJECT

private slots:
    void initTestCase();
    void init();
    void cleanup();

    void function_keys_open_the_run_dialog_data();
    void function_keys_open_the_run_dialog();
    void function_keys_without_response_do_nothing_data();
    void function_keys_without_response_do_nothing();
    void f8_stops_the_document_of_the_project_in_front();
    void f6_runs_and_f8_stops_under_the_teaching_window();
    void f6_confirms_points_in_front_of_the_document();
    void f6_confirms_circles_in_front_of_the_document();
    void f8_ends_the_loop_under_its_arrows();
    void direction_keys_move_the_looping_preview_data();
    void direction_keys_move_the_looping_preview();
    void direction_keys_without_a_preview_stay_in_the_window();
    void keys_of_the_run_dialog_stay_there();

private:
    /// The tool window of this class name, up and active; a press of a button has left the focus in it.
    QWidget* openTool(QString const& name) {
        QWidget* tool = nullptr;
        if (name == QLatin1String("MultiDocMark")) {
            window().ShowMultDocMarkWindow();
            tool = MultiDocMark::Instance();
        } else if (name == QLatin1String("FormTeaching")) {
            action("actionTeaching")->trigger();
            tool = m_Window->child<FormTeaching>("FormTeaching");
        } else {
            action("actionRedLoopPreview")->trigger();
            tool = m_Window->child<RedLoopPreview>("RedLoopPreview");
        }
        toFront(tool);
        return tool;
    }
    static void toFront(QWidget* tool) {
        tool->activateWindow();
        QTRY_COMPARE(QApplication::activeWindow(), tool);
        for (QPushButton* button : tool->findChildren<QPushButton*>()) {
            if (button->focusPolicy() != Qt::NoFocus)
                button->setFocus();
        }
    }
    static void press(QWidget* tool, Qt::Key key) {
        QVERIFY(tool->isActiveWindow());
        QTest::keyClick(tool->windowHandle(), key);
    }
    static void clickIn(QWidget* tool, char const* name) {
        auto* button = tool->findChild<QAbstractButton*>(QString::fromLatin1(name));
        QVERIFY2(button, name);
        QTest::mouseClick(button, Qt::LeftButton);
    }
    static int objects(QRulerView* view) {
        int objects = 0;
        int vertices = 0;
        view->GetDocStatistics(objects, vertices);
        return objects;
    }
    static QPointF selected(QRulerView* view) {
        double x = 0.0, y = 0.0, width = 0.0, height = 0.0, angle = 0.0;
        view->GetSelectObjPos(x, y, width, height, angle);
        return {x, y};
    }
    bool running(int type) {
        const sim::SimCardState state = machine().state();
        return state.type == type && state.activity == sim::SimActivity::Running;
    }
    static void toolRows() {
        QTest::addColumn<QString>("tool");
        for (char const* tool : {"MultiDocMark", "FormTeaching", "RedLoopPreview"})
            QTest::newRow(tool) << QString::fromLatin1(tool);
    }
};

void ToolWindowKeysTest::initTestCase() {
    QVERIFY(hasRoot());
}

void ToolWindowKeysTest::init() {
    beginCase();
    start();
    m_Window->newDocument();
    machine().setSpeed(0.0);
}

void ToolWindowKeysTest::cleanup() {
    machine().setSpeed(0.0);
    if (Form_Marking::Instance()->IsRunning())
        Form_Marking::Instance()->StopMark();
    QTRY_VERIFY(!Form_Marking::Instance()->IsRunning());
    endCase();
}

void ToolWindowKeysTest::function_keys_open_the_run_dialog_data() {
    QTest::addColumn<QString>("tool");
    QTest::addColumn<int>("key");
    for (char const* tool : {"FormTeaching", "RedLoopPreview"}) {
        for (Qt::Key key : {Qt::Key_F6, Qt::Key_F7, Qt::Key_F8}) {
            if (key != Qt::Key_F6 || qstrcmp(tool, "FormTeaching") != 0) // there F6 confirms a point
                QTest::addRow("%s F%d", tool, key - Qt::Key_F1 + 1) << QString::fromLatin1(tool) << int(key);
        }
    }
}

void ToolWindowKeysTest::function_keys_open_the_run_dialog() {
    QFETCH(QString, tool);
    QFETCH(int, key);
    QWidget* front = openTool(tool);
    QCOMPARE(window().MarkWindowIsVisible(), 0);
    press(front, Qt::Key(key));
    QCOMPARE(window().MarkWindowIsVisible(), 1);
}

void ToolWindowKeysTest::function_keys_without_response_do_nothing_data() {
    toolRows();
}

void ToolWindowKeysTest::function_keys_without_response_do_nothing() {
    QFETCH(QString, tool);
    QWidget* front = openTool(tool);
    const int before = window().MarkWindowIsVisible();
    SystemParam::Instance()->m_nResponseShortcut = 0;
    for (Qt::Key key : {Qt::Key_F5, Qt::Key_F6, Qt::Key_F7, Qt::Key_F8})
        press(front, key);
    QCOMPARE(window().MarkWindowIsVisible(), before);
    QCOMPARE(objects(window().GetActiveView()), 1);
}

void ToolWindowKeysTest::f8_stops_the_document_of_the_project_in_front() {
    MultiDocMark* project = MultiDocMark::Instance();
    QWidget* front = openTool(QStringLiteral("MultiDocMark"));
    project->StartMark();
    QTRY_COMPARE(int(project->GetMarkStatus()), int(MultiMarkWaiting));
    machine().clearJournal();
    press(front, Qt::Key_F6);
    press(front, Qt::Key_F7);
    QVERIFY(machineJournal().isEmpty());
    press(front, Qt::Key_F8);
    QCOMPARE(machineCalls("StopMark"), 1);
    QCOMPARE(window().MarkWindowIsVisible(), 2);
    clickIn(front, "pushButtonStop");
    QTRY_COMPARE(int(project->GetMarkStatus()), int(MultiMarkIdle));
    project->close();
}

void ToolWindowKeysTest::f6_runs_and_f8_stops_under_the_teaching_window() {
    QWidget* front = openTool(QStringLiteral("FormTeaching"));
    window().GetActiveView()->SetOperatorOnView(OperatorSelect);
    window().ShowNormalMarkWindow();
    toFront(front);
    machine().setSpeed(kSlow);
    press(front, Qt::Key_F6);
    QTRY_VERIFY(running(0));
    press(front, Qt::Key_F8);
    QTRY_VERIFY(!Form_Marking::Instance()->IsRunning());
}

void ToolWindowKeysTest::f6_confirms_points_in_front_of_the_document() {
    QWidget* front = openTool(QStringLiteral("FormTeaching"));
    QRulerView* view = window().GetActiveView();
    clickIn(front, "radioButtonX4");
    clickIn(front, "pushButtonRight");
    clickIn(front, "pushButtonUp");
    press(front, Qt::Key_F6);
    QCOMPARE(objects(view), 2);
    QCOMPARE(selected(view), QPointF(10, 10));
    QCOMPARE(window().MarkWindowIsVisible(), 0);
}

/// The window of the points steers the places of a circle as well.
void ToolWindowKeysTest::f6_confirms_circles_in_front_of_the_document() {
    QWidget* front = openTool(QStringLiteral("FormTeaching"));
    QRulerView* view = window().GetActiveView();
    action("actionTeachCircle")->trigger();
    QCOMPARE(view->GetOperatorOnView(), OperatorTeachCircle);
    toFront(front);
    clickIn(front, "radioButtonX4");
    for (char const* way : {"pushButtonRight", "pushButtonUp", "pushButtonLeft"}) {
        QCOMPARE(objects(view), 1);
        clickIn(front, way);
        press(front, Qt::Key_F6);
    }
    QCOMPARE(objects(view), 2);
    double x = 0.0, y = 0.0, width = 0.0, height = 0.0, angle = 0.0;
    view->GetSelectObjPos(x, y, width, height, angle);
    QVERIFY(qAbs(width - 10 * M_SQRT2) < 0.01 && qAbs(height - 10 * M_SQRT2) < 0.01);
    QCOMPARE(window().MarkWindowIsVisible(), 0);
}

void ToolWindowKeysTest::f8_ends_the_loop_under_its_arrows() {
    machine().setSpeed(kSlow);
    window().ShowNormalMarkWindow();
    QWidget* front = openTool(QStringLiteral("RedLoopPreview"));
    QTRY_VERIFY(running(1));
    press(front, Qt::Key_F8);
    QTRY_VERIFY(!Form_Marking::Instance()->IsRunning());
    QVERIFY(front->isVisible());
}

void ToolWindowKeysTest::direction_keys_move_the_looping_preview_data() {
    QTest::addColumn<QString>("tool");
    QTest::addColumn<int>("key");
    QTest::addColumn<QPointF>("by");
    const struct {
        Qt::Key key;
        QPointF by;
    } rows[] = {{Qt::Key_Left, {-2, 0}}, {Qt::Key_Up, {0, 2}}, {Qt::Key_Right, {2, 0}}, {Qt::Key_Down, {0, -2}}};
    for (auto const& row : rows)
        QTest::addRow("arrows %d", int(row.key)) << QStringLiteral("RedLoopPreview") << int(row.key) << row.by;
    QTest::newRow("teaching") << QStringLiteral("FormTeaching") << int(Qt::Key_Right) << QPointF(2, 0);
}

void ToolWindowKeysTest::direction_keys_move_the_looping_preview() {
    QFETCH(QString, tool);
    QFETCH(int, key);
    QFETCH(QPointF, by);
    machine().setSpeed(kSlow);
    QRulerView* view = window().GetActiveView();
    view->SetKeyMoveDist(2.0);
    QWidget* front = openTool(tool);
    if (tool != QLatin1String("RedLoopPreview"))
        Form_Marking::Instance()->StartMarkPreview(true, true, 10, MarkTypeRedPreview);
    QTRY_VERIFY(running(1) && window().IsRedView());
    const QPointF before = selected(view);
    QWidget const* focus = front->focusWidget();
    QVERIFY(focus);
    machine().clearJournal();
    press(front, Qt::Key(key));
    QTRY_COMPARE(selected(view) - before, by);
    QTRY_COMPARE(machineCalls("StartMark"), 1);
    QCOMPARE(front->focusWidget(), focus);
    QVERIFY(Form_Marking::Instance()->IsRunning());
}

void ToolWindowKeysTest::direction_keys_without_a_preview_stay_in_the_window() {
    QRulerView* view = window().GetActiveView();
    view->SetKeyMoveDist(2.0);
    QWidget* front = openTool(QStringLiteral("FormTeaching"));
    const QPointF before = selected(view);
    front->findChild<QRadioButton*>(QStringLiteral("radioButtonX3"))->setFocus();
    press(front, Qt::Key_Right);
    QVERIFY(front->findChild<QRadioButton*>(QStringLiteral("radioButtonX4"))->isChecked());
    QCOMPARE(selected(view), before);
}

void ToolWindowKeysTest::keys_of_the_run_dialog_stay_there() {
    window().ShowNormalMarkWindow();
    Form_Marking* dialog = Form_Marking::Instance();
    toFront(dialog);
    machine().clearJournal();
    for (Qt::Key key : {Qt::Key_F6, Qt::Key_F7, Qt::Key_F8})
        press(dialog, key);
    QVERIFY(!dialog->IsRunning());
    QVERIFY(machineJournal().isEmpty());
}

QTEST_MAIN(ToolWindowKeysTest)
#include "tst_toolwindowkeys.moc"
