// SPDX-License-Identifier: MIT
#include "run/delayedstop.h"
#include "tests/shell/supervisionfixture.h"

#include <QElapsedTimer>
#include <thread>

using namespace tests;

/// Stops that are given some time after their input asked for them.
class DelayedStopTest : public QObject, private SupervisionCase {
    Q_OBJECT

private slots:
    void initTestCase() { QVERIFY(hasRoot()); }
    void init() { beginSupervision(); }
    void cleanup() { endSupervision(); }

    void a_delayed_stop_comes_after_its_time();
    void a_delayed_stop_ends_a_looped_preview_that_holds_the_main_thread();
    void every_delayed_stop_comes();
    void a_delayed_stop_that_waits_holds_up_nothing_at_the_end();
    void stop_with_delay_stops_from_another_thread();
    void stop_with_delay_comes_back_without_a_stop_when_the_window_goes();
    void threads_may_ask_for_stops_while_windows_come_and_go();
};

void DelayedStopTest::a_delayed_stop_comes_after_its_time() {
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

void DelayedStopTest::a_delayed_stop_ends_a_looped_preview_that_holds_the_main_thread() {
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

void DelayedStopTest::every_delayed_stop_comes() {
    std::atomic<int> stops{0};
    tessera::DelayedStop delayed([&stops] { ++stops; });
    QElapsedTimer time;
    time.start();
    for (int ms : {120, 40, 80, 0, -5})
        delayed.Order(ms);
    QVERIFY(waitFor([&stops] { return stops == 5; }));
    QVERIFY2(time.elapsed() >= 120, qPrintable(QString::number(time.elapsed())));
}

void DelayedStopTest::a_delayed_stop_that_waits_holds_up_nothing_at_the_end() {
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

void DelayedStopTest::stop_with_delay_stops_from_another_thread() {
    QVERIFY(startWithJob());
    std::thread other([] { StopWithDelay(20); });
    other.join();
    QVERIFY(stoppedOnce());
    QTRY_VERIFY(hasEnded());
    std::thread nobody([] { StopWithDelay1(0); });
    nobody.join();
    QVERIFY(stoppedOnce());
}

void DelayedStopTest::stop_with_delay_comes_back_without_a_stop_when_the_window_goes() {
    start(false);
    std::atomic<bool> begun{false};
    std::thread other([&begun] {
        begun = true;
        StopWithDelay(3'600'000);
    });
    QVERIFY(waitFor([&begun] { return begun.load(); }));
    machine().clearJournal();
    m_Window.reset();
    other.join();
    QCOMPARE(machineCalls("StopMark"), 0);
}

void DelayedStopTest::threads_may_ask_for_stops_while_windows_come_and_go() {
    constexpr int kThreads = 3;
    constexpr int kWindows = 4;
    std::atomic<bool> end{false};
    std::atomic<int> asked{0};
    std::vector<std::thread> threads;
    for (int i = 0; i < kThreads; ++i) {
        threads.emplace_back([&end, &asked, i] {
            while (!end) {
                StopWithDelay(i);
                ++asked;
            }
        });
    }
    bool seen = true;
    for (int i = 0; i < kWindows && seen; ++i) {
        start(false);
        const int before = asked;
        seen = waitFor([&asked, before] { return asked > before + kThreads; });
        m_Window.reset();
    }
    end = true;
    for (std::thread& thread : threads)
        thread.join();
    QVERIFY(seen);
    QVERIFY(!tessera::DelayedStop::Current());
}

QTEST_MAIN(DelayedStopTest)
#include "tst_delayedstop.moc"
