// SPDX-License-Identifier: GPL-2.0-or-later
#include "simengine/importers/svgrender.h"

#include "simengine/document/limits.h"
#include "simengine/importers/curves.h"
#include "simengine/importers/svgnumbers.h"
#include "simengine/importers/svgpath.h"

#include <cmath>

namespace sim {

namespace {

/// Makes the ellipse in the box of a circle of radius 1 about the origin.
QTransform ellipseTransform(const QRectF& box) {
    return QTransform(box.width() / 2, 0, 0, box.height() / 2, box.center().x(), box.center().y());
}

QSizeF diagonal(const QSizeF& viewport) {
    const double d = std::hypot(viewport.width(), viewport.height()) / std::sqrt(2.0);
    return {d, d};
}

/// A rectangle with round corners, clockwise from the end of the first.
PathShape roundRect(const QRectF& r, double rx, double ry) {
    PathShape path;
    const auto corner = [&](const QPointF& center, double start) {
        appendEllipse(path, {center, {rx, 0.0}, {0.0, ry}}, start, M_PI / 2.0);
    };
    path.moveTo({r.left() + rx, r.top()});
    path.lineTo({r.right() - rx, r.top()});
    corner({r.right() - rx, r.top() + ry}, -M_PI / 2.0);
    path.lineTo({r.right(), r.bottom() - ry});
    corner({r.right() - rx, r.bottom() - ry}, 0.0);
    path.lineTo({r.left() + rx, r.bottom()});
    corner({r.left() + rx, r.bottom() - ry}, M_PI / 2.0);
    path.lineTo({r.left(), r.top() + ry});
    corner({r.left() + rx, r.top() + ry}, M_PI);
    path.points.last() = path.points.first();
    path.close();
    return path;
}

} // namespace

SvgRender::SvgRender(SvgTree& tree, DrawingBuilder& builder, ImportResult& result, ImportBudget& budget)
    : m_tree(tree)
    , m_builder(builder)
    , m_result(result)
    , m_budget(budget)
    , m_sheet(tree.styleSheet, result, budget) {}

void SvgRender::skip(const char* kind, Note note) {
    m_result.skip(QString::fromLatin1(kind), noteText(note));
}

void SvgRender::convert(const char* kind, Note note) {
    m_result.convert(QString::fromLatin1(kind), noteText(note));
}

void SvgRender::run() {
    Context page;
    page.toPage = m_tree.toPage * QTransform::fromScale(1.0, -1.0);
    page.viewport = m_tree.viewBox.size();
    Context context;
    if (begin(0, page, context))
        drawChildren(0, context);
    const SvgNode& root = m_tree.nodes[0];
    if (root.transform || root.badTransform || !context.style.transform.isNull())
        convert("transform", Note::StyleRule);
    if (m_invisible > 0)
        m_result.skip(QStringLiteral("path"), noteText(Note::NoLineNoArea), m_invisible);
    if (m_areas > 0)
        m_result.convert(QStringLiteral("fill"), noteText(Note::AreaAsOutline), m_areas);
}

double SvgRender::length(int node, SvgLengthPlace place, const QSizeF& viewport, double missing) const {
    const SvgNode& self = m_tree.nodes[size_t(node)];
    if (!self.detail || !self.detail->lengths[place])
        return missing;
    const bool across = place == SvgX || place == SvgWidth || place == SvgRx;
    return self.detail->lengths[place]->pixels(across ? viewport.width() : viewport.height());
}

/// Marks an element as being drawn; false for one that shows itself.
bool SvgRender::enter(int node) {
    if (m_tree.nodes[size_t(node)].active) {
        m_budget.fail(Note::RefersToItself);
        return false;
    }
    m_tree.nodes[size_t(node)].active = true;
    return true;
}

void SvgRender::drawChildren(int node, const Context& context) {
    if (!enter(node))
        return;
    for (int child = m_tree.nodes[size_t(node)].firstChild; child >= 0 && m_budget.ok();
         child = m_tree.nodes[size_t(child)].next)
        draw(child, context);
    m_tree.nodes[size_t(node)].active = false;
}

void SvgRender::draw(int node, const Context& around) {
    if (!m_budget.elements())
        return;
    if (around.depth > ImportBudget::kMostDepth) {
        m_budget.fail(Note::TooDeep);
        return;
    }
    switch (m_tree.nodes[size_t(node)].element) {
    case SvgElement::Defs:
    case SvgElement::Symbol:
    case SvgElement::ClipPath:
    case SvgElement::Gradient:
    case SvgElement::Stop:
    case SvgElement::Pattern:
    case SvgElement::Left:
        return;
    default:
        break;
    }
    Context context;
    if (begin(node, around, context))
        drawElement(node, context);
}

/// The transform that an element has of its own; nothing when it is wrong. That of a style goes before the attribute.
std::optional<QTransform> SvgRender::transformOf(int node, const SvgStyle& style) const {
    const SvgNode& self = m_tree.nodes[size_t(node)];
    // whether it turns the root about its middle or its corner, programs do not agree
    if (node == 0)
        return QTransform();
    const QString& own = style.transform;
    if (!own.isNull()) {
        const bool none = own == QLatin1String("none") || own == QLatin1String("initial");
        return none ? QTransform() : parseSvgTransform(QStringRef(&own));
    }
    if (self.badTransform)
        return std::nullopt;
    return self.transform ? *self.transform : QTransform();
}

/// What an element's own style makes of what is around it. False when nothing of the element is drawn.
bool SvgRender::begin(int node, const Context& around, Context& context) {
    const SvgNode& self = m_tree.nodes[size_t(node)];
    context = around;
    context.depth = around.depth + 1;
    context.style = m_sheet.styleOf(m_tree, node, around.style);
    if (!context.style.displayed || (self.detail && self.detail->refused)) {
        skip(self.name, context.style.displayed ? Note::OtherReader : Note::Hidden);
        return false;
    }
    context.opaque = around.opaque && context.style.opaque;
    const auto transform = transformOf(node, context.style);
    if (!transform) {
        skip(self.name, Note::BadTransform);
        return false;
    }
    context.toPage = *transform * around.toPage;
    if (context.style.masked)
        skip("mask", Note::Masks);
    if (context.style.filtered)
        skip("filter", Note::Effects);
    return applyClip(node, context);
}

void SvgRender::drawElement(int node, const Context& context) {
    Outline outline;
    switch (m_tree.nodes[size_t(node)].element) {
    case SvgElement::Svg:
        drawSvg(node, context);
        break;
    case SvgElement::Use:
        drawUse(node, context);
        break;
    case SvgElement::Switch:
        drawSwitch(node, context);
        break;
    case SvgElement::Text:
        drawText(node, context);
        break;
    case SvgElement::Group:
        drawChildren(node, context);
        break;
    default:
        if (outlineOf(node, context, outline))
            paint(node, context, outline);
        break;
    }
}

void SvgRender::drawSvg(int node, const Context& context) {
    const QSizeF& port = context.viewport;
    drawInner(node, context, innerSize(node, context), {length(node, SvgX, port, 0.0), length(node, SvgY, port, 0.0)});
}

/// The size of a drawing within the drawing, or of a symbol: what refers to it may give it another one.
QSizeF SvgRender::innerSize(int node, const Context& context) const {
    const QSizeF& port = context.viewport;
    return {context.givenWidth.value_or(length(node, SvgWidth, port, port.width())),
            context.givenHeight.value_or(length(node, SvgHeight, port, port.height()))};
}

bool SvgRender::hasSize(int node, const QSizeF& size) const {
    const SvgDetail* detail = m_tree.nodes[size_t(node)].detail.get();
    return size.width() > 0.0 && size.height() > 0.0 && !(detail && detail->badViewBox);
}

/// From where a drawing within the drawing lies to the units of what is in it.
void SvgRender::enterUnits(int node, const QSizeF& size, Context& context) const {
    const SvgDetail* detail = m_tree.nodes[size_t(node)].detail.get();
    context.givenWidth = context.givenHeight = std::nullopt;
    context.viewport = size;
    if (detail && detail->viewBox) {
        context.toPage = viewBoxTransform(*detail->viewBox, size, detail->preserve) * context.toPage;
        context.viewport = detail->viewBox->size();
    }
}

/// A drawing within the drawing, or a symbol: a place of its own, units of its own, cut at its edge.
void SvgRender::drawInner(int node, Context context, const QSizeF& size, const QPointF& place) {
    const SvgNode& self = m_tree.nodes[size_t(node)];
    if (!hasSize(node, size)) {
        skip(self.name, Note::NoSize);
        return;
    }
    context.toPage = QTransform::fromTranslate(place.x(), place.y()) * context.toPage;
    if (!context.style.overflow && !cutAtEdge(size, context)) {
        skip(self.name, Note::OutOfRange);
        return;
    }
    enterUnits(node, size, context);
    drawChildren(node, context);
}

void SvgRender::drawUse(int node, const Context& context) {
    const SvgNode& self = m_tree.nodes[size_t(node)];
    const auto found = self.detail ? m_tree.ids.constFind(self.detail->reference) : m_tree.ids.constEnd();
    if (found == m_tree.ids.constEnd()) {
        skip("use", Note::BadReference);
        return;
    }
    const int target = *found;
    if (!enter(node))
        return;
    Context inner = context;
    ++inner.depth;
    inner.toPage = QTransform::fromTranslate(length(node, SvgX, context.viewport, 0.0),
                                             length(node, SvgY, context.viewport, 0.0)) *
                   context.toPage;
    giveSize(node, target, inner);
    if (m_tree.nodes[size_t(target)].element == SvgElement::Symbol) {
        drawSymbol(target, inner);
    } else if (m_tree.nodes[size_t(target)].active) {
        m_budget.fail(Note::RefersToItself);
    } else {
        draw(target, inner);
    }
    m_tree.nodes[size_t(node)].active = false;
}

/// The size that a reference gives the drawing or symbol that it refers to.
void SvgRender::giveSize(int use, int target, Context& context) const {
    const SvgDetail* detail = m_tree.nodes[size_t(use)].detail.get();
    const SvgElement element = m_tree.nodes[size_t(target)].element;
    const bool sized = element == SvgElement::Svg || element == SvgElement::Symbol;
    if (sized && detail && detail->lengths[SvgWidth])
        context.givenWidth = length(use, SvgWidth, context.viewport, 0.0);
    if (sized && detail && detail->lengths[SvgHeight])
        context.givenHeight = length(use, SvgHeight, context.viewport, 0.0);
}

void SvgRender::drawSymbol(int node, const Context& context) {
    Context inner;
    if (!begin(node, context, inner))
        return;
    const bool boxed = m_tree.nodes[size_t(node)].detail && m_tree.nodes[size_t(node)].detail->viewBox;
    const QSizeF size = innerSize(node, inner);
    // a symbol without a box of its own is as large as what is in it
    inner.style.overflow = inner.style.overflow || (!boxed && size == context.viewport);
    drawInner(node, inner, size, QPointF());
}

/// The first child that asks for nothing unknown; -1 for none.
int SvgRender::choiceOf(int node) const {
    for (int child = m_tree.nodes[size_t(node)].firstChild; child >= 0; child = m_tree.nodes[size_t(child)].next) {
        const SvgDetail* detail = m_tree.nodes[size_t(child)].detail.get();
        if (!detail || !detail->refused)
            return child;
    }
    return -1;
}

void SvgRender::drawSwitch(int node, const Context& context) {
    const int child = choiceOf(node);
    if (child < 0 || !enter(node))
        return;
    draw(child, context);
    m_tree.nodes[size_t(node)].active = false;
}

PathShape SvgRender::mappedPath(const Outline& outline, const QTransform& toPage) {
    if (outline.kind == Outline::Rect)
        return mapPath(shapeToPath(RectShape{outline.rect}), toPage);
    if (outline.kind == Outline::Ellipse)
        return mapPath(shapeToPath(CircleShape{{0.0, 0.0}, 1.0}), ellipseTransform(outline.rect) * toPage);
    return mapPath(outline.path, toPage);
}

bool SvgRender::outlineOf(int node, const Context& context, Outline& outline) const {
    const SvgNode& self = m_tree.nodes[size_t(node)];
    const QSizeF& port = context.viewport;
    const double x = length(node, SvgX, port, 0.0);
    const double y = length(node, SvgY, port, 0.0);
    if (self.element == SvgElement::Path && self.path) {
        outline.path = *self.path;
        return !outline.path.verbs.isEmpty();
    }
    if (self.element == SvgElement::Path) {
        outline.path.moveTo({x, y});
        outline.path.lineTo({length(node, SvgWidth, port, 0.0), length(node, SvgHeight, port, 0.0)});
        return true;
    }
    double rx = length(node, SvgRx, port, -1.0);
    double ry = length(node, SvgRy, port, -1.0);
    if (self.element == SvgElement::Ellipse) {
        const bool circle = *self.name == 'c';
        if (circle)
            rx = ry = length(node, SvgRx, diagonal(port), -1.0);
        outline.kind = Outline::Ellipse;
        outline.rect = QRectF(x - rx, y - ry, 2.0 * rx, 2.0 * ry);
        return rx > 0.0 && ry > 0.0;
    }
    const double width = length(node, SvgWidth, port, 0.0);
    const double height = length(node, SvgHeight, port, 0.0);
    if (!(width > 0.0) || !(height > 0.0))
        return false;
    outline.kind = Outline::Rect;
    outline.rect = QRectF(x, y, width, height);
    // a radius that is missing or wrong is taken from the other
    const double givenX = rx >= 0.0 ? rx : ry;
    const double givenY = ry >= 0.0 ? ry : rx;
    if (givenX > 0.0 && givenY > 0.0) {
        outline.kind = Outline::Path;
        outline.path = roundRect(outline.rect, std::min(givenX, width / 2.0), std::min(givenY, height / 2.0));
    }
    return true;
}

QColor SvgRender::colorOf(const SvgPaint& paint) {
    if (paint.kind == SvgPaint::Color)
        return paint.color;
    return paint.kind == SvgPaint::Server ? serverColor(paint.server, paint.color) : QColor();
}

/// The first colour of a gradient, which may take its stops from another one.
QColor SvgRender::serverColor(const QString& id, const QColor& otherwise) {
    QString at = id;
    for (int step = 0; step < 20; ++step) {
        const auto found = m_tree.ids.constFind(at);
        if (found == m_tree.ids.constEnd())
            return otherwise;
        const SvgNode& server = m_tree.nodes[size_t(*found)];
        if (server.element == SvgElement::Pattern) {
            convert("pattern", Note::Patterns);
            return QColor(Qt::black);
        }
        if (server.element != SvgElement::Gradient)
            return otherwise;
        for (int child = server.firstChild; child >= 0 && m_budget.step(); child = m_tree.nodes[size_t(child)].next) {
            if (m_tree.nodes[size_t(child)].element == SvgElement::Stop) {
                convert(server.name, Note::Gradient);
                return m_sheet.styleOf(m_tree, child, SvgStyle()).stopColor;
            }
        }
        if (!server.detail || server.detail->reference.isEmpty())
            break;
        at = server.detail->reference;
    }
    return otherwise;
}

void SvgRender::paint(int node, const Context& context, const Outline& outline) {
    const SvgStyle& style = context.style;
    const bool visible = style.visible && context.opaque;
    QColor stroke;
    QColor fill;
    if (visible && style.strokeVisible && style.lineWidth)
        stroke = colorOf(style.stroke);
    // a line between two points has no area
    const bool area = outline.kind != Outline::Path || outline.path.points.size() > 2;
    if (visible && style.fillVisible && (area || outline.path.verbs.last() == PathVerb::Close))
        fill = colorOf(style.fill);
    const char* name = m_tree.nodes[size_t(node)].name;
    if (style.markers && visible)
        convert("marker", Note::LineEnds);
    if (stroke.isValid() && style.dashed)
        convert(name, Note::Dashed);
    paint(name, context, outline, stroke, fill);
}

void SvgRender::paint(const char* name, const Context& context, const Outline& outline, const QColor& stroke,
                      const QColor& fill) {
    if (!stroke.isValid() && !fill.isValid()) {
        ++m_invisible;
        return;
    }
    if (fill.isValid() && !outline.letters)
        ++m_areas;
    const int pen = m_builder.penOf(stroke.isValid() ? stroke : fill);
    if (context.clips) {
        paintClipped(name, context, outline, !stroke.isValid(), pen);
        return;
    }
    const QString kind = QString::fromLatin1(name);
    const QRectF& r = outline.rect;
    if (outline.kind == Outline::Rect) {
        m_builder.add(RectShape{r}, context.toPage, pen, kind);
    } else if (outline.kind == Outline::Ellipse) {
        m_builder.add(CircleShape{{0.0, 0.0}, 1.0}, ellipseTransform(r) * context.toPage, pen, kind);
    } else {
        const PathShape path = mapPath(outline.path, context.toPage);
        // only filled: the area reaches back to where it began
        m_builder.addPath(stroke.isValid() ? path : closedContours(path), pen, kind);
    }
}

void SvgRender::paintClipped(const char* name, const Context& context, const Outline& outline, bool filled, int pen) {
    const PathShape path = mappedPath(outline, context.toPage);
    const Box box = shapeBounds(Shape(path), QTransform());
    if (!isWithin(box, kMaxCoordinate)) {
        skip(name, Note::OutOfRange);
        return;
    }
    std::vector<ClipArea> cutting;
    for (const ClipArea& area : *context.clips) {
        if (!liesWithin(box, area))
            cutting.push_back(area);
    }
    if (cutting.empty()) {
        Context free = context;
        free.clips.reset();
        const QColor color = m_result.penColors.value(pen, QColor(Qt::black));
        paint(name, free, outline, filled ? QColor() : color, filled ? color : QColor());
        m_areas -= filled && !outline.letters ? 1 : 0;
        return;
    }
    const PathShape cut = clippedToAreas(path, cutting, filled, m_budget);
    if (cut.verbs.isEmpty()) {
        skip(name, Note::ClippedAway);
        return;
    }
    convert(name, Note::Clipped);
    m_builder.addPath(cut, pen, QString::fromLatin1(name));
}

} // namespace sim
