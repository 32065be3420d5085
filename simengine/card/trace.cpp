// SPDX-License-Identifier: GPL-2.0-or-later
#include "simengine/card/trace.h"

#include <algorithm>
#include <charconv>
#include <utility>

namespace sim {

void Trace::beginPass() {
    std::vector<std::shared_ptr<TraceSnapshot::Block>> old;
    const std::lock_guard<PriorityMutex> lock(m_mutex);
    // The first block stays when nobody looks at it, so that a short loop allocates nothing.
    if (m_blocks.size() != 1 || m_blocks.front().use_count() != 1)
        old.swap(m_blocks);
    m_size = 0;
    m_dropped = 0;
    ++m_pass;
}

void Trace::append(TraceRow row) {
    std::unique_lock<PriorityMutex> lock(m_mutex);
    if (const std::shared_ptr<const PointMap> map = m_map) {
        lock.unlock();
        row.at = (*map)(row.at);
        lock.lock();
    }
    if (m_size == kMaxRows) {
        ++m_dropped;
        return;
    }
    if (m_size == m_blocks.size() * TraceSnapshot::kBlockRows)
        m_blocks.push_back(std::make_shared<TraceSnapshot::Block>());
    (*m_blocks[m_size / TraceSnapshot::kBlockRows])[m_size % TraceSnapshot::kBlockRows] = row;
    ++m_size;
}

TraceSnapshot Trace::snapshot() const {
    TraceSnapshot copy;
    const std::lock_guard<PriorityMutex> lock(m_mutex);
    copy.m_blocks.assign(m_blocks.begin(), m_blocks.end());
    copy.m_size = m_size;
    copy.m_dropped = m_dropped;
    copy.m_pass = m_pass;
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

void Trace::setPointMap(PointMap map) {
    auto shared = map ? std::make_shared<const PointMap>(std::move(map)) : nullptr;
    const std::lock_guard<PriorityMutex> lock(m_mutex);
    m_map = std::move(shared);
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
        appendNumber(text, row.ms, 6);
        text += ',';
        appendNumber(text, row.at.x, 6);
        text += ',';
        appendNumber(text, row.at.y, 6);
        text += row.laser ? ",1," : ",0,";
        text += std::to_string(row.pen);
        text += '\n';
    }
    return text;
}

} // namespace sim
