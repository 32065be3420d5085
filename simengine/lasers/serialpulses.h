// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "engine/marktypes.h"

#include <optional>

namespace sim {

/// What the serial laser tells of the pulses that it derives from its waveform.
struct SerialPulses {
    double frequency = 0.0; ///< Hz
    double duty = 0.0;      ///< percent
    double pulse = 0.0;     ///< us, of the waveform
    bool qcw = true;
};

/// What the card gives the laser, in the units in which a pen has them.
struct PenPulses {
    double frequency = 0.0; ///< kHz with the types 0, 3 and 4, else Hz
    double pwm = 0.0;       ///< percent, or us in pulse-width mode
};

/// The derived pulses in the place of the pen's; none when what was told is no frequency. In pulse-width mode the pulse
/// is the waveform's own with QCW and the duty's share of the period with PWM, and never longer than the period. Type 0
/// has no duty of its own to set: it stays `pwm`.
std::optional<PenPulses> penPulses(const SerialPulses& told, MarkCardType type, bool pulseWidthMode, double pwm);

} // namespace sim
