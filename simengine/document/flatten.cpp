// SPDX-License-Identifier: GPL-2.0-or-later
#include "simengine/document/flatten.h"

#include "simengine/document/markobject.h"

#include <QtMath>
#include <cmath>
#include <limits>

namespace sim {

namespace {

/// Pieces of a full turn at least: holds the length of a small circle within 0.1 %, which needs 41.
constexpr double kLargestTurn = 2.0 * M_PI / 48.0;

/// Pieces of one curve at most. Curves within the coordinate limit need fewer to keep the tolerance.
constexpr int kMostPieces = 1 << 17;

/// Pieces from which on no curve needs more to have its length.
constexpr int kMostRefined = 64;

/// Part of a curve's length by which halving its pieces may still lengthen it. The error that is left is a third of it.
constexpr double kLengthRefinement = 5.0e-4;

double distance(const QPointF& a, const QPointF& b) {
    return std::hypot(a.x() - b.x(), a.y() - b.y());
}

int piecesFor(double count) {
    return count < kMostPieces ? std::max(1, int(std::ceil(count))) : kMostPieces;
}

QPointF mapVector(const QTransform& t, double x, double y) {
    return {t.m11() * x + t.m21() * y, t.m12() * x + t.m22() * y};
}

struct HalfAxes {
    double longer = 0.0;
    double shorter = 0.0;
};

/// Of the ellipse center + u cos t + v sin t.
HalfAxes halfAxes(const QPointF& u, const QPointF& v) {
    const double a = QPointF::dotProduct(u, u);
    const double b = QPointF::dotProduct(v, v);
    const double spread = std::hypot((a - b) / 2.0, QPointF::dotProduct(u, v));
    return {std::sqrt((a + b) / 2.0 + spread), std::sqrt(std::max(0.0, (a + b) / 2.0 - spread))};
}

/// Part of an ellipse, angles in radians.
struct RoundLine {
    QPointF center, u, v;
    double from = 0.0;
    double sweep = 0.0;

    QPolygonF points(int pieces) const {
        QPolygonF line;
        line.reserve(pieces + 1);
        for (int i = 0; i <= pieces; ++i) {
            const double t = from + sweep * i / pieces;
            line.append(center + u * std::cos(t) + v * std::sin(t));
        }
        return line;
    }
};

/// A chord of a step h is off by at most h^2/8 times the longer half axis.
int roundPieces(const RoundLine& round, const HalfAxes& axes, double tolerance) {
    const double step = std::min(kLargestTurn, std::sqrt(8.0 * tolerance / std::max(axes.longer, tolerance)));
    return piecesFor(std::abs(round.sweep) / step);
}

/// A flat ellipse turns sharply at its ends, where equal steps of the angle miss length.
bool turnsSharply(const HalfAxes& axes) {
    return axes.shorter < 0.5 * axes.longer;
}

QPolygonF flattenRound(const RoundLine& round, double tolerance) {
    const HalfAxes axes = halfAxes(round.u, round.v);
    int pieces = roundPieces(round, axes, tolerance);
    QPolygonF points = round.points(pieces);
    while (turnsSharply(axes) && pieces < kMostPieces) {
        const QPolygonF finer = round.points(2 * pieces);
        const double length = polylineLength(finer);
        if (length - polylineLength(points) <= kLengthRefinement * length)
            break;
        points = finer;
        pieces *= 2;
    }
    return points;
}

qint64 countRound(const RoundLine& round, double tolerance) {
    const HalfAxes axes = halfAxes(round.u, round.v);
    int pieces = roundPieces(round, axes, tolerance);
    while (turnsSharply(axes) && pieces < kMostRefined)
        pieces *= 2;
    return pieces + 1;
}

RoundLine roundLine(const QPointF& center, double radius, double startDeg, double sweepDeg, const QTransform& t) {
    RoundLine round;
    round.center = t.map(center);
    round.u = mapVector(t, radius, 0.0);
    round.v = mapVector(t, 0.0, radius);
    round.from = qDegreesToRadians(startDeg);
    round.sweep = qDegreesToRadians(sweepDeg);
    return round;
}

RoundLine roundLine(const CircleShape& circle, const QTransform& t) {
    return roundLine(circle.center, circle.radius, circle.startAngle, circle.clockwise ? -360.0 : 360.0, t);
}

RoundLine roundLine(const ArcShape& arc, const QTransform& t) {
    return roundLine(arc.center, arc.radius, arc.startAngle, arc.sweepAngle, t);
}

QPointF cubicPoint(const QPointF* p, double t) {
    const double s = 1.0 - t;
    return s * s * s * p[0] + 3.0 * s * s * t * p[1] + 3.0 * s * t * t * p[2] + t * t * t * p[3];
}

/// With n equal pieces a chord is off by at most 6 m / (8 n^2), m being the larger of the two second differences of the
/// control points.
int cubicPieces(const QPointF* p, double tolerance) {
    const QPointF d1 = p[0] - 2.0 * p[1] + p[2];
    const QPointF d2 = p[1] - 2.0 * p[2] + p[3];
    const double m = std::max(std::hypot(d1.x(), d1.y()), std::hypot(d2.x(), d2.y()));
    return piecesFor(std::sqrt(0.75 * m / tolerance));
}

/// A curve is about as long as the mean of its chord and of its control polygon, and what n pieces miss of it goes with
/// 1/n^2: the doublings of appendCubic() follow without a point of it.
qint64 countCubic(const QPointF* p, double tolerance) {
    int pieces = cubicPieces(p, tolerance);
    if (pieces >= kMostRefined)
        return pieces;
    const double chord = distance(p[0], p[3]);
    const double polygon = distance(p[0], p[1]) + distance(p[1], p[2]) + distance(p[2], p[3]);
    const double missed = 0.75 * (polygon - chord) / (polygon + chord) / kLengthRefinement;
    while (pieces < kMostRefined && double(pieces) * pieces < missed)
        pieces *= 2;
    return pieces;
}

/// Appends a cubic without its start.
void appendCubic(const QPointF* p, double tolerance, QPolygonF& out) {
    int pieces = cubicPieces(p, tolerance);
    QPolygonF coarse;
    for (int i = 0; i <= pieces; ++i)
        coarse.append(i == 0 ? p[0] : i == pieces ? p[3] : cubicPoint(p, double(i) / pieces));
    double length = polylineLength(coarse);
    // a curve without extent has the length of its rounding, which grows with the pieces
    double reach = 0.0;
    for (int i = 0; i < 4; ++i)
        reach = std::max({reach, std::abs(p[i].x()), std::abs(p[i].y())});
    while (pieces < kMostPieces) {
        const double rounding = 4.0 * std::numeric_limits<double>::epsilon() * reach * 2 * pieces;
        QPolygonF fine;
        fine.reserve(2 * pieces + 1);
        for (int i = 0; i < pieces; ++i) {
            fine.append(coarse[i]);
            fine.append(cubicPoint(p, (2 * i + 1) / (2.0 * pieces)));
        }
        fine.append(p[3]);
        const double fineLength = polylineLength(fine);
        if (fineLength - length <= kLengthRefinement * fineLength + rounding)
            break;
        coarse = fine;
        length = fineLength;
        pieces *= 2;
    }
    for (int i = 1; i < coarse.size(); ++i)
        out.append(coarse[i]);
}

qint64 countPath(const PathShape& path, const QTransform& t, double tolerance) {
    if (!path.verbs.contains(PathVerb::Cubic))
        return path.verbs.size();
    qint64 count = 0;
    QPointF p[4];
    const QPointF* next = path.points.constData();
    for (PathVerb verb : path.verbs) {
        if (verb == PathVerb::Cubic) {
            for (int i = 1; i < 4; ++i)
                p[i] = t.map(*next++);
            count += countCubic(p, tolerance);
            p[0] = p[3];
        } else {
            // a contour ends with a copy of its first point
            ++count;
            if (verb != PathVerb::Close)
                p[0] = t.map(*next++);
        }
    }
    return count;
}

class PathFlattener {
public:
    PathFlattener(const PathShape& path, const QTransform& t, double tolerance, std::vector<FlatLine>& lines)
        : m_path(path)
        , m_transform(t)
        , m_tolerance(tolerance)
        , m_lines(lines) {}

    void run() {
        int next = 0;
        for (PathVerb verb : m_path.verbs) {
            switch (verb) {
            case PathVerb::Move:
                finish();
                m_line.points.append(at(next++));
                break;
            case PathVerb::Line:
                m_line.points.append(at(next++));
                break;
            case PathVerb::Cubic: {
                const QPointF p[4] = {m_line.points.last(), at(next), at(next + 1), at(next + 2)};
                appendCubic(p, m_tolerance, m_line.points);
                next += 3;
                break;
            }
            case PathVerb::Close:
                m_line.closed = true;
                finish();
                break;
            }
        }
        finish();
    }

private:
    QPointF at(int index) const { return m_transform.map(m_path.points[index]); }

    /// A contour of a lone Move draws nothing.
    void finish() {
        if (m_line.points.size() > 1) {
            if (m_line.closed && m_line.points.first() != m_line.points.last())
                m_line.points.append(m_line.points.first());
            m_lines.push_back(m_line);
        }
        m_line = FlatLine();
    }

    const PathShape& m_path;
    const QTransform& m_transform;
    double m_tolerance;
    std::vector<FlatLine>& m_lines;
    FlatLine m_line;
};

void closeLine(FlatLine& line) {
    line.closed = true;
    line.points.append(line.points.first());
}

} // namespace

double polylineLength(const QPolygonF& points) {
    double length = 0.0;
    for (int i = 1; i < points.size(); ++i)
        length += distance(points[i - 1], points[i]);
    return length;
}

void flattenShape(const Shape& shape, const QTransform& t, std::vector<FlatLine>& lines, double tolerance) {
    FlatLine line;
    if (const auto* point = std::get_if<PointShape>(&shape)) {
        line.points.append(t.map(point->pos));
        lines.push_back(line);
    } else if (const auto* polyline = std::get_if<PolylineShape>(&shape)) {
        line.points.reserve(polyline->points.size() + 1);
        for (const QPointF& p : polyline->points)
            line.points.append(t.map(p));
        if (polyline->closed && line.points.size() > 1)
            closeLine(line);
        lines.push_back(line);
    } else if (const auto* rect = std::get_if<RectShape>(&shape)) {
        const QRectF& r = rect->rect;
        for (const QPointF& p : {r.topLeft(), r.topRight(), r.bottomRight(), r.bottomLeft()})
            line.points.append(t.map(p));
        closeLine(line);
        lines.push_back(line);
    } else if (const auto* circle = std::get_if<CircleShape>(&shape)) {
        line.points = flattenRound(roundLine(*circle, t), tolerance);
        line.points.last() = line.points.first();
        line.closed = true;
        lines.push_back(line);
    } else if (const auto* arc = std::get_if<ArcShape>(&shape)) {
        line.points = flattenRound(roundLine(*arc, t), tolerance);
        lines.push_back(line);
    } else if (const auto* path = std::get_if<PathShape>(&shape)) {
        PathFlattener(*path, t, tolerance, lines).run();
    } else if (const auto* text = std::get_if<TextShape>(&shape)) {
        PathFlattener(text->outline, t, tolerance, lines).run();
    } else if (const auto* generated = std::get_if<GeneratedShape>(&shape)) {
        PathFlattener(generated->outline, t, tolerance, lines).run();
    } else if (const auto* code = std::get_if<CodeShape>(&shape)) {
        PathFlattener(code->outline, t, tolerance, lines).run();
        for (const QPointF& dot : code->dots)
            lines.push_back({QPolygonF({t.map(dot)}), false});
    } else if (const auto* group = std::get_if<GroupShape>(&shape)) {
        for (const ObjectPtr& child : group->children)
            flattenShape(child->shape(), child->transform() * t, lines, tolerance);
    }
}

qint64 flattenedPointCount(const Shape& shape, const QTransform& t, double tolerance) {
    if (const auto* circle = std::get_if<CircleShape>(&shape))
        return countRound(roundLine(*circle, t), tolerance);
    if (const auto* arc = std::get_if<ArcShape>(&shape))
        return countRound(roundLine(*arc, t), tolerance);
    if (const auto* path = std::get_if<PathShape>(&shape))
        return countPath(*path, t, tolerance);
    if (const auto* text = std::get_if<TextShape>(&shape))
        return countPath(text->outline, t, tolerance);
    if (const auto* generated = std::get_if<GeneratedShape>(&shape))
        return countPath(generated->outline, t, tolerance);
    if (const auto* code = std::get_if<CodeShape>(&shape))
        return countPath(code->outline, t, tolerance) + code->dots.size();
    if (const auto* group = std::get_if<GroupShape>(&shape)) {
        qint64 count = 0;
        for (const ObjectPtr& child : group->children)
            count += flattenedPointCount(child->shape(), child->transform() * t, tolerance);
        return count;
    }
    // straight ones end where they began
    return shapePointCount(shape) + 1;
}

} // namespace sim
