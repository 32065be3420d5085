// SPDX-License-Identifier: MIT
// The run loop on the simulated card itself, with the threads that a real run has.
#include "runloopfixture.h"

#include "simengine/card/cardcore.h"

#include <random>

using namespace runtest;

namespace {

sim::Job lineOf(double mm) {
    sim::Job job;
    sim::Stroke stroke;
    stroke.points = {{0.0, 0.0}, {mm, 0.0}};
    job.strokes.push_back(stroke);
    return job;
}

class RunLoopOnCard : public RunLoopTest {
protected:
    void SetUp() override {
        RunLoopTest::SetUp();
        ASSERT_TRUE(card.open());
        card.setSpeed(1.0);
        port.onStatus = [this](MarkStatus status) { card.setState(static_cast<sim::RunState>(status)); };
        port.onStop = [this] { card.stop(); };
        port.mark = [this] { return bool(card.run(lineOf(length), false)); };
    }

    bool waitFor(std::function<bool()> const& condition) {
        const auto until = std::chrono::steady_clock::now() + patience();
        while (!condition()) {
            if (std::chrono::steady_clock::now() > until)
                return false;
            std::this_thread::yield();
        }
        return true;
    }

    std::atomic<double> length{100000.0};
    sim::CardCore card;
};

} // namespace

TEST_F(RunLoopOnCard, a_stop_ends_a_long_line_at_once) {
    start();
    ASSERT_TRUE(waitFor([this] { return card.head().at.x > 0.1; }));
    loop.StopTriger();
    port.join();
    EXPECT_LT(card.head().at.x, length);
    EXPECT_EQ(card.state(), sim::RunState::Stop);
    EXPECT_EQ(card.head().activity, sim::Activity::Idle);
}

TEST_F(RunLoopOnCard, a_paused_line_goes_on_and_can_be_stopped_while_paused) {
    start();
    ASSERT_TRUE(waitFor([this] { return card.head().at.x > 0.1; }));
    loop.PauseTriger();
    const double held = card.head().at.x;
    EXPECT_EQ(card.head().activity, sim::Activity::Paused);
    loop.ReStartTriger();
    ASSERT_TRUE(waitFor([&] { return card.head().at.x > held; }));
    loop.PauseTriger();
    loop.StopTriger();
    port.join();
    EXPECT_EQ(port.count("pass"), 1);
    EXPECT_EQ(card.state(), sim::RunState::Stop);
}

TEST_F(RunLoopOnCard, a_preview_begins_anew_on_the_card) {
    card.setKind(sim::MarkKind::RedPreview);
    start(false, 50, MarkTypeRedPreview);
    ASSERT_TRUE(waitFor([this] { return card.head().at.x > 0.1; }));
    length = 1.0;
    loop.StopTrigerVirtual();
    port.join();
    EXPECT_EQ(port.count("mark 1"), 2);
    EXPECT_EQ(port.count("started"), 1);
    EXPECT_NEAR(card.head().at.x, 1.0, 1e-9);
}

TEST_F(RunLoopOnCard, a_storm_of_orders_leaves_no_run_and_no_state_behind) {
    length = 5.0;
    std::atomic<bool> end{false};
    std::vector<std::thread> crowd;
    for (unsigned seed = 0; seed < 3; ++seed) {
        crowd.emplace_back([this, seed, &end] {
            std::mt19937 random(seed);
            while (!end) {
                switch (random() % 6) {
                case 0:
                    loop.PauseTriger();
                    break;
                case 1:
                    loop.ReStartTriger();
                    break;
                case 2:
                    loop.StopTriger();
                    break;
                case 3:
                    loop.StopTrigerVirtual();
                    break;
                case 4:
                    loop.SetEnableTriggerWhenRedLoop(random() % 2 == 0);
                    break;
                default:
                    loop.IsPaused();
                    break;
                }
                std::this_thread::sleep_for(std::chrono::microseconds(random() % 500));
            }
        });
    }
    std::mt19937 random(99);
    for (int i = 0; i < 300; ++i) {
        const auto type = static_cast<MarkType>(random() % 3);
        if (random() % 2)
            loop.RunTriger(false, true, 1, type);
        else
            loop.RunTrigerOnly(false, random() % 2 == 0, 0, type, random() % 2 == 0);
        std::this_thread::sleep_for(std::chrono::microseconds(random() % 2000));
    }
    end = true;
    for (std::thread& thread : crowd)
        thread.join();
    loop.StopTriger();
    port.join();
    EXPECT_FALSE(loop.IsActive());
    EXPECT_EQ(card.state(), sim::RunState::Stop);
    EXPECT_EQ(card.head().activity, sim::Activity::Idle);
    EXPECT_EQ(port.count("started"), port.count("pass"));
    EXPECT_GT(port.count("pass"), 0);
}
