// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include <QString>

namespace sim {

/// How the lines of a text lie to each other and to its place. Values stand in document files.
enum class TextAlign : quint8 { Left = 0, Center = 1, Right = 2 };

/// What the operator enters of a text.
struct TextSpec {
    QString text;           ///< lines parted by '\n'; a template when `variables` is set
    bool variables = false; ///< the text holds variables as Template has them
    QString family;         ///< of an outline font, or the name of a single-line font in strokeFonts()
    bool singleLine = true; ///< the letters are strokes, not outlines
    bool bold = false;      ///< of outline fonts only
    bool italic = false;
    TextAlign align = TextAlign::Left;
    double height = 5.0;        ///< of a capital letter, mm
    double letterSpacing = 0.0; ///< mm more between letters than the font has
    double lineSpacing = 1.8;   ///< from base line to base line, in heights

    bool operator==(const TextSpec& other) const;
    bool operator!=(const TextSpec& other) const { return !(*this == other); }
};

/// Characters of a text, line breaks included.
constexpr int kMostTextCharacters = 10000;
/// UTF-16 units of the name of a font.
constexpr int kMaxFamilyLength = 200;
/// Heights of a capital letter that can be entered, mm.
constexpr double kLeastTextHeight = 0.01;
constexpr double kMostTextHeight = 10000.0;
/// Letters are moved apart or together by at most this, mm.
constexpr double kMostLetterSpacing = 10000.0;
constexpr double kLeastLineSpacing = 0.1;
constexpr double kMostLineSpacing = 100.0;

/// Why a text cannot be an object.
enum class TextFault {
    None,
    Empty,             ///< no characters
    TooLong,           ///< more than kMostTextCharacters
    ControlCharacter,  ///< one that is no line break, half a surrogate pair among them
    BadSize,           ///< a height or spacing outside its limits
    BadFont,           ///< a name that is too long, bold strokes, or an alignment that does not exist
    NoStrokeFont,      ///< there is no single-line font of this name, or its file is missing
    MissingCharacters, ///< the font has no glyph for them
    NothingDrawn,      ///< blanks only
};

/// The faults that show without a font. `characters` gets what a fault names: the control character as "U+0009".
TextFault specFault(const TextSpec& spec, QString* characters = nullptr);

/// The fault in the words of the log.
const char* faultText(TextFault fault);

} // namespace sim
