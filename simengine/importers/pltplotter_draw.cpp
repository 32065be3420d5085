// SPDX-License-Identifier: GPL-2.0-or-later
#include "simengine/importers/curves.h"
#include "simengine/importers/pltplotter.h"

#include <cmath>

namespace sim {

namespace {

constexpr double kDegree = M_PI / 180.0;

/// Points of a circle as curves.
constexpr qint64 kCirclePoints = 49;

QPointF pair(const QVector<double>& v, int i) {
    return {v[i], v[i + 1]};
}

} // namespace

void PltPlotter::penUp() {
    finishStroke();
    m_down = false;
    moves();
}

void PltPlotter::penDown() {
    m_down = true;
    m_dot = m_dot || (m_path.verbs.isEmpty() && !m_inPolygon);
    moves();
}

void PltPlotter::plotAbsolute() {
    m_relative = false;
    moves();
}

void PltPlotter::plotRelative() {
    m_relative = true;
    moves();
}

void PltPlotter::moves() {
    while (const auto x = m_in.number()) {
        const auto y = m_in.number();
        if (!y) {
            tell(Note::BadArguments);
            return;
        }
        const QPointF given(*x, *y);
        const QPointF place = m_relative ? m_at + given : given;
        travel(place);
    }
}

void PltPlotter::arcAbsolute() {
    arc(false);
}

void PltPlotter::arcRelative() {
    arc(true);
}

void PltPlotter::arc(bool relative) {
    const QVector<double> v = m_in.numbers();
    if (v.size() < 3) {
        tell(Note::BadArguments);
        return;
    }
    curveTo(relative ? m_at + pair(v, 0) : pair(v, 0), v[2] * kDegree);
}

void PltPlotter::arcThroughAbsolute() {
    threePointArc(false);
}

void PltPlotter::arcThroughRelative() {
    threePointArc(true);
}

void PltPlotter::threePointArc(bool relative) {
    const QVector<double> v = m_in.numbers();
    if (v.size() < 4) {
        tell(Note::BadArguments);
        return;
    }
    const QPointF from = relative ? m_at : QPointF();
    const QPointF through = from + pair(v, 0);
    const QPointF end = from + pair(v, 2);
    QPointF center;
    double sweep = 0.0;
    if (end == m_at && through != m_at)
        curveTo((m_at + through) / 2.0, 2.0 * M_PI);
    else if (arcThrough(m_at, through, end, center, sweep))
        curveTo(center, sweep);
    else
        travel(end);
}

void PltPlotter::circle() {
    finishStroke();
    const QVector<double> v = m_in.numbers();
    if (v.isEmpty() || !inRange({v[0], 0.0})) {
        tell(Note::BadArguments);
        return;
    }
    const double radius = std::abs(v[0]);
    const EllipseAxes round{m_at, {radius, 0.0}, {0.0, radius}};
    const EllipseAxes mapped = round.mapped(m_frame.toSheet());
    if (m_inPolygon) {
        if (!m_budget.points(kCirclePoints))
            return;
        closeContour(m_down);
        m_polygon.moveTo(mapped.at(0.0));
        appendEllipse(m_polygon, mapped, 0.0, 2.0 * M_PI);
        // a circle is drawn whether the pen is up or down
        closeContour(true);
    } else if (!(m_penChosen && m_pen == 0) && !m_frame.window()) {
        builder.addEllipse(mapped, 0.0, 2.0 * M_PI, pen(), QString::fromLatin1(m_name));
    } else {
        PathShape path;
        path.moveTo(mapped.at(0.0));
        appendEllipse(path, mapped, 0.0, 2.0 * M_PI);
        deliver(path, QString::fromLatin1(m_name));
    }
}

void PltPlotter::edgeRectangleAbsolute() {
    rectangle(false, Outline);
}

void PltPlotter::edgeRectangleRelative() {
    rectangle(true, Outline);
}

void PltPlotter::fillRectangleAbsolute() {
    rectangle(false, Filled);
}

void PltPlotter::fillRectangleRelative() {
    rectangle(true, Filled);
}

void PltPlotter::rectangle(bool relative, Filling filling) {
    finishStroke();
    const QVector<double> v = m_in.numbers();
    if (v.size() < 2) {
        tell(Note::BadArguments);
        return;
    }
    const QPointF corner = relative ? m_at + pair(v, 0) : pair(v, 0);
    if (!inRange(corner))
        return;
    const QTransform& t = m_frame.toSheet();
    PathShape path;
    path.moveTo(t.map(m_at));
    path.lineTo(t.map(QPointF(corner.x(), m_at.y())));
    path.lineTo(t.map(corner));
    path.lineTo(t.map(QPointF(m_at.x(), corner.y())));
    path.close();
    if (filling == Filled)
        tell(Note::AreaAsOutline, false);
    deliver(path, QString::fromLatin1(m_name));
}

void PltPlotter::edgeWedge() {
    wedge(Outline);
}

void PltPlotter::fillWedge() {
    wedge(Filled);
}

/// Radius, start angle and sweep in degrees about the pen's place.
void PltPlotter::wedge(Filling filling) {
    finishStroke();
    const QVector<double> v = m_in.numbers();
    if (v.size() < 3 || !inRange({v[0], 0.0}) || !inRange({v[1], v[2]})) {
        tell(Note::BadArguments);
        return;
    }
    const EllipseAxes round{m_at, {v[0], 0.0}, {0.0, v[0]}};
    const EllipseAxes mapped = round.mapped(m_frame.toSheet());
    const double sweep = std::max(-360.0, std::min(360.0, v[2])) * kDegree;
    const double start = std::fmod(v[1], 360.0) * kDegree;
    PathShape path;
    path.moveTo(mapped.center);
    path.lineTo(mapped.at(start));
    appendEllipse(path, mapped, start, sweep);
    path.close();
    if (filling == Filled)
        tell(Note::AreaAsOutline, false);
    deliver(path, QString::fromLatin1(m_name));
}

void PltPlotter::bezierAbsolute() {
    bezier(false);
}

void PltPlotter::bezierRelative() {
    bezier(true);
}

void PltPlotter::bezier(bool relative) {
    const QTransform& t = m_frame.toSheet();
    QVector<double> v;
    bool any = false;
    while (const auto number = m_in.number()) {
        v.append(*number);
        if (v.size() < 6)
            continue;
        const QPointF from = relative ? m_at : QPointF();
        const QPointF end = from + pair(v, 4);
        if (!inRange(from + pair(v, 0)) || !inRange(from + pair(v, 2)) || !inRange(end) || !m_budget.points(3))
            return;
        if (m_down || m_inPolygon)
            current().cubicTo(t.map(from + pair(v, 0)), t.map(from + pair(v, 2)), t.map(end));
        noteEdges(m_down);
        m_at = end;
        any = true;
        v.clear();
    }
    if (!any || !v.isEmpty())
        tell(Note::BadArguments);
}

void PltPlotter::polygonMode() {
    const QVector<double> v = m_in.numbers();
    const double mode = v.isEmpty() ? 0.0 : v.first();
    if (mode == 0.0) {
        finishStroke();
        m_polygon = PathShape();
        m_drawnEdges.clear();
        m_inPolygon = true;
        m_startContour = false;
    } else if ((mode == 1.0 || mode == 2.0) && m_inPolygon) {
        closeContour(m_down);
        m_inPolygon = mode == 1.0;
        m_startContour = m_inPolygon;
    } else {
        tell(Note::BadArguments);
    }
}

void PltPlotter::edgePolygon() {
    polygon(Outline);
}

void PltPlotter::fillPolygon() {
    polygon(Filled);
}

void PltPlotter::polygon(Filling filling) {
    m_in.numbers();
    if (m_inPolygon) {
        tell(Note::BadArguments);
        return;
    }
    if (filling == Filled)
        tell(Note::AreaAsOutline, false);
    if (!m_budget.points(m_polygon.points.size()))
        return;
    // the edges are those of the lowered pen, an area has them all
    const PathShape path = filling == Filled ? m_polygon : drawnEdges();
    if (!path.verbs.isEmpty())
        deliver(path, QString::fromLatin1(m_name));
}

} // namespace sim
