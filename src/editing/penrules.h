// SPDX-License-Identifier: MIT
#pragma once

#include "engine/marktypes.h"

namespace tessera {

/// What the panel of pen parameters depends on: the machine's laser and how pulses are given.
struct PenMachine {
    MarkCardType type = MarkCardFilber;
    FilberLaserType fibre = FilberIPG20W;
    int pulseWidthType = 0;       ///< non-zero: PWM is a pulse width in us; 1 changes texts and limits too
    bool derivedFromWave = false; ///< the serial laser gives power, frequency and duty

    /// As the settings are now. Main thread.
    static PenMachine Current();
};

/// Which of the panel's rows can be used, and their captions and limits.
struct PenRows {
    bool power = true;
    bool powerLabel = true;
    bool frequency = true;
    bool duty = true;
    bool dutyLabel = true;
    bool wave = true;
    bool kiloHertz = false;        ///< the frequency is in kHz, else in Hz
    bool waveIsPulseWidth = false; ///< the wave row takes a pulse width
    bool dutyIsPulseWidth = false; ///< the duty row takes us
    double mostWave = 100.0;
    double mostDuty = 100.0;
};

PenRows PenRowsOf(PenMachine const& machine);

/// What the duty box shows of a stored value: fibre lasers of type 0 have half on, half off; percent end at 100.
double ShownDuty(double stored, PenMachine const& machine);

/// What is stored of the duty shown. In the pulse-width mode a pulse is never longer than the period of `frequency`,
/// which is in kHz for the types 3 and 4 here and in Hz for the others.
double StoredDuty(double shown, double frequency, PenMachine const& machine);

} // namespace tessera
