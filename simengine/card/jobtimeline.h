// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "simengine/card/planner.h"

#include <atomic>
#include <memory>
#include <vector>

namespace sim {

/// What a job needs to be planned, owned.
struct TimelineJob {
    Job job;
    PenTable pens{};
    PlanSettings plan;
    Point start; ///< where the head stands before it
};

/// One pass of a job by the clock, in the pieces that the card executes. Kept are places from which the planner goes
/// on, one for some thousand pieces, so that a job of millions takes little memory beside its vertices. Rounds of an
/// object that are repeated often are kept once.
///
/// Never changes once it is made; any thread, each with a reader of its own.
class JobTimeline {
public:
    /// Plans the whole pass; null when `cancelled` was set meanwhile, by any thread.
    static std::shared_ptr<const JobTimeline> make(TimelineJob job, const std::atomic<bool>* cancelled = nullptr);

    /// Empty; make() fills one.
    JobTimeline() = default;
    JobTimeline(const JobTimeline&) = delete;
    JobTimeline& operator=(const JobTimeline&) = delete;

    /// As estimate() gives it: exact times. Vertices that wobble adds count in every round.
    const JobTime& time() const { return m_time; }
    double totalUs() const { return m_totalUs; }
    const TimelineJob& job() const { return *m_job; }

    /// Goes along a timeline piece by piece. The timeline must outlive it. Not thread-safe.
    class Reader {
    public:
        /// At the first piece.
        explicit Reader(const JobTimeline& timeline);

        /// Goes to the first piece, whose time may be none.
        void rewind();
        /// Goes to the piece that is executed at a time: the last one that has begun. A time outside the pass is taken
        /// for its beginning or end.
        void seek(double us);
        /// Goes to the piece after; false at the last one.
        bool next();
        /// At the first piece of a round that repeats the one before: leaves out those that are over at `us`, but for
        /// the last.
        void passRounds(double us);
        /// False for a job without a piece.
        bool hasPiece() const { return m_index < m_pieces.size(); }

        const Piece& piece() const { return m_pieces[m_index]; }
        double startUs() const { return m_baseUs + (m_index ? m_ends[m_index - 1] : 0.0); }
        double endUs() const { return m_baseUs + m_ends[m_index]; }
        /// Where the beam was when the piece began.
        Point from() const { return m_index ? m_pieces[m_index - 1].to : m_from; }
        /// Place of the beam at a time within the piece.
        Point at(double us) const;

    private:
        void load(std::size_t span, double round, std::size_t chunk);

        const JobTimeline& m_timeline;
        std::size_t m_span = 0;
        double m_round = 0.0; ///< whole number
        std::size_t m_chunk = 0;
        std::size_t m_loaded; ///< chunk whose pieces these are
        std::vector<Piece> m_pieces;
        std::vector<double> m_ends; ///< µs since m_baseUs
        std::size_t m_index = 0;
        double m_baseUs = 0.0; ///< begin of the first of the pieces
        Point m_from;
    };

private:
    /// A row of pieces, and the planner before the first of them.
    struct Chunk {
        Planner planner;
        double startUs = 0.0; ///< since the span's round began
        std::size_t pieces = 0;
    };
    /// Chunks that are executed `rounds` times one after the other.
    struct Span {
        double startUs = 0.0;
        double roundUs = 0.0;
        double rounds = 1.0;
        std::size_t firstChunk = 0;
        std::size_t endChunk = 0;
        double endUs() const { return startUs + roundUs * rounds; }
    };
    class Builder;

    std::shared_ptr<const TimelineJob> m_job; ///< the planners look at it
    std::vector<Chunk> m_chunks;
    std::vector<Span> m_spans;
    JobTime m_time;
    double m_totalUs = 0.0;
};

} // namespace sim
