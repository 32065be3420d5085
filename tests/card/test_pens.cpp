// SPDX-License-Identifier: MIT
// The service that makes what stands beside the card ready for a pen.
#include "cardfixture.h"

#include "simengine/card/statuswords.h"

#include <condition_variable>
#include <mutex>
#include <optional>
#include <random>

using namespace cardtest;
using namespace sim;

namespace {

constexpr double kForEver = std::numeric_limits<double>::infinity();

/// A service that notes its calls and, when it is to, works until the test lets it go on.
class Service {
public:
    struct Call {
        int pen;
        std::size_t rows; ///< of the trace when it was called
        std::thread::id thread;
    };

    explicit Service(CardCore& card, bool blocks = false)
        : m_card(card)
        , m_blocks(blocks) {}
    ~Service() { release(); }

    PenService function() {
        return [this](int pen, const PenParams&) { serve(pen); };
    }
    bool waitUntilCalled(std::size_t calls = 1) {
        return waitFor([&] { return this->calls().size() >= calls; });
    }
    void release() {
        const std::lock_guard<std::mutex> lock(m_mutex);
        m_blocks = false;
        m_changed.notify_all();
    }
    std::vector<Call> calls() const {
        const std::lock_guard<std::mutex> lock(m_mutex);
        return m_calls;
    }
    std::vector<int> pens() const {
        std::vector<int> pens;
        for (const Call& call : calls())
            pens.push_back(call.pen);
        return pens;
    }
    bool isWorking() const {
        const std::lock_guard<std::mutex> lock(m_mutex);
        return m_working;
    }

private:
    void serve(int pen) {
        const std::size_t rows = m_card.trace().size();
        std::unique_lock<std::mutex> lock(m_mutex);
        m_calls.push_back({pen, rows, std::this_thread::get_id()});
        m_working = true;
        m_changed.wait(lock, [this] { return !m_blocks; });
        m_working = false;
    }

    CardCore& m_card;
    mutable std::mutex m_mutex;
    std::condition_variable m_changed;
    std::vector<Call> m_calls;
    bool m_blocks;
    bool m_working = false;
};

class CardPens : public CardTest {
protected:
    void SetUp() override {
        CardTest::SetUp();
        card.setSpeed(0);
    }
    std::future<RunResult> start(Job job, Service& service, bool loop = false) {
        return std::async(std::launch::async, [this, &service, job = std::move(job), loop]() mutable {
            return card.run(std::move(job), loop, card.arm(), service.function());
        });
    }
};

/// Squares of the given pens side by side, five rows of the trace each.
Job squares(const std::vector<int>& pens) {
    Job job;
    for (std::size_t i = 0; i < pens.size(); ++i)
        job.strokes.push_back(square(10.0 * static_cast<double>(i), 0, 5, pens[i]));
    return job;
}

} // namespace

TEST(PensExecutor, halts_before_all_that_belongs_to_another_pen) {
    Trace trace;
    const Job job = jobOf({square(0, 0, 10, 3), square(20, 0, 10, 3), square(40, 0, 10, 4)});
    PlanSettings settings;
    settings.penChangeDelayMs = 7;
    const JobTime whole = estimate(job, plainPens(), {}, settings);
    Executor executor(job, plainPens(), settings, {}, {}, trace);
    executor.haltAtPens();
    const std::atomic<bool> calm{false};
    ASSERT_EQ(executor.advance(kForEver, calm), Executor::Progress::PenDue);
    EXPECT_EQ(executor.duePen(), 3);
    EXPECT_EQ(executor.nowUs(), 0);
    EXPECT_EQ(executor.advance(kForEver, calm), Executor::Progress::PenDue) << "it stays due";
    executor.penReady();
    ASSERT_EQ(executor.advance(kForEver, calm), Executor::Progress::PenDue);
    EXPECT_EQ(executor.duePen(), 4);
    EXPECT_EQ(trace.size(), 10u);
    EXPECT_FALSE(executor.motion().laser);
    const double before = executor.nowUs();
    executor.penReady();
    // the pen change delay is still to come
    EXPECT_EQ(executor.advance(before + 6999, calm), Executor::Progress::Caught);
    EXPECT_EQ(trace.size(), 10u);
    EXPECT_EQ(executor.advance(kForEver, calm), Executor::Progress::Finished);
    EXPECT_EQ(trace.size(), 15u);
    EXPECT_NEAR(executor.time().totalMs, whole.totalMs, whole.totalMs * 1e-12);
}

TEST(PensExecutor, repeated_pass_halts_only_where_the_pen_changes) {
    for (bool two : {false, true}) {
        Trace trace;
        const Job job = two ? squares({1, 2}) : squares({1, 1});
        LoopSettings loop;
        loop.loop = true;
        loop.delayMs = 50;
        Executor executor(job, plainPens(), {}, loop, {}, trace);
        executor.haltAtPens();
        const std::atomic<bool> attention{false};
        std::vector<int> pens;
        double us = 0;
        while (executor.passes() < 3) {
            if (executor.advance(us, attention) == Executor::Progress::PenDue) {
                pens.push_back(executor.duePen());
                executor.penReady();
            } else {
                us += 1000;
            }
        }
        EXPECT_EQ(pens, two ? (std::vector<int>{1, 2, 1, 2, 1, 2}) : std::vector<int>{1});
    }
}

TEST_F(CardPens, service_comes_on_the_callers_thread_before_the_strokes) {
    Service service(card);
    EXPECT_TRUE(card.run(squares({0, 0, 5, 19, 0}), false, card.arm(), service.function()));
    const std::vector<Service::Call> calls = service.calls();
    ASSERT_EQ(service.pens(), (std::vector<int>{0, 5, 19, 0}));
    EXPECT_EQ(calls[0].rows, 0u);
    EXPECT_EQ(calls[1].rows, 10u);
    EXPECT_EQ(calls[2].rows, 15u);
    EXPECT_EQ(calls[3].rows, 20u);
    for (const Service::Call& call : calls)
        EXPECT_EQ(call.thread, std::this_thread::get_id());
    EXPECT_EQ(card.trace().size(), 25u);
}

TEST_F(CardPens, pen_outside_the_table_is_served_as_the_one_it_is_marked_with) {
    Service service(card);
    EXPECT_TRUE(card.run(squares({0, 20, -1, 7}), false, card.arm(), service.function()));
    EXPECT_EQ(service.pens(), (std::vector<int>{0, 7}));
}

TEST_F(CardPens, service_gets_the_pens_of_the_job) {
    PenTable pens = plainPens();
    pens[4].waveNumber = 11;
    card.setPens(pens);
    std::vector<int> numbers;
    const PenService service = [&](int, const PenParams& pen) {
        card.setPens(plainPens()); // is for the next job
        numbers.push_back(pen.waveNumber);
    };
    EXPECT_TRUE(card.run(squares({0, 4}), false, card.arm(), service));
    EXPECT_EQ(numbers, (std::vector<int>{0, 11}));
}

TEST_F(CardPens, direct_jobs_are_served) {
    Service service(card);
    card.beginList();
    card.addPoint(2, {1, 1}, -1);
    card.addPolyline(3, square(0, 0, 5).points);
    EXPECT_TRUE(card.endList(service.function()));
    EXPECT_EQ(service.pens(), (std::vector<int>{2, 3}));
    EXPECT_EQ(service.calls()[1].rows, 2u);
}

TEST_F(CardPens, previews_are_not_served) {
    for (MarkKind kind : {MarkKind::RedPreview, MarkKind::BorderPreview}) {
        Service service(card);
        card.setKind(kind);
        EXPECT_TRUE(card.run(squares({0, 1}), false, card.arm(), service.function()));
        EXPECT_TRUE(service.calls().empty());
    }
}

TEST_F(CardPens, jobs_that_are_not_run_are_not_served) {
    Service service(card);
    EXPECT_FALSE(card.run(jobOf({}), false, card.arm(), service.function()));
    const JobRunner::Ticket ticket = card.arm();
    card.stop();
    EXPECT_TRUE(card.run(squares({0}), false, ticket, service.function()));
    card.setFault("job_fails", true);
    EXPECT_FALSE(card.run(squares({0}), false, card.arm(), service.function()));
    card.setFault("job_fails", false);
    card.close();
    EXPECT_FALSE(card.run(squares({0}), false, card.arm(), service.function()));
    EXPECT_TRUE(service.calls().empty());
}

TEST_F(CardPens, clock_of_the_job_stands_during_the_service) {
    for (double speed : {0.0, 10.0}) {
        card.setSpeed(speed);
        card.moveTo({0, 0}, 1e5);
        ASSERT_TRUE(waitFor([this] { return card.head().at == Point{0, 0}; }));
        const Job job = squares({0, 1});
        const JobTime expected = card.estimate(job);
        Service service(card, true);
        auto run = start(job, service);
        ASSERT_TRUE(service.waitUntilCalled());
        const auto until = std::chrono::steady_clock::now() + std::chrono::milliseconds(30);
        while (std::chrono::steady_clock::now() < until)
            std::this_thread::yield();
        EXPECT_EQ(card.head().at, (Point{0, 0}));
        EXPECT_FALSE(card.head().laser);
        EXPECT_EQ(card.head().activity, Activity::Running);
        EXPECT_EQ(card.head().passMs, 0.0);
        const auto released = std::chrono::steady_clock::now();
        service.release();
        EXPECT_TRUE(run.get());
        if (speed > 0) { // and what it waited is not made up for
            const std::chrono::duration<double, std::milli> wall = std::chrono::steady_clock::now() - released;
            EXPECT_GE(wall.count(), expected.totalMs / speed);
        }
        EXPECT_NEAR(card.bufferRunTimeMs(), expected.totalMs, expected.totalMs * 1e-12);
        const TraceSnapshot rows = card.trace().snapshot();
        EXPECT_NEAR(rows[rows.size() - 1].ms, expected.totalMs, expected.totalMs * 1e-12);
    }
}

TEST_F(CardPens, looped_job_is_served_at_each_change) {
    card.setBufferLoop(true);
    card.setSpeed(1000);
    Service service(card);
    auto run = start(squares({0, 1}), service, true);
    ASSERT_TRUE(service.waitUntilCalled(6));
    card.stop();
    EXPECT_TRUE(run.get());
    const std::vector<int> pens = service.pens();
    for (std::size_t i = 0; i < pens.size(); ++i)
        EXPECT_EQ(pens[i], static_cast<int>(i % 2));
}

TEST_F(CardPens, looped_job_of_one_pen_is_served_once) {
    card.setBufferLoop(true);
    Service service(card);
    auto run = start(squares({6, 6}), service, true);
    ASSERT_TRUE(waitFor([this] { return card.trace().snapshot().pass() > 20; }));
    card.stop();
    EXPECT_TRUE(run.get());
    EXPECT_EQ(service.pens(), std::vector<int>{6});
}

TEST_F(CardPens, stop_acts_during_the_service_and_nothing_more_is_marked) {
    for (bool byState : {false, true}) {
        for (std::size_t change : {0, 1}) {
            card.setState(RunState::Run);
            Service service(card, change == 0);
            CardCore& core = card;
            const PenService blocksLater = [&](int pen, const PenParams& params) {
                if (pen == 1)
                    core.pause(); // the job waits when this service is over
                service.function()(pen, params);
            };
            auto run = std::async(std::launch::async, [&] {
                return card.run(squares({0, 1}), false, card.arm(), change == 0 ? service.function() : blocksLater);
            });
            ASSERT_TRUE(service.waitUntilCalled(change + 1));
            const std::size_t rows = card.trace().size();
            EXPECT_EQ(rows, change * 5);
            if (byState)
                card.setState(RunState::Stop);
            else
                card.stop();
            EXPECT_EQ(card.head().activity, Activity::Idle) << "before the service has returned";
            EXPECT_EQ(service.isWorking(), change == 0);
            EXPECT_TRUE(card.waitSettled());
            service.release();
            EXPECT_TRUE(run.get());
            EXPECT_EQ(card.trace().size(), rows);
            EXPECT_EQ(service.calls().size(), change + 1);
            EXPECT_EQ(card.markInfo(), markinfo::kStopped);
        }
    }
}

TEST_F(CardPens, caller_returns_only_after_its_service) {
    Service service(card, true);
    auto run = start(squares({0}), service);
    ASSERT_TRUE(service.waitUntilCalled());
    card.stop();
    EXPECT_EQ(run.wait_for(std::chrono::milliseconds(20)), std::future_status::timeout);
    service.release();
    EXPECT_TRUE(run.get());
    EXPECT_FALSE(service.isWorking());
}

TEST_F(CardPens, next_job_waits_for_the_service_of_the_stopped_one) {
    Service first(card, true);
    auto stopped = start(squares({0}), first);
    ASSERT_TRUE(first.waitUntilCalled());
    card.stop();
    Service second(card);
    auto next = start(squares({1}), second);
    EXPECT_EQ(next.wait_for(std::chrono::milliseconds(20)), std::future_status::timeout);
    EXPECT_TRUE(second.calls().empty());
    first.release();
    EXPECT_TRUE(stopped.get());
    EXPECT_TRUE(next.get());
    EXPECT_EQ(second.pens(), std::vector<int>{1});
    EXPECT_EQ(card.trace().size(), 5u);
    EXPECT_EQ(card.markInfo(), markinfo::kSuccess);
}

TEST_F(CardPens, stop_ends_a_job_that_waits_for_the_service_of_another) {
    Service first(card, true);
    auto stopped = start(squares({0}), first);
    ASSERT_TRUE(first.waitUntilCalled());
    card.stop();
    Service second(card);
    auto next = start(squares({1}), second);
    while (next.wait_for(std::chrono::milliseconds(1)) != std::future_status::ready)
        card.stop();
    EXPECT_TRUE(next.get());
    EXPECT_TRUE(second.calls().empty());
    EXPECT_TRUE(first.isWorking());
    first.release();
    EXPECT_TRUE(stopped.get());
    EXPECT_EQ(card.trace().size(), 0u);
}

TEST_F(CardPens, second_job_is_refused_during_the_service) {
    Service service(card, true);
    auto run = start(squares({0}), service);
    ASSERT_TRUE(service.waitUntilCalled());
    EXPECT_FALSE(card.run(squares({1}), false));
    service.release();
    EXPECT_TRUE(run.get());
    EXPECT_EQ(card.runner().jobs(), 1u);
}

TEST_F(CardPens, pause_acts_during_the_service_and_outlasts_it) {
    for (bool byState : {false, true}) {
        Service service(card, true);
        auto run = start(squares({0, 1}), service);
        ASSERT_TRUE(service.waitUntilCalled());
        if (byState)
            card.setState(RunState::Pause);
        else
            card.pause();
        EXPECT_EQ(card.head().activity, Activity::Paused);
        EXPECT_EQ(card.markInfo(), markinfo::kPaused);
        service.release();
        ASSERT_TRUE(waitFor([&] { return !service.isWorking(); }));
        EXPECT_EQ(run.wait_for(std::chrono::milliseconds(20)), std::future_status::timeout);
        EXPECT_EQ(card.trace().size(), 0u);
        card.restart();
        card.setState(RunState::Run);
        EXPECT_TRUE(run.get());
        EXPECT_EQ(card.trace().size(), 10u);
        EXPECT_EQ(service.pens(), (std::vector<int>{0, 1}));
    }
}

TEST_F(CardPens, pause_that_is_taken_back_during_the_service_leaves_it_to_end) {
    Service service(card, true);
    auto run = start(squares({0}), service);
    ASSERT_TRUE(service.waitUntilCalled());
    card.setState(RunState::Pause);
    card.setState(RunState::Run);
    ASSERT_TRUE(waitForActivity(Activity::Running));
    EXPECT_EQ(card.trace().size(), 0u);
    service.release();
    EXPECT_TRUE(run.get());
    EXPECT_EQ(service.pens(), std::vector<int>{0});
}

TEST_F(CardPens, job_started_in_pause_is_served_when_it_goes_on) {
    card.setState(RunState::Pause);
    Service service(card);
    auto run = start(squares({0}), service);
    ASSERT_TRUE(waitForActivity(Activity::Paused));
    EXPECT_TRUE(service.calls().empty());
    card.setState(RunState::Run);
    EXPECT_TRUE(run.get());
    EXPECT_EQ(service.pens(), std::vector<int>{0});
}

TEST_F(CardPens, wait_for_an_input_is_one_during_the_service_too) {
    Service service(card, true);
    auto run = start(squares({0}), service);
    ASSERT_TRUE(service.waitUntilCalled());
    ASSERT_TRUE(card.setFault("wait_input", true));
    EXPECT_EQ(card.head().activity, Activity::Waiting);
    EXPECT_EQ(card.waitCode(), 1);
    service.release();
    ASSERT_TRUE(waitFor([&] { return !service.isWorking(); }));
    EXPECT_EQ(card.trace().size(), 0u);
    ASSERT_TRUE(card.setFault("wait_input", false));
    EXPECT_TRUE(run.get());
}

TEST_F(CardPens, closing_ends_the_job_during_the_service) {
    Service service(card, true);
    auto run = start(squares({0}), service);
    ASSERT_TRUE(service.waitUntilCalled());
    card.close();
    EXPECT_FALSE(card.isOpen());
    service.release();
    EXPECT_TRUE(run.get());
    EXPECT_EQ(card.trace().size(), 0u);
}

TEST_F(CardPens, service_may_stop_its_own_job) {
    const PenService service = [this](int pen, const PenParams&) {
        if (pen == 1)
            card.stop();
    };
    EXPECT_TRUE(card.run(squares({0, 1}), false, card.arm(), service));
    EXPECT_EQ(card.trace().size(), 5u);
    EXPECT_EQ(card.markInfo(), markinfo::kStopped);
}

TEST_F(CardPens, stops_and_pauses_at_any_moment_leave_no_stroke_of_an_unserved_pen) {
    std::mt19937 random(21);
    int stopped = 0;
    constexpr int kRounds = 400;
    for (int round = 0; round < kRounds; ++round) {
        card.setSpeed(round % 2 ? 0 : 20);
        card.setBufferLoop(true);
        card.setState(RunState::Run);
        std::atomic<int> ready{-1};
        std::atomic<bool> inService{false};
        const unsigned work = random() % 200;
        const PenService service = [&](int pen, const PenParams&) {
            inService = true;
            ready = -1;
            const auto until = std::chrono::steady_clock::now() + std::chrono::microseconds(work);
            while (std::chrono::steady_clock::now() < until)
                std::this_thread::yield();
            ready = pen;
            inService = false;
        };
        auto run = std::async(std::launch::async, [&] {
            return card.run(squares({0, 1, 2}), true, card.arm(), service);
        });
        const auto until = std::chrono::steady_clock::now() + std::chrono::microseconds(random() % 1500);
        while (std::chrono::steady_clock::now() < until)
            std::this_thread::yield();
        if (random() % 2) {
            card.pause();
            if (random() % 2)
                card.restart();
        }
        const std::uint64_t jobs = card.runner().jobs();
        card.stop();
        const TraceSnapshot atStop = card.trace().snapshot();
        const bool interrupted = inService;
        while (run.wait_for(std::chrono::microseconds(100)) != std::future_status::ready)
            card.stop();
        run.get();
        if (card.runner().jobs() != jobs || jobs == 0)
            continue;
        ++stopped;
        const TraceSnapshot after = card.trace().snapshot();
        ASSERT_EQ(after.size(), atStop.size());
        // What was marked last is the pen that was ready, or the one before the pen whose service was broken off.
        if (after.size() > 0 && !interrupted && after[after.size() - 1].laser && ready >= 0) {
            const int last = after[after.size() - 1].pen;
            ASSERT_TRUE(last == ready || (last + 1) % 3 == ready) << last << " " << ready;
        }
    }
    EXPECT_GT(stopped, kRounds / 4);
}
