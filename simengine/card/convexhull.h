// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "simengine/card/job.h"

#include <cstddef>
#include <vector>

namespace sim {

/// The convex hull of points that come one by one. What lies inside is forgotten in between, so that a job of millions
/// of vertices needs the memory of its hull and of one bounded batch. A plain value; not thread-safe.
class ConvexHull {
public:
    /// The point is finite.
    void add(const Point& point);

    /// Corners counter-clockwise from the leftmost one, of several the lowest; none on the straight line between its
    /// neighbours. One corner for a single place, two for places on one line, none without points.
    std::vector<Point> corners() const;

private:
    /// Points that are kept besides the hull of those before.
    static constexpr std::size_t kBatch = 4096;

    std::vector<Point> m_points;
    std::size_t m_limit = 2 * kBatch;
};

} // namespace sim
