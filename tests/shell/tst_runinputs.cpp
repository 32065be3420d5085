// SPDX-License-Identifier: MIT
#include "shell/updateinputthread.h"
#include "tests/shell/supervisionfixture.h"
#include "tests/support/logtexts.h"

#include <QSignalSpy>
#include <thread>

using namespace tests;

/// The operating inputs through the poll to the job: run, pause, stop and preview.
class RunInputsTest : public QObject, private SupervisionCase {
    Q_OBJECT

private slots:
    void initTestCase() { QVERIFY(hasRoot()); }
    void init() { beginSupervision(); }
    void cleanup() { endSupervision(); }

    void a_run_edge_without_a_dialog_only_opens_it();
    void a_run_edge_starts_the_job_and_a_second_one_changes_nothing();
    void a_run_edge_with_an_alarm_lists_the_alarms_and_starts_nothing();
    void a_stop_edge_stops_the_job();
    void a_pause_edge_pauses_and_a_run_edge_resumes();
    void a_preview_edge_opens_the_dialog_and_then_previews();
    void stop_and_run_in_one_poll_stop_and_the_run_comes_with_the_next();
    void a_run_that_is_gone_in_the_poll_behind_a_stop_is_lost();
    void a_start_by_input_is_logged_once_the_dialog_is_there();
    void the_poll_beats_anew_when_its_thread_is_started_again();
    void a_main_thread_that_was_held_up_polls_once_and_not_for_every_beat();
    void the_active_document_is_told_to_the_run_data();
};

void RunInputsTest::a_run_edge_without_a_dialog_only_opens_it() {
    start();
    m_Window->newDocument();
    QVERIFY(polled());
    QVERIFY(pulse(InRun));
    QCOMPARE(window().MarkWindowIsVisible(), 1);
    QVERIFY(!dialog().IsRunning());
    QVERIFY(pulse(InRun));
    QTRY_COMPARE(machine().state().jobs > 0, true);
}

void RunInputsTest::a_run_edge_starts_the_job_and_a_second_one_changes_nothing() {
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

void RunInputsTest::a_run_edge_with_an_alarm_lists_the_alarms_and_starts_nothing() {
    QVERIFY(startWithDialog());
    QVERIFY(hold(InDoor3));
    QVERIFY(hold(InChiller));
    QVERIFY(statusLines().isEmpty());
    QVERIFY(pulse(InRun));
    QVERIFY(!dialog().IsRunning());
    QCOMPARE(statusLines(), (QStringList{QStringLiteral("安全门3报警"), QStringLiteral("水冷机报警")}));
}

void RunInputsTest::a_stop_edge_stops_the_job() {
    QVERIFY(startWithJob());
    QVERIFY(hold(InStop));
    QVERIFY(stoppedOnce());
    QTRY_VERIFY(hasEnded());
    QVERIFY(light(false, false, true));
    QCOMPARE(window().GetSafeAlarm(), 0U);
}

void RunInputsTest::a_pause_edge_pauses_and_a_run_edge_resumes() {
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

void RunInputsTest::a_preview_edge_opens_the_dialog_and_then_previews() {
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
void RunInputsTest::stop_and_run_in_one_poll_stop_and_the_run_comes_with_the_next() {
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

void RunInputsTest::a_run_that_is_gone_in_the_poll_behind_a_stop_is_lost() {
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

void RunInputsTest::a_start_by_input_is_logged_once_the_dialog_is_there() {
    const auto starts = [] { return logTexts("run").count(QStringLiteral("Normal Mark Start")); };
    start(false);
    m_Window->newDocument();
    const int before = starts();
    window().IOStartRun();
    QCOMPARE(starts(), before);
    QVERIFY(!dialog().IsRunning());
    window().ShowNormalMarkWindow();
    window().IOStartRun();
    QCOMPARE(starts(), before + 1);
}

/// The window is not shown and so has no thread of its own.
void RunInputsTest::the_poll_beats_anew_when_its_thread_is_started_again() {
    start(false);
    UpdateInputThread beat(&window());
    beat.EndThread();
    beat.start();
    QVERIFY(polled());
    beat.EndThread();
    QVERIFY(beat.wait(5000));
    beat.start();
    QVERIFY(polled());
}

void RunInputsTest::a_main_thread_that_was_held_up_polls_once_and_not_for_every_beat() {
    start(false);
    QSignalSpy polls(&window(), &MainWindow::LaserAlarm); // told in every poll
    std::thread beats([this] {
        for (int i = 0; i < 1000; ++i)
            window().timerUpDate();
    });
    beats.join();
    QCOMPARE(polls.size(), 0);
    QCoreApplication::processEvents();
    QCOMPARE(polls.size(), 1);
    window().timerUpDate();
    QCOMPARE(polls.size(), 2);
}

void RunInputsTest::the_active_document_is_told_to_the_run_data() {
    start();
    QRulerView* view = m_Window->newDocument();
    QVERIFY(polled());
    QCOMPARE(RunDataGather::Instance()->GetCurDocName(), view->GetFileName());
}

QTEST_MAIN(RunInputsTest)
#include "tst_runinputs.moc"
