// SPDX-License-Identifier: MIT
#include "engine/class_cardpara.h"
#include "engine/externmodules.h"
#include "engine/languagemanager.h"
#include "engine/markcardinstance.h"
#include "engine/movecardmanager.h"
#include "shell/windowgeometry.h"
#include "support/approot.h"
#include "tests/shell/windowfixture.h"

#include <QAction>
#include <QDir>
#include <QFile>
#include <QLabel>
#include <QMenu>
#include <QMenuBar>
#include <QScreen>
#include <QSignalSpy>
#include <QStatusBar>
#include <QStyle>
#include <QToolBar>
#include <thread>

using namespace tests;

namespace {

/// Running threads of this name, which the system cuts to 15 characters.
int threadsNamed(char const* name) {
    int count = 0;
    const QDir tasks(QStringLiteral("/proc/self/task"));
    for (QString const& task : tasks.entryList(QDir::Dirs | QDir::NoDotAndDotDot)) {
        QFile file(tasks.filePath(task + QStringLiteral("/comm")));
        if (file.open(QIODevice::ReadOnly) && file.readAll().trimmed() == QByteArray(name).left(15))
            ++count;
    }
    return count;
}

/// The hardware word of a card whose version carries a suffix.
constexpr std::uint32_t kSuffixFamily = 1U << 22;

} // namespace

/// The main window from its construction to its end.
class MainWindowTest : public QObject {
    Q_OBJECT

private slots:
    void initTestCase();
    void init();
    void cleanup();

    void clearing_before_the_window_exists_closes_the_cards();
    void start_in_its_order();
    void end_in_its_order();
    void the_command_server_runs_with_a_controlling_station();
    void nothing_is_left_running();
    void window_is_made_as_told();
    void version_comes_from_its_file();
    void card_version_has_its_suffix_data();
    void card_version_has_its_suffix();
    void a_failed_card_is_told_and_not_polled();
    void a_remote_console_does_not_open_the_card();
    void switching_the_mode_is_stored_and_shown();
    void start_up_opens_what_is_set_data();
    void start_up_opens_what_is_set();
    void second_show_starts_no_second_input_thread();
    void lamps_of_the_status_bar_follow_the_stack_light();
    void mark_window_state_may_be_asked_on_any_thread();
    void a_visible_dialog_blocks_the_other_and_is_centred();
    void a_dialog_inside_the_window_stays_unless_forced();
    void a_move_may_be_asked_for_on_any_thread();
    void custom_ui_types_other_than_whole_change_nothing_data();
    void custom_ui_types_other_than_whole_change_nothing();
    void whole_custom_ui_switches_the_editor();
    void a_run_locks_the_editing_part();
    void optional_tools_follow_the_work_mode_data();
    void optional_tools_follow_the_work_mode();
    void camera_tool_hides_the_text_tool();
    void function_keys_without_a_dialog_open_it();
    void function_keys_with_the_dialog_run_it();
    void function_keys_without_response_do_nothing();
    void f6_without_a_document_does_nothing();
    void buffer_time_is_shown_with_three_decimals();
    void debug_lines_go_to_their_file();
    void mirror_point_reaches_the_signal();
    void axes_are_homed_at_start_when_set();
    void direction_keys_wait_one_at_a_time();
    void exit_with_a_document_keeps_the_recent_file();

private:
    TemporaryRoot m_Root;
    std::unique_ptr<RunningWindow> m_Window;
    MainWindow& window() { return **m_Window; }
    void start(bool show = true) {
        m_Window.reset();
        m_Window = std::make_unique<RunningWindow>(show);
    }
    QLabel* label(char const* name) { return m_Window->child<QLabel>(name); }
    QAction* action(char const* name) { return m_Window->child<QAction>(name); }
};

void MainWindowTest::initTestCase() {
    QVERIFY(m_Root.isValid());
}

void MainWindowTest::init() {
    resetMachine();
    machine().setHardwareBits(0);
}

void MainWindowTest::cleanup() {
    m_Window.reset();
    Class_CardPara::Instance()->HomeAtStart = false;
    QDir(tessera::rootPath(QStringLiteral("/MarkFile"))).removeRecursively();
}

/// First in this file: no card object exists in this process yet. Then once more with the card of a former window.
void MainWindowTest::clearing_before_the_window_exists_closes_the_cards() {
    QVERIFY(!MarkCardInstance::Instance());
    MainWindow::ClearMainWnd();
    QVERIFY(machineJournal().isEmpty());
    start(false);
    m_Window->close();
    MarkCardInstance::Instance()->OpenCard();
    MoveCardManager::Instance()->InitMoveCard();
    QVERIFY(MoveCardManager::Instance()->IsCardOpened());
    LoadExternToolModules();
    machine().clearJournal();
    MainWindow::ClearMainWnd();
    COMPARE_JOURNAL(machineJournal(), {call("CloseCard"), call("CloseMoveCard")});
    QVERIFY(!MoveCardManager::Instance()->IsCardOpened());
    QVERIFY(GetExternModules().isEmpty());
}

void MainWindowTest::start_in_its_order() {
    start(false);
    QVERIFY(!window().isVisible());
    COMPARE_JOURNAL(machineJournal(),
                    {call("VZ_SetFuncMessageDisp", 1), call("OpenCard"), call("InitMoveCard"),
                     call("SetOutputBit", kRed, 0), call("SetOutputBit", kGreen, 0), call("SetOutputBit", kYellow, 1)});
    QVERIFY(Form_Marking::Instance());
    QVERIFY(!Form_Marking::Instance()->isVisible());
    QCOMPARE(label("labelCardState")->text(), SystemParam::Instance()->GetCardName() + QStringLiteral("卡打开成功  "));
    QCOMPARE(label("labelCardState")->palette().color(QPalette::WindowText), QColor(Qt::blue));
    QCOMPARE(label("labelCardState")->font().pixelSize(), 18);
}

void MainWindowTest::end_in_its_order() {
    start();
    machine().clearJournal();
    m_Window->close();
    COMPARE_JOURNAL(machineJournal(), {call("CloseCard"), call("CloseMoveCard")});
    QVERIFY(!MainWindow::Instance());
    QVERIFY(!Form_Marking::Instance());
    QVERIFY(!MarkCardInstance::Instance()->IsCardOpend());
    QVERIFY(GetExternModules().isEmpty());
}

void MainWindowTest::the_command_server_runs_with_a_controlling_station() {
    SystemParam::Instance()->SetWorkMode(3);
    start(false);
    QCOMPARE(machineCalls("InitServer"), 1);
    machine().clearJournal();
    m_Window->close();
    COMPARE_JOURNAL(machineJournal(), {call("CloseServer"), call("CloseCard"), call("CloseMoveCard")});
    SystemParam::Instance()->SetSysMode(true);
    machine().clearJournal();
    start(false);
    m_Window->close();
    QCOMPARE(machineCalls("InitServer") + machineCalls("CloseServer"), 0);
}

void MainWindowTest::nothing_is_left_running() {
    for (int round = 0; round < 3; ++round) {
        start();
        QTRY_COMPARE(threadsNamed("UpdateInputThread"), 1);
        QTRY_COMPARE(threadsNamed("KeyEventHandleThread"), 1);
        m_Window->newDocument();
        window().ShowNormalMarkWindow();
        machine().setSpeed(0.0001);
        window().IOStartRun();
        QTRY_COMPARE(threadsNamed("MarkingThread"), 1);
        m_Window->close();
        for (char const* name : {"UpdateInputThread", "KeyEventHandleThread", "MarkingThread"})
            QTRY_COMPARE(threadsNamed(name), 0);
    }
}

void MainWindowTest::window_is_made_as_told() {
    start();
    QCOMPARE(window().windowTitle(), QStringLiteral("VZ Tessera"));
    QCOMPARE(window().windowFlags() & (Qt::WindowMinimizeButtonHint | Qt::WindowMaximizeButtonHint), Qt::WindowFlags());
    QCOMPARE(window().contextMenuPolicy(), Qt::NoContextMenu);
    QCOMPARE(window().minimumSize(), QSize(800, 600));
    const QString sheet = qApp->styleSheet();
    QVERIFY(sheet.contains(QStringLiteral("labelStatus")));
    qApp->setStyleSheet(QString());
    QCOMPARE(qApp->style()->objectName(), QStringLiteral("fusion"));
    qApp->setStyleSheet(sheet);
    QCOMPARE(m_Window->child<QWidget>("widgetRight")->width(), 245);
    for (char const* name : {"labelSelectCnt", "labelMousePos", "labelBufferTime", "labelSpare"})
        QVERIFY2(label(name)->width() >= 200, name);
    QCOMPARE(label("labelMousePos")->text(), QStringLiteral("X:0.000,Y0.000"));
    QCOMPARE(label("labelBufferTime")->text(), QStringLiteral("BT:0.000ms"));
    QCOMPARE(label("labelSelectCnt")->text(), QStringLiteral("选择对象个数:0"));
    QCOMPARE(label("labelCardStatus")->text(), QStringLiteral("卡/振镜状态"));
    QVERIFY(action("Select")->isChecked());
    QVERIFY(!m_Window->child<QToolBar>("toolbar_AddMarkTool")->isEnabled());
    QVERIFY(QRegularExpression(QStringLiteral("^\\d{4}-\\d\\d-\\d\\d \\d\\d:\\d\\d:\\d\\d$"))
                .match(label("labelTime")->text())
                .hasMatch());
    for (char const* name :
         {"actionscaleRegion", "actionAddPoint", "actionAddText", "Select", "actionAddRect", "actionTeaching",
          "actionaddLine", "actionAddCircle", "actionTeachArc", "actionTeachCircle"})
        QVERIFY2(action(name)->isCheckable(), name);
    const auto* bar = m_Window->child<QToolBar>("toolBar");
    QCOMPARE(label("labelCardState")->geometry(), tessera::CardStateRect(bar->geometry(), 140));
    QCOMPARE(label("labelTime")->geometry(), tessera::TimeRect(m_Window->child<QStatusBar>("statusbar")->size()));
}

void MainWindowTest::version_comes_from_its_file() {
    start(false);
    QCOMPARE(label("labelSoftVersion")->text(), QStringLiteral("软件版本号:1.0.0  "));
    m_Window->close();
    QVERIFY(m_Root.write(QStringLiteral("version.ini"), "3.14.2\nsecond line\n"));
    start(false);
    QCOMPARE(label("labelSoftVersion")->text(), QStringLiteral("软件版本号:3.14.2  "));
    QVERIFY(QFile::remove(m_Root.path(QStringLiteral("version.ini"))));
}

void MainWindowTest::card_version_has_its_suffix_data() {
    QTest::addColumn<quint32>("bits");
    QTest::addColumn<QString>("suffix");
    QTest::newRow("none") << quint32(0) << QString();
    QTest::newRow("bit 12 alone") << quint32(1U << 12) << QString();
    QTest::newRow("45") << quint32(kSuffixFamily) << QStringLiteral("-45");
    QTest::newRow("85") << quint32(kSuffixFamily | 1U << 12) << QStringLiteral("-85");
    QTest::newRow("other family") << quint32(3U << 22 | 1U << 12) << QString();
    QTest::newRow("second bit of the family") << quint32(1U << 23) << QString();
}

void MainWindowTest::card_version_has_its_suffix() {
    QFETCH(quint32, bits);
    QFETCH(QString, suffix);
    machine().setHardwareBits(bits);
    start(false);
    QCOMPARE(label("labelCardVersion")->text(),
             QStringLiteral("卡版本号:") + MarkCardInstance::Instance()->GetCardVersion() + suffix);
}

void MainWindowTest::a_failed_card_is_told_and_not_polled() {
    QVERIFY(machine().setFault("card_open_fails", true));
    start();
    QCOMPARE(label("labelCardState")->text(), SystemParam::Instance()->GetCardName() + QStringLiteral("卡打开失败  "));
    QCOMPARE(label("labelCardState")->palette().color(QPalette::WindowText), QColor(Qt::red));
    QVERIFY(label("labelCardVersion")->text().isEmpty());
    window().ShowNormalMarkWindow();
    QVERIFY(Form_Marking::Instance()->isVisible());
    label("labelRedLamp")->setEnabled(true);
    QSignalSpy beat(&window(), &MainWindow::TimerUpDate);
    QTRY_VERIFY(beat.count() >= 3);
    QVERIFY(label("labelRedLamp")->isEnabled());
}

void MainWindowTest::a_remote_console_does_not_open_the_card() {
    SystemParam::Instance()->SetSysMode(true);
    start();
    QCOMPARE(machineCalls("OpenCard"), 0);
    QVERIFY(!MarkCardInstance::Instance()->IsCardOpend());
    QCOMPARE(label("labelCardState")->text(), SystemParam::Instance()->GetCardName() + QStringLiteral("卡打开失败  "));
    for (char const* name : {"actionMark", "actionMultiDocMark", "actionRedLoopPreview"})
        QVERIFY2(!action(name)->isVisible(), name);
    for (char const* name : {"labelBufferTime", "labelCardState", "alarmLaser", "alarmSafe", "labelCardVersion",
                             "labelCardStatus", "labelGreenLamp", "labelYellowLamp", "labelRedLamp"})
        QVERIFY2(!m_Window->child<QWidget>(name)->isVisible(), name);
    QVERIFY(!action("actionMotionSet")->isVisible());
}

void MainWindowTest::switching_the_mode_is_stored_and_shown() {
    start();
    QVERIFY(action("actionMark")->isVisible());
    QSignalSpy told(&window(), &MainWindow::SetSystemUI);
    window().SwitchSysMode(true);
    QCOMPARE(told.count(), 1);
    QVERIFY(SystemParam::Instance()->GetSysMode());
    QVERIFY(!action("actionMark")->isVisible());
    QVERIFY(!label("labelCardState")->isVisible());
    window().SwitchSysMode(false);
    QVERIFY(action("actionMark")->isVisible());
    QVERIFY(label("labelCardState")->isVisible());
}

void MainWindowTest::start_up_opens_what_is_set_data() {
    QTest::addColumn<int>("mode");
    QTest::addColumn<bool>("enabled");
    QTest::addColumn<int>("visible");
    QTest::addColumn<QStringList>("ready");
    QTest::newRow("nothing") << 0 << true << 0 << QStringList{"7", "0"};
    QTest::newRow("single") << 1 << true << 1 << QStringList{"7", "0"};
    QTest::newRow("multi") << 2 << true << 0 << QStringList{"7", "1"};
    QTest::newRow("unknown") << 17 << true << 0 << QStringList{"7", "0"};
    QTest::newRow("single, no ready output") << 1 << false << 1 << QStringList();
    QTest::newRow("multi, no ready output") << 2 << false << 0 << QStringList();
}

void MainWindowTest::start_up_opens_what_is_set() {
    QFETCH(int, mode);
    QFETCH(bool, enabled);
    QFETCH(QStringList, ready);
    SystemParam::Instance()->SetStartUpMark(mode);
    IOOutputSet::Instance()->SetEnableReadyOut(enabled);
    start();
    machine().clearJournal();
    window().StartUp();
    QTEST(window().MarkWindowIsVisible(), "visible");
    QStringList written;
    for (JournalEntry const& entry : only(machineJournal(), {"SetOutputBit"}))
        written += entry.arguments;
    QCOMPARE(written, ready);
}

void MainWindowTest::second_show_starts_no_second_input_thread() {
    start();
    QSignalSpy beat(&window(), &MainWindow::TimerUpDate);
    QTRY_VERIFY(beat.count() >= 2);
    window().hide();
    window().show();
    window().hide();
    window().show();
    QVERIFY(!tests::waitFor([] { return threadsNamed("UpdateInputThread") != 1; }, 100));
}

void MainWindowTest::lamps_of_the_status_bar_follow_the_stack_light() {
    start();
    QTRY_VERIFY(label("labelYellowLamp")->isEnabled() && !label("labelGreenLamp")->isEnabled());
    QVERIFY(!label("labelRedLamp")->isEnabled());
    IOOutputSet::Instance()->SetGreenYellow(MarkCardInstance::Instance());
    QTRY_VERIFY(label("labelYellowLamp")->isEnabled() && label("labelGreenLamp")->isEnabled());
    IOOutputSet::Instance()->SetRed(MarkCardInstance::Instance());
    QTRY_VERIFY(label("labelRedLamp")->isEnabled() && !label("labelYellowLamp")->isEnabled());
}

void MainWindowTest::mark_window_state_may_be_asked_on_any_thread() {
    start();
    std::atomic<bool> end{false};
    std::atomic<int> seen{0};
    std::thread asker([&] {
        while (!end) {
            if (window().MarkWindowIsVisible() == 1)
                ++seen;
        }
    });
    for (int i = 0; i < 20; ++i) {
        window().ShowNormalMarkWindow();
        Form_Marking::Instance()->close();
    }
    window().ShowNormalMarkWindow();
    const bool told = tests::waitFor([&] { return seen > 0; });
    end = true;
    asker.join();
    QVERIFY(told);
}

void MainWindowTest::a_visible_dialog_blocks_the_other_and_is_centred() {
    IOOutputSet::Instance()->SetEnableReadyOut(true);
    start();
    window().setGeometry(0, 0, 1024, 600);
    window().ShowNormalMarkWindow();
    QWidget* dialog = Form_Marking::Instance();
    dialog->move(5000, 5000);
    machine().clearJournal();
    window().ShowMultDocMarkWindow();
    QCOMPARE(window().MarkWindowIsVisible(), 1);
    QCOMPARE(dialog->geometry(), QRect(319, 210, 385, 180));
    COMPARE_JOURNAL(only(machineJournal(), {"SetOutputBit"}), {call("SetOutputBit", kReady, 1)});
    machine().clearJournal();
    dialog->move(5000, 5000);
    action("actionMark")->trigger();
    QCOMPARE(dialog->geometry(), QRect(319, 210, 385, 180));
    COMPARE_JOURNAL(only(machineJournal(), {"SetOutputBit"}), {call("SetOutputBit", kReady, 0)});
    machine().clearJournal();
    dialog->close();
    action("actionMultiDocMark")->trigger();
    COMPARE_JOURNAL(only(machineJournal(), {"SetOutputBit"}), {call("SetOutputBit", kReady, 1)});
}

void MainWindowTest::a_dialog_inside_the_window_stays_unless_forced() {
    start();
    window().setGeometry(0, 0, 1024, 600);
    window().ShowNormalMarkWindow();
    QWidget* dialog = Form_Marking::Instance();
    dialog->setGeometry(10, 20, 385, 180);
    window().MoveMarkWindow2Center(false);
    QCOMPARE(dialog->geometry(), QRect(10, 20, 385, 180));
    window().MoveMarkWindow2Center(true);
    QCOMPARE(dialog->geometry(), QRect(319, 210, 385, 180));
    dialog->setGeometry(-1, 20, 385, 180);
    window().MoveMarkWindow2Center(false);
    QCOMPARE(dialog->geometry(), QRect(319, 210, 385, 180));
}

void MainWindowTest::a_move_may_be_asked_for_on_any_thread() {
    start();
    window().setGeometry(0, 0, 1024, 600);
    window().ShowNormalMarkWindow();
    QWidget* dialog = Form_Marking::Instance();
    dialog->setGeometry(2000, 20, 385, 180);
    std::thread([this] { window().MoveMarkWindowToCenter(false); }).join();
    QCOMPARE(dialog->geometry().x(), 2000);
    QTRY_COMPARE(dialog->geometry(), QRect(319, 210, 385, 180));
}

void MainWindowTest::custom_ui_types_other_than_whole_change_nothing_data() {
    QTest::addColumn<int>("type");
    QTest::newRow("none") << 0;
    QTest::newRow("further tab") << 2;
}

void MainWindowTest::custom_ui_types_other_than_whole_change_nothing() {
    QFETCH(int, type);
    SystemParam::Instance()->m_nCustomUIType = type;
    start();
    window().SetUIMode(false);
    QVERIFY(m_Window->child<QWidget>("centralwidget")->isVisible());
    // Had the state been taken over, this would hide the editor once the type is 1.
    window().SetUIMode(true);
    SystemParam::Instance()->m_nCustomUIType = 1;
    action("actionChangeDebug")->trigger();
    QVERIFY(m_Window->child<QWidget>("centralwidget")->isVisible());
    QVERIFY(!action("actionChangeDebug")->isVisible());
}

void MainWindowTest::whole_custom_ui_switches_the_editor() {
    SystemParam::Instance()->m_nCustomUIType = 1;
    start();
    window().setGeometry(0, 0, 1280, 720);
    window().SetUIMode(false);
    for (char const* name : {"centralwidget", "toolBar_main", "toolBar", "statusbar", "labelCardState", "labelTime"})
        QVERIFY2(!m_Window->child<QWidget>(name)->isVisible(), name);
    QVERIFY(window().menuBar()->isVisible());
    SystemParam::Instance()->m_nHideMainMenu = 1;
    window().SetUIMode(false);
    QVERIFY(!window().menuBar()->isVisible());
    window().SetUIMode(true);
    QVERIFY(window().menuBar()->isVisible());
    for (char const* name : {"centralwidget", "toolBar_main", "toolBar", "statusbar", "labelCardState", "labelTime"})
        QVERIFY2(m_Window->child<QWidget>(name)->isVisible(), name);
    QCOMPARE(label("labelCardState")->geometry(),
             tessera::CardStateRect(m_Window->child<QToolBar>("toolBar_main")->geometry(), 120));
}

void MainWindowTest::a_run_locks_the_editing_part() {
    start();
    for (bool run : {true, false}) {
        window().SetMarkStatus(run);
        for (char const* name : {"centralwidget", "toolBar_main", "menuBar"})
            QCOMPARE(m_Window->child<QWidget>(name)->isEnabled(), !run);
        QVERIFY(m_Window->child<QWidget>("toolBar")->isEnabled());
    }
}

void MainWindowTest::optional_tools_follow_the_work_mode_data() {
    QTest::addColumn<int>("mode");
    QTest::addColumn<bool>("enabled");
    QTest::addColumn<bool>("visible");
    QTest::newRow("marking, off") << 0 << false << true;
    QTest::newRow("marking, on") << 0 << true << true;
    QTest::newRow("welding, off") << 1 << false << false;
    QTest::newRow("welding, on") << 1 << true << false;
    QTest::newRow("own, off") << 2 << false << false;
    QTest::newRow("own, on") << 2 << true << true;
    QTest::newRow("remote, on") << 3 << true << true;
}

void MainWindowTest::optional_tools_follow_the_work_mode() {
    QFETCH(int, mode);
    QFETCH(bool, enabled);
    QFETCH(bool, visible);
    SystemParam* system = SystemParam::Instance();
    start();
    system->SetWorkMode(mode);
    system->SetEnableCodeTool(enabled);
    system->SetEnableSplitLaserSet(enabled);
    system->SetEnableFlyMarkTool(enabled);
    window().onCodeToolVisible();
    window().onSplitLaserSetVisible();
    window().onFlyMarkSetteingVisible();
    for (char const* name : {"actionAddText", "actionSplitLaserSet", "actionFlyMarkingSetting"})
        QVERIFY2(action(name)->isVisible() == visible, name);
    system->SetWorkMode(0);
}

void MainWindowTest::camera_tool_hides_the_text_tool() {
    SystemParam* system = SystemParam::Instance();
    start();
    system->SetWorkMode(1);
    action("actionAddText")->setVisible(true);
    action("actionCCD")->setVisible(true);
    window().onCcdToolVisible();
    QVERIFY(!action("actionAddText")->isVisible());
    QVERIFY(action("actionCCD")->isVisible());
    system->SetWorkMode(0);
    action("actionCCD")->setVisible(false);
    window().onCcdToolVisible();
    QVERIFY(action("actionCCD")->isVisible());
}

void MainWindowTest::function_keys_without_a_dialog_open_it() {
    start();
    m_Window->newDocument();
    for (Qt::Key key : {Qt::Key_F6, Qt::Key_F7, Qt::Key_F8}) {
        QTest::keyClick(&window(), key);
        QCOMPARE(window().MarkWindowIsVisible(), 1);
        QVERIFY(!Form_Marking::Instance()->IsRunning());
        Form_Marking::Instance()->close();
    }
    QTest::keyClick(&window(), Qt::Key_F9);
    QTest::keyClick(&window(), Qt::Key_F5);
    QCOMPARE(window().MarkWindowIsVisible(), 0);
}

void MainWindowTest::function_keys_with_the_dialog_run_it() {
    start();
    window().setGeometry(0, 0, 1024, 600);
    m_Window->newDocument();
    window().ShowNormalMarkWindow();
    Form_Marking::Instance()->setGeometry(1, 1, 385, 180);
    QTest::keyClick(&window(), Qt::Key_F5);
    QCOMPARE(Form_Marking::Instance()->geometry(), QRect(319, 210, 385, 180));
    machine().setSpeed(0.0001);
    QTest::keyClick(&window(), Qt::Key_F6);
    QTRY_COMPARE(machine().state().activity, sim::SimActivity::Running);
    QCOMPARE(machine().state().type, 0);
    QTest::keyClick(&window(), Qt::Key_F8);
    QTRY_VERIFY(!Form_Marking::Instance()->IsRunning());
    machine().setSpeed(0.0);
    QTest::keyClick(&window(), Qt::Key_F7);
    QCOMPARE(machine().state().type, 1);
    QTRY_COMPARE(window().centralWidget()->isEnabled(), true);
}

void MainWindowTest::function_keys_without_response_do_nothing() {
    SystemParam::Instance()->m_nResponseShortcut = 0;
    start();
    m_Window->newDocument();
    for (Qt::Key key : {Qt::Key_F5, Qt::Key_F6, Qt::Key_F7, Qt::Key_F8})
        QTest::keyClick(&window(), key);
    QCOMPARE(window().MarkWindowIsVisible(), 0);
}

void MainWindowTest::f6_without_a_document_does_nothing() {
    start();
    QTest::keyClick(&window(), Qt::Key_F6);
    QCOMPARE(window().MarkWindowIsVisible(), 0);
    QTest::keyClick(&window(), Qt::Key_F7);
    QCOMPARE(window().MarkWindowIsVisible(), 1);
    QTest::keyClick(&window(), Qt::Key_F6);
    QVERIFY(!Form_Marking::Instance()->IsRunning());
}

void MainWindowTest::buffer_time_is_shown_with_three_decimals() {
    start();
    m_Window->newDocument(3);
    window().ShowNormalMarkWindow();
    machine().setSpeed(0.0);
    window().IOStartRun();
    QTRY_VERIFY(machine().lastJobTime().totalMs > 0.0);
    QTRY_COMPARE(label("labelBufferTime")->text(),
                 QStringLiteral("BT: ") + QString::number(machine().state().runTimeMs, 'f', 3) + QStringLiteral(" ms"));
    QTRY_VERIFY(!Form_Marking::Instance()->IsRunning());
}

void MainWindowTest::debug_lines_go_to_their_file() {
    start(false);
    window().SaveDebugText(QStringLiteral("first 行"));
    window().SaveDebugText(QStringLiteral("second"));
    QVERIFY(m_Root.read(QStringLiteral("/日志文件/Debug.txt")).startsWith("first 行\nsecond\n"));
}

void MainWindowTest::mirror_point_reaches_the_signal() {
    MainWindow::GetCurMirrorPt(QPointF(1, 2));
    start(false);
    QSignalSpy told(&window(), &MainWindow::SetCurMirrorPos);
    MainWindow::GetCurMirrorPt(QPointF(1, 2));
    QCOMPARE(told.count(), 1);
    QCOMPARE(told.at(0).at(0).toPointF(), QPointF(1, 2));
}

void MainWindowTest::axes_are_homed_at_start_when_set() {
    Class_CardPara* para = Class_CardPara::Instance();
    para->EnableMotion = true;
    para->AxisCount = 2;
    para->HomeAtStart = true;
    para->Home[0] = {true, true, 5};
    para->Home[1] = {true, true, 1};
    machine().setSpeed(0.0);
    start(false);
    COMPARE_JOURNAL(only(machineJournal(), {"SearchHome"}),
                    {call("SearchHome", 1, 1, 0.0), call("SearchHome", 0, 1, 0.0)});
    m_Window->close();
    para->HomeAtStart = false;
    machine().clearJournal();
    start(false);
    QCOMPARE(machineCalls("SearchHome"), 0);
}

void MainWindowTest::direction_keys_wait_one_at_a_time() {
    start(false);
    QRulerView* view = m_Window->newDocument();
    QKeyEvent left(QEvent::KeyPress, Qt::Key_Left, Qt::NoModifier);
    QKeyEvent up(QEvent::KeyPress, Qt::Key_Up, Qt::NoModifier);
    QKeyEvent other(QEvent::KeyPress, Qt::Key_A, Qt::NoModifier);
    const auto waiting = [view] {
        const QMutexLocker lock(&view->m_DirKeyLock);
        return view->m_DirKeys;
    };
    window().HandDirEventOnRedView(&left);
    QVERIFY(waiting().isEmpty());
    window().SetRedVie(true);
    window().HandDirEventOnRedView(&other);
    QVERIFY(waiting().isEmpty());
    {
        // Held, so that the key thread cannot take the key between the two presses.
        const QMutexLocker lock(&view->m_DirKeyLock);
        view->m_DirKeys = {Qt::Key_Left};
    }
    window().HandDirEventOnRedView(&up);
    const QList<int> keys = waiting();
    QVERIFY(!keys.contains(Qt::Key_Left) || !keys.contains(Qt::Key_Up));
    QTRY_VERIFY(waiting().isEmpty());
    window().SetRedVie(false);
}

void MainWindowTest::exit_with_a_document_keeps_the_recent_file() {
    start();
    m_Window->newDocument(1, QStringLiteral("kept"));
    const QByteArray list = m_Root.read(QStringLiteral("/MarkFile/RecentFile.of"));
    QVERIFY(list.startsWith("1\n"));
    m_Window->close();
    QCOMPARE(m_Root.read(QStringLiteral("/MarkFile/RecentFile.of")), list);
}

QTEST_MAIN(MainWindowTest)
#include "tst_mainwindow.moc"
