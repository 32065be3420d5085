// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "simengine/document/shape.h"

namespace sim {

/// An ellipse as center + u cos t + v sin t; u and v are conjugate half axes.
struct EllipseAxes {
    QPointF center;
    QPointF u;
    QPointF v;

    QPointF at(double t) const;
    QPointF slope(double t) const;
    EllipseAxes mapped(const QTransform& transform) const;
};

/// From one angle on to the other, counter-clockwise, degrees; equal ones make a full turn.
double sweepOf(double fromDegrees, double toDegrees);

/// Appends the part of an ellipse from t = `start` over `sweep`, radians, as curves; the path's last point is its
/// beginning. Off by less than 10^-7 of the larger half axis.
void appendEllipse(PathShape& path, const EllipseAxes& ellipse, double start, double sweep);

/// Appends the arc to `end` whose bulge is the tangent of a quarter of its angle, positive counter-clockwise; a line
/// where there is no bulge. The path's last point is the beginning.
void appendBulge(PathShape& path, const QPointF& end, double bulge);

/// Closes a contour whose end lies within `distance` of its beginning; a last line goes, since closing draws it.
void closeMeeting(PathShape& contour, double distance);

/// Angle, radians in (-2 pi, 2 pi), and centre of the arc from `a` through `b` to `c`; false when they lie on a line.
bool arcThrough(const QPointF& a, const QPointF& b, const QPointF& c, QPointF& center, double& sweep);

} // namespace sim
