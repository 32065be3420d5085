// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "simengine/card/job.h"

namespace sim {

/// Motion of the field and of the product while a job is marked on the fly, mm a millisecond of the pass.
struct FlyMotion {
    Point shift;  ///< by which the head follows
    Point travel; ///< of the product

    bool isStill() const { return shift == Point{} && travel == Point{}; }
    /// Where the head is sent for a place of the drawing.
    Point commanded(Point place, double ms) const { return {place.x + shift.x * ms, place.y + shift.y * ms}; }
    /// What was marked at a place of the field, on the product as it lay when the pass began.
    Point onProduct(Point place, double ms) const { return {place.x - travel.x * ms, place.y - travel.y * ms}; }
};

} // namespace sim
