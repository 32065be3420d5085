// SPDX-License-Identifier: GPL-2.0-or-later
#include "simengine/importers/nurbs.h"

#include "simengine/importers/importbudget.h"

#include <algorithm>
#include <array>
#include <cmath>

namespace sim {

namespace {

/// Curves that one spline may become.
constexpr int kMostCurves = 200000;
/// Halvings of one piece of a spline.
constexpr int kMostHalvings = 12;

/// A weighted point in homogeneous coordinates.
struct Weighted {
    double x = 0.0;
    double y = 0.0;
    double w = 1.0;

    Weighted operator+(const Weighted& o) const { return {x + o.x, y + o.y, w + o.w}; }
    Weighted operator-(const Weighted& o) const { return {x - o.x, y - o.y, w - o.w}; }
    Weighted operator*(double f) const { return {x * f, y * f, w * f}; }
    QPointF point() const { return {x / w, y / w}; }
};

struct Place {
    QPointF point;
    QPointF slope;
};

/// One polynomial piece in Bernstein form.
class Piece {
public:
    explicit Piece(std::vector<Weighted> control)
        : m_control(std::move(control)) {}

    int degree() const { return int(m_control.size()) - 1; }

    /// Point and derivative by the parameter from 0 to 1.
    Place at(double t) const {
        std::array<Weighted, Nurbs::kMostDegree + 1> b;
        std::copy(m_control.begin(), m_control.end(), b.begin());
        const int n = degree();
        for (int r = 1; r < n; ++r) {
            for (int i = 0; i <= n - r; ++i)
                b[size_t(i)] = b[size_t(i)] * (1.0 - t) + b[size_t(i) + 1] * t;
        }
        const Weighted d = (b[1] - b[0]) * double(n);
        const Weighted p = b[0] * (1.0 - t) + b[1] * t;
        const QPointF point = p.point();
        return {point, (QPointF(d.x, d.y) - point * d.w) / p.w};
    }

private:
    std::vector<Weighted> m_control;
};

/// Inserts the knot once more; de Boor's corners.
void insertKnot(std::vector<double>& knots, std::vector<Weighted>& points, int degree, double u) {
    const int span = int(std::upper_bound(knots.begin(), knots.end(), u) - knots.begin()) - 1;
    int times = 0;
    while (span - times >= 0 && knots[size_t(span - times)] == u)
        ++times;
    std::vector<Weighted> next(points.size() + 1);
    for (int i = 0; i < int(next.size()); ++i) {
        if (i <= span - degree) {
            next[size_t(i)] = points[size_t(i)];
        } else if (i > span - times) {
            next[size_t(i)] = points[size_t(i) - 1];
        } else {
            const double from = knots[size_t(i)];
            const double to = knots[size_t(i + degree)];
            const double a = to > from ? (u - from) / (to - from) : 0.0;
            next[size_t(i)] = points[size_t(i)] * a + points[size_t(i) - 1] * (1.0 - a);
        }
    }
    points = std::move(next);
    knots.insert(knots.begin() + span + 1, u);
}

/// The basis of one span by local insertion: the control points of the piece between two knots.
Piece pieceOf(const Nurbs& spline, const std::vector<Weighted>& points, int span) {
    const int p = spline.degree;
    std::vector<double> knots(spline.knots.begin() + span - p, spline.knots.begin() + span + p + 2);
    std::vector<Weighted> local(points.begin() + span - p, points.begin() + span + 1);
    const double from = spline.knots[size_t(span)];
    const double to = spline.knots[size_t(span) + 1];
    // raise both ends to full multiplicity; the points between are the piece
    const auto multiplicity = [&](double u) { return int(std::count(knots.begin(), knots.end(), u)); };
    for (int k = multiplicity(from); k < p; ++k)
        insertKnot(knots, local, p, from);
    for (int k = multiplicity(to); k < p; ++k)
        insertKnot(knots, local, p, to);
    const int last = int(std::upper_bound(knots.begin(), knots.end(), from) - knots.begin()) - 1;
    return Piece({local.begin() + (last - p), local.begin() + last + 1});
}

/// What the curves of one spline may still take.
struct Left {
    int curves = kMostCurves;
    ImportBudget* budget = nullptr;

    /// A curve is evaluated in steps that go with the square of its degree.
    bool take(int degree) { return --curves >= 0 && (!budget || budget->step(qint64(degree) * degree)); }
};

/// A cubic with the piece's ends and slopes; halved until it keeps within the tolerance.
bool appendPiece(PathShape& path, const Piece& piece, double from, double to, double tolerance, int depth, Left& left) {
    const Place a = piece.at(from);
    const Place b = piece.at(to);
    const double third = (to - from) / 3.0;
    const QPointF c1 = a.point + a.slope * third;
    const QPointF c2 = b.point - b.slope * third;
    double worst = 0.0;
    for (double t : {0.2, 0.4, 0.5, 0.6, 0.8}) {
        const double s = 1.0 - t;
        const QPointF p = a.point * s * s * s + c1 * 3 * s * s * t + c2 * 3 * s * t * t + b.point * t * t * t;
        const QPointF off = p - piece.at(from + (to - from) * t).point;
        worst = std::max(worst, std::hypot(off.x(), off.y()));
    }
    if (!std::isfinite(worst) || !left.take(piece.degree()))
        return false;
    if (worst > tolerance && depth < kMostHalvings) {
        const double middle = (from + to) / 2.0;
        return appendPiece(path, piece, from, middle, tolerance, depth + 1, left) &&
               appendPiece(path, piece, middle, to, tolerance, depth + 1, left);
    }
    path.cubicTo(c1, c2, b.point);
    return true;
}

} // namespace

bool isSound(const Nurbs& s) {
    const auto finite = [](double v) { return std::isfinite(v) && std::abs(v) < 1e12; };
    if (s.degree < 1 || s.degree > Nurbs::kMostDegree || int(s.points.size()) <= s.degree ||
        s.knots.size() != s.points.size() + size_t(s.degree) + 1)
        return false;
    if (!s.weights.empty() && s.weights.size() != s.points.size())
        return false;
    for (double w : s.weights) {
        if (!finite(w) || !(w > 1e-9))
            return false;
    }
    for (const QPointF& p : s.points) {
        if (!finite(p.x()) || !finite(p.y()))
            return false;
    }
    for (size_t i = 0; i < s.knots.size(); ++i) {
        if (!finite(s.knots[i]) || (i > 0 && s.knots[i] < s.knots[i - 1]))
            return false;
    }
    return s.knots[size_t(s.degree)] < s.knots[s.points.size()];
}

bool appendNurbs(PathShape& path, const Nurbs& spline, double tolerance, ImportBudget* budget) {
    if (!isSound(spline))
        return false;
    std::vector<Weighted> points;
    for (size_t i = 0; i < spline.points.size(); ++i) {
        const double w = spline.weights.empty() ? 1.0 : spline.weights[i];
        points.push_back({spline.points[i].x() * w, spline.points[i].y() * w, w});
    }
    Left left;
    left.budget = budget;
    bool begun = false;
    for (int span = spline.degree; span < int(spline.points.size()); ++span) {
        if (!(spline.knots[size_t(span) + 1] > spline.knots[size_t(span)]))
            continue;
        const Piece piece = pieceOf(spline, points, span);
        if (!begun)
            path.moveTo(piece.at(0.0).point);
        begun = true;
        if (budget && !budget->step(qint64(spline.degree) * spline.degree))
            return false;
        if (piece.degree() == 1)
            path.lineTo(piece.at(1.0).point);
        else if (!appendPiece(path, piece, 0.0, 1.0, tolerance, 0, left))
            return false;
    }
    return begun;
}

double extentOf(const std::vector<QPointF>& points) {
    Box box;
    for (const QPointF& p : points)
        box.add(p.x(), p.y());
    return box.isValid() ? std::max(box.width(), box.height()) : 0.0;
}

void appendThrough(PathShape& path, const std::vector<QPointF>& points, bool closed) {
    const int n = int(points.size());
    if (n == 0)
        return;
    const auto at = [&](int i) {
        return closed ? points[size_t((i % n + n) % n)] : points[size_t(std::max(0, std::min(n - 1, i)))];
    };
    path.moveTo(points.front());
    for (int i = 0; i + 1 < n + (closed ? 1 : 0); ++i) {
        // slopes by the neighbours, as far as the nearer of them lies away
        const QPointF a = at(i);
        const QPointF b = at(i + 1);
        const auto handle = [&](const QPointF& before, const QPointF& after) {
            const QPointF way = after - before;
            const double length = std::hypot(way.x(), way.y());
            const QPointF step = b - a;
            return length > 0.0 ? way / length * (std::hypot(step.x(), step.y()) / 3.0) : QPointF();
        };
        path.cubicTo(a + handle(at(i - 1), b), b - handle(a, at(i + 2)), b);
    }
    if (closed)
        path.close();
}

} // namespace sim
