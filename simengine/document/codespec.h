// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include <QString>

namespace sim {

/// Kinds of bar and matrix codes. Values stand in document files.
enum class Symbology : quint8 { Code128 = 0, Ean13 = 1, Ean8 = 2, Qr = 3, DataMatrix = 4 };

/// How the dark modules are marked. Values stand in document files.
enum class CodeMarking : quint8 {
    Outline = 0, ///< closed outlines round all that is dark, for a hatch
    Lines = 1,   ///< lines along each row of a matrix and along each bar
    Dots = 2     ///< a mark point in the middle of each dark module; matrix codes only
};

/// What the operator enters of a code.
struct CodeSpec {
    QString text;           ///< what the code tells; a template when `variables` is set
    bool variables = false; ///< the text holds variables as Template has them
    Symbology symbology = Symbology::DataMatrix;
    int errorLevel = 0;  ///< QR: 1 to 4 for L, M, Q, H; 0 the encoder's choice, as for all others
    int size = 0;        ///< QR version 1 to 40, number of the Data Matrix size 1 to 30; 0 the smallest that will do
    int quietZone = 1;   ///< modules on each side, 0 to 40; marked when inverted, part of a fitted width
    bool fitted = false; ///< the width is given, not the module
    double module = 0.5; ///< width of a module, mm, when not fitted
    double width = 20.0; ///< of the code with its quiet zones, mm, when fitted
    double barHeight = 10.0; ///< of bar codes, mm
    bool invert = false;     ///< what is light is marked, the quiet zone with it
    CodeMarking marking = CodeMarking::Outline;
    int linesPerModule = 3; ///< of CodeMarking::Lines, 1 to 50

    bool operator==(const CodeSpec& other) const;
    bool operator!=(const CodeSpec& other) const { return !(*this == other); }
};

/// Characters that a code or its template can hold; the largest codes have room for 7089 digits.
constexpr int kMostCodeCharacters = 10000;
/// Widths of a module, widths of a fitted code and heights of bars, mm.
constexpr double kLeastModule = 0.005;
constexpr double kMostModule = 100.0;
constexpr double kLeastCodeSize = 0.05;
constexpr double kMostCodeSize = 10000.0;
constexpr int kMostQuietZone = 40;
constexpr int kMostLinesPerModule = 50;
constexpr int kQrVersions = 40;
constexpr int kDataMatrixSizes = 30;
constexpr int kQrErrorLevels = 4;

/// Why a code cannot be an object.
enum class CodeFault {
    None,
    Empty,        ///< no characters
    TooLong,      ///< more than the code, or its chosen size, has room for
    BadCharacter, ///< one that the code has no sign for
    BadLength,    ///< EAN with another number of digits
    CheckDigit,   ///< EAN whose last digit is not the check digit of the others
    BadSize,      ///< a length outside its limits
    BadOption,    ///< an option that the code does not have
    Encoder       ///< the encoder refuses it for another reason
};

bool isMatrix(Symbology symbology);

/// Modules that the standard of the code asks for on each side; of EAN the larger one.
int usualQuietZone(Symbology symbology);

/// The faults that show without an encoder, of a spec without variables also those of its text.
CodeFault codeSpecFault(const CodeSpec& spec, QString* detail = nullptr);

/// As above, of the text that is to be encoded.
CodeFault contentFault(Symbology symbology, const QString& content, QString* detail = nullptr);

/// The fault in the words of the log.
const char* faultText(CodeFault fault);

/// The check digit of the 12 or 7 digits of an EAN, '0' to '9'.
QChar eanCheckDigit(const QString& digits);

} // namespace sim
