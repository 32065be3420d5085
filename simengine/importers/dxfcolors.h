// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include <QColor>

namespace sim {

/// Values of a colour number that stand for another colour.
constexpr int kDxfByBlock = 0;
constexpr int kDxfByLayer = 256;

/// The colour of a number from 1 to 255; black for the white that is drawn on dark screens, and for any other number.
QColor dxfColor(int number);

} // namespace sim
