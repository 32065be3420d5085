// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include <cmath>
#include <initializer_list>

namespace sim {

/// How far curves may be off a spline of a drawing, in parts of its extent.
constexpr double kSplinePart = 1.0e-7;

/// The numbers of an entity are such that a curve or a text can be made of them.
inline bool usable(std::initializer_list<double> values) {
    for (double v : values) {
        if (!std::isfinite(v) || std::abs(v) > 1e15)
            return false;
    }
    return true;
}

} // namespace sim
