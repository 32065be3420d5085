// SPDX-License-Identifier: MIT
#include "engine/glassparam.h"
#include "engine/iocheckedsys.h"
#include "tests/remote/remotefixture.h"

#include <QAction>
#include <QPushButton>
#include <QSignalSpy>

using namespace tests;

Q_DECLARE_METATYPE(std::vector<QString>)

/// Runs that the controlling station orders: refusals, the calls of a run in their order, its stop.
class ExternalRunTest : public QObject, private RemoteFixture {
    Q_OBJECT

private slots:
    void init() {
        begin();
        m_View = open(QStringLiteral("test"));
    }
    void cleanup() { end(); }

    void a_start_is_refused_in_order_data();
    void a_start_is_refused_in_order();
    void a_start_with_one_argument_is_refused_during_a_run_too();
    void a_second_start_leaves_the_first_run_alone();
    void a_start_of_a_document_without_objects_is_refused();
    void a_start_without_a_document_is_refused();
    void a_run_makes_its_calls_in_order_data();
    void a_run_makes_its_calls_in_order();
    void a_run_that_could_mark_nothing_is_told_and_ends_idle();
    void window_and_lamps_follow_a_run();
    void the_window_hears_what_the_thread_enables();
    void a_stop_makes_its_calls_in_order();
    void the_thread_is_stopped_by_its_calls_in_order();
    void a_stop_of_a_run_answers_the_run_first();
    void a_stop_ends_a_run_of_the_run_dialog_too();
    void a_stop_at_any_moment_after_the_start_is_not_lost();
    void a_run_follows_the_next_at_once();
    void a_start_in_the_moment_of_the_answer_runs();
    void a_trigger_during_a_run_does_nothing();
    void the_thread_is_idle_before_its_first_order();
    void closing_the_marked_document_ends_the_run_first();
    void a_stop_asked_for_at_the_machine_stops_a_remote_run();
    void a_door_that_pauses_stops_a_remote_run_data();
    void a_door_that_pauses_stops_a_remote_run();
    void the_end_of_the_program_stops_a_run_and_waits();

private:
    static ExternalMarkingThread& thread() {
        auto* found = response().findChild<ExternalMarkingThread*>();
        if (!found)
            qFatal("no thread");
        return *found;
    }

    QRulerView* m_View = nullptr;
};

void ExternalRunTest::a_start_is_refused_in_order_data() {
    QTest::addColumn<std::vector<QString>>("args");
    QTest::addColumn<bool>("alarm");
    QTest::addColumn<bool>("busy");
    QTest::addColumn<bool>("document");
    QTest::addColumn<QString>("text");
    const std::vector<QString> args{"0", "0"};
    QTest::newRow("no argument before all else") << std::vector<QString>{} << true << true << false << "数据格式错误";
    QTest::newRow("one argument before all else")
        << std::vector<QString>{"0"} << true << true << false << "数据格式错误";
    QTest::newRow("alarm before busy") << args << true << true << false << "安全报警";
    QTest::newRow("alarm before no document") << args << true << false << false << "安全报警";
    QTest::newRow("busy before no document") << args << false << true << false << "文档正在运行中";
    QTest::newRow("no document") << args << false << false << false << "无打开的文档";
}

void ExternalRunTest::a_start_is_refused_in_order() {
    QFETCH(std::vector<QString>, args);
    QFETCH(bool, alarm);
    QFETCH(bool, busy);
    QFETCH(bool, document);
    QFETCH(QString, text);
    if (!document)
        window().CloseAllFile();
    window().SetSafeAlarm(alarm, tessera::AlarmCurtain);
    card()->SetMarkStaus(busy ? MarkStatusRun : MarkStatusStop);
    machine().clearJournal();
    order(QStringLiteral("RunManualStart"), args);
    QCoreApplication::processEvents();
    COMPARE_JOURNAL(only(machineJournal(), {"WriteTcpMsg", "StartMark", "SetMarkStaus", "SetMarkType"}),
                    {call("WriteTcpMsg", kTag, 11, "RunManualStart", 22, 33, "1", text)});
    card()->SetMarkStaus(MarkStatusStop);
}

void ExternalRunTest::a_start_with_one_argument_is_refused_during_a_run_too() {
    startSlowly();
    order(QStringLiteral("RunManualStart"), {"0"});
    QCOMPARE(answers(), QStringList{"1|数据格式错误"});
    QCOMPARE(machine().state().activity, sim::SimActivity::Running);
    letEnd();
}

void ExternalRunTest::a_second_start_leaves_the_first_run_alone() {
    startSlowly(QStringLiteral("1"), QStringLiteral("0"));
    const int calls = runJournal().size();
    order(QStringLiteral("RunManualStart"), {"0", "1"}, 78);
    QCOMPARE(answers(), QStringList{"1|文档正在运行中"});
    QCOMPARE(runJournal().size(), calls + 1);
    QCOMPARE(machine().state().activity, sim::SimActivity::Running);
    QCOMPARE(machine().state().type, 1);
    letEnd();
    COMPARE_JOURNAL(only(machineJournal(), {"WriteTcpMsg"}), {answer("RunManualStart", "1", "文档正在运行中", 78),
                                                              answer("RunManualStart", "0", "文档执行成功")});
    QCOMPARE(machineCalls("StartMark"), 1);
}

void ExternalRunTest::a_start_of_a_document_without_objects_is_refused() {
    open(QStringLiteral("empty"), 0);
    order(QStringLiteral("RunManualStart"), {"0", "0"});
    COMPARE_JOURNAL(machineJournal(), {answer("RunManualStart", "1", "流程为空")});
}

void ExternalRunTest::a_start_without_a_document_is_refused() {
    window().CloseAllFile();
    machine().clearJournal();
    order(QStringLiteral("RunManualStart"), {"0", "0"});
    COMPARE_JOURNAL(machineJournal(), {answer("RunManualStart", "1", "无打开的文档")});
}

void ExternalRunTest::a_run_makes_its_calls_in_order_data() {
    QTest::addColumn<QString>("type");
    QTest::addColumn<QString>("option");
    QTest::addColumn<int>("cardType");
    QTest::addColumn<int>("cardOption");
    QTest::newRow("marking") << "0"
                             << "0" << 0 << 0;
    QTest::newRow("red light") << "1"
                               << "0" << 1 << 0;
    QTest::newRow("border") << "2"
                            << "0" << 2 << 0;
    QTest::newRow("another type marks") << "3"
                                        << "0" << 0 << 0;
    QTest::newRow("a negative type marks") << "-1"
                                           << "0" << 0 << 0;
    QTest::newRow("no number marks") << "red"
                                     << "x" << 0 << 0;
    QTest::newRow("option 1") << "0"
                              << "1" << 0 << 1;
    QTest::newRow("option 2 is off") << "0"
                                     << "2" << 0 << 0;
    QTest::newRow("option -1 is off") << "0"
                                      << "-1" << 0 << 0;
    QTest::newRow("no hexadecimal") << "0x2"
                                    << "0x1" << 0 << 0;
}

void ExternalRunTest::a_run_makes_its_calls_in_order() {
    QFETCH(QString, type);
    QFETCH(QString, option);
    QFETCH(int, cardType);
    QFETCH(int, cardOption);
    order(QStringLiteral("RunManualStart"), {type, option, "left aside"}, 5);
    QTRY_COMPARE(answers(), QStringList{"0|文档执行成功"});
    QTRY_VERIFY(!response().IsRunning());
    COMPARE_JOURNAL(runJournal(), {call("SetMarkStaus", 0), call("SetMarkType", cardType),
                                   call("DownLayerPara", 20, ArgumentPattern::rest()), call("StartMark", 0, cardOption),
                                   call("SetMarkStaus", 2), answer("RunManualStart", "0", "文档执行成功", 5)});
}

void ExternalRunTest::a_run_that_could_mark_nothing_is_told_and_ends_idle() {
    card()->CloseCard();
    machine().clearJournal();
    order(QStringLiteral("RunManualStart"), {"0", "0"});
    QTRY_COMPARE(answers(), QStringList{"1|文档执行失败"});
    COMPARE_JOURNAL(runJournal(), {call("SetMarkStaus", 0), call("SetMarkType", 0),
                                   call("DownLayerPara", 20, ArgumentPattern::rest()), call("StartMark", 0, 0),
                                   call("SetMarkStaus", 2), answer("RunManualStart", "1", "文档执行失败")});
    QTRY_VERIFY(windowIsFree());
    bool red = true;
    bool green = true;
    bool yellow = false;
    IOOutputSet::Instance()->GetLightStatus(red, green, yellow);
    QVERIFY(!red && !green && yellow);
    QCOMPARE(card()->GetMarkStatus(), MarkStatusStop);
}

void ExternalRunTest::window_and_lamps_follow_a_run() {
    const QVector<ExpectedCall> green{call("SetOutputBit", kRed, 0), call("SetOutputBit", kGreen, 1),
                                      call("SetOutputBit", kYellow, 0)};
    const QVector<ExpectedCall> yellow{call("SetOutputBit", kRed, 0), call("SetOutputBit", kGreen, 0),
                                       call("SetOutputBit", kYellow, 1)};
    QStringList told;
    QObject context;
    connect(&response(), &ExternalResponse::EnableMarkAction, &context, [&](bool enable) {
        told.append(QStringLiteral("%1: red view %2, window free %3, lamp calls %4")
                        .arg(enable)
                        .arg(window().IsRedView())
                        .arg(windowIsFree())
                        .arg(machineCalls("SetOutputBit")));
    });
    window().SetRedVie(true);
    startSlowly();
    QTRY_VERIFY(!windowIsFree());
    // The actions are told first, when nothing else has changed yet.
    QCOMPARE(told, QStringList{"0: red view 1, window free 1, lamp calls 0"});
    QVERIFY(!window().IsRedView());
    COMPARE_JOURNAL(only(machineJournal(), {"SetOutputBit"}), green);
    QVERIFY(!m_Window->child<QAction>("actionMark")->isEnabled());
    QVERIFY(!m_Window->child<QAction>("actionMultiDocMark")->isEnabled());
    machine().clearJournal();
    letEnd();
    QTRY_VERIFY(windowIsFree());
    QCOMPARE(told.last(), QStringLiteral("1: red view 0, window free 0, lamp calls 0"));
    COMPARE_JOURNAL(only(machineJournal(), {"SetOutputBit"}), yellow);
    QVERIFY(m_Window->child<QAction>("actionMark")->isEnabled());
    QVERIFY(m_Window->child<QAction>("actionMultiDocMark")->isEnabled());
}

void ExternalRunTest::the_window_hears_what_the_thread_enables() {
    emit thread().EnableMarkAction(false);
    QVERIFY(!m_Window->child<QAction>("actionMark")->isEnabled());
    emit thread().EnableMarkAction(true);
    QVERIFY(m_Window->child<QAction>("actionMark")->isEnabled());
}

void ExternalRunTest::a_stop_makes_its_calls_in_order() {
    startSlowly();
    QTRY_VERIFY(!windowIsFree());
    machine().clearJournal();
    response().VZMarkStop();
    QVERIFY(!response().IsRunning());
    // From the first call on the worker's own come between.
    const QVector<JournalEntry> stop = runJournal();
    COMPARE_JOURNAL(stop.mid(0, 1), {call("SetMarkStaus", 2)});
    COMPARE_JOURNAL(only(stop, {"WriteTcpMsg"}), {answer("RunManualStart", "0", "文档执行成功")});
    // The remote stop itself and the one that it gives to the multi-document run.
    COMPARE_JOURNAL(only(stop, {"StopMark"}), {call("StopMark"), call("StopMark")});
    QTRY_VERIFY(windowIsFree());
}

void ExternalRunTest::the_thread_is_stopped_by_its_calls_in_order() {
    startSlowly();
    QTRY_VERIFY(!windowIsFree());
    machine().clearJournal();
    thread().StopTrigger();
    QVERIFY(thread().Run()->HasLeft());
    QVERIFY(windowIsFree());
    // The worker's own call that ends its run, and the answer, may come between.
    COMPARE_JOURNAL(runJournal(),
                    {call("SetMarkStaus", 2), call("SetMarkStaus", 2), answer("RunManualStart", "0", "文档执行成功")});
    COMPARE_JOURNAL(only(machineJournal(), {"SetOutputBit"}),
                    {call("SetOutputBit", kRed, 0), call("SetOutputBit", kGreen, 0), call("SetOutputBit", kYellow, 1)});
}

void ExternalRunTest::a_stop_of_a_run_answers_the_run_first() {
    startSlowly();
    order(QStringLiteral("RunManualStop"), {}, 90);
    COMPARE_JOURNAL(only(machineJournal(), {"WriteTcpMsg"}),
                    {answer("RunManualStart", "0", "文档执行成功"), answer("RunManualStop", "0", "终止运行成功", 90)});
    QCOMPARE(machine().state().activity, sim::SimActivity::Idle);
    QTRY_VERIFY(m_Window->child<QAction>("actionMark")->isEnabled());
    QVERIFY(windowIsFree());
}

void ExternalRunTest::a_stop_ends_a_run_of_the_run_dialog_too() {
    window().ShowNormalMarkWindow();
    machine().setSpeed(kSlowRun);
    Form_Marking::Instance()->findChild<QPushButton*>(QStringLiteral("pushButtonStart"))->click();
    QTRY_COMPARE(machine().state().activity, sim::SimActivity::Running);
    order(QStringLiteral("RunManualStart"), {"0", "0"});
    order(QStringLiteral("RunManualStop"));
    QCOMPARE(answers(), (QStringList{"1|文档正在运行中", "0|终止运行成功"}));
    QTRY_VERIFY(!Form_Marking::Instance()->IsRunning());
    QCOMPARE(machine().state().activity, sim::SimActivity::Idle);
}

/// A stop that was lost would hold the window for as long as the slow job takes.
void ExternalRunTest::a_stop_at_any_moment_after_the_start_is_not_lost() {
    machine().setSpeed(kSlowRun);
    for (int i = 0; i < 100; ++i) {
        order(QStringLiteral("RunManualStart"), {"0", "0"});
        for (int spin = 0; spin < i * 200; ++spin)
            machine().journalEnd();
        order(QStringLiteral("RunManualStop"));
        QVERIFY(!response().IsRunning());
        QCOMPARE(machine().state().activity, sim::SimActivity::Idle);
        QCOMPARE(machine().state().status, 2);
    }
    QCOMPARE(answers().size(), 200);
}

void ExternalRunTest::a_run_follows_the_next_at_once() {
    for (int i = 1; i <= 50; ++i) {
        order(QStringLiteral("RunManualStart"), {"0", "0"});
        QTRY_COMPARE(answers().size(), i);
    }
    QCOMPARE(answers().count(QStringLiteral("0|文档执行成功")), 50);
    QCOMPARE(machineCalls("StartMark"), 50);
}

/// The station may answer an answer faster than the worker leaves its run.
void ExternalRunTest::a_start_in_the_moment_of_the_answer_runs() {
    for (int i = 1; i <= 50; ++i) {
        order(QStringLiteral("RunManualStart"), {"0", "0"});
        while (answers().size() < i)
            std::this_thread::yield();
    }
    QTRY_COMPARE(answers().count(QStringLiteral("0|文档执行成功")), 50);
}

void ExternalRunTest::a_trigger_during_a_run_does_nothing() {
    startSlowly();
    const auto run = thread().Run();
    thread().RunTrigger();
    QCOMPARE(thread().Run(), run);
    letEnd();
    thread().Wait();
    QVERIFY(thread().GetResult());
    QCOMPARE(machineCalls("StartMark"), 1);
}

void ExternalRunTest::the_thread_is_idle_before_its_first_order() {
    tessera::RemoteOrderLog log;
    ExternalMarkingThread fresh(log);
    QCOMPARE(fresh.m_nTag, 5000);
    QCOMPARE(fresh.m_nMarkType, 0);
    QVERIFY(!fresh.m_bOption && !fresh.m_bNotify);
    QVERIFY(!fresh.GetResult() && !fresh.IsActive() && !fresh.Run());
    fresh.StopTrigger();
    fresh.OrderStop();
    fresh.Wait();
    QVERIFY(machineJournal().isEmpty());
    QSignalSpy started(&fresh, &ExternalMarkingThread::MarkStart);
    QSignalSpy finished(&fresh, &ExternalMarkingThread::MarkFinish);
    fresh.RunTrigger();
    fresh.Wait();
    QVERIFY(fresh.GetResult());
    QCOMPARE(started.count(), 1);
    QCOMPARE(finished.count(), 1);
    QVERIFY(answers().isEmpty());
}

void ExternalRunTest::closing_the_marked_document_ends_the_run_first() {
    startSlowly();
    window().CloseFile(m_View->GetFileName());
    QVERIFY(window().GetDocs().isEmpty());
    QVERIFY(!response().IsRunning());
    QCOMPARE(machine().state().activity, sim::SimActivity::Idle);
    QCOMPARE(answers(), QStringList{"0|文档执行成功"});
}

void ExternalRunTest::a_stop_asked_for_at_the_machine_stops_a_remote_run() {
    window().IOStopRun();
    QVERIFY(machineJournal().isEmpty());
    startSlowly();
    machine().clearJournal();
    std::thread([this] { window().IOStopRun(); }).join();
    QTRY_VERIFY(!response().IsRunning());
    // From the first call on the worker's own comes between.
    COMPARE_JOURNAL(machineJournal().mid(0, 1), {call("StopMark")});
    QCOMPARE(machineCalls("StopMark"), 2);
    COMPARE_JOURNAL(only(machineJournal(), {"SetMarkStaus"}), {call("SetMarkStaus", 2), call("SetMarkStaus", 2)});
}

void ExternalRunTest::a_door_that_pauses_stops_a_remote_run_data() {
    QTest::addColumn<bool>("pauses");
    QTest::newRow("stop mode") << false;
    QTest::newRow("pause mode") << true;
}

void ExternalRunTest::a_door_that_pauses_stops_a_remote_run() {
    QFETCH(bool, pauses);
    IOFuncList door;
    door.Name = QStringLiteral("机台安全门1");
    door.InputEnable = true;
    door.InputMask = door.InputValue = 1;
    IOCheckedSys::Instance()->SetIOFunctions({door});
    SystemParam::Instance()->m_nResponseIO = 1;
    GlassParam::Instance()->SetSafeTrigerType(pauses ? SafeTrigerPause : SafeTrigerStop);
    GlassParam::Instance()->SetCheckSafeInRun(true);
    startSlowly();
    machine().setInput(0, true);
    QTRY_COMPARE(answers(), QStringList{"0|文档执行成功"});
    QCOMPARE(machine().state().status, 2);
    QTRY_VERIFY(window().IsSafeAlarm(tessera::AlarmDoor1));
    order(QStringLiteral("RunManualStart"), {"0", "0"});
    QCOMPARE(answers().last(), QStringLiteral("1|安全报警"));
    machine().setInput(0, false);
    QTRY_VERIFY(!window().IsSafeAlarm(tessera::AlarmDoor1));
    IOCheckedSys::Instance()->SetIOFunctions({});
    GlassParam::Instance()->SetSafeTrigerType(SafeTrigerStop);
    GlassParam::Instance()->SetCheckSafeInRun(false);
}

void ExternalRunTest::the_end_of_the_program_stops_a_run_and_waits() {
    startSlowly();
    m_Window.reset();
    QVERIFY(!response().IsRunning());
    QVERIFY(!thread().isRunning());
    QCOMPARE(machine().state().activity, sim::SimActivity::Idle);
    QCOMPARE(machine().state().status, 2);
}

QTEST_MAIN(ExternalRunTest)
#include "tst_externalrun.moc"
