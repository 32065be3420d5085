// SPDX-License-Identifier: MIT
#pragma once

#include "engine/igeneratedtool.h"

namespace toolmodules {

/// A closed outline through the corners, each rounded by an arc of `radius`, mm. Where a side is too short for it the
/// arc is as large as half the side allows; with 0 the corners are sharp.
ToolContour roundedOutline(const QVector<QPointF>& corners, double radius);

} // namespace toolmodules
