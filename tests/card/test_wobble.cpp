// SPDX-License-Identifier: MIT
// The path that wobble really draws.
#include "cardfixture.h"

#include "simengine/card/planner.h"

#include <algorithm>
#include <cmath>
#include <random>

using namespace cardtest;
using namespace sim;

namespace {

PenTable wobblingPens(double diameter, double spacing) {
    PenTable pens = plainPens();
    pens[0].wobbleEnable = true;
    pens[0].wobbleDiameter = diameter;
    pens[0].wobbleSpacing = spacing;
    return pens;
}

double markedLength(const std::vector<TraceRow>& rows) {
    double length = 0.0;
    for (std::size_t i = 1; i < rows.size(); ++i)
        length += rows[i].laser ? distanceMm(rows[i - 1].at, rows[i].at) : 0.0;
    return length;
}

double distanceToLine(const Point& p, const Point& a, const Point& b) {
    const double d = distanceMm(a, b);
    const double t = std::clamp(((p.x - a.x) * (b.x - a.x) + (p.y - a.y) * (b.y - a.y)) / (d * d), 0.0, 1.0);
    return distanceMm(p, between(a, b, t));
}

Stroke circle(double radius, int parts) {
    Stroke stroke;
    for (int i = 0; i <= parts; ++i)
        stroke.points.push_back({radius * std::cos(2 * M_PI * i / parts), radius * std::sin(2 * M_PI * i / parts)});
    return stroke;
}

struct Case {
    const char* name;
    double diameter;
    double spacing;
};

class Wobble : public ::testing::TestWithParam<Case> {};

} // namespace

TEST_P(Wobble, path_is_as_long_as_the_model_says) {
    const PenTable pens = wobblingPens(GetParam().diameter, GetParam().spacing);
    const double mm = 60 * GetParam().spacing;
    const double wobble = wobbleFactor(sanitized(pens[0]));
    const std::pair<const char*, Stroke> strokes[] = {
        {"line", polyline({{0, 0}, {mm, 0}})},
        {"slanting line", polyline({{1, 2}, {1 + 0.6 * mm, 2 - 0.8 * mm}})},
        {"line of 60.3 turns", polyline({{0, 0}, {mm * 60.3 / 60, 0}})},
        {"square", square(3, 4, mm / 2)},
        {"circle of tiny vectors", circle(mm, 5000)},
    };
    for (const auto& [name, stroke] : strokes) {
        const auto [rows, time] = marked(jobOf({stroke}), pens);
        EXPECT_NEAR(markedLength(rows), time.markedMm * wobble, time.markedMm * wobble * 0.005) << name;
        EXPECT_NEAR(time.markMs, time.markedMm * wobble * 10.0, time.markMs * 1e-9) << name;
        EXPECT_NEAR(time.markMs, time.markedMm * markUs(sanitized(pens[0]), MarkKind::Laser, 1.0) / 1000.0,
                    time.markMs * 1e-9)
            << name;
        EXPECT_EQ(time.centreLines, 0u);
    }
}

TEST_P(Wobble, path_stays_within_the_band_of_its_diameter) {
    const double mm = 20 * GetParam().spacing;
    const Point a{1, 1};
    const Point b{1 + mm * 0.6, 1 + mm * 0.8};
    const auto [rows, time] = marked(jobOf({polyline({a, b})}), wobblingPens(GetParam().diameter, GetParam().spacing));
    const double r = GetParam().diameter / 2;
    double widest = 0.0;
    for (const TraceRow& row : rows) {
        EXPECT_LE(distanceToLine(row.at, a, b), r + 1e-9);
        widest = std::max(widest, distanceToLine(row.at, a, b));
    }
    EXPECT_NEAR(widest, r, r * 0.01);
}

TEST_P(Wobble, has_no_more_vertices_a_turn_than_stated) {
    const auto [rows, time] = marked(jobOf({polyline({{0, 0}, {50 * GetParam().spacing, 0}})}),
                                     wobblingPens(GetParam().diameter, GetParam().spacing));
    // The jump, the offset on and the offset off besides.
    EXPECT_LE(rows.size(), 50u * StrokeShape::kVerticesPerTurn + 3);
    EXPECT_EQ(time.vertices, rows.size());
}

INSTANTIATE_TEST_SUITE_P(Rows, Wobble,
                         ::testing::Values(Case{"default_values", 0.2, 0.1}, Case{"wide_and_dense", 2.0, 0.05},
                                           Case{"rolling_circle", 1.0, M_PI}, Case{"narrow_and_long", 0.05, 2.0},
                                           Case{"smallest", 0.01, 0.01}, Case{"largest", 100.0, 100.0}),
                         [](const auto& row) { return std::string(row.param.name); });

TEST(WobbleTrace, offset_goes_on_and_off_without_laser_or_time) {
    const auto [rows, time] = marked(jobOf({polyline({{10, 0}, {20, 0}})}), wobblingPens(1.0, 0.5));
    ASSERT_GT(rows.size(), 4u);
    EXPECT_EQ(rows[0].at, (Point{10, 0}));
    EXPECT_FALSE(rows[0].laser);
    EXPECT_FALSE(rows[1].laser);
    EXPECT_EQ(rows[1].ms, rows[0].ms);
    EXPECT_NEAR(distanceMm(rows[0].at, rows[1].at), 0.5, 1e-9);
    EXPECT_TRUE(rows[2].laser);
    const TraceRow& last = rows.back();
    EXPECT_FALSE(last.laser);
    EXPECT_EQ(last.at, (Point{20, 0}));
    EXPECT_EQ(last.ms, rows[rows.size() - 2].ms);
    EXPECT_TRUE(rows[rows.size() - 2].laser);
}

TEST(WobbleTrace, jumps_go_by_the_commanded_line) {
    const Job job = jobOf({polyline({{10, 0}, {20, 0}}), polyline({{20, 10}, {30, 10}})});
    const JobTime wobbling = marked(job, wobblingPens(1.0, 0.5)).second;
    const JobTime plain = marked(job, plainPens()).second;
    EXPECT_EQ(wobbling.jumpMs, plain.jumpMs);
    EXPECT_EQ(wobbling.jumpedMm, plain.jumpedMm);
    EXPECT_NEAR(wobbling.markedMm, plain.markedMm, 1e-9);
    EXPECT_EQ(wobbling.delayMs, plain.delayMs);
}

TEST(WobbleTrace, delays_wait_on_the_path) {
    PenTable pens = wobblingPens(1.0, 0.3);
    pens[0].turnDelay = 1000;
    pens[0].closeLaserDelay = 1000;
    pens[0].markDelay = 1000;
    const Job job = jobOf({polyline({{0, 0}, {1, 0}, {1, 1}})});
    Trace trace;
    Executor executor(job, pens, {}, {}, {}, trace);
    const std::atomic<bool> calm{false};
    Point last;
    double farthest = 0.0;
    // A head that wobbles at 100 mm/s is never farther from its last place than the way of a step, but for the offset.
    for (double us = 0; executor.advance(us, calm) != Executor::Progress::Finished; us += 50) {
        farthest = std::max(farthest, distanceMm(last, executor.position()));
        last = executor.position();
    }
    EXPECT_LE(farthest, 0.5 + 1e-9);
    EXPECT_EQ(executor.position(), (Point{1, 1}));
}

TEST(WobbleTrace, turns_run_on_over_the_vertices_of_a_stroke) {
    // The same line in one vector and in a thousand.
    const auto whole = marked(jobOf({polyline({{0, 0}, {10, 0}})}), wobblingPens(1.0, 0.5)).first;
    Stroke parts;
    for (int i = 0; i <= 1000; ++i)
        parts.points.push_back({i / 100.0, 0});
    const auto cut = marked(jobOf({parts}), wobblingPens(1.0, 0.5)).first;
    EXPECT_NEAR(markedLength(cut), markedLength(whole), markedLength(whole) * 0.005);
    for (const TraceRow& row : cut) {
        if (!row.laser)
            continue;
        double nearest = 1e9;
        for (std::size_t i = 2; i < whole.size(); ++i)
            nearest = std::min(nearest, distanceToLine(row.at, whole[i - 1].at, whole[i].at));
        // Within the sagitta of the longer chords.
        EXPECT_LE(nearest, 0.5 * (1 - std::cos(M_PI / StrokeShape::kVerticesPerTurn)) * 1.2);
    }
}

TEST(WobbleTrace, does_not_act_in_previews_and_on_points) {
    const PenTable pens = wobblingPens(1.0, 0.5);
    EXPECT_EQ(marked(jobOf({square(10, 0, 10)}, MarkKind::RedPreview), pens).first.size(), 5u);
    EXPECT_EQ(marked(jobOf({square(10, 0, 10)}, MarkKind::BorderPreview), pens).first.size(), 5u);
    EXPECT_EQ(marked(jobOf({polyline({{10, 0}})}), pens).first.size(), 2u);
}

TEST(WobbleTrace, line_of_no_length_ends_where_it_began) {
    const auto [rows, time] = marked(jobOf({polyline({{10, 0}, {10, 0}})}), wobblingPens(1.0, 0.5));
    EXPECT_EQ(rows.back().at, (Point{10, 0}));
    EXPECT_EQ(time.markMs, 0.0);
}

TEST(WobbleTrace, beyond_the_bound_the_centre_line_is_traced_at_the_same_time) {
    const PenTable pens = wobblingPens(0.5, 0.01);
    const double turns = Planner::kMaxWobbleVertices / StrokeShape::kVerticesPerTurn;
    const double tooLong = turns * 0.01 * 1.01;
    const Job job = jobOf({polyline({{0, 0}, {1, 0}}), polyline({{0, 0}, {tooLong, 0}}), polyline({{0, 5}, {1, 5}})});
    const auto [rows, time] = marked(job, pens);
    EXPECT_EQ(time.centreLines, 1u);
    EXPECT_EQ(estimate(job, pens).centreLines, 1u);
    EXPECT_NEAR(time.markMs, (tooLong + 2) * wobbleFactor(sanitized(pens[0])) * 10.0, time.markMs * 1e-9);
    EXPECT_NEAR(time.markedMm, tooLong + 2, 1e-6);
    // Two strokes of 100 turns with their circles, and the two rows of the long one.
    EXPECT_EQ(rows.size(), 2 * (100u * StrokeShape::kVerticesPerTurn + 3) + 2);
}

TEST(WobbleTrace, bound_holds_for_the_whole_pass_and_anew_for_the_next) {
    PenTable pens = wobblingPens(0.5, 0.01);
    // Each stroke takes a little more than a third of what a pass has.
    const double mm = Planner::kMaxWobbleVertices / StrokeShape::kVerticesPerTurn * 0.01 * 0.35;
    const Job job = jobOf({polyline({{0, 0}, {mm, 0}}), polyline({{mm, 0}, {0, 0}}), polyline({{0, 0}, {mm, 0}})});
    Planner planner(job, pens, {}, {});
    std::array<Piece, 256> chunk;
    for (int pass = 0; pass < 2; ++pass) {
        JobTime time;
        while (const std::size_t count = planner.fill(chunk.data(), chunk.size())) {
            for (std::size_t i = 0; i < count; ++i)
                addPiece(time, chunk[i]);
        }
        EXPECT_EQ(time.centreLines, 1u);
        EXPECT_LE(static_cast<double>(time.vertices), Planner::kMaxWobbleVertices + 10);
        planner.restart();
    }
}

TEST(WobbleTrace, ramps_and_wobble_go_together) {
    PenTable pens = wobblingPens(1.0, 0.5);
    pens[0].lineWaveEnable = true;
    pens[0].lineWave[1] = {20.0, 80.0};
    pens[0].lineWave[11] = {40.0, 10.0};
    const Job job = jobOf({polyline({{0, 0}, {10, 0}})});
    const auto [rows, time] = marked(job, pens);
    EXPECT_NEAR(time.totalMs, estimate(job, wobblingPens(1.0, 0.5)).totalMs, time.totalMs * 1e-9);
    EXPECT_EQ(rows[1].power, 0.0F);
    int atTop = 0;
    for (std::size_t i = 2; i + 1 < rows.size(); ++i) {
        const double ms = rows[i].ms;
        const double wanted = ms < 20 ? ms * 4 : std::min(80.0, 80 - (ms - (time.totalMs - 40)) * 70 / 40);
        EXPECT_NEAR(rows[i].power, wanted, 1e-3) << i;
        atTop += std::abs(ms - 20) < 1e-6;
    }
    EXPECT_EQ(atTop, 1);
    EXPECT_NEAR(markedLength(rows), 10 * wobbleFactor(sanitized(pens[0])), 10 * wobbleFactor(pens[0]) * 0.005 * 4);
}

TEST(WobbleTrace, run_time_is_the_sum_of_the_formulas_with_curves_and_wobble) {
    for (unsigned seed = 1; seed <= 100; ++seed) {
        std::mt19937 random(seed);
        std::uniform_real_distribution<double> place(-20, 20);
        std::uniform_real_distribution<double> percent(0, 100);
        PenTable pens = plainPens();
        pens[0].wobbleEnable = pens[0].lineWaveEnable = pens[0].pointWaveEnable = true;
        pens[1].lineWaveEnable = true;
        pens[2].wobbleEnable = true;
        for (PenParams& pen : pens) {
            pen.openLaserDelay = 30;
            pen.turnDelay = 20;
            pen.closeLaserDelay = 50;
            pen.markDelay = 70;
            pen.markCount = 1 + static_cast<int>(random() % 2);
            for (std::size_t i = 0; i < kWavePoints; ++i) {
                pen.pointWave[i] = {i * 0.5, percent(random)};
                pen.lineWave[i] = {i % 10 * 0.7, percent(random)};
            }
        }
        PenTable plain = pens;
        for (PenParams& pen : plain)
            pen.wobbleEnable = pen.lineWaveEnable = pen.pointWaveEnable = false;
        Job job;
        double extraMs = 0.0;
        for (int s = 0; s < 12; ++s) {
            Stroke stroke;
            stroke.pen = static_cast<int>(random() % 4);
            for (unsigned i = 0, n = 1 + random() % 6; i < n; ++i)
                stroke.points.push_back({place(random), place(random)});
            const PenParams& pen = pens[static_cast<std::size_t>(stroke.pen)];
            double mm = 0.0;
            for (std::size_t i = 1; i < stroke.points.size(); ++i)
                mm += distanceMm(stroke.points[i - 1], stroke.points[i]);
            double extra = pen.wobbleEnable ? mm * (wobbleFactor(pen) - 1) * 10.0 : 0.0;
            if (stroke.points.size() == 1 && pen.pointWaveEnable)
                extra = 19 * 0.5 - 1.0; // the curve's duration instead of the point time
            extraMs += extra * pen.markCount;
            job.strokes.push_back(stroke);
        }
        const double wanted = estimate(job, plain).totalMs + extraMs;
        EXPECT_NEAR(estimate(job, pens).totalMs, wanted, wanted * 1e-9);
        CardCore card;
        ASSERT_TRUE(card.open());
        card.setPens(pens);
        card.setSpeed(0.0);
        card.setState(RunState::Run);
        const JobTime before = card.estimate(job);
        ASSERT_TRUE(card.run(job, false));
        EXPECT_NEAR(card.bufferRunTimeMs(), wanted, wanted * 1e-9);
        EXPECT_EQ(card.bufferRunTimeMs(), before.totalMs);
        EXPECT_EQ(card.trace().size(), before.vertices);
    }
}
