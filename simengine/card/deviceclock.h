// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include <functional>
#include <mutex>
#include <optional>

namespace sim {

/// Simulated time of what stands beside the card and knows no jobs: it goes on by the steady clock times the speed
/// factor. The time since the last look goes by the factor of then, so whoever changes it looks after the change. Any
/// thread.
class DeviceClock {
public:
    /// What passes between two looks when time has no limit: longer than any device takes.
    static constexpr double kLeapMs = 3600e3;

    /// `speed` gives simulated seconds a second, 0 without limit; `wallMs` the steady clock, ms.
    explicit DeviceClock(std::function<double()> speed, std::function<double()> wallMs = &DeviceClock::steadyMs);

    /// Simulated ms since the clock was made; never goes back. While time has no limit each look is kLeapMs after the
    /// one before, so what is asked for is over at the next look; so is the first one behind such a time.
    double now() const;
    /// The same without those leaps, for what goes on by itself: it stands still while time has no limit.
    double pacedMs() const;

    static double steadyMs();

private:
    void look() const;

    const std::function<double()> m_speed;
    const std::function<double()> m_wallMs;
    mutable std::mutex m_mutex; ///< guards all below
    mutable double m_pacedMs = 0.0;
    mutable double m_leapsMs = 0.0;
    mutable double m_lastWallMs;            ///< the last look,
    mutable std::optional<double> m_factor; ///< and the factor since then; before the first one it is that one's
};

} // namespace sim
