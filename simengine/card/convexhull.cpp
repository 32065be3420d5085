// SPDX-License-Identifier: GPL-2.0-or-later
#include "simengine/card/convexhull.h"

#include <algorithm>

namespace sim {

namespace {

bool leftThenLower(const Point& a, const Point& b) {
    return a.x < b.x || (a.x == b.x && a.y < b.y);
}

bool turnsLeft(const Point& a, const Point& b, const Point& c) {
    return (b.x - a.x) * (c.y - a.y) - (b.y - a.y) * (c.x - a.x) > 0.0;
}

/// Takes a point at the end of a chain that only turns left, which begins at index `from`.
void extend(std::vector<Point>& chain, std::size_t from, const Point& point) {
    while (chain.size() >= from + 2 && !turnsLeft(chain[chain.size() - 2], chain.back(), point))
        chain.pop_back();
    chain.push_back(point);
}

/// The lower chain from left to right and the upper one back.
std::vector<Point> hullOf(std::vector<Point> points) {
    std::sort(points.begin(), points.end(), leftThenLower);
    points.erase(std::unique(points.begin(), points.end()), points.end());
    if (points.size() < 3)
        return points;
    std::vector<Point> hull;
    for (const Point& point : points)
        extend(hull, 0, point);
    const std::size_t turn = hull.size() - 1;
    for (std::size_t i = points.size() - 1; i-- > 0;)
        extend(hull, turn, points[i]);
    hull.pop_back(); // the first corner again
    return hull;
}

} // namespace

void ConvexHull::add(const Point& point) {
    m_points.push_back(point);
    if (m_points.size() < m_limit)
        return;
    m_points = hullOf(std::move(m_points));
    m_limit = 2 * std::max(kBatch, m_points.size());
}

std::vector<Point> ConvexHull::corners() const {
    return hullOf(m_points);
}

} // namespace sim
