// SPDX-License-Identifier: MIT
// The lines that fill an area, and where they come in a job.
#include "samples.h"
#include "simengine/document/edits.h"
#include "simengine/document/hatch.h"
#include "simengine/document/hatchoffset.h"
#include "simengine/document/hatchpaths.h"
#include "simengine/document/jobbuilder.h"

#include <QFile>
#include <QRegularExpression>
#include <QTest>
#include <cmath>
#include <ctime>
#include <malloc.h>
#include <random>

using namespace sim;

namespace {

FlatLine closed(QPolygonF points) {
    points.append(points.first());
    return {points, true};
}

FlatLine box(double x, double y, double width, double height) {
    return closed(
        QPolygonF({QPointF(x, y), QPointF(x + width, y), QPointF(x + width, y + height), QPointF(x, y + height)}));
}

FillParam fillOf(int type, double pitch, double angle = 0.0) {
    FillParam fill;
    fill.Enable = true;
    fill.FillDist = pitch;
    fill.FillAngle = angle;
    fill.FillType = type;
    return fill;
}

/// The lines of one fill as polygons.
std::vector<QPolygonF> linesOf(std::vector<FlatLine> const& outline, FillParam const& fill, double turn = 0.0) {
    std::vector<QPolygonF> lines;
    for (HatchPart const& part : hatchLines(outline, {fill}, turn)) {
        for (std::size_t i = 0; i < part.lines.count(); ++i) {
            QPolygonF line;
            std::copy(part.lines.begin(i), part.lines.end(i), std::back_inserter(line));
            lines.push_back(line);
        }
    }
    return lines;
}

double lengthOf(std::vector<QPolygonF> const& lines) {
    double length = 0.0;
    for (QPolygonF const& line : lines)
        length += polylineLength(line);
    return length;
}

bool near(QPointF const& a, QPointF const& b, double tolerance = 1e-9) {
    return std::hypot(a.x() - b.x(), a.y() - b.y()) <= tolerance;
}

/// Inside by the rule that an odd number of outlines lies around; `margin` mm outside are allowed.
bool inside(std::vector<FlatLine> const& outline, QPointF const& place, double margin) {
    for (double dx : {0.0, -margin, margin}) {
        for (double dy : {0.0, -margin, margin}) {
            bool odd = false;
            for (FlatLine const& line : outline)
                odd ^= line.points.containsPoint(place + QPointF(dx, dy), Qt::OddEvenFill);
            if (odd)
                return true;
        }
    }
    return false;
}

/// What was given back stays for a while under AddressSanitizer, up to so many MiB.
#if defined(__SANITIZE_ADDRESS__)
constexpr double kKeptFreed = 256.0;
#else
constexpr double kKeptFreed = 0.0;
#endif

/// The most memory that the program had at once, MiB; 0 when the system does not tell. From here on when `anew`.
double mostMebibytes(bool anew) {
    if (anew)
        malloc_trim(0); // what other tests have freed could be taken without more memory
    QFile reset(QStringLiteral("/proc/self/clear_refs"));
    if (anew && (!reset.open(QIODevice::WriteOnly | QIODevice::Unbuffered) || reset.write("5") != 1))
        return 0.0;
    QFile status(QStringLiteral("/proc/self/status"));
    if (!status.open(QIODevice::ReadOnly))
        return 0.0;
    const QRegularExpression most(QStringLiteral("VmHWM:\\s*(\\d+) kB"));
    return most.match(QString::fromLatin1(status.readAll())).captured(1).toDouble() / 1024.0;
}

/// A plate with two holes that overlap each other.
std::vector<FlatLine> plate() {
    std::vector<FlatLine> outline = {box(-20, -15, 40, 30), box(-10, -5, 8, 12), box(-5, -8, 9, 10)};
    return outline;
}

std::vector<FlatLine> randomOutline(unsigned seed) {
    std::mt19937 random(seed);
    std::uniform_real_distribution<double> place(-20.0, 20.0);
    std::uniform_real_distribution<double> size(1.0, 15.0);
    std::vector<FlatLine> outline;
    for (int i = 0; i < 4; ++i) {
        const QPointF middle(place(random), place(random));
        QPolygonF points;
        for (int k = 0; k < 17; ++k)
            points.append(middle + size(random) * QPointF(std::cos(k * 0.3696), std::sin(k * 0.3696)));
        outline.push_back(closed(points));
    }
    return outline;
}

} // namespace

class HatchTest : public QObject {
    Q_OBJECT

private slots:
    void rows_lie_in_the_middle_of_the_height() {
        const std::vector<QPolygonF> lines = linesOf({box(0, 0, 10, 1)}, fillOf(0, 0.25));
        QCOMPARE(lines.size(), size_t(4));
        QVERIFY(near(lines.front().first(), {0, 0.125}) && near(lines.front().last(), {10, 0.125}));
        QVERIFY(near(lines.back().first(), {0, 0.875}));
    }

    void points_out_of_all_proportion_end_no_program() {
        // the loops are made by a library that throws at coordinates like these
        FlatLine far = box(0, 0, 10, 10);
        far.points[1].setY(1.0e300);
        FillParam loops = fillOf(4, 1.0);
        QCOMPARE(hatchSegments({far}, {loops}, 0.0), qint64(0));
        QVERIFY(linesOf({far}, loops).empty());
    }

    void an_area_lower_than_the_pitch_gets_one_row() {
        const std::vector<QPolygonF> lines = linesOf({box(0, 0, 10, 1)}, fillOf(0, 5.0));
        QCOMPARE(lines.size(), size_t(1));
        QVERIFY(near(lines.front().first(), {0, 0.5}));
    }

    void one_way_rows_all_run_to_the_right() {
        for (QPolygonF const& line : linesOf(plate(), fillOf(0, 0.5)))
            QVERIFY(line.size() == 2 && line.first().x() < line.last().x());
    }

    void every_second_row_runs_back() {
        const std::vector<QPolygonF> lines = linesOf({box(0, 0, 10, 1)}, fillOf(1, 0.25));
        QCOMPARE(lines.size(), size_t(4));
        for (size_t i = 0; i < lines.size(); ++i)
            QCOMPARE(lines[i].first().x() < lines[i].last().x(), i % 2 == 0);
    }

    void a_row_that_runs_back_takes_its_stretches_from_the_right() {
        const std::vector<QPolygonF> lines = linesOf({box(0, 0, 10, 4), box(4, -1, 2, 6)}, fillOf(1, 1.0));
        // rows from -1 to 5: only the hole's outline at the first and last one
        QCOMPARE(lines.size(), size_t(1 + 4 * 2 + 1));
        QVERIFY(near(lines[1].first(), {10, 0.5}) && near(lines[2].first(), {4, 0.5}));
        QVERIFY(near(lines[3].first(), {0, 1.5}) && near(lines[4].first(), {6, 1.5}));
    }

    void one_serpentine_fills_a_box() {
        const std::vector<QPolygonF> lines = linesOf({box(0, 0, 10, 1)}, fillOf(2, 0.25));
        QCOMPARE(lines.size(), size_t(1));
        QCOMPARE(lines.front().size(), 8);
        QVERIFY(std::abs(lengthOf(lines) - (4 * 10 + 3 * 0.25)) < 1e-9);
    }

    void a_serpentine_is_not_joined_across_a_hole() {
        std::vector<FlatLine> const outline = plate();
        for (int type : {2, 3}) {
            const std::vector<QPolygonF> lines = linesOf(outline, fillOf(type, 0.5));
            for (QPolygonF const& line : lines) {
                for (int i = 1; i < line.size(); ++i) {
                    for (double part : {0.01, 0.25, 0.5, 0.75, 0.99})
                        QVERIFY(inside(outline, line[i - 1] + part * (line[i] - line[i - 1]), 1e-6));
                }
            }
        }
    }

    void sections_are_filled_one_after_the_other() {
        // a U: below one piece, above two arms
        const FlatLine u = closed(QPolygonF({QPointF(0, 0), QPointF(12, 0), QPointF(12, 8), QPointF(8, 8),
                                             QPointF(8, 4), QPointF(4, 4), QPointF(4, 8), QPointF(0, 8)}));
        const std::vector<QPolygonF> lines = linesOf({u}, fillOf(3, 1.0));
        QCOMPARE(lines.size(), size_t(3));
        for (QPolygonF const& line : lines)
            QCOMPARE(line.size(), 8);
        QVERIFY(lines[1].boundingRect().right() <= 4.0 + 1e-9);
        QVERIFY(lines[2].boundingRect().left() >= 8.0 - 1e-9);
    }

    void every_type_marks_the_same_rows_data() {
        QTest::addColumn<unsigned>("seed");
        for (unsigned seed = 1; seed <= 20; ++seed)
            QTest::addRow("seed %u", seed) << seed;
    }

    void every_type_marks_the_same_rows() {
        QFETCH(unsigned, seed);
        const std::vector<FlatLine> outline = randomOutline(seed);
        double expected = -1.0;
        for (int type : {0, 1, 2, 3}) {
            double rows = 0.0;
            for (QPolygonF const& line : linesOf(outline, fillOf(type, 0.37))) {
                for (int i = 1; i < line.size(); ++i) {
                    if (std::abs(line[i].y() - line[i - 1].y()) < 1e-9)
                        rows += std::abs(line[i].x() - line[i - 1].x());
                }
            }
            if (expected < 0.0)
                expected = rows;
            QVERIFY2(std::abs(rows - expected) < 1e-6 * expected, qPrintable(QString::number(type)));
        }
        QVERIFY(expected > 0.0);
    }

    void nothing_is_marked_outside_data() { every_type_marks_the_same_rows_data(); }

    void nothing_is_marked_outside() {
        QFETCH(unsigned, seed);
        constexpr double kPitch = 0.5;
        const std::vector<FlatLine> outline = randomOutline(seed);
        for (int type : {0, 1, 2, 3, 4}) {
            for (double angle : {0.0, 30.0}) {
                for (QPolygonF const& line : linesOf(outline, fillOf(type, kPitch, angle))) {
                    for (int i = 1; i < line.size(); ++i)
                        QVERIFY(inside(outline, (line[i - 1] + line[i]) / 2.0, 0.11 * kPitch));
                }
            }
        }
    }

    void rows_follow_the_angle_and_the_turn_of_the_object() {
        const std::vector<QPolygonF> steep = linesOf({box(0, 0, 4, 10)}, fillOf(0, 1.0, 90.0));
        QCOMPARE(steep.size(), size_t(4));
        QVERIFY(near(steep.front().first(), {3.5, 0}) && near(steep.front().last(), {3.5, 10}));
        const std::vector<QPolygonF> turned = linesOf({box(0, 0, 4, 10)}, fillOf(0, 1.0, 60.0), 30.0);
        QCOMPARE(turned.size(), steep.size());
        for (size_t i = 0; i < steep.size(); ++i)
            QVERIFY(near(turned[i].first(), steep[i].first()) && near(turned[i].last(), steep[i].last()));
    }

    void the_offset_keeps_the_rows_from_the_outline() {
        FillParam fill = fillOf(0, 0.5);
        fill.FillOffset = 1.0;
        const std::vector<QPolygonF> lines = linesOf({box(0, 0, 10, 6)}, fill);
        QCOMPARE(lines.size(), size_t(8));
        QVERIFY(near(lines.front().first(), {1, 1.25}, 1e-6) && near(lines.front().last(), {9, 1.25}, 1e-6));
    }

    void edge_loops_come_before_the_rows_which_end_at_the_last() {
        FillParam fill = fillOf(0, 0.5);
        fill.EdgeCnt = 2;
        const std::vector<QPolygonF> lines = linesOf({box(0, 0, 10, 6)}, fill);
        QCOMPARE(lines.size(), size_t(2 + 8));
        QCOMPARE(lines[0].boundingRect(), QRectF(0.5, 0.5, 9, 5));
        QCOMPARE(lines[1].boundingRect(), QRectF(1, 1, 8, 4));
        QVERIFY(lines[0].isClosed() && lines[1].isClosed());
        QVERIFY(near(lines[2].first(), {1, 1.25}, 1e-6));
    }

    void more_edge_loops_than_fit_leave_no_rows() {
        FillParam fill = fillOf(0, 1.0);
        fill.EdgeCnt = 50;
        const std::vector<QPolygonF> lines = linesOf({box(0, 0, 10, 5)}, fill);
        QCOMPARE(lines.size(), size_t(2));
    }

    void loops_go_from_outside_to_inside() {
        const std::vector<QPolygonF> lines = linesOf({box(0, 0, 10, 5)}, fillOf(4, 1.0));
        QCOMPARE(lines.size(), size_t(2));
        QCOMPARE(lines[0].boundingRect(), QRectF(1, 1, 8, 3));
        QCOMPARE(lines[1].boundingRect(), QRectF(2, 2, 6, 1));
    }

    void loops_go_round_holes_too() {
        const std::vector<QPolygonF> lines = linesOf({box(0, 0, 20, 20), box(8, 8, 4, 4)}, fillOf(4, 1.0));
        QCOMPARE(lines[0].boundingRect(), QRectF(1, 1, 18, 18));
        QCOMPARE(lines[1].boundingRect(), QRectF(7, 7, 6, 6));
    }

    void open_lines_enclose_nothing() {
        FlatLine open = box(0, 0, 10, 10);
        open.closed = false;
        QVERIFY(linesOf({open}, fillOf(0, 0.5)).empty());
    }

    void unusable_fills_have_no_lines_data() {
        QTest::addColumn<double>("pitch");
        QTest::addColumn<int>("type");
        QTest::addColumn<bool>("enable");
        QTest::newRow("disabled") << 0.5 << 0 << false;
        QTest::newRow("pitch 0") << 0.0 << 0 << true;
        QTest::newRow("negative pitch") << -0.5 << 0 << true;
        QTest::newRow("pitch not a number") << std::nan("") << 0 << true;
        QTest::newRow("unknown type") << 0.5 << 5 << true;
        QTest::newRow("negative type") << 0.5 << -1 << true;
    }

    void unusable_fills_have_no_lines() {
        QFETCH(double, pitch);
        QFETCH(int, type);
        QFETCH(bool, enable);
        FillParam fill = fillOf(type, pitch);
        fill.Enable = enable;
        QVERIFY(linesOf({box(0, 0, 10, 10)}, fill).empty());
        QCOMPARE(hatchSegments({box(0, 0, 10, 10)}, {fill}, 0.0), qint64(0));
    }

    void the_count_of_single_rows_is_exact() {
        for (unsigned seed = 1; seed <= 20; ++seed) {
            const std::vector<FlatLine> outline = randomOutline(seed);
            const FillParam fill = fillOf(0, 0.21, 17.0);
            QCOMPARE(hatchSegments(outline, {fill}, 0.0), qint64(linesOf(outline, fill).size()));
        }
    }

    void a_huge_hatch_is_counted_and_not_made() {
        const std::vector<FlatLine> outline = {box(0, 0, 100, 100)};
        const FillParam fill = fillOf(0, 1.0e-6);
        QCOMPARE(hatchSegments(outline, {fill}, 0.0), qint64(100'000'000));
        QVERIFY(linesOf(outline, fill).empty());
        QVERIFY(hatchSegments(outline, {fillOf(0, 1.0e-300)}, 0.0) > kMaxHatchSegments);
        QVERIFY(hatchSegments(outline, {fillOf(4, 1.0e-12)}, 0.0) > kMaxHatchSegments);
    }

    void a_count_beyond_all_numbers_stays_a_large_one() {
        // 20,000 edges of 1e15 rows each, twice for the joints, and three fills of that
        std::vector<FlatLine> outline = {box(0, 0, 100, 100)};
        outline[0].points.clear();
        for (int i = 0; i <= 20'000; ++i)
            outline[0].points.append(QPointF(i * 1e-3, i % 2 * 100.0));
        outline[0].points.append(outline[0].points.first());
        const FillParam fill = fillOf(int(FillType::Sections), 1.0e-300);
        QVERIFY(hatchSegments(outline, {fill}, 0.0) > kMaxHatchSegments);
        QVERIFY(hatchSegments(outline, {fill, fill, fillOf(4, 1.0e-300)}, 0.0) > kMaxHatchSegments);
        QVERIFY(linesOf(outline, fill).empty());
    }

    void a_pitch_below_a_micrometre_is_refused() {
        ObjectData data = samples::rect(0, 0, 1, 1)->data();
        data.hatch.fills[2] = fillOf(0, 0.0009);
        QString fault;
        QVERIFY(!MarkObject::make(data, &fault));
        QCOMPARE(fault, QStringLiteral("an object's hatch is not usable"));
        data.hatch.fills[2].Enable = false;
        QVERIFY(MarkObject::make(data));
        data.hatch.fills[2] = fillOf(0, 0.001);
        QVERIFY(MarkObject::make(data));
    }

    void the_guess_for_loops_is_near_what_is_made() {
        QPolygonF round;
        for (int i = 0; i < 400; ++i)
            round.append(10.0 * QPointF(std::cos(i * M_PI / 200.0), std::sin(i * M_PI / 200.0)));
        // two triangles, one turned the other way round
        const FlatLine crossed = closed(QPolygonF({{0, 0}, {10, 0}, {0, 10}, {10, 10}}));
        const std::vector<FlatLine> outlines[] = {
            {closed(round)}, {box(0, 0, 20, 10)}, {box(0, 0, 20, 20), box(2, 2, 16, 16)}, {crossed}};
        const FillParam fill = fillOf(int(FillType::Loops), 0.01);
        for (const std::vector<FlatLine>& outline : outlines) {
            qint64 made = 0;
            for (const QPolygonF& line : linesOf(outline, fill))
                made += line.size() - 1;
            const double ratio = double(hatchSegments(outline, {fill}, 0.0)) / double(made);
            QVERIFY2(ratio > 0.3 && ratio < 3.0, qPrintable(QString::number(ratio)));
        }
    }

    void the_guess_for_loops_holds_the_crossings_of_few_rows() {
        // teeth 1 mm high and 0.2 µm wide: every edge crosses every row
        constexpr int kTeeth = 200'000;
        constexpr double kHalf = 1.0e-4;
        constexpr double kMostGrown = kKeptFreed + 40.0; // MiB
        HatchContour contour;
        for (int i = 0; i <= 2 * kTeeth; ++i)
            contour.emplace_back(i * kHalf, i % 2);
        const std::vector<HatchContour> contours{contour};
        const double before = mostMebibytes(true);
        QVERIFY(before > 0.0);
        const double surface = sampledSurface(contours);
        const double grown = mostMebibytes(false) - before;
        QVERIFY2(std::abs(surface - kTeeth * kHalf) < 1e-6, qPrintable(QString::number(surface, 'g', 12)));
        QVERIFY2(grown < kMostGrown, qPrintable(QString::number(grown)));
    }

    // A file tells of any number of such objects before it is known to be sound.
    void counting_is_not_held_up_by_an_outline_that_crosses_itself() {
        std::mt19937 random(5);
        std::uniform_real_distribution<double> place(0.0, 100.0);
        FlatLine scribble = box(0, 0, 1, 1);
        scribble.points.clear();
        for (int i = 0; i < 100'000; ++i)
            scribble.points.append(QPointF(place(random), place(random)));
        scribble.points.append(scribble.points.first());
        FillParam rows = fillOf(0, 1.0);
        rows.EdgeCnt = 5;
        std::clock_t const begin = std::clock(); // of this program, not of the wall
        const qint64 segments = hatchSegments({scribble}, {rows, fillOf(4, 0.001)}, 0.0);
        const double seconds = double(std::clock() - begin) / CLOCKS_PER_SEC;
        QVERIFY(segments > 0);
        // It crosses itself two thousand million times; to find these places takes minutes and gigabytes.
        QVERIFY2(seconds < 20.0, qPrintable(QString::number(seconds)));
    }

    void an_object_with_too_large_a_hatch_cannot_be() {
        ObjectData data = samples::rect(0, 0, 100'000, 100'000)->data();
        data.hatch.fills[1] = fillOf(0, 1.0e-3);
        QString fault;
        QVERIFY(!MarkObject::make(data, &fault));
        QVERIFY2(fault.contains(QStringLiteral("100000000")), qPrintable(fault));
        data.hatch.fills[1] = fillOf(0, 1.0e-2);
        const ObjectPtr object = MarkObject::make(data);
        QVERIFY(object);
        QVERIFY(!object->transformed(QTransform::fromScale(1.0, 10.0)));
        QVERIFY(object->transformed(QTransform::fromTranslate(5.0, 10.0)));
    }

    void outline_and_hatch_stand_in_the_chosen_order() {
        ObjectData data = samples::rect(0, 0, 10, 1)->data();
        data.pen = 2;
        data.hatch.fills[0] = fillOf(0, 0.5);
        data.hatch.fills[0].FillLayer = 5;
        data.hatch.fills[2] = fillOf(0, 1.0);
        data.hatch.fills[2].FillLayer = 7;
        const auto pens = [](ObjectData const& d) {
            QVector<int> list;
            for (Stroke const& stroke : buildJob(samples::state({MarkObject::make(d)}, {}), {}).strokes)
                list.append(stroke.pen);
            return list;
        };
        QCOMPARE(pens(data), (QVector<int>{2, 5, 5, 7}));
        data.hatch.markFillFirst = true;
        QCOMPARE(pens(data), (QVector<int>{5, 5, 7, 2}));
        data.hatch.enableEdge = false;
        QCOMPARE(pens(data), (QVector<int>{5, 5, 7}));
        data.work = WorkType::Off;
        QCOMPARE(pens(data), QVector<int>());
    }

    void a_group_carries_the_hatch_of_its_children() {
        ObjectData data = samples::rect(0, 0, 10, 1)->data();
        data.hatch.fills[0] = fillOf(0, 0.5);
        const ObjectPtr group = samples::group({MarkObject::make(data)});
        const ObjectPtr turned = group->transformed(QTransform(0, 1, -1, 0, 0, 0), 90.0);
        const Job job = buildJob(samples::state({turned}, {}), {});
        QCOMPARE(job.strokes.size(), size_t(3));
        QVERIFY(std::abs(job.strokes[1].points[0].x - -0.25) < 1e-9 && std::abs(job.strokes[1].points[0].y) < 1e-9);
        QVERIFY(std::abs(job.strokes[1].points[1].y - 10.0) < 1e-9);
    }

    void the_lines_are_kept_while_somebody_holds_them() {
        ObjectData data = samples::rect(0, 0, 10, 1)->data();
        data.hatch.fills[0] = fillOf(0, 0.5);
        const ObjectPtr object = MarkObject::make(data);
        const auto first = object->hatch();
        QVERIFY(first && object->hatch() == first);
        QVERIFY(!samples::rect(0, 0, 1, 1)->hatch());
    }
};

QTEST_GUILESS_MAIN(HatchTest)
#include "tst_hatch.moc"
