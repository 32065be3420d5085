// SPDX-License-Identifier: MIT
// What the card shows of itself and of what hangs on it: status words, command channel, encoder, dwells, mirror moves.
#include "engine/cardfunctions.h"
#include "engine/layerdata.h"
#include "engine/systemparam.h"
#include "tests/engine/opencard.h"
#include "tests/engine/strokejob.h"
#include "tests/support/waitfor.h"

#include <QElapsedTimer>
#include <QtTest>
#include <cmath>

namespace {

constexpr unsigned int kRunning = 1U << 0;
constexpr unsigned int kSucceeded = 1U << 8;
constexpr unsigned int kStopped = 1U << 9;
constexpr unsigned int kUnderrun = 1U << 10;
constexpr unsigned int kWait = 0xFU << 20;
constexpr unsigned int kPaused = 1U << 24;
constexpr unsigned int kTimeOut = 1U << 25;

constexpr double kJumpSpeed = 1000.0; ///< mm/s

int encoder() {
    int count = 0;
    VZ_GetEncPos(&count);
    return count;
}

} // namespace

class TestCardWords : public tests::OpenCard {
    Q_OBJECT

    void stop() {
        m_card->StopMark();
        m_card->SetMarkStaus(MarkStatusStop);
        m_card->StopMark();
    }
    /// Pens without delays.
    void loadPens() {
        LayerParamEx layers;
        LayerData* pen = nullptr;
        layers.GetLayerData(0, pen);
        *pen = LayerData();
        pen->UseDefault = false;
        pen->MarkSpeed = 1000.0;
        pen->JumpSpeed = kJumpSpeed;
        pen->MinJumpDelay = pen->MaxJumpDelay = 0;
        pen->OpenLaserDelay = pen->CloseLaserDelay = pen->EndDelay = pen->TurnDelay = pen->MarkDelay = 0;
        m_card->DownLayerPara(&layers, kLayerCount);
    }
    double timeOfPoint(double dwell) {
        LayerParamEx const layers;
        m_card->BeginList(1);
        m_card->AddMarkPoint(layers, 0, {5, 5, 0}, dwell);
        m_card->EndList();
        return m_card->GetBufferRunTime();
    }
    /// At 1000 mm/s over 30 mm at most, so they stand there long before the time is up.
    void moveMirrors(double x, double y) {
        m_card->MoveMirrorPos(x, y, 1000.0, 0);
        QElapsedTimer clock;
        clock.start();
        QVERIFY(tests::waitFor([&clock] { return clock.elapsed() > 200; }));
    }
    /// Of a stroke of 1 mm that begins in the middle of the field.
    double timeOfStroke() {
        DOT3 points[2] = {{0, 0, 0}, {1, 0, 0}};
        m_card->BeginList(1);
        m_card->AddList(points, 2, 0);
        m_card->EndList();
        return m_card->GetBufferRunTime();
    }

private slots:
    void init() {
        OpenCard::init();
        m_card->SetMarkType(MarkTypeLaser);
    }

    void idle_card_neither_runs_nor_waits() {
        QCOMPARE(m_card->GetMarkInfo() & (kRunning | kPaused | kWait), 0U);
        QCOMPARE(m_card->GetWaitInfo(), QString());
        unsigned int word = 77;
        const bool alarm = m_card->SystemIsAlarm(word);
        QCOMPARE(alarm, word != 0);
    }

    void head_word_has_a_loop_state_that_there_is() {
        QVERIFY2((m_card->GetScanState() & 3U) != 1U, qPrintable(QString::number(m_card->GetScanState(), 16)));
    }

    void mark_information_tells_how_the_last_job_ended() {
        m_card->SetMarkStaus(MarkStatusRun);
        {
            tests::StrokeJob const job(*m_card, 40.0, 1.0);
            QVERIFY(tests::waitFor([&] { return bool(m_card->GetMarkInfo() & kRunning); }));
            QCOMPARE(m_card->GetMarkInfo() & (kSucceeded | kStopped | kPaused), 0U);
            stop();
            QVERIFY(tests::waitFor([&] { return job.hasEnded(); }));
        }
        QCOMPARE(m_card->GetMarkInfo() & (kRunning | kSucceeded | kStopped), kStopped);
        {
            tests::StrokeJob const job(*m_card, 1.0, 1000.0);
            QVERIFY(tests::waitFor([&] { return job.hasEnded(); }));
        }
        QCOMPARE(m_card->GetMarkInfo() & (kRunning | kSucceeded | kStopped), kSucceeded);
        m_card->ClearAlarm();
        QCOMPARE(m_card->GetMarkInfo() & (kUnderrun | kTimeOut), 0U);
    }

    void command_that_nobody_answers_leaves_the_results_as_they_are() {
        int first = 11;
        int second = 22;
        m_card->CardCommand(1, 2, 3, &first, &second);
        QCOMPARE(first, 11);
        QCOMPARE(second, 22);
    }

    void results_of_a_command_may_be_null() {
        SystemParam::Instance()->SetEnableSplitLaserSet(true);
        int first = -1;
        int second = -1;
        m_card->CardCommand(0x4955, 0, 0, nullptr, nullptr);
        m_card->CardCommand(0x4955, 0, 0, &first, nullptr);
        m_card->CardCommand(0x4955, 0, 0, nullptr, &second);
        SystemParam::Instance()->SetEnableSplitLaserSet(false);
        QCOMPARE(first == -1, second == -1); // a splitter answers with both or there is none
    }

    void encoder_is_set_and_counts_the_cards_own_pulses_when_told() {
        SystemParam* const system = SystemParam::Instance();
        system->FlyMarkSetUsedExEnc(false);
        system->FlyMarkSetEnInnerEnc(false);
        system->FlyMarkSetEncRangeEn(false);
        VZ_SetFlyPara();
        VZ_SetFlyEncInitPos(-1234);
        QCOMPARE(encoder(), -1234);
        system->FlyMarkSetInnerEncPeriod(100);
        system->FlyMarkSetInnerEncDir(0);
        system->FlyMarkSetEnInnerEnc(true);
        QCOMPARE(encoder(), -1234); // the card has not been told yet
        VZ_SetFlyPara();
        QVERIFY(tests::waitFor([] { return encoder() > -1000; }));
        system->FlyMarkSetInnerEncDir(1);
        VZ_SetFlyPara();
        int const turned = encoder();
        QVERIFY(tests::waitFor([turned] { return encoder() < turned - 200; }));
        system->FlyMarkSetEnInnerEnc(false);
        VZ_SetFlyPara();
        VZ_SetFlyEncInitPos(5);
        QCOMPARE(encoder(), 5);
        VZ_GetEncPos(nullptr);
    }

    void error_output_and_waveform_number_leave_the_outputs_alone() {
        for (int bit = 0; bit < 32; ++bit)
            m_card->SetOutputBit(bit, bit == 6);
        VZ_OutputError(1);
        VZ_OutputWaveNo(15);
        QCOMPARE(m_card->GetOutput(), 1U << 6);
        VZ_OutputError(0);
        VZ_OutputWaveNo(0);
        m_card->SetOutputBit(6, 0);
    }

    void dwell_of_a_mark_point_is_part_of_the_run_time() {
        loadPens();
        timeOfPoint(1.0); // from now on the mirrors stand at the point
        double const shorter = timeOfPoint(20.0);
        double const longer = timeOfPoint(120.0);
        QVERIFY2(shorter >= 20.0 && shorter < 30.0, qPrintable(QString::number(shorter)));
        QVERIFY2(std::abs(longer - shorter - 100.0) < 1.0, qPrintable(QString::number(longer - shorter)));
    }

    void mirrors_stand_where_they_were_moved_to() {
        loadPens();
        moveMirrors(0, 0);
        double const near = timeOfStroke();
        moveMirrors(-20, 0);
        double const far = timeOfStroke();
        // The job from there begins with a jump of 20 mm.
        double const jump = 20.0 / kJumpSpeed * 1000.0;
        QVERIFY2(far - near > 0.9 * jump && far - near < 1.5 * jump, qPrintable(QString::number(far - near)));
        m_card->MoveMirrorPos(std::nan(""), 0, 1000.0, 0);
        QVERIFY(std::isfinite(timeOfStroke()));
    }

    void mirrors_are_not_moved_during_a_job() {
        m_card->SetMarkStaus(MarkStatusRun);
        {
            tests::StrokeJob const job(*m_card, 20.0, 100.0); // 200 ms
            QVERIFY(tests::waitFor([&] { return bool(m_card->GetMarkInfo() & kRunning); }));
            m_card->MoveMirrorPos(-20, 20, 1000.0, 0);
            QVERIFY(tests::waitFor([&] { return job.hasEnded(); }));
        }
        QVERIFY(m_card->GetMarkInfo() & kSucceeded);
        QVERIFY(m_card->GetBufferRunTime() >= 200.0);
    }
};

QTEST_MAIN(TestCardWords)
#include "tst_cardwords.moc"
