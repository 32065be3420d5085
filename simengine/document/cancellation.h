// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include <atomic>
#include <cstdint>
#include <limits>

namespace sim {

/// The wish to give up a long calculation, which looks here before each of its steps. Any thread.
class Cancellation {
public:
    /// Gives the calculation up by itself after so many steps.
    explicit Cancellation(std::uint64_t mostSteps = std::numeric_limits<std::uint64_t>::max())
        : m_most(mostSteps) {}

    void cancel() { m_cancelled = true; }
    bool isCancelled() const { return m_cancelled; }
    /// Set when it is cancelled.
    const std::atomic<bool>& flag() const { return m_cancelled; }

    /// A step, of some ms at most, is about to be made; false when it is not wanted any more.
    bool step() const {
        if (m_cancelled)
            return false;
        if (m_steps.fetch_add(1, std::memory_order_relaxed) < m_most)
            return true;
        m_cancelled = true;
        return false;
    }
    /// Steps so far.
    std::uint64_t steps() const { return m_steps.load(std::memory_order_relaxed); }

private:
    const std::uint64_t m_most;
    mutable std::atomic<bool> m_cancelled{false};
    mutable std::atomic<std::uint64_t> m_steps{0};
};

/// The same for work that need not be given up.
inline bool goesOn(const Cancellation* cancellation) {
    return !cancellation || cancellation->step();
}

inline bool isCancelled(const Cancellation* cancellation) {
    return cancellation && cancellation->isCancelled();
}

} // namespace sim
