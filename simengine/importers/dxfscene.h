// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "simengine/importers/curves.h"
#include "simengine/importers/drawingbuilder.h"
#include "simengine/importers/dxfletters.h"

#include <QHash>
#include <deque>
#include <functional>
#include <memory>
#include <optional>
#include <unordered_map>
#include <variant>

namespace sim {

/// A text and its letters, which are made when it is first drawn: a block may be inserted very often.
struct DxfWriting {
    DxfText text;
    QTransform place;
    std::optional<DxfLetters> letters;
};

struct DxfArc {
    EllipseAxes axes;
    double start = 0.0;
    double sweep = 0.0; ///< radians
};

struct DxfLine {
    QPointF from;
    QPointF to;
};

struct DxfInsert {
    std::string block;
    int columns = 1;
    int rows = 1;
    QPointF column; ///< way to the next one, in the insert's own directions
    QPointF row;
    QTransform turn; ///< of those directions
    QTransform place;
};

/// One entity, of which blocks keep millions. Its geometry is in the coordinates of the drawing or block; a text's and
/// an insert's are its own, and their `place` brings them there.
struct DxfItem {
    const char* kind = "";
    int layer = 0;
    int color = 256; ///< number, 0 by block, 256 by layer
    int rgb = -1;    ///< true colour, -1 for none
    bool dashed = false;
    bool high = false; ///< told of heights that are not 0
    bool wide = false; ///< lines with a width of their own
    std::variant<DxfLine, PathShape, DxfArc, QPointF, std::unique_ptr<DxfWriting>, std::unique_ptr<DxfInsert>> shape;
};

/// Layers, blocks and entities of a drawing on their way to objects.
class DxfScene {
public:
    DxfScene(ImportResult& result, ImportBudget& budget);

    /// Millimetres of the drawing's unit; before the first entity.
    void setUnit(double mm) { m_unit = mm; }
    double unit() const { return m_unit; }
    int layer(const std::string& name);
    void setLayer(const std::string& name, int color, int rgb, bool hidden, bool dashed);
    void setNames(std::function<QString(const std::string&)> names) { m_names = std::move(names); }
    void beginBlock(const std::string& name, const QPointF& base);
    void endBlock() { m_block = nullptr; }
    void add(DxfItem&& item);
    void finish(const ImportOptions& options);

private:
    struct Layer {
        std::string name;
        QColor color;
        bool hidden = false;
        bool dashed = false;
    };
    struct Block {
        QPointF base;
        std::deque<DxfItem> items; ///< grows without moving
        bool open = false;         ///< being inserted
    };
    /// What an insert hands to its block's entities.
    struct Context {
        QTransform toField;
        int layer = -1;
        QColor color;
        int pen = 0;
        int depth = 0;
    };

    void emitItem(const DxfItem& item, const Context& context);
    void emitInsert(const DxfItem& item, const Context& context, const Context& inner);
    void emitLine(const DxfItem& item, const DxfLine& line, const Context& context, int pen);
    void emitText(const DxfItem& item, DxfWriting& writing, const Context& context, int pen);
    std::string folded(const std::string& name) const;
    void flushLine();
    int penOf(int layer, bool byLayer, const QColor& color);

    ImportResult& m_result;
    ImportBudget& m_budget;
    DrawingBuilder m_builder;
    double m_unit = 1.0;
    std::function<QString(const std::string&)> m_names;
    std::vector<Layer> m_layers;
    std::unordered_map<std::string, int> m_layerIndex;
    std::unordered_map<std::string, Block> m_blocks; ///< by folded name
    Block* m_block = nullptr;
    bool m_leaveOut = false; ///< what comes belongs to a block that was defined before
    QHash<quint64, int> m_pens;
    QPolygonF m_chain; ///< lines that meet end to end
    int m_chainPen = 0;
    int m_joined = 0;
};

} // namespace sim
