// SPDX-License-Identifier: MIT
#pragma once

#include "common/numbertool.h"

namespace toolmodules {

/// A regular polygon in a circle about (0, 0), its first corner at the start angle.
class PolygonTool : public NumberTool {
public:
    static constexpr char kClass[] = "ToolPolygon";
    PolygonTool();
    QVector<ToolContour> MakeOutline(QVector<double> const& values) const override;
    void Place(QPointF const& drag, QVector<double>& values) const override;
};

/// A star: corners on the circle, and between them corners on a smaller one.
class StarTool : public NumberTool {
public:
    static constexpr char kClass[] = "ToolStar";
    StarTool();
    QVector<ToolContour> MakeOutline(QVector<double> const& values) const override;
    void Place(QPointF const& drag, QVector<double>& values) const override;
};

} // namespace toolmodules
