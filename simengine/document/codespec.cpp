// SPDX-License-Identifier: GPL-2.0-or-later
#include "simengine/document/codespec.h"

#include <QVector>
#include <algorithm>
#include <cmath>
#include <tuple>

namespace sim {

namespace {

constexpr uint kLargestLatin1 = 0xff;

bool within(double value, double least, double most) {
    return std::isfinite(value) && value >= least && value <= most;
}

bool within(int value, int least, int most) {
    return value >= least && value <= most;
}

CodeFault refuse(CodeFault fault, QString* detail, const QString& told) {
    if (detail)
        *detail = told;
    return fault;
}

QString hexName(uint character) {
    return QStringLiteral("U+%1").arg(character, 4, 16, QLatin1Char('0')).toUpper();
}

/// Line breaks and tabulators go into codes; other control characters come from nowhere but a mistake.
bool isRefused(uint character, Symbology symbology) {
    if (character == '\n' || character == '\t')
        return false;
    const QChar::Category category = QChar::category(character);
    if (category == QChar::Other_Control)
        return true;
    return symbology == Symbology::Code128 && character > kLargestLatin1;
}

/// Half a pair of units that would be one character; nothing when there is none.
QString looseSurrogate(const QString& content) {
    for (int i = 0; i < content.size(); ++i) {
        if (content[i].isHighSurrogate() && i + 1 < content.size() && content[i + 1].isLowSurrogate())
            ++i;
        else if (content[i].isSurrogate())
            return hexName(content[i].unicode());
    }
    return QString();
}

CodeFault eanFault(int digits, const QString& content, QString* detail) {
    for (QChar c : content) {
        if (c < QLatin1Char('0') || c > QLatin1Char('9'))
            return refuse(CodeFault::BadCharacter, detail, QString(c));
    }
    if (content.size() != digits && content.size() != digits - 1)
        return refuse(CodeFault::BadLength, detail, QString::number(content.size()));
    const QChar check = eanCheckDigit(content.left(digits - 1));
    if (content.size() == digits && content.at(digits - 1) != check)
        return refuse(CodeFault::CheckDigit, detail, QStringLiteral("%1 (%2)").arg(content).arg(check));
    return CodeFault::None;
}

CodeFault optionFault(const CodeSpec& spec) {
    const bool matrix = isMatrix(spec.symbology);
    const int sizes = spec.symbology == Symbology::Qr ? kQrVersions : matrix ? kDataMatrixSizes : 0;
    const int levels = spec.symbology == Symbology::Qr ? kQrErrorLevels : 0;
    const bool sound = spec.symbology <= Symbology::DataMatrix && spec.marking <= CodeMarking::Dots &&
                       within(spec.errorLevel, 0, levels) && within(spec.size, 0, sizes) &&
                       within(spec.quietZone, 0, kMostQuietZone) &&
                       within(spec.linesPerModule, 1, kMostLinesPerModule) &&
                       (matrix || spec.marking != CodeMarking::Dots);
    return sound ? CodeFault::None : CodeFault::BadOption;
}

} // namespace

bool CodeSpec::operator==(const CodeSpec& other) const {
    const auto all = [](const CodeSpec& s) {
        return std::tie(s.text, s.variables, s.symbology, s.errorLevel, s.size, s.quietZone, s.fitted, s.module,
                        s.width, s.barHeight, s.invert, s.marking, s.linesPerModule);
    };
    return all(*this) == all(other);
}

bool isMatrix(Symbology symbology) {
    return symbology == Symbology::Qr || symbology == Symbology::DataMatrix;
}

int usualQuietZone(Symbology symbology) {
    switch (symbology) {
    case Symbology::Code128:
        return 10;
    case Symbology::Ean13:
        return 11;
    case Symbology::Ean8:
        return 7;
    case Symbology::Qr:
        return 4;
    case Symbology::DataMatrix:
        break;
    }
    return 1;
}

CodeFault codeSpecFault(const CodeSpec& spec, QString* detail) {
    if (const CodeFault fault = optionFault(spec); fault != CodeFault::None)
        return fault;
    if (!within(spec.module, kLeastModule, kMostModule) || !within(spec.width, kLeastCodeSize, kMostCodeSize) ||
        !within(spec.barHeight, kLeastCodeSize, kMostCodeSize))
        return CodeFault::BadSize;
    if (!spec.variables)
        return contentFault(spec.symbology, spec.text, detail);
    if (spec.text.isEmpty())
        return CodeFault::Empty;
    return spec.text.size() > kMostCodeCharacters ? CodeFault::TooLong : CodeFault::None;
}

CodeFault contentFault(Symbology symbology, const QString& content, QString* detail) {
    if (content.isEmpty())
        return CodeFault::Empty;
    if (content.size() > kMostCodeCharacters)
        return CodeFault::TooLong;
    if (symbology == Symbology::Ean13)
        return eanFault(13, content, detail);
    if (symbology == Symbology::Ean8)
        return eanFault(8, content, detail);
    if (const QString loose = looseSurrogate(content); !loose.isEmpty())
        return refuse(CodeFault::BadCharacter, detail, loose);
    for (uint character : content.toUcs4()) {
        if (isRefused(character, symbology)) {
            const bool shown = QChar::isPrint(character);
            return refuse(CodeFault::BadCharacter, detail,
                          shown ? QString::fromUcs4(&character, 1) : hexName(character));
        }
    }
    return CodeFault::None;
}

const char* faultText(CodeFault fault) {
    switch (fault) {
    case CodeFault::None:
        break;
    case CodeFault::Empty:
        return "a code is empty";
    case CodeFault::TooLong:
        return "the content of a code is too long";
    case CodeFault::BadCharacter:
        return "a code cannot hold a character of its content";
    case CodeFault::BadLength:
        return "an article number has a wrong number of digits";
    case CodeFault::CheckDigit:
        return "the check digit of an article number is wrong";
    case CodeFault::BadSize:
        return "the size of a code is out of range";
    case CodeFault::BadOption:
        return "a code does not have one of its options";
    case CodeFault::Encoder:
        return "the encoder refuses a code";
    }
    return "";
}

QChar eanCheckDigit(const QString& digits) {
    int sum = 0;
    for (int i = 0; i < digits.size(); ++i) {
        const int weight = (digits.size() - i) % 2 ? 3 : 1;
        sum += weight * digits.at(i).digitValue();
    }
    return QLatin1Char(char('0' + (10 - sum % 10) % 10));
}

} // namespace sim
