// SPDX-License-Identifier: MIT
#include "engine/imodbuslaser.h"
#include "engine/markingmparam_vz.h"
#include "opencardtest.h"
#include "simengine/lasers/seriallaser.h"
#include "simengine/lasers/serialpulses.h"
#include "tests/support/logtexts.h"

#include <cmath>
#include <limits>

using namespace sim;

namespace {

constexpr double kInfinite = std::numeric_limits<double>::infinity();
constexpr double kNoNumber = std::numeric_limits<double>::quiet_NaN();

/// Keeps how many rows were marked when it was set, and gives the pulses that it was told to.
class Laser : public IModbusLaser {
public:
    Laser() { m_hInstance = this; }
    double QCWWPulse() override { return pulse; }
    bool IsConnected() override { return true; }
    bool IsAutoCalcPWM() override { return derives; }
    void AutoCalcPWM(double& freq, double& duty) override {
        freq = frequency;
        duty = 100.0;
    }
    void SetQCWParam(int, double, double) override { ++shortForms; }
    void SetQCWParam(int, int model, double, double, double, double, double, double, double) override {
        models.append(model);
        rows.append(static_cast<int>(simulatedCard().trace().size()));
    }

    double pulse = 2000.0;
    double frequency = 50.0;
    bool derives = false;
    int shortForms = 0;
    QVector<int> models;
    QVector<int> rows;
};

} // namespace

/// The serial laser beside the simulated card: its calls among the strokes, in the journal and in the log.
class TestSerialLaserCalls : public OpenCardTest {
    Q_OBJECT

    LayerParamEx m_layers;

    /// Squares of the given pens, five rows of the trace each, run as a document's job.
    bool run(QVector<int> const& pens) {
        m_card->DownLayerPara(&m_layers, kLayerCount);
        m_card->SetMarkStaus(MarkStatusRun);
        Job job;
        for (int pen : pens)
            job.strokes.push_back({pen, {{0, 0}, {10, 0}, {10, 10}, {0, 10}, {0, 0}}});
        m_begin = simulatedCard().journal().lastSequence();
        CardRun start(false, false);
        return bool(start.start(std::move(job)));
    }

private slots:
    void initTestCase() {
        OpenCardTest::initTestCase();
        LayerData::InitLayerData();
    }
    void init() {
        OpenCardTest::init();
        m_layers = LayerParamEx();
        SystemParam::Instance()->SetEnableLayLaser(true);
        MarkingMParam_VZ::Instance()->SetMarkCardType(MarkCardYLR);
    }
    void cleanup() {
        SystemParam::Instance()->SetEnableLayLaser(false);
        MarkingMParam_VZ::Instance()->SetMarkCardType(MarkCardFilber);
        OpenCardTest::cleanup();
    }

    void waveform_is_set_between_the_strokes() {
        Laser laser;
        for (int pen : {1, 2})
            m_layers.GetLayerData()[pen].WaveNumber = pen;
        QVERIFY(run({0, 0, 1, 2}));
        QCOMPARE(laser.models, (QVector<int>{0, 1, 2}));
        QCOMPARE(laser.rows, (QVector<int>{0, 10, 15}));
        QCOMPARE(laser.shortForms, 0);
        QCOMPARE(static_cast<int>(simulatedCard().trace().size()), 20);
    }

    void journal_has_the_calls() {
        Laser laser;
        laser.derives = true;
        m_layers.GetQCWWaves()[0] = {1, 60, 400, 1.5, 95, 300, 100, 40, 5, 6};
        m_layers.GetLayerData()[0].WaveNumber = 0;
        QVERIFY(run({0}));
        QCOMPARE(calls(m_begin),
                 (QStringList{"StartMark(0,0)", "SetQCWParam(1,0,400,1.5,300,100,40,5,6)", "LaserPulses(0,50,100)"}));
    }

    void estimate_stays_exact() {
        Laser laser;
        QVERIFY(run({0, 1}));
        const double withLaser = m_card->GetBufferRunTime();
        IModbusLaser::m_hInstance = nullptr;
        m_card->MoveMirrorPos(0, 0, 1e5, 0);
        QTRY_VERIFY(simulatedCard().head().at == Point());
        QVERIFY(run({0, 1}));
        QCOMPARE(m_card->GetBufferRunTime(), withLaser);
    }

    void what_cannot_be_set_is_told_once_a_pen_and_job() {
        Laser laser;
        laser.derives = true;
        laser.frequency = kInfinite;
        m_layers.GetLayerData()[3].WaveNumber = 16;
        const int before = tests::logTexts("error").size();
        QVERIFY(run({3, 0, 3, 0, 3}));
        QCOMPARE(tests::logTexts("error").mid(before),
                 (QStringList{"serial laser: pen 3 has no waveform, its number is 16",
                              "serial laser: no frequency for pen 3, it keeps its own",
                              "serial laser: no frequency for pen 0, it keeps its own"}));
        QVERIFY(calls(m_begin).filter("LaserPulses").isEmpty());
    }

    void without_a_serial_laser_there_is_no_service() {
        QVERIFY(!serialLaserService());
        Laser laser;
        QVERIFY(serialLaserService());
        SystemParam::Instance()->SetEnableLayLaser(false);
        QVERIFY(!serialLaserService());
    }

    void pulses_are_in_the_units_of_the_pen_data() {
        QTest::addColumn<int>("type");
        QTest::addColumn<bool>("pulseWidth");
        QTest::addColumn<bool>("qcw");
        QTest::addColumn<double>("duty");
        QTest::addColumn<double>("pulse");
        QTest::addColumn<double>("frequency");
        QTest::addColumn<double>("pwm");
        // 250 Hz, a period of 4000 us; the pen's duty is 33
        QTest::newRow("Hz") << int(MarkCardYLR) << false << true << 100.0 << 2000.0 << 250.0 << 100.0;
        QTest::newRow("kHz, SPI") << int(MarkCardSPI) << false << false << 40.0 << 2000.0 << 0.25 << 40.0;
        QTest::newRow("kHz, EP") << int(MarkCardEP) << false << false << 40.0 << 2000.0 << 0.25 << 40.0;
        QTest::newRow("fibre keeps the duty")
            << int(MarkCardFilber) << false << true << 100.0 << 2000.0 << 0.25 << 33.0;
        QTest::newRow("QCW pulse") << int(MarkCardYLM) << true << true << 100.0 << 2000.0 << 250.0 << 2000.0;
        QTest::newRow("QCW pulse beyond the period")
            << int(MarkCardYLM) << true << true << 100.0 << 9000.0 << 250.0 << 4000.0;
        QTest::newRow("PWM pulse") << int(MarkCardYLM) << true << false << 25.0 << 2000.0 << 250.0 << 1000.0;
        QTest::newRow("duty beyond 100") << int(MarkCardYLM) << false << false << 120.0 << 0.0 << 250.0 << 100.0;
        QTest::newRow("negative duty") << int(MarkCardYLM) << false << false << -1.0 << 0.0 << 250.0 << 0.0;
        QTest::newRow("duty not a number") << int(MarkCardYLM) << false << false << kNoNumber << 0.0 << 250.0 << 0.0;
        QTest::newRow("pulse not a number") << int(MarkCardYLM) << true << true << 100.0 << kNoNumber << 250.0 << 0.0;
    }
    void pulses_are_in_the_units_of_the_pen() {
        QFETCH(int, type);
        QFETCH(bool, pulseWidth);
        QFETCH(bool, qcw);
        QFETCH(double, duty);
        QFETCH(double, pulse);
        QFETCH(double, frequency);
        QFETCH(double, pwm);
        const auto pulses = penPulses({250.0, duty, pulse, qcw}, static_cast<MarkCardType>(type), pulseWidth, 33.0);
        QVERIFY(pulses);
        QCOMPARE(pulses->frequency, frequency);
        QCOMPARE(pulses->pwm, pwm);
    }

    void no_frequency_leaves_the_pen_its_own_data() {
        QTest::addColumn<double>("frequency");
        QTest::newRow("infinite") << kInfinite;
        QTest::newRow("not a number") << kNoNumber;
        QTest::newRow("0") << 0.0;
        QTest::newRow("negative") << -5.0;
    }
    void no_frequency_leaves_the_pen_its_own() {
        QFETCH(double, frequency);
        QVERIFY(!penPulses({frequency, 100.0, 2000.0, true}, MarkCardYLR, false, 33.0));
    }

    void pens_that_differ_in_the_waveform_are_not_the_same() {
        PenTable const before = penTable(m_layers, kLayerCount, {});
        m_layers.GetQCWWaves()[5].eyeDelay = 1.0;
        PenTable const other = penTable(m_layers, kLayerCount, {});
        QVERIFY(before[0] == other[0]);
        m_layers.GetLayerData()[0].WaveNumber = 5;
        QVERIFY(!(penTable(m_layers, kLayerCount, {})[0] == before[0]));
        LaserWave const wave = *penTable(m_layers, kLayerCount, {})[0].laserWave;
        QCOMPARE(wave.eyeDelay, 1.0);
        QCOMPARE(wave.gasDelay, 20.0);
        QCOMPARE(wave.pulse, 2.0);
    }
};

QTEST_MAIN(TestSerialLaserCalls)
#include "tst_seriallaser.moc"
