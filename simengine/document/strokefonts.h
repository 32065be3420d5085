// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "simengine/document/shape.h"

#include <QString>
#include <vector>

namespace sim {

/// A single-line font: letters as the strokes of a pen, marked in one pass.
struct StrokeFontInfo {
    const char* name; ///< stands in documents
    const char* key;  ///< what the operator reads, a key of the language manager
    bool degreeSign;  ///< has one; its place in the font holds something else otherwise
};

/// The single-line fonts in the order in which they are offered. The first one is the plainest.
const std::vector<StrokeFontInfo>& strokeFonts();
/// Null for a name that no font has.
const StrokeFontInfo* strokeFont(const QString& name);

/// A letter of a single-line font, a capital one 1 high, its base line at y 0, its left bearing at x 0.
struct StrokeGlyph {
    PathShape path; ///< empty for a blank
    double width = 0.0;
    bool known = false;
};

/// The strokes of a character. Not known when the font lacks it or its file is missing. Any thread.
StrokeGlyph strokeGlyph(const QString& font, uint character);

/// The font's file is there and can be read. Any thread.
bool isStrokeFontInstalled(const QString& font);

} // namespace sim
