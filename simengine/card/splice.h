// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "simengine/card/job.h"

#include <cmath>

namespace sim {

/// The manual compensation by which pieces of a large field meet: a turn about the middle and then a shift.
struct Splice {
    bool on = false;
    double x = 0.0; ///< mm
    double y = 0.0;
    double angle = 0.0; ///< degrees, counter-clockwise

    Point applied(const Point& place) const {
        if (!on)
            return place;
        const double radians = angle * (3.14159265358979323846 / 180.0);
        const double c = std::cos(radians);
        const double s = std::sin(radians);
        return {place.x * c - place.y * s + x, place.x * s + place.y * c + y};
    }
};

} // namespace sim
