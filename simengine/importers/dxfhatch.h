// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "simengine/importers/importbudget.h"
#include "simengine/importers/nurbs.h"

namespace sim {

/// The boundary of a HATCH, put together from the pairs of the file as they come. The reading library would keep some
/// hundred bytes of every edge until the entity ends.
class DxfHatch {
public:
    explicit DxfHatch(ImportBudget& budget)
        : m_budget(budget) {}

    void begin();
    /// A number of the entity.
    void take(int code, double value);
    /// The boundary, all of its contours closed; empty when there is none.
    PathShape finish();
    /// Edges with numbers that no curve can have.
    int badEdges() const { return m_bad; }

private:
    struct Vertex {
        QPointF place;
        double bulge = 0.0;
    };
    /// A line, an arc or the like, as far as its numbers have come.
    struct Edge {
        int type = 0;
        QPointF first;  ///< beginning or centre
        QPointF second; ///< end, or end of the longer half axis from the centre
        double ratio = 0.0;
        double start = 0.0; ///< degrees
        double end = 0.0;
        bool counterClockwise = false;
        Nurbs spline;
        std::vector<QPointF> fitPoints;
    };

    bool isTaken() const { return m_inLoops && m_budget.hasRoom(m_path.points.size()); }
    void beginLoop(bool ofVertices);
    void endLoop();
    void takeVertex(int code, double value);
    void endVertex();
    void takeEdge(int code, double value);
    void takeSplineEdge(int code, double value);
    void endEdge();
    void appendArc(bool circle);
    void appendSpline();
    void reach(const QPointF& place);

    ImportBudget& m_budget;
    PathShape m_path;
    bool m_inLoops = false;
    bool m_ofVertices = false;
    bool m_begin = false; ///< the next place begins a contour
    bool m_hasVertex = false;
    Vertex m_vertex;
    QPointF m_first;      ///< vertex of the loop
    double m_bulge = 0.0; ///< of the vertex before
    Edge m_edge;
    qint64 m_held = 0; ///< bytes of the edge's spline
    int m_bad = 0;
};

} // namespace sim
