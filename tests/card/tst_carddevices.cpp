// SPDX-License-Identifier: MIT
// What is on and behind the card as the boundary shows it, on the simulated machine: hardware word, flash, command
// channel, encoder, alarm time, the control and the trace.
#include "engine/cardfunctions.h"
#include "engine/markcardinstance.h"
#include "engine/markingmparam_vz.h"
#include "opencardtest.h"
#include "simengine/card/traceexport.h"

#include <QDirIterator>
#include <QFile>
#include <QImage>
#include <QLineF>
#include <QXmlStreamReader>

#include <cmath>
#include <dlfcn.h>
#include <future>
#include <limits>

using namespace sim;

class tst_CardDevices : public OpenCardTest {
    Q_OBJECT

private slots:
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
    void power_is_seen_in_the_drawing();
    void wobble_that_is_too_long_is_told_by_the_log();
};

void tst_CardDevices::hardware_word_tells_the_laser_type_data() {
    QTest::addColumn<int>("type");
    for (int type = 0; type <= 5; ++type)
        QTest::addRow("type %d", type) << type;
}

void tst_CardDevices::hardware_word_tells_the_laser_type() {
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

void tst_CardDevices::flash_takes_chunks_up_to_2048_bytes() {
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

void tst_CardDevices::flash_reset_erases() {
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
    QTRY_VERIFY(simulatedCard().isRebooting());
    QCOMPARE(calls(begin), QStringList("ResetCardFlash()"));
    unsigned char const other = 2;
    QVERIFY(VZ_FlashWriteAddr(0x10, &other, 1) != 0);
    std::uint64_t const jobs = simulatedCard().runner().jobs();
    m_card->SetMarkStaus(MarkStatusRun);
    QVERIFY(!CardRun(false, false).start(squareJob()));
    DOT3 line[2] = {};
    line[1].X = 1;
    m_card->BeginList(0);
    m_card->AddList(line, 2, 0);
    m_card->EndList();
    QCOMPARE(simulatedCard().runner().jobs(), jobs);
    m_card->CloseCard();
    reset.get();
    QCOMPARE(simulatedCard().devices().flash().read(0x10, 1)[0], static_cast<unsigned char>(1));
    simulatedCard().devices().flash().erase();
}

void tst_CardDevices::silent_command_channel_leaves_the_results() {
    int out1 = 11;
    int out2 = 22;
    m_card->CardCommand(0x4955, 0, 0, &out1, &out2);
    m_card->CardCommand(0x4955, 0, 0, nullptr, nullptr);
    QCOMPARE(out1, 11);
    QCOMPARE(out2, 22);
    QCOMPARE(calls(m_begin).first(), QString("CardCommand(18773,0,0)"));
}

void tst_CardDevices::device_answers_on_the_command_channel() {
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

void tst_CardDevices::encoder_and_waveform_number() {
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

void tst_CardDevices::alarm_time_survives_a_restart() {
    m_card->SetAlarmTime(1234);
    QCOMPARE(m_card->GetAlarmTime(), 1234);
    m_card.reset();
    simulatedCard().devices().setAlarmTime(0);
    m_card = std::make_unique<VZMarkCard>();
    QCOMPARE(m_card->GetAlarmTime(), 1234);
    m_card->OpenCard();
    m_card->SetAlarmTime(0);
}

void tst_CardDevices::instance_holds_one_card() {
    QVERIFY(!MarkCardInstance::Instance());
    auto* card = new VZMarkCard;
    MarkCardInstance::SetMarkCardInstance(card);
    QCOMPARE(MarkCardInstance::Instance(), static_cast<IMarkCardBase*>(card));
    MarkCardInstance::SetMarkCardInstance(card);
    QCOMPARE(MarkCardInstance::Instance(), static_cast<IMarkCardBase*>(card));
    MarkCardInstance::SetMarkCardInstance(nullptr);
    QVERIFY(!MarkCardInstance::Instance());
}

void tst_CardDevices::control_is_found_by_its_symbol() {
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

void tst_CardDevices::control_refuses_what_the_machine_has_not() {
    SimControl* control = tessera_sim_control();
    std::string error;
    QVERIFY(!control->showPanel(true, error));
    QVERIFY(!error.empty());
}

void tst_CardDevices::trace_is_written_by_ending() {
    m_card->SetMarkStaus(MarkStatusRun);
    Job job = squareJob();
    job.strokes.push_back({3, {{5, 5}}});
    QVERIFY(CardRun(false, false).start(job));
    SimControl* control = tessera_sim_control();
    std::string error;
    QDir const root(m_root.path());
    QVERIFY2(control->writeTrace(root.filePath("a.csv").toStdString(), error) == SimOutcome::Done, error.c_str());
    QVERIFY2(control->writeTrace(root.filePath("a.SVG").toStdString(), error) == SimOutcome::Done, error.c_str());
    QVERIFY2(control->writeTrace(root.filePath("a.png").toStdString(), error) == SimOutcome::Done, error.c_str());
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
    QCOMPARE(control->writeTrace(root.filePath("a.txt").toStdString(), error), SimOutcome::BadValue);
    QVERIFY(error.find("a.txt") != std::string::npos);
    QCOMPARE(control->writeTrace("/proc/none/a.csv", error), SimOutcome::FileError);
    QVERIFY(!error.empty());
}

/// Of each contour of an exported drawing: percent of power, opacity, length in mm.
struct Contour {
    int power;
    double opacity;
    double length;
};

static QVector<Contour> contoursOf(TraceSnapshot const& rows) {
    QXmlStreamReader xml(traceSvg(rows));
    QVector<Contour> contours;
    while (!xml.atEnd()) {
        if (xml.readNext() != QXmlStreamReader::StartElement || !xml.attributes().hasAttribute("data-power"))
            continue;
        auto const attributes = xml.attributes();
        Contour contour{attributes.value("data-power").toInt(), 0.0, 0.0};
        QString const opacity = xml.name() == "circle" ? "fill-opacity" : "stroke-opacity";
        contour.opacity = attributes.value(opacity).toDouble();
        QVector<QPointF> points;
        for (QString const& point : attributes.value("points").toString().split(' ', Qt::SkipEmptyParts))
            points.append({point.section(',', 0, 0).toDouble(), point.section(',', 1, 1).toDouble()});
        for (int i = 1; i < points.size(); ++i)
            contour.length += QLineF(points[i - 1], points[i]).length();
        contours.append(contour);
    }
    return contours;
}

void tst_CardDevices::power_is_seen_in_the_drawing() {
    LayerParamEx layers;
    LayerData data;
    data.Power = 64.0;
    layers.SetLayerData(0, data);
    data.LineWaveEnable = data.LineWaveFlag = data.PointWaveEnable = 1;
    data.LineWave[1] = {10, 100};
    data.LineWave[11] = {5, 0};
    data.PointWave[1] = {2, 81};
    data.PointWave[2] = {4, 25};
    layers.SetLayerData(1, data);
    m_card->DownLayerPara(&layers, kLayerCount);
    m_card->SetMarkStaus(MarkStatusRun);
    Job job;
    job.strokes = {{0, {{0, 0}, {20, 0}, {20, 3}}}, {1, {{0, 9}, {40, 9}}}, {1, {{5, 5}}}};
    QVERIFY(CardRun(false, false).start(job));
    QVector<Contour> const contours = contoursOf(simulatedCard().trace().snapshot());
    // The steady line, the ramp in 20 parts, the plateau, the ramp down in 20, the point.
    QCOMPARE(contours.size(), 1 + 20 + 1 + 20 + 1);
    QCOMPARE(contours[0].power, 64);
    QCOMPARE(contours[0].opacity, 0.84);
    QCOMPARE(contours[0].length, 23.0);
    double length = 0.0;
    for (int i = 1; i < 42; ++i)
        length += contours[i].length;
    QVERIFY(std::abs(length - 40.0) < 0.01);
    for (int i = 2; i <= 21; ++i)
        QVERIFY(contours[i].power > contours[i - 1].power && contours[i].opacity > contours[i - 1].opacity);
    QCOMPARE(contours[21].power, 100);
    QCOMPARE(contours[21].length, 25.0);
    for (int i = 22; i < 42; ++i)
        QVERIFY(contours[i].power < contours[i - 1].power && contours[i].opacity < contours[i - 1].opacity);
    QCOMPARE(contours[42].power, 81); // a dot has the highest power of its curve
}

void tst_CardDevices::wobble_that_is_too_long_is_told_by_the_log() {
    LayerParamEx layers;
    LayerData data;
    data.WobbleEnable = true;
    data.WobbleDiameter = 0.5;
    data.WobbleSpacing = 0.01;
    layers.SetLayerData(0, data);
    m_card->DownLayerPara(&layers, kLayerCount);
    m_card->SetMarkStaus(MarkStatusRun);
    auto const notes = [this] {
        int count = 0;
        QDirIterator files(m_root.path(), QDir::Files, QDirIterator::Subdirectories);
        while (files.hasNext()) {
            QFile file(files.next());
            if (file.open(QIODevice::ReadOnly))
                count += file.readAll().count("traced by their centre line");
        }
        return count;
    };
    Job job;
    job.strokes = {{0, {{0, 0}, {1, 0}}}};
    QVERIFY(CardRun(false, false).start(job));
    QCOMPARE(notes(), 0);
    job.strokes.push_back({0, {{0, 0}, {2000, 0}}});
    QVERIFY(CardRun(false, false).start(job));
    QCOMPARE(notes(), 1);
    DOT3 line[] = {{0, 0, 0}, {2000, 0, 0}};
    m_card->BeginList(1);
    m_card->AddList(line, 2, 0);
    m_card->EndList();
    QCOMPARE(notes(), 2);
}

QTEST_GUILESS_MAIN(tst_CardDevices)
#include "tst_carddevices.moc"
