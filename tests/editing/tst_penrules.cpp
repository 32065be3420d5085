// SPDX-License-Identifier: MIT
#include "editing/penrules.h"
#include "editing/powercurve.h"

#include <QtTest>
#include <cmath>
#include <limits>

using namespace tessera;

namespace {

PenMachine machineOf(int type, int pulseWidthType = 0, int fibre = 0, bool derived = false) {
    PenMachine machine;
    machine.type = static_cast<MarkCardType>(type);
    machine.pulseWidthType = pulseWidthType;
    machine.fibre = static_cast<FilberLaserType>(fibre);
    machine.derivedFromWave = derived;
    return machine;
}

} // namespace

/// What the pen panel shows and stores by laser type, and the small geometry of the curve drawing.
class PenRulesTest : public QObject {
    Q_OBJECT

private slots:
    void rows_follow_the_laser_type_data();
    void rows_follow_the_laser_type();
    void values_derived_from_the_waveform_cannot_be_typed_data();
    void values_derived_from_the_waveform_cannot_be_typed();
    void the_duty_row_takes_a_pulse_width_in_its_mode_alone_data();
    void the_duty_row_takes_a_pulse_width_in_its_mode_alone();
    void duty_is_shown_by_type_data();
    void duty_is_shown_by_type();
    void duty_is_stored_by_type_and_frequency_data();
    void duty_is_stored_by_type_and_frequency();
    void ticks_stand_at_round_values_data();
    void ticks_stand_at_round_values();
    void the_distance_to_a_line_is_that_to_its_nearest_place();
    void rows_without_a_time_behind_the_last_one_are_not_drawn();
};

void PenRulesTest::rows_follow_the_laser_type_data() {
    QTest::addColumn<int>("type");
    QTest::addColumn<int>("fibre");
    QTest::addColumn<bool>("power");
    QTest::addColumn<bool>("duty");
    QTest::addColumn<bool>("kiloHertz");
    QTest::addColumn<bool>("wave");
    QTest::addColumn<bool>("pulseWidth");
    QTest::addColumn<double>("mostWave");
    QTest::newRow("FILBER") << 0 << 0 << true << false << true << false << false << 100.0;
    for (int fibre = 1; fibre < 4; ++fibre)
        QTest::addRow("FILBER, kind %d", fibre) << 0 << fibre << true << false << true << true << true << 100000.0;
    QTest::newRow("YLR") << 1 << 1 << true << true << false << true << false << 100.0;
    QTest::newRow("YAG") << 2 << 1 << false << true << false << true << false << 100.0;
    QTest::newRow("SPI") << 3 << 1 << true << true << true << true << false << 100.0;
    QTest::newRow("EP") << 4 << 1 << true << true << true << true << false << 100.0;
    QTest::newRow("YLM") << 5 << 1 << true << true << false << true << false << 100.0;
}

void PenRulesTest::rows_follow_the_laser_type() {
    QFETCH(int, type);
    QFETCH(int, fibre);
    const PenRows rows = PenRowsOf(machineOf(type, 0, fibre));
    QTEST(rows.power, "power");
    QTEST(rows.powerLabel, "power");
    QTEST(rows.duty, "duty");
    QTEST(rows.dutyLabel, "duty");
    QTEST(rows.kiloHertz, "kiloHertz");
    QTEST(rows.wave, "wave");
    QTEST(rows.waveIsPulseWidth, "pulseWidth");
    QTEST(rows.mostWave, "mostWave");
    QVERIFY(rows.frequency);
}

void PenRulesTest::values_derived_from_the_waveform_cannot_be_typed_data() {
    QTest::addColumn<int>("type");
    for (int type = 0; type < 6; ++type)
        QTest::addRow("type %d", type) << type;
}

void PenRulesTest::values_derived_from_the_waveform_cannot_be_typed() {
    QFETCH(int, type);
    const PenRows rows = PenRowsOf(machineOf(type, 0, 1, true));
    QVERIFY(!rows.power && !rows.frequency && !rows.duty);
    QVERIFY(rows.wave);
}

void PenRulesTest::the_duty_row_takes_a_pulse_width_in_its_mode_alone_data() {
    QTest::addColumn<int>("mode");
    QTest::addColumn<double>("most");
    QTest::newRow("percent") << 0 << 100.0;
    QTest::newRow("pulse width") << 1 << 100000.0;
    QTest::newRow("another mode") << 2 << 100.0;
}

void PenRulesTest::the_duty_row_takes_a_pulse_width_in_its_mode_alone() {
    QFETCH(int, mode);
    QTEST(PenRowsOf(machineOf(1, mode)).mostDuty, "most");
    QCOMPARE(PenRowsOf(machineOf(1, mode)).dutyIsPulseWidth, mode == 1);
}

void PenRulesTest::duty_is_shown_by_type_data() {
    QTest::addColumn<int>("type");
    QTest::addColumn<int>("mode");
    QTest::addColumn<double>("stored");
    QTest::addColumn<double>("shown");
    QTest::newRow("fibre is half") << 0 << 0 << 30.0 << 50.0;
    QTest::newRow("fibre is half as a pulse width too") << 0 << 1 << 30.0 << 50.0;
    QTest::newRow("percent as stored") << 1 << 0 << 30.0 << 30.0;
    QTest::newRow("percent end at 100") << 2 << 0 << 250.0 << 100.0;
    QTest::newRow("pulse widths do not") << 2 << 1 << 250.0 << 250.0;
    QTest::newRow("nor in another mode") << 3 << 2 << 250.0 << 250.0;
}

void PenRulesTest::duty_is_shown_by_type() {
    QFETCH(int, type);
    QFETCH(int, mode);
    QFETCH(double, stored);
    QTEST(ShownDuty(stored, machineOf(type, mode)), "shown");
}

void PenRulesTest::duty_is_stored_by_type_and_frequency_data() {
    QTest::addColumn<int>("type");
    QTest::addColumn<int>("mode");
    QTest::addColumn<double>("shown");
    QTest::addColumn<double>("frequency");
    QTest::addColumn<double>("stored");
    QTest::newRow("percent as shown") << 1 << 0 << 70.0 << 10000.0 << 70.0;
    QTest::newRow("another mode as shown") << 1 << 2 << 70.0 << 20000.0 << 70.0;
    QTest::newRow("fibre is half") << 0 << 1 << 200.0 << 10.0 << 50.0;
    QTest::newRow("200 us at 10 kHz on a kHz type are 100 us") << 3 << 1 << 200.0 << 10.0 << 100.0;
    QTest::newRow("on the other kHz type too") << 4 << 1 << 200.0 << 10.0 << 100.0;
    QTest::newRow("10 Hz has room for 200 us") << 1 << 1 << 200.0 << 10.0 << 200.0;
    QTest::newRow("10 kHz in Hz") << 2 << 1 << 200.0 << 10000.0 << 100.0;
    QTest::newRow("YLM counts in Hz") << 5 << 1 << 200.0 << 10000.0 << 100.0;
    QTest::newRow("a shorter pulse stays") << 3 << 1 << 60.0 << 10.0 << 60.0;
    QTest::newRow("frequency 0 stores a thousandth") << 3 << 1 << 200.0 << 0.0 << 0.001;
    QTest::newRow("frequency 0 in Hz") << 1 << 1 << 200.0 << 0.0 << 0.001;
    QTest::newRow("just below the least frequency") << 1 << 1 << 200.0 << 0.00009 << 0.001;
    QTest::newRow("the least frequency") << 1 << 1 << 200.0 << 0.0001 << 200.0;
}

void PenRulesTest::duty_is_stored_by_type_and_frequency() {
    QFETCH(int, type);
    QFETCH(int, mode);
    QFETCH(double, shown);
    QFETCH(double, frequency);
    QTEST(StoredDuty(shown, frequency, machineOf(type, mode)), "stored");
}

void PenRulesTest::ticks_stand_at_round_values_data() {
    QTest::addColumn<double>("scale");
    QTest::addColumn<double>("step");
    QTest::newRow("a pixel a unit") << 1.0 << 50.0;
    QTest::newRow("exact fit") << 40.0 << 1.0;
    QTest::newRow("two units") << 30.0 << 2.0;
    QTest::newRow("far in") << 4.0e5 << 0.0001;
    QTest::newRow("far out") << 0.0003 << 200000.0;
    QTest::newRow("no scale") << 0.0 << 0.0;
    QTest::newRow("not finite") << std::numeric_limits<double>::infinity() << 0.0;
    QTest::newRow("no number") << std::nan("") << 0.0;
}

void PenRulesTest::ticks_stand_at_round_values() {
    QFETCH(double, scale);
    QTEST(tickStep(scale, 40.0), "step");
}

void PenRulesTest::the_distance_to_a_line_is_that_to_its_nearest_place() {
    const QVector<QPointF> line{{0, 0}, {10, 0}, {10, 10}};
    QCOMPARE(distanceToLine(line, {5, 3}), 3.0);
    QCOMPARE(distanceToLine(line, {-3, 4}), 5.0);
    QCOMPARE(distanceToLine(line, {12, 9}), 2.0);
    QCOMPARE(distanceToLine({{1, 1}}, {4, 5}), 5.0);
    QVERIFY(std::isinf(distanceToLine({}, {0, 0})));
}

void PenRulesTest::rows_without_a_time_behind_the_last_one_are_not_drawn() {
    const QVector<QPointF> half{{0, 10}, {2, 80}, {0, 5}, {3, 60}, {0, 0}, {0, 0}};
    QCOMPARE(drawnPoints(half), half.mid(0, 4));
    QCOMPARE(drawnPoints({{0, 0}, {0, 0}}), QVector<QPointF>({{0, 0}}));
    QCOMPARE(drawnPoints({}), QVector<QPointF>());
}

QTEST_GUILESS_MAIN(PenRulesTest)
#include "tst_penrules.moc"
