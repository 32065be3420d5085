// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "simengine/document/shape.h"

namespace sim {

/// Order of the objects in which each next one is the one whose first point is nearest to where the last one ended;
/// the first is the nearest to `start`. Equally near ones keep their order. Objects that are not marked, which neither
/// begin nor end anywhere, come last in their order. Where that would make the jumps longer than they are, the order
/// stays: the sum of all jumps is never greater than before.
std::vector<int> jumpOrder(const ObjectList& objects, const QPointF& start);

} // namespace sim
