// SPDX-License-Identifier: GPL-2.0-or-later
#include "simengine/card/jobtimeline.h"

#include <algorithm>
#include <cmath>

namespace sim {

namespace {

/// Pieces of a chunk at most: planned again within a millisecond.
constexpr std::size_t kChunkPieces = 16384;
/// Pieces that repeated rounds must have together to be kept once.
constexpr double kWorthKeepingOnce = 4096.0;
/// Spans at most; further rounds are planned one by one.
constexpr std::size_t kMaxSpans = 200'000;

/// Adds what pieces gave `times` times.
void addTime(JobTime& time, const JobTime& part, double times) {
    time.jumpMs += part.jumpMs * times;
    time.markMs += part.markMs * times;
    time.delayMs += part.delayMs * times;
    time.totalMs += part.totalMs * times;
    time.markedMm += part.markedMm * times;
    time.jumpedMm += part.jumpedMm * times;
    time.vertices += part.vertices * static_cast<std::size_t>(times);
    time.centreLines += part.centreLines * static_cast<std::size_t>(times);
}

} // namespace

/// Walks the planner once and notes where chunks and repeated rounds begin.
class JobTimeline::Builder {
public:
    Builder(JobTimeline& timeline, const std::atomic<bool>* cancelled)
        : m_timeline(timeline)
        , m_cancelled(cancelled)
        , m_planner(timeline.m_job->job, timeline.m_job->pens, timeline.m_job->plan, timeline.m_job->start)
        , m_pieces(kChunkPieces) {}

    /// False when it was cancelled.
    bool run() {
        m_planner.haltAtRounds();
        openSpan();
        while (!(m_cancelled && m_cancelled->load())) {
            Chunk& chunk = chunkWithRoom();
            const std::size_t count = m_planner.fill(m_pieces.data(), kChunkPieces - chunk.pieces);
            for (std::size_t i = 0; i < count; ++i) {
                addPiece(m_spanTime, m_pieces[i]);
                m_spanUs += m_pieces[i].us;
            }
            chunk.pieces += count;
            if (m_planner.roundsLeft() > 0) {
                halt();
            } else if (count == 0) {
                closeSpan(1.0);
                m_timeline.m_totalUs = m_startUs;
                return true;
            }
        }
        return false;
    }

private:
    /// An object is about to be repeated. Its first repetition stands for all that follow: the first round began
    /// elsewhere.
    void halt() {
        const double left = m_planner.roundsLeft();
        if (m_inRounds) {
            closeSpan(1.0 + left);
            m_planner.skipRounds();
            m_inRounds = false;
            openSpan();
        } else if (left > 1.0 && left * static_cast<double>(m_planner.roundVertices()) >= kWorthKeepingOnce &&
                   m_timeline.m_spans.size() < kMaxSpans) {
            closeSpan(1.0);
            openSpan();
            m_inRounds = true;
        }
    }

    Chunk& chunkWithRoom() {
        std::vector<Chunk>& chunks = m_timeline.m_chunks;
        const bool open = chunks.size() > m_timeline.m_spans.back().firstChunk;
        if (!open || chunks.back().pieces + Planner::kMaxStep > kChunkPieces)
            chunks.push_back({m_planner, m_spanUs, 0});
        return chunks.back();
    }

    void openSpan() {
        Span span;
        span.startUs = m_startUs;
        span.firstChunk = m_timeline.m_chunks.size();
        m_timeline.m_spans.push_back(span);
        m_spanTime = {};
        m_spanUs = 0.0;
    }

    void closeSpan(double rounds) {
        std::vector<Chunk>& chunks = m_timeline.m_chunks;
        Span& span = m_timeline.m_spans.back();
        if (chunks.size() > span.firstChunk && chunks.back().pieces == 0)
            chunks.pop_back();
        span.endChunk = chunks.size();
        span.roundUs = m_spanUs;
        span.rounds = rounds;
        m_startUs = span.endUs();
        addTime(m_timeline.m_time, m_spanTime, rounds);
        if (span.firstChunk == span.endChunk)
            m_timeline.m_spans.pop_back();
    }

    JobTimeline& m_timeline;
    const std::atomic<bool>* m_cancelled;
    Planner m_planner;
    std::vector<Piece> m_pieces;
    double m_startUs = 0.0; ///< of the open span
    double m_spanUs = 0.0;  ///< of its round so far
    JobTime m_spanTime;
    bool m_inRounds = false; ///< the open span is a repetition
};

std::shared_ptr<const JobTimeline> JobTimeline::make(TimelineJob job, const std::atomic<bool>* cancelled) {
    measureStrokes(job.job, job.pens);
    auto timeline = std::make_shared<JobTimeline>();
    timeline->m_job = std::make_shared<const TimelineJob>(std::move(job));
    if (!Builder(*timeline, cancelled).run())
        return nullptr;
    return timeline;
}

JobTimeline::Reader::Reader(const JobTimeline& timeline)
    : m_timeline(timeline)
    , m_loaded(timeline.m_chunks.size()) {
    rewind();
}

void JobTimeline::Reader::rewind() {
    if (!m_timeline.m_spans.empty())
        load(0, 0.0, m_timeline.m_spans.front().firstChunk);
}

void JobTimeline::Reader::load(std::size_t span, double round, std::size_t chunk) {
    const Span& in = m_timeline.m_spans[span];
    const Chunk& from = m_timeline.m_chunks[chunk];
    m_span = span;
    m_round = round;
    m_chunk = chunk;
    m_index = 0;
    m_baseUs = in.startUs + round * in.roundUs + from.startUs;
    if (m_loaded == chunk)
        return;
    m_loaded = chunk;
    m_from = from.planner.beam();
    m_pieces.resize(kChunkPieces);
    Planner planner = from.planner;
    std::size_t count = 0;
    while (count < from.pieces)
        count += planner.fill(m_pieces.data() + count, kChunkPieces - count);
    m_pieces.resize(from.pieces);
    m_ends.resize(from.pieces);
    double us = 0.0;
    for (std::size_t i = 0; i < from.pieces; ++i)
        m_ends[i] = us += m_pieces[i].us;
}

void JobTimeline::Reader::seek(double us) {
    const std::vector<Span>& spans = m_timeline.m_spans;
    if (spans.empty())
        return;
    us = std::clamp(us, 0.0, m_timeline.m_totalUs);
    const auto after = std::upper_bound(spans.begin() + 1, spans.end(), us,
                                        [](double time, const Span& span) { return time < span.startUs; });
    const Span& span = *(after - 1);
    const double last = span.rounds - 1.0;
    const double round =
        span.roundUs > 0.0 ? std::clamp(std::floor((us - span.startUs) / span.roundUs), 0.0, last) : last;
    const double inRound = us - span.startUs - round * span.roundUs;
    const auto first = m_timeline.m_chunks.begin() + static_cast<std::ptrdiff_t>(span.firstChunk);
    const auto end = m_timeline.m_chunks.begin() + static_cast<std::ptrdiff_t>(span.endChunk);
    const auto chunk = std::upper_bound(first + 1, end, inRound,
                                        [](double time, const Chunk& other) { return time < other.startUs; }) -
                       1;
    load(static_cast<std::size_t>(&span - spans.data()), round,
         static_cast<std::size_t>(chunk - m_timeline.m_chunks.begin()));
    const auto piece = std::upper_bound(m_ends.begin(), m_ends.end(), inRound - chunk->startUs);
    m_index = std::min(static_cast<std::size_t>(piece - m_ends.begin()), m_ends.size() - 1);
}

bool JobTimeline::Reader::next() {
    if (!hasPiece())
        return false;
    if (m_index + 1 < m_pieces.size()) {
        ++m_index;
        return true;
    }
    const std::vector<Span>& spans = m_timeline.m_spans;
    const Span& span = spans[m_span];
    if (m_chunk + 1 < span.endChunk)
        load(m_span, m_round, m_chunk + 1);
    else if (m_round + 1.0 < span.rounds)
        load(m_span, m_round + 1.0, span.firstChunk);
    else if (m_span + 1 < spans.size())
        load(m_span + 1, 0.0, spans[m_span + 1].firstChunk);
    else
        return false;
    return true;
}

void JobTimeline::Reader::passRounds(double us) {
    if (!hasPiece() || m_round < 1.0 || m_index > 0)
        return;
    const Span& span = m_timeline.m_spans[m_span];
    if (m_chunk != span.firstChunk || !(span.roundUs > 0.0))
        return;
    const double over = std::min(std::floor((us - span.startUs) / span.roundUs), span.rounds) - 1.0;
    if (over > m_round)
        load(m_span, over, m_chunk);
}

Point JobTimeline::Reader::at(double us) const {
    const double length = piece().us;
    const double share = length > 0.0 ? std::clamp((us - startUs()) / length, 0.0, 1.0) : 1.0;
    return between(from(), piece().to, share);
}

} // namespace sim
