// SPDX-License-Identifier: MIT
#include "engine/dot3.h"
#include "engine/imodbuslaser.h"
#include "engine/layerdata.h"
#include "engine/markcardinstance.h"
#include "engine/systemparam.h"
#include "engine/vzmarkcard.h"
#include "tests/engine/enginedocument.h"
#include "tests/support/waitfor.h"

#include <atomic>
#include <condition_variable>
#include <cstdint>
#include <cstring>
#include <mutex>
#include <thread>

namespace {

constexpr unsigned int kRunningBit = 1U << 0;
constexpr unsigned int kPausedBit = 1U << 24;

/// A serial laser that keeps what it was given and takes its time when it is told to.
class Laser : public IModbusLaser {
public:
    Laser() { m_hInstance = this; }

    double QCWWPulse() override {
        note("QCWWPulse");
        return 2000.0;
    }
    bool IsConnected() override {
        noteThread();
        ++m_asked;
        return m_connected;
    }
    bool IsAutoCalcPWM() override {
        noteThread();
        return m_derives;
    }
    void AutoCalcPWM(double& freq, double& duty) override {
        note("AutoCalcPWM");
        freq = 50.0;
        duty = 100.0;
    }
    void SetQCWParam(int model, double peak, double pulse) override {
        note(QStringLiteral("SetQCWParam %1 %2 %3").arg(model).arg(peak).arg(pulse));
    }
    void SetQCWParam(int mode, int model, double qcwPeak, double qcwPulse, double pwmPeak, double pwmFreq,
                     double pwmDuty, double blowDelay, double shutterDelay) override {
        QStringList text{QString::number(mode), QString::number(model)};
        for (double value : {qcwPeak, qcwPulse, pwmPeak, pwmFreq, pwmDuty, blowDelay, shutterDelay})
            text += QString::number(value);
        note(text.join(QLatin1Char(' ')));
        std::unique_lock<std::mutex> lock(m_mutex);
        m_busy = true;
        m_changed.wait(lock, [this] { return !m_slow; });
        m_busy = false;
    }

    void connect(bool on) { m_connected = on; }
    void derive() { m_derives = true; }
    void setSlow(bool on) {
        const std::lock_guard<std::mutex> lock(m_mutex);
        m_slow = on;
        m_changed.notify_all();
    }
    bool isBusy() const {
        const std::lock_guard<std::mutex> lock(m_mutex);
        return m_busy;
    }
    QStringList calls() const {
        const std::lock_guard<std::mutex> lock(m_mutex);
        return m_calls;
    }
    /// How often the engine has asked whether it is connected.
    int asked() const { return m_asked; }
    /// The thread of all calls; none when there were several.
    std::thread::id thread() const {
        const std::lock_guard<std::mutex> lock(m_mutex);
        return m_threads == 1 ? m_thread : std::thread::id();
    }

private:
    void noteThread() {
        const std::lock_guard<std::mutex> lock(m_mutex);
        if (m_thread != std::this_thread::get_id())
            ++m_threads;
        m_thread = std::this_thread::get_id();
    }
    void note(QString const& call) {
        noteThread();
        const std::lock_guard<std::mutex> lock(m_mutex);
        m_calls.append(call);
    }

    std::atomic<bool> m_connected{true};
    std::atomic<bool> m_derives{false};
    std::atomic<int> m_asked{0};
    mutable std::mutex m_mutex; ///< guards all below
    std::condition_variable m_changed;
    QStringList m_calls;
    std::thread::id m_thread;
    int m_threads = 0;
    bool m_slow = false;
    bool m_busy = false;
};

void stop(IMarkCardBase& card) {
    card.StopMark();
    card.SetMarkStaus(MarkStatusStop);
    card.StopMark();
}

void endRun() {
    static_cast<Laser*>(IModbusLaser::Instance())->setSlow(false);
    stop(*MarkCardInstance::Instance());
}

/// MarkShapeContainer::StartMark on a worker thread, as the run control calls it.
class Run {
public:
    explicit Run(QRulerView& view, bool loop = false)
        : m_thread([this, &view, loop] {
            IMarkCardBase* const card = MarkCardInstance::Instance();
            card->SetMarkStaus(MarkStatusRun);
            card->DownLayerPara(view.GetLayerParams(), kLayerCount);
            m_result = view.GetMarkTools()->StartMark(false, loop, view.GetLayerParams());
            m_ended = true;
        })
        , m_id(m_thread.get_id()) {}
    ~Run() {
        if (!m_ended) // a case that failed
            endRun();
        m_thread.join();
    }
    bool hasEnded() const { return m_ended; }
    bool result() const { return m_result; }
    std::thread::id id() const { return m_id; }

private:
    std::atomic<bool> m_ended{false};
    std::atomic<bool> m_result{false};
    std::thread m_thread;
    std::thread::id m_id;
};

/// Index in its class's table of virtual functions of the one that a pointer to a member function means.
template<typename Function>
std::ptrdiff_t slotOf(Function function) {
    std::ptrdiff_t words[2];
    static_assert(sizeof words == sizeof function);
    std::memcpy(words, &function, sizeof words);
    // Itanium C++ ABI: 1 and the offset in the table; where the low bit is the instruction set's it is in the second.
    const bool inFirst = words[0] & 1;
    return (inFirst ? words[0] - 1 : words[0]) / static_cast<std::ptrdiff_t>(sizeof(void*));
}

} // namespace

/// What the engine asks of the serial laser while it marks.
class TestSerialLaser : public QObject {
    Q_OBJECT

    std::unique_ptr<tests::TemporaryRoot> m_root;
    VZMarkCard* m_card = nullptr;
    std::unique_ptr<Laser> m_laser;

    /// A mark point for each of the pens, in their order.
    static void addPoints(QRulerView& view, QVector<int> const& pens, int pointTime = 1000) {
        for (int i = 0; i < pens.size(); ++i) {
            view.SetCurrentLayerWithOutChangeLayer(pens[i]);
            view.AddMarkPoint(QPointF(0.01 * i, 0.0));
        }
        for (LayerData& pen : view.GetLayerParams()->GetLayerData()) {
            pen.JumpSpeed = 10000;
            pen.PointTime = pointTime;
        }
    }
    static void setWave(QRulerView& view, int pen, int number) {
        view.GetLayerParams()->GetLayerData()[pen].WaveNumber = number;
    }
    /// Runs the document; false when it did not end or gave false.
    static bool mark(QRulerView& view) {
        Run const run(view);
        const bool ended = tests::waitFor([&] { return run.hasEnded(); });
        if (!ended)
            stop(*MarkCardInstance::Instance());
        return ended && run.result();
    }

private slots:
    void initTestCase() {
        m_root = std::make_unique<tests::TemporaryRoot>();
        LayerData::InitLayerData();
        QRulerView::Init();
    }
    void init() {
        m_laser = std::make_unique<Laser>();
        m_card = new VZMarkCard;
        MarkCardInstance::SetMarkCardInstance(m_card);
        m_card->OpenCard();
        m_card->SetMarkType(MarkTypeLaser);
        SystemParam::Instance()->SetBufLoop(false);
        SystemParam::Instance()->SetEnableLayLaser(true);
    }
    void cleanup() {
        m_laser->setSlow(false);
        m_card->CloseCard();
        MarkCardInstance::SetMarkCardInstance(nullptr);
        SystemParam::Instance()->SetEnableLayLaser(false);
        SystemParam::Instance()->SetBufLoop(false);
        m_laser.reset();
    }
    void cleanupTestCase() { m_root.reset(); }

    void laser_is_registered_until_it_goes() {
        QCOMPARE(IModbusLaser::Instance(), m_laser.get());
        {
            Laser second;
            QCOMPARE(IModbusLaser::Instance(), &second);
        }
        QVERIFY(!IModbusLaser::Instance());
        IModbusLaser::m_hInstance = m_laser.get();
        QCOMPARE(IModbusLaser::Instance(), m_laser.get());
    }

    void operations_have_their_slots() {
        using Short = void (IModbusLaser::*)(int, double, double);
        using Whole = void (IModbusLaser::*)(int, int, double, double, double, double, double, double, double);
        QCOMPARE(slotOf(&IModbusLaser::QCWWPulse), std::ptrdiff_t(0));
        QCOMPARE(slotOf(&IModbusLaser::IsConnected), std::ptrdiff_t(1));
        QCOMPARE(slotOf(&IModbusLaser::IsAutoCalcPWM), std::ptrdiff_t(2));
        QCOMPARE(slotOf(&IModbusLaser::AutoCalcPWM), std::ptrdiff_t(3));
        QCOMPARE(slotOf(static_cast<Short>(&IModbusLaser::SetQCWParam)), std::ptrdiff_t(4));
        QCOMPARE(slotOf(static_cast<Whole>(&IModbusLaser::SetQCWParam)), std::ptrdiff_t(5));
    }

    void operations_reach_the_laser_by_their_base() {
        IModbusLaser* const laser = IModbusLaser::Instance();
        QVERIFY(laser->IsConnected());
        QVERIFY(!laser->IsAutoCalcPWM());
        QCOMPARE(laser->QCWWPulse(), 2000.0);
        double freq = 0;
        double duty = 0;
        laser->AutoCalcPWM(freq, duty);
        QCOMPARE(freq, 50.0);
        QCOMPARE(duty, 100.0);
        laser->SetQCWParam(3, 400.0, 1.5);
        laser->SetQCWParam(1, 15, 1, 2, 3, 4, 5, 6, 7);
        QCOMPARE(m_laser->calls(),
                 (QStringList{"QCWWPulse", "AutoCalcPWM", "SetQCWParam 3 400 1.5", "1 15 1 2 3 4 5 6 7"}));
    }

    void waveform_of_the_pen_is_set_on_the_run_thread() {
        QRulerView view(nullptr);
        addPoints(view, {4});
        setWave(view, 4, 9);
        LYQCWWave& wave = view.GetLayerParams()->GetQCWWaves()[9];
        wave = {1, 61.0, 501.0, 2.5, 96.0, 502.0, 210.0, 40.0, 21.0, 22.0};
        {
            Run const run(view);
            QVERIFY(tests::waitFor([&] { return run.hasEnded(); }));
            QVERIFY(run.result());
            QVERIFY(m_laser->thread() == run.id());
        }
        QCOMPARE(m_laser->calls(), QStringList{"1 9 501 2.5 502 210 40 21 22"});
    }

    void each_change_of_the_pen_sets_its_waveform() {
        QRulerView view(nullptr);
        addPoints(view, {0, 0, 1, 2, 1});
        for (int pen : {0, 1, 2})
            setWave(view, pen, pen + 3);
        QVERIFY(mark(view));
        QCOMPARE(m_laser->calls(), (QStringList{"0 3 500 2 500 200 100 20 20", "0 4 500 2 500 200 100 20 20",
                                                "0 5 500 2 500 200 100 20 20", "0 4 500 2 500 200 100 20 20"}));
    }

    void waveform_that_the_laser_has_is_not_sent_again_within_a_job() {
        QRulerView view(nullptr);
        addPoints(view, {0, 1, 0, 2});
        setWave(view, 2, 1);
        QVERIFY(mark(view));
        QCOMPARE(m_laser->calls().size(), 2);
        QVERIFY(mark(view));
        QCOMPARE(m_laser->calls().size(), 4);
    }

    void changed_pen_and_waveform_wait_for_the_next_download() {
        QRulerView view(nullptr);
        addPoints(view, {0});
        m_card->DownLayerPara(view.GetLayerParams(), kLayerCount);
        setWave(view, 0, 2);
        view.GetLayerParams()->GetQCWWaves()[0].peak = 1.0;
        m_card->SetMarkStaus(MarkStatusRun);
        QVERIFY(view.GetMarkTools()->StartMark(false, false, view.GetLayerParams()));
        QCOMPARE(m_laser->calls(), QStringList{"0 0 500 2 500 200 100 20 20"});
    }

    void pen_with_defaults_takes_the_number_of_the_shared_record() {
        LayerData const before = LayerData::GetDefaultLayerData();
        LayerData shared = before;
        shared.WaveNumber = 12;
        LayerData::SetDefaultLatyerData(shared);
        QRulerView view(nullptr);
        addPoints(view, {0});
        view.GetLayerParams()->GetLayerData()[0].UseDefault = true;
        const bool marked = mark(view);
        LayerData::SetDefaultLatyerData(before);
        QVERIFY(marked);
        QCOMPARE(m_laser->calls(), QStringList{"0 12 500 2 500 200 100 20 20"});
    }

    void number_without_a_waveform_marks_with_what_the_laser_has_data() {
        QTest::addColumn<int>("number");
        for (int number : {-1, 16, 100000})
            QTest::addRow("%d", number) << number;
    }
    void number_without_a_waveform_marks_with_what_the_laser_has() {
        QFETCH(int, number);
        QRulerView view(nullptr);
        addPoints(view, {0, 1, 0});
        setWave(view, 1, number);
        QVERIFY(mark(view));
        QCOMPARE(m_laser->calls(), QStringList{"0 0 500 2 500 200 100 20 20"});
    }

    void without_link_or_switch_the_laser_is_left_alone_data() {
        QTest::addColumn<bool>("connected");
        QTest::addColumn<bool>("enabled");
        QTest::newRow("not connected") << false << true;
        QTest::newRow("switched off") << true << false;
    }
    void without_link_or_switch_the_laser_is_left_alone() {
        QFETCH(bool, connected);
        QFETCH(bool, enabled);
        m_laser->connect(connected);
        m_laser->derive();
        SystemParam::Instance()->SetEnableLayLaser(enabled);
        QRulerView view(nullptr);
        addPoints(view, {0, 1});
        QVERIFY(mark(view));
        QCOMPARE(m_laser->calls(), QStringList());
    }

    void without_a_laser_the_document_is_marked() {
        QRulerView view(nullptr);
        addPoints(view, {0, 1});
        IModbusLaser::m_hInstance = nullptr;
        const bool marked = mark(view);
        IModbusLaser::m_hInstance = m_laser.get();
        QVERIFY(marked);
        QCOMPARE(m_laser->calls(), QStringList());
    }

    void previews_leave_the_laser_alone_data() {
        QTest::addColumn<int>("type");
        QTest::newRow("red light") << int(MarkTypeRedPreview);
        QTest::newRow("border") << int(MarkTypeBorderPreview);
    }
    void previews_leave_the_laser_alone() {
        QFETCH(int, type);
        m_card->SetMarkType(static_cast<MarkType>(type));
        QRulerView view(nullptr);
        addPoints(view, {0, 1});
        QVERIFY(mark(view));
        QCOMPARE(m_laser->calls(), QStringList());
        QVERIFY(m_laser->thread() == std::thread::id());
    }

    void direct_jobs_set_the_waveform_too() {
        LayerParamEx layers;
        layers.GetLayerData()[2].WaveNumber = 2;
        layers.GetLayerData()[3].WaveNumber = 3;
        m_card->DownLayerPara(&layers, kLayerCount);
        m_card->BeginList(1);
        DOT3 line[] = {{0, 0, 0}, {0.1, 0, 0}};
        m_card->AddList(line, 2, 2);
        m_card->AddMarkPoint(layers, 3, {0, 0, 0}, 0.1);
        m_card->EndList();
        QCOMPARE(m_laser->calls(), (QStringList{"0 2 500 2 500 200 100 20 20", "0 3 500 2 500 200 100 20 20"}));
        QVERIFY(m_laser->thread() == std::this_thread::get_id());
    }

    void derived_pulses_are_asked_for_behind_the_waveform() {
        m_laser->derive();
        QRulerView view(nullptr);
        addPoints(view, {0, 1});
        QVERIFY(mark(view));
        const QStringList calls = m_laser->calls();
        QCOMPARE(calls.count("AutoCalcPWM"), 2);
        QVERIFY(calls.first().startsWith("0 0 "));
        QVERIFY(calls.indexOf("AutoCalcPWM") > 0);
    }

    void job_waits_for_the_laser_and_its_time_does_not_count() {
        QRulerView view(nullptr);
        addPoints(view, {0, 1});
        QVERIFY(mark(view));
        const double quick = m_card->GetBufferRunTime();
        m_laser->setSlow(true);
        {
            Run const run(view);
            QVERIFY(tests::waitFor([&] { return m_laser->isBusy(); }));
            QVERIFY(m_card->GetMarkInfo() & kRunningBit);
            const auto until = std::chrono::steady_clock::now() + std::chrono::milliseconds(50);
            while (std::chrono::steady_clock::now() < until)
                std::this_thread::yield();
            QVERIFY(!run.hasEnded());
            m_laser->setSlow(false);
            QVERIFY(tests::waitFor([&] { return run.hasEnded(); }));
        }
        // The head stood elsewhere before the first run: a jump of parts of a millimetre.
        QVERIFY2(qAbs(m_card->GetBufferRunTime() - quick) < 1.0,
                 qPrintable(QString("%1 %2").arg(m_card->GetBufferRunTime()).arg(quick)));
    }

    void stop_during_the_call_ends_the_job() {
        m_laser->setSlow(true);
        QRulerView view(nullptr);
        addPoints(view, {0, 1}, 1'000'000);
        {
            Run const run(view);
            QVERIFY(tests::waitFor([&] { return m_laser->isBusy(); }));
            stop(*m_card);
            QVERIFY(!(m_card->GetMarkInfo() & kRunningBit));
            QVERIFY(m_laser->isBusy());
            m_card->IsMarkStop();
            QVERIFY(!run.hasEnded());
            m_laser->setSlow(false);
            QVERIFY(tests::waitFor([&] { return run.hasEnded(); }));
            QVERIFY(run.result());
        }
        QCOMPARE(m_laser->calls().size(), 1);
        QVERIFY2(m_card->GetBufferRunTime() < 1000.0, "the point of 1 s was not marked");
    }

    void pause_during_the_call_outlasts_it() {
        m_laser->setSlow(true);
        QRulerView view(nullptr);
        addPoints(view, {0});
        Run const run(view);
        QVERIFY(tests::waitFor([&] { return m_laser->isBusy(); }));
        m_card->SetMarkStaus(MarkStatusPause);
        QVERIFY(m_card->GetMarkInfo() & kPausedBit);
        m_laser->setSlow(false);
        QVERIFY(tests::waitFor([&] { return !m_laser->isBusy(); }));
        QVERIFY(m_card->GetMarkInfo() & kPausedBit);
        QVERIFY(!run.hasEnded());
        m_card->SetMarkStaus(MarkStatusRun);
        QVERIFY(tests::waitFor([&] { return run.hasEnded(); }));
    }

    void closing_during_the_call_ends_the_job() {
        m_laser->setSlow(true);
        QRulerView view(nullptr);
        addPoints(view, {0});
        Run const run(view);
        QVERIFY(tests::waitFor([&] { return m_laser->isBusy(); }));
        m_card->CloseCard();
        QVERIFY(!m_card->IsCardOpend());
        m_laser->setSlow(false);
        QVERIFY(tests::waitFor([&] { return run.hasEnded(); }));
    }

    void looped_job_changes_the_waveform_with_each_pen_again() {
        SystemParam::Instance()->SetBufLoop(true);
        QRulerView view(nullptr);
        addPoints(view, {0, 1}, 100);
        setWave(view, 1, 1);
        Run const run(view, true);
        QVERIFY(tests::waitFor([&] { return m_laser->calls().size() >= 6; }));
        stop(*m_card);
        QVERIFY(tests::waitFor([&] { return run.hasEnded(); }));
        const QStringList calls = m_laser->calls();
        for (int i = 0; i < calls.size(); ++i)
            QVERIFY(calls[i].startsWith(i % 2 ? "0 1 " : "0 0 "));
    }

    void looped_job_of_one_waveform_sets_it_once() {
        SystemParam::Instance()->SetBufLoop(true);
        QRulerView view(nullptr);
        addPoints(view, {0, 1}, 100);
        Run const run(view, true);
        QVERIFY(tests::waitFor([&] { return m_laser->asked() >= 10; }));
        stop(*m_card);
        QVERIFY(tests::waitFor([&] { return run.hasEnded(); }));
        QCOMPARE(m_laser->calls().size(), 1);
    }

    void laser_that_comes_back_gets_its_waveform_again() {
        SystemParam::Instance()->SetBufLoop(true);
        QRulerView view(nullptr);
        addPoints(view, {0, 1}, 100);
        Run const run(view, true);
        QVERIFY(tests::waitFor([&] { return m_laser->calls().size() == 1; }));
        m_laser->connect(false);
        const int before = m_laser->asked();
        QVERIFY(tests::waitFor([&] { return m_laser->asked() >= before + 4; }));
        m_laser->connect(true);
        QVERIFY(tests::waitFor([&] { return m_laser->calls().size() == 2; }));
        stop(*m_card);
        QVERIFY(tests::waitFor([&] { return run.hasEnded(); }));
    }
};

QTEST_MAIN(TestSerialLaser)
#include "tst_seriallaser.moc"
