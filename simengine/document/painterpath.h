// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "simengine/document/shape.h"

#include <QPainterPath>

namespace sim {

/// Contours of a painted path, mapped. A contour that comes back to its start is closed; one without a segment is left
/// out. Any thread.
PathShape pathFromPainter(const QPainterPath& path, const QTransform& transform);

} // namespace sim
