// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "simengine/document/shape.h"

#include <memory>
#include <vector>

namespace sim {

/// The outline of one letter and where it stands. Equal letters share their outline.
struct PlacedGlyph {
    std::shared_ptr<const PathShape> outline; ///< closed contours, filled by winding, as fonts mean them
    QPointF place;
};

/// The outlines of the letters in their order, so that an odd-even fill covers what the fonts cover: a hatch has no
/// hole where parts of a letter lie over each other. Letters that lie over each other become one; they and letters
/// whose own contours overlap are given as polygons that keep within `tolerance`, all others with their curves. Any
/// thread.
std::vector<PathShape> unitedGlyphs(const std::vector<PlacedGlyph>& glyphs, double tolerance);

} // namespace sim
