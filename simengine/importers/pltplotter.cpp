// SPDX-License-Identifier: GPL-2.0-or-later
#include "simengine/importers/pltplotter.h"

#include "engine/marktypes.h"
#include "simengine/document/limits.h"
#include "simengine/importers/curves.h"
#include "simengine/importers/lineclip.h"

#include <cmath>

namespace sim {

namespace {

/// Pen numbers that a file may name; all beyond the last pen are that one.
constexpr double kMostPen = 65535.0;

} // namespace

const PltPlotter::Command PltPlotter::kCommands[] = {
    {"AA", &PltPlotter::arcAbsolute},
    {"AR", &PltPlotter::arcRelative},
    {"AT", &PltPlotter::arcThroughAbsolute},
    {"BR", &PltPlotter::bezierRelative},
    {"BZ", &PltPlotter::bezierAbsolute},
    {"CI", &PltPlotter::circle},
    {"CP", &PltPlotter::characterPlot},
    {"DF", &PltPlotter::initialize},
    {"DI", &PltPlotter::labelDirection},
    {"DR", &PltPlotter::labelRelativeDirection},
    {"DT", &PltPlotter::labelTerminator},
    {"EA", &PltPlotter::edgeRectangleAbsolute},
    {"EP", &PltPlotter::edgePolygon},
    {"ER", &PltPlotter::edgeRectangleRelative},
    {"EW", &PltPlotter::edgeWedge},
    {"FP", &PltPlotter::fillPolygon},
    {"IN", &PltPlotter::initialize},
    {"IP", &PltPlotter::inputFrame},
    {"IR", &PltPlotter::inputRelativeFrame},
    {"IW", &PltPlotter::window},
    {"LB", &PltPlotter::label},
    {"LO", &PltPlotter::labelOrigin},
    {"LT", &PltPlotter::lineType},
    {"PA", &PltPlotter::plotAbsolute},
    {"PD", &PltPlotter::penDown},
    {"PE", &PltPlotter::encodedPolyline},
    {"PM", &PltPlotter::polygonMode},
    {"PR", &PltPlotter::plotRelative},
    {"PU", &PltPlotter::penUp},
    {"RA", &PltPlotter::fillRectangleAbsolute},
    {"RO", &PltPlotter::rotate},
    {"RR", &PltPlotter::fillRectangleRelative},
    {"RT", &PltPlotter::arcThroughRelative},
    {"SC", &PltPlotter::scale},
    {"SI", &PltPlotter::labelSize},
    {"SL", &PltPlotter::labelSlant},
    {"SP", &PltPlotter::selectPen},
    {"SR", &PltPlotter::labelRelativeSize},
    {"WG", &PltPlotter::fillWedge},
    // marks of an axis and symbols at each place
    {"XT", &PltPlotter::tick},
    {"YT", &PltPlotter::tick},
    // of the machine and the sheet, not of the drawing: speeds, forces, pen widths, fill patterns, page handling
    {"AC", &PltPlotter::passOver},
    {"AS", &PltPlotter::passOver},
    {"BP", &PltPlotter::passOver},
    {"CO", &PltPlotter::passOver},
    {"CR", &PltPlotter::passOver},
    {"CT", &PltPlotter::passOver},
    {"EC", &PltPlotter::passOver},
    {"FR", &PltPlotter::passOver},
    {"FS", &PltPlotter::passOver},
    {"FT", &PltPlotter::passOver},
    {"LA", &PltPlotter::passOver},
    {"NP", &PltPlotter::passOver},
    {"NR", &PltPlotter::passOver},
    {"OE", &PltPlotter::passOver},
    {"OH", &PltPlotter::passOver},
    {"OI", &PltPlotter::passOver},
    {"PC", &PltPlotter::passOver},
    {"PG", &PltPlotter::passOver},
    {"PS", &PltPlotter::passOver},
    {"PT", &PltPlotter::passOver},
    {"PW", &PltPlotter::passOver},
    {"QL", &PltPlotter::passOver},
    {"RP", &PltPlotter::passOver},
    {"SV", &PltPlotter::passOver},
    {"TL", &PltPlotter::passOver},
    {"TR", &PltPlotter::passOver},
    {"UL", &PltPlotter::passOver},
    {"VS", &PltPlotter::passOver},
    {"WU", &PltPlotter::passOver},
};

PltPlotter::PltPlotter(const QByteArray& bytes, ImportResult& result, ImportBudget& budget)
    : m_in(bytes, budget)
    , m_result(result)
    , m_budget(budget)
    , builder(result, budget) {}

void PltPlotter::run() {
    for (;;) {
        m_name = m_in.command();
        if (m_name.isEmpty() || !m_budget.step())
            break;
        const auto known = std::find_if(std::begin(kCommands), std::end(kCommands),
                                        [this](const Command& command) { return m_name == command.name; });
        if (known == std::end(kCommands)) {
            tell(Note::UnknownCommand);
            m_in.numbers();
            continue;
        }
        ++m_commands;
        (this->*known->handler)();
    }
    finishStroke();
    if (m_in.isCutOff())
        m_result.skip(QStringLiteral("LB/PE"), noteText(Note::CutOff));
    if (m_in.strayBytes() > 0)
        m_result.skip(QStringLiteral("byte"), noteText(Note::UnknownCommand), m_in.strayBytes());
    // a file that ends within a polygon's definition draws none of it
    if (m_inPolygon && !m_polygon.verbs.isEmpty())
        m_result.skip(QStringLiteral("PM"), noteText(Note::CutOff));
}

void PltPlotter::tell(Note note, bool dropped) {
    const QString kind = QString::fromLatin1(m_name);
    if (dropped)
        m_result.skip(kind, noteText(note));
    else
        m_result.convert(kind, noteText(note));
}

void PltPlotter::initialize() {
    m_inPolygon = false;
    finishStroke();
    m_frame.reset();
    m_label = PltLabel();
    m_down = m_relative = m_startContour = false;
    m_polygon = PathShape();
    m_drawnEdges.clear();
    m_terminator = '\x03';
    if (m_name == "IN")
        m_at = QPointF();
    m_in.numbers();
}

int PltPlotter::pen() {
    if (!m_penChosen && m_pen == 0) {
        m_result.convert(QStringLiteral("SP"), noteText(Note::NoPenCommand));
        m_penChosen = true;
        m_pen = 1;
    }
    return std::max(0, m_pen - 1);
}

void PltPlotter::selectPen() {
    const QVector<double> values = m_in.numbers();
    choosePen(values.isEmpty() ? 0.0 : values.first());
}

void PltPlotter::choosePen(double number) {
    finishStroke();
    if (!(number >= 0.0 && number <= kMostPen)) {
        tell(Note::BadArguments);
        return;
    }
    if (int(number) > kLayerCount)
        tell(Note::SharedPen, false);
    m_pen = std::min(int(number), kLayerCount);
    m_penChosen = true;
}

bool PltPlotter::inRange(const QPointF& p) {
    if (std::abs(p.x()) <= 1e9 && std::abs(p.y()) <= 1e9)
        return true;
    tell(Note::BadNumber);
    return false;
}

/// The outline at hand, begun where the pen stands.
PathShape& PltPlotter::current() {
    PathShape& path = m_inPolygon ? m_polygon : m_path;
    if (path.verbs.isEmpty() || path.verbs.last() == PathVerb::Close)
        path.moveTo(m_frame.toSheet().map(m_at));
    m_dot = false;
    return path;
}

/// Moves the pen, drawing when it is down. Within a polygon every place is a corner.
void PltPlotter::travel(const QPointF& place) {
    if (!inRange(place) || !m_budget.points(1))
        return;
    if (m_startContour)
        m_startContour = false;
    else if (m_down || m_inPolygon)
        current().lineTo(m_frame.toSheet().map(place));
    noteEdges(m_down);
    m_at = place;
}

/// What came to the polygon since the last call is drawn by its edges or not.
void PltPlotter::noteEdges(bool drawn) {
    if (m_inPolygon)
        m_drawnEdges.resize(size_t(m_polygon.verbs.size()), drawn);
}

void PltPlotter::closeContour(bool drawn) {
    if (!m_polygon.verbs.isEmpty() && m_polygon.verbs.last() != PathVerb::Close)
        m_polygon.close();
    noteEdges(drawn);
}

/// The polygon without the edges that the lifted pen went along.
PathShape PltPlotter::drawnEdges() const {
    if (std::find(m_drawnEdges.begin(), m_drawnEdges.end(), false) == m_drawnEdges.end())
        return m_polygon;
    PathShape edges;
    QPointF first;
    QPointF at;
    bool open = false;
    bool whole = false; // all of the contour so far is drawn
    const QPointF* next = m_polygon.points.constData();
    for (int i = 0; i < m_polygon.verbs.size(); ++i) {
        const PathVerb verb = m_polygon.verbs[i];
        const bool closes = verb == PathVerb::Close;
        const bool drawn = verb != PathVerb::Move && m_drawnEdges[size_t(i)];
        if (drawn && !open && !(closes && at == first))
            edges.moveTo(at);
        if (drawn && verb == PathVerb::Cubic)
            edges.cubicTo(next[0], next[1], next[2]);
        else if (drawn && closes && whole)
            edges.close();
        else if (drawn && !(closes && at == first))
            edges.lineTo(closes ? first : *next);
        open = drawn && !closes;
        whole = verb == PathVerb::Move || (whole && drawn);
        next += closes ? 0 : verb == PathVerb::Cubic ? 3 : 1;
        at = closes ? first : next[-1];
        first = verb == PathVerb::Move ? at : first;
    }
    return edges;
}

/// Turns the pen about a place of the file's coordinates.
void PltPlotter::curveTo(const QPointF& center, double sweep) {
    if (!inRange(center) || !std::isfinite(sweep) || !m_budget.points(64))
        return;
    sweep = std::max(-2.0 * M_PI, std::min(2.0 * M_PI, sweep));
    const QPointF radius = m_at - center;
    const EllipseAxes circle{center, radius, QPointF(-radius.y(), radius.x())};
    if (m_down || m_inPolygon)
        appendEllipse(current(), circle.mapped(m_frame.toSheet()), 0.0, sweep);
    noteEdges(m_down);
    m_at = circle.at(sweep);
}

void PltPlotter::finishStroke() {
    if (m_inPolygon)
        return;
    PathShape path;
    std::swap(path, m_path);
    if (path.verbs.isEmpty() && m_dot) {
        path.moveTo(m_frame.toSheet().map(m_at));
        path.lineTo(path.points.first());
    }
    m_dot = false;
    if (!path.verbs.isEmpty())
        deliver(std::move(path), QStringLiteral("PD"));
}

/// Closes what ends where it began, applies the window and hands the outline on; what no pen draws is left out.
void PltPlotter::deliver(PathShape path, const QString& kind) {
    if (m_penChosen && m_pen == 0)
        return;
    if (path.points.size() > 3 && path.verbs.last() != PathVerb::Close && path.contourCount() == 1)
        closeMeeting(path, 1e-9);
    if (path.points.size() == 2 && path.points[0] == path.points[1]) {
        // a pen that is lowered and lifted makes a dot
        builder.add(PointShape{path.points[0]}, QTransform(), pen(), kind);
        return;
    }
    if (const auto& window = m_frame.window(); window && !window->contains(QPolygonF(path.points).boundingRect())) {
        const Box box = shapeBounds(Shape(path), QTransform());
        if (!Box{-kMaxCoordinate, -kMaxCoordinate, kMaxCoordinate, kMaxCoordinate}.contains(box)) {
            m_result.skip(kind, noteText(Note::OutOfRange));
            return;
        }
        path = clippedToRect(path, *window, m_budget);
        m_result.convert(QStringLiteral("IW"), noteText(path.verbs.isEmpty() ? Note::ClippedAway : Note::Clipped));
    }
    builder.addPath(path, pen(), kind);
}

void PltPlotter::useFrame(bool good) {
    if (!good)
        tell(Note::BadArguments);
    if (m_frame.isFrameAssumed() && m_name == "SC")
        m_result.convert(QStringLiteral("SC"), noteText(Note::NoFrame));
}

void PltPlotter::inputFrame() {
    finishStroke();
    useFrame(m_frame.setFrame(m_in.numbers()));
}

/// P1 and P2 as percentages of the sheet; the sheet of this plotter is its frame.
void PltPlotter::inputRelativeFrame() {
    finishStroke();
    QVector<double> v = m_in.numbers();
    constexpr double kWidth = 10000.0;
    constexpr double kHeight = 7200.0;
    for (int i = 0; i < v.size(); ++i)
        v[i] = i % 2 == 0 ? 250.0 + v[i] / 100.0 * kWidth : 596.0 + v[i] / 100.0 * kHeight;
    useFrame(m_frame.setFrame(v));
}

void PltPlotter::scale() {
    finishStroke();
    // the pen stays where it is on the sheet
    const QPointF sheet = m_frame.toSheet().map(m_at);
    useFrame(m_frame.setScale(m_in.numbers()));
    m_at = m_frame.toSheet().inverted().map(sheet);
}

void PltPlotter::window() {
    finishStroke();
    useFrame(m_frame.setWindow(m_in.numbers()));
}

void PltPlotter::rotate() {
    finishStroke();
    const QPointF sheet = m_frame.toSheet().map(m_at);
    useFrame(m_frame.setRotation(m_in.numbers()));
    m_at = m_frame.toSheet().inverted().map(sheet);
}

void PltPlotter::tick() {
    tell(Note::Tick);
    m_in.numbers();
}

void PltPlotter::passOver() {
    m_in.numbers();
}

void PltPlotter::lineType() {
    const QVector<double> v = m_in.numbers();
    if (!v.isEmpty() && v.first() != 0.0)
        tell(Note::Dashed, false);
}

} // namespace sim
