// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "simengine/document/markobject.h"

namespace sim {

/// A part of an object as it is drawn: polylines of one pen.
struct SceneLeaf {
    std::vector<FlatLine> lines;
    std::vector<QPointF> places; ///< mark points
    int pen = 0;
    bool works = true;
};

/// What the view keeps of one object: its polylines in mm, fine enough for the scale that they were made for.
class SceneItem {
public:
    SceneItem(ObjectPtr object, double tolerance);

    const ObjectPtr& object() const { return m_object; }
    const Box& bounds() const { return m_object->bounds(); }
    const std::vector<SceneLeaf>& leaves() const { return m_leaves; }
    qint64 vertexCount() const { return m_vertices; }
    /// Whether the polylines are as fine as asked for. Straight geometry always is.
    bool isFineEnough(double tolerance) const { return !m_curved || m_tolerance <= tolerance; }

private:
    void collect(const MarkObject& object, const QTransform& outer, bool works);

    ObjectPtr m_object;
    double m_tolerance;
    bool m_curved = false;
    std::vector<SceneLeaf> m_leaves;
    qint64 m_vertices = 0;
};

} // namespace sim
