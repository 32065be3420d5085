// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "simengine/view/rulerscale.h"
#include "simengine/view/viewtransform.h"

class QPainter;

namespace sim {

/// The division of the grid at a scale.
RulerScale gridScale(double pixelsPerMm);

/// Draws what lies below the objects: the surround, the canvas `mm`, its grid and the cross through the field centre.
/// Lines are one device pixel wide and lie on whole pixels.
void paintGrid(QPainter& painter, const ViewTransform& transform, const QRectF& canvasMm);

} // namespace sim
