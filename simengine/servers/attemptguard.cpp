// SPDX-License-Identifier: GPL-2.0-or-later
#include "simengine/servers/attemptguard.h"

#include <algorithm>

namespace sim {

bool AttemptGuard::isBlocked(std::string const& address, Time now) {
    forgetOld(now);
    auto const found = m_failures.find(address);
    return found != m_failures.end() && found->second.size() >= m_attempts;
}

void AttemptGuard::failed(std::string const& address, Time now) {
    forgetOld(now);
    if (m_failures.size() >= kMaxAddresses && m_failures.count(address) == 0)
        forgetOldest();
    std::deque<Time>& times = m_failures[address];
    times.push_back(now);
    if (times.size() > m_attempts)
        times.pop_front();
}

void AttemptGuard::forgetOld(Time now) {
    for (auto it = m_failures.begin(); it != m_failures.end();) {
        std::deque<Time>& times = it->second;
        while (!times.empty() && now - times.front() >= m_window)
            times.pop_front();
        it = times.empty() ? m_failures.erase(it) : std::next(it);
    }
}

void AttemptGuard::forgetOldest() {
    m_failures.erase(std::min_element(m_failures.begin(), m_failures.end(),
                                      [](auto const& a, auto const& b) { return a.second.back() < b.second.back(); }));
}

} // namespace sim
