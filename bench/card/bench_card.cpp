// SPDX-License-Identifier: MIT
// How soon the simulated card stops and pauses, beside a bare thread woken through a condition variable in the same
// run; how well its pace holds; how soon a large job begins; how fast it goes without pace.
#include "simengine/card/cardcore.h"

#include <algorithm>
#include <atomic>
#include <chrono>
#include <cmath>
#include <condition_variable>
#include <cstdio>
#include <cstdlib>
#include <future>
#include <mutex>
#include <random>
#include <string>
#include <thread>
#include <vector>

using namespace sim;
using Clock = std::chrono::steady_clock;

namespace {

double usSince(Clock::time_point begin, Clock::time_point end) {
    return std::chrono::duration<double, std::micro>(end - begin).count();
}

/// The least that a wake-up costs on this machine.
class BareThread {
public:
    BareThread()
        : m_thread([this] { work(); }) {}
    ~BareThread() {
        {
            const std::lock_guard<std::mutex> lock(m_mutex);
            m_quit = true;
        }
        m_wake.notify_one();
        m_thread.join();
    }

    /// µs from the call to the thread's awakening, and to the caller's return.
    std::pair<double, double> wake() {
        std::unique_lock<std::mutex> lock(m_mutex);
        const Clock::time_point begin = Clock::now();
        m_asked = true;
        m_wake.notify_one();
        m_done.wait(lock, [this] { return !m_asked; });
        return {usSince(begin, m_woken), usSince(begin, Clock::now())};
    }

private:
    void work() {
        std::unique_lock<std::mutex> lock(m_mutex);
        for (;;) {
            m_wake.wait(lock, [this] { return m_asked || m_quit; });
            if (m_quit)
                return;
            m_woken = Clock::now();
            m_asked = false;
            m_done.notify_one();
        }
    }

    std::mutex m_mutex;
    std::condition_variable m_wake;
    std::condition_variable m_done;
    bool m_asked = false;
    bool m_quit = false;
    Clock::time_point m_woken{};
    std::thread m_thread;
};

/// Threads that keep every core busy while they live.
class Load {
public:
    explicit Load(bool on) {
        for (unsigned i = 0; on && i < std::max(1u, std::thread::hardware_concurrency()); ++i)
            m_threads.emplace_back([this] {
                double x = 1;
                while (!m_end.load(std::memory_order_relaxed))
                    x = std::sqrt(x + 1);
                m_sink.store(x);
            });
    }
    ~Load() {
        m_end = true;
        for (std::thread& thread : m_threads)
            thread.join();
    }

private:
    std::atomic<bool> m_end{false};
    std::atomic<double> m_sink{0};
    std::vector<std::thread> m_threads;
};

struct Samples {
    std::vector<double> us;
    void add(double value) { us.push_back(value); }
    double at(double share) {
        std::sort(us.begin(), us.end());
        return us.empty()
                   ? 0
                   : us[std::min(us.size() - 1, static_cast<std::size_t>(share * static_cast<double>(us.size())))];
    }
};

void print(const char* what, Samples& card, Samples& bare) {
    std::printf("  %-22s card p50 %8.1f  p99 %8.1f  max %8.1f us | bare thread p50 %8.1f  p99 %8.1f  max %8.1f us | "
                "ratio p50 %.2f  p99 %.2f\n",
                what, card.at(0.5), card.at(0.99), card.at(1), bare.at(0.5), bare.at(0.99), bare.at(1),
                card.at(0.5) / bare.at(0.5), card.at(0.99) / bare.at(0.99));
}

PenTable pens(double markSpeed) {
    PenTable table{};
    for (PenParams& pen : table) {
        pen.markSpeed = markSpeed;
        pen.jumpSpeed = 4000;
        pen.turnDelay = 20;
        pen.openLaserDelay = 50;
    }
    return table;
}

/// The same pens with ramps at both ends of a stroke and wobble.
PenTable shapedPens(double markSpeed) {
    PenTable table = pens(markSpeed);
    for (PenParams& pen : table) {
        pen.lineWaveEnable = pen.wobbleEnable = true;
        for (std::size_t i = 0; i < kWavePoints; ++i)
            pen.lineWave[i] = {static_cast<double>(i % 10), static_cast<double>(i * 5)};
    }
    return table;
}

/// A mixture of long and tiny vectors that lasts about half a minute.
Job mixedJob() {
    Job job;
    for (int i = 0; i < 100; ++i) {
        Stroke stroke;
        for (int k = 0; k <= 300; ++k)
            stroke.points.push_back(
                {std::cos(k * 0.02) * 5 + i % 10 * 10 - 50, std::sin(k * 0.02) * 5 + i / 10 * 10 - 50});
        job.strokes.push_back(stroke);
        job.strokes.push_back({1, {{-50, i - 50.0}, {50, i - 50.0}}});
    }
    return job;
}

void pauseMoments(int rounds, bool busy, const PenTable& table, const char* what) {
    CardCore card;
    card.open();
    card.setPens(table);
    card.setBufferLoop(true);
    card.setState(RunState::Run);
    BareThread bare;
    const Load load(busy);
    const Job job = mixedJob();
    Samples acted[2], returned[2], bareActed, bareReturned;
    std::mt19937 random(1);
    const auto sample = [&](int kind, auto call) {
        std::this_thread::sleep_for(std::chrono::microseconds(200 + random() % 3000));
        const Clock::time_point begin = Clock::now();
        call();
        returned[kind].add(usSince(begin, Clock::now()));
        acted[kind].add(usSince(begin, card.runner().lastReaction().acted));
        const auto [woken, back] = bare.wake();
        bareActed.add(woken);
        bareReturned.add(back);
    };
    auto run = std::async(std::launch::async, [&] { return card.run(job, true); });
    while (card.head().activity != Activity::Running)
        std::this_thread::yield();
    for (int i = 0; i < rounds; ++i) {
        sample(0, [&card] { card.pause(); });
        card.restart();
    }
    card.stop();
    run.get();
    for (int i = 0; i < rounds; ++i) {
        const std::uint64_t before = card.runner().jobs();
        auto next = std::async(std::launch::async, [&] { return card.run(job, true); });
        while (card.runner().jobs() == before || card.head().activity != Activity::Running)
            std::this_thread::yield();
        sample(1, [&card] { card.stop(); });
        next.get();
    }
    std::printf("%s, %s, %d random moments each\n", what, busy ? "all cores busy" : "idle", rounds);
    print("pause takes effect", acted[0], bareActed);
    print("stop takes effect", acted[1], bareActed);
    print("pause call returns", returned[0], bareReturned);
    print("stop call returns", returned[1], bareReturned);
}

void pace(const char* what, const Job& job, double markSpeed, double factor) {
    CardCore card;
    card.open();
    card.setPens(pens(markSpeed));
    card.setSpeed(factor);
    card.setState(RunState::Run);
    const Clock::time_point begin = Clock::now();
    card.run(job, false);
    const double wall = usSince(begin, Clock::now()) / 1000;
    const double simulated = card.bufferRunTimeMs() / factor;
    std::printf("  %-34s simulated %9.2f ms  wall %9.2f ms  ratio %.4f\n", what, simulated, wall, wall / simulated);
}

Job hugeJob(int vertices) {
    Job job;
    Stroke stroke;
    for (int i = 0; i < vertices; ++i)
        stroke.points.push_back({std::cos(i * 0.01) * 40, std::sin(i * 0.013) * 40});
    job.strokes.push_back(stroke);
    return job;
}

void firstVector() {
    const Job job = hugeJob(100000);
    Samples first, bare;
    for (int i = 0; i < 20; ++i) {
        CardCore card;
        card.open();
        card.setPens(pens(500));
        card.setState(RunState::Run);
        BareThread thread;
        const Clock::time_point begin = Clock::now();
        auto run = std::async(std::launch::async, [&] { return card.run(job, false); });
        while (card.trace().size() < 2)
            std::this_thread::sleep_for(std::chrono::microseconds(50));
        first.add(usSince(begin, Clock::now()));
        card.stop();
        run.get();
        bare.add(thread.wake().second);
    }
    std::printf("first vector of 100 000 vertices, job copied and started: p50 %.2f ms  max %.2f ms (jump and vector "
                "themselves included)\n",
                first.at(0.5) / 1000, first.at(1) / 1000);
}

/// A stop in the moment in which the worker takes the job: after a job whose trace has millions of rows, and of a
/// border preview of as many vertices, whose way its caller finds.
void stopAtTheBegin() {
    const Job huge = hugeJob(4000000);
    Job line;
    line.strokes.push_back({0, {{0, 0}, {10000, 0}}});
    for (const MarkKind kind : {MarkKind::Laser, MarkKind::BorderPreview}) {
        Samples stops;
        CardCore card;
        card.open();
        card.setPens(pens(500));
        card.setState(RunState::Run);
        for (int i = 0; i < 10; ++i) {
            if (kind == MarkKind::Laser) {
                card.setSpeed(0);
                card.run(huge, false);
                card.setSpeed(1);
            }
            card.setKind(kind);
            const std::uint64_t before = card.runner().jobs();
            auto next =
                std::async(std::launch::async, [&] { return card.run(kind == MarkKind::Laser ? line : huge, false); });
            while (card.runner().jobs() == before)
                std::this_thread::yield();
            const Clock::time_point begin = Clock::now();
            card.stop();
            stops.add(usSince(begin, Clock::now()));
            next.get();
        }
        std::printf("stop at the begin of %s: p50 %.2f ms  max %.2f ms\n",
                    kind == MarkKind::Laser ? "a line after a trace of 4 000 000 rows"
                                            : "a border preview of 4 000 000 vertices",
                    stops.at(0.5) / 1000, stops.at(1) / 1000);
    }
}

/// What ramps and wobble cost beside a plain stroke of as many vertices, both as fast as possible.
void unpacedShaped() {
    const auto run = [](const Job& job, const PenTable& table) {
        CardCore card;
        card.open();
        card.setPens(table);
        card.setSpeed(0);
        card.setState(RunState::Run);
        const Clock::time_point begin = Clock::now();
        card.run(job, false);
        return std::pair{usSince(begin, Clock::now()) / 1000, card.trace().size()};
    };
    Job line;
    line.strokes.push_back({0, {{0, 0}, {10000, 0}}});
    const auto [shaped, rows] = run(line, shapedPens(500));
    const auto [plain, plainRows] = run(hugeJob(static_cast<int>(rows)), pens(500));
    std::printf("ramps and wobble, %zu vertices as fast as possible: %.1f ms, plain stroke of %zu: %.1f ms, ratio %.2f "
                "a vertex\n",
                rows, shaped, plainRows, plain,
                shaped / static_cast<double>(rows) / (plain / static_cast<double>(plainRows)));
}

/// The reference walks the same vertices and adds their lengths up.
void unpaced() {
    const Job job = hugeJob(1000000);
    CardCore card;
    card.open();
    card.setPens(pens(500));
    card.setSpeed(0);
    card.setState(RunState::Run);
    const Clock::time_point begin = Clock::now();
    card.run(job, false);
    const Clock::time_point middle = Clock::now();
    double length = 0;
    std::vector<TraceRow> rows;
    for (const Stroke& stroke : job.strokes) {
        for (std::size_t i = 1; i < stroke.points.size(); ++i) {
            length += distanceMm(stroke.points[i - 1], stroke.points[i]);
            rows.push_back({length, stroke.points[i], 0, true, true});
        }
    }
    const double run = usSince(begin, middle) / 1000;
    const double walk = usSince(middle, Clock::now()) / 1000;
    std::printf(
        "1 000 000 vertices as fast as possible: card %.1f ms, bare walk that keeps the rows %.1f ms, ratio %.2f "
        "(%.0f mm)\n",
        run, walk, run / walk, length);
}

} // namespace

int main(int argc, char** argv) {
    const int rounds = argc > 1 ? std::max(1, std::atoi(argv[1])) : 1000;
    pauseMoments(rounds, false, pens(500), "plain pens");
    pauseMoments(rounds, true, pens(500), "plain pens");
    pauseMoments(rounds, false, shapedPens(500), "ramps and wobble");
    std::printf("pace at factor 1 and 10\n");
    Job line;
    line.strokes.push_back({0, {{0, 0}, {1000, 0}}});
    pace("one vector of 2 s", line, 500, 1);
    pace("20 000 vectors of about 0.1 ms", hugeJob(20000), 6000, 1);
    pace("mixture", mixedJob(), 5000, 1);
    pace("mixture, factor 10", mixedJob(), 500, 10);
    {
        const Load load(true);
        pace("mixture, all cores busy", mixedJob(), 5000, 1);
    }
    firstVector();
    stopAtTheBegin();
    unpaced();
    unpacedShaped();
    return 0;
}
