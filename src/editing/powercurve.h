// SPDX-License-Identifier: MIT
#pragma once

#include "engine/layerdata.h"

#include <QPointF>
#include <QVector>
#include <array>

namespace tessera {

/// Tick distance of an axis: the smallest of 1, 2 or 5 times a power of ten that leaves at least `pixels` between two
/// ticks at `scale` pixels a unit. 0 for a scale that is not a positive finite number.
double tickStep(double scale, double pixels);

/// Distance in pixels from `place` to the line through `points`; the single point's for one, infinite for none.
double distanceToLine(QVector<QPointF> const& points, QPointF const& place);

/// The points of a curve half that are drawn: those up to the last one that has a time. Rows behind it that were never
/// filled in stay at 0 and are no part of the curve.
QVector<QPointF> drawnPoints(QVector<QPointF> const& half);

/// Takes an edited curve over. One of another number of points is dropped: `curve` stays and false is returned.
bool takeCurve(QVector<QPointF> const& edited, std::array<QPointF, kWavePointCount>& curve);

} // namespace tessera
