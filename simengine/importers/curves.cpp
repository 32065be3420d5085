// SPDX-License-Identifier: GPL-2.0-or-later
#include "simengine/importers/curves.h"

#include <cmath>

namespace sim {

namespace {

/// A curve stands for at most this angle: the error goes with its sixth power and is below 7e-8 of the radius here.
constexpr double kMostAngle = M_PI / 8.0;

} // namespace

QPointF EllipseAxes::at(double t) const {
    return center + u * std::cos(t) + v * std::sin(t);
}

QPointF EllipseAxes::slope(double t) const {
    return v * std::cos(t) - u * std::sin(t);
}

EllipseAxes EllipseAxes::mapped(const QTransform& t) const {
    const auto turned = [&](const QPointF& p) {
        return QPointF(t.m11() * p.x() + t.m21() * p.y(), t.m12() * p.x() + t.m22() * p.y());
    };
    return {t.map(center), turned(u), turned(v)};
}

double sweepOf(double fromDegrees, double toDegrees) {
    const double sweep = std::fmod(toDegrees - fromDegrees, 360.0);
    return sweep > 1e-9 ? sweep : sweep + 360.0;
}

void appendEllipse(PathShape& path, const EllipseAxes& ellipse, double start, double sweep) {
    const int parts = std::max(1, int(std::ceil(std::abs(sweep) / kMostAngle - 1e-9)));
    const double step = sweep / parts;
    const double handle = 4.0 / 3.0 * std::tan(step / 4.0);
    for (int i = 0; i < parts; ++i) {
        const double from = start + step * i;
        const double to = start + step * (i + 1);
        const QPointF begin = path.points.isEmpty() ? ellipse.at(from) : path.points.last();
        const QPointF end = ellipse.at(to);
        path.cubicTo(begin + ellipse.slope(from) * handle, end - ellipse.slope(to) * handle, end);
    }
}

void appendBulge(PathShape& path, const QPointF& end, double bulge) {
    const QPointF begin = path.points.last();
    const QPointF chord = end - begin;
    const double length = std::hypot(chord.x(), chord.y());
    // a bulge of less makes less than a nanometre on a metre
    if (!std::isfinite(bulge) || std::abs(bulge) < 1e-12 || !(length > 0.0)) {
        path.lineTo(end);
        return;
    }
    const QPointF normal(-chord.y(), chord.x());
    const QPointF center = (begin + end) / 2.0 + normal * ((1.0 - bulge * bulge) / (4.0 * bulge));
    const QPointF radius = begin - center;
    const EllipseAxes circle{center, radius, QPointF(-radius.y(), radius.x())};
    appendEllipse(path, circle, 0.0, 4.0 * std::atan(bulge));
    path.points.last() = end;
}

void closeMeeting(PathShape& contour, double distance) {
    const QPointF gap = contour.points.last() - contour.points.first();
    if (!(std::hypot(gap.x(), gap.y()) <= distance))
        return;
    if (contour.verbs.last() == PathVerb::Line) {
        contour.verbs.removeLast();
        contour.points.removeLast();
    } else {
        contour.points.last() = contour.points.first();
    }
    contour.close();
}

bool arcThrough(const QPointF& a, const QPointF& b, const QPointF& c, QPointF& center, double& sweep) {
    const QPointF ab = b - a;
    const QPointF ac = c - a;
    const double cross = ab.x() * ac.y() - ab.y() * ac.x();
    const double abab = QPointF::dotProduct(ab, ab);
    const double acac = QPointF::dotProduct(ac, ac);
    if (!(std::abs(cross) > 1e-12 * std::max(abab, acac)))
        return false;
    center = a + QPointF(ac.y() * abab - ab.y() * acac, ab.x() * acac - ac.x() * abab) / (2.0 * cross);
    const auto angleOf = [&](const QPointF& p) { return std::atan2(p.y() - center.y(), p.x() - center.x()); };
    sweep = angleOf(c) - angleOf(a);
    if (cross > 0.0 && sweep < 0.0)
        sweep += 2.0 * M_PI;
    if (cross < 0.0 && sweep > 0.0)
        sweep -= 2.0 * M_PI;
    return true;
}

} // namespace sim
