// SPDX-License-Identifier: MIT
#include "samples.h"
#include "simengine/document/hatchpaths.h"
#include "simengine/document/jobbuilder.h"
#include "simengine/view/playbackloader.h"
#include "support/waitfor.h"

#include <QTest>
#include <cmath>
#include <limits>

using namespace sim;
using samples::state;

Q_DECLARE_METATYPE(sim::ObjectList)

namespace {

CCDBufdata offset(double dx, double dy, double angle) {
    CCDBufdata record;
    record.Values = {dx, dy, angle, 0, 0, 0, 0};
    return record;
}

bool at(const Point& p, double x, double y) {
    return std::abs(p.x - x) < 1e-9 && std::abs(p.y - y) < 1e-9;
}

ObjectPtr idle(const ObjectPtr& object) {
    ObjectData data = object->data();
    data.work = WorkType::Off;
    return MarkObject::make(std::move(data));
}

} // namespace

class JobsTest : public QObject {
    Q_OBJECT

private slots:
    void strokes_stand_in_object_order();
    void objects_that_do_not_work_are_left_out();
    void selected_objects_only();
    void points_carry_their_dwell();
    void children_keep_their_own_pens();
    void object_without_outline_has_no_stroke();
    void contours_of_one_object_share_its_number();
    void offsets_turn_about_the_field_centre_then_shift();
    void each_offset_record_marks_the_job_once_more();
    void invalid_records_are_passed_over_and_alone_mark_nothing();
    void record_that_is_no_number_marks_nothing();
    void inverted_axes_come_last();
    void nothing_gives_an_empty_job();
    void statistics();
    void every_part_of_the_making_can_be_given_up_data();
    void every_part_of_the_making_can_be_given_up();
    void a_loader_that_goes_gives_up_the_making_of_its_job();
};

void JobsTest::strokes_stand_in_object_order() {
    const Job job =
        buildJob(state({samples::point(1, 2), samples::line({{0, 0}, {3, 4}}), samples::rect(0, 0, 1, 1)}, {}), {});
    QCOMPARE(job.strokes.size(), size_t(3));
    QVERIFY(at(job.strokes[0].points[0], 1, 2));
    QCOMPARE(job.strokes[1].points.size(), size_t(2));
    QCOMPARE(job.strokes[2].points.size(), size_t(5));
    QVERIFY(at(job.strokes[2].points.back(), 0, 0));
    QCOMPARE(int(job.kind), int(MarkKind::Laser));
}

void JobsTest::objects_that_do_not_work_are_left_out() {
    const Job job = buildJob(state({idle(samples::point(1, 0)), samples::point(2, 0),
                                    samples::group({idle(samples::point(3, 0)), samples::point(4, 0)}),
                                    idle(samples::group({samples::point(5, 0)}))},
                                   {}),
                             {});
    QCOMPARE(job.strokes.size(), size_t(2));
    QVERIFY(at(job.strokes[0].points[0], 2, 0) && at(job.strokes[1].points[0], 4, 0));
}

void JobsTest::selected_objects_only() {
    JobOptions options;
    options.selectedOnly = true;
    const ObjectList objects = {samples::point(1, 0), samples::point(2, 0), samples::point(3, 0)};
    const Job job = buildJob(state(objects, {2, 0}), options);
    QCOMPARE(job.strokes.size(), size_t(2));
    QVERIFY(at(job.strokes[0].points[0], 1, 0) && at(job.strokes[1].points[0], 3, 0));
    QVERIFY(buildJob(state(objects, {}), options).strokes.empty());
}

void JobsTest::points_carry_their_dwell() {
    PointShape shape;
    shape.dwellUs = 321;
    const Job job = buildJob(state({samples::object(shape), samples::point(0, 0), samples::rect(0, 0, 1, 1)}, {}), {});
    QCOMPARE(job.strokes[0].dwellUs, 321.0);
    QVERIFY(job.strokes[1].dwellUs < 0 && job.strokes[2].dwellUs < 0);
}

void JobsTest::children_keep_their_own_pens() {
    const Shape square = RectShape{QRectF(0, 0, 1, 1)};
    const Job job = buildJob(
        state({samples::object(GroupShape{{samples::object(square, {}, 3), samples::object(square, {}, 5)}}, {}, 9)},
              {}),
        {});
    QCOMPARE(job.strokes[0].pen, 3);
    QCOMPARE(job.strokes[1].pen, 5);
}

void JobsTest::object_without_outline_has_no_stroke() {
    ObjectData data = samples::rect(0, 0, 1, 1)->data();
    data.hatch.enableEdge = false;
    QVERIFY(buildJob(state({MarkObject::make(data)}, {}), {}).strokes.empty());
}

void JobsTest::contours_of_one_object_share_its_number() {
    const Job job = buildJob(state({samples::path(), samples::path()}, {}), {});
    QCOMPARE(job.strokes.size(), size_t(4));
    QCOMPARE(job.strokes[0].object, job.strokes[1].object);
    QVERIFY(job.strokes[1].object != job.strokes[2].object);
}

void JobsTest::offsets_turn_about_the_field_centre_then_shift() {
    JobOptions options;
    options.offsets = {offset(10, 20, 90)};
    const Job job = buildJob(state({samples::line({{1, 0}, {0, 2}})}, {}), options);
    QVERIFY(at(job.strokes[0].points[0], 10, 21));
    QVERIFY(at(job.strokes[0].points[1], 8, 20));
}

void JobsTest::each_offset_record_marks_the_job_once_more() {
    JobOptions options;
    options.offsets = {offset(1.5, 0.25, 0), offset(3, 1, 0)};
    const Job job = buildJob(state({samples::point(0, 0), samples::point(5, 5)}, {}), options);
    QCOMPARE(job.strokes.size(), size_t(4));
    QVERIFY(at(job.strokes[0].points[0], 1.5, 0.25) && at(job.strokes[1].points[0], 6.5, 5.25));
    QVERIFY(at(job.strokes[2].points[0], 3, 1) && at(job.strokes[3].points[0], 8, 6));
    QVERIFY(job.strokes[0].object != job.strokes[2].object);
}

void JobsTest::invalid_records_are_passed_over_and_alone_mark_nothing() {
    JobOptions options;
    CCDBufdata invalid = offset(7, 7, 0);
    invalid.Valid = false;
    options.offsets = {invalid, offset(1, 0, 0)};
    const DocumentState one = state({samples::point(0, 0)}, {});
    QCOMPARE(buildJob(one, options).strokes.size(), size_t(1));
    options.offsets = {invalid};
    QVERIFY(buildJob(one, options).strokes.empty());
}

void JobsTest::record_that_is_no_number_marks_nothing() {
    JobOptions options;
    options.offsets = {offset(1, 0, 0), offset(std::numeric_limits<double>::quiet_NaN(), 0, 0)};
    QVERIFY(buildJob(state({samples::point(0, 0)}, {}), options).strokes.empty());
    // the numbers behind the third are carried, not used
    CCDBufdata carried = offset(1, 0, 0);
    carried.Values[5] = std::numeric_limits<double>::infinity();
    options.offsets = {carried};
    QCOMPARE(buildJob(state({samples::point(0, 0)}, {}), options).strokes.size(), size_t(1));
}

void JobsTest::inverted_axes_come_last() {
    JobOptions options;
    options.offsets = {offset(10, 20, 90)};
    options.invertX = true;
    const DocumentState one = state({samples::point(1, 0)}, {});
    QVERIFY(at(buildJob(one, options).strokes[0].points[0], -10, 21));
    options.invertY = true;
    QVERIFY(at(buildJob(one, options).strokes[0].points[0], -10, -21));
}

void JobsTest::nothing_gives_an_empty_job() {
    QVERIFY(buildJob(DocumentState(), {}).strokes.empty());
    QCOMPARE(buildJob(DocumentState(), {}).vertexCount(), size_t(0));
}

void JobsTest::statistics() {
    const DocumentState some = state({samples::rect(0, 0, 2, 3), samples::line({{0, 0}, {3, 4}}), samples::point(0, 0),
                                      idle(samples::rect(0, 0, 50, 50))},
                                     {});
    const DocumentStatistics statistics = statisticsOf(some);
    QCOMPARE(statistics.objects, 4);
    QCOMPARE(statistics.working, 3);
    QCOMPARE(statistics.points, qint64(4 + 2 + 1 + 4));
    QCOMPARE(statistics.vertices, qint64(5 + 2 + 1));
    QCOMPARE(statistics.markLength, 15.0);
    QCOMPARE(buildJob(some, {}).vertexCount(), size_t(statistics.vertices));
}

void JobsTest::every_part_of_the_making_can_be_given_up_data() {
    QTest::addColumn<ObjectList>("objects");
    QTest::addColumn<int>("least");
    const auto filled = [](FillType type, int edges) {
        ObjectData data = samples::rect(0, 0, 400, 400)->data();
        data.hatch.fills[0].Enable = true;
        data.hatch.fills[0].FillDist = 0.1;
        data.hatch.fills[0].FillType = int(type);
        data.hatch.fills[0].EdgeCnt = edges;
        return ObjectList{MarkObject::make(std::move(data))};
    };
    const ObjectList many(4000, samples::point(1, 1));
    // steps: of an object one, and one for each of its lines; of a line of a hatch three, to make, take and place it
    QTest::newRow("objects") << many << 8000;
    QTest::newRow("children of a group") << ObjectList{samples::group(many)} << 8000;
    QTest::newRow("rows") << filled(FillType::OneWay, 0) << 12000;
    QTest::newRow("sections") << filled(FillType::Sections, 0) << 4000;
    QTest::newRow("loops") << filled(FillType::Loops, 0) << 5900;
    QTest::newRow("edge loops") << filled(FillType::OneWay, 1900) << 5700;
}

void JobsTest::every_part_of_the_making_can_be_given_up() {
    QFETCH(ObjectList, objects);
    QFETCH(int, least);
    const Cancellation whole;
    const Job job = buildJob(state(objects, {}), {}, nullptr, &whole);
    QVERIFY2(whole.steps() >= std::uint64_t(least), qPrintable(QString::number(whole.steps())));
    constexpr std::uint64_t kMost = 100;
    const Cancellation ended(kMost);
    const Job part = buildJob(state(objects, {}), {}, nullptr, &ended);
    QVERIFY(ended.isCancelled());
    QVERIFY(part.strokes.size() <= kMost);
    // Nobody is given a hatch that was not made to its end.
    const Job again = buildJob(state(objects, {}), {});
    QCOMPARE(again.strokes.size(), job.strokes.size());
}

void JobsTest::a_loader_that_goes_gives_up_the_making_of_its_job() {
    ObjectData data = samples::rect(0, 0, 1, 15'000)->data();
    data.hatch.fills[0].Enable = true;
    data.hatch.fills[0].FillDist = 0.001;
    constexpr std::uint64_t kRows = 15'000'000;
    RunPlan plan;
    plan.state = std::make_shared<const DocumentState>(state({MarkObject::make(std::move(data))}, {}));
    auto loader = std::make_unique<PlaybackLoader>(nullptr);
    loader->load(plan);
    const auto work = loader->work();
    QVERIFY(tests::waitFor([&work] { return work->steps() > 10; }));
    loader.reset();
    QVERIFY(work->isCancelled());
    QVERIFY2(work->steps() < kRows, qPrintable(QString::number(work->steps())));
}

QTEST_GUILESS_MAIN(JobsTest)
#include "tst_jobs.moc"
