// SPDX-License-Identifier: MIT
// The outlines of a border preview: on the trace, and as the convex hull by itself.
#include "simengine/card/convexhull.h"
#include "tests/card/cardfixture.h"

#include <algorithm>
#include <cmath>
#include <random>

using namespace sim;
using namespace cardtest;

namespace {

constexpr double kNan = std::numeric_limits<double>::quiet_NaN();

PlanSettings border(BorderOutline outline, double speed = 0.0) {
    PlanSettings settings;
    settings.border = {outline, speed};
    return settings;
}

double cross(const Point& a, const Point& b, const Point& c) {
    return (b.x - a.x) * (c.y - a.y) - (b.y - a.y) * (c.x - a.x);
}

std::vector<Point> hullOf(const std::vector<Point>& points) {
    ConvexHull hull;
    for (const Point& point : points)
        hull.add(point);
    return hull.corners();
}

/// Corners of the hull by the definition: an edge has all points on its left, and nothing beyond its ends on its line.
std::vector<Point> hullByDefinition(const std::vector<Point>& points) {
    std::vector<Point> corners;
    for (const Point& a : points) {
        for (const Point& b : points) {
            if (a == b)
                continue;
            const bool edge = std::all_of(points.begin(), points.end(), [&](const Point& p) {
                const double side = cross(a, b, p);
                const double along = (p.x - a.x) * (b.x - a.x) + (p.y - a.y) * (b.y - a.y);
                const double whole = (b.x - a.x) * (b.x - a.x) + (b.y - a.y) * (b.y - a.y);
                return side > 0.0 || (side == 0.0 && along >= 0.0 && along <= whole);
            });
            if (edge)
                corners.push_back(a);
        }
    }
    const auto order = [](const Point& p, const Point& q) { return p.x < q.x || (p.x == q.x && p.y < q.y); };
    std::sort(corners.begin(), corners.end(), order);
    corners.erase(std::unique(corners.begin(), corners.end()), corners.end());
    return corners;
}

struct Row {
    const char* name;
    Job job;
    std::vector<Point> way; ///< rows of the trace, the jump first
};

std::ostream& operator<<(std::ostream& out, const Row& row) {
    return out << row.name;
}

std::vector<Row> rows() {
    const auto kind = MarkKind::BorderPreview;
    return {
        {"triangle", jobOf({polyline({{10, 0}, {30, 0}, {20, 15}})}, kind), {{10, 0}, {30, 0}, {20, 15}, {10, 0}}},
        {"of_several_strokes",
         jobOf({polyline({{0, 0}, {5, 5}}), polyline({{10, 0}}), polyline({{5, 2}, {5, 1}, {5, 10}})}, kind),
         {{0, 0}, {10, 0}, {5, 10}, {0, 0}}},
        {"square_with_points_on_its_edges",
         jobOf({polyline({{0, 0}, {5, 0}, {10, 0}, {10, 5}, {10, 10}, {5, 10}, {0, 10}, {0, 5}, {5, 5}})}, kind),
         {{0, 0}, {10, 0}, {10, 10}, {0, 10}, {0, 0}}},
        {"begins_at_the_lowest_of_the_leftmost",
         jobOf({polyline({{3, 8}, {-2, 6}, {-2, 1}, {4, 0}})}, kind),
         {{-2, 1}, {4, 0}, {3, 8}, {-2, 6}, {-2, 1}}},
        {"a_line_there_and_back", jobOf({polyline({{2, 2}, {0, 0}, {1, 1}})}, kind), {{0, 0}, {2, 2}, {0, 0}}},
        {"one_place_is_a_visit", jobOf({polyline({{7, 1}, {7, 1}})}, kind), {{7, 1}, {7, 1}}},
        {"invalid_points_are_left_out",
         jobOf({polyline({{kNan, 0}, {0, 0}, {0, kNan}, {4, 0}, {4, 3}}), polyline({{kNan, kNan}})}, kind),
         {{0, 0}, {4, 0}, {4, 3}, {0, 0}}},
        {"far_points_are_moved_to_the_limit",
         jobOf({polyline({{0, 0}, {1e9, 0}, {0, 1e9}})}, kind),
         {{0, 0}, {10000, 0}, {0, 10000}, {0, 0}}},
        {"nothing", jobOf({polyline({})}, kind), {}},
    };
}

class HullBorder : public ::testing::TestWithParam<Row> {};

} // namespace

TEST_P(HullBorder, is_on_the_trace) {
    const Row& row = GetParam();
    const auto [trace, time] = marked(row.job, plainPens(), border(BorderOutline::Hull));
    ASSERT_EQ(trace.size(), row.way.size());
    double length = 0.0;
    for (std::size_t i = 0; i < trace.size(); ++i) {
        EXPECT_EQ(trace[i].at, row.way[i]) << i;
        EXPECT_FALSE(trace[i].laser);
        EXPECT_EQ(trace[i].drawn, i > 0) << i;
        if (i > 0)
            length += distanceMm(row.way[i - 1], row.way[i]);
    }
    EXPECT_NEAR(time.markedMm, length, 1e-9);
    EXPECT_NEAR(time.markMs, length / 200.0 * 1000.0, 1e-6);
}

INSTANTIATE_TEST_SUITE_P(all, HullBorder, ::testing::ValuesIn(rows()),
                         [](const auto& row) { return std::string(row.param.name); });

TEST(Border, is_the_rectangle_unless_set) {
    const Job job = jobOf({polyline({{10, 0}, {30, 0}, {20, 15}})}, MarkKind::BorderPreview);
    const auto [trace, time] = marked(job, plainPens());
    const std::vector<Point> way{{10, 0}, {30, 0}, {30, 15}, {10, 15}, {10, 0}};
    ASSERT_EQ(trace.size(), way.size());
    for (std::size_t i = 0; i < way.size(); ++i)
        EXPECT_EQ(trace[i].at, way[i]) << i;
}

TEST(Border, that_is_measured_before_is_gone_round_without_a_look_at_the_points) {
    Job job = jobOf({polyline({{0, kNan}}, 1), polyline({{10, 0}, {30, 0}, {20, 15}}, 4)}, MarkKind::BorderPreview);
    for (const BorderOutline outline : {BorderOutline::Rectangle, BorderOutline::Hull}) {
        const auto before = marked(job, plainPens(), border(outline)).first;
        measureBorder(job, border(outline).border);
        ASSERT_TRUE(job.border);
        EXPECT_EQ(job.border->pen, 4);
        ASSERT_EQ(before.size(), job.border->corners.size());
        for (std::size_t i = 0; i < before.size(); ++i)
            EXPECT_EQ(job.border->corners[i], before[i].at);
        Job moved = job;
        moved.strokes[1].points = {{-100, -100}};
        const auto after = marked(moved, plainPens(), border(outline)).first;
        ASSERT_EQ(after.size(), before.size());
        for (std::size_t i = 0; i < before.size(); ++i)
            EXPECT_EQ(after[i].at, before[i].at);
        job.border.reset();
    }
    job.kind = MarkKind::RedPreview;
    measureBorder(job, {});
    EXPECT_FALSE(job.border);
}

TEST(Border, has_a_speed_of_its_own) {
    const Job job = jobOf({polyline({{0, 0}, {30, 0}, {30, 10}, {0, 10}}, 4)}, MarkKind::BorderPreview);
    PenTable pens = plainPens();
    pens[4].redSpeed = 400.0;
    const struct {
        double speed;
        double executed;
    } speeds[] = {{0.0, 400.0},      {-5.0, 400.0},    {kNan, 400.0}, {50.0, 50.0},
                  {1e-6, kMinSpeed}, {1e9, kMaxSpeed}, {800.0, 800.0}};
    for (const auto& row : speeds) {
        for (const BorderOutline outline : {BorderOutline::Rectangle, BorderOutline::Hull})
            EXPECT_NEAR(marked(job, pens, border(outline, row.speed)).second.markMs, 80.0 / row.executed * 1000.0, 1e-6)
                << row.speed;
    }
}

TEST(Border, leaves_the_speed_of_other_jobs_alone) {
    for (const MarkKind kind : {MarkKind::Laser, MarkKind::RedPreview}) {
        const Job job = jobOf({square(0, 0, 10)}, kind);
        EXPECT_EQ(marked(job, plainPens(), border(BorderOutline::Hull, 50.0)).second.markMs,
                  marked(job, plainPens()).second.markMs);
    }
}

TEST(Border, jumps_as_the_first_pen_says) {
    const Job job = jobOf({polyline({{20, 0}, {30, 0}, {20, 15}})}, MarkKind::BorderPreview);
    const auto [trace, time] = marked(job, plainPens(), border(BorderOutline::Hull, 50.0));
    EXPECT_NEAR(time.jumpMs, 20.0, 1e-9);
}

TEST_F(CardTest, a_looping_hull_is_gone_round_again_and_again) {
    card.setKind(MarkKind::BorderPreview);
    card.setBorder({BorderOutline::Hull, 500.0});
    card.setBufferLoop(true);
    card.setSpeed(10.0);
    auto run = start(jobOf({polyline({{0, 0}, {10, 0}, {5, 5}, {5, 2}})}), true);
    ASSERT_TRUE(waitFor([&] { return card.trace().snapshot().pass() > 3; }));
    card.stop();
    EXPECT_TRUE(run.get());
    EXPECT_NEAR(card.estimate(jobOf({polyline({{0, 0}, {10, 0}, {5, 5}, {5, 2}})})).markedMm, 10 + 2 * std::hypot(5, 5),
                1e-9);
}

TEST(ConvexHullTest, agrees_with_the_definition_on_small_sets) {
    std::mt19937 random(7);
    for (int round = 0; round < 3000; ++round) {
        const int count = static_cast<int>(random() % 12);
        const int grid = 2 + static_cast<int>(random() % 6);
        std::vector<Point> points;
        for (int i = 0; i < count; ++i)
            points.push_back({static_cast<double>(static_cast<int>(random()) % grid),
                              static_cast<double>(static_cast<int>(random()) % grid)});
        std::vector<Point> corners = hullOf(points);
        for (std::size_t i = 0; corners.size() > 2 && i < corners.size(); ++i)
            EXPECT_GT(cross(corners[i], corners[(i + 1) % corners.size()], corners[(i + 2) % corners.size()]), 0.0);
        std::sort(corners.begin(), corners.end(),
                  [](const Point& p, const Point& q) { return p.x < q.x || (p.x == q.x && p.y < q.y); });
        std::vector<Point> expected = hullByDefinition(points);
        if (expected.empty() && !points.empty())
            expected = {points.front()};
        ASSERT_EQ(corners, expected) << round;
    }
}

TEST(ConvexHullTest, of_many_points_is_that_of_the_outermost) {
    std::mt19937 random(11);
    std::uniform_real_distribution<double> within(-50.0, 50.0);
    std::vector<Point> points;
    for (int i = 0; i < 200000; ++i)
        points.push_back({within(random), within(random)});
    const std::vector<Point> corners{{-60, -60}, {60, -60}, {60, 60}, {-60, 60}};
    for (std::size_t i = 0; i < corners.size(); ++i)
        points.insert(points.begin() + static_cast<std::ptrdiff_t>(i * 49999), corners[i]);
    EXPECT_EQ(hullOf(points), corners);
}

/// All points are corners: none is lost when the batches are reduced.
TEST(ConvexHullTest, of_a_circle_keeps_every_vertex) {
    constexpr int kVertices = 20000;
    std::vector<Point> points;
    for (int i = 0; i < kVertices; ++i) {
        const double angle = i * 2.0 * M_PI / kVertices;
        points.push_back({50 * std::cos(angle), 50 * std::sin(angle)});
    }
    EXPECT_EQ(hullOf(points).size(), static_cast<std::size_t>(kVertices));
}
