// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "engine/standardcalibparam.h"
#include "simengine/card/boxcorrection.h"
#include "simengine/simcontrol.h"

#include <QString>
#include <string>

namespace sim {

/// The simulated head's own file: its distortion is part of the machine and outlasts the program, as a calibration
/// does.
constexpr char kHeadFile[] = "/ini/SimHead.ini";

/// The box correction that a calibration record means.
BoxCorrection boxCorrection(StandardCalibParam const& record);

/// Checks, stores and then sets the head of the one machine. Any thread.
SimOutcome setHeadDistortion(SimHeadDistortion const& head, std::string& error);
/// The head as it is now; loads its file when that has not been done.
SimHeadDistortion headDistortion();
/// Loads the head's file; a value that is missing, no number or out of its limits is that of an ideal head. When the
/// card opens.
void loadHeadDistortion();

/// Takes the high-precision correction from the card's parameter file `cardFile` (absolute): "HARDWARE"
/// "bHighPrecisionCali" says whether "/ini/HighPrecisionCali.cl" is in force, "Calibration" "VZC1000_NO0_CaliKx" and
/// "...Ky" how large its field is. A table that is absent or damaged is told by the card's message function, and the
/// head is without correction. Any thread.
void loadGridCorrection(QString const& cardFile);

} // namespace sim
