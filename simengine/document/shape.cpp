// SPDX-License-Identifier: GPL-2.0-or-later
#include "simengine/document/shape.h"

#include "simengine/document/limits.h"
#include "simengine/document/markobject.h"

#include <QtMath>
#include <array>
#include <cmath>

namespace sim {

namespace {

/// The kinds in the order of the variant.
constexpr std::array<ObjectKind, std::variant_size_v<Shape>> kKinds = {
    ObjectKind::Point, ObjectKind::Polyline, ObjectKind::Rect, ObjectKind::Circle, ObjectKind::Arc,
    ObjectKind::Path,  ObjectKind::Group,    ObjectKind::Text, ObjectKind::Code,   ObjectKind::Generated,
};

template<class... Ts>
struct Overload : Ts... {
    using Ts::operator()...;
};
template<class... Ts>
Overload(Ts...) -> Overload<Ts...>;

bool usable(double value) {
    return std::isfinite(value) && std::abs(value) <= kMaxLocalCoordinate;
}

bool usable(const QPointF& p) {
    return usable(p.x()) && usable(p.y());
}

template<class Points>
bool allUsable(const Points& points) {
    return std::all_of(points.begin(), points.end(), [](const QPointF& p) { return usable(p); });
}

const char* pathFault(const PathShape& path) {
    int needed = 0;
    bool open = false;
    for (PathVerb verb : path.verbs) {
        switch (verb) {
        case PathVerb::Move:
            open = true;
            needed += 1;
            break;
        case PathVerb::Line:
        case PathVerb::Cubic:
            if (!open)
                return "a path segment has no start";
            needed += verb == PathVerb::Line ? 1 : 3;
            break;
        case PathVerb::Close:
            if (!open)
                return "a path is closed that was not begun";
            open = false;
            break;
        default:
            return "a path has an unknown segment";
        }
    }
    if (path.verbs.isEmpty())
        return "a path is empty";
    if (needed != path.points.size())
        return "a path has a wrong number of points";
    return allUsable(path.points) ? nullptr : "a coordinate is out of range";
}

const char* textFault(const TextShape& text) {
    if (const TextFault fault = specFault(text.spec); fault != TextFault::None)
        return faultText(fault);
    if (text.shown.isEmpty() == text.spec.variables || text.shown.size() > 2 * kMostTextCharacters)
        return "what a text shows does not fit its variables";
    qint64 contours = 0;
    for (int count : text.characterContours) {
        if (count < 1)
            return "a letter of a text has no contours";
        contours += count;
    }
    if (const char* fault = pathFault(text.outline))
        return fault;
    return contours == text.outline.contourCount() ? nullptr : "the letters of a text do not fit its outline";
}

const char* generatedFault(const GeneratedShape& generated) {
    const bool named = !generated.toolClass.isEmpty() && generated.toolClass.size() <= kMaxToolClassLength;
    if (!named || isOwnClass(generated.toolClass))
        return "the tool of an object has no usable name";
    if (generated.parameters.size() > kMaxToolParameterBytes)
        return "the parameters of an object are too long";
    if (generated.outline.points.size() > kMaxGeneratedPoints ||
        generated.outline.verbs.size() > 2 * kMaxGeneratedPoints)
        return "the outline of an object has too many points";
    return pathFault(generated.outline);
}

const char* codeFault(const CodeShape& code) {
    if (const CodeFault fault = codeSpecFault(code.spec); fault != CodeFault::None)
        return faultText(fault);
    if (code.shown.isEmpty() == code.spec.variables || code.shown.size() > kMostCodeCharacters)
        return "what a code shows does not fit its variables";
    if ((code.spec.marking == CodeMarking::Dots) != code.outline.verbs.isEmpty() ||
        code.dots.isEmpty() != (code.spec.marking != CodeMarking::Dots))
        return "what is marked of a code does not fit the way it is marked";
    if (!code.dots.isEmpty())
        return allUsable(code.dots) ? nullptr : "a coordinate is out of range";
    return pathFault(code.outline);
}

const char* groupFault(const GroupShape& group) {
    if (group.children.empty())
        return "a group is empty";
    for (const ObjectPtr& child : group.children) {
        if (!child)
            return "a group holds nothing at a place";
        if (child->groupDepth() >= kMaxGroupDepth)
            return "groups are nested too deeply";
    }
    return nullptr;
}

/// Bounds of center + u cos t + v sin t for t from `from` over `sweep`, radians.
Box ellipseBounds(const QPointF& center, const QPointF& u, const QPointF& v, double from, double sweep) {
    Box box;
    const auto add = [&](double t) { box.add(center + u * std::cos(t) + v * std::sin(t)); };
    add(from);
    add(from + sweep);
    const double low = std::min(from, from + sweep);
    const double high = std::max(from, from + sweep);
    for (double extreme : {std::atan2(v.x(), u.x()), std::atan2(v.y(), u.y())}) {
        // the extremes repeat every half turn
        for (double t = extreme + M_PI * std::ceil((low - extreme) / M_PI); t <= high; t += M_PI)
            add(t);
    }
    return box;
}

QPointF mapVector(const QTransform& t, double x, double y) {
    return {t.m11() * x + t.m21() * y, t.m12() * x + t.m22() * y};
}

Box roundBounds(const QPointF& center, double radius, double startDeg, double sweepDeg, const QTransform& t) {
    return ellipseBounds(t.map(center), mapVector(t, radius, 0.0), mapVector(t, 0.0, radius),
                         qDegreesToRadians(startDeg), qDegreesToRadians(sweepDeg));
}

double cubicAt(double a, double b, double c, double d, double t) {
    const double s = 1.0 - t;
    return s * s * s * a + 3.0 * s * s * t * b + 3.0 * s * t * t * c + t * t * t * d;
}

/// Adds the inner extremes of one coordinate of a cubic through `add`.
template<class Add>
void cubicExtremes(double a, double b, double c, double d, Add add) {
    const double qa = -a + 3.0 * b - 3.0 * c + d;
    const double qb = 2.0 * (a - 2.0 * b + c);
    const double qc = b - a;
    const auto inner = [&](double t) {
        if (t > 0.0 && t < 1.0)
            add(cubicAt(a, b, c, d, t));
    };
    const double discriminant = qb * qb - 4.0 * qa * qc;
    if (discriminant < 0.0)
        return;
    // the form of the quadratic formula that stays exact when qa is small
    const double q = -0.5 * (qb + std::copysign(std::sqrt(discriminant), qb));
    if (qa != 0.0)
        inner(q / qa);
    if (q != 0.0)
        inner(qc / q);
}

Box pathBounds(const PathShape& path, const QTransform& t) {
    Box box;
    QPointF current;
    int next = 0;
    for (PathVerb verb : path.verbs) {
        if (verb == PathVerb::Close)
            continue;
        if (verb == PathVerb::Cubic) {
            const QPointF b = t.map(path.points[next]);
            const QPointF c = t.map(path.points[next + 1]);
            const QPointF d = t.map(path.points[next + 2]);
            box.add(d);
            if (!box.contains(b) || !box.contains(c)) {
                cubicExtremes(current.x(), b.x(), c.x(), d.x(), [&](double x) { box.add(x, d.y()); });
                cubicExtremes(current.y(), b.y(), c.y(), d.y(), [&](double y) { box.add(d.x(), y); });
            }
            current = d;
            next += 3;
        } else {
            current = t.map(path.points[next++]);
            box.add(current);
        }
    }
    return box;
}

template<class Points>
Box pointBounds(const Points& points, const QTransform& t) {
    Box box;
    // As QTransform::map() does it, without its look at the kind of transform for each point.
    const double xx = t.m11(), xy = t.m21(), yx = t.m12(), yy = t.m22(), dx = t.dx(), dy = t.dy();
    for (const QPointF& p : points)
        box.add(xx * p.x() + xy * p.y() + dx, yx * p.x() + yy * p.y() + dy);
    return box;
}

QPolygonF corners(const QRectF& r) {
    return QPolygonF({{r.x(), r.y()},
                      {r.x() + r.width(), r.y()},
                      {r.x() + r.width(), r.y() + r.height()},
                      {r.x(), r.y() + r.height()}});
}

PathShape linesToPath(const QPolygonF& points, bool closed) {
    PathShape path;
    for (int i = 0; i < points.size(); ++i) {
        if (i == 0)
            path.moveTo(points[i]);
        else
            path.lineTo(points[i]);
    }
    if (closed)
        path.close();
    return path;
}

PathShape arcToPath(const QPointF& center, double radius, double startDeg, double sweepDeg, bool closed) {
    const int pieces = std::max(1, int(std::ceil(std::abs(sweepDeg) / 45.0)));
    const double step = qDegreesToRadians(sweepDeg) / pieces;
    const double handle = 4.0 / 3.0 * std::tan(step / 4.0) * radius;
    const double start = qDegreesToRadians(startDeg);
    PathShape path;
    for (int i = 0; i <= pieces; ++i) {
        const double t = start + i * step;
        const QPointF radial(std::cos(t), std::sin(t));
        const QPointF tangent(-radial.y(), radial.x());
        const QPointF p = center + radius * radial;
        if (i == 0) {
            path.moveTo(p);
        } else {
            const double before = t - step;
            const QPointF r0(std::cos(before), std::sin(before));
            const QPointF end = closed && i == pieces ? path.points.first() : p;
            path.cubicTo(path.points.last() + handle * QPointF(-r0.y(), r0.x()), end - handle * tangent, end);
        }
    }
    if (closed)
        path.close();
    return path;
}

} // namespace

void PathShape::moveTo(const QPointF& p) {
    verbs.append(PathVerb::Move);
    points.append(p);
}

void PathShape::lineTo(const QPointF& p) {
    verbs.append(PathVerb::Line);
    points.append(p);
}

void PathShape::cubicTo(const QPointF& c1, const QPointF& c2, const QPointF& p) {
    verbs.append(PathVerb::Cubic);
    points.append(c1);
    points.append(c2);
    points.append(p);
}

void PathShape::close() {
    verbs.append(PathVerb::Close);
}

int PathShape::contourCount() const {
    return int(std::count(verbs.begin(), verbs.end(), PathVerb::Move));
}

ObjectKind kindOf(const Shape& shape) {
    return kKinds[shape.index()];
}

bool isOwnClass(const QString& className) {
    return std::any_of(kKinds.begin(), kKinds.end(), [&](ObjectKind kind) { return classNameOf(kind) == className; });
}

const char* shapeFault(const Shape& shape) {
    constexpr const char* range = "a coordinate is out of range";
    return std::visit(Overload{
                          [](const PointShape& s) -> const char* {
                              return usable(s.pos) && std::isfinite(s.dwellUs) ? nullptr : range;
                          },
                          [](const PolylineShape& s) -> const char* {
                              if (s.points.isEmpty())
                                  return "a line has no points";
                              return allUsable(s.points) ? nullptr : range;
                          },
                          [](const RectShape& s) -> const char* {
                              const bool sound =
                                  usable(s.rect.topLeft()) && usable(s.rect.width()) && usable(s.rect.height());
                              return sound && s.rect.width() >= 0.0 && s.rect.height() >= 0.0 ? nullptr : range;
                          },
                          [](const CircleShape& s) -> const char* {
                              const bool sound = usable(s.center) && usable(s.radius) && usable(s.startAngle);
                              return sound && s.radius >= 0.0 ? nullptr : range;
                          },
                          [](const ArcShape& s) -> const char* {
                              const bool sound = usable(s.center) && usable(s.radius) && usable(s.startAngle);
                              return sound && s.radius >= 0.0 && std::abs(s.sweepAngle) <= 360.0 ? nullptr : range;
                          },
                          [](const PathShape& s) { return pathFault(s); },
                          [](const GroupShape& s) { return groupFault(s); },
                          [](const TextShape& s) { return textFault(s); },
                          [](const GeneratedShape& s) { return generatedFault(s); },
                          [](const CodeShape& s) { return codeFault(s); },
                      },
                      shape);
}

Box shapeBounds(const Shape& shape, const QTransform& t) {
    return std::visit(
        Overload{
            [&](const PointShape& s) { return pointBounds(QVector<QPointF>{s.pos}, t); },
            [&](const PolylineShape& s) { return pointBounds(s.points, t); },
            [&](const RectShape& s) { return pointBounds(corners(s.rect), t); },
            [&](const CircleShape& s) {
                return roundBounds(s.center, s.radius, s.startAngle, s.clockwise ? -360.0 : 360.0, t);
            },
            [&](const ArcShape& s) { return roundBounds(s.center, s.radius, s.startAngle, s.sweepAngle, t); },
            [&](const PathShape& s) { return pathBounds(s, t); },
            [&](const TextShape& s) { return pathBounds(s.outline, t); },
            [&](const GeneratedShape& s) { return pathBounds(s.outline, t); },
            [&](const CodeShape& s) { return s.dots.isEmpty() ? pathBounds(s.outline, t) : pointBounds(s.dots, t); },
            [&](const GroupShape& s) {
                Box box;
                for (const ObjectPtr& child : s.children)
                    box.add(shapeBounds(child->shape(), child->transform() * t));
                return box;
            },
        },
        shape);
}

qint64 shapePointCount(const Shape& shape) {
    return std::visit(Overload{
                          [](const PointShape&) { return qint64(1); },
                          [](const PolylineShape& s) { return qint64(s.points.size()); },
                          [](const RectShape&) { return qint64(4); },
                          [](const CircleShape&) { return qint64(1); },
                          [](const ArcShape&) { return qint64(2); },
                          [](const PathShape& s) { return qint64(s.points.size()); },
                          [](const TextShape& s) { return qint64(s.outline.points.size()); },
                          [](const GeneratedShape& s) { return qint64(s.outline.points.size()); },
                          [](const CodeShape& s) { return qint64(s.outline.points.size() + s.dots.size()); },
                          [](const GroupShape& s) {
                              qint64 count = 0;
                              for (const ObjectPtr& child : s.children)
                                  count += shapePointCount(child->shape());
                              return count;
                          },
                      },
                      shape);
}

PathShape shapeToPath(const Shape& shape) {
    return std::visit(
        Overload{
            [](const PointShape&) { return PathShape(); },
            [](const PolylineShape& s) { return linesToPath(s.points, s.closed); },
            [](const RectShape& s) { return linesToPath(corners(s.rect), true); },
            [](const CircleShape& s) {
                return arcToPath(s.center, s.radius, s.startAngle, s.clockwise ? -360.0 : 360.0, true);
            },
            [](const ArcShape& s) { return arcToPath(s.center, s.radius, s.startAngle, s.sweepAngle, false); },
            [](const PathShape& s) { return s; },
            [](const GroupShape&) { return PathShape(); },
            [](const TextShape& s) { return s.outline; },
            [](const GeneratedShape& s) { return s.outline; },
            [](const CodeShape& s) { return s.outline; },
        },
        shape);
}

std::vector<PathShape> letterPaths(const TextShape& text) {
    std::vector<PathShape> letters;
    int contoursLeft = 0;
    int next = 0;
    for (PathVerb verb : text.outline.verbs) {
        if (verb == PathVerb::Move && contoursLeft-- == 0) {
            contoursLeft = text.characterContours.at(int(letters.size())) - 1;
            letters.emplace_back();
        }
        letters.back().verbs.append(verb);
        const int used = verb == PathVerb::Close ? 0 : verb == PathVerb::Cubic ? 3 : 1;
        letters.back().points += text.outline.points.mid(next, used);
        next += used;
    }
    return letters;
}

PathShape mapPath(const PathShape& path, const QTransform& transform) {
    PathShape mapped = path;
    for (QPointF& p : mapped.points)
        p = transform.map(p);
    return mapped;
}

} // namespace sim
