// SPDX-License-Identifier: MIT
// What stands beside the card, on a clock that the test turns: the encoder of marking on the fly and the beam splitter.
#include "cardfixture.h"
#include "simengine/card/beamsplitter.h"
#include "simengine/card/flyencoder.h"
#include "simengine/card/markedrows.h"

#include <cmath>

using namespace sim;
using namespace cardtest;

namespace {

class DeviceTest : public ::testing::Test {
protected:
    std::atomic<double> wallMs{1000.0};
    std::atomic<double> speed{1.0};
    std::atomic<bool> emits{false};
    FaultBank faults;
    DeviceClock clock{[this] { return speed.load(); }, [this] { return wallMs.load(); }};
    FlyEncoder encoder{clock, faults};
    BeamSplitter splitter{clock, faults, [this] { return emits.load(); }};

    void pass(double ms) { wallMs = wallMs + ms; }

    /// Results of the read command.
    struct Words {
        std::uint32_t status = 0;
        std::uint32_t position = 0;
    };
    Words read(int index) {
        int first = 0;
        int second = 0;
        EXPECT_TRUE(splitter.command(0x4955, index, 0, first, second));
        return {static_cast<std::uint32_t>(first), static_cast<std::uint32_t>(second)};
    }
    void send(int code, int a, int b) {
        int first = 0;
        int second = 0;
        EXPECT_TRUE(splitter.command(code, a, b, first, second));
    }
    static FlySettings fly() {
        FlySettings settings;
        settings.enabled = true;
        return settings;
    }
};

constexpr std::uint32_t kOrder = 0x1Fu << 20; ///< the five lights that are lit with everything in order

} // namespace

TEST_F(DeviceTest, device_clock_goes_by_the_speed) {
    const double begin = clock.now();
    pass(10);
    EXPECT_EQ(clock.now() - begin, 10.0);
    speed = 4.0;
    EXPECT_EQ(clock.now() - begin, 10.0);
    pass(10);
    EXPECT_EQ(clock.now() - begin, 50.0);
    speed = 0.0;
    EXPECT_EQ(clock.now() - begin, 50.0 + DeviceClock::kLeapMs);
    pass(10);
    EXPECT_EQ(clock.pacedMs() - begin, 50.0);
    speed = 1.0;
    EXPECT_GE(clock.now() - begin, 50.0 + 2 * DeviceClock::kLeapMs);
    pass(10);
    EXPECT_EQ(clock.pacedMs() - begin, 60.0);
}

/// A factor that comes later says nothing about the time before it.
TEST_F(DeviceTest, time_before_a_change_of_the_speed_goes_by_the_speed_of_then) {
    clock.now();
    pass(1000);
    speed = 100.0;
    EXPECT_EQ(clock.now(), 1000.0);
    pass(1);
    EXPECT_EQ(clock.now(), 1100.0);
}

TEST_F(DeviceTest, encoder_of_the_belt_counts_its_way) {
    FlySettings settings = fly();
    settings.outer = true;
    encoder.set(settings);
    EXPECT_TRUE(encoder.setBeltSpeed(250.0));
    EXPECT_TRUE(encoder.setBeltPulses(100.0));
    pass(1000);
    EXPECT_EQ(encoder.count(), 25000);
    EXPECT_EQ(encoder.pulsesPerMs(), 25.0);
    settings.outerReverse = true;
    encoder.set(settings);
    pass(400);
    EXPECT_EQ(encoder.count(), 15000);
    encoder.setCount(-7);
    EXPECT_EQ(encoder.count(), -7);
    EXPECT_TRUE(encoder.setBeltSpeed(-250.0));
    pass(2);
    EXPECT_EQ(encoder.count(), 43);
}

TEST_F(DeviceTest, inner_encoder_counts_its_own_pulses_and_only_when_it_is_on) {
    FlySettings settings = fly();
    settings.innerPeriodUs = 500;
    encoder.set(settings);
    pass(1000);
    EXPECT_EQ(encoder.count(), 0);
    settings.innerEnabled = true;
    encoder.set(settings);
    pass(1000);
    EXPECT_EQ(encoder.count(), 2000);
    settings.innerReverse = true;
    encoder.set(settings);
    pass(1500);
    EXPECT_EQ(encoder.count(), -1000);
}

TEST_F(DeviceTest, encoder_count_begins_anew_after_its_range) {
    FlySettings settings = fly();
    settings.innerEnabled = true;
    settings.rangeEnabled = true;
    settings.rangeMm = 2;
    settings.pulsesPerMm = 100;
    encoder.set(settings);
    pass(199);
    EXPECT_EQ(encoder.count(), 199);
    pass(1);
    EXPECT_EQ(encoder.count(), 0);
    settings.innerReverse = true;
    encoder.set(settings);
    pass(1);
    EXPECT_EQ(encoder.count(), 199);
}

/// The parameters let a range of 3 000 000 mm with 1000 pulses each pass.
TEST_F(DeviceTest, encoder_count_of_a_range_beyond_31_bits_has_its_32_bits) {
    FlySettings settings = fly();
    settings.innerEnabled = true;
    settings.innerReverse = true;
    settings.rangeEnabled = true;
    settings.rangeMm = 3e6;
    settings.pulsesPerMm = 1000;
    encoder.set(settings);
    pass(1);
    EXPECT_EQ(encoder.count(), static_cast<std::int32_t>(2999999999u));
    settings.innerReverse = false;
    encoder.set(settings);
    pass(1);
    EXPECT_EQ(encoder.count(), 0);
}

TEST_F(DeviceTest, encoder_keeps_counting_with_figures_that_are_no_numbers) {
    FlySettings settings = fly();
    settings.innerEnabled = true;
    settings.innerPeriodUs = std::nan("");
    settings.rangeEnabled = true;
    settings.rangeMm = std::nan("");
    settings.pulsesPerMmX = 1e-320;
    encoder.set(settings);
    EXPECT_EQ(encoder.motion().shift.x, 0.0);
    pass(1);
    EXPECT_EQ(encoder.count(), 1000); // by the shortest period that there is
}

TEST_F(DeviceTest, encoder_that_stopped_keeps_its_count) {
    FlySettings settings = fly();
    settings.innerEnabled = true;
    encoder.set(settings);
    pass(100);
    EXPECT_EQ(encoder.count(), 100);
    faults.set("encoder_stopped", true);
    EXPECT_EQ(encoder.count(), 100);
    pass(100);
    EXPECT_EQ(encoder.count(), 100);
    EXPECT_EQ(encoder.pulsesPerMs(), 0.0);
    EXPECT_EQ(encoder.motion().shift, Point{});
    faults.set("encoder_stopped", false);
    EXPECT_EQ(encoder.count(), 100);
    pass(5);
    EXPECT_EQ(encoder.count(), 105);
}

TEST_F(DeviceTest, encoder_stands_still_while_time_has_no_limit) {
    FlySettings settings = fly();
    settings.innerEnabled = true;
    encoder.set(settings);
    speed = 0.0;
    EXPECT_EQ(encoder.count(), 0); // whoever changes the factor looks
    pass(1000);
    EXPECT_EQ(encoder.count(), 0);
    send(0x4A55, 0, 25000);
    EXPECT_EQ(splitter.mirror(), 25000); // the mirror is there at once, and the pulses have not gone on by that
    speed = 1.0;
    EXPECT_EQ(encoder.count(), 0);
    pass(7);
    EXPECT_EQ(encoder.count(), 7);
}

TEST_F(CardTest, splitter_shows_the_shutter_by_the_kind_of_the_job_on_the_card) {
    constexpr std::uint32_t kShutterClosed = 1u << 20;
    const auto status = [this] {
        int first = 0;
        int second = 0;
        EXPECT_TRUE(card.splitter().command(0x4955, 0, 0, first, second));
        return static_cast<std::uint32_t>(first);
    };
    card.setSpeed(1.0);
    for (const MarkKind marks : {MarkKind::Laser, MarkKind::RedPreview}) {
        const MarkKind next = marks == MarkKind::Laser ? MarkKind::RedPreview : MarkKind::Laser;
        card.setState(RunState::Run);
        card.setKind(marks);
        auto run = std::async(std::launch::async, [this] { card.run(jobOf({square(0, 0, 1000)}), false); });
        ASSERT_TRUE(waitFor([this] { return card.head().activity == Activity::Running; }));
        card.setKind(next); // for the next job
        EXPECT_EQ((status() & kShutterClosed) != 0, marks != MarkKind::Laser);
        card.pause();
        EXPECT_TRUE(status() & kShutterClosed);
        card.restart();
        card.stop();
        run.get();
        EXPECT_TRUE(status() & kShutterClosed);
    }
}

/// Nobody looks at the encoder before the change.
TEST(DeviceSpeed, encoder_counts_the_time_before_a_change_of_the_speed_by_the_speed_of_then) {
    using Clock = std::chrono::steady_clock;
    const auto ms = [](Clock::time_point from, Clock::time_point to) {
        return std::chrono::duration<double, std::milli>(to - from).count();
    };
    CardCore card;
    card.setSpeed(1.0);
    FlySettings settings;
    settings.innerEnabled = true; // a pulse a millisecond
    card.encoder().set(settings);
    const Clock::time_point begin = Clock::now();
    card.encoder().setCount(0);
    std::this_thread::sleep_for(std::chrono::milliseconds(50));
    const Clock::time_point asked = Clock::now();
    card.setSpeed(1000.0);
    const Clock::time_point changed = Clock::now();
    const int count = card.encoder().count();
    EXPECT_GE(count, 49);
    EXPECT_LE(count, ms(begin, changed) + 1000.0 * ms(asked, Clock::now()));
}

TEST_F(DeviceTest, belt_refuses_what_no_belt_does) {
    EXPECT_FALSE(encoder.setBeltSpeed(10001.0));
    EXPECT_FALSE(encoder.setBeltSpeed(std::nan("")));
    EXPECT_FALSE(encoder.setBeltPulses(100001.0));
    EXPECT_EQ(encoder.beltSpeed(), 0.0);
    EXPECT_EQ(encoder.beltPulses(), 100.0);
}

TEST_F(DeviceTest, head_follows_by_the_pulses_a_millimetre_of_each_axis) {
    FlySettings settings = fly();
    settings.outer = true;
    settings.pulsesPerMmX = 100;
    settings.pulsesPerMmY = -50;
    encoder.set(settings);
    encoder.setBeltSpeed(200.0);
    FlyMotion motion = encoder.motion();
    EXPECT_DOUBLE_EQ(motion.shift.x, 0.2);
    EXPECT_DOUBLE_EQ(motion.shift.y, -0.4);
    EXPECT_DOUBLE_EQ(motion.travel.x, 0.2);
    EXPECT_EQ(motion.travel.y, 0.0);
    settings.pulsesPerMmX = 0;
    encoder.set(settings);
    EXPECT_EQ(encoder.motion().shift.x, 0.0);
    settings.enabled = false;
    encoder.set(settings);
    EXPECT_TRUE(encoder.motion().isStill());
}

/// The belt goes 100 mm/s; the square is marked at 100 mm/s, so it takes time.
TEST_F(DeviceTest, what_is_marked_on_the_fly_lies_on_the_product_as_it_was_drawn) {
    Trace trace;
    JobRunner runner(trace);
    runner.open();
    runner.setSpeed(0);
    runner.setState(RunState::Run);
    FlySettings settings = fly();
    settings.outer = true;
    encoder.set(settings);
    encoder.setBeltSpeed(100.0);
    const Job job = jobOf({square(-5, -5, 10)});
    for (const double pulses : {100.0, 200.0}) {
        settings.pulsesPerMmX = pulses; // twice the pulses: the head follows at half the speed
        encoder.set(settings);
        JobSetup setup;
        setup.pens = plainPens();
        setup.fly = encoder.motion();
        ASSERT_EQ(runner.run(job, setup, runner.arm()).outcome, Outcome::Done);
        const TraceSnapshot rows = trace.snapshot();
        ASSERT_GE(rows.size(), 5u);
        std::size_t index = 0;
        forEachMarked(rows, 0, rows.size(), [&](const TraceRow& row, const Point&, bool) {
            const double lag = 0.1 * row.ms * (1.0 - 100.0 / pulses);
            EXPECT_NEAR(row.at.x, rows[index].at.x - lag, 1e-9);
            EXPECT_EQ(row.at.y, rows[index].at.y);
            ++index;
        });
        const TraceSnapshot field = rows.commanded();
        index = 0;
        forEachMarked(field, 0, field.size(), [&](const TraceRow& row, const Point&, bool) {
            EXPECT_NEAR(row.at.x, rows[index].at.x + 0.1 * row.ms * 100.0 / pulses, 1e-9);
            ++index;
        });
    }
    runner.close();
}

TEST_F(DeviceTest, splitter_tells_its_places_and_that_all_is_in_order) {
    send(0x4A55, 0, 25000);
    pass(1000);
    for (int index = 0; index < 4; ++index)
        EXPECT_EQ(read(index).status & 0xFFFFu,
                  static_cast<std::uint32_t>(splitter.store().positions[static_cast<std::size_t>(index)]));
    const Words words = read(0);
    EXPECT_EQ(words.status >> 16, (kOrder | 1u << 17) >> 16);
    EXPECT_EQ(words.position, 25000u | 0x1200000u | 1u << 28);
    EXPECT_EQ(splitter.path(), 2);
}

TEST_F(DeviceTest, splitter_goes_at_its_speed_and_settles) {
    send(0x4855, 50, 20); // 200 counts a ms
    send(0x4A55, 0, 10000);
    pass(1000);
    EXPECT_EQ(splitter.path(), 1);
    send(0x4A55, 0, 25000);
    pass(25);
    EXPECT_EQ(splitter.mirror(), 15000);
    EXPECT_EQ(read(0).status & (kOrder | 0xFu << 16), 1u << 20); // on the way: the shutter alone is in order
    pass(50);
    EXPECT_EQ(splitter.mirror(), 25000);
    EXPECT_EQ(read(0).status & kOrder, kOrder & ~(1u << 23 | 1u << 24)); // not settled
    EXPECT_EQ(splitter.path(), 0);
    pass(50);
    EXPECT_EQ(splitter.path(), 2);
    EXPECT_EQ(read(0).status & kOrder, kOrder);
    EXPECT_DOUBLE_EQ(splitter.switchMs(0, 1), 125.0);
}

TEST_F(DeviceTest, splitter_shows_the_open_path_of_a_job) {
    send(0x4A55, 0, 55000);
    pass(10000);
    emits = true;
    EXPECT_EQ(read(0).status >> 16, ((kOrder & ~(1u << 20)) | 1u << 19 | 1u << 31) >> 16);
}

TEST_F(DeviceTest, splitter_stores_a_place_for_each_path_and_limits_it) {
    int told = 0;
    SplitterStore kept;
    splitter.setStoreListener([&](const SplitterStore& store) {
        ++told;
        kept = store;
    });
    send(0x4B55, 3, 70000);
    send(0x4B55, 0, -1);
    send(0x4B55, 4, 5);
    EXPECT_EQ(told, 2);
    EXPECT_EQ(kept.positions[3], 65535);
    EXPECT_EQ(kept.positions[0], 0);
    send(0x4855, 77, static_cast<int>(0x00390000u | 44u));
    EXPECT_EQ(told, 3);
    EXPECT_EQ(kept.delayMs, 77);
    EXPECT_EQ(kept.parameters, 0x0039002Cu);
    int first = 1;
    int second = 2;
    EXPECT_FALSE(splitter.command(0x4C55, 0, 0, first, second));
    EXPECT_EQ(first, 1);
}

TEST_F(DeviceTest, second_card_of_the_splitter_only_watches) {
    EXPECT_TRUE(splitter.setCardNumber(2));
    EXPECT_FALSE(splitter.setCardNumber(4));
    const SplitterStore before = splitter.store();
    const int place = splitter.mirror();
    send(0x4B55, 0, 5);
    send(0x4855, 5, 5);
    send(0x4A55, 0, 5);
    pass(1000);
    EXPECT_EQ(splitter.store().positions, before.positions);
    EXPECT_EQ(splitter.store().delayMs, before.delayMs);
    EXPECT_EQ(splitter.mirror(), place);
    EXPECT_EQ(read(0).position >> 16 & 3u, 2u);
}

TEST_F(DeviceTest, splitter_without_link_shows_nothing_and_does_not_move) {
    const int place = splitter.mirror();
    faults.set("splitter_link", true);
    send(0x4A55, 0, place + 5000);
    pass(1000);
    EXPECT_EQ(splitter.mirror(), place);
    EXPECT_EQ(read(0).status >> 16, 0u);
    EXPECT_EQ(read(0).position >> 28, 0u);
    faults.set("splitter_link", false);
    EXPECT_EQ(read(0).position >> 28, 1u);
}

TEST_F(DeviceTest, stuck_mirror_lacks_its_feedback) {
    faults.set("splitter_stuck", true);
    const int place = splitter.mirror();
    send(0x4A55, 0, place + 5000);
    pass(1000);
    EXPECT_EQ(splitter.mirror(), place);
    EXPECT_EQ(read(0).status & kOrder, 1u << 20 | 1u << 21 | 1u << 23);
}

TEST_F(DeviceTest, flash_reads_over_its_pages_what_was_written) {
    FlashMemory flash;
    std::vector<unsigned char> image(FlashMemory::kSize, 0xFF);
    const auto write = [&](std::uint32_t address, int size) {
        std::vector<unsigned char> bytes(static_cast<std::size_t>(size));
        for (std::size_t i = 0; i < bytes.size(); ++i)
            image[address + i] = bytes[i] = static_cast<unsigned char>(address / 7 + i * 31);
        EXPECT_TRUE(flash.write(address, bytes.data(), size));
    };
    write(4096 - 3, 7); // over the end of a page
    write(3 * 4096, 2048);
    write(FlashMemory::kSize - 2, 2);
    EXPECT_EQ(flash.read(0, FlashMemory::kSize), image);
    for (const auto& [address, size] : std::vector<std::pair<std::uint32_t, std::uint32_t>>{{4090, 20},
                                                                                            {4095, 1},
                                                                                            {4096, 1},
                                                                                            {5000, 8000},
                                                                                            {3 * 4096 + 100, 5},
                                                                                            {FlashMemory::kSize - 5, 5},
                                                                                            {9, 0}}) {
        const auto begin = image.begin() + address;
        EXPECT_EQ(flash.read(address, size), std::vector<unsigned char>(begin, begin + size)) << address;
    }
    EXPECT_EQ(flash.read(0xFFFFFFFFu, 3), std::vector<unsigned char>(3, 0xFF));
}

TEST_F(DeviceTest, mirror_that_gets_stuck_on_its_way_goes_on_when_it_comes_loose) {
    send(0x4855, 50, 20); // 200 counts a ms
    send(0x4A55, 0, 10000);
    pass(1000);
    send(0x4A55, 0, 25000);
    pass(25);
    faults.set("splitter_stuck", true);
    pass(25);
    EXPECT_EQ(splitter.mirror(), 15000);
    EXPECT_EQ(read(0).status & kOrder & ~(1u << 23), 1u << 20); // not the time yet at which it was to be there
    pass(25);
    EXPECT_EQ(splitter.mirror(), 15000);
    EXPECT_EQ(read(0).status & kOrder & ~(1u << 23), 1u << 20 | 1u << 21);
    faults.set("job_fails", true); // another fault is none of its business
    EXPECT_EQ(splitter.mirror(), 15000);
    faults.set("splitter_stuck", false);
    EXPECT_EQ(read(0).status & kOrder, 1u << 20);
    pass(25);
    EXPECT_EQ(splitter.mirror(), 20000);
    pass(75);
    EXPECT_EQ(splitter.mirror(), 25000);
    EXPECT_EQ(read(0).status & kOrder, kOrder);
}

TEST_F(DeviceTest, mirror_keeps_its_place_when_its_speed_changes_on_the_way) {
    send(0x4855, 50, 20); // 200 counts a ms
    send(0x4A55, 0, 10000);
    pass(1000);
    send(0x4A55, 0, 25000);
    pass(25);
    SplitterStore slow = splitter.store();
    slow.parameters = 10;
    splitter.setStore(slow);
    EXPECT_EQ(splitter.mirror(), 15000);
    pass(25);
    EXPECT_EQ(splitter.mirror(), 17500);
    pass(1000);
    EXPECT_EQ(splitter.path(), 2);
    splitter.setStore({}); // one that stands has settled long since
    EXPECT_EQ(splitter.path(), 2);
}

TEST_F(DeviceTest, flash_tells_what_was_written) {
    FlashMemory flash;
    const unsigned char bytes[4] = {1, 2, 3, 4};
    EXPECT_EQ(flash.extent(), (std::pair<std::uint32_t, std::uint32_t>(0, 0)));
    EXPECT_TRUE(flash.write(0x800000, bytes, 4));
    EXPECT_TRUE(flash.write(0x7FFF00, bytes, 2));
    EXPECT_EQ(flash.extent(), (std::pair<std::uint32_t, std::uint32_t>(0x7FFF00, 0x800004)));
    EXPECT_EQ(flash.written(), 6u);
    flash.erase();
    EXPECT_EQ(flash.extent().second, 0u);
}
