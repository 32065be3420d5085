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
    const double wall = m_wallMs();
    const double speed = m_speed();
    m_simMs += speed > 0.0 ? (wall - m_lastWallMs) * speed : kLeapMs;
    m_lastWallMs = wall;
    return m_simMs;
}

} // namespace sim
