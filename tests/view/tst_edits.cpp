// SPDX-License-Identifier: MIT
#include "engine/dissimilationparam.h"
#include "engine/vzlistviewex.h"
#include "viewfixture.h"

using sim::Box;
using tests::ViewFixture;

namespace {

using Edit = void (*)(QRulerView&);
using Places = QVector<QRectF>;

QRectF placeOf(const Box& box) {
    return QRectF(box.minX, box.minY, box.width(), box.height());
}

Places placesOf(ViewFixture& f) {
    Places places;
    for (int i = 0; i < f.state()->count(); ++i)
        places.append(placeOf(f.bounds(i)));
    return places;
}

/// The lines of an object as they are marked.
QVector<QPolygonF> linesOf(ViewFixture& f, int index) {
    QVector<QPolygonF> lines;
    for (const sim::FlatLine& line : f.state()->at(index)->flattened())
        lines.append(line.points);
    return lines;
}

template<void (QRulerView::*F)()>
void call(QRulerView& view) {
    (view.*F)();
}

/// A small rectangle, and a larger one that is selected last and so is the one that others are arranged by.
constexpr QRectF kSmall(0, 0, 10, 8);
constexpr QRectF kLarge(30, 5, 20, 30);

} // namespace

Q_DECLARE_METATYPE(Edit)
Q_DECLARE_METATYPE(Places)

/// What the edits of a document view do to its objects, to the micrometre and as one step of undo each.
class ViewEditsTest : public QObject {
    Q_OBJECT

private slots:
    void edits_arrange_the_selection_data();
    void edits_arrange_the_selection();
    void edits_leave_a_read_only_document_alone_data() { edits_arrange_the_selection_data(); }
    void edits_leave_a_read_only_document_alone();
    void edits_without_a_selection_are_no_step_data() { edits_arrange_the_selection_data(); }
    void edits_without_a_selection_are_no_step();
    void the_object_selected_last_is_the_measure();
    void combining_keeps_the_curves_apart();
    void combining_closed_joins_the_curves_that_meet();
    void a_rectangle_splits_into_its_sides();
    void what_can_be_done_depends_on_the_selection_data();
    void what_can_be_done_depends_on_the_selection();
    void grouping_and_ungrouping_are_a_step_each();
    void roughening_takes_the_pattern_of_the_dialog();
    void zoom_buttons_go_by_a_quarter();
    void list_moves_carry_the_whole_selection_data();
    void list_moves_carry_the_whole_selection();

private:
    static void fill(ViewFixture& f) {
        f.addRect(kSmall.x(), kSmall.y(), kSmall.width(), kSmall.height());
        f.addRect(kLarge.x(), kLarge.y(), kLarge.width(), kLarge.height());
    }
};

void ViewEditsTest::edits_arrange_the_selection_data() {
    QTest::addColumn<Edit>("edit");
    QTest::addColumn<QRectF>("small");
    QTest::addColumn<QRectF>("large");
    const auto row = [](const char* name, Edit edit, const QRectF& small, const QRectF& large = kLarge) {
        QTest::newRow(name) << edit << small << large;
    };
    row("align left", call<&QRulerView::AlignLeft>, {30, 0, 10, 8});
    row("align centres in a column", call<&QRulerView::AlignCenterH>, {35, 0, 10, 8});
    row("align right", call<&QRulerView::AlignRight>, {40, 0, 10, 8});
    row("align top", call<&QRulerView::AlignTop>, {0, 27, 10, 8});
    row("align centres in a row", call<&QRulerView::AlignCenterV>, {0, 16, 10, 8});
    row("align bottom", call<&QRulerView::AlignBottom>, {0, 5, 10, 8});
    row("same width", call<&QRulerView::SameSelectedWidth>, {-5, 0, 20, 8});
    row("same height", call<&QRulerView::SameSelectedHeight>, {0, -11, 10, 30});
    row("same size", call<&QRulerView::SameSelectedSize>, {-5, -11, 20, 30});
    row("mirror top and bottom", [](QRulerView& view) { view.MirrorSelectObj(MirrorTopBottom); }, {0, 27, 10, 8},
        {30, 0, 20, 30});
    row("mirror left and right", [](QRulerView& view) { view.MirrorSelectObj(MirrorLeftRight); }, {40, 0, 10, 8},
        {0, 5, 20, 30});
}

void ViewEditsTest::edits_arrange_the_selection() {
    QFETCH(Edit, edit);
    QFETCH(QRectF, small);
    QFETCH(QRectF, large);
    ViewFixture f;
    fill(f);
    f.session().document().select({0, 1});
    edit(f.view);
    QCOMPARE(placesOf(f), (Places{small, large}));
    QCOMPARE(f.selected(), (QList<int>{0, 1}));
    f.view.Undo();
    QCOMPARE(placesOf(f), (Places{kSmall, kLarge}));
    f.view.Redo();
    QCOMPARE(placesOf(f), (Places{small, large}));
    QCOMPARE(f.undoSteps(), 3);
}

void ViewEditsTest::edits_leave_a_read_only_document_alone() {
    QFETCH(Edit, edit);
    ViewFixture f;
    fill(f);
    f.session().document().select({0, 1});
    f.view.SetReadOnly(true);
    edit(f.view);
    QCOMPARE(placesOf(f), (Places{kSmall, kLarge}));
}

void ViewEditsTest::edits_without_a_selection_are_no_step() {
    QFETCH(Edit, edit);
    ViewFixture f;
    fill(f);
    edit(f.view);
    QCOMPARE(placesOf(f), (Places{kSmall, kLarge}));
    QCOMPARE(f.undoSteps(), 2);
}

void ViewEditsTest::the_object_selected_last_is_the_measure() {
    ViewFixture f;
    fill(f);
    f.session().document().select({1, 0});
    f.view.AlignRight();
    QCOMPARE(placesOf(f), (Places{kSmall, QRectF(-10, 5, 20, 30)}));
    f.view.SameSelectedWidth();
    QCOMPARE(placesOf(f), (Places{kSmall, QRectF(-5, 5, 10, 30)}));
}

void ViewEditsTest::combining_keeps_the_curves_apart() {
    ViewFixture f;
    f.addLine(QVector<QPointF>{{0, 0}, {10, 0}}, 3);
    f.addLine(QVector<QPointF>{{10, 0}, {10, 10}}, 4);
    f.session().document().select({0, 1});
    f.view.CombineCurve();
    QCOMPARE(f.state()->count(), 1);
    QCOMPARE(f.state()->at(0)->pen(), 3);
    QCOMPARE(linesOf(f, 0),
             (QVector<QPolygonF>{QVector<QPointF>{{0, 0}, {10, 0}}, QVector<QPointF>{{10, 0}, {10, 10}}}));
    f.view.Undo();
    QCOMPARE(f.state()->count(), 2);
    QCOMPARE(f.state()->at(1)->pen(), 4);
}

void ViewEditsTest::combining_closed_joins_the_curves_that_meet() {
    ViewFixture f;
    f.addLine(QVector<QPointF>{{0, 0}, {10, 0}});
    f.addLine(QVector<QPointF>{{0, 0}, {10, 10}});
    f.addLine(QVector<QPointF>{{10, 0}, {10, 10}});
    f.session().document().select({0, 1, 2});
    f.view.CombineCurve(true);
    QCOMPARE(f.state()->count(), 1);
    QVERIFY(!f.state()->at(0)->isOpenCurve());
    const QVector<QPolygonF> lines = linesOf(f, 0);
    QCOMPARE(lines.size(), 1);
    QCOMPARE(lines.at(0).first(), lines.at(0).last());
    QCOMPARE(lines.at(0).size(), 4);
    for (const QPointF& corner : {QPointF(0, 0), QPointF(10, 0), QPointF(10, 10)})
        QVERIFY(lines.at(0).contains(corner));
    f.view.Undo();
    QCOMPARE(f.state()->count(), 3);
}

void ViewEditsTest::a_rectangle_splits_into_its_sides() {
    ViewFixture f;
    f.addRect(2, 3, 10, 6, 5);
    f.session().document().select({0});
    f.view.UnCombineLine();
    QCOMPARE(f.state()->count(), 4);
    double length = 0.0;
    for (int i = 0; i < 4; ++i) {
        QCOMPARE(f.state()->at(i)->pen(), 5);
        const QVector<QPolygonF> lines = linesOf(f, i);
        QCOMPARE(lines.size(), 1);
        QCOMPARE(lines.at(0).size(), 2);
        length += QLineF(lines.at(0).at(0), lines.at(0).at(1)).length();
        QVERIFY(QRectF(2, 3, 10, 6).contains(placeOf(f.bounds(i)).topLeft()));
    }
    QCOMPARE(length, 32.0);
    QCOMPARE(f.selected(), (QList<int>{0, 1, 2, 3}));
    f.view.Undo();
    QCOMPARE(placesOf(f), (Places{QRectF(2, 3, 10, 6)}));
}

void ViewEditsTest::what_can_be_done_depends_on_the_selection_data() {
    QTest::addColumn<QList<int>>("selection");
    QTest::addColumn<bool>("split");
    QTest::addColumn<bool>("combine");
    QTest::addColumn<bool>("ungroup");
    QTest::newRow("nothing") << QList<int>() << false << false << false;
    QTest::newRow("a rectangle") << QList<int>{0} << true << false << false;
    QTest::newRow("a line of two points") << QList<int>{1} << false << false << false;
    QTest::newRow("a point") << QList<int>{2} << false << false << false;
    QTest::newRow("a group") << QList<int>{3} << false << false << true;
    QTest::newRow("a rectangle and a line") << QList<int>{0, 1} << true << true << false;
    QTest::newRow("a line and a point") << QList<int>{1, 2} << false << false << false;
    QTest::newRow("a line and a group") << QList<int>{1, 3} << false << false << true;
    QTest::newRow("everything") << QList<int>{0, 1, 2, 3} << true << true << true;
}

void ViewEditsTest::what_can_be_done_depends_on_the_selection() {
    QFETCH(QList<int>, selection);
    ViewFixture f;
    f.addRect(0, 0, 10, 10);
    f.addLine(QVector<QPointF>{{20, 0}, {30, 0}});
    f.add(sim::PointShape{{40, 0}, -1.0});
    f.addRect(50, 0, 5, 5);
    f.addRect(60, 0, 5, 5);
    f.session().document().select({3, 4});
    f.view.Combine();
    QCOMPARE(f.state()->count(), 4);
    f.session().document().select(selection);
    QTEST(f.view.CanSplit(), "split");
    QTEST(f.view.CanCombineCurve(), "combine");
    QTEST(f.view.CanUnCombine(), "ungroup");
}

void ViewEditsTest::grouping_and_ungrouping_are_a_step_each() {
    ViewFixture f;
    fill(f);
    f.session().document().select({0, 1});
    f.view.Combine();
    QCOMPARE(placesOf(f), (Places{QRectF(0, 0, 50, 35)}));
    QCOMPARE(f.selected(), (QList<int>{0}));
    f.view.UnCombine();
    QCOMPARE(placesOf(f), (Places{kSmall, kLarge}));
    f.view.Undo();
    QCOMPARE(f.state()->count(), 1);
    f.view.Undo();
    QCOMPARE(placesOf(f), (Places{kSmall, kLarge}));
}

void ViewEditsTest::roughening_takes_the_pattern_of_the_dialog() {
    ViewFixture f;
    f.addLine(QVector<QPointF>{{0, 0}, {10, 0}});
    f.session().document().select({0});
    DissimilationParam param;
    param.Type = 1;
    param.Amplitude = 0.5;
    param.Pitch = 2.0;
    f.view.DissimilationSelectObj(nullptr);
    QCOMPARE(f.bounds(0).height(), 0.0);
    f.view.DissimilationSelectObj(&param);
    QVERIFY(f.bounds(0).height() > 0.0);
    QVERIFY(f.bounds(0).minY >= -0.5 - 1e-9 && f.bounds(0).maxY <= 0.5 + 1e-9);
    f.view.Undo();
    QCOMPARE(placesOf(f), (Places{QRectF(0, 0, 10, 0)}));
}

void ViewEditsTest::zoom_buttons_go_by_a_quarter() {
    ViewFixture f;
    f.view.Enlarge(true);
    QCOMPARE(f.canvas().viewTransform().scale(), 6.25);
    f.view.Enlarge(false);
    QCOMPARE(f.canvas().viewTransform().scale(), 5.0);
    f.view.Enlarge(false);
    QCOMPARE(f.canvas().viewTransform().scale(), 4.0);
    QCOMPARE(f.undoSteps(), 0);
}

void ViewEditsTest::list_moves_carry_the_whole_selection_data() {
    QTest::addColumn<int>("move");
    QTest::addColumn<QList<double>>("order");
    QTest::newRow("up") << 0 << QList<double>{10, 0, 30, 20, 40};
    QTest::newRow("down") << 1 << QList<double>{0, 20, 10, 40, 30};
    QTest::newRow("first") << 2 << QList<double>{10, 30, 0, 20, 40};
    QTest::newRow("last") << 3 << QList<double>{0, 20, 40, 10, 30};
}

void ViewEditsTest::list_moves_carry_the_whole_selection() {
    QFETCH(int, move);
    QFETCH(QList<double>, order);
    ViewFixture f;
    for (int i = 0; i < 5; ++i)
        f.addRect(10 * i, 0, 1, 1);
    f.session().document().select({3, 1});
    using Move = void (VZListViewEx::*)();
    constexpr Move kMoves[] = {&VZListViewEx::MoveObjUp, &VZListViewEx::MoveObjDown, &VZListViewEx::MoveObj2First,
                               &VZListViewEx::MoveObj2Last};
    (f.view.GetObjListView()->*kMoves[move])();
    QList<double> there;
    for (const QRectF& place : placesOf(f))
        there.append(place.x());
    QCOMPARE(there, order);
    QList<double> selected;
    for (int index : f.selected())
        selected.append(f.bounds(index).minX);
    QCOMPARE(selected, (QList<double>{30, 10}));
    QCOMPARE(f.undoSteps(), 6);
}

QTEST_MAIN(ViewEditsTest)
#include "tst_edits.moc"
