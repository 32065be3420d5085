// SPDX-License-Identifier: MIT
#include "run/stopconfirmation.h"

#include <QtTest>

using namespace tessera;

Q_DECLARE_METATYPE(tessera::StopLook)
Q_DECLARE_METATYPE(tessera::StopState)

namespace {

constexpr unsigned int kRunning = 1U << 0;
constexpr unsigned int kPaused = 1U << 24;

StopLook look(MarkStatus status, unsigned int info) {
    StopLook made;
    made.status = status;
    made.info = info;
    return made;
}

StopLook closed() {
    StopLook made;
    made.open = false;
    made.outputsAtRest = false;
    return made;
}

/// The card stands, and the program has not taken in the end of the run yet.
StopLook unended() {
    StopLook made;
    made.runEnded = false;
    return made;
}

StopLook stuck() {
    StopLook made;
    made.outputsAtRest = false;
    return made;
}

} // namespace

class StopConfirmationTest : public QObject {
    Q_OBJECT

private slots:
    void what_stands_data();
    void what_stands();
    void a_state_follows_from_what_was_seen_and_when_data();
    void a_state_follows_from_what_was_seen_and_when();
    void without_an_order_nothing_is_shown_whatever_the_card_tells();
    void a_second_order_changes_nothing();
    void a_late_report_confirms_and_the_next_stop_begins_anew();
    void the_outputs_get_their_time_from_the_end_of_the_run_on();
    void a_start_does_not_take_back_that_a_stop_was_not_confirmed();
};

void StopConfirmationTest::what_stands_data() {
    QTest::addColumn<StopLook>("seen");
    QTest::addColumn<bool>("stands");
    QTest::newRow("at rest") << look(MarkStatusStop, 0) << true;
    QTest::newRow("state run") << look(MarkStatusRun, 0) << false;
    QTest::newRow("state pause") << look(MarkStatusPause, 0) << false;
    for (int bit = 0; bit < 32; ++bit) {
        const bool busy = bit == 0 || (bit >= 20 && bit <= 24);
        QTest::addRow("status bit %d", bit) << look(MarkStatusStop, 1U << bit) << !busy;
    }
}

void StopConfirmationTest::what_stands() {
    QFETCH(StopLook, seen);
    QTEST(Stands(seen), "stands");
}

void StopConfirmationTest::a_state_follows_from_what_was_seen_and_when_data() {
    QTest::addColumn<StopLook>("seen");
    QTest::addColumn<int>("afterMs");
    QTest::addColumn<StopState>("state");
    const StopLook rest = look(MarkStatusStop, 0);
    const StopLook runs = look(MarkStatusStop, kRunning);
    const StopLook held = look(MarkStatusStop, kPaused);
    StopLook anew = look(MarkStatusRun, kRunning);
    anew.goingOn = true;
    const int limit = int(StopConfirmation::kLimitMs);
    QCOMPARE(limit, 2000);
    QTest::newRow("stands at once") << rest << 0 << StopState::None;
    QTest::newRow("runs at once") << runs << 0 << StopState::Stopping;
    QTest::newRow("runs just below the limit") << runs << limit - 1 << StopState::Stopping;
    QTest::newRow("runs at the limit") << runs << limit << StopState::Unconfirmed;
    QTest::newRow("runs long after") << runs << 100 * limit << StopState::Unconfirmed;
    QTest::newRow("held at the limit") << held << limit << StopState::Unconfirmed;
    QTest::newRow("outputs wrong just below the limit") << stuck() << limit - 1 << StopState::Stopping;
    QTest::newRow("outputs wrong at the limit") << stuck() << limit << StopState::Unconfirmed;
    QTest::newRow("stands, run not ended") << unended() << 0 << StopState::Stopping;
    QTest::newRow("stands, run not ended at the limit") << unended() << limit << StopState::Stopping;
    QTest::newRow("stands at the limit") << rest << limit << StopState::None;
    QTest::newRow("closed at the limit") << closed() << limit << StopState::None;
    QTest::newRow("a new run goes on") << anew << 20 << StopState::None;
    QTest::newRow("a new run goes on at the limit") << anew << limit << StopState::None;
}

void StopConfirmationTest::a_state_follows_from_what_was_seen_and_when() {
    QFETCH(StopLook, seen);
    QFETCH(int, afterMs);
    for (const std::int64_t ordered : {0LL, 123'456'789LL}) {
        StopConfirmation stop;
        QCOMPARE(stop.Order(ordered), StopState::Stopping);
        QTEST(stop.Look(seen, ordered + afterMs), "state");
        QTEST(stop.State(), "state");
    }
}

void StopConfirmationTest::without_an_order_nothing_is_shown_whatever_the_card_tells() {
    StopConfirmation stop;
    QCOMPARE(stop.State(), StopState::None);
    QCOMPARE(stop.Look(look(MarkStatusRun, kRunning), 1'000'000), StopState::None);
}

void StopConfirmationTest::a_second_order_changes_nothing() {
    const StopLook runs = look(MarkStatusStop, kRunning);
    StopConfirmation stop;
    stop.Order(1000);
    QCOMPARE(stop.Order(2500), StopState::Stopping);
    QCOMPARE(stop.Look(runs, 2999), StopState::Stopping);
    QCOMPARE(stop.Look(runs, 3000), StopState::Unconfirmed);
    QCOMPARE(stop.Order(3001), StopState::Unconfirmed);
    QCOMPARE(stop.Look(runs, 3002), StopState::Unconfirmed);
}

void StopConfirmationTest::a_late_report_confirms_and_the_next_stop_begins_anew() {
    StopConfirmation stop;
    stop.Order(0);
    QCOMPARE(stop.Look(look(MarkStatusStop, kRunning), 5000), StopState::Unconfirmed);
    QCOMPARE(stop.Look(look(MarkStatusStop, 0), 60'000), StopState::None);
    QCOMPARE(stop.Order(70'000), StopState::Stopping);
    QCOMPARE(stop.Look(look(MarkStatusStop, kRunning), 71'999), StopState::Stopping);
}

/// An end signal may hold the run for long while the card stands.
void StopConfirmationTest::the_outputs_get_their_time_from_the_end_of_the_run_on() {
    StopConfirmation stop;
    stop.Order(0);
    QCOMPARE(stop.Look(look(MarkStatusStop, kRunning), 2000), StopState::Unconfirmed);
    QCOMPARE(stop.Look(unended(), 2020), StopState::Stopping);
    QCOMPARE(stop.Look(unended(), 9000), StopState::Stopping);
    QCOMPARE(stop.Look(stuck(), 10'999), StopState::Stopping);
    QCOMPARE(stop.Look(stuck(), 11'000), StopState::Unconfirmed);
    QCOMPARE(stop.Look(look(MarkStatusStop, 0), 30'000), StopState::None);
}

void StopConfirmationTest::a_start_does_not_take_back_that_a_stop_was_not_confirmed() {
    StopConfirmation stop;
    stop.Order(0);
    QCOMPARE(stop.Look(stuck(), StopConfirmation::kLimitMs), StopState::Unconfirmed);
    StopLook anew = look(MarkStatusRun, kRunning);
    anew.goingOn = true;
    QCOMPARE(stop.Look(anew, StopConfirmation::kLimitMs + 20), StopState::Unconfirmed);
    StopLook betweenPasses = unended();
    betweenPasses.goingOn = true;
    QCOMPARE(stop.Look(betweenPasses, StopConfirmation::kLimitMs + 40), StopState::Unconfirmed);
    QCOMPARE(stop.Look(look(MarkStatusStop, 0), StopConfirmation::kLimitMs + 60), StopState::None);
}

QTEST_GUILESS_MAIN(StopConfirmationTest)
#include "tst_stopconfirmation.moc"
