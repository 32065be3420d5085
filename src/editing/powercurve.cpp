// SPDX-License-Identifier: MIT
#include "editing/powercurve.h"

#include <QLineF>
#include <algorithm>
#include <cmath>
#include <limits>

namespace tessera {

double tickStep(double scale, double pixels) {
    if (!std::isfinite(scale) || scale <= 0.0)
        return 0.0;
    const double least = pixels / scale;
    const double power = std::pow(10.0, std::floor(std::log10(least)));
    if (!std::isfinite(power) || power <= 0.0)
        return 0.0;
    for (double factor : {1.0, 2.0, 5.0}) {
        if (factor * power >= least)
            return factor * power;
    }
    return 10.0 * power;
}

double distanceToLine(QVector<QPointF> const& points, QPointF const& place) {
    double nearest = std::numeric_limits<double>::infinity();
    for (int i = 0; i < points.size(); ++i) {
        const QPointF from = points[qMax(0, i - 1)];
        const QPointF along = points[i] - from;
        const double square = QPointF::dotProduct(along, along);
        const double t = square > 0.0 ? qBound(0.0, QPointF::dotProduct(place - from, along) / square, 1.0) : 0.0;
        nearest = qMin(nearest, QLineF(from + t * along, place).length());
    }
    return nearest;
}

QVector<QPointF> drawnPoints(QVector<QPointF> const& half) {
    int count = half.size();
    while (count > 1 && half[count - 1].x() == 0.0)
        --count;
    return half.mid(0, count);
}

bool takeCurve(QVector<QPointF> const& edited, std::array<QPointF, kWavePointCount>& curve) {
    if (edited.size() != int(curve.size()))
        return false;
    std::copy(edited.begin(), edited.end(), curve.begin());
    return true;
}

} // namespace tessera
