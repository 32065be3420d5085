// SPDX-License-Identifier: GPL-2.0-or-later
#include "simengine/card/planner.h"

#include <algorithm>
#include <cmath>
#include <limits>

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

} // namespace

void addPiece(JobTime& time, const Piece& piece, double lengthMm) {
    const double ms = piece.us / 1000.0;
    switch (piece.kind) {
    case Piece::Kind::Jump:
        time.jumpMs += ms;
        time.jumpedMm += lengthMm;
        break;
    case Piece::Kind::Mark:
        time.markMs += ms;
        time.markedMm += lengthMm;
        break;
    case Piece::Kind::Delay:
        time.delayMs += ms;
        break;
    }
    time.totalMs += ms;
    time.vertices += piece.vertex ? 1 : 0;
}

Planner::Planner(const Job& job, const PenTable& pens, const PlanSettings& settings, Point start)
    : m_job(job)
    , m_settings(settings)
    , m_at(start) {
    for (std::size_t i = 0; i < m_pens.size(); ++i) {
        m_pens[i] = sanitized(pens[i]);
        m_usPerMm[i] = markUs(m_pens[i], job.kind, 1.0);
    }
    if (!std::isfinite(m_settings.penChangeDelayMs) || m_settings.penChangeDelayMs < 0.0)
        m_settings.penChangeDelayMs = 0.0;
    if (job.kind == MarkKind::BorderPreview)
        measureBorder();
    restart();
}

bool Planner::hasWork(const Job& job) {
    return std::any_of(job.strokes.begin(), job.strokes.end(), hasValidPoint);
}

void Planner::restart() {
    m_lastPen = -1;
    m_corner = 0;
    m_done = m_job.kind == MarkKind::BorderPreview && !hasWork(m_job);
    openGroup(0);
}

std::size_t Planner::fill(Piece* out, std::size_t capacity) {
    Piece* next = out;
    while (!m_done && static_cast<std::size_t>(next - out) + kMaxStep <= capacity)
        step(next);
    return static_cast<std::size_t>(next - out);
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
    planJump(out, first);
    m_arrived = true;
    findVertex(m_vertex + 1);
    if (m_vertex < stroke.points.size()) {
        if (isLaser())
            planDelay(out, pen().openLaserDelay, false);
        return;
    }
    // A mark point: the mirrors stand still, so there is no lag for the laser delays to make up for.
    planMark(out, first);
    (out - 1)->us = stroke.dwellUs >= 0.0 && std::isfinite(stroke.dwellUs) ? stroke.dwellUs : pen().pointTime;
    if (isLaser())
        planDelay(out, pen().markDelay, false);
    nextStroke();
}

void Planner::planVector(Piece*& out) {
    const Stroke& stroke = m_job.strokes[m_stroke];
    planMark(out, reachable(stroke.points[m_vertex]));
    findVertex(m_vertex + 1);
    if (m_vertex < stroke.points.size()) {
        if (isLaser())
            planDelay(out, pen().turnDelay, true);
        return;
    }
    if (isLaser()) {
        planDelay(out, pen().closeLaserDelay, true);
        planDelay(out, pen().markDelay, false);
    }
    nextStroke();
}

void Planner::planBorderCorner(Piece*& out) {
    const Point corners[] = {m_low, {m_high.x, m_low.y}, m_high, {m_low.x, m_high.y}, m_low};
    constexpr int kCorners = 5;
    if (m_corner == 0)
        planJump(out, corners[0]);
    else
        planMark(out, corners[m_corner]);
    m_done = ++m_corner == kCorners;
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
    piece.pen = static_cast<std::uint8_t>(m_pen);
    piece.kind = Piece::Kind::Jump;
    piece.vertex = true;
    m_at = to;
    if (moves)
        planDelay(out, jumpDelayUs(pen(), length), false);
}

void Planner::planMark(Piece*& out, Point to) {
    Piece& piece = *out++;
    piece = Piece{};
    piece.to = to;
    piece.us = distanceMm(m_at, to) * m_usPerMm[static_cast<std::size_t>(m_pen)];
    piece.pen = static_cast<std::uint8_t>(m_pen);
    piece.kind = Piece::Kind::Mark;
    piece.laser = isLaser();
    piece.vertex = true;
    m_at = to;
}

void Planner::planDelay(Piece*& out, double us, bool laser) {
    if (us <= 0.0)
        return;
    Piece& piece = *out++;
    piece = Piece{};
    piece.to = m_at;
    piece.us = us;
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
        m_repeatsLeft = m_pens[static_cast<std::size_t>(validPen(head.pen))].markCount - 1;
    findVertex(0);
}

void Planner::findVertex(std::size_t from) {
    const std::vector<Point>& points = m_job.strokes[m_stroke].points;
    while (from < points.size() && !isValid(points[from]))
        ++from;
    m_vertex = from;
}

void Planner::measureBorder() {
    constexpr double kFar = std::numeric_limits<double>::infinity();
    m_low = {kFar, kFar};
    m_high = {-kFar, -kFar};
    bool penKnown = false;
    for (const Stroke& stroke : m_job.strokes) {
        for (const Point& raw : stroke.points) {
            if (!isValid(raw))
                continue;
            if (!penKnown)
                m_pen = validPen(stroke.pen);
            penKnown = true;
            const Point p = reachable(raw);
            m_low = {std::min(m_low.x, p.x), std::min(m_low.y, p.y)};
            m_high = {std::max(m_high.x, p.x), std::max(m_high.y, p.y)};
        }
    }
}

} // namespace sim
