// SPDX-License-Identifier: MIT
#include "polygon/roundedcorners.h"

#include <QtMath>
#include <algorithm>
#include <cmath>

namespace toolmodules {

namespace {

constexpr double kStraight = 1.0e-9;      ///< radians of turn below which a corner is none
constexpr double kMostSweep = M_PI / 4.0; ///< of one curve: off by less than 5 millionths of the radius

double length(const QPointF& v) {
    return std::hypot(v.x(), v.y());
}

/// The arc that takes a corner's place.
struct Fillet {
    QPointF begin;
    QPointF direction; ///< of the side that leads to it
    double turn = 0.0; ///< radians, positive to the left
    double radius = 0.0;
};

Fillet filletOf(const QPointF& before, const QPointF& corner, const QPointF& after, double radius) {
    const QPointF in = corner - before;
    const QPointF out = after - corner;
    const double cross = in.x() * out.y() - in.y() * out.x();
    const double turn = std::atan2(cross, QPointF::dotProduct(in, out));
    const double room = std::min(length(in), length(out)) / 2.0;
    const double slope = std::tan(std::abs(turn) / 2.0);
    Fillet fillet;
    fillet.direction = length(in) > 0.0 ? in / length(in) : QPointF(1.0, 0.0);
    fillet.turn = turn;
    if (std::abs(turn) < kStraight || radius <= 0.0) {
        fillet.begin = corner;
        return fillet;
    }
    const double cut = std::min(radius * slope, room);
    fillet.radius = cut / slope;
    fillet.begin = corner - cut * fillet.direction;
    return fillet;
}

void addArc(ToolContour& contour, const Fillet& fillet) {
    if (fillet.radius <= 0.0)
        return;
    const double side = fillet.turn > 0.0 ? 1.0 : -1.0;
    const QPointF left(-fillet.direction.y(), fillet.direction.x());
    const QPointF middle = fillet.begin + side * fillet.radius * left;
    const int pieces = std::max(1, int(std::ceil(std::abs(fillet.turn) / kMostSweep)));
    const double step = fillet.turn / pieces;
    const double handle = 4.0 / 3.0 * std::tan(std::abs(step) / 4.0) * fillet.radius;
    const double start = std::atan2(fillet.begin.y() - middle.y(), fillet.begin.x() - middle.x());
    for (int i = 0; i < pieces; ++i) {
        const double from = start + i * step;
        const double to = from + step;
        const QPointF radialFrom(std::cos(from), std::sin(from));
        const QPointF radialTo(std::cos(to), std::sin(to));
        const auto tangent = [side](const QPointF& radial) { return side * QPointF(-radial.y(), radial.x()); };
        ToolSegment arc;
        arc.curved = true;
        arc.handle1 = middle + fillet.radius * radialFrom + handle * tangent(radialFrom);
        arc.end = middle + fillet.radius * radialTo;
        arc.handle2 = arc.end - handle * tangent(radialTo);
        contour.segments.append(arc);
    }
}

} // namespace

ToolContour roundedOutline(const QVector<QPointF>& corners, double radius) {
    ToolContour contour;
    contour.closed = true;
    const int count = corners.size();
    for (int i = 0; i < count; ++i) {
        const Fillet fillet =
            filletOf(corners.at((i + count - 1) % count), corners.at(i), corners.at((i + 1) % count), radius);
        if (i == 0)
            contour.start = fillet.begin;
        else
            contour.segments.append({false, {}, {}, fillet.begin});
        addArc(contour, fillet);
    }
    return contour;
}

} // namespace toolmodules
