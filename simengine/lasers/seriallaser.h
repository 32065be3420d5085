// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "simengine/card/jobrunner.h"

namespace sim {

/// Gives the serial laser the waveform of each pen before a job marks with it; see "Serial laser" in docs/simulator.md.
/// Null without one: the machine is not set to have it, or none is registered. A service is for one job; it knows
/// which waveform it set last. Any thread.
PenService serialLaserService();

} // namespace sim
