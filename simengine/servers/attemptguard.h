// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include <chrono>
#include <deque>
#include <map>
#include <string>

namespace sim {

/// Counts failed proofs by address within a window of time. Time is given, so that nothing here waits. One thread.
class AttemptGuard {
public:
    using Time = std::chrono::steady_clock::time_point;

    /// An address with `attempts` failures within the last `window` is blocked.
    AttemptGuard(int attempts, std::chrono::milliseconds window)
        : m_attempts(static_cast<std::size_t>(attempts))
        , m_window(window) {}

    bool isBlocked(std::string const& address, Time now);
    void failed(std::string const& address, Time now);
    /// Addresses remembered, at most kMaxAddresses.
    std::size_t size() const { return m_failures.size(); }

    static constexpr std::size_t kMaxAddresses = 1024;

private:
    void forgetOld(Time now);
    void forgetOldest();

    std::size_t const m_attempts;
    std::chrono::milliseconds const m_window;
    std::map<std::string, std::deque<Time>> m_failures; ///< the last m_attempts of each address, oldest first
};

} // namespace sim
