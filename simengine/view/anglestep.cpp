// SPDX-License-Identifier: GPL-2.0-or-later
#include "simengine/view/anglestep.h"

#include <cmath>

namespace sim {

QPointF toAngleStep(const QPointF& stretch) {
    const double step = M_PI / 4.0;
    const double angle = std::round(std::atan2(stretch.y(), stretch.x()) / step) * step;
    const QPointF along(std::cos(angle), std::sin(angle));
    return QPointF::dotProduct(stretch, along) * along;
}

} // namespace sim
