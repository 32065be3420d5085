// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "engine/marktypes.h"
#include "simengine/view/canvastool.h"

namespace sim {

/// The tool of an operator; an operator that the view does not know selects.
std::unique_ptr<CanvasTool> makeCanvasTool(OperatorOnView op, CanvasWidget& canvas);

} // namespace sim
