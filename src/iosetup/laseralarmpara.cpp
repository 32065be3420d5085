// SPDX-License-Identifier: MIT
#include "iosetup/laseralarmpara.h"

#include "engine/cardfunctions.h"
#include "engine/languagemanager.h"
#include "engine/markcardinstance.h"
#include "engine/markingmparam_vz.h"
#include "engine/profinifile.h"
#include "engine/showdebuginfo.h"
#include "support/approot.h"

#include <QEventLoop>
#include <QTime>
#include <QTimer>

namespace {

constexpr char kFile[] = "/ini/UserINI.ini";
constexpr int kResetPulseMs = 200;

QString section() {
    return QStringLiteral("LaserAlarm");
}

QString channelKey(char const* name, int channel) {
    return QLatin1String(name) + QString::number(channel + 1);
}

/// The window stays alive: the pulse is longer than a person takes for a hang.
void waitPulse() {
    QEventLoop loop;
    QTimer::singleShot(kResetPulseMs, Qt::PreciseTimer, &loop, &QEventLoop::quit);
    loop.exec();
}

void traceTime() {
    ShowDebugInfo::Instance()->AddShowText(QTime::currentTime().toString(QStringLiteral("hh:mm:ss.zzz")),
                                           DebugInfoTrace);
}

} // namespace

LaserAlarmPara::LaserAlarmPara() {
    ReadPara();
}

LaserAlarmPara* LaserAlarmPara::Instance() {
    static LaserAlarmPara instance;
    return &instance;
}

void LaserAlarmPara::ReadPara() {
    const ProfIniFile file(tessera::rootPath(QLatin1String(kFile)));
    const auto read = [&file](QString const& key, int other) { return file.ReadInt(section(), key, other); };
    m_EnableLaserAlarm = read(QStringLiteral("m_EnableLaserAlarm"), 0) != 0;
    m_LaserType = read(QStringLiteral("m_LaserType"), tessera::kLaserTypeCustom);
    for (int i = 0; i < tessera::kLaserAlarmChannels; ++i) {
        m_CheckIn[i] = read(channelKey("m_CheckIn", i), 0) != 0;
        m_CheckMask[i] = read(channelKey("m_CheckMask", i), 0) != 0;
    }
    m_ResetOut = read(QStringLiteral("m_ResetOut"), tessera::kNoOutput);
    m_CheckNeg = read(QStringLiteral("m_CheckNeg"), 0) != 0;
}

void LaserAlarmPara::SavePara() {
    ProfIniFile file(tessera::rootPath(QLatin1String(kFile)));
    const auto write = [&file](QString const& key, int value) { file.WriteInt(section(), key, value); };
    write(QStringLiteral("m_EnableLaserAlarm"), m_EnableLaserAlarm ? 1 : 0);
    write(QStringLiteral("m_LaserType"), m_LaserType);
    for (int i = 0; i < tessera::kLaserAlarmChannels; ++i)
        write(channelKey("m_CheckIn", i), m_CheckIn[i] ? 1 : 0);
    for (int i = 0; i < tessera::kLaserAlarmChannels; ++i)
        write(channelKey("m_CheckMask", i), m_CheckMask[i] ? 1 : 0);
    write(QStringLiteral("m_ResetOut"), m_ResetOut);
    write(QStringLiteral("m_CheckNeg"), m_CheckNeg ? 1 : 0);
}

QString LaserAlarmPara::DetectAlarm(bool& alarm) {
    tessera::LaserAlarmRule rule;
    rule.laserType = m_LaserType;
    for (std::size_t i = 0; i < rule.enabled.size(); ++i) {
        rule.enabled[i] = m_CheckIn[i];
        rule.level[i] = m_CheckMask[i];
    }
    rule.inverted = m_CheckNeg;
    const int cardType = MarkingMParam_VZ::Instance()->GetMarkCardType();
    const tessera::LaserAlarmResult result =
        tessera::detectLaserAlarm(rule, cardType, MarkCardInstance::Instance()->GetInput(), alarm);
    const bool held = m_bHeld && m_Alarm && m_LaserType == tessera::kLaserTypeCustom;
    alarm = result.alarm;
    m_Alarm = result.alarm || held;
    VZ_OutputError(m_Alarm ? 1 : 0);
    return *result.textKey ? LanguageManager::GetLanText(result.textKey) : QString();
}

void LaserAlarmPara::ResetAlarm() {
    const int output = m_ResetOut;
    if (output != tessera::kNoOutput)
        MarkCardInstance::Instance()->SetOutputBit(output, 1);
    m_Alarm = false;
    VZ_OutputError(0);
    if (output == tessera::kNoOutput)
        return;
    traceTime();
    waitPulse();
    traceTime();
    MarkCardInstance::Instance()->SetOutputBit(output, 0);
}
