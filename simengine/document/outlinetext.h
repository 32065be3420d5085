// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "simengine/document/shape.h"

#include <vector>

namespace sim {

/// A text in an outline font.
struct OutlineText {
    std::vector<PathShape> glyphs; ///< mm, line by line from left to right; letters that lie over each other as one
    QString missing;               ///< characters that no installed font has
    QString usedFamily;            ///< set when the font of the text is not installed
    QString borrowed;              ///< characters taken from other fonts, at most 20
};

/// The outlines of a sound text. Main thread; needs a QGuiApplication.
OutlineText outlineText(const TextSpec& spec);

} // namespace sim
