// SPDX-License-Identifier: GPL-2.0-or-later
#include "simengine/document/codesymbol.h"

#include <memory>
#include <zint.h>

namespace sim {

namespace {

struct DeleteSymbol {
    void operator()(zint_symbol* symbol) const { ZBarcode_Delete(symbol); }
};
using SymbolPtr = std::unique_ptr<zint_symbol, DeleteSymbol>;

int encoderNumber(Symbology symbology) {
    switch (symbology) {
    case Symbology::Code128:
        return BARCODE_CODE128;
    case Symbology::Ean13:
    case Symbology::Ean8:
        return BARCODE_EANX;
    case Symbology::Qr:
        return BARCODE_QRCODE;
    case Symbology::DataMatrix:
        break;
    }
    return BARCODE_DATAMATRIX;
}

/// What is given to the encoder: of an EAN without its check digit, by whose number of digits it tells EAN-8 from 13.
QByteArray encoderInput(Symbology symbology, const QString& content) {
    const int digits = symbology == Symbology::Ean13 ? 12 : symbology == Symbology::Ean8 ? 7 : content.size();
    return content.left(digits).toUtf8();
}

CodeFault faultOf(int result) {
    switch (result) {
    case ZINT_ERROR_TOO_LONG:
        return CodeFault::TooLong;
    case ZINT_ERROR_INVALID_DATA:
        return CodeFault::BadCharacter;
    case ZINT_ERROR_INVALID_CHECK:
        return CodeFault::CheckDigit;
    case ZINT_ERROR_INVALID_OPTION:
        return CodeFault::BadOption;
    default:
        return CodeFault::Encoder;
    }
}

void setOptions(const CodeSpec& spec, zint_symbol& symbol) {
    symbol.symbology = encoderNumber(spec.symbology);
    symbol.input_mode = UNICODE_MODE;
    symbol.show_hrt = 0;
    if (spec.errorLevel > 0)
        symbol.option_1 = spec.errorLevel;
    if (spec.size > 0)
        symbol.option_2 = spec.size;
    else if (spec.symbology == Symbology::DataMatrix)
        symbol.option_3 = DM_SQUARE;
}

void take(const zint_symbol& made, bool matrix, CodeSymbol& symbol) {
    symbol.columns = made.width;
    symbol.rows = matrix ? made.rows : 1;
    symbol.modules.assign(size_t(symbol.columns) * size_t(symbol.rows), false);
    for (int row = 0; row < symbol.rows; ++row) {
        for (int column = 0; column < symbol.columns; ++column) {
            const bool dark = (made.encoded_data[row][column / 8] >> (column % 8)) & 1;
            symbol.modules[size_t(row) * size_t(symbol.columns) + size_t(column)] = dark;
        }
    }
}

} // namespace

CodeFault encodeSymbol(const CodeSpec& spec, const QString& content, CodeSymbol& symbol, QString* detail) {
    const CodeFault fault = contentFault(spec.symbology, content, detail);
    if (fault != CodeFault::None)
        return fault;
    const SymbolPtr made(ZBarcode_Create());
    if (!made)
        return CodeFault::Encoder;
    setOptions(spec, *made);
    const QByteArray input = encoderInput(spec.symbology, content);
    const int result =
        ZBarcode_Encode(made.get(), reinterpret_cast<const unsigned char*>(input.constData()), input.size());
    // what the encoder only warns of, such as an encoding of characters that it names in the code, is a code
    if (result >= ZINT_ERROR) {
        if (detail)
            *detail = QString::fromLatin1(made->errtxt);
        return faultOf(result);
    }
    take(*made, isMatrix(spec.symbology), symbol);
    return CodeFault::None;
}

} // namespace sim
