// SPDX-License-Identifier: GPL-2.0-or-later
#include "simengine/view/snapper.h"

#include <QtMath>
#include <cmath>
#include <optional>

namespace sim {

namespace {

/// Nodes of a line or path beyond which only its ends count.
constexpr int kMostNodes = 64;

QPointF middleOf(const QPointF& a, const QPointF& b) {
    return (a + b) / 2.0;
}

/// Collects the places of a shape; kinds of object without places of their own have only their bounds.
class PlaceCollector {
public:
    PlaceCollector(const QTransform& placed, std::vector<SnapPoint>& points)
        : m_placed(placed)
        , m_points(points) {}

    void operator()(const PointShape& s) { add(s.pos, SnapKind::End); }
    void operator()(const PolylineShape& s) {
        const int count = s.points.size();
        if (count > kMostNodes) {
            add(s.points.first(), SnapKind::End);
            add(s.points.last(), SnapKind::End);
            return;
        }
        for (int i = 0; i < count; ++i) {
            add(s.points[i], SnapKind::End);
            if (i + 1 < count || (s.closed && count > 2))
                add(middleOf(s.points[i], s.points[(i + 1) % count]), SnapKind::Middle);
        }
    }
    void operator()(const RectShape& s) {
        const QRectF& r = s.rect;
        const QPointF corners[] = {r.topLeft(), r.topRight(), r.bottomRight(), r.bottomLeft()};
        for (int i = 0; i < 4; ++i) {
            add(corners[i], SnapKind::End);
            add(middleOf(corners[i], corners[(i + 1) % 4]), SnapKind::Middle);
        }
        add(r.center(), SnapKind::Center);
    }
    void operator()(const CircleShape& s) {
        add(s.center, SnapKind::Center);
        for (int quarter = 0; quarter < 4; ++quarter)
            add(onCircle(s.center, s.radius, 90.0 * quarter), SnapKind::Bounds);
    }
    void operator()(const ArcShape& s) {
        add(s.center, SnapKind::Center);
        add(onCircle(s.center, s.radius, s.startAngle), SnapKind::End);
        add(onCircle(s.center, s.radius, s.startAngle + s.sweepAngle / 2.0), SnapKind::Middle);
        add(onCircle(s.center, s.radius, s.startAngle + s.sweepAngle), SnapKind::End);
    }
    void operator()(const PathShape& s) {
        const bool all = s.points.size() <= kMostNodes;
        int next = 0;
        QPointF last;
        for (int i = 0; i < s.verbs.size(); ++i) {
            const PathVerb verb = s.verbs[i];
            if (verb == PathVerb::Close)
                continue;
            next += verb == PathVerb::Cubic ? 3 : 1;
            const QPointF here = s.points[next - 1];
            const bool ends = verb == PathVerb::Move || i + 1 == s.verbs.size() || s.verbs[i + 1] == PathVerb::Move;
            if (all || ends)
                add(here, SnapKind::End);
            if (all && verb == PathVerb::Line)
                add(middleOf(last, here), SnapKind::Middle);
            last = here;
        }
    }
    void operator()(const GroupShape& s) {
        for (const ObjectPtr& child : s.children)
            addSnapPoints(*child, m_placed, m_points);
    }
    template<typename Other>
    void operator()(const Other&) {}

private:
    void add(const QPointF& at, SnapKind kind) {
        if (m_points.size() < SnapTargets::kMostPoints)
            m_points.push_back({m_placed.map(at), kind});
    }
    static QPointF onCircle(const QPointF& center, double radius, double degrees) {
        const double angle = qDegreesToRadians(degrees);
        return center + radius * QPointF(std::cos(angle), std::sin(angle));
    }

    QTransform m_placed;
    std::vector<SnapPoint>& m_points;
};

void addBounds(const Box& box, SnapTargets& targets) {
    for (int i = 0; i <= BasePointBottomRight; ++i) {
        const auto point = static_cast<BasePoint>(i);
        targets.points.push_back({box.at(point), point == BasePointCenter ? SnapKind::Center : SnapKind::Bounds});
    }
    const QPointF center = box.center();
    for (const double x : {box.minX, center.x(), box.maxX})
        targets.xs.push_back({x, box.minY, box.maxY});
    for (const double y : {box.minY, center.y(), box.maxY})
        targets.ys.push_back({y, box.minX, box.maxX});
}

/// One axis of the question.
struct AxisSnap {
    double by = 0.0;
    std::size_t place = 0;
    double at = 0.0;
    double from = 0.0, to = 0.0; ///< of the guide's object, along it
    SnapKind kind = SnapKind::Guide;
};

std::optional<AxisSnap> nearestGuide(const SnapQuery& query, const std::vector<SnapGuide>& guides,
                                     double (QPointF::*along)() const) {
    std::optional<AxisSnap> best;
    double nearest = query.reach;
    for (std::size_t i = 0; i < query.places.size(); ++i) {
        const double place = (query.places[i].*along)();
        for (const SnapGuide& guide : guides) {
            const double distance = std::abs(guide.at - place);
            if (distance >= nearest)
                continue;
            nearest = distance;
            best = AxisSnap{guide.at - place, i, guide.at, guide.from, guide.to, SnapKind::Guide};
        }
    }
    return best;
}

std::optional<AxisSnap> nearestGridLine(const SnapQuery& query, double (QPointF::*along)() const) {
    std::optional<AxisSnap> best;
    double nearest = query.reach;
    for (std::size_t i = 0; i < query.places.size() && query.gridStep > 0.0; ++i) {
        const double place = (query.places[i].*along)();
        const double line = std::round(place / query.gridStep) * query.gridStep;
        if (std::abs(line - place) >= nearest)
            continue;
        nearest = std::abs(line - place);
        best = AxisSnap{line - place, i, line, 0.0, 0.0, SnapKind::Grid};
    }
    return best;
}

std::optional<AxisSnap> snapAxis(const SnapQuery& query, const std::vector<SnapGuide>& guides,
                                 const SnapSettings& settings, double (QPointF::*along)() const) {
    std::optional<AxisSnap> found;
    if (settings.guides)
        found = nearestGuide(query, guides, along);
    if (!found && settings.grid)
        found = nearestGridLine(query, along);
    return found;
}

std::optional<SnapResult> snapToPoint(const SnapQuery& query, const SnapTargets& targets) {
    std::optional<SnapResult> best;
    double nearest = query.reach * query.reach;
    for (const QPointF& place : query.places) {
        for (const SnapPoint& target : targets.points) {
            const QPointF by = target.at - place;
            const double square = QPointF::dotProduct(by, by);
            if (square >= nearest)
                continue;
            nearest = square;
            best = SnapResult{by, {{target.kind, target.at, QLineF()}}};
        }
    }
    return best;
}

} // namespace

void addSnapPoints(const MarkObject& object, const QTransform& outer, std::vector<SnapPoint>& points) {
    std::visit(PlaceCollector(object.transform() * outer, points), object.shape());
}

SnapTargets snapTargets(const DocumentState& state, const QRectF& visibleMm, const std::function<bool(int)>& leftOut) {
    const Box visible{visibleMm.left(), visibleMm.top(), visibleMm.right(), visibleMm.bottom()};
    SnapTargets targets;
    for (int i = 0; i < state.count() && targets.points.size() < SnapTargets::kMostPoints; ++i) {
        const MarkObject& object = *state.at(i);
        if (!object.bounds().isValid() || !visible.intersects(object.bounds()) || leftOut(i))
            continue;
        addSnapPoints(object, QTransform(), targets.points);
        addBounds(object.bounds(), targets);
    }
    return targets;
}

SnapResult snap(const SnapQuery& query, const SnapTargets& targets, const SnapSettings& settings) {
    if (!settings.on || query.places.empty() || !(query.reach > 0.0))
        return {};
    if (settings.objects && query.freeX && query.freeY) {
        if (std::optional<SnapResult> found = snapToPoint(query, targets))
            return *found;
    }
    const auto x = query.freeX ? snapAxis(query, targets.xs, settings, &QPointF::x) : std::nullopt;
    const auto y = query.freeY ? snapAxis(query, targets.ys, settings, &QPointF::y) : std::nullopt;
    SnapResult result;
    result.by = {x ? x->by : 0.0, y ? y->by : 0.0};
    if (x) {
        const QPointF place = query.places[x->place] + result.by;
        const double from = x->kind == SnapKind::Guide ? std::min(x->from, place.y()) : place.y();
        const double to = x->kind == SnapKind::Guide ? std::max(x->to, place.y()) : place.y();
        result.hints.push_back({x->kind, {x->at, place.y()}, QLineF(x->at, from, x->at, to)});
    }
    if (y) {
        const QPointF place = query.places[y->place] + result.by;
        const double from = y->kind == SnapKind::Guide ? std::min(y->from, place.x()) : place.x();
        const double to = y->kind == SnapKind::Guide ? std::max(y->to, place.x()) : place.x();
        result.hints.push_back({y->kind, {place.x(), y->at}, QLineF(from, y->at, to, y->at)});
    }
    return result;
}

} // namespace sim
