// SPDX-License-Identifier: MIT
// What an instrument finds on the workpiece after a job, and the rows between the vertices of bent ways.
#include "simengine/card/crosses.h"
#include "simengine/card/markedrows.h"
#include "tests/card/cardfixture.h"

#include <cmath>
#include <cstdio>
#include <string>
#include <thread>

using namespace sim;
using cardtest::jobOf;
using cardtest::plainPens;
using cardtest::polyline;

namespace {

void addCross(Job& job, double x, double y, double h = 2.5, int pen = 0) {
    job.strokes.push_back(polyline({{x - h, y}, {x + h, y}}, pen));
    job.strokes.push_back(polyline({{x, y + h}, {x, y - h}}, pen));
}

std::vector<Point> figures(const Job& job, std::shared_ptr<const HeadMap> head = nullptr,
                           const PenTable& pens = plainPens()) {
    Trace trace;
    Executor executor(job, pens, {}, {}, {}, trace, std::move(head));
    const std::atomic<bool> calm{false};
    executor.advance(std::numeric_limits<double>::infinity(), calm);
    return markedFigures(trace.snapshot());
}

std::shared_ptr<const HeadMap> mapOf(const SimHeadDistortion& head) {
    return HeadMap::make(head, {}, nullptr, false, 0);
}

} // namespace

TEST(Crosses, are_found_in_the_order_of_marking) {
    Job job;
    for (const Point p : {Point{-50, -50}, Point{-50, 0}, Point{-50, 50}, Point{0, -50}})
        addCross(job, p.x, p.y);
    job.strokes.push_back(polyline({{-75, -62.5}, {-75, -75}, {-50, -75}})); // the direction mark is no cross
    EXPECT_EQ(figures(job), (std::vector<Point>{{-50, -50}, {-50, 0}, {-50, 50}, {0, -50}}));
}

TEST(Crosses, the_order_of_their_lines_does_not_matter) {
    Job job;
    for (const double x : {0.0, 10.0})
        job.strokes.push_back(polyline({{x - 2, 0}, {x + 2, 0}}));
    for (const double x : {10.0, 0.0})
        job.strokes.push_back(polyline({{x, -2}, {x, 2}}));
    EXPECT_EQ(figures(job), (std::vector<Point>{{0, 0}, {10, 0}}));
}

TEST(Crosses, several_passes_over_one_count_once) {
    Job job;
    addCross(job, 5, 5);
    PenTable pens = plainPens();
    pens[0].markCount = 3;
    EXPECT_EQ(figures(job, nullptr, pens).size(), 1u);
    addCross(job, 5, 5);
    EXPECT_EQ(figures(job).size(), 1u);
}

TEST(Crosses, turned_ones_count_and_skew_ones_do_not) {
    Job turned;
    turned.strokes = {polyline({{-1, -1}, {1, 1}}), polyline({{-1, 1}, {1, -1}})};
    const std::vector<Point> found = figures(turned);
    ASSERT_EQ(found.size(), 1u);
    EXPECT_NEAR(found[0].x, 0.0, 1e-9);
    Job skew;
    skew.strokes = {polyline({{-1, 0}, {1, 0}}), polyline({{-1, -1}, {1, 1}})};
    EXPECT_TRUE(figures(skew).empty());
    Job apart;
    apart.strokes = {polyline({{-1, 0}, {1, 0}}), polyline({{0, 0}, {0, 2}})};
    EXPECT_TRUE(figures(apart).empty());
}

TEST(Crosses, lines_with_a_power_ramp_count_as_lines) {
    Job job;
    addCross(job, 3, 4);
    PenTable pens = plainPens();
    pens[0].lineWaveEnable = true;
    for (std::size_t i = 0; i < 5; ++i)
        pens[0].lineWave[i] = {double(i), 20.0 * double(i)};
    const std::vector<Point> found = figures(job, nullptr, pens);
    ASSERT_EQ(found.size(), 1u);
    EXPECT_NEAR(found[0].x, 3.0, 1e-9);
    EXPECT_NEAR(found[0].y, 4.0, 1e-9);
}

TEST(Crosses, previews_mark_nothing) {
    Job job;
    addCross(job, 0, 0);
    job.kind = MarkKind::RedPreview;
    EXPECT_TRUE(figures(job).empty());
    job.kind = MarkKind::BorderPreview;
    EXPECT_TRUE(figures(job).empty());
}

TEST(Crosses, are_measured_where_they_were_marked) {
    SimHeadDistortion head;
    head.barrel = 0.03;
    head.trapezoidX = 0.01;
    head.rotation = 0.5;
    Job job;
    std::vector<Point> expected;
    for (const Point p : {Point{50, 50}, Point{-50, 25}, Point{0, 0}}) {
        addCross(job, p.x, p.y);
        expected.push_back(distorted(head, p, false));
    }
    const std::vector<Point> found = figures(job, mapOf(head));
    ASSERT_EQ(found.size(), expected.size());
    for (std::size_t i = 0; i < found.size(); ++i) {
        EXPECT_NEAR(found[i].x, expected[i].x, 3e-4);
        EXPECT_NEAR(found[i].y, expected[i].y, 3e-4);
    }
}

TEST(Crosses, a_job_without_them_gives_its_mark_points) {
    Job job;
    job.strokes = {polyline({{1, 2}}), polyline({{3, 4}}), polyline({{1, 2}}), polyline({{0, 0}, {5, 5}})};
    EXPECT_EQ(figures(job), (std::vector<Point>{{1, 2}, {3, 4}}));
    addCross(job, 7, 7);
    EXPECT_EQ(figures(job), (std::vector<Point>{{7, 7}}));
}

TEST(Crosses, sixty_five_by_sixty_five_are_all_found) {
    Job job;
    std::vector<Point> expected;
    for (int i = 0; i < 65; ++i) {
        for (int j = 0; j < 65; ++j) {
            addCross(job, -50 + i * 100.0 / 64, -50 + j * 100.0 / 64, 0.5);
            expected.push_back({-50 + i * 100.0 / 64, -50 + j * 100.0 / 64});
        }
    }
    const std::vector<Point> found = figures(job);
    ASSERT_EQ(found.size(), expected.size());
    for (std::size_t i = 0; i < found.size(); ++i)
        ASSERT_LT(distanceMm(found[i], expected[i]), 1e-9) << i;
}

TEST(Crosses, among_lines_marked_a_million_times_take_no_longer_for_it) {
    Job job;
    addCross(job, 7, 7);
    for (int i = 0; i < 20000; ++i) // a star of half a right angle
        job.strokes.push_back(
            polyline({{-std::cos(i * 3e-5), -std::sin(i * 3e-5)}, {std::cos(i * 3e-5), std::sin(i * 3e-5)}}));
    job.strokes.push_back(polyline({{20, 0}, {30, 0}}, 1));
    job.strokes.push_back(polyline({{25, -5}, {25, 5}}, 0));
    PenTable pens = plainPens();
    pens[1].markCount = 1'000'000;
    Trace trace;
    Executor executor(job, pens, {}, {}, {}, trace);
    const std::atomic<bool> calm{false};
    executor.advance(std::numeric_limits<double>::infinity(), calm);
    ASSERT_GT(trace.size(), 2'000'000u);
    const std::vector<Point> found = markedFigures(trace.snapshot());
    ASSERT_EQ(found.size(), 2u);
    EXPECT_EQ(found[0], (Point{7, 7}));
    EXPECT_EQ(found[1], (Point{25, 0}));
}

TEST(Crosses, of_nearly_level_lines_are_found_on_both_sides_of_the_half_turn) {
    Job job;
    for (const double angle : {-4e-5, 4e-5, 0.0, 1.5708, 3.14155}) {
        const double x = job.strokes.size() * 5.0;
        const double c = std::cos(angle);
        const double s = std::sin(angle);
        job.strokes.push_back(polyline({{x - c, -s}, {x + c, s}}));
        job.strokes.push_back(polyline({{x + s, -c}, {x - s, c}}));
    }
    EXPECT_EQ(figures(job).size(), 5u);
}

TEST(Crosses, on_the_fly_are_measured_on_the_product) {
    FlyMotion fly;
    fly.shift = {0.10, 0.0};
    fly.travel = {0.08, 0.0}; // the head overtakes the product by 0.02 mm a millisecond
    PenTable pens = plainPens();
    pens[0].pointTime = 50e3;
    Job points;
    points.strokes = {polyline({{1, 2}}), polyline({{3, 4}})};
    Trace trace;
    Executor executor(points, pens, {}, {}, {}, trace, nullptr, fly);
    const std::atomic<bool> calm{false};
    executor.advance(std::numeric_limits<double>::infinity(), calm);
    const TraceSnapshot rows = trace.snapshot();
    ASSERT_EQ(rows.size(), 4u);
    const std::vector<Point> found = markedFigures(rows);
    ASSERT_EQ(found.size(), 2u);
    EXPECT_NEAR(found[0].x, 1.0 + 0.02 * (rows[0].ms + 25.0), 1e-9);
    EXPECT_NEAR(found[1].x, 3.0 + 0.02 * (rows[2].ms + 25.0), 1e-9);
    EXPECT_EQ(found[1].y, 4.0);
    EXPECT_EQ(markedFigures(rows.commanded()).size(), 2u);
}

TEST(MarkedRows, are_the_same_in_a_table_as_in_a_drawing) {
    SimHeadDistortion head;
    head.barrel = 0.03;
    head.noise = 0.01;
    FlyMotion fly;
    fly.shift = {0.5, -0.1};
    fly.travel = {0.4, 0.1};
    Trace trace;
    trace.beginJob(mapOf(head), fly);
    trace.append({0, {-50, 50}, 0, false, false});
    trace.append({10, {50, 50}, 3, true, true});
    for (const bool commanded : {false, true}) {
        const TraceSnapshot rows = commanded ? trace.snapshot().commanded() : trace.snapshot();
        std::string text = "time,x,y,laser,pen\n";
        forEachMarked(rows, 0, rows.size(), [&](const TraceRow& row, const Point& sent, bool vertex) {
            if (commanded) {
                EXPECT_EQ(row.at, sent);
            }
            char line[128];
            std::snprintf(line, sizeof line, "%.6f,%.6f,%.6f,%d,%d\n", row.ms, row.at.x, row.at.y, row.laser ? 1 : 0,
                          row.pen);
            if (vertex)
                text += line;
        });
        EXPECT_EQ(traceCsv(rows), text);
    }
    EXPECT_EQ(traceCsv(trace.snapshot().commanded()), "time,x,y,laser,pen\n"
                                                      "0.000000,-50.000000,50.000000,0,0\n"
                                                      "10.000000,55.000000,49.000000,1,3\n");
}

TEST(MarkedRows, of_a_plain_head_are_the_rows_themselves) {
    Trace trace;
    trace.beginJob(nullptr);
    trace.append({0, {-50, 50}, 0, false, false});
    trace.append({10, {50, 50}, 0, true, true});
    int rows = 0;
    forEachMarked(trace.snapshot(), 0, 2, [&](const TraceRow& row, const Point& commanded, bool vertex) {
        EXPECT_TRUE(vertex);
        EXPECT_EQ(row.at, commanded);
        ++rows;
    });
    EXPECT_EQ(rows, 2);
}

TEST(MarkedRows, follow_the_bent_way_within_a_micrometre) {
    SimHeadDistortion head;
    head.barrel = 0.03;
    Trace trace;
    trace.beginJob(mapOf(head));
    trace.append({0, {-50, 50}, 0, false, false});
    trace.append({10, {50, 50}, 0, true, true, 80.0F});
    std::vector<Point> marked;
    int vertices = 0;
    forEachMarked(trace.snapshot(), 0, 2, [&](const TraceRow& row, const Point& commanded, bool vertex) {
        EXPECT_LT(distanceMm(row.at, distorted(head, commanded, false)), 1e-12);
        EXPECT_NEAR(row.ms, (commanded.x + 50) / 10, 1e-9);
        if (row.laser) {
            EXPECT_NEAR(row.power, 0.8 * (commanded.x + 50), 1e-4);
        }
        vertices += vertex ? 1 : 0;
        marked.push_back(row.at);
    });
    EXPECT_EQ(vertices, 2);
    ASSERT_EQ(marked.size(), 101u);
    for (std::size_t i = 1; i < marked.size(); ++i) {
        const double x = -50 + (double(i) - 0.5);
        const Point chord = between(marked[i - 1], marked[i], 0.5);
        EXPECT_LT(distanceMm(chord, distorted(head, {x, 50}, false)), 1e-3);
    }
    // The middle of the line bows inwards by 1.5 mm.
    EXPECT_NEAR(marked[50].y, 51.5, 1e-9);
    EXPECT_NEAR(marked[100].y, 53.0, 1e-9);
}

TEST(MarkedRows, noise_moves_whole_lines_and_leaves_contours_closed) {
    SimHeadDistortion head;
    head.noise = 0.005;
    head.barrel = 0.01;
    Trace trace;
    trace.beginJob(mapOf(head));
    trace.append({0, {0, 0}, 0, false, false});
    trace.append({1, {20, 0}, 0, true, true});
    trace.append({2, {20, 20}, 0, true, true});
    trace.append({3, {0, 0}, 0, true, true});
    std::vector<std::pair<Point, bool>> rows;
    const TraceSnapshot snapshot = trace.snapshot();
    forEachMarked(snapshot, 0, 4, [&](const TraceRow& row, const Point& commanded, bool vertex) {
        const Point plain = snapshot.head()->withoutNoise(commanded);
        EXPECT_LT(distanceMm(row.at, plain), 6 * head.noise);
        if (vertex) {
            EXPECT_NE(row.at, plain);
        }
        rows.emplace_back(row.at, vertex);
    });
    EXPECT_EQ(rows.front().first, rows.back().first);
    // Between two vertices the noise goes straight: no jitter from part to part.
    for (std::size_t i = 1; i + 1 < 20; ++i) {
        const Point middle = between(rows[i - 1].first, rows[i + 1].first, 0.5);
        EXPECT_LT(distanceMm(middle, rows[i].first), 1e-3);
    }
}

TEST(MarkedRows, distortion_changes_no_times_and_no_lengths) {
    Job job;
    job.strokes = {cardtest::square(-40, -40, 80), polyline({{10, 10}})};
    SimHeadDistortion head;
    head.barrel = 0.2;
    head.scaleX = 2.0;
    head.noise = 0.1;
    const auto run = [&job](std::shared_ptr<const HeadMap> map) {
        Trace trace;
        Executor executor(job, plainPens(), {}, {}, {}, trace, std::move(map));
        const std::atomic<bool> calm{false};
        executor.advance(std::numeric_limits<double>::infinity(), calm);
        const TraceSnapshot rows = trace.snapshot();
        std::vector<double> times;
        for (std::size_t i = 0; i < rows.size(); ++i)
            times.push_back(rows[i].ms);
        return std::make_tuple(executor.time().totalMs, executor.time().markedMm, executor.time().jumpedMm, times);
    };
    EXPECT_EQ(run(nullptr), run(mapOf(head)));
}

TEST(HeadChanges, during_jobs_act_on_the_next_one_and_race_with_nothing) {
    CardCore card;
    ASSERT_TRUE(card.open());
    card.setSpeed(0.0);
    card.setPens(plainPens());
    card.setState(RunState::Run);
    std::atomic<bool> ended{false};
    std::thread operators([&] {
        SimHeadDistortion head;
        while (!ended) {
            head.offsetX = head.offsetX > 50.0 ? 0.0 : head.offsetX + 1.0;
            card.headWay().setDistortion(head);
            BoxCorrection box;
            box.offsetY = head.offsetX;
            card.headWay().setBox(box);
            card.headWay().setSplice({head.offsetX > 20.0, 1.0, 2.0, 3.0});
            card.spot();
        }
    });
    std::thread reader([&] {
        while (!ended) {
            const TraceSnapshot rows = card.trace().snapshot();
            const Point* shift = nullptr;
            Point first;
            // All rows of a pass are marked by one and the same head.
            forEachMarked(rows, 0, rows.size(), [&](const TraceRow& row, const Point& commanded, bool) {
                const Point here{row.at.x - commanded.x, row.at.y - commanded.y};
                if (commanded.x != 0.0 || commanded.y != 0.0)
                    return;
                if (shift) {
                    EXPECT_EQ(here, *shift);
                }
                first = here;
                shift = &first;
            });
            markedFigures(rows);
        }
    });
    for (int i = 0; i < 200; ++i) {
        Job job;
        for (int k = 0; k < 5; ++k)
            job.strokes.push_back(polyline({{0, 0}, {double(k), 5}, {0, 0}}));
        ASSERT_TRUE(card.run(std::move(job), false));
    }
    ended = true;
    operators.join();
    reader.join();
}
