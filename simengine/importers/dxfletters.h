// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "simengine/importers/dxfscene.h"

namespace sim {

/// The letters of a text in its own coordinates: its place at the origin, its base line along x.
struct DxfLetters {
    PathShape path;
    int missing = 0;      ///< characters that no font has
    bool outline = false; ///< of an outline font, since the single-line font lacks some
};

/// Strokes of the plainest single-line font; a text with letters that it lacks in an outline font that has them, as far
/// as there is a window system. Main thread in that case.
DxfLetters dxfLetters(const DxfText& text);

/// The characters behind the codes of a single-line text: "%%c", "%%d", "%%p", "%%nnn", "\U+XXXX"; lines over and under
/// it are left out.
QString dxfPlainText(const QString& text);

/// The lines of a paragraph text without its formatting.
QStringList dxfParagraphs(const QString& text);

} // namespace sim
