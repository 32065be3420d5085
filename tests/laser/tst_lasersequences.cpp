// SPDX-License-Identifier: MIT
#include "laser/lasersequence.h"
#include "tests/laser/recordingport.h"

#include <QtTest>

using namespace tests;
using namespace tessera;

/// The sequences by the order of what they drive, read, wait for and say.
class LaserSequencesTest : public QObject {
    Q_OBJECT

private slots:
    void family_of_a_type_and_variant_data();
    void family_of_a_type_and_variant();
    void ylr_types_are_one_and_five_alone();
    void ylr_starts_by_its_settings_data();
    void ylr_starts_by_its_settings();
    void ylr_ends_by_its_shutter_setting();
    void fibre_enable_follows_its_setting();
    void yag_starts_without_a_step();
    void yls_starts_and_is_ready_data();
    void yls_starts_and_is_ready();
    void yls_that_never_is_ready_gets_its_notice_after_30_1_seconds();
    void sn_reads_before_any_wait();
    void sn_answers_after_some_reads();
    void sn_without_rdy_goes_on_to_the_shutter_and_emiss();
    void sn_without_emiss_gets_the_second_notice_alone();
    void sn_without_any_answer_takes_20_1_seconds();
    void yls_and_sn_end_alike();
    void type_change_leaves_the_shutter_on_whatever_its_setting();
    void start_sequences_tell_the_screen_what_they_wait_for();
    void end_and_type_change_show_nothing();

private:
    static QStringList run(LaserSequence const& sequence, LaserChoices const& choices = {}) {
        RecordingPort port;
        RunLaserSequence(sequence, choices, port);
        return port.calls;
    }
};

void LaserSequencesTest::family_of_a_type_and_variant_data() {
    QTest::addColumn<int>("type");
    QTest::addColumn<int>("variant");
    QTest::addColumn<int>("family");
    const auto row = [](char const* name, int type, int variant, LaserFamily family) {
        QTest::newRow(name) << type << variant << static_cast<int>(family);
    };
    for (int type : {1, 5}) {
        const QByteArray name = type == 1 ? "YLR " : "YLM ";
        row(name + "0", type, 0, LaserFamily::Ylr);
        row(name + "1", type, 1, LaserFamily::Yls);
        row(name + "2", type, 2, LaserFamily::Sn);
        row(name + "3", type, 3, LaserFamily::None);
        row(name + "4", type, 4, LaserFamily::None);
        row(name + "below", type, -1, LaserFamily::None);
    }
    row("FILBER", 0, 0, LaserFamily::Fibre);
    row("FILBER has no variant", 0, 1, LaserFamily::Fibre);
    row("YAG", 2, 1, LaserFamily::Yag);
    row("SPI", 3, 1, LaserFamily::None);
    row("EP", 4, 1, LaserFamily::None);
    row("unknown", 6, 1, LaserFamily::None);
}

void LaserSequencesTest::family_of_a_type_and_variant() {
    QFETCH(int, type);
    QFETCH(int, variant);
    QFETCH(int, family);
    QCOMPARE(static_cast<int>(LaserFamilyOf(type, variant)), family);
}

void LaserSequencesTest::ylr_types_are_one_and_five_alone() {
    QVector<int> found;
    for (int type = -8; type < 64; ++type)
        if (IsYlrType(type))
            found << type;
    QCOMPARE(found, (QVector<int>{1, 5}));
}

void LaserSequencesTest::ylr_starts_by_its_settings_data() {
    QTest::addColumn<bool>("shutter");
    QTest::addColumn<bool>("pulse");
    QTest::addColumn<int>("laserType");
    QTest::addColumn<QStringList>("calls");
    QTest::newRow("neither") << false << false << 0 << QStringList{"wait 200", "out 29 0"};
    QTest::newRow("neither, QCW") << false << false << 1 << QStringList{"wait 200", "out 29 1"};
    QTest::newRow("pulse") << false << true << 0
                           << QStringList{"out 26 1", "wait 2000", "out 26 0", "wait 200", "out 29 0"};
    QTest::newRow("shutter") << true << false << 1
                             << QStringList{"out 23 0", "wait 200", "out 29 1", "wait 500", "out 23 1"};
    QTest::newRow("both") << true << true << 0 << QStringList{"out 23 0", "out 26 1", "wait 2000", "out 26 0",
                                                              "wait 200", "out 29 0", "wait 500",  "out 23 1"};
}

void LaserSequencesTest::ylr_starts_by_its_settings() {
    QFETCH(bool, shutter);
    QFETCH(bool, pulse);
    QFETCH(int, laserType);
    QFETCH(QStringList, calls);
    LaserChoices choices;
    choices.shutterBySoftware = shutter;
    choices.remotePulse = pulse;
    choices.laserType = laserType;
    QCOMPARE(run(kYlrStart, choices), calls);
}

void LaserSequencesTest::ylr_ends_by_its_shutter_setting() {
    QCOMPARE(run(kYlrEnd), QStringList());
    LaserChoices choices;
    choices.shutterBySoftware = true;
    QCOMPARE(run(kYlrEnd, choices), QStringList{"out 23 0"});
}

void LaserSequencesTest::fibre_enable_follows_its_setting() {
    QCOMPARE(run(kFibreStart), QStringList());
    QCOMPARE(run(kFibreEnd), QStringList());
    LaserChoices choices;
    choices.fibreEnable = true;
    QCOMPARE(run(kFibreStart, choices), QStringList{"out 21 1"});
    QCOMPARE(run(kFibreEnd, choices), QStringList{"out 21 0"});
}

void LaserSequencesTest::yag_starts_without_a_step() {
    LaserChoices all;
    all.shutterBySoftware = all.remotePulse = all.fibreEnable = true;
    QCOMPARE(run(kYagStart, all), QStringList());
}

void LaserSequencesTest::yls_starts_and_is_ready_data() {
    QTest::addColumn<int>("failed");
    QTest::newRow("at once") << 0;
    QTest::newRow("after one read") << 1;
    QTest::newRow("after 17 reads") << 17;
    QTest::newRow("at the last read") << 300;
}

/// The first read comes after the wait that follows the remote start.
void LaserSequencesTest::yls_starts_and_is_ready() {
    QFETCH(int, failed);
    RecordingPort port;
    port.readsUntilLow[22] = failed;
    RunLaserSequence(kYlsStart, {}, port);
    QCOMPARE(port.calls, (QStringList{"out 23 1", "wait 1000", "out 26 1", "wait 100"} + poll(22, 100, failed, true)));
}

void LaserSequencesTest::yls_that_never_is_ready_gets_its_notice_after_30_1_seconds() {
    RecordingPort port;
    RunLaserSequence(kYlsStart, {}, port);
    QCOMPARE(port.calls, (QStringList{"out 23 1", "wait 1000", "out 26 1", "wait 100"} + poll(22, 100, 301, false) +
                          QStringList{"notice YLS激光等待Ready信号超时,请确认"}));
    QCOMPARE(port.elapsedMs, 1000 + 100 + 30100);
}

void LaserSequencesTest::sn_reads_before_any_wait() {
    RecordingPort port;
    port.readsUntilLow[22] = 0;
    port.readsUntilLow[23] = 0;
    RunLaserSequence(kSnStart, {}, port);
    QCOMPARE(port.calls, (QStringList{"out 26 1", "read 23", "out 23 1", "read 22"}));
    QCOMPARE(port.elapsedMs, 0);
}

void LaserSequencesTest::sn_answers_after_some_reads() {
    RecordingPort port;
    port.readsUntilLow[23] = 200;
    port.readsUntilLow[22] = 3;
    RunLaserSequence(kSnStart, {}, port);
    QCOMPARE(port.calls,
             (QStringList{"out 26 1"} + poll(23, 50, 200, true) + QStringList{"out 23 1"} + poll(22, 50, 3, true)));
}

void LaserSequencesTest::sn_without_rdy_goes_on_to_the_shutter_and_emiss() {
    RecordingPort port;
    port.readsUntilLow[22] = 2;
    RunLaserSequence(kSnStart, {}, port);
    QCOMPARE(port.calls, (QStringList{"out 26 1"} + poll(23, 50, 201, false) +
                          QStringList{"notice 施恩激光器等待RDY_23超时,请确认", "out 23 1"} + poll(22, 50, 2, true)));
}

void LaserSequencesTest::sn_without_emiss_gets_the_second_notice_alone() {
    RecordingPort port;
    port.readsUntilLow[23] = 0;
    RunLaserSequence(kSnStart, {}, port);
    QCOMPARE(port.calls, (QStringList{"out 26 1", "read 23", "out 23 1"} + poll(22, 50, 201, false) +
                          QStringList{"notice 施恩激光器等待EMISS_22超时,请确认"}));
    QCOMPARE(port.elapsedMs, 10050);
}

void LaserSequencesTest::sn_without_any_answer_takes_20_1_seconds() {
    RecordingPort port;
    RunLaserSequence(kSnStart, {}, port);
    QCOMPARE(port.calls, (QStringList{"out 26 1"} + poll(23, 50, 201, false) +
                          QStringList{"notice 施恩激光器等待RDY_23超时,请确认", "out 23 1"} + poll(22, 50, 201, false) +
                          QStringList{"notice 施恩激光器等待EMISS_22超时,请确认"}));
    QCOMPARE(port.elapsedMs, 20100);
}

void LaserSequencesTest::yls_and_sn_end_alike() {
    QCOMPARE(run(kYlsSnEnd), (QStringList{"out 23 0", "wait 1000", "out 26 0"}));
}

void LaserSequencesTest::type_change_leaves_the_shutter_on_whatever_its_setting() {
    for (bool shutter : {false, true}) {
        LaserChoices choices;
        choices.shutterBySoftware = shutter;
        choices.laserType = 1;
        QCOMPARE(run(kTypeChange, choices), (QStringList{"out 23 0", "wait 200", "out 29 1", "wait 500", "out 23 1"}));
    }
}

/// The screen hears of a wait before it begins and after the line that it follows has been driven.
void LaserSequencesTest::start_sequences_tell_the_screen_what_they_wait_for() {
    RecordingPort yls;
    yls.readsUntilLow[22] = 1;
    RunLaserSequence(kYlsStart, {}, yls);
    QCOMPARE(yls.ordered, (QStringList{"begin 激光器启动中", "out 23 1", "光闸使能生效 -1 1000", "wait 1000",
                                       "out 26 1", "远程启动生效 -1 100", "wait 100", "YLS激光Ready信号 22 30100",
                                       "read 22", "wait 100", "read 22", "end"}));
    RecordingPort sn;
    RunLaserSequence(kSnStart, {}, sn);
    QCOMPARE(sn.screen, (QStringList{"begin 激光器启动中", "施恩激光器RDY_23信号 23 10050",
                                     "施恩激光器EMISS_22信号 22 10050", "end"}));
    RecordingPort ylr;
    LaserChoices choices;
    choices.shutterBySoftware = choices.remotePulse = true;
    RunLaserSequence(kYlrStart, choices, ylr);
    QCOMPARE(ylr.screen, (QStringList{"begin 激光器启动中", "远程启动脉冲 -1 2000", "输出线路稳定 -1 200",
                                      "激光器类型切换 -1 500", "end"}));
}

void LaserSequencesTest::end_and_type_change_show_nothing() {
    for (LaserSequence const* sequence : {&kYlrEnd, &kYlsSnEnd, &kFibreEnd, &kTypeChange}) {
        RecordingPort port;
        LaserChoices choices;
        choices.shutterBySoftware = choices.fibreEnable = true;
        RunLaserSequence(*sequence, choices, port);
        QVERIFY(!port.calls.isEmpty());
        QCOMPARE(port.screen, QStringList());
    }
}

QTEST_GUILESS_MAIN(LaserSequencesTest)
#include "tst_lasersequences.moc"
