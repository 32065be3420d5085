// SPDX-License-Identifier: GPL-2.0-or-later
#include "simengine/document/markobject.h"

#include "engine/marktypes.h"
#include "simengine/document/limits.h"

#include <cmath>

namespace sim {

namespace {

bool finiteAffine(const QTransform& t) {
    for (double v : {t.m11(), t.m12(), t.m21(), t.m22(), t.dx(), t.dy()}) {
        if (!std::isfinite(v))
            return false;
    }
    return t.m13() == 0.0 && t.m23() == 0.0 && t.m33() == 1.0;
}

QString faultOf(const ObjectData& data) {
    if (const char* fault = shapeFault(data.shape))
        return QString::fromLatin1(fault);
    if (!finiteAffine(data.transform))
        return QStringLiteral("a transform is not usable");
    if (data.pen < 0 || data.pen >= kLayerCount)
        return QStringLiteral("pen %1 does not exist").arg(data.pen);
    if (data.work != WorkType::Off && data.work != WorkType::On)
        return QStringLiteral("work type %1 does not exist").arg(int(data.work));
    if (!std::isfinite(data.angle))
        return QStringLiteral("an angle is not a number");
    if (!data.hatch.isSound())
        return QStringLiteral("an object's hatch is not usable");
    if (data.name.size() > kMaxNameLength)
        return QStringLiteral("a name is longer than %1 characters").arg(kMaxNameLength);
    return QString();
}

bool isOneOpenContour(const PathShape& path) {
    return path.contourCount() == 1 && path.verbs.last() != PathVerb::Close;
}

/// The object, or null when it reaches beyond the coordinate limit.
ObjectPtr withinField(ObjectPtr object) {
    const Box field{-kMaxCoordinate, -kMaxCoordinate, kMaxCoordinate, kMaxCoordinate};
    return object->bounds().isValid() && field.contains(object->bounds()) ? object : nullptr;
}

std::shared_ptr<const std::vector<HatchPart>> makeHatch(const MarkObject& object, const QTransform& outer, double turn,
                                                        const Cancellation* cancellation) {
    std::vector<FlatLine> outline;
    flattenShape(object.shape(), object.transform() * outer, outline);
    const QVector<FillParam>& fills = object.data().hatch.fills;
    return std::make_shared<const std::vector<HatchPart>>(
        hatchLines(outline, {fills.begin(), fills.end()}, object.angle() + turn, cancellation));
}

qint64 segmentsIn(const MarkObject& object, const QTransform& outer, double turn) {
    const double angle = object.angle() + turn;
    if (const auto* group = std::get_if<GroupShape>(&object.shape())) {
        qint64 segments = 0;
        for (const ObjectPtr& child : group->children)
            segments = std::min(segments + segmentsIn(*child, object.transform() * outer, angle), kMostHatchCount);
        return segments;
    }
    if (!object.isFilled())
        return 0;
    std::vector<FlatLine> outline;
    flattenShape(object.shape(), object.transform() * outer, outline);
    const QVector<FillParam>& fills = object.data().hatch.fills;
    return hatchSegments(outline, {fills.begin(), fills.end()}, angle);
}

/// Told without making the points: curves as large as the field, or very many, would need more than memory has.
bool canBeFlattened(const MarkObject& object) {
    return flattenedPointCount(object.shape(), object.transform()) <= kMaxFlattenedPoints;
}

/// Moving leaves the number of segments as it is.
bool keepsHatch(const QTransform& by, double turn) {
    return turn == 0.0 && by.type() <= QTransform::TxTranslate;
}

} // namespace

const QVector<FillParam>& HatchSettings::unsetFills() {
    static const QVector<FillParam> fills(kFillCount);
    return fills;
}

bool HatchSettings::anyEnabled() const {
    return std::any_of(fills.begin(), fills.end(), [](const FillParam& fill) { return fill.Enable; });
}

bool HatchSettings::hasValues() const {
    return fills.size() == kFillCount && std::all_of(fills.begin(), fills.end(), [](const FillParam& fill) {
               return std::isfinite(fill.FillDist) && std::isfinite(fill.FillAngle) && std::isfinite(fill.FillOffset) &&
                      fill.FillLayer >= 0 && fill.FillLayer < kLayerCount;
           });
}

bool HatchSettings::isTooFine() const {
    return std::any_of(fills.begin(), fills.end(), [](const FillParam& fill) {
        return fill.Enable && fill.FillDist > 0.0 && fill.FillDist < kLeastHatchPitch;
    });
}

ObjectPtr MarkObject::make(ObjectData data, QString* fault) {
    QString reason = faultOf(data);
    ObjectPtr object;
    if (reason.isEmpty()) {
        object = withinField(std::make_shared<const MarkObject>(std::move(data)));
        if (!object)
            reason = QStringLiteral("an object lies outside the coordinate limit");
        else if (!canBeFlattened(*object)) {
            reason =
                QStringLiteral("the curves of an object have more than %1 points as lines").arg(kMaxFlattenedPoints);
            object = nullptr;
        } else if (const qint64 segments = object->hatchSegmentCount(); segments > kMaxHatchSegments) {
            reason = QStringLiteral("a hatch has %1 segments, more than %2").arg(segments).arg(kMaxHatchSegments);
            object = nullptr;
        }
    }
    if (fault)
        *fault = reason;
    return object;
}

MarkObject::MarkObject(ObjectData data)
    : m_data(std::move(data))
    , m_bounds(shapeBounds(m_data.shape, m_data.transform))
    , m_pointCount(shapePointCount(m_data.shape)) {
    if (const auto* group = std::get_if<GroupShape>(&m_data.shape)) {
        for (const ObjectPtr& child : group->children)
            m_depth = std::max(m_depth, child->groupDepth() + 1);
    }
}

QString MarkObject::className() const {
    const auto* generated = std::get_if<GeneratedShape>(&m_data.shape);
    return generated ? generated->toolClass : classNameOf(kind());
}

QPointF MarkObject::pivot() const {
    return m_data.transform.map(shapeBounds(m_data.shape, QTransform()).center());
}

qint64 MarkObject::memoryCost() const {
    qint64 cost = qint64(sizeof(MarkObject)) + qint64(kFillCount * sizeof(FillParam));
    if (const auto* group = std::get_if<GroupShape>(&m_data.shape)) {
        for (const ObjectPtr& child : group->children)
            cost += child->memoryCost();
    } else {
        cost += m_pointCount * qint64(sizeof(QPointF));
    }
    if (const auto* text = std::get_if<TextShape>(&m_data.shape))
        cost += (text->spec.text.size() + text->shown.size()) * qint64(sizeof(QChar));
    if (const auto* generated = std::get_if<GeneratedShape>(&m_data.shape))
        cost += generated->parameters.size();
    if (const auto* code = std::get_if<CodeShape>(&m_data.shape))
        cost += (code->spec.text.size() + code->shown.size()) * qint64(sizeof(QChar));
    return cost;
}

bool MarkObject::isOpenCurve() const {
    if (const auto* line = std::get_if<PolylineShape>(&m_data.shape))
        return !line->closed && line->points.size() > 1;
    if (const auto* path = std::get_if<PathShape>(&m_data.shape))
        return isOneOpenContour(*path);
    if (const auto* generated = std::get_if<GeneratedShape>(&m_data.shape))
        return isOneOpenContour(generated->outline);
    if (const auto* arc = std::get_if<ArcShape>(&m_data.shape))
        return std::abs(arc->sweepAngle) < 360.0;
    return false;
}

bool MarkObject::isFilled() const {
    return m_data.hatch.anyEnabled() && kind() != ObjectKind::Point;
}

std::vector<FlatLine> MarkObject::flattened(double tolerance) const {
    std::vector<FlatLine> lines;
    flattenShape(m_data.shape, m_data.transform, lines, tolerance);
    return lines;
}

std::shared_ptr<const std::vector<HatchPart>> MarkObject::hatch(const QTransform& outer, double turn,
                                                                const Cancellation* cancellation) const {
    if (!isFilled() || kind() == ObjectKind::Group)
        return nullptr;
    if (!outer.isIdentity() || turn != 0.0) {
        auto made = makeHatch(*this, outer, turn, cancellation);
        return isCancelled(cancellation) ? nullptr : made;
    }
    const std::lock_guard<std::mutex> lock(m_hatchMutex);
    std::shared_ptr<const std::vector<HatchPart>> kept = m_hatch.lock();
    if (!kept) {
        kept = makeHatch(*this, outer, turn, cancellation);
        if (isCancelled(cancellation))
            return nullptr;
        m_hatch = kept;
    }
    return kept;
}

qint64 MarkObject::hatchSegmentCount() const {
    return segmentsIn(*this, QTransform(), 0.0);
}

ObjectPtr MarkObject::transformed(const QTransform& by, double turn) const {
    ObjectData changed = m_data;
    changed.transform = m_data.transform * by;
    if (turn != 0.0) {
        changed.angle = normalizedAngle(m_data.angle + turn);
        changed.angleChanged = true;
    }
    if (!finiteAffine(changed.transform) || !std::isfinite(changed.angle))
        return nullptr;
    // the geometry was examined when the object was made
    ObjectPtr object = withinField(std::make_shared<const MarkObject>(std::move(changed)));
    if (object && by.type() > QTransform::TxTranslate && !canBeFlattened(*object))
        return nullptr;
    if (object && !keepsHatch(by, turn) && object->hatchSegmentCount() > kMaxHatchSegments)
        return nullptr;
    return object;
}

double normalizedAngle(double degrees) {
    double angle = std::fmod(degrees, 360.0);
    if (angle > 180.0)
        angle -= 360.0;
    else if (angle <= -180.0)
        angle += 360.0;
    return angle;
}

QString classNameOf(ObjectKind kind) {
    switch (kind) {
    case ObjectKind::Point:
        return QStringLiteral("MarkToolPoint");
    case ObjectKind::Polyline:
        return QStringLiteral("MarkToolLine");
    case ObjectKind::Rect:
        return QStringLiteral("MarkToolRect");
    case ObjectKind::Circle:
        return QStringLiteral("MarkToolCircle");
    case ObjectKind::Arc:
        return QStringLiteral("MarkToolArc");
    case ObjectKind::Path:
        return QStringLiteral("MarkToolPath");
    case ObjectKind::Group:
        return QStringLiteral("MarkToolCombine");
    case ObjectKind::Text:
        return QStringLiteral("MarkToolText");
    case ObjectKind::Generated:
        return QStringLiteral("MarkToolGenerated");
    case ObjectKind::Code:
        return QStringLiteral("MarkToolCode");
    }
    return QString();
}

} // namespace sim
