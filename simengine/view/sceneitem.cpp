// SPDX-License-Identifier: GPL-2.0-or-later
#include "simengine/view/sceneitem.h"

namespace sim {

namespace {

/// About so many lines of a fill are drawn when a hatch is to be shown in the simple way.
constexpr std::size_t kSimpleHatchLines = 100;

bool isCurved(const Shape& shape) {
    switch (kindOf(shape)) {
    case ObjectKind::Circle:
    case ObjectKind::Arc:
        return true;
    case ObjectKind::Path:
        return std::get<PathShape>(shape).verbs.contains(PathVerb::Cubic);
    case ObjectKind::Text:
        return std::get<TextShape>(shape).outline.verbs.contains(PathVerb::Cubic);
    case ObjectKind::Generated:
        return std::get<GeneratedShape>(shape).outline.verbs.contains(PathVerb::Cubic);
    default:
        return false;
    }
}

} // namespace

SceneItem::SceneItem(ObjectPtr object, double tolerance, const Cancellation* cancellation)
    : m_object(std::move(object))
    , m_tolerance(tolerance) {
    collect(*m_object, QTransform(), 0.0, true, cancellation);
}

void SceneItem::collect(const MarkObject& object, const QTransform& outer, double turn, bool works,
                        const Cancellation* cancellation) {
    if (!goesOn(cancellation))
        return;
    const QTransform placed = object.transform() * outer;
    works = works && object.works();
    if (const auto* group = std::get_if<GroupShape>(&object.shape())) {
        for (const ObjectPtr& child : group->children)
            collect(*child, placed, turn + object.angle(), works, cancellation);
        return;
    }
    collectOutline(object, placed, works && object.data().hatch.enableEdge);
    collectHatch(object, outer, turn, works, cancellation);
}

void SceneItem::collectOutline(const MarkObject& object, const QTransform& placed, bool works) {
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

void SceneItem::collectHatch(const MarkObject& object, const QTransform& outer, double turn, bool works,
                             const Cancellation* cancellation) {
    const auto hatch = object.hatch(outer, turn, cancellation);
    if (!hatch)
        return;
    for (const HatchPart& part : *hatch) {
        SceneLeaf leaf;
        leaf.pen = part.pen;
        leaf.works = works;
        leaf.hatch = std::shared_ptr<const PackedLines>(hatch, &part.lines);
        if (object.data().hatch.showSimple)
            leaf.hatchStep = 1 + part.lines.count() / kSimpleHatchLines;
        m_vertices += qint64(part.lines.pointCount() / leaf.hatchStep);
        m_leaves.push_back(std::move(leaf));
    }
}

} // namespace sim
