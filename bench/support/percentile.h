// SPDX-License-Identifier: MIT
#pragma once

#include <algorithm>
#include <vector>

namespace bench {

/// Value below which `share` (0 to 1) of the values lie; 0 without any.
inline double percentile(std::vector<double> values, double share) {
    if (values.empty())
        return 0.0;
    const auto place = static_cast<std::size_t>(share * static_cast<double>(values.size()));
    const auto found = values.begin() + static_cast<std::ptrdiff_t>(std::min(values.size() - 1, place));
    std::nth_element(values.begin(), found, values.end());
    return *found;
}

} // namespace bench
