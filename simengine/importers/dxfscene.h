// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "simengine/importers/curves.h"
#include "simengine/importers/drawingbuilder.h"

#include <QHash>
#include <functional>
#include <unordered_map>
#include <variant>

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
};

/// One entity. Its geometry is in the coordinates of the drawing or block; a text's and an insert's are its own, and
/// `place` brings them there.
struct DxfItem {
    const char* kind = "";
    int layer = 0;
    int color = 256; ///< number, 0 by block, 256 by layer
    int rgb = -1;    ///< true colour, -1 for none
    bool dashed = false;
    std::variant<DxfLine, PathShape, DxfArc, QPointF, DxfText, DxfInsert> shape;
    QTransform place;
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
        std::vector<DxfItem> items;
        bool open = false; ///< being inserted
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
    void emitText(const DxfItem& item, const DxfText& text, const Context& context, int pen);
    void flushLine();
    int penOf(int layer, bool byLayer, const QColor& color);

    ImportResult& m_result;
    ImportBudget& m_budget;
    DrawingBuilder m_builder;
    double m_unit = 1.0;
    std::function<QString(const std::string&)> m_names;
    std::vector<Layer> m_layers;
    std::unordered_map<std::string, int> m_layerIndex;
    std::unordered_map<std::string, Block> m_blocks;
    Block* m_block = nullptr;
    QHash<quint64, int> m_pens;
    QPolygonF m_chain; ///< lines that meet end to end
    int m_chainPen = 0;
    int m_joined = 0;
};

} // namespace sim
