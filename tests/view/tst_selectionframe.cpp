// SPDX-License-Identifier: MIT
// The handles of a selection and what dragging them means.
#include "simengine/view/selectionframe.h"

#include <QtTest>

using namespace sim;

namespace {

Box boxOf(double minX, double minY, double maxX, double maxY) {
    Box box;
    box.add(minX, minY);
    box.add(maxX, maxY);
    return box;
}

ViewTransform view() {
    ViewTransform transform;
    transform.setViewport({800, 600});
    transform.zoomAbout({400, 300}, 5.0 / transform.scale());
    return transform;
}

} // namespace

class tst_SelectionFrame : public QObject {
    Q_OBJECT

private slots:
    void handles_lie_on_their_sides() {
        const SelectionFrame frame(boxOf(-20, -10, 20, 10), view());
        const QRectF rect(300 - 8, 250 - 8, 200 + 16, 100 + 16);
        QCOMPARE(frame.rect(), rect);
        QCOMPARE(frame.handlePos(FrameHandle::TopLeft), rect.topLeft());
        QCOMPARE(frame.handlePos(FrameHandle::Right), QPointF(rect.right(), rect.center().y()));
        QCOMPARE(frame.handlePos(FrameHandle::BottomRight), rect.bottomRight());
        QVERIFY(frame.handlePos(FrameHandle::Rotate).y() < rect.top());
        for (int i = 0; i <= static_cast<int>(FrameHandle::Rotate); ++i) {
            const auto handle = static_cast<FrameHandle>(i);
            QVERIFY(frame.hasHandle(handle));
            QCOMPARE(frame.handleAt(frame.handlePos(handle), SelectionFrame::kMouseReach), handle);
        }
        QCOMPARE(frame.handleAt(rect.center(), SelectionFrame::kTouchReach), FrameHandle::None);
        const QPointF beside = frame.handlePos(FrameHandle::Left) + QPointF(SelectionFrame::kGap, 0);
        QCOMPARE(frame.handleAt(beside, SelectionFrame::kMouseReach), FrameHandle::None);
        QCOMPARE(frame.handleAt(beside, SelectionFrame::kTouchReach), FrameHandle::Left);
    }

    void a_flat_selection_scales_in_one_axis_only() {
        const SelectionFrame flat(boxOf(-20, 5, 20, 5), view());
        QVERIFY(flat.hasHandle(FrameHandle::Left));
        QVERIFY(flat.hasHandle(FrameHandle::Right));
        QVERIFY(flat.hasHandle(FrameHandle::Rotate));
        QVERIFY(!flat.hasHandle(FrameHandle::Top));
        QVERIFY(!flat.hasHandle(FrameHandle::TopLeft));
        const SelectionFrame point(boxOf(3, 3, 3, 3), view());
        for (int i = 0; i <= static_cast<int>(FrameHandle::Rotate); ++i)
            QVERIFY(!point.hasHandle(static_cast<FrameHandle>(i)));
    }

    void scale_drag_data() {
        QTest::addColumn<int>("handle");
        QTest::addColumn<QPointF>("by");
        QTest::addColumn<bool>("free");
        QTest::addColumn<bool>("centered");
        QTest::addColumn<double>("scaleX");
        QTest::addColumn<double>("scaleY");
        QTest::addColumn<QPointF>("fixed");
        const auto row = [](const char* name, FrameHandle handle, QPointF by, bool free, bool centered, double sx,
                            double sy, QPointF fixed) {
            QTest::newRow(name) << static_cast<int>(handle) << by << free << centered << sx << sy << fixed;
        };
        row("right edge", FrameHandle::Right, {20, 7}, false, false, 1.5, 1.0, {-20, 0});
        row("left edge", FrameHandle::Left, {20, 7}, false, false, 0.5, 1.0, {20, 0});
        row("top edge", FrameHandle::Top, {9, 10}, false, false, 1.0, 1.5, {0, -10});
        row("corner in proportion", FrameHandle::TopRight, {40, 1}, false, false, 2.0, 2.0, {-20, -10});
        row("corner free", FrameHandle::TopRight, {40, 10}, true, false, 2.0, 1.5, {-20, -10});
        row("bottom left corner", FrameHandle::BottomLeft, {-40, -20}, false, false, 2.0, 2.0, {20, 10});
        row("about the middle", FrameHandle::Right, {20, 0}, false, true, 2.0, 1.0, {0, 0});
        row("past the fixed point", FrameHandle::Right, {-90, 0}, false, false, 0.001, 1.0, {-20, 0});
    }
    void scale_drag() {
        QFETCH(int, handle);
        QFETCH(QPointF, by);
        QFETCH(bool, free);
        QFETCH(bool, centered);
        const Box box = boxOf(-20, -10, 20, 10);
        const QPointF from(33, 44);
        const ScaleDrag drag = scaleDrag(box, static_cast<FrameHandle>(handle), from, from + by, free, centered);
        QTEST(drag.scaleX, "scaleX");
        QTEST(drag.scaleY, "scaleY");
        QTEST(drag.fixed, "fixed");
    }

    void rotation_drag() {
        const QPointF pivot(5, 5);
        QCOMPARE(rotationDrag(pivot, {15, 5}, {5, 15}, false), 90.0);
        QCOMPARE(rotationDrag(pivot, {15, 5}, {5, -5}, false), -90.0);
        // Over the seam of the arc tangent the short way round.
        QVERIFY(qAbs(rotationDrag({0, 0}, {-10, 1}, {-10, -1}, false) - 11.42) < 0.01);
        QCOMPARE(rotationDrag(pivot, {15, 5}, {14, 10.1}, true), 30.0);
        QCOMPARE(rotationDrag(pivot, pivot, {9, 9}, false), 0.0);
    }

    void turning_is_counter_clockwise_about_the_pivot() {
        const QPointF turned = rotateAbout({1, 1}, 90.0).map(QPointF(2, 1));
        QVERIFY(qAbs(turned.x() - 1.0) < 1e-12);
        QVERIFY(qAbs(turned.y() - 2.0) < 1e-12);
        QCOMPARE(scaleAbout({10, 0}, 2.0, 3.0).map(QPointF(12, 1)), QPointF(14, 3));
    }
};

QTEST_APPLESS_MAIN(tst_SelectionFrame)
#include "tst_selectionframe.moc"
