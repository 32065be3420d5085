// SPDX-License-Identifier: MIT
#include "engine/class_cardpara.h"
#include "engine/markcardinstance.h"
#include "engine/movecardmanager.h"
#include "engine/profinifile.h"
#include "engine/vzmarkcard.h"
#include "engine/vzmovecard.h"
#include "engine/waitaxisstop.h"
#include "simengine/card/cardcore.h"
#include "simengine/motion/axisstate.h"
#include "simengine/motion/cardaxes.h"
#include "support/approot.h"

#include <QApplication>
#include <QElapsedTimer>
#include <QLabel>
#include <QPushButton>
#include <QTemporaryDir>
#include <QTimer>
#include <QtTest>
#include <atomic>
#include <cmath>
#include <thread>

using namespace sim;

namespace {

bool never() {
    return false;
}

bool near(double a, double b) {
    return std::fabs(a - b) < 1e-6;
}

AxisSample sampleOf(AxisGroup& axes, int axis) {
    AxisSample sample;
    axes.sample(axis, sample);
    return sample;
}

} // namespace

class TestAxes : public QObject {
    Q_OBJECT

private:
    QTemporaryDir m_root;

    static MoveCardManager& manager() { return *MoveCardManager::Instance(); }

    static AxisMoveStruct homeOf(int axis, bool wait = true) {
        AxisMoveStruct request;
        request.AxisNo = axis;
        request.Wait = wait;
        return request;
    }

    /// Presses the wait dialog's stop button as soon as it is up and the axis moves.
    static void stopWhenMoving(int axis) {
        auto* timer = new QTimer(qApp);
        QObject::connect(timer, &QTimer::timeout, qApp, [timer, axis] {
            QWidget* dialog = QApplication::activeModalWidget();
            double pos = 0.0;
            int state = 0;
            manager().AxisGetInfo(axis, pos, state);
            if (!dialog || (state & AxisMoving) == 0)
                return;
            timer->deleteLater();
            dialog->findChild<QPushButton*>(QStringLiteral("pushButtonStop"))->click();
        });
        timer->start(5);
    }

private slots:
    void initTestCase() {
        QVERIFY(m_root.isValid());
        tessera::setApplicationRoot(m_root.path());
        Class_CardPara::Instance()->AxisCount = 3;
        manager().SetMoveCardInstance(new VZMoveCard);
    }

    void init() {
        simulatedCard().setSpeed(0.0);
        *Class_CardPara::Instance() = Class_CardPara();
        manager().InitMoveCard();
        QVERIFY(manager().IsCardOpened());
        // The carriages stay where the test before has left them.
        for (int axis = 0; axis < 3; ++axis) {
            double const way = 60.0 - sampleOf(simulatedAxes(), axis).place;
            QVERIFY(manager().SetCurPos(axis, 0.0));
            QVERIFY(way == 0.0 || manager().AxisMove2(axis, way, 100.0, 1000.0));
            QVERIFY(manager().SetCurPos(axis, 0.0));
        }
    }

    void cleanup() {
        manager().CloseMoveCard();
        QVERIFY(!manager().IsCardOpened());
    }

    void a_move_at_real_time_takes_its_time_and_wait_blocks() {
        simulatedCard().setSpeed(1.0);
        double pos = 0.0;
        QVERIFY(manager().AxisGetAltPos(0, pos));
        QElapsedTimer clock;
        clock.start();
        QVERIFY(manager().AxisMove2(0, pos + 5.0, 50.0, 500.0)); // 0.2 s
        QVERIFY(!manager().AxisMove2(0, pos, 50.0, 500.0));
        manager().WaiAxisStop(0);
        QVERIFY2(clock.elapsed() >= 200, qPrintable(QString::number(clock.elapsed())));
        double now = 0.0;
        int state = 0;
        QVERIFY(manager().AxisGetInfo(0, now, state));
        QCOMPARE(now, pos + 5.0);
        QCOMPARE(state & AxisMoving, 0);
    }

    void without_pace_moves_are_over_at_once_and_jogs_go_on() {
        QVERIFY(manager().AxisMove2(1, 150.0, 1.0, 1.0));
        double pos = 0.0;
        QVERIFY(manager().AxisGetAltPos(1, pos));
        QCOMPARE(pos, 150.0);
        Class_CardPara::Instance()->Axis[1].LimitEnable = 0;
        QVERIFY(manager().AxisMove2Jog(1, -10.0, 100.0));
        int state = 0;
        QVERIFY(manager().AxisGetInfo(1, pos, state));
        QVERIFY((state & AxisMoving) != 0);
        manager().StopAll();
        manager().WaiAxisStop(1);
        QVERIFY(manager().AxisGetInfo(1, pos, state));
        QCOMPARE(state & AxisMoving, 0);
        QVERIFY(pos < 150.0 && pos > 100.0);
    }

    void a_stop_ends_a_wait_on_another_thread() {
        simulatedCard().setSpeed(1.0);
        QVERIFY(manager().AxisMove2(0, 150.0, 0.5, 100.0));
        std::atomic<bool> ended{false};
        std::thread waiter([&ended] {
            manager().WaiAxisStop(0);
            ended = true;
        });
        QTRY_VERIFY(sampleOf(simulatedAxes(), 0).velocity > 0.4);
        QVERIFY(!ended);
        manager().StopAll();
        waiter.join();
        QVERIFY(ended);
    }

    void closing_the_card_stops_the_axes_and_waits() {
        simulatedCard().setSpeed(1.0);
        QVERIFY(manager().AxisMove2Jog(0, 5.0, 100.0));
        std::thread waiter([] { manager().WaiAxisStop(0); });
        manager().CloseMoveCard();
        waiter.join();
        QCOMPARE(sampleOf(simulatedAxes(), 0).velocity, 0.0);
    }

    void a_higher_speed_factor_shortens_a_running_move() {
        simulatedCard().setSpeed(1.0);
        QVERIFY(manager().AxisMove2(0, 100.0, 1.0, 100.0)); // 100 s
        simulatedCard().setSpeed(1000.0);
        QElapsedTimer clock;
        clock.start();
        manager().WaiAxisStop(0);
        QVERIFY(clock.elapsed() < 50'000);
        QCOMPARE(sampleOf(simulatedAxes(), 0).position, 100.0);
    }

    void closed_nothing_happens() {
        manager().CloseMoveCard();
        double pos = 7.0;
        int state = 9;
        QVERIFY(!manager().AxisMove2(0, 1.0, 1.0, 1.0));
        QVERIFY(!manager().AxisMove2Jog(0, 1.0, 1.0));
        QVERIFY(!manager().AxisGetAltPos(0, pos));
        QVERIFY(!manager().AxisGetInfo(0, pos, state));
        QVERIFY(!manager().AxisChangeToT(0));
        QVERIFY(!manager().SetCurPos(0, 1.0));
        manager().WaiAxisStop(0);
        manager().StopAll();
        QVERIFY(pos == 7.0 && state == 9);
        QVector<AxisMoveStruct> list{homeOf(0)};
        QVERIFY(!WaitAxisStop::SearchHome(list, nullptr, nullptr));
    }

    void axes_beyond_the_count_are_not_there() {
        double pos = 0.0;
        QVERIFY(!manager().AxisMove2(3, 1.0, 10.0, 100.0));
        QVERIFY(!manager().AxisGetAltPos(-1, pos));
        QVERIFY(manager().AxisGetAltPos(2, pos));
        manager().WaiAxisStop(99);
    }

    void speed_and_acceleration_are_held_to_the_machines_maximum() {
        simulatedCard().setSpeed(1.0);
        Class_CardPara::Instance()->MaxSpeed = 5.0;
        QVERIFY(manager().AxisMove2Jog(0, -1000.0, 5000.0));
        QTRY_COMPARE(sampleOf(simulatedAxes(), 0).velocity, -5.0);
    }

    void a_reversed_jog_turns_jogs_round_and_moves_not() {
        Class_CardPara::Instance()->Axis[0].JogReverse = 1;
        QVERIFY(manager().AxisMove2Jog(0, 5.0, 100.0));
        QTRY_VERIFY(sampleOf(simulatedAxes(), 0).velocity < 0.0);
        QVERIFY(manager().AxisChangeToT(0));
        manager().WaiAxisStop(0);
        double pos = 0.0;
        QVERIFY(manager().AxisMove2(0, 20.0, 5.0, 100.0));
        QVERIFY(manager().AxisGetAltPos(0, pos));
        QCOMPARE(pos, 20.0);
    }

    void stored_positions_come_back_when_the_card_opens() {
        manager().CloseMoveCard();
        ProfIniFile file(tessera::rootPath("/ini/MovePos.ini"));
        QVERIFY(file.WriteDouble("AxisPos", "Axis0", 12.5) && file.Write("AxisPos", "Axis1", "?"));
        manager().InitMoveCard();
        double pos = 0.0;
        QVERIFY(manager().AxisGetAltPos(0, pos));
        QCOMPARE(pos, 12.5);
        QVERIFY(manager().AxisGetAltPos(1, pos));
        QCOMPARE(pos, 0.0);
        QVERIFY(manager().SetCurPos(0, 0.0));
        QVERIFY(manager().AxisGetAltPos(0, pos));
        QCOMPARE(pos, 0.0);
        QVERIFY(file.WriteDouble("AxisPos", "Axis0", 0.0));
    }

    void the_card_decodes_its_state_word() {
        VZMoveCard const card;
        QVERIFY(card.IsDriverAlarm(AxisDriverAlarm) && !card.IsDriverAlarm(~AxisDriverAlarm));
        QVERIFY(card.IsPositiveLimit(AxisPositiveLimit) && !card.IsPositiveLimit(~AxisPositiveLimit));
        QVERIFY(card.IsNegtiveLimit(AxisNegativeLimit) && !card.IsNegtiveLimit(~AxisNegativeLimit));
    }

    void calls_are_in_the_journal() {
        Journal& journal = simulatedCard().journal();
        std::uint64_t const before = journal.lastSequence();
        manager().AxisMove2(0, 1.5, 10.0, 100.0);
        manager().AxisMove2Jog(1, -2.0, 50.0);
        manager().StopAll();
        manager().SetCurPos(2, 4.0);
        std::vector<JournalEntry> const entries = journal.since(before);
        QCOMPARE(entries.size(), std::size_t(4));
        QVERIFY(entries[0].name == "AxisMove2" && entries[0].args == journalArgs(0, 1.5, 10.0, 100.0));
        QVERIFY(entries[1].name == "AxisMove2Jog" && entries[1].args == journalArgs(1, -2.0, 50.0));
        QVERIFY(entries[2].name == "StopAll" && entries[3].name == "SetCurPos");
    }

    void every_homing_mode_ends_at_its_origin_data() {
        QTest::addColumn<int>("type");
        QTest::addColumn<double>("start");
        QTest::addColumn<double>("origin");
        QTest::newRow("positive limit") << 0 << 60.0 << 220.0;
        QTest::newRow("negative limit") << 1 << 60.0 << -20.0;
        QTest::newRow("home forwards from below") << 2 << -10.0 << 0.0;
        QTest::newRow("home forwards from above turns at the limit") << 2 << 60.0 << 0.0;
        QTest::newRow("home forwards from the switch") << 2 << 2.0 << 0.0;
        QTest::newRow("home backwards from above") << 3 << 60.0 << 5.0;
        QTest::newRow("home backwards from below turns at the limit") << 3 << -10.0 << 5.0;
        QTest::newRow("home backwards from the switch") << 3 << 2.0 << 5.0;
        QTest::newRow("index forwards") << 4 << 60.0 << 61.25;
        QTest::newRow("index backwards") << 5 << 60.0 << 51.25;
        QTest::newRow("positive limit, then index") << 6 << 60.0 << 211.25;
        QTest::newRow("negative limit, then index") << 7 << 60.0 << -18.75;
    }

    void every_homing_mode_ends_at_its_origin() {
        QFETCH(int, type);
        QFETCH(double, start);
        QFETCH(double, origin);
        for (int count : {1, 3}) {
            AxisGroup axes([] { return 0.0; });
            QVERIFY(axes.setPosition(0, 60.0));
            QVERIFY(axes.move(0, start, 100.0, 1000.0));
            QVERIFY(near(sampleOf(axes, 0).place, start));
            HomingPlan plan;
            plan.type = type;
            plan.count = count;
            QVERIFY(homeAxis(axes, 0, AxisConfig(), plan, never));
            AxisSample const sample = sampleOf(axes, 0);
            QVERIFY2(near(sample.place, origin), qPrintable(QString::number(sample.place)));
            QVERIFY(near(sample.position, 0.0));
            QVERIFY((sample.state & AxisHomed) != 0);
        }
    }

    void the_way_back_may_be_zero_negative_or_longer_than_a_turn_data() {
        QTest::addColumn<double>("back");
        QTest::newRow("zero") << 0.0;
        QTest::newRow("negative") << -5.0;
        QTest::newRow("longer than a turn") << 14.0;
    }

    void the_way_back_may_be_zero_negative_or_longer_than_a_turn() {
        QFETCH(double, back);
        double const origins[] = {220.0, -20.0, 0.0, 5.0, 61.25, 51.25, 211.25, -18.75};
        for (int type = 0; type < 8; ++type) {
            AxisGroup axes([] { return 0.0; });
            HomingPlan plan;
            plan.type = type;
            plan.count = 2;
            plan.backDist = back;
            QVERIFY2(homeAxis(axes, 0, AxisConfig(), plan, never), qPrintable(QString::number(type)));
            QVERIFY2(near(sampleOf(axes, 0).place, origins[type]), qPrintable(QString::number(type)));
        }
    }

    void homing_ignores_soft_limits_and_restores_them() {
        AxisGroup axes([] { return 0.0; });
        AxisConfig config;
        config.softLimitEnable = true;
        config.softLimitMin = -1.0;
        config.softLimitMax = 1.0;
        HomingPlan plan;
        plan.type = 1;
        QVERIFY(homeAxis(axes, 0, config, plan, never));
        QVERIFY(near(sampleOf(axes, 0).place, -20.0));
        QVERIFY(!axes.move(0, 2.0, 10.0, 100.0));
    }

    void homing_fails_without_limits_with_a_fault_and_with_a_strange_mode() {
        AxisGroup axes([] { return 0.0; });
        HomingPlan plan;
        AxisConfig config;
        config.limitEnable = false;
        QVERIFY(!homeAxis(axes, 0, config, plan, never));
        QVERIFY((sampleOf(axes, 0).state & AxisHomed) == 0);
        axes.setDriverFault(1, true);
        QVERIFY(!homeAxis(axes, 1, AxisConfig(), plan, never));
        plan.type = 8;
        QVERIFY(!homeAxis(axes, 2, AxisConfig(), plan, never));
        plan.type = 1;
        plan.lowSpeed = 0.0;
        QVERIFY(!homeAxis(axes, 2, AxisConfig(), plan, never));
        QVERIFY(!homeAxis(axes, 8, AxisConfig(), plan, never));
    }

    void a_stop_that_came_before_the_homing_began_is_not_lost() {
        AxisGroup axes([] { return 0.0; });
        QVERIFY(!homeAxis(axes, 0, AxisConfig(), HomingPlan(), [] { return true; }));
        QVERIFY(near(sampleOf(axes, 0).place, 60.0));
    }

    void moves_of_others_are_refused_while_an_axis_homes() {
        AxisGroup axes([] { return 1.0; });
        std::atomic<bool> result{true};
        std::thread homing([&] { result = homeAxis(axes, 0, AxisConfig(), HomingPlan(), never); });
        QTRY_VERIFY(sampleOf(axes, 0).velocity < -1.0);
        QVERIFY(!axes.move(0, 0.0, 10.0, 100.0));
        QVERIFY(!axes.jog(0, 10.0, 100.0));
        QVERIFY(!homeAxis(axes, 0, AxisConfig(), HomingPlan(), never));
        axes.stopAll();
        homing.join();
        QVERIFY(!result);
        QVERIFY(axes.move(0, 0.0, 1000.0, 100000.0));
    }

    void search_home_homes_in_order() {
        Class_CardPara para = *Class_CardPara::Instance();
        para.Axis[0].HomeType = 3;
        para.Axis[1].HomeType = 0;
        para.Axis[2].HomeType = 7;
        QVector<AxisMoveStruct> list{homeOf(2), homeOf(0, false), homeOf(1)};
        std::uint64_t const before = simulatedCard().journal().lastSequence();
        QVERIFY(WaitAxisStop::SearchHome(list, &para, nullptr));
        double const origins[] = {5.0, 220.0, -18.75};
        for (int axis = 0; axis < 3; ++axis) {
            AxisSample const sample = sampleOf(simulatedAxes(), axis);
            QVERIFY2(near(sample.place, origins[axis]) && near(sample.position, 0.0),
                     qPrintable(QString::number(axis)));
        }
        std::vector<JournalEntry> const entries = simulatedCard().journal().since(before);
        QVERIFY(entries.size() >= 3);
        QVERIFY(entries[0].name == "SearchHome" && std::get<std::int64_t>(entries[0].args[0]) == 2);
    }

    void the_done_signal_is_a_pulse_of_the_configured_level_data() {
        QTest::addColumn<bool>("high");
        QTest::newRow("active high") << true;
        QTest::newRow("active low") << false;
    }

    void the_done_signal_is_a_pulse_of_the_configured_level() {
        QFETCH(bool, high);
        MarkCardInstance::SetMarkCardInstance(new VZMarkCard);
        MarkCardInstance::Instance()->OpenCard();
        Class_CardPara para;
        para.HomeDoneSignal = true;
        para.HomeDoneBit = 17;
        para.HomeDoneTime = 20;
        para.HomeDoneHigh = high;
        std::uint64_t const before = simulatedCard().journal().lastSequence();
        QVector<AxisMoveStruct> list{homeOf(0)};
        QVERIFY(WaitAxisStop::SearchHome(list, &para, nullptr));
        std::vector<JournalEntry> pulse;
        for (JournalEntry const& entry : simulatedCard().journal().since(before)) {
            if (entry.name == "SetOutputBit")
                pulse.push_back(entry);
        }
        QCOMPARE(pulse.size(), std::size_t(2));
        QVERIFY(pulse[0].args == journalArgs(17, high ? 1 : 0) && pulse[1].args == journalArgs(17, high ? 0 : 1));
        QVERIFY(pulse[1].ms - pulse[0].ms >= 20.0);
        simulatedAxes().setDriverFault(0, true);
        QVERIFY(!WaitAxisStop::SearchHome(list, &para, nullptr));
        QCOMPARE(simulatedCard().journal().since(pulse[1].sequence).back().name, std::string("SearchHome"));
        MarkCardInstance::SetMarkCardInstance(nullptr);
    }

    void search_home_of_nothing_is_done_at_once() {
        QVector<AxisMoveStruct> list;
        QVERIFY(WaitAxisStop::SearchHome(list, nullptr, nullptr));
    }

    void a_failed_axis_ends_the_sequence() {
        simulatedAxes().setDriverFault(0, true);
        QVector<AxisMoveStruct> list{homeOf(0), homeOf(1)};
        QVERIFY(!WaitAxisStop::SearchHome(list, nullptr, nullptr));
        QVERIFY((sampleOf(simulatedAxes(), 1).state & AxisHomed) == 0);
    }

    void the_operator_can_stop_the_homing() {
        simulatedCard().setSpeed(1.0);
        stopWhenMoving(0);
        QVector<AxisMoveStruct> list{homeOf(0), homeOf(1)};
        QVERIFY(!WaitAxisStop::SearchHome(list, nullptr, nullptr));
        QVERIFY((sampleOf(simulatedAxes(), 0).state & (AxisHomed | AxisMoving)) == 0);
        QVERIFY((sampleOf(simulatedAxes(), 1).state & AxisHomed) == 0);
    }

    void the_dialog_moves_all_axes_and_accepts() {
        QVector<AxisMoveStruct> list;
        for (int axis = 0; axis < 3; ++axis) {
            AxisMoveStruct request;
            request.AxisNo = axis;
            request.Home = false;
            request.Pos = 10.0 + axis;
            request.Vel = 20.0;
            request.Acc = 200.0;
            list.append(request);
        }
        WaitAxisStop dialog(false, list, nullptr, nullptr);
        QSignalSpy accepted(&dialog, &QDialog::accepted);
        dialog.setModal(true);
        dialog.show();
        QTRY_COMPARE(accepted.count(), 1);
        QVERIFY(!dialog.isVisible());
        for (int axis = 0; axis < 3; ++axis)
            QCOMPARE(sampleOf(simulatedAxes(), axis).position, 10.0 + axis);
    }

    void with_the_card_closed_the_dialog_rejects_at_once() {
        manager().CloseMoveCard();
        WaitAxisStop dialog(false, {homeOf(0)}, nullptr, nullptr);
        QCOMPARE(dialog.exec(), static_cast<int>(QDialog::Rejected));
    }

    void a_dialog_that_dies_stops_its_axes() {
        simulatedCard().setSpeed(1.0);
        AxisMoveStruct request;
        request.Home = false;
        request.Pos = 100.0;
        request.Vel = 1.0;
        request.Acc = 100.0;
        {
            WaitAxisStop dialog(false, {request}, nullptr, nullptr);
            dialog.show();
            QTRY_VERIFY(sampleOf(simulatedAxes(), 0).velocity > 0.0);
        }
        QCOMPARE(sampleOf(simulatedAxes(), 0).velocity, 0.0);
        QVERIFY(sampleOf(simulatedAxes(), 0).position < 50.0);
    }
};

QTEST_MAIN(TestAxes)
#include "tst_axes.moc"
