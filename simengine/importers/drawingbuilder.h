// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "simengine/document/box.h"
#include "simengine/importers/importbudget.h"
#include "simengine/importers/importresult.h"

#include <array>

namespace sim {

/// Collects what an importer reads and makes objects of it: pens for colours, the place in the field, bounds on number
/// and memory. Coordinates are mm, y upwards.
class DrawingBuilder {
public:
    /// Single objects at most. What comes beyond them is gathered, pen by pen, into paths of many contours: the drawing
    /// stays whole and the document usable.
    static constexpr int kMostSingle = 50000;
    /// Points of a gathered path.
    static constexpr int kGatheredPoints = 20000;

    DrawingBuilder(ImportResult& result, ImportBudget& budget)
        : m_result(result)
        , m_budget(budget) {}

    /// The pen of a colour: the first colour met is pen 0, the next other one pen 1 and so on, 19 when there are more.
    int penOf(const QColor& color);
    /// The next pen, 19 when there are no more, for something that the file calls `name`; empty for a plain colour.
    int newPen(const QColor& color, const QString& name);
    /// Takes one shape. An empty path is left out without a word. False when the budget is spent.
    bool add(Shape shape, const QTransform& transform, int pen, const QString& kind);
    /// The same for a path; one of one straight contour becomes a polyline.
    bool addPath(const PathShape& path, int pen, const QString& kind);
    /// An arc or ellipse; a full circle becomes a circle object.
    bool addEllipse(const struct EllipseAxes& ellipse, double start, double sweep, int pen, const QString& kind);

    /// Extent of all that was added.
    const Box& bounds() const { return m_bounds; }
    /// Makes the objects. `page` is the middle of the page for ImportPlacement::CenterPage.
    void finish(const ImportOptions& options, const QPointF& page);

private:
    struct Pending {
        Shape shape;
        QTransform transform;
        int pen = 0;
        QString kind;
    };

    void gather(const Shape& shape, const QTransform& transform, int pen);
    void flush(int pen);
    void make(Pending& pending, const QPointF& by);

    ImportResult& m_result;
    ImportBudget& m_budget;
    std::vector<Pending> m_pending;
    std::array<PathShape, 20> m_gathered;
    QVector<QColor> m_shared; ///< colours beyond the pens
    int m_sharedPens = 0;     ///< pens asked for beyond the last
    int m_gatheredCount = 0;
    Box m_bounds;
};

} // namespace sim
