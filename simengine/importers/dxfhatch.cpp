// SPDX-License-Identifier: GPL-2.0-or-later
#include "simengine/importers/dxfhatch.h"

#include "simengine/importers/curves.h"
#include "simengine/importers/dxfnumbers.h"

#include <cmath>

namespace sim {

namespace {

constexpr double kDegree = M_PI / 180.0;

/// Bit of a loop's kind: it comes as vertices with bulges, all others as edges.
constexpr int kOfVertices = 2;

/// Kinds of edges.
enum EdgeType { NoEdge = 0, LineEdge = 1, CircleEdge = 2, EllipseEdge = 3, SplineEdge = 4 };

/// Bytes of a number of a spline while its table grows.
constexpr qint64 kSplineBytes = 32;

} // namespace

void DxfHatch::begin() {
    finish();
    m_bad = 0;
}

PathShape DxfHatch::finish() {
    if (m_inLoops)
        endLoop();
    m_inLoops = false;
    PathShape path;
    std::swap(path, m_path);
    return path;
}

void DxfHatch::take(int code, double value) {
    switch (code) {
    case 91: // the number of loops; a 92 before it is none of a loop's
        m_inLoops = m_hasVertex = false;
        m_edge = Edge();
        m_path = PathShape();
        return;
    case 92: // the kind of a loop, which begins
        beginLoop((int(std::max(0.0, std::min(1e6, value))) & kOfVertices) != 0);
        return;
    case 75: // the style, behind all loops: what comes has numbers of the same codes
        if (m_inLoops)
            endLoop();
        m_inLoops = false;
        return;
    default:
        break;
    }
    if (!isTaken())
        return;
    if (m_ofVertices)
        takeVertex(code, value);
    else
        takeEdge(code, value);
}

void DxfHatch::beginLoop(bool ofVertices) {
    if (m_inLoops)
        endLoop();
    m_inLoops = true;
    m_ofVertices = ofVertices;
    m_begin = true;
    m_bulge = 0.0;
}

void DxfHatch::endLoop() {
    if (m_ofVertices) {
        endVertex();
        if (!m_begin && m_bulge != 0.0)
            appendBulge(m_path, m_first, m_bulge);
    } else {
        endEdge();
    }
    if (!m_begin && m_path.verbs.last() != PathVerb::Close)
        m_path.close();
    m_begin = true;
}

void DxfHatch::takeVertex(int code, double value) {
    switch (code) {
    case 10:
        endVertex();
        m_hasVertex = m_budget.step();
        m_vertex = {{value, 0.0}, 0.0};
        break;
    case 20:
        m_vertex.place.setY(value);
        break;
    case 42:
        m_vertex.bulge = value;
        break;
    default:
        break;
    }
}

void DxfHatch::endVertex() {
    if (!m_hasVertex)
        return;
    m_hasVertex = false;
    if (m_begin) {
        m_path.moveTo(m_vertex.place);
        m_first = m_vertex.place;
    } else {
        appendBulge(m_path, m_vertex.place, m_bulge);
    }
    m_begin = false;
    m_bulge = m_vertex.bulge;
}

void DxfHatch::takeEdge(int code, double value) {
    Edge& edge = m_edge;
    if (code == 72) {
        endEdge();
        edge.type = int(std::max(0.0, std::min(100.0, value)));
        return;
    }
    if (edge.type == SplineEdge) {
        takeSplineEdge(code, value);
        return;
    }
    switch (code) {
    case 10:
        edge.first.setX(value);
        break;
    case 20:
        edge.first.setY(value);
        break;
    case 11:
        edge.second.setX(value);
        break;
    case 21:
        edge.second.setY(value);
        break;
    case 40:
        edge.ratio = value;
        break;
    case 50:
        edge.start = value;
        break;
    case 51:
        edge.end = value;
        break;
    case 73:
        edge.counterClockwise = value != 0.0;
        break;
    default:
        break;
    }
}

void DxfHatch::takeSplineEdge(int code, double value) {
    Nurbs& spline = m_edge.spline;
    const bool grows = code == 10 || code == 11 || code == 40 || code == 42;
    if (grows) {
        m_held += kSplineBytes;
        if (!m_budget.memory(kSplineBytes))
            return;
    }
    switch (code) {
    case 94:
        spline.degree = int(std::max(0.0, std::min(1000.0, value)));
        break;
    case 40:
        spline.knots.push_back(value);
        break;
    case 42:
        spline.weights.push_back(value);
        break;
    case 10:
        spline.points.emplace_back(value, 0.0);
        break;
    case 20:
        if (!spline.points.empty())
            spline.points.back().setY(value);
        break;
    case 11:
        m_edge.fitPoints.emplace_back(value, 0.0);
        break;
    case 21:
        if (!m_edge.fitPoints.empty())
            m_edge.fitPoints.back().setY(value);
        break;
    default:
        break;
    }
}

/// Goes on to the beginning of an edge: a gap is drawn as a line.
void DxfHatch::reach(const QPointF& place) {
    if (m_begin)
        m_path.moveTo(place);
    else if (m_path.points.last() != place)
        m_path.lineTo(place);
    m_begin = false;
}

void DxfHatch::endEdge() {
    switch (m_edge.type) {
    case LineEdge:
        reach(m_edge.first);
        m_path.lineTo(m_edge.second);
        break;
    case CircleEdge:
    case EllipseEdge:
        appendArc(m_edge.type == CircleEdge);
        break;
    case SplineEdge:
        appendSpline();
        break;
    case NoEdge:
        break;
    default:
        ++m_bad;
        break;
    }
    m_edge = Edge();
    m_budget.memory(-m_held);
    m_held = 0;
    m_budget.step();
}

void DxfHatch::appendArc(bool circle) {
    const QPointF u = circle ? QPointF(m_edge.ratio, 0.0) : m_edge.second;
    if (!usable({m_edge.first.x(), m_edge.first.y(), u.x(), u.y(), m_edge.ratio, m_edge.start, m_edge.end})) {
        ++m_bad;
        return;
    }
    const EllipseAxes axes{m_edge.first, u, QPointF(-u.y(), u.x()) * (circle ? 1.0 : m_edge.ratio)};
    // edges that run clockwise are told by the angles of their mirror image
    const double turn = m_edge.counterClockwise ? kDegree : -kDegree;
    reach(axes.at(turn * m_edge.start));
    appendEllipse(m_path, axes, turn * m_edge.start, turn * sweepOf(m_edge.start, m_edge.end));
}

void DxfHatch::appendSpline() {
    Nurbs& spline = m_edge.spline;
    PathShape part;
    if (spline.points.empty() && m_edge.fitPoints.size() > 1)
        appendThrough(part, m_edge.fitPoints, false);
    else if (!appendNurbs(part, spline, std::max(1e-12, extentOf(spline.points) * kSplinePart), &m_budget))
        ++m_bad;
    if (part.verbs.isEmpty())
        return;
    reach(part.points.first());
    m_path.verbs += part.verbs.mid(1);
    m_path.points += part.points.mid(1);
}

} // namespace sim
