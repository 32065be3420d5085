// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include <QPointF>
#include <cstdint>
#include <vector>

namespace sim {

/// Many short polylines in one piece of memory: a hatch has millions of them.
class PackedLines {
public:
    std::size_t count() const { return m_ends.size(); }
    bool isEmpty() const { return m_ends.empty(); }
    /// Segments of all lines together.
    std::size_t segmentCount() const { return m_points.size() - m_ends.size(); }
    std::size_t pointCount() const { return m_points.size(); }

    QPointF const* begin(std::size_t line) const { return m_points.data() + (line == 0 ? 0 : m_ends[line - 1]); }
    QPointF const* end(std::size_t line) const { return m_points.data() + m_ends[line]; }

    void reserve(std::size_t lines, std::size_t points) {
        m_ends.reserve(lines);
        m_points.reserve(points);
    }
    /// Adds a point to the line that endLine() will close.
    void addPoint(QPointF const& point) { m_points.push_back(point); }
    /// Closes the line of the points added since the last one. There are two at least.
    void endLine() { m_ends.push_back(static_cast<std::uint32_t>(m_points.size())); }
    /// Applies `map` to every point.
    template<typename Map>
    void mapPoints(Map const& map) {
        for (QPointF& point : m_points)
            point = map(point);
    }

private:
    std::vector<QPointF> m_points;
    std::vector<std::uint32_t> m_ends; ///< of line i: index behind its last point
};

} // namespace sim
