// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "engine/axismovestruct.h"
#include "engine/class_cardpara.h"
#include "simengine/motion/homing.h"

namespace sim {

/// The one set of axes of the simulated motion card, which the panel and the tests reach too.
AxisGroup& simulatedAxes();

/// Motor, from 0, that drives an axis by its parameters; -1 for an axis that has none. The machine has a carriage for
/// each motor.
int motorOf(Class_CardPara const& para, int axis);

/// Lets the faults of the axes that are switched on act again, after a reset.
void applyAxisFaults();

/// How the card treats the axis by its parameters; `axis` is one of the slots.
AxisConfig axisConfig(Class_CardPara const& para, int axis);
HomingPlan homingPlan(AxisPara const& para);

/// `value` held to the machine's maximum; 0 or less stands for no maximum.
double capped(double value, double maximum);

/// Carries out one request with the values of `para` and blocks until it has ended; false when it failed or was
/// stopped. Who cancels lets `cancelled` give true and then stops the axis.
bool runRequest(AxisMoveStruct const& request, Class_CardPara const& para, std::function<bool()> const& cancelled);

} // namespace sim
