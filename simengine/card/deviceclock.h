// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include <functional>
#include <mutex>

namespace sim {

/// Simulated time of what stands beside the card and knows no jobs: it goes on by the steady clock times the speed
/// factor. A change of the factor counts from the first look after it. Any thread.
class DeviceClock {
public:
    /// What passes between two looks when time has no limit: longer than any device takes.
    static constexpr double kLeapMs = 3600e3;

    /// `speed` gives simulated seconds a second, 0 without limit; `wallMs` the steady clock, ms.
    explicit DeviceClock(std::function<double()> speed, std::function<double()> wallMs = &DeviceClock::steadyMs);

    /// Simulated ms since the clock was made; never goes back.
    double now() const;
    /// Time has no limit: what is asked for is over at the next look.
    bool isUnpaced() const { return !(m_speed() > 0.0); }

    static double steadyMs();

private:
    const std::function<double()> m_speed;
    const std::function<double()> m_wallMs;
    mutable std::mutex m_mutex; ///< guards the two below
    mutable double m_simMs = 0.0;
    mutable double m_lastWallMs = 0.0;
};

} // namespace sim
