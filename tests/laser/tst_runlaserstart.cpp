// SPDX-License-Identifier: MIT
#include "engine/markingmparam_vz.h"
#include "engine/profinifile.h"
#include "laser/runlaserstart.h"
#include "tests/laser/recordingport.h"
#include "tests/support/temporaryroot.h"

#include <QFile>
#include <QtTest>

using namespace tests;

namespace {

constexpr char kCardFile[] = "/ini/VZMarkPara.cfg";
constexpr char kDemarcateFile[] = "/ini/Demarcate.ini";

constexpr int RunLaserStart::*kFields[] = {
    &RunLaserStart::nOssType,
    &RunLaserStart::nMarkEndResetDaToZero,
    &RunLaserStart::bLockLaserAllow,
    &RunLaserStart::nLockLaserSwitchIO,
    &RunLaserStart::nOutb07,
    &RunLaserStart::bYLS,
    &RunLaserStart::nYlrSoftwareEnable,
    &RunLaserStart::nYlrReadyAfterEnableMs,
    &RunLaserStart::nYlrLaserType,
    &RunLaserStart::nWaveNoLock,
    &RunLaserStart::nFiberAlarm,
    &RunLaserStart::nFiberSoftwareEnable,
    &RunLaserStart::nPrrBeforeMoPaUs,
};

const QVector<int> kDefaults = {0, 1, 0, 7, 0, 0, 0, 20, 0, 1, 0, 0, 8000};

RunLaserStart& laser() {
    return *RunLaserStart::Instance();
}

QVector<int> values() {
    QVector<int> list;
    for (auto field : kFields)
        list << laser().*field;
    return list;
}

void setValues(QVector<int> const& list) {
    for (int i = 0; i < list.size(); ++i)
        laser().*kFields[i] = list.at(i);
}

void loadAll() {
    laser().InitYLRParam();
    laser().InitYAGParam();
    laser().InitFilberParam();
    laser().InitCommonParam();
}

void setType(int type) {
    MarkingMParam_VZ::Instance()->SetMarkCardType(static_cast<MarkCardType>(type));
}

} // namespace

/// The settings of the laser, and which sequence they choose.
class RunLaserStartTest : public QObject {
    Q_OBJECT

private slots:
    void initTestCase();
    void init();
    void cleanup();

    void construction_loads_every_field();
    void missing_files_give_the_defaults();
    void a_value_that_is_no_number_gives_the_default();
    void each_save_writes_its_keys_in_order_data();
    void each_save_writes_its_keys_in_order();
    void save_param_writes_all_in_order();
    void the_shared_enable_is_written_by_the_laser_type_data();
    void the_shared_enable_is_written_by_the_laser_type();
    void what_was_saved_is_loaded();
    void other_keys_and_sections_stay();

    void start_and_end_of_each_type_and_variant_data();
    void start_and_end_of_each_type_and_variant();
    void ylm_behaves_exactly_as_ylr();
    void ylr_shutter_is_off_for_any_value_but_1_data();
    void ylr_shutter_is_off_for_any_value_but_1();
    void remote_pulse_is_off_for_any_value_but_1();
    void fibre_enable_is_on_for_any_value_but_0();
    void sn_without_rdy_still_opens_the_shutter();
    void a_closed_card_is_not_driven_by_start_end_or_type_change();
    void type_change_drives_the_type_given_and_keeps_the_field();
    void every_value_of_the_type_reaches_output_29();

private:
    TemporaryRoot m_Root;
};

void RunLaserStartTest::initTestCase() {
    QVERIFY(m_Root.isValid());
}

void RunLaserStartTest::init() {
    if (QByteArray(QTest::currentTestFunction()) == "construction_loads_every_field")
        return;
    QFile::remove(m_Root.path(kCardFile));
    QFile::remove(m_Root.path(kDemarcateFile));
    setType(0);
    loadAll();
}

void RunLaserStartTest::cleanup() {
    laser().SetPort(nullptr);
}

/// First in this file: the object does not exist in this process yet.
void RunLaserStartTest::construction_loads_every_field() {
    QVERIFY(m_Root.write(kCardFile, "[LASER]\nOSS_TYPE=2\nbLockLaserAllow=1\nnLockLaserSwitchIO=9\nbYLS=1\n"
                                    "TopSoftWareControlYlrEnable=1\nYLRReadyAfterEnableMS=35\nWaveNoLock=0\n"
                                    "nPrrBeforeMoPaUS=7000\n[Main]\nMarkEndResetDaToZero=0\n"));
    QVERIFY(m_Root.write(kDemarcateFile, "[LaserS_YLR]\nOUTB_07=1\nLaserType=1\n[LASER]\nFiber_Alarm=1\nOSS_TYPE=5\n"));
    QCOMPARE(values(), (QVector<int>{2, 0, 1, 9, 1, 1, 1, 35, 1, 0, 1, 1, 7000}));
    QCOMPARE(RunLaserStart::Instance(), &laser());
}

void RunLaserStartTest::missing_files_give_the_defaults() {
    QVERIFY(!m_Root.exists(kCardFile) && !m_Root.exists(kDemarcateFile));
    setValues(QVector<int>(13, 77));
    loadAll();
    QCOMPARE(values(), kDefaults);
    QVERIFY(!m_Root.exists(kCardFile) && !m_Root.exists(kDemarcateFile));
}

void RunLaserStartTest::a_value_that_is_no_number_gives_the_default() {
    QVERIFY(m_Root.write(kCardFile, "[LASER]\nnLockLaserSwitchIO=seven\nbYLS=\nnPrrBeforeMoPaUS=99999999999\n"
                                    "YLRReadyAfterEnableMS=1x\n[Main]\nMarkEndResetDaToZero=-\n"));
    loadAll();
    QCOMPARE(values(), kDefaults);
}

void RunLaserStartTest::each_save_writes_its_keys_in_order_data() {
    QTest::addColumn<int>("save");
    QTest::addColumn<QByteArray>("card");
    QTest::addColumn<QByteArray>("demarcate");
    QTest::newRow("YLR") << 0 << QByteArray("[LASER]\nbYLS=16\nYLRReadyAfterEnableMS=18\n")
                         << QByteArray("[LaserS_YLR]\nOUTB_07=15\nLaserType=19\n");
    QTest::newRow("YAG") << 1 << QByteArray("[LASER]\nWaveNoLock=20\n") << QByteArray();
    QTest::newRow("fibre") << 2 << QByteArray("[LASER]\nnPrrBeforeMoPaUS=23\n")
                           << QByteArray("[LASER]\nFiber_Alarm=21\n");
    QTest::newRow("common") << 3
                            << QByteArray("[LASER]\nOSS_TYPE=11\nbLockLaserAllow=13\nnLockLaserSwitchIO=14\n\n"
                                          "[Main]\nMarkEndResetDaToZero=12\n")
                            << QByteArray();
}

void RunLaserStartTest::each_save_writes_its_keys_in_order() {
    constexpr void (RunLaserStart::*kSaves[])() = {&RunLaserStart::SaveYLRParam, &RunLaserStart::SaveYAGParam,
                                                   &RunLaserStart::SaveFilberParam, &RunLaserStart::SaveCommonParam};
    QFETCH(int, save);
    QFETCH(QByteArray, card);
    QFETCH(QByteArray, demarcate);
    setValues({11, 12, 13, 14, 15, 16, 17, 18, 19, 20, 21, 22, 23});
    (laser().*kSaves[save])();
    QCOMPARE(m_Root.read(kCardFile), card);
    QCOMPARE(m_Root.read(kDemarcateFile), demarcate);
}

void RunLaserStartTest::save_param_writes_all_in_order() {
    setValues({11, 12, 13, 14, 15, 16, 17, 18, 19, 20, 21, 22, 23});
    laser().SaveParam();
    QCOMPARE(m_Root.read(kCardFile),
             QByteArray("[LASER]\nbYLS=16\nYLRReadyAfterEnableMS=18\nWaveNoLock=20\nnPrrBeforeMoPaUS=23\nOSS_TYPE=11\n"
                        "bLockLaserAllow=13\nnLockLaserSwitchIO=14\nTopSoftWareControlYlrEnable=22\n\n"
                        "[Main]\nMarkEndResetDaToZero=12\n"));
    QCOMPARE(m_Root.read(kDemarcateFile),
             QByteArray("[LaserS_YLR]\nOUTB_07=15\nLaserType=19\n\n[LASER]\nFiber_Alarm=21\n"));
}

void RunLaserStartTest::the_shared_enable_is_written_by_the_laser_type_data() {
    QTest::addColumn<int>("type");
    QTest::addColumn<int>("written");
    QTest::newRow("FILBER: the fibre's") << 0 << 22;
    QTest::newRow("YLR: its own") << 1 << 17;
    QTest::newRow("YLM: its own") << 5 << 17;
    QTest::newRow("YAG: as it stands") << 2 << 4;
    QTest::newRow("SPI: as it stands") << 3 << 4;
    QTest::newRow("EP: as it stands") << 4 << 4;
}

void RunLaserStartTest::the_shared_enable_is_written_by_the_laser_type() {
    QFETCH(int, type);
    QFETCH(int, written);
    QVERIFY(m_Root.write(kCardFile, "[LASER]\nTopSoftWareControlYlrEnable=4\n"));
    setType(type);
    laser().nYlrSoftwareEnable = 17;
    laser().nFiberSoftwareEnable = 22;
    laser().SaveParam();
    QCOMPARE(XProfIniFile_CardCfg::Instance()->ReadInt("LASER", "TopSoftWareControlYlrEnable", -1), written);
    loadAll();
    QCOMPARE(laser().nYlrSoftwareEnable, written);
    QCOMPARE(laser().nFiberSoftwareEnable, written);
}

void RunLaserStartTest::what_was_saved_is_loaded() {
    const QVector<int> list = {3, 0, 1, -5, 1, 4, 6, 0, 1, 0, 1, 6, 2147483647};
    setValues(list);
    laser().SaveParam();
    setValues(QVector<int>(13, 77));
    loadAll();
    QCOMPARE(values(), list);
}

void RunLaserStartTest::other_keys_and_sections_stay() {
    QVERIFY(m_Root.write(kCardFile, "; card\n[HARDWARE]\nX=1\n[LASER]\nMine=2\nbYLS=3\n"));
    laser().bYLS = 1;
    laser().SaveParam();
    const QByteArray file = m_Root.read(kCardFile);
    QVERIFY2(file.startsWith("; card\n[HARDWARE]\nX=1\n[LASER]\nMine=2\nbYLS=1\n"), file);
}

void RunLaserStartTest::start_and_end_of_each_type_and_variant_data() {
    QTest::addColumn<int>("type");
    QTest::addColumn<int>("variant");
    QTest::addColumn<QStringList>("start");
    QTest::addColumn<QStringList>("end");
    const QStringList switchOff = {"out 23 0", "wait 1000", "out 26 0"};
    const auto row = [](QByteArray const& name, int type, int variant, QStringList const& start,
                        QStringList const& end) { QTest::newRow(name) << type << variant << start << end; };
    row("FILBER", 0, 1, {"out 21 1"}, {"out 21 0"});
    for (int type : {1, 5}) {
        const QByteArray name = "type " + QByteArray::number(type) + ": ";
        row(name + "YLR/YLM", type, 0, {"out 23 0", "wait 200", "out 29 1", "wait 500", "out 23 1"}, {"out 23 0"});
        row(name + "YLS", type, 1, {"out 23 1", "wait 1000", "out 26 1", "wait 100", "read 22"}, switchOff);
        row(name + "SN", type, 2, {"out 26 1", "read 23", "out 23 1", "read 22"}, switchOff);
        row(name + "third without lines", type, 3, {}, {});
        row(name + "fourth without lines", type, 4, {}, {});
        row(name + "unknown variant", type, 5, {}, {});
        row(name + "negative variant", type, -1, {}, {});
    }
    row("YAG", 2, 1, {}, {});
    row("SPI", 3, 1, {}, {});
    row("EP", 4, 2, {}, {});
}

void RunLaserStartTest::start_and_end_of_each_type_and_variant() {
    QFETCH(int, type);
    QFETCH(int, variant);
    QFETCH(QStringList, start);
    QFETCH(QStringList, end);
    setType(type);
    laser().bYLS = variant;
    laser().nYlrSoftwareEnable = 1;
    laser().nYlrLaserType = 1;
    laser().nFiberSoftwareEnable = 1;
    RecordingPort port;
    port.readsUntilLow = {{22, 0}, {23, 0}};
    laser().SetPort(&port);
    laser().RunLaser_Start();
    QCOMPARE(port.calls, start);
    port.calls.clear();
    laser().RunLaser_End();
    QCOMPARE(port.calls, end);
}

void RunLaserStartTest::ylm_behaves_exactly_as_ylr() {
    for (int variant = 0; variant <= 4; ++variant) {
        laser().bYLS = variant;
        for (int settings = 0; settings < 8; ++settings) {
            laser().nYlrSoftwareEnable = settings & 1;
            laser().nOutb07 = settings >> 1 & 1;
            laser().nYlrLaserType = settings >> 2 & 1;
            QStringList ordered[2];
            for (int type : {1, 5}) {
                RecordingPort port;
                port.readsUntilLow = {{22, 4}};
                laser().SetPort(&port);
                setType(type);
                laser().RunLaser_Start();
                laser().RunLaser_End();
                ordered[type == 5] = port.ordered;
            }
            QCOMPARE(ordered[1], ordered[0]);
        }
    }
}

void RunLaserStartTest::ylr_shutter_is_off_for_any_value_but_1_data() {
    QTest::addColumn<int>("enable");
    QTest::addColumn<bool>("on");
    QTest::newRow("0") << 0 << false;
    QTest::newRow("1") << 1 << true;
    QTest::newRow("2") << 2 << false;
    QTest::newRow("-1") << -1 << false;
    QTest::newRow("255") << 255 << false;
}

void RunLaserStartTest::ylr_shutter_is_off_for_any_value_but_1() {
    QFETCH(int, enable);
    QFETCH(bool, on);
    setType(1);
    laser().nYlrSoftwareEnable = enable;
    RecordingPort port;
    laser().SetPort(&port);
    laser().RunLaser_Start();
    QCOMPARE(port.calls, on ? (QStringList{"out 23 0", "wait 200", "out 29 0", "wait 500", "out 23 1"})
                            : (QStringList{"wait 200", "out 29 0"}));
    port.calls.clear();
    laser().RunLaser_End();
    QCOMPARE(port.calls, on ? QStringList{"out 23 0"} : QStringList());
}

void RunLaserStartTest::remote_pulse_is_off_for_any_value_but_1() {
    setType(1);
    for (int pulse : {0, 2, -1}) {
        laser().nOutb07 = pulse;
        RecordingPort port;
        laser().SetPort(&port);
        laser().RunLaser_Start();
        QCOMPARE(port.calls, (QStringList{"wait 200", "out 29 0"}));
    }
}

void RunLaserStartTest::fibre_enable_is_on_for_any_value_but_0() {
    for (int enable : {0, 1, 2, -1, 255}) {
        laser().nFiberSoftwareEnable = enable;
        RecordingPort port;
        laser().SetPort(&port);
        laser().RunLaser_Start();
        laser().RunLaser_End();
        QCOMPARE(port.calls, enable != 0 ? (QStringList{"out 21 1", "out 21 0"}) : QStringList());
    }
}

void RunLaserStartTest::sn_without_rdy_still_opens_the_shutter() {
    setType(1);
    laser().bYLS = 2;
    RecordingPort port;
    port.readsUntilLow = {{22, 0}};
    laser().SetPort(&port);
    laser().RunLaser_Start();
    QCOMPARE(port.calls, (QStringList{"out 26 1"} + poll(23, 50, 201, false) +
                          QStringList{"notice 施恩激光器等待RDY_23超时,请确认", "out 23 1", "read 22"}));
}

void RunLaserStartTest::a_closed_card_is_not_driven_by_start_end_or_type_change() {
    RecordingPort port;
    port.open = false;
    laser().SetPort(&port);
    laser().nFiberSoftwareEnable = 1;
    laser().nYlrSoftwareEnable = 1;
    for (int type = 0; type <= 5; ++type) {
        for (int variant = 0; variant <= 4; ++variant) {
            setType(type);
            laser().bYLS = variant;
            laser().RunLaser_Start();
            laser().RunLaser_End();
            laser().ChangeYLRLaserType(1);
        }
    }
    QCOMPARE(port.ordered, QStringList());
}

void RunLaserStartTest::type_change_drives_the_type_given_and_keeps_the_field() {
    laser().nYlrLaserType = 0;
    for (int enable : {0, 1}) {
        laser().nYlrSoftwareEnable = enable;
        RecordingPort port;
        laser().SetPort(&port);
        laser().ChangeYLRLaserType(1);
        QCOMPARE(port.calls, (QStringList{"out 23 0", "wait 200", "out 29 1", "wait 500", "out 23 1"}));
        QCOMPARE(laser().nYlrLaserType, 0);
    }
}

void RunLaserStartTest::every_value_of_the_type_reaches_output_29() {
    setType(5);
    for (int value : {0, 1, 3}) {
        laser().nYlrLaserType = value;
        RecordingPort port;
        laser().SetPort(&port);
        laser().RunLaser_Start();
        QCOMPARE(port.calls, (QStringList{"wait 200", QStringLiteral("out 29 %1").arg(value)}));
    }
}

QTEST_GUILESS_MAIN(RunLaserStartTest)
#include "tst_runlaserstart.moc"
