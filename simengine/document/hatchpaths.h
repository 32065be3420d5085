// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "simengine/document/hatchrows.h"
#include "simengine/document/packedlines.h"

namespace sim {

/// Ways of marking the rows of a hatch. Values of FillParam::FillType.
enum class FillType {
    OneWay = 0,     ///< each stretch by itself, from left to right
    ToAndFro = 1,   ///< every second row from right to left
    Serpentine = 2, ///< as before, and a row goes over into the next with the laser on
    Sections = 3,   ///< a serpentine for each part of the area that no hole or notch divides, one part after the other
    Loops = 4       ///< loops along the outline, from outside to inside
};

/// The rows as lines in marking order, in the frame of the hatch. Two stretches are joined only where the way between
/// them follows the outline, so that nothing outside the area is marked. Not for FillType::Loops.
/// What was cancelled is not whole.
PackedLines hatchPaths(HatchRows const& rows, FillType type, Cancellation const* cancellation = nullptr);

} // namespace sim
