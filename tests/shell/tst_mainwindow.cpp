// SPDX-License-Identifier: MIT
#include "engine/class_cardpara.h"
#include "engine/externmodules.h"
#include "engine/languagemanager.h"
#include "engine/markcardinstance.h"
#include "engine/movecardmanager.h"
#include "engine/rundatagather.h"
#include "support/approot.h"
#include "tests/shell/windowcase.h"

#include <QAction>
#include <QDir>
#include <QFile>
#include <QLabel>
#include <QSet>
#include <QSignalSpy>
#include <QTimerEvent>
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

/// Which timers of an object fire.
class TimerNumbers : public QObject {
public:
    QSet<int> seen;
    int turns = 0;

    bool eventFilter(QObject*, QEvent* event) override {
        if (event->type() == QEvent::Timer) {
            seen.insert(static_cast<QTimerEvent*>(event)->timerId());
            ++turns;
        }
        return false;
    }
};

} // namespace

/// The main window from its construction to its end.
class MainWindowTest : public QObject, private WindowCase {
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
    void a_failed_card_is_told_and_not_polled();
    void a_remote_console_does_not_open_the_card();
    void switching_the_mode_is_stored_and_shown();
    void start_up_opens_what_is_set_data();
    void start_up_opens_what_is_set();
    void a_ready_output_that_is_not_fitted_is_not_written();
    void start_up_is_noted();
    void every_show_starts_a_further_timer();
    void second_show_starts_no_second_input_thread();
    void lamps_of_the_status_bar_follow_the_stack_light();
    void mark_window_state_may_be_asked_on_any_thread();
    void a_visible_dialog_blocks_the_other_and_is_centred();
    void a_dialog_inside_the_window_stays_unless_forced();
    void a_move_may_be_asked_for_on_any_thread();
    void debug_lines_go_to_their_file();
    void what_the_operator_is_told_stays_in_the_debug_file();
    void mirror_point_reaches_the_signal();
    void axes_are_homed_at_start_when_set();
    void exit_with_a_document_keeps_the_recent_file();
};

void MainWindowTest::initTestCase() {
    QVERIFY(hasRoot());
}

void MainWindowTest::init() {
    beginCase();
}

void MainWindowTest::cleanup() {
    endCase();
    Class_CardPara::Instance()->HomeAtStart = false;
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
    const QDateTime before = QDateTime::currentDateTime();
    start(false);
    QVERIFY(!window().isVisible());
    COMPARE_JOURNAL(machineJournal(),
                    {call("VZ_SetFuncMessageDisp", 1), call("OpenCard"), call("InitMoveCard"), call("VZ_GetHdVer"),
                     call("SetOutputBit", kRed, 0), call("SetOutputBit", kGreen, 0), call("SetOutputBit", kYellow, 1)});
    const QDateTime opened = RunDataGather::Instance()->GetOpenTimeStamp();
    QVERIFY(opened >= before && opened <= QDateTime::currentDateTime());
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
    QTest::newRow("multi") << 2 << true << 2 << QStringList{"7", "1"};
    QTest::newRow("unknown") << 17 << true << 0 << QStringList{"7", "0"};
    QTest::newRow("single, no ready output") << 1 << false << 1 << QStringList();
    QTest::newRow("multi, no ready output") << 2 << false << 2 << QStringList();
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

void MainWindowTest::a_ready_output_that_is_not_fitted_is_not_written() {
    IOOutputSet::Instance()->SetEnableReadyOut(true);
    IOOutputSet::Instance()->SetReadyOut(-1);
    start();
    machine().clearJournal();
    window().StartUp();
    action("actionMark")->trigger();
    window().ShowMultDocMarkWindow();
    QCOMPARE(machineCalls("SetOutputBit"), 0);
}

void MainWindowTest::start_up_is_noted() {
    SystemParam::Instance()->SetStartUpMark(17);
    start(false);
    window().StartUp();
    QByteArray log;
    const QDir folder(tessera::rootPath(QStringLiteral("/日志文件")));
    for (QString const& name : folder.entryList(QDir::Files)) {
        if (name != QLatin1String("Debug.txt"))
            log += m_Root.read(QStringLiteral("/日志文件/") + name);
    }
    QVERIFY(log.contains("开软件启动方式:17"));
}

/// A show overwrites the number of the timer of the one before, so that closing ends the last one alone.
void MainWindowTest::every_show_starts_a_further_timer() {
    TimerNumbers timers;
    start(false);
    window().installEventFilter(&timers);
    window().show();
    QTRY_COMPARE(timers.seen.size(), 1);
    window().hide();
    window().show();
    QTRY_COMPARE(timers.seen.size(), 2);
    window().close();
    timers.seen.clear();
    timers.turns = 0;
    QTRY_VERIFY(timers.turns >= 4);
    QCOMPARE(timers.seen.size(), 1);
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

void MainWindowTest::debug_lines_go_to_their_file() {
    start(false);
    window().SaveDebugText(QStringLiteral("first 行"));
    window().SaveDebugText(QStringLiteral("second"));
    QVERIFY(m_Root.read(QStringLiteral("/日志文件/Debug.txt")).startsWith("first 行\nsecond\n"));
}

void MainWindowTest::what_the_operator_is_told_stays_in_the_debug_file() {
    QFile::remove(tessera::rootPath(QStringLiteral("/日志文件/Debug.txt")));
    start(false);
    window().ShowTextsSub(QStringLiteral("one"), DebugInfoAlarm);
    std::thread([this] { window().SetTextsSub({"two", "three"}, {DebugInfoAlarm, DebugInfoAlarm}); }).join();
    QTRY_COMPARE(m_Window->statusList()->count(), 2);
    window().ClearTextSub();
    QCOMPARE(m_Root.read(QStringLiteral("/日志文件/Debug.txt")), QByteArray("one\ntwo\nthree\n"));
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
