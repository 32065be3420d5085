// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "simengine/card/timemodel.h"

namespace sim {

/// How the border preview goes round the job, as the card's parameter file "/ini/VZMarkPara.cfg" has it now: "CARD"
/// `BorderOutline` 0 for the rectangle, 1 for the hull, anything else the rectangle; `BorderSpeed` in mm/s, 0 or what
/// is no number above it for the red-light speed. Any thread.
BorderSettings readBorderSettings();

/// Gives them to the card when a job of this kind goes round its border. Any thread.
void takeBorderSettings(MarkKind kind);

/// Writes both; false when the file could not be written. Any thread.
bool writeBorderSettings(const BorderSettings& settings);

} // namespace sim
