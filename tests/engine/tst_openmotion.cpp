// SPDX-License-Identifier: MIT
// An open motion card: axis 0 homes to its negative limit and moves a few units, axis 1 stands.
#include "engine/class_cardpara.h"
#include "engine/movecardmanager.h"
#include "engine/profinifile.h"
#include "engine/vzmovecard.h"
#include "engine/waitaxisstop.h"
#include "tests/support/temporaryroot.h"
#include "tests/support/waitfor.h"

#include <QElapsedTimer>
#include <QTimer>
#include <QtTest>
#include <atomic>
#include <cmath>
#include <limits>
#include <thread>

namespace {

constexpr double kSpeed = 50.0; ///< unit/s
constexpr double kAcc = 500.0;  ///< unit/s^2
constexpr double kNear = 1e-3;  ///< a pulse of the default parameters

MoveCardManager& manager() {
    return *MoveCardManager::Instance();
}

double place(int axis) {
    double pos = std::numeric_limits<double>::quiet_NaN();
    manager().AxisGetAltPos(axis, pos);
    return pos;
}

AxisMoveStruct moveTo(double pos) {
    AxisMoveStruct request;
    request.AxisNo = 0;
    request.Home = false;
    request.Pos = pos;
    request.Vel = kSpeed;
    request.Acc = kAcc;
    return request;
}

} // namespace

class TestOpenMotion : public QObject {
    Q_OBJECT

    std::unique_ptr<tests::TemporaryRoot> m_root;

    static AxisPara& para() { return Class_CardPara::Instance()->Axis[0]; }
    static bool homes() {
        AxisMoveStruct request;
        request.AxisNo = 0;
        QVector<AxisMoveStruct> list{request};
        return WaitAxisStop::SearchHome(list, nullptr, nullptr);
    }

private slots:
    void initTestCase() {
        m_root = std::make_unique<tests::TemporaryRoot>();
        manager().SetMoveCardInstance(new VZMoveCard);
    }
    void cleanupTestCase() {
        manager().SetMoveCardInstance(nullptr);
        m_root.reset();
    }
    void init() {
        Class_CardPara& card = *Class_CardPara::Instance();
        card = Class_CardPara();
        card.EnableMotion = true;
        card.AxisCount = 2;
        card.DefaultDelay = 20;
        para().HomeType = 1;
        para().HomeHighSpeed = 200.0;
        para().HomeHighAcc = 2000.0;
        para().HomeLowSpeed = 20.0;
        manager().InitMoveCard();
        QVERIFY(manager().IsCardOpened());
        QVERIFY(homes());
    }
    void cleanup() { manager().CloseMoveCard(); }

    void homing_makes_the_place_found_the_zero() {
        QVERIFY(std::abs(place(0)) < kNear);
        double pos = 0.0;
        int state = 0;
        QVERIFY(manager().AxisGetInfo(0, pos, state));
        QVERIFY(!manager().GetMoveCardInstance()->IsDriverAlarm(state));
        QVERIFY(!manager().GetMoveCardInstance()->IsPositiveLimit(state));
    }

    void move_ends_at_its_place_and_the_wait_lasts_until_then() {
        QElapsedTimer clock;
        clock.start();
        QVERIFY(manager().AxisMove2(0, 5.0, kSpeed, kAcc));
        QVERIFY(!manager().AxisMove2(0, 0.0, kSpeed, kAcc)); // it is not free
        manager().WaiAxisStop(0);
        QVERIFY(clock.elapsed() >= 200); // 5 / 50 and 50 / 500 s
        QVERIFY2(std::abs(place(0) - 5.0) < kNear, qPrintable(QString::number(place(0))));
        QVERIFY(manager().AxisMove2(0, 4.0, kSpeed, kAcc));
        manager().WaiAxisStop(0);
        QVERIFY(std::abs(place(0) - 4.0) < kNear);
    }

    void speed_and_acceleration_are_held_to_the_machines() {
        Class_CardPara::Instance()->MaxSpeed = 10.0;
        QElapsedTimer clock;
        clock.start();
        QVERIFY(manager().AxisMove2(0, 5.0, 1000.0, 1e6));
        manager().WaiAxisStop(0);
        QVERIFY2(clock.elapsed() >= 500, qPrintable(QString::number(clock.elapsed())));
    }

    void axes_that_are_not_there_leave_the_values_alone_data() {
        QTest::addColumn<int>("axis");
        for (int axis : {-1, 2, 7, 8, std::numeric_limits<int>::max(), std::numeric_limits<int>::min()})
            QTest::addRow("%d", axis) << axis;
    }
    void axes_that_are_not_there_leave_the_values_alone() {
        QFETCH(int, axis);
        double position = 7.0;
        int state = 9;
        QVERIFY(!manager().AxisMove2(axis, 1.0, kSpeed, kAcc));
        QVERIFY(!manager().AxisMove2Jog(axis, kSpeed, kAcc));
        QVERIFY(!manager().AxisGetAltPos(axis, position));
        QVERIFY(!manager().AxisGetInfo(axis, position, state));
        QVERIFY(!manager().AxisChangeToT(axis));
        QVERIFY(!manager().SetCurPos(axis, 1.0));
        manager().WaiAxisStop(axis);
        QCOMPARE(position, 7.0);
        QCOMPARE(state, 9);
    }

    void values_that_are_no_motion_are_refused() {
        double const nan = std::numeric_limits<double>::quiet_NaN();
        QVERIFY(!manager().AxisMove2(0, nan, kSpeed, kAcc));
        QVERIFY(!manager().AxisMove2(0, 1.0, 0.0, kAcc));
        QVERIFY(!manager().AxisMove2(0, 1.0, kSpeed, -1.0));
        QVERIFY(!manager().AxisMove2Jog(0, 0.0, kAcc));
        QVERIFY(std::abs(place(0)) < kNear);
    }

    void jog_goes_by_its_sign_until_it_is_stopped() {
        QVERIFY(manager().AxisMove2Jog(0, 10.0, kAcc));
        QVERIFY(tests::waitFor([] { return place(0) > 1.0; }));
        manager().StopAll();
        manager().WaiAxisStop(0);
        double const top = place(0);
        QVERIFY(top > 1.0);
        QVERIFY(manager().AxisMove2Jog(0, -10.0, kAcc));
        QVERIFY(tests::waitFor([top] { return place(0) < top - 0.5; }));
        manager().StopAll();
        manager().WaiAxisStop(0);
        para().JogReverse = 1;
        double const low = place(0);
        QVERIFY(manager().AxisMove2Jog(0, -10.0, kAcc));
        QVERIFY(tests::waitFor([low] { return place(0) > low + 0.5; }));
        manager().StopAll();
        manager().WaiAxisStop(0);
    }

    void axis_is_free_for_moves_after_a_jog_is_changed_back() {
        QVERIFY(manager().AxisMove2Jog(0, 10.0, kAcc));
        QVERIFY(tests::waitFor([] { return place(0) > 0.5; }));
        QVERIFY(manager().AxisChangeToT(0));
        manager().WaiAxisStop(0);
        QVERIFY(manager().AxisChangeToT(0)); // nothing to change
        QVERIFY(manager().AxisMove2(0, 3.0, kSpeed, kAcc));
        manager().WaiAxisStop(0);
        QVERIFY(std::abs(place(0) - 3.0) < kNear);
    }

    void stop_ends_a_wait_on_another_thread() {
        QVERIFY(manager().AxisMove2(0, 50.0, 1.0, kAcc));
        std::atomic<bool> ended{false};
        std::thread waiter([&ended] {
            manager().WaiAxisStop(0);
            ended = true;
        });
        QVERIFY(tests::waitFor([] { return place(0) > 0.1; }));
        bool const waits = !ended;
        manager().StopAll();
        waiter.join();
        QVERIFY(waits);
        QVERIFY(place(0) < 40.0);
    }

    void place_can_be_declared() {
        QVERIFY(manager().SetCurPos(0, -12.5));
        QVERIFY(std::abs(place(0) + 12.5) < kNear);
        QVERIFY(manager().AxisMove2(0, -11.5, kSpeed, kAcc));
        manager().WaiAxisStop(0);
        QVERIFY(std::abs(place(0) + 11.5) < kNear);
    }

    void soft_limits_bar_what_lies_beyond() {
        para().SoftLimitEnable = 1;
        para().SoftLimitMin = 0.0;
        para().SoftLimitMax = 5.0;
        QVERIFY(!manager().AxisMove2(0, 6.0, kSpeed, kAcc));
        QVERIFY(!manager().AxisMove2(0, -1.0, kSpeed, kAcc));
        QVERIFY(manager().AxisMove2Jog(0, kSpeed, kAcc)); // ends at the limit by itself
        manager().WaiAxisStop(0);
        QVERIFY2(std::abs(place(0) - 5.0) < kNear, qPrintable(QString::number(place(0))));
        QVERIFY(!manager().AxisMove2Jog(0, kSpeed, kAcc));
    }

    void positions_go_on_after_the_card_was_closed() {
        ProfIniFile(m_root->path("ini/MovePos.ini")).WriteDouble("AxisPos", "Axis0", 7.25);
        manager().CloseMoveCard();
        QVERIFY(!manager().IsCardOpened());
        manager().InitMoveCard();
        QVERIFY2(std::abs(place(0) - 7.25) < kNear, qPrintable(QString::number(place(0))));
        QFile::remove(m_root->path("ini/MovePos.ini"));
    }

    void wait_dialog_moves_and_tells_whether_all_got_there() {
        WaitAxisStop good(false, {moveTo(2.0), moveTo(3.0)}, nullptr, nullptr);
        QCOMPARE(good.exec(), int(QDialog::Accepted));
        QVERIFY(std::abs(place(0) - 3.0) < kNear);
        AxisMoveStruct absent = moveTo(1.0);
        absent.AxisNo = 5;
        WaitAxisStop bad(false, {absent}, nullptr, nullptr);
        QCOMPARE(bad.exec(), int(QDialog::Rejected));
    }

    void wait_dialog_that_is_cancelled_stops_the_axis() {
        AxisMoveStruct slow = moveTo(50.0);
        slow.Vel = 1.0;
        WaitAxisStop dialog(false, {slow}, nullptr, nullptr);
        QTimer look;
        connect(&look, &QTimer::timeout, &dialog, [&dialog] {
            if (place(0) > 0.1)
                dialog.reject();
        });
        look.start(10);
        QCOMPARE(dialog.exec(), int(QDialog::Rejected));
        QVERIFY(place(0) < 40.0);
        double const rest = place(0);
        manager().WaiAxisStop(0);
        QCOMPARE(place(0), rest);
    }

    void search_home_of_nothing_is_done_at_once() {
        QVector<AxisMoveStruct> list;
        QVERIFY(WaitAxisStop::SearchHome(list, nullptr, nullptr));
    }

    void closing_stops_an_axis_and_its_waits() {
        QVERIFY(manager().AxisMove2(0, 50.0, 1.0, kAcc));
        std::thread waiter([] { manager().WaiAxisStop(0); });
        manager().CloseMoveCard();
        waiter.join();
        QVERIFY(!manager().IsCardOpened());
    }
};

QTEST_MAIN(TestOpenMotion)
#include "tst_openmotion.moc"
