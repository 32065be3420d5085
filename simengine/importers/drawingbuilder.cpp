// SPDX-License-Identifier: GPL-2.0-or-later
#include "simengine/importers/drawingbuilder.h"

#include "engine/marktypes.h"
#include "simengine/document/contour.h"
#include "simengine/document/limits.h"
#include "simengine/document/markobject.h"
#include "simengine/importers/curves.h"

#include <cmath>

namespace sim {

namespace {

static_assert(kLayerCount == 20, "a gathered path for each pen");

/// Colours beyond the pens that are told apart for the report.
constexpr int kMostShared = 1000;

bool isEmpty(const Shape& shape) {
    if (const auto* path = std::get_if<PathShape>(&shape))
        return path->verbs.isEmpty();
    if (const auto* line = std::get_if<PolylineShape>(&shape))
        return line->points.isEmpty();
    return false;
}

/// Half axes at right angles and of one length: a circle, whatever the transform made of it.
bool isCircle(const EllipseAxes& e) {
    const double uu = QPointF::dotProduct(e.u, e.u);
    const double vv = QPointF::dotProduct(e.v, e.v);
    return std::abs(uu - vv) <= 1e-12 * uu && std::abs(QPointF::dotProduct(e.u, e.v)) <= 1e-12 * uu;
}

} // namespace

int DrawingBuilder::penOf(const QColor& color) {
    const QColor opaque(color.red(), color.green(), color.blue());
    const int known = m_result.penColors.indexOf(opaque);
    if (known >= 0)
        return known;
    if (m_result.penColors.size() < kLayerCount)
        m_result.penColors.append(opaque);
    else if (m_shared.size() < kMostShared && !m_shared.contains(opaque))
        m_shared.append(opaque);
    return m_result.penColors.indexOf(opaque) < 0 ? kLayerCount - 1 : m_result.penColors.size() - 1;
}

int DrawingBuilder::newPen(const QColor& color, const QString& name) {
    if (m_result.penColors.size() >= kLayerCount) {
        ++m_sharedPens;
        return kLayerCount - 1;
    }
    m_result.penColors.append(color);
    m_result.penNames.append(name);
    return m_result.penColors.size() - 1;
}

bool DrawingBuilder::add(Shape shape, const QTransform& transform, int pen, const QString& kind) {
    if (isEmpty(shape))
        return m_budget.ok();
    if (!m_budget.points(shapePointCount(shape)))
        return false;
    const Box box = shapeFault(shape) ? Box() : shapeBounds(shape, transform);
    const bool usable = box.isValid() && std::isfinite(box.width()) && std::isfinite(box.height()) &&
                        box.width() <= 2.0 * kMaxCoordinate && box.height() <= 2.0 * kMaxCoordinate &&
                        std::abs(box.minX) <= kMaxLocalCoordinate && std::abs(box.minY) <= kMaxLocalCoordinate;
    if (!usable) {
        m_result.skip(kind, noteText(Note::OutOfRange));
        return true;
    }
    const qint64 flat = flattenedPointCount(shape, transform);
    if (flat > kMaxFlattenedPoints) {
        m_result.skip(kind, noteText(Note::TooManyPoints));
        return true;
    }
    if (!m_budget.flatPoints(flat))
        return false;
    m_bounds.add(box);
    if (int(m_pending.size()) < kMostSingle)
        m_pending.push_back({std::move(shape), transform, pen, kind});
    else
        gather(shape, transform, pen);
    return true;
}

bool DrawingBuilder::addPath(const PathShape& path, int pen, const QString& kind) {
    return path.verbs.isEmpty() ? m_budget.ok() : add(simplestShape(path), QTransform(), pen, kind);
}

bool DrawingBuilder::addEllipse(const EllipseAxes& ellipse, double start, double sweep, int pen, const QString& kind) {
    const bool full = std::abs(sweep) >= 2.0 * M_PI - 1e-9;
    if (full && isCircle(ellipse)) {
        CircleShape circle;
        const QPointF from = ellipse.at(start) - ellipse.center;
        circle.center = ellipse.center;
        circle.radius = std::hypot(ellipse.u.x(), ellipse.u.y());
        circle.startAngle = std::atan2(from.y(), from.x()) * 180.0 / M_PI;
        const bool mirrored = ellipse.u.x() * ellipse.v.y() < ellipse.u.y() * ellipse.v.x();
        circle.clockwise = mirrored != (sweep < 0.0);
        return add(circle, QTransform(), pen, kind);
    }
    PathShape path;
    path.moveTo(ellipse.at(start));
    appendEllipse(path, ellipse, start, full ? std::copysign(2.0 * M_PI, sweep) : sweep);
    if (full) {
        path.points.last() = path.points.first();
        path.close();
    }
    return add(path, QTransform(), pen, kind);
}

void DrawingBuilder::gather(const Shape& shape, const QTransform& transform, int pen) {
    PathShape& path = m_gathered[size_t(pen)];
    if (const auto* point = std::get_if<PointShape>(&shape)) {
        // a point has no outline, a path can hold it as a line of no length
        path.moveTo(transform.map(point->pos));
        path.lineTo(transform.map(point->pos));
    } else {
        const PathShape mapped = mapPath(shapeToPath(shape), transform);
        // a circle of one point is many as curves
        m_budget.points(mapped.points.size());
        path.verbs += mapped.verbs;
        path.points += mapped.points;
    }
    ++m_gatheredCount;
    if (path.points.size() >= kGatheredPoints)
        flush(pen);
}

void DrawingBuilder::flush(int pen) {
    PathShape& path = m_gathered[size_t(pen)];
    if (!path.verbs.isEmpty())
        m_pending.push_back({path, QTransform(), pen, QStringLiteral("path")});
    path = PathShape();
}

void DrawingBuilder::make(Pending& pending, const QPointF& by) {
    ObjectData data;
    data.shape = std::move(pending.shape);
    data.transform = pending.transform;
    data.pen = pending.pen;
    if (auto* line = std::get_if<PolylineShape>(&data.shape); line && data.transform.isIdentity()) {
        line->points.translate(by);
    } else if (auto* path = std::get_if<PathShape>(&data.shape); path && data.transform.isIdentity()) {
        for (QPointF& p : path->points)
            p += by;
    } else {
        data.transform = data.transform * QTransform::fromTranslate(by.x(), by.y());
    }
    if (const ObjectPtr object = MarkObject::make(std::move(data)))
        m_result.objects.push_back(object);
    else
        m_result.skip(pending.kind, noteText(Note::OutOfRange));
}

void DrawingBuilder::finish(const ImportOptions& options, const QPointF& page) {
    for (int pen = 0; pen < kLayerCount; ++pen)
        flush(pen);
    if (m_gatheredCount > 0)
        m_result.convert(QStringLiteral("path"), noteText(Note::Gathered), m_gatheredCount);
    if (m_shared.size() + m_sharedPens > 0)
        m_result.convert(QStringLiteral("colour"), noteText(Note::SharedPen), m_shared.size() + m_sharedPens);
    if (!m_bounds.isValid())
        return;
    if (m_result.pageSize.isEmpty())
        m_result.pageSize = QSizeF(m_bounds.width(), m_bounds.height());
    const QPointF middle = options.placement == ImportPlacement::CenterPage ? page : m_bounds.center();
    m_result.objects.reserve(m_pending.size());
    for (Pending& pending : m_pending) {
        make(pending, options.center - middle);
        pending = Pending();
        if (!m_budget.step())
            break;
    }
    m_pending.clear();
    for (const ObjectPtr& object : m_result.objects) {
        ++m_result.imported[object->className()];
        m_result.points += object->pointCount();
    }
}

} // namespace sim
