// SPDX-License-Identifier: GPL-2.0-or-later
#include "simengine/card/deviceclock.h"

#include <chrono>
#include <utility>

namespace sim {

DeviceClock::DeviceClock(std::function<double()> speed, std::function<double()> wallMs)
    : m_speed(std::move(speed))
    , m_wallMs(std::move(wallMs))
    , m_lastWallMs(m_wallMs()) {}

double DeviceClock::steadyMs() {
    return std::chrono::duration<double, std::milli>(std::chrono::steady_clock::now().time_since_epoch()).count();
}

double DeviceClock::now() const {
    const std::lock_guard<std::mutex> lock(m_mutex);
    look();
    return m_pacedMs + m_leapsMs;
}

double DeviceClock::pacedMs() const {
    const std::lock_guard<std::mutex> lock(m_mutex);
    look();
    return m_pacedMs;
}

void DeviceClock::look() const {
    const double wall = m_wallMs();
    const double factor = m_speed();
    const double before = m_factor.value_or(factor);
    m_pacedMs += (wall - m_lastWallMs) * before;
    if (before == 0.0 || factor == 0.0)
        m_leapsMs += kLeapMs;
    m_lastWallMs = wall;
    m_factor = factor;
}

} // namespace sim
