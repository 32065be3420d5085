// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include <algorithm>
#include <chrono>
#include <limits>

namespace sim {

/// Relation between the wall clock and the simulated clock of one job: a line through an anchor whose slope is the
/// speed factor. Deadlines come from the anchor and never from the wake-up before, so lateness does not add up.
/// Not thread-safe.
class SimClock {
public:
    using Wall = std::chrono::steady_clock::time_point;

    /// Simulated µs per wall µs; 0 means as fast as possible.
    double factor() const { return m_factor; }
    bool isUnpaced() const { return m_factor <= 0.0; }

    /// From now on the given simulated time belongs to the given wall time.
    void anchor(Wall wall, double simUs, double factor) {
        m_wall = wall;
        m_simUs = simUs;
        m_factor = factor;
    }

    /// Simulated time in µs at a wall time; without pace there is no limit.
    double simAt(Wall wall) const {
        if (isUnpaced())
            return std::numeric_limits<double>::infinity();
        return m_simUs + std::chrono::duration<double, std::micro>(wall - m_wall).count() * m_factor;
    }

    /// Wall time at which a simulated time is reached, at most an hour after the anchor's or the given earliest time.
    Wall wallAt(double simUs, Wall earliest) const {
        constexpr double kHourUs = 3600e6;
        const double earliestUs = std::chrono::duration<double, std::micro>(earliest - m_wall).count();
        const double us = isUnpaced() ? 0.0 : (simUs - m_simUs) / m_factor;
        const std::chrono::duration<double, std::micro> wait(std::clamp(us, earliestUs, earliestUs + kHourUs));
        return m_wall + std::chrono::duration_cast<std::chrono::steady_clock::duration>(wait);
    }

private:
    Wall m_wall{};
    double m_simUs = 0.0;
    double m_factor = 1.0;
};

} // namespace sim
