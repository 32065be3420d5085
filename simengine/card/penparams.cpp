// SPDX-License-Identifier: GPL-2.0-or-later
#include "simengine/card/penparams.h"

#include <algorithm>
#include <cmath>

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

} // namespace sim
