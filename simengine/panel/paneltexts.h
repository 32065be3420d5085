// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "engine/iofunclist.h"
#include "simengine/simcontrol.h"

#include <QStringList>
#include <QVector>
#include <array>

namespace sim {

constexpr int kPanelLines = 32;

/// For each of the 32 lines the translated names of the functions that watch (inputs) or drive (outputs) it.
std::array<QStringList, kPanelLines> inputNames(const QVector<IOFuncList>& functions);
std::array<QStringList, kPanelLines> outputNames(const QVector<IOFuncList>& functions);

/// What the machine does, in one word, translated.
QString activityText(const SimCardState& state);
/// What a fault does, translated; a fault that is not known here has its own name.
QString faultText(const std::string& name);
/// Number of the motor, 1 to 9, that a fault belongs to; 0 for a fault of something else.
int faultMotor(const std::string& name);
/// Name of a device's value, for a person.
QString deviceText(const std::string& name);
/// Why an order to the machine was not done, for a person; `nothing` is the key for NoFigures.
QString outcomeText(SimOutcome outcome, const char* nothing);
/// The same for an export of the trace.
QString exportText(SimOutcome outcome);
/// Milliseconds as "12.345 s", below a second as "123.4 ms".
QString timeText(double ms);

} // namespace sim
