// SPDX-License-Identifier: MIT
#include "runloopfixture.h"

using namespace runtest;
using Clock = std::chrono::steady_clock;

TEST_F(RunLoopTest, one_pass_in_its_order) {
    start();
    port.join();
    EXPECT_EQ(port.calls(),
              (Calls{"delay 50", "status 0", "started", "mark 0", "marked", "pass", "status 2", "ended"}));
    EXPECT_FALSE(loop.IsActive());
}

TEST_F(RunLoopTest, options_reach_the_job) {
    loop.RunTriger(true, true, 7, MarkTypeBorderPreview);
    ASSERT_TRUE(port.waitFor("mark 2 select loop"));
    loop.StopTriger();
    port.join();
    EXPECT_EQ(port.calls().front(), "delay 7");
}

TEST_F(RunLoopTest, a_finished_run_can_be_started_again) {
    start();
    port.join();
    start();
    port.join();
    EXPECT_EQ(port.count("ended"), 2);
}

TEST_F(RunLoopTest, nothing_to_mark_still_starts_and_counts) {
    port.mark = [] { return false; };
    start();
    port.join();
    EXPECT_EQ(port.calls(),
              (Calls{"delay 50", "status 0", "started", "mark 0", "not marked", "pass", "status 2", "ended"}));
}

TEST_F(RunLoopTest, second_press_pauses_and_third_resumes) {
    port.mark = [this] { return gate.pass(), true; };
    start();
    ASSERT_TRUE(port.waitFor("mark 0"));
    port.clear();
    start();
    EXPECT_TRUE(loop.IsPaused());
    start();
    EXPECT_FALSE(loop.IsPaused());
    EXPECT_EQ(port.calls(), (Calls{"status 1", "paused", "status 0", "resumed"}));
}

TEST_F(RunLoopTest, an_input_does_not_pause_a_run_but_resumes_one) {
    port.mark = [this] { return gate.pass(), true; };
    start();
    ASSERT_TRUE(port.waitFor("mark 0"));
    port.clear();
    loop.RunTrigerOnly(true, true, 1, MarkTypeRedPreview, true);
    EXPECT_EQ(port.calls(), Calls{});
    loop.PauseTriger();
    loop.PauseTriger();
    loop.RunTrigerOnly(false, false, 50, MarkTypeLaser, false);
    loop.ReStartTriger();
    EXPECT_EQ(port.calls(), (Calls{"status 1", "paused", "status 0", "resumed"}));
    gate.open();
    port.join();
    EXPECT_EQ(port.count("ended"), 1);
}

TEST_F(RunLoopTest, orders_without_a_run_do_nothing) {
    loop.PauseTriger();
    loop.ReStartTriger();
    loop.StopTriger();
    loop.StopTrigerVirtual();
    EXPECT_EQ(port.calls(), Calls{});
    EXPECT_FALSE(loop.IsStopVirtual());
}

TEST_F(RunLoopTest, a_stop_surrounds_the_state_with_two_stops_of_the_card) {
    port.mark = [this] { return gate.pass(), true; };
    port.onStop = [this] { gate.open(); };
    start();
    ASSERT_TRUE(port.waitFor("mark 0"));
    port.clear();
    loop.StopTriger();
    port.join();
    const Calls calls = port.calls();
    Calls orders;
    for (std::string const& call : calls) {
        if (call == "stop" || call == "status 2")
            orders.push_back(call);
    }
    EXPECT_EQ(orders, (Calls{"stop", "status 2", "stop", "status 2"}));
    EXPECT_EQ(calls.back(), "ended");
}

TEST_F(RunLoopTest, a_loop_repeats_until_a_stop) {
    start(true, 1);
    ASSERT_TRUE(port.waitFor("pass", 3));
    loop.StopTriger();
    port.join();
    EXPECT_EQ(port.count("started"), port.count("pass"));
    EXPECT_EQ(port.count("ended"), 1);
}

TEST_F(RunLoopTest, the_next_pass_waits_until_the_last_one_is_counted) {
    loop.SetHoldUntilCounted(true);
    start(true, 1);
    for (int pass = 1; pass <= 3; ++pass) {
        ASSERT_TRUE(port.waitFor("pass", pass));
        // Far longer than the delay between two passes.
        std::this_thread::sleep_for(std::chrono::milliseconds(20));
        EXPECT_EQ(port.count("started"), pass);
        loop.PassCounted();
    }
    ASSERT_TRUE(port.waitFor("pass", 4));
    loop.StopTriger();
    port.join();
    EXPECT_EQ(port.count("ended"), 1);
}

TEST_F(RunLoopTest, passes_go_on_when_they_are_not_to_be_counted_any_more) {
    loop.SetHoldUntilCounted(true);
    start(true, 1);
    ASSERT_TRUE(port.waitFor("pass"));
    loop.SetHoldUntilCounted(false);
    ASSERT_TRUE(port.waitFor("pass", 3));
    loop.StopTriger();
    port.join();
}

TEST_F(RunLoopTest, a_false_result_ends_a_loop_after_the_pass) {
    port.mark = [this] { return ++passes < 3; };
    start(true, 1);
    port.join();
    EXPECT_EQ(port.count("pass"), 3);
    EXPECT_EQ(port.calls().back(), "ended");
}

class RunLoopEndless : public RunLoopTest, public ::testing::WithParamInterface<int> {};

TEST_P(RunLoopEndless, without_a_delay_one_pass_waits_for_a_stop) {
    start(true, GetParam());
    ASSERT_TRUE(port.waitFor("pass"));
    std::this_thread::sleep_for(std::chrono::milliseconds(20));
    EXPECT_TRUE(loop.IsActive());
    EXPECT_EQ(port.count("pass"), 1);
    loop.StopTriger();
    port.join();
    EXPECT_EQ(port.count("started"), 1);
    EXPECT_EQ(port.calls().back(), "ended");
}

INSTANTIATE_TEST_SUITE_P(Delays, RunLoopEndless, ::testing::Values(0, -1, -50));

TEST_F(RunLoopTest, the_card_loops_by_itself_and_the_pass_counts_once_after_the_stop) {
    port.buffer = true;
    port.mark = [this] { return gate.pass(), true; };
    port.onStop = [this] { gate.open(); };
    start(true, 1);
    ASSERT_TRUE(port.waitFor("mark 0 loop"));
    EXPECT_EQ(port.count("pass"), 0);
    loop.StopTriger();
    port.join();
    EXPECT_EQ(port.count("mark 0 loop"), 1);
    EXPECT_EQ(port.count("pass"), 1);
    EXPECT_EQ(port.calls().back(), "ended");
}

TEST_F(RunLoopTest, time_in_pause_does_not_count) {
    constexpr auto kDelay = std::chrono::milliseconds(60);
    constexpr auto kHeld = std::chrono::milliseconds(150);
    start(true, static_cast<int>(kDelay.count()));
    ASSERT_TRUE(port.waitFor("pass"));
    const Clock::time_point from = Clock::now();
    loop.PauseTriger();
    std::this_thread::sleep_for(kHeld);
    EXPECT_EQ(port.count("started"), 1);
    loop.ReStartTriger();
    ASSERT_TRUE(port.waitFor("started", 2));
    // A millisecond or two of the delay may have gone by before the pause.
    EXPECT_GE(Clock::now() - from, kHeld + kDelay / 2);
}

TEST_F(RunLoopTest, a_stop_while_paused_between_passes_ends_the_run) {
    start(true, 60000);
    ASSERT_TRUE(port.waitFor("pass"));
    loop.PauseTriger();
    loop.StopTriger();
    port.join();
    EXPECT_EQ(port.count("started"), 1);
    EXPECT_EQ(port.calls().back(), "ended");
}

TEST_F(RunLoopTest, a_stop_while_a_pass_is_paused_ends_the_run) {
    port.mark = [this] { return gate.pass(), true; };
    port.onStop = [this] { gate.open(); };
    start(true, 1);
    ASSERT_TRUE(port.waitFor("mark 0 loop"));
    loop.PauseTriger();
    loop.StopTriger();
    port.join();
    EXPECT_EQ(port.count("pass"), 1);
    EXPECT_EQ(port.calls().back(), "ended");
}

TEST_F(RunLoopTest, a_stop_before_the_worker_has_begun_is_not_lost) {
    port.beforeWorker = [this] { loop.StopTriger(); };
    start(true, 1);
    port.join();
    EXPECT_EQ(port.count("mark 0 loop"), 0);
    EXPECT_EQ(port.count("status 0"), 0);
    EXPECT_EQ(port.calls().back(), "ended");
}

TEST_F(RunLoopTest, a_pause_after_a_pass_holds_the_next_one) {
    // The order to pause arrives while the pass ends: its delay is over, the next pass has not begun.
    port.mark = [this] {
        if (++passes == 1)
            loop.PauseTriger();
        return true;
    };
    start(true, 1);
    ASSERT_TRUE(port.waitFor("pass"));
    std::this_thread::sleep_for(std::chrono::milliseconds(30));
    EXPECT_EQ(port.count("started"), 1);
    loop.ReStartTriger();
    EXPECT_TRUE(port.waitFor("started", 2));
}

TEST_F(RunLoopTest, a_preview_takes_new_data_without_a_signal) {
    port.mark = [this] {
        if (++passes == 1)
            loop.StopTrigerVirtual();
        return true;
    };
    start(false, 50, MarkTypeRedPreview);
    port.join();
    EXPECT_EQ(port.calls(), (Calls{"delay 50", "status 0", "started", "mark 1", "stop", "status 2", "stop", "marked",
                                   "settle", "settle", "status 0", "mark 1", "marked", "pass", "status 2", "ended"}));
    EXPECT_FALSE(loop.IsStopVirtual());
}

TEST_F(RunLoopTest, a_normal_job_is_neither_stopped_nor_restarted_for_new_data) {
    port.mark = [this] { return loop.StopTrigerVirtual(), true; };
    start();
    port.join();
    EXPECT_EQ(port.count("mark 0"), 1);
    EXPECT_EQ(port.count("stop"), 0);
    EXPECT_EQ(port.calls().back(), "ended");
}

TEST_F(RunLoopTest, a_stop_wins_over_the_restart_with_new_data) {
    port.mark = [this] {
        loop.StopTrigerVirtual();
        loop.StopTriger();
        return true;
    };
    start(true, 1, MarkTypeRedPreview);
    port.join();
    EXPECT_EQ(port.count("mark 1 loop"), 1);
    EXPECT_EQ(port.count("status 0"), 1);
    EXPECT_EQ(port.calls().back(), "ended");
}

TEST_F(RunLoopTest, a_triggered_run_goes_back_to_the_red_loop) {
    loop.RunTrigerOnly(false, false, 50, MarkTypeLaser, true);
    port.join();
    EXPECT_EQ(port.calls(),
              (Calls{"delay 50", "status 0", "trace triggered", "status 0", "started", "trace before", "mark 0",
                     "marked", "trace after", "pass", "status 2", "trace ended 0,0,1,0", "to red loop"}));
    port.clear();
    loop.RunTrigerOnly(false, false, 50, MarkTypeRedPreview, false);
    port.join();
    EXPECT_EQ(port.calls().back(), "ended");
}

TEST_F(RunLoopTest, a_stop_of_a_triggered_run_does_not_go_back) {
    port.mark = [this] {
        loop.StopTriger();
        return true;
    };
    loop.RunTrigerOnly(false, false, 50, MarkTypeLaser, true);
    port.join();
    EXPECT_EQ(port.count("to red loop"), 0);
    EXPECT_EQ(port.calls().back(), "ended");
}

TEST_F(RunLoopTest, a_stop_on_the_way_back_to_the_red_loop_ends_it) {
    loop.RunTrigerOnly(false, false, 50, MarkTypeLaser, true);
    port.join();
    EXPECT_TRUE(loop.TakeReturn());
    EXPECT_FALSE(loop.TakeReturn());
    loop.RunTrigerOnly(false, false, 50, MarkTypeLaser, true);
    port.join();
    loop.StopTriger();
    EXPECT_FALSE(loop.TakeReturn());
    loop.RunTrigerOnly(false, false, 50, MarkTypeLaser, true);
    port.join();
    loop.RunTrigerOnly(false, false, 50, MarkTypeLaser, false);
    EXPECT_FALSE(loop.TakeReturn());
    port.join();
    EXPECT_FALSE(loop.TakeReturn());
}

TEST_F(RunLoopTest, a_preview_that_the_card_refused_because_of_new_data_runs_again) {
    port.mark = [this] {
        if (++passes > 1)
            return true;
        loop.StopTrigerVirtual();
        return false;
    };
    start(false, 50, MarkTypeBorderPreview);
    port.join();
    EXPECT_EQ(port.count("mark 2"), 2);
    EXPECT_EQ(port.count("started"), 1);
    EXPECT_EQ(port.count("pass"), 1);
    EXPECT_TRUE(loop.LastPassMarked());
}

TEST_F(RunLoopTest, a_preview_with_nothing_to_mark_ends_in_spite_of_new_data) {
    port.mark = [this] {
        if (++passes == 1)
            loop.StopTrigerVirtual();
        return false;
    };
    start(true, 1, MarkTypeRedPreview);
    port.join();
    EXPECT_EQ(port.count("mark 1 loop"), 2);
    EXPECT_EQ(port.calls().back(), "ended");
}

TEST_F(RunLoopTest, new_data_of_a_paused_preview_wait_for_the_resume) {
    port.mark = [this] {
        if (++passes > 1)
            return true;
        loop.PauseTriger();
        loop.StopTrigerVirtual();
        return true;
    };
    start(false, 50, MarkTypeRedPreview);
    ASSERT_TRUE(port.waitFor("settle", 2));
    EXPECT_TRUE(loop.IsPaused());
    EXPECT_EQ(port.count("status 0"), 1);
    loop.ReStartTriger();
    port.join();
    EXPECT_EQ(port.count("mark 1"), 2);
    EXPECT_EQ(port.count("ended"), 1);
}

TEST_F(RunLoopTest, a_pass_that_was_stopped_or_empty_is_not_marked) {
    EXPECT_FALSE(loop.LastPassMarked());
    start();
    port.join();
    EXPECT_TRUE(loop.LastPassMarked());
    port.beforeWorker = [this] { loop.StopTriger(); };
    start();
    port.join();
    EXPECT_FALSE(loop.LastPassMarked());
    port.beforeWorker = [] {};
    start();
    port.join();
    EXPECT_TRUE(loop.LastPassMarked());
    port.mark = [this] { return loop.StopTriger(), true; };
    start();
    port.join();
    EXPECT_FALSE(loop.LastPassMarked());
    port.mark = [] { return true; };
    start();
    port.join();
    port.mark = [] { return false; };
    start();
    port.join();
    EXPECT_FALSE(loop.LastPassMarked());
}
