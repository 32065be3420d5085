// SPDX-License-Identifier: MIT
#include "simengine/motion/axiscore.h"
#include "simengine/motion/axisstate.h"

#include <QtTest>
#include <cmath>

using namespace sim;

namespace {

constexpr double kNear = 1e-9;

bool near(double a, double b) {
    return std::fabs(a - b) < kNear;
}

AxisConfig withSoftLimits(double min, double max) {
    AxisConfig config;
    config.softLimitEnable = true;
    config.softLimitMin = min;
    config.softLimitMax = max;
    return config;
}

} // namespace

/// The standard machine: limits at -20 and 220, home switch from 0 to 5, power-on at 60; counter 0 there.
class TestAxisCore : public QObject {
    Q_OBJECT

private slots:
    void moves_take_the_time_of_the_trapezoid_data() {
        QTest::addColumn<double>("way");
        QTest::addColumn<double>("speed");
        QTest::addColumn<double>("acc");
        QTest::addColumn<double>("seconds");
        QTest::newRow("with cruise") << 100.0 << 50.0 << 500.0 << 2.1;     // 0.1 + 95/50 + 0.1
        QTest::newRow("backwards") << -70.0 << 50.0 << 500.0 << 1.5;       // 0.1 + 65/50 + 0.1
        QTest::newRow("just at the speed") << 5.0 << 50.0 << 500.0 << 0.2; // no cruise
        QTest::newRow("triangle") << 1.25 << 50.0 << 500.0 << 0.1;         // peak 25
        QTest::newRow("slow") << 1.0 << 0.5 << 1.0 << 2.5;                 // 0.5 + 0.75/0.5 + 0.5
        QTest::newRow("nothing to do") << 0.0 << 50.0 << 500.0 << 0.0;
    }

    void moves_take_the_time_of_the_trapezoid() {
        QFETCH(double, way);
        QFETCH(double, speed);
        QFETCH(double, acc);
        QFETCH(double, seconds);
        AxisCore axis;
        QVERIFY(axis.move(10.0, way, speed, acc));
        QVERIFY2(near(axis.endTime(), 10.0 + seconds), qPrintable(QString::number(axis.endTime() - 10.0, 'g', 17)));
        QCOMPARE(axis.position(axis.endTime()), way);
        QCOMPARE(axis.position(10.0), 0.0);
        QVERIFY(!axis.isMoving(axis.endTime()));
    }

    void the_trapezoid_has_its_places_and_speeds() {
        AxisCore axis;
        QVERIFY(axis.move(0.0, 100.0, 50.0, 500.0));
        QVERIFY(near(axis.velocity(0.05), 25.0) && near(axis.position(0.05), 0.625));
        QVERIFY(near(axis.velocity(1.0), 50.0) && near(axis.position(1.0), 2.5 + 45.0));
        QVERIFY(near(axis.velocity(2.05), 25.0) && near(axis.position(2.05), 100.0 - 0.625));
        QCOMPARE(axis.state(1.0) & AxisMoving, static_cast<int>(AxisMoving));
        QCOMPARE(axis.state(2.2) & AxisMoving, 0);
    }

    void speed_never_passes_the_limits_and_place_never_jumps() {
        AxisCore axis;
        QVERIFY(axis.move(0.0, 37.3, 12.0, 91.0));
        double last = axis.position(0.0);
        for (double t = 0.001; t < axis.endTime() + 0.01; t += 0.001) {
            QVERIFY(std::fabs(axis.velocity(t)) <= 12.0 + kNear);
            QVERIFY(std::fabs(axis.position(t) - last) <= 12.0 * 0.001 + kNear);
            last = axis.position(t);
        }
    }

    void bad_requests_are_refused_data() {
        QTest::addColumn<double>("target");
        QTest::addColumn<double>("speed");
        QTest::addColumn<double>("acc");
        QTest::newRow("no speed") << 1.0 << 0.0 << 1.0;
        QTest::newRow("speed below 0") << 1.0 << -1.0 << 1.0;
        QTest::newRow("no acceleration") << 1.0 << 1.0 << 0.0;
        QTest::newRow("speed is no number") << 1.0 << qQNaN() << 1.0;
        QTest::newRow("acceleration infinite") << 1.0 << 1.0 << qInf();
        QTest::newRow("target is no number") << qQNaN() << 1.0 << 1.0;
        QTest::newRow("target infinite") << qInf() << 1.0 << 1.0;
    }

    void bad_requests_are_refused() {
        QFETCH(double, target);
        QFETCH(double, speed);
        QFETCH(double, acc);
        AxisCore axis;
        QVERIFY(!axis.move(0.0, target, speed, acc));
        QVERIFY(!axis.isMoving(0.0));
    }

    void a_running_move_refuses_another_and_a_jog() {
        AxisCore axis;
        QVERIFY(axis.move(0.0, 50.0, 10.0, 100.0));
        QVERIFY(!axis.move(1.0, 0.0, 10.0, 100.0));
        QVERIFY(!axis.jog(1.0, 10.0, 100.0));
        QCOMPARE(axis.position(axis.endTime()), 50.0);
    }

    void a_jog_runs_until_it_is_stopped_and_brakes() {
        AxisCore axis;
        AxisConfig config;
        config.limitEnable = false;
        axis.configure(0.0, config);
        QVERIFY(axis.jog(0.0, -10.0, 100.0));
        QCOMPARE(axis.state(1.0) & AxisJogging, static_cast<int>(AxisJogging));
        QVERIFY(near(axis.position(2.0), -0.5 - 19.0));
        axis.stop(2.0);
        QVERIFY(near(axis.endTime(), 2.1));
        QVERIFY(near(axis.position(3.0), -0.5 - 19.0 - 0.5));
        QCOMPARE(axis.state(3.0) & AxisMoving, 0);
    }

    void a_jog_changes_its_speed_and_turns_round_without_a_jump() {
        AxisCore axis;
        QVERIFY(axis.jog(0.0, 10.0, 100.0));
        double const before = axis.position(1.0);
        QVERIFY(axis.jog(1.0, -10.0, 100.0));
        QCOMPARE(axis.position(1.0), before);
        QVERIFY(near(axis.velocity(1.1), 0.0) && near(axis.position(1.1), before + 0.5));
        QVERIFY(near(axis.velocity(1.2), -10.0));
    }

    void a_move_after_a_stop_starts_out_of_the_braking() {
        AxisCore axis;
        QVERIFY(axis.jog(0.0, 10.0, 100.0));
        axis.stop(1.0);
        QVERIFY(axis.isMoving(1.05));
        QVERIFY(axis.move(1.05, 0.0, 10.0, 100.0));
        QVERIFY(near(axis.velocity(1.05), 5.0));
        QCOMPARE(axis.position(axis.endTime()), 0.0);
    }

    void a_move_out_of_braking_that_has_room_goes_on_forwards() {
        AxisCore axis;
        QVERIFY(axis.jog(0.0, 10.0, 100.0));
        axis.stop(1.0);
        QVERIFY(axis.move(1.0, 20.0, 5.0, 100.0)); // from 10 at 9.5: brakes to 5, cruises, stops
        QVERIFY(near(axis.velocity(1.05), 5.0));
        QVERIFY(near(axis.endTime(), 1.0 + 0.05 + (10.5 - 0.375 - 0.125) / 5.0 + 0.05));
        QCOMPARE(axis.position(axis.endTime()), 20.0);
    }

    void limit_switches_halt_the_axis_and_let_it_go_back() {
        AxisCore axis;
        QVERIFY(axis.jog(0.0, 40.0, 400.0));
        double const end = axis.endTime();
        QVERIFY(near(end, 0.1 + (160.0 - 2.0) / 40.0));
        QCOMPARE(axis.place(end), 220.0);
        QCOMPARE(axis.position(end), 160.0);
        QCOMPARE(axis.state(end) & (AxisPositiveLimit | AxisNegativeLimit), static_cast<int>(AxisPositiveLimit));
        QVERIFY(!axis.jog(end, 1.0, 10.0));
        QVERIFY(!axis.move(end, 170.0, 1.0, 10.0));
        QVERIFY(axis.move(end, 150.0, 10.0, 100.0));
        QCOMPARE(axis.state(axis.endTime()) & AxisPositiveLimit, 0);
        QVERIFY(axis.move(axis.endTime(), -1000.0, 100.0, 1000.0));
        QCOMPARE(axis.place(axis.endTime()), -20.0);
        QCOMPARE(axis.state(axis.endTime()) & AxisNegativeLimit, static_cast<int>(AxisNegativeLimit));
    }

    void limits_switched_off_end_at_the_solid_end_with_a_fault() {
        AxisCore axis;
        AxisConfig config;
        config.limitEnable = false;
        config.driverAlarmEnable = true;
        axis.configure(0.0, config);
        QVERIFY(axis.move(0.0, 500.0, 50.0, 500.0));
        double const end = axis.endTime();
        QCOMPARE(axis.place(end), 222.0);
        QCOMPARE(axis.state(end - 0.01) & AxisDriverAlarm, 0);
        QCOMPARE(axis.state(end) & AxisDriverAlarm, static_cast<int>(AxisDriverAlarm));
        QCOMPARE(axis.state(end) & AxisPositiveLimit, 0);
        QVERIFY(!axis.jog(end, -10.0, 100.0));
        axis.setDriverFault(end, false);
        QVERIFY(axis.jog(end, -10.0, 100.0));
    }

    void inverted_limits_bar_both_directions() {
        AxisCore axis;
        AxisConfig config;
        config.limitReverse = true;
        axis.configure(0.0, config);
        int const both = AxisPositiveLimit | AxisNegativeLimit;
        QCOMPARE(axis.state(0.0) & both, both);
        QVERIFY(!axis.jog(0.0, 1.0, 10.0) && !axis.jog(0.0, -1.0, 10.0));
        config.limitEnable = false;
        axis.configure(0.0, config);
        QCOMPARE(axis.state(0.0) & both, 0);
        QVERIFY(axis.jog(0.0, 1.0, 10.0));
    }

    void soft_limits_refuse_targets_and_brake_jogs_in_time() {
        AxisCore axis;
        axis.configure(0.0, withSoftLimits(-10.0, 30.0));
        QVERIFY(!axis.move(0.0, 30.001, 10.0, 100.0));
        QVERIFY(!axis.move(0.0, -10.001, 10.0, 100.0));
        QVERIFY(axis.jog(0.0, 10.0, 100.0));
        double const end = axis.endTime();
        QCOMPARE(axis.position(end), 30.0);
        QVERIFY(near(axis.velocity(end - 0.05), 5.0));
        QCOMPARE(axis.state(end) & AxisPositiveSoftLimit, static_cast<int>(AxisPositiveSoftLimit));
        QVERIFY(!axis.jog(end, 10.0, 100.0));
        QVERIFY(axis.jog(end, -10.0, 100.0));
        QCOMPARE(axis.position(axis.endTime()), -10.0);
    }

    void soft_limits_that_are_no_range_do_not_count() {
        AxisCore axis;
        axis.configure(0.0, withSoftLimits(10.0, 10.0));
        QVERIFY(axis.move(0.0, 50.0, 10.0, 100.0));
    }

    void an_axis_outside_its_soft_limits_comes_back_only() {
        AxisCore axis;
        axis.configure(0.0, withSoftLimits(5.0, 30.0));
        QVERIFY(!axis.jog(0.0, -10.0, 100.0));
        QVERIFY(axis.jog(0.0, 10.0, 100.0));
        QCOMPARE(axis.position(axis.endTime()), 30.0);
    }

    void a_driver_fault_halts_at_once_and_bars_moves() {
        AxisCore axis;
        QVERIFY(axis.jog(0.0, 10.0, 100.0));
        axis.setDriverFault(1.0, true);
        QVERIFY(!axis.isMoving(1.0));
        QVERIFY(near(axis.position(5.0), 9.5));
        QCOMPARE(axis.state(1.0) & AxisDriverAlarm, 0); // the input is not in use
        QVERIFY(!axis.move(1.0, 0.0, 10.0, 100.0));
        axis.setDriverFault(2.0, false);
        QVERIFY(axis.move(2.0, 0.0, 10.0, 100.0));
    }

    void the_alarm_input_may_be_inverted() {
        AxisCore axis;
        AxisConfig config;
        config.driverAlarmEnable = true;
        config.driverReverse = true;
        axis.configure(0.0, config);
        QCOMPARE(axis.state(0.0) & AxisDriverAlarm, static_cast<int>(AxisDriverAlarm));
        QVERIFY(!axis.jog(0.0, 1.0, 10.0));
    }

    void the_counter_can_be_set_during_a_move() {
        AxisCore axis;
        QVERIFY(axis.move(0.0, 100.0, 50.0, 500.0));
        axis.setPosition(1.0, 0.0);
        QCOMPARE(axis.position(1.0), 0.0);
        QVERIFY(near(axis.position(axis.endTime()), 52.5));
        QCOMPARE(axis.place(axis.endTime()), 160.0);
        axis.setPosition(3.0, qQNaN());
        QVERIFY(near(axis.position(3.0), 52.5));
    }

    void reversed_pulses_mirror_the_machine() {
        AxisCore axis;
        AxisConfig config;
        config.pulseReverse = true;
        axis.configure(0.0, config);
        QCOMPARE(axis.place(0.0), 60.0);
        QCOMPARE(axis.position(0.0), 0.0);
        QVERIFY(axis.jog(0.0, 50.0, 500.0));
        QCOMPARE(axis.place(axis.endTime()), -20.0);
        QCOMPARE(axis.position(axis.endTime()), 80.0);
        QCOMPARE(axis.state(axis.endTime()) & AxisPositiveLimit, static_cast<int>(AxisPositiveLimit));
        config.pulseReverse = false;
        double const end = axis.endTime();
        axis.configure(end, config);
        QCOMPARE(axis.place(end), -20.0);
        QCOMPARE(axis.position(end), 80.0);
        QCOMPARE(axis.state(end) & AxisNegativeLimit, static_cast<int>(AxisNegativeLimit));
    }

    void searches_find_the_event_and_brake_behind_it_data() {
        QTest::addColumn<double>("speed");
        QTest::addColumn<int>("event");
        QTest::addColumn<double>("found");
        QTest::addColumn<double>("rest");
        QTest::newRow("positive limit") << 20.0 << int(AxisEvent::Limit) << 220.0 << 220.0;
        QTest::newRow("negative limit") << -20.0 << int(AxisEvent::Limit) << -20.0 << -20.0;
        QTest::newRow("home from above") << -20.0 << int(AxisEvent::HomeOn) << 5.0 << 4.0;
        QTest::newRow("off already") << 20.0 << int(AxisEvent::HomeOff) << 60.0 << 60.0;
        QTest::newRow("next index up") << 20.0 << int(AxisEvent::Index) << 61.25 << 62.25;
        QTest::newRow("next index down") << -20.0 << int(AxisEvent::Index) << 51.25 << 50.25;
    }

    void searches_find_the_event_and_brake_behind_it() {
        QFETCH(double, speed);
        QFETCH(int, event);
        QFETCH(double, found);
        QFETCH(double, rest);
        AxisCore axis;
        axis.setPosition(0.0, 60.0); // counter as the machine's places
        QVERIFY(axis.search(0.0, speed, 200.0, static_cast<AxisEvent>(event)));
        if (found != 60.0)
            QVERIFY(!axis.found(0.0).has_value());
        double const end = axis.endTime();
        QVERIFY(axis.found(end).has_value());
        QCOMPARE(axis.found(end).value(), found);
        QVERIFY(near(axis.place(end), rest));
    }

    void a_search_that_meets_the_limit_first_finds_nothing() {
        AxisCore axis;
        QVERIFY(axis.search(0.0, 20.0, 200.0, AxisEvent::HomeOn));
        QVERIFY(!axis.found(axis.endTime()).has_value());
        QCOMPARE(axis.place(axis.endTime()), 220.0);
    }

    void a_stopped_search_finds_nothing() {
        AxisCore axis;
        QVERIFY(axis.search(0.0, -20.0, 200.0, AxisEvent::HomeOn));
        axis.stop(1.0);
        QVERIFY(!axis.found(100.0).has_value());
    }

    void the_index_lies_a_turn_apart_and_not_under_the_carriage_twice() {
        AxisCore axis;
        AxisConfig config;
        config.turn = 4.0;
        axis.configure(0.0, config);
        axis.setPosition(0.0, 60.0);
        QVERIFY(axis.search(0.0, 2.0, 200.0, AxisEvent::Index)); // 1.25 + 15 * 4
        double now = axis.endTime();
        QCOMPARE(axis.found(now).value(), 61.25);
        QVERIFY(axis.move(now, 61.25, 2.0, 200.0));
        now = axis.endTime();
        QVERIFY(axis.search(now, 2.0, 200.0, AxisEvent::Index));
        QCOMPARE(axis.found(axis.endTime()).value(), 65.25);
    }

    void power_off_and_on_forgets_the_counter_but_not_the_place() {
        AxisCore axis;
        QVERIFY(axis.move(0.0, 10.0, 10.0, 100.0));
        axis.setHomed(true);
        axis.setDriverFault(5.0, true);
        axis.reset(6.0);
        QCOMPARE(axis.place(6.0), 70.0);
        QCOMPARE(axis.position(6.0), 0.0);
        QCOMPARE(axis.state(6.0), 0);
        QVERIFY(axis.move(6.0, 1.0, 10.0, 100.0));
    }
};

QTEST_APPLESS_MAIN(TestAxisCore)
#include "tst_axiscore.moc"
