// SPDX-License-Identifier: GPL-2.0-or-later
#include "engine/vzmarkcard.h"

#include "engine/profinifile.h"
#include "simengine/card/bordersettings.h"
#include "simengine/card/cardlink.h"
#include "simengine/card/fitteddevices.h"
#include "simengine/lasers/seriallaser.h"

using namespace sim;

namespace {

/// Simulated time that a factory reset of the flash takes, ms.
constexpr double kFlashResetMs = 120'000.0;

QString alarmTimeKey() {
    return QStringLiteral("AlarmTime");
}
QString cardSection() {
    return QStringLiteral("CARD");
}

void record(char const* name, std::vector<JournalValue> args = {}) {
    simulatedCard().journal().add(name, std::move(args));
}

} // namespace

VZMarkCard::VZMarkCard() {
    simulatedCard().devices().setAlarmTime(XProfIniFile_CardCfg::Instance()->ReadInt(cardSection(), alarmTimeKey(), 0));
}

VZMarkCard::~VZMarkCard() {
    simulatedCard().close();
}

void VZMarkCard::BeginList(int mode) {
    record("BeginList", journalArgs(mode));
    simulatedCard().beginList();
}

void VZMarkCard::EndList() {
    record("EndList");
    takeBorderSettings(simulatedCard().kind());
    logCentreLines(simulatedCard().endList(serialLaserService()).time);
}

void VZMarkCard::StopMark() {
    record("StopMark");
    simulatedCard().stop();
}

void VZMarkCard::PauseMark() {
    record("PauseMark");
    simulatedCard().pause();
}

void VZMarkCard::RestartMark() {
    record("RestartMark");
    simulatedCard().restart();
}

void VZMarkCard::ResetCardFlash() {
    record("ResetCardFlash");
    simulatedCard().reboot(kFlashResetMs, [] { simulatedCard().devices().flash().erase(); });
}

double VZMarkCard::GetBufferRunTime() {
    return simulatedCard().bufferRunTimeMs();
}

int VZMarkCard::GetAlarmTime() {
    return simulatedCard().devices().alarmTime();
}

void VZMarkCard::SetAlarmTime(int ms) {
    record("SetAlarmTime", journalArgs(ms));
    if (!simulatedCard().isOpen())
        return;
    simulatedCard().devices().setAlarmTime(ms);
    if (!XProfIniFile_CardCfg::Instance()->WriteInt(cardSection(), alarmTimeKey(), ms))
        showCardMessage(QStringLiteral("VZMarkPara.cfg: AlarmTime"), 1);
}

void VZMarkCard::CardCommand(int code, int a, int b, int* out1, int* out2) {
    record("CardCommand", journalArgs(code, a, b));
    if (!simulatedCard().isOpen())
        return;
    int first = out1 ? *out1 : 0;
    int second = out2 ? *out2 : 0;
    if (!commandDevice(code, a, b, first, second))
        return;
    if (out1)
        *out1 = first;
    if (out2)
        *out2 = second;
}
