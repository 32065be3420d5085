// SPDX-License-Identifier: MIT
// The operators that place objects, zoom and teach.
#include "engine/systemparam.h"
#include "simengine/card/cardlink.h"
#include "simengine/view/canvastool.h"
#include "simengine/view/viewtheme.h"
#include "support/waitfor.h"
#include "viewfixture.h"

using namespace sim;
using tests::ViewFixture;

namespace {

QVector<QPointF> g_taught;
void noteTaught(QPointF point) {
    g_taught.append(point);
}

} // namespace

class tst_Drawing : public QObject {
    Q_OBJECT

private:
    template<typename ShapeType>
    static const ShapeType* shapeAt(ViewFixture& f, int index) {
        return index < f.state()->count() ? std::get_if<ShapeType>(&f.state()->at(index)->shape()) : nullptr;
    }
    static bool near(const QPointF& a, const QPointF& b) { return QLineF(a, b).length() < 0.2; }

private slots:
    void points_are_added_with_the_current_pen() {
        ViewFixture f;
        f.view.SetCurrentLayerWithOutChangeLayer(7);
        f.view.SetOperatorOnView(OperatorAddPoint);
        f.click(10, 5);
        f.click(-10, 5);
        QCOMPARE(f.state()->count(), 2);
        const auto* point = shapeAt<PointShape>(f, 0);
        QVERIFY(point && near(point->pos, {10, 5}));
        QCOMPARE(f.view.GetToolLayer(0), 7);
        QCOMPARE(f.selected(), QList<int>({1}));
        QCOMPARE(f.view.GetOperatorOnView(), OperatorAddPoint);
        QCOMPARE(f.undoSteps(), 2);
    }

    void right_button_goes_back_to_selecting_data() {
        QTest::addColumn<int>("op");
        for (const int op : {11, 12, 15, 16, 17, 18, 19, 20, 10})
            QTest::newRow(qPrintable(QString::number(op))) << op;
    }
    void right_button_goes_back_to_selecting() {
        QFETCH(int, op);
        ViewFixture f;
        QSignalSpy spy(&f.view, &QRulerView::ChangeOperatorOnView);
        f.view.SetOperatorOnView(static_cast<OperatorOnView>(op));
        QCOMPARE(spy.count(), 0);
        f.click(0, 0, {}, Qt::RightButton);
        QCOMPARE(f.view.GetOperatorOnView(), OperatorSelect);
        QCOMPARE(spy.count(), 1);
        QCOMPARE(f.state()->count(), 0);
    }

    void teaching_points_ends_by_its_window_alone() {
        ViewFixture f;
        f.view.SetOperatorOnView(OperatorTeach);
        f.click(0, 0, {}, Qt::RightButton);
        QTest::keyClick(&f.canvas(), Qt::Key_Escape);
        QCOMPARE(f.view.GetOperatorOnView(), OperatorTeach);
        f.view.SetOperatorOnView(OperatorSelect);
        QCOMPARE(f.view.GetOperatorOnView(), OperatorSelect);
    }

    void rectangle_by_drag_and_by_two_presses() {
        ViewFixture f;
        f.view.SetOperatorOnView(OperatorAddRect);
        f.dragFromTo({10, 10}, {-20, -5});
        const auto* rect = shapeAt<RectShape>(f, 0);
        QVERIFY(rect && near(rect->rect.topLeft(), {-20, -5}) && near(rect->rect.bottomRight(), {10, 10}));
        f.click(20, 20);
        QCOMPARE(f.state()->count(), 1);
        f.hover(30, 25);
        f.click(40, 30);
        rect = shapeAt<RectShape>(f, 1);
        QVERIFY(rect && near(rect->rect.topLeft(), {20, 20}) && near(rect->rect.bottomRight(), {40, 30}));
    }

    void shift_makes_a_square() {
        ViewFixture f;
        f.view.SetOperatorOnView(OperatorAddRect);
        f.dragFromTo({0, 0}, {20, -8}, Qt::ShiftModifier);
        const auto* rect = shapeAt<RectShape>(f, 0);
        QVERIFY(rect && near(rect->rect.topLeft(), {0, -20}) && near(rect->rect.bottomRight(), {20, 0}));
    }

    void circle_has_its_middle_at_the_first_press() {
        ViewFixture f;
        f.view.SetOperatorOnView(OperatorAddCircle);
        f.dragFromTo({5, 5}, {5, 25});
        const auto* circle = shapeAt<CircleShape>(f, 0);
        QVERIFY(circle && near(circle->center, {5, 5}));
        QVERIFY(qAbs(circle->radius - 20.0) < 0.2);
    }

    void two_presses_at_one_place_add_nothing() {
        ViewFixture f;
        f.view.SetOperatorOnView(OperatorAddCircle);
        f.click(5, 5);
        f.click(5, 5);
        QCOMPARE(f.state()->count(), 0);
    }

    void line_ends_data() {
        QTest::addColumn<QString>("end");
        QTest::newRow("right button") << "right";
        QTest::newRow("return") << "return";
        QTest::newRow("double click") << "double";
    }
    void line_ends() {
        QFETCH(QString, end);
        ViewFixture f;
        f.view.SetOperatorOnView(OperatorAddLine);
        f.click(0, 0);
        f.hover(5, 5);
        f.click(20, 0);
        f.click(20, 20);
        QCOMPARE(f.state()->count(), 0);
        if (end == "right")
            f.click(40, 40, {}, Qt::RightButton);
        else if (end == "return")
            QTest::keyClick(&f.canvas(), Qt::Key_Return);
        else
            QTest::mouseDClick(&f.canvas(), Qt::LeftButton, {}, f.pixel(20, 20));
        const auto* line = shapeAt<PolylineShape>(f, 0);
        QVERIFY(line);
        QCOMPARE(line->points.size(), 3);
        QVERIFY(!line->closed);
        QVERIFY(near(line->points[2], {20, 20}));
        QCOMPARE(f.undoSteps(), 1);
        QCOMPARE(f.view.GetOperatorOnView(), OperatorAddLine);
    }

    void press_on_the_first_point_closes_the_line() {
        ViewFixture f;
        f.view.SetOperatorOnView(OperatorAddLine);
        f.click(0, 0);
        f.click(20, 0);
        f.click(20, 20);
        f.click(0.4, 0.4);
        const auto* line = shapeAt<PolylineShape>(f, 0);
        QVERIFY(line && line->closed);
        QCOMPARE(line->points.size(), 3);
    }

    void backspace_takes_a_point_back_and_shift_snaps() {
        ViewFixture f;
        f.view.SetOperatorOnView(OperatorAddLine);
        f.click(0, 0);
        f.click(30, 30);
        QTest::keyClick(&f.canvas(), Qt::Key_Backspace);
        f.click(20, 3, Qt::ShiftModifier);
        QTest::keyClick(&f.canvas(), Qt::Key_Enter);
        const auto* line = shapeAt<PolylineShape>(f, 0);
        QVERIFY(line);
        QCOMPARE(line->points.size(), 2);
        QVERIFY(near(line->points[1], {20, 0}));
    }

    void a_line_of_one_point_is_dropped() {
        ViewFixture f;
        f.view.SetOperatorOnView(OperatorAddLine);
        f.click(0, 0);
        QTest::keyClick(&f.canvas(), Qt::Key_Return);
        QCOMPARE(f.state()->count(), 0);
    }

    void escape_drops_the_line_then_the_operator() {
        ViewFixture f;
        QSignalSpy spy(&f.view, &QRulerView::ChangeOperatorOnView);
        f.view.SetOperatorOnView(OperatorAddLine);
        f.click(0, 0);
        f.click(10, 0);
        QTest::keyClick(&f.canvas(), Qt::Key_Escape);
        QCOMPARE(f.view.GetOperatorOnView(), OperatorAddLine);
        QTest::keyClick(&f.canvas(), Qt::Key_Escape);
        QCOMPARE(f.view.GetOperatorOnView(), OperatorSelect);
        QCOMPARE(spy.count(), 1);
        QCOMPARE(f.state()->count(), 0);
    }

    void changing_the_operator_drops_a_line_in_the_making() {
        ViewFixture f;
        f.view.SetOperatorOnView(OperatorAddLine);
        f.click(0, 0);
        f.click(10, 0);
        f.view.SetOperatorOnView(OperatorSelect);
        f.view.SetOperatorOnView(OperatorAddLine);
        QTest::keyClick(&f.canvas(), Qt::Key_Return);
        QCOMPARE(f.state()->count(), 0);
    }

    void zoom_region_shows_it_and_goes_back_to_selecting() {
        ViewFixture f;
        QSignalSpy spy(&f.view, &QRulerView::ChangeOperatorOnView);
        f.view.SetOperatorOnView(OperatorZoomRegion);
        f.dragFromTo({10, 10}, {20, 18});
        QCOMPARE(f.view.GetOperatorOnView(), OperatorSelect);
        QCOMPARE(spy.count(), 1);
        const QRectF shown = f.canvas().viewTransform().visibleMm();
        QVERIFY(shown.contains(QRectF(10.2, 10.2, 9.6, 7.6)));
        QVERIFY(shown.width() < 20.0);
        QVERIFY(near(f.canvas().viewTransform().center(), {15, 14}));
    }

    void teaching_calls_back_and_confirms_points() {
        ViewFixture f;
        g_taught.clear();
        f.view.SetCallBackMirrorPt(noteTaught);
        f.view.SetOperatorOnView(OperatorTeach);
        f.view.F6Pressed();
        QCOMPARE(f.state()->count(), 0);
        f.click(12, -7);
        QCOMPARE(g_taught.size(), 1);
        QVERIFY(near(g_taught.first(), {12, -7}));
        QCOMPARE(f.state()->count(), 0);
        f.view.F6Pressed();
        const auto* point = shapeAt<PointShape>(f, 0);
        QVERIFY(point);
        QCOMPARE(point->pos, g_taught.first());
        f.view.SetCallBackMirrorPt(nullptr);
        f.click(0, 0);
        QCOMPARE(g_taught.size(), 1);
    }

    void the_spot_is_shown_where_the_mirrors_send_it() {
        ViewFixture f;
        CardCore& card = simulatedCard();
        card.close();
        f.view.SetOperatorOnView(OperatorTeach);
        const auto pilotAt = [&](double x, double y) {
            const QImage image = f.canvas().grab().toImage();
            return image.pixelColor(f.pixel(x, y) * image.devicePixelRatio()) == QColor(theme::kPilot);
        };
        QVERIFY(!pilotAt(0, 0));
        QVERIFY(card.open());
        card.setSpeed(0.0);
        card.moveTo(onMachine({0, 0}), 1000.0);
        QVERIFY(tests::waitFor([&] { return pilotAt(0, 0); }));
        card.moveTo(onMachine({20, -10}), 1000.0);
        QVERIFY(tests::waitFor([&] { return pilotAt(20, -10) && !pilotAt(0, 0); }));
        SystemParam::Instance()->SetInvertX(true);
        QVERIFY(tests::waitFor([&] { return pilotAt(-20, -10); }));
        SystemParam::Instance()->SetInvertX(false);
        f.view.SetOperatorOnView(OperatorSelect);
        QVERIFY(!pilotAt(20, -10));
        card.moveTo(onMachine({0, 0}), 1000.0);
        card.close();
    }

    void the_spot_is_on_its_way_while_the_mirrors_move() {
        ViewFixture f;
        CardCore& card = simulatedCard();
        QVERIFY(card.open());
        card.setSpeed(0.0);
        card.moveTo(onMachine({0, 0}), 1000.0);
        card.setSpeed(1.0);
        card.moveTo(onMachine({40, 0}), 10.0);
        const auto between = [] {
            const auto spot = pilotSpot();
            return spot && spot->x() > 0.0 && spot->x() < 40.0;
        };
        QVERIFY(tests::waitFor(between));
        card.setSpeed(0.0);
        card.moveTo(onMachine({0, 0}), 1000.0);
        card.close();
        QVERIFY(!pilotSpot());
    }

    void three_taught_points_make_a_circle_or_an_arc_data() {
        QTest::addColumn<int>("op");
        QTest::newRow("circle") << 17;
        QTest::newRow("arc") << 18;
    }
    void three_taught_points_make_a_circle_or_an_arc() {
        QFETCH(int, op);
        ViewFixture f;
        f.view.SetOperatorOnView(static_cast<OperatorOnView>(op));
        for (const QPointF place : {QPointF(20, 0), QPointF(0, 20), QPointF(-20, 0)}) {
            QCOMPARE(f.state()->count(), 0);
            f.click(place.x(), place.y());
            f.view.F6Pressed();
        }
        QCOMPARE(f.state()->count(), 1);
        if (op == 17) {
            const auto* circle = shapeAt<CircleShape>(f, 0);
            QVERIFY(circle && near(circle->center, {0, 0}) && qAbs(circle->radius - 20.0) < 0.2);
        } else {
            const auto* arc = shapeAt<ArcShape>(f, 0);
            QVERIFY(arc && near(arc->center, {0, 0}) && qAbs(arc->sweepAngle - 180.0) < 2.0);
        }
    }

    void f6_confirms_where_the_spot_was_steered_to() {
        ViewFixture f;
        CardCore& card = simulatedCard();
        QVERIFY(card.open());
        card.setSpeed(0.0);
        f.view.SetOperatorOnView(OperatorTeach);
        f.click(12, -7);
        card.moveTo(onMachine({20, -10}), 1000.0);
        f.view.F6Pressed();
        QCOMPARE(shapeAt<PointShape>(f, 0)->pos, QPointF(20, -10));
        SystemParam::Instance()->SetInvertX(true);
        card.moveTo(onMachine({5, 6}), 1000.0);
        f.view.F6Pressed();
        SystemParam::Instance()->SetInvertX(false);
        QCOMPARE(shapeAt<PointShape>(f, 1)->pos, QPointF(5, 6));
        // On its way the spot is confirmed where it is sent.
        card.setSpeed(1.0);
        card.moveTo(onMachine({-30, 0}), 1.0);
        f.view.F6Pressed();
        QCOMPARE(shapeAt<PointShape>(f, 2)->pos, QPointF(-30, 0));
        card.setSpeed(0.0);
        card.moveTo(onMachine({0, 0}), 1000.0);
        card.close();
        f.view.F6Pressed();
        QVERIFY(near(shapeAt<PointShape>(f, 3)->pos, {12, -7}));
    }

    void a_place_that_a_job_moves_is_not_confirmed() {
        ViewFixture f;
        f.addRect(0, 0, 10, 10);
        CardCore& card = simulatedCard();
        QVERIFY(card.open());
        card.setSpeed(0.0001);
        f.view.SetOperatorOnView(OperatorTeach);
        card.setState(RunState::Run);
        Job job;
        job.strokes.push_back({0, {{0, 0}, {10, 0}}});
        std::thread run([&] { card.run(job, false); });
        QVERIFY(tests::waitFor([&] { return card.head().activity == Activity::Running; }));
        QVERIFY(!steeredSpot());
        f.view.F6Pressed();
        QCOMPARE(f.state()->count(), 1);
        card.setState(RunState::Stop);
        run.join();
        f.view.F6Pressed();
        QCOMPARE(f.state()->count(), 2);
        card.close();
    }

    void f6_in_the_view_confirms_circles_and_arcs_alone() {
        ViewFixture f;
        CardCore& card = simulatedCard();
        QVERIFY(card.open());
        card.setSpeed(0.0);
        const auto steer = [&](double x, double y) { card.moveTo(onMachine({x, y}), 1000.0); };
        f.view.SetOperatorOnView(OperatorTeachCircle);
        for (const Point at : {Point{20, 0}, Point{0, 20}, Point{-20, 0}}) {
            steer(at.x, at.y);
            QCOMPARE(f.state()->count(), 0);
            QTest::keyClick(&f.canvas(), Qt::Key_F6);
            QTest::keyClick(&f.canvas(), Qt::Key_F6); // the same place is not the next one
            if (at.x == -20)
                break;
            QKeyEvent held(QEvent::KeyPress, Qt::Key_F6, Qt::NoModifier, QString(), true);
            QCoreApplication::sendEvent(&f.canvas(), &held);
            QCOMPARE(QRulerViewAccess::session(f.view).confirmedPoints().last(), QPointF(at.x, at.y));
        }
        const auto* circle = shapeAt<CircleShape>(f, 0);
        QVERIFY(circle && near(circle->center, {0, 0}) && qAbs(circle->radius - 20.0) < 1e-6);
        for (const OperatorOnView op : {OperatorSelect, OperatorTeach, OperatorAddPoint}) {
            f.view.SetOperatorOnView(op);
            QTest::keyClick(&f.canvas(), Qt::Key_F6);
            QCOMPARE(f.state()->count(), 1);
        }
        steer(0, 0);
        card.close();
    }

    void plugin_presses_add_nothing_and_are_logged() {
        ViewFixture f;
        f.view.SetOperatorOnView(OperatorAddPluginTool);
        f.click(0, 0);
        QCOMPARE(f.state()->count(), 0);
        const QString today = QDate::currentDate().toString("yyyy-MM-dd");
        QVERIFY(QString::fromUtf8(f.root.read("/日志文件/" + today + ".log")).contains("文档没有该工具的对象"));
    }

    void read_only_documents_take_no_objects() {
        ViewFixture f;
        f.view.SetReadOnly(true);
        f.view.SetOperatorOnView(OperatorAddPoint);
        f.click(0, 0);
        f.view.SetOperatorOnView(OperatorAddRect);
        f.dragFromTo({0, 0}, {20, 20});
        f.view.SetOperatorOnView(OperatorAddLine);
        f.click(0, 0);
        f.click(10, 0);
        QTest::keyClick(&f.canvas(), Qt::Key_Return);
        QCOMPARE(f.state()->count(), 0);
    }
};

QTEST_MAIN(tst_Drawing)
#include "tst_drawing.moc"
