// SPDX-License-Identifier: MIT
// Circles and arcs through three taught places.
#include "simengine/view/threepoints.h"

#include <QtTest>
#include <cmath>

using namespace sim;

class tst_ThreePoints : public QObject {
    Q_OBJECT

private slots:
    void circle_goes_through_all_three() {
        const QPointF points[] = {{103, 4}, {98, -6}, {91, 8}};
        const auto circle = circleThrough(points[0], points[1], points[2]);
        QVERIFY(circle);
        for (const QPointF& point : points)
            QVERIFY(std::abs(QLineF(circle->center, point).length() - circle->radius) < 1e-9);
    }

    void line_and_repeated_points_give_none() {
        QVERIFY(!circleThrough({0, 0}, {1, 1}, {2, 2}));
        QVERIFY(!circleThrough({0, 0}, {1, 1}, {1, 1}));
        QVERIFY(!circleThrough({3, 3}, {3, 3}, {3, 3}));
        QVERIFY(!arcThrough({0, 0}, {1, 1}, {2, 2}));
    }

    void arc_passes_the_middle_point_data() {
        QTest::addColumn<QPointF>("middle");
        QTest::addColumn<double>("sweep");
        QTest::newRow("short way, counter-clockwise") << QPointF(std::sqrt(0.5), std::sqrt(0.5)) << 90.0;
        QTest::newRow("long way, clockwise") << QPointF(-1, 0) << -270.0;
    }
    void arc_passes_the_middle_point() {
        QFETCH(QPointF, middle);
        QFETCH(double, sweep);
        const auto arc = arcThrough({1, 0}, middle, {0, 1});
        QVERIFY(arc);
        QVERIFY(std::abs(arc->radius - 1.0) < 1e-9);
        QVERIFY(std::abs(arc->startAngle) < 1e-9);
        QVERIFY(std::abs(arc->sweepAngle - sweep) < 1e-9);
    }
};

QTEST_APPLESS_MAIN(tst_ThreePoints)
#include "tst_threepoints.moc"
