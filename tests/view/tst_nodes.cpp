// SPDX-License-Identifier: MIT
// Editing the nodes of a path in the view.
#include "simengine/document/mkfcodec.h"
#include "simengine/document/textmaker.h"
#include "simengine/view/nodebar.h"
#include "simengine/view/nodeedittool.h"
#include "support/logtexts.h"
#include "viewfixture.h"

#include <QToolButton>

using namespace sim;
using tests::ViewFixture;

Q_DECLARE_METATYPE(sim::Shape)

namespace {

/// An open path of a line and a curve.
PathShape curve() {
    PathShape path;
    path.moveTo({-40, 0});
    path.lineTo({-20, 0});
    path.cubicTo({0, 0}, {20, 20}, {20, 40});
    return path;
}

class Nodes : public ViewFixture {
public:
    explicit Nodes(const Shape& shape, bool edit = true) {
        add(shape);
        session().document().select({0});
        if (edit && !editNodes(canvas()))
            qFatal("there are no nodes");
    }
    NodeEditTool* editor() { return dynamic_cast<NodeEditTool*>(&canvas().tool()); }
    PathShape path(int index = 0) { return std::get<PathShape>(state()->at(index)->shape()); }
    QToolButton* button(const char* name) {
        auto* found = canvas().findChild<QToolButton*>(name);
        if (!found)
            qFatal("no button %s", name);
        return found;
    }
    void run(const char* name) { QTest::mouseClick(button(name), Qt::LeftButton); }
    bool shows(const char* name) {
        auto* found = canvas().findChild<QToolButton*>(name);
        return found && found->isVisible();
    }
    void doubleClick(double x, double y) { QTest::mouseDClick(&canvas(), Qt::LeftButton, {}, pixel(x, y)); }
    void key(int key, Qt::KeyboardModifiers modifiers = {}) { QTest::keyClick(&view, Qt::Key(key), modifiers); }
    bool near(const QPointF& a, const QPointF& b) { return QLineF(a, b).length() < 0.15; }
};

} // namespace

class tst_Nodes : public QObject {
    Q_OBJECT

private:
    QTouchDevice* m_screen = nullptr;

private slots:
    void initTestCase() { m_screen = QTest::createTouchDevice(); }

    void a_double_click_on_a_path_shows_its_nodes() {
        Nodes f(curve(), false);
        QVERIFY(!f.editor());
        f.doubleClick(-30, 0);
        QVERIFY(f.editor());
        QCOMPARE(f.editor()->path().nodeCount(), 3);
        QCOMPARE(f.view.GetOperatorOnView(), OperatorSelect);
        QVERIFY(f.shows("nodeDone"));
        f.doubleClick(40, -30); // an empty place ends it
        QVERIFY(!f.editor());
        QVERIFY(!f.shows("nodeDone"));
        QVERIFY(f.shows("editNodes"));
        QCOMPARE(f.undoSteps(), 1);
    }

    void two_quick_taps_show_the_nodes() {
        Nodes f(curve(), false);
        for (int tap = 0; tap < 2; ++tap) {
            QTest::touchEvent(&f.canvas(), m_screen).press(0, f.pixel(-30, 0), &f.canvas());
            QTest::touchEvent(&f.canvas(), m_screen).release(0, f.pixel(-30, 0), &f.canvas());
        }
        QVERIFY(f.editor());
    }

    void the_button_of_the_bar_shows_the_nodes() {
        Nodes f(curve(), false);
        QVERIFY(f.shows("editNodes"));
        QVERIFY(!f.shows("toPath"));
        f.run("editNodes");
        QVERIFY(f.editor());
        f.run("nodeDone");
        QVERIFY(!f.editor());
    }

    void the_bar_is_there_for_one_object_that_can_be_changed() {
        Nodes f(curve(), false);
        f.addRect(0, -30, 10, 10);
        f.session().document().select({1});
        QVERIFY(f.shows("toPath") && !f.shows("editNodes"));
        f.session().document().select({0, 1});
        QVERIFY(!f.shows("toPath") && !f.shows("editNodes"));
        f.session().document().select({});
        QVERIFY(!f.shows("toPath"));
        f.session().document().select({0});
        QVERIFY(f.shows("editNodes"));
        f.view.SetOperatorOnView(OperatorAddRect);
        QVERIFY(!f.shows("editNodes"));
        f.view.SetOperatorOnView(OperatorSelect);
        f.session().document().select({});
        f.view.SetReadOnly(true);
        f.session().document().select({0});
        QVERIFY(!f.shows("editNodes"));
        QVERIFY(!editNodes(f.canvas()));
    }

    void points_and_groups_have_no_nodes() {
        Nodes f(PointShape{{0, 0}, -1.0}, false);
        QVERIFY(!f.shows("toPath") && !f.shows("editNodes"));
        QVERIFY(!editNodes(f.canvas()));
        f.addRect(5, 5, 5, 5);
        f.session().document().selectAll();
        QVERIFY(f.session().document().edit(edits::group));
        QVERIFY(!f.shows("toPath") && !f.shows("editNodes"));
    }

    void shapes_become_paths_on_request_data() {
        QTest::addColumn<Shape>("shape");
        QTest::newRow("rectangle") << Shape(RectShape{QRectF(-10, -10, 20, 20)});
        QTest::newRow("circle") << Shape(CircleShape{{0, 0}, 15.0, 0.0, false});
        QTest::newRow("arc") << Shape(ArcShape{{0, 0}, 15.0, 10.0, 200.0});
        TextSpec spec;
        spec.text = "A";
        spec.family = "rowmans";
        spec.height = 20.0;
        QTest::newRow("text") << Shape(makeText(spec).shape);
        GeneratedShape generated{"SomeTool", "x", curve()};
        QTest::newRow("of a module") << Shape(generated);
    }

    void shapes_become_paths_on_request() {
        QFETCH(Shape, shape);
        Nodes f(shape, false);
        const Box before = f.bounds(0);
        f.run("toPath");
        QCOMPARE(int(f.state()->at(0)->kind()), int(ObjectKind::Path));
        QVERIFY(qAbs(f.bounds(0).minX - before.minX) < 1e-3 && qAbs(f.bounds(0).maxY - before.maxY) < 1e-3);
        f.run("editNodes");
        QVERIFY(f.editor());
        f.view.Undo(); // the object is no path any more
        QVERIFY(!f.editor());
        QCOMPARE(f.state()->at(0)->shape().index(), shape.index());
    }

    void a_drag_moves_a_node_in_one_step() {
        Nodes f(curve());
        f.dragFromTo({-20, 0}, {-20, -10});
        const PathShape path = f.path();
        QVERIFY(f.near(path.points[1], {-20, -10}));
        QVERIFY(f.near(path.points[2], {0, -10})); // its handle came with it
        QCOMPARE(path.points[0], QPointF(-40, 0));
        QCOMPARE(path.points[4], QPointF(20, 40));
        f.view.Undo();
        QVERIFY(f.path().points == curve().points);
        QVERIFY(f.editor());
        QCOMPARE(f.editor()->path().node({0, 1}).at, QPointF(-20, 0));
        f.view.Redo();
        QVERIFY(f.near(f.path().points[1], {-20, -10}));
        QCOMPARE(f.undoSteps(), 2);
    }

    void a_press_within_20_pixels_takes_a_node() {
        Nodes f(curve());
        f.dragFromTo({-40, 3.8}, {-40, 23.8}); // 19 px beside it
        QVERIFY(f.near(f.path().points[0], {-40, 20}));
        Nodes g(curve());
        g.dragFromTo({-40, 4.6}, {-40, 23.8}); // 23 px
        QCOMPARE(g.path().points[0], QPointF(-40, 0));
    }

    void a_finger_moves_a_node() {
        Nodes f(curve());
        QTest::touchEvent(&f.canvas(), m_screen).press(0, f.pixel(-40, -3), &f.canvas());
        QTest::touchEvent(&f.canvas(), m_screen).move(0, f.pixel(-40, -13), &f.canvas());
        QTest::touchEvent(&f.canvas(), m_screen).move(0, f.pixel(-40, -23), &f.canvas());
        QTest::touchEvent(&f.canvas(), m_screen).release(0, f.pixel(-40, -23), &f.canvas());
        QVERIFY(f.near(f.path().points[0], {-40, -20}));
    }

    void a_second_finger_ends_a_drag_without_a_trace() {
        Nodes f(curve());
        QTest::touchEvent(&f.canvas(), m_screen).press(0, f.pixel(-40, 0), &f.canvas());
        QTest::touchEvent(&f.canvas(), m_screen).move(0, f.pixel(-40, -20), &f.canvas());
        QTest::touchEvent(&f.canvas(), m_screen).stationary(0).press(1, QPoint(500, 400), &f.canvas());
        QTest::touchEvent(&f.canvas(), m_screen)
            .release(0, f.pixel(-40, -20), &f.canvas())
            .release(1, QPoint(500, 400), &f.canvas());
        QVERIFY(f.path().points == curve().points);
        QVERIFY(f.editor()->path().path().points == curve().points);
    }

    void escape_ends_a_drag_and_then_the_editing() {
        Nodes f(curve());
        f.press(-40, 0);
        f.drag(-40, 20);
        f.key(Qt::Key_Escape);
        QVERIFY(f.editor());
        f.release(-40, 20);
        QVERIFY(f.path().points == curve().points);
        f.key(Qt::Key_Escape);
        QVERIFY(!f.editor());
        QCOMPARE(f.selected(), QList<int>({0}));
    }

    void handles_of_selected_nodes_are_dragged() {
        Nodes f(curve());
        f.click(20, 40);
        f.dragFromTo({20, 20}, {40, 20}); // its handle
        QVERIFY(f.near(f.path().points[3], {40, 20}));
        QCOMPARE(f.path().points[4], QPointF(20, 40));
        QCOMPARE(f.undoSteps(), 2);
    }

    void handles_of_nodes_that_are_not_selected_are_not_there() {
        Nodes f(curve());
        f.dragFromTo({20, 20}, {40, 20});
        QVERIFY(f.path().points == curve().points);
    }

    void a_handle_beside_a_line_keeps_its_direction() {
        Nodes f(curve());
        f.click(-20, 0);
        f.dragFromTo({0, 0}, {10, 14});
        QVERIFY(f.near(f.path().points[2], {10, 0}));
    }

    void several_nodes_are_moved_together() {
        Nodes f(curve());
        f.click(-40, 0);
        f.click(20, 40, Qt::ShiftModifier);
        QCOMPARE(f.editor()->path().selectedCount(), 2);
        f.dragFromTo({-40, 0}, {-40, -10});
        QVERIFY(f.near(f.path().points[0], {-40, -10}));
        QVERIFY(f.near(f.path().points[4], {20, 30}));
        QCOMPARE(f.path().points[1], QPointF(-20, 0));
        f.click(20, 30, Qt::ControlModifier); // taken away again
        QCOMPARE(f.editor()->path().selectedCount(), 1);
    }

    void fingers_select_several_with_the_button() {
        Nodes f(curve());
        f.run("nodeAdds");
        for (const QPointF& at : {QPointF(-40, 0), QPointF(20, 40)}) {
            QTest::touchEvent(&f.canvas(), m_screen).press(0, f.pixel(at.x(), at.y()), &f.canvas());
            QTest::touchEvent(&f.canvas(), m_screen).release(0, f.pixel(at.x(), at.y()), &f.canvas());
        }
        QCOMPARE(f.editor()->path().selectedCount(), 2);
    }

    void a_rubber_band_selects_nodes() {
        Nodes f(curve());
        f.dragFromTo({-50, 30}, {-10, -10});
        QCOMPARE(f.editor()->path().selectedCount(), 2);
        f.click(60, -40); // an empty place
        QCOMPARE(f.editor()->path().selectedCount(), 0);
        QVERIFY(f.path().points == curve().points);
        f.key(Qt::Key_A, Qt::ControlModifier);
        QCOMPARE(f.editor()->path().selectedCount(), 3);
    }

    void shift_keeps_a_drag_to_one_axis() {
        Nodes f(curve());
        f.click(-40, 0);
        f.press(-40, 0);
        f.drag(-43, -20, Qt::ShiftModifier);
        f.release(-43, -20, Qt::ShiftModifier);
        QCOMPARE(f.path().points[0].x(), -40.0);
    }

    void the_lock_of_the_bar_keeps_a_drag_to_one_axis() {
        Nodes f(curve());
        f.canvas().setLocksAxis(true);
        f.click(-40, 0);
        f.press(-40, 0);
        f.drag(-43, -20);
        f.release(-43, -20);
        QCOMPARE(f.path().points[0].x(), -40.0);
        QVERIFY(f.path().points[0].y() < -10.0);
    }

    void a_double_click_puts_a_node_on_the_segment() {
        Nodes f(curve());
        f.doubleClick(-30, 0);
        QCOMPARE(f.path().points.size(), 6);
        QVERIFY(f.near(f.path().points[1], {-30, 0}));
        QCOMPARE(f.editor()->path().selectedCount(), 1);
        QCOMPARE(f.undoSteps(), 2);
    }

    void insert_takes_the_place_that_was_pressed() {
        Nodes f(curve());
        f.click(-35, 0);
        QVERIFY(f.button("nodeInsert")->isEnabled());
        f.run("nodeInsert");
        QVERIFY(f.near(f.path().points[1], {-35, 0}));
        f.key(Qt::Key_A, Qt::ControlModifier);
        f.key(Qt::Key_Insert); // in the middle of each of the three segments
        QCOMPARE(f.editor()->path().nodeCount(), 7);
    }

    void nodes_are_removed_by_key_and_button() {
        Nodes f(curve());
        QVERIFY(!f.button("nodeRemove")->isEnabled());
        f.click(-40, 0);
        f.key(Qt::Key_Delete);
        QCOMPARE(f.editor()->path().nodeCount(), 2);
        QCOMPARE(f.state()->count(), 1);
        f.view.Undo();
        f.click(20, 40);
        f.run("nodeRemove");
        QCOMPARE(f.editor()->path().nodeCount(), 2);
    }

    void removing_all_nodes_removes_the_object() {
        Nodes f(curve());
        f.addRect(0, -30, 10, 10);
        f.session().document().select({0});
        f.run("editNodes");
        f.key(Qt::Key_A, Qt::ControlModifier);
        f.key(Qt::Key_Delete);
        QVERIFY(!f.editor());
        QCOMPARE(f.state()->count(), 1);
        QCOMPARE(int(f.state()->at(0)->kind()), int(ObjectKind::Rect));
    }

    void kinds_lines_curves_breaks_and_ends() {
        Nodes f(curve());
        f.click(-20, 0);
        f.run("nodeSymmetric");
        QVERIFY(f.path().verbs[1] == PathVerb::Cubic);
        f.key(Qt::Key_A, Qt::ControlModifier);
        f.run("nodeLine");
        QVERIFY(!f.path().verbs.contains(PathVerb::Cubic));
        f.key(Qt::Key_A, Qt::ControlModifier);
        f.run("nodeCurve");
        QCOMPARE(f.path().verbs.count(PathVerb::Cubic), 2);
        f.key(Qt::Key_A, Qt::ControlModifier);
        QVERIFY(f.button("nodeClose")->isEnabled() && !f.button("nodeOpen")->isEnabled());
        f.run("nodeClose");
        QVERIFY(f.path().verbs.last() == PathVerb::Close);
        f.click(-20, 0);
        f.run("nodeBreak");
        QVERIFY(f.path().verbs.last() != PathVerb::Close);
        QCOMPARE(f.path().points.first(), QPointF(-20, 0));
        const int steps = f.undoSteps();
        QCOMPARE(steps, 6); // added, and five edits
        QVERIFY(f.state()->count() == 0);
    }

    void a_double_click_on_a_node_changes_its_kind() {
        Nodes f(PolylineShape{QPolygonF({{-40, 0}, {0, 0}, {0, 40}}), false});
        f.doubleClick(0, 0);
        QCOMPARE(int(f.state()->at(0)->kind()), int(ObjectKind::Path));
        QCOMPARE(f.path().verbs.count(PathVerb::Cubic), 2);
        QCOMPARE(int(f.editor()->path().node({0, 1}).kind), int(NodeKind::Smooth));
        f.doubleClick(0, 0);
        QCOMPARE(int(f.editor()->path().node({0, 1}).kind), int(NodeKind::Corner));
    }

    void a_line_stays_a_line_while_it_is_one() {
        Nodes f(PolylineShape{QPolygonF({{-40, 0}, {0, 0}, {0, 40}}), false});
        f.dragFromTo({0, 0}, {0, -20});
        QCOMPARE(int(f.state()->at(0)->kind()), int(ObjectKind::Polyline));
        f.key(Qt::Key_A, Qt::ControlModifier);
        f.run("nodeClose");
        QVERIFY(std::get<PolylineShape>(f.state()->at(0)->shape()).closed);
        QCOMPARE(f.state()->at(0)->className(), QString("MarkToolLine"));
    }

    void arrow_keys_move_the_nodes_in_one_step() {
        Nodes f(curve());
        f.view.SetKeyMoveDist(0.5);
        f.click(-40, 0);
        for (int i = 0; i < 4; ++i)
            f.key(Qt::Key_Right);
        f.key(Qt::Key_Down);
        QCOMPARE(f.path().points[0], QPointF(-38, -0.5));
        QCOMPARE(f.path().points[1], QPointF(-20, 0));
        QCOMPARE(f.undoSteps(), 2);
    }

    void the_object_keeps_pen_hatch_name_and_turn() {
        ViewFixture f;
        f.add(curve(), 4);
        f.session().document().select({0});
        f.view.ChangeSelectedObjAngle(30);
        QVector<FillParam> fills(3);
        fills[0].Enable = true;
        fills[0].FillDist = 1.0;
        f.view.FillSelectedObj(fills, true, true, false);
        QVERIFY(f.session().document().edit([](const DocumentState& s) { return edits::setName(s, 0, "label"); }));
        QVERIFY(editNodes(f.canvas()));
        const auto path = std::get<PathShape>(f.state()->at(0)->shape());
        const QPointF first = f.state()->at(0)->transform().map(path.points.first());
        f.dragFromTo(first, first + QPointF(-5, -5));
        const ObjectData& now = f.state()->at(0)->data();
        QCOMPARE(now.pen, 4);
        QCOMPARE(now.angle, 30.0);
        QCOMPARE(now.name, QString("label"));
        QVERIFY(now.hatch.markFillFirst && now.hatch.fills[0].Enable);
        QVERIFY(QLineF(std::get<PathShape>(now.shape).points.first(), first + QPointF(-5, -5)).length() < 0.2);
        QVERIFY(now.transform.isIdentity());
    }

    void a_node_beyond_the_limit_is_refused_and_told() {
        Nodes f(curve());
        f.view.SetKeyMoveDist(3.0e6);
        f.click(-40, 0);
        f.key(Qt::Key_Right);
        QVERIFY(f.path().points == curve().points);
        QVERIFY(f.editor()->path().path().points == curve().points);
        QVERIFY(tests::logTexts("operator").contains("修改超出允许范围"));
    }

    void other_selections_and_operators_end_the_editing() {
        Nodes f(curve());
        f.addRect(0, -30, 10, 10);
        QVERIFY(!f.editor()); // nothing is selected
        f.session().document().select({0});
        f.run("editNodes");
        f.session().document().select({1});
        QVERIFY(!f.editor());
        f.session().document().select({0});
        f.run("editNodes");
        f.view.SetOperatorOnView(OperatorAddRect);
        QVERIFY(!f.editor());
        f.view.SetOperatorOnView(OperatorSelect);
        QVERIFY(!f.editor());
        f.run("editNodes");
        f.session().document().edit(edits::removeSelected);
        QVERIFY(!f.editor());
    }

    void an_edit_from_elsewhere_is_followed() {
        Nodes f(curve());
        f.press(-40, 0);
        f.drag(-40, 20);
        f.view.MoveSelectObjRelative(10, 0); // ends the drag without a trace
        f.drag(-40, 25);
        f.release(-40, 25);
        QVERIFY(f.editor());
        QCOMPARE(f.state()->at(0)->bounds().minX, -30.0);
        QCOMPARE(f.editor()->path().node({0, 0}).at, QPointF(-30, 0));
    }

    void a_read_only_document_is_not_edited() {
        Nodes f(curve());
        f.view.SetReadOnly(true);
        f.dragFromTo({-40, 0}, {-40, 20});
        f.key(Qt::Key_Delete);
        QVERIFY(f.path().points == curve().points);
    }

    void the_nodes_are_drawn_and_the_frame_is_not() {
        Nodes f(curve());
        f.click(-20, 0);
        const QImage shown = f.canvas().grab().toImage();
        const auto color = [&](double x, double y) {
            return shown.pixelColor(f.pixel(x, y) * shown.devicePixelRatio());
        };
        const QColor accent(0x0a, 0x6c, 0xd6);
        QCOMPARE(color(-20, 0), accent); // selected
        QVERIFY(color(-40, 0) != accent);
        QCOMPARE(color(0, 0), accent); // its handle
        f.run("nodeDone");
        const QImage after = f.canvas().grab().toImage();
        QVERIFY(after.pixelColor(f.pixel(0, 0) * after.devicePixelRatio()) != accent);
    }

    void buttons_are_for_fingers_and_fit_a_small_view_data() {
        QTest::addColumn<int>("width");
        for (const int width : {300, 500, 900, 1600})
            QTest::addRow("%d", width) << width;
    }

    void buttons_are_for_fingers_and_fit_a_small_view() {
        QFETCH(int, width);
        Nodes f(curve());
        f.view.resize(width, 500);
        QTRY_VERIFY(qAbs(f.canvas().width() - width) < 60);
        const auto buttons = f.canvas().findChildren<QToolButton*>();
        QRegion covered;
        int shown = 0;
        for (QToolButton* button : buttons) {
            if (!button->isVisible())
                continue;
            ++shown;
            const QRect place(button->mapTo(&f.canvas(), QPoint(0, 0)), button->size());
            QVERIFY(place.width() >= 40 && place.height() >= 40);
            QVERIFY(f.canvas().rect().contains(place));
            QVERIFY(!covered.intersects(place));
            covered += place;
            QVERIFY(!button->text().isEmpty());
            QVERIFY(button->fontMetrics().horizontalAdvance(button->text()) <= button->width());
        }
        QCOMPARE(shown, 12);
    }

    void a_path_of_100000_nodes_is_edited() {
        PathShape large;
        for (int i = 0; i < 100000; ++i) {
            const double angle = i * 0.02;
            const QPointF at = (5.0 + i * 0.0003) * QPointF(std::cos(angle), std::sin(angle));
            if (i == 0)
                large.moveTo(at);
            else
                large.lineTo(at);
        }
        Nodes f(large);
        QCOMPARE(f.editor()->path().nodeCount(), 100000);
        const QPointF end = large.points.last();
        f.dragFromTo(end, end + QPointF(10, 0));
        QVERIFY(!(f.path().points.last() == end));
        f.key(Qt::Key_A, Qt::ControlModifier);
        f.canvas().grab();
        f.key(Qt::Key_Right);
        QCOMPARE(f.path().points.size(), 100000);
        f.view.Undo();
        f.view.Undo();
        QVERIFY(f.path().points == large.points);
        const auto bytes = encodeMkf(f.session().document().content());
        QVERIFY(bytes && decodeMkf(*bytes, nullptr));
    }
};

QTEST_MAIN(tst_Nodes)
#include "tst_nodes.moc"
