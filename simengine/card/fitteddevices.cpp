// SPDX-License-Identifier: GPL-2.0-or-later
#include "simengine/card/fitteddevices.h"

#include "engine/marklog.h"
#include "engine/systemparam.h"
#include "simengine/card/cardcore.h"
#include "simengine/params/inifile.h"
#include "support/approot.h"
#include "support/durablefile.h"

#include <QFileInfo>
#include <QStringList>

#include <cmath>

namespace sim {

namespace {

const QString kSection = QStringLiteral("Splitter");
const QString kDelay = QStringLiteral("Delay");
const QString kParameters = QStringLiteral("Parameters");

QString positionKey(int path) {
    return QStringLiteral("Position%1").arg(path + 1);
}

FlySettings flySettings() {
    SystemParam const* system = SystemParam::Instance();
    FlySettings fly;
    fly.enabled = system->EnableFlyMarkTool();
    fly.outer = system->FlyMarkIsUsedExEnc();
    fly.innerEnabled = system->FlyMarkIsEnInnerEnc();
    fly.innerPeriodUs = system->FlyMarkGetInnerEncPeriod();
    fly.innerReverse = system->FlyMarkGetInnerEncDir() != 0;
    fly.outerReverse = system->FlyMarkGetOuterEncDir() != 0;
    fly.rangeEnabled = system->FlyMarkIsEncRangeEn();
    fly.rangeMm = system->FlyMarkGetEncRange();
    fly.pulsesPerMm = system->FlyMarkGetEncPPM();
    system->FlyMarkGetPluseQua(fly.pulsesPerMmX, fly.pulsesPerMmY);
    return fly;
}

SplitterStore readStore() {
    IniFile const file(tessera::rootPath(QLatin1String(kSplitterFile)));
    auto const number = [&file](QString const& key, int otherwise) {
        std::optional<QString> const text = file.value(kSection, key);
        return text ? iniInt(*text).value_or(otherwise) : otherwise;
    };
    SplitterStore store;
    for (int path = 0; path < BeamSplitter::kPaths; ++path) {
        int& position = store.positions[static_cast<std::size_t>(path)];
        position = number(positionKey(path), position);
    }
    store.delayMs = number(kDelay, store.delayMs);
    store.parameters = static_cast<std::uint32_t>(number(kParameters, static_cast<int>(store.parameters)));
    return store;
}

void writeStore(SplitterStore const& store) {
    IniFile file(tessera::rootPath(QLatin1String(kSplitterFile)));
    bool const written = file.change([&store](IniDocument& document) {
        for (int path = 0; path < BeamSplitter::kPaths; ++path)
            document.setValue(kSection, positionKey(path),
                              QString::number(store.positions[static_cast<std::size_t>(path)]));
        document.setValue(kSection, kDelay, QString::number(store.delayMs));
        document.setValue(kSection, kParameters, QString::number(static_cast<int>(store.parameters)));
        return true;
    });
    if (!written)
        MarkLog::Instance()->ShowNote_Error(
            QStringLiteral("%1 could not be written").arg(QLatin1String(kSplitterFile)));
}

/// A value of the machine: how it is read, and how it is set when a person can do that.
struct DeviceRow {
    const char* name;
    double low;
    double high;
    double (*value)(CardCore& card);
    bool (*set)(CardCore& card, double value);
};

bool isWhole(double value) {
    return value == std::floor(value);
}

constexpr double kCounterEnd = 2147483647.0;
constexpr double kFlashSize = FlashMemory::kSize;

const DeviceRow kDeviceRows[] = {
    {"belt_speed", -10000.0, 10000.0, [](CardCore& card) { return card.encoder().beltSpeed(); },
     [](CardCore& card, double value) { return card.encoder().setBeltSpeed(value); }},
    {"belt_pulses", -100000.0, 100000.0, [](CardCore& card) { return card.encoder().beltPulses(); },
     [](CardCore& card, double value) { return card.encoder().setBeltPulses(value); }},
    {"encoder", -kCounterEnd, kCounterEnd, [](CardCore& card) { return double(card.encoder().count()); },
     [](CardCore& card, double value) {
         if (!isWhole(value))
             return false;
         card.encoder().setCount(static_cast<int>(value));
         return true;
     }},
    {"splitter_card", 0.0, 3.0, [](CardCore& card) { return double(card.splitter().cardNumber()); },
     [](CardCore& card, double value) {
         return isWhole(value) && card.splitter().setCardNumber(static_cast<int>(value));
     }},
    {"splitter_mirror", 0.0, 65535.0, [](CardCore& card) { return double(card.splitter().mirror()); }, nullptr},
    {"splitter_path", 0.0, 4.0, [](CardCore& card) { return double(card.splitter().path()); }, nullptr},
    {"flash_first", 0.0, kFlashSize, [](CardCore& card) { return double(card.devices().flash().extent().first); },
     nullptr},
    {"flash_end", 0.0, kFlashSize, [](CardCore& card) { return double(card.devices().flash().extent().second); },
     nullptr},
    {"flash_written", 0.0, 1e15, [](CardCore& card) { return double(card.devices().flash().written()); }, nullptr},
};

} // namespace

void fitDevices() {
    fitEncoder();
    BeamSplitter& splitter = simulatedCard().splitter();
    splitter.setStore(readStore());
    splitter.setStoreListener(writeStore);
}

void fitEncoder() {
    simulatedCard().encoder().set(flySettings());
}

bool commandDevice(int code, int a, int b, int& out1, int& out2) {
    CardCore& card = simulatedCard();
    if (card.devices().command(code, a, b, out1, out2))
        return true;
    return SystemParam::Instance()->EnableSplitLaserSet() && card.splitter().command(code, a, b, out1, out2);
}

QString switchTimes() {
    BeamSplitter const& splitter = simulatedCard().splitter();
    if (!SystemParam::Instance()->EnableSplitLaserSet() || !splitter.isLinked())
        return QStringLiteral("no splitter answers");
    QStringList times;
    for (int from = 0; from < BeamSplitter::kPaths; ++from) {
        int const to = (from + 1) % BeamSplitter::kPaths;
        times << QStringLiteral("%1-%2 %3 ms").arg(from + 1).arg(to + 1).arg(splitter.switchMs(from, to), 0, 'f', 1);
    }
    return times.join(QStringLiteral(", "));
}

std::vector<SimDevice> machineDevices() {
    std::vector<SimDevice> devices;
    for (DeviceRow const& row : kDeviceRows)
        devices.push_back({row.name, row.value(simulatedCard()), row.low, row.high, row.set != nullptr});
    return devices;
}

SimOutcome setMachineDevice(std::string const& name, double value, std::string& error) {
    for (DeviceRow const& row : kDeviceRows) {
        if (name != row.name)
            continue;
        if (!row.set) {
            error = "\"" + name + "\" can only be read";
            return SimOutcome::BadValue;
        }
        if (!(value >= row.low && value <= row.high) || !row.set(simulatedCard(), value)) {
            error = QStringLiteral("\"%1\" goes from %2 to %3")
                        .arg(QLatin1String(row.name))
                        .arg(row.low, 0, 'g', 15)
                        .arg(row.high, 0, 'g', 15)
                        .toStdString();
            return SimOutcome::BadValue;
        }
        return SimOutcome::Done;
    }
    error = "the machine has no \"" + name + "\"";
    return SimOutcome::NotThere;
}

SimOutcome writeFlashImage(std::string const& file, std::uint32_t address, std::uint32_t size, std::string& error) {
    FlashMemory const& flash = simulatedCard().devices().flash();
    if (size == 0) {
        auto const [first, end] = flash.extent();
        address = first;
        size = end - first;
    }
    if (size == 0) {
        error = "nothing has been written to the flash";
        return SimOutcome::NoFigures;
    }
    if (address >= FlashMemory::kSize || FlashMemory::kSize - address < size) {
        error = "the flash ends at " + std::to_string(FlashMemory::kSize);
        return SimOutcome::BadValue;
    }
    std::vector<unsigned char> const bytes = flash.read(address, size);
    QByteArray const image(reinterpret_cast<char const*>(bytes.data()), static_cast<int>(bytes.size()));
    tessera::DurableResult const result =
        tessera::writeFileDurably(QFileInfo(QString::fromStdString(file)).absoluteFilePath(), image);
    if (result.ok())
        return SimOutcome::Done;
    error = result.message().toStdString();
    return SimOutcome::FileError;
}

} // namespace sim
