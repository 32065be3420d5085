// SPDX-License-Identifier: MIT
// Power curves: their tables, and what the card makes of them.
#include "cardfixture.h"

#include "simengine/card/planner.h"
#include "simengine/card/powercurve.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <random>
#include <tuple>
#include <utility>

using namespace cardtest;
using namespace sim;

namespace {

constexpr double kNan = std::numeric_limits<double>::quiet_NaN();
constexpr double kInfinity = std::numeric_limits<double>::infinity();

using Points = std::vector<std::pair<double, double>>;

WaveTable table(const Points& first, const Points& second = {}) {
    WaveTable rows{};
    for (std::size_t i = 0; i < first.size(); ++i)
        rows[i] = {first[i].first, first[i].second};
    for (std::size_t i = 0; i < second.size(); ++i)
        rows[kWavePoints / 2 + i] = {second[i].first, second[i].second};
    return rows;
}

template<typename Curve>
Points pointsOf(const Curve& curve) {
    Points points;
    for (int i = 0; i < curve.size(); ++i)
        points.emplace_back(curve[i].x, curve[i].power);
    return points;
}

PenTable pensWithPoint(const WaveTable& rows) {
    PenTable pens = plainPens();
    pens[0].power = 40.0;
    pens[0].pointTime = 1500;
    pens[0].pointWaveEnable = true;
    pens[0].pointWave = rows;
    return pens;
}

/// Ramps from 0 to 60 in 4 and down to 20 in 2, both with a point half way.
PenTable pensWithLine(bool byDistance) {
    PenTable pens = plainPens();
    pens[0].power = 40.0;
    pens[0].lineWaveEnable = true;
    pens[0].lineWaveByDistance = byDistance;
    pens[0].lineWave = table({{0, 0}, {2, 50}, {4, 60}}, {{0, 60}, {1, 30}, {2, 20}});
    return pens;
}

/// x, power of the marked rows.
Points placesOf(const std::vector<TraceRow>& rows) {
    Points places;
    for (const TraceRow& row : rows) {
        if (row.laser)
            places.emplace_back(row.at.x, row.power);
    }
    return places;
}

void expectNear(const Points& is, const Points& wanted) {
    ASSERT_EQ(is.size(), wanted.size());
    for (std::size_t i = 0; i < is.size(); ++i) {
        EXPECT_NEAR(is[i].first, wanted[i].first, 1e-6) << "point " << i;
        EXPECT_NEAR(is[i].second, wanted[i].second, 1e-4) << "point " << i;
    }
}

struct TableRow {
    const char* name;
    WaveTable rows;
    Points wanted;
};

class PointTable : public ::testing::TestWithParam<TableRow> {};
class LineTable : public ::testing::TestWithParam<TableRow> {};

PenParams penOf(const TableRow& row) {
    PenParams pen;
    pen.pointWave = pen.lineWave = row.rows;
    return sanitized(pen);
}

} // namespace

TEST_P(PointTable, becomes_the_curve) {
    EXPECT_EQ(pointsOf(pointCurve(penOf(GetParam()))), GetParam().wanted);
}

INSTANTIATE_TEST_SUITE_P(
    Rows, PointTable,
    ::testing::Values(
        TableRow{"all_zero_is_no_curve", table({}), {}},
        TableRow{"power_without_time_is_no_curve", table({{0, 80}, {0, 50}}), {}},
        TableRow{"rises", table({{0, 10}, {1, 50}, {3, 20}}), {{0, 10}, {1, 50}, {3, 20}}},
        TableRow{"first_row_after_0_holds_its_power_before", table({{2, 30}, {3, 40}}), {{0, 30}, {2, 30}, {3, 40}}},
        TableRow{"rows_at_0_are_not_in_use", table({{0, 10}, {0, 90}, {2, 50}, {0, 70}}), {{0, 10}, {2, 50}}},
        TableRow{"negative_and_invalid_x_are_not_in_use",
                 table({{0, 10}, {-1, 90}, {kNan, 80}, {2, 50}}),
                 {{0, 10}, {2, 50}}},
        TableRow{"x_that_goes_back_is_a_step",
                 table({{0, 10}, {3, 50}, {1, 20}, {4, 30}}),
                 {{0, 10}, {3, 50}, {3, 20}, {4, 30}}},
        TableRow{"values_are_moved_to_their_limits",
                 table({{0, -5}, {1, 500}, {1e9, kNan}}),
                 {{0, 0}, {1, 100}, {kMaxWaveX, 0}}},
        TableRow{"endless_x_ends_at_the_limit", table({{0, 5}, {kInfinity, 6}}), {{0, 5}, {kMaxWaveX, 6}}}),
    [](const auto& row) { return std::string(row.param.name); });

TEST(PointTable, a_full_table_that_begins_late_loses_no_row) {
    PenParams pen;
    for (std::size_t i = 0; i < kWavePoints; ++i)
        pen.pointWave[i] = {i + 1.0, i * 5.0};
    const PowerCurve curve = pointCurve(pen);
    EXPECT_EQ(curve.size(), 21);
    EXPECT_EQ(curve.length(), 20.0);
}

// Ramp-in and ramp-out one after the other.
TEST_P(LineTable, becomes_the_ramps) {
    const LineRamps ramps = lineRamps(penOf(GetParam()));
    Points both = pointsOf(ramps.in);
    for (const auto& point : pointsOf(ramps.out))
        both.push_back(point);
    EXPECT_EQ(both, GetParam().wanted);
    EXPECT_EQ(ramps.inUse, both.size() > 2);
}

INSTANTIATE_TEST_SUITE_P(
    Rows, LineTable,
    ::testing::Values(
        TableRow{"all_zero_is_no_curve", table({}), {{0, 0}, {0, 0}}},
        TableRow{"begins_at_0_and_goes_out_from_where_it_came_in",
                 table({{0, 70}, {1, 50}}, {{0, 99}, {2, 10}}),
                 {{0, 0}, {1, 50}, {0, 50}, {2, 10}}},
        TableRow{"x_of_the_beginnings_is_0",
                 table({{5, 70}, {6, 50}}, {{5, 99}, {6, 10}}),
                 {{0, 0}, {6, 50}, {0, 50}, {6, 10}}},
        TableRow{"empty_ramp_in_gives_a_ramp_out_from_0", table({}, {{0, 80}, {2, 30}}), {{0, 0}, {0, 0}, {2, 30}}},
        TableRow{"empty_ramp_out", table({{0, 0}, {2, 30}}), {{0, 0}, {2, 30}, {0, 30}}},
        TableRow{"only_the_first_row_is_no_curve", table({{3, 30}}), {{0, 0}, {0, 30}}},
        TableRow{"going_back_is_a_step",
                 table({{0, 0}, {4, 40}, {2, 60}}, {{0, 0}, {3, 5}, {3, 9}}),
                 {{0, 0}, {4, 40}, {4, 60}, {0, 60}, {3, 5}, {3, 9}}}),
    [](const auto& row) { return std::string(row.param.name); });

TEST(PointCurve, decides_the_time_and_the_power_of_a_point) {
    const auto [rows, time] = marked(jobOf({polyline({{10, 0}})}), pensWithPoint(table({{0, 10}, {2, 80}, {5, 30}})));
    EXPECT_NEAR(time.markMs, 5.0, 1e-9);
    ASSERT_EQ(rows.size(), 3u);
    EXPECT_FALSE(rows[0].laser);
    EXPECT_NEAR(rows[0].power, 10, 1e-4);
    EXPECT_NEAR(rows[1].ms - rows[0].ms, 2.0, 1e-9);
    EXPECT_NEAR(rows[1].power, 80, 1e-4);
    EXPECT_NEAR(rows[2].ms - rows[0].ms, 5.0, 1e-9);
    EXPECT_NEAR(rows[2].power, 30, 1e-4);
    for (const TraceRow& row : rows)
        EXPECT_EQ(row.at, (Point{10, 0}));
}

TEST(PointCurve, all_zero_leaves_the_pens_time_and_power) {
    const auto [rows, time] = marked(jobOf({polyline({{10, 0}})}), pensWithPoint(table({})));
    EXPECT_NEAR(time.markMs, 1.5, 1e-9);
    ASSERT_EQ(rows.size(), 2u);
    EXPECT_NEAR(rows[1].power, 40, 1e-4);
}

TEST(PointCurve, zero_power_is_a_dark_point_of_its_duration) {
    const auto [rows, time] = marked(jobOf({polyline({{10, 0}})}), pensWithPoint(table({{0, 0}, {7, 0}})));
    EXPECT_NEAR(time.markMs, 7.0, 1e-9);
    EXPECT_EQ(rows.back().power, 0.0F);
}

TEST(PointCurve, that_is_switched_off_does_nothing) {
    PenTable pens = pensWithPoint(table({{0, 10}, {2, 80}}));
    pens[0].pointWaveEnable = false;
    EXPECT_NEAR(marked(jobOf({polyline({{10, 0}})}), pens).second.markMs, 1.5, 1e-9);
}

TEST(PointCurve, a_point_with_its_own_time_cuts_or_holds_the_curve) {
    const PenTable pens = pensWithPoint(table({{0, 10}, {2, 80}, {4, 20}}));
    Stroke point = polyline({{10, 0}});
    point.dwellUs = 3000;
    auto [rows, time] = marked(jobOf({point}), pens);
    EXPECT_NEAR(time.markMs, 3.0, 1e-9);
    ASSERT_EQ(rows.size(), 3u);
    EXPECT_NEAR(rows[2].power, 50, 1e-4);
    point.dwellUs = 9000;
    std::tie(rows, time) = marked(jobOf({point}), pens);
    EXPECT_NEAR(time.markMs, 9.0, 1e-9);
    ASSERT_EQ(rows.size(), 4u);
    EXPECT_NEAR(rows[3].power, 20, 1e-4);
    point.dwellUs = 0;
    std::tie(rows, time) = marked(jobOf({point}), pens);
    EXPECT_EQ(time.markMs, 0.0);
    EXPECT_EQ(rows.size(), 2u);
}

TEST(PointCurve, a_full_table_fits_the_list_buffer) {
    WaveTable rows;
    for (std::size_t i = 0; i < kWavePoints; ++i)
        rows[i] = {i + 1.0, 100.0 - i};
    PenTable pens = pensWithPoint(rows);
    pens[0].markDelay = 5;
    pens[0].minJumpDelay = pens[0].maxJumpDelay = 5;
    pens[1] = pens[0];
    PlanSettings settings;
    settings.penChangeDelayMs = 1;
    Job job;
    for (int i = 0; i < 100; ++i)
        job.strokes.push_back(polyline({{i + 1.0, 0}}, i % 2));
    const auto [traced, time] = marked(job, pens, settings);
    EXPECT_EQ(traced.size(), 100u * 21);
    EXPECT_NEAR(time.markMs, 100 * 20.0, 1e-6);
}

TEST(PointCurve, does_not_act_in_a_preview) {
    const auto [rows, time] =
        marked(jobOf({polyline({{10, 0}})}, MarkKind::RedPreview), pensWithPoint(table({{0, 10}, {2, 80}})));
    EXPECT_NEAR(time.markMs, 1.5, 1e-9);
    ASSERT_EQ(rows.size(), 2u);
    EXPECT_EQ(rows[1].power, 0.0F);
}

TEST(LineCurve, cuts_the_line_at_its_points_by_distance) {
    const auto [rows, time] = marked(jobOf({polyline({{10, 0}, {30, 0}})}), pensWithLine(true));
    expectNear(placesOf(rows), {{12, 50}, {14, 60}, {28, 60}, {29, 30}, {30, 20}});
    EXPECT_FALSE(rows[0].laser);
    EXPECT_EQ(rows[0].power, 0.0F);
    EXPECT_NEAR(time.markMs, 200.0, 1e-9);
    EXPECT_NEAR(time.markedMm, 20.0, 1e-9);
    EXPECT_EQ(time.vertices, 6u);
}

TEST(LineCurve, cuts_the_line_at_its_points_by_time) {
    // 100 mm/s: 4 ms are 0.4 mm.
    const auto [rows, time] = marked(jobOf({polyline({{10, 0}, {30, 0}})}), pensWithLine(false));
    expectNear(placesOf(rows), {{10.2, 50}, {10.4, 60}, {29.8, 60}, {29.9, 30}, {30, 20}});
    EXPECT_NEAR(rows[2].ms - rows[0].ms, 4.0, 1e-9);
    EXPECT_NEAR(time.markMs, 200.0, 1e-9);
}

TEST(LineCurve, runs_on_over_corners) {
    // Ramp-in over the first two sides, ramp-out over the last.
    const Job job = jobOf({polyline({{0, 0}, {3, 0}, {3, 10}, {0, 10}})});
    PenTable pens = pensWithLine(true);
    pens[0].turnDelay = 200;
    pens[0].closeLaserDelay = 300;
    const auto [rows, time] = marked(job, pens);
    std::vector<std::pair<Point, double>> wanted = {{{2, 0}, 50},  {{3, 0}, 55},  {{3, 1}, 60}, {{3, 10}, 60},
                                                    {{2, 10}, 60}, {{1, 10}, 30}, {{0, 10}, 20}};
    ASSERT_EQ(rows.size(), wanted.size() + 1);
    for (std::size_t i = 0; i < wanted.size(); ++i) {
        EXPECT_NEAR(rows[i + 1].at.x, wanted[i].first.x, 1e-9);
        EXPECT_NEAR(rows[i + 1].at.y, wanted[i].first.y, 1e-9);
        EXPECT_NEAR(rows[i + 1].power, wanted[i].second, 1e-4);
    }
    EXPECT_NEAR(time.markMs, 160.0, 1e-9);
    EXPECT_NEAR(time.delayMs, 0.7, 1e-9);
}

TEST(LineCurve, of_a_short_line_is_shortened_as_a_whole) {
    // 3 mm for ramps of 4 and 2 mm.
    const auto [rows, time] = marked(jobOf({polyline({{10, 0}, {13, 0}})}), pensWithLine(true));
    expectNear(placesOf(rows), {{11, 50}, {12, 60}, {12.5, 30}, {13, 20}});
    EXPECT_NEAR(time.markMs, 30.0, 1e-9);
}

TEST(LineCurve, of_the_ramps_exact_length_has_no_plateau) {
    const auto [rows, time] = marked(jobOf({polyline({{10, 0}, {16, 0}})}), pensWithLine(true));
    expectNear(placesOf(rows), {{12, 50}, {14, 60}, {15, 30}, {16, 20}});
    EXPECT_NEAR(time.markMs, 60.0, 1e-9);
}

TEST(LineCurve, step_gives_two_rows_at_one_place_and_time) {
    PenTable pens = pensWithLine(true);
    pens[0].lineWave = table({{0, 0}, {4, 40}, {4, 80}});
    const auto [rows, time] = marked(jobOf({polyline({{10, 0}, {30, 0}})}), pens);
    expectNear(placesOf(rows), {{14, 40}, {14, 80}, {30, 80}});
    EXPECT_EQ(rows[1].ms, rows[2].ms);
    EXPECT_NEAR(time.markMs, 200.0, 1e-9);
}

TEST(LineCurve, step_at_a_corner_belongs_to_it) {
    PenTable pens = pensWithLine(true);
    pens[0].lineWave = table({{0, 0}, {10, 40}, {10, 80}});
    const auto [rows, time] = marked(jobOf({polyline({{0, 0}, {10, 0}, {30, 0}})}), pens);
    expectNear(placesOf(rows), {{10, 40}, {10, 80}, {30, 80}});
    EXPECT_NEAR(time.totalMs, 300.0, 1e-9);
}

TEST(LineCurve, empty_ramp_in_leaves_the_line_dark_until_the_ramp_out) {
    PenTable pens = pensWithLine(true);
    pens[0].lineWave = table({}, {{0, 60}, {5, 30}});
    expectNear(placesOf(marked(jobOf({polyline({{10, 0}, {30, 0}})}), pens).first), {{25, 0}, {30, 30}});
}

TEST(LineCurve, all_zero_leaves_the_pens_power) {
    PenTable pens = pensWithLine(true);
    pens[0].lineWave = table({});
    const auto [rows, time] = marked(jobOf({polyline({{10, 0}, {30, 0}})}), pens);
    expectNear(placesOf(rows), {{30, 40}});
    EXPECT_NEAR(rows[0].power, 40, 1e-4); // what the laser opens with
}

TEST(LineCurve, line_of_no_length_is_one_row) {
    const auto [rows, time] = marked(jobOf({polyline({{10, 0}, {10, 0}})}), pensWithLine(true));
    EXPECT_EQ(rows.size(), 2u);
    EXPECT_EQ(time.markMs, 0.0);
}

TEST(LineCurve, begins_anew_with_each_stroke_and_each_repetition) {
    PenTable pens = pensWithLine(true);
    pens[0].markCount = 2;
    const auto [rows, time] =
        marked(jobOf({polyline({{0, 0}, {20, 0}}, 0, 1), polyline({{20, 0}, {40, 0}}, 0, 1)}), pens);
    ASSERT_EQ(rows.size(), 4u * 6);
    for (std::size_t i = 0; i < rows.size(); ++i) {
        EXPECT_EQ(rows[i].laser, i % 6 != 0);
        EXPECT_EQ(rows[i].power, rows[i % 6].power);
    }
    EXPECT_NEAR(time.markMs, 800.0, 1e-9);
}

TEST(LineCurve, does_not_act_in_previews_or_on_other_pens) {
    for (MarkKind kind : {MarkKind::RedPreview, MarkKind::BorderPreview}) {
        const auto [rows, time] = marked(jobOf({square(10, 0, 10)}, kind), pensWithLine(true));
        ASSERT_EQ(rows.size(), 5u);
        for (const TraceRow& row : rows)
            EXPECT_EQ(row.power, 0.0F);
    }
    const auto [rows, time] = marked(jobOf({square(10, 0, 10, 1)}), pensWithLine(true));
    ASSERT_EQ(rows.size(), 5u);
    for (const TraceRow& row : rows)
        EXPECT_EQ(row.power, 50.0F);
}

TEST(LineCurve, cut_within_a_ramp_has_the_power_reached) {
    Trace trace;
    const Job job = jobOf({polyline({{0, 0}, {20, 0}})});
    Executor executor(job, pensWithLine(true), {}, {}, {}, trace);
    const std::atomic<bool> calm{false};
    executor.advance(10'000, calm); // 1 of the ramp's first 2 mm
    executor.cut();
    const TraceSnapshot rows = trace.snapshot();
    EXPECT_NEAR(rows[rows.size() - 1].at.x, 1.0, 1e-9);
    EXPECT_NEAR(rows[rows.size() - 1].power, 25.0, 1e-4);
    executor.stop();
    EXPECT_NEAR(executor.time().markedMm, 1.0, 1e-9);
    EXPECT_NEAR(executor.time().markMs, 10.0, 1e-9);
}

TEST(LineCurve, measured_strokes_are_planned_like_others) {
    std::mt19937 random(11);
    std::uniform_real_distribution<double> place(-50, 50);
    Job job;
    for (int s = 0; s < 50; ++s) {
        Stroke stroke;
        for (int i = 0; i < 40; ++i)
            stroke.points.push_back({i % 7 == 3 ? kNan : place(random), place(random)});
        job.strokes.push_back(stroke);
    }
    Job known = job;
    measureStrokes(known, pensWithLine(true));
    EXPECT_GT(known.strokes[0].lengthMm, 0.0);
    const auto a = marked(job, pensWithLine(true)).first;
    const auto b = marked(known, pensWithLine(true)).first;
    ASSERT_EQ(a.size(), b.size());
    for (std::size_t i = 0; i < a.size(); ++i) {
        EXPECT_EQ(a[i].at, b[i].at);
        EXPECT_EQ(a[i].power, b[i].power);
    }
    Job plain = job;
    measureStrokes(plain, plainPens());
    EXPECT_LT(plain.strokes[0].lengthMm, 0.0);
}

TEST(LineCurve, changes_neither_time_nor_length_and_follows_the_curve_everywhere) {
    for (unsigned seed = 1; seed <= 200; ++seed) {
        std::mt19937 random(seed);
        std::uniform_real_distribution<double> place(-50, 50);
        std::uniform_real_distribution<double> percent(0, 100);
        PenTable pens = plainPens();
        pens[0].turnDelay = 40;
        PenTable curved = pens;
        curved[0].lineWaveEnable = true;
        curved[0].lineWaveByDistance = seed % 2;
        for (WavePoint& row : curved[0].lineWave)
            row = {std::round(percent(random)) * (seed % 3 == 0 ? 3 : 0.3), percent(random)};
        Stroke stroke;
        for (unsigned i = 0, n = 2 + random() % 30; i < n; ++i)
            stroke.points.push_back({place(random), place(random)});
        const Job job = jobOf({stroke});
        const JobTime plain = estimate(job, pens);
        const auto [rows, time] = marked(job, curved);
        EXPECT_NEAR(time.totalMs, plain.totalMs, plain.totalMs * 1e-9);
        EXPECT_NEAR(time.markedMm, plain.markedMm, plain.markedMm * 1e-9);
        EXPECT_EQ(time.totalMs, estimate(job, curved).totalMs);

        const LineRamps ramps = lineRamps(sanitized(curved[0]));
        const double mmPerX = curved[0].lineWaveByDistance ? 1.0 : 0.1;
        const double length = plain.markedMm;
        const double whole = (ramps.in.length() + ramps.out.length()) * mmPerX;
        const double scale = std::min(1.0, length / whole) * mmPerX;
        double done = 0.0;
        for (std::size_t i = 1; i < rows.size(); ++i) {
            const double step = distanceMm(rows[i - 1].at, rows[i].at);
            done += step;
            // At a step either of its powers is right.
            const auto wanted = [&](double at) {
                return at < ramps.in.length() * scale ? ramps.in.at(at / scale)
                                                      : ramps.out.at((at - length) / scale + ramps.out.length());
            };
            const auto [low, high] = std::minmax({wanted(done - 1e-5), wanted(done), wanted(done + 1e-5)});
            ASSERT_GE(rows[i].power, low - 1e-2 * (high - low) - 0.05) << "seed " << seed << " row " << i;
            ASSERT_LE(rows[i].power, high + 1e-2 * (high - low) + 0.05) << "seed " << seed << " row " << i;
        }
        EXPECT_NEAR(done, length, 1e-6);
    }
}
