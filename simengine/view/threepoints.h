// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "simengine/document/shape.h"

#include <optional>

namespace sim {

/// The circle through three places; nothing when they lie on a line or two of them coincide.
std::optional<CircleShape> circleThrough(const QPointF& a, const QPointF& b, const QPointF& c);
/// The arc from `a` over `b` to `c`.
std::optional<ArcShape> arcThrough(const QPointF& a, const QPointF& b, const QPointF& c);

} // namespace sim
