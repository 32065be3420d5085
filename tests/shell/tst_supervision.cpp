// SPDX-License-Identifier: MIT
#include "laser/runlaserstart.h"
#include "shell/alarmctrl.h"
#include "shell/delayedstop.h"
#include "tests/shell/supervisionfixture.h"

#include <QElapsedTimer>
#include <QSignalSpy>
#include <random>
#include <thread>

using namespace tests;

/// From the inputs of the machine through the poll to the job, the alarms, the lamps and the indicators.
class SupervisionTest : public QObject, private SupervisionCase {
    Q_OBJECT

private slots:
    void initTestCase();
    void init();
    void cleanup();

    void a_run_edge_without_a_dialog_only_opens_it();
    void a_run_edge_starts_the_job_and_a_second_one_changes_nothing();
    void a_run_edge_with_an_alarm_lists_the_alarms_and_starts_nothing();
    void a_stop_edge_stops_the_job();
    void a_pause_edge_pauses_and_a_run_edge_resumes();
    void a_preview_edge_opens_the_dialog_and_then_previews();
    void stop_and_run_in_one_poll_stop_and_the_run_comes_with_the_next();
    void a_run_that_is_gone_in_the_poll_behind_a_stop_is_lost();
    void a_broken_wire_triggers_a_function_that_is_active_low();
    void a_delayed_stop_comes_after_its_time();
    void a_delayed_stop_ends_a_looped_preview_that_holds_the_main_thread();
    void every_delayed_stop_comes();
    void a_delayed_stop_that_waits_holds_up_nothing_at_the_end();
    void stop_with_delay_stops_from_another_thread();

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

    void without_response_to_inputs_the_laser_is_watched_alone();
    void the_laser_watch_sets_run_status_and_indicator();
    void a_custom_laser_alarm_is_not_latched_by_the_poll();
    void switching_the_laser_watch_off_takes_the_alarm_back();
    void the_fibre_alarm_is_raised_once();
    void the_fibre_alarm_needs_its_option_and_its_laser_data();
    void the_fibre_alarm_needs_its_option_and_its_laser();
    void the_active_document_is_told_to_the_run_data();
    void alarms_that_come_and_go_are_logged();
    void in_a_storm_of_inputs_alarms_lamp_and_job_stay_in_step();

private:
    static QStringList logLines() {
        QStringList all;
        const QDir folder(tessera::rootPath(QStringLiteral("/日志文件")));
        for (QString const& name : folder.entryList({QStringLiteral("*.log")}, QDir::Files, QDir::Name)) {
            QFile file(folder.filePath(name));
            if (file.open(QIODevice::ReadOnly))
                all += QString::fromUtf8(file.readAll()).split(QLatin1Char('\n'), Qt::SkipEmptyParts);
        }
        return all;
    }
    QString indicator(char const* name) {
        auto const* label = m_Window->child<AlarmCtrl>(name)->findChild<QLabel*>(QStringLiteral("labelImg"));
        const QColor colour = label->pixmap(Qt::ReturnByValue).toImage().pixelColor(8, 8);
        return colour.red() > colour.green() ? QStringLiteral("red") : QStringLiteral("green");
    }
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

void SupervisionTest::a_run_edge_without_a_dialog_only_opens_it() {
    start();
    m_Window->newDocument();
    QVERIFY(polled());
    QVERIFY(pulse(InRun));
    QCOMPARE(window().MarkWindowIsVisible(), 1);
    QVERIFY(!dialog().IsRunning());
    QVERIFY(pulse(InRun));
    QTRY_COMPARE(machine().state().jobs > 0, true);
}

void SupervisionTest::a_run_edge_starts_the_job_and_a_second_one_changes_nothing() {
    QVERIFY(startWithDialog());
    machine().setSpeed(kSlowJob);
    QVERIFY(hold(InRun));
    QTRY_VERIFY(isRunning());
    QCOMPARE(machine().state().type, 0);
    QTRY_VERIFY(light(false, true, false));
    QVERIFY(hold(InRun, false));
    QVERIFY(hold(InRun));
    QVERIFY(isRunning());
    QCOMPARE(machineCalls("PauseMark"), 0);
    QCOMPARE(machineCalls("StopMark"), 0);
}

void SupervisionTest::a_run_edge_with_an_alarm_lists_the_alarms_and_starts_nothing() {
    QVERIFY(startWithDialog());
    QVERIFY(hold(InDoor3));
    QVERIFY(hold(InChiller));
    QVERIFY(statusLines().isEmpty());
    QVERIFY(pulse(InRun));
    QVERIFY(!dialog().IsRunning());
    QCOMPARE(statusLines(), (QStringList{QStringLiteral("安全门3报警"), QStringLiteral("水冷机报警")}));
}

void SupervisionTest::a_stop_edge_stops_the_job() {
    QVERIFY(startWithJob());
    QVERIFY(hold(InStop));
    QVERIFY(stoppedOnce());
    QTRY_VERIFY(hasEnded());
    QVERIFY(light(false, false, true));
    QCOMPARE(window().GetSafeAlarm(), 0U);
}

void SupervisionTest::a_pause_edge_pauses_and_a_run_edge_resumes() {
    QVERIFY(startWithJob());
    QVERIFY(hold(InPause));
    QTRY_VERIFY(isPaused());
    QTRY_VERIFY(light(false, true, true));
    QVERIFY(hold(InPause, false));
    QVERIFY(isPaused());
    QVERIFY(hold(InRun));
    QTRY_VERIFY(isRunning());
    COMPARE_JOURNAL(only(machineJournal(), {QStringLiteral("PauseMark"), QStringLiteral("RestartMark")}),
                    {call("PauseMark"), call("RestartMark")});
}

void SupervisionTest::a_preview_edge_opens_the_dialog_and_then_previews() {
    start();
    m_Window->newDocument();
    QVERIFY(polled());
    machine().setSpeed(0.0);
    const auto before = machine().state().jobs;
    QVERIFY(pulse(InPreview));
    QCOMPARE(window().MarkWindowIsVisible(), 1);
    QCOMPARE(machine().state().jobs, before);
    QVERIFY(pulse(InPreview));
    QTRY_COMPARE(machine().state().jobs, before + 1);
    QCOMPARE(machine().state().type, 1);
}

/// Without a shown window nothing beats but what the test gives, so each poll can be looked at by itself.
void SupervisionTest::stop_and_run_in_one_poll_stop_and_the_run_comes_with_the_next() {
    start(false);
    m_Window->newDocument();
    window().ShowNormalMarkWindow();
    machine().setSpeed(kSlowJob);
    window().timerUpDate();
    machine().setInputs((1U << InStop) | (1U << InRun));
    window().timerUpDate();
    QVERIFY(!dialog().IsRunning());
    QCOMPARE(function(InStop).LastInput, 1U << InStop);
    QCOMPARE(function(InRun).LastInput, 0U);
    window().timerUpDate();
    QVERIFY(dialog().IsRunning());
    QTRY_VERIFY(isRunning());
}

void SupervisionTest::a_run_that_is_gone_in_the_poll_behind_a_stop_is_lost() {
    start(false);
    m_Window->newDocument();
    window().ShowNormalMarkWindow();
    window().timerUpDate();
    machine().setInputs((1U << InStop) | (1U << InRun));
    window().timerUpDate();
    machine().setInputs(0);
    window().timerUpDate();
    QVERIFY(!dialog().IsRunning());
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

void SupervisionTest::a_delayed_stop_comes_after_its_time() {
    function(InStop).DelayEnable = true;
    function(InStop).DelayTime = 150;
    QVERIFY(startWithJob());
    QElapsedTimer time;
    time.start();
    machine().setInput(InStop, true);
    QTRY_COMPARE(machineCalls("StopMark"), 2);
    QVERIFY2(time.elapsed() >= 150, qPrintable(QString::number(time.elapsed())));
    QVERIFY(stoppedOnce());
    QTRY_VERIFY(hasEnded());
}

void SupervisionTest::a_delayed_stop_ends_a_looped_preview_that_holds_the_main_thread() {
    function(InStop).DelayEnable = true;
    function(InStop).DelayTime = 200;
    start(false);
    m_Window->newDocument();
    window().ShowNormalMarkWindow();
    dialog().SetRunSelection(1, true);
    window().timerUpDate();
    machine().setInputs(1U << InStop);
    window().timerUpDate();
    machine().setInputs(1U << InPreview);
    const auto before = machine().state().jobs;
    window().timerUpDate();
    QVERIFY(machine().state().jobs > before);
    QVERIFY(!dialog().IsRunning());
    QVERIFY(machineCalls("StopMark") >= 2);
}

void SupervisionTest::every_delayed_stop_comes() {
    std::atomic<int> stops{0};
    tessera::DelayedStop delayed([&stops] { ++stops; });
    QElapsedTimer time;
    time.start();
    for (int ms : {120, 40, 80, 0, -5})
        delayed.Order(ms);
    QVERIFY(waitFor([&stops] { return stops == 5; }));
    QVERIFY2(time.elapsed() >= 120, qPrintable(QString::number(time.elapsed())));
}

void SupervisionTest::a_delayed_stop_that_waits_holds_up_nothing_at_the_end() {
    std::atomic<int> stops{0};
    std::atomic<bool> back{false};
    auto delayed = std::make_unique<tessera::DelayedStop>([&stops] { ++stops; });
    delayed->Order(3'600'000);
    std::atomic<bool> waiting{false};
    std::thread other([&] {
        waiting = true;
        delayed->StopAfter(3'600'000);
        back = true;
    });
    QVERIFY(waitFor([&waiting] { return waiting.load(); }));
    delayed->Order(0);
    QVERIFY(waitFor([&stops] { return stops == 1; }));
    delayed.reset();
    other.join();
    QVERIFY(back);
    QCOMPARE(stops.load(), 1);
}

void SupervisionTest::stop_with_delay_stops_from_another_thread() {
    QVERIFY(startWithJob());
    std::thread other([] { StopWithDelay(20); });
    other.join();
    QVERIFY(stoppedOnce());
    QTRY_VERIFY(hasEnded());
    std::thread nobody([] { StopWithDelay1(0); });
    nobody.join();
    QVERIFY(stoppedOnce());
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

void SupervisionTest::without_response_to_inputs_the_laser_is_watched_alone() {
    SystemParam::Instance()->m_nResponseIO = 0;
    QVERIFY(startWithDialog());
    watchLaser();
    machine().setInputs(0xFFFFFFFFU);
    QVERIFY(polled());
    QCOMPARE(RunDataGather::Instance()->GetRunStatus(), RunStatusLaserAlarm);
    QCOMPARE(indicator("alarmLaser"), QStringLiteral("red"));
    QCOMPARE(window().GetSafeAlarm(), 0U);
    QVERIFY(!dialog().IsRunning());
}

void SupervisionTest::the_laser_watch_sets_run_status_and_indicator() {
    QVERIFY(startWithDialog());
    watchLaser();
    QSignalSpy spy(&window(), &MainWindow::LaserAlarm);
    auto const* text = m_Window->child<AlarmCtrl>("alarmLaser")->findChild<QLabel*>(QStringLiteral("labelText"));
    machine().setInputs(kLaserHot);
    QVERIFY(polled());
    QCOMPARE(RunDataGather::Instance()->GetRunStatus(), RunStatusLaserAlarm);
    QCOMPARE(spy.last(), (QVariantList{true, QStringLiteral("温度超标")}));
    QCOMPARE(text->text(), QStringLiteral("激光器报警"));
    QCOMPARE(indicator("alarmLaser"), QStringLiteral("red"));
    machine().setInputs(kLaserDiode);
    QVERIFY(polled());
    QCOMPARE(spy.last(), (QVariantList{true, QStringLiteral("PD报警")}));
    QCOMPARE(window().GetSafeAlarm(), 0U);
    machine().setInputs(0);
    QVERIFY(polled());
    QCOMPARE(RunDataGather::Instance()->GetRunStatus(), RunStatusNormal);
    QCOMPARE(spy.last(), (QVariantList{false, QString()}));
    QCOMPARE(text->text(), QStringLiteral("激光器正常"));
    QCOMPARE(indicator("alarmLaser"), QStringLiteral("green"));
}

void SupervisionTest::a_custom_laser_alarm_is_not_latched_by_the_poll() {
    QVERIFY(startWithDialog());
    watchLaser();
    LaserAlarmPara* para = LaserAlarmPara::Instance();
    para->m_LaserType = 0;
    para->m_CheckIn[0] = para->m_CheckMask[0] = true;
    machine().setInputs(1U << 22);
    QVERIFY(polled());
    QCOMPARE(RunDataGather::Instance()->GetRunStatus(), RunStatusLaserAlarm);
    machine().setInputs(0);
    QVERIFY(polled());
    QCOMPARE(RunDataGather::Instance()->GetRunStatus(), RunStatusNormal);
    para->m_CheckIn[0] = para->m_CheckMask[0] = false;
}

void SupervisionTest::switching_the_laser_watch_off_takes_the_alarm_back() {
    QVERIFY(startWithDialog());
    watchLaser();
    machine().setInputs(kLaserHot);
    QVERIFY(polled());
    QVERIFY(machine().state().errorOutput);
    LaserAlarmPara::Instance()->m_EnableLaserAlarm = false;
    machine().clearJournal();
    QSignalSpy spy(&window(), &MainWindow::LaserAlarm);
    QVERIFY(polled());
    QVERIFY(polled());
    QCOMPARE(RunDataGather::Instance()->GetRunStatus(), RunStatusNormal);
    COMPARE_JOURNAL(only(machineJournal(), {QStringLiteral("VZ_OutputError")}), {call("VZ_OutputError", 0)});
    QVERIFY(!machine().state().errorOutput);
    QCOMPARE(spy.last(), (QVariantList{false, QString()}));
}

void SupervisionTest::the_fibre_alarm_is_raised_once() {
    QVERIFY(startWithDialog());
    RunLaserStart::Instance()->nFiberAlarm = 1;
    QVERIFY(polled());
    QCOMPARE(window().GetSafeAlarm(), 0U);
    QVERIFY(machine().setFault("card_alarm", true));
    QVERIFY(polled());
    QVERIFY(window().IsSafeAlarm(256));
    QVERIFY(light(true, false, false));
    // Its input function clears the bit when it changes; the card's alarm does not come up again.
    QVERIFY(pulse(InLaser));
    QCOMPARE(window().GetSafeAlarm(), 0U);
    QVERIFY(machine().setFault("card_alarm", false));
    QVERIFY(polled());
    QVERIFY(machine().setFault("card_alarm", true));
    QVERIFY(polled());
    QCOMPARE(window().GetSafeAlarm(), 0U);
}

void SupervisionTest::the_fibre_alarm_needs_its_option_and_its_laser_data() {
    QTest::addColumn<bool>("option");
    QTest::addColumn<int>("type");
    QTest::addColumn<unsigned int>("alarm");
    QTest::newRow("option off") << false << int(MarkCardFilber) << 0U;
    for (int type = 0; type <= 5; ++type)
        QTest::addRow("laser type %d", type) << true << type << (type == 0 ? 256U : 0U);
}

void SupervisionTest::the_fibre_alarm_needs_its_option_and_its_laser() {
    QFETCH(bool, option);
    QFETCH(int, type);
    MarkingMParam_VZ::Instance()->SetMarkCardType(MarkCardType(type));
    QVERIFY(startWithDialog());
    RunLaserStart::Instance()->nFiberAlarm = option ? 1 : 0;
    QVERIFY(machine().setFault("card_alarm", true));
    QVERIFY(polled());
    QTEST(window().GetSafeAlarm(), "alarm");
}

void SupervisionTest::the_active_document_is_told_to_the_run_data() {
    start();
    QRulerView* view = m_Window->newDocument();
    QVERIFY(polled());
    QCOMPARE(RunDataGather::Instance()->GetCurDocName(), view->GetFileName());
}

void SupervisionTest::alarms_that_come_and_go_are_logged() {
    start(false);
    window().timerUpDate();
    const QStringList before = logLines();
    for (unsigned int word : {1U << InDoor5, 1U << InDoor5, 0U}) {
        machine().setInputs(word);
        window().timerUpDate();
    }
    QStringList lines = logLines().mid(before.size());
    QCOMPARE(lines.size(), 2);
    QVERIFY2(lines.at(0).endsWith(QStringLiteral("\t机台安全门5:1")), qPrintable(lines.at(0)));
    QVERIFY2(lines.at(1).endsWith(QStringLiteral("\t机台安全门5:0")), qPrintable(lines.at(1)));
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
