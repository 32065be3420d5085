// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "engine/fillparam.h"
#include "simengine/document/cancellation.h"
#include "simengine/document/flatten.h"
#include "simengine/document/packedlines.h"

#include <vector>

namespace sim {

/// Segments that the hatch of one object may have. A run of so many lasts for days, and a board has no memory for more.
constexpr qint64 kMaxHatchSegments = 20'000'000;

/// Distance of the lines of a fill, at least, mm: the operator's box has three decimals, and no spot is so narrow.
constexpr double kLeastHatchPitch = 0.001;

/// The lines of one fill in marking order: the loops along the outline, then the rows.
struct HatchPart {
    int pen = 0;
    PackedLines lines;
};

/// The hatch of an outline. Closed lines of it enclose the area, where an odd number of them lies around; open ones do
/// not. The enabled fills come one after the other. `turn` is the angle by which the object was turned, degrees: the
/// rows turn with it.
///
/// Fill: rows at `FillAngle` degrees counter-clockwise from the x axis, `FillDist` mm apart, in the middle of the
/// area's height. Before them `EdgeCnt` loops along the outline, the first `FillOffset` + `FillDist` inside it and each
/// further one `FillDist` inside the one before; the rows end at the last loop, without loops `FillOffset` inside the
/// outline. Type 4 has loops instead of rows.
///
/// A fill whose pitch is not a positive number has no lines, and neither has one that hatchSegments() tells too large.
/// Any thread.
/// What was cancelled is not whole.
std::vector<HatchPart> hatchLines(std::vector<FlatLine> const& outline, std::vector<FillParam> const& fills,
                                  double turn, Cancellation const* cancellation = nullptr);

/// Number of segments that hatchLines() would make, without making them: exact for single rows up to the outline, with
/// joints and offsets from above, for loops a guess from the area's surface and circumference. It takes a time that
/// grows with the outline's points alone, however often the outline crosses itself: it is asked of every object of a
/// file before anybody knows that the file is sound.
qint64 hatchSegments(std::vector<FlatLine> const& outline, std::vector<FillParam> const& fills, double turn);

} // namespace sim
