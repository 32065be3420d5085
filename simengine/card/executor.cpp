// SPDX-License-Identifier: GPL-2.0-or-later
#include "simengine/card/executor.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace sim {

Point HeadMotion::at(double us) const {
    if (us >= endUs)
        return to;
    if (us <= startUs)
        return from;
    return between(from, to, (us - startUs) / (endUs - startUs));
}

Executor::Executor(const Job& job, const PenTable& pens, const PlanSettings& settings, const LoopSettings& loop,
                   Point start, Trace& trace, std::shared_ptr<const HeadMap> head, const FlyMotion& fly)
    : m_planner(job, pens, settings, start)
    , m_loop(loop)
    , m_trace(trace)
    , m_fly(fly.sanitized())
    , m_from(start) {
    m_piece.to = start;
    m_trace.beginJob(std::move(head), fly);
}

Executor::Progress Executor::advance(double untilUs, const std::atomic<bool>& attention) {
    while (!m_finished) {
        if (!m_hasPiece) {
            if (!fetchPieces()) {
                m_finished = true;
                break;
            }
            if (!m_hasPiece) {
                if (penIsDue())
                    return Progress::PenDue;
                nextPiece();
            }
        }
        const double endUs = pieceEndUs();
        if (endUs > untilUs) {
            m_nowUs = std::max(m_nowUs, untilUs);
            return Progress::Caught;
        }
        completePiece();
        if (attention.load(std::memory_order_acquire))
            return Progress::Interrupted;
    }
    return Progress::Finished;
}

/// Fills the list buffer when it is empty. At the end of a pass the piece in progress becomes the wait for the next
/// one; false when there is none.
bool Executor::fetchPieces() {
    if (m_next < m_count)
        return true;
    if (m_betweenPasses)
        m_planner.setPlace(endOfPass());
    m_next = 0;
    m_count = m_planner.fill(m_chunk.data(), m_chunk.size());
    return m_count > 0 || nextPass();
}

void Executor::nextPiece() {
    if (m_betweenPasses) {
        m_from = endOfPass();
        m_betweenPasses = false;
        m_passStartUs = m_pieceStartUs;
        m_trace.beginPass();
    }
    m_piece = m_chunk[m_next++];
    m_hasPiece = true;
}

bool Executor::nextPass() {
    m_lastPass = m_time;
    ++m_passes;
    if (!m_loop.loop)
        return false;
    const double delayUs = std::isfinite(m_loop.delayMs) ? std::max(0.0, m_loop.delayMs * 1000.0) : 0.0;
    m_piece = Piece{};
    m_piece.to = m_from;
    m_piece.us = std::max(delayUs, kMinPassUs - (m_pieceStartUs - m_passStartUs));
    m_hasPiece = true;
    m_betweenPasses = true;
    m_time = {};
    m_planner.restart();
    return true;
}

void Executor::completePiece() {
    m_pieceStartUs += m_piece.us;
    m_nowUs = std::max(m_nowUs, m_pieceStartUs);
    m_hasPiece = false;
    if (m_betweenPasses)
        return;
    addPiece(m_time, m_piece);
    m_from = m_piece.to;
    m_fromPower = m_piece.power;
    if (m_piece.vertex)
        addRow((m_pieceStartUs - m_passStartUs) / 1000.0, m_piece.to, m_piece.power);
}

void Executor::cut() {
    const bool moving = m_hasPiece && m_piece.vertex && m_from != m_piece.to;
    if (!moving || m_nowUs <= std::max(m_pieceStartUs, m_cutUs))
        return;
    m_cutUs = m_nowUs;
    const double power = m_piece.laser ? m_fromPower + (m_piece.power - m_fromPower) * pieceShare() : m_piece.power;
    addRow(passMs(), position(), static_cast<float>(power));
}

void Executor::stop() {
    cut();
    if (m_hasPiece && !m_betweenPasses && m_piece.us > 0.0) {
        const double share = pieceShare();
        Piece part = m_piece;
        part.us *= share;
        part.mm *= share;
        part.vertex = false;
        part.centreLine = false;
        addPiece(m_time, part);
    }
    m_from = position();
    m_piece.to = m_from;
    m_hasPiece = false;
    m_finished = true;
}

/// Where the wait between two passes leaves the head, which follows the product all the while.
Point Executor::endOfPass() const {
    return m_fly.commanded(m_from, (m_pieceStartUs - m_passStartUs) / 1000.0);
}

HeadMotion Executor::motion() const {
    HeadMotion motion;
    motion.from = m_from;
    motion.to = m_hasPiece ? m_piece.to : m_from;
    motion.startUs = m_pieceStartUs;
    motion.endUs = m_hasPiece ? pieceEndUs() : m_pieceStartUs;
    motion.laser = m_hasPiece && m_piece.laser;
    motion.pen = m_piece.pen;
    return motion;
}

double Executor::pieceShare() const {
    return std::clamp((m_nowUs - m_pieceStartUs) / m_piece.us, 0.0, 1.0);
}

void Executor::addRow(double ms, const Point& at, float power) {
    m_trace.append({ms, at, m_piece.pen, m_piece.laser, m_piece.kind == Piece::Kind::Mark, power});
}

} // namespace sim
