// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "simengine/document/shape.h"

#include <array>

namespace sim {

/// One line or cubic curve of a contour without its start: the last of the points is its end. A line uses that alone.
struct Segment {
    bool curved = false;
    std::array<QPointF, 2> handles;
    QPointF end;
};

/// One contour of a path. A closed one ends where it began, with a line if the last segment does not lead there.
struct Contour {
    QPointF start;
    std::vector<Segment> segments;
    bool closed = false;

    const QPointF& end() const { return segments.empty() ? start : segments.back().end; }
    /// The same contour run through the other way.
    Contour reversed() const;
};

/// The contours of a path that draw something.
std::vector<Contour> contoursOf(const PathShape& path);
PathShape pathOf(const std::vector<Contour>& contours);

/// Each segment as an open contour, the closing line of a closed one included.
std::vector<Contour> segmentsOf(const Contour& contour);

/// Joins open contours whose ends lie within `tolerance` of each other, the nearest ends first come; the later one is
/// moved onto the end of the earlier by its first point. Contours that come back to their start are closed.
std::vector<Contour> joinContours(std::vector<Contour> contours, double tolerance);

/// A path of one straight contour as a polyline, others as they are.
Shape simplestShape(const PathShape& path);

/// Appends a polyline as a contour; the last point of a closed one may repeat the first.
void addPolyline(PathShape& path, const QPolygonF& points, bool closed);

} // namespace sim
