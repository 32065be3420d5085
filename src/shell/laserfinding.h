// SPDX-License-Identifier: MIT
#pragma once

#include "engine/marktypes.h"

namespace tessera {

/// What follows from a look at the fault lines.
struct LaserFinding {
    bool setStatus = false; ///< `status` is to be written into the run data
    RunStatus status = RunStatusNormal;
    bool clearError = false; ///< the card's error output is to be taken back
};

/// Without a watch on the lines an alarm that stood when the watch was switched off is taken back, together with the
/// error output, which else only the detection drives.
inline LaserFinding FindLaserAlarm(bool watched, bool alarmed, RunStatus before) {
    if (watched && alarmed)
        return {true, RunStatusLaserAlarm, false};
    if (before == RunStatusLaserAlarm)
        return {true, RunStatusNormal, !watched};
    return {};
}

/// Bit of the card's alarm word for the fibre laser.
constexpr unsigned int kFibreAlarmBit = 1;

} // namespace tessera
