// SPDX-License-Identifier: GPL-2.0-or-later
#include "simengine/card/headsettings.h"

#include "engine/languagemanager.h"
#include "simengine/card/cardcore.h"
#include "simengine/card/cardlink.h"
#include "simengine/params/inifile.h"
#include "support/approot.h"

#include <QFile>

#include <mutex>

namespace sim {

namespace {

constexpr char kHeadSection[] = "Head";
constexpr char kTableFile[] = "/ini/HighPrecisionCali.cl";
/// Counts a millimetre of a card that was never calibrated: a field of 140 mm.
constexpr double kDefaultCounts = 3834733.0;
/// Counts of the whole field: 16 bits of 8192 steps.
constexpr double kFieldCounts = 65535.0 * 8192.0;

std::mutex& headMutex() {
    static std::mutex mutex;
    return mutex;
}

bool& headIsLoaded() {
    static bool loaded = false;
    return loaded;
}

/// With the head's mutex held.
void readHead() {
    headIsLoaded() = true;
    IniFile const file(tessera::rootPath(QLatin1String(kHeadFile)));
    SimHeadDistortion head;
    for (int i = 0; i < kHeadValueCount; ++i) {
        HeadValueRow const& row = kHeadValueRows[i];
        std::optional<QString> const text = file.value(QLatin1String(kHeadSection), QLatin1String(row.name));
        std::optional<double> const number = text ? iniDouble(*text) : std::nullopt;
        if (!number)
            continue;
        SimHeadDistortion tried = head;
        tried.*row.value = *number;
        if (!invalidHeadValue(tried))
            head = tried;
    }
    simulatedCard().headWay().setDistortion(head);
}

bool writeHead(SimHeadDistortion const& head) {
    IniFile file(tessera::rootPath(QLatin1String(kHeadFile)));
    return file.change([&head](IniDocument& document) {
        for (int i = 0; i < kHeadValueCount; ++i) {
            HeadValueRow const& row = kHeadValueRows[i];
            document.setValue(QLatin1String(kHeadSection), QLatin1String(row.name), iniNumber(head.*row.value));
        }
        return true;
    });
}

BoxCorrection::Mirror mirrorOf(MirrorCorrection const& block) {
    return {block.Scale, block.Barrel, block.Parallelogram, block.Trapezoid};
}

double fieldEdge(IniFile const& file, char const* key) {
    std::optional<QString> const text = file.value(QStringLiteral("Calibration"), QLatin1String(key));
    double const counts = text ? iniDouble(*text).value_or(kDefaultCounts) : kDefaultCounts;
    return kFieldCounts / counts;
}

} // namespace

BoxCorrection boxCorrection(StandardCalibParam const& record) {
    BoxCorrection box;
    box.halfField = record.MaxArea / 2.0;
    box.offsetX = record.OffsetX;
    box.offsetY = record.OffsetY;
    box.angle = record.Angle;
    box.mirror1IsX = record.Mirror1IsX;
    box.mirror1Reverse = record.Mirror1Reverse;
    box.mirror2Reverse = record.Mirror2Reverse;
    box.mirrors = {mirrorOf(record.Mirror1), mirrorOf(record.Mirror2)};
    box.light[0] = {record.Mirror1.LightScale, record.Mirror1.LightOffset};
    box.light[1] = {record.Mirror2.LightScale, record.Mirror2.LightOffset};
    return box;
}

SimOutcome setHeadDistortion(SimHeadDistortion const& head, std::string& error) {
    if (HeadValueRow const* row = invalidHeadValue(head)) {
        error = QStringLiteral("\"%1\" is out of its limits, %2 to %3")
                    .arg(QLatin1String(row->name))
                    .arg(row->low)
                    .arg(row->high)
                    .toStdString();
        return SimOutcome::BadValue;
    }
    std::lock_guard<std::mutex> const lock(headMutex());
    if (!writeHead(head)) {
        error = tessera::rootPath(QLatin1String(kHeadFile)).toStdString() + ": the file could not be written";
        return SimOutcome::FileError;
    }
    headIsLoaded() = true;
    simulatedCard().headWay().setDistortion(head);
    return SimOutcome::Done;
}

SimHeadDistortion headDistortion() {
    std::lock_guard<std::mutex> const lock(headMutex());
    if (!headIsLoaded())
        readHead();
    return simulatedCard().headWay().distortion();
}

void loadHeadDistortion() {
    std::lock_guard<std::mutex> const lock(headMutex());
    readHead();
}

void loadGridCorrection(QString const& cardFile) {
    HeadWay& way = simulatedCard().headWay();
    IniFile const card(cardFile);
    std::optional<QString> const flag = card.value(QStringLiteral("HARDWARE"), QStringLiteral("bHighPrecisionCali"));
    if (!flag || iniInt(*flag).value_or(0) == 0) {
        way.setGrid(nullptr);
        return;
    }
    QString const path = tessera::rootPath(QLatin1String(kTableFile));
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly)) {
        way.setGrid(nullptr);
        showCardMessage(LanguageManager::GetLanText("没有高精度校正文件,不校正") + QStringLiteral(": ") + path, 0);
        return;
    }
    // A byte more than a table has tells a file that is too long.
    QByteArray const bytes = file.read(qint64(GridCorrection::kBytes) + 1);
    std::string reason;
    std::shared_ptr<const GridCorrection> table = GridCorrection::parse(
        reinterpret_cast<unsigned char const*>(bytes.constData()), static_cast<std::size_t>(bytes.size()),
        fieldEdge(card, "VZC1000_NO0_CaliKx"), fieldEdge(card, "VZC1000_NO0_CaliKy"), reason);
    way.setGrid(table);
    if (!table)
        showCardMessage(LanguageManager::GetLanText("高精度校正文件已损坏,不校正") + QStringLiteral(": ") + path +
                            QStringLiteral(" (") + QString::fromStdString(reason) + QStringLiteral(")"),
                        1);
}

} // namespace sim
