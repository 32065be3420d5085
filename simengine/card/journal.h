// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include <atomic>
#include <chrono>
#include <cstdint>
#include <deque>
#include <mutex>
#include <string>
#include <variant>
#include <vector>

namespace sim {

/// One argument of a recorded call.
using JournalValue = std::variant<std::int64_t, double, std::string>;

struct JournalEntry {
    std::uint64_t sequence = 0; ///< counts from 1 over the life of the process, not reset by clear()
    double ms = 0.0;            ///< steady clock since the journal was made
    std::string name;           ///< the boundary's name of the call, such as "SetOutputBit"
    std::vector<JournalValue> args;
};

/// Record of the calls that reached the machine, oldest dropped first. All calls from any thread.
class Journal {
public:
    static constexpr std::size_t kDefaultCapacity = 200'000;

    explicit Journal(std::size_t capacity = kDefaultCapacity);

    void add(std::string name, std::vector<JournalValue> args = {});

    /// Entries with a sequence number above the given one, oldest first, at most limit of them.
    std::vector<JournalEntry> since(std::uint64_t sequence, std::size_t limit = SIZE_MAX) const;
    /// Sequence number of the newest entry, also after clear(); 0 when there has been none.
    std::uint64_t lastSequence() const;
    std::size_t size() const;
    /// Entries lost to the bound so far.
    std::uint64_t dropped() const;
    void clear();

    /// Switched off, add() does nothing; on at first.
    void setEnabled(bool on) { m_enabled.store(on, std::memory_order_relaxed); }
    bool isEnabled() const { return m_enabled.load(std::memory_order_relaxed); }

    /// ms of the journal's clock now.
    double nowMs() const;

private:
    const std::chrono::steady_clock::time_point m_start = std::chrono::steady_clock::now();
    const std::size_t m_capacity;
    std::atomic<bool> m_enabled{true};
    mutable std::mutex m_mutex;
    std::deque<JournalEntry> m_entries;
    std::uint64_t m_sequence = 0;
    std::uint64_t m_dropped = 0;
};

/// An argument list from plain values: integers and bools as integers, floating point as double, the rest as text.
template<typename... Values>
std::vector<JournalValue> journalArgs(const Values&... values) {
    std::vector<JournalValue> list;
    list.reserve(sizeof...(values));
    const auto one = [&list](const auto& value) {
        using Value = std::decay_t<decltype(value)>;
        if constexpr (std::is_enum_v<Value> || std::is_integral_v<Value>)
            list.emplace_back(static_cast<std::int64_t>(value));
        else if constexpr (std::is_floating_point_v<Value>)
            list.emplace_back(static_cast<double>(value));
        else
            list.emplace_back(std::string(value));
    };
    (one(values), ...);
    return list;
}

} // namespace sim
