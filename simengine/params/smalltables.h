// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "simengine/params/paramstore.h"

namespace sim {

constexpr char kGlassParamFile[] = "/ini/GlassParam.ini";

/// Rows of kGlassParams, in its order.
enum GlassRow : std::size_t {
    CheckSafeInRunRow,
    SafeTrigerTypeRow,
    ShowLaserAlarmRow,
    PulseWidthTypeRow,
    GlassRowCount
};

/// Supervision and display. A machine builder sets the pulse-width type in the file: no dialog offers it.
constexpr ParamRow kGlassParams[] = {
    flagRow("Safety", "CheckSafeInRun", false),
    intRow("Safety", "TrigerType", 0),
    flagRow("Laser", "ShowAlarm", true),
    intRow("Laser", "PulseWidthType", 0),
};
static_assert(std::size(kGlassParams) == GlassRowCount, "a row for each name");

constexpr char kMarkingParamFile[] = "/ini/MarkingParam.ini";

/// Rows of kMarkingParams, in its order.
enum MarkingRow : std::size_t { MarkCardTypeRow, AutoSetCardTypeRow, FilberTypeRow, MarkingRowCount };

constexpr ParamRow kMarkingParams[] = {
    intRow("Laser", "MarkCardType", 0),
    flagRow("Laser", "AutoSetCardType", false),
    intRow("Laser", "FilberLaserType", 0),
};
static_assert(std::size(kMarkingParams) == MarkingRowCount, "a row for each name");

constexpr char kBoxSpliceFile[] = "/ini/BoxSplice.ini";

/// Rows of kBoxSpliceParams, in its order.
enum BoxSpliceRow : std::size_t { SpliceEnableRow, SpliceXRow, SpliceYRow, SpliceAngleRow, BoxSpliceRowCount };

/// Manual compensation of the box: mm and degrees.
constexpr ParamRow kBoxSpliceParams[] = {
    intRow("Splice", "Enable", 0),
    realRow("Splice", "OffsetX", 0.0),
    realRow("Splice", "OffsetY", 0.0),
    realRow("Splice", "OffsetA", 0.0),
};
static_assert(std::size(kBoxSpliceParams) == BoxSpliceRowCount, "a row for each name");

} // namespace sim
