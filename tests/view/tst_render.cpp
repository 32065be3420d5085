// SPDX-License-Identifier: MIT
// What is on the screen: pixels where objects are, and nothing where they are not.
#include "simengine/view/scenecache.h"
#include "simengine/view/viewtheme.h"
#include "viewfixture.h"

using namespace sim;
using tests::ViewFixture;

namespace {

/// How far two colours are apart, 0 to 765.
int distance(const QColor& a, const QColor& b) {
    return qAbs(a.red() - b.red()) + qAbs(a.green() - b.green()) + qAbs(a.blue() - b.blue());
}

} // namespace

class tst_Render : public QObject {
    Q_OBJECT

private:
    static QImage picture(ViewFixture& f) { return f.canvas().grab().toImage(); }

    /// The colour nearest to `wanted` within two pixels of a place in mm.
    static int nearest(ViewFixture& f, const QImage& image, double x, double y, const QColor& wanted) {
        const QPoint at = f.pixel(x, y);
        int best = 9999;
        for (int dx = -2; dx <= 2; ++dx) {
            for (int dy = -2; dy <= 2; ++dy)
                best = qMin(best, distance(image.pixelColor(at + QPoint(dx, dy)), wanted));
        }
        return best;
    }

    static void setPen(ViewFixture& f, int index, const QColor& color) {
        LayerData pen;
        f.view.GetLayerParams()->GetLayerData(index, pen);
        pen.ColorR = color.red();
        pen.ColorG = color.green();
        pen.ColorB = color.blue();
        f.view.GetLayerParams()->SetLayerData(index, pen);
    }

private slots:
    void objects_are_drawn_in_the_colour_of_their_pen() {
        ViewFixture f;
        setPen(f, 2, QColor(200, 0, 0));
        setPen(f, 3, QColor(0, 0, 200));
        f.addRect(-31, -11, 20, 20, 2);
        f.addCircle(21, 1, 12, 3);
        const QImage image = picture(f);
        QVERIFY(nearest(f, image, -31, 0, QColor(200, 0, 0)) < 130);
        QVERIFY(nearest(f, image, 33, 1, QColor(0, 0, 200)) < 330);
        QVERIFY(nearest(f, image, -21, -1, QColor(200, 0, 0)) > 400);
    }

    void a_changed_pen_colour_shows_at_the_next_paint() {
        ViewFixture f;
        setPen(f, 2, QColor(200, 0, 0));
        f.addRect(-31, -11, 20, 20, 2);
        picture(f);
        setPen(f, 2, QColor(0, 120, 0));
        QVERIFY(nearest(f, picture(f), -31, 0, QColor(0, 120, 0)) < 130);
    }

    void light_pens_are_darkened_to_be_seen() {
        QVERIFY(theme::onCanvas(QColor(255, 255, 255)).lightness() < 190);
        QVERIFY(theme::onCanvas(QColor(255, 255, 0)).green() < 230);
        QCOMPARE(theme::onCanvas(QColor(200, 0, 0)), QColor(200, 0, 0));
    }

    void objects_that_do_not_work_are_grey_and_broken() {
        ViewFixture f;
        setPen(f, 2, QColor(200, 0, 0));
        f.addLine(QPolygonF(QVector<QPointF>{QPointF(-51, 11), QPointF(49, 11)}), 2);
        f.session().document().select({0});
        f.view.SetSelectObjWorkType(0);
        f.session().document().select({});
        const QImage image = picture(f);
        int grey = 0, red = 0, gaps = 0;
        for (double x = -50; x < 49; x += 0.2) {
            red += nearest(f, image, x, 11, QColor(200, 0, 0)) < 200;
            const bool drawn =
                distance(image.pixelColor(f.pixel(x, 11)), QColor(theme::kNotWorking)) < 130 ||
                distance(image.pixelColor(f.pixel(x, 11) - QPoint(0, 1)), QColor(theme::kNotWorking)) < 130;
            grey += drawn;
            gaps += !drawn;
        }
        QCOMPARE(red, 0);
        QVERIFY2(grey > 150, qPrintable(QString::number(grey)));
        QVERIFY2(gaps > 100, qPrintable(QString::number(gaps)));
    }

    void selected_objects_have_a_halo() {
        ViewFixture f;
        setPen(f, 2, QColor(200, 0, 0));
        f.addLine(QPolygonF(QVector<QPointF>{QPointF(-31, 11), QPointF(29, 33)}), 2);
        const QPoint beside = f.pixel(-1, 22) + QPoint(0, 2);
        const QColor before = picture(f).pixelColor(beside);
        f.session().document().select({0});
        const QColor after = picture(f).pixelColor(beside);
        QVERIFY(after.blue() - after.red() > before.blue() - before.red() + 30);
    }

    void a_drag_shows_the_moved_object_before_the_release() {
        ViewFixture f;
        setPen(f, 2, QColor(200, 0, 0));
        f.addRect(-31, -11, 20, 20, 2);
        picture(f);
        f.press(-31, 0);
        f.drag(9, 30);
        const QImage image = picture(f);
        QVERIFY(nearest(f, image, 9, 30, QColor(200, 0, 0)) < 250);
        QVERIFY(nearest(f, image, -31, 0, QColor(200, 0, 0)) > 300);
        f.release(9, 30);
    }

    void nothing_is_drawn_of_objects_outside_the_view() {
        ViewFixture f;
        f.addCircle(500, 500, 20);
        f.addCircle(-31, -11, 20);
        picture(f);
        QCOMPARE(f.canvas().scene().itemCount(), 1);
    }

    void lines_and_rectangles_are_drawn_from_the_documents_own_points() {
        ViewFixture f;
        setPen(f, 2, QColor(200, 0, 0));
        f.addRect(-31, -11, 20, 20, 2);
        f.addLine(QPolygonF(QVector<QPointF>{{10, 10}, {30, 10}, {30, 40}}), 2, true);
        f.session().document().selectAll();
        f.session().document().edit([](const DocumentState& state) { return edits::rotate(state, 90.0, {0, 0}); });
        f.session().document().select({});
        const QImage image = picture(f);
        QCOMPARE(f.canvas().scene().itemCount(), 0);
        // turned with the object's own transform: (x, y) is at (-y, x)
        QVERIFY(nearest(f, image, 11, -20, QColor(200, 0, 0)) < 250);
        QVERIFY(nearest(f, image, -10, 20, QColor(200, 0, 0)) < 250);
        QVERIFY(nearest(f, image, -25, 20, QColor(200, 0, 0)) < 250); // the side that closes it
        QVERIFY(nearest(f, image, -31, 0, QColor(200, 0, 0)) > 300);
    }

    void a_line_that_is_not_marked_is_grey_and_one_with_a_hatch_has_it() {
        ViewFixture f;
        setPen(f, 2, QColor(200, 0, 0));
        f.addRect(-31, -11, 20, 20, 2);
        f.session().document().select({0});
        QVector<FillParam> fills(kFillCount);
        f.view.FillSelectedObj(fills, false, false, false);
        f.session().document().select({});
        QVERIFY(nearest(f, picture(f), -31, 0, QColor(theme::kNotWorking)) < 60);
        fills[0].Enable = true;
        fills[0].FillDist = 2.0;
        f.session().document().select({0});
        f.view.FillSelectedObj(fills, true, false, false);
        f.session().document().select({});
        picture(f);
        QCOMPARE(f.canvas().scene().itemCount(), 1);
    }

    void close_by_a_curve_is_drawn_as_it_is_marked() {
        ViewFixture f;
        setPen(f, 0, QColor(0, 0, 0));
        f.addCircle(0, 0, 30);
        picture(f);
        const QPolygonF marked = f.state()->at(0)->flattened().front().points;
        const int corner = marked.size() / 9;
        const QPointF edge = (marked[corner] + marked[corner + 1]) / 2.0;
        ViewTransform transform = f.canvas().viewTransform();
        transform.setCenter(edge);
        transform.zoomAbout({400, 300}, 10000.0 / transform.scale());
        f.canvas().setViewTransform(transform);
        QTRY_VERIFY(nearest(f, picture(f), edge.x(), edge.y(), QColor(0, 0, 0)) < 200);
    }

    void mark_points_are_visible() {
        ViewFixture f;
        setPen(f, 0, QColor(0, 0, 0));
        f.add(PointShape{{11, 13}, -1.0});
        QVERIFY(nearest(f, picture(f), 11, 13, QColor(0, 0, 0)) < 60);
    }

    void objects_below_a_pixel_are_specks() {
        ViewFixture f;
        setPen(f, 0, QColor(0, 0, 0));
        f.addRect(11.05, 13.05, 0.05, 0.05);
        QVERIFY(nearest(f, picture(f), 11.07, 13.07, QColor(0, 0, 0)) < 130);
    }

    void a_fine_hatch_covers_its_area_in_the_colour_of_its_pen() {
        ViewFixture f;
        setPen(f, 2, QColor(200, 0, 0));
        setPen(f, 3, QColor(0, 0, 200));
        // 20,000 lines of 60 mm over 40 mm: more than 60 a pixel
        QPolygonF hatch;
        for (int i = 0; i < 20000; ++i) {
            const double y = -20.0 + 40.0 * i / 20000.0;
            hatch << QPointF(i % 2 ? 30.0 : -30.0, y) << QPointF(i % 2 ? -30.0 : 30.0, y);
        }
        f.addLine(hatch, 2);
        f.addLine(QPolygonF(QVector<QPointF>{QPointF(-40, 0.1), QPointF(40, 0.1)}), 3);
        const QImage image = picture(f);
        const QRect area(f.pixel(-30, 20) + QPoint(2, 2), f.pixel(30, -20) - QPoint(2, 2));
        const int row = f.pixel(0, 0.1).y();
        int others = 0;
        for (int y = area.top(); y <= area.bottom(); ++y) {
            for (int x = area.left(); x <= area.right() && qAbs(y - row) > 2; ++x)
                others += image.pixelColor(x, y) != QColor(200, 0, 0);
        }
        QCOMPARE(others, 0);
        QVERIFY(nearest(f, image, 0, 0.1, QColor(0, 0, 200)) == 0);
        QVERIFY(distance(image.pixelColor(f.pixel(0, 22.3)), QColor(200, 0, 0)) > 300);
        f.session().document().select({0});
        QCOMPARE(picture(f).pixelColor(area.topLeft()), QColor(theme::kAccent));
        f.session().document().select({});
        f.canvas().setHover(0);
        QCOMPARE(picture(f).pixelColor(area.topLeft()), QColor(theme::kHover));
    }

    void grid_lines_are_one_crisp_pixel() {
        ViewFixture f;
        const QImage image = picture(f);
        const int y = f.pixel(0, 7.3).y();
        const int x = f.pixel(20, 0).x();
        int major = 0;
        for (int dx = -3; dx <= 3; ++dx)
            major += image.pixelColor(x + dx, y) == QColor(theme::kGridMajor);
        QCOMPARE(major, 1);
        int axis = 0;
        for (int dx = -3; dx <= 3; ++dx)
            axis += image.pixelColor(f.pixel(0, 0).x() + dx, y) == QColor(theme::kAxis);
        QCOMPARE(axis, 1);
    }

    void outside_of_the_field_is_surround() {
        ViewFixture f;
        const QRectF field = f.canvas().fieldMm();
        const QImage image = picture(f);
        QCOMPARE(image.pixelColor(f.pixel(field.right() + 3, 1)), QColor(theme::kSurround));
        QVERIFY(image.pixelColor(f.pixel(field.right() - 3.3, 1.1)) != QColor(theme::kSurround));
    }

    void groups_are_drawn_with_their_childrens_pens() {
        ViewFixture f;
        setPen(f, 2, QColor(200, 0, 0));
        setPen(f, 3, QColor(0, 0, 200));
        f.addRect(-31, -11, 20, 20, 2);
        f.addRect(11, -11, 20, 20, 3);
        f.session().document().selectAll();
        f.view.Combine();
        f.view.MoveSelectObjRelative(0, 10);
        f.session().document().select({});
        const QImage image = picture(f);
        QVERIFY(nearest(f, image, -31, 10, QColor(200, 0, 0)) < 130);
        QVERIFY(nearest(f, image, 31, 10, QColor(0, 0, 200)) < 130);
    }

    void cached_items_go_with_their_objects() {
        SceneCache cache;
        Document document;
        ObjectData data;
        data.shape = RectShape{QRectF(0, 0, 5, 5)};
        const ObjectPtr object = MarkObject::make(data);
        QVERIFY(document.edit([&](const DocumentState& state) { return edits::add(state, {object}); }));
        cache.setState(document.state());
        QCOMPARE(cache.item(0, 5.0).vertexCount(), qint64(5));
        QCOMPARE(cache.vertexCount(), qint64(5));
        QVERIFY(document.edit(edits::removeSelected));
        cache.setState(document.state());
        QCOMPARE(cache.itemCount(), 0);
        QCOMPARE(cache.vertexCount(), qint64(0));
    }
};

QTEST_MAIN(tst_Render)
#include "tst_render.moc"
