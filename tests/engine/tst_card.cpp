// SPDX-License-Identifier: MIT
#include "engine/cardfunctions.h"
#include "engine/iooutputset.h"
#include "tests/engine/opencard.h"
#include "tests/engine/strokejob.h"
#include "tests/support/waitfor.h"

#include <QElapsedTimer>
#include <QtTest>
#include <cmath>
#include <limits>
#include <thread>

namespace {

using tests::StrokeJob;

constexpr unsigned int kRunningBit = 1U << 0;
constexpr unsigned int kSucceededBit = 1U << 8;

} // namespace

class TestCard : public tests::OpenCard {
    Q_OBJECT

private slots:
    void init() {
        OpenCard::init();
        m_card->SetMarkType(MarkTypeLaser);
        // Outputs are the hardware's: they stay from one opening to the next.
        for (int bit = 0; bit < 32; ++bit)
            m_card->SetOutputBit(bit, 0);
        QCOMPARE(m_card->GetOutput(), 0U);
    }

    void open_card_has_a_version_and_is_idle() {
        QVERIFY(!m_card->GetCardVersion().isEmpty());
        QCOMPARE(m_card->GetMarkStatus(), MarkStatusStop);
        QVERIFY(!(m_card->GetMarkInfo() & kRunningBit));
    }

    void output_bits_are_written_one_by_one() {
        unsigned int expected = 0;
        for (int bit : {0, 5, 17, 31}) {
            m_card->SetOutputBit(bit, 1);
            expected |= 1U << bit;
            QCOMPARE(m_card->GetOutput(), expected);
            QCOMPARE(m_card->GetOutputBit(bit), 1);
        }
        m_card->SetOutputBit(17, 7);
        QCOMPARE(m_card->GetOutputBit(17), 1);
        m_card->SetOutputBit(5, 0);
        QCOMPARE(m_card->GetOutput(), expected & ~(1U << 5));
    }

    void bits_outside_are_ignored_and_read_as_zero_data() {
        QTest::addColumn<int>("bit");
        for (int bit : {-1, 32, 1000, std::numeric_limits<int>::max(), std::numeric_limits<int>::min()})
            QTest::addRow("%d", bit) << bit;
    }
    void bits_outside_are_ignored_and_read_as_zero() {
        QFETCH(int, bit);
        m_card->SetOutputBit(bit, 1);
        QCOMPARE(m_card->GetOutput(), 0U);
        QCOMPARE(m_card->GetOutputBit(bit), 0);
        QCOMPARE(m_card->GetInputBit(bit), 0);
    }

    void input_bits_agree_with_the_input_word() {
        unsigned int const word = m_card->GetInput();
        for (int bit = 0; bit < 32; ++bit)
            QCOMPARE(m_card->GetInputBit(bit), int((word >> bit) & 1U));
    }

    void outputs_of_several_threads_all_arrive() {
        std::vector<std::thread> threads;
        for (int bit = 0; bit < 8; ++bit) {
            threads.emplace_back([this, bit] {
                for (int i = 0; i < 200; ++i)
                    m_card->SetOutputBit(bit, i % 2 == 0);
                m_card->SetOutputBit(bit, 1);
            });
        }
        for (std::thread& thread : threads)
            thread.join();
        QCOMPARE(m_card->GetOutput(), 0xFFU);
    }

    void status_is_kept_from_any_thread() {
        for (MarkStatus status : {MarkStatusRun, MarkStatusPause, MarkStatusStop}) {
            std::thread([this, status] { m_card->SetMarkStaus(status); }).join();
            QCOMPARE(m_card->GetMarkStatus(), status);
        }
    }

    void direct_job_runs_on_the_calling_thread_and_takes_its_time() {
        m_card->SetMarkStaus(MarkStatusRun);
        {
            StrokeJob const job(*m_card, 10.0, 1000.0);
            QVERIFY(tests::waitFor([&] { return job.hasEnded(); }));
        }
        // 10 mm at 1000 mm/s are 10 ms, and the jumps and delays come on top.
        QVERIFY2(m_card->GetBufferRunTime() >= 10.0, qPrintable(QString::number(m_card->GetBufferRunTime())));
        QVERIFY(m_card->GetBufferRunTime() < 1000.0);
        QVERIFY(m_card->GetMarkInfo() & kSucceededBit);
        QVERIFY(!(m_card->GetMarkInfo() & kRunningBit));
    }

    void twice_the_way_takes_longer_by_the_way_divided_by_the_speed() {
        double times[2] = {};
        for (int i = 0; i < 2; ++i) {
            m_card->SetMarkStaus(MarkStatusRun);
            StrokeJob const job(*m_card, 20.0 * (i + 1), 1000.0);
            QVERIFY(tests::waitFor([&] { return job.hasEnded(); }));
            times[i] = m_card->GetBufferRunTime();
        }
        // The stroke is 20 mm longer, the jump to its start at most as much.
        QVERIFY2(times[1] - times[0] >= 19.0, qPrintable(QString::number(times[1] - times[0])));
        QVERIFY(times[1] - times[0] < 60.0);
    }

    void stop_from_another_thread_ends_a_running_job() {
        m_card->SetMarkStaus(MarkStatusRun);
        StrokeJob const job(*m_card, 40.0, 1.0);
        QVERIFY(tests::waitFor([&] { return bool(m_card->GetMarkInfo() & kRunningBit); }));
        m_card->StopMark();
        m_card->SetMarkStaus(MarkStatusStop);
        m_card->StopMark();
        QVERIFY(tests::waitFor([&] { return job.hasEnded(); }));
        QVERIFY(m_card->IsMarkStop());
        QVERIFY(!(m_card->GetMarkInfo() & kSucceededBit));
    }

    void status_stop_alone_ends_a_running_job() {
        m_card->SetMarkStaus(MarkStatusRun);
        StrokeJob const job(*m_card, 40.0, 1.0);
        QVERIFY(tests::waitFor([&] { return bool(m_card->GetMarkInfo() & kRunningBit); }));
        m_card->SetMarkStaus(MarkStatusStop);
        QVERIFY(tests::waitFor([&] { return job.hasEnded(); }));
    }

    void paused_job_does_not_end_and_resumes() {
        m_card->SetMarkStaus(MarkStatusRun);
        StrokeJob const job(*m_card, 20.0, 100.0); // 200 ms
        QVERIFY(tests::waitFor([&] { return bool(m_card->GetMarkInfo() & kRunningBit); }));
        m_card->SetMarkStaus(MarkStatusPause);
        m_card->PauseMark();
        constexpr unsigned int kPausedBit = 1U << 24;
        QVERIFY(tests::waitFor([&] { return bool(m_card->GetMarkInfo() & kPausedBit); }));
        // Longer than the rest of the job could take: what passes meanwhile is the time of the pause.
        QElapsedTimer paused;
        paused.start();
        QVERIFY(!tests::waitFor([&] { return job.hasEnded(); }, 400));
        QVERIFY(paused.elapsed() >= 400);
        m_card->SetMarkStaus(MarkStatusRun);
        m_card->RestartMark();
        QVERIFY(tests::waitFor([&] { return job.hasEnded(); }));
        QVERIFY(m_card->GetMarkInfo() & kSucceededBit);
    }

    void stop_ends_a_paused_job() {
        m_card->SetMarkStaus(MarkStatusRun);
        StrokeJob const job(*m_card, 40.0, 1.0);
        QVERIFY(tests::waitFor([&] { return bool(m_card->GetMarkInfo() & kRunningBit); }));
        m_card->SetMarkStaus(MarkStatusPause);
        m_card->PauseMark();
        m_card->StopMark();
        m_card->SetMarkStaus(MarkStatusStop);
        m_card->StopMark();
        QVERIFY(tests::waitFor([&] { return job.hasEnded(); }));
    }

    void outputs_and_inputs_are_served_during_a_job() {
        m_card->SetMarkStaus(MarkStatusRun);
        StrokeJob const job(*m_card, 40.0, 1.0);
        QVERIFY(tests::waitFor([&] { return bool(m_card->GetMarkInfo() & kRunningBit); }));
        m_card->SetOutputBit(9, 1);
        QCOMPARE(m_card->GetOutputBit(9), 1);
        m_card->GetInput();
        QVERIFY(!job.hasEnded());
        m_card->SetMarkStaus(MarkStatusStop);
        m_card->StopMark();
        QVERIFY(tests::waitFor([&] { return job.hasEnded(); }));
    }

    void closing_the_card_ends_a_running_job() {
        m_card->SetMarkStaus(MarkStatusRun);
        StrokeJob const job(*m_card, 40.0, 1.0);
        QVERIFY(tests::waitFor([&] { return bool(m_card->GetMarkInfo() & kRunningBit); }));
        m_card->CloseCard();
        QVERIFY(tests::waitFor([&] { return job.hasEnded(); }));
    }

    void empty_and_broken_lists_are_harmless() {
        LayerParamEx layers;
        m_card->DownLayerPara(&layers, kLayerCount);
        m_card->SetMarkStaus(MarkStatusRun);
        m_card->BeginList(1);
        m_card->EndList();
        double const nan = std::numeric_limits<double>::quiet_NaN();
        double const infinite = std::numeric_limits<double>::infinity();
        DOT3 broken[3] = {{nan, 0, 0}, {infinite, infinite, 0}, {0, -infinite, nan}};
        m_card->BeginList(1);
        m_card->AddList(broken, 3, 0);
        m_card->AddList(broken, 0, 0);
        m_card->AddList(nullptr, 0, 0);
        m_card->EndList();
        QVERIFY(std::isfinite(m_card->GetBufferRunTime()));
    }

    void alarm_time_is_kept() {
        m_card->SetAlarmTime(1234);
        QCOMPARE(m_card->GetAlarmTime(), 1234);
    }

    void calibration_record_is_edited_in_place() {
        StandardCalibParam* const record = m_card->GetStabtadrCalibParam();
        record->OffsetX = 1.25;
        m_card->SetCalibrationParam();
        QCOMPARE(m_card->GetStabtadrCalibParam(), record);
        QCOMPARE(m_card->GetStabtadrCalibParam()->OffsetX, 1.25);
        record->OffsetX = 0.0;
        m_card->SetCalibrationParam();
    }

    void lamp_operations_write_the_configured_outputs() {
        IOOutputSet* const outputs = IOOutputSet::Instance();
        outputs->SetLight(20, 21, 22, -1);
        outputs->SetOutputInv(false);
        struct Lamp {
            void (IOOutputSet::*set)(IMarkCardBase*);
            bool red, green, yellow;
        };
        for (Lamp const& lamp :
             {Lamp{&IOOutputSet::SetGreen, false, true, false}, Lamp{&IOOutputSet::SetYellow, false, false, true},
              Lamp{&IOOutputSet::SetRed, true, false, false}, Lamp{&IOOutputSet::SetGreenYellow, false, true, true}}) {
            (outputs->*lamp.set)(m_card);
            bool red = false;
            bool green = false;
            bool yellow = false;
            outputs->GetLightStatus(red, green, yellow);
            QCOMPARE(red, lamp.red);
            QCOMPARE(green, lamp.green);
            QCOMPARE(yellow, lamp.yellow);
            QCOMPARE(m_card->GetOutputBit(20), int(lamp.red));
            QCOMPARE(m_card->GetOutputBit(21), int(lamp.green));
            QCOMPARE(m_card->GetOutputBit(22), int(lamp.yellow));
        }
    }

    void hardware_word_is_filled() {
        unsigned int word = 0xDEADBEEF;
        VZ_GetHdVer(&word);
        QVERIFY(word != 0xDEADBEEF);
    }
};

QTEST_MAIN(TestCard)
#include "tst_card.moc"
