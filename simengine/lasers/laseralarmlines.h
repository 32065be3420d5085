// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include <array>
#include <cstdint>

namespace sim {

/// How the fault lines of a laser are wired, by the front end's table of laser alarms. Four channels lead to inputs.
struct LaserAlarmWiring {
    static constexpr int kChannels = 4;
    static constexpr int kCustom = 0; ///< each channel tells a fault by a level of its own
    static constexpr int kCoded = 5;  ///< channel 2 tells that there is a fault, channel 1 which one

    bool used = false;                   ///< else no channel is wired
    bool fibre = false;                  ///< the status plug of the fibre card, else the general one
    int type = kCustom;                  ///< those between the two tell nothing
    std::array<bool, kChannels> wired{}; ///< of a custom laser
    std::array<bool, kChannels> level{}; ///< of a custom laser: that of a fault
    bool codedLevel = false; ///< of a coded one: that of channel 2 in a fault, and of channel 1 when it is too hot
    int resetOutput = -1;    ///< its rising edge clears the laser; below 0 none does
};

/// The lines that the laser holds high.
struct LaserAlarmLines {
    std::uint32_t good = 0;        ///< without a fault
    std::uint32_t temperature = 0; ///< too hot: of a custom laser on the first wired channel
    std::uint32_t photodiode = 0;  ///< no light at its photodiode: of a custom laser on the last wired channel

    static LaserAlarmLines of(const LaserAlarmWiring& wiring);
};

} // namespace sim
