// SPDX-License-Identifier: MIT
#include "samples.h"
#include "simengine/document/jumpsort.h"

#include <QRandomGenerator>
#include <QTest>
#include <cmath>
#include <limits>

using namespace sim;
using samples::state;

namespace {

bool near(const Box& box, double minX, double minY, double maxX, double maxY) {
    const double within = 1e-9;
    return std::abs(box.minX - minX) < within && std::abs(box.minY - minY) < within &&
           std::abs(box.maxX - maxX) < within && std::abs(box.maxY - maxY) < within;
}

/// The lower left x of each object, which the tests of order use as a name.
QList<int> order(const DocumentState& state) {
    QList<int> list;
    for (const ObjectPtr& object : *state.objects)
        list.append(int(std::lround(object->bounds().minX)));
    return list;
}

DocumentState row(int count, const QList<int>& selected) {
    ObjectList objects;
    for (int i = 0; i < count; ++i)
        objects.push_back(samples::point(i, 0));
    return state(objects, selected);
}

} // namespace

class EditsTest : public QObject {
    Q_OBJECT

private slots:
    void selection_keeps_its_order_and_names_base_and_first();
    void add_selects_what_was_added();
    void delete_removes_the_selection_only();
    void move_moves_the_selection_only();
    void edits_without_effect_give_nothing();
    void edits_beyond_the_limit_change_nothing();
    void move_to_center();
    void scale_about_a_point();
    void scale_by_zero_is_refused_but_without_extent();
    void base_points_data();
    void base_points();
    void angle_of_one_object();
    void common_angle_turns_the_selection_as_one();
    void different_angles_are_set_one_by_one();
    void mixed_angles_are_told();
    void quarter_turns_are_exact();
    void mirror_top_bottom_and_left_right();
    void pen_reaches_into_groups();
    void work_type();
    void hatch_is_kept_and_passes_over_groups();
    void group_and_ungroup_give_the_objects_back();
    void ungroup_keeps_transform_angle_and_work();
    void order_moves_data();
    void order_moves();
    void aligns_to_the_object_selected_last_data();
    void aligns_to_the_object_selected_last();
    void same_size_data();
    void same_size();
    void paste_moves_the_copies();
    void array_of_copies();
    void sort_follows_the_shortest_jumps();
    void sort_agrees_with_plain_search();
    void sort_keeps_an_order_that_is_better_than_the_nearest_next();
    void sort_never_makes_the_jumps_longer();
};

void EditsTest::selection_keeps_its_order_and_names_base_and_first() {
    const Selection selection({4, 1, 4, 9, -1, 2}, 5);
    QCOMPARE(selection.ordered(), (QList<int>{4, 1, 2}));
    QCOMPARE(selection.ascending(), (QList<int>{1, 2, 4}));
    QCOMPARE(selection.first(), 1);
    QCOMPARE(selection.base(), 2);
    QVERIFY(selection.contains(4) && !selection.contains(0) && !selection.contains(9) && !selection.contains(-1));
    QCOMPARE(Selection({3}, 5).base(), -1);
    QCOMPARE(Selection().first(), -1);
}

void EditsTest::add_selects_what_was_added() {
    const auto next = edits::add(row(2, {0}), {samples::point(5, 0), samples::point(6, 0)});
    QCOMPARE(order(*next), (QList<int>{0, 1, 5, 6}));
    QCOMPARE(next->selection.ordered(), (QList<int>{2, 3}));
}

void EditsTest::delete_removes_the_selection_only() {
    const auto next = edits::removeSelected(row(5, {3, 1}));
    QCOMPARE(order(*next), (QList<int>{0, 2, 4}));
    QVERIFY(next->selection.isEmpty());
}

void EditsTest::move_moves_the_selection_only() {
    const auto next = edits::move(state({samples::rect(0, 0, 1, 1), samples::rect(5, 5, 1, 1)}, {1}), 2, -3);
    QVERIFY(near(next->at(0)->bounds(), 0, 0, 1, 1));
    QVERIFY(near(next->at(1)->bounds(), 7, 2, 8, 3));
}

void EditsTest::edits_without_effect_give_nothing() {
    const double nan = std::numeric_limits<double>::quiet_NaN();
    const DocumentState none = row(3, {});
    const DocumentState one = row(3, {1});
    QVERIFY(!edits::add(one, {}));
    QVERIFY(!edits::add(one, {nullptr}));
    QVERIFY(!edits::removeSelected(none));
    QVERIFY(!edits::move(none, 1, 1));
    QVERIFY(!edits::move(one, 0, 0));
    QVERIFY(!edits::move(one, nan, 0));
    QVERIFY(!edits::moveToCenter(none, {}));
    QVERIFY(!edits::scale(one, 1, 1, 0, 0));
    QVERIFY(!edits::scale(one, nan, 1, 0, 0));
    QVERIFY(!edits::setAngle(one, 0));
    QVERIFY(!edits::setAngle(none, 10));
    QVERIFY(!edits::mirror(none, MirrorTopBottom));
    QVERIFY(!edits::mirror(one, MirrorType(1)));
    QVERIFY(!edits::setPen(one, 0));
    QVERIFY(!edits::setPen(one, 20));
    QVERIFY(!edits::setPen(one, -1));
    QVERIFY(!edits::setWorkType(one, 1));
    QVERIFY(!edits::setWorkType(one, 2));
    QVERIFY(!edits::setHatch(one, HatchSettings()));
    QVERIFY(!edits::group(one));
    QVERIFY(!edits::ungroup(one));
    QVERIFY(!edits::align(one, edits::Alignment::Left));
    QVERIFY(!edits::sameSize(one, true, true));
    QVERIFY(!edits::reorder(row(3, {0, 1}), edits::OrderMove::Up));
    QVERIFY(!edits::array(one, 1, 1, 5, 5));
    QVERIFY(!edits::array(one, 1000000, 1000000, 5, 5));
    QVERIFY(!edits::replace(one, 3, samples::point(0, 0)));
    QVERIFY(!edits::setName(one, -1, "a"));
}

void EditsTest::edits_beyond_the_limit_change_nothing() {
    const DocumentState before = state({samples::point(0, 0), samples::point(10, 0)}, {0, 1});
    QVERIFY(edits::move(before, kMaxCoordinate - 10, 0));
    QVERIFY(!edits::move(before, kMaxCoordinate - 9, 0));
    QVERIFY(!edits::scale(before, 1e6, 1, 0, 0));
}

void EditsTest::move_to_center() {
    const auto next = edits::moveToCenter(state({samples::rect(10, 10, 4, 2), samples::point(20, 30)}, {0, 1}), {1, 1});
    QVERIFY(near(selectionBounds(*next), -4, -9, 6, 11));
}

void EditsTest::scale_about_a_point() {
    const auto next = edits::scale(state({samples::rect(1, 1, 2, 3)}, {0}), 2, 0.5, 1, 4);
    QVERIFY(near(next->at(0)->bounds(), 1, 2.5, 5, 4));
    const auto mirrored = edits::scale(state({samples::rect(1, 1, 2, 3)}, {0}), -1, 1, 0, 0);
    QVERIFY(near(mirrored->at(0)->bounds(), -3, 1, -1, 4));
}

void EditsTest::scale_by_zero_is_refused_but_without_extent() {
    const DocumentState upright = state({samples::line({{3, 0}, {3, 4}})}, {0});
    const auto longer = edits::scale(upright, 0, 2, 3, 0);
    QVERIFY(near(longer->at(0)->bounds(), 3, 0, 3, 8));
    // and it can still be turned into a line with a width
    const auto turned = edits::rotate(*longer, 90, {3, 0});
    QVERIFY(near(turned->at(0)->bounds(), -5, 0, 3, 0));
    QVERIFY(!edits::scale(state({samples::rect(0, 0, 1, 1)}, {0}), 0, 2, 0, 0));
}

void EditsTest::base_points_data() {
    QTest::addColumn<int>("base");
    QTest::addColumn<QPointF>("place");
    const double xs[] = {1, 2, 3};
    const double ys[] = {6, 4, 2};
    for (int i = 0; i < 9; ++i)
        QTest::newRow(qPrintable(QString::number(i))) << i << QPointF(xs[i % 3], ys[i / 3]);
}

void EditsTest::base_points() {
    QFETCH(int, base);
    const auto place = selectionPlace(state({samples::rect(1, 2, 2, 4), samples::point(50, 50)}, {0}), BasePoint(base));
    QTEST(place->base, "place");
    QCOMPARE(place->width, 2.0);
    QCOMPARE(place->height, 4.0);
    QCOMPARE(place->angle, 0.0);
    QVERIFY(!selectionPlace(row(1, {}), BasePoint(base)));
}

void EditsTest::angle_of_one_object() {
    const auto turned = edits::setAngle(state({samples::rect(0, 0, 4, 2)}, {0}), 90);
    QVERIFY(near(turned->at(0)->bounds(), 1, -1, 3, 3));
    QCOMPARE(turned->at(0)->angle(), 90.0);
    QVERIFY(turned->at(0)->data().angleChanged);
    QCOMPARE(selectionPlace(*turned, BasePointCenter)->angle, 90.0);
    const auto back = edits::setAngle(*turned, 0);
    QVERIFY(near(back->at(0)->bounds(), 0, 0, 4, 2));
    QCOMPARE(edits::setAngle(*turned, 270)->at(0)->angle(), -90.0);
    QCOMPARE(edits::setAngle(*turned, -180)->at(0)->angle(), 180.0);
}

void EditsTest::common_angle_turns_the_selection_as_one() {
    const auto turned = edits::setAngle(state({samples::rect(-3, -1, 2, 2), samples::rect(1, -1, 2, 2)}, {0, 1}), 90);
    QVERIFY(near(turned->at(0)->bounds(), -1, -3, 1, -1));
    QVERIFY(near(turned->at(1)->bounds(), -1, 1, 1, 3));
}

void EditsTest::different_angles_are_set_one_by_one() {
    DocumentState both = state({samples::rect(0, 0, 4, 2), samples::rect(10, 0, 4, 2)}, {1});
    both = *edits::setAngle(both, 45);
    both.selection = Selection({0, 1}, 2);
    const auto turned = edits::setAngle(both, 90);
    QVERIFY(near(turned->at(0)->bounds(), 1, -1, 3, 3));
    QVERIFY(near(turned->at(1)->bounds(), 11, -1, 13, 3));
    QCOMPARE(selectionPlace(*turned, BasePointCenter)->angle, 90.0);
}

void EditsTest::mixed_angles_are_told() {
    DocumentState both = *edits::setAngle(state({samples::rect(0, 0, 4, 2), samples::rect(10, 0, 4, 2)}, {1}), 45);
    both.selection = Selection({0, 1}, 2);
    QVERIFY(selectionPlace(both, BasePointCenter)->angle < -180.0);
}

void EditsTest::quarter_turns_are_exact() {
    DocumentState turned = state({samples::rect(0.1, 0.2, 0.7, 0.9)}, {0});
    for (double angle : {90.0, 180.0, 270.0})
        turned = *edits::rotate(turned, angle, {0, 0});
    // 540 degrees in all: every coordinate changes its sign and nothing else
    QCOMPARE(turned.at(0)->transform(), QTransform(-1, 0, 0, -1, 0, 0));
    QCOMPARE(turned.at(0)->angle(), 180.0);
}

void EditsTest::mirror_top_bottom_and_left_right() {
    const DocumentState before = state({samples::line({{0, 0}, {4, 0}, {4, 2}})}, {0});
    const auto topBottom = edits::mirror(before, MirrorTopBottom);
    QCOMPARE(topBottom->at(0)->flattened()[0].points, QPolygonF({{0, 2}, {4, 2}, {4, 0}}));
    const auto leftRight = edits::mirror(before, MirrorLeftRight);
    QCOMPARE(leftRight->at(0)->flattened()[0].points, QPolygonF({{4, 0}, {0, 0}, {0, 2}}));
    const auto turned = edits::mirror(*edits::setAngle(before, 30), MirrorLeftRight);
    QCOMPARE(turned->at(0)->angle(), -30.0);
}

void EditsTest::pen_reaches_into_groups() {
    const auto next = edits::setPen(state({samples::everyKind()}, {6, 0}), 19);
    QCOMPARE(next->at(6)->pen(), 19);
    const auto& inner = std::get<GroupShape>(next->at(6)->shape()).children;
    QCOMPARE(inner[0]->pen(), 19);
    QCOMPARE(std::get<GroupShape>(inner[1]->shape()).children[1]->pen(), 19);
    QCOMPARE(next->at(1)->pen(), 3);
}

void EditsTest::work_type() {
    const DocumentState before = row(3, {0, 2});
    QCOMPARE(selectionWorkType(before), 1);
    const auto next = edits::setWorkType(before, 0);
    QVERIFY(!next->at(0)->works() && next->at(1)->works() && !next->at(2)->works());
    QCOMPARE(selectionWorkType(*next), 0);
    DocumentState mixed = *next;
    mixed.selection = Selection({0, 1}, 3);
    QCOMPARE(selectionWorkType(mixed), -1);
    mixed.selection = Selection();
    QCOMPARE(selectionWorkType(mixed), -1);
}

void EditsTest::hatch_is_kept_and_passes_over_groups() {
    HatchSettings hatch;
    hatch.fills[2] = {true, 0.02, 30, 5, 0.1, 2, 3};
    hatch.enableEdge = false;
    const DocumentState before = state({samples::rect(0, 0, 1, 1), samples::group({samples::point(0, 0)})}, {0, 1});
    const auto next = edits::setHatch(before, hatch);
    QVERIFY(next->at(0)->data().hatch.fills[2].Enable);
    QCOMPARE(next->at(0)->data().hatch.fills[2].FillType, 3);
    QVERIFY(!next->at(0)->data().hatch.enableEdge);
    QCOMPARE(next->at(1), before.at(1));
    hatch.fills.removeLast();
    QVERIFY(!edits::setHatch(before, hatch));
}

void EditsTest::group_and_ungroup_give_the_objects_back() {
    const auto grouped = edits::group(row(5, {3, 1}));
    QCOMPARE(order(*grouped), (QList<int>{0, 1, 2, 4}));
    QCOMPARE(grouped->at(1)->className(), QStringLiteral("MarkToolCombine"));
    QCOMPARE(grouped->selection.ordered(), QList<int>{1});
    QVERIFY(near(grouped->at(1)->bounds(), 1, 0, 3, 0));
    const auto apart = edits::ungroup(*grouped);
    QCOMPARE(order(*apart), (QList<int>{0, 1, 3, 2, 4}));
    QCOMPARE(apart->selection.ordered(), (QList<int>{1, 2}));
}

void EditsTest::ungroup_keeps_transform_angle_and_work() {
    DocumentState before = *edits::group(state({samples::rect(0, 0, 4, 2), samples::rect(4, 0, 4, 2)}, {0, 1}));
    before = *edits::setAngle(*edits::setWorkType(before, 0), 90);
    const auto apart = edits::ungroup(before);
    QVERIFY(near(apart->at(0)->bounds(), 3, -3, 5, 1));
    QVERIFY(near(apart->at(1)->bounds(), 3, 1, 5, 5));
    QCOMPARE(apart->at(0)->angle(), 90.0);
    QVERIFY(!apart->at(1)->works());
}

void EditsTest::order_moves_data() {
    QTest::addColumn<int>("move");
    QTest::addColumn<QList<int>>("selected");
    QTest::addColumn<QList<int>>("expected");
    QTest::addColumn<QList<int>>("after");
    using edits::OrderMove;
    QTest::newRow("up") << int(OrderMove::Up) << QList<int>{2} << QList<int>{0, 2, 1, 3, 4} << QList<int>{1};
    QTest::newRow("up as a block") << int(OrderMove::Up) << QList<int>{2, 3} << QList<int>{0, 2, 3, 1, 4}
                                   << QList<int>{1, 2};
    QTest::newRow("up, one stuck at the top")
        << int(OrderMove::Up) << QList<int>{0, 2} << QList<int>{0, 2, 1, 3, 4} << QList<int>{0, 1};
    QTest::newRow("down") << int(OrderMove::Down) << QList<int>{2} << QList<int>{0, 1, 3, 2, 4} << QList<int>{3};
    QTest::newRow("down, one stuck at the bottom")
        << int(OrderMove::Down) << QList<int>{4, 1} << QList<int>{0, 2, 1, 3, 4} << QList<int>{4, 2};
    QTest::newRow("first") << int(OrderMove::First) << QList<int>{4, 2} << QList<int>{2, 4, 0, 1, 3}
                           << QList<int>{1, 0};
    QTest::newRow("last") << int(OrderMove::Last) << QList<int>{0, 2} << QList<int>{1, 3, 4, 0, 2} << QList<int>{3, 4};
}

void EditsTest::order_moves() {
    QFETCH(int, move);
    QFETCH(QList<int>, selected);
    const auto next = edits::reorder(row(5, selected), edits::OrderMove(move));
    QTEST(order(*next), "expected");
    QTEST(next->selection.ordered(), "after");
    QCOMPARE(order(*edits::moveTo(row(4, {}), 0, 2)), (QList<int>{1, 2, 0, 3}));
    QVERIFY(!edits::moveTo(row(4, {}), 0, 4));
}

void EditsTest::aligns_to_the_object_selected_last_data() {
    QTest::addColumn<int>("alignment");
    QTest::addColumn<QPointF>("corner");
    using edits::Alignment;
    QTest::newRow("left") << int(Alignment::Left) << QPointF(10, 0);
    QTest::newRow("middles on a vertical line") << int(Alignment::CenterH) << QPointF(11, 0);
    QTest::newRow("right") << int(Alignment::Right) << QPointF(12, 0);
    QTest::newRow("top") << int(Alignment::Top) << QPointF(0, 24);
    QTest::newRow("middles on a horizontal line") << int(Alignment::CenterV) << QPointF(0, 22);
    QTest::newRow("bottom") << int(Alignment::Bottom) << QPointF(0, 20);
}

void EditsTest::aligns_to_the_object_selected_last() {
    QFETCH(int, alignment);
    QFETCH(QPointF, corner);
    const auto next = edits::align(state({samples::rect(0, 0, 2, 2), samples::rect(10, 20, 4, 6)}, {0, 1}),
                                   edits::Alignment(alignment));
    QVERIFY(near(next->at(1)->bounds(), 10, 20, 14, 26));
    QVERIFY(near(next->at(0)->bounds(), corner.x(), corner.y(), corner.x() + 2, corner.y() + 2));
}

void EditsTest::same_size_data() {
    QTest::addColumn<bool>("width");
    QTest::addColumn<bool>("height");
    QTest::addColumn<QSizeF>("size");
    QTest::newRow("width") << true << false << QSizeF(4, 2);
    QTest::newRow("height") << false << true << QSizeF(2, 6);
    QTest::newRow("both") << true << true << QSizeF(4, 6);
}

void EditsTest::same_size() {
    QFETCH(bool, width);
    QFETCH(bool, height);
    QFETCH(QSizeF, size);
    const ObjectPtr flat = samples::line({{0, 50}, {2, 50}});
    const auto next = edits::sameSize(state({samples::rect(0, 0, 2, 2), flat, samples::rect(10, 20, 4, 6)}, {0, 1, 2}),
                                      width, height);
    const double w = size.width();
    const double h = size.height();
    QVERIFY(near(next->at(0)->bounds(), 1 - w / 2, 1 - h / 2, 1 + w / 2, 1 + h / 2));
    QVERIFY(near(next->at(1)->bounds(), 1 - w / 2, 50, 1 + w / 2, 50));
    QVERIFY(near(next->at(2)->bounds(), 10, 20, 14, 26));
}

void EditsTest::paste_moves_the_copies() {
    const auto next = edits::paste(row(1, {}), {samples::rect(0, 0, 1, 1)}, 5, -5);
    QVERIFY(near(next->at(1)->bounds(), 5, -5, 6, -4));
    QCOMPARE(next->selection.ordered(), QList<int>{1});
    QVERIFY(!edits::paste(row(1, {}), {samples::rect(0, 0, 1, 1)}, 1e7, 0));
}

void EditsTest::array_of_copies() {
    const auto next = edits::array(row(2, {1}), 3, 2, 10, -20);
    QCOMPARE(next->count(), 7);
    QCOMPARE(next->selection.count(), 6);
    const double places[][2] = {{11, 0}, {21, 0}, {1, -20}, {11, -20}, {21, -20}};
    for (int i = 0; i < 5; ++i)
        QVERIFY(near(next->at(2 + i)->bounds(), places[i][0], places[i][1], places[i][0], places[i][1]));
}

void EditsTest::sort_follows_the_shortest_jumps() {
    ObjectList objects = {samples::line({{10, 0}, {20, 0}}), samples::line({{1, 0}, {2, 0}}), samples::point(21, 0),
                          samples::line({{3, 0}, {9, 0}})};
    ObjectData silent = samples::point(0, 0)->data();
    silent.work = WorkType::Off;
    objects.insert(objects.begin(), MarkObject::make(silent));
    const auto next = edits::sortByJumps(state(objects, {1}));
    QCOMPARE(order(*next), (QList<int>{1, 3, 10, 21, 0}));
    QCOMPARE(next->selection.ordered(), QList<int>{2});
    QVERIFY(!edits::sortByJumps(*next));
}

namespace {

double jumpsOf(const ObjectList& objects) {
    double length = 0.0;
    QPointF place(0, 0);
    for (const ObjectPtr& object : objects) {
        const auto lines = object->flattened();
        length += QLineF(place, lines.front().points.first()).length();
        place = lines.back().points.last();
    }
    return length;
}

} // namespace

void EditsTest::sort_keeps_an_order_that_is_better_than_the_nearest_next() {
    // The nearest first leads to 1, -2, 5, -12: each time past all that is done already.
    const ObjectList better = {samples::point(1, 0), samples::point(5, 0), samples::point(-2, 0),
                               samples::point(-12, 0)};
    QVERIFY(!edits::sortByJumps(state(better, {})));
    const ObjectList worse = {samples::point(-12, 0), samples::point(5, 0), samples::point(1, 0),
                              samples::point(-2, 0)};
    QVERIFY(edits::sortByJumps(state(worse, {})));
}

void EditsTest::sort_never_makes_the_jumps_longer() {
    QRandomGenerator random(11);
    int kept = 0;
    for (int round = 0; round < 2000; ++round) {
        ObjectList objects;
        for (int i = random.bounded(2, 8); i > 0; --i) {
            const QPointF from(random.bounded(60.0) - 30, random.bounded(60.0) - 30);
            objects.push_back(samples::line({from, from + QPointF(random.bounded(9.0), random.bounded(9.0))}));
        }
        const auto next = edits::sortByJumps(state(objects, {}));
        if (next)
            QVERIFY(jumpsOf(*next->objects) < jumpsOf(objects));
        else
            ++kept;
    }
    QVERIFY(kept > 0 && kept < 2000);
}

void EditsTest::sort_agrees_with_plain_search() {
    QRandomGenerator random(5);
    for (int round = 0; round < 30; ++round) {
        ObjectList objects;
        const double spread = round % 3 == 0 ? 0.0 : 100.0;
        for (int i = 0; i < 200; ++i) {
            const QPointF from(random.bounded(100.0), random.bounded(1.0) * spread);
            objects.push_back(samples::line({from, from + QPointF(random.bounded(50.0) - 25, random.bounded(80.0))}));
        }
        std::vector<int> expected;
        std::vector<bool> used(objects.size());
        QPointF place(0, 0);
        for (size_t n = 0; n < objects.size(); ++n) {
            int best = -1;
            double bestDistance = 0;
            for (size_t i = 0; i < objects.size(); ++i) {
                const QPointF off = objects[i]->flattened()[0].points.first() - place;
                const double distance = std::hypot(off.x(), off.y());
                if (!used[i] && (best < 0 || distance < bestDistance)) {
                    best = int(i);
                    bestDistance = distance;
                }
            }
            used[size_t(best)] = true;
            expected.push_back(best);
            place = objects[size_t(best)]->flattened()[0].points.last();
        }
        QCOMPARE(jumpOrder(objects, {0, 0}), expected);
    }
}

QTEST_GUILESS_MAIN(EditsTest)
#include "tst_edits.moc"
