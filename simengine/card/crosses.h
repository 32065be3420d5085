// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "simengine/card/trace.h"

#include <vector>

namespace sim {

/// The calibration figures that a job marked, as an instrument on the workpiece sees them: the crossing points of the
/// crosses in the order in which their first lines were marked. A cross is two straight strokes with the laser, each
/// halving the other at a right angle; several passes over one line count once. A job without crosses gives its mark
/// points instead. In mm on the workpiece, without noise of the instrument.
std::vector<Point> markedFigures(const TraceSnapshot& rows);

} // namespace sim
