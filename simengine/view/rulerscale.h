// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include <QString>
#include <vector>

namespace sim {

/// Division of a ruler and of the grid: numbers at every `step`, which is 1, 2 or 5 times a power of ten, and `parts`
/// equal parts between them.
struct RulerScale {
    double step = 10.0; ///< mm
    int parts = 10;

    double minorStep() const { return step / parts; }
};

/// One mark of a ruler.
struct RulerTick {
    double mm = 0.0;
    bool major = false;
    /// Number of the tick counted in minor steps from the origin: the origin is 0.
    qint64 index = 0;
};

/// The division that keeps numbers at least `minMajor` pixels apart and marks at least `minMinor`.
RulerScale rulerScale(double pixelsPerMm, double minMajor = 72.0, double minMinor = 6.0);

/// The ticks within `from` to `to` mm. Empty when the range is empty or holds more than 10000.
std::vector<RulerTick> rulerTicks(const RulerScale& scale, double from, double to);

/// The number at a major tick, with as many decimals as the step needs.
QString rulerLabel(const RulerScale& scale, double mm);

} // namespace sim
