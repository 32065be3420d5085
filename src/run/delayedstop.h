// SPDX-License-Identifier: MIT
#pragma once

#include <chrono>
#include <condition_variable>
#include <functional>
#include <memory>
#include <mutex>
#include <set>
#include <thread>

namespace tessera {

/// Stops a run some time after an input asked for it. The stop is given on a thread of its own, so that it comes on
/// time while the main thread waits for the end of a preview. Several orders give a stop each, at their times.
class DelayedStop {
public:
    /// `stop` is called on the object's thread, or on one that called StopAfter.
    explicit DelayedStop(std::function<void()> stop);
    ~DelayedStop();
    DelayedStop(DelayedStop const&) = delete;
    DelayedStop& operator=(DelayedStop const&) = delete;

    /// Orders a stop in `ms`, at once for 0 or below, and returns. Any thread.
    void Order(int ms);
    /// Waits `ms` on the calling thread and gives the stop; returns without it when End() comes meanwhile or came
    /// before.
    void StopAfter(int ms);
    /// Drops what is still waiting and returns when no stop is under way; none is given afterwards. Main thread.
    void End();

    /// Makes `current` the one of StopWithDelay; null for none. Any thread.
    static void SetCurrent(std::shared_ptr<DelayedStop> current);
    static std::shared_ptr<DelayedStop> Current();

private:
    using Clock = std::chrono::steady_clock;

    void Work();

    std::function<void()> const m_Stop;
    std::mutex m_Lock;
    std::condition_variable m_Wake;
    std::multiset<Clock::time_point> m_Times;
    bool m_bEnd = false;
    int m_nWaiters = 0; ///< threads in StopAfter
    std::thread m_Thread;
};

} // namespace tessera

/// Waits `ms` on the calling thread, then stops the run of the visible dialog. Nothing without a main window; returns
/// early, without a stop, when the program ends, and may be called while it does. Not for the main thread.
void StopWithDelay(int ms);
/// The same.
void StopWithDelay1(int ms);
