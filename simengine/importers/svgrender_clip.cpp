// SPDX-License-Identifier: GPL-2.0-or-later
#include "simengine/document/limits.h"
#include "simengine/importers/svgrender.h"

#include <cmath>

namespace sim {

namespace {

/// Clips reach so far, mm; of larger ones the part that drawings can reach is left.
constexpr double kReach = 10.0 * kMaxCoordinate;

/// The part of a convex polygon on one side: sign * x, or y, up to kReach.
QVector<QPointF> cutPolygon(const QVector<QPointF>& points, bool across, double sign) {
    const auto beyond = [&](const QPointF& p) { return sign * (across ? p.x() : p.y()) - kReach; };
    QVector<QPointF> cut;
    for (int i = 0; i < points.size(); ++i) {
        const QPointF& a = points[(i + points.size() - 1) % points.size()];
        const QPointF& b = points[i];
        const double fromA = beyond(a);
        const double fromB = beyond(b);
        if ((fromA > 0.0) != (fromB > 0.0))
            cut.append(a + (b - a) * (fromA / (fromA - fromB)));
        if (fromB <= 0.0)
            cut.append(b);
    }
    return cut;
}

PathShape polygonPath(const QVector<QPointF>& points) {
    PathShape path;
    for (const QPointF& p : points) {
        if (path.points.isEmpty())
            path.moveTo(p);
        else
            path.lineTo(p);
    }
    if (!path.points.isEmpty())
        path.close();
    return path;
}

std::shared_ptr<const std::vector<ClipArea>> withClip(const std::shared_ptr<const std::vector<ClipArea>>& clips,
                                                      ClipArea clip) {
    auto all = clips ? std::make_shared<std::vector<ClipArea>>(*clips) : std::make_shared<std::vector<ClipArea>>();
    all->push_back(std::move(clip));
    return all;
}

} // namespace

/// Adds the edge of a drawing within the drawing to the clips. False when it is too far away to be reckoned with.
bool SvgRender::cutAtEdge(const QSizeF& size, Context& context) const {
    const QTransform& t = context.toPage;
    QVector<QPointF> edge{t.map(QPointF(0.0, 0.0)), t.map(QPointF(size.width(), 0.0)),
                          t.map(QPointF(size.width(), size.height())), t.map(QPointF(0.0, size.height()))};
    Box box;
    for (const QPointF& p : edge) {
        constexpr double kMost = 1e100;
        if (!(std::abs(p.x()) < kMost) || !(std::abs(p.y()) < kMost))
            return false;
        box.add(p.x(), p.y());
    }
    if (!isWithin(box, kReach)) {
        for (const bool across : {true, false}) {
            for (const double sign : {1.0, -1.0})
                edge = cutPolygon(edge, across, sign);
        }
    }
    context.clips = withClip(context.clips, {polygonPath(edge), false});
    return true;
}

/// The clip of that id; -1, and told, when there is none that can be used.
int SvgRender::clipNode(const QString& id) {
    const auto found = m_tree.ids.constFind(id);
    if (found == m_tree.ids.constEnd() || m_tree.nodes[size_t(*found)].element != SvgElement::ClipPath) {
        skip("clip-path", Note::BadReference);
        return -1;
    }
    if (!transformOf(*found, m_sheet.styleOf(m_tree, *found, SvgStyle()))) {
        skip("clipPath", Note::BadTransform);
        return -1;
    }
    return *found;
}

/// Adds the clip of an element to those around it. False when nothing of the element can be seen.
bool SvgRender::applyClip(int node, Context& context) {
    // in which units the root's clip lies, programs do not agree
    const bool unclear = node == 0 && !context.style.clip.isEmpty() &&
                         m_tree.toPage != QTransform::fromScale(kMmPerSvgPixel, kMmPerSvgPixel);
    if (context.style.clipShape || unclear)
        convert("clip-path", Note::StyleRule);
    const int found = context.style.clip.isEmpty() || unclear ? -1 : clipNode(context.style.clip);
    if (found < 0)
        return true;
    const SvgNode& clip = m_tree.nodes[size_t(found)];
    QTransform toPage = context.toPage;
    if (clip.detail && clip.detail->ownUnits) {
        const Box box = boxOf(node, context);
        if (!box.isValid()) {
            skip(m_tree.nodes[size_t(node)].name, Note::ClippedAway);
            return false;
        }
        toPage = QTransform(box.width(), 0, 0, box.height(), box.minX, box.minY) * toPage;
    }
    context.clips = withClip(context.clips, clipArea(found, context, toPage));
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
    inner.toPage = transformOf(clip, inner.style).value_or(QTransform()) * toPage;
    std::vector<ClipArea> areas;
    for (int child = m_tree.nodes[size_t(clip)].firstChild; child >= 0 && m_budget.elements();
         child = m_tree.nodes[size_t(child)].next)
        collect(child, inner, areas);
    ClipArea area = unitedAreas(areas, m_budget);
    const int found = inner.style.clip.isEmpty() ? -1 : clipNode(inner.style.clip);
    if (found >= 0 && m_budget.ok()) {
        const ClipArea own = clipArea(found, context, toPage);
        area.path = clippedToAreas(area.path, {own}, true, m_budget);
        area.evenOdd = true;
    }
    m_tree.nodes[size_t(clip)].active = false;
    return area;
}

/// The outlines of an element and all in it, in mm. What no clip can hold counts where the extent is measured.
void SvgRender::collect(int node, const Context& around, std::vector<ClipArea>& areas) {
    if (around.depth > ImportBudget::kMostDepth) {
        m_budget.fail(Note::TooDeep);
        return;
    }
    const SvgNode& self = m_tree.nodes[size_t(node)];
    if (!m_budget.elements())
        return;
    Context context = around;
    ++context.depth;
    context.style = m_sheet.styleOf(m_tree, node, around.style);
    if (!context.style.displayed || !context.style.visible)
        return;
    const auto transform = transformOf(node, context.style);
    if (!transform) {
        skip(self.name, Note::BadTransform);
        return;
    }
    context.toPage = *transform * around.toPage;
    if (!context.measuring && (!context.style.clip.isEmpty() || context.style.clipShape))
        skip("clip-path", Note::NotInClip);
    switch (self.element) {
    case SvgElement::Use:
        collectUse(node, context, areas);
        return;
    case SvgElement::Group:
        collectChildren(node, context, areas);
        return;
    case SvgElement::Path:
    case SvgElement::Rect:
    case SvgElement::Ellipse:
        collectShape(node, context, areas);
        return;
    case SvgElement::Svg:
    case SvgElement::Symbol:
    case SvgElement::Switch:
        if (context.measuring && self.element == SvgElement::Switch)
            collectSwitch(node, context, areas);
        else if (context.measuring)
            collectInner(node, context, areas);
        else
            skip(self.name, Note::NotInClip);
        return;
    case SvgElement::Text:
        skip(self.name, Note::NotInClip);
        return;
    default:
        return;
    }
}

void SvgRender::collectChildren(int node, const Context& context, std::vector<ClipArea>& areas) {
    if (!enter(node))
        return;
    for (int child = m_tree.nodes[size_t(node)].firstChild; child >= 0 && m_budget.ok();
         child = m_tree.nodes[size_t(child)].next)
        collectChild(child, context, areas);
    m_tree.nodes[size_t(node)].active = false;
}

/// Symbols are drawn only where something refers to them.
void SvgRender::collectChild(int child, const Context& context, std::vector<ClipArea>& areas) {
    if (!context.measuring || m_tree.nodes[size_t(child)].element != SvgElement::Symbol)
        collect(child, context, areas);
}

/// A drawing within the drawing, or a symbol. Its edge cuts what is drawn, not what is measured.
void SvgRender::collectInner(int node, const Context& context, std::vector<ClipArea>& areas) {
    // the root lies in its own units already
    if (node == 0) {
        collectChildren(node, context, areas);
        return;
    }
    const QSizeF size = innerSize(node, context);
    if (!hasSize(node, size))
        return;
    Context inner = context;
    if (m_tree.nodes[size_t(node)].element == SvgElement::Svg)
        inner.toPage = QTransform::fromTranslate(length(node, SvgX, context.viewport, 0.0),
                                                 length(node, SvgY, context.viewport, 0.0)) *
                       context.toPage;
    enterUnits(node, size, inner);
    collectChildren(node, inner, areas);
}

void SvgRender::collectSwitch(int node, const Context& context, std::vector<ClipArea>& areas) {
    const int child = choiceOf(node);
    if (child < 0 || !enter(node))
        return;
    collectChild(child, context, areas);
    m_tree.nodes[size_t(node)].active = false;
}

void SvgRender::collectUse(int node, const Context& context, std::vector<ClipArea>& areas) {
    const SvgNode& self = m_tree.nodes[size_t(node)];
    const auto found = self.detail ? m_tree.ids.constFind(self.detail->reference) : m_tree.ids.constEnd();
    if (found == m_tree.ids.constEnd()) {
        skip("use", Note::BadReference);
        return;
    }
    if (!enter(node))
        return;
    Context inner = context;
    inner.toPage = QTransform::fromTranslate(length(node, SvgX, context.viewport, 0.0),
                                             length(node, SvgY, context.viewport, 0.0)) *
                   context.toPage;
    giveSize(node, *found, inner);
    collect(*found, inner, areas);
    m_tree.nodes[size_t(node)].active = false;
}

void SvgRender::collectShape(int node, const Context& context, std::vector<ClipArea>& areas) {
    Outline outline;
    if (!outlineOf(node, context, outline))
        return;
    ClipArea area{mappedPath(outline, context.toPage), context.style.clipEvenOdd};
    if (!isWithin(shapeBounds(Shape(area.path), QTransform()), kReach))
        skip("clipPath", Note::OutOfRange);
    else if (m_budget.points(area.path.points.size()))
        areas.push_back(std::move(area));
}

/// The extent of an element in its own user units, for clips that are measured by it.
Box SvgRender::boxOf(int node, const Context& context) {
    Context own = context;
    own.clips.reset();
    own.measuring = true;
    // the element's own transform is part of the units that the box is wanted in
    own.toPage = transformOf(node, context.style).value_or(QTransform()).inverted();
    std::vector<ClipArea> areas;
    collect(node, own, areas);
    Box box;
    for (const ClipArea& area : areas)
        box.add(shapeBounds(Shape(area.path), QTransform()));
    return box;
}

} // namespace sim
