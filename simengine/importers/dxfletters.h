// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "simengine/document/shape.h"
#include "simengine/importers/importbudget.h"

#include <QStringList>

class QTextCodec;

namespace sim {

/// A text as a drawing has it, one line or many.
struct DxfText {
    QStringList lines;
    double height = 1.0;
    double widthFactor = 1.0;
    double slant = 0.0;        ///< radians
    double lineStep = 5.0 / 3; ///< from base line to base line, in heights
    int across = 0;            ///< 0 left, 1 middle, 2 right
    int along = 0;             ///< 0 base line, 1 bottom, 2 middle, 3 top
    double fitWidth = 0.0;     ///< of the line, where it is to fit one; else 0
    bool fitHeight = false;    ///< the height follows the width
    double wrapWidth = 0.0;    ///< where lines are broken; else 0
};

/// The letters of a text in its own coordinates: its place at the origin, its base line along x.
struct DxfLetters {
    PathShape path;
    int missing = 0;      ///< characters that no font has
    bool outline = false; ///< of an outline font, since the single-line font lacks some
    bool tooLong = false; ///< more characters than are drawn: there are no letters
};

/// What the bytes of a text say.
struct DxfPlainText {
    QStringList lines;
    bool formatted = false; ///< heights, fonts, colours, lines over and under it that were left out
    bool unknown = false;   ///< characters of an encoding that could not be told
};

/// Strokes of the plainest single-line font; a text with letters that it lacks in an outline font that has them, as far
/// as there is a window system. Main thread in that case.
DxfLetters dxfLetters(const DxfText& text, ImportBudget& budget);

/// The characters behind the codes of a single-line text: "%%c", "%%d", "%%p", "%%nnn", "\U+XXXX", "\M+nXXXX".
DxfPlainText dxfPlainText(const QString& text);

/// The lines of a paragraph text without its formatting.
DxfPlainText dxfParagraphs(const QString& text);

/// The encoding of a code page's number, 936 for example; null when there is none.
QTextCodec* dxfCodec(int page);

} // namespace sim
