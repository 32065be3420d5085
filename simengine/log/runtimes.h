// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "simengine/document/runplan.h"
#include "simengine/log/runtimefile.h"

#include <atomic>
#include <condition_variable>
#include <deque>
#include <memory>
#include <mutex>
#include <thread>

namespace sim {

/// A run that has ended, with what its time is estimated from.
struct EndedRun {
    QString file; ///< where its record is kept
    RunPlan plan; ///< as it was before the run
    RunTime time; ///< the estimate is still missing
};

/// Keeps the estimates and the actual times of laser runs side by side, the newest of each document. The estimate is
/// made from the document as it was before the run, on a thread of its own so that no run waits for it. All calls from
/// any thread.
class RunTimes {
public:
    static RunTimes& instance();
    ~RunTimes();
    RunTimes(const RunTimes&) = delete;
    RunTimes& operator=(const RunTimes&) = delete;

    void add(EndedRun run);
    /// The newest runs of a document, the newest first; of all documents with an empty name.
    std::vector<RunTime> newest(const QString& document, std::size_t limit);
    /// Changes with every new record.
    std::uint64_t version() const { return m_version.load(); }
    /// Waits until all runs so far are in their file; for who is about to take the file away.
    void flush();

private:
    RunTimes() = default;
    void work();
    double estimateOf(const RunPlan& plan);

    using Runs = std::vector<RunTime>; ///< oldest first

    std::mutex m_mutex; ///< guards the seven below
    std::condition_variable m_changed;
    std::deque<EndedRun> m_ended;
    QString m_file; ///< whose runs these are
    std::shared_ptr<const Runs> m_runs;
    bool m_busy = false;
    bool m_end = false;
    int m_flushing = 0; ///< callers that wait
    std::thread m_thread; ///< made with the first run
    Cancellation m_work;  ///< of all estimates; cancelled at the end
    std::atomic<std::uint64_t> m_version{0};

    // The worker's own: passes that follow one another are mostly the same.
    RunPlan m_lastPlan; ///< without its objects
    std::weak_ptr<const ObjectList> m_lastObjects;
    double m_lastEstimate = -1.0;
};

/// The path of the records of this station.
QString runTimesPath();

} // namespace sim
