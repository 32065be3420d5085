// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "simengine/view/scenecache.h"

#include <QList>

namespace sim {

/// The object whose lines come nearest to `place`, at most `reach` mm away; a hatched object is hit inside too, behind
/// all lines. Of objects equally near, the one drawn last; -1 for none. `pixelsPerMm` says how fine the lines are.
int objectAt(SceneCache& scene, const QPointF& place, double reach, double pixelsPerMm);

/// The objects that lie wholly in `area` or, with `crossing`, touch it, in marking order.
QList<int> objectsIn(SceneCache& scene, const Box& area, bool crossing, double pixelsPerMm);

/// Distance from a place to the nearest line or mark point of an item.
double distanceTo(const SceneItem& item, const QPointF& place);

/// Whether any line or mark point of an item touches the area.
bool touches(const SceneItem& item, const Box& area);

} // namespace sim
