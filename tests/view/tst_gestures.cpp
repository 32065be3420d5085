// SPDX-License-Identifier: MIT
// Selecting and changing objects with the mouse.
#include "simengine/view/selectionframe.h"
#include "viewfixture.h"

using namespace sim;
using tests::ViewFixture;

namespace {

void compareBox(const Box& box, double minX, double minY, double maxX, double maxY) {
    const double tolerance = 0.11; // half a pixel at 5 pixels a mm
    QVERIFY2(std::abs(box.minX - minX) < tolerance && std::abs(box.minY - minY) < tolerance &&
                 std::abs(box.maxX - maxX) < tolerance && std::abs(box.maxY - maxY) < tolerance,
             qPrintable(QString("%1 %2 %3 %4").arg(box.minX).arg(box.minY).arg(box.maxX).arg(box.maxY)));
}

} // namespace

class tst_Gestures : public QObject {
    Q_OBJECT

private:
    static QPointF handleMm(ViewFixture& f, FrameHandle handle) {
        const SelectionFrame frame(selectionBounds(*f.state()), f.canvas().viewTransform());
        return f.canvas().viewTransform().toMm(frame.handlePos(handle));
    }

private slots:
    void click_selects_the_object_under_it() {
        ViewFixture f;
        f.addRect(-40, -10, 20, 20);
        f.addRect(20, -10, 20, 20);
        f.click(-20, 0);
        QCOMPARE(f.selected(), QList<int>({0}));
        f.click(40, 0);
        QCOMPARE(f.selected(), QList<int>({1}));
        f.click(0, 50);
        QCOMPARE(f.selected(), QList<int>());
    }

    void click_inside_an_empty_outline_hits_nothing() {
        ViewFixture f;
        f.addRect(-20, -20, 40, 40);
        f.click(0, 0);
        QVERIFY(f.selected().isEmpty());
    }

    void shift_adds_and_control_toggles() {
        ViewFixture f;
        f.addRect(-60, -10, 20, 20);
        f.addRect(-20, -10, 20, 20);
        f.addRect(20, -10, 20, 20);
        f.click(-60, 0);
        f.click(20, 0, Qt::ShiftModifier);
        QCOMPARE(f.selected(), QList<int>({0, 2}));
        f.click(20, 0, Qt::ShiftModifier);
        QCOMPARE(f.selected(), QList<int>({0, 2}));
        f.click(-20, 0, Qt::ControlModifier);
        QCOMPARE(f.selected(), QList<int>({0, 2, 1}));
        f.click(20, 5, Qt::ControlModifier);
        QCOMPARE(f.selected(), QList<int>({0, 1}));
    }

    void click_on_one_of_several_selects_it_alone() {
        ViewFixture f;
        f.addRect(-60, -10, 20, 20);
        f.addRect(20, -10, 20, 20);
        f.session().document().selectAll();
        f.click(30, 10);
        QCOMPARE(f.selected(), QList<int>({1}));
    }

    void band_to_the_right_takes_what_is_inside() {
        ViewFixture f;
        f.addRect(-30, -10, 10, 10);
        f.addRect(-10, -10, 40, 10);
        f.dragFromTo({-40, 20}, {10, -20});
        QCOMPARE(f.selected(), QList<int>({0}));
    }

    void band_to_the_left_takes_what_it_touches() {
        ViewFixture f;
        f.addRect(-30, -10, 10, 10);
        f.addRect(-10, -10, 40, 10);
        f.addRect(50, -10, 10, 10);
        f.dragFromTo({10, 20}, {-40, -20});
        QCOMPARE(f.selected(), QList<int>({0, 1}));
    }

    void band_inside_a_large_outline_does_not_touch_it() {
        ViewFixture f;
        f.addRect(-50, -50, 100, 100);
        f.dragFromTo({20, 20}, {-20, -20});
        QVERIFY(f.selected().isEmpty());
    }

    void band_with_shift_adds() {
        ViewFixture f;
        f.addRect(-60, -10, 10, 10);
        f.addRect(20, -10, 10, 10);
        f.click(-60, -5);
        f.dragFromTo({10, 10}, {40, -20}, Qt::ShiftModifier);
        QCOMPARE(f.selected(), QList<int>({0, 1}));
    }

    void drag_moves_in_one_step_of_undo() {
        ViewFixture f;
        f.addRect(-20, -10, 20, 20);
        QCOMPARE(f.undoSteps(), 1);
        f.session().document().redo();
        f.session().document().select({});
        f.dragFromTo({-20, 0}, {10, 15});
        compareBox(f.bounds(0), 10, 5, 30, 25);
        QCOMPARE(f.selected(), QList<int>({0}));
        f.view.Undo();
        compareBox(f.bounds(0), -20, -10, 0, 10);
        f.view.Redo();
        compareBox(f.bounds(0), 10, 5, 30, 25);
    }

    void nothing_changes_before_the_release() {
        ViewFixture f;
        f.addRect(-20, -10, 20, 20);
        const auto before = f.state()->objects;
        f.press(-20, 0);
        f.drag(0, 0);
        f.drag(30, 30);
        QCOMPARE(f.state()->objects, before);
        f.release(30, 30);
        QVERIFY(f.state()->objects != before);
    }

    void shift_keeps_a_move_to_one_axis() {
        ViewFixture f;
        f.addRect(-20, -10, 20, 20);
        f.click(-20, 0);
        f.press(-20, 0);
        f.drag(10, 4, Qt::ShiftModifier);
        f.release(10, 4, Qt::ShiftModifier);
        compareBox(f.bounds(0), 10, -10, 30, 10);
    }

    void tiny_drags_are_clicks() {
        ViewFixture f;
        f.addRect(-20, -10, 20, 20);
        const auto before = f.state()->objects;
        QTest::mousePress(&f.canvas(), Qt::LeftButton, {}, f.pixel(-20, 0));
        QTest::mouseMove(&f.canvas(), f.pixel(-20, 0) + QPoint(2, 1));
        QTest::mouseRelease(&f.canvas(), Qt::LeftButton, {}, f.pixel(-20, 0) + QPoint(2, 1));
        QCOMPARE(f.state()->objects, before);
        QCOMPARE(f.selected(), QList<int>({0}));
    }

    void drag_inside_the_frame_moves_the_selection() {
        ViewFixture f;
        f.addRect(-20, -20, 40, 40);
        f.session().document().select({0});
        f.dragFromTo({0, 0}, {20, 0});
        compareBox(f.bounds(0), 0, -20, 40, 20);
    }

    void edge_handle_scales_about_the_other_edge() {
        ViewFixture f;
        f.addRect(-20, -10, 40, 20);
        f.session().document().select({0});
        const QPointF handle = handleMm(f, FrameHandle::Right);
        f.dragFromTo(handle, handle + QPointF(20, 6));
        compareBox(f.bounds(0), -20, -10, 40, 10);
        QCOMPARE(f.undoSteps(), 2);
    }

    void corner_handle_scales_in_proportion() {
        ViewFixture f;
        f.addRect(-20, -10, 40, 20);
        f.session().document().select({0});
        const QPointF handle = handleMm(f, FrameHandle::TopRight);
        f.dragFromTo(handle, handle + QPointF(40, 0));
        compareBox(f.bounds(0), -20, -10, 60, 30);
    }

    void rotation_handle_turns_about_the_middle() {
        ViewFixture f;
        f.addRect(-20, -10, 40, 20);
        f.session().document().select({0});
        const QPointF handle = handleMm(f, FrameHandle::Rotate);
        // From straight above the middle to straight left of it.
        f.dragFromTo(handle, {-handle.y(), 0});
        compareBox(f.bounds(0), -10, -20, 10, 20);
        QCOMPARE(f.state()->at(0)->angle(), 90.0);
        QCOMPARE(f.undoSteps(), 2);
    }

    void escape_gives_a_gesture_up() {
        ViewFixture f;
        f.addRect(-20, -10, 20, 20);
        const auto before = f.state()->objects;
        f.press(-20, 0);
        f.drag(10, 10);
        QTest::keyClick(&f.canvas(), Qt::Key_Escape);
        f.drag(20, 20);
        f.release(20, 20);
        QCOMPARE(f.state()->objects, before);
        QCOMPARE(f.selected(), QList<int>({0}));
        QTest::keyClick(&f.canvas(), Qt::Key_Escape);
        QVERIFY(f.selected().isEmpty());
    }

    void read_only_selects_but_does_not_move() {
        ViewFixture f;
        f.addRect(-20, -10, 20, 20);
        f.view.SetReadOnly(true);
        const auto before = f.state()->objects;
        f.dragFromTo({-20, 0}, {10, 10});
        QCOMPARE(f.state()->objects, before);
        f.click(-20, 0);
        QCOMPARE(f.selected(), QList<int>({0}));
        const QPointF handle = handleMm(f, FrameHandle::Right);
        f.dragFromTo(handle, handle + QPointF(20, 0));
        QCOMPARE(f.state()->objects, before);
    }

    void an_edit_from_outside_ends_the_gesture() {
        ViewFixture f;
        f.addRect(-20, -10, 20, 20);
        f.press(-20, 0);
        f.drag(10, 10);
        f.view.MoveSelectObjRelative(0, 5);
        f.drag(20, 20);
        f.release(20, 20);
        compareBox(f.bounds(0), -20, -5, 0, 15);
    }

    void hover_finds_the_object_under_the_pointer() {
        ViewFixture f;
        f.addRect(-20, -10, 20, 20);
        f.hover(-20, 3);
        QCOMPARE(f.canvas().hover(), 0);
        f.hover(60, 50);
        QCOMPARE(f.canvas().hover(), -1);
    }

    void wheel_zooms_about_the_pointer() {
        ViewFixture f;
        const QPointF at(123, 456);
        const QPointF before = f.canvas().viewTransform().toMm(at);
        const double scale = f.canvas().viewTransform().scale();
        QWheelEvent event(at, f.canvas().mapToGlobal(at.toPoint()), QPoint(), QPoint(0, 120), Qt::NoButton,
                          Qt::NoModifier, Qt::NoScrollPhase, false);
        QCoreApplication::sendEvent(&f.canvas(), &event);
        const QPointF after = f.canvas().viewTransform().toMm(at);
        QVERIFY(QLineF(before, after).length() < 1e-9);
        QVERIFY(qAbs(f.canvas().viewTransform().scale() / scale - 1.2) < 1e-9);
    }

    void middle_button_and_space_pan() {
        ViewFixture f;
        f.addRect(-20, -10, 20, 20);
        const QPointF before = f.canvas().viewTransform().center();
        f.press(0, 0, {}, Qt::MiddleButton);
        f.drag(10, 0, {}, Qt::MiddleButton);
        f.release(0, 0, {}, Qt::MiddleButton);
        QVERIFY(qAbs(f.canvas().viewTransform().center().x() - before.x() + 10.0) < 0.2);
        QTest::keyPress(&f.canvas(), Qt::Key_Space);
        const QPoint from = f.pixel(-20, 0);
        QTest::mousePress(&f.canvas(), Qt::LeftButton, {}, from);
        QMouseEvent move(QEvent::MouseMove, from + QPoint(0, 50), f.canvas().mapToGlobal(from + QPoint(0, 50)),
                         Qt::NoButton, Qt::LeftButton, Qt::NoModifier);
        QCoreApplication::sendEvent(&f.canvas(), &move);
        QTest::mouseRelease(&f.canvas(), Qt::LeftButton, {}, from + QPoint(0, 50));
        QTest::keyRelease(&f.canvas(), Qt::Key_Space);
        QVERIFY(qAbs(f.canvas().viewTransform().center().y() - before.y() - 10.0) < 0.2);
        QVERIFY(f.selected().isEmpty());
        compareBox(f.bounds(0), -20, -10, 0, 10);
    }

    void double_click_on_nothing_shows_the_whole_field() {
        ViewFixture f;
        f.canvas().zoomAbout({10, 10}, 9.0);
        QTest::mouseDClick(&f.canvas(), Qt::LeftButton, {}, QPoint(200, 200));
        const QRectF field = f.canvas().fieldMm();
        QVERIFY(f.canvas().viewTransform().visibleMm().contains(field));
        QVERIFY(qAbs(f.canvas().viewTransform().center().x() - field.center().x()) < 1e-9);
    }

    void pointer_is_told_in_mm_and_pixels() {
        ViewFixture f;
        QSignalSpy spy(&f.view, &QRulerView::MouseMoveEvent);
        f.hover(10, 20);
        QCOMPARE(spy.count(), 1);
        const QPointF mm = spy.first().at(0).toPointF();
        QVERIFY(QLineF(mm, QPointF(10, 20)).length() < 0.2);
        QCOMPARE(spy.first().at(1).toPoint(), f.pixel(10, 20));
    }
};

QTEST_MAIN(tst_Gestures)
#include "tst_gestures.moc"
