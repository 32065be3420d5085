// SPDX-License-Identifier: MIT
#pragma once

#include <chrono>
#include <mutex>
#include <sys/types.h>

namespace tessera {

/// Lends the thread that handles the input poll a real-time priority from the beat until the poll is done, so that on a
/// busy machine other programs do not come between. What that thread has under way, such as the drawing of a frame, is
/// brought to its end with it; the loan is bounded, so that a long calculation does not hold the machine. Where the
/// process may not, or the thread has a scheduling of its own, nothing is changed. Threads and programs that
/// are started meanwhile do not inherit the loan.
class PollPriority {
public:
    using Clock = std::chrono::steady_clock;

    /// Longest loan; the next one comes when the thread has done a poll.
    static constexpr std::chrono::milliseconds kLongest{60};

    /// Made on the thread that handles the polls, which lives as long as the object. `priority` counts from the least
    /// one of SCHED_FIFO.
    explicit PollPriority(int priority);
    /// Takes back what is lent.
    ~PollPriority();
    PollPriority(PollPriority const&) = delete;
    PollPriority& operator=(PollPriority const&) = delete;

    /// A poll is wanted. Any thread; `now` for a test's own clock.
    void Lend(Clock::time_point now = Clock::now());
    /// The poll is done. Any thread.
    void GiveBack();

private:
    void TakeBack();

    pid_t const m_nThread;
    int const m_nPriority; ///< 0 when the thread is not to be touched
    std::mutex m_Lock;
    bool m_bLent = false;
    bool m_bOverdue = false; ///< the last loan was taken back without a poll
    Clock::time_point m_Since{};
};

} // namespace tessera
