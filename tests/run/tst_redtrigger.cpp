// SPDX-License-Identifier: MIT
#include "engine/iocheckedsys.h"
#include "tests/run/formfixture.h"
#include "tests/support/timeoutscale.h"

#include <QCheckBox>
#include <QElapsedTimer>
#include <QKeyEvent>
#include <QRadioButton>
#include <QSpinBox>
#include <functional>
#include <thread>

using namespace tests;

namespace {

constexpr unsigned kAnAlarm = 64;

/// The calls by which a run is ordered and carried out.
QVector<JournalEntry> runCalls() {
    return only(machineJournal(), {"StopMark", "SetMarkStaus", "SetMarkType", "DownLayerPara", "StartMark"});
}

/// Where the looping preview is when it is triggered.
struct LoopPlace {
    int delay;    ///< ms between two rounds; 0 ends no wait but by a stop
    bool tracing; ///< a round is being traced, else the delay goes on
    bool later;   ///< not the first round
    bool select;  ///< the selected objects alone, as the arrows' window leaves it
};

/// Time that the preview has to end before the job is ordered, ms.
constexpr double kEndMs = 20.0;

/// Out of the loop, the job, and back into the loop: all calls but those of the lamps, which the main thread sets while
/// the worker goes on.
QVector<ExpectedCall> triggeredRun(bool select) {
    return {call("StopMark"),
            call("SetMarkStaus", 2),
            call("StopMark"),
            call("SetMarkStaus", 2),
            call("SetMarkStaus", 0),
            call("SetMarkStaus", 0),
            call("SetMarkType", 0),
            call("DownLayerPara", 20, ArgumentPattern::rest()),
            call("StartMark", int(select), 0),
            call("SetMarkStaus", 2),
            call("SetMarkStaus", 0),
            call("SetMarkType", 1),
            call("DownLayerPara", 20, ArgumentPattern::rest()),
            call("StartMark", int(select), 1)};
}

} // namespace

/// Run inputs during a looping red-light preview.
class RedTriggerTest : public QObject, private RunDialogFixture {
    Q_OBJECT

private slots:
    void initTestCase();
    void init();
    void cleanup();

    void every_triggered_run_leaves_the_loop_and_comes_back_data();
    void every_triggered_run_leaves_the_loop_and_comes_back();
    void a_triggered_run_leaves_its_traces();
    void f6_triggers_like_the_input();
    void a_held_f6_triggers_once();
    void a_second_run_input_during_the_triggered_run_is_ignored();
    void without_the_option_a_run_input_does_nothing();
    void a_trigger_that_falls_on_a_run_still_ending_is_lost();
    void an_alarm_ends_the_loop_and_starts_nothing();
    void the_run_input_of_the_poll_does_nothing_with_an_alarm();
    void a_stop_on_the_way_back_goes_idle();
    void a_run_started_on_the_way_back_is_not_followed_by_the_loop();

private:
    bool runs(int type) {
        const sim::SimCardState state = machine().state();
        return state.type == type && state.activity == sim::SimActivity::Running;
    }
    /// A loop with a delay of 0 marks one round and waits: nothing comes between the calls of the triggered run.
    void beginWaitingLoop() {
        m_Counted = count();
        machine().setSpeed(0.0);
        dialog().StartMarkPreview(false, true, 0, MarkTypeRedPreview);
        QTRY_VERIFY(waitsInLoop(m_Counted));
    }
    void beginTracedLoop() {
        m_Counted = count();
        machine().setSpeed(kSlow);
        dialog().StartMarkPreview(false, true, 0, MarkTypeRedPreview);
        QTRY_VERIFY(runs(1) && dialog().IsRedLoopRun());
    }
    /// Passes since the loop was begun: those of the loop, the job, and the first of the loop that follows.
    bool isBackInLoop() { return waitsInLoop(m_Counted + 2); }
    /// Triggers out of a loop, again where the order may have been and was lost.
    void triggerFrom(std::function<void()> const& begin, std::function<void()> const& order);
    bool waitsInLoop(int counted) {
        return dialog().IsRedLoopRun() && machine().state().activity == sim::SimActivity::Idle &&
               count() == counted + 1 && look() == QLatin1String("background:green");
    }
    void beginSlowTriggeredRun() {
        triggerFrom([this] { beginTracedLoop(); }, [this] { (*m_Window)->IOStartRun(); });
        QTRY_VERIFY(runs(0));
        QCoreApplication::processEvents();
    }
    /// Until the worker has left the run, with no message handled.
    bool endedUnheard() {
        QElapsedTimer waited;
        waited.start();
        while (dialog().IsRunning() && waited.elapsed() < 10000)
            std::this_thread::yield();
        return !dialog().IsRunning();
    }
    /// Events are handled in between; nothing is waited for longer than needed, so that a thousand runs take no time.
    static bool soon(std::function<bool()> const& condition) {
        QElapsedTimer waited;
        waited.start();
        while (!condition() && waited.elapsed() < scaled(10000))
            QCoreApplication::processEvents(QEventLoop::AllEvents | QEventLoop::WaitForMoreEvents, 1);
        return condition();
    }
    bool isAt(LoopPlace const& place, int counted);
    void waitUntilAt(LoopPlace const& place, int counted);
    void beginLoop(LoopPlace const& place);
    void triggerOnce(LoopPlace const& place, bool& lost);
    void compareRun(bool select);
    void lossWasAllowed();

    int m_Counted = 0; ///< passes before the loop was begun
};

void RedTriggerTest::initTestCase() {
    QVERIFY(m_Root.isValid());
}

void RedTriggerTest::init() {
    begin();
    SystemParam::Instance()->SetEnableTriggerWhenRedLoop(true);
}

void RedTriggerTest::cleanup() {
    (*m_Window)->SetSafeAlarm(false, kAnAlarm);
    dialog().StopMark();
    QTRY_VERIFY(idle());
    end();
}

/// `counted` passes were counted when the loop was begun.
bool RedTriggerTest::isAt(LoopPlace const& place, int counted) {
    const int passes = place.later ? 3 : place.tracing ? 0 : 1;
    return dialog().IsRedLoopRun() && look() == QLatin1String("background:green") && count() >= counted + passes &&
           (place.tracing ? runs(1) : machine().state().activity == sim::SimActivity::Idle);
}

/// All that the worker has told is heard then.
void RedTriggerTest::waitUntilAt(LoopPlace const& place, int counted) {
    if (place.later) {
        QVERIFY(soon([&] { return count() >= counted + 3; }));
        machine().setSpeed(kSlow);
    }
    QVERIFY(soon([&] { return isAt(place, counted); }));
    QCoreApplication::processEvents();
}

void RedTriggerTest::beginLoop(LoopPlace const& place) {
    const int counted = count();
    machine().setSpeed(place.tracing && !place.later ? kSlow : 0.0);
    dialog().StartMarkPreview(place.select, true, place.delay, MarkTypeRedPreview);
    waitUntilAt(place, counted);
}

/// The job is held until the dialog has heard all of the loop's end; then the worker's calls have one order only. The
/// round behind it is held too where one is to be triggered.
void RedTriggerTest::triggerOnce(LoopPlace const& place, bool& lost) {
    machine().clearJournal();
    machine().setSpeed(kSlow);
    (*m_Window)->IOStartRun();
    QVERIFY(soon([this] { return runs(0) || idle(); }));
    lost = !runs(0);
    if (lost) {
        lossWasAllowed();
        return;
    }
    QVERIFY(soon([this] { return machineCalls("SetOutputBit") >= 6; }));
    QVERIFY(part<QRadioButton>("radioButtonRun")->isChecked());
    const int counted = count() + 1;
    machine().setSpeed(0.0);
    QVERIFY(endedUnheard());
    machine().setSpeed(place.tracing && !place.later ? kSlow : 0.0);
    waitUntilAt(place, counted);
    QVERIFY(soon([] { return machineCalls("SetOutputBit") >= 9; }));
    compareRun(place.select);
    QVERIFY(part<QRadioButton>("radioButtonRedPre")->isChecked());
    QVERIFY(part<QCheckBox>("checkBoxLoopMark")->isChecked());
    QVERIFY((*m_Window)->IsRedView());
}

/// Every call of the run up to the first round of the loop; the lamps are set between those of the worker by which the
/// dialog hears of a change and the next thing that the test lets happen.
void RedTriggerTest::compareRun(bool select) {
    const QVector<JournalEntry> all = machineJournal();
    const QVector<ExpectedCall> expected = triggeredRun(select);
    const QVector<JournalEntry> calls = without(all, {"SetOutputBit"});
    COMPARE_JOURNAL(calls.mid(0, expected.size()), expected);
    const QVector<JournalEntry> lights = only(all, {"SetOutputBit"});
    COMPARE_JOURNAL(lights.mid(0, 9), lamps(0, 0, 1) + lamps(0, 1, 0) + lamps(0, 1, 0));
    const auto before = [&](int call, int light) { return calls.at(call).timeMs <= lights.at(light).timeMs; };
    const auto behind = [&](int light, int call) { return lights.at(light).timeMs <= calls.at(call).timeMs; };
    QVERIFY2(before(3, 0), "yellow before the preview had ended");
    QVERIFY2(before(5, 3), "green before the job had begun");
    QVERIFY2(behind(5, 9), "green after the job had ended");
    QVERIFY2(before(10, 6), "green before the loop had begun again");
}

/// A worker that gets no processor for 20 ms has not ended the preview when the job is ordered, and only then may the
/// order be lost.
void RedTriggerTest::lossWasAllowed() {
    const QVector<JournalEntry> calls = without(machineJournal(), {"SetOutputBit"});
    COMPARE_JOURNAL(calls, {call("StopMark"), call("SetMarkStaus", 2), call("StopMark"), call("SetMarkStaus", 2),
                            call("SetMarkStaus", 2)});
    const double took = calls.at(3).timeMs - calls.at(2).timeMs;
    QVERIFY2(took >= kEndMs, qPrintable(QStringLiteral("lost, though the preview ended after %1 ms").arg(took)));
}

/// An order that is taken sets the kind of the job before anything else can be seen of it.
void RedTriggerTest::triggerFrom(std::function<void()> const& begin, std::function<void()> const& order) {
    for (int tries = 0; tries < 10; ++tries) {
        begin();
        if (QTest::currentTestFailed())
            return;
        machine().clearJournal();
        order();
        QVERIFY(soon([this] { return machineCalls("SetMarkType") > 0 || idle(); }));
        if (machineCalls("SetMarkType") > 0)
            return;
        lossWasAllowed();
        if (QTest::currentTestFailed())
            return;
    }
    QFAIL("ten orders were lost");
}

void RedTriggerTest::every_triggered_run_leaves_the_loop_and_comes_back_data() {
    QTest::addColumn<int>("delay");
    QTest::addColumn<bool>("tracing");
    QTest::addColumn<bool>("later");
    QTest::addColumn<bool>("select");
    QTest::newRow("waiting, no delay") << 0 << false << false << false;
    QTest::newRow("waiting in a delay") << 60000 << false << false << false;
    QTest::newRow("in the only round") << 0 << true << false << false;
    QTest::newRow("in the first round") << 5 << true << false << false;
    QTest::newRow("in a later round") << 5 << true << true << false;
    QTest::newRow("the selection") << 0 << true << false << true;
}

/// Goes on until as many runs have succeeded as are asked for.
void RedTriggerTest::every_triggered_run_leaves_the_loop_and_comes_back() {
    QFETCH(int, delay);
    QFETCH(bool, tracing);
    QFETCH(bool, later);
    QFETCH(bool, select);
    const LoopPlace place{delay, tracing, later, select};
    const int wanted = qMax(6, qEnvironmentVariableIntValue("TESSERA_TRIGGERS"));
    beginLoop(place);
    int losses = 0;
    for (int succeeded = 0; succeeded < wanted;) {
        bool lost = false;
        triggerOnce(place, lost);
        if (QTest::currentTestFailed())
            return;
        if (lost) {
            ++losses;
            QVERIFY2(losses <= wanted, "more runs were lost than succeeded");
            beginLoop(place);
        } else {
            ++succeeded;
        }
    }
    qInfo("%d triggered runs, %d lost to a worker that was still ending", wanted, losses);
}

/// The first with the card's state, 0 for a run.
void RedTriggerTest::a_triggered_run_leaves_its_traces() {
    int before = 0;
    triggerFrom(
        [&] {
            beginWaitingLoop();
            before = debugLines().size();
        },
        [this] { (*m_Window)->IOStartRun(); });
    QTRY_VERIFY(isBackInLoop());
    const QString stamp = QStringLiteral("\\d\\d:\\d\\d:\\d\\d\\.\\d\\d\\d:");
    const QStringList lines = debugLines().mid(before);
    QCOMPARE(lines.filter(QRegularExpression(stamp + QStringLiteral("红光循环时触发运行开始0$"))).size(), 1);
    QCOMPARE(lines.filter(QRegularExpression(stamp + QStringLiteral("红光循环时触发运行完成$"))).size(), 1);
    QVERIFY(m_Root.read(QStringLiteral("/日志文件/Debug.txt")).contains("红光循环时触发运行完成"));
}

void RedTriggerTest::f6_triggers_like_the_input() {
    triggerFrom([this] { beginWaitingLoop(); }, [this] { QTest::keyClick(&**m_Window, Qt::Key_F6); });
    QTRY_VERIFY(isBackInLoop());
    COMPARE_JOURNAL(only(machineJournal(), {"SetMarkType", "StartMark"}),
                    {call("SetMarkType", 0), call("StartMark", 0, 0), call("SetMarkType", 1), call("StartMark", 0, 1)});
}

/// It would fire one job after the other as soon as the loop is back.
void RedTriggerTest::a_held_f6_triggers_once() {
    triggerFrom([this] { beginWaitingLoop(); }, [this] { QTest::keyClick(&**m_Window, Qt::Key_F6); });
    QTRY_VERIFY(isBackInLoop());
    machine().clearJournal();
    for (int i = 0; i < 3; ++i) {
        QKeyEvent held(QEvent::KeyPress, Qt::Key_F6, Qt::NoModifier, QString(), true);
        QCoreApplication::sendEvent(&**m_Window, &held);
    }
    QVERIFY(runCalls().isEmpty());
    QVERIFY(isBackInLoop());
}

void RedTriggerTest::a_second_run_input_during_the_triggered_run_is_ignored() {
    beginSlowTriggeredRun();
    machine().clearJournal();
    for (int i = 0; i < 3; ++i)
        (*m_Window)->IOStartRun();
    QVERIFY(runCalls().isEmpty());
    QVERIFY(runs(0));
    machine().setSpeed(0.0);
    QTRY_VERIFY(isBackInLoop());
    COMPARE_JOURNAL(only(machineJournal(), {"StartMark", "PauseMark", "StopMark"}), {call("StartMark", 0, 1)});
}

/// The dialog shows the normal job as chosen all the same.
void RedTriggerTest::without_the_option_a_run_input_does_nothing() {
    SystemParam::Instance()->SetEnableTriggerWhenRedLoop(false);
    machine().setSpeed(kSlow);
    dialog().StartMarkPreview(false, true, 0, MarkTypeRedPreview);
    QTRY_VERIFY(runs(1));
    machine().clearJournal();
    (*m_Window)->IOStartRun();
    QVERIFY(runCalls().isEmpty());
    QVERIFY(runs(1));
    QVERIFY(part<QRadioButton>("radioButtonRun")->isChecked());
    QVERIFY(part<QCheckBox>("checkBoxLoopMark")->isChecked());
}

void RedTriggerTest::a_trigger_that_falls_on_a_run_still_ending_is_lost() {
    machine().setSpeed(kSlow);
    dialog().StartMarkPreview(false, true, 0, MarkTypeRedPreview);
    QTRY_VERIFY(runs(1));
    QVERIFY(machine().setFault("stop_hangs", true));
    machine().clearJournal();
    (*m_Window)->IOStartRun();
    QVERIFY(machine().setFault("stop_hangs", false));
    QTRY_VERIFY(idle());
    QVERIFY(only(machineJournal(), {"SetMarkType", "StartMark"}).isEmpty());
    QVERIFY(part<QRadioButton>("radioButtonRun")->isChecked());
    QVERIFY(!part<QCheckBox>("checkBoxLoopMark")->isChecked());
}

void RedTriggerTest::an_alarm_ends_the_loop_and_starts_nothing() {
    beginWaitingLoop();
    (*m_Window)->SetSafeAlarm(true, kAnAlarm);
    machine().clearJournal();
    (*m_Window)->IOStartRun();
    QTRY_VERIFY(idle());
    QVERIFY(only(machineJournal(), {"SetMarkType", "StartMark"}).isEmpty());
}

/// It is refused before the loop hears of it, unlike F6. Run is at input 5, the light curtain at 12; the stop at input
/// 6 shows that inputs are heard.
void RedTriggerTest::the_run_input_of_the_poll_does_nothing_with_an_alarm() {
    const auto function = [](QString const& name, int input) {
        IOFuncList list;
        list.Name = name;
        list.InputEnable = true;
        list.InputMask = list.InputValue = 1U << input;
        return list;
    };
    IOCheckedSys::Instance()->SetIOFunctions({function(QStringLiteral("安全光栅"), 12),
                                              function(QStringLiteral("运行"), 5),
                                              function(QStringLiteral("终止"), 6)});
    SystemParam::Instance()->m_nResponseIO = 1;
    machine().setInput(12, true);
    QTRY_VERIFY((*m_Window)->IsSafeAlarm(kAnAlarm));
    beginTracedLoop();
    machine().clearJournal();
    int polls = 0;
    QObject context;
    connect(&**m_Window, &MainWindow::TimerUpDate, &context, [&polls] { ++polls; });
    machine().setInput(5, true);
    QTRY_VERIFY(polls >= 5);
    QVERIFY(runCalls().isEmpty());
    QVERIFY(runs(1) && dialog().IsRedLoopRun());
    QVERIFY(part<QRadioButton>("radioButtonRedPre")->isChecked());
    machine().setInput(5, false);
    machine().setInput(6, true);
    QTRY_VERIFY(idle());
    machine().setInput(6, false);
    machine().setInput(12, false);
    QTRY_VERIFY(!(*m_Window)->IsSafeAlarm(kAnAlarm));
    IOCheckedSys::Instance()->SetIOFunctions({});
}

void RedTriggerTest::a_stop_on_the_way_back_goes_idle() {
    beginSlowTriggeredRun();
    machine().setSpeed(0.0);
    QVERIFY(endedUnheard());
    machine().clearJournal();
    dialog().StopMark();
    QTRY_VERIFY(idle());
    QVERIFY(only(machineJournal(), {"StartMark"}).isEmpty());
    QVERIFY(!(*m_Window)->IsRedView());
    QVERIFY(part<QRadioButton>("radioButtonRun")->isChecked());
}

void RedTriggerTest::a_run_started_on_the_way_back_is_not_followed_by_the_loop() {
    beginSlowTriggeredRun();
    machine().setSpeed(0.0);
    QVERIFY(endedUnheard());
    machine().setSpeed(kSlow);
    machine().clearJournal();
    (*m_Window)->IOStartRun();
    QTRY_VERIFY(runs(0));
    QCoreApplication::processEvents();
    QVERIFY(part<QRadioButton>("radioButtonRun")->isChecked());
    QCOMPARE(look(), QStringLiteral("background:green"));
    machine().setSpeed(0.0);
    QTRY_VERIFY(idle());
    QCOMPARE(machineCalls("StartMark"), 1);
}

QTEST_MAIN(RedTriggerTest)
#include "tst_redtrigger.moc"
