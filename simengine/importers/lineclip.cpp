// SPDX-License-Identifier: GPL-2.0-or-later
#include "simengine/importers/lineclip.h"

#include "simengine/document/flatten.h"

#include <algorithm>
#include <cmath>
#include <polyclipping/clipper.hpp>

namespace sim {

namespace {

/// How far straight lines may be off a curve that is cut, mm.
constexpr double kTolerance = 0.0005;

/// Levels reached over by all edges of one cut together, and crossings of them.
constexpr qint64 kMostReached = 10'000'000;
constexpr qint64 kMostCrossings = 200'000;

/// Memory of one point while a cut is made: itself, as the clipping library has it, and its edge, in vectors that grow.
constexpr qint64 kBytesOfPoint = 160;

/// Units of the clipping library to the millimetre: a tenth of a nanometre on a field of a metre.
constexpr double kUnits = 1.0e7;

/// The outline as polylines; none when it would be of more points than the import may hold.
std::vector<FlatLine> flat(const PathShape& path, ImportBudget& budget) {
    std::vector<FlatLine> lines;
    const Shape shape(path);
    const qint64 points = flattenedPointCount(shape, QTransform(), kTolerance);
    if (budget.memory(points * kBytesOfPoint) && budget.step(points))
        flattenShape(shape, QTransform(), lines, kTolerance);
    // all of it is gone when the cut is made
    budget.memory(-points * kBytesOfPoint);
    return lines;
}

ClipperLib::IntPoint toUnits(const QPointF& p) {
    return ClipperLib::IntPoint(std::llround(p.x() * kUnits), std::llround(p.y() * kUnits));
}

QPointF toMm(const ClipperLib::IntPoint& p) {
    return {double(p.X) / kUnits, double(p.Y) / kUnits};
}

ClipperLib::Path toUnits(const QPolygonF& points) {
    ClipperLib::Path path;
    path.reserve(size_t(points.size()));
    for (const QPointF& p : points)
        path.push_back(toUnits(p));
    return path;
}

ClipperLib::PolyFillType ruleOf(const ClipArea& area) {
    return area.evenOdd ? ClipperLib::pftEvenOdd : ClipperLib::pftNonZero;
}

struct Edge {
    double x1, y1, x2, y2;
    double low, high;
};

void addEdges(const ClipperLib::Paths& paths, bool closed, std::vector<Edge>& edges) {
    for (const ClipperLib::Path& path : paths) {
        for (size_t i = closed ? 0 : 1; i < path.size(); ++i) {
            const auto& a = path[i == 0 ? path.size() - 1 : i - 1];
            const auto& b = path[i];
            const Edge edge{double(a.X),
                            double(a.Y),
                            double(b.X),
                            double(b.Y),
                            double(std::min(a.Y, b.Y)),
                            double(std::max(a.Y, b.Y))};
            edges.push_back(edge);
        }
    }
}

bool cross(const Edge& a, const Edge& b) {
    if (std::max(a.x1, a.x2) < std::min(b.x1, b.x2) || std::max(b.x1, b.x2) < std::min(a.x1, a.x2))
        return false;
    const auto side = [](const Edge& e, double x, double y) {
        return (e.x2 - e.x1) * (y - e.y1) - (e.y2 - e.y1) * (x - e.x1);
    };
    return side(a, b.x1, b.y1) * side(a, b.x2, b.y2) <= 0.0 && side(b, a.x1, a.y1) * side(b, a.x2, a.y2) <= 0.0;
}

/// The clipping library cannot be stopped, and its time goes with the levels that edges reach over and with their
/// crossings. Both are counted first, and a cut that would take too long ends the import.
bool affordable(std::vector<Edge> edges, ImportBudget& budget) {
    std::vector<double> levels;
    for (const Edge& edge : edges)
        levels.push_back(edge.low);
    std::sort(levels.begin(), levels.end());
    std::sort(edges.begin(), edges.end(), [](const Edge& a, const Edge& b) { return a.low < b.low; });
    qint64 reached = 0;
    for (const Edge& edge : edges) {
        reached += std::upper_bound(levels.begin(), levels.end(), edge.high) -
                   std::lower_bound(levels.begin(), levels.end(), edge.low);
        if (reached > kMostReached || !budget.step()) {
            budget.fail(Note::TooLong);
            return false;
        }
    }
    qint64 crossings = 0;
    for (size_t i = 0; i < edges.size(); ++i) {
        for (size_t k = i + 1; k < edges.size() && edges[k].low <= edges[i].high; ++k)
            crossings += cross(edges[i], edges[k]) ? 1 : 0;
        if (crossings > kMostCrossings || !budget.step()) {
            budget.fail(Note::TooLong);
            return false;
        }
    }
    return true;
}

bool affordable(const ClipperLib::Paths& closed, const ClipperLib::Paths& open, const ClipperLib::Paths& clip,
                ImportBudget& budget) {
    std::vector<Edge> edges;
    addEdges(closed, true, edges);
    addEdges(open, false, edges);
    addEdges(clip, true, edges);
    return affordable(std::move(edges), budget);
}

ClipperLib::Paths areaOf(const ClipArea& area, ImportBudget& budget) {
    ClipperLib::Paths paths;
    for (const FlatLine& line : flat(area.path, budget))
        paths.push_back(toUnits(line.points));
    ClipperLib::Paths clean;
    if (!affordable(paths, {}, {}, budget))
        return clean;
    ClipperLib::SimplifyPolygons(paths, clean, ruleOf(area));
    return clean;
}

void append(PathShape& path, const ClipperLib::Path& piece, bool closed) {
    if (piece.size() < 2)
        return;
    path.moveTo(toMm(piece.front()));
    for (size_t i = 1; i < piece.size(); ++i)
        path.lineTo(toMm(piece[i]));
    if (closed)
        path.close();
}

/// The part of a segment inside the rectangle, as parameters from 0 to 1; false when there is none.
bool segmentInside(const QPointF& a, const QPointF& d, const QRectF& rect, double& from, double& to) {
    from = 0.0;
    to = 1.0;
    const double p[] = {-d.x(), d.x(), -d.y(), d.y()};
    const double q[] = {a.x() - rect.left(), rect.right() - a.x(), a.y() - rect.top(), rect.bottom() - a.y()};
    for (int i = 0; i < 4; ++i) {
        if (p[i] == 0.0) {
            if (q[i] < 0.0)
                return false;
            continue;
        }
        const double t = q[i] / p[i];
        if (p[i] < 0.0)
            from = std::max(from, t);
        else
            to = std::min(to, t);
    }
    return from <= to;
}

} // namespace

PathShape clippedToRect(const PathShape& path, const QRectF& rect, ImportBudget& budget) {
    PathShape clipped;
    for (const FlatLine& line : flat(path, budget)) {
        if (!budget.points(line.points.size()))
            break;
        bool open = false;
        for (int i = 1; i < line.points.size(); ++i) {
            const QPointF a = line.points[i - 1];
            const QPointF d = line.points[i] - a;
            double from = 0.0;
            double to = 1.0;
            if (!segmentInside(a, d, rect, from, to) || (from == to && !d.isNull())) {
                open = false;
                continue;
            }
            if (!open || from > 0.0)
                clipped.moveTo(a + d * from);
            clipped.lineTo(a + d * to);
            open = to == 1.0;
        }
    }
    return clipped;
}

PathShape clippedToAreas(const PathShape& path, const std::vector<ClipArea>& areas, bool filled, ImportBudget& budget) {
    ClipperLib::Paths closed;
    ClipperLib::Paths open;
    for (const FlatLine& line : flat(path, budget))
        (filled ? closed : open).push_back(toUnits(line.points));
    for (const ClipArea& area : areas) {
        const ClipperLib::Paths clip = areaOf(area, budget);
        if (!affordable(closed, open, clip, budget))
            return PathShape();
        ClipperLib::Clipper clipper;
        clipper.AddPaths(open, ClipperLib::ptSubject, false);
        clipper.AddPaths(closed, ClipperLib::ptSubject, true);
        clipper.AddPaths(clip, ClipperLib::ptClip, true);
        ClipperLib::PolyTree tree;
        clipper.Execute(ClipperLib::ctIntersection, tree, ClipperLib::pftNonZero, ClipperLib::pftEvenOdd);
        ClipperLib::ClosedPathsFromPolyTree(tree, closed);
        ClipperLib::OpenPathsFromPolyTree(tree, open);
    }
    PathShape clipped;
    for (const ClipperLib::Path& piece : open)
        append(clipped, piece, false);
    for (const ClipperLib::Path& piece : closed)
        append(clipped, piece, true);
    return clipped;
}

ClipArea unitedAreas(const std::vector<ClipArea>& areas, ImportBudget& budget) {
    if (areas.size() == 1)
        return areas.front();
    ClipperLib::Paths parts;
    for (const ClipArea& area : areas) {
        const ClipperLib::Paths paths = areaOf(area, budget);
        parts.insert(parts.end(), paths.begin(), paths.end());
    }
    if (!affordable(parts, {}, {}, budget))
        return {};
    ClipperLib::Clipper clipper;
    clipper.AddPaths(parts, ClipperLib::ptSubject, true);
    ClipperLib::Paths all;
    clipper.Execute(ClipperLib::ctUnion, all, ClipperLib::pftNonZero, ClipperLib::pftNonZero);
    ClipArea united;
    united.evenOdd = true;
    for (const ClipperLib::Path& piece : all)
        append(united.path, piece, true);
    return united;
}

bool isWithin(const Box& box, double limit) {
    return box.isValid() && box.minX > -limit && box.maxX < limit && box.minY > -limit && box.maxY < limit;
}

bool liesWithin(const Box& box, const ClipArea& area) {
    const QVector<QPointF>& p = area.path.points;
    if (p.size() != 4 || area.path.verbs.contains(PathVerb::Cubic) || area.path.contourCount() != 1)
        return false;
    Box edge;
    for (int i = 0; i < 4; ++i) {
        const QPointF d = p[(i + 1) % 4] - p[i];
        if (d.x() != 0.0 && d.y() != 0.0)
            return false;
        edge.add(p[i].x(), p[i].y());
    }
    return box.minX >= edge.minX && box.maxX <= edge.maxX && box.minY >= edge.minY && box.maxY <= edge.maxY;
}

} // namespace sim
