// SPDX-License-Identifier: GPL-2.0-or-later
#include "simengine/view/sceneitem.h"

namespace sim {

namespace {

bool isCurved(const Shape& shape) {
    switch (kindOf(shape)) {
    case ObjectKind::Circle:
    case ObjectKind::Arc:
        return true;
    case ObjectKind::Path:
        return std::get<PathShape>(shape).verbs.contains(PathVerb::Cubic);
    default:
        return false;
    }
}

} // namespace

SceneItem::SceneItem(ObjectPtr object, double tolerance)
    : m_object(std::move(object))
    , m_tolerance(tolerance) {
    collect(*m_object, QTransform(), true);
}

void SceneItem::collect(const MarkObject& object, const QTransform& outer, bool works) {
    const QTransform placed = object.transform() * outer;
    works = works && object.works();
    if (const auto* group = std::get_if<GroupShape>(&object.shape())) {
        for (const ObjectPtr& child : group->children)
            collect(*child, placed, works);
        return;
    }
    SceneLeaf leaf;
    leaf.pen = object.pen();
    leaf.works = works;
    flattenShape(object.shape(), placed, leaf.lines, m_tolerance);
    m_curved = m_curved || isCurved(object.shape());
    std::size_t kept = 0;
    for (FlatLine& line : leaf.lines) {
        m_vertices += line.points.size();
        if (line.points.size() == 1) {
            leaf.places.push_back(line.points.first());
        } else {
            if (&leaf.lines[kept] != &line)
                leaf.lines[kept] = std::move(line);
            ++kept;
        }
    }
    leaf.lines.resize(kept);
    m_leaves.push_back(std::move(leaf));
}

} // namespace sim
