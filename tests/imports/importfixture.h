// SPDX-License-Identifier: MIT
#pragma once

#include "simengine/document/flatten.h"
#include "simengine/document/markobject.h"
#include "simengine/importers/importnotes.h"
#include "simengine/importers/importresult.h"

#include <QStringList>
#include <cmath>

/// What the tests of all importers ask of a result.
namespace imports {

inline double lengthOf(const sim::MarkObject& object) {
    double length = 0.0;
    for (const sim::FlatLine& line : object.flattened(1e-5))
        length += sim::polylineLength(line.points);
    return length;
}

inline double lengthOfAll(const sim::ImportResult& result) {
    double sum = 0.0;
    for (const sim::ObjectPtr& object : result.objects)
        sum += lengthOf(*object);
    return sum;
}

inline sim::Box boundsOf(const sim::ImportResult& result) {
    sim::Box box;
    for (const sim::ObjectPtr& object : result.objects)
        box.add(object->bounds());
    return box;
}

inline QStringList classes(const sim::ImportResult& result) {
    QStringList names;
    for (const sim::ObjectPtr& object : result.objects)
        names.append(object->className());
    return names;
}

/// "minX minY maxX maxY", rounded to a micrometre.
inline QString boxText(const sim::Box& box) {
    QStringList parts;
    for (double value : {box.minX, box.minY, box.maxX, box.maxY})
        parts << QString::number(std::round(value * 1000.0) / 1000.0 + 0.0);
    return parts.join(' ');
}

/// How often the note stands in a list, for a kind of the file.
inline int count(const QVector<sim::ImportSkip>& list, const QString& kind, sim::Note note) {
    for (const sim::ImportSkip& entry : list) {
        if (entry.kind == kind && entry.reason == sim::noteText(note))
            return entry.count;
    }
    return 0;
}

inline bool near(const QPointF& a, const QPointF& b, double within = 1e-6) {
    return std::hypot(a.x() - b.x(), a.y() - b.y()) <= within;
}

} // namespace imports
