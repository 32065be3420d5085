// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "engine/basepoint.h"

#include <QPointF>
#include <algorithm>
#include <limits>

namespace sim {

/// Axis-parallel rectangle in mm, y upwards. Unlike QRectF it knows nothing at all (a new box) from a rectangle without
/// width or height (a point, a horizontal line), and the latter counts in unions.
struct Box {
    double minX = std::numeric_limits<double>::infinity();
    double minY = std::numeric_limits<double>::infinity();
    double maxX = -std::numeric_limits<double>::infinity();
    double maxY = -std::numeric_limits<double>::infinity();

    bool isValid() const { return minX <= maxX && minY <= maxY; }
    double width() const { return maxX - minX; }
    double height() const { return maxY - minY; }
    QPointF center() const { return {(minX + maxX) / 2.0, (minY + maxY) / 2.0}; }

    void add(double x, double y) {
        minX = std::min(minX, x);
        minY = std::min(minY, y);
        maxX = std::max(maxX, x);
        maxY = std::max(maxY, y);
    }
    void add(const QPointF& p) { add(p.x(), p.y()); }
    void add(const Box& other) {
        if (other.isValid()) {
            add(other.minX, other.minY);
            add(other.maxX, other.maxY);
        }
    }
    bool contains(const QPointF& p, double margin = 0.0) const {
        return p.x() >= minX - margin && p.x() <= maxX + margin && p.y() >= minY - margin && p.y() <= maxY + margin;
    }
    bool contains(const Box& other) const {
        return other.minX >= minX && other.maxX <= maxX && other.minY >= minY && other.maxY <= maxY;
    }
    bool intersects(const Box& other) const {
        return minX <= other.maxX && other.minX <= maxX && minY <= other.maxY && other.minY <= maxY;
    }

    /// The place of the base point on the rectangle: row by row from the top left.
    QPointF at(BasePoint point) const {
        const int column = point % 3;
        const int row = point / 3;
        return {column == 0   ? minX
                : column == 1 ? center().x()
                              : maxX,
                row == 0   ? maxY
                : row == 1 ? center().y()
                           : minY};
    }
};

} // namespace sim
