// SPDX-License-Identifier: MIT
// Snapping while objects are moved, scaled and drawn, with mouse and finger, and the switches for it.
#include "simengine/view/gridpainter.h"
#include "simengine/view/selectionframe.h"
#include "simengine/view/viewtheme.h"
#include "viewfixture.h"

#include <QMenu>
#include <QToolButton>

using namespace sim;
using tests::ViewFixture;

namespace {

void use(ViewFixture& f, bool objects, bool guides, bool grid, int pixels = 10) {
    SnapSettings settings;
    settings.objects = objects;
    settings.guides = guides;
    settings.grid = grid;
    settings.pixels = pixels;
    f.canvas().snap().setSettings(settings);
}

void compareBox(const Box& box, double minX, double minY, double maxX, double maxY) {
    const double tolerance = 1e-6; // what snaps is exact
    QVERIFY2(std::abs(box.minX - minX) < tolerance && std::abs(box.minY - minY) < tolerance &&
                 std::abs(box.maxX - maxX) < tolerance && std::abs(box.maxY - maxY) < tolerance,
             qPrintable(QString("%1 %2 %3 %4").arg(box.minX).arg(box.minY).arg(box.maxX).arg(box.maxY)));
}

QPointF handleMm(ViewFixture& f, FrameHandle handle) {
    const SelectionFrame frame(selectionBounds(*f.state()), f.canvas().viewTransform());
    return f.canvas().viewTransform().toMm(frame.handlePos(handle));
}

template<typename Widget = QToolButton>
Widget* part(ViewFixture& f, const char* name) {
    return f.view.findChild<Widget*>(QString::fromLatin1(name));
}

} // namespace

class tst_Snapping : public QObject {
    Q_OBJECT

private:
    QTouchDevice* m_screen = nullptr;

private slots:
    void initTestCase() { m_screen = QTest::createTouchDevice(); }

    void a_moved_corner_meets_another_objects_end() {
        ViewFixture f;
        use(f, true, false, false);
        f.addRect(-20, -10, 20, 20);
        f.addRect(20, 10, 10, 10);
        // its upper right corner (0, 10) comes near (20, 10)
        f.dragFromTo({-20, 0}, {-0.8, 0.8});
        compareBox(f.bounds(0), 0, -10, 20, 10);
        QVERIFY(f.canvas().snap().hints().empty());
    }

    void hints_are_shown_while_the_drag_goes_on() {
        ViewFixture f;
        use(f, true, false, false);
        f.addRect(-20, -10, 20, 20);
        f.addRect(20, 10, 10, 10);
        f.press(-20, 0);
        f.drag(-10, 0);
        f.drag(-0.8, 0.8);
        QCOMPARE(int(f.canvas().snap().hints().size()), 1);
        QCOMPARE(f.canvas().snap().hints()[0].at, QPointF(20, 10));
        const QImage image = f.canvas().grab().toImage();
        const QPoint corner = f.pixel(20, 10);
        bool marked = false;
        for (int dx = -8; dx <= 8; ++dx) {
            for (int dy = -8; dy <= 8; ++dy)
                marked = marked || image.pixelColor(corner + QPoint(dx, dy)) == QColor(theme::kSnap);
        }
        QVERIFY(marked);
        QTest::keyClick(&f.canvas(), Qt::Key_Escape);
        QVERIFY(f.canvas().snap().hints().empty());
    }

    void alt_leaves_a_place_as_it_is() {
        ViewFixture f;
        use(f, true, true, true);
        f.addRect(-20, -10, 20, 20);
        f.addRect(20, 10, 10, 10);
        f.press(-20, 0);
        f.drag(-10, 0, Qt::AltModifier);
        f.drag(-0.8, 0.8, Qt::AltModifier);
        QVERIFY(f.canvas().snap().hints().empty());
        f.release(-0.8, 0.8, Qt::AltModifier);
        QVERIFY(std::abs(f.bounds(0).minX + 0.8) < 0.11);
    }

    void the_strength_is_in_pixels() {
        ViewFixture f;
        use(f, true, false, false, 3);
        f.addRect(-20, -10, 20, 20);
        f.addRect(20, 10, 10, 10);
        f.dragFromTo({-20, 0}, {-0.8, 0.8}); // 4 pixels in each axis
        QVERIFY(std::abs(f.bounds(0).minX + 0.8) < 0.11);
        f.view.Undo();
        use(f, true, false, false, 8);
        f.dragFromTo({-20, 0}, {-0.8, 0.8});
        compareBox(f.bounds(0), 0, -10, 20, 10);
    }

    void a_moved_object_comes_into_line() {
        ViewFixture f;
        use(f, false, true, false);
        f.addRect(-20, -10, 20, 20);
        f.addRect(20, 40, 10, 10);
        f.press(-20, 0);
        f.drag(-10, -5);
        f.drag(-1, -20); // its right edge at 19 comes to 20
        QCOMPARE(int(f.canvas().snap().hints().size()), 1);
        QCOMPARE(int(f.canvas().snap().hints()[0].kind), int(SnapKind::Guide));
        f.release(-1, -20);
        QVERIFY(std::abs(f.bounds(0).maxX - 20.0) < 1e-6);
    }

    void moves_along_an_axis_snap_in_that_axis_only() {
        ViewFixture f;
        use(f, true, true, false);
        f.addRect(-20, -10, 20, 20);
        f.addRect(20, 8, 10, 10);
        f.press(-20, 0);
        f.drag(-10, 1, Qt::ShiftModifier);
        f.drag(-1, 1, Qt::ShiftModifier);
        f.release(-1, 1, Qt::ShiftModifier);
        compareBox(f.bounds(0), 0, -10, 20, 10);
    }

    void objects_that_are_moved_are_no_targets_for_themselves() {
        ViewFixture f;
        use(f, true, true, false);
        f.addRect(-20, -10, 20, 20);
        f.dragFromTo({-20, 0}, {-19, 0}); // 5 pixels: less than the strength
        QVERIFY(std::abs(f.bounds(0).minX + 19.0) < 0.11);
    }

    void a_move_comes_to_the_grid() {
        ViewFixture f;
        use(f, false, false, true, 4);
        const double step = gridScale(f.canvas().viewTransform().scale()).minorStep();
        f.addRect(-20.5, -10.5, 20, 20);
        f.dragFromTo({-20.5, 0}, {-20.5 + 3 * step, 0.3});
        const double places = f.bounds(0).minX / step;
        QVERIFY2(std::abs(places - std::round(places)) < 1e-6, qPrintable(QString::number(f.bounds(0).minX)));
    }

    void an_edge_handle_comes_to_an_edge() {
        ViewFixture f;
        use(f, true, true, false);
        f.addRect(-20, -10, 20, 20);
        f.addRect(20, 30, 10, 10);
        f.session().document().select({0});
        const QPointF handle = handleMm(f, FrameHandle::Right);
        f.dragFromTo(handle, handle + QPointF(19, 3));
        compareBox(f.bounds(0), -20, -10, 20, 10);
    }

    void a_corner_in_proportion_comes_to_an_edge() {
        ViewFixture f;
        use(f, true, true, false);
        f.addRect(-20, -10, 20, 20);
        f.addRect(20, 40, 10, 10);
        f.session().document().select({0});
        const QPointF handle = handleMm(f, FrameHandle::TopRight);
        f.dragFromTo(handle, handle + QPointF(19, 2));
        compareBox(f.bounds(0), -20, -10, 20, 30);
    }

    void a_free_corner_comes_to_a_corner() {
        ViewFixture f;
        use(f, true, false, false);
        f.addRect(-20, -10, 20, 20);
        f.addRect(20, 40, 10, 10);
        f.session().document().select({0});
        f.canvas().setKeepsRatio(false);
        const QPointF handle = handleMm(f, FrameHandle::TopRight);
        f.dragFromTo(handle, handle + QPointF(19, 29));
        compareBox(f.bounds(0), -20, -10, 20, 40);
    }

    void drawing_begins_and_ends_at_targets() {
        ViewFixture f;
        use(f, true, false, false);
        f.addRect(-20, -10, 20, 20);
        f.addCircle(30, 20, 5);
        f.view.SetOperatorOnView(OperatorAddRect);
        f.press(0.6, 9.5);
        f.drag(10, 12);
        f.drag(29.5, 20.6);
        f.release(29.5, 20.6);
        compareBox(f.bounds(2), 0, 10, 30, 20);
        f.view.SetOperatorOnView(OperatorAddPoint);
        f.click(-10.6, -9.5);
        compareBox(f.bounds(3), -10, -10, -10, -10);
    }

    void a_line_snaps_each_of_its_points() {
        ViewFixture f;
        use(f, true, false, false);
        f.addRect(-20, -10, 20, 20);
        f.view.SetOperatorOnView(OperatorAddLine);
        f.click(-19.5, -9.5);
        f.click(0.5, 9.5);
        QTest::keyClick(&f.canvas(), Qt::Key_Return);
        compareBox(f.bounds(1), -20, -10, 0, 10);
    }

    void the_pointer_shows_where_a_press_would_be() {
        ViewFixture f;
        use(f, true, false, false);
        f.addRect(-20, -10, 20, 20);
        f.view.SetOperatorOnView(OperatorAddPoint);
        f.hover(0.6, 9.5);
        QCOMPARE(int(f.canvas().snap().hints().size()), 1);
        f.hover(50, 50);
        QVERIFY(f.canvas().snap().hints().empty());
    }

    void selecting_and_zooming_do_not_snap() {
        ViewFixture f;
        use(f, true, true, true);
        f.addRect(-20, -10, 20, 20);
        f.hover(0.6, 9.5);
        QVERIFY(f.canvas().snap().hints().empty());
        f.view.SetOperatorOnView(OperatorZoomRegion);
        f.hover(0.6, 9.5);
        QVERIFY(f.canvas().snap().hints().empty());
    }

    void a_finger_snaps_from_further_away() {
        ViewFixture f;
        use(f, true, false, false, 10);
        f.addRect(-20, -10, 20, 20);
        f.addRect(20, 10, 10, 10);
        const auto drag = [&](const QPointF& to) {
            QTest::touchEvent(&f.canvas(), m_screen).press(0, f.pixel(-20, 0), &f.canvas());
            QTest::touchEvent(&f.canvas(), m_screen).move(0, f.pixel(-10, 0), &f.canvas());
            QTest::touchEvent(&f.canvas(), m_screen).move(0, f.pixel(to.x(), to.y()), &f.canvas());
            QTest::touchEvent(&f.canvas(), m_screen).release(0, f.pixel(to.x(), to.y()), &f.canvas());
        };
        drag({-2.6, 0}); // 13 pixels away
        compareBox(f.bounds(0), 0, -10, 20, 10);
        f.view.Undo();
        f.dragFromTo({-20, 0}, {-2.6, 0});
        QVERIFY(std::abs(f.bounds(0).minX + 2.6) < 0.11);
    }

    void the_bar_switches_snapping_and_keeps_it() {
        ViewFixture f;
        use(f, true, true, false);
        auto* button = part(f, "viewSnap");
        QVERIFY(button && button->isVisible());
        QVERIFY(button->width() >= 40 && button->height() >= 40);
        f.canvas().snap().setSettings(loadSnapSettings());
        QVERIFY(f.canvas().snap().settings().on);
        QTest::mouseClick(button, Qt::LeftButton);
        QVERIFY(!f.canvas().snap().settings().on);
        QVERIFY(!loadSnapSettings().on);
        // what is drawn next stays where it is drawn
        f.addRect(-20, -10, 20, 20);
        f.view.SetOperatorOnView(OperatorAddPoint);
        f.click(0.6, 9.5);
        QVERIFY(std::abs(f.bounds(1).minX - 0.6) < 0.11);
        QRulerView other(nullptr);
        other.show();
        QVERIFY(!QRulerViewAccess::canvas(other).snap().settings().on);
        QTest::mouseClick(button, Qt::LeftButton);
        QVERIFY(loadSnapSettings().on);
    }

    void the_menu_sets_targets_and_strength() {
        ViewFixture f;
        f.canvas().snap().setSettings(SnapSettings());
        const auto trigger = [&f](const char* action) {
            bool done = false;
            QTimer timer;
            connect(&timer, &QTimer::timeout, &f.view, [&] {
                auto* menu = qobject_cast<QMenu*>(QApplication::activePopupWidget());
                auto* entry = menu ? menu->findChild<QAction*>(QString::fromLatin1(action)) : nullptr;
                if (entry && !done) {
                    done = true;
                    entry->trigger();
                    menu->close();
                }
            });
            timer.start(1);
            part(f, "viewSnapMenu")->click();
            return done;
        };
        QVERIFY(trigger("snapGrid"));
        QVERIFY(f.canvas().snap().settings().grid && loadSnapSettings().grid);
        QVERIFY(trigger("snapPixels25"));
        QCOMPARE(loadSnapSettings().pixels, 25);
        QVERIFY(trigger("snapObjects"));
        QVERIFY(!loadSnapSettings().objects);
    }

    void the_bar_frees_corners_from_their_ratio() {
        ViewFixture f;
        f.addRect(-20, -10, 40, 20);
        f.session().document().select({0});
        QVERIFY(part(f, "viewKeepRatio")->isChecked());
        QTest::mouseClick(part(f, "viewKeepRatio"), Qt::LeftButton);
        const QPointF handle = handleMm(f, FrameHandle::TopRight);
        f.dragFromTo(handle, handle + QPointF(20, 0));
        QVERIFY(std::abs(f.bounds(0).width() - 60.0) < 0.11);
        QVERIFY(std::abs(f.bounds(0).height() - 20.0) < 0.11);
    }

    void the_bar_locks_moves_and_turns() {
        ViewFixture f;
        f.addRect(-20, -10, 40, 20);
        QTest::mouseClick(part(f, "viewAxisLock"), Qt::LeftButton);
        f.dragFromTo({-20, 0}, {0, 6});
        QVERIFY(std::abs(f.bounds(0).minX) < 0.11);
        QVERIFY(std::abs(f.bounds(0).minY + 10.0) < 1e-9);
        f.session().document().select({0});
        const QPointF handle = handleMm(f, FrameHandle::Rotate);
        f.dragFromTo(handle, handle + QPointF(-8, -1));
        QCOMPARE(std::fmod(f.state()->at(0)->angle(), 15.0), 0.0);
        QVERIFY(f.state()->at(0)->angle() > 0.0);
    }
};

QTEST_MAIN(tst_Snapping)
#include "tst_snapping.moc"
