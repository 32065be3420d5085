// SPDX-License-Identifier: MIT
#include "multidoc/markqueue.h"

#include <atomic>
#include <gtest/gtest.h>
#include <thread>
#include <vector>

using namespace tessera;
using namespace std::chrono_literals;

namespace {

QRulerView* view(std::uintptr_t number) {
    return reinterpret_cast<QRulerView*>(number); // NOLINT(performance-no-int-to-ptr): only told apart, never used
}

constexpr auto kLong = 60s;

TEST(MarkQueue, gives_documents_in_the_order_they_came) {
    MarkQueue queue;
    queue.SetRunning(true);
    EXPECT_TRUE(queue.Add(view(1), "a"));
    EXPECT_TRUE(queue.Add(view(2), "b"));
    EXPECT_EQ(queue.Count(), 2U);
    EXPECT_EQ(queue.Take(kLong), view(1));
    EXPECT_EQ(queue.CurrentName(), "a");
    EXPECT_EQ(queue.Take(kLong), view(2));
    EXPECT_EQ(queue.Count(), 0U);
}

TEST(MarkQueue, refuses_a_name_that_waits_and_takes_it_again_once_it_is_in_hand) {
    MarkQueue queue;
    queue.SetRunning(true);
    EXPECT_TRUE(queue.Add(view(1), "a"));
    EXPECT_FALSE(queue.Add(view(2), "a"));
    EXPECT_EQ(queue.Take(kLong), view(1));
    EXPECT_TRUE(queue.Add(view(2), "a"));
}

TEST(MarkQueue, an_empty_queue_gives_nothing_after_its_time) {
    MarkQueue queue;
    queue.SetRunning(true);
    EXPECT_EQ(queue.Take(1ms), nullptr);
    EXPECT_EQ(queue.CurrentName(), "");
}

TEST(MarkQueue, the_end_of_the_run_wakes_who_waits) {
    MarkQueue queue;
    queue.SetRunning(true);
    std::thread end([&] { queue.SetRunning(false); });
    EXPECT_EQ(queue.Take(kLong), nullptr);
    end.join();
    EXPECT_FALSE(queue.IsRunning());
}

TEST(MarkQueue, a_document_wakes_who_waits) {
    MarkQueue queue;
    queue.SetRunning(true);
    std::thread trigger([&] { queue.Add(view(7), "a"); });
    EXPECT_EQ(queue.Take(kLong), view(7));
    trigger.join();
}

TEST(MarkQueue, clearing_leaves_the_document_in_hand) {
    MarkQueue queue;
    queue.SetRunning(true);
    queue.Add(view(1), "a");
    queue.Add(view(2), "b");
    queue.Take(kLong);
    queue.Clear();
    EXPECT_EQ(queue.Count(), 0U);
    EXPECT_EQ(queue.CurrentName(), "a");
    EXPECT_TRUE(queue.IsWanted());
}

TEST(MarkQueue, a_stop_before_the_card_is_set_to_run_holds) {
    MarkQueue queue;
    queue.SetRunning(true);
    queue.Add(view(1), "a");
    queue.Add(view(2), "b");
    queue.Take(kLong);
    queue.StopCurrent();
    bool set = false;
    EXPECT_FALSE(queue.BeginUnlessStopped([&] { set = true; }));
    EXPECT_FALSE(set);
    EXPECT_FALSE(queue.IsWanted());
    queue.Done();
    // The next document is not meant by it.
    queue.Take(kLong);
    EXPECT_TRUE(queue.BeginUnlessStopped([&] { set = true; }));
    EXPECT_TRUE(set && queue.IsWanted());
}

TEST(MarkQueue, a_stop_while_nothing_is_in_hand_is_not_kept) {
    MarkQueue queue;
    queue.SetRunning(true);
    queue.StopCurrent();
    queue.Add(view(1), "a");
    queue.Take(kLong);
    EXPECT_TRUE(queue.IsWanted());
}

TEST(MarkQueue, after_the_end_of_the_run_nothing_begins) {
    MarkQueue queue;
    queue.SetRunning(true);
    queue.Add(view(1), "a");
    queue.Take(kLong);
    queue.SetRunning(false);
    EXPECT_FALSE(queue.BeginUnlessStopped([] { FAIL(); }));
    EXPECT_FALSE(queue.IsWanted());
}

TEST(MarkQueue, a_view_that_goes_does_not_wait_any_more) {
    MarkQueue queue;
    queue.SetRunning(true);
    queue.Add(view(1), "a");
    queue.Add(view(2), "b");
    EXPECT_FALSE(queue.Forget(view(1)));
    EXPECT_EQ(queue.Take(kLong), view(2));
    EXPECT_FALSE(queue.Forget(view(3)));
    EXPECT_FALSE(queue.Forget(nullptr));
    EXPECT_TRUE(queue.IsWanted());
}

TEST(MarkQueue, who_deletes_the_view_in_hand_waits_until_it_is_done) {
    MarkQueue queue;
    queue.SetRunning(true);
    queue.Add(view(1), "a");
    queue.Take(kLong);
    EXPECT_TRUE(queue.Forget(view(1)));
    EXPECT_FALSE(queue.IsWanted());
    std::atomic<bool> done{false};
    std::thread worker([&] {
        done = true;
        queue.Done();
    });
    queue.WaitUntilDone(view(1));
    EXPECT_TRUE(done);
    worker.join();
}

/// A worker, two that trigger, one that stops and one that deletes: everything accepted is taken once, in order, unless
/// it was taken out; no view is in hand after it was forgotten.
TEST(MarkQueue, there_is_work_while_one_waits_or_is_in_hand_and_the_run_is_on) {
    MarkQueue queue;
    queue.SetRunning(true);
    EXPECT_FALSE(queue.HasWork());
    queue.Add(view(1), "a");
    queue.Add(view(2), "b");
    EXPECT_TRUE(queue.HasWork());
    queue.Take(kLong);
    queue.Done();
    EXPECT_TRUE(queue.HasWork());
    queue.Take(kLong);
    EXPECT_TRUE(queue.HasWork());
    queue.Done();
    EXPECT_FALSE(queue.HasWork());
    queue.Add(view(1), "a");
    queue.SetRunning(false);
    EXPECT_FALSE(queue.HasWork());
}

TEST(MarkQueue, many_threads_lose_and_invent_nothing) {
    MarkQueue queue;
    queue.SetRunning(true);
    std::atomic<std::size_t> added{0};
    std::atomic<std::size_t> taken{0};
    std::thread worker([&] {
        while (true) {
            if (queue.Take(1ms)) {
                ++taken;
                queue.BeginUnlessStopped([] {});
                queue.Done();
            } else if (!queue.IsRunning()) {
                break;
            }
        }
    });
    std::vector<std::thread> others;
    for (int thread = 0; thread < 2; ++thread) {
        others.emplace_back([&, thread] {
            for (std::uintptr_t i = 1; i <= 2000; ++i)
                added += queue.Add(view(i), std::to_string(thread) + '/' + std::to_string(i % 50)) ? 1 : 0;
        });
    }
    others.emplace_back([&] {
        for (int i = 0; i < 2000; ++i)
            queue.StopCurrent();
    });
    others.emplace_back([&] {
        for (std::uintptr_t i = 5000; i < 7000; ++i) {
            if (queue.Forget(view(i)))
                queue.WaitUntilDone(view(i));
        }
    });
    for (std::thread& thread : others)
        thread.join();
    queue.SetRunning(false);
    worker.join();
    EXPECT_EQ(taken + queue.Count(), added);
    EXPECT_EQ(queue.Count(), 0U);
}

} // namespace
