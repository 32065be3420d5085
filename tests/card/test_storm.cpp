// SPDX-License-Identifier: MIT
#include "cardfixture.h"

#include <cmath>
#include <random>

using namespace cardtest;
using namespace sim;

namespace {

/// Number of rounds: the given one, or TESSERA_STORM of the environment for a long run.
int rounds(int usual) {
    const char* text = std::getenv("TESSERA_STORM");
    return text && std::atoi(text) > 0 ? std::atoi(text) : usual;
}

Job smallJob(std::mt19937& random) {
    std::uniform_real_distribution<double> place(-20, 20);
    Job job;
    for (unsigned s = 0, count = 1 + random() % 20; s < count; ++s) {
        std::vector<Point> points(1 + random() % 8);
        for (Point& point : points)
            point = {place(random), place(random)};
        job.strokes.push_back(polyline(points, static_cast<int>(random() % 20)));
    }
    return job;
}

PenTable fastPens() {
    PenTable pens = plainPens();
    for (PenParams& pen : pens) {
        pen.markSpeed = 20000;
        pen.jumpSpeed = 50000;
        pen.openLaserDelay = 20;
        pen.turnDelay = 10;
        pen.pointTime = 300;
    }
    return pens;
}

class CardStorm : public CardTest {
protected:
    void SetUp() override {
        CardTest::SetUp();
        card.setPens(fastPens());
    }
};

} // namespace

TEST_F(CardStorm, nothing_is_marked_after_a_stop_at_any_moment) {
    std::mt19937 random(11);
    const double speeds[] = {0, 1, 1, 1, 10};
    constexpr int kRounds = 3000;
    int stopped = 0;
    for (int round = 0, n = rounds(kRounds); round < n; ++round) {
        card.setSpeed(speeds[random() % 5]);
        card.setBufferLoop(random() % 2);
        card.setState(RunState::Run);
        auto job = start(smallJob(random), true);
        const auto until = std::chrono::steady_clock::now() + std::chrono::microseconds(random() % 800);
        while (std::chrono::steady_clock::now() < until)
            std::this_thread::yield();
        const std::uint64_t jobs = card.runner().jobs();
        if (random() % 2)
            card.setState(RunState::Stop);
        else
            card.stop();
        const TraceSnapshot atStop = card.trace().snapshot();
        const Reaction reaction = card.runner().lastReaction();
        // A job that came to the card only after the stop is ended now; it says nothing about the one before.
        while (job.wait_for(std::chrono::microseconds(100)) != std::future_status::ready)
            card.stop();
        job.get();
        if (card.runner().jobs() != jobs)
            continue;
        ++stopped;
        const TraceSnapshot after = card.trace().snapshot();
        ASSERT_EQ(after.pass(), atStop.pass());
        ASSERT_EQ(after.size(), atStop.size());
        if (jobs > 0 && card.runner().lastOutcome() == Outcome::Stopped && after.size() > 0) {
            ASSERT_LE(after[after.size() - 1].ms, reaction.passMs + 1e-6);
        }
    }
    EXPECT_GT(stopped, rounds(kRounds) / 4);
}

TEST_F(CardStorm, stops_pauses_and_resumes_from_many_threads_end_in_order) {
    std::atomic<bool> end{false};
    std::atomic<std::uint64_t> calls{0};
    std::vector<std::thread> threads;
    for (unsigned t = 0; t < 3; ++t)
        threads.emplace_back([this, t, &end, &calls] {
            std::mt19937 random(100 + t);
            while (!end) {
                switch (random() % 9) {
                case 0:
                    card.stop();
                    break;
                case 1:
                    card.setState(RunState::Stop);
                    break;
                case 2:
                    card.setState(RunState::Pause);
                    break;
                case 3:
                case 4:
                    card.setState(RunState::Run);
                    break;
                case 5:
                    card.pause();
                    break;
                case 6:
                    card.restart();
                    break;
                case 7:
                    card.setSpeed(random() % 3 * 5.0);
                    break;
                default:
                    (void)card.markInfo();
                    (void)card.head();
                    (void)card.trace().snapshot();
                }
                ++calls;
            }
        });
    std::mt19937 random(12);
    std::thread resumer([this, &end] {
        // Somebody always resumes in the end, so no job can stay held for ever.
        while (!end) {
            card.setState(RunState::Run);
            card.restart();
            std::this_thread::sleep_for(std::chrono::milliseconds(1));
        }
    });
    const int n = rounds(2000);
    for (int round = 0; round < n; ++round) {
        card.setState(RunState::Run);
        card.run(smallJob(random), false);
    }
    EXPECT_GT(card.runner().jobs(), static_cast<std::uint64_t>(n / 10));
    end = true;
    for (std::thread& thread : threads)
        thread.join();
    resumer.join();
    EXPECT_GT(calls.load(), 0u);
    card.setState(RunState::Run);
    card.restart();
    card.setSpeed(0);
    EXPECT_TRUE(card.run(jobOf({square(0, 0, 10)}), false));
    EXPECT_EQ(card.trace().size(), 5u);
}

TEST_F(CardStorm, line_stays_whole_over_many_pauses) {
    // However often it is held, the line's rows lie on the line, in order, with the time that belongs to the place.
    PenTable pens = plainPens();
    card.setPens(pens);
    card.setSpeed(20);
    for (int round = 0, n = std::max(1, rounds(2000) / 400); round < n; ++round) {
        card.setState(RunState::Run);
        card.moveTo({0, 0}, 1e5);
        ASSERT_TRUE(waitFor([this] { return card.head().at == Point{0, 0}; }));
        auto job = start(jobOf({polyline({{0, 0}, {100, 0}})}));
        for (int pauses = 0; pauses < 400 && job.wait_for(std::chrono::seconds(0)) != std::future_status::ready;
             ++pauses) {
            card.pause();
            card.restart();
        }
        EXPECT_TRUE(job.get());
        const TraceSnapshot rows = card.trace().snapshot();
        ASSERT_GE(rows.size(), 2u);
        const double begin = rows[0].ms;
        for (std::size_t i = 1; i < rows.size(); ++i) {
            ASSERT_GE(rows[i].at.x, rows[i - 1].at.x);
            ASSERT_NEAR(rows[i].ms - begin, rows[i].at.x * 10.0, 1e-6);
        }
        EXPECT_EQ(rows[rows.size() - 1].at.x, 100);
        EXPECT_NEAR(card.lastTime().markMs, 1000, 1e-6);
        EXPECT_EQ(card.lastTime().vertices, 2u);
    }
}
