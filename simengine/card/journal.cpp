// SPDX-License-Identifier: GPL-2.0-or-later
#include "simengine/card/journal.h"

#include <algorithm>
#include <utility>

namespace sim {

Journal::Journal(std::size_t capacity)
    : m_capacity(std::max<std::size_t>(1, capacity)) {}

void Journal::add(std::string name, std::vector<JournalValue> args) {
    if (!isEnabled())
        return;
    JournalEntry entry;
    entry.name = std::move(name);
    entry.args = std::move(args);
    JournalEntry oldest; // freed after the lock
    const std::lock_guard<std::mutex> lock(m_mutex);
    // Stamped inside the lock: times never run backwards along the sequence.
    entry.ms = nowMs();
    entry.sequence = ++m_sequence;
    if (m_entries.size() == m_capacity) {
        oldest = std::move(m_entries.front());
        m_entries.pop_front();
        ++m_dropped;
    }
    m_entries.push_back(std::move(entry));
}

std::vector<JournalEntry> Journal::since(std::uint64_t sequence, std::size_t limit) const {
    const std::lock_guard<std::mutex> lock(m_mutex);
    auto first = std::upper_bound(m_entries.begin(), m_entries.end(), sequence,
                                  [](std::uint64_t s, const JournalEntry& entry) { return s < entry.sequence; });
    const std::size_t available = static_cast<std::size_t>(m_entries.end() - first);
    return {first, first + static_cast<std::ptrdiff_t>(std::min(available, limit))};
}

std::uint64_t Journal::lastSequence() const {
    const std::lock_guard<std::mutex> lock(m_mutex);
    return m_sequence;
}

std::size_t Journal::size() const {
    const std::lock_guard<std::mutex> lock(m_mutex);
    return m_entries.size();
}

std::uint64_t Journal::dropped() const {
    const std::lock_guard<std::mutex> lock(m_mutex);
    return m_dropped;
}

void Journal::clear() {
    std::deque<JournalEntry> old;
    const std::lock_guard<std::mutex> lock(m_mutex);
    old.swap(m_entries);
}

double Journal::nowMs() const {
    return std::chrono::duration<double, std::milli>(std::chrono::steady_clock::now() - m_start).count();
}

} // namespace sim
