// SPDX-License-Identifier: GPL-2.0-or-later
#include "simengine/importers/dxfreader.h"

#include <cmath>
#include <cstring>

namespace sim {

namespace {

constexpr double kDegree = M_PI / 180.0;

/// Bits of a polyline's flags.
enum PolylineFlag { Closed = 1, SpatialLine = 8, Mesh = 16, FaceMesh = 64 };
/// Bit of a vertex that only holds a frame of the spline.
constexpr int kFrameVertex = 16;
/// Bits of a spline's flags.
constexpr int kSplineClosed = 1;

/// How far curves may be off a spline, mm; and in parts of its extent, for blocks that are inserted larger.
constexpr double kSplineTolerance = 2.0e-4;
constexpr double kSplinePart = 1.0e-7;

/// From one angle on to the other, counter-clockwise, degrees; equal ones make a full turn.
double sweepOf(double from, double to) {
    const double sweep = std::fmod(to - from, 360.0);
    return sweep > 1e-9 ? sweep : sweep + 360.0;
}

double extentOf(const std::vector<QPointF>& points) {
    Box box;
    for (const QPointF& p : points)
        box.add(p.x(), p.y());
    return box.isValid() ? std::max(box.width(), box.height()) : 0.0;
}

/// The library leaves the direction of an edge unset that tells none: whatever stands there is a byte, not yet a bool.
bool counterclockwise(const DL_HatchEdgeData& edge) {
    unsigned char byte = 0;
    std::memcpy(&byte, &edge.ccw, 1);
    return (byte & 1) != 0;
}

bool finite(std::initializer_list<double> values) {
    for (double v : values) {
        if (!std::isfinite(v) || std::abs(v) > 1e15)
            return false;
    }
    return true;
}

} // namespace

void DxfReader::addPoint(const DL_PointData& data) {
    flush();
    DxfItem item;
    if (!take("POINT", item))
        return;
    item.shape = QPointF(data.x, data.y);
    put(std::move(item));
}

void DxfReader::addLine(const DL_LineData&) {
    flush();
    DxfItem item;
    if (!take("LINE", item))
        return;
    const std::array<double, 6>& v = m_line;
    if (std::abs(v[2] - v[5]) > 1e-9)
        convert("LINE", Note::Flattened);
    item.shape = DxfLine{{v[0], v[1]}, {v[3], v[4]}};
    put(std::move(item));
}

void DxfReader::addXLine(const DL_XLineData&) {
    flush();
    m_handled = true;
    skip("XLINE", Note::Infinite);
}

void DxfReader::addRay(const DL_RayData&) {
    flush();
    m_handled = true;
    skip("RAY", Note::Infinite);
}

void DxfReader::addArc(const DL_ArcData& data) {
    flush();
    DxfItem item;
    if (!take("ARC", item))
        return;
    if (!finite({data.cx, data.cy, data.radius, data.angle1, data.angle2}) || !(data.radius > 0.0)) {
        skip("ARC", Note::BadNumber);
        return;
    }
    const Plane own = plane(data.cz);
    if (own.tilted)
        convert("ARC", Note::Tilted);
    const EllipseAxes circle{{data.cx, data.cy}, {data.radius, 0.0}, {0.0, data.radius}};
    item.shape =
        DxfArc{circle.mapped(own.toDrawing), data.angle1 * kDegree, sweepOf(data.angle1, data.angle2) * kDegree};
    put(std::move(item));
}

void DxfReader::addCircle(const DL_CircleData& data) {
    flush();
    DxfItem item;
    if (!take("CIRCLE", item))
        return;
    if (!finite({data.cx, data.cy, data.radius}) || !(data.radius > 0.0)) {
        skip("CIRCLE", Note::BadNumber);
        return;
    }
    const Plane own = plane(data.cz);
    if (own.tilted)
        convert("CIRCLE", Note::Tilted);
    const EllipseAxes circle{{data.cx, data.cy}, {data.radius, 0.0}, {0.0, data.radius}};
    item.shape = DxfArc{circle.mapped(own.toDrawing), 0.0, 2.0 * M_PI};
    put(std::move(item));
}

/// The half axes lie in the drawing's own coordinates; the short one follows from the direction it is seen from.
void DxfReader::addEllipse(const DL_EllipseData& data) {
    flush();
    DxfItem item;
    if (!take("ELLIPSE", item))
        return;
    if (!finite({data.cx, data.cy, data.mx, data.my, data.mz, data.ratio, data.angle1, data.angle2}) ||
        !(data.ratio > 0.0) || !(std::hypot(data.mx, data.my, data.mz) > 0.0)) {
        skip("ELLIPSE", Note::BadNumber);
        return;
    }
    double n[3];
    extrusion->getDirection(n);
    const double length = std::hypot(n[0], n[1], n[2]);
    if (!(length > 1e-12))
        n[0] = n[1] = 0.0, n[2] = 1.0;
    else
        n[0] /= length, n[1] /= length, n[2] /= length;
    if (std::abs(n[0]) > 1e-9 || std::abs(n[1]) > 1e-9)
        convert("ELLIPSE", Note::Tilted);
    const QPointF shorter(n[1] * data.mz - n[2] * data.my, n[2] * data.mx - n[0] * data.mz);
    DxfArc arc;
    arc.axes = {{data.cx, data.cy}, {data.mx, data.my}, shorter * data.ratio};
    arc.start = std::fmod(data.angle1, 2.0 * M_PI);
    arc.sweep = std::fmod(data.angle2 - data.angle1, 2.0 * M_PI);
    if (arc.sweep <= 1e-9)
        arc.sweep += 2.0 * M_PI;
    item.shape = arc;
    put(std::move(item));
}

void DxfReader::addPolyline(const DL_PolylineData& data) {
    flush();
    const bool light = m_before == "LWPOLYLINE";
    const char* kind = light ? "LWPOLYLINE" : "POLYLINE";
    m_polyline = true;
    m_polylineFlags = data.flags;
    m_vertices.clear();
    if (light)
        m_vertices.swap(m_lightVertices);
    m_polylineItem = DxfItem();
    m_polylineTaken = take(kind, m_polylineItem);
    if (m_polylineTaken && !light && (data.flags & (Mesh | FaceMesh)) != 0) {
        skip(kind, Note::MeshOutline);
        m_polylineTaken = false;
    }
    m_polylinePlane = (data.flags & SpatialLine) != 0 && !light ? Plane() : plane(data.elevation);
    if (m_polylineTaken && m_polylinePlane.tilted)
        convert(kind, Note::Tilted);
}

void DxfReader::addVertex(const DL_VertexData& data) {
    m_handled = true;
    const bool frame = m_before == "VERTEX" && (m_flags & kFrameVertex) != 0;
    if (m_polyline && m_polylineTaken && !frame && m_budget.step())
        m_vertices.push_back({{data.x, data.y}, data.bulge});
}

void DxfReader::finishPolyline() {
    if (!m_polyline)
        return;
    m_polyline = false;
    if (!m_polylineTaken || m_vertices.empty())
        return;
    const bool closed = (m_polylineFlags & Closed) != 0 && m_vertices.size() > 1;
    PathShape path;
    path.points.reserve(int(m_vertices.size()));
    path.verbs.reserve(int(m_vertices.size()) + 1);
    path.moveTo(m_vertices.front().place);
    for (size_t i = 1; i < m_vertices.size(); ++i)
        appendBulge(path, m_vertices[i].place, m_vertices[i - 1].bulge);
    if (closed && std::abs(m_vertices.back().bulge) > 1e-12)
        appendBulge(path, m_vertices.front().place, m_vertices.back().bulge);
    if (closed)
        path.close();
    if (m_vertices.size() == 1)
        m_polylineItem.shape = m_polylinePlane.toDrawing.map(m_vertices.front().place);
    else
        m_polylineItem.shape = m_polylinePlane.toDrawing.isIdentity() ? path : mapPath(path, m_polylinePlane.toDrawing);
    put(std::move(m_polylineItem));
    m_vertices.clear();
}

void DxfReader::addSpline(const DL_SplineData& data) {
    flush();
    m_spline = true;
    m_splineItem = DxfItem();
    m_splineTaken = take("SPLINE", m_splineItem);
    m_splineFlags = data.flags;
    m_nurbs = Nurbs();
    m_nurbs.degree = int(std::min(data.degree, 1000u));
    m_fitPoints.clear();
}

void DxfReader::addControlPoint(const DL_ControlPointData& data) {
    if (!m_spline || !m_budget.step())
        return;
    m_nurbs.points.push_back({data.x, data.y});
    m_nurbs.weights.push_back(data.w);
}

void DxfReader::addFitPoint(const DL_FitPointData& data) {
    if (m_spline && m_budget.step())
        m_fitPoints.push_back({data.x, data.y});
}

void DxfReader::addKnot(const DL_KnotData& data) {
    if (m_spline && m_budget.step())
        m_nurbs.knots.push_back(data.k);
}

void DxfReader::finishSpline() {
    if (!m_spline)
        return;
    m_spline = false;
    if (!m_splineTaken)
        return;
    PathShape path;
    // weights of one are none
    const auto& w = m_nurbs.weights;
    if (std::all_of(w.begin(), w.end(), [](double v) { return v == 1.0; }))
        m_nurbs.weights.clear();
    const double extent = extentOf(m_nurbs.points);
    const double tolerance = std::max(1e-12, std::min(kSplineTolerance / m_scene.unit(), extent * kSplinePart));
    if (m_nurbs.points.empty() && m_fitPoints.size() > 1) {
        appendThrough(path, m_fitPoints, (m_splineFlags & kSplineClosed) != 0);
        convert("SPLINE", Note::FitPoints);
    } else if (!appendNurbs(path, m_nurbs, tolerance)) {
        skip("SPLINE", Note::BadNumber);
        return;
    } else if ((m_splineFlags & kSplineClosed) != 0 && path.points.size() > 2) {
        const QPointF gap = path.points.last() - path.points.first();
        if (std::hypot(gap.x(), gap.y()) <= 1e-9 * extent) {
            path.points.last() = path.points.first();
            path.close();
        }
    }
    m_splineItem.shape = std::move(path);
    put(std::move(m_splineItem));
}

void DxfReader::addInsert(const DL_InsertData& data) {
    flush();
    DxfItem item;
    if (!take("INSERT", item))
        return;
    if (!finite({data.ipx, data.ipy, data.sx, data.sy, data.angle, data.colSp, data.rowSp}) || data.sx == 0.0 ||
        data.sy == 0.0) {
        skip("INSERT", Note::BadNumber);
        return;
    }
    const Plane own = plane(data.ipz);
    if (own.tilted)
        convert("INSERT", Note::Tilted);
    QTransform turn;
    turn.rotate(data.angle);
    DxfInsert insert;
    insert.block = data.name;
    insert.columns = std::max(1, data.cols);
    insert.rows = std::max(1, data.rows);
    insert.column = {data.colSp, 0.0};
    insert.row = {0.0, data.rowSp};
    const QTransform& ocs = own.toDrawing;
    insert.turn = turn * QTransform(ocs.m11(), ocs.m12(), ocs.m21(), ocs.m22(), 0, 0);
    item.place = QTransform::fromScale(data.sx, data.sy) * turn * QTransform::fromTranslate(data.ipx, data.ipy) * ocs;
    item.shape = insert;
    put(std::move(item));
}

void DxfReader::quad(const char* kind, const double* x, const double* y, const double* z, bool ownPlane) {
    flush();
    DxfItem item;
    if (!take(kind, item))
        return;
    PathShape path;
    // the corners of an area are crossed, those of a face go round
    const int crossed[] = {0, 1, 3, 2};
    for (int i = 0; i < 4; ++i) {
        const int k = ownPlane ? crossed[i] : i;
        const QPointF p(x[k], y[k]);
        if (path.points.isEmpty())
            path.moveTo(p);
        else if (p != path.points.last() && p != path.points.first())
            path.lineTo(p);
    }
    path.close();
    const Plane own = ownPlane ? plane(z[0]) : Plane();
    if (own.tilted)
        convert(kind, Note::Tilted);
    convert(kind, Note::AreaAsOutline);
    item.shape = mapPath(path, own.toDrawing);
    put(std::move(item));
}

void DxfReader::addTrace(const DL_TraceData& data) {
    quad("TRACE", data.x, data.y, data.z, true);
}

void DxfReader::addSolid(const DL_SolidData& data) {
    quad("SOLID", data.x, data.y, data.z, true);
}

void DxfReader::add3dFace(const DL_3dFaceData& data) {
    quad("3DFACE", data.x, data.y, data.z, false);
}

void DxfReader::addImage(const DL_ImageData&) {
    flush();
    m_handled = true;
    skip("IMAGE", Note::Pictures);
}

void DxfReader::addHatch(const DL_HatchData&) {
    flush();
    m_hatch = true;
    m_hatchItem = DxfItem();
    m_hatchTaken = take("HATCH", m_hatchItem);
    m_hatchPlane = plane(0.0);
    m_hatchPath = PathShape();
    m_hatchBegin = true;
}

void DxfReader::addHatchLoop(const DL_HatchLoopData&) {
    if (m_hatchPath.verbs.size() > 0 && m_hatchPath.verbs.last() != PathVerb::Close)
        m_hatchPath.close();
    m_hatchBegin = true;
}

void DxfReader::addHatchEdge(const DL_HatchEdgeData& edge) {
    if (!m_hatch || !m_hatchTaken || !m_budget.points(16))
        return;
    PathShape& path = m_hatchPath;
    const auto reach = [&](const QPointF& p) {
        if (m_hatchBegin)
            path.moveTo(p);
        else if (path.points.last() != p)
            path.lineTo(p);
        m_hatchBegin = false;
    };
    switch (edge.type) {
    case 0:
        for (size_t i = 0; i <= edge.vertices.size() && !edge.vertices.empty() && m_budget.step(); ++i) {
            const auto& v = edge.vertices[i % edge.vertices.size()];
            const auto& before = edge.vertices[(i + edge.vertices.size() - 1) % edge.vertices.size()];
            if (v.size() < 2)
                break;
            if (i == 0)
                reach({v[0], v[1]});
            else
                appendBulge(path, {v[0], v[1]}, before.size() > 2 ? before[2] : 0.0);
        }
        break;
    case 1:
        reach({edge.x1, edge.y1});
        path.lineTo({edge.x2, edge.y2});
        break;
    case 2:
    case 3: {
        const bool circle = edge.type == 2;
        const QPointF u = circle ? QPointF(edge.radius, 0.0) : QPointF(edge.mx, edge.my);
        const double ratio = circle ? 1.0 : edge.ratio;
        // edges that run clockwise are told by the angles of their mirror image
        const double turn = counterclockwise(edge) ? 1.0 : -1.0;
        if (!finite({edge.cx, edge.cy, u.x(), u.y(), ratio, edge.angle1, edge.angle2}))
            break;
        const EllipseAxes axes{{edge.cx, edge.cy}, u, QPointF(-u.y(), u.x()) * ratio};
        const double sweep = sweepOf(edge.angle1 / kDegree, edge.angle2 / kDegree) * kDegree;
        reach(axes.at(turn * edge.angle1));
        appendEllipse(path, axes, turn * edge.angle1, turn * sweep);
        break;
    }
    case 4: {
        Nurbs spline;
        spline.degree = int(std::min(edge.degree, 1000u));
        spline.knots = edge.knots;
        spline.weights = edge.weights;
        for (const auto& p : edge.controlPoints)
            spline.points.push_back(p.size() > 1 ? QPointF(p[0], p[1]) : QPointF());
        PathShape part;
        if (!appendNurbs(part, spline, std::max(1e-12, extentOf(spline.points) * kSplinePart))) {
            skip("HATCH", Note::BadNumber);
            break;
        }
        reach(part.points.first());
        path.verbs += part.verbs.mid(1);
        path.points += part.points.mid(1);
        break;
    }
    default:
        break;
    }
}

void DxfReader::finishHatch() {
    if (!m_hatch)
        return;
    m_hatch = false;
    if (!m_hatchTaken || m_hatchPath.verbs.isEmpty())
        return;
    if (m_hatchPath.verbs.last() != PathVerb::Close)
        m_hatchPath.close();
    convert("HATCH", Note::HatchOutline);
    if (m_hatchPlane.tilted)
        convert("HATCH", Note::Tilted);
    m_hatchItem.shape = mapPath(m_hatchPath, m_hatchPlane.toDrawing);
    put(std::move(m_hatchItem));
}

} // namespace sim
