// SPDX-License-Identifier: GPL-2.0-or-later
#include "simengine/document/textspec.h"

#include <QVector>
#include <cmath>
#include <tuple>

namespace sim {

namespace {

bool within(double value, double least, double most) {
    return std::isfinite(value) && value >= least && value <= most;
}

bool isRefused(uint character) {
    if (character == '\n')
        return false;
    const QChar::Category category = QChar::category(character);
    return category == QChar::Other_Control || category == QChar::Other_Surrogate ||
           category == QChar::Separator_Line || category == QChar::Separator_Paragraph;
}

/// The first character that a text may not hold, nothing when there is none.
QString refusedCharacter(const QString& text) {
    for (int i = 0; i < text.size(); ++i) {
        uint character = text[i].unicode();
        if (text[i].isHighSurrogate() && i + 1 < text.size() && text[i + 1].isLowSurrogate())
            character = QChar::surrogateToUcs4(text[i], text[i + 1]);
        if (isRefused(character))
            return QStringLiteral("U+%1").arg(character, 4, 16, QLatin1Char('0')).toUpper();
        i += character > 0xffff ? 1 : 0;
    }
    return QString();
}

} // namespace

bool TextSpec::operator==(const TextSpec& other) const {
    const auto all = [](const TextSpec& s) {
        return std::tie(s.text, s.variables, s.family, s.singleLine, s.bold, s.italic, s.align, s.height,
                        s.letterSpacing, s.lineSpacing);
    };
    return all(*this) == all(other);
}

TextFault specFault(const TextSpec& spec, QString* characters) {
    if (spec.text.isEmpty())
        return TextFault::Empty;
    // a character has at most two units; nothing longer is looked at character by character
    if (spec.text.size() > 2 * kMostTextCharacters || spec.text.toUcs4().size() > kMostTextCharacters)
        return TextFault::TooLong;
    const QString refused = refusedCharacter(spec.text);
    if (!refused.isEmpty()) {
        if (characters)
            *characters = refused;
        return TextFault::ControlCharacter;
    }
    if (!within(spec.height, kLeastTextHeight, kMostTextHeight) ||
        !within(spec.letterSpacing, -kMostLetterSpacing, kMostLetterSpacing) ||
        !within(spec.lineSpacing, kLeastLineSpacing, kMostLineSpacing))
        return TextFault::BadSize;
    if (spec.family.size() > kMaxFamilyLength || (spec.singleLine && spec.bold) || spec.align > TextAlign::Right)
        return TextFault::BadFont;
    return TextFault::None;
}

const char* faultText(TextFault fault) {
    switch (fault) {
    case TextFault::None:
        break;
    case TextFault::Empty:
        return "a text is empty";
    case TextFault::TooLong:
        return "a text is too long";
    case TextFault::ControlCharacter:
        return "a text holds a control character";
    case TextFault::BadSize:
        return "the size of a text is out of range";
    case TextFault::BadFont:
        return "the font of a text is not usable";
    case TextFault::NoStrokeFont:
        return "there is no such single-line font";
    case TextFault::MissingCharacters:
        return "a font lacks characters of the text";
    case TextFault::NothingDrawn:
        return "a text draws nothing";
    }
    return "";
}

} // namespace sim
