// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>

namespace tessera {

enum class LaserStepKind {
    Write,     ///< output `line` := `value`
    WriteType, ///< output `line` := the laser type of LaserChoices
    Pause,     ///< `ms` pass
    AwaitLow   ///< input `line` is read until it is 0, at most `reads` times, `ms` after each read that is not
};

/// Setting that a step hangs on; without it the step is passed over.
enum class LaserWhen { Always, ShutterBySoftware, RemotePulse, FibreEnable };

/// One step of switching a laser on or off. Texts are keys of the operator's language.
struct LaserStep {
    LaserStepKind kind;
    LaserWhen when;
    int line;
    int value;
    int ms;
    int reads;
    char const* what;   ///< what a pause or a poll waits for
    char const* notice; ///< shown when all reads of a poll have failed
};

/// Steps in their order. They are tables that live as long as the program.
struct LaserSequence {
    char const* title; ///< shown with its waits; null: they are not shown
    LaserStep const* steps;
    std::size_t count;

    LaserStep const* begin() const { return steps; }
    LaserStep const* end() const { return steps + count; }
};

/// What the steps ask of the settings.
struct LaserChoices {
    bool shutterBySoftware = false;
    bool remotePulse = false;
    bool fibreEnable = false;
    int laserType = 0; ///< 0 CW, 1 QCW
};

} // namespace tessera
