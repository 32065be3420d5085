// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "simengine/document/shape.h"
#include "simengine/importers/importbudget.h"

#include <QRectF>

namespace sim {

/// The part of an outline inside a rectangle, as polylines; curves within 0.5 micrometre. Empty, and the budget spent,
/// for curves that make more points than an import may hold.
PathShape clippedToRect(const PathShape& path, const QRectF& rect, ImportBudget& budget);

/// Outlines that cut others: an area by the rule that it is filled with.
struct ClipArea {
    PathShape path;
    bool evenOdd = false;
};

/// The part of an outline inside all areas, as polylines within 1 micrometre of it; coordinates in mm, up to 10^7. A
/// line is open where it is cut; with `filled` the outline is that of the area, closed along the edge of the clip.
/// Empty when the budget is spent.
PathShape clippedToAreas(const PathShape& path, const std::vector<ClipArea>& areas, bool filled, ImportBudget& budget);

/// All areas together, to be filled odd-even.
ClipArea unitedAreas(const std::vector<ClipArea>& areas, ImportBudget& budget);

/// A box lies between -`limit` and `limit` mm in both directions; false for one that is not finite.
bool isWithin(const Box& box, double limit);

/// A box lies wholly inside an area that is an upright rectangle; false whenever that is not plain to see.
bool liesWithin(const Box& box, const ClipArea& area);

} // namespace sim
