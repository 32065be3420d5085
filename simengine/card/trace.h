// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "simengine/card/flymotion.h"
#include "simengine/card/prioritylock.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <mutex>
#include <string>
#include <vector>

namespace sim {

class HeadMap;

/// One vertex that the head reached.
struct TraceRow {
    double ms = 0.0;      ///< simulated time since the pass began
    Point at;             ///< mm, as drawn; see forEachMarked() for where the head was sent and where it was marked
    std::uint8_t pen = 0; ///< 0 to 19
    bool laser = false;   ///< the way here was marked with the laser
    bool drawn = false;   ///< the way here belongs to a contour: with the laser, or the pilot beam in a preview
    /// Percent of the laser's full power that is set at this vertex: reached at the end of the way here, or after a
    /// jump what the laser opens with. 0 in a preview. Between two rows of one stroke it goes straight.
    float power = 0;
};
static_assert(sizeof(TraceRow) == 32, "the memory that a full trace takes is stated for this size");

/// An immutable view of the rows marked so far; costs a pointer per 4096 rows and holds nothing up.
class TraceSnapshot {
public:
    static constexpr std::size_t kBlockRows = 4096;
    using Block = std::array<TraceRow, kBlockRows>;

    std::size_t size() const { return m_size; }
    const TraceRow& operator[](std::size_t i) const { return (*m_blocks[i / kBlockRows])[i % kBlockRows]; }
    /// Number of the pass that the rows belong to; it changes when a job or a pass of a loop begins, and the rows of
    /// two numbers are not to be joined.
    std::uint64_t pass() const { return m_pass; }
    /// Rows that were left out because the pass was longer than Trace::kMaxRows.
    std::size_t dropped() const { return m_dropped; }

    /// How commanded places become marked ones; null when they are the same.
    const HeadMap* head() const { return m_head.get(); }
    /// Number of the pass within its job, from 0.
    std::uint64_t passOfJob() const { return m_passOfJob; }
    /// How head and product moved on while it was marked.
    const FlyMotion& fly() const { return m_fly; }
    /// The same rows as of a head that marks where it is told, in the field.
    TraceSnapshot commanded() const;

private:
    friend class Trace;
    std::vector<std::shared_ptr<const Block>> m_blocks;
    std::size_t m_size = 0;
    std::size_t m_dropped = 0;
    std::uint64_t m_pass = 0;
    std::uint64_t m_passOfJob = 0;
    std::shared_ptr<const HeadMap> m_head;
    FlyMotion m_fly;
};

/// What the head marked in the last job, one row a vertex; a job that repeats itself keeps the pass in progress, or
/// the last one, so that a loop of days needs no more memory than one pass. A pass keeps its first kMaxRows rows.
///
/// All calls from any thread. The card's worker is the only one that calls beginPass and append. To free a full trace
/// takes tens of milliseconds, for which a stop would have to wait: the worker frees a block of the rows before for
/// each one that it fills, and leaves the rest to takeOld().
class Trace {
public:
    using Blocks = std::vector<std::shared_ptr<TraceSnapshot::Block>>;

    static constexpr std::size_t kMaxRows = 8'000'000;

    /// Forgets all rows and starts the first pass of a job. Its places are marked by way of `head`, all passes long;
    /// null for a head that marks where it is told.
    void beginJob(std::shared_ptr<const HeadMap> head, const FlyMotion& fly = {});
    /// Forgets all rows and starts another pass.
    void beginPass();
    void append(TraceRow row);

    /// Takes out all rows, or those only that are forgotten already, for a caller who has the time to free them.
    Blocks takeAll();
    Blocks takeOld();
    /// Blocks in memory, those included that are still to be freed.
    std::size_t blocks() const;

    /// Rows so far and the pass they belong to.
    TraceSnapshot snapshot() const;
    std::size_t size() const;
    std::uint64_t pass() const;

    /// Copies at most maxRows rows from the given index on for a display that follows the marking; returns the number
    /// copied. When pass is not the current one it is set to it and reading starts at row 0 again.
    std::size_t readSince(std::uint64_t& pass, std::size_t& from, std::vector<TraceRow>& out,
                          std::size_t maxRows = 65536) const;
    /// Of the job to which the rows belong; null likewise.
    std::shared_ptr<const HeadMap> head() const;
    FlyMotion fly() const;

private:
    mutable PriorityMutex m_mutex; ///< taken by the worker at every row
    Blocks m_blocks;
    Blocks m_old; ///< forgotten, but not freed so far
    std::shared_ptr<const HeadMap> m_head;
    FlyMotion m_fly;
    std::size_t m_size = 0;
    std::size_t m_dropped = 0;
    std::uint64_t m_pass = 0;
    std::uint64_t m_passOfJob = 0;

    void startPass();
};

/// The rows as text, marked places: header "time,x,y,laser,pen", then a line a row: ms and mm with a decimal point
/// whatever the locale, laser 0 or 1, pen 0 to 19.
std::string traceCsv(const TraceSnapshot& rows);

} // namespace sim
