// SPDX-License-Identifier: MIT
// What of a polyline reaches the painter.
#include "simengine/view/devicelines.h"

#include <QtTest>
#include <cmath>

using namespace sim;

namespace {

const QRectF kViewport(0, 0, 100, 100);

double lengthOf(const QVector<QPolygonF>& runs) {
    double length = 0.0;
    for (const QPolygonF& run : runs) {
        for (int i = 1; i < run.size(); ++i)
            length += QLineF(run[i - 1], run[i]).length();
    }
    return length;
}

} // namespace

class tst_DeviceLines : public QObject {
    Q_OBJECT

private slots:
    void vertices_closer_than_half_a_pixel_are_dropped() {
        DeviceLines lines(QTransform(), kViewport);
        QPolygonF dense;
        for (int i = 0; i <= 10000; ++i)
            dense << QPointF(10 + i * 0.005, 50 + i * 0.0005);
        lines.add(dense);
        QVERIFY(lines.vertexCount() <= 102);
        QVERIFY(qAbs(lengthOf(lines.runs()) - std::hypot(50.0, 5.0)) < 0.01);
        QCOMPARE(lines.runs().first().last(), QPointF(60, 55));
    }

    void inside_lines_come_through_unchanged_data() {
        QTest::addColumn<bool>("whole");
        QTest::newRow("cut") << false;
        QTest::newRow("whole") << true;
    }
    void inside_lines_come_through_unchanged() {
        QFETCH(bool, whole);
        DeviceLines lines(QTransform::fromScale(2, -2) * QTransform::fromTranslate(10, 90), kViewport);
        const QPolygonF line({QPointF(0, 0), QPointF(10, 5), QPointF(15, 20)});
        if (whole)
            lines.addWhole(line);
        else
            lines.add(line);
        QCOMPARE(lines.runs(),
                 QVector<QPolygonF>({QPolygonF(QVector<QPointF>{QPointF(10, 90), QPointF(30, 80), QPointF(40, 50)})}));
    }

    void outside_lines_give_nothing() {
        DeviceLines lines(QTransform(), kViewport);
        lines.add(QPolygonF(QVector<QPointF>{QPointF(-50, -10), QPointF(200, -10), QPointF(200, 200)}));
        // Its box covers the corner, the line itself passes by.
        lines.add(QPolygonF(QVector<QPointF>{QPointF(80, -30), QPointF(130, 20)}));
        QVERIFY(lines.isEmpty());
    }

    void crossing_lines_are_cut_at_the_edges() {
        DeviceLines lines(QTransform(), kViewport);
        lines.add(QPolygonF(QVector<QPointF>{QPointF(-1e12, 40), QPointF(1e12, 40)}));
        const auto runs = lines.runs();
        QCOMPARE(runs.size(), 1);
        QCOMPARE(runs.first().size(), 2);
        QVERIFY(qAbs(runs.first().first().x()) < 0.01);
        QVERIFY(qAbs(runs.first().last().x() - 100.0) < 0.01);
    }

    void a_line_that_leaves_and_comes_back_gives_two_runs() {
        DeviceLines lines(QTransform(), kViewport);
        lines.add(QPolygonF(QVector<QPointF>{QPointF(50, 20), QPointF(150, 20), QPointF(150, 60), QPointF(50, 60)}));
        const auto runs = lines.runs();
        QCOMPARE(runs.size(), 2);
        QCOMPARE(runs[0], QPolygonF(QVector<QPointF>{QPointF(50, 20.5), QPointF(100, 20.5)}));
        QCOMPARE(runs[1], QPolygonF(QVector<QPointF>{QPointF(100, 60.5), QPointF(50, 60.5)}));
    }

    void lines_along_the_axes_lie_on_the_middles_of_pixels() {
        DeviceLines lines(QTransform(), kViewport);
        lines.addWhole(QPolygonF(QVector<QPointF>{QPointF(10.2, 20.7), QPointF(50.9, 20.7), QPointF(50.9, 60.1),
                                                  QPointF(10.2, 60.1), QPointF(10.2, 20.7)}));
        QCOMPARE(lines.runs().first(),
                 QPolygonF(QVector<QPointF>{QPointF(10.5, 20.5), QPointF(50.5, 20.5), QPointF(50.5, 60.5),
                                            QPointF(10.5, 60.5), QPointF(10.5, 20.5)}));
    }

    void the_effort_is_their_length_and_more_along_the_axes() {
        DeviceLines lines(QTransform::fromScale(2, 2), kViewport);
        QCOMPARE(lines.effort(), 0.0);
        lines.addWhole(QPolygonF(QVector<QPointF>{QPointF(5, 5), QPointF(20, 25)}));
        QCOMPARE(lines.effort(), 50.0);
        lines.addWhole(QPolygonF(QVector<QPointF>{QPointF(5, 5), QPointF(20, 5), QPointF(20, 25)}));
        QCOMPARE(lines.effort(), 50.0 + DeviceLines::kAxisEffort * 70.0);
        lines.clear();
        QCOMPARE(lines.effort(), 0.0);
        // Of this one 100 pixels are inside.
        lines.add(QPolygonF(QVector<QPointF>{QPointF(-100, 40), QPointF(100, 40)}));
        QCOMPARE(lines.effort(), DeviceLines::kAxisEffort * 100.0);
    }

    void single_points_give_no_line() {
        DeviceLines lines(QTransform(), kViewport);
        lines.add(QPolygonF(QVector<QPointF>{QPointF(5, 5)}));
        lines.addWhole(QPolygonF(QVector<QPointF>{QPointF(5, 5)}));
        lines.add(QPolygonF());
        QVERIFY(lines.isEmpty());
        QVERIFY(lines.runs().isEmpty());
    }

    void a_line_below_half_a_pixel_is_still_a_speck() {
        DeviceLines lines(QTransform(), kViewport);
        lines.add(QPolygonF(QVector<QPointF>{QPointF(5, 5), QPointF(5.1, 5.1), QPointF(5.2, 5.1)}));
        QCOMPARE(lines.runs().size(), 1);
        QCOMPARE(lines.runs().first().size(), 2);
    }
};

QTEST_APPLESS_MAIN(tst_DeviceLines)
#include "tst_devicelines.moc"
