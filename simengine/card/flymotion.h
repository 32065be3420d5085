// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "simengine/card/job.h"

#include <algorithm>
#include <cmath>

namespace sim {

/// Motion of the field and of the product while a job is marked on the fly, mm a millisecond of the pass.
struct FlyMotion {
    /// The position registers end here, mm, wherever the product goes on to.
    static constexpr double kMaxCoordinate = 10000.0;
    /// No product is followed faster, mm/ms.
    static constexpr double kFastest = 1000.0;

    Point shift;  ///< by which the head follows
    Point travel; ///< of the product

    /// Numbers of pulses near 0 ask for more than a head can do.
    FlyMotion sanitized() const {
        return {{limited(shift.x), limited(shift.y)}, {limited(travel.x), limited(travel.y)}};
    }

    bool isStill() const { return shift == Point{} && travel == Point{}; }
    /// Where the head is sent for a place of the drawing.
    Point commanded(Point place, double ms) const {
        return {std::clamp(place.x + shift.x * ms, -kMaxCoordinate, kMaxCoordinate),
                std::clamp(place.y + shift.y * ms, -kMaxCoordinate, kMaxCoordinate)};
    }
    /// What was marked at a place of the field, on the product as it lay when the pass began.
    Point onProduct(Point place, double ms) const { return {place.x - travel.x * ms, place.y - travel.y * ms}; }

private:
    static double limited(double mmPerMs) {
        return std::isnan(mmPerMs) ? 0.0 : std::clamp(mmPerMs, -kFastest, kFastest);
    }
};

} // namespace sim
