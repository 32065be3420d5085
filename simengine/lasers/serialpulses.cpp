// SPDX-License-Identifier: GPL-2.0-or-later
#include "simengine/lasers/serialpulses.h"

#include <algorithm>
#include <cmath>

namespace sim {

std::optional<PenPulses> penPulses(const SerialPulses& told, MarkCardType type, bool pulseWidthMode, double pwm) {
    if (!std::isfinite(told.frequency) || told.frequency <= 0.0)
        return std::nullopt;
    const bool kilo = type == MarkCardFilber || type == MarkCardSPI || type == MarkCardEP;
    PenPulses pulses;
    pulses.frequency = kilo ? told.frequency / 1000.0 : told.frequency;
    const double duty = std::isfinite(told.duty) ? std::clamp(told.duty, 0.0, 100.0) : 0.0;
    const double own = std::isfinite(told.pulse) ? std::max(0.0, told.pulse) : 0.0;
    const double period = 1e6 / told.frequency;
    if (type == MarkCardFilber)
        pulses.pwm = pwm;
    else if (!pulseWidthMode)
        pulses.pwm = duty;
    else
        pulses.pwm = std::min(told.qcw ? own : period * duty / 100.0, period);
    return pulses;
}

} // namespace sim
