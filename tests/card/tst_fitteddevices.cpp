// SPDX-License-Identifier: MIT
// Encoder, beam splitter and flash as the boundary and the machine's control show them.
#include "engine/marklog.h"
#include "opencardtest.h"

#include <QDir>
#include <QFile>

#include <future>

using namespace sim;

class tst_FittedDevices : public OpenCardTest {
    Q_OBJECT

private slots:
    void encoder_takes_the_values_of_the_parameters_and_counts();
    void encoder_is_set_up_when_the_card_opens();
    void job_on_the_fly_follows_the_product();
    void splitter_answers_when_the_machine_has_one();
    void splitter_keeps_its_places_over_a_restart();
    void switching_times_are_in_the_log();
    void flash_takes_its_time_and_a_closed_card_ends_it();
    void flash_image_is_written_as_a_file();
    void devices_are_named_and_limited();

private:
    static double device(std::string const& name) {
        for (SimDevice const& each : tessera_sim_control()->devices()) {
            if (each.name == name)
                return each.value;
        }
        return -1e99;
    }
    static QString logText() {
        QString text;
        QDir const folder(tessera::rootPath(QStringLiteral("/日志文件")));
        for (QString const& name : folder.entryList(QDir::Files)) {
            QFile file(folder.filePath(name));
            if (file.open(QIODevice::ReadOnly))
                text += QString::fromUtf8(file.readAll());
        }
        return text;
    }
    static int count() {
        int position = 0;
        VZ_GetEncPos(&position);
        return position;
    }
};

void tst_FittedDevices::encoder_takes_the_values_of_the_parameters_and_counts() {
    SystemParam* system = SystemParam::Instance();
    system->FlyMarkSetUsedExEnc(false);
    system->FlyMarkSetEnInnerEnc(true);
    system->FlyMarkSetInnerEncPeriod(100);
    VZ_SetFlyPara();
    simulatedCard().setSpeed(10);
    VZ_SetFlyEncInitPos(1000);
    QTRY_VERIFY(count() > 2000);
    system->FlyMarkSetEnInnerEnc(false);
    QVERIFY(count() > 2000); // not before the card is told
    VZ_SetFlyPara();
    QCOMPARE(simulatedCard().encoder().pulsesPerMs(), 0.0);
    int const stands = count();
    double const before = simulatedCard().deviceClock().pacedMs();
    QTRY_VERIFY(simulatedCard().deviceClock().pacedMs() > before + 10.0); // 100 pulses of before
    QCOMPARE(count(), stands);
    VZ_SetFlyEncInitPos(0);
}

void tst_FittedDevices::encoder_is_set_up_when_the_card_opens() {
    SystemParam* system = SystemParam::Instance();
    system->FlyMarkSetEncRange(12);
    system->FlyMarkSetEncRangeEn(true);
    system->SetEnableFlyMarkTool(true);
    m_card->CloseCard();
    VZ_SetFlyPara();
    QVERIFY(!simulatedCard().encoder().settings().enabled); // a closed card takes nothing
    m_card->OpenCard();
    FlySettings const settings = simulatedCard().encoder().settings();
    QVERIFY(settings.enabled && settings.rangeEnabled);
    QCOMPARE(settings.rangeMm, 12.0);
    QCOMPARE(settings.pulsesPerMm, 1000.0);
    QCOMPARE(settings.pulsesPerMmX, 100.0);
    system->SetEnableFlyMarkTool(false);
    system->FlyMarkSetEncRangeEn(false);
    VZ_SetFlyPara();
}

void tst_FittedDevices::job_on_the_fly_follows_the_product() {
    SystemParam* system = SystemParam::Instance();
    SimControl* control = tessera_sim_control();
    std::string error;
    QCOMPARE(control->setDevice("belt_speed", 50.0, error), SimOutcome::Done);
    system->SetEnableFlyMarkTool(true);
    system->FlyMarkSetUsedExEnc(true);
    system->FlyMarkSetPluseQua(100.0, 0.0);
    VZ_SetFlyPara();
    m_card->SetMarkStaus(MarkStatusRun);
    QVERIFY(simulatedCard().run(squareJob(), false));
    std::uint64_t pass = 0;
    std::size_t from = 0;
    std::vector<SimTraceRow> rows;
    QVERIFY(control->followTrace(pass, from, rows) >= 5);
    for (SimTraceRow const& row : rows)
        QVERIFY(std::abs(row.commandedX - row.x - 0.05 * row.ms) < 1e-9);
    QVERIFY(rows.back().ms > 1.0);
    QVERIFY(std::abs(rows.back().x) < 1e-9); // the square closes on the product
    // A preview stays where the drawing is.
    m_card->SetMarkType(MarkTypeRedPreview);
    QVERIFY(simulatedCard().run(squareJob(), false));
    QVERIFY(control->followTrace(pass, from, rows) >= 5);
    for (SimTraceRow const& row : rows)
        QCOMPARE(row.commandedX, row.x);
    system->SetEnableFlyMarkTool(false);
    system->FlyMarkSetUsedExEnc(false);
    VZ_SetFlyPara();
    QCOMPARE(control->setDevice("belt_speed", 0.0, error), SimOutcome::Done);
}

void tst_FittedDevices::splitter_answers_when_the_machine_has_one() {
    int first = -1;
    int second = -1;
    m_card->CardCommand(0x4955, 0, 0, &first, &second);
    QCOMPARE(first, -1);
    SystemParam::Instance()->SetEnableSplitLaserSet(true);
    m_card->CardCommand(0x4955, 1, 0, &first, &second);
    QCOMPARE(first & 0xFFFF, 25000);
    QVERIFY(second >> 28 & 1);
    m_card->CardCommand(0x4955, 1, 0, nullptr, nullptr);
    QVERIFY(tessera_sim_control()->setFault("splitter_link", true));
    m_card->CardCommand(0x4955, 1, 0, &first, &second);
    QVERIFY(!(second >> 28 & 1));
    m_card->CloseCard();
    first = -1;
    m_card->CardCommand(0x4955, 1, 0, &first, &second);
    QCOMPARE(first, -1);
    SystemParam::Instance()->SetEnableSplitLaserSet(false);
}

void tst_FittedDevices::splitter_keeps_its_places_over_a_restart() {
    SystemParam::Instance()->SetEnableSplitLaserSet(true);
    int first = 0;
    int second = 0;
    m_card->CardCommand(0x4B55, 2, 41234, &first, &second);
    m_card->CardCommand(0x4855, 33, 0x00200044, &first, &second);
    m_card->CloseCard();
    simulatedCard().splitter().setStore({});
    m_card->OpenCard();
    m_card->CardCommand(0x4955, 2, 0, &first, &second);
    QCOMPARE(first & 0xFFFF, 41234);
    QCOMPARE(simulatedCard().splitter().store().delayMs, 33);
    QCOMPARE(simulatedCard().splitter().store().parameters, 0x00200044u);
    QVERIFY(QFile::remove(tessera::rootPath(QStringLiteral("/ini/SimSplitter.ini"))));
    VZ_SetFlyPara(); // rereads nothing of the splitter
    QCOMPARE(simulatedCard().splitter().store().positions[2], 41234);
    m_card->CloseCard();
    m_card->OpenCard();
    QCOMPARE(simulatedCard().splitter().store().positions[2], 40000);
    SystemParam::Instance()->SetEnableSplitLaserSet(false);
}

void tst_FittedDevices::switching_times_are_in_the_log() {
    SystemParam::Instance()->SetSaveDebug(true);
    VZ_TestOssSwitchSpeed();
    QTRY_VERIFY(logText().contains(QStringLiteral("VZ_TestOssSwitchSpeed: no splitter answers")));
    SystemParam::Instance()->SetEnableSplitLaserSet(true);
    VZ_TestOssSwitchSpeed();
    // 15000 counts at 300 a ms and 10 ms to settle; back over 45000
    QTRY_VERIFY(logText().contains(QStringLiteral("1-2 60.0 ms, 2-3 60.0 ms, 3-4 60.0 ms, 4-1 160.0 ms")));
    SystemParam::Instance()->SetEnableSplitLaserSet(false);
    SystemParam::Instance()->SetSaveDebug(false);
}

void tst_FittedDevices::flash_takes_its_time_and_a_closed_card_ends_it() {
    std::vector<unsigned char> const data(2048, 1);
    simulatedCard().setSpeed(0.001); // 5.6 s a chunk
    auto write = std::async(std::launch::async, [&] { return VZ_FlashWriteAddr(0x800000, data.data(), 2048); });
    QTRY_COMPARE(device("flash_written"), 2048.0);
    QCOMPARE(write.wait_for(std::chrono::milliseconds(0)), std::future_status::timeout);
    m_card->CloseCard();
    QVERIFY(write.get() != 0); // nobody knows whether the chunk is in the flash
    simulatedCard().devices().flash().erase();
}

void tst_FittedDevices::flash_image_is_written_as_a_file() {
    SimControl* control = tessera_sim_control();
    QString const file = m_root.filePath(QStringLiteral("image.bin"));
    std::string error;
    QCOMPARE(control->writeFlash(file.toStdString(), 0, 0, error), SimOutcome::NoFigures);
    unsigned char const bytes[3] = {7, 8, 9};
    QCOMPARE(VZ_FlashWriteAddr(0x800000, bytes, 3), 0);
    QCOMPARE(VZ_FlashWriteAddr(0x800005, bytes, 1), 0);
    QCOMPARE(device("flash_first"), double(0x800000));
    QCOMPARE(device("flash_end"), double(0x800006));
    QCOMPARE(control->writeFlash(file.toStdString(), 0, 0, error), SimOutcome::Done);
    QFile image(file);
    QVERIFY(image.open(QIODevice::ReadOnly));
    QCOMPARE(image.readAll(), QByteArray("\x07\x08\x09\xFF\xFF\x07", 6));
    QCOMPARE(control->writeFlash(file.toStdString(), 0x800001, 2, error), SimOutcome::Done);
    QCOMPARE(QFileInfo(file).size(), 2);
    QCOMPARE(control->writeFlash(file.toStdString(), FlashMemory::kSize - 1, 2, error), SimOutcome::BadValue);
    QCOMPARE(control->writeFlash("/proc/nowhere/image", 0, 0, error), SimOutcome::FileError);
    QVERIFY(!error.empty());
    simulatedCard().devices().flash().erase();
}

void tst_FittedDevices::devices_are_named_and_limited() {
    SimControl* control = tessera_sim_control();
    std::string error;
    for (SimDevice const& each : control->devices()) {
        QVERIFY(each.low < each.high);
        error.clear();
        SimOutcome const same = control->setDevice(each.name, each.value, error);
        QCOMPARE(same, each.settable ? SimOutcome::Done : SimOutcome::BadValue);
        QCOMPARE(error.empty(), each.settable);
        if (each.settable)
            QCOMPARE(control->setDevice(each.name, each.high + 1.0, error), SimOutcome::BadValue);
    }
    QCOMPARE(control->setDevice("encoder", 1.5, error), SimOutcome::BadValue);
    QCOMPARE(error, std::string("\"encoder\" goes from -2147483647 to 2147483647"));
    QCOMPARE(control->setDevice("splitter_card", 0.5, error), SimOutcome::BadValue);
    QCOMPARE(control->setDevice("anchor", 1, error), SimOutcome::NotThere);
    QCOMPARE(control->setDevice("encoder", -42, error), SimOutcome::Done);
    QCOMPARE(count(), -42);
    QCOMPARE(control->state().encoder, -42);
}

QTEST_MAIN(tst_FittedDevices)
#include "tst_fitteddevices.moc"
