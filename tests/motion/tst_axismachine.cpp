// SPDX-License-Identifier: MIT
// The axes as the machine has them: motors, encoders, faults by name, places that outlast the program.
#include "engine/class_cardpara.h"
#include "engine/movecardmanager.h"
#include "engine/profinifile.h"
#include "engine/vzmovecard.h"
#include "engine/waitaxisstop.h"
#include "simengine/card/cardcore.h"
#include "simengine/motion/axisstate.h"
#include "simengine/motion/cardaxes.h"
#include "simengine/motion/carriagefile.h"
#include "simengine/simcontrol.h"
#include "support/temporaryroot.h"

#include <QElapsedTimer>
#include <QtTest>
#include <cmath>
#include <thread>

using namespace sim;

class TestAxisMachine : public QObject {
    Q_OBJECT

private:
    std::unique_ptr<tests::TemporaryRoot> m_root;

    static SimControl& machine() { return *tessera_sim_control(); }
    static MoveCardManager& manager() { return *MoveCardManager::Instance(); }
    static AxisPara& para(int axis) { return Class_CardPara::Instance()->Axis[std::size_t(axis)]; }
    static double counter(int axis) {
        double pos = qQNaN();
        manager().AxisGetAltPos(axis, pos);
        return pos;
    }
    static int state(int axis) {
        double pos = 0.0;
        int word = 0;
        manager().AxisGetInfo(axis, pos, word);
        return word;
    }
    static double place(int motor) {
        AxisSample sample;
        simulatedAxes().sample(motor, sample);
        return sample.place;
    }
    static bool homes(int axis) {
        AxisMoveStruct request;
        request.AxisNo = axis;
        QVector<AxisMoveStruct> list{request};
        return WaitAxisStop::SearchHome(list, nullptr, nullptr);
    }
    /// What the jog panel writes every 50 ms.
    void keepCounter(int axis) const {
        ProfIniFile(m_root->path("ini/MovePos.ini")).WriteDouble("AxisPos", QString("Axis%1").arg(axis), counter(axis));
    }

private slots:
    void initTestCase() {
        m_root = std::make_unique<tests::TemporaryRoot>();
        QVERIFY(m_root->isValid());
        manager().SetMoveCardInstance(new VZMoveCard);
    }
    void cleanupTestCase() { manager().SetMoveCardInstance(nullptr); }
    void init() {
        machine().setSpeed(0.0);
        machine().clearFaults();
        QFile::remove(m_root->path("ini/MovePos.ini"));
        QFile::remove(m_root->path("ini/SimAxes.ini"));
        *Class_CardPara::Instance() = Class_CardPara();
        Class_CardPara::Instance()->AxisCount = 8;
        for (int motor = 0; motor < 8; ++motor)
            simulatedAxes().putAt(motor, 60.0);
        manager().InitMoveCard();
    }
    void cleanup() {
        manager().CloseMoveCard();
        machine().clearFaults();
    }

    void eight_axes_move_side_by_side() {
        machine().setSpeed(1.0);
        QElapsedTimer clock;
        clock.start();
        for (int axis = 0; axis < 8; ++axis)
            QVERIFY(manager().AxisMove2(axis, 5.0 + axis, 50.0, 500.0)); // 0.2 to 0.34 s
        for (int axis = 0; axis < 8; ++axis)
            manager().WaiAxisStop(axis);
        QVERIFY2(clock.elapsed() >= 340, qPrintable(QString::number(clock.elapsed())));
        for (int axis = 0; axis < 8; ++axis)
            QCOMPARE(counter(axis), 5.0 + axis);
        QVERIFY(!manager().AxisMove2(8, 1.0, 10.0, 100.0));
    }

    void a_move_is_a_trapezoid_and_a_short_one_a_triangle() {
        AxisCore axis;
        // 100 at 50 with 500: 0.1 s and 2.5 to speed up and to brake, 95 at speed.
        QVERIFY(axis.move(0.0, 100.0, 50.0, 500.0));
        QVERIFY(std::fabs(axis.endTime() - 2.1) < 1e-12);
        QVERIFY(std::fabs(axis.position(0.05) - 0.625) < 1e-9);
        QVERIFY(std::fabs(axis.velocity(0.05) - 25.0) < 1e-9);
        QVERIFY(std::fabs(axis.position(1.05) - 50.0) < 1e-9);
        QVERIFY(std::fabs(axis.velocity(1.05) - 50.0) < 1e-9);
        QVERIFY(std::fabs(axis.position(2.05) - 99.375) < 1e-9);
        // 2 at 50 with 500: the speed gets to sqrt(1000) only.
        double const start = axis.endTime();
        QVERIFY(axis.move(start, 102.0, 50.0, 500.0));
        QVERIFY(std::fabs(axis.endTime() - start - 2.0 * std::sqrt(2.0 / 500.0)) < 1e-12);
        QVERIFY(std::fabs(axis.velocity(start + std::sqrt(2.0 / 500.0)) - std::sqrt(1000.0)) < 1e-6);
    }

    void an_axis_drives_the_motor_that_its_number_tells() {
        para(0).MotorNo = 3;
        para(2).MotorNo = 1;
        QVERIFY(manager().AxisMove2(0, 10.0, 50.0, 500.0));
        QCOMPARE(place(2), 70.0);
        QCOMPARE(place(0), 60.0);
        QCOMPARE(counter(0), 10.0);
        QCOMPARE(counter(2), 0.0);
        QVERIFY(homes(2));
        QCOMPARE(place(0), -20.0);
        for (int number : {0, -1, 9}) {
            para(1).MotorNo = number;
            QVERIFY(!manager().AxisMove2(1, 1.0, 10.0, 100.0));
            double pos = 5.0;
            QVERIFY(!manager().AxisGetAltPos(1, pos));
            QCOMPARE(pos, 5.0);
            manager().WaiAxisStop(1);
            QVERIFY(!homes(1));
        }
    }

    /// A machine that had four axes once has three: the slot of the fourth still tells a motor and has a position.
    void slots_behind_the_axes_in_use_act_on_no_motor() {
        manager().CloseMoveCard();
        Class_CardPara::Instance()->AxisCount = 3;
        para(3).MotorNo = 1;
        para(3).PulseReverse = 1;
        ProfIniFile(m_root->path("ini/MovePos.ini")).WriteDouble("AxisPos", "Axis0", 7.0);
        ProfIniFile(m_root->path("ini/MovePos.ini")).WriteDouble("AxisPos", "Axis3", 55.0);
        simulatedAxes().putAt(0, 60.0);
        QFile::remove(m_root->path("ini/SimAxes.ini"));
        manager().InitMoveCard();
        QCOMPARE(counter(0), 7.0);
        AxisSample before;
        QVERIFY(simulatedAxes().sample(0, before));
        QVERIFY(simulatedAxes().move(0, 8.0, 50.0, 500.0)); // as it was set up at the opening
        QVERIFY(place(0) > before.place);
    }

    /// A dialog writes the shared object while steps are driven on the pool.
    void other_threads_go_by_the_parameters_of_the_last_call_on_the_main_thread() {
        QCOMPARE(counter(0), 0.0);
        Class_CardPara::Instance()->AxisCount = 1;
        para(0).MotorNo = 2;
        bool second = false;
        std::thread([&second] { second = manager().AxisMove2(1, 5.0, 50.0, 500.0); }).join();
        QVERIFY(second);
        QCOMPARE(place(1), 65.0);
        QCOMPARE(counter(0), 5.0); // on the main thread the axis is that of motor 2 at once,
        std::thread([&second] { second = manager().AxisMove2(1, 9.0, 50.0, 500.0); }).join();
        QVERIFY(!second); // and from then on also elsewhere there is no second axis
    }

    void an_axis_is_given_its_time_to_settle() {
        machine().setSpeed(1.0);
        Class_CardPara::Instance()->DefaultDelay = 150;
        QElapsedTimer clock;
        clock.start();
        QVERIFY(manager().AxisMove2(0, 1.0, 50.0, 500.0)); // 0.089 s
        manager().WaiAxisStop(0);
        QVERIFY2(clock.elapsed() >= 239, qPrintable(QString::number(clock.elapsed())));
        machine().setSpeed(0.0);
        Class_CardPara::Instance()->DefaultDelay = 3'600'000;
        QVERIFY(manager().AxisMove2(0, 2.0, 50.0, 500.0));
        manager().WaiAxisStop(0);
        Class_CardPara::Instance()->DefaultDelay = -5;
        QVERIFY(manager().AxisMove2(0, 3.0, 50.0, 500.0));
        manager().WaiAxisStop(0);
    }

    void pulses_run_on_where_the_coupling_slips_and_an_encoder_sees_it() {
        para(1).FeedbackMode = 1;
        for (int axis : {0, 1}) {
            QVERIFY(machine().setFault("axis" + std::to_string(axis + 1) + "_slip", true));
            QVERIFY(manager().AxisMove2(axis, 10.0, 50.0, 500.0));
            QCOMPARE(place(axis), 60.0);
            QVERIFY(machine().setFault("axis" + std::to_string(axis + 1) + "_slip", false));
        }
        QCOMPARE(counter(0), 10.0);
        QCOMPARE(counter(1), 0.0);
        QVERIFY(manager().AxisMove2(0, 20.0, 50.0, 500.0));
        QVERIFY(manager().AxisMove2(1, 20.0, 50.0, 500.0));
        QCOMPARE(place(0), 70.0); // the first 10 are lost,
        QCOMPARE(counter(0), 20.0);
        QCOMPARE(place(1), 80.0); // and here they are made good
        QCOMPARE(counter(1), 20.0);
        QVERIFY(homes(0)); // a homing finds the machine again
        QCOMPARE(place(0), -20.0);
        QCOMPARE(counter(0), 0.0);
    }

    void a_move_that_an_encoder_does_not_confirm_is_rejected() {
        AxisMoveStruct request;
        request.AxisNo = 1;
        request.Home = false;
        request.Pos = 10.0;
        request.Vel = 20.0;
        request.Acc = 200.0;
        QVERIFY(machine().setFault("axis2_slip", true));
        for (int mode : {0, 1}) {
            para(1).FeedbackMode = mode;
            QVERIFY(manager().SetCurPos(1, 0.0));
            WaitAxisStop dialog(false, {request}, nullptr, nullptr);
            QCOMPARE(dialog.exec(), int(mode == 0 ? QDialog::Accepted : QDialog::Rejected));
            JournalEntry const call = simulatedCard().journal().since(0).back();
            QCOMPARE(call.name, std::string("WaitAxisStop"));
            QVERIFY(call.args == journalArgs(1, 0, 10.0));
        }
    }

    void switching_the_feedback_leaves_the_display_where_it_is() {
        QVERIFY(machine().setFault("axis1_slip", true));
        QVERIFY(manager().AxisMove2(0, 10.0, 50.0, 500.0));
        QVERIFY(machine().setFault("axis1_slip", false));
        para(0).FeedbackMode = 1;
        QVERIFY(manager().AxisMove2(0, 10.0, 50.0, 500.0));
        QCOMPARE(counter(0), 10.0);
        QCOMPARE(place(0), 60.0);
    }

    void every_axis_has_every_fault_and_each_acts_on_its_own_axis() {
        std::vector<std::string> const names = machine().faultNames();
        int seen = 0;
        for (std::string const& name : names)
            seen += name.rfind("axis", 0) == 0 ? 1 : 0;
        QCOMPARE(seen, 8 * 6);
        for (int axis = 0; axis < 8; ++axis) {
            std::string const prefix = "axis" + std::to_string(axis + 1) + '_';
            para(axis).DriverAlarmEnable = 1;
            manager().AxisMove2(axis, 0.0, 10.0, 100.0); // takes the parameters over
            struct Row {
                char const* fault;
                int bit;
                bool up; ///< a move upwards is barred
                bool down;
            };
            for (Row const& row :
                 {Row{"driver", AxisDriverAlarm, true, true}, Row{"positive_limit", AxisPositiveLimit, true, false},
                  Row{"negative_limit", AxisNegativeLimit, false, true},
                  Row{"home_stuck", AxisHomeSwitch, false, false}}) {
                QVERIFY(machine().setFault(prefix + row.fault, true));
                for (int other = 0; other < 8; ++other)
                    QCOMPARE((state(other) & row.bit) != 0, other == axis);
                QCOMPARE(manager().AxisMove2(axis, counter(axis) + 1.0, 10.0, 100.0), !row.up);
                QCOMPARE(manager().AxisMove2(axis, counter(axis) - 1.0, 10.0, 100.0), !row.down);
                QVERIFY(machine().setFault(prefix + row.fault, false));
                QCOMPARE(state(axis) & row.bit, 0);
            }
        }
    }

    void a_limit_that_gets_stuck_halts_a_jog_on_its_way_there() {
        machine().setSpeed(1.0);
        QVERIFY(manager().AxisMove2Jog(0, 10.0, 1000.0));
        QTRY_VERIFY(counter(0) > 0.5);
        QVERIFY(machine().setFault("axis1_negative_limit", true)); // behind it
        QVERIFY((state(0) & AxisMoving) != 0);
        QVERIFY(machine().setFault("axis1_positive_limit", true));
        QCOMPARE(state(0) & AxisMoving, 0);
    }

    void faults_outlast_the_closing_of_the_card() {
        QVERIFY(machine().setFault("axis1_positive_limit", true));
        manager().CloseMoveCard();
        manager().InitMoveCard();
        QVERIFY((state(0) & AxisPositiveLimit) != 0);
        machine().clearFaults();
        QCOMPARE(state(0) & AxisPositiveLimit, 0);
    }

    void counter_and_carriage_come_back_together_data() {
        QTest::addColumn<int>("reverse");
        QTest::newRow("plain") << 0;
        QTest::newRow("inverted pulses") << 1;
    }

    void counter_and_carriage_come_back_together() {
        QFETCH(int, reverse);
        para(0).PulseReverse = reverse;
        QVERIFY(homes(0));
        QVERIFY(manager().AxisMove2(0, 42.5, 50.0, 500.0));
        double const carriage = place(0);
        QCOMPARE(carriage, reverse ? 220.0 - 42.5 : -20.0 + 42.5);
        keepCounter(0);
        manager().CloseMoveCard();
        simulatedAxes().putAt(0, 60.0); // as in a process that has just begun
        manager().InitMoveCard();
        QCOMPARE(counter(0), 42.5);
        QCOMPARE(place(0), carriage);
        // Not homed any more, but right: the limit is where it was.
        QCOMPARE(state(0) & AxisHomed, 0);
        QVERIFY(manager().AxisMove2(0, -10.0, 50.0, 500.0));
        QVERIFY((state(0) & AxisNegativeLimit) != 0);
        QVERIFY(std::fabs(counter(0)) < 1e-9);
    }

    void after_a_kill_the_carriage_follows_the_counter_that_was_kept() {
        QVERIFY(homes(0)); // writes the places
        QByteArray const places = m_root->read("ini/SimAxes.ini");
        QVERIFY(manager().AxisMove2(0, 30.0, 50.0, 500.0));
        keepCounter(0);
        manager().CloseMoveCard();
        QVERIFY(m_root->write("ini/SimAxes.ini", places)); // as if the program had been killed after the move
        simulatedAxes().putAt(0, 60.0);
        manager().InitMoveCard();
        QCOMPARE(counter(0), 30.0);
        QVERIFY(std::fabs(place(0) - 10.0) < 1e-9);
    }

    void strange_places_in_the_file_are_held_to_the_machine() {
        manager().CloseMoveCard();
        QVERIFY(m_root->write("ini/SimAxes.ini",
                              "[Motor1]\nPlace=1e9\nCounter=0\n[Motor2]\nPlace=nan\n[Motor3]\nPlace=far\n"));
        manager().InitMoveCard();
        QCOMPARE(place(0), 222.0);
        QCOMPARE(place(1), 60.0);
        QCOMPARE(place(2), 60.0);
    }

    void a_set_position_is_kept_with_its_place() {
        QVERIFY(manager().SetCurPos(3, -5.0));
        ProfIniFile const file(m_root->path("ini/SimAxes.ini"));
        QCOMPARE(file.ReadDouble("Motor4", "Counter", 0.0), -5.0);
        QCOMPARE(file.ReadDouble("Motor4", "Place", 0.0), 60.0);
    }
};

QTEST_MAIN(TestAxisMachine)
#include "tst_axismachine.moc"
