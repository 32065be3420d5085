// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

namespace sim {

/// Bits of the state word that MoveCardManager::AxisGetInfo gives.
enum AxisStateBit : int {
    AxisMoving = 0x001,
    AxisDriverAlarm = 0x002,   ///< as the card reads it: only with the input in use, and inverted when set so
    AxisPositiveLimit = 0x004, ///< likewise
    AxisNegativeLimit = 0x008,
    AxisHomeSwitch = 0x010,
    AxisHomed = 0x020, ///< since the card was opened
    AxisJogging = 0x040,
    AxisPositiveSoftLimit = 0x080,
    AxisNegativeSoftLimit = 0x100
};

} // namespace sim
