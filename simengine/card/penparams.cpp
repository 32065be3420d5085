// SPDX-License-Identifier: GPL-2.0-or-later
#include "simengine/card/penparams.h"

#include <algorithm>
#include <cmath>
#include <tuple>

namespace sim {

namespace {

double withinLimits(double value, double low, double high) {
    return std::isnan(value) ? low : std::clamp(value, low, high);
}

} // namespace

PenParams sanitized(const PenParams& pen) {
    PenParams out = pen;
    out.markCount = std::max(1, pen.markCount);
    out.markSpeed = withinLimits(pen.markSpeed, kMinSpeed, kMaxSpeed);
    out.redSpeed = withinLimits(pen.redSpeed, kMinSpeed, kMaxSpeed);
    out.jumpSpeed = withinLimits(pen.jumpSpeed, kMinSpeed, kMaxSpeed);
    out.power = withinLimits(pen.power, 0.0, 100.0);
    for (int PenParams::*delay :
         {&PenParams::openLaserDelay, &PenParams::closeLaserDelay, &PenParams::endDelay, &PenParams::turnDelay,
          &PenParams::maxJumpDelay, &PenParams::minJumpDelay, &PenParams::markDelay, &PenParams::pointTime})
        out.*delay = std::max(0, pen.*delay);
    for (double PenParams::*dist : {&PenParams::minJumpDelayDist, &PenParams::maxJumpDelayDist})
        out.*dist = std::isnan(pen.*dist) ? 0.0 : std::max(0.0, pen.*dist);
    out.wobbleDiameter = withinLimits(pen.wobbleDiameter, kMinWobble, kMaxWobble);
    out.wobbleSpacing = withinLimits(pen.wobbleSpacing, kMinWobble, kMaxWobble);
    for (WaveTable PenParams::*table : {&PenParams::pointWave, &PenParams::lineWave}) {
        for (WavePoint& row : out.*table)
            row = {withinLimits(row.x, 0.0, kMaxWaveX), withinLimits(row.power, 0.0, 100.0)};
    }
    return out;
}

bool operator==(const LaserWave& a, const LaserWave& b) {
    const auto values = [](const LaserWave& wave) {
        return std::tie(wave.mode, wave.peak, wave.pulse, wave.pwmPeak, wave.pwmFreq, wave.pwmDuty, wave.gasDelay,
                        wave.eyeDelay);
    };
    return values(a) == values(b);
}

bool operator==(const PenParams& a, const PenParams& b) {
    const auto values = [](const PenParams& pen) {
        return std::tie(pen.markCount, pen.markSpeed, pen.redSpeed, pen.power, pen.waveNumber, pen.frequency, pen.pwm,
                        pen.openLaserDelay, pen.closeLaserDelay, pen.endDelay, pen.turnDelay, pen.jumpSpeed,
                        pen.maxJumpDelay, pen.minJumpDelay, pen.minJumpDelayDist, pen.maxJumpDelayDist, pen.markDelay,
                        pen.pointTime, pen.wobbleEnable, pen.wobbleDiameter, pen.wobbleSpacing, pen.pointWaveEnable,
                        pen.lineWaveEnable, pen.lineWaveByDistance, pen.pointWave, pen.lineWave, pen.laserWave);
    };
    return values(a) == values(b);
}

} // namespace sim
