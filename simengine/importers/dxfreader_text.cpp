// SPDX-License-Identifier: GPL-2.0-or-later
#include "simengine/importers/dxfletters.h"
#include "simengine/importers/dxfnumbers.h"
#include "simengine/importers/dxfreader.h"

#include <cmath>
#include <utility>

namespace sim {

namespace {

/// Ways a line of text lies to its place.
enum Across { Left, Center, Right, Aligned, Middle, Fit };
/// Bits of the way letters are written.
enum Generation { Backwards = 2, UpsideDown = 4 };
/// Bytes of one paragraph text.
constexpr size_t kMostBytes = 100000;
/// What one of them costs the budget while its codes are looked for.
constexpr qint64 kCodeCost = 8;

} // namespace

void DxfReader::putText(const char* kind, const DL_TextData& data) {
    flush();
    DxfItem item;
    if (!take(kind, item))
        return;
    // without a second place the library gives one beyond all reach
    const bool placed = data.hJustification != Left || data.vJustification != 0;
    if (!usable({data.ipx, data.ipy, data.height, data.xScaleFactor, data.angle}) || !(data.height > 0.0) ||
        (placed && !usable({data.apx, data.apy}))) {
        skip(kind, Note::BadNumber);
        return;
    }
    auto writing = std::make_unique<DxfWriting>();
    DxfText& text = writing->text;
    text.lines = plainLines(kind, dxfPlainText(decoded(data.text)));
    text.height = data.height;
    text.widthFactor = data.xScaleFactor > 0.0 ? data.xScaleFactor : 1.0;
    const QPointF first(data.ipx, data.ipy);
    const QPointF second(data.apx, data.apy);
    const bool between = data.hJustification == Aligned || data.hJustification == Fit;
    QPointF place = first;
    double angle = data.angle;
    if (between) {
        const QPointF way = second - first;
        angle = std::atan2(way.y(), way.x());
        text.fitWidth = std::hypot(way.x(), way.y());
        text.fitHeight = data.hJustification == Aligned;
    } else if (placed) {
        place = second;
        text.across = data.hJustification == Right ? 2 : data.hJustification == Left ? 0 : 1;
        text.along = data.hJustification == Middle ? 2 : std::max(0, std::min(3, data.vJustification));
    }
    QTransform turn;
    turn.rotateRadians(angle);
    const QTransform mirror = QTransform::fromScale((data.textGenerationFlags & Backwards) != 0 ? -1.0 : 1.0,
                                                    (data.textGenerationFlags & UpsideDown) != 0 ? -1.0 : 1.0);
    const Plane own = plane(data.ipz);
    if (own.tilted)
        convert(kind, Note::Tilted);
    writing->place = mirror * turn * QTransform::fromTranslate(place.x(), place.y()) * own.toDrawing;
    item.shape = std::move(writing);
    put(std::move(item));
}

void DxfReader::addText(const DL_TextData& data) {
    putText("TEXT", data);
}

void DxfReader::addAttribute(const DL_AttributeData& data) {
    putText("ATTRIB", data);
}

void DxfReader::addArcAlignedText(const DL_ArcAlignedTextData&) {
    flush();
    m_handled = true;
    skip("ARCALIGNEDTEXT", Note::TextPath);
}

void DxfReader::addMTextChunk(const std::string& text) {
    m_paragraphTooLong = m_paragraphTooLong || m_paragraph.size() + text.size() > kMostBytes;
    if (!m_paragraphTooLong)
        m_paragraph += text;
}

/// The lines of a text, and what they lack told.
QStringList DxfReader::plainLines(const char* kind, const DxfPlainText& plain) {
    if (plain.formatted)
        convert(kind, Note::TextFormat);
    m_badText = m_badText || plain.unknown;
    return plain.lines;
}

void DxfReader::addMText(const DL_MTextData& data) {
    flush();
    std::string bytes;
    bytes.swap(m_paragraph);
    const bool tooLong = std::exchange(m_paragraphTooLong, false);
    DxfItem item;
    if (!take("MTEXT", item) || !m_budget.step(qint64(bytes.size()) * kCodeCost))
        return;
    if (tooLong) {
        skip("MTEXT", Note::TextTooLong);
        return;
    }
    if (!usable({data.ipx, data.ipy, data.height, data.width, data.angle, data.lineSpacingFactor}) ||
        !(data.height > 0.0)) {
        skip("MTEXT", Note::BadNumber);
        return;
    }
    bytes += data.text;
    auto writing = std::make_unique<DxfWriting>();
    DxfText& text = writing->text;
    text.lines = plainLines("MTEXT", dxfParagraphs(decoded(bytes)));
    text.height = data.height;
    if (data.lineSpacingFactor > 0.0)
        text.lineStep *= data.lineSpacingFactor;
    text.wrapWidth = std::max(0.0, data.width);
    const int place = std::max(1, std::min(9, data.attachmentPoint)) - 1;
    text.across = place % 3;
    const int along[] = {3, 2, 1};
    text.along = along[place / 3];
    QTransform turn;
    turn.rotateRadians(data.angle);
    writing->place = turn * QTransform::fromTranslate(data.ipx, data.ipy) * plane(0.0).toDrawing;
    item.shape = std::move(writing);
    put(std::move(item));
}

} // namespace sim
