// SPDX-License-Identifier: MIT
#include "samples.h"
#include "simengine/document/contour.h"
#include "simengine/document/curveedits.h"
#include "simengine/document/pattern.h"

#include <QTest>
#include <cmath>
#include <limits>

using namespace sim;
using samples::state;

namespace {

double lengthOf(const MarkObject& object) {
    double length = 0.0;
    for (const FlatLine& line : object.flattened())
        length += polylineLength(line.points);
    return length;
}

ObjectPtr moved(const ObjectPtr& object, double dx, double dy) {
    return object->transformed(QTransform::fromTranslate(dx, dy));
}

} // namespace

class CurvesTest : public QObject {
    Q_OBJECT

private slots:
    void curves_become_one_path_with_their_contours();
    void points_and_groups_are_not_combined();
    void joining_makes_one_closed_curve_of_pieces_in_any_direction();
    void joining_leaves_a_gap_open();
    void joining_goes_on_from_the_beginning_too();
    void joining_keeps_closed_curves_apart();
    void combined_curve_keeps_pen_and_place_in_the_order();
    void path_splits_into_contours_and_a_contour_into_segments();
    void split_pieces_cover_the_whole();
    void what_cannot_be_split();
    void pattern_of_a_line_data();
    void pattern_of_a_line();
    void pattern_of_a_circle_is_whole();
    void unusable_patterns_are_refused();
    void pattern_follows_the_side_of_the_line();
};

void CurvesTest::curves_become_one_path_with_their_contours() {
    const DocumentState before =
        state({samples::rect(0, 0, 2, 1), samples::circle(9, 9, 1), samples::path()}, {0, 1, 2});
    QVERIFY(edits::canCombineCurves(before));
    const auto next = edits::combineCurves(before, false);
    QCOMPARE(next->count(), 1);
    QCOMPARE(next->at(0)->className(), QStringLiteral("MarkToolPath"));
    QCOMPARE(std::get<PathShape>(next->at(0)->shape()).contourCount(), 4);
    double expected = 0.0;
    for (const ObjectPtr& object : *before.objects)
        expected += lengthOf(*object);
    QVERIFY(std::abs(lengthOf(*next->at(0)) - expected) < 0.001 * expected);
}

void CurvesTest::points_and_groups_are_not_combined() {
    const ObjectList objects = {samples::point(0, 0), samples::group({samples::rect(0, 0, 1, 1)}),
                                samples::rect(0, 0, 1, 1)};
    QVERIFY(!edits::canCombineCurves(state(objects, {0, 1, 2})));
    QVERIFY(!edits::combineCurves(state(objects, {0, 1, 2}), true));
}

void CurvesTest::joining_makes_one_closed_curve_of_pieces_in_any_direction() {
    // a square with one round side, the pieces out of order and against each other
    const ObjectPtr arc = samples::arc(10, 5, 5, -90, 180);
    const auto next = edits::combineCurves(state({samples::line({{0, 0}, {10, 0}}), samples::line({{0, 0}, {0, 10}}),
                                                  arc, samples::line({{0, 10}, {10, 10.005}})},
                                                 {3, 2, 1, 0}),
                                           true);
    const auto& path = std::get<PathShape>(next->at(0)->shape());
    QCOMPARE(path.contourCount(), 1);
    QCOMPARE(path.verbs.last(), PathVerb::Close);
    QVERIFY(std::abs(lengthOf(*next->at(0)) - (30 + 5 * M_PI)) < 0.05);
    QVERIFY(!next->at(0)->isOpenCurve());
}

void CurvesTest::joining_leaves_a_gap_open() {
    const auto next = edits::combineCurves(
        state({samples::line({{0, 0}, {5, 0}}), samples::line({{5.02, 0}, {9, 0}})}, {0, 1}), true);
    QCOMPARE(std::get<PathShape>(next->at(0)->shape()).contourCount(), 2);
}

void CurvesTest::joining_goes_on_from_the_beginning_too() {
    const auto next =
        edits::combineCurves(state({samples::line({{5, 0}, {9, 0}}), samples::line({{0, 0}, {5, 0}})}, {0, 1}), true);
    const auto lines = next->at(0)->flattened();
    QCOMPARE(lines.size(), size_t(1));
    QCOMPARE(lines[0].points, QPolygonF({{0, 0}, {5, 0}, {9, 0}}));
    QVERIFY(next->at(0)->isOpenCurve());
}

void CurvesTest::joining_keeps_closed_curves_apart() {
    const auto next =
        edits::combineCurves(state({samples::rect(0, 0, 1, 1), samples::line({{0, 0}, {-5, 0}})}, {0, 1}), true);
    QCOMPARE(std::get<PathShape>(next->at(0)->shape()).contourCount(), 2);
}

void CurvesTest::combined_curve_keeps_pen_and_place_in_the_order() {
    const ObjectPtr blue = samples::object(RectShape{QRectF(0, 0, 1, 1)}, QTransform(2, 0, 0, 2, 50, 0), 4);
    const auto next = edits::combineCurves(
        state({samples::point(-1, 0), blue, samples::point(1, 0), samples::rect(5, 5, 1, 1), samples::point(2, 0)},
              {3, 1}),
        false);
    QCOMPARE(next->count(), 4);
    QCOMPARE(next->at(1)->pen(), 4);
    QCOMPARE(next->selection.ordered(), QList<int>{1});
    QCOMPARE(next->at(1)->bounds().maxX, 52.0);
    QCOMPARE(next->at(3)->bounds().minX, 2.0);
}

void CurvesTest::path_splits_into_contours_and_a_contour_into_segments() {
    const DocumentState before = state({samples::point(0, 0), moved(samples::path(), 100, 0)}, {1});
    QVERIFY(edits::canSplitCurves(before));
    const auto contours = edits::splitCurves(before);
    QCOMPARE(contours->count(), 3);
    QCOMPARE(contours->selection.ordered(), (QList<int>{1, 2}));
    QCOMPARE(contours->at(1)->className(), QStringLiteral("MarkToolPath"));
    QCOMPARE(contours->at(2)->className(), QStringLiteral("MarkToolLine"));
    const auto segments = edits::splitCurves(*contours);
    QCOMPARE(segments->count(), 1 + 2 + 3);
    QCOMPARE(segments->at(2)->className(), QStringLiteral("MarkToolPath")); // the curve
    QCOMPARE(segments->at(5)->flattened()[0].points, QPolygonF(QVector<QPointF>{{130, 5}, {130, 0}}));
    QVERIFY(!edits::canSplitCurves(*segments));
    QVERIFY(!edits::splitCurves(*segments));
}

void CurvesTest::split_pieces_cover_the_whole() {
    for (const ObjectPtr& object :
         {samples::rect(0, 0, 3, 4), samples::path(), samples::line({{0, 0}, {1, 5}, {7, 2}}, true)}) {
        const auto next = edits::splitCurves(state({object}, {0}));
        double length = 0.0;
        for (const ObjectPtr& piece : *next->objects)
            length += lengthOf(*piece);
        QVERIFY(std::abs(length - lengthOf(*object)) < 1e-9);
    }
}

void CurvesTest::what_cannot_be_split() {
    const ObjectList objects = {samples::point(0, 0), samples::circle(0, 0, 1), samples::arc(0, 0, 1, 0, 90),
                                samples::line({{0, 0}, {1, 1}}), samples::group({samples::rect(0, 0, 1, 1)})};
    QVERIFY(!edits::canSplitCurves(state(objects, {0, 1, 2, 3, 4})));
    QVERIFY(!edits::splitCurves(state(objects, {0, 1, 2, 3, 4})));
}

void CurvesTest::pattern_of_a_line_data() {
    QTest::addColumn<int>("type");
    QTest::addColumn<QPolygonF>("points"); // empty: only the envelope
    QTest::newRow("zigzag") << 0 << QPolygonF({{0, 0}, {1, 0.5}, {3, -0.5}, {5, 0.5}, {7, -0.5}, {8, 0}});
    QTest::newRow("square")
        << 2
        << QPolygonF(
               {{0, 0}, {0, 0.5}, {2, 0.5}, {2, -0.5}, {4, -0.5}, {4, 0.5}, {6, 0.5}, {6, -0.5}, {8, -0.5}, {8, 0}});
    QTest::newRow("sine") << 1 << QPolygonF();
}

void CurvesTest::pattern_of_a_line() {
    QFETCH(int, type);
    QFETCH(QPolygonF, points);
    const auto next =
        edits::roughen(state({samples::line({{0, 0}, {8, 0}}), samples::point(0, 9)}, {0, 1}), {type, 0.5, 4.0});
    QCOMPARE(next->count(), 2);
    const QPolygonF line = next->at(0)->flattened()[0].points;
    if (!points.isEmpty()) {
        QCOMPARE(line.size(), points.size());
        for (int i = 0; i < points.size(); ++i)
            QVERIFY(std::hypot(line[i].x() - points[i].x(), line[i].y() - points[i].y()) < 1e-9);
    }
    for (const QPointF& p : line) {
        if (type == 1)
            QVERIFY(std::abs(p.y() - 0.5 * std::sin(2 * M_PI * p.x() / 4)) < 1e-9);
    }
    QCOMPARE(next->at(0)->bounds().maxY, 0.5);
    QCOMPARE(next->at(0)->bounds().minY, -0.5);
    QCOMPARE(line.first(), QPointF(0, 0));
    QCOMPARE(line.last(), QPointF(8, 0));
}

void CurvesTest::pattern_of_a_circle_is_whole() {
    const auto next = edits::roughen(state({samples::circle(0, 0, 10)}, {0}), {0, 1.0, 3.0});
    const auto lines = next->at(0)->flattened();
    QCOMPARE(lines.size(), size_t(1));
    QVERIFY(lines[0].closed);
    // 62.83 mm of circumference are 21 periods of two points
    QCOMPARE(lines[0].points.size(), 2 * 21 + 1);
    for (const QPointF& p : lines[0].points) {
        const double radius = std::hypot(p.x(), p.y());
        QVERIFY(std::abs(radius - 9) < 0.02 || std::abs(radius - 11) < 0.02);
    }
}

void CurvesTest::unusable_patterns_are_refused() {
    const DocumentState line = state({samples::line({{0, 0}, {8, 0}})}, {0});
    const double nan = std::numeric_limits<double>::quiet_NaN();
    for (const DissimilationParam& bad :
         {DissimilationParam{3, 0.5, 1}, DissimilationParam{-1, 0.5, 1}, DissimilationParam{0, 0.5, 0},
          DissimilationParam{0, 0.5, -1}, DissimilationParam{0, nan, 1}, DissimilationParam{0, 0.5, nan},
          DissimilationParam{0, 0.5, 1e-9}})
        QVERIFY(!edits::roughen(line, bad));
    QVERIFY(!edits::roughen(line, {0, 0.5, 17.0}));
    QVERIFY(edits::roughen(line, {0, 0.5, 15.0}));
    QVERIFY(!edits::roughen(state({samples::point(0, 0)}, {0}), {0, 0.5, 1}));
}

void CurvesTest::pattern_follows_the_side_of_the_line() {
    const auto next = edits::roughen(state({samples::line({{0, 0}, {0, 4}})}, {0}), {0, 0.5, 4.0});
    const QPolygonF line = next->at(0)->flattened()[0].points;
    // left of the way up is towards negative x
    QVERIFY(std::hypot(line[1].x() + 0.5, line[1].y() - 1) < 1e-9);
    QVERIFY(std::hypot(line[2].x() - 0.5, line[2].y() - 3) < 1e-9);
}

QTEST_GUILESS_MAIN(CurvesTest)
#include "tst_curves.moc"
