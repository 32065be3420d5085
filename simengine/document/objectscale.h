// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "simengine/document/markobject.h"

#include <cmath>

namespace sim {

/// How much larger than its own sizes an object is marked, along its own axes.
struct ObjectScale {
    double x = 1.0;
    double y = 1.0;
};

/// Of the object's transform. What was pressed flat is entered in its own size.
inline ObjectScale scaleOf(const MarkObject& object) {
    const QTransform& t = object.transform();
    const double x = std::hypot(t.m11(), t.m12());
    const double y = std::hypot(t.m21(), t.m22());
    return {x > 0.0 ? x : 1.0, y > 0.0 ? y : 1.0};
}

/// The own size of what is wanted to be marked in the size `wanted`; `own`, exactly, when that is the size in which it
/// is `marked` already.
inline double ownSize(double wanted, double marked, double own, double scale) {
    return wanted == marked ? own : wanted / scale;
}

} // namespace sim
