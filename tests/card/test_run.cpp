// SPDX-License-Identifier: MIT
#include "cardfixture.h"

#include "simengine/card/statuswords.h"

#include <cmath>
#include <random>

using namespace cardtest;
using namespace sim;

namespace {

class CardRun : public CardTest {
protected:
    void SetUp() override {
        CardTest::SetUp();
        card.setSpeed(0);
    }
};

} // namespace

TEST_F(CardRun, job_ends_well_with_the_estimated_time) {
    const Job job = jobOf({square(10, 0, 10), polyline({{0, 0}}, 3)});
    const JobTime expected = card.estimate(job);
    EXPECT_TRUE(card.run(job, false));
    EXPECT_NEAR(card.bufferRunTimeMs(), expected.totalMs, expected.totalMs * 1e-12);
    EXPECT_EQ(card.trace().size(), expected.vertices);
    EXPECT_EQ(card.markInfo(), markinfo::kSuccess);
    EXPECT_EQ(card.state(), RunState::Run);
    EXPECT_EQ(card.head().at, (Point{0, 0}));
}

TEST_F(CardRun, estimate_agrees_for_hundreds_of_random_jobs) {
    std::mt19937 random(5);
    std::uniform_real_distribution<double> place(-60, 60);
    for (int n = 0; n < 300; ++n) {
        PenTable pens = plainPens();
        for (PenParams& pen : pens) {
            pen.markSpeed = 1 + static_cast<double>(random() % 3000);
            pen.turnDelay = static_cast<int>(random() % 200);
            pen.minJumpDelay = static_cast<int>(random() % 500);
            pen.markDelay = static_cast<int>(random() % 500);
        }
        card.setPens(pens);
        card.setPenChangeDelayMs(static_cast<double>(random() % 4));
        card.setKind(static_cast<MarkKind>(random() % 3));
        Job job;
        for (unsigned s = 0, count = 1 + random() % 40; s < count; ++s) {
            std::vector<Point> points(1 + random() % 6);
            for (Point& point : points)
                point = {place(random), place(random)};
            job.strokes.push_back(polyline(points, static_cast<int>(random() % 20)));
        }
        const double expected = card.estimate(job).totalMs;
        ASSERT_TRUE(card.run(job, false));
        ASSERT_NEAR(card.bufferRunTimeMs(), expected, 1e-9 * expected + 1e-9);
    }
}

TEST_F(CardRun, kind_register_decides_how_a_job_is_run) {
    Job job = jobOf({square(10, 0, 10)}, MarkKind::Laser);
    card.setKind(MarkKind::RedPreview);
    EXPECT_TRUE(card.run(job, false));
    const TraceSnapshot rows = card.trace().snapshot();
    for (std::size_t i = 0; i < rows.size(); ++i)
        EXPECT_FALSE(rows[i].laser);
    EXPECT_NEAR(card.bufferRunTimeMs(), 10 + 200, 1e-9);
}

TEST_F(CardRun, a_job_keeps_the_kind_it_began_with) {
    const std::pair<MarkKind, MarkKind> changes[] = {{MarkKind::RedPreview, MarkKind::Laser},
                                                     {MarkKind::Laser, MarkKind::RedPreview},
                                                     {MarkKind::BorderPreview, MarkKind::Laser}};
    for (const auto& [ordered, later] : changes) {
        card.setKind(ordered);
        const auto ticket = card.arm();
        card.setKind(later);
        ASSERT_TRUE(card.run(jobOf({square(10, 0, 10)}), false, ticket));
        const TraceSnapshot rows = card.trace().snapshot();
        bool laser = false;
        for (std::size_t i = 0; i < rows.size(); ++i)
            laser = laser || rows[i].laser;
        EXPECT_EQ(laser, ordered == MarkKind::Laser);
        EXPECT_EQ(card.kind(), later);
    }
}

TEST_F(CardRun, next_job_starts_where_the_last_one_ended) {
    EXPECT_TRUE(card.run(jobOf({polyline({{0, 0}, {30, 40}})}), false));
    EXPECT_TRUE(card.run(jobOf({polyline({{0, 0}, {10, 0}})}), false));
    EXPECT_NEAR(card.lastTime().jumpMs, 50, 1e-9);
}

TEST_F(CardRun, nothing_is_run_in_state_stop) {
    card.setState(RunState::Stop);
    EXPECT_FALSE(card.run(jobOf({square(0, 0, 10)}), false));
    EXPECT_EQ(card.trace().size(), 0u);
    EXPECT_EQ(card.markInfo(), 0u);
}

TEST_F(CardRun, state_is_stop_before_anything_is_set) {
    CardCore fresh;
    EXPECT_EQ(fresh.state(), RunState::Stop);
    ASSERT_TRUE(fresh.open());
    EXPECT_EQ(fresh.state(), RunState::Stop);
    EXPECT_FALSE(fresh.run(jobOf({square(0, 0, 10)}), false));
}

TEST_F(CardRun, stop_while_the_job_was_prepared_ends_it_unmarked_but_well) {
    const auto ticket = card.arm();
    card.stop();
    EXPECT_TRUE(card.run(jobOf({square(0, 0, 10)}), false, ticket));
    EXPECT_EQ(card.trace().size(), 0u);
    EXPECT_TRUE(card.run(jobOf({square(0, 0, 10)}), false));
    EXPECT_EQ(card.trace().size(), 5u);
}

TEST_F(CardRun, empty_job_is_refused) {
    EXPECT_FALSE(card.run(jobOf({}), false));
    EXPECT_FALSE(card.run(jobOf({polyline({}), polyline({{NAN, 0}})}), false));
}

TEST_F(CardRun, failing_job_is_refused_while_the_fault_lasts) {
    EXPECT_TRUE(card.setFault("job_fails", true));
    EXPECT_FALSE(card.run(jobOf({square(0, 0, 10)}), false));
    card.clearFaults();
    EXPECT_TRUE(card.run(jobOf({square(0, 0, 10)}), false));
}

TEST_F(CardRun, second_job_is_refused_while_one_is_on_the_card) {
    card.setSpeed(1);
    auto first = start(jobOf({longLine(1000)}));
    ASSERT_TRUE(waitForActivity(Activity::Running));
    EXPECT_FALSE(card.run(jobOf({square(0, 0, 10)}), false));
    EXPECT_FALSE(card.moveTo({5, 5}, 1000));
    card.stop();
    EXPECT_TRUE(first.get());
}

TEST_F(CardRun, started_in_pause_waits_before_the_first_vector) {
    card.setState(RunState::Pause);
    auto job = start(jobOf({square(0, 0, 10)}));
    ASSERT_TRUE(waitForActivity(Activity::Paused));
    EXPECT_EQ(card.trace().size(), 0u);
    EXPECT_EQ(card.markInfo(), markinfo::kPaused);
    card.setState(RunState::Run);
    EXPECT_TRUE(job.get());
    EXPECT_EQ(card.trace().size(), 5u);
}

TEST_F(CardRun, direct_list_runs_whatever_the_run_state_was) {
    card.setState(RunState::Stop);
    card.beginList();
    card.addPolyline(0, {{0, 0}, {10, 0}});
    card.addPoint(2, {5, 5}, 2000);
    EXPECT_TRUE(card.endList());
    EXPECT_EQ(card.trace().size(), 4u);
    EXPECT_NEAR(card.lastTime().markMs, 102, 1e-9);
    EXPECT_EQ(card.state(), RunState::Stop);
}

TEST_F(CardRun, direct_list_is_not_run_after_a_stop_since_it_was_begun) {
    card.beginList();
    card.addPolyline(0, {{0, 0}, {10, 0}});
    card.setState(RunState::Stop);
    EXPECT_TRUE(card.endList());
    EXPECT_EQ(card.trace().size(), 0u);
}

TEST_F(CardRun, strokes_without_an_opened_list_are_run_by_its_end) {
    card.addPolyline(0, {{0, 0}, {10, 0}});
    EXPECT_TRUE(card.endList());
    EXPECT_EQ(card.trace().size(), 2u);
    EXPECT_FALSE(card.endList());
}

TEST_F(CardRun, begin_forgets_a_list_that_was_not_run) {
    card.addPolyline(0, {{0, 0}, {10, 0}});
    card.beginList();
    card.addPolyline(0, {{0, 0}, {20, 0}});
    EXPECT_TRUE(card.endList());
    EXPECT_NEAR(card.lastTime().markedMm, 20, 1e-9);
}

TEST_F(CardRun, buffer_loop_repeats_until_a_stop_and_ends_well) {
    card.setBufferLoop(true);
    card.setLoopDelayMs(3);
    auto job = start(jobOf({square(0, 0, 10)}), true);
    const std::uint64_t first = card.trace().pass();
    ASSERT_TRUE(waitFor([&] { return card.trace().pass() > first + 20; }));
    card.stop();
    EXPECT_TRUE(job.get());
    EXPECT_NEAR(card.bufferRunTimeMs(), 400, 1e-6);
    EXPECT_LE(card.trace().size(), 5u);
    EXPECT_EQ(card.markInfo(), markinfo::kStopped);
}

TEST_F(CardRun, loop_without_the_buffer_loop_is_one_pass) {
    card.setBufferLoop(false);
    EXPECT_TRUE(card.run(jobOf({square(0, 0, 10)}), true));
    EXPECT_EQ(card.trace().size(), 5u);
}

TEST_F(CardRun, stop_in_the_loop_delay_acts_at_once) {
    card.setSpeed(1);
    card.setBufferLoop(true);
    card.setLoopDelayMs(1e9);
    auto job = start(jobOf({polyline({{0, 0}})}), true);
    ASSERT_TRUE(waitFor([&] { return card.trace().size() == 2; }));
    card.stop();
    EXPECT_TRUE(job.get());
}

TEST_F(CardRun, run_time_is_that_of_the_last_job_and_zero_when_closed) {
    EXPECT_EQ(card.bufferRunTimeMs(), 0);
    card.run(jobOf({polyline({{0, 0}, {10, 0}})}), false);
    EXPECT_NEAR(card.bufferRunTimeMs(), 100, 1e-9);
    EXPECT_FALSE(card.run(jobOf({}), false));
    EXPECT_NEAR(card.bufferRunTimeMs(), 100, 1e-9);
    card.close();
    EXPECT_EQ(card.bufferRunTimeMs(), 0);
}

TEST_F(CardRun, mirrors_move_without_a_job) {
    card.moveTo({12, -7}, 1000);
    EXPECT_EQ(card.head().at, (Point{12, -7}));
    card.setSpeed(1);
    EXPECT_TRUE(card.moveTo({10012, -7}, 1)); // nearly three hours
    EXPECT_LT(card.head().at.x, 13);
    card.moveTo({0, 0}, 1e9);
    ASSERT_TRUE(waitFor([&] { return card.head().at == Point{0, 0}; }));
    EXPECT_FALSE(card.moveTo({NAN, 0}, 1000));
    EXPECT_TRUE(card.moveTo({0, 0}, -1));
}

TEST_F(CardRun, waits_for_what_a_fault_names_and_tells_it) {
    const std::pair<const char*, int> rows[] = {
        {"wait_input", 1}, {"wait_motion", 2}, {"wait_encoder", 3}, {"wait_mirror", 4}};
    for (const auto& [name, code] : rows) {
        ASSERT_TRUE(card.setFault(name, true));
        EXPECT_EQ(card.waitCode(), 0) << "nothing waits without a job";
        auto job = start(jobOf({square(0, 0, 10)}));
        ASSERT_TRUE(waitForActivity(Activity::Waiting)) << name;
        EXPECT_EQ(card.waitCode(), code);
        EXPECT_EQ(card.markInfo(), markinfo::kRunning | static_cast<std::uint32_t>(code) << markinfo::kWaitShift);
        card.setFault(name, false);
        EXPECT_TRUE(job.get());
    }
}

TEST_F(CardRun, status_words_tell_faults_and_results) {
    EXPECT_EQ(card.scanState(), 0x103u);
    card.setFault("scan_loop", true);
    card.setFault("scan_power", true);
    EXPECT_EQ(card.scanState(), 0x902u);
    EXPECT_EQ(card.alarmWord(), 0u);
    card.setFault("card_alarm", true);
    EXPECT_EQ(card.alarmWord(), 1u);
    card.clearAlarm();
    EXPECT_EQ(card.alarmWord(), 1u);
    card.clearFaults();
    EXPECT_EQ(card.alarmWord(), 0u);
    card.setFault("io_timeout", true);
    card.setFault("data_underrun", true);
    EXPECT_EQ(card.markInfo(), markinfo::kTimeOut | markinfo::kUnderrun);
    card.clearFaults();
    card.run(jobOf({square(0, 0, 10)}), false);
    EXPECT_EQ(card.markInfo(), markinfo::kSuccess);
    card.clearAlarm();
    EXPECT_EQ(card.markInfo(), 0u);
}

TEST_F(CardRun, time_out_and_underrun_stay_until_the_alarm_is_cleared_or_the_next_job) {
    const std::pair<const char*, std::uint32_t> rows[] = {{"io_timeout", markinfo::kTimeOut},
                                                          {"data_underrun", markinfo::kUnderrun}};
    for (const auto& [name, bit] : rows) {
        card.setFault(name, true);
        card.setFault(name, false);
        EXPECT_EQ(card.markInfo(), bit) << name;
        card.clearAlarm();
        EXPECT_EQ(card.markInfo(), 0u) << name;
        card.setFault(name, true);
        card.clearAlarm();
        EXPECT_EQ(card.markInfo(), bit) << "the cause lasts";
        card.setFault(name, true);
        card.setFault(name, false);
        ASSERT_TRUE(card.run(jobOf({square(0, 0, 10)}), false));
        EXPECT_EQ(card.markInfo(), markinfo::kSuccess) << name;
        card.clearAlarm();
    }
}

TEST_F(CardRun, a_job_that_is_refused_drops_no_alarm_of_the_running_one) {
    card.setFault("wait_encoder", true);
    auto job = start(jobOf({square(0, 0, 10)}));
    ASSERT_TRUE(waitForActivity(Activity::Waiting));
    card.setFault("data_underrun", true);
    card.setFault("data_underrun", false);
    EXPECT_FALSE(card.run(jobOf({square(0, 0, 10)}), false));
    EXPECT_TRUE(card.markInfo() & markinfo::kUnderrun);
    card.setFault("wait_encoder", false);
    EXPECT_TRUE(job.get());
    EXPECT_EQ(card.markInfo(), markinfo::kUnderrun | markinfo::kSuccess);
}

TEST_F(CardRun, waiting_for_an_input_longer_than_the_alarm_time_is_a_time_out) {
    card.devices().setAlarmTime(30);
    card.setFault("wait_input", true);
    auto job = start(jobOf({square(0, 0, 10)}));
    ASSERT_TRUE(waitForActivity(Activity::Waiting));
    ASSERT_TRUE(waitFor([&] { return (card.markInfo() & markinfo::kTimeOut) != 0; }));
    EXPECT_GE(card.runner().longestInputWaitMs(), 30.0);
    EXPECT_EQ(card.head().activity, Activity::Waiting) << "it goes on waiting";
    card.devices().setAlarmTime(3600000);
    EXPECT_FALSE(card.markInfo() & markinfo::kTimeOut);
    card.devices().setAlarmTime(30);
    card.setFault("wait_input", false);
    EXPECT_TRUE(job.get());
    EXPECT_EQ(card.markInfo(), markinfo::kTimeOut | markinfo::kSuccess);
    ASSERT_TRUE(card.run(jobOf({square(0, 0, 10)}), false));
    EXPECT_EQ(card.markInfo(), markinfo::kSuccess);
}

TEST_F(CardRun, clearing_the_alarm_gives_a_waiting_job_its_alarm_time_again) {
    card.devices().setAlarmTime(40);
    card.setFault("wait_input", true);
    auto job = start(jobOf({square(0, 0, 10)}));
    ASSERT_TRUE(waitFor([&] { return (card.markInfo() & markinfo::kTimeOut) != 0; }));
    const auto cleared = std::chrono::steady_clock::now();
    card.clearAlarm();
    const double longest = card.runner().longestInputWaitMs();
    const std::chrono::duration<double, std::milli> since = std::chrono::steady_clock::now() - cleared;
    EXPECT_LE(longest, since.count());
    ASSERT_TRUE(waitFor([&] { return (card.markInfo() & markinfo::kTimeOut) != 0; }));
    card.stop();
    EXPECT_TRUE(job.get());
    EXPECT_EQ(card.markInfo(), markinfo::kTimeOut | markinfo::kStopped);
    card.clearAlarm();
    EXPECT_EQ(card.markInfo(), 0u);
}

TEST_F(CardRun, clearing_the_alarm_during_a_job_leaves_its_result_to_come) {
    card.setFault("wait_encoder", true);
    auto job = start(jobOf({square(0, 0, 10)}));
    ASSERT_TRUE(waitForActivity(Activity::Waiting));
    card.clearAlarm();
    card.setFault("wait_encoder", false);
    EXPECT_TRUE(job.get());
    EXPECT_EQ(card.markInfo(), markinfo::kSuccess);
}

TEST_F(CardRun, only_the_wait_for_an_input_is_timed) {
    card.devices().setAlarmTime(1);
    for (const char* name : {"wait_motion", "wait_encoder", "wait_mirror"}) {
        card.setFault(name, true);
        auto job = start(jobOf({square(0, 0, 10)}));
        ASSERT_TRUE(waitForActivity(Activity::Waiting)) << name;
        card.setFault(name, false);
        EXPECT_TRUE(job.get());
        EXPECT_EQ(card.runner().longestInputWaitMs(), 0.0) << name;
    }
    card.setFault("wait_input", true);
    card.setState(RunState::Pause);
    auto job = start(jobOf({square(0, 0, 10)}));
    ASSERT_TRUE(waitForActivity(Activity::Paused));
    EXPECT_EQ(card.runner().longestInputWaitMs(), 0.0) << "a pause is no wait";
    card.setState(RunState::Run);
    ASSERT_TRUE(waitForActivity(Activity::Waiting));
    card.setFault("wait_input", false);
    EXPECT_TRUE(job.get());
    EXPECT_GT(card.runner().longestInputWaitMs(), 0.0);
}

TEST_F(CardRun, without_an_alarm_time_no_wait_is_too_long) {
    card.devices().setAlarmTime(0);
    card.setFault("wait_input", true);
    auto job = start(jobOf({square(0, 0, 10)}));
    ASSERT_TRUE(waitFor([&] { return card.runner().longestInputWaitMs() > 5.0; }));
    EXPECT_FALSE(card.markInfo() & markinfo::kTimeOut);
    card.setFault("wait_input", false);
    EXPECT_TRUE(job.get());
}

TEST_F(CardRun, a_head_without_closed_loop_tells_no_loop) {
    card.setFault("scan_open_loop", true);
    EXPECT_EQ(card.scanState(), 0u);
    card.setFault("scan_loop", true);
    card.setFault("scan_power", true);
    EXPECT_EQ(card.scanState(), scanstate::kPower);
    card.clearFaults();
    EXPECT_EQ(card.scanState(), 0x103u);
}

TEST_F(CardRun, ten_thousand_jobs_keep_one_trace) {
    const Job job = jobOf({square(0, 0, 10), polyline({{1, 1}})});
    const int jobs = 10000;
    for (int i = 0; i < jobs; ++i)
        ASSERT_TRUE(card.run(job, false));
    EXPECT_EQ(card.trace().size(), 7u);
    EXPECT_EQ(card.runner().jobs(), static_cast<std::uint64_t>(jobs));
}

TEST_F(CardRun, first_vectors_are_marked_long_before_a_huge_job_is_done) {
    card.setSpeed(1);
    Stroke stroke;
    for (int i = 0; i < 100000; ++i)
        stroke.points.push_back({static_cast<double>(i % 2), static_cast<double>(i % 50)});
    auto job = start(jobOf({stroke}));
    ASSERT_TRUE(waitFor([&] { return card.trace().size() >= 2; }));
    EXPECT_LT(card.trace().size(), 50000u);
    card.stop();
    EXPECT_TRUE(job.get());
}

TEST_F(CardRun, result_is_that_of_the_job_whatever_the_card_does_afterwards) {
    card.setSpeed(0);
    const RunResult small = card.run(jobOf({square(0, 0, 10)}), false);
    card.clearAlarm();
    const RunResult large = card.run(jobOf({square(0, 0, 20)}), false);
    EXPECT_EQ(small.outcome, Outcome::Done);
    EXPECT_NEAR(small.time.markedMm, 40.0, 1e-9);
    EXPECT_NEAR(large.time.markedMm, 80.0, 1e-9);
    EXPECT_EQ(small.time.passes, 1u);

    const JobRunner::Ticket ticket = card.arm();
    card.stop();
    const RunResult unbegun = card.run(jobOf({square(0, 0, 10)}), false, ticket);
    EXPECT_EQ(unbegun.outcome, Outcome::Stopped);
    EXPECT_EQ(unbegun.time.passes, 0u);
    EXPECT_EQ(unbegun.stopOrders, large.stopOrders + 1);
    EXPECT_EQ(card.run(jobOf({}), false).outcome, Outcome::Refused);
}

TEST_F(CardRun, rows_of_the_job_before_are_freed_when_the_next_one_has_ended) {
    card.setSpeed(0);
    Stroke stroke;
    for (int i = 0; i < 100'000; ++i)
        stroke.points.push_back({i * 1e-3, 0});
    EXPECT_TRUE(card.run(jobOf({stroke}), false));
    EXPECT_GE(card.trace().blocks(), 24u);
    EXPECT_FALSE(card.run(jobOf({}), false));
    EXPECT_GE(card.trace().blocks(), 24u); // nothing was run, so the trace stays
    EXPECT_EQ(card.trace().size(), 100'000u);
    EXPECT_TRUE(card.run(jobOf({square(0, 0, 10)}), false));
    EXPECT_EQ(card.trace().blocks(), 1u);
    EXPECT_EQ(card.trace().size(), 5u);
}
