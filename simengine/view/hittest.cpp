// SPDX-License-Identifier: GPL-2.0-or-later
#include "simengine/view/hittest.h"

#include <cmath>
#include <limits>

namespace sim {

namespace {

double squaredDistance(const QPointF& p, const QPointF& a, const QPointF& b) {
    const QPointF d = b - a;
    const double square = QPointF::dotProduct(d, d);
    const double t = square > 0.0 ? qBound(0.0, QPointF::dotProduct(p - a, d) / square, 1.0) : 0.0;
    const QPointF off = p - (a + t * d);
    return QPointF::dotProduct(off, off);
}

// Whether the segment touches the area, by cutting it down to the area's four sides.
bool segmentTouches(const QPointF& a, const QPointF& b, const Box& area) {
    double from = 0.0, to = 1.0;
    const QPointF d = b - a;
    const double p[] = {-d.x(), d.x(), -d.y(), d.y()};
    const double q[] = {a.x() - area.minX, area.maxX - a.x(), a.y() - area.minY, area.maxY - a.y()};
    for (int i = 0; i < 4; ++i) {
        if (p[i] == 0.0) {
            if (q[i] < 0.0)
                return false;
        } else if (p[i] < 0.0) {
            from = std::max(from, q[i] / p[i]);
        } else {
            to = std::min(to, q[i] / p[i]);
        }
    }
    return from <= to;
}

bool isInside(const SceneItem& item, const QPointF& place) {
    bool inside = false;
    for (const SceneLeaf& leaf : item.leaves()) {
        for (const FlatLine& line : leaf.lines) {
            if (line.closed && line.points.containsPoint(place, Qt::OddEvenFill))
                inside = !inside;
        }
    }
    return inside;
}

} // namespace

double distanceTo(const SceneItem& item, const QPointF& place) {
    double best = std::numeric_limits<double>::infinity();
    for (const SceneLeaf& leaf : item.leaves()) {
        for (const QPointF& mark : leaf.places)
            best = std::min(best, squaredDistance(place, mark, mark));
        for (const FlatLine& line : leaf.lines) {
            const QPointF* points = line.points.constData();
            for (int i = 1; i < line.points.size(); ++i)
                best = std::min(best, squaredDistance(place, points[i - 1], points[i]));
        }
    }
    return std::sqrt(best);
}

bool touches(const SceneItem& item, const Box& area) {
    for (const SceneLeaf& leaf : item.leaves()) {
        for (const QPointF& mark : leaf.places) {
            if (area.contains(mark))
                return true;
        }
        for (const FlatLine& line : leaf.lines) {
            const QPointF* points = line.points.constData();
            for (int i = 1; i < line.points.size(); ++i) {
                if (segmentTouches(points[i - 1], points[i], area))
                    return true;
            }
        }
    }
    return false;
}

int objectAt(SceneCache& scene, const QPointF& place, double reach, double pixelsPerMm) {
    const DocumentState& state = *scene.state();
    int best = -1;
    int inside = -1;
    double nearest = reach;
    for (int i = 0; i < state.count(); ++i) {
        const ObjectPtr& object = state.at(i);
        if (!object->bounds().contains(place, reach))
            continue;
        const SceneItem& item = scene.item(i, pixelsPerMm);
        const double distance = distanceTo(item, place);
        if (distance <= nearest) {
            nearest = distance;
            best = i;
        } else if (object->isFilled() && isInside(item, place)) {
            inside = i;
        }
    }
    return best >= 0 ? best : inside;
}

QList<int> objectsIn(SceneCache& scene, const Box& area, bool crossing, double pixelsPerMm) {
    const DocumentState& state = *scene.state();
    QList<int> found;
    for (int i = 0; i < state.count(); ++i) {
        const Box& bounds = state.at(i)->bounds();
        if (!bounds.isValid() || !area.intersects(bounds))
            continue;
        if (area.contains(bounds) || (crossing && touches(scene.item(i, pixelsPerMm), area)))
            found.append(i);
    }
    return found;
}

} // namespace sim
