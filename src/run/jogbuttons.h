// SPDX-License-Identifier: MIT
#pragma once

#include <cmath>

namespace tessera {

/// What a press of an axis button of the run dialog does.
struct AxisButtonMove {
    bool jog = false;   ///< runs until the button is released, else a single step
    double speed = 0.0; ///< signed for a jog, axis unit/s
    double acc = 0.0;   ///< axis unit/s^2
    double delta = 0.0; ///< way of a step, axis unit
};

/// Below this step (axis unit) a button jogs.
constexpr double kJogBelowStep = 0.01;

constexpr bool IsJogStep(double step) {
    return step < kJogBelowStep;
}

/// `up`: in the positive direction. `speed` and `acc` are the axis's slow jog values.
inline AxisButtonMove MoveOfAxisButton(bool up, double step, double speed, double acc) {
    const double sign = up ? 1.0 : -1.0;
    if (IsJogStep(step))
        return {true, sign * std::fabs(speed), std::fabs(acc), 0.0};
    return {false, speed, acc, sign * step};
}

} // namespace tessera
