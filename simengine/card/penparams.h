// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include <array>
#include <cstddef>
#include <optional>

namespace sim {

constexpr int kPenCount = 20;
/// Rows of a power curve's table.
constexpr std::size_t kWavePoints = 20;
/// Largest x of a power curve, ms or mm.
constexpr double kMaxWaveX = 100000.0;

/// Slowest head speed the card executes, mm/s. A speed below it, or one that is not a number, is raised to it, so that
/// no pen can keep the head on one vector for ever.
constexpr double kMinSpeed = 0.1;
/// Fastest head speed, mm/s; higher values are cut to it.
constexpr double kMaxSpeed = 100000.0;
/// Limits of the wobble diameter and spacing, mm; values outside, or not a number, are moved to the nearer limit.
constexpr double kMinWobble = 0.01;
constexpr double kMaxWobble = 100.0;

/// A row of a power curve: x in ms or mm, power in percent of the laser's full power.
struct WavePoint {
    double x = 0.0;
    double power = 0.0;
};

inline bool operator==(const WavePoint& a, const WavePoint& b) {
    return a.x == b.x && a.power == b.power;
}

using WaveTable = std::array<WavePoint, kWavePoints>;

/// A stored waveform of a serial laser.
struct LaserWave {
    int mode = 0;          ///< 0 QCW, else PWM
    double peak = 0.0;     ///< W
    double pulse = 0.0;    ///< ms
    double pwmPeak = 0.0;  ///< W
    double pwmFreq = 0.0;  ///< Hz
    double pwmDuty = 0.0;  ///< percent
    double gasDelay = 0.0; ///< ms
    double eyeDelay = 0.0; ///< ms
};

bool operator==(const LaserWave& a, const LaserWave& b);

/// The parameters of one pen as the card keeps them. Raw values as downloaded: sanitized() gives the executed ones.
struct PenParams {
    int markCount = 1;             ///< how often an object is marked
    double markSpeed = 500.0;      ///< mm/s
    double redSpeed = 2000.0;      ///< mm/s, pilot beam
    double power = 50.0;           ///< percent
    int waveNumber = 0;            ///< pulse shape number of the laser
    double frequency = 20.0;       ///< Hz or kHz by laser type
    double pwm = 50.0;             ///< percent, or µs in pulse-width mode
    int openLaserDelay = 0;        ///< µs, signed
    int closeLaserDelay = 0;       ///< µs, signed
    int endDelay = 0;              ///< µs, signed
    int turnDelay = 0;             ///< µs, signed
    double jumpSpeed = 4000.0;     ///< mm/s
    int maxJumpDelay = 0;          ///< µs
    int minJumpDelay = 0;          ///< µs
    double minJumpDelayDist = 0.0; ///< mm, jump length up to which minJumpDelay applies
    double maxJumpDelayDist = 0.0; ///< mm, jump length from which maxJumpDelay applies
    int markDelay = 0;             ///< µs
    int pointTime = 1000;          ///< µs
    bool wobbleEnable = false;
    double wobbleDiameter = 0.5; ///< mm
    double wobbleSpacing = 0.5;  ///< mm of path per turn
    bool pointWaveEnable = false;
    bool lineWaveEnable = false;
    bool lineWaveByDistance = false;    ///< x of the line's curve is mm, else ms
    WaveTable pointWave{};              ///< power of a mark point over time in ms
    WaveTable lineWave{};               ///< ramp-in and ramp-out of a line, half of the rows each
    std::optional<LaserWave> laserWave; ///< the one of waveNumber; none for a number that names none
};

/// Exactly the same values.
bool operator==(const PenParams& a, const PenParams& b);

using PenTable = std::array<PenParams, kPenCount>;

/// The values that the card executes: speeds within kMinSpeed to kMaxSpeed, mark count at least 1, wobble within
/// kMinWobble to kMaxWobble, negative delays 0 (see docs/simulator.md for the signed ones), jump delay
/// distances that are negative or not a number 0, a power that is not a number 0 and otherwise within 0 to 100. The
/// rows of the curves likewise: x within 0 to kMaxWaveX, power within 0 to 100, 0 for what is not a number.
PenParams sanitized(const PenParams& pen);

} // namespace sim
