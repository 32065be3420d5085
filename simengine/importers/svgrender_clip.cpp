// SPDX-License-Identifier: GPL-2.0-or-later
#include "simengine/importers/svgrender.h"

#include "simengine/document/limits.h"

namespace sim {

/// Adds the clip of an element to those around it. False when nothing of the element can be seen.
bool SvgRender::applyClip(int node, Context& context) {
    const QString id = context.style.clip;
    if (id.isEmpty())
        return true;
    const auto found = m_tree.ids.constFind(id);
    if (found == m_tree.ids.constEnd() || m_tree.nodes[size_t(*found)].element != SvgElement::ClipPath) {
        skip("clip-path", Note::BadReference);
        return true;
    }
    const SvgNode& clip = m_tree.nodes[size_t(*found)];
    QTransform toPage = context.toPage;
    if (clip.detail && clip.detail->ownUnits) {
        const Box box = boxOf(node, context);
        if (!box.isValid()) {
            skip(m_tree.nodes[size_t(node)].name, Note::ClippedAway);
            return false;
        }
        toPage = QTransform(box.width(), 0, 0, box.height(), box.minX, box.minY) * toPage;
    }
    auto clips = std::make_shared<std::vector<ClipArea>>();
    if (context.clips)
        *clips = *context.clips;
    clips->push_back(clipArea(*found, context, toPage));
    context.clips = clips;
    return m_budget.ok();
}

/// What a clip leaves: all its shapes together, within its own clip.
ClipArea SvgRender::clipArea(int clip, const Context& context, const QTransform& toPage) {
    if (!enter(clip))
        return {};
    Context inner = context;
    ++inner.depth;
    inner.clips.reset();
    inner.style = m_sheet.styleOf(m_tree, clip, SvgStyle());
    inner.toPage = m_tree.nodes[size_t(clip)].transform ? *m_tree.nodes[size_t(clip)].transform * toPage : toPage;
    std::vector<ClipArea> areas;
    for (int child = m_tree.nodes[size_t(clip)].firstChild; child >= 0 && m_budget.elements();
         child = m_tree.nodes[size_t(child)].next)
        collect(child, inner, areas);
    ClipArea area = unitedAreas(areas, m_budget);
    const auto found = m_tree.ids.constFind(inner.style.clip);
    if (!inner.style.clip.isEmpty() && found != m_tree.ids.constEnd() &&
        m_tree.nodes[size_t(*found)].element == SvgElement::ClipPath && m_budget.ok()) {
        const ClipArea own = clipArea(*found, context, toPage);
        area.path = clippedToAreas(area.path, {own}, true, m_budget);
        area.evenOdd = true;
    }
    m_tree.nodes[size_t(clip)].active = false;
    return area;
}

/// The outlines of an element and all in it, in mm.
void SvgRender::collect(int node, const Context& around, std::vector<ClipArea>& areas) {
    if (around.depth > ImportBudget::kMostDepth) {
        m_budget.fail(Note::TooDeep);
        return;
    }
    const SvgNode& self = m_tree.nodes[size_t(node)];
    if (!m_budget.elements() || self.badTransform)
        return;
    Context context = around;
    ++context.depth;
    context.style = m_sheet.styleOf(m_tree, node, around.style);
    if (!context.style.displayed || !context.style.visible)
        return;
    if (self.transform)
        context.toPage = *self.transform * around.toPage;
    Outline outline;
    switch (self.element) {
    case SvgElement::Use: {
        const auto found = self.detail ? m_tree.ids.constFind(self.detail->reference) : m_tree.ids.constEnd();
        if (found == m_tree.ids.constEnd() || !enter(node))
            return;
        context.toPage = QTransform::fromTranslate(length(node, SvgX, context.viewport, 0.0),
                                                   length(node, SvgY, context.viewport, 0.0)) *
                         context.toPage;
        collect(*found, context, areas);
        m_tree.nodes[size_t(node)].active = false;
        return;
    }
    case SvgElement::Group:
    case SvgElement::Svg:
        if (!enter(node))
            return;
        for (int child = self.firstChild; child >= 0 && m_budget.ok(); child = m_tree.nodes[size_t(child)].next)
            collect(child, context, areas);
        m_tree.nodes[size_t(node)].active = false;
        return;
    case SvgElement::Path:
    case SvgElement::Rect:
    case SvgElement::Ellipse:
        break;
    case SvgElement::Text:
        skip("clipPath", Note::NotInClip);
        return;
    default:
        return;
    }
    if (!outlineOf(node, context, outline))
        return;
    ClipArea area;
    area.evenOdd = context.style.clipEvenOdd;
    if (outline.kind == Outline::Path)
        area.path = mapPath(outline.path, context.toPage);
    else if (outline.kind == Outline::Rect)
        area.path = mapPath(shapeToPath(RectShape{outline.rect}), context.toPage);
    else
        area.path = mapPath(shapeToPath(CircleShape{{0.0, 0.0}, 1.0}),
                            QTransform(outline.rect.width() / 2, 0, 0, outline.rect.height() / 2,
                                       outline.rect.center().x(), outline.rect.center().y()) *
                                context.toPage);
    const Box box = shapeBounds(Shape(area.path), QTransform());
    const double limit = 10.0 * kMaxCoordinate;
    if (!box.isValid() || !(box.minX > -limit && box.maxX < limit && box.minY > -limit && box.maxY < limit))
        skip("clipPath", Note::OutOfRange);
    else if (m_budget.points(area.path.points.size()))
        areas.push_back(std::move(area));
}

/// The extent of an element in its own user units, for clips that are measured by it.
Box SvgRender::boxOf(int node, const Context& context) {
    Context own = context;
    own.clips.reset();
    // the element's own transform is part of the units that the box is wanted in
    const SvgNode& self = m_tree.nodes[size_t(node)];
    own.toPage = self.transform ? self.transform->inverted() : QTransform();
    std::vector<ClipArea> areas;
    collect(node, own, areas);
    Box box;
    for (const ClipArea& area : areas)
        box.add(shapeBounds(Shape(area.path), QTransform()));
    return box;
}

} // namespace sim
