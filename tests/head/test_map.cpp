// SPDX-License-Identifier: MIT
// The way of a place from the command to the workpiece, against numbers worked out by hand.
#include "simengine/card/headmap.h"
#include "simengine/card/headway.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstring>
#include <limits>
#include <set>
#include <vector>

using namespace sim;

namespace {

constexpr double kNear = 1e-9;

void expectNear(const Point& p, double x, double y, double within = kNear) {
    EXPECT_NEAR(p.x, x, within);
    EXPECT_NEAR(p.y, y, within);
}

/// A table file with `value` in every cell, then changed by `edit(column, row, dx, dy)`.
template<typename Edit>
std::vector<unsigned char> tableBytes(Edit edit) {
    std::vector<unsigned char> bytes(GridCorrection::kBytes);
    for (int j = 0; j < GridCorrection::kSide; ++j) {
        for (int i = 0; i < GridCorrection::kSide; ++i) {
            double cell[2] = {0.0, 0.0};
            edit(i, j, cell[0], cell[1]);
            std::memcpy(bytes.data() + 16 * (static_cast<std::size_t>(i) + 257 * static_cast<std::size_t>(j)), cell,
                        16);
        }
    }
    return bytes;
}

std::shared_ptr<const GridCorrection> parse(const std::vector<unsigned char>& bytes, double fieldX, double fieldY,
                                            std::string& error) {
    return GridCorrection::parse(bytes.data(), bytes.size(), fieldX, fieldY, error);
}

} // namespace

TEST(Head, each_value_does_what_it_tells) {
    SimHeadDistortion head;
    expectNear(distorted(head, {12, -34}, false), 12, -34);
    head.scaleX = 1.1;
    head.scaleY = -2.0;
    expectNear(distorted(head, {10, 20}, false), 11, -40);
    head = {};
    head.rotation = 90.0;
    expectNear(distorted(head, {10, 0}, false), 0, 10);
    head = {};
    head.offsetX = 1.5;
    head.offsetY = -2.5;
    expectNear(distorted(head, {10, 0}, false), 11.5, -2.5);
    head = {};
    head.barrel = 0.03;
    expectNear(distorted(head, {50, 0}, false), 51.5, 0);
    expectNear(distorted(head, {50, 50}, false), 53, 53);
    expectNear(distorted(head, {25, 0}, false), 25.1875, 0);
    head = {};
    head.trapezoidX = 0.01;
    expectNear(distorted(head, {50, 50}, false), 50.5, 50);
    expectNear(distorted(head, {50, -50}, false), 49.5, -50);
    head = {};
    head.trapezoidY = 0.01;
    expectNear(distorted(head, {50, 50}, false), 50, 50.5);
    expectNear(distorted(head, {-50, 50}, false), -50, 49.5);
    head = {};
    head.skew = 45.0;
    expectNear(distorted(head, {10, 20}, false), 30, 20);
}

TEST(Head, rotation_comes_before_the_offset_and_after_the_lens) {
    SimHeadDistortion head;
    head.rotation = 90.0;
    head.offsetX = 1.0;
    head.scaleX = 2.0;
    head.barrel = 0.03; // at 40 mm: times 1 + 0.03 * 0.64
    expectNear(distorted(head, {20, 0}, false), 1, 40 * 1.0192);
}

TEST(Head, the_pilot_beam_has_values_of_its_own) {
    SimHeadDistortion head;
    head.pilotScaleX = 1.01;
    head.pilotOffsetY = 0.5;
    expectNear(distorted(head, {10, 20}, false), 10, 20);
    expectNear(distorted(head, {10, 20}, true), 10.1, 20.5);
}

TEST(Head, far_places_stay_finite_and_in_order) {
    SimHeadDistortion head;
    head.barrel = 0.5;
    head.trapezoidX = head.trapezoidY = 0.4;
    head.scaleX = head.scaleY = 10.0;
    for (const double x : {-10000.0, 10000.0}) {
        const Point p = distorted(head, {x, x}, true);
        EXPECT_TRUE(std::isfinite(p.x) && std::isfinite(p.y));
        EXPECT_EQ(p.x > 0, x > 0);
    }
}

TEST(Head, values_out_of_their_limits_are_named) {
    const auto named = [](double SimHeadDistortion::*value, double set) {
        SimHeadDistortion head;
        head.*value = set;
        const HeadValueRow* row = invalidHeadValue(head);
        return std::string(row ? row->name : "");
    };
    EXPECT_EQ(invalidHeadValue({}), nullptr);
    EXPECT_EQ(named(&SimHeadDistortion::scaleX, 0.0), "scaleX");
    EXPECT_EQ(named(&SimHeadDistortion::scaleX, -1.0), "");
    EXPECT_EQ(named(&SimHeadDistortion::scaleY, 10.001), "scaleY");
    EXPECT_EQ(named(&SimHeadDistortion::barrel, 0.51), "barrel");
    EXPECT_EQ(named(&SimHeadDistortion::noise, -0.001), "noise");
    EXPECT_EQ(named(&SimHeadDistortion::seed, 1.5), "seed");
    EXPECT_EQ(named(&SimHeadDistortion::seed, 4294967295.0), "");
    EXPECT_EQ(named(&SimHeadDistortion::rotation, std::numeric_limits<double>::quiet_NaN()), "rotation");
    for (int i = 0; i < kHeadValueCount; ++i) {
        EXPECT_EQ(named(kHeadValueRows[i].value, kHeadValueRows[i].low), "") << kHeadValueRows[i].name;
        EXPECT_EQ(named(kHeadValueRows[i].value, kHeadValueRows[i].high), "") << kHeadValueRows[i].name;
        EXPECT_EQ(named(kHeadValueRows[i].value, std::numeric_limits<double>::infinity()), kHeadValueRows[i].name);
    }
}

TEST(Box, default_record_changes_nothing) {
    const BoxCorrection box;
    EXPECT_TRUE(box.isNeutral() && box.isStraight());
    expectNear(box.mirrorsFor({12, -34}, false), 12, -34);
    expectNear(box.mirrorsFor({12, -34}, true), 12, -34);
}

TEST(Box, each_term_does_what_it_tells) {
    BoxCorrection box;
    box.halfField = 50.0;
    box.mirrors[0].scale = 1.25;
    expectNear(box.mirrorsFor({10, 20}, false), 12.5, 20);
    box = {};
    box.halfField = 50.0;
    box.mirrors[0].barrel = 0.04;
    expectNear(box.mirrorsFor({50, 0}, false), 52, 0);
    expectNear(box.mirrorsFor({50, 50}, false), 54, 50);
    box = {};
    box.halfField = 50.0;
    box.mirrors[1].trapezoid = 0.02;
    expectNear(box.mirrorsFor({50, 50}, false), 50, 51);
    expectNear(box.mirrorsFor({-50, 50}, false), -50, 49);
    box = {};
    box.mirrors[0].parallelogram = 0.1;
    expectNear(box.mirrorsFor({10, 20}, false), 12, 20);
    box = {};
    box.angle = 90.0;
    box.offsetX = 1.0;
    expectNear(box.mirrorsFor({10, 0}, false), 1, 10);
}

TEST(Box, mirror_assignment_swaps_the_axes_and_each_block_stays_with_its_mirror) {
    BoxCorrection box;
    box.mirror1IsX = false;
    expectNear(box.mirrorsFor({10, 20}, false), 20, 10);
    box.mirrors[0].scale = 2.0; // mirror 1 has Y now
    expectNear(box.mirrorsFor({10, 20}, false), 40, 10);
    box.mirror1Reverse = true;
    expectNear(box.mirrorsFor({10, 20}, false), -40, 10);
    box = {};
    box.mirror2Reverse = true;
    expectNear(box.mirrorsFor({10, 20}, false), 10, -20);
}

TEST(Box, light_pairs_are_x_and_y_whichever_mirror_drives_x) {
    BoxCorrection box;
    box.light[0] = {2.0, 1.0};
    box.light[1] = {1.0, -3.0};
    expectNear(box.mirrorsFor({10, 20}, false), 10, 20);
    expectNear(box.mirrorsFor({10, 20}, true), 21, 17);
    box.mirror1IsX = false;
    expectNear(box.mirrorsFor({10, 20}, true), 17, 21);
}

TEST(Box, a_record_undoes_the_turn_shift_scale_and_skew_of_a_head_exactly) {
    SimHeadDistortion head;
    head.scaleX = 1.02;
    head.scaleY = -0.97;
    head.skew = 1.5;
    head.rotation = 3.0;
    BoxCorrection box;
    box.angle = -3.0;
    box.mirrors[0].scale = 1.0 / 1.02;
    box.mirrors[1].scale = 1.0 / 0.97;
    box.mirror2Reverse = true;
    const double lean = std::tan(1.5 * 3.14159265358979323846 / 180.0);
    box.mirrors[0].parallelogram = -lean;
    for (const Point p : {Point{40, 30}, Point{-50, 12}, Point{0, 0}})
        expectNear(distorted(head, box.mirrorsFor(p, false), false), p.x, p.y, 1e-9);
    head.offsetX = 0.7;
    box.offsetX = -0.7 * std::cos(3.0 * 3.14159265358979323846 / 180.0);
    box.offsetY = 0.7 * std::sin(3.0 * 3.14159265358979323846 / 180.0);
    expectNear(distorted(head, box.mirrorsFor({40, 30}, false), false), 40, 30, 1e-9);
}

TEST(Box, a_record_undoes_barrel_and_trapezoid_to_the_second_order) {
    SimHeadDistortion head;
    head.barrel = 0.03;
    head.trapezoidX = head.trapezoidY = 0.01;
    BoxCorrection box;
    box.halfField = 50.0;
    box.mirrors[0].barrel = box.mirrors[1].barrel = -0.03;
    box.mirrors[0].trapezoid = box.mirrors[1].trapezoid = -0.01;
    const Point corner = distorted(head, {50, 50}, false);
    EXPECT_GT(std::hypot(corner.x - 50, corner.y - 50), 4.5);
    const Point edge = distorted(head, box.mirrorsFor({50, 0}, false), false);
    EXPECT_LT(std::hypot(edge.x - 50, edge.y), 0.2);
    const Point inside = distorted(head, box.mirrorsFor({20, 20}, false), false);
    EXPECT_LT(std::hypot(inside.x - 20, inside.y - 20), 0.02);
}

TEST(Box, strange_numbers_are_harmless) {
    BoxCorrection box;
    box.halfField = 0.0; // terms without a field are not in use
    box.mirrors[0].barrel = 99.0;
    expectNear(box.mirrorsFor({10, 20}, false), 10, 20);
    EXPECT_TRUE(box.isStraight());
    box.offsetX = std::numeric_limits<double>::infinity();
    box.mirrors[1].scale = std::numeric_limits<double>::quiet_NaN();
    expectNear(box.sanitized().mirrorsFor({10, 20}, false), 10, 20);
    for (const double strange : {std::numeric_limits<double>::infinity(), std::numeric_limits<double>::quiet_NaN()}) {
        box = {};
        box.halfField = strange;
        box.mirrors[0].barrel = 0.04;
        expectNear(box.sanitized().mirrorsFor({55, 0}, false), 57.2, 0); // the shares are told at 55 mm
    }
    box = {};
    box.mirrors[0].scale = 1e9;
    expectNear(box.mirrorsFor({10, 20}, false), 10000, 20);
}

TEST(Grid, cells_lie_on_the_lattice_and_are_added_between_them) {
    std::string error;
    // dx of column 128 is 0.1, of 129 0.3, dy of row 64 is -0.2.
    const auto bytes = tableBytes([](int i, int j, double& dx, double& dy) {
        dx = i == 128 ? 0.1 : i == 129 ? 0.3 : 0.0;
        dy = j == 64 ? -0.2 : 0.0;
    });
    const auto grid = parse(bytes, 128.0, 256.0, error);
    ASSERT_TRUE(grid) << error;
    expectNear(grid->at({0, 0}), 0.1, 0); // lattice steps of 0.5 mm and 1 mm
    expectNear(grid->at({0.25, 0}), 0.2, 0);
    expectNear(grid->at({0.125, 0}), 0.15, 0);
    expectNear(grid->at({-0.25, 0}), 0.05, 0);
    expectNear(grid->at({10, -64}), 0, -0.2);
    expectNear(grid->at({10, -63.75}), 0, -0.15);
    expectNear(grid->at({0.25, -64.5}), 0.2, -0.1);
}

TEST(Grid, first_cell_is_the_lower_left_corner_and_columns_follow_first) {
    std::string error;
    const auto bytes = tableBytes([](int i, int j, double& dx, double& dy) {
        dx = i * 0.001;
        dy = j * 0.002;
    });
    const auto grid = parse(bytes, 100.0, 100.0, error);
    ASSERT_TRUE(grid) << error;
    expectNear(grid->at({-50, -50}), 0, 0);
    expectNear(grid->at({50, -50}), 0.256, 0);
    expectNear(grid->at({-50, 50}), 0, 0.512);
    expectNear(grid->at({50, 50}), 0.256, 0.512);
    expectNear(grid->at({12.34, -5.6}), (12.34 / 100 + 0.5) * 0.256, (-5.6 / 100 + 0.5) * 0.512);
}

TEST(Grid, outside_the_field_there_is_no_correction) {
    std::string error;
    const auto grid = parse(tableBytes([](int, int, double& dx, double&) { dx = 1.0; }), 100.0, 100.0, error);
    ASSERT_TRUE(grid);
    expectNear(grid->at({50, 0}), 1, 0);
    expectNear(grid->at({50.001, 0}), 0, 0);
    expectNear(grid->at({0, -50.001}), 0, 0);
    expectNear(grid->at({std::numeric_limits<double>::quiet_NaN(), 0}), 0, 0);
}

TEST(Grid, damaged_tables_are_refused_with_a_reason) {
    const auto good = tableBytes([](int, int, double&, double&) {});
    std::string error;
    EXPECT_TRUE(parse(good, 100, 100, error));
    for (const std::size_t size : {std::size_t(0), good.size() - 1, good.size() + 1}) {
        std::vector<unsigned char> bytes = good;
        bytes.resize(size);
        error.clear();
        EXPECT_FALSE(parse(bytes, 100, 100, error));
        EXPECT_NE(error.find("1056784"), std::string::npos) << error;
    }
    for (const double value :
         {std::numeric_limits<double>::quiet_NaN(), std::numeric_limits<double>::infinity(), 100.1}) {
        error.clear();
        const auto bytes =
            tableBytes([value](int i, int j, double&, double& dy) { dy = i == 3 && j == 200 ? value : 0.0; });
        EXPECT_FALSE(parse(bytes, 100, 100, error));
        EXPECT_NE(error.find("3, 200"), std::string::npos) << error;
    }
    for (const double edge :
         {0.0, -1.0, std::numeric_limits<double>::infinity(), std::numeric_limits<double>::quiet_NaN()})
        EXPECT_FALSE(parse(good, edge, 100, error));
}

TEST(Map, a_head_that_marks_where_it_is_told_needs_none) {
    EXPECT_FALSE(HeadMap::make({}, {}, nullptr, false, 0));
    SimHeadDistortion head;
    head.seed = 7; // without noise a seed is nothing
    EXPECT_FALSE(HeadMap::make(head, {}, nullptr, false, 0));
    head.noise = 0.001;
    EXPECT_TRUE(HeadMap::make(head, {}, nullptr, false, 0));
}

TEST(Map, table_comes_before_the_box_and_the_box_before_the_head) {
    std::string error;
    const auto grid = parse(tableBytes([](int, int, double& dx, double&) { dx = 1.0; }), 100, 100, error);
    BoxCorrection box;
    box.mirrors[0].scale = 2.0;
    SimHeadDistortion head;
    head.offsetX = 0.5;
    expectNear(HeadMap(head, box, grid, false, 0).withoutNoise({10, 0}), (10 + 1) * 2 + 0.5, 0);
}

TEST(Map, noise_is_normal_and_follows_from_seed_job_pass_and_place) {
    SimHeadDistortion head;
    head.noise = 0.005;
    head.seed = 42;
    const HeadMap map(head, {}, nullptr, false, 3);
    double sum = 0, square = 0, cross = 0;
    std::set<double> values;
    int beyond = 0;
    constexpr int kSide = 200;
    for (int i = 0; i < kSide; ++i) {
        for (int j = 0; j < kSide; ++j) {
            const Point n = map.noiseAt({i * 0.5, j * 0.5}, 0);
            sum += n.x + n.y;
            square += n.x * n.x + n.y * n.y;
            cross += n.x * n.y;
            beyond += std::fabs(n.x) > 3 * head.noise ? 1 : 0;
            values.insert(n.x);
        }
    }
    constexpr double kCount = 2.0 * kSide * kSide;
    EXPECT_NEAR(sum / kCount, 0.0, 4 * head.noise / std::sqrt(kCount));
    EXPECT_NEAR(std::sqrt(square / kCount), head.noise, 0.01 * head.noise);
    EXPECT_NEAR(cross / (kCount / 2) / (head.noise * head.noise), 0.0, 0.03);
    EXPECT_NEAR(beyond / (kCount / 2), 0.0027, 0.0012);
    EXPECT_EQ(values.size(), std::size_t(kSide) * kSide);

    const Point at{12.5, -3.25};
    EXPECT_EQ(map.noiseAt(at, 0), HeadMap(head, {}, nullptr, false, 3).noiseAt(at, 0));
    EXPECT_NE(map.noiseAt(at, 0), map.noiseAt(at, 1));
    EXPECT_NE(map.noiseAt(at, 0), HeadMap(head, {}, nullptr, false, 4).noiseAt(at, 0));
    head.seed = 43;
    EXPECT_NE(map.noiseAt(at, 0), HeadMap(head, {}, nullptr, false, 3).noiseAt(at, 0));
    EXPECT_EQ(map.noiseAt({0.0, 1}, 0), map.noiseAt({-0.0, 1}, 0));
}

TEST(Map, bent_ways_are_shown_in_parts_and_straight_ones_are_not) {
    SimHeadDistortion head;
    head.rotation = 10;
    head.scaleX = 1.1;
    EXPECT_EQ(HeadMap(head, {}, nullptr, false, 0).parts({0, 0}, {100, 0}), 1);
    head.barrel = 0.03;
    const HeadMap bent(head, {}, nullptr, false, 0);
    EXPECT_EQ(bent.parts({0, 0}, {100, 0}), 100);
    EXPECT_EQ(bent.parts({0, 0}, {0.4, 0}), 1);
    EXPECT_EQ(bent.parts({0, 0}, {0, 0}), 1);
    EXPECT_EQ(bent.parts({-10000, 0}, {10000, 0}), 1000);
}

TEST(Way, jobs_and_measurements_are_numbered_from_the_setting_of_the_head_on) {
    HeadWay way;
    SimHeadDistortion head;
    head.noise = 0.005;
    way.setDistortion(head);
    const auto first = way.beginJob(false);
    const auto second = way.beginJob(false);
    const std::uint64_t measured = way.beginMeasurement();
    EXPECT_NE(measured, way.beginMeasurement());
    ASSERT_TRUE(first && second);
    EXPECT_NE(first->noiseAt({1, 1}, 0), second->noiseAt({1, 1}, 0));
    way.setDistortion(head);
    EXPECT_EQ(first->noiseAt({1, 1}, 0), way.beginJob(false)->noiseAt({1, 1}, 0));
    EXPECT_EQ(measured, way.beginMeasurement());
}
