// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include <QPointF>

namespace sim {

/// What a stretch is along the nearest multiple of 45 degrees.
QPointF toAngleStep(const QPointF& stretch);

} // namespace sim
