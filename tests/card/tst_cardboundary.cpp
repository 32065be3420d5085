// SPDX-License-Identifier: MIT
// Runs, pens, lists, inputs and outputs of the card as the boundary shows them, on the simulated machine.
#include "opencardtest.h"
#include "simengine/card/bordersettings.h"

#include <QDir>
#include <QFile>
#include <future>

using namespace sim;

namespace {

QStringList g_messages;

QString parameterFile() {
    return tessera::rootPath(QStringLiteral("/ini/VZMarkPara.cfg"));
}

void takeMessage(char const* text, int kind) {
    g_messages << QString::number(kind) + ":" + QString::fromUtf8(text);
}

} // namespace

class tst_CardBoundary : public OpenCardTest {
    Q_OBJECT

private slots:
    void closed_card_does_nothing_and_gives_idle_values();
    void the_border_goes_as_the_parameter_file_says_data();
    void the_border_goes_as_the_parameter_file_says();
    void the_border_is_set_and_kept();
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
};

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

void tst_CardBoundary::the_border_goes_as_the_parameter_file_says_data() {
    QTest::addColumn<QByteArray>("text");
    QTest::addColumn<int>("corners");
    QTest::addColumn<double>("speed");
    QTest::newRow("no file") << QByteArray() << 4 << 2000.0;
    QTest::newRow("rectangle") << QByteArray("[CARD]\nBorderOutline=0\n") << 4 << 2000.0;
    QTest::newRow("hull") << QByteArray("[CARD]\nBorderOutline=1\n") << 3 << 2000.0;
    QTest::newRow("unknown") << QByteArray("[CARD]\nBorderOutline=2\nBorderSpeed=fast\n") << 4 << 2000.0;
    QTest::newRow("speed") << QByteArray("[CARD]\nBorderSpeed=150.5\n") << 4 << 150.5;
    QTest::newRow("negative speed") << QByteArray("[CARD]\nBorderSpeed=-3\n") << 4 << 2000.0;
    QTest::newRow("both") << QByteArray("[CARD]\nAlarmTime=5\nBorderOutline=1\nBorderSpeed=80\n") << 3 << 80.0;
}

/// The file is looked at for every job, drawn or direct.
void tst_CardBoundary::the_border_goes_as_the_parameter_file_says() {
    QFETCH(QByteArray, text);
    QFETCH(int, corners);
    QFETCH(double, speed);
    simulatedCard().setSpeed(0);
    m_card->SetMarkStaus(MarkStatusRun);
    m_card->SetMarkType(MarkTypeBorderPreview);
    LayerParamEx layers;
    LayerData pen;
    pen.RedSpeed = 2000.0;
    pen.UseDefault = false;
    layers.SetLayerData(0, pen);
    m_card->DownLayerPara(&layers, 20);
    QFile file(parameterFile());
    QVERIFY(QDir().mkpath(QFileInfo(file).path()));
    file.remove();
    if (!text.isEmpty()) {
        QVERIFY(file.open(QIODevice::WriteOnly));
        QCOMPARE(file.write(text), qint64(text.size()));
        file.close();
    }
    Job job;
    job.strokes.push_back({0, {{0, 0}, {30, 0}, {15, 20}}});
    for (bool direct : {false, true}) {
        if (direct) {
            DOT3 points[] = {{0, 0, 0}, {30, 0, 0}, {15, 20, 0}};
            m_card->BeginList(1);
            m_card->AddList(points, 3, 0);
            m_card->EndList();
        } else {
            QVERIFY(CardRun(false, false).start(job));
        }
        QCOMPARE(int(simulatedCard().trace().snapshot().size()), corners + 1);
        const JobTime time = simulatedCard().lastTime();
        QVERIFY(qAbs(time.markedMm / time.markMs * 1000.0 - speed) < 1e-6);
    }
    file.remove();
}

void tst_CardBoundary::the_border_is_set_and_kept() {
    QVERIFY(writeBorderSettings({BorderOutline::Hull, 321.5}));
    const BorderSettings kept = readBorderSettings();
    QCOMPARE(int(kept.outline), int(BorderOutline::Hull));
    QCOMPARE(kept.speed, 321.5);
    QFile file(parameterFile());
    QVERIFY(file.open(QIODevice::ReadOnly));
    QVERIFY(file.readAll().contains("BorderOutline=1"));
    QVERIFY(writeBorderSettings({}));
    QCOMPARE(int(readBorderSettings().outline), int(BorderOutline::Rectangle));
    QCOMPARE(readBorderSettings().speed, 0.0);
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
    data.PointWaveEnable = 1;
    data.LineWaveEnable = 1;
    data.LineWaveFlag = 1;
    for (int i = 0; i < kWavePointCount; ++i) {
        data.PointWave[std::size_t(i)] = {i + 0.25, i + 0.5};
        data.LineWave[std::size_t(i)] = {i + 100.25, i + 50.5};
    }
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
    QVERIFY(pen.pointWaveEnable && pen.lineWaveEnable && pen.lineWaveByDistance);
    for (std::size_t i = 0; i < kWavePoints; ++i) {
        QCOMPARE(pen.pointWave[i].x, i + 0.25);
        QCOMPARE(pen.pointWave[i].power, i + 0.5);
        QCOMPARE(pen.lineWave[i].x, i + 100.25);
        QCOMPARE(pen.lineWave[i].power, i + 50.5);
    }
    PenParams const other = simulatedCard().pens()[0];
    QVERIFY(!other.pointWaveEnable && !other.lineWaveEnable && !other.lineWaveByDistance);
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
    g_messages.clear();
    m_card->CloseCard();
    VZ_SetFuncMessageDisp(takeMessage, nullptr);
    simulatedCard().setFault("card_open_fails", true);
    m_card->OpenCard();
    QVERIFY(!m_card->IsCardOpend());
    QCOMPARE(g_messages, QStringList("1:打开卡失败"));
}

QTEST_GUILESS_MAIN(tst_CardBoundary)
#include "tst_cardboundary.moc"
