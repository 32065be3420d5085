// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "simengine/card/job.h"

#include <cstddef>
#include <memory>
#include <string>
#include <vector>

namespace sim {

/// The high-precision correction table as the card holds it: what is added to a commanded place, on a square lattice
/// over the whole field. Immutable.
class GridCorrection {
public:
    static constexpr int kSide = 257;
    static constexpr std::size_t kBytes = std::size_t(kSide) * kSide * 2 * sizeof(double);

    /// From the bytes of a table file: cells of two little-endian doubles, dx and dy in mm, column by column within a
    /// row, the lowest row first. fieldX and fieldY are the field's edges in mm. Null, and a reason in `error`, for
    /// another length, a value that is no number or reaches beyond the field, or a field that has no size.
    static std::shared_ptr<const GridCorrection> parse(const unsigned char* bytes, std::size_t size, double fieldX,
                                                       double fieldY, std::string& error);

    /// Correction at a place in mm: bilinear between the four cells round it, nothing outside the field.
    Point at(Point place) const;

private:
    GridCorrection() = default;
    const Point& cell(int column, int row) const {
        return m_cells[static_cast<std::size_t>(column) +
                       static_cast<std::size_t>(kSide) * static_cast<std::size_t>(row)];
    }

    std::vector<Point> m_cells;
    double m_fieldX = 0.0;
    double m_fieldY = 0.0;
};

} // namespace sim
