// SPDX-License-Identifier: MIT
// Fingers on the canvas.
#include "simengine/view/selectionframe.h"
#include "viewfixture.h"

using namespace sim;
using tests::ViewFixture;

class tst_Touch : public QObject {
    Q_OBJECT

private:
    QTouchDevice* m_screen = nullptr;

private slots:
    void initTestCase() { m_screen = QTest::createTouchDevice(); }

    void one_finger_selects_and_moves() {
        ViewFixture f;
        f.addRect(-20, -10, 20, 20);
        QTest::touchEvent(&f.canvas(), m_screen).press(0, f.pixel(-20, 0), &f.canvas());
        QTest::touchEvent(&f.canvas(), m_screen).move(0, f.pixel(-10, 0), &f.canvas());
        QTest::touchEvent(&f.canvas(), m_screen).move(0, f.pixel(0, 0), &f.canvas());
        QTest::touchEvent(&f.canvas(), m_screen).release(0, f.pixel(0, 0), &f.canvas());
        QCOMPARE(f.selected(), QList<int>({0}));
        QVERIFY(qAbs(f.bounds(0).minX) < 0.2);
    }

    void taps_apart_are_presses_of_their_own() {
        ViewFixture f;
        f.view.SetOperatorOnView(OperatorAddPoint);
        for (const int x : {0, 10, 20}) {
            QTest::touchEvent(&f.canvas(), m_screen).press(0, f.pixel(x, 0), &f.canvas());
            QTest::touchEvent(&f.canvas(), m_screen).release(0, f.pixel(x, 0), &f.canvas());
        }
        QCOMPARE(f.state()->count(), 3);
    }

    void two_quick_taps_on_an_empty_place_show_the_field() {
        ViewFixture f;
        const double scale = f.canvas().viewTransform().scale();
        for (int tap = 0; tap < 2; ++tap) {
            QCOMPARE(f.canvas().viewTransform().scale(), scale);
            QTest::touchEvent(&f.canvas(), m_screen).press(0, f.pixel(30, 30), &f.canvas());
            QTest::touchEvent(&f.canvas(), m_screen).release(0, f.pixel(30, 30), &f.canvas());
        }
        QVERIFY(f.canvas().viewTransform().scale() != scale);
    }

    void a_drag_is_no_first_tap() {
        ViewFixture f;
        f.addRect(-20, -10, 20, 20);
        for (const double x : {-20.0, 0.0}) {
            QTest::touchEvent(&f.canvas(), m_screen).press(0, f.pixel(x, 0), &f.canvas());
            QTest::touchEvent(&f.canvas(), m_screen).move(0, f.pixel(x + 10, 0), &f.canvas());
            QTest::touchEvent(&f.canvas(), m_screen).move(0, f.pixel(x + 20, 0), &f.canvas());
            QTest::touchEvent(&f.canvas(), m_screen).release(0, f.pixel(x + 20, 0), &f.canvas());
        }
        // both drags moved the rectangle, the second begun where the first had ended
        QVERIFY(qAbs(f.bounds(0).minX - 20.0) < 0.3);
    }

    void pinch_zooms_about_the_fingers() {
        ViewFixture f;
        const QPointF middle(300, 200);
        const QPointF before = f.canvas().viewTransform().toMm(middle);
        const double scale = f.canvas().viewTransform().scale();
        QTest::touchEvent(&f.canvas(), m_screen)
            .press(0, QPoint(250, 200), &f.canvas())
            .press(1, QPoint(350, 200), &f.canvas());
        QTest::touchEvent(&f.canvas(), m_screen)
            .move(0, QPoint(200, 200), &f.canvas())
            .move(1, QPoint(400, 200), &f.canvas());
        QVERIFY(qAbs(f.canvas().viewTransform().scale() / scale - 2.0) < 1e-6);
        QVERIFY(QLineF(f.canvas().viewTransform().toMm(middle), before).length() < 1e-6);
        QTest::touchEvent(&f.canvas(), m_screen)
            .release(0, QPoint(200, 200), &f.canvas())
            .release(1, QPoint(400, 200), &f.canvas());
    }

    void two_fingers_pan() {
        ViewFixture f;
        const ViewTransform before = f.canvas().viewTransform();
        QTest::touchEvent(&f.canvas(), m_screen)
            .press(0, QPoint(250, 200), &f.canvas())
            .press(1, QPoint(350, 200), &f.canvas());
        QTest::touchEvent(&f.canvas(), m_screen)
            .move(0, QPoint(300, 250), &f.canvas())
            .move(1, QPoint(400, 250), &f.canvas());
        QTest::touchEvent(&f.canvas(), m_screen)
            .release(0, QPoint(300, 250), &f.canvas())
            .release(1, QPoint(400, 250), &f.canvas());
        QCOMPARE(f.canvas().viewTransform().scale(), before.scale());
        QVERIFY(qAbs(f.canvas().viewTransform().center().x() - before.center().x() + 10.0) < 1e-6);
        QVERIFY(qAbs(f.canvas().viewTransform().center().y() - before.center().y() - 10.0) < 1e-6);
    }

    void a_second_finger_ends_a_drag_without_a_trace() {
        ViewFixture f;
        f.addRect(-20, -10, 20, 20);
        const auto before = f.state()->objects;
        QTest::touchEvent(&f.canvas(), m_screen).press(0, f.pixel(-20, 0), &f.canvas());
        QTest::touchEvent(&f.canvas(), m_screen).move(0, f.pixel(0, 0), &f.canvas());
        QTest::touchEvent(&f.canvas(), m_screen).stationary(0).press(1, QPoint(500, 400), &f.canvas());
        QTest::touchEvent(&f.canvas(), m_screen).stationary(0).release(1, QPoint(500, 400), &f.canvas());
        QTest::touchEvent(&f.canvas(), m_screen).move(0, f.pixel(30, 0), &f.canvas());
        QTest::touchEvent(&f.canvas(), m_screen).release(0, f.pixel(30, 0), &f.canvas());
        QCOMPARE(f.state()->objects, before);
    }

    // QTest's stationary() forgets where a finger is.
    void a_third_finger_and_a_changed_one_move_nothing() {
        ViewFixture f;
        QTest::touchEvent(&f.canvas(), m_screen)
            .press(0, QPoint(250, 200), &f.canvas())
            .press(1, QPoint(350, 200), &f.canvas());
        const ViewTransform before = f.canvas().viewTransform();
        QTest::touchEvent(&f.canvas(), m_screen)
            .move(0, QPoint(250, 200), &f.canvas())
            .move(1, QPoint(350, 200), &f.canvas())
            .press(2, QPoint(500, 450), &f.canvas());
        QCOMPARE(f.canvas().viewTransform(), before);
        // the first one goes: what counts now are the second and the third
        QTest::touchEvent(&f.canvas(), m_screen)
            .release(0, QPoint(250, 200), &f.canvas())
            .move(1, QPoint(350, 200), &f.canvas())
            .move(2, QPoint(500, 450), &f.canvas());
        QCOMPARE(f.canvas().viewTransform(), before);
        QTest::touchEvent(&f.canvas(), m_screen)
            .move(1, QPoint(360, 200), &f.canvas())
            .move(2, QPoint(510, 450), &f.canvas());
        QCOMPARE(f.canvas().viewTransform().scale(), before.scale());
        QVERIFY(qAbs(f.canvas().viewTransform().center().x() - before.center().x() + 2.0) < 1e-6);
        QTest::touchEvent(&f.canvas(), m_screen)
            .release(1, QPoint(360, 200), &f.canvas())
            .release(2, QPoint(510, 450), &f.canvas());
    }

    void a_finger_that_comes_back_to_a_pinch_does_not_throw_the_view() {
        ViewFixture f;
        QTest::touchEvent(&f.canvas(), m_screen)
            .press(0, QPoint(250, 200), &f.canvas())
            .press(1, QPoint(350, 200), &f.canvas());
        QTest::touchEvent(&f.canvas(), m_screen)
            .move(0, QPoint(250, 200), &f.canvas())
            .release(1, QPoint(350, 200), &f.canvas());
        const ViewTransform before = f.canvas().viewTransform();
        QTest::touchEvent(&f.canvas(), m_screen)
            .move(0, QPoint(250, 200), &f.canvas())
            .press(2, QPoint(600, 500), &f.canvas());
        QCOMPARE(f.canvas().viewTransform(), before);
        QTest::touchEvent(&f.canvas(), m_screen)
            .release(0, QPoint(250, 200), &f.canvas())
            .release(2, QPoint(600, 500), &f.canvas());
    }

    void a_finger_takes_handles_from_20_pixels_around() {
        for (int handle = 0; handle <= static_cast<int>(FrameHandle::Move); ++handle) {
            ViewFixture f;
            f.addRect(-20, -20, 40, 40);
            f.session().document().select({0});
            const auto before = f.state()->objects;
            const SelectionFrame frame(selectionBounds(*f.state()), f.canvas().viewTransform());
            const QPoint from = frame.handlePos(static_cast<FrameHandle>(handle)).toPoint() + QPoint(13, 13);
            QTest::touchEvent(&f.canvas(), m_screen).press(0, from, &f.canvas());
            QTest::touchEvent(&f.canvas(), m_screen).move(0, from + QPoint(20, 30), &f.canvas());
            QTest::touchEvent(&f.canvas(), m_screen).move(0, from + QPoint(40, 60), &f.canvas());
            QTest::touchEvent(&f.canvas(), m_screen).release(0, from + QPoint(40, 60), &f.canvas());
            QVERIFY2(f.state()->objects != before, qPrintable(QString::number(handle)));
            QVERIFY(f.canvas().isTouched());
        }
    }

    void a_selection_smaller_than_a_finger_is_moved_by_its_handle() {
        ViewFixture f;
        f.addRect(0, 0, 1, 1);
        f.session().document().select({0});
        const SelectionFrame frame(selectionBounds(*f.state()), f.canvas().viewTransform());
        const QPoint from = frame.handlePos(FrameHandle::Move).toPoint();
        QTest::touchEvent(&f.canvas(), m_screen).press(0, from, &f.canvas());
        QTest::touchEvent(&f.canvas(), m_screen).move(0, from + QPoint(50, 0), &f.canvas());
        QTest::touchEvent(&f.canvas(), m_screen).move(0, from + QPoint(100, 0), &f.canvas());
        QTest::touchEvent(&f.canvas(), m_screen).release(0, from + QPoint(100, 0), &f.canvas());
        QVERIFY(qAbs(f.bounds(0).minX - 20.0) < 1e-6);
        QVERIFY(qAbs(f.bounds(0).width() - 1.0) < 1e-6);
        QCOMPARE(f.undoSteps(), 2);
    }

    void a_tap_draws_with_the_operator() {
        ViewFixture f;
        f.view.SetOperatorOnView(OperatorAddPoint);
        QTest::touchEvent(&f.canvas(), m_screen).press(0, QPoint(400, 300), &f.canvas());
        QTest::touchEvent(&f.canvas(), m_screen).release(0, QPoint(400, 300), &f.canvas());
        QCOMPARE(f.state()->count(), 1);
    }
};

QTEST_MAIN(tst_Touch)
#include "tst_touch.moc"
