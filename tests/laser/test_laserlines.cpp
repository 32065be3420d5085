// SPDX-License-Identifier: MIT
#include "simengine/lasers/laserlines.h"

#include <atomic>
#include <gtest/gtest.h>
#include <thread>

using namespace sim;

namespace {

constexpr std::uint32_t k22 = 1u << 22;
constexpr std::uint32_t k23 = 1u << 23;

/// A laser whose clock the test turns.
class LaserLinesTest : public ::testing::Test {
protected:
    IoBank io;
    FaultBank faults;
    std::atomic<double> wallMs{1000.0};
    std::atomic<double> speed{1.0};
    DeviceClock clock{[this] { return speed.load(); }, [this] { return wallMs.load(); }};
    LaserLines laser{io, faults, clock};

    void pass(double ms) { wallMs = wallMs + ms; }
};

} // namespace

TEST_F(LaserLinesTest, a_silent_laser_drives_no_line) {
    io.setOutput(23, true);
    io.setOutput(26, true);
    EXPECT_EQ(io.inputs(), 0u);
}

TEST_F(LaserLinesTest, yls_is_ready_2500_ms_after_its_last_enable) {
    laser.fit(LaserKind::Yls);
    EXPECT_EQ(io.inputs(), k22);
    io.setOutput(23, true);
    pass(1000);
    io.setOutput(26, true);
    pass(2499);
    EXPECT_EQ(io.inputs(), k22);
    pass(1);
    EXPECT_EQ(io.inputs(), 0u);
}

TEST_F(LaserLinesTest, yls_takes_its_ready_back_with_either_enable) {
    laser.fit(LaserKind::Yls);
    for (int line : {23, 26}) {
        io.setOutput(23, true);
        io.setOutput(26, true);
        pass(2500);
        EXPECT_EQ(io.inputs(), 0u);
        io.setOutput(line, false);
        EXPECT_EQ(io.inputs(), k22);
    }
}

TEST_F(LaserLinesTest, sn_is_ready_by_the_remote_start_and_emits_by_the_shutter) {
    laser.fit(LaserKind::Sn);
    EXPECT_EQ(io.inputs(), k22 | k23);
    io.setOutput(26, true);
    pass(1499);
    EXPECT_EQ(io.inputs(), k22 | k23);
    pass(1);
    EXPECT_EQ(io.inputs(), k22);
    io.setOutput(23, true);
    pass(499);
    EXPECT_EQ(io.inputs(), k22);
    pass(1);
    EXPECT_EQ(io.inputs(), 0u);
    io.setOutput(23, false);
    EXPECT_EQ(io.inputs(), k22);
    io.setOutput(26, false);
    EXPECT_EQ(io.inputs(), k22 | k23);
}

TEST_F(LaserLinesTest, sn_does_not_emit_before_it_is_ready) {
    laser.fit(LaserKind::Sn);
    io.setOutput(23, true);
    io.setOutput(26, true);
    pass(1999);
    EXPECT_EQ(io.inputs(), k22);
    pass(1);
    EXPECT_EQ(io.inputs(), 0u);
}

TEST_F(LaserLinesTest, a_level_written_again_does_not_begin_anew) {
    laser.fit(LaserKind::Yls);
    io.setOutput(23, true);
    io.setOutput(26, true);
    pass(2000);
    io.setOutput(26, true);
    pass(500);
    EXPECT_EQ(io.inputs(), 0u);
}

TEST_F(LaserLinesTest, faults_hold_their_line_and_nothing_else) {
    laser.fit(LaserKind::Sn);
    io.setOutput(26, true);
    io.setOutput(23, true);
    pass(2000);
    EXPECT_TRUE(faults.set("laser_no_ready", true));
    EXPECT_EQ(io.inputs(), k23);
    EXPECT_TRUE(faults.set("laser_no_emission", true));
    EXPECT_EQ(io.inputs(), k22 | k23);
    faults.clear();
    EXPECT_EQ(io.inputs(), 0u);
    laser.fit(LaserKind::Yls);
    pass(2500);
    EXPECT_EQ(io.inputs(), 0u);
    faults.set("laser_no_emission", true);
    EXPECT_EQ(io.inputs(), 0u);
    faults.set("laser_no_ready", true);
    EXPECT_EQ(io.inputs(), k22);
}

TEST_F(LaserLinesTest, times_are_those_of_the_simulated_clock) {
    laser.fit(LaserKind::Yls);
    speed = 10.0;
    EXPECT_EQ(io.inputs(), k22);
    io.setOutput(23, true);
    io.setOutput(26, true);
    pass(249);
    EXPECT_EQ(io.inputs(), k22);
    pass(1);
    EXPECT_EQ(io.inputs(), 0u);
}

TEST_F(LaserLinesTest, without_a_limit_of_speed_it_answers_at_the_next_look_and_stays) {
    laser.fit(LaserKind::Yls);
    speed = 0.0;
    io.setOutput(23, true);
    io.setOutput(26, true);
    EXPECT_EQ(io.inputs(), 0u);
    speed = 1.0;
    EXPECT_EQ(io.inputs(), 0u);
}

TEST_F(LaserLinesTest, lines_set_from_outside_are_seen_beside_the_lasers) {
    laser.fit(LaserKind::Yls);
    io.setInputs(3);
    EXPECT_EQ(io.inputs(), 3u | k22);
    io.setInputs(0);
    EXPECT_EQ(io.inputs(), k22);
    EXPECT_TRUE(io.input(22));
    io.setInput(22, true);
    io.setOutput(23, true);
    io.setOutput(26, true);
    pass(2500);
    EXPECT_EQ(io.inputs(), k22) << "held from outside";
}

TEST_F(LaserLinesTest, enables_that_are_on_count_from_the_fitting) {
    io.setOutput(23, true);
    io.setOutput(26, true);
    pass(60'000);
    laser.fit(LaserKind::Yls);
    EXPECT_EQ(io.inputs(), k22);
    pass(2500);
    EXPECT_EQ(io.inputs(), 0u);
    laser.fit(LaserKind::Yls);
    EXPECT_EQ(io.inputs(), 0u) << "the same laser goes on";
}

TEST(LaserLines, leaves_no_trace_when_it_goes) {
    IoBank io;
    FaultBank faults;
    {
        const DeviceClock clock([] { return 1.0; });
        LaserLines laser(io, faults, clock);
        laser.fit(LaserKind::Sn);
        EXPECT_EQ(io.inputs(), k22 | k23);
    }
    EXPECT_EQ(io.inputs(), 0u);
    EXPECT_TRUE(io.setOutput(26, true));
}

namespace {

constexpr std::uint32_t bits(std::initializer_list<int> lines) {
    std::uint32_t word = 0;
    for (const int bit : lines)
        word |= 1u << bit;
    return word;
}

LaserAlarmWiring coded(bool fibre, bool level) {
    LaserAlarmWiring wiring;
    wiring.used = true;
    wiring.fibre = fibre;
    wiring.type = LaserAlarmWiring::kCoded;
    wiring.codedLevel = level;
    return wiring;
}

} // namespace

TEST_F(LaserLinesTest, a_coded_laser_tells_its_fault_on_two_lines) {
    struct Row {
        bool fibre;
        bool level;
        std::uint32_t good;
        std::uint32_t hot;
        std::uint32_t dark;
    };
    for (const Row& row :
         {Row{true, false, bits({22, 23}), 0, bits({22})}, Row{true, true, 0, bits({22, 23}), bits({23})},
          Row{false, false, bits({27, 3}), 0, bits({27})}, Row{false, true, 0, bits({27, 3}), bits({3})}}) {
        laser.wireAlarm(coded(row.fibre, row.level));
        EXPECT_EQ(io.inputs(), row.good);
        faults.set("laser_pd", true);
        EXPECT_EQ(io.inputs(), row.dark);
        faults.set("laser_temperature", true);
        EXPECT_EQ(io.inputs(), row.hot);
        faults.clear();
        EXPECT_EQ(io.inputs(), row.good);
    }
}

TEST_F(LaserLinesTest, a_custom_laser_tells_its_faults_by_the_level_of_each_channel) {
    LaserAlarmWiring wiring;
    wiring.used = true;
    wiring.wired = {false, true, true, true}; // inputs 3, 4 and 5
    wiring.level = {true, true, true, false};
    laser.wireAlarm(wiring);
    EXPECT_EQ(io.inputs(), bits({5}));
    faults.set("laser_temperature", true);
    EXPECT_EQ(io.inputs(), bits({3, 5}));
    faults.clear();
    faults.set("laser_pd", true);
    EXPECT_EQ(io.inputs(), 0u);
}

TEST_F(LaserLinesTest, fault_lines_are_those_of_the_wiring_alone) {
    LaserAlarmWiring wiring = coded(true, false);
    wiring.used = false;
    laser.wireAlarm(wiring);
    EXPECT_EQ(io.inputs(), 0u);
    wiring.used = true;
    wiring.type = 3;
    laser.wireAlarm(wiring);
    faults.set("laser_pd", true);
    EXPECT_EQ(io.inputs(), 0u);
    wiring.type = LaserAlarmWiring::kCustom; // with no channel
    laser.wireAlarm(wiring);
    EXPECT_EQ(io.inputs(), 0u);
}

TEST_F(LaserLinesTest, the_reset_output_clears_the_laser_with_its_rising_edge) {
    LaserAlarmWiring wiring = coded(false, true);
    wiring.resetOutput = 7;
    io.setOutput(7, true);
    laser.wireAlarm(wiring);
    faults.set("laser_temperature", true);
    faults.set("laser_pd", true);
    io.setOutput(7, true); // no edge
    io.setOutput(6, true);
    io.setOutput(7, false);
    EXPECT_EQ(io.inputs(), bits({27, 3}));
    io.setOutput(7, true);
    EXPECT_EQ(io.inputs(), 0u);
    EXPECT_FALSE(faults.isOn("laser_temperature"));
    EXPECT_FALSE(faults.isOn("laser_pd"));
    wiring.resetOutput = -1;
    laser.wireAlarm(wiring);
    faults.set("laser_pd", true);
    io.setOutput(7, false);
    io.setOutput(7, true);
    EXPECT_EQ(io.inputs(), bits({3}));
}

/// The poll, the panel and the program's own thread at once.
TEST_F(LaserLinesTest, many_threads_read_write_and_switch_faults) {
    laser.fit(LaserKind::Sn);
    speed = 0.0;
    std::atomic<bool> end{false};
    std::thread reader([&] {
        while (!end)
            EXPECT_EQ(io.inputs() & ~(k22 | k23), 0u);
    });
    std::thread switcher([&] {
        for (int i = 0; i < 2000; ++i)
            faults.set("laser_no_ready", i % 2);
    });
    std::thread fitter([&] {
        for (int i = 0; i < 2000; ++i)
            laser.fit(i % 2 ? LaserKind::Yls : LaserKind::Sn);
    });
    for (int i = 0; i < 2000; ++i)
        io.setOutput(i % 3 ? 23 : 26, i % 2);
    switcher.join();
    fitter.join();
    end = true;
    reader.join();
    laser.fit(LaserKind::Sn);
    faults.clear();
    io.setOutput(23, true);
    io.setOutput(26, true);
    EXPECT_EQ(io.inputs(), 0u);
}
