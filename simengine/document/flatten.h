// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "simengine/document/limits.h"
#include "simengine/document/shape.h"

namespace sim {

/// A contour as the laser draws it. A closed one ends with a copy of its first point; a single point is a mark point.
struct FlatLine {
    QPolygonF points;
    bool closed = false;
};

/// Appends the transformed geometry as polylines that keep within `tolerance` mm of the exact curve and whose length is
/// within 0.1 % of the curve's. Straight geometry is exact. Groups append their children in order. Any thread.
void flattenShape(const Shape& shape, const QTransform& transform, std::vector<FlatLine>& lines,
                  double tolerance = kFlatteningTolerance);

/// How many points flattenShape() makes, told without making them: within a few in a hundred of curves that turn
/// gently. Of curves and ellipses without breadth it may be a quarter of what they get, or 128 more for each of them.
qint64 flattenedPointCount(const Shape& shape, const QTransform& transform, double tolerance = kFlatteningTolerance);

/// Length of a polyline in mm.
double polylineLength(const QPolygonF& points);

} // namespace sim
