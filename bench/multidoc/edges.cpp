// SPDX-License-Identifier: MIT
#include "bench/multidoc/edges.h"

#include "bench/multidoc/plates.h"
#include "bench/support/percentile.h"
#include "engine/markcardinstance.h"
#include "shell/mainwindow.h"
#include "simengine/simcontrol.h"

#include <QCoreApplication>
#include <algorithm>
#include <atomic>
#include <chrono>
#include <cstdio>
#include <random>
#include <thread>
#include <vector>

namespace bench {

namespace {

using Clock = std::chrono::steady_clock;

/// An output that nothing else uses: its write is the mark of an edge in the journal.
constexpr int kMarkOutput = 30;
constexpr double kBoundMs = 80.0;

sim::SimControl& machine() {
    return *tessera_sim_control();
}

struct Times {
    std::vector<double> toWorker; ///< edge to the worker's first call: wait for the poll, debounce, hand-over
    std::vector<double> toJob;    ///< until the job is ordered at the card
    std::vector<double> toVector; ///< until the trace has its first row
    std::vector<double> all;
    int lost = 0;
};

double timeOf(std::vector<sim::SimCall> const& calls, char const* name) {
    const auto found =
        std::find_if(calls.begin(), calls.end(), [name](sim::SimCall const& call) { return call.name == name; });
    return found != calls.end() ? found->ms : -1.0;
}

/// One edge of input 0 at any moment between two polls; on a thread of its own, as the plant is.
void edge(std::mt19937& random, Times& times) {
    std::this_thread::sleep_for(std::chrono::microseconds(50000 + random() % 30000));
    std::uint64_t pass = 0;
    std::size_t from = 0;
    std::vector<sim::SimTraceRow> rows;
    machine().followTrace(pass, from, rows);
    const std::uint64_t before = pass;
    const std::uint64_t since = machine().journalEnd();
    MarkCardInstance::Instance()->SetOutputBit(kMarkOutput, 1);
    const Clock::time_point start = Clock::now();
    machine().setInput(0, true);
    bool seen = false;
    while (!seen && Clock::now() - start < kPatience) {
        rows.clear();
        seen = machine().followTrace(pass, from, rows) > 0 && pass != before;
        std::this_thread::sleep_for(std::chrono::microseconds(100));
    }
    const double all = std::chrono::duration<double, std::milli>(Clock::now() - start).count();
    const std::vector<sim::SimCall> calls = machine().journal(since);
    const double marked = timeOf(calls, "SetOutputBit");
    const double worker = timeOf(calls, "SetMarkStaus");
    const double job = timeOf(calls, "StartMark");
    if (seen && worker >= 0.0 && job >= 0.0) {
        times.toWorker.push_back(worker - marked);
        times.toJob.push_back(job - worker);
        times.toVector.push_back(all - (job - marked));
        times.all.push_back(all);
    } else {
        ++times.lost;
    }
    while (MarkCardInstance::Instance()->GetMarkStatus() != MarkStatusStop)
        std::this_thread::sleep_for(std::chrono::milliseconds(1));
    machine().setInput(0, false);
}

} // namespace

bool measureEdges(int edges) {
    // The first document waits for input 0, the others for inputs that never come.
    std::vector<TrigerDoc> entries;
    for (int i = 0; i < int(kDocuments); ++i)
        entries.push_back({i == 0 ? 1U : 1U << 31, i == 0 ? 1U : 1U << 31, nameOf(i)});
    setProject(std::move(entries));
    machine().setSpeed(1.0);
    machine().setJournalEnabled(true);
    if (!startRun())
        return false;
    Times times;
    std::atomic<bool> done{false};
    std::thread plant([&] {
        std::mt19937 random(7);
        for (int i = 0; i < edges; ++i)
            edge(random, times);
        done = true;
    });
    while (!done)
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents, 20);
    plant.join();
    stopRun();
    std::printf("%d edges, %d without a vector; to the first vector: median %.1f ms, longest %.1f ms\n", edges,
                times.lost, percentile(times.all, 0.5), percentile(times.all, 1.0));
    std::printf(
        "  medians of its parts: %.1f ms to the worker (30 ms poll, 10 ms for the contacts), %.2f ms to the job's "
        "order, %.2f ms to the vector\n",
        percentile(times.toWorker, 0.5), percentile(times.toJob, 0.5), percentile(times.toVector, 0.5));
    return times.lost == 0 && percentile(times.all, 0.5) < kBoundMs;
}

} // namespace bench
