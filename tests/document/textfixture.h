// SPDX-License-Identifier: MIT
#pragma once

#include "samples.h"
#include "simengine/document/textmaker.h"

#include <QPainterPath>
#include <cmath>

/// Texts as they are asked for, and the area that they mark.
namespace texts {

/// A family that the packages of this program install.
inline const QString kFamily = QStringLiteral("WenQuanYi Micro Hei");

inline sim::TextSpec strokes(const QString& text, double height = 5.0) {
    sim::TextSpec spec;
    spec.text = text;
    spec.family = QStringLiteral("rowmans");
    spec.height = height;
    return spec;
}

inline sim::TextSpec outlines(const QString& text, double height = 5.0) {
    sim::TextSpec spec = strokes(text, height);
    spec.family = kFamily;
    spec.singleLine = false;
    return spec;
}

/// Area that the closed contours cover odd-even, mm².
inline double hatchedArea(const sim::PathShape& path) {
    QPainterPath painter;
    std::vector<sim::FlatLine> lines;
    sim::flattenShape(sim::Shape(path), QTransform(), lines, 1e-4);
    for (const sim::FlatLine& line : lines)
        painter.addPolygon(line.points);
    painter.setFillRule(Qt::OddEvenFill);
    double area = 0.0;
    for (const QPolygonF& polygon : painter.simplified().toFillPolygons()) {
        for (int i = 1; i < polygon.size(); ++i)
            area += polygon[i - 1].x() * polygon[i].y() - polygon[i].x() * polygon[i - 1].y();
    }
    return std::abs(area) / 2.0;
}

} // namespace texts
