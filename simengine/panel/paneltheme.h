// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include <QColor>

/// Colours of the simulator's own window. It is darker than the operator's windows, so that nobody takes one for the
/// other.
namespace sim::paneltheme {

constexpr QRgb kWindow = 0xff20262d;
constexpr QRgb kCard = 0xff2b333c; ///< area of a group
constexpr QRgb kEdge = 0xff3a444f;
constexpr QRgb kText = 0xffe6ebf0;
constexpr QRgb kSoftText = 0xffa4b0bc;
constexpr QRgb kSwitchOn = 0xff2f8fe0;
constexpr QRgb kSwitchOff = 0xff56616d;
constexpr QRgb kFocus = 0xff9fd0ff;
constexpr QRgb kLampOn = 0xfff2c94c;
constexpr QRgb kLampOff = 0xff3a444f;
constexpr QRgb kRed = 0xffe5484d;
constexpr QRgb kYellow = 0xfff5c518;
constexpr QRgb kGreen = 0xff30b566;
constexpr QRgb kTraceField = 0xff14181d;
constexpr QRgb kTraceEdge = 0xff4a5663;
constexpr QRgb kTraceJump = 0xff3b4650;
constexpr QRgb kTracePilot = 0xffe5484d;
constexpr QRgb kHead = 0xffffffff;

} // namespace sim::paneltheme
