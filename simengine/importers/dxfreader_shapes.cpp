// SPDX-License-Identifier: GPL-2.0-or-later
#include "simengine/importers/dxfnumbers.h"
#include "simengine/importers/dxfreader.h"

#include <cmath>
#include <utility>

namespace sim {

namespace {

constexpr double kDegree = M_PI / 180.0;

/// Bits of a polyline's flags.
enum PolylineFlag { Closed = 1, SpatialLine = 8, Mesh = 16, FaceMesh = 64 };
/// Bit of a vertex that only holds a frame of the spline.
constexpr int kFrameVertex = 16;
/// Bits of a spline's flags.
constexpr int kSplineClosed = 1;

/// How far curves may be off a spline, mm; kSplinePart counts too, for blocks that are inserted larger.
constexpr double kSplineTolerance = 2.0e-4;

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
    if (!usable({data.cx, data.cy, data.radius, data.angle1, data.angle2}) || !(data.radius > 0.0)) {
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
    if (!usable({data.cx, data.cy, data.radius}) || !(data.radius > 0.0)) {
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
    if (!usable({data.cx, data.cy, data.mx, data.my, data.mz, data.ratio, data.angle1, data.angle2}) ||
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
    if (light) {
        m_vertices.swap(m_lightVertices);
        m_verticesHeld = std::exchange(m_held, 0);
    }
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
    if (!m_polyline || !m_polylineTaken || frame || !m_budget.memory(kVertexBytes))
        return;
    m_verticesHeld += kVertexBytes;
    m_vertices.push_back({{data.x, data.y}, data.bulge});
    m_polylineItem.high = m_polylineItem.high || m_high;
    m_polylineItem.wide = m_polylineItem.wide || m_wide;
}

void DxfReader::finishPolyline() {
    if (!m_polyline)
        return;
    m_polyline = false;
    std::vector<Vertex> vertices;
    vertices.swap(m_vertices);
    m_budget.memory(-m_verticesHeld);
    m_verticesHeld = 0;
    if (!m_polylineTaken)
        return;
    if (vertices.empty()) {
        skip(m_polylineItem.kind, Note::Nothing);
        return;
    }
    const QTransform& place = m_polylinePlane.toDrawing;
    if (vertices.size() == 1) {
        m_polylineItem.shape = place.map(vertices.front().place);
    } else {
        PathShape path = polylinePath(vertices);
        vertices = {};
        m_polylineItem.shape = place.isIdentity() ? std::move(path) : mapPath(path, place);
    }
    if (m_budget.ok())
        put(std::move(m_polylineItem));
}

PathShape DxfReader::polylinePath(const std::vector<Vertex>& vertices) {
    const bool closed = (m_polylineFlags & Closed) != 0;
    PathShape path;
    path.points.reserve(int(vertices.size()));
    path.verbs.reserve(int(vertices.size()) + 1);
    path.moveTo(vertices.front().place);
    for (size_t i = 1; i < vertices.size() && m_budget.hasRoom(path.points.size()); ++i)
        appendBulge(path, vertices[i].place, vertices[i - 1].bulge);
    if (closed && std::abs(vertices.back().bulge) > 1e-12)
        appendBulge(path, vertices.front().place, vertices.back().bulge);
    if (closed)
        path.close();
    return path;
}

void DxfReader::addSpline(const DL_SplineData& data) {
    flush();
    DxfItem item;
    Spline spline;
    std::swap(spline, m_spline);
    m_budget.memory(-std::exchange(m_held, 0));
    if (!take("SPLINE", item))
        return;
    const bool closed = (data.flags & kSplineClosed) != 0;
    Nurbs& nurbs = spline.nurbs;
    nurbs.degree = int(std::min(data.degree, 1000u));
    // weights of one are none, and what has no weight has that of one
    std::vector<double>& w = nurbs.weights;
    w.resize(nurbs.points.size(), 1.0);
    if (std::all_of(w.begin(), w.end(), [](double v) { return v == 1.0; }))
        w.clear();
    const double extent = extentOf(nurbs.points);
    const double tolerance = std::max(1e-12, std::min(kSplineTolerance / m_scene.unit(), extent * kSplinePart));
    PathShape path;
    if (nurbs.points.empty() && spline.fitPoints.size() > 1) {
        appendThrough(path, spline.fitPoints, closed);
        convert("SPLINE", Note::FitPoints);
    } else if (!appendNurbs(path, nurbs, tolerance, &m_budget)) {
        skip("SPLINE", Note::BadNumber);
        return;
    } else if (closed && path.points.size() > 2) {
        closeMeeting(path, 1e-9 * extent);
    }
    item.shape = std::move(path);
    put(std::move(item));
}

void DxfReader::addInsert(const DL_InsertData& data) {
    flush();
    DxfItem item;
    if (!take("INSERT", item))
        return;
    if (!usable({data.ipx, data.ipy, data.sx, data.sy, data.angle, data.colSp, data.rowSp}) || data.sx == 0.0 ||
        data.sy == 0.0) {
        skip("INSERT", Note::BadNumber);
        return;
    }
    const Plane own = plane(data.ipz);
    if (own.tilted)
        convert("INSERT", Note::Tilted);
    QTransform turn;
    turn.rotate(data.angle);
    auto insert = std::make_unique<DxfInsert>();
    insert->block = data.name;
    insert->columns = std::max(1, data.cols);
    insert->rows = std::max(1, data.rows);
    insert->column = {data.colSp, 0.0};
    insert->row = {0.0, data.rowSp};
    const QTransform& ocs = own.toDrawing;
    insert->turn = turn * QTransform(ocs.m11(), ocs.m12(), ocs.m21(), ocs.m22(), 0, 0);
    insert->place =
        QTransform::fromScale(data.sx, data.sy) * turn * QTransform::fromTranslate(data.ipx, data.ipy) * ocs;
    item.shape = std::move(insert);
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
    DxfItem item;
    if (!take("HATCH", item))
        return;
    if (m_hatchFaults > 0)
        m_result.skip(QStringLiteral("HATCH"), noteText(Note::BadNumber), m_hatchFaults);
    if (m_hatch.verbs.isEmpty()) {
        // one of which all edges are wrong has been told
        if (m_hatchFaults == 0)
            skip("HATCH", Note::Nothing);
        return;
    }
    convert("HATCH", Note::HatchOutline);
    const Plane own = plane(0.0);
    if (own.tilted)
        convert("HATCH", Note::Tilted);
    item.shape = mapPath(m_hatch, own.toDrawing);
    m_hatch = PathShape();
    put(std::move(item));
}

} // namespace sim
