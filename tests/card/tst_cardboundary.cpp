// SPDX-License-Identifier: MIT
// The card as the boundary shows it, on the simulated machine.
#include "engine/cardfunctions.h"
#include "engine/markcardinstance.h"
#include "engine/markingmparam_vz.h"
#include "engine/systemparam.h"
#include "engine/vzmarkcard.h"
#include "simengine/card/cardlink.h"
#include "simengine/card/traceexport.h"
#include "simengine/simcontrol.h"
#include "support/approot.h"

#include <QFile>
#include <QImage>
#include <QTemporaryDir>
#include <QXmlStreamReader>
#include <QtTest>

#include <dlfcn.h>
#include <future>
#include <limits>

using namespace sim;

namespace {

QStringList g_messages;

void takeMessage(char const* text, int kind) {
    g_messages << QString::number(kind) + ":" + QString::fromUtf8(text);
}

/// A line a call, "SetOutputBit(3,1)".
QStringList calls(std::uint64_t since) {
    QStringList list;
    for (JournalEntry const& entry : simulatedCard().journal().since(since)) {
        QStringList args;
        for (JournalValue const& value : entry.args) {
            if (auto const* integer = std::get_if<std::int64_t>(&value))
                args << QString::number(*integer);
            else if (auto const* real = std::get_if<double>(&value))
                args << QString::number(*real);
            else
                args << QString::fromStdString(std::get<std::string>(value));
        }
        list << QString::fromStdString(entry.name) + "(" + args.join(",") + ")";
    }
    return list;
}

Job squareJob() {
    Job job;
    job.strokes.push_back({0, {{0, 0}, {10, 0}, {10, 10}, {0, 10}, {0, 0}}});
    return job;
}

} // namespace

class tst_CardBoundary : public QObject {
    Q_OBJECT

private slots:
    void initTestCase();
    void init();
    void cleanup();
    void closed_card_does_nothing_and_gives_idle_values();
    void run_control_calls_are_recorded_in_order();
    void stop_makes_start_mark_return_true();
    void start_mark_in_state_stop_gives_false();
    void buffer_loop_of_the_settings_repeats_until_stopped();
    void pens_are_downloaded_field_by_field();
    void pen_with_use_default_takes_the_shared_record();
    void missing_table_changes_no_pens();
    void direct_list_is_run_and_recorded();
    void point_dwell_is_given_in_ms();
    void inputs_and_outputs();
    void words_and_wait_text();
    void failed_opening_is_told_by_the_message_function();
    void hardware_word_tells_the_laser_type_data();
    void hardware_word_tells_the_laser_type();
    void flash_takes_chunks_up_to_2048_bytes();
    void flash_reset_erases();
    void silent_command_channel_leaves_the_results();
    void device_answers_on_the_command_channel();
    void encoder_and_waveform_number();
    void alarm_time_survives_a_restart();
    void instance_holds_one_card();
    void control_is_found_by_its_symbol();
    void control_refuses_what_the_machine_has_not();
    void trace_is_written_by_ending();

private:
    QTemporaryDir m_root;
    std::unique_ptr<VZMarkCard> m_card;
    std::uint64_t m_begin = 0;
};

void tst_CardBoundary::initTestCase() {
    QVERIFY(m_root.isValid());
    tessera::setApplicationRoot(m_root.path());
}

void tst_CardBoundary::init() {
    g_messages.clear();
    m_card = std::make_unique<VZMarkCard>();
    m_card->OpenCard();
    QVERIFY(m_card->IsCardOpend());
    simulatedCard().setSpeed(0);
    simulatedCard().setPens({});
    m_card->SetMarkType(MarkTypeLaser);
    m_card->MoveMirrorPos(0, 0, 1000, 0);
    m_begin = simulatedCard().journal().lastSequence();
}

void tst_CardBoundary::cleanup() {
    m_card.reset();
    simulatedCard().clearFaults();
    simulatedCard().io().setInputs(0);
    for (int bit = 0; bit < kLineCount; ++bit)
        simulatedCard().io().setOutput(bit, false);
    SystemParam::Instance()->SetBufLoop(false);
    VZ_SetFuncMessageDisp(nullptr, nullptr);
}

void tst_CardBoundary::closed_card_does_nothing_and_gives_idle_values() {
    simulatedCard().io().setInputs(0xFF);
    m_card->CloseCard();
    LayerParamEx layers;
    DOT3 points[2];
    int out1 = 7;
    int out2 = 8;
    unsigned int word = 5;
    QCOMPARE(m_card->HasMotion(), false);
    QCOMPARE(m_card->GetCardVersion(), QString());
    m_card->SetOutputBit(1, 1);
    m_card->SetMarkType(MarkTypeRedPreview);
    m_card->SetMarkStaus(MarkStatusRun);
    m_card->DownLayerPara(&layers, 20);
    m_card->BeginList(1);
    m_card->AddList(points, 2, 0);
    m_card->AddMarkPoint(layers, 0, points[0], 1.0);
    m_card->EndList();
    m_card->StopMark();
    m_card->PauseMark();
    m_card->RestartMark();
    m_card->ResetCardFlash();
    m_card->SetAlarmTime(99);
    m_card->CardCommand(1, 2, 3, &out1, &out2);
    m_card->CardCommand(1, 2, 3, nullptr, nullptr);
    m_card->MoveMirrorPos(5, 5, 1000, 0);
    m_card->ClearAlarm();
    m_card->SetCalibrationParam();
    QVERIFY(m_card->IsMarkStop());
    QVERIFY(!m_card->SystemIsAlarm(word));
    QCOMPARE(word, 0u);
    QCOMPARE(out1, 7);
    QCOMPARE(out2, 8);
    QCOMPARE(m_card->GetInput(), 0u);
    QCOMPARE(m_card->GetOutput(), 0u);
    QCOMPARE(m_card->GetInputBit(0), 0);
    QCOMPARE(m_card->GetOutputBit(1), 0);
    QCOMPARE(m_card->GetMarkStatus(), MarkStatusStop);
    QCOMPARE(m_card->GetMarkInfo(), 0u);
    QCOMPARE(m_card->GetScanState(), 0u);
    QCOMPARE(m_card->GetWaitInfo(), QString());
    QCOMPARE(m_card->GetBufferRunTime(), 0.0);
    QCOMPARE(m_card->GetAlarmTime(), 0);
    QVERIFY(m_card->GetStabtadrCalibParam());
    VZ_OutputError(1);
    VZ_OutputWaveNo(3);
    VZ_SetFlyEncInitPos(4);
    VZ_SetFlyPara();
    VZ_TestOssSwitchSpeed();
    VZ_ResetCardFlash();
    unsigned char byte = 0;
    QVERIFY(VZ_FlashWriteAddr(0x800000, &byte, 1) != 0);
    VZ_GetHdVer(&word);
    QCOMPARE(word, 0u);
    VZ_GetEncPos(&out1);
    QCOMPARE(out1, 0);
    SimCardState const state = tessera_sim_control()->state();
    QVERIFY(!state.open);
    QVERIFY(!state.errorOutput);
    QCOMPARE(state.outputs, 0u);
}

void tst_CardBoundary::run_control_calls_are_recorded_in_order() {
    m_card->SetMarkStaus(MarkStatusRun);
    m_card->SetMarkType(MarkTypeBorderPreview);
    LayerParamEx layers;
    m_card->DownLayerPara(&layers, 20);
    QVERIFY(CardRun(true, false).start(squareJob()));
    m_card->StopMark();
    m_card->SetMarkStaus(MarkStatusStop);
    m_card->PauseMark();
    m_card->RestartMark();
    m_card->SetOutputBit(7, 2);
    m_card->SetOutputBit(-1, 1);
    VZ_OutputError(1);
    QCOMPARE(calls(m_begin),
             QStringList({"SetMarkStaus(0)", "SetMarkType(2)", "DownLayerPara(20,500,3000)", "StartMark(1,0)",
                          "StopMark()", "SetMarkStaus(2)", "PauseMark()", "RestartMark()", "SetOutputBit(7,2)",
                          "SetOutputBit(-1,1)", "VZ_OutputError(1)"}));
    QVERIFY(tessera_sim_control()->state().errorOutput);
    VZ_OutputError(0);
    QVERIFY(!tessera_sim_control()->state().errorOutput);
}

void tst_CardBoundary::stop_makes_start_mark_return_true() {
    simulatedCard().setSpeed(1);
    m_card->SetMarkStaus(MarkStatusRun);
    Job job;
    job.strokes.push_back({0, {{0, 0}, {9000, 0}}});
    auto run = std::async(std::launch::async, [&job] { return CardRun(false, false).start(job); });
    QTRY_COMPARE(simulatedCard().head().activity, Activity::Running);
    QVERIFY(m_card->GetMarkInfo() & 1u);
    m_card->StopMark();
    std::size_t const rows = simulatedCard().trace().size();
    m_card->SetMarkStaus(MarkStatusStop);
    m_card->StopMark();
    QVERIFY(run.get());
    QCOMPARE(simulatedCard().trace().size(), rows);
    QVERIFY(m_card->IsMarkStop());
    QCOMPARE(m_card->GetMarkStatus(), MarkStatusStop);
}

void tst_CardBoundary::start_mark_in_state_stop_gives_false() {
    m_card->SetMarkStaus(MarkStatusStop);
    CardRun run(false, false);
    QVERIFY(!run.isAccepted());
    QVERIFY(!run.start(squareJob()));
}

void tst_CardBoundary::buffer_loop_of_the_settings_repeats_until_stopped() {
    SystemParam::Instance()->SetBufLoop(true);
    SystemParam::Instance()->LoopMarkDelay(1.0);
    m_card->SetMarkStaus(MarkStatusRun);
    std::uint64_t const pass = simulatedCard().trace().pass();
    auto run = std::async(std::launch::async, [] { return CardRun(false, true).start(squareJob()); });
    QTRY_VERIFY(simulatedCard().trace().pass() > pass + 10);
    m_card->StopMark();
    QVERIFY(run.get());
}

void tst_CardBoundary::pens_are_downloaded_field_by_field() {
    LayerParamEx layers;
    LayerData data;
    data.MarkCnt = 2;
    data.MarkSpeed = 3.5;
    data.RedSpeed = 4.5;
    data.Power = 5.5;
    data.WaveNumber = 6;
    data.Fre = 7.5;
    data.PWM = 8.5;
    data.OpenLaserDelay = -9;
    data.CloseLaserDelay = 10;
    data.EndDelay = 11;
    data.TurnDelay = 12;
    data.JumpSpeed = 13.5;
    data.MaxJumpDelay = 14;
    data.MarkDelay = 15;
    data.MinJumpDelay = 16;
    data.PointTime = 17;
    data.MinJumpDelayDist = 18.5;
    data.MaxJumpDelayDist = 19.5;
    data.WobbleEnable = true;
    data.WobbleDiameter = 20.5;
    data.WobbleSpacing = 21.5;
    layers.SetLayerData(19, data);
    m_card->DownLayerPara(&layers, 20);
    PenParams const pen = simulatedCard().pens()[19];
    QCOMPARE(pen.markCount, 2);
    QCOMPARE(pen.markSpeed, 3.5);
    QCOMPARE(pen.redSpeed, 4.5);
    QCOMPARE(pen.power, 5.5);
    QCOMPARE(pen.waveNumber, 6);
    QCOMPARE(pen.frequency, 7.5);
    QCOMPARE(pen.pwm, 8.5);
    QCOMPARE(pen.openLaserDelay, -9);
    QCOMPARE(pen.closeLaserDelay, 10);
    QCOMPARE(pen.endDelay, 11);
    QCOMPARE(pen.turnDelay, 12);
    QCOMPARE(pen.jumpSpeed, 13.5);
    QCOMPARE(pen.maxJumpDelay, 14);
    QCOMPARE(pen.markDelay, 15);
    QCOMPARE(pen.minJumpDelay, 16);
    QCOMPARE(pen.pointTime, 17);
    QCOMPARE(pen.minJumpDelayDist, 18.5);
    QCOMPARE(pen.maxJumpDelayDist, 19.5);
    QCOMPARE(pen.wobbleEnable, true);
    QCOMPARE(pen.wobbleDiameter, 20.5);
    QCOMPARE(pen.wobbleSpacing, 21.5);
    QCOMPARE(simulatedCard().pens()[0].markSpeed, LayerData().MarkSpeed);
}

void tst_CardBoundary::pen_with_use_default_takes_the_shared_record() {
    LayerParamEx layers;
    LayerData data;
    data.MarkSpeed = 123;
    data.UseDefault = true;
    layers.SetLayerData(4, data);
    m_card->DownLayerPara(&layers, 20);
    QCOMPARE(simulatedCard().pens()[4].markSpeed, LayerData::GetDefaultLayerData().MarkSpeed);
}

void tst_CardBoundary::missing_table_changes_no_pens() {
    PenTable pens{};
    pens[3].markSpeed = 77;
    simulatedCard().setPens(pens);
    LayerParamEx layers;
    m_card->DownLayerPara(nullptr, 20);
    m_card->DownLayerPara(&layers, 0);
    m_card->DownLayerPara(&layers, -5);
    QCOMPARE(simulatedCard().pens()[3].markSpeed, 77.0);
    m_card->DownLayerPara(&layers, 1000);
    QCOMPARE(simulatedCard().pens()[3].markSpeed, LayerData().MarkSpeed);
}

void tst_CardBoundary::direct_list_is_run_and_recorded() {
    DOT3 line[] = {{-1.5, 2, 0}, {3, 2, 0}};
    m_card->BeginList(1);
    m_card->AddList(line, 2, 4);
    m_card->AddList(nullptr, 3, 4);
    m_card->AddList(line, -1, 4);
    m_card->EndList();
    QCOMPARE(calls(m_begin),
             QStringList({"BeginList(1)", "AddList(2,4,-1.5,2,3,2)", "AddList(3,4)", "AddList(-1,4)", "EndList()"}));
    TraceSnapshot const rows = simulatedCard().trace().snapshot();
    QCOMPARE(rows.size(), std::size_t(2));
    QCOMPARE(rows[1].at.x, 3.0);
    QCOMPARE(int(rows[1].pen), 4);
    QVERIFY(m_card->GetBufferRunTime() > 0);
}

void tst_CardBoundary::point_dwell_is_given_in_ms() {
    LayerParamEx layers;
    m_card->BeginList(1);
    m_card->AddMarkPoint(layers, 2, {1, 1, 0}, 25.0);
    m_card->EndList();
    QCOMPARE(simulatedCard().lastTime().markMs, 25.0);
}

void tst_CardBoundary::inputs_and_outputs() {
    SimControl* control = tessera_sim_control();
    control->setInputs(0x80000002u);
    QCOMPARE(m_card->GetInput(), 0x80000002u);
    QCOMPARE(m_card->GetInputBit(31), 1);
    QCOMPARE(m_card->GetInputBit(0), 0);
    QVERIFY(control->setInput(0, true));
    QVERIFY(!control->setInput(32, true));
    QCOMPARE(m_card->GetInputBit(0), 1);
    QCOMPARE(m_card->GetInputBit(32), 0);
    m_card->SetOutputBit(31, 1);
    m_card->SetOutputBit(0, 5);
    QCOMPARE(m_card->GetOutput(), 0x80000001u);
    QCOMPARE(m_card->GetOutputBit(31), 1);
    QCOMPARE(m_card->GetOutputBit(-1), 0);
    m_card->SetOutputBit(31, 0);
    m_card->SetOutputBit(0, 0);
    QCOMPARE(m_card->GetOutput(), 0u);
}

void tst_CardBoundary::words_and_wait_text() {
    unsigned int word = 9;
    QVERIFY(!m_card->SystemIsAlarm(word));
    QCOMPARE(word, 0u);
    simulatedCard().setFault("card_alarm", true);
    QVERIFY(m_card->SystemIsAlarm(word));
    QCOMPARE(word, 1u);
    QCOMPARE(m_card->GetScanState(), 0x103u);
    QCOMPARE(m_card->GetWaitInfo(), QString());
    std::pair<char const*, char const*> const rows[] = {{"wait_input", "等待输入"},
                                                        {"wait_motion", "等待扩展运动模块"},
                                                        {"wait_encoder", "等待编码器"},
                                                        {"wait_mirror", "等待振镜闭环到达"}};
    m_card->SetMarkStaus(MarkStatusRun);
    for (auto const& [fault, text] : rows) {
        simulatedCard().setFault(fault, true);
        auto run = std::async(std::launch::async, [] { return CardRun(false, false).start(squareJob()); });
        QTRY_COMPARE(m_card->GetWaitInfo(), QString(text));
        simulatedCard().setFault(fault, false);
        QVERIFY(run.get());
    }
    QCOMPARE(m_card->GetMarkInfo(), 1u << 8);
}

void tst_CardBoundary::failed_opening_is_told_by_the_message_function() {
    m_card->CloseCard();
    VZ_SetFuncMessageDisp(takeMessage, nullptr);
    simulatedCard().setFault("card_open_fails", true);
    m_card->OpenCard();
    QVERIFY(!m_card->IsCardOpend());
    QCOMPARE(g_messages, QStringList("1:打开卡失败"));
}

void tst_CardBoundary::hardware_word_tells_the_laser_type_data() {
    QTest::addColumn<int>("type");
    for (int type = 0; type <= 5; ++type)
        QTest::addRow("type %d", type) << type;
}

void tst_CardBoundary::hardware_word_tells_the_laser_type() {
    QFETCH(int, type);
    MarkingMParam_VZ::Instance()->SetMarkCardType(static_cast<MarkCardType>(type));
    tessera_sim_control()->setHardwareBits(1u << 22 | 1u << 12 | 7u << 5);
    unsigned int word = 0;
    VZ_GetHdVer(&word);
    VZ_GetHdVer(nullptr);
    tessera_sim_control()->setHardwareBits(0);
    MarkingMParam_VZ::Instance()->SetMarkCardType(MarkCardFilber);
    QCOMPARE(int((word >> 7 & 1) * 4 + (word >> 5 & 3)), type);
    QCOMPARE(word >> 22 & 3, 1u);
    QCOMPARE(word >> 12 & 1, 1u);
}

void tst_CardBoundary::flash_takes_chunks_up_to_2048_bytes() {
    std::vector<unsigned char> const data(2049, 0xA5);
    QCOMPARE(VZ_FlashWriteAddr(0x800000, data.data(), 2048), 0);
    QCOMPARE(VZ_FlashWriteAddr(0x800800, data.data(), 1), 0);
    QVERIFY(VZ_FlashWriteAddr(0x800000, data.data(), 2049) != 0);
    QVERIFY(VZ_FlashWriteAddr(0x800000, data.data(), 0) != 0);
    QVERIFY(VZ_FlashWriteAddr(0x800000, nullptr, 5) != 0);
    QVERIFY(VZ_FlashWriteAddr(0xFFFFFFFFu, data.data(), 5) != 0);
    QVERIFY(VZ_FlashWriteAddr(FlashMemory::kSize - 1, data.data(), 2) != 0);
    auto const read = simulatedCard().devices().flash().read(0x800000, 2050);
    QCOMPARE(read[2048], static_cast<unsigned char>(0xA5));
    QCOMPARE(read[2049], static_cast<unsigned char>(0xFF));
    simulatedCard().setFault("flash_fails", true);
    QVERIFY(VZ_FlashWriteAddr(0x800000, data.data(), 10) != 0);
    QCOMPARE(calls(m_begin).first(), QString("VZ_FlashWriteAddr(8388608,2048)"));
}

void tst_CardBoundary::flash_reset_erases() {
    unsigned char const byte = 1;
    VZ_FlashWriteAddr(0x10, &byte, 1);
    VZ_ResetCardFlash();
    QCOMPARE(simulatedCard().devices().flash().read(0x10, 1)[0], static_cast<unsigned char>(1));
    m_card->ResetCardFlash();
    QCOMPARE(simulatedCard().devices().flash().read(0x10, 1)[0], static_cast<unsigned char>(0xFF));
    // At real speed it takes minutes; closing the card ends it, and then nothing is erased.
    VZ_FlashWriteAddr(0x10, &byte, 1);
    simulatedCard().setSpeed(1);
    std::uint64_t const begin = simulatedCard().journal().lastSequence();
    auto reset = std::async(std::launch::async, [this] { m_card->ResetCardFlash(); });
    QTRY_COMPARE(calls(begin), QStringList("ResetCardFlash()"));
    m_card->CloseCard();
    reset.get();
    QCOMPARE(simulatedCard().devices().flash().read(0x10, 1)[0], static_cast<unsigned char>(1));
    simulatedCard().devices().flash().erase();
}

void tst_CardBoundary::silent_command_channel_leaves_the_results() {
    int out1 = 11;
    int out2 = 22;
    m_card->CardCommand(0x4955, 0, 0, &out1, &out2);
    m_card->CardCommand(0x4955, 0, 0, nullptr, nullptr);
    QCOMPARE(out1, 11);
    QCOMPARE(out2, 22);
    QCOMPARE(calls(m_begin).first(), QString("CardCommand(18773,0,0)"));
}

void tst_CardBoundary::device_answers_on_the_command_channel() {
    simulatedCard().devices().setCommandHandler([](int code, int a, int b, int& out1, int& out2) {
        out1 = a + b;
        out2 = code;
        return code == 1;
    });
    int out1 = 0;
    int out2 = 0;
    m_card->CardCommand(1, 2, 3, &out1, &out2);
    QCOMPARE(out1, 5);
    QCOMPARE(out2, 1);
    m_card->CardCommand(1, 4, 3, nullptr, &out2);
    m_card->CardCommand(9, 4, 3, &out1, &out2);
    QCOMPARE(out1, 5);
    QCOMPARE(out2, 1);
    simulatedCard().devices().setCommandHandler({});
}

void tst_CardBoundary::encoder_and_waveform_number() {
    int position = 0;
    VZ_SetFlyEncInitPos(4711);
    VZ_GetEncPos(&position);
    QCOMPARE(position, 4711);
    tessera_sim_control()->setEncoder(-3);
    VZ_GetEncPos(&position);
    VZ_GetEncPos(nullptr);
    QCOMPARE(position, -3);
    VZ_OutputWaveNo(9);
    QCOMPARE(tessera_sim_control()->state().waveNumber, 9);
}

void tst_CardBoundary::alarm_time_survives_a_restart() {
    m_card->SetAlarmTime(1234);
    QCOMPARE(m_card->GetAlarmTime(), 1234);
    m_card.reset();
    simulatedCard().devices().setAlarmTime(0);
    m_card = std::make_unique<VZMarkCard>();
    QCOMPARE(m_card->GetAlarmTime(), 1234);
    m_card->OpenCard();
    m_card->SetAlarmTime(0);
}

void tst_CardBoundary::instance_holds_one_card() {
    QVERIFY(!MarkCardInstance::Instance());
    auto* card = new VZMarkCard;
    MarkCardInstance::SetMarkCardInstance(card);
    QCOMPARE(MarkCardInstance::Instance(), static_cast<IMarkCardBase*>(card));
    MarkCardInstance::SetMarkCardInstance(card);
    QCOMPARE(MarkCardInstance::Instance(), static_cast<IMarkCardBase*>(card));
    MarkCardInstance::SetMarkCardInstance(nullptr);
    QVERIFY(!MarkCardInstance::Instance());
}

void tst_CardBoundary::control_is_found_by_its_symbol() {
    auto find = reinterpret_cast<SimControlFunction>(dlsym(RTLD_DEFAULT, kSimControlSymbol));
    QVERIFY(find);
    SimControl* control = find();
    QVERIFY(control);
    QCOMPARE(control->version(), kSimControlVersion);
    m_card->SetMarkStaus(MarkStatusRun);
    QVERIFY(CardRun(false, false).start(squareJob()));
    SimCardState const state = control->state();
    QVERIFY(state.open);
    QVERIFY(state.activity == SimActivity::Idle);
    QCOMPARE(state.status, 0);
    QCOMPARE(state.runTimeMs, control->lastJobTime().totalMs);
    QCOMPARE(state.runTimeMs, m_card->GetBufferRunTime());
    QCOMPARE(control->lastJobTime().vertices, std::size_t(5));
    auto const recorded = control->journal(m_begin);
    QCOMPARE(recorded.size(), std::size_t(2));
    QCOMPARE(recorded[1].name, std::string("StartMark"));
    QCOMPARE(recorded[1].sequence, control->journalEnd());
    QCOMPARE(control->journal(m_begin, 1).size(), std::size_t(1));
    std::uint64_t pass = 0;
    std::size_t from = 0;
    std::vector<SimTraceRow> rows;
    QCOMPARE(control->followTrace(pass, from, rows), std::size_t(5));
    QVERIFY(rows[4].laser && rows[4].drawn);
    QCOMPARE(control->followTrace(pass, from, rows), std::size_t(0));
    QVERIFY(control->setFault("card_alarm", true));
    QVERIFY(control->faultIsOn("card_alarm"));
    QVERIFY(!control->setFault("no such fault", true));
    control->clearFaults();
    QVERIFY(!control->faultIsOn("card_alarm"));
    QVERIFY(control->setSpeed(2.5));
    QCOMPARE(control->state().speed, 2.5);
    QVERIFY(!control->setSpeed(-1));
    QVERIFY(!control->setSpeed(std::numeric_limits<double>::quiet_NaN()));
    control->clearJournal();
    QVERIFY(control->journal(0).empty());
}

void tst_CardBoundary::control_refuses_what_the_machine_has_not() {
    SimControl* control = tessera_sim_control();
    std::string error;
    SimHeadDistortion head;
    QVERIFY(!control->setHead(head, error));
    QVERIFY(!error.empty());
    QVERIFY(!control->head(head, error));
    QVERIFY(!control->measureHead("x", error));
    error.clear();
    QVERIFY(!control->showPanel(true, error));
    QVERIFY(!error.empty());
}

void tst_CardBoundary::trace_is_written_by_ending() {
    m_card->SetMarkStaus(MarkStatusRun);
    Job job = squareJob();
    job.strokes.push_back({3, {{5, 5}}});
    QVERIFY(CardRun(false, false).start(job));
    SimControl* control = tessera_sim_control();
    std::string error;
    QDir const root(m_root.path());
    QVERIFY2(control->writeTrace(root.filePath("a.csv").toStdString(), error), error.c_str());
    QVERIFY2(control->writeTrace(root.filePath("a.SVG").toStdString(), error), error.c_str());
    QVERIFY2(control->writeTrace(root.filePath("a.png").toStdString(), error), error.c_str());
    QFile csv(root.filePath("a.csv"));
    QVERIFY(csv.open(QIODevice::ReadOnly));
    QCOMPARE(csv.readLine(), QByteArray("time,x,y,laser,pen\n"));
    QCOMPARE(csv.readAll().count('\n'), 7);
    QFile svg(root.filePath("a.SVG"));
    QVERIFY(svg.open(QIODevice::ReadOnly));
    QXmlStreamReader xml(&svg);
    QStringList elements;
    while (!xml.atEnd()) {
        if (xml.readNext() == QXmlStreamReader::StartElement)
            elements << xml.name().toString();
    }
    QVERIFY2(!xml.hasError(), qPrintable(xml.errorString()));
    // The square, the jump to the point, the point.
    QCOMPARE(elements, QStringList({"svg", "g", "polyline", "polyline", "circle"}));
    QImage const picture(root.filePath("a.png"));
    QCOMPARE(picture.size(), QSize(2000, 2000));
    // The square's lower edge, 1 mm above the picture's, is drawn and the middle of the square's left half is not.
    QVERIFY(picture.pixelColor(1000, 2000 - 2000 / 12) != QColor(Qt::white));
    QCOMPARE(picture.pixelColor(400, 1200), QColor(Qt::white));
    QVERIFY(!control->writeTrace(root.filePath("a.txt").toStdString(), error));
    QVERIFY(error.find("a.txt") != std::string::npos);
    QVERIFY(!control->writeTrace("/proc/none/a.csv", error));
    QVERIFY(!error.empty());
}

QTEST_GUILESS_MAIN(tst_CardBoundary)
#include "tst_cardboundary.moc"
