// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "engine/axismovestruct.h"
#include "engine/class_cardpara.h"
#include "simengine/motion/homing.h"

namespace sim {

/// The one set of axes of the simulated motion card, which the panel and the tests reach too.
AxisGroup& simulatedAxes();

/// How the card treats the axis by its parameters.
AxisConfig axisConfig(AxisPara const& para);
HomingPlan homingPlan(AxisPara const& para);

/// Carries out one request with the values of `para` and blocks until it has ended; false when it failed or was
/// stopped. Who cancels lets `cancelled` give true and then stops the axis.
bool runRequest(AxisMoveStruct const& request, Class_CardPara const& para, std::function<bool()> const& cancelled);

} // namespace sim
