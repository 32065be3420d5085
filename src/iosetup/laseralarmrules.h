// SPDX-License-Identifier: MIT
#pragma once

#include <array>

namespace tessera {

constexpr int kLaserAlarmChannels = 4;
constexpr int kLaserTypeCustom = 0; ///< any laser: channels are compared with their levels
constexpr int kLaserTypeCoded = 5;  ///< a laser that codes its fault on channels 1 and 2
constexpr int kLastLaserType = 5;
constexpr int kNoOutput = -1;

/// What the operator set for the fault lines of the laser.
struct LaserAlarmRule {
    int laserType = kLaserTypeCustom;
    std::array<bool, kLaserAlarmChannels> enabled{};
    std::array<bool, kLaserAlarmChannels> level{}; ///< input level that counts as a fault
    bool inverted = false;                         ///< of the coded type: level of the lines at over-temperature
};

/// Outcome of one look at the lines.
struct LaserAlarmResult {
    bool alarm = false;
    char const* textKey = ""; ///< key for the operator's language, empty for no text
};

/// Input numbers of the four channels: the fibre card has its own status plug, the others share the general one.
std::array<int, kLaserAlarmChannels> laserAlarmInputs(int cardType);

/// Looks at the lines of `input`; `alarm` is what was in force before. A custom fault stays until it is reset, the
/// coded type clears itself, other types change nothing.
LaserAlarmResult detectLaserAlarm(LaserAlarmRule const& rule, int cardType, unsigned int input, bool alarm);

} // namespace tessera
