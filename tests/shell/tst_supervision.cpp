// SPDX-License-Identifier: MIT
#include "tests/shell/supervisionfixture.h"
#include "tests/support/logtexts.h"

#include <random>

using namespace tests;

/// The safety inputs through the poll to the job, the alarms, the lamps and the indicators.
class SupervisionTest : public QObject, private SupervisionCase {
    Q_OBJECT

private slots:
    void initTestCase();
    void init();
    void cleanup();

    void a_broken_wire_triggers_a_function_that_is_active_low();
    void a_safety_input_stops_the_job_and_blocks_the_next_data();
    void a_safety_input_stops_the_job_and_blocks_the_next();
    void the_lamp_turns_red_again_behind_the_end_of_the_run();
    void a_door_in_pause_mode_pauses_and_closing_it_does_not_resume();
    void an_emergency_stop_in_pause_mode_stops();
    void a_door_without_a_job_raises_its_alarm_and_stops_nothing();
    void door_5_stops_the_job_and_allows_the_next();
    void the_laser_input_alone_leaves_the_safety_indicator_green();
    void an_alarm_whose_function_is_switched_off_goes_with_the_next_poll();
    void an_input_that_is_active_at_the_start_gives_no_alarm_until_it_changes();
    void with_a_closed_card_the_alarms_stay_as_they_were();
    void alarms_that_come_and_go_are_logged();
    void in_a_storm_of_inputs_alarms_lamp_and_job_stay_in_step();
};

void SupervisionTest::initTestCase() {
    QVERIFY(hasRoot());
}

void SupervisionTest::init() {
    beginSupervision();
}

void SupervisionTest::cleanup() {
    endSupervision();
}

void SupervisionTest::a_broken_wire_triggers_a_function_that_is_active_low() {
    function(InDoor1).InputValue = 0;
    machine().setInput(InDoor1, true);
    QVERIFY(startWithJob());
    QCOMPARE(window().GetSafeAlarm(), 0U);
    QVERIFY(hold(InDoor1, false));
    QVERIFY(stoppedOnce());
    QCOMPARE(window().GetSafeAlarm(), 2U);
}

void SupervisionTest::a_safety_input_stops_the_job_and_blocks_the_next_data() {
    QTest::addColumn<int>("input");
    QTest::addColumn<unsigned int>("bit");
    QTest::addColumn<QString>("text");
    const struct {
        Input input;
        unsigned int bit;
        char const* text;
    } rows[] = {{InDoor1, 2, "安全门1报警"},  {InDoor2, 4, "安全门2报警"},     {InDoor3, 8, "安全门3报警"},
                {InDoor4, 16, "安全门4报警"}, {InCurtain, 64, "安全光幕触发"}, {InEmergency, 128, "急停"},
                {InLaser, 256, "激光器报警"}, {InChiller, 512, "水冷机报警"}};
    for (auto const& row : rows)
        QTest::newRow(kInputNames[row.input]) << int(row.input) << row.bit << QString::fromUtf8(row.text);
}

void SupervisionTest::a_safety_input_stops_the_job_and_blocks_the_next() {
    QFETCH(int, input);
    QFETCH(unsigned int, bit);
    QFETCH(QString, text);
    QVERIFY(startWithJob());
    QVERIFY(hold(Input(input)));
    QVERIFY(stoppedOnce());
    QCOMPARE(window().GetSafeAlarm(), bit);
    QTRY_VERIFY(hasEnded());
    QTRY_VERIFY(light(true, false, false));
    QCOMPARE(indicator("alarmSafe"), bit == 256 ? QStringLiteral("green") : QStringLiteral("red"));
    const auto before = machine().state().jobs;
    dialog().StartMark(false);
    QVERIFY(!dialog().IsRunning());
    QCOMPARE(statusLines(), QStringList{text});
    QVERIFY(hold(Input(input), false));
    QCOMPARE(window().GetSafeAlarm(), 0U);
    QVERIFY(light(false, false, true));
    QCOMPARE(indicator("alarmSafe"), QStringLiteral("green"));
    QCOMPARE(machine().state().jobs, before);
    dialog().StartMark(false);
    QTRY_VERIFY(isRunning());
}

void SupervisionTest::the_lamp_turns_red_again_behind_the_end_of_the_run() {
    QVERIFY(startWithJob());
    QVERIFY(hold(InDoor1));
    QTRY_VERIFY(hasEnded());
    QVERIFY(polled());
    const QVector<JournalEntry> yellow = only(machineJournal(), {QStringLiteral("SetOutputBit")});
    int lastYellow = -1;
    int lastRed = -1;
    for (int i = 0; i < yellow.size(); ++i) {
        if (call("SetOutputBit", kYellow, 1).matches(yellow.at(i)))
            lastYellow = i;
        if (call("SetOutputBit", kRed, 1).matches(yellow.at(i)))
            lastRed = i;
    }
    QVERIFY(lastYellow >= 0);
    QVERIFY(lastRed > lastYellow);
    QVERIFY(light(true, false, false));
    QVERIFY(label("labelRedLamp")->isEnabled());
    QVERIFY(!label("labelYellowLamp")->isEnabled());
}

void SupervisionTest::a_door_in_pause_mode_pauses_and_closing_it_does_not_resume() {
    GlassParam::Instance()->SetSafeTrigerType(SafeTrigerPause);
    QVERIFY(startWithJob());
    QVERIFY(hold(InDoor2));
    QTRY_VERIFY(isPaused());
    QCOMPARE(machineCalls("StopMark"), 0);
    QCOMPARE(window().GetSafeAlarm(), 4U);
    QVERIFY(pulse(InRun));
    QVERIFY(isPaused());
    QVERIFY(hold(InDoor2, false));
    QCOMPARE(window().GetSafeAlarm(), 0U);
    QVERIFY(polled());
    QVERIFY(isPaused());
    QCOMPARE(machineCalls("RestartMark"), 0);
    QVERIFY(pulse(InRun));
    QTRY_VERIFY(isRunning());
}

void SupervisionTest::an_emergency_stop_in_pause_mode_stops() {
    GlassParam::Instance()->SetSafeTrigerType(SafeTrigerPause);
    QVERIFY(startWithJob());
    QVERIFY(hold(InEmergency));
    QVERIFY(stoppedOnce());
    QCOMPARE(machineCalls("PauseMark"), 0);
}

void SupervisionTest::a_door_without_a_job_raises_its_alarm_and_stops_nothing() {
    GlassParam::Instance()->SetCheckSafeInRun(true);
    QVERIFY(startWithDialog());
    QVERIFY(hold(InDoor1));
    QCOMPARE(window().GetSafeAlarm(), 2U);
    QCOMPARE(machineCalls("StopMark"), 0);
    QCOMPARE(machineCalls("SetMarkStaus"), 0);
    QVERIFY(light(true, false, false));
    QVERIFY(!window().CheckAlarmStatus());
    dialog().StartMark(false);
    QVERIFY(!dialog().IsRunning());
}

void SupervisionTest::door_5_stops_the_job_and_allows_the_next() {
    QVERIFY(startWithJob());
    QVERIFY(hold(InDoor5));
    QVERIFY(stoppedOnce());
    QCOMPARE(window().GetSafeAlarm(), 32U);
    QTRY_VERIFY(hasEnded());
    QTRY_VERIFY(light(true, false, false));
    QCOMPARE(indicator("alarmSafe"), QStringLiteral("red"));
    QVERIFY(window().CheckAlarmStatus());
    QVERIFY(pulse(InRun));
    QTRY_VERIFY(isRunning());
}

void SupervisionTest::the_laser_input_alone_leaves_the_safety_indicator_green() {
    QVERIFY(startWithDialog());
    QVERIFY(hold(InLaser));
    QCOMPARE(window().GetSafeAlarm(), 256U);
    QCOMPARE(indicator("alarmSafe"), QStringLiteral("green"));
    QVERIFY(light(true, false, false));
    QVERIFY(hold(InDoor5));
    QCOMPARE(indicator("alarmSafe"), QStringLiteral("red"));
}

void SupervisionTest::an_alarm_whose_function_is_switched_off_goes_with_the_next_poll() {
    QVERIFY(startWithDialog());
    QVERIFY(hold(InCurtain));
    QCOMPARE(window().GetSafeAlarm(), 64U);
    function(InCurtain).InputEnable = false;
    QVERIFY(polled());
    QCOMPARE(window().GetSafeAlarm(), 0U);
    QVERIFY(light(false, false, true));
}

void SupervisionTest::an_input_that_is_active_at_the_start_gives_no_alarm_until_it_changes() {
    function(InDoor4).InputValue = 0;
    QVERIFY(startWithDialog());
    QCOMPARE(window().GetSafeAlarm(), 0U);
    QVERIFY(hold(InDoor4));
    QCOMPARE(window().GetSafeAlarm(), 0U);
    QVERIFY(hold(InDoor4, false));
    QCOMPARE(window().GetSafeAlarm(), 16U);
}

void SupervisionTest::with_a_closed_card_the_alarms_stay_as_they_were() {
    QVERIFY(startWithDialog());
    QVERIFY(hold(InDoor1));
    MarkCardInstance::Instance()->CloseCard();
    QVERIFY(hold(InDoor1, false));
    QVERIFY(hold(InDoor2));
    QCOMPARE(window().GetSafeAlarm(), 2U);
    MarkCardInstance::Instance()->OpenCard();
    QVERIFY(polled());
    QCOMPARE(window().GetSafeAlarm(), 4U);
}

void SupervisionTest::alarms_that_come_and_go_are_logged() {
    start(false);
    window().timerUpDate();
    const int before = logTexts("run").size();
    for (unsigned int word : {1U << InDoor5, 1U << InDoor5, 0U}) {
        machine().setInputs(word);
        window().timerUpDate();
    }
    QCOMPARE(logTexts("run").mid(before),
             (QStringList{QStringLiteral("机台安全门5:1"), QStringLiteral("机台安全门5:0")}));
}

/// Every input at random, poll by poll, into jobs that do not end by themselves. A preview by input would wait for its
/// end, so that input rests.
void SupervisionTest::in_a_storm_of_inputs_alarms_lamp_and_job_stay_in_step() {
    constexpr int kPolls = 500;
    constexpr unsigned int kSafety = 0xFFFFU << InReady & 0xFFFFU;
    std::mt19937 random(5);
    start(false);
    m_Window->newDocument();
    window().ShowNormalMarkWindow();
    machine().setSpeed(kSlowJob);
    window().timerUpDate();
    int runs = 0;
    int stops = 0;
    for (int i = 0; i < kPolls; ++i) {
        const unsigned int now = random() & random() & random() & ~(1U << InPreview) & 0xFFFFU;
        GlassParam::Instance()->SetSafeTrigerType(random() % 2 ? SafeTrigerPause : SafeTrigerStop);
        const bool ran = dialog().IsRunning();
        machine().clearJournal();
        machine().setInputs(now);
        window().timerUpDate();
        // The bits of the alarms stand in the order of the inputs.
        QCOMPARE(window().GetSafeAlarm(), (now & kSafety) >> InReady);
        QCoreApplication::processEvents();
        window().timerUpDate();
        QCOMPARE(window().GetSafeAlarm(), (now & kSafety) >> InReady);
        if (window().GetSafeAlarm() != 0)
            QVERIFY(light(true, false, false));
        if (machineCalls("StopMark") > 0) {
            ++stops;
            QTRY_VERIFY(hasEnded() || isRunning());
        }
        if (!ran && dialog().IsRunning()) {
            ++runs;
            QVERIFY((now >> InRun & 1U) != 0);
            // A pause that came before the worker has set out holds the pass back ahead of the card.
            QTRY_VERIFY(isRunning() || hasEnded() || machine().state().status == MarkStatusPause);
        }
    }
    QVERIFY2(runs > 5 && stops > 5, qPrintable(QStringLiteral("%1 runs, %2 stops").arg(runs).arg(stops)));
    machine().setInputs(0);
    machine().setSpeed(0.0);
    dialog().StopAndWait();
    window().timerUpDate();
    QCOMPARE(window().GetSafeAlarm(), 0U);
}

QTEST_MAIN(SupervisionTest)
#include "tst_supervision.moc"
