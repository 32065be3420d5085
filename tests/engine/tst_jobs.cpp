// SPDX-License-Identifier: MIT
#include "engine/layerdata.h"
#include "engine/markcardinstance.h"
#include "engine/rundatagather.h"
#include "engine/systemparam.h"
#include "engine/vzmarkcard.h"
#include "tests/engine/enginedocument.h"
#include "tests/support/waitfor.h"

#include <atomic>
#include <thread>

namespace {

constexpr unsigned int kRunningBit = 1U << 0;

/// MarkShapeContainer::StartMark on a worker thread, as the run control calls it.
class Run {
public:
    Run(QRulerView& view, bool selectedOnly, bool loop)
        : m_thread([this, &view, selectedOnly, loop] {
            IMarkCardBase* const card = MarkCardInstance::Instance();
            card->SetMarkStaus(MarkStatusRun);
            card->DownLayerPara(view.GetLayerParams(), kLayerCount);
            m_result = view.GetMarkTools()->StartMark(selectedOnly, loop, view.GetLayerParams());
            m_ended = true;
        }) {}
    ~Run() { m_thread.join(); }
    bool hasEnded() const { return m_ended; }
    bool result() const { return m_result; }

private:
    std::atomic<bool> m_ended{false};
    std::atomic<bool> m_result{false};
    std::thread m_thread;
};

} // namespace

class TestJobs : public QObject {
    Q_OBJECT

    std::unique_ptr<tests::TemporaryRoot> m_root;
    VZMarkCard* m_card = nullptr;

    static void stop(IMarkCardBase& card) {
        card.StopMark();
        card.SetMarkStaus(MarkStatusStop);
        card.StopMark();
    }

private slots:
    void initTestCase() {
        m_root = std::make_unique<tests::TemporaryRoot>();
        LayerData::InitLayerData();
        QRulerView::Init();
    }
    void init() {
        m_card = new VZMarkCard;
        MarkCardInstance::SetMarkCardInstance(m_card);
        m_card->OpenCard();
        m_card->SetMarkType(MarkTypeLaser);
        SystemParam::Instance()->SetBufLoop(false);
    }
    void cleanup() {
        m_card->CloseCard();
        MarkCardInstance::SetMarkCardInstance(nullptr);
    }
    void cleanupTestCase() { m_root.reset(); }

    void empty_document_gives_false() {
        QRulerView view(nullptr);
        Run const run(view, false, false);
        QVERIFY(tests::waitFor([&] { return run.hasEnded(); }));
        QVERIFY(!run.result());
    }

    void closed_card_gives_false() {
        QRulerView view(nullptr);
        addSquares(view, *m_root, 2);
        m_card->CloseCard();
        Run const run(view, false, false);
        QVERIFY(tests::waitFor([&] { return run.hasEnded(); }));
        QVERIFY(!run.result());
    }

    void document_is_marked_and_its_figures_are_told() {
        QRulerView view(nullptr);
        addSquares(view, *m_root, 2);
        setSpeed(view, 1000.0);
        {
            Run const run(view, false, false);
            QVERIFY(tests::waitFor([&] { return run.hasEnded(); }));
            QVERIFY(run.result());
        }
        // Two squares of 16 mm at 1000 mm/s.
        QVERIFY2(m_card->GetBufferRunTime() >= 32.0, qPrintable(QString::number(m_card->GetBufferRunTime())));
        QVERIFY(RunDataGather::Instance()->GetRunResult());
        QVERIFY(!RunDataGather::Instance()->GetLayerList().isEmpty());
    }

    void stopped_job_ends_at_once_and_counts_as_run_data() {
        QTest::addColumn<bool>("paused");
        QTest::newRow("running") << false;
        QTest::newRow("paused") << true;
    }
    void stopped_job_ends_at_once_and_counts_as_run() {
        QFETCH(bool, paused);
        QRulerView view(nullptr);
        addSquares(view, *m_root, 2);
        setSpeed(view, 0.5);
        {
            Run const run(view, false, false);
            QVERIFY(tests::waitFor([&] { return bool(m_card->GetMarkInfo() & kRunningBit); }));
            if (paused) {
                m_card->SetMarkStaus(MarkStatusPause);
                m_card->PauseMark();
            }
            stop(*m_card);
            QVERIFY(tests::waitFor([&] { return run.hasEnded(); }));
            QVERIFY(run.result());
        }
        QVERIFY(!RunDataGather::Instance()->GetRunResult());
    }

    void buffer_loop_returns_only_after_a_stop() {
        SystemParam::Instance()->SetBufLoop(true);
        SystemParam::Instance()->LoopMarkDelay(1.0);
        QRulerView view(nullptr);
        addSquares(view, *m_root, 1);
        setSpeed(view, 5000.0);
        {
            Run const run(view, false, true);
            QVERIFY(tests::waitFor([&] { return bool(m_card->GetMarkInfo() & kRunningBit); }));
            // A single pass takes 16 mm / 5000 mm/s and its delays, a few milliseconds.
            QVERIFY(!tests::waitFor([&] { return run.hasEnded(); }, 500));
            stop(*m_card);
            QVERIFY(tests::waitFor([&] { return run.hasEnded(); }));
            QVERIFY(run.result());
        }
        SystemParam::Instance()->SetBufLoop(false);
    }

    void loop_without_buffer_loop_is_one_pass() {
        QRulerView view(nullptr);
        addSquares(view, *m_root, 1);
        setSpeed(view, 5000.0);
        Run const run(view, false, true);
        QVERIFY(tests::waitFor([&] { return run.hasEnded(); }));
        QVERIFY(run.result());
    }

    void edits_during_a_run_are_for_the_next_one() {
        QRulerView view(nullptr);
        addSquares(view, *m_root, 3);
        setSpeed(view, 200.0);
        {
            Run const run(view, false, false);
            QVERIFY(tests::waitFor([&] { return bool(m_card->GetMarkInfo() & kRunningBit); }));
            view.Undo();
            QCOMPARE(view.GetMarkTools()->GetMarkTools().size(), 0);
            QVERIFY(tests::waitFor([&] { return run.hasEnded(); }));
            QVERIFY(run.result());
        }
        // Three squares of 16 mm at 200 mm/s.
        QVERIFY(m_card->GetBufferRunTime() >= 240.0);
    }

    void offset_records_repeat_the_job_until_they_are_cleared() {
        QRulerView view(nullptr);
        addSquares(view, *m_root, 1);
        setSpeed(view, 1000.0);
        auto timeOf = [this, &view] {
            Run const run(view, false, false);
            if (!tests::waitFor([&] { return run.hasEnded(); }))
                return -1.0;
            return m_card->GetBufferRunTime();
        };
        double const once = timeOf();
        CCDBufdata offset;
        offset.Values[1] = 1.0;
        for (int i = 0; i < 3; ++i)
            view.GetMarkTools()->AddCCDBuf(offset);
        double const thrice = timeOf();
        // Each square is 16 mm at 1000 mm/s.
        QVERIFY2(once >= 16.0 && once < 32.0, qPrintable(QString::number(once)));
        QVERIFY2(thrice >= 48.0, qPrintable(QString::number(thrice)));
        view.GetMarkTools()->ClearCCDBuf();
        double const again = timeOf();
        QVERIFY2(again < 32.0, qPrintable(QString::number(again)));
    }

    void preview_runs_without_the_laser() {
        for (MarkType type : {MarkTypeRedPreview, MarkTypeBorderPreview}) {
            QRulerView view(nullptr);
            m_card->SetMarkStaus(MarkStatusStop); // while the machine is in a run no drawing is read
            addSquares(view, *m_root, 2);
            m_card->SetMarkType(type);
            Run const run(view, false, false);
            QVERIFY(tests::waitFor([&] { return run.hasEnded(); }));
            QVERIFY(run.result());
        }
    }
};

QTEST_MAIN(TestJobs)
#include "tst_jobs.moc"
