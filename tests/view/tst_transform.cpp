// SPDX-License-Identifier: MIT
// The map between field and screen, and the divisions of rulers and grid.
#include "simengine/view/rulerscale.h"
#include "simengine/view/viewtransform.h"

#include <QtTest>
#include <cmath>

using namespace sim;

class tst_Transform : public QObject {
    Q_OBJECT

private slots:
    void y_points_up() {
        ViewTransform transform;
        transform.setViewport({800, 600});
        QCOMPARE(transform.toPixel({0, 0}), QPointF(400, 300));
        QVERIFY(transform.toPixel({0, 1}).y() < 300.0);
        QVERIFY(transform.toPixel({1, 0}).x() > 400.0);
    }

    void matrix_is_the_same_map() {
        ViewTransform transform;
        transform.setViewport({640, 480});
        transform.setCenter({3.5, -7.25});
        transform.zoomAbout({10, 20}, 3.7);
        const QPointF mm(12.3, -4.5);
        const QPointF expected = transform.toPixel(mm);
        const QPointF got = transform.matrix().map(mm);
        QVERIFY(std::abs(got.x() - expected.x()) < 1e-9);
        QVERIFY(std::abs(got.y() - expected.y()) < 1e-9);
        QVERIFY(std::abs(transform.toMm(expected).x() - mm.x()) < 1e-9);
        QVERIFY(std::abs(transform.toMm(expected).y() - mm.y()) < 1e-9);
    }

    void zoom_keeps_the_place_under_the_pointer_data() {
        QTest::addColumn<QPointF>("pixel");
        QTest::addColumn<double>("factor");
        QTest::newRow("in at a corner") << QPointF(0, 0) << 1.2;
        QTest::newRow("out at a corner") << QPointF(800, 600) << 0.3;
        QTest::newRow("far in") << QPointF(123, 456) << 900.0;
        QTest::newRow("beyond the finest scale") << QPointF(50, 70) << 1e12;
        QTest::newRow("beyond the coarsest scale") << QPointF(50, 70) << 1e-12;
    }
    void zoom_keeps_the_place_under_the_pointer() {
        QFETCH(QPointF, pixel);
        QFETCH(double, factor);
        ViewTransform transform;
        transform.setViewport({800, 600});
        transform.setCenter({11, 22});
        const QPointF before = transform.toMm(pixel);
        transform.zoomAbout(pixel, factor);
        const QPointF after = transform.toPixel(before);
        QVERIFY(std::hypot(after.x() - pixel.x(), after.y() - pixel.y()) < 1e-6);
        QVERIFY(transform.scale() >= ViewTransform::kMinScale);
        QVERIFY(transform.scale() <= ViewTransform::kMaxScale);
    }

    void unusable_zoom_factors_change_nothing() {
        ViewTransform transform;
        const ViewTransform before = transform;
        for (const double factor : {0.0, -2.0, double(NAN), double(INFINITY)})
            transform.zoomAbout({3, 4}, factor);
        QVERIFY(transform == before);
    }

    void fit_shows_all_with_its_margin() {
        ViewTransform transform;
        transform.setViewport({800, 600});
        transform.fit(QRectF(-10, -50, 40, 100), 20.0);
        const QPointF topLeft = transform.toPixel({-10, 50});
        const QPointF bottomRight = transform.toPixel({30, -50});
        QCOMPARE(topLeft.y(), 20.0);
        QCOMPARE(bottomRight.y(), 580.0);
        QVERIFY(topLeft.x() >= 20.0);
        QVERIFY(bottomRight.x() <= 780.0);
    }

    void fit_of_a_single_place_keeps_the_scale() {
        ViewTransform transform;
        transform.setViewport({800, 600});
        const double scale = transform.scale();
        transform.fit(QRectF(7, 8, 0, 0), 20.0);
        QCOMPARE(transform.scale(), scale);
        QCOMPARE(transform.toPixel({7, 8}), QPointF(400, 300));
    }

    void pan_moves_the_picture_with_the_pointer() {
        ViewTransform transform;
        transform.setViewport({800, 600});
        const QPointF mm = transform.toMm({100, 100});
        transform.panBy({30, -20});
        const QPointF moved = transform.toPixel(mm);
        QVERIFY(std::hypot(moved.x() - 130, moved.y() - 80) < 1e-9);
    }

    void resize_keeps_the_middle() {
        ViewTransform transform;
        transform.setViewport({800, 600});
        transform.setCenter({5, 6});
        transform.setViewport({300, 200});
        QCOMPARE(transform.toPixel({5, 6}), QPointF(150, 100));
    }

    void ruler_steps_are_one_two_or_five_and_wide_enough_data() {
        QTest::addColumn<double>("scale");
        for (const double scale : {0.02, 0.1, 0.7, 1.0, 3.3, 5.0, 8.1, 36.0, 71.9, 72.0, 72.1, 1000.0, 20000.0})
            QTest::newRow(qPrintable(QString::number(scale))) << scale;
    }
    void ruler_steps_are_one_two_or_five_and_wide_enough() {
        QFETCH(double, scale);
        const RulerScale ruler = rulerScale(scale);
        const double digit = ruler.step / std::pow(10.0, std::floor(std::log10(ruler.step) + 1e-9));
        QVERIFY2(std::abs(digit - 1) < 1e-6 || std::abs(digit - 2) < 1e-6 || std::abs(digit - 5) < 1e-6,
                 qPrintable(QString::number(ruler.step)));
        QVERIFY(ruler.step * scale >= 72.0 * (1 - 1e-9));
        QVERIFY(ruler.step * scale < 72.0 * 2.5 + 1e-6);
        QVERIFY(ruler.minorStep() * scale >= 6.0);
    }

    void ruler_ticks_cover_the_range_and_number_the_origin() {
        const RulerScale ruler = rulerScale(5.0);
        QCOMPARE(ruler.step, 20.0);
        const auto ticks = rulerTicks(ruler, -41.0, 41.0);
        QVERIFY(!ticks.empty());
        QVERIFY(ticks.front().mm >= -41.0 && ticks.front().mm < -41.0 + ruler.minorStep());
        QVERIFY(ticks.back().mm <= 41.0 && ticks.back().mm > 41.0 - ruler.minorStep());
        QStringList labels;
        for (const RulerTick& tick : ticks) {
            if (tick.major)
                labels << rulerLabel(ruler, tick.mm);
        }
        QCOMPARE(labels, QStringList({"-40", "-20", "0", "20", "40"}));
    }

    void ruler_labels_have_the_decimals_of_the_step() {
        RulerScale ruler;
        ruler.step = 0.05;
        QCOMPARE(rulerLabel(ruler, 0.15), QString("0.15"));
        QCOMPARE(rulerLabel(ruler, -1e-17), QString("0.00"));
        ruler.step = 0.2;
        QCOMPARE(rulerLabel(ruler, -0.6), QString("-0.6"));
        ruler.step = 500.0;
        QCOMPARE(rulerLabel(ruler, 1500.0), QString("1500"));
    }

    void hopeless_ranges_have_no_ticks() {
        QVERIFY(rulerTicks(rulerScale(5.0), 10.0, 5.0).empty());
        QVERIFY(rulerTicks(rulerScale(20000.0), 0.0, 1.0e6).empty());
        QVERIFY(rulerTicks(rulerScale(5.0), NAN, 5.0).empty());
    }
};

QTEST_APPLESS_MAIN(tst_Transform)
#include "tst_transform.moc"
