// SPDX-License-Identifier: MIT
#pragma once

#include <QString>
#include <condition_variable>
#include <cstdint>
#include <mutex>
#include <vector>

class MultiMarkThread;

namespace bench {

/// Records what the worker of a multi-document run does, on its own thread, and can hold each document before it is
/// marked.
class RunRecorder {
public:
    /// Looks at the worker from now on; has to outlive it. Room for `most` runs is taken at once.
    RunRecorder(MultiMarkThread& worker, std::size_t most);

    std::size_t begun() const;
    std::size_t ended() const;
    /// The documents in the order in which they were begun.
    std::vector<int> runs() const;
    /// Runs of which the card marked something else than the document named, or not one job.
    std::size_t wrong() const;

    /// Within ten seconds.
    bool waitBegun(std::size_t count);
    bool waitEnded(std::size_t count);
    /// Waits until nothing has begun for a third of a second and nothing is in hand.
    bool waitIdle();

    /// With `on` every document waits for a letOne() before it is marked.
    void hold(bool on);
    void letOne();

private:
    void told(int status, QString const& name);

    mutable std::mutex m_lock;
    std::condition_variable m_changed;
    std::vector<int> m_runs;
    std::size_t m_ended = 0;
    std::size_t m_wrong = 0;
    std::uint64_t m_jobs = 0;
    bool m_hold = false;
    std::size_t m_let = 0;
};

} // namespace bench
