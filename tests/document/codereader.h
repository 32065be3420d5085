// SPDX-License-Identifier: MIT
#pragma once

#include "simengine/document/documentstate.h"

#include <QImage>

/// Reads codes with libraries that have nothing in common with the encoder.
namespace codereader {

/// A code that was found in a picture.
struct Found {
    QString kind; ///< "CODE-128", "EAN-13", "EAN-8", "QR-Code", "DataMatrix"; empty when nothing was found
    QString text;
};

/// What the laser darkens of an object, on a light ground: hatched areas filled, lines as wide as `spot` mm, dots as
/// squares of `spot` mm, with `margin` mm round it. `light` exchanges dark and light, as for a code that is lightened.
QImage marked(const sim::MarkObject& object, double spot, double margin, double pixelsPerMm, bool light = false);

/// The only code of the picture.
Found read(const QImage& picture);

} // namespace codereader
