// SPDX-License-Identifier: MIT
#include "simengine/importers/nurbs.h"

#include <QTest>
#include <cmath>
#include <random>

using namespace sim;

namespace {

/// The spline by the recursive definition of its basis: a second way to the same curve.
double basis(const std::vector<double>& knots, int i, int degree, double u) {
    const size_t k = size_t(i);
    if (degree == 0)
        return (knots[k] <= u && u < knots[k + 1]) ? 1.0 : 0.0;
    const size_t d = size_t(degree);
    double sum = 0.0;
    if (knots[k + d] > knots[k])
        sum += (u - knots[k]) / (knots[k + d] - knots[k]) * basis(knots, i, degree - 1, u);
    if (knots[k + d + 1] > knots[k + 1])
        sum += (knots[k + d + 1] - u) / (knots[k + d + 1] - knots[k + 1]) * basis(knots, i + 1, degree - 1, u);
    return sum;
}

QPointF pointOf(const Nurbs& s, double u) {
    QPointF sum;
    double weight = 0.0;
    for (size_t i = 0; i < s.points.size(); ++i) {
        const double b = basis(s.knots, int(i), s.degree, u) * (s.weights.empty() ? 1.0 : s.weights[i]);
        sum += s.points[i] * b;
        weight += b;
    }
    return sum / weight;
}

double distanceTo(const PathShape& path, const QPointF& p) {
    double best = 1e30;
    QPointF begin = path.points.first();
    int at = 1;
    for (int v = 1; v < path.verbs.size(); ++v) {
        const bool curve = path.verbs[v] == PathVerb::Cubic;
        const QPointF c1 = curve ? path.points[at] : begin;
        const QPointF c2 = curve ? path.points[at + 1] : path.points[at];
        const QPointF end = path.points[at + (curve ? 2 : 0)];
        // coarse, then fine about the best
        double middle = 0.0;
        double nearest = 1e30;
        const auto look = [&](double t) {
            const double s = 1.0 - t;
            const QPointF q = curve ? begin * s * s * s + c1 * 3 * s * s * t + c2 * 3 * s * t * t + end * t * t * t
                                    : begin * s + end * t;
            const double away = std::hypot(q.x() - p.x(), q.y() - p.y());
            if (away < nearest) {
                nearest = away;
                middle = t;
            }
        };
        for (int i = 0; i <= 1024; ++i)
            look(i / 1024.0);
        for (double step = 1.0 / 2048; step > 1e-10; step /= 2) {
            const double from = middle;
            look(std::max(0.0, from - step));
            look(std::min(1.0, from + step));
        }
        best = std::min(best, nearest);
        begin = end;
        at += curve ? 3 : 1;
    }
    return best;
}

} // namespace

/// Splines as curves.
class NurbsTest : public QObject {
    Q_OBJECT

private slots:
    void curves_keep_within_a_micrometre_data();
    void curves_keep_within_a_micrometre();
    void cubic_splines_come_exactly();
    void unsound_splines_are_refused();
    void curve_through_points_meets_them();
};

void NurbsTest::curves_keep_within_a_micrometre_data() {
    QTest::addColumn<int>("degree");
    QTest::addColumn<bool>("weighted");
    QTest::addColumn<bool>("clamped");
    for (int degree : {1, 2, 3, 4, 5, 7}) {
        for (bool weighted : {false, true}) {
            for (bool clamped : {false, true})
                QTest::addRow("degree %d%s%s", degree, weighted ? ", weights" : "", clamped ? "" : ", free ends")
                    << degree << weighted << clamped;
        }
    }
}

void NurbsTest::curves_keep_within_a_micrometre() {
    QFETCH(int, degree);
    QFETCH(bool, weighted);
    QFETCH(bool, clamped);
    std::mt19937 random(unsigned(degree * 4 + weighted * 2 + clamped));
    std::uniform_real_distribution<double> place(-50.0, 50.0);
    std::uniform_real_distribution<double> weight(0.2, 5.0);
    for (int round = 0; round < 5; ++round) {
        Nurbs spline;
        spline.degree = degree;
        const int n = degree + 1 + round * 2;
        for (int i = 0; i < n; ++i) {
            spline.points.push_back({place(random), place(random)});
            if (weighted)
                spline.weights.push_back(weight(random));
        }
        for (int i = 0; i < n + degree + 1; ++i) {
            const int inner = clamped ? std::max(0, std::min(n - degree, i - degree)) : i;
            // a knot that stands twice in the middle
            spline.knots.push_back(round == 3 && degree > 1 && inner == 2 ? 1.0 : double(inner));
        }
        QVERIFY(isSound(spline));
        PathShape path;
        QVERIFY(appendNurbs(path, spline, 2e-4));
        QCOMPARE(path.contourCount(), 1);
        const double from = spline.knots[size_t(degree)];
        const double to = spline.knots[size_t(n)];
        for (int i = 0; i < 25; ++i) {
            const double u = from + (to - from) * i / 60.0;
            const double away = distanceTo(path, pointOf(spline, u));
            QVERIFY2(away < 1e-3, qPrintable(QString("%1 at %2 of round %3").arg(away).arg(u).arg(round)));
        }
    }
}

void NurbsTest::cubic_splines_come_exactly() {
    Nurbs spline;
    spline.points = {{0, 0}, {1, 5}, {4, 5}, {6, 0}, {9, -3}};
    spline.knots = {0, 0, 0, 0, 1, 2, 2, 2, 2};
    PathShape path;
    QVERIFY(appendNurbs(path, spline, 1e-9));
    QCOMPARE(path.verbs, (QVector<PathVerb>{PathVerb::Move, PathVerb::Cubic, PathVerb::Cubic}));
    for (double u : {0.0, 0.3, 0.9, 1.1, 1.9})
        QVERIFY(distanceTo(path, pointOf(spline, u)) < 1e-9);
}

void NurbsTest::unsound_splines_are_refused() {
    Nurbs good;
    good.degree = 1;
    good.points = {{0, 0}, {1, 1}};
    good.knots = {0, 0, 1, 1};
    QVERIFY(isSound(good));
    const auto refused = [&](auto change) {
        Nurbs spline = good;
        change(spline);
        PathShape path;
        return !isSound(spline) && !appendNurbs(path, spline, 1e-3);
    };
    QVERIFY(refused([](Nurbs& s) { s.degree = 0; }));
    QVERIFY(refused([](Nurbs& s) { s.degree = 1000; }));
    QVERIFY(refused([](Nurbs& s) { s.knots.pop_back(); }));
    QVERIFY(refused([](Nurbs& s) { s.knots = {1, 1, 0, 0}; }));
    QVERIFY(refused([](Nurbs& s) { s.knots = {0, 0, 0, 0}; }));
    QVERIFY(refused([](Nurbs& s) { s.weights = {1}; }));
    QVERIFY(refused([](Nurbs& s) { s.weights = {1, 0}; }));
    QVERIFY(refused([](Nurbs& s) { s.weights = {1, -1}; }));
    QVERIFY(refused([](Nurbs& s) { s.points[0].setX(std::nan("")); }));
    QVERIFY(refused([](Nurbs& s) { s.knots[1] = std::nan(""); }));
}

void NurbsTest::curve_through_points_meets_them() {
    PathShape path;
    appendThrough(path, {{0, 0}, {10, 5}, {20, 0}, {20, 0}}, false);
    QCOMPARE(path.points.first(), QPointF(0, 0));
    QVERIFY(path.points.contains({10, 5}) && path.points.contains({20, 0}));
    for (const QPointF& p : path.points)
        QVERIFY(std::isfinite(p.x()) && std::isfinite(p.y()));
    PathShape round;
    appendThrough(round, {{0, 0}, {10, 0}, {10, 10}}, true);
    QCOMPARE(round.points.last(), QPointF(0, 0));
    QCOMPARE(round.verbs.last(), PathVerb::Close);
}

QTEST_APPLESS_MAIN(NurbsTest)
#include "tst_nurbs.moc"
