// SPDX-License-Identifier: GPL-2.0-or-later
#include "simengine/importers/dxfscene.h"

#include "simengine/importers/dxfcolors.h"

#include <cmath>

namespace sim {

namespace {

/// Blocks within blocks; deeper ones are refused before the stack ends.
constexpr int kMostBlockDepth = 64;

/// Ends of lines this close are one place, mm.
constexpr double kSamePlace = 1.0e-6;

/// Bytes that a layer, a block and a pen's colour hold with their names and places in the tables.
constexpr qint64 kLayerBytes = 400;
constexpr qint64 kBlockBytes = 400;
constexpr qint64 kPenBytes = 64;

qint64 bytesOf(const PathShape& path) {
    constexpr qint64 kHeads = 2 * 32; // of the two tables
    return kHeads + path.points.size() * qint64(sizeof(QPointF)) + path.verbs.size() * qint64(sizeof(PathVerb));
}

qint64 bytesOf(const DxfItem& item) {
    qint64 bytes = sizeof(DxfItem);
    if (const auto* path = std::get_if<PathShape>(&item.shape)) {
        bytes += bytesOf(*path);
    } else if (const auto* writing = std::get_if<std::unique_ptr<DxfWriting>>(&item.shape)) {
        bytes += sizeof(DxfWriting);
        for (const QString& line : (*writing)->text.lines)
            bytes += qint64(sizeof(QString)) + line.size() * qint64(sizeof(QChar));
    } else if (const auto* insert = std::get_if<std::unique_ptr<DxfInsert>>(&item.shape)) {
        bytes += qint64(sizeof(DxfInsert)) + qint64((*insert)->block.size());
    }
    return bytes;
}

} // namespace

DxfScene::DxfScene(ImportResult& result, ImportBudget& budget)
    : m_result(result)
    , m_budget(budget)
    , m_builder(result, budget) {
    layer("0");
}

int DxfScene::layer(const std::string& name) {
    const auto known = m_layerIndex.find(name);
    if (known != m_layerIndex.end())
        return known->second;
    if (!m_budget.memory(kLayerBytes + 2 * qint64(name.size())))
        return 0;
    // capital letters or small ones are the same layer
    const auto [same, isNew] = m_layerIndex.emplace(folded(name), int(m_layers.size()));
    if (isNew)
        m_layers.push_back({name, dxfColor(7), false, false});
    const int index = same->second;
    m_layerIndex.emplace(name, index);
    return index;
}

/// The name as tables compare it. Bytes beyond ASCII are characters of the file's encoding, some of whose second bytes
/// look like letters.
std::string DxfScene::folded(const std::string& name) const {
    std::string same = name;
    for (char& c : same) {
        if ((c & '\x80') != 0)
            return m_names ? m_names(name).toCaseFolded().toStdString() : name;
        c = c >= 'A' && c <= 'Z' ? char(c - 'A' + 'a') : c;
    }
    return same;
}

void DxfScene::setLayer(const std::string& name, int color, int rgb, bool hidden, bool dashed) {
    Layer& entry = m_layers[size_t(layer(name))];
    entry.color = rgb >= 0 ? QColor(QRgb(rgb) | 0xff000000u) : dxfColor(std::abs(color));
    entry.hidden = hidden;
    entry.dashed = dashed;
}

void DxfScene::beginBlock(const std::string& name, const QPointF& base) {
    if (!m_budget.memory(kBlockBytes + qint64(name.size())))
        return;
    const auto [place, isNew] = m_blocks.try_emplace(folded(name));
    m_leaveOut = !isNew;
    m_block = &place->second;
    if (isNew)
        m_block->base = base;
    else
        m_result.skip(QStringLiteral("BLOCK"), noteText(Note::BlockAgain));
}

void DxfScene::add(DxfItem&& item) {
    if (!m_block) {
        emitItem(item, {QTransform::fromScale(m_unit, m_unit), -1, QColor(), 0, 0});
    } else if (!m_leaveOut && m_budget.memory(bytesOf(item))) {
        if (auto* path = std::get_if<PathShape>(&item.shape)) {
            path->points.squeeze();
            path->verbs.squeeze();
        }
        m_block->items.push_back(std::move(item));
    }
}

/// The pen of a layer for what has its colour, and of a colour for what has one of its own.
int DxfScene::penOf(int layer, bool byLayer, const QColor& color) {
    const quint64 key = byLayer ? quint64(layer) : (quint64(1) << 40) | color.rgb();
    const auto known = m_pens.constFind(key);
    if (known != m_pens.constEnd())
        return *known;
    QString name;
    if (byLayer)
        name = m_names ? m_names(m_layers[size_t(layer)].name) : QString::fromStdString(m_layers[size_t(layer)].name);
    const int pen = m_builder.newPen(color, name);
    if (m_budget.memory(kPenBytes))
        m_pens.insert(key, pen);
    return pen;
}

void DxfScene::emitItem(const DxfItem& item, const Context& context) {
    if (!m_budget.elements())
        return;
    // what lies on layer 0 within a block lies on the layer of its insert
    const int layer = item.layer == 0 && context.layer >= 0 ? context.layer : item.layer;
    if (m_layers[size_t(layer)].hidden) {
        m_result.skip(QString::fromLatin1(item.kind), noteText(Note::Hidden));
        return;
    }
    const bool byBlock = item.rgb < 0 && item.color == kDxfByBlock && context.depth > 0;
    const bool byLayer = item.rgb < 0 && !byBlock && (item.color == kDxfByLayer || item.color < 0);
    QColor color = m_layers[size_t(layer)].color;
    if (byBlock)
        color = context.color;
    else if (item.rgb >= 0)
        color = QColor(QRgb(item.rgb) | 0xff000000u);
    else if (!byLayer)
        color = dxfColor(item.color);
    const int pen = byBlock ? context.pen : penOf(layer, byLayer, color);
    const QString kind = QString::fromLatin1(item.kind);
    if (item.dashed ||
        (m_layers[size_t(layer)].dashed && !std::holds_alternative<std::unique_ptr<DxfInsert>>(item.shape)))
        m_result.convert(kind, noteText(Note::Dashed));
    if (const auto* line = std::get_if<DxfLine>(&item.shape)) {
        emitLine(item, *line, context, pen);
        return;
    }
    flushLine();
    if (const auto* path = std::get_if<PathShape>(&item.shape))
        m_builder.addPath(mapPath(*path, context.toField), pen, kind);
    else if (const auto* arc = std::get_if<DxfArc>(&item.shape))
        m_builder.addEllipse(arc->axes.mapped(context.toField), arc->start, arc->sweep, pen, kind);
    else if (const auto* point = std::get_if<QPointF>(&item.shape))
        m_builder.add(PointShape{context.toField.map(*point)}, QTransform(), pen, kind);
    else if (const auto* writing = std::get_if<std::unique_ptr<DxfWriting>>(&item.shape))
        emitText(item, **writing, context, pen);
    else
        emitInsert(item, context, {QTransform(), layer, color, pen, context.depth + 1});
}

void DxfScene::emitLine(const DxfItem& item, const DxfLine& line, const Context& context, int pen) {
    const QPointF from = context.toField.map(line.from);
    const QPointF to = context.toField.map(line.to);
    if (!m_chain.isEmpty() && pen == m_chainPen) {
        const QPointF gap = from - m_chain.last();
        if (std::abs(gap.x()) <= kSamePlace && std::abs(gap.y()) <= kSamePlace) {
            m_chain.append(to);
            ++m_joined;
            return;
        }
    }
    flushLine();
    if (from == to) {
        m_builder.add(PointShape{from}, QTransform(), pen, QString::fromLatin1(item.kind));
        return;
    }
    m_chainPen = pen;
    m_chain = QPolygonF(QVector<QPointF>{from, to});
}

void DxfScene::flushLine() {
    if (m_chain.isEmpty())
        return;
    PolylineShape line;
    std::swap(line.points, m_chain);
    const QPointF gap = line.points.last() - line.points.first();
    if (line.points.size() > 3 && std::abs(gap.x()) <= kSamePlace && std::abs(gap.y()) <= kSamePlace) {
        line.points.removeLast();
        line.closed = true;
    }
    line.points.squeeze();
    m_builder.add(std::move(line), QTransform(), m_chainPen, QStringLiteral("LINE"));
}

void DxfScene::emitInsert(const DxfItem& item, const Context& context, const Context& inner) {
    const DxfInsert& insert = *std::get<std::unique_ptr<DxfInsert>>(item.shape);
    const auto found = m_blocks.find(folded(insert.block));
    if (found == m_blocks.end()) {
        m_result.skip(QStringLiteral("INSERT"), noteText(Note::MissingBlock));
        return;
    }
    Block& block = found->second;
    if (block.open || m_block == &block) {
        m_budget.fail(Note::RefersToItself);
        return;
    }
    if (inner.depth > kMostBlockDepth) {
        m_budget.fail(Note::TooDeep);
        return;
    }
    block.open = true;
    for (int row = 0; row < insert.rows; ++row) {
        for (int column = 0; column < insert.columns; ++column) {
            const QPointF by = insert.turn.map(insert.column * column + insert.row * row);
            Context here = inner;
            here.toField = QTransform::fromTranslate(-block.base.x(), -block.base.y()) * insert.place *
                           QTransform::fromTranslate(by.x(), by.y()) * context.toField;
            for (const DxfItem& child : block.items)
                emitItem(child, here);
            if (!m_budget.elements()) {
                block.open = false;
                return;
            }
        }
    }
    block.open = false;
}

void DxfScene::emitText(const DxfItem& item, DxfWriting& writing, const Context& context, int pen) {
    if (!writing.letters) {
        DxfLetters made = dxfLetters(writing.text, m_budget);
        // those of a block stay as long as it
        if (!m_budget.ok() || (context.depth > 0 && !m_budget.memory(bytesOf(made.path))))
            return;
        writing.letters = std::move(made);
    }
    const DxfLetters& letters = *writing.letters;
    const QString kind = QString::fromLatin1(item.kind);
    if (letters.tooLong)
        m_result.skip(kind, noteText(Note::TextTooLong));
    if (letters.missing > 0)
        m_result.skip(kind, noteText(Note::NoGlyph), letters.missing);
    if (letters.path.verbs.isEmpty())
        return;
    m_result.convert(kind, noteText(letters.outline ? Note::FontReplacedOutline : Note::FontReplaced));
    const PathShape path = mapPath(letters.path, writing.place * context.toField);
    m_builder.add(path, QTransform(), pen, kind);
}

void DxfScene::finish(const ImportOptions& options) {
    flushLine();
    if (m_joined > 0)
        m_result.convert(QStringLiteral("LINE"), noteText(Note::Joined), m_joined);
    if (m_budget.ok())
        m_builder.finish(options, QPointF());
}

} // namespace sim
