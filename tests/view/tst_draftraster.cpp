// SPDX-License-Identifier: MIT
// Lines set pixel by pixel: where they lie, what covers what, and what is left out.
#include "simengine/view/draftraster.h"

#include <QPainter>
#include <QtTest>

using namespace sim;

namespace {

QVector<QPoint> setPixels(const QImage& image) {
    QVector<QPoint> found;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            if (image.pixelColor(x, y).alpha() != 0)
                found << QPoint(x, y);
        }
    }
    return found;
}

QImage drawn(const QVector<QPointF>& points, const QSizeF& size = QSizeF(20, 10), double ratio = 1.0) {
    DraftRaster raster(size, ratio);
    raster.polyline(points.constData(), points.size());
    return raster.image();
}

} // namespace

class tst_DraftRaster : public QObject {
    Q_OBJECT

private slots:
    void a_line_has_one_pixel_a_step_and_both_its_ends_data() {
        QTest::addColumn<QPoint>("from");
        QTest::addColumn<QPoint>("to");
        QTest::newRow("right") << QPoint(2, 3) << QPoint(17, 3);
        QTest::newRow("left") << QPoint(17, 3) << QPoint(2, 3);
        QTest::newRow("up") << QPoint(5, 9) << QPoint(5, 0);
        QTest::newRow("flat slope") << QPoint(1, 2) << QPoint(18, 6);
        QTest::newRow("steep slope back") << QPoint(8, 9) << QPoint(5, 1);
        QTest::newRow("diagonal") << QPoint(0, 0) << QPoint(9, 9);
        QTest::newRow("point") << QPoint(4, 4) << QPoint(4, 4);
    }
    void a_line_has_one_pixel_a_step_and_both_its_ends() {
        QFETCH(QPoint, from);
        QFETCH(QPoint, to);
        const auto middle = [](const QPoint& pixel) { return QPointF(pixel) + QPointF(0.5, 0.5); };
        const QVector<QPoint> pixels = setPixels(drawn({middle(from), middle(to)}));
        QCOMPARE(pixels.size(), qMax(qAbs(to.x() - from.x()), qAbs(to.y() - from.y())) + 1);
        QVERIFY(pixels.contains(from));
        QVERIFY(pixels.contains(to));
        for (const QPoint& pixel : pixels) {
            // Distance from the line, times its length
            const QPoint along = to - from, there = pixel - from;
            const double length = std::hypot(along.x(), along.y());
            QVERIFY(qAbs(along.x() * there.y() - along.y() * there.x()) <= 0.71 * length);
        }
    }

    void what_leaves_the_picture_is_cut_off() {
        const QVector<QPoint> pixels = setPixels(drawn({QPointF(-7.5, 4.5), QPointF(27.5, 4.5), QPointF(27.5, 30.5)}));
        QCOMPARE(pixels.size(), 20);
        QCOMPARE(pixels.first(), QPoint(0, 4));
        QCOMPARE(pixels.last(), QPoint(19, 4));
    }

    void lines_beside_the_picture_set_nothing() {
        QVERIFY(setPixels(drawn({QPointF(-5, -1), QPointF(25, -1), QPointF(25, 12), QPointF(-5, 12)})).isEmpty());
        QVERIFY(setPixels(drawn({QPointF(5, 5)})).isEmpty());
        QVERIFY(setPixels(drawn({})).isEmpty());
    }

    void many_lines_over_few_rows_fill_these_rows() {
        DraftRaster raster(QSizeF(20, 10), 1.0);
        for (int i = 0; i < 1000; ++i) {
            const double y = 2.0 + 6.0 * i / 1000.0;
            const QPointF line[] = {QPointF(i % 2 ? 15.5 : 3.5, y), QPointF(i % 2 ? 3.5 : 15.5, y)};
            raster.polyline(line, 2);
        }
        QCOMPARE(setPixels(raster.image()).size(), 6 * 13);
    }

    void no_line_is_taken_for_another() {
        // Every second pixel to every second pixel: more lines than are remembered.
        DraftRaster raster(QSizeF(256, 256), 1.0);
        for (int x = 0; x < 256; x += 2) {
            for (int y = 0; y < 256; y += 2)
                raster.dot(QPointF(x + 0.5, y + 0.5));
        }
        QCOMPARE(setPixels(raster.image()).size(), 128 * 128);
        DraftRaster lines(QSizeF(256, 256), 1.0);
        for (int x = 0; x < 256; x += 2) {
            for (int y = 0; y < 256; y += 2) {
                const QPointF line[] = {QPointF(x + 0.5, y + 0.5), QPointF(x + 1.5, y + 0.5)};
                lines.polyline(line, 2);
            }
        }
        QCOMPARE(setPixels(lines.image()).size(), 256 * 128);
    }

    void the_later_colour_covers_the_earlier_one_and_comes_back() {
        DraftRaster raster(QSizeF(20, 10), 1.0);
        const QPointF line[] = {QPointF(0.5, 5.5), QPointF(19.5, 5.5)};
        for (const QColor& color : {QColor(Qt::red), QColor(Qt::blue), QColor(Qt::red)}) {
            raster.setColor(color);
            raster.polyline(line, 2);
            QCOMPARE(raster.image().pixelColor(10, 5), color);
        }
        QCOMPARE(setPixels(raster.image()).size(), 20);
    }

    void a_display_with_finer_pixels_gets_them() {
        const QImage image = drawn({QPointF(1.25, 2.25), QPointF(4.25, 2.25)}, QSizeF(20, 10), 2.0);
        QCOMPARE(image.size(), QSize(40, 20));
        QCOMPARE(image.devicePixelRatio(), 2.0);
        const QVector<QPoint> pixels = setPixels(image);
        QCOMPARE(pixels.size(), 7);
        QCOMPARE(pixels.first(), QPoint(2, 4));
        QCOMPARE(pixels.last(), QPoint(8, 4));
    }

    void a_picture_without_extent_takes_lines() {
        QCOMPARE(drawn({QPointF(-5, -5), QPointF(5, 5)}, QSizeF(0, 0)).size(), QSize(1, 1));
    }
};

QTEST_APPLESS_MAIN(tst_DraftRaster)
#include "tst_draftraster.moc"
