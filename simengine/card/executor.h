// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "simengine/card/planner.h"
#include "simengine/card/timemodel.h"
#include "simengine/card/trace.h"

#include <array>
#include <atomic>
#include <cstddef>
#include <cstdint>
#include <memory>

namespace sim {

/// How a job repeats.
struct LoopSettings {
    bool loop = false;    ///< the card repeats the job by itself until it is stopped
    double delayMs = 0.0; ///< between two passes
};

/// What the head is doing at a moment of the job's clock.
struct HeadMotion {
    Point from;
    Point to;
    double startUs = 0.0; ///< job clock
    double endUs = 0.0;
    bool laser = false;
    std::uint8_t pen = 0;

    Point at(double us) const;
};

/// Executes a job on the simulated clock: it is told how far the clock has come and marks what is done by then. It
/// never runs ahead of the clock it was given. Knows no wall time and no threads; the trace is the only thing shared.
/// The job must outlive it.
class Executor {
public:
    enum class Progress {
        Caught,      ///< everything up to the given time is done
        PenDue,      ///< the next piece is another pen's, which has to be made ready
        Interrupted, ///< the attention flag was raised
        Finished,    ///< the job is complete
    };

    /// A repeated pass takes at least this long, µs, so that a job of no length cannot keep the card from its clock.
    static constexpr double kMinPassUs = 100.0;

    /// `head` and `fly` are kept with the trace: how the drawn places are marked. They change no times and places here,
    /// but that a repeated pass begins where the one before left the head on the fly.
    Executor(const Job& job, const PenTable& pens, const PlanSettings& settings, const LoopSettings& loop, Point start,
             Trace& trace, std::shared_ptr<const HeadMap> head = nullptr, const FlyMotion& fly = {});

    Executor(Job&&, const PenTable&, const PlanSettings&, const LoopSettings&, Point, Trace&,
             std::shared_ptr<const HeadMap> = nullptr, const FlyMotion& = {}) = delete;

    /// Lets advance() give PenDue before the first piece, pen change delay included, of a pen that is not the one made
    /// ready last, until penReady(). Repeated passes go on with the pen that is ready.
    void haltAtPens() { m_haltAtPens = true; }
    /// The pen that has to be made ready; only after PenDue.
    int duePen() const { return m_chunk[m_next].pen; }
    void penReady() { m_readyPen = duePen(); }

    /// Executes up to untilUs (infinite: as far as it goes) on the job's clock.
    Progress advance(double untilUs, const std::atomic<bool>& attention);

    /// Ends the line at the place reached: a trace row there when the head is within a vector. The vector goes on at
    /// the next advance.
    void cut();
    /// Cuts and gives the accounts what was done of the piece in progress. Nothing may be advanced afterwards.
    void stop();

    double nowUs() const { return m_nowUs; }
    /// Time on the job's clock at which the piece in progress ends.
    double pieceEndUs() const { return m_pieceStartUs + m_piece.us; }
    HeadMotion motion() const;
    /// Of the drawing.
    Point position() const { return motion().at(m_nowUs); }
    /// Where the head is, on the fly with the way that it followed.
    Point commanded() const { return m_fly.commanded(position(), passMs()); }

    /// Time on the clock of the pass, which is the trace's, ms.
    double passMs() const { return (m_nowUs - m_passStartUs) / 1000.0; }
    /// Accounts of the last complete pass; of the pass in progress while there is none.
    const JobTime& time() const { return m_passes > 0 ? m_lastPass : m_time; }
    std::uint64_t passes() const { return m_passes; }

private:
    bool fetchPieces();
    void nextPiece();
    bool nextPass();
    Point endOfPass() const;
    bool penIsDue() const { return m_haltAtPens && m_next < m_count && duePen() != m_readyPen; }
    void completePiece();
    /// Share of the piece in progress that is done; the piece must last.
    double pieceShare() const;
    void addRow(double ms, const Point& at, float power);

    Planner m_planner;
    const LoopSettings m_loop;
    Trace& m_trace;
    const FlyMotion m_fly;
    std::array<Piece, 256> m_chunk{}; ///< the list buffer
    std::size_t m_next = 0;
    std::size_t m_count = 0;
    Piece m_piece;
    Point m_from;
    float m_fromPower = 0;
    double m_pieceStartUs = 0.0;
    double m_passStartUs = 0.0;
    double m_nowUs = 0.0;
    double m_cutUs = -1.0;        ///< where the line was last ended: not twice at one place
    bool m_betweenPasses = false; ///< the piece in progress is the loop delay, which belongs to no pass
    bool m_hasPiece = false;
    bool m_finished = false;
    bool m_haltAtPens = false;
    int m_readyPen = -1; ///< -1 before the first
    JobTime m_time;
    JobTime m_lastPass;
    std::uint64_t m_passes = 0;
};

} // namespace sim
