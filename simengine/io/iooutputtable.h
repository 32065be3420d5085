// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "simengine/params/paramstore.h"

namespace sim {

constexpr char kOutputSetFile[] = "/ini/IOOutput.ini";

/// Rows of kOutputParams, in its order.
enum OutputRow : std::size_t {
    LightRedRow,
    LightGreenRow,
    LightYellowRow,
    BuzzerRow,
    OutputInvRow,
    ReadyOutRow,
    ReadyOutEnableRow,
    RedLightRow,
    RedLightNameRow,
    GasRow,
    GasDelayRow,
    GasNameRow,
    EndEnableRow,
    EndOutputRow,
    EndLevelRow,
    EndClearTypeRow,
    EndDurationRow,
    EndAckInputRow,
    EndAckLevelRow,
    EndAckTimeoutRow,
    EndSelfCheckRow,
    StopHasEndSigRow,
    OutputRowCount
};

/// Output numbers, -1 for one that is not fitted; times ms. Outputs 0 to 2 belong to the card and 19 to 31 to the
/// lasers, so the stack light has 8 to 10 and the rest of the cabinet follows.
constexpr ParamRow kOutputParams[] = {
    intRow("Light", "Red", 8),
    intRow("Light", "Green", 9),
    intRow("Light", "Yellow", 10),
    intRow("Light", "Buzzer", -1),
    flagRow("Light", "Invert", false),
    intRow("Ready", "Output", 12),
    flagRow("Ready", "Enable", false),
    intRow("RedLight", "Output", -1),
    textRow("RedLight", "Name", "指示红光"),
    intRow("Gas", "Output", -1),
    realRow("Gas", "Delay", 20.0),
    textRow("Gas", "Name", "保护气体"),
    flagRow("EndSignal", "Enable", false),
    intRow("EndSignal", "Output", 13),
    intRow("EndSignal", "Level", 1),
    intRow("EndSignal", "ClearType", 0),
    intRow("EndSignal", "Duration", 100),
    intRow("EndSignal", "AckInput", 16),
    intRow("EndSignal", "AckLevel", 1),
    intRow("EndSignal", "AckTimeout", 1000),
    flagRow("EndSignal", "SelfCheck", false),
    flagRow("EndSignal", "StopHasEndSig", false),
};
static_assert(std::size(kOutputParams) == OutputRowCount, "a row for each name");

} // namespace sim
