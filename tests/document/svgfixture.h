// SPDX-License-Identifier: MIT
#pragma once

#include "samples.h"
#include "simengine/importers/svgimport.h"

#include <QByteArray>
#include <QPointF>
#include <cmath>

/// Drawings as text, and what was made of them.
namespace svg {

inline double lengthOf(const sim::MarkObject& object) {
    double length = 0.0;
    for (const sim::FlatLine& line : object.flattened())
        length += sim::polylineLength(line.points);
    return length;
}

inline double lengthOf(const sim::ImportResult& result) {
    double length = 0.0;
    for (const sim::ObjectPtr& object : result.objects)
        length += lengthOf(*object);
    return length;
}

inline sim::Box boundsOf(const sim::ImportResult& result) {
    sim::Box box;
    for (const sim::ObjectPtr& object : result.objects)
        box.add(object->bounds());
    return box;
}

/// A page of 100 x 80 mm whose user units are millimetres.
inline sim::ImportResult importBody(const QByteArray& body,
                                    sim::ImportPlacement placement = sim::ImportPlacement::CenterPage) {
    sim::ImportOptions options;
    options.placement = placement;
    options.center = {50, -40}; // so that page places are (x, -y)
    return sim::importSvgData("<svg xmlns='http://www.w3.org/2000/svg' xmlns:xlink='http://www.w3.org/1999/xlink' "
                              "width='100mm' height='80mm' viewBox='0 0 100 80'>" +
                                  body + "</svg>",
                              options);
}

inline bool near(const QPointF& a, const QPointF& b, double within = 1e-6) {
    return std::hypot(a.x() - b.x(), a.y() - b.y()) <= within;
}

inline QStringList classes(const sim::ImportResult& result) {
    QStringList names;
    for (const sim::ObjectPtr& object : result.objects)
        names.append(object->className());
    return names;
}

inline int skippedCount(const sim::ImportResult& result, const QString& kind) {
    for (const sim::ImportSkip& skip : result.skipped) {
        if (skip.kind == kind)
            return skip.count;
    }
    return 0;
}

} // namespace svg
