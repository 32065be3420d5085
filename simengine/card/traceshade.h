// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include <algorithm>
#include <cmath>

namespace sim {

/// How the power of a marked line is shown: as opacity. Weak lines stay visible, and a line at a power that a pen
/// usually has is hardly paler than one at full power. power in percent; gives 0.2 to 1.
inline double powerOpacity(double power) {
    return 0.2 + 0.8 * std::sqrt(std::clamp(power, 0.0, 100.0) / 100.0);
}

/// Cuts a way whose power goes straight from one value to another into parts of one shade each, whole percents, so that
/// a ramp between two vertices is seen. take(part's end as a share of the way, percent).
template<typename Take>
void forEachShade(double fromPower, double toPower, Take take) {
    constexpr double kPercentAPart = 5.0;
    const int parts = std::max(1, static_cast<int>(std::ceil(std::abs(toPower - fromPower) / kPercentAPart)));
    for (int i = 1; i <= parts; ++i) {
        const double middle = (i - 0.5) / parts;
        take(i == parts ? 1.0 : static_cast<double>(i) / parts,
             static_cast<int>(std::lround(fromPower + (toPower - fromPower) * middle)));
    }
}

} // namespace sim
