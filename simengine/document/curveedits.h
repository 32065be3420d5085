// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "engine/dissimilationparam.h"
#include "simengine/document/documentstate.h"

namespace sim {

/// Edits that make curves into other curves. Same rules as the functions of edits.h. What becomes of a curve has its
/// pen, work type, hatch and name, and lies in the field with no transform of its own.
namespace edits {

/// The selected curves (all kinds but points and groups) become one path at the place of the first of them. Without
/// `join` the contours stay as they are, in marking order. With it open contours whose ends meet are joined, turned
/// round where that is needed, and a contour that comes back to its start is closed. Nothing with fewer than two
/// curves selected.
EditResult combineCurves(const DocumentState& state, bool join);
bool canCombineCurves(const DocumentState& state);

/// A selected path of several contours gives way to one object for each contour; a polyline, a rectangle or a path of
/// one contour to one object for each of its segments. A text becomes curves: one path for each of its letters.
EditResult splitCurves(const DocumentState& state);
bool canSplitCurves(const DocumentState& state);

/// Lays a pattern along the selected curves. Points and groups, and curves shorter than half a period, stay as they
/// are. A closed curve gets a whole number of periods, the pitch being adapted. Nothing for an unknown type, a pitch
/// that is not above 0, or more than kMostPatternPoints points.
EditResult roughen(const DocumentState& state, const DissimilationParam& param);

/// Points that a pattern may give one document.
constexpr qint64 kMostPatternPoints = 2000000;

} // namespace edits
} // namespace sim
