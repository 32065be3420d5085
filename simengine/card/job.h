// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include <cstddef>
#include <memory>
#include <vector>

namespace sim {

/// A place in the scan field, mm, field centred at (0, 0), X to the right, Y up.
struct Point {
    double x = 0.0;
    double y = 0.0;
};

inline bool operator==(const Point& a, const Point& b) {
    return a.x == b.x && a.y == b.y;
}
inline bool operator!=(const Point& a, const Point& b) {
    return !(a == b);
}

/// What the head does with a job. The values are those of the card's mark type register.
enum class MarkKind {
    Laser = 0,         ///< marks with the laser
    RedPreview = 1,    ///< follows the contours with the pilot beam
    BorderPreview = 2, ///< goes round the whole job with the pilot beam, see BorderOutline
};

/// One polyline of a job, marked without lifting the laser; a single point is a mark point.
///
/// Points that are not finite are left out by the card; a stroke without any valid point is skipped. A pen outside
/// 0 to 19 is taken as pen 0.
struct Stroke {
    int pen = 0;
    std::vector<Point> points;
    /// Laser time of a mark point in µs; below 0 the pen's PointTime. Unused with two or more points.
    double dwellUs = -1.0;
    /// Strokes that follow one another with the same number of 0 or above and the same pen are one object: the pen's
    /// mark count repeats them together. With -1 the stroke is an object of its own.
    int object = -1;
    /// Length along the valid points, mm, when it is known already; below 0 the card measures it where it needs it.
    double lengthMm = -1.0;
};

/// The way of a border preview.
struct BorderWay {
    std::vector<Point> corners; ///< of the outline, the first one at the end again
    int pen = 0;                ///< of the first stroke, whose speeds it is gone round with
};

struct Job {
    std::vector<Stroke> strokes;
    MarkKind kind = MarkKind::Laser;
    /// When it is known already, see measureBorder().
    std::shared_ptr<const BorderWay> border;

    /// Number of points of all strokes.
    std::size_t vertexCount() const {
        std::size_t count = 0;
        for (const Stroke& stroke : strokes)
            count += stroke.points.size();
        return count;
    }
};

} // namespace sim
