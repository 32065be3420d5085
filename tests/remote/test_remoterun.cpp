// SPDX-License-Identifier: MIT
#include "remote/remoterun.h"

#include <atomic>
#include <gtest/gtest.h>
#include <memory>
#include <thread>
#include <vector>

using tessera::RemoteRun;

namespace {

enum CardState { Run = 0, Stop = 2 };

/// What a worker does with a card that is a number.
void work(RemoteRun& run, std::atomic<int>& card, std::atomic<bool>& marked) {
    if (run.BeginUnlessStopped([&card] { card = Run; })) {
        while (card != Stop)
            std::this_thread::yield();
        marked = true;
    }
    run.End(marked);
    run.Leave();
}

} // namespace

TEST(RemoteRun, tells_its_result_when_the_worker_has_left) {
    RemoteRun run;
    EXPECT_TRUE(run.BeginUnlessStopped([] {}));
    EXPECT_FALSE(run.IsEnded());
    run.End(true);
    EXPECT_TRUE(run.IsEnded());
    EXPECT_FALSE(run.HasLeft());
    run.Leave();
    EXPECT_TRUE(run.HasLeft());
    EXPECT_TRUE(run.Wait());
}

TEST(RemoteRun, does_not_set_the_card_to_run_after_a_stop) {
    RemoteRun run;
    run.Stop();
    bool called = false;
    EXPECT_FALSE(run.BeginUnlessStopped([&called] { called = true; }));
    EXPECT_FALSE(called);
    EXPECT_TRUE(run.IsStopped());
    run.End(false);
    run.Leave();
    EXPECT_FALSE(run.Wait());
}

TEST(RemoteRun, everybody_who_waits_gets_the_result) {
    RemoteRun run;
    std::atomic<int> good{0};
    std::vector<std::thread> waiters;
    for (int i = 0; i < 8; ++i)
        waiters.emplace_back([&] { good += run.Wait() ? 1 : 0; });
    run.End(true);
    run.Leave();
    for (std::thread& waiter : waiters)
        waiter.join();
    EXPECT_EQ(good, 8);
}

/// A stop that was lost would leave the worker going on for ever: the test would not end.
TEST(RemoteRun, a_stop_at_any_moment_of_the_start_ends_the_run) {
    for (int i = 0; i < 2000; ++i) {
        RemoteRun run;
        std::atomic<int> card{Stop};
        std::atomic<bool> marked{false};
        std::thread worker([&] { work(run, card, marked); });
        if (i % 3 == 0)
            std::this_thread::yield();
        run.Stop();
        card = Stop;
        const bool result = run.Wait();
        EXPECT_EQ(result, marked.load());
        EXPECT_EQ(card, Stop);
        worker.join();
    }
}
