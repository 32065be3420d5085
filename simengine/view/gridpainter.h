// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "simengine/view/viewtransform.h"

class QPainter;

namespace sim {

/// Draws what lies below the objects: the surround, the canvas `mm`, its grid and the cross through the field centre.
/// Lines are one device pixel wide and lie on whole pixels.
void paintGrid(QPainter& painter, const ViewTransform& transform, const QRectF& canvasMm);

} // namespace sim
