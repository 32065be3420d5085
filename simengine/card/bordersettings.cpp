// SPDX-License-Identifier: GPL-2.0-or-later
#include "simengine/card/bordersettings.h"

#include "engine/profinifile.h"
#include "simengine/card/cardcore.h"

namespace sim {

namespace {

QString section() {
    return QStringLiteral("CARD");
}
QString outlineKey() {
    return QStringLiteral("BorderOutline");
}
QString speedKey() {
    return QStringLiteral("BorderSpeed");
}

} // namespace

BorderSettings readBorderSettings() {
    const ProfIniFile& file = *XProfIniFile_CardCfg::Instance();
    BorderSettings settings;
    if (file.ReadInt(section(), outlineKey(), 0) == static_cast<int>(BorderOutline::Hull))
        settings.outline = BorderOutline::Hull;
    const double speed = file.ReadDouble(section(), speedKey(), 0.0);
    settings.speed = speed > 0.0 ? speed : 0.0;
    return settings;
}

void takeBorderSettings(MarkKind kind) {
    if (kind == MarkKind::BorderPreview)
        simulatedCard().setBorder(readBorderSettings());
}

bool writeBorderSettings(const BorderSettings& settings) {
    ProfIniFile& file = *XProfIniFile_CardCfg::Instance();
    return file.WriteInt(section(), outlineKey(), static_cast<int>(settings.outline)) &&
           file.WriteDouble(section(), speedKey(), settings.speed);
}

} // namespace sim
