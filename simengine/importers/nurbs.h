// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "simengine/document/shape.h"

namespace sim {

class ImportBudget;

/// A spline as drawings have it: control points with weights over knots.
struct Nurbs {
    int degree = 3;
    std::vector<double> knots;
    std::vector<QPointF> points;
    std::vector<double> weights; ///< empty, or one for each point

    /// Highest degree that is taken.
    static constexpr int kMostDegree = 24;
};

/// Knots rise, their number fits, weights are positive, all is finite.
bool isSound(const Nurbs& spline);

/// Appends the spline as cubic curves within `tolerance` of it; splines up to the third degree without weights exactly.
/// The first point is a Move. False when the spline is not sound or would need too many curves or more time than a
/// budget has.
bool appendNurbs(PathShape& path, const Nurbs& spline, double tolerance, ImportBudget* budget = nullptr);

/// The larger side of the points' box.
double extentOf(const std::vector<QPointF>& points);

/// Appends a curve that goes smoothly through the points; a closed one comes back to the first.
void appendThrough(PathShape& path, const std::vector<QPointF>& points, bool closed);

} // namespace sim
