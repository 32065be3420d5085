// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "simengine/document/cancellation.h"

#include <QPointF>
#include <cstdint>
#include <functional>
#include <vector>

namespace sim {

/// A closed contour without its repeated first point, in the frame of the hatch: the rows run along x.
using HatchContour = std::vector<QPointF>;

/// Where the rows lie: `count` of them, the first at `first`, `pitch` apart, upwards.
struct RowGrid {
    double first = 0.0;
    double pitch = 0.0;
    std::int64_t count = 0;

    double y(std::int64_t row) const { return first + pitch * double(row); }
    /// The lowest row that is not below `y`, 0 to count.
    std::int64_t rowAt(double y) const;
};

/// Where a row enters or leaves the area: on edge `edge` of contour `contour`, from its vertex `edge` to the next.
struct RowEnd {
    double x = 0.0;
    std::uint32_t contour = 0;
    std::uint32_t edge = 0;
};

/// A stretch of a row inside the area, `left`.x < `right`.x.
struct RowStretch {
    std::int64_t row = 0;
    RowEnd left;
    RowEnd right;
};

/// Contours under rows in the middle of their height: as many as fit, one at least; none for contours without height.
/// Which row a vertex belongs to is found once, for all that is asked about the rows. The contours must outlive it.
class HatchRows {
public:
    HatchRows(std::vector<HatchContour> const& contours, double pitch);
    HatchRows(std::vector<HatchContour>&& contours, double pitch) = delete;

    std::vector<HatchContour> const& contours() const { return m_contours; }
    RowGrid const& grid() const { return m_grid; }
    /// The lowest row that is not below a vertex, 0 to the number of rows.
    std::int64_t rowOf(std::size_t contour, std::size_t vertex) const { return m_rows[m_firsts[contour] + vertex]; }
    /// Number of the stretches of all rows, those without length included; of more than kMostHatchCount this one.
    std::int64_t stretchCount() const { return m_crossings / 2; }
    /// Number of the edges that cross rows.
    std::size_t edgeCount() const { return m_edges; }
    /// Gives the stretches of each row that has some, from left to right, the rows upwards. Inside is what an odd
    /// number of contours encloses.
    void scan(std::function<void(std::vector<RowStretch> const&)> const& take,
              Cancellation const* cancellation = nullptr) const;

private:
    void placeVertices();

    std::vector<HatchContour> const& m_contours;
    RowGrid m_grid;
    std::vector<std::int64_t> m_rows;  ///< of the vertices, one contour behind the other
    std::vector<std::size_t> m_firsts; ///< where in m_rows a contour begins
    std::size_t m_edges = 0;
    std::int64_t m_crossings = 0; ///< of the edges and the rows
};

} // namespace sim
