// SPDX-License-Identifier: MIT
#include "cardfixture.h"

#include "simengine/card/statuswords.h"

#include <cmath>
#include <random>

using namespace cardtest;
using namespace sim;

namespace {

class CardStop : public CardTest {
protected:
    /// One vector of 100 s, started at real speed and seen to move.
    std::future<RunResult> startLongLine() {
        auto job = start(jobOf({polyline({{0, 0}, {10000, 0}})}));
        EXPECT_TRUE(waitFor([this] { return card.head().at.x > 0.1; }));
        return job;
    }

    TraceRow lastRow() {
        const TraceSnapshot rows = card.trace().snapshot();
        return rows[rows.size() - 1];
    }
};

} // namespace

TEST_F(CardStop, stop_in_mid_vector_ends_the_line_where_the_head_stands) {
    auto job = startLongLine();
    card.stop();
    const TraceSnapshot rows = card.trace().snapshot();
    const Point at = card.head().at;
    EXPECT_TRUE(job.get());
    ASSERT_EQ(rows.size(), 2u);
    EXPECT_EQ(rows[1].at, at);
    EXPECT_TRUE(rows[1].laser);
    EXPECT_NEAR(rows[1].ms, at.x / 100.0 * 1000.0, 1e-6);
    EXPECT_EQ(card.trace().size(), 2u);
    EXPECT_NEAR(card.bufferRunTimeMs(), rows[1].ms, 1e-6);
    EXPECT_EQ(card.state(), RunState::Run);
    EXPECT_EQ(card.markInfo(), markinfo::kStopped);
}

TEST_F(CardStop, state_stop_ends_a_running_job) {
    auto job = startLongLine();
    card.setState(RunState::Stop);
    EXPECT_EQ(card.head().activity, Activity::Idle);
    EXPECT_TRUE(job.get());
    EXPECT_EQ(card.state(), RunState::Stop);
}

TEST_F(CardStop, stop_state_stop_in_a_row_ends_the_job_once) {
    auto job = startLongLine();
    card.stop();
    card.setState(RunState::Stop);
    card.stop();
    EXPECT_TRUE(job.get());
    EXPECT_EQ(card.runner().jobs(), 1u);
    card.setState(RunState::Run);
    card.setSpeed(0);
    EXPECT_TRUE(card.run(jobOf({square(0, 0, 1)}), false));
}

TEST_F(CardStop, settling_waits_for_the_stops_that_follow_the_first) {
    // A preview that is started again must not fall to the second half of the stop that ended it.
    card.setSpeed(0);
    card.setBufferLoop(true);
    for (int i = 0; i < 20; ++i) {
        card.setState(RunState::Run);
        auto job = start(jobOf({square(0, 0, 10)}), true);
        ASSERT_TRUE(waitForActivity(Activity::Running));
        std::thread stopper([this] {
            card.stop();
            card.setState(RunState::Stop);
            card.stop();
        });
        EXPECT_TRUE(job.get());
        EXPECT_TRUE(card.waitSettled());
        EXPECT_EQ(card.state(), RunState::Stop);
        stopper.join();
    }
}

TEST_F(CardStop, stop_that_is_not_followed_up_settles_as_well) {
    auto job = startLongLine();
    card.stop();
    EXPECT_TRUE(job.get());
    EXPECT_TRUE(card.waitSettled());
    EXPECT_EQ(card.state(), RunState::Run);
}

TEST_F(CardStop, calls_of_one_stop_are_one_order) {
    const auto orders = [this, before = card.runner().stopOrders()] { return card.runner().stopOrders() - before; };
    auto job = startLongLine();
    // A host's stop: the remote run's calls, and those of each run dialog.
    card.setState(RunState::Stop);
    card.stop();
    card.stop();
    card.setState(RunState::Stop);
    card.stop();
    EXPECT_TRUE(job.get());
    EXPECT_EQ(orders(), 1u);
    std::this_thread::sleep_for(std::chrono::milliseconds(500));
    card.stop();
    EXPECT_EQ(orders(), 2u);
    card.setState(RunState::Run);
    auto next = start(jobOf({polyline({{0, 0}, {10000, 0}})}));
    ASSERT_TRUE(waitForActivity(Activity::Running));
    card.stop(); // of another job
    EXPECT_EQ(orders(), 3u);
    EXPECT_TRUE(next.get());
}

TEST_F(CardStop, order_that_came_too_late_for_a_job_is_not_the_one_that_ended_it) {
    const std::uint64_t before = card.runner().stopOrders();
    auto job = startLongLine();
    ASSERT_TRUE(card.setFault("stop_hangs", true));
    card.stop();
    card.setSpeed(0);
    const RunResult result = job.get();
    EXPECT_EQ(result.outcome, Outcome::Done);
    EXPECT_EQ(result.stopOrders, before);
    EXPECT_EQ(card.runner().stopOrders(), before + 1);
}

TEST_F(CardStop, pause_state_and_resume_continue_at_the_exact_point) {
    auto job = startLongLine();
    card.setState(RunState::Pause);
    EXPECT_EQ(card.head().activity, Activity::Paused);
    EXPECT_EQ(card.markInfo(), markinfo::kPaused);
    EXPECT_FALSE(card.head().laser);
    const Point held = card.head().at;
    const std::size_t rows = card.trace().size();
    EXPECT_EQ(lastRow().at, held);
    std::this_thread::yield();
    EXPECT_EQ(card.head().at, held);
    EXPECT_EQ(card.trace().size(), rows);
    card.setState(RunState::Run);
    ASSERT_TRUE(waitFor([&] { return card.head().at.x > held.x; }));
    EXPECT_EQ(card.markInfo(), markinfo::kRunning);
    EXPECT_TRUE(card.head().laser);
    card.setState(RunState::Stop);
    EXPECT_TRUE(job.get());
    // The clock of the job did not run in the pause: place and time still belong together.
    EXPECT_NEAR(lastRow().ms, lastRow().at.x * 10.0, 1e-6);
}

TEST_F(CardStop, both_kinds_of_pause_must_be_taken_back) {
    auto job = startLongLine();
    card.setState(RunState::Pause);
    card.pause();
    const Point held = card.head().at;
    card.setState(RunState::Run);
    EXPECT_EQ(card.head().activity, Activity::Paused);
    EXPECT_EQ(card.head().at, held);
    card.restart();
    ASSERT_TRUE(waitForActivity(Activity::Running));
    card.pause();
    card.setState(RunState::Pause);
    card.restart();
    EXPECT_EQ(card.head().activity, Activity::Paused);
    card.setState(RunState::Run);
    ASSERT_TRUE(waitForActivity(Activity::Running));
    card.stop();
    EXPECT_TRUE(job.get());
}

TEST_F(CardStop, stop_while_paused_marks_nothing_more) {
    for (bool byState : {false, true}) {
        card.setState(RunState::Run);
        auto job = startLongLine();
        if (byState)
            card.setState(RunState::Pause);
        else
            card.pause();
        const TraceRow row = lastRow();
        const std::size_t rows = card.trace().size();
        card.stop();
        EXPECT_TRUE(job.get());
        EXPECT_EQ(card.trace().size(), rows);
        EXPECT_EQ(lastRow().at, row.at);
        card.moveTo({0, 0}, 1e6);
        ASSERT_TRUE(waitFor([&] { return card.head().at == Point{0, 0}; }));
    }
}

TEST_F(CardStop, pause_without_a_job_holds_no_later_one) {
    card.pause();
    card.setSpeed(0);
    EXPECT_TRUE(card.run(jobOf({square(0, 0, 10)}), false));
}

TEST_F(CardStop, pause_of_a_stopped_job_does_not_hold_the_next) {
    auto job = startLongLine();
    card.pause();
    card.stop();
    EXPECT_TRUE(job.get());
    card.setSpeed(0);
    EXPECT_TRUE(card.run(jobOf({square(0, 0, 10)}), false));
}

TEST_F(CardStop, paused_jobs_time_leaves_the_pause_out) {
    card.setSpeed(1);
    const Job job = jobOf({polyline({{0, 0}, {5, 0}})});
    auto run = start(job);
    ASSERT_TRUE(waitForActivity(Activity::Running));
    card.pause();
    card.restart();
    EXPECT_TRUE(run.get());
    EXPECT_NEAR(card.bufferRunTimeMs(), 50, 1e-9);
}

TEST_F(CardStop, speed_may_be_changed_during_a_job) {
    auto job = startLongLine();
    card.setSpeed(1000);
    ASSERT_TRUE(waitFor([this] { return card.head().at.x > 100; }));
    card.setSpeed(0);
    EXPECT_TRUE(job.get());
    EXPECT_EQ(lastRow().at.x, 10000);
    EXPECT_NEAR(card.bufferRunTimeMs(), 100000, 1e-6);
    card.setSpeed(-1);
    card.setSpeed(NAN);
    EXPECT_EQ(card.speed(), 0);
}

TEST_F(CardStop, pause_and_stop_within_ramp_and_wobble_keep_place_power_and_time) {
    PenTable pens = plainPens();
    pens[0].wobbleEnable = true;
    pens[0].wobbleDiameter = 2.0;
    pens[0].wobbleSpacing = 0.5;
    pens[0].lineWaveEnable = true;
    pens[0].lineWave[1] = {100000.0, 100.0};
    card.setPens(pens);
    auto job = startLongLine();
    for (int i = 0; i < 20; ++i) {
        card.pause();
        const TraceRow row = lastRow();
        EXPECT_EQ(row.at, card.head().at);
        EXPECT_TRUE(row.laser);
        EXPECT_LE(std::abs(row.at.y), 1.0 + 1e-9);
        const double jumpMs = card.trace().snapshot()[0].ms;
        EXPECT_NEAR(row.power, (row.ms - jumpMs) / 1000.0, 1e-4);
        card.restart();
        ASSERT_TRUE(waitFor([&] { return card.head().passMs > row.ms + 3; }));
    }
    card.stop();
    const std::size_t rows = card.trace().size();
    EXPECT_TRUE(job.get());
    EXPECT_EQ(card.trace().size(), rows);
    EXPECT_EQ(lastRow().at, card.head().at);
    EXPECT_NEAR(card.bufferRunTimeMs(), lastRow().ms, 1e-6);
}

TEST_F(CardStop, repeated_passes_with_ramp_and_wobble_are_all_alike) {
    PenTable pens = plainPens();
    pens[0].wobbleEnable = pens[0].lineWaveEnable = true;
    pens[0].lineWave[1] = {20.0, 100.0};
    card.setPens(pens);
    card.setSpeed(0);
    const Job job = jobOf({square(0, 0, 10)});
    const JobTime once = card.estimate(job);
    card.setBufferLoop(true);
    const std::uint64_t pass = card.trace().pass();
    auto run = start(job, true);
    ASSERT_TRUE(waitFor([&] { return card.trace().pass() > pass + 50; }));
    card.stop();
    EXPECT_TRUE(run.get());
    EXPECT_EQ(card.bufferRunTimeMs(), once.totalMs);
    EXPECT_EQ(card.lastTime().vertices, once.vertices);
    EXPECT_LE(card.trace().size(), once.vertices + 1);
}

TEST_F(CardStop, reaction_tells_when_a_stop_was_obeyed) {
    auto job = startLongLine();
    const auto before = std::chrono::steady_clock::now();
    card.stop();
    const auto after = std::chrono::steady_clock::now();
    EXPECT_TRUE(job.get());
    const Reaction reaction = card.runner().lastReaction();
    EXPECT_GE(reaction.asked, before);
    EXPECT_GE(reaction.acted, reaction.asked);
    EXPECT_LE(reaction.acted, after);
    EXPECT_LE(lastRow().ms, reaction.passMs + 1e-9);
}

TEST_F(CardStop, card_that_hangs_notes_a_stop_and_obeys_when_it_is_back) {
    auto job = startLongLine();
    EXPECT_TRUE(card.setFault("stop_hangs", true));
    card.stop();
    card.setState(RunState::Stop);
    card.stop();
    EXPECT_EQ(card.state(), RunState::Stop);
    EXPECT_EQ(card.markInfo(), markinfo::kRunning);
    const double before = card.head().at.x;
    EXPECT_TRUE(waitFor([&] { return card.head().at.x > before; }));
    EXPECT_TRUE(card.head().laser);
    EXPECT_FALSE(card.waitSettled());
    EXPECT_TRUE(card.setFault("stop_hangs", false));
    EXPECT_TRUE(job.get());
    EXPECT_EQ(card.head().activity, Activity::Idle);
    EXPECT_EQ(card.markInfo(), markinfo::kStopped);
    EXPECT_TRUE(card.waitSettled());
}

TEST_F(CardStop, reboot_ends_the_job_and_takes_none_until_it_is_over) {
    for (const bool deaf : {false, true}) {
        card.setSpeed(1.0);
        auto job = startLongLine();
        EXPECT_TRUE(card.setFault("stop_hangs", deaf));
        std::atomic<int> ended{0};
        const auto reboot = [&] { return card.reboot(3600e3, [&ended] { ++ended; }); };
        auto first = std::async(std::launch::async, reboot);
        EXPECT_EQ(job.get().outcome, Outcome::Stopped);
        EXPECT_TRUE(card.isRebooting());
        EXPECT_TRUE(card.arm().refused);
        EXPECT_FALSE(card.run(jobOf({square(0, 0, 1)}), false));
        const std::uint64_t pass = card.trace().pass();
        card.beginList();
        card.addPolyline(0, {{0, 0}, {1, 0}});
        EXPECT_FALSE(card.endList());
        EXPECT_FALSE(card.moveTo({1, 1}, 100.0));
        EXPECT_EQ(card.trace().pass(), pass);
        auto second = std::async(std::launch::async, reboot);
        EXPECT_EQ(second.wait_for(std::chrono::milliseconds(20)), std::future_status::timeout);
        EXPECT_EQ(ended, 0);
        card.setSpeed(0);
        EXPECT_TRUE(first.get());
        EXPECT_TRUE(second.get());
        EXPECT_EQ(ended, 2);
        EXPECT_TRUE(card.moveTo({0, 0}, 100.0));
        EXPECT_EQ(card.run(jobOf({square(0, 0, 1)}), false).outcome, Outcome::Done);
    }
}

TEST_F(CardStop, closing_ends_a_reboot) {
    std::atomic<bool> ended{false};
    auto reboot = std::async(std::launch::async, [&] { return card.reboot(3600e3, [&ended] { ended = true; }); });
    ASSERT_TRUE(waitFor([this] { return card.isRebooting(); }));
    card.close();
    EXPECT_FALSE(card.isRebooting());
    EXPECT_FALSE(reboot.get());
    EXPECT_FALSE(ended);
    EXPECT_FALSE(card.reboot(0.0));
    ASSERT_TRUE(card.open());
    card.setState(RunState::Run);
    card.setSpeed(0);
    EXPECT_TRUE(card.run(jobOf({square(0, 0, 1)}), false));
}

TEST_F(CardStop, card_that_hangs_without_a_stop_goes_on_when_it_is_back) {
    auto job = startLongLine();
    EXPECT_TRUE(card.setFault("stop_hangs", true));
    EXPECT_TRUE(card.setFault("stop_hangs", false));
    EXPECT_EQ(card.markInfo(), markinfo::kRunning);
    card.stop();
    EXPECT_TRUE(job.get());
}

TEST_F(CardStop, card_that_hangs_ends_its_job_by_itself_and_runs_the_next) {
    card.setState(RunState::Run);
    auto job = start(jobOf({polyline({{0, 0}, {10000, 0}})}));
    ASSERT_TRUE(waitFor([this] { return card.head().at.x > 0.1; }));
    EXPECT_TRUE(card.setFault("stop_hangs", true));
    card.stop();
    card.setSpeed(0);
    EXPECT_TRUE(job.get());
    EXPECT_EQ(card.markInfo(), markinfo::kSuccess);
    EXPECT_TRUE(card.run(jobOf({square(0, 0, 1)}), false));
    card.clearFaults();
    EXPECT_TRUE(card.run(jobOf({square(0, 0, 1)}), false));
    EXPECT_EQ(card.markInfo(), markinfo::kSuccess);
}

TEST_F(CardStop, card_that_hangs_closes) {
    auto job = startLongLine();
    EXPECT_TRUE(card.setFault("stop_hangs", true));
    card.stop();
    card.close();
    EXPECT_TRUE(job.get());
    EXPECT_FALSE(card.isOpen());
}
