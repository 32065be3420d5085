// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "simengine/importers/drawingbuilder.h"
#include "simengine/importers/lineclip.h"
#include "simengine/importers/svgstylesheet.h"

namespace sim {

/// Walks the tree of a drawing and hands what is painted to the builder, in painting order.
class SvgRender {
public:
    SvgRender(SvgTree& tree, DrawingBuilder& builder, ImportResult& result, ImportBudget& budget);
    void run();

private:
    /// What an element gets from those around it.
    struct Context {
        QTransform toPage; ///< user units to mm, y upwards
        QSizeF viewport;   ///< user units, for percentages
        SvgStyle style;
        std::shared_ptr<const std::vector<ClipArea>> clips; ///< mm; null for none
        std::optional<double> givenWidth;                   ///< by a reference to the drawing that comes next
        std::optional<double> givenHeight;
        bool opaque = true;
        bool measuring = false; ///< only the extent is wanted
        int depth = 0;
    };
    /// One outline, in user units.
    struct Outline {
        enum Kind { Rect, Ellipse, Path };
        Kind kind = Path;
        QRectF rect;
        PathShape path;
        bool letters = false;
    };

    void draw(int node, const Context& around);
    void drawElement(int node, const Context& context);
    void drawSvg(int node, const Context& context);
    void drawSymbol(int node, const Context& context);
    bool begin(int node, const Context& around, Context& context);
    std::optional<QTransform> transformOf(int node, const SvgStyle& style) const;
    void drawChildren(int node, const Context& context);
    void drawInner(int node, Context context, const QSizeF& size, const QPointF& place);
    bool hasSize(int node, const QSizeF& size) const;
    QSizeF innerSize(int node, const Context& context) const;
    void enterUnits(int node, const QSizeF& size, Context& context) const;
    void giveSize(int use, int target, Context& context) const;
    int choiceOf(int node) const;
    void drawUse(int node, const Context& context);
    void drawSwitch(int node, const Context& context);
    void drawText(int node, const Context& context);
    QByteArray textDrawing(int node, const Context& context);
    void paint(int node, const Context& context, const Outline& outline);
    void paint(const char* name, const Context& context, const Outline& outline, const QColor& stroke,
               const QColor& fill);
    void paintClipped(const char* name, const Context& context, const Outline& outline, bool filled, int pen);
    static PathShape mappedPath(const Outline& outline, const QTransform& toPage);
    bool outlineOf(int node, const Context& context, Outline& outline) const;
    QColor colorOf(const SvgPaint& paint);
    QColor serverColor(const QString& id, const QColor& otherwise);
    int clipNode(const QString& id);
    bool applyClip(int node, Context& context);
    bool cutAtEdge(const QSizeF& size, Context& context) const;
    void collect(int node, const Context& around, std::vector<ClipArea>& areas);
    void collectChildren(int node, const Context& context, std::vector<ClipArea>& areas);
    void collectChild(int child, const Context& context, std::vector<ClipArea>& areas);
    void collectInner(int node, const Context& context, std::vector<ClipArea>& areas);
    void collectSwitch(int node, const Context& context, std::vector<ClipArea>& areas);
    void collectUse(int node, const Context& context, std::vector<ClipArea>& areas);
    void collectShape(int node, const Context& context, std::vector<ClipArea>& areas);
    ClipArea clipArea(int clip, const Context& context, const QTransform& toPage);
    Box boxOf(int node, const Context& context);
    bool enter(int node);
    double length(int node, SvgLengthPlace place, const QSizeF& viewport, double missing) const;
    void skip(const char* kind, Note note);
    void convert(const char* kind, Note note);

    SvgTree& m_tree;
    DrawingBuilder& m_builder;
    ImportResult& m_result;
    ImportBudget& m_budget;
    SvgStyleSheet m_sheet;
    int m_invisible = 0;
    int m_areas = 0;
};

} // namespace sim
