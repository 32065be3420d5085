// SPDX-License-Identifier: MIT
// The way of each homing mode as numbers, stops in it, and broken switches.
#include "simengine/motion/homing.h"

#include "support/waitfor.h"

#include <QtTest>
#include <atomic>
#include <cmath>
#include <thread>

using namespace sim;
using Kind = HomingLeg::Kind;

namespace {

bool never() {
    return false;
}

QString textOf(std::vector<HomingLeg> const& legs) {
    QStringList list;
    for (HomingLeg const& leg : legs) {
        char const* const name = leg.kind == Kind::Fast   ? "fast"
                                 : leg.kind == Kind::Slow ? "slow"
                                 : leg.kind == Kind::Back ? "back"
                                                          : "final";
        // Rounded, so that -0 is not told from 0.
        auto const number = [](double value) { return QString::number(std::round(value * 1e6) / 1e6 + 0.0); };
        list << QStringLiteral("%1 %2>%3").arg(QLatin1String(name), number(leg.from), number(leg.to));
    }
    return list.join(QStringLiteral(", "));
}

AxisSample sampleOf(AxisGroup& axes) {
    AxisSample sample;
    axes.sample(0, sample);
    return sample;
}

/// An axis that stands at `start` on the machine, counter 7 there, without pace.
void standAt(AxisGroup& axes, double start) {
    axes.putAt(0, start);
    axes.setPosition(0, 7.0);
}

} // namespace

class TestHomingPaths : public QObject {
    Q_OBJECT

private slots:
    /// Fast at 20 with 200: 1 to brake. Slow at 5 with 100: 0.125. Back by 5. Switches at -20, 220, home 0 to 5, index
    /// at 1.25 and every 10 from there.
    void each_mode_runs_its_way_data() {
        QTest::addColumn<int>("type");
        QTest::addColumn<double>("start");
        QTest::addColumn<int>("count");
        QTest::addColumn<QString>("way");
        auto row = [](char const* name, int type, double start, int count, char const* way) {
            QTest::newRow(name) << type << start << count << QString::fromLatin1(way);
        };
        row("0 positive limit", 0, 60, 1, "fast 60>220, back 220>215, slow 215>220, final 220>220");
        row("0 twice", 0, 60, 2, "fast 60>220, back 220>215, slow 215>220, back 220>215, slow 215>220, final 220>220");
        row("0 from the limit", 0, 220, 1, "fast 220>220, back 220>215, slow 215>220, final 220>220");
        row("1 negative limit", 1, 60, 1, "fast 60>-20, back -20>-15, slow -15>-20, final -20>-20");
        row("2 home forwards from below", 2, -10, 1,
            "fast -10>-10, fast -10>1, back 1>-5, back -5>-5, slow -5>0.125, final 0.125>0");
        row("2 from the switch", 2, 3, 1, "fast 3>-1, fast -1>1, back 1>-5, back -5>-5, slow -5>0.125, final 0.125>0");
        row("2 from above turns at the limit", 2, 60, 1,
            "fast 60>60, fast 60>220, fast 220>4, fast 4>-1, back -1>-5, back -5>-5, slow -5>0.125, final 0.125>0");
        row("3 home backwards from above", 3, 60, 1,
            "fast 60>60, fast 60>4, back 4>10, back 10>10, slow 10>4.875, final 4.875>5");
        row("3 from below turns at the limit", 3, -10, 1,
            "fast -10>-10, fast -10>-20, fast -20>1, fast 1>6, back 6>10, back 10>10, slow 10>4.875, final 4.875>5");
        row("4 index forwards", 4, 60, 1, "slow 60>61.375, final 61.375>61.25");
        row("4 twice", 4, 60, 2, "slow 60>61.375, back 61.375>56.25, slow 56.25>61.375, final 61.375>61.25");
        row("5 index backwards", 5, 60, 1, "slow 60>51.125, final 51.125>51.25");
        row("6 positive limit, then index", 6, 60, 1, "fast 60>220, slow 220>211.125, final 211.125>211.25");
        row("7 negative limit, then index", 7, 60, 1, "fast 60>-20, slow -20>-18.625, final -18.625>-18.75");
    }

    void each_mode_runs_its_way() {
        QFETCH(int, type);
        QFETCH(double, start);
        QFETCH(int, count);
        QFETCH(QString, way);
        AxisGroup axes([] { return 0.0; });
        standAt(axes, start);
        HomingPlan plan;
        plan.type = type;
        plan.count = count;
        std::vector<HomingLeg> legs;
        QVERIFY(homeAxis(axes, 0, AxisConfig(), plan, never, &legs));
        QCOMPARE(textOf(legs), way);
        QVERIFY(std::fabs(sampleOf(axes).position) < 1e-9);
    }

    void a_stop_ends_every_mode_in_its_slow_approach_data() {
        QTest::addColumn<int>("type");
        for (int type = 0; type < 8; ++type)
            QTest::addRow("%d", type) << type;
    }

    void a_stop_ends_every_mode_in_its_slow_approach() {
        QFETCH(int, type);
        std::atomic<double> pace{0.0};
        AxisGroup axes([&pace] { return pace.load(); });
        // Near the reference, so that the fast part is short.
        double const starts[] = {215, -15, -5, 10, 60, 60, 215, -15};
        double const start = starts[type];
        standAt(axes, start);
        pace = 1.0;
        HomingPlan plan;
        plan.type = type;
        plan.highSpeed = 200.0;
        plan.highAcc = 20000.0;
        plan.lowSpeed = 0.5;
        plan.backDist = 2.0;
        std::atomic<bool> result{true};
        std::thread homing([&] { result = homeAxis(axes, 0, AxisConfig(), plan, never); });
        auto const isSlow = [&axes] { return std::fabs(std::fabs(sampleOf(axes).velocity) - 0.5) < 1e-9; };
        bool const seen = tests::waitFor(isSlow, 20'000); // the slow approach takes at least 2.5 s
        axes.stopAll();
        homing.join();
        QVERIFY(seen);
        QVERIFY(!result);
        AxisSample const sample = sampleOf(axes);
        QCOMPARE(sample.velocity, 0.0);
        QVERIFY(std::fabs(sample.position - (sample.place - start + 7.0)) < 1e-9); // the counter is as it was
        QVERIFY((sample.state & 0x020) == 0);                                      // not homed
        pace = 0.0;
        QVERIFY(axes.move(0, sample.position + 1.0, 10.0, 100.0) || axes.move(0, sample.position - 1.0, 10.0, 100.0));
    }

    void a_stuck_limit_switch_is_taken_for_the_limit() {
        AxisGroup axes([] { return 0.0; });
        standAt(axes, 60.0);
        AxisFaults faults;
        faults.positiveLimit = true;
        axes.setFaults(0, faults);
        HomingPlan plan;
        plan.type = 0;
        QVERIFY(homeAxis(axes, 0, AxisConfig(), plan, never));
        // Back by 5, and the switch is pressed there too.
        QVERIFY(std::fabs(sampleOf(axes).place - 55.0) < 1e-9);
        QVERIFY(!axes.move(0, 1.0, 10.0, 100.0));
        QVERIFY(axes.move(0, -1.0, 10.0, 100.0));
    }

    void a_broken_home_switch_fails_the_modes_that_need_it_data() {
        QTest::addColumn<int>("type");
        QTest::addColumn<bool>("stuck");
        for (int type : {2, 3}) {
            QTest::addRow("%d stuck", type) << type << true;
            QTest::addRow("%d dead", type) << type << false;
        }
    }

    void a_broken_home_switch_fails_the_modes_that_need_it() {
        QFETCH(int, type);
        QFETCH(bool, stuck);
        AxisGroup axes([] { return 0.0; });
        standAt(axes, 60.0);
        AxisFaults faults;
        faults.homeStuck = stuck;
        faults.homeDead = !stuck;
        axes.setFaults(0, faults);
        HomingPlan plan;
        plan.type = type;
        QVERIFY(!homeAxis(axes, 0, AxisConfig(), plan, never));
        AxisSample const sample = sampleOf(axes);
        QCOMPARE((sample.state & 0x010) != 0, stuck);
        QVERIFY(std::fabs(sample.position - (sample.place - 60.0 + 7.0)) < 1e-9);
        plan.type = 1;
        QVERIFY(homeAxis(axes, 0, AxisConfig(), plan, never));
        axes.setFaults(0, {});
        plan.type = type;
        QVERIFY(homeAxis(axes, 0, AxisConfig(), plan, never));
    }

    void a_slipping_coupling_fails_every_mode_that_has_to_move_and_does_not_hang() {
        for (int type = 0; type < 8; ++type) {
            AxisGroup axes([] { return 0.0; });
            standAt(axes, 60.0);
            AxisFaults faults;
            faults.slip = true;
            axes.setFaults(0, faults);
            HomingPlan plan;
            plan.type = type;
            QVERIFY2(!homeAxis(axes, 0, AxisConfig(), plan, never), qPrintable(QString::number(type)));
            QCOMPARE(sampleOf(axes).place, 60.0);
        }
    }

    void a_driver_fault_ends_a_homing_at_once() {
        AxisGroup axes([] { return 1.0; });
        std::atomic<bool> result{true};
        std::thread homing([&] { result = homeAxis(axes, 0, AxisConfig(), HomingPlan(), never); });
        QTRY_VERIFY(sampleOf(axes).velocity < -1.0);
        AxisFaults faults;
        faults.driver = true;
        axes.setFaults(0, faults);
        homing.join();
        QVERIFY(!result);
        QCOMPARE(sampleOf(axes).velocity, 0.0);
    }
};

QTEST_APPLESS_MAIN(TestHomingPaths)
#include "tst_homingpaths.moc"
