// SPDX-License-Identifier: GPL-2.0-or-later
#include "simengine/view/threepoints.h"

#include <QtMath>

namespace sim {

namespace {

double degreesOf(const QPointF& from, const QPointF& to) {
    return qRadiansToDegrees(std::atan2(to.y() - from.y(), to.x() - from.x()));
}

} // namespace

std::optional<CircleShape> circleThrough(const QPointF& a, const QPointF& b, const QPointF& c) {
    // With `a` as the origin the numbers stay small far from the field centre.
    const QPointF p = b - a;
    const QPointF q = c - a;
    const double cross = 2.0 * (p.x() * q.y() - p.y() * q.x());
    const double pp = QPointF::dotProduct(p, p);
    const double qq = QPointF::dotProduct(q, q);
    if (std::abs(cross) <= 1e-9 * std::max(pp, qq) || pp == 0.0 || qq == 0.0)
        return std::nullopt;
    const QPointF center((q.y() * pp - p.y() * qq) / cross, (p.x() * qq - q.x() * pp) / cross);
    CircleShape circle;
    circle.center = a + center;
    circle.radius = std::hypot(center.x(), center.y());
    circle.startAngle = degreesOf(circle.center, a);
    circle.clockwise = cross < 0.0;
    return circle;
}

std::optional<ArcShape> arcThrough(const QPointF& a, const QPointF& b, const QPointF& c) {
    const std::optional<CircleShape> circle = circleThrough(a, b, c);
    if (!circle)
        return std::nullopt;
    ArcShape arc;
    arc.center = circle->center;
    arc.radius = circle->radius;
    arc.startAngle = circle->startAngle;
    double sweep = degreesOf(circle->center, c) - circle->startAngle;
    if (circle->clockwise) {
        while (sweep >= 0.0)
            sweep -= 360.0;
    } else {
        while (sweep <= 0.0)
            sweep += 360.0;
    }
    arc.sweepAngle = sweep;
    return arc;
}

} // namespace sim
