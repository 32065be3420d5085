// SPDX-License-Identifier: GPL-2.0-or-later
#include "simengine/view/rulerscale.h"

#include <algorithm>
#include <cmath>

namespace sim {

RulerScale rulerScale(double pixelsPerMm, double minMajor, double minMinor) {
    RulerScale result;
    if (!(pixelsPerMm > 0.0) || !std::isfinite(pixelsPerMm))
        return result;
    const double wanted = minMajor / pixelsPerMm;
    double power = std::pow(10.0, std::floor(std::log10(wanted)));
    int digit = 1;
    // The tolerance keeps 1.9999999 from becoming 5.
    for (const int candidate : {1, 2, 5, 10}) {
        digit = candidate;
        if (candidate * power >= wanted * (1.0 - 1e-9))
            break;
    }
    if (digit == 10) {
        digit = 1;
        power *= 10.0;
    }
    result.step = digit * power;
    // Parts that end on round numbers: a step of 2 falls into 10, 4 or 2 parts, a step of 5 into 10 or 5.
    static constexpr int kPartsOfOne[] = {10, 5, 2, 1};
    static constexpr int kPartsOfTwo[] = {10, 4, 2, 1};
    static constexpr int kPartsOfFive[] = {10, 5, 1, 1};
    const int* parts = digit == 1 ? kPartsOfOne : digit == 2 ? kPartsOfTwo : kPartsOfFive;
    result.parts = 1;
    for (int i = 0; i < 4; ++i) {
        if (result.step * pixelsPerMm / parts[i] >= minMinor) {
            result.parts = parts[i];
            break;
        }
    }
    return result;
}

std::vector<RulerTick> rulerTicks(const RulerScale& scale, double from, double to) {
    std::vector<RulerTick> ticks;
    const double minor = scale.minorStep();
    if (!(minor > 0.0) || !(to >= from))
        return ticks;
    const double first = std::ceil(from / minor - 1e-9);
    const double last = std::floor(to / minor + 1e-9);
    constexpr double kMost = 10000.0;
    if (!(last - first < kMost) || std::abs(first) > 1e15)
        return ticks;
    ticks.reserve(static_cast<std::size_t>(std::max(0.0, last - first + 1.0)));
    for (qint64 i = static_cast<qint64>(first); i <= static_cast<qint64>(last); ++i)
        ticks.push_back({static_cast<double>(i) * minor, i % scale.parts == 0, i});
    return ticks;
}

QString rulerLabel(const RulerScale& scale, double mm) {
    const int decimals = std::max(0, static_cast<int>(-std::floor(std::log10(scale.step) + 1e-9)));
    if (std::abs(mm) < scale.step / 1000.0)
        mm = 0.0; // no "-0"
    return QString::number(mm, 'f', decimals);
}

} // namespace sim
