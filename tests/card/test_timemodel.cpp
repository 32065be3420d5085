// SPDX-License-Identifier: MIT
#include "cardfixture.h"

#include "simengine/card/timemodel.h"

#include <cmath>
#include <limits>

using namespace cardtest;
using namespace sim;

namespace {

constexpr double kNan = std::numeric_limits<double>::quiet_NaN();
constexpr double kInfinity = std::numeric_limits<double>::infinity();

/// A case worked out by hand: pen 0 as changed, a job, and where the milliseconds go. The head starts at (0, 0).
struct Row {
    const char* name;
    void (*change)(PenParams& pen);
    Job job;
    double jumpMs;
    double markMs;
    double delayMs;
    std::size_t vertices;
};

void unchanged(PenParams&) {}

std::vector<Row> rows() {
    const Stroke line = polyline({{10, 0}, {20, 0}});
    return {
        {"line", unchanged, jobOf({line}), 10, 100, 0, 2},
        {"laser_on_delay", [](PenParams& p) { p.openLaserDelay = 150; }, jobOf({line}), 10, 100, 0.15, 2},
        {"laser_off_delay", [](PenParams& p) { p.closeLaserDelay = 250; }, jobOf({line}), 10, 100, 0.25, 2},
        {"negative_laser_delays_cost_nothing",
         [](PenParams& p) { p.openLaserDelay = p.closeLaserDelay = p.endDelay = p.turnDelay = -500; },
         jobOf({square(10, 0, 10)}), 10, 400, 0, 5},
        {"mark_delay_once_a_stroke", [](PenParams& p) { p.markDelay = 300; }, jobOf({line, line}), 20, 200, 0.6, 4},
        {"end_delay_once_a_job", [](PenParams& p) { p.endDelay = 400; }, jobOf({line, line}), 20, 200, 0.4, 4},
        {"corner_delay_at_inner_vertices", [](PenParams& p) { p.turnDelay = 50; }, jobOf({square(10, 0, 10)}), 10, 400,
         0.15, 5},
        {"no_corner_on_a_single_line", [](PenParams& p) { p.turnDelay = 50; }, jobOf({line}), 10, 100, 0, 2},
        {"jump_delay_half_way",
         [](PenParams& p) {
             p.minJumpDelay = 100;
             p.maxJumpDelay = 500;
             p.maxJumpDelayDist = 20;
         },
         jobOf({line}), 10, 100, 0.3, 2},
        {"jump_delay_from_maximum_distance_on",
         [](PenParams& p) {
             p.minJumpDelay = 100;
             p.maxJumpDelay = 500;
             p.maxJumpDelayDist = 10;
         },
         jobOf({line}), 10, 100, 0.5, 2},
        {"jump_delay_up_to_minimum_distance",
         [](PenParams& p) {
             p.minJumpDelay = 100;
             p.maxJumpDelay = 500;
             p.minJumpDelayDist = 10;
             p.maxJumpDelayDist = 20;
         },
         jobOf({line}), 10, 100, 0.1, 2},
        {"jump_delay_between_both_distances",
         [](PenParams& p) {
             p.minJumpDelay = 100;
             p.maxJumpDelay = 500;
             p.minJumpDelayDist = 8;
             p.maxJumpDelayDist = 16;
         },
         jobOf({line}), 10, 100, 0.2, 2},
        {"no_jump_no_jump_delay", [](PenParams& p) { p.minJumpDelay = p.maxJumpDelay = 500; },
         jobOf({polyline({{0, 0}, {10, 0}}), polyline({{10, 0}, {20, 0}})}), 0, 200, 0, 4},
        {"count_repeats_an_open_line_with_a_jump_back", [](PenParams& p) { p.markCount = 3; }, jobOf({line}), 30, 300,
         0, 6},
        {"count_repeats_a_closed_line_without_a_jump", [](PenParams& p) { p.markCount = 3; },
         jobOf({square(10, 0, 10)}), 10, 1200, 0, 15},
        {"count_below_one_is_one", [](PenParams& p) { p.markCount = 0; }, jobOf({line}), 10, 100, 0, 2},
        {"count_repeats_the_strokes_of_an_object_together", [](PenParams& p) { p.markCount = 2; },
         jobOf({polyline({{10, 0}, {20, 0}}, 0, 7), polyline({{20, 10}, {10, 10}}, 0, 7)}), 10 + 10 + 10 + 10, 400, 0,
         8},
        {"point_takes_the_pens_point_time", [](PenParams& p) { p.pointTime = 1500; }, jobOf({polyline({{10, 0}})}), 10,
         1.5, 0, 2},
        {"point_has_no_laser_delays_but_the_mark_delay",
         [](PenParams& p) {
             p.openLaserDelay = p.closeLaserDelay = 700;
             p.markDelay = 40;
         },
         jobOf({polyline({{10, 0}})}), 10, 1.0, 0.04, 2},
        {"zero_speed_is_raised_to_the_floor", [](PenParams& p) { p.markSpeed = 0; },
         jobOf({polyline({{10, 0}, {11, 0}})}), 10, 1 / kMinSpeed * 1000, 0, 2},
        {"negative_speed_is_raised_to_the_floor", [](PenParams& p) { p.jumpSpeed = -5; },
         jobOf({polyline({{1, 0}, {2, 0}})}), 1 / kMinSpeed * 1000, 10, 0, 2},
        {"invalid_speed_is_raised_to_the_floor", [](PenParams& p) { p.markSpeed = kNan; },
         jobOf({polyline({{10, 0}, {11, 0}})}), 10, 1 / kMinSpeed * 1000, 0, 2},
        {"endless_speed_is_cut", [](PenParams& p) { p.markSpeed = kInfinity; }, jobOf({polyline({{10, 0}, {20, 0}})}),
         10, 10 / kMaxSpeed * 1000, 0, 2},
        {"invalid_points_are_left_out", unchanged,
         jobOf({polyline({{kNan, 0}, {10, 0}, {kInfinity, 3}, {20, 0}, {0, kNan}}), polyline({{kNan, kNan}})}), 10, 100,
         0, 2},
        {"red_preview_goes_at_red_speed_without_delays",
         [](PenParams& p) {
             p.openLaserDelay = p.closeLaserDelay = p.turnDelay = p.markDelay = p.endDelay = 900;
             p.markCount = 4;
             p.wobbleEnable = true;
         },
         jobOf({square(10, 0, 10)}, MarkKind::RedPreview), 10, 200, 0, 5},
        {"border_preview_goes_round_everything", unchanged,
         jobOf({polyline({{10, 0}, {12, 4}}), polyline({{30, -5}})}, MarkKind::BorderPreview), std::hypot(10, 5),
         2 * (20 + 9) / 200.0 * 1000, 0, 5},
        {"border_of_one_point_is_a_visit", unchanged, jobOf({polyline({{10, 0}})}, MarkKind::BorderPreview), 10, 0, 0,
         5},
        {"empty_job", [](PenParams& p) { p.endDelay = 500; }, jobOf({}), 0, 0, 0, 0},
        {"empty_border", unchanged, jobOf({polyline({})}, MarkKind::BorderPreview), 0, 0, 0, 0},
        {"unknown_pen_is_pen_0", [](PenParams& p) { p.markSpeed = 50; },
         jobOf({polyline({{10, 0}, {20, 0}}, 20), polyline({{10, 0}, {20, 0}}, -1)}), 20, 400, 0, 4},
    };
}

class TimeModel : public ::testing::TestWithParam<Row> {};

} // namespace

TEST_P(TimeModel, agrees_with_the_sum_by_hand) {
    const Row& row = GetParam();
    PenTable pens = plainPens();
    row.change(pens[0]);
    const JobTime time = estimate(row.job, pens);
    EXPECT_NEAR(time.jumpMs, row.jumpMs, 1e-9);
    EXPECT_NEAR(time.markMs, row.markMs, 1e-6);
    EXPECT_NEAR(time.delayMs, row.delayMs, 1e-9);
    EXPECT_NEAR(time.totalMs, row.jumpMs + row.markMs + row.delayMs, 1e-6);
    EXPECT_EQ(time.vertices, row.vertices);
}

INSTANTIATE_TEST_SUITE_P(Rows, TimeModel, ::testing::ValuesIn(rows()),
                         [](const auto& row) { return std::string(row.param.name); });

TEST(TimeModelPens, each_pen_has_its_own_speed_and_a_change_takes_time) {
    PenTable pens = plainPens();
    pens[1].markSpeed = 50;
    pens[1].endDelay = 600;
    PlanSettings settings;
    settings.penChangeDelayMs = 7;
    const Job job =
        jobOf({polyline({{0, 0}, {10, 0}}, 0), polyline({{10, 0}, {20, 0}}, 0), polyline({{20, 0}, {30, 0}}, 1)});
    const JobTime time = estimate(job, pens, {}, settings);
    EXPECT_NEAR(time.markMs, 100 + 100 + 200, 1e-9);
    EXPECT_NEAR(time.delayMs, 7 + 0.6, 1e-9);
}

TEST(TimeModelPens, previews_change_pens_without_delay) {
    PlanSettings settings;
    settings.penChangeDelayMs = 7;
    const Job job = jobOf({polyline({{0, 0}, {10, 0}}, 0), polyline({{10, 0}, {20, 0}}, 1)}, MarkKind::RedPreview);
    EXPECT_EQ(estimate(job, plainPens(), {}, settings).delayMs, 0);
}

TEST(TimeModelPens, invalid_pen_change_delay_is_none) {
    const Job job = jobOf({polyline({{0, 0}, {10, 0}}, 0), polyline({{10, 0}, {20, 0}}, 1)});
    for (double ms : {kNan, -3.0, kInfinity}) {
        PlanSettings settings;
        settings.penChangeDelayMs = ms;
        EXPECT_EQ(estimate(job, plainPens(), {}, settings).delayMs, 0);
    }
}

TEST(TimeModelPoint, given_dwell_wins_over_the_pens_point_time) {
    Job job = jobOf({polyline({{0, 0}})});
    job.strokes[0].dwellUs = 250;
    EXPECT_NEAR(estimate(job, plainPens()).markMs, 0.25, 1e-12);
    job.strokes[0].dwellUs = 0;
    EXPECT_EQ(estimate(job, plainPens()).markMs, 0);
    job.strokes[0].dwellUs = kNan;
    EXPECT_NEAR(estimate(job, plainPens()).markMs, 1.0, 1e-12);
}

TEST(TimeModelObject, another_pen_ends_the_object) {
    PenTable pens = plainPens();
    pens[0].markCount = 2;
    // Stroke 1 has another pen: 0, 0 again, then 1 once.
    const Job job = jobOf({polyline({{0, 0}, {10, 0}}, 0, 3), polyline({{10, 0}, {20, 0}}, 1, 3)});
    const JobTime time = estimate(job, pens);
    EXPECT_NEAR(time.markMs, 300, 1e-9);
    EXPECT_NEAR(time.jumpMs, 10, 1e-9);
}

TEST(TimeModelObject, huge_count_on_a_stroke_without_points_ends_at_once) {
    PenTable pens = plainPens();
    pens[0].markCount = 99999999;
    EXPECT_EQ(estimate(jobOf({polyline({}), polyline({{kNan, 0}})}), pens).totalMs, 0);
}

TEST(TimeModelWobble, factor_is_the_length_of_the_beams_path) {
    for (const auto& [diameter, spacing] : {std::pair{0.2, 0.1}, {1.0, 0.5}, {0.01, 2.0}, {5.0, 0.05}}) {
        PenParams pen;
        pen.wobbleEnable = true;
        pen.wobbleDiameter = diameter;
        pen.wobbleSpacing = spacing;
        // One turn added up from short straight pieces.
        constexpr int kPieces = 200000;
        double length = 0;
        Point last{diameter / 2, 0};
        for (int i = 1; i <= kPieces; ++i) {
            const double angle = 2 * M_PI * i / kPieces;
            const Point next{spacing * i / kPieces + diameter / 2 * std::cos(angle), diameter / 2 * std::sin(angle)};
            length += distanceMm(last, next);
            last = next;
        }
        EXPECT_NEAR(wobbleFactor(sanitized(pen)), length / spacing, 1e-4 * length / spacing);
    }
}

TEST(TimeModelWobble, lengthens_marking_only) {
    PenTable pens = plainPens();
    pens[0].wobbleEnable = true;
    pens[0].wobbleDiameter = 1.0;
    pens[0].wobbleSpacing = 0.01;
    const JobTime time = estimate(jobOf({polyline({{10, 0}, {20, 0}})}), pens);
    // Circles of pi mm every 0.01 mm; the advance adds next to nothing.
    EXPECT_NEAR(time.markMs, 100 * M_PI / 0.01, 100 * M_PI / 0.01 * 1e-3);
    EXPECT_NEAR(time.jumpMs, 10, 1e-9);
    EXPECT_NEAR(time.markedMm, 10, 1e-9);
}

TEST(TimeModelWobble, values_outside_the_limits_are_moved_to_them) {
    PenParams pen;
    pen.wobbleDiameter = kNan;
    pen.wobbleSpacing = 0;
    EXPECT_EQ(sanitized(pen).wobbleDiameter, kMinWobble);
    EXPECT_EQ(sanitized(pen).wobbleSpacing, kMinWobble);
    pen.wobbleDiameter = 1e9;
    EXPECT_EQ(sanitized(pen).wobbleDiameter, kMaxWobble);
}

TEST(TimeModelLength, counts_marked_and_jumped_millimetres) {
    const JobTime time = estimate(jobOf({square(3, 4, 10)}), plainPens());
    EXPECT_NEAR(time.jumpedMm, 5, 1e-9);
    EXPECT_NEAR(time.markedMm, 40, 1e-9);
}
