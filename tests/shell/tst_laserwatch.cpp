// SPDX-License-Identifier: MIT
#include "iosetup/laseralarmset.h"
#include "laser/runlaserstart.h"
#include "tests/shell/supervisionfixture.h"

#include <QPointer>
#include <QSignalSpy>

using namespace tests;

/// The laser's fault lines and the card's alarm in the poll: run status, indicator, latch.
class LaserWatchTest : public QObject, private SupervisionCase {
    Q_OBJECT

private slots:
    void initTestCase() { QVERIFY(hasRoot()); }
    void init() { beginSupervision(); }
    void cleanup() { endSupervision(); }

    void without_response_to_inputs_the_laser_is_watched_alone();
    void the_laser_watch_sets_run_status_and_indicator();
    void a_custom_laser_alarm_is_not_latched_by_the_poll();
    void a_custom_laser_alarm_stays_in_the_open_dialog_until_it_is_cleared();
    void switching_the_laser_watch_off_takes_the_alarm_back();
    void the_fibre_alarm_is_raised_once();
    void the_fibre_alarm_needs_its_option_and_its_laser_data();
    void the_fibre_alarm_needs_its_option_and_its_laser();
};

void LaserWatchTest::without_response_to_inputs_the_laser_is_watched_alone() {
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

void LaserWatchTest::the_laser_watch_sets_run_status_and_indicator() {
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

void LaserWatchTest::a_custom_laser_alarm_is_not_latched_by_the_poll() {
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

void LaserWatchTest::a_custom_laser_alarm_stays_in_the_open_dialog_until_it_is_cleared() {
    QVERIFY(startWithDialog());
    dialog().close();
    watchLaser();
    LaserAlarmPara* para = LaserAlarmPara::Instance();
    para->m_LaserType = 0;
    para->m_CheckIn[0] = para->m_CheckMask[0] = true;
    para->SavePara();
    QTest::mouseClick(m_Window->child<AlarmCtrl>("alarmLaser"), Qt::LeftButton);
    QPointer<LaserAlarmSet> open = m_Window->child<LaserAlarmSet>("LaserAlarmSet");
    auto const* state = open->findChild<QLabel*>(QStringLiteral("labelAlarmState"));
    machine().setInputs(1U << 22);
    QTRY_COMPARE(state->text(), QStringLiteral("激光器报警"));
    machine().setInputs(0);
    QSignalSpy looks(open, &LaserAlarmSet::AlarmChanged);
    QTRY_VERIFY(looks.size() >= 3);
    QCOMPARE(state->text(), QStringLiteral("激光器报警"));
    QVERIFY(machine().state().errorOutput);
    QCOMPARE(RunDataGather::Instance()->GetRunStatus(), RunStatusNormal);
    open->on_pushButtonReset_clicked();
    QTRY_VERIFY(looks.size() >= 7);
    QCOMPARE(state->text(), QStringLiteral("激光器正常"));
    QVERIFY(!machine().state().errorOutput);
    machine().setInputs(1U << 22);
    QTRY_COMPARE(state->text(), QStringLiteral("激光器报警"));
    machine().setInputs(0);
    open->close();
    QTRY_VERIFY(!open);
    QVERIFY(polled());
    QVERIFY(!para->m_Alarm && !machine().state().errorOutput);
    para->m_CheckIn[0] = para->m_CheckMask[0] = para->m_EnableLaserAlarm = false;
    para->SavePara();
}

void LaserWatchTest::switching_the_laser_watch_off_takes_the_alarm_back() {
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

void LaserWatchTest::the_fibre_alarm_is_raised_once() {
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

void LaserWatchTest::the_fibre_alarm_needs_its_option_and_its_laser_data() {
    QTest::addColumn<bool>("option");
    QTest::addColumn<int>("type");
    QTest::addColumn<unsigned int>("alarm");
    QTest::newRow("option off") << false << int(MarkCardFilber) << 0U;
    for (int type = 0; type <= 5; ++type)
        QTest::addRow("laser type %d", type) << true << type << (type == 0 ? 256U : 0U);
}

void LaserWatchTest::the_fibre_alarm_needs_its_option_and_its_laser() {
    QFETCH(bool, option);
    QFETCH(int, type);
    MarkingMParam_VZ::Instance()->SetMarkCardType(MarkCardType(type));
    QVERIFY(startWithDialog());
    RunLaserStart::Instance()->nFiberAlarm = option ? 1 : 0;
    QVERIFY(machine().setFault("card_alarm", true));
    QVERIFY(polled());
    QTEST(window().GetSafeAlarm(), "alarm");
}

QTEST_MAIN(LaserWatchTest)
#include "tst_laserwatch.moc"
