// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

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

/// Rows in the middle of the contours' height: as many as fit, one at least; none for contours without height.
RowGrid rowGridFor(std::vector<HatchContour> const& contours, double pitch);

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

/// Number of the stretches of all rows, those without length included. Exact, and as quick as one look at every edge.
std::int64_t countRowStretches(std::vector<HatchContour> const& contours, RowGrid const& grid);

/// Gives the stretches of each row that has some, from left to right, the rows upwards. Inside is what an odd number of
/// contours encloses.
void scanRows(std::vector<HatchContour> const& contours, RowGrid const& grid,
              std::function<void(std::vector<RowStretch> const&)> const& take);

} // namespace sim
