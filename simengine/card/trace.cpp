// SPDX-License-Identifier: GPL-2.0-or-later
#include "simengine/card/trace.h"

#include "simengine/card/markedrows.h"

#include <algorithm>
#include <charconv>
#include <utility>

namespace sim {

TraceSnapshot TraceSnapshot::commanded() const {
    TraceSnapshot copy = *this;
    copy.m_head.reset();
    copy.m_fly.travel = {};
    return copy;
}

void Trace::beginJob(std::shared_ptr<const HeadMap> head, const FlyMotion& fly) {
    const std::lock_guard<PriorityMutex> lock(m_mutex);
    m_head.swap(head); // the old one goes behind the lock
    m_fly = fly.sanitized();
    startPass();
    m_passOfJob = 0;
}

void Trace::beginPass() {
    const std::lock_guard<PriorityMutex> lock(m_mutex);
    startPass();
    ++m_passOfJob;
}

/// Called with the lock held.
void Trace::startPass() {
    // The first block stays when nobody looks at it, so that a short loop allocates nothing.
    if (m_blocks.size() != 1 || m_blocks.front().use_count() != 1) {
        if (m_old.empty())
            m_old.swap(m_blocks);
        else
            m_old.insert(m_old.end(), m_blocks.begin(), m_blocks.end());
        m_blocks.clear();
    }
    m_size = 0;
    m_dropped = 0;
    ++m_pass;
}

void Trace::append(TraceRow row) {
    const std::lock_guard<PriorityMutex> lock(m_mutex);
    if (m_size == kMaxRows) {
        ++m_dropped;
        return;
    }
    if (m_size == m_blocks.size() * TraceSnapshot::kBlockRows) {
        if (!m_old.empty())
            m_old.pop_back();
        m_blocks.push_back(std::make_shared<TraceSnapshot::Block>());
    }
    (*m_blocks[m_size / TraceSnapshot::kBlockRows])[m_size % TraceSnapshot::kBlockRows] = row;
    ++m_size;
}

Trace::Blocks Trace::takeAll() {
    Blocks all;
    const std::lock_guard<PriorityMutex> lock(m_mutex);
    // First what may find no memory: the rows stay as they are then.
    m_blocks.insert(m_blocks.end(), m_old.begin(), m_old.end());
    all.swap(m_blocks);
    m_old.clear();
    m_size = 0;
    return all;
}

Trace::Blocks Trace::takeOld() {
    Blocks old;
    const std::lock_guard<PriorityMutex> lock(m_mutex);
    old.swap(m_old);
    return old;
}

std::size_t Trace::blocks() const {
    const std::lock_guard<PriorityMutex> lock(m_mutex);
    return m_blocks.size() + m_old.size();
}

TraceSnapshot Trace::snapshot() const {
    TraceSnapshot copy;
    const std::lock_guard<PriorityMutex> lock(m_mutex);
    copy.m_blocks.assign(m_blocks.begin(), m_blocks.end());
    copy.m_size = m_size;
    copy.m_dropped = m_dropped;
    copy.m_pass = m_pass;
    copy.m_passOfJob = m_passOfJob;
    copy.m_head = m_head;
    copy.m_fly = m_fly;
    return copy;
}

std::size_t Trace::size() const {
    const std::lock_guard<PriorityMutex> lock(m_mutex);
    return m_size;
}

std::uint64_t Trace::pass() const {
    const std::lock_guard<PriorityMutex> lock(m_mutex);
    return m_pass;
}

std::size_t Trace::readSince(std::uint64_t& pass, std::size_t& from, std::vector<TraceRow>& out,
                             std::size_t maxRows) const {
    const TraceSnapshot rows = snapshot();
    if (pass != rows.pass()) {
        pass = rows.pass();
        from = 0;
    }
    const std::size_t end = std::min(rows.size(), from + std::min(maxRows, rows.size()));
    out.clear();
    for (; from < end; ++from)
        out.push_back(rows[from]);
    return out.size();
}

std::shared_ptr<const HeadMap> Trace::head() const {
    const std::lock_guard<PriorityMutex> lock(m_mutex);
    return m_head;
}

FlyMotion Trace::fly() const {
    const std::lock_guard<PriorityMutex> lock(m_mutex);
    return m_fly;
}

namespace {

void appendNumber(std::string& text, double value, int decimals) {
    char digits[64];
    const auto end = std::to_chars(digits, digits + sizeof digits, value, std::chars_format::fixed, decimals);
    text.append(digits, end.ptr);
}

} // namespace

std::string traceCsv(const TraceSnapshot& rows) {
    std::string text = "time,x,y,laser,pen\n";
    text.reserve(text.size() + rows.size() * 32);
    for (std::size_t i = 0; i < rows.size(); ++i) {
        const TraceRow& row = rows[i];
        const Point at = markedVertex(rows, row);
        appendNumber(text, row.ms, 6);
        text += ',';
        appendNumber(text, at.x, 6);
        text += ',';
        appendNumber(text, at.y, 6);
        text += row.laser ? ",1," : ",0,";
        text += std::to_string(row.pen);
        text += '\n';
    }
    return text;
}

} // namespace sim
