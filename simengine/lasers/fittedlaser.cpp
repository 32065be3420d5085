// SPDX-License-Identifier: GPL-2.0-or-later
#include "simengine/lasers/fittedlaser.h"

#include "engine/markingmparam_vz.h"
#include "engine/profinifile.h"
#include "simengine/card/cardcore.h"
#include "simengine/lasers/laserlines.h"
#include "support/approot.h"

#include <atomic>

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

/// The front end keeps there what it knows of the laser's fault lines.
LaserAlarmWiring configuredWiring() {
    ProfIniFile const file(tessera::rootPath(QStringLiteral("/ini/UserINI.ini")));
    auto const number = [&file](QString const& key, int otherwise) {
        return file.ReadInt(QStringLiteral("LaserAlarm"), key, otherwise);
    };
    LaserAlarmWiring wiring;
    wiring.used = number(QStringLiteral("m_EnableLaserAlarm"), 0) != 0;
    wiring.fibre = MarkingMParam_VZ::Instance()->GetMarkCardType() == MarkCardFilber;
    wiring.type = number(QStringLiteral("m_LaserType"), LaserAlarmWiring::kCustom);
    for (std::size_t i = 0; i < wiring.wired.size(); ++i) {
        wiring.wired[i] = number(QStringLiteral("m_CheckIn%1").arg(i + 1), 0) != 0;
        wiring.level[i] = number(QStringLiteral("m_CheckMask%1").arg(i + 1), 0) != 0;
    }
    wiring.codedLevel = number(QStringLiteral("m_CheckNeg"), 0) != 0;
    wiring.resetOutput = number(QStringLiteral("m_ResetOut"), -1);
    return wiring;
}

/// The laser on the card's lines. It goes before the card.
class FittedLaser {
public:
    FittedLaser()
        : m_lines(simulatedCard().io(), simulatedCard().faults(), simulatedCard().deviceClock())
        , m_observer(simulatedCard().faults().observe([this] { lookAtWiring(); })) {}
    ~FittedLaser() { simulatedCard().faults().forgetObserver(m_observer); }
    FittedLaser(FittedLaser const&) = delete;
    FittedLaser& operator=(FittedLaser const&) = delete;

    void fit() {
        m_lines.fit(configuredKind());
        m_lines.wireAlarm(configuredWiring());
    }

private:
    /// The operator may have changed the alarm's settings since: a fault that begins acts by the present ones.
    void lookAtWiring() {
        FaultBank const& faults = simulatedCard().faults();
        bool const on = faults.isOn("laser_temperature") || faults.isOn("laser_pd");
        if (on && !m_alarm.exchange(on))
            m_lines.wireAlarm(configuredWiring());
        m_alarm = on;
    }

    LaserLines m_lines;
    std::atomic<bool> m_alarm{false};
    int const m_observer;
};

} // namespace

void fitLaser() {
    static FittedLaser laser;
    laser.fit();
}

} // namespace sim
