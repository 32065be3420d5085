// SPDX-License-Identifier: MIT
#include "engine/iooutputset.h"
#include "engine/layerdata.h"
#include "engine/layerparamex.h"
#include "engine/markshapecontainer.h"
#include "engine/qrulerview.h"
#include "engine/rundatagather.h"
#include "tests/iosetup/iosetupfixture.h"
#include "tests/support/logtexts.h"

#include <atomic>
#include <future>

using namespace tests;

namespace {

constexpr int kOutput = 13;
constexpr int kAckInput = 16;

} // namespace

/// The signal that the machine gives at the end of a job, as the I/O dialog sets it.
class EndSignalTest : public QObject {
    Q_OBJECT

private slots:
    void initTestCase();
    void init();
    void cleanup();
    void without_the_signal_no_output_is_written();
    void clear_type_0_blocks_for_the_duration_data();
    void clear_type_0_blocks_for_the_duration();
    void clear_type_1_stays_until_the_next_run();
    void clear_type_2_waits_for_the_acknowledge_data();
    void clear_type_2_waits_for_the_acknowledge();
    void clear_type_2_gives_up_after_the_time_out();
    void clear_type_2_ends_with_a_stop_data();
    void clear_type_2_ends_with_a_stop();
    void the_signal_of_a_stopped_job_ends_with_the_next_stop_data();
    void the_signal_of_a_stopped_job_ends_with_the_next_stop();
    void a_stop_that_comes_too_late_for_the_job_ends_its_signal_data();
    void a_stop_that_comes_too_late_for_the_job_ends_its_signal();
    void the_closing_of_the_card_takes_it_back_data();
    void the_closing_of_the_card_takes_it_back();
    void clear_type_1_stays_over_a_closing_of_the_card();
    void a_job_that_the_closing_ends_leaves_no_signal_on();
    void clear_type_3_returns_at_once_and_clears_later();
    void clear_type_3_of_two_jobs_is_cleared_once();
    void previews_give_no_signal_data();
    void previews_give_no_signal();
    void a_stopped_job_gives_it_only_when_asked_data();
    void a_stopped_job_gives_it_only_when_asked();
    void alarms_that_are_cleared_meanwhile_take_no_result_away();
    void an_output_that_is_not_there_is_not_written();
    void a_signal_that_does_not_read_back_is_logged_when_it_is_checked_data();
    void a_signal_that_does_not_read_back_is_logged_when_it_is_checked();
    void a_signal_without_its_acknowledge_is_logged();

private:
    void set(int clearType, int duration = 0, int timeout = 0, int level = 1, int ackLevel = 1) {
        IOOutputSet::Instance()->SetEndSignal(true, kOutput, level, clearType, duration, kAckInput, ackLevel, timeout,
                                              true);
    }
    bool run() {
        IMarkCardBase* card = MarkCardInstance::Instance();
        card->SetMarkStaus(MarkStatusRun);
        card->DownLayerPara(m_view->GetLayerParams(), kLayerCount);
        return m_view->GetMarkTools()->StartMark(false, false, m_view->GetLayerParams());
    }
    std::future<bool> runAside() {
        return std::async(std::launch::async, [this] { return run(); });
    }
    /// Long enough to be stopped.
    std::future<bool> runSlowlyAside() {
        for (LayerData& pen : m_view->GetLayerParams()->GetLayerData()) {
            pen.UseDefault = false;
            pen.MarkSpeed = 1.0;
        }
        return runAside();
    }
    static bool isOn() { return (OpenCard::outputs() >> kOutput & 1U) != 0; }
    static QVector<JournalEntry> signalCalls() { return OpenCard::calls({"SetOutputBit"}); }

    std::unique_ptr<TemporaryRoot> m_root;
    std::unique_ptr<OpenCard> m_card;
    std::unique_ptr<QRulerView> m_view;
};

void EndSignalTest::initTestCase() {
    LayerData::InitLayerData();
    QRulerView::Init();
}

void EndSignalTest::init() {
    m_root = std::make_unique<TemporaryRoot>();
    m_card = std::make_unique<OpenCard>();
    OpenCard::control().setSpeed(1.0);
    m_view = std::make_unique<QRulerView>(nullptr);
    QVERIFY(m_root->write(QStringLiteral("/one.svg"),
                          "<svg xmlns='http://www.w3.org/2000/svg' width='9mm' height='9mm' viewBox='0 0 9 9'>"
                          "<rect x='1' y='1' width='4' height='4'/></svg>"));
    QString error;
    QVERIFY2(m_view->ImportVectorFile(m_root->path(QStringLiteral("/one.svg")), error), qPrintable(error));
    MarkCardInstance::Instance()->SetMarkType(MarkTypeLaser);
    OpenCard::control().clearJournal();
}

void EndSignalTest::cleanup() {
    OpenCard::control().clearFaults();
    m_view.reset();
    IOOutputSet::Instance()->SetEndSignal(false, kOutput, 1, 0, 100, kAckInput, 1, 1000, false);
    IOOutputSet::Instance()->m_bStopHasEndSig = false;
    m_card.reset();
    m_root.reset();
}

void EndSignalTest::without_the_signal_no_output_is_written() {
    IOOutputSet::Instance()->SetEndSignal(false, kOutput, 1, 0, 100, kAckInput, 1, 1000, true);
    QVERIFY(run());
    QCOMPARE(signalCalls().size(), 0);
}

void EndSignalTest::clear_type_0_blocks_for_the_duration_data() {
    QTest::addColumn<int>("level");
    QTest::newRow("given by 1") << 1;
    QTest::newRow("given by 0") << 0;
}

void EndSignalTest::clear_type_0_blocks_for_the_duration() {
    QFETCH(int, level);
    set(0, 60, 0, level);
    QVERIFY(run());
    const auto calls = signalCalls();
    COMPARE_JOURNAL(calls, {call("SetOutputBit", kOutput, level), call("SetOutputBit", kOutput, 1 - level)});
    QVERIFY(calls.at(1).timeMs - calls.at(0).timeMs >= 60.0);
}

void EndSignalTest::clear_type_1_stays_until_the_next_run() {
    set(1);
    QVERIFY(run());
    QVERIFY(isOn());
    QVERIFY(run());
    COMPARE_JOURNAL(signalCalls(), {call("SetOutputBit", kOutput, 1), call("SetOutputBit", kOutput, 0),
                                    call("SetOutputBit", kOutput, 1)});
    IOOutputSet::Instance()->SetEndSignal(false, kOutput, 1, 0, 0, kAckInput, 1, 0, false);
    QVERIFY(run());
    QVERIFY(!isOn());
}

void EndSignalTest::clear_type_2_waits_for_the_acknowledge_data() {
    QTest::addColumn<int>("ackLevel");
    QTest::newRow("high") << 1;
    QTest::newRow("low") << 0;
}

void EndSignalTest::clear_type_2_waits_for_the_acknowledge() {
    QFETCH(int, ackLevel);
    set(2, 0, 60000, 1, ackLevel);
    OpenCard::setInputs(ackLevel ? 0 : 1U << kAckInput);
    std::future<bool> job = runAside();
    QTRY_VERIFY(isOn());
    QVERIFY(job.wait_for(std::chrono::milliseconds(20)) == std::future_status::timeout);
    OpenCard::setInputs(ackLevel ? 1U << kAckInput : 0);
    QVERIFY(job.get());
    QVERIFY(!isOn());
    COMPARE_JOURNAL(signalCalls(), {call("SetOutputBit", kOutput, 1), call("SetOutputBit", kOutput, 0)});
}

void EndSignalTest::clear_type_2_gives_up_after_the_time_out() {
    set(2, 0, 80);
    QVERIFY(run());
    const auto calls = signalCalls();
    COMPARE_JOURNAL(calls, {call("SetOutputBit", kOutput, 1), call("SetOutputBit", kOutput, 0)});
    QVERIFY(calls.at(1).timeMs - calls.at(0).timeMs >= 80.0);
}

void EndSignalTest::clear_type_2_ends_with_a_stop_data() {
    QTest::addColumn<bool>("byState");
    QTest::newRow("of the state") << true;
    QTest::newRow("of the card") << false;
}

void EndSignalTest::clear_type_2_ends_with_a_stop() {
    QFETCH(bool, byState);
    set(2, 0, 600000);
    std::future<bool> job = runAside();
    QTRY_VERIFY(isOn());
    if (byState)
        MarkCardInstance::Instance()->SetMarkStaus(MarkStatusStop);
    else
        MarkCardInstance::Instance()->StopMark();
    QVERIFY(job.wait_for(std::chrono::seconds(5)) == std::future_status::ready);
    QVERIFY(!isOn());
}

void EndSignalTest::the_signal_of_a_stopped_job_ends_with_the_next_stop_data() {
    QTest::addColumn<int>("way");
    QTest::newRow("blocks") << 0;
    QTest::newRow("waits for the acknowledge") << 2;
}

/// The calls of one stop end the job and leave its signal alone; those half a second later are another one.
void EndSignalTest::the_signal_of_a_stopped_job_ends_with_the_next_stop() {
    QFETCH(int, way);
    set(way, 600000, 600000);
    IOOutputSet::Instance()->m_bStopHasEndSig = true;
    std::future<bool> job = runSlowlyAside();
    QTRY_VERIFY(OpenCard::control().state().laser);
    IMarkCardBase* card = MarkCardInstance::Instance();
    const auto stop = [card] {
        card->StopMark();
        card->SetMarkStaus(MarkStatusStop);
        card->StopMark();
    };
    stop();
    QTRY_VERIFY(isOn());
    QVERIFY(job.wait_for(std::chrono::milliseconds(550)) == std::future_status::timeout);
    stop();
    QVERIFY(job.wait_for(std::chrono::seconds(5)) == std::future_status::ready);
    QVERIFY(!isOn());
}

void EndSignalTest::a_stop_that_comes_too_late_for_the_job_ends_its_signal_data() {
    the_signal_of_a_stopped_job_ends_with_the_next_stop_data();
}

/// A card that hangs marks its job to the end, as one does that is stopped in the job's last instant.
void EndSignalTest::a_stop_that_comes_too_late_for_the_job_ends_its_signal() {
    QFETCH(int, way);
    set(way, 600000, 600000);
    for (LayerData& pen : m_view->GetLayerParams()->GetLayerData()) {
        pen.UseDefault = false;
        pen.MarkSpeed = 20.0;
    }
    std::future<bool> job = runAside();
    QTRY_VERIFY(OpenCard::control().state().laser);
    QVERIFY(OpenCard::control().setFault("stop_hangs", true));
    MarkCardInstance::Instance()->StopMark();
    QVERIFY(job.wait_for(std::chrono::seconds(10)) == std::future_status::ready);
    QVERIFY(job.get());
    QVERIFY(!isOn());
    COMPARE_JOURNAL(signalCalls(), {call("SetOutputBit", kOutput, 1), call("SetOutputBit", kOutput, 0)});
}

void EndSignalTest::the_closing_of_the_card_takes_it_back_data() {
    QTest::addColumn<int>("way");
    QTest::addColumn<int>("level");
    QTest::newRow("blocks") << 0 << 1;
    QTest::newRow("waits for the acknowledge") << 2 << 1;
    QTest::newRow("waits for the acknowledge, given by 0") << 2 << 0;
    QTest::newRow("cleared later") << 3 << 1;
}

void EndSignalTest::the_closing_of_the_card_takes_it_back() {
    QFETCH(int, way);
    QFETCH(int, level);
    set(way, 600000, 600000, level);
    MarkCardInstance::Instance()->SetOutputBit(kOutput, 1 - level);
    OpenCard::control().clearJournal();
    std::future<bool> job = runAside();
    QTRY_COMPARE(isOn(), level == 1);
    MarkCardInstance::Instance()->CloseCard();
    QCOMPARE(isOn(), level == 0);
    QVERIFY(job.wait_for(std::chrono::seconds(5)) == std::future_status::ready);
    MarkCardInstance::Instance()->OpenCard();
    QCOMPARE(isOn(), level == 0);
    COMPARE_JOURNAL(signalCalls(), {call("SetOutputBit", kOutput, level), call("SetOutputBit", kOutput, 1 - level)});
}

void EndSignalTest::clear_type_1_stays_over_a_closing_of_the_card() {
    set(1);
    QVERIFY(run());
    MarkCardInstance::Instance()->CloseCard();
    QVERIFY(isOn());
    MarkCardInstance::Instance()->OpenCard();
    QVERIFY(isOn());
    IOOutputSet::Instance()->SetEndSignal(false, kOutput, 1, 0, 0, kAckInput, 1, 0, false);
    QVERIFY(run());
    QVERIFY(!isOn());
}

void EndSignalTest::a_job_that_the_closing_ends_leaves_no_signal_on() {
    set(0, 600000);
    IOOutputSet::Instance()->m_bStopHasEndSig = true;
    std::future<bool> job = runSlowlyAside();
    QTRY_VERIFY(OpenCard::control().state().laser);
    MarkCardInstance::Instance()->CloseCard();
    QVERIFY(job.wait_for(std::chrono::seconds(5)) == std::future_status::ready);
    QVERIFY(!isOn());
}

void EndSignalTest::clear_type_3_returns_at_once_and_clears_later() {
    set(3, 150);
    QVERIFY(run());
    QVERIFY(isOn());
    QTRY_VERIFY(!isOn());
    const auto calls = signalCalls();
    COMPARE_JOURNAL(calls, {call("SetOutputBit", kOutput, 1), call("SetOutputBit", kOutput, 0)});
    QVERIFY(calls.at(1).timeMs - calls.at(0).timeMs >= 150.0);
}

void EndSignalTest::clear_type_3_of_two_jobs_is_cleared_once() {
    OpenCard::control().setSpeed(20.0);
    set(3, 20 * 400);
    QVERIFY(run());
    QVERIFY(run());
    QVERIFY(isOn());
    QTRY_VERIFY(!isOn());
    COMPARE_JOURNAL(signalCalls(), {call("SetOutputBit", kOutput, 1), call("SetOutputBit", kOutput, 1),
                                    call("SetOutputBit", kOutput, 0)});
}

void EndSignalTest::previews_give_no_signal_data() {
    QTest::addColumn<int>("type");
    QTest::newRow("red light") << int(MarkTypeRedPreview);
    QTest::newRow("border") << int(MarkTypeBorderPreview);
}

void EndSignalTest::previews_give_no_signal() {
    QFETCH(int, type);
    set(0);
    MarkCardInstance::Instance()->SetMarkType(MarkType(type));
    QVERIFY(run());
    QCOMPARE(signalCalls().size(), 0);
}

void EndSignalTest::a_stopped_job_gives_it_only_when_asked_data() {
    QTest::addColumn<bool>("asked");
    QTest::newRow("not asked") << false;
    QTest::newRow("asked") << true;
}

void EndSignalTest::a_stopped_job_gives_it_only_when_asked() {
    QFETCH(bool, asked);
    set(0, 10);
    IOOutputSet::Instance()->m_bStopHasEndSig = asked;
    std::future<bool> job = runSlowlyAside();
    QTRY_VERIFY(OpenCard::control().state().laser);
    MarkCardInstance::Instance()->StopMark();
    MarkCardInstance::Instance()->SetMarkStaus(MarkStatusStop);
    QVERIFY(job.get());
    if (asked)
        COMPARE_JOURNAL(signalCalls(), {call("SetOutputBit", kOutput, 1), call("SetOutputBit", kOutput, 0)});
    else
        QCOMPARE(signalCalls().size(), 0);
}

/// A plant that clears alarms without end looks the same to the card as one that does so between a job's end and the
/// look at its result.
void EndSignalTest::alarms_that_are_cleared_meanwhile_take_no_result_away() {
    OpenCard::control().setSpeed(0.0);
    set(1);
    std::atomic<bool> ended{false};
    std::future<void> plant = std::async(std::launch::async, [&ended] {
        while (!ended)
            MarkCardInstance::Instance()->ClearAlarm();
    });
    int whole = 0;
    constexpr int kRuns = 300;
    OpenCard::control().clearJournal();
    for (int i = 0; i < kRuns; ++i) {
        MarkCardInstance::Instance()->SetOutputBit(kOutput, 0);
        whole += run() && isOn() && RunDataGather::Instance()->GetRunResult() ? 1 : 0;
    }
    ended = true;
    plant.get();
    QCOMPARE(whole, kRuns);
    // this kind stands until the next job begins
    IOOutputSet::Instance()->SetEndSignal(false, kOutput, 1, 1, 5, kAckInput, 1, 0, true);
    QVERIFY(run());
    QVERIFY(!isOn());
}

void EndSignalTest::an_output_that_is_not_there_is_not_written() {
    for (int output : {-1, 32}) {
        IOOutputSet::Instance()->SetEndSignal(true, output, 1, 0, 5, kAckInput, 1, 0, true);
        QVERIFY(run());
    }
    QCOMPARE(signalCalls().size(), 0);
}

void EndSignalTest::a_signal_that_does_not_read_back_is_logged_when_it_is_checked_data() {
    QTest::addColumn<bool>("stuck");
    QTest::addColumn<bool>("check");
    QTest::addColumn<QStringList>("log");
    const QStringList failed(QStringLiteral("end signal: output 13 does not read back as written"));
    QTest::newRow("stuck and checked") << true << true << failed;
    QTest::newRow("stuck, not checked") << true << false << QStringList();
    QTest::newRow("good and checked") << false << true << QStringList();
}

void EndSignalTest::a_signal_that_does_not_read_back_is_logged_when_it_is_checked() {
    QFETCH(bool, stuck);
    QFETCH(bool, check);
    IOOutputSet::Instance()->SetEndSignal(true, kOutput, 1, 0, 5, kAckInput, 1, 0, check);
    QVERIFY(OpenCard::control().setFault("outputs_stuck", stuck));
    QVERIFY(run());
    COMPARE_JOURNAL(signalCalls(), {call("SetOutputBit", kOutput, 1), call("SetOutputBit", kOutput, 0)});
    QTEST(logTexts("error"), "log");
}

void EndSignalTest::a_signal_without_its_acknowledge_is_logged() {
    set(2, 0, 30);
    QVERIFY(run());
    QCOMPARE(logTexts("error"), QStringList(QStringLiteral("end signal: no acknowledge at input 16 within 30 ms")));
}

QTEST_MAIN(EndSignalTest)
#include "tst_endsignal.moc"
