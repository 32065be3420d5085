// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "simengine/importers/tracerprocess.h"

#include <QSizeF>
#include <QString>
#include <cstdint>
#include <memory>
#include <vector>

namespace sim {

/// A picture in grey as it is traced, from the top row on.
struct ImageSource {
    int width = 0;
    int height = 0;
    std::vector<std::uint8_t> grey;  ///< 0 black to 255 white
    std::vector<std::uint8_t> alpha; ///< 255 opaque; empty when all of it is
    QSizeF dotsPerMm;                ///< empty when the file does not tell

    /// Of the whole picture, mm; without a density a pixel is 1/96 inch.
    QSizeF sizeMm() const;
    /// Grey of a pixel as it is compared with the threshold: what is transparent counts as blank, which is white, and
    /// black when the picture is inverted.
    int value(std::size_t pixel, bool invert) const {
        const int own = grey[pixel];
        if (alpha.empty())
            return own;
        const int blank = invert ? 0 : 255;
        return (own * alpha[pixel] + blank * (255 - alpha[pixel]) + 127) / 255;
    }
};

/// A picture, or why there is none.
struct ImageRead {
    std::shared_ptr<const ImageSource> image;
    QString error;
    double seconds = 0.0; ///< processor time that it took
};

/// Reads a PNG, JPEG or BMP file of at most 50 million pixels in a process of its own. Any thread; blocks until `limit`
/// is reached at the latest.
ImageRead readImage(const QString& path, const TracerLimit& limit);

/// The threshold that parts the greys of a picture best: the variance between the two sides is largest, and where many
/// thresholds part it equally well the middle one is taken. 1 to 255; pixels below it are dark.
int bestThreshold(const ImageSource& image, bool invert);

} // namespace sim
