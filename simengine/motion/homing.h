// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "simengine/motion/axisgroup.h"

#include <vector>

namespace sim {

/// How an axis finds its origin. Speeds in axis unit/s, accelerations in axis unit/s^2.
struct HomingPlan {
    /// Even values search in the positive direction, odd ones in the negative: 0, 1 limit switch; 2, 3 home switch;
    /// 4, 5 next index; 6, 7 limit switch and then back to the first index.
    int type = 1;
    double highSpeed = 20.0;
    double highAcc = 200.0;
    double lowSpeed = 5.0;
    double lowAcc = 100.0;
    int count = 1;         ///< slow approaches, at least one is made; the last one counts
    double backDist = 5.0; ///< by which the axis backs off before each slow approach; the sign does not matter
};

/// One part of a homing as it was carried out.
struct HomingLeg {
    enum class Kind { Fast, Slow, Back, Final };
    Kind kind;
    double from; ///< on the machine
    double to;
};

/// Homes one axis and blocks until it stands at its origin with the counter at 0. Soft limits do not count meanwhile.
/// False when the axis is in use, the switch or index is not met, a fault comes up, or the axis is stopped. A homing
/// that fails leaves the counter as it was. `cancelled` is asked once the axis is reserved, so that a stop of the axis
/// which came before it is not lost. `legs`, when given, gets the parts that the axis ran. Any thread.
bool homeAxis(AxisGroup& axes, int axis, AxisConfig const& config, HomingPlan const& plan,
              std::function<bool()> const& cancelled, std::vector<HomingLeg>* legs = nullptr);

} // namespace sim
