// SPDX-License-Identifier: MIT
#pragma once

/// Stored waveforms of the serial laser in a document.
constexpr int kQcwWaveCount = 16;

/// One stored waveform of the serial laser. The order of the fields is part of the boundary.
struct LYQCWWave {
    int mode = 0;            ///< 0 QCW, 1 PWM
    double meanPower = 60.0; ///< W
    double peak = 500.0;     ///< W
    double pulseWidth = 2.0; ///< ms
    double powerUsed = 95.0; ///< percent of the power that is used
    double pwmPeak = 500.0;  ///< W
    double pwmFreq = 200.0;  ///< Hz
    double pwmDuty = 100.0;  ///< percent
    double gasDelay = 20.0;  ///< ms
    double eyeDelay = 20.0;  ///< ms
};
