// SPDX-License-Identifier: MIT
// The card's flash. Not asked of a machine by the whole suite: on a real card it would overwrite the firmware.
#include "engine/cardfunctions.h"
#include "tests/engine/opencard.h"
#include "tests/engine/strokejob.h"
#include "tests/support/waitfor.h"

#include <QtTest>
#include <vector>

class TestFlash : public tests::OpenCard {
    Q_OBJECT

private slots:
    void chunks_of_1_to_2048_bytes_are_written() {
        std::vector<unsigned char> const data(2049, 0x5A);
        QCOMPARE(VZ_FlashWriteAddr(0x800000, data.data(), 1), 0);
        QCOMPARE(VZ_FlashWriteAddr(0x800001, data.data(), 2048), 0);
        for (int const size : {0, -1, 2049})
            QVERIFY2(VZ_FlashWriteAddr(0x800000, data.data(), size) != 0, qPrintable(QString::number(size)));
        QVERIFY(VZ_FlashWriteAddr(0x800000, nullptr, 16) != 0);
        QVERIFY(VZ_FlashWriteAddr(0xFFFFFFFFU, data.data(), 2) != 0);
    }

    void restart_ends_a_running_job_and_comes_back() {
        m_card->SetMarkStaus(MarkStatusRun);
        tests::StrokeJob const job(*m_card, 40.0, 1.0);
        QVERIFY(tests::waitFor([&] { return bool(m_card->GetMarkInfo() & 1U); }));
        VZ_ResetCardFlash();
        QVERIFY(tests::waitFor([&] { return job.hasEnded(); }));
        QVERIFY(m_card->IsCardOpend());
    }

    void factory_reset_blocks_and_ends_a_job_and_the_closing_ends_it() {
        std::atomic<bool> back{false};
        {
            tests::StrokeJob const job(*m_card, 40.0, 1.0);
            QVERIFY(tests::waitFor([&] { return bool(m_card->GetMarkInfo() & 1U); }));
            std::thread reset([&] {
                m_card->ResetCardFlash();
                back = true;
            });
            QVERIFY(tests::waitFor([&] { return job.hasEnded(); }));
            bool const blocks = !back;
            m_card->CloseCard();
            reset.join();
            QVERIFY(blocks);
        }
        QVERIFY(!m_card->IsCardOpend());
    }
};

QTEST_MAIN(TestFlash)
#include "tst_flash.moc"
