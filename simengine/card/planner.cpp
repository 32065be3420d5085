// SPDX-License-Identifier: GPL-2.0-or-later
#include "simengine/card/planner.h"

#include "simengine/card/convexhull.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <utility>

namespace sim {

namespace {

/// The position registers end here, mm; farther points are moved to the limit as the drive's converters do.
constexpr double kMaxCoordinate = 10000.0;
/// Shorter ways are no movement, mm.
constexpr double kNoDistance = 1e-9;

bool isValid(const Point& p) {
    return std::isfinite(p.x) && std::isfinite(p.y);
}

Point reachable(const Point& p) {
    return {std::clamp(p.x, -kMaxCoordinate, kMaxCoordinate), std::clamp(p.y, -kMaxCoordinate, kMaxCoordinate)};
}

int validPen(int pen) {
    return pen >= 0 && pen < kPenCount ? pen : 0;
}

bool hasValidPoint(const Stroke& stroke) {
    return std::any_of(stroke.points.begin(), stroke.points.end(), isValid);
}

double lengthOf(const Stroke& stroke) {
    double length = 0.0;
    const Point* last = nullptr;
    for (const Point& point : stroke.points) {
        if (!isValid(point))
            continue;
        if (last)
            length += distanceMm(reachable(*last), reachable(point));
        last = &point;
    }
    return length;
}

/// Takes every valid point of a job, as the head reaches it.
template<typename Take>
void forEachPlace(const Job& job, Take take) {
    for (const Stroke& stroke : job.strokes) {
        for (const Point& point : stroke.points) {
            if (isValid(point))
                take(reachable(point));
        }
    }
}

std::vector<Point> hullOf(const Job& job) {
    ConvexHull hull;
    forEachPlace(job, [&hull](const Point& p) { hull.add(p); });
    return hull.corners();
}

std::vector<Point> rectangleOf(const Job& job) {
    constexpr double kFar = std::numeric_limits<double>::infinity();
    Point low{kFar, kFar};
    Point high{-kFar, -kFar};
    forEachPlace(job, [&](const Point& p) {
        low = {std::min(low.x, p.x), std::min(low.y, p.y)};
        high = {std::max(high.x, p.x), std::max(high.y, p.y)};
    });
    return {low, {high.x, low.y}, high, {low.x, high.y}};
}

/// Null for a job without a valid point.
std::shared_ptr<const BorderWay> borderOf(const Job& job, const BorderSettings& border) {
    const auto first = std::find_if(job.strokes.begin(), job.strokes.end(), hasValidPoint);
    if (first == job.strokes.end())
        return nullptr;
    auto way = std::make_shared<BorderWay>();
    way->pen = validPen(first->pen);
    way->corners = border.outline == BorderOutline::Hull ? hullOf(job) : rectangleOf(job);
    way->corners.push_back(way->corners.front());
    return way;
}

bool needsLength(const PenParams& pen) {
    return pen.lineWaveEnable || pen.wobbleEnable;
}

} // namespace

void measureStrokes(Job& job, const PenTable& pens) {
    if (job.kind != MarkKind::Laser || std::none_of(pens.begin(), pens.end(), needsLength))
        return;
    for (Stroke& stroke : job.strokes) {
        if (needsLength(pens[static_cast<std::size_t>(validPen(stroke.pen))]))
            stroke.lengthMm = lengthOf(stroke);
    }
}

void measureBorder(Job& job, const BorderSettings& border) {
    if (job.kind == MarkKind::BorderPreview)
        job.border = borderOf(job, border);
}

void addPiece(JobTime& time, const Piece& piece) {
    const double ms = piece.us / 1000.0;
    switch (piece.kind) {
    case Piece::Kind::Jump:
        time.jumpMs += ms;
        time.jumpedMm += piece.mm;
        break;
    case Piece::Kind::Mark:
        time.markMs += ms;
        time.markedMm += piece.mm;
        break;
    case Piece::Kind::Delay:
        time.delayMs += ms;
        break;
    }
    time.totalMs += ms;
    time.vertices += piece.vertex ? 1 : 0;
    time.centreLines += piece.centreLine ? 1 : 0;
}

Planner::Planner(const Job& job, const PenTable& pens, const PlanSettings& settings, Point start)
    : m_job(job)
    , m_values(valuesOf(pens, job.kind, settings.border))
    , m_settings(settings)
    , m_at(start)
    , m_beam(start) {
    if (!std::isfinite(m_settings.penChangeDelayMs) || m_settings.penChangeDelayMs < 0.0)
        m_settings.penChangeDelayMs = 0.0;
    if (job.kind == MarkKind::BorderPreview)
        m_border = job.border ? job.border : borderOf(job, settings.border);
    if (m_border)
        m_pen = m_border->pen;
    restart();
}

std::shared_ptr<const Planner::PenValues> Planner::valuesOf(const PenTable& pens, MarkKind kind,
                                                            const BorderSettings& border) {
    auto values = std::make_shared<PenValues>();
    for (std::size_t i = 0; i < pens.size(); ++i) {
        values->pens[i] = sanitized(pens[i]);
        values->usPerMm[i] = markUs(values->pens[i], kind, 1.0);
        if (kind == MarkKind::BorderPreview && border.speed > 0.0)
            values->usPerMm[i] = 1e6 / std::clamp(border.speed, kMinSpeed, kMaxSpeed);
        if (values->pens[i].lineWaveEnable && kind == MarkKind::Laser)
            values->ramps[i] = lineRamps(values->pens[i]);
    }
    return values;
}

bool Planner::hasWork(const Job& job) {
    return std::any_of(job.strokes.begin(), job.strokes.end(), hasValidPoint);
}

void Planner::restart() {
    m_lastPen = -1;
    m_corner = 0;
    m_wobbleLeft = kMaxWobbleVertices;
    m_done = m_job.kind == MarkKind::BorderPreview && !m_border;
    if (!m_border)
        openGroup(0);
}

std::size_t Planner::fill(Piece* out, std::size_t capacity) {
    Piece* next = out;
    m_halted = false;
    while (!m_done && !m_halted && static_cast<std::size_t>(next - out) + kMaxStep <= capacity)
        step(next);
    return static_cast<std::size_t>(next - out);
}

std::size_t Planner::roundVertices() const {
    std::size_t count = 0;
    for (std::size_t i = m_groupFirst; i < m_groupEnd; ++i)
        count += m_job.strokes[i].points.size();
    return count;
}

void Planner::skipRounds() {
    m_repeatsLeft = 0;
    m_halted = false;
    openGroup(m_groupEnd);
}

void Planner::step(Piece*& out) {
    if (m_job.kind == MarkKind::BorderPreview)
        planBorderCorner(out);
    else if (m_stroke >= m_job.strokes.size())
        planEnd(out);
    else if (m_vertex >= m_job.strokes[m_stroke].points.size())
        nextStroke();
    else if (!m_arrived)
        planArrival(out);
    else if (m_cutting)
        planCut(out);
    else
        planVector(out);
}

void Planner::planArrival(Piece*& out) {
    const Stroke& stroke = m_job.strokes[m_stroke];
    m_pen = validPen(stroke.pen);
    if (isLaser() && m_lastPen >= 0 && m_lastPen != m_pen)
        planDelay(out, m_settings.penChangeDelayMs * 1000.0, false);
    m_lastPen = m_pen;
    const Point first = reachable(stroke.points[m_vertex]);
    m_arrived = true;
    findVertex(m_vertex + 1);
    m_shaped = m_centreLine = false;
    m_power = isLaser() ? static_cast<float>(pen().power) : 0.0F;
    if (m_vertex == stroke.points.size()) {
        planPoint(out, first);
        return;
    }
    if (isLaser())
        shapeStroke(first);
    planJump(out, first);
    if (m_shaped && m_shape.hasWobble())
        planOffset(out, m_shape.onPath(first));
    if (isLaser())
        planDelay(out, pen().openLaserDelay, false);
}

void Planner::shapeStroke(Point first) {
    const Stroke& stroke = m_job.strokes[m_stroke];
    const PenParams& pen = this->pen();
    const LineRamps& ramps = m_values->ramps[static_cast<std::size_t>(m_pen)];
    if (!ramps.inUse && !pen.wobbleEnable)
        return;
    const double length = stroke.lengthMm >= 0.0 ? stroke.lengthMm : lengthOf(stroke);
    const double mmPerMs = 1000.0 / usPerMm();
    const PowerProfile profile(ramps, pen.lineWaveByDistance ? 1.0 : mmPerMs, length);
    const double vertices = pen.wobbleEnable ? StrokeShape::extraVertices(pen, length) : 0.0;
    m_centreLine = vertices > m_wobbleLeft;
    if (!m_centreLine)
        m_wobbleLeft -= vertices;
    m_shape = StrokeShape(pen, profile, pen.wobbleEnable && !m_centreLine, first, reachable(stroke.points[m_vertex]));
    m_shaped = m_shape.isShaped();
    m_power = static_cast<float>(m_shape.power());
}

/// A mark point: the mirrors stand still, so there is no lag for the laser delays to make up for.
void Planner::planPoint(Piece*& out, Point at) {
    const double own = m_job.strokes[m_stroke].dwellUs;
    const bool hasOwn = own >= 0.0 && std::isfinite(own);
    const PowerCurve curve = isLaser() && pen().pointWaveEnable ? pointCurve(pen()) : PowerCurve();
    if (curve.isEmpty()) {
        planJump(out, at);
        addMark(out, at, hasOwn ? own : pen().pointTime, 0.0);
    } else {
        m_power = static_cast<float>(curve[0].power);
        planJump(out, at);
        planCurve(out, curve, hasOwn ? own : curve.length() * 1000.0);
    }
    if (isLaser())
        planDelay(out, pen().markDelay, false);
    nextStroke();
}

/// The points of the curve that fall into the dwell time, and its end.
void Planner::planCurve(Piece*& out, const PowerCurve& curve, double dwellUs) {
    double doneUs = 0.0;
    for (int i = 1; i < curve.size() && curve[i].x * 1000.0 <= dwellUs; ++i) {
        const double us = curve[i].x * 1000.0;
        m_power = static_cast<float>(curve[i].power);
        addMark(out, m_at, us - doneUs, 0.0);
        doneUs = us;
    }
    if (doneUs < dwellUs || dwellUs == 0.0) {
        m_power = static_cast<float>(curve.at(dwellUs / 1000.0));
        addMark(out, m_at, dwellUs - doneUs, 0.0);
    }
}

void Planner::planVector(Piece*& out) {
    const Point to = reachable(m_job.strokes[m_stroke].points[m_vertex]);
    if (!m_shaped) {
        planMark(out, to);
        endVector(out);
        return;
    }
    m_vectorEnd = to;
    m_vectorMm = distanceMm(m_at, to);
    m_vectorUs = m_vectorMm * usPerMm();
    m_vectorShare = 0.0;
    m_shape.beginVector(m_at, to, m_vectorMm);
    m_cutting = true;
    planCut(out);
}

void Planner::planCut(Piece*& out) {
    const StrokeShape::Cut cut = m_shape.next();
    const double share = cut.share - m_vectorShare;
    m_vectorShare = cut.share;
    m_power = static_cast<float>(cut.power);
    addMark(out, cut.at, m_vectorUs * share, m_vectorMm * share);
    if (!m_shape.vectorDone())
        return;
    m_cutting = false;
    m_at = m_vectorEnd;
    endVector(out);
}

void Planner::endVector(Piece*& out) {
    findVertex(m_vertex + 1);
    if (m_vertex < m_job.strokes[m_stroke].points.size()) {
        if (isLaser())
            planDelay(out, pen().turnDelay, true);
        return;
    }
    if (isLaser())
        planDelay(out, pen().closeLaserDelay, true);
    if (m_beam != m_at)
        planOffset(out, m_at);
    if (isLaser())
        planDelay(out, pen().markDelay, false);
    nextStroke();
}

void Planner::planBorderCorner(Piece*& out) {
    const std::vector<Point>& corners = m_border->corners;
    if (m_corner == 0)
        planJump(out, corners[0]);
    else
        planMark(out, corners[m_corner]);
    m_done = ++m_corner == corners.size();
}

void Planner::planEnd(Piece*& out) {
    if (isLaser() && m_lastPen >= 0)
        planDelay(out, pen().endDelay, false);
    m_done = true;
}

void Planner::planJump(Piece*& out, Point to) {
    const double length = distanceMm(m_at, to);
    const bool moves = length > kNoDistance;
    Piece& piece = *out++;
    piece = Piece{};
    piece.to = to;
    piece.us = moves ? jumpMoveUs(pen(), length) : 0.0;
    piece.mm = length;
    piece.power = m_power;
    piece.pen = static_cast<std::uint8_t>(m_pen);
    piece.kind = Piece::Kind::Jump;
    piece.vertex = true;
    piece.centreLine = m_centreLine;
    m_at = m_beam = to;
    if (moves)
        planDelay(out, jumpDelayUs(pen(), length), false);
}

/// The wobble's offset goes on and off without laser and within no time.
void Planner::planOffset(Piece*& out, Point to) {
    Piece& piece = *out++;
    piece = Piece{};
    piece.to = to;
    piece.power = m_power;
    piece.pen = static_cast<std::uint8_t>(m_pen);
    piece.kind = Piece::Kind::Jump;
    piece.vertex = true;
    m_beam = to;
}

void Planner::planMark(Piece*& out, Point to) {
    const double length = distanceMm(m_at, to);
    addMark(out, to, length * usPerMm(), length);
    m_at = to;
}

void Planner::addMark(Piece*& out, Point to, double us, double mm) {
    Piece& piece = *out++;
    piece = Piece{};
    piece.to = to;
    piece.us = us;
    piece.mm = mm;
    piece.power = m_power;
    piece.pen = static_cast<std::uint8_t>(m_pen);
    piece.kind = Piece::Kind::Mark;
    piece.laser = isLaser();
    piece.vertex = true;
    m_beam = to;
}

void Planner::planDelay(Piece*& out, double us, bool laser) {
    if (us <= 0.0)
        return;
    Piece& piece = *out++;
    piece = Piece{};
    piece.to = m_beam;
    piece.us = us;
    piece.power = m_power;
    piece.pen = static_cast<std::uint8_t>(m_pen);
    piece.laser = laser;
}

void Planner::nextStroke() {
    ++m_stroke;
    if (m_stroke < m_groupEnd) {
        m_arrived = false;
        findVertex(0);
    } else if (m_repeatsLeft > 0) {
        --m_repeatsLeft;
        m_stroke = m_groupFirst;
        m_arrived = false;
        m_halted = m_haltAtRounds;
        findVertex(0);
    } else {
        openGroup(m_groupEnd);
    }
}

void Planner::openGroup(std::size_t first) {
    const std::vector<Stroke>& strokes = m_job.strokes;
    m_groupFirst = m_stroke = m_groupEnd = first;
    m_repeatsLeft = 0;
    m_arrived = false;
    if (first >= strokes.size())
        return;
    const Stroke& head = strokes[first];
    bool hasWork = false;
    do {
        hasWork = hasWork || hasValidPoint(strokes[m_groupEnd]);
        ++m_groupEnd;
    } while (head.object >= 0 && m_groupEnd < strokes.size() && strokes[m_groupEnd].object == head.object &&
             strokes[m_groupEnd].pen == head.pen);
    if (isLaser() && hasWork)
        m_repeatsLeft = m_values->pens[static_cast<std::size_t>(validPen(head.pen))].markCount - 1;
    findVertex(0);
}

void Planner::findVertex(std::size_t from) {
    const std::vector<Point>& points = m_job.strokes[m_stroke].points;
    while (from < points.size() && !isValid(points[from]))
        ++from;
    m_vertex = from;
}

} // namespace sim
