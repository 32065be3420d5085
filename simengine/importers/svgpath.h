// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "simengine/document/shape.h"
#include "simengine/importers/importbudget.h"

#include <QStringRef>

namespace sim {

/// Appends the outline of path data in user units. False when they are wrong: what comes before the fault is there.
/// Contours without a segment are left out; one that comes back to its start is closed.
bool parseSvgPath(const QStringRef& data, PathShape& path, ImportBudget& budget);

/// The same for a list of points.
bool parseSvgPoints(const QStringRef& data, bool closed, PathShape& path, ImportBudget& budget);

/// Closes each contour that has an area, however its line goes.
PathShape closedContours(const PathShape& path);

/// Closes contours that end where they began and drops those that draw nothing.
PathShape tidiedPath(const PathShape& path);

} // namespace sim
