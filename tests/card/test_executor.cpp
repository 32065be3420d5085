// SPDX-License-Identifier: MIT
#include "cardfixture.h"

#include "simengine/card/executor.h"

#include <cmath>
#include <limits>
#include <random>

using namespace cardtest;
using namespace sim;

namespace {

constexpr double kForEver = std::numeric_limits<double>::infinity();

std::vector<TraceRow> rowsOf(const Trace& trace) {
    const TraceSnapshot snapshot = trace.snapshot();
    std::vector<TraceRow> rows;
    for (std::size_t i = 0; i < snapshot.size(); ++i)
        rows.push_back(snapshot[i]);
    return rows;
}

Job randomJob(unsigned seed, int strokes) {
    std::mt19937 random(seed);
    std::uniform_real_distribution<double> place(-50, 50);
    Job job;
    for (int s = 0; s < strokes; ++s) {
        Stroke stroke;
        stroke.pen = static_cast<int>(random() % kPenCount);
        stroke.object = static_cast<int>(random() % 3) - 1;
        for (unsigned i = 0, n = 1 + random() % 9; i < n; ++i)
            stroke.points.push_back({place(random), place(random)});
        job.strokes.push_back(stroke);
    }
    return job;
}

PenTable randomPens(unsigned seed) {
    std::mt19937 random(seed);
    const auto below = [&random](unsigned n) { return static_cast<int>(random() % n); };
    PenTable pens;
    for (PenParams& pen : pens) {
        pen.markCount = 1 + below(3);
        pen.markSpeed = 50 + below(2000);
        pen.redSpeed = 50 + below(2000);
        pen.jumpSpeed = 500 + below(5000);
        pen.openLaserDelay = below(400) - 200;
        pen.closeLaserDelay = below(400) - 200;
        pen.endDelay = below(500);
        pen.turnDelay = below(100);
        pen.minJumpDelay = below(200);
        pen.maxJumpDelay = below(900);
        pen.maxJumpDelayDist = below(20);
        pen.markDelay = below(300);
        pen.pointTime = below(3000);
        pen.wobbleEnable = below(4) == 0;
        pen.wobbleDiameter = 1 + below(5);
        pen.wobbleSpacing = 5 + below(20);
        pen.pointWaveEnable = below(3) == 0;
        pen.lineWaveEnable = below(3) == 0;
        pen.lineWaveByDistance = below(2) == 0;
        for (WavePoint& row : pen.pointWave)
            row = {below(50) / 10.0, static_cast<double>(below(101))};
        for (WavePoint& row : pen.lineWave)
            row = {below(500) / 10.0, static_cast<double>(below(101))};
    }
    return pens;
}

const std::atomic<bool> kNoAttention{false};
const std::atomic<bool> kAttention{true};

} // namespace

TEST(Executor, marks_a_row_a_vertex_with_exact_times) {
    Trace trace;
    const Job job = jobOf({square(10, 0, 10)});
    Executor executor(job, plainPens(), {}, {}, {}, trace);
    EXPECT_EQ(executor.advance(kForEver, kNoAttention), Executor::Progress::Finished);
    const auto rows = rowsOf(trace);
    ASSERT_EQ(rows.size(), 5u);
    const double ms[] = {10, 110, 210, 310, 410};
    for (std::size_t i = 0; i < 5; ++i) {
        EXPECT_NEAR(rows[i].ms, ms[i], 1e-9);
        EXPECT_EQ(rows[i].laser, i > 0);
        EXPECT_EQ(rows[i].drawn, i > 0);
    }
    EXPECT_EQ(rows[2].at, (Point{20, 10}));
}

TEST(Executor, point_gives_two_rows_the_second_with_laser) {
    Trace trace;
    const Job job = jobOf({polyline({{10, 0}}, 4)});
    Executor executor(job, plainPens(), {}, {}, {}, trace);
    executor.advance(kForEver, kNoAttention);
    const auto rows = rowsOf(trace);
    ASSERT_EQ(rows.size(), 2u);
    EXPECT_FALSE(rows[0].laser);
    EXPECT_TRUE(rows[1].laser);
    EXPECT_NEAR(rows[1].ms - rows[0].ms, 1.0, 1e-9);
    EXPECT_EQ(rows[1].pen, 4);
}

TEST(Executor, previews_draw_without_laser) {
    for (MarkKind kind : {MarkKind::RedPreview, MarkKind::BorderPreview}) {
        Trace trace;
        const Job job = jobOf({square(10, 0, 10)}, kind);
        Executor executor(job, plainPens(), {}, {}, {}, trace);
        executor.advance(kForEver, kNoAttention);
        const auto rows = rowsOf(trace);
        ASSERT_EQ(rows.size(), 5u);
        for (std::size_t i = 0; i < 5; ++i) {
            EXPECT_FALSE(rows[i].laser);
            EXPECT_EQ(rows[i].drawn, i > 0);
        }
    }
}

TEST(Executor, objects_are_repeated_as_a_whole) {
    PenTable pens = plainPens();
    pens[0].markCount = 2;
    Trace trace;
    const Job job =
        jobOf({polyline({{1, 0}, {2, 0}}, 0, 0), polyline({{3, 0}, {4, 0}}, 0, 0), polyline({{5, 0}, {6, 0}})});
    Executor executor(job, pens, {}, {}, {}, trace);
    executor.advance(kForEver, kNoAttention);
    std::vector<double> xs;
    for (const TraceRow& row : rowsOf(trace))
        xs.push_back(row.at.x);
    EXPECT_EQ(xs, (std::vector<double>{1, 2, 3, 4, 1, 2, 3, 4, 5, 6, 5, 6}));
}

TEST(Executor, executed_time_equals_the_sum_of_the_formulas) {
    for (unsigned seed = 1; seed <= 200; ++seed) {
        Job job = randomJob(seed, 30);
        job.kind = static_cast<MarkKind>(seed % 3);
        const PenTable pens = randomPens(seed);
        PlanSettings settings;
        settings.penChangeDelayMs = seed % 5;
        const JobTime expected = estimate(job, pens, {1, 2}, settings);
        Trace trace;
        Executor executor(job, pens, settings, {}, {1, 2}, trace);
        // In small uneven steps, as the worker does it.
        double until = 0;
        while (executor.advance(until, kNoAttention) != Executor::Progress::Finished)
            until += 731.0 + seed;
        EXPECT_NEAR(executor.nowUs() / 1000.0, expected.totalMs, expected.totalMs * 1e-9);
        EXPECT_NEAR(executor.time().totalMs, expected.totalMs, expected.totalMs * 1e-12);
        EXPECT_NEAR(executor.time().markedMm, expected.markedMm, 1e-6);
        EXPECT_EQ(trace.size(), expected.vertices);
    }
}

TEST(Executor, never_runs_ahead_of_the_clock) {
    const Job job = randomJob(7, 50);
    Trace trace;
    Executor executor(job, randomPens(7), {}, {}, {}, trace);
    for (double until = 0; executor.advance(until, kNoAttention) != Executor::Progress::Finished; until += 500) {
        const TraceSnapshot rows = trace.snapshot();
        if (rows.size() > 0) {
            ASSERT_LE(rows[rows.size() - 1].ms * 1000, until);
        }
        ASSERT_EQ(executor.nowUs(), until);
    }
}

TEST(Executor, cut_in_mid_vector_ends_the_line_at_the_exact_point) {
    Trace trace;
    const Job job = jobOf({polyline({{0, 0}, {100, 0}})});
    Executor executor(job, plainPens(), {}, {}, {}, trace);
    EXPECT_EQ(executor.advance(250'000, kNoAttention), Executor::Progress::Caught);
    executor.cut();
    auto rows = rowsOf(trace);
    ASSERT_EQ(rows.size(), 2u);
    EXPECT_NEAR(rows[1].at.x, 25, 1e-9);
    EXPECT_TRUE(rows[1].laser);
    EXPECT_NEAR(rows[1].ms, 250, 1e-9);
    EXPECT_EQ(executor.advance(kForEver, kNoAttention), Executor::Progress::Finished);
    rows = rowsOf(trace);
    ASSERT_EQ(rows.size(), 3u);
    EXPECT_NEAR(rows[2].ms, 1000, 1e-9);
    EXPECT_NEAR(executor.time().totalMs, 1000, 1e-9);
    EXPECT_EQ(executor.time().vertices, 2u);
}

TEST(Executor, cut_in_a_delay_or_on_a_vertex_adds_no_row) {
    PenTable pens = plainPens();
    pens[0].turnDelay = 1000;
    Trace trace;
    const Job job = jobOf({polyline({{0, 0}, {10, 0}, {20, 0}})});
    Executor executor(job, pens, {}, {}, {}, trace);
    executor.advance(100'000, kNoAttention);
    executor.cut();
    EXPECT_EQ(trace.size(), 2u);
    executor.advance(100'500, kNoAttention);
    executor.cut();
    EXPECT_EQ(trace.size(), 2u);
    EXPECT_EQ(executor.position(), (Point{10, 0}));
}

TEST(Executor, stop_accounts_for_the_part_that_was_done) {
    Trace trace;
    const Job job = jobOf({polyline({{10, 0}, {110, 0}})});
    Executor executor(job, plainPens(), {}, {}, {}, trace);
    executor.advance(260'000, kNoAttention);
    executor.stop();
    EXPECT_NEAR(executor.time().totalMs, 260, 1e-9);
    EXPECT_NEAR(executor.time().markMs, 250, 1e-9);
    EXPECT_NEAR(executor.time().markedMm, 25, 1e-9);
    EXPECT_NEAR(executor.position().x, 35, 1e-9);
    EXPECT_EQ(executor.advance(kForEver, kNoAttention), Executor::Progress::Finished);
    EXPECT_EQ(trace.size(), 2u);
}

TEST(Executor, attention_ends_an_advance_after_one_piece) {
    Trace trace;
    const Job job = randomJob(3, 20);
    Executor executor(job, plainPens(), {}, {}, {}, trace);
    EXPECT_EQ(executor.advance(kForEver, kAttention), Executor::Progress::Interrupted);
    EXPECT_LE(trace.size(), 1u);
}

TEST(Executor, repeated_pass_on_the_fly_begins_where_the_head_has_followed_to) {
    LoopSettings loop;
    loop.loop = true;
    loop.delayMs = 5;
    FlyMotion fly;
    fly.shift = fly.travel = {0.1, 0.0};
    Trace trace;
    const Job job = jobOf({polyline({{0, 0}, {10, 0}})});
    Executor executor(job, plainPens(), {}, loop, {}, trace, nullptr, fly);
    executor.advance(102'000, kNoAttention);
    EXPECT_NEAR(executor.commanded().x, 10 + 10.2, 1e-9); // in the wait
    // The pass took 105 ms, so the head is at 20.5 mm and needs 20.5 ms for the way back.
    executor.advance(105'000 + 20'500 + 50'000, kNoAttention);
    ASSERT_EQ(trace.size(), 1u);
    EXPECT_NEAR(trace.snapshot()[0].ms, 20.5, 1e-9);
    EXPECT_NEAR(executor.position().x, 5, 1e-9);
    EXPECT_NEAR(executor.commanded().x, 5 + 0.1 * 70.5, 1e-9);
}

TEST(Executor, loop_repeats_with_the_delay_between_passes) {
    LoopSettings loop;
    loop.loop = true;
    loop.delayMs = 5;
    Trace trace;
    // The first pass jumps 10 ms to the square and marks 400 ms; the others begin where it ended.
    const Job job = jobOf({square(10, 0, 10)});
    Executor executor(job, plainPens(), {}, loop, {}, trace);
    executor.advance((410 + 5 + 400 + 5 + 150) * 1000.0, kNoAttention);
    EXPECT_EQ(executor.passes(), 2u);
    EXPECT_NEAR(executor.passMs(), 150, 1e-6);
    EXPECT_NEAR(executor.time().totalMs, 400, 1e-9);
    const auto rows = rowsOf(trace);
    ASSERT_EQ(rows.size(), 2u); // arrival and the first corner of the third pass
    EXPECT_NEAR(rows[1].ms, 100, 1e-6);
}

TEST(Executor, stop_in_the_loop_delay_belongs_to_no_pass) {
    LoopSettings loop;
    loop.loop = true;
    loop.delayMs = 50;
    Trace trace;
    const Job job = jobOf({square(0, 0, 10)});
    Executor executor(job, plainPens(), {}, loop, {}, trace);
    executor.advance(420'000, kNoAttention);
    executor.stop();
    EXPECT_NEAR(executor.time().totalMs, 400, 1e-9);
    EXPECT_EQ(trace.size(), 5u);
}

TEST(Executor, loop_of_no_length_takes_its_shortest_time) {
    LoopSettings loop;
    loop.loop = true;
    Trace trace;
    const Job job = jobOf({polyline({{0, 0}})}, MarkKind::BorderPreview);
    Executor executor(job, plainPens(), {}, loop, {}, trace);
    executor.advance(10'000, kNoAttention);
    EXPECT_LE(executor.passes(), 101u);
    EXPECT_GE(executor.passes(), 99u);
}

TEST(Executor, far_points_stop_at_the_position_registers_limit) {
    Trace trace;
    const Job job = jobOf({polyline({{1e300, -1e300}, {0, 0}})});
    Executor executor(job, plainPens(), {}, {}, {}, trace);
    EXPECT_EQ(executor.advance(kForEver, kNoAttention), Executor::Progress::Finished);
    EXPECT_EQ(rowsOf(trace)[0].at, (Point{10000, -10000}));
    EXPECT_TRUE(std::isfinite(executor.time().totalMs));
}

TEST(SimClock, follows_the_wall_by_the_factor_without_drift) {
    using namespace std::chrono;
    SimClock clock;
    const SimClock::Wall start{seconds(1000)};
    clock.anchor(start, 500, 2.0);
    EXPECT_NEAR(clock.simAt(start + milliseconds(3)), 500 + 6000, 1e-6);
    EXPECT_NEAR(duration<double>(clock.wallAt(6500, start) - start).count(), 0.003, 1e-8);
    EXPECT_EQ(clock.wallAt(0, start), start);
}

TEST(SimClock, without_pace_has_no_limit_and_never_waits) {
    SimClock clock;
    const SimClock::Wall now{std::chrono::seconds(5)};
    clock.anchor(now, 0, 0.0);
    EXPECT_TRUE(clock.isUnpaced());
    EXPECT_TRUE(std::isinf(clock.simAt(now)));
    EXPECT_EQ(clock.wallAt(1e12, now), now);
}

TEST(SimClock, waits_at_most_an_hour_at_a_time) {
    SimClock clock;
    const SimClock::Wall now{std::chrono::seconds(5)};
    clock.anchor(now, 0, 1e-12);
    EXPECT_EQ(clock.wallAt(1e9, now), now + std::chrono::hours(1));
}
