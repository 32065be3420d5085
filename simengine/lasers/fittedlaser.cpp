// SPDX-License-Identifier: GPL-2.0-or-later
#include "simengine/lasers/fittedlaser.h"

#include "engine/markingmparam_vz.h"
#include "engine/profinifile.h"
#include "simengine/card/cardcore.h"
#include "simengine/lasers/laserlines.h"

namespace sim {

namespace {

constexpr int kYls = 1;
constexpr int kSn = 2;

LaserKind configuredKind() {
    const MarkCardType type = MarkingMParam_VZ::Instance()->GetMarkCardType();
    if (type != MarkCardYLR && type != MarkCardYLM)
        return LaserKind::Silent;
    const int variant = XProfIniFile_CardCfg::Instance()->ReadInt(QStringLiteral("LASER"), QStringLiteral("bYLS"), 0);
    if (variant == kYls)
        return LaserKind::Yls;
    return variant == kSn ? LaserKind::Sn : LaserKind::Silent;
}

/// Goes before the card on whose lines it hangs.
LaserLines& fittedLaser() {
    static LaserLines laser(simulatedCard().io(), simulatedCard().faults(), simulatedCard().deviceClock());
    return laser;
}

} // namespace

void fitLaser() {
    fittedLaser().fit(configuredKind());
}

} // namespace sim
