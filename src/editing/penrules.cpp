// SPDX-License-Identifier: MIT
#include "editing/penrules.h"

#include "engine/glassparam.h"
#include "engine/imodbuslaser.h"
#include "engine/markingmparam_vz.h"
#include "engine/systemparam.h"

#include <algorithm>

namespace tessera {

namespace {

constexpr double kHalf = 50.0;             ///< percent
constexpr double kWholePercent = 100.0;    ///< percent
constexpr double kLongestPulse = 100000.0; ///< us, and the largest pulse width code
constexpr double kLeastFrequency = 0.0001; ///< Hz; below it there is no period to speak of
constexpr double kLeastPulse = 0.001;      ///< us
constexpr double kMicrosPerSecond = 1.0e6;

} // namespace

PenMachine PenMachine::Current() {
    PenMachine machine;
    machine.type = MarkingMParam_VZ::Instance()->GetMarkCardType();
    machine.fibre = MarkingMParam_VZ::Instance()->GetIPG100WType();
    machine.pulseWidthType = GlassParam::Instance()->QPulseWidthType();
    IModbusLaser* laser = IModbusLaser::Instance();
    machine.derivedFromWave = SystemParam::Instance()->GetEnableLayLaser() && laser && laser->IsAutoCalcPWM();
    return machine;
}

PenRows PenRowsOf(PenMachine const& machine) {
    PenRows rows;
    const bool fibre = machine.type == MarkCardFilber;
    rows.powerLabel = machine.type != MarkCardYAG;
    rows.dutyLabel = !fibre;
    rows.power = rows.powerLabel && !machine.derivedFromWave;
    rows.frequency = !machine.derivedFromWave;
    rows.duty = rows.dutyLabel && !machine.derivedFromWave;
    rows.kiloHertz = fibre || machine.type == MarkCardSPI || machine.type == MarkCardEP;
    rows.waveIsPulseWidth = fibre && machine.fibre != 0;
    rows.wave = !fibre || rows.waveIsPulseWidth;
    rows.mostWave = rows.waveIsPulseWidth ? kLongestPulse : kWholePercent;
    rows.dutyIsPulseWidth = machine.pulseWidthType == 1;
    rows.mostDuty = rows.dutyIsPulseWidth ? kLongestPulse : kWholePercent;
    return rows;
}

double ShownDuty(double stored, PenMachine const& machine) {
    if (machine.type == MarkCardFilber)
        return kHalf;
    return machine.pulseWidthType != 0 ? stored : std::min(stored, kWholePercent);
}

double StoredDuty(double shown, double frequency, PenMachine const& machine) {
    if (machine.pulseWidthType != 1)
        return shown;
    if (machine.type == MarkCardFilber)
        return kHalf;
    const bool kilo = machine.type == MarkCardSPI || machine.type == MarkCardEP;
    const double hertz = kilo ? frequency * 1000.0 : frequency;
    if (hertz < kLeastFrequency)
        return kLeastPulse;
    return std::min(shown, kMicrosPerSecond / hertz);
}

} // namespace tessera
