// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "simengine/document/markobject.h"

namespace sim {

/// A part of an object as it is drawn: polylines of one pen.
struct SceneLeaf {
    std::vector<FlatLine> lines;
    /// Hatch, in a leaf of its own without `lines`; null elsewhere. Of its lines every `hatchStep`th is drawn.
    std::shared_ptr<const PackedLines> hatch;
    std::size_t hatchStep = 1;
    std::vector<QPointF> places; ///< mark points
    int pen = 0;
    bool works = true; ///< is marked
};

/// What the view keeps of one object: its polylines in mm, fine enough for the scale that they were made for, and its
/// hatch as it is marked. An outline that the hatch settings leave out is there as one that is not marked, so that the
/// object can be seen.
class SceneItem {
public:
    /// Not whole when it was cancelled.
    SceneItem(ObjectPtr object, double tolerance, const Cancellation* cancellation = nullptr);

    const ObjectPtr& object() const { return m_object; }
    const Box& bounds() const { return m_object->bounds(); }
    const std::vector<SceneLeaf>& leaves() const { return m_leaves; }
    qint64 vertexCount() const { return m_vertices; }
    /// Whether the polylines are as fine as asked for. Straight geometry always is.
    bool isFineEnough(double tolerance) const { return !m_curved || m_tolerance <= tolerance; }

private:
    void collect(const MarkObject& object, const QTransform& outer, double turn, bool works,
                 const Cancellation* cancellation);
    void collectOutline(const MarkObject& object, const QTransform& placed, bool works);
    void collectHatch(const MarkObject& object, const QTransform& outer, double turn, bool works,
                      const Cancellation* cancellation);

    ObjectPtr m_object;
    double m_tolerance;
    bool m_curved = false;
    std::vector<SceneLeaf> m_leaves;
    qint64 m_vertices = 0;
};

} // namespace sim
