// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "simengine/document/shape.h"
#include "simengine/importers/imagesource.h"

#include <vector>

namespace sim {

/// Points of the outlines of one picture at most.
constexpr qint64 kMaxTracedPoints = 1'000'000;
/// Corner smoothness above which no corner is left.
constexpr double kMostSmoothness = 4.0 / 3.0;
constexpr int kMostDespeckle = 100000;

/// How a picture becomes outlines.
struct TraceSettings {
    int threshold = 0;       ///< greys below it are traced, 1 to 255; 0 takes bestThreshold()
    bool invert = false;     ///< the light parts are traced
    int despeckle = 2;       ///< areas of up to that many pixels are left out
    double smoothness = 1.0; ///< 0 straight lines and corners, kMostSmoothness curves alone
    bool optimise = true;    ///< curves that follow one another are joined where that is off by little,
    double tolerance = 0.2;  ///< at most so much, pixels
    QSizeF sizeMm;           ///< of the whole picture; empty takes the picture's own
};

/// The outlines of a picture, or why there are none.
struct TracedImage {
    /// Each an outline with the holes in it, closed contours; what lies in a hole is an outline of its own. mm from the
    /// bottom left corner of the picture, x to the right, y up.
    std::vector<PathShape> outlines;
    QSizeF sizeMm;
    int threshold = 0; ///< that was used
    qint64 points = 0;
    QString error; ///< also empty when it was cancelled
    bool cancelled = false;

    bool ok() const { return !outlines.empty(); }
};

/// Traces a picture in a process of its own. Any thread; blocks until `limit` at the latest.
TracedImage traceImage(const ImageSource& image, const TraceSettings& settings, const TracerLimit& limit);

/// The rows of the bitmap that is traced, as tracewire.h tells: set where a pixel is marked.
std::vector<std::uint64_t> markedPixels(const ImageSource& image, int threshold, bool invert);

} // namespace sim
