// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <mutex>
#include <string>
#include <vector>

namespace sim {

/// A fault of the card or the head and the status bits that it raises.
struct CardFault {
    const char* name;
    std::uint32_t alarmBits; ///< system alarm word
    std::uint32_t scanBits;  ///< scan head state word
    std::uint32_t infoBits;  ///< mark information word
};

/// Faults of the card and the head, switched by name from the panel, the automation port and tests. What happened to a
/// job, a time-out or an underrun, is kept when its fault is over, until it is forgotten.
/// The other machine parts declare theirs in the same bank. All calls from any thread.
class FaultBank {
public:
    FaultBank();

    /// Makes a further name known, off at first; a known name stays as it is.
    void declare(const std::string& name);
    /// Switches a fault; false for an unknown name.
    bool set(const std::string& name, bool on);
    bool isOn(const std::string& name) const;
    /// Calls `changed` after every switching, on the thread that switches; gives the number by which it is taken off.
    int observe(std::function<void()> changed);
    void forgetObserver(int number);
    std::vector<std::string> names() const;
    void clear();

    /// Bits of all faults that are on; of the mark information word also those that are kept.
    std::uint32_t alarmBits() const { return bits(&CardFault::alarmBits); }
    std::uint32_t scanBits() const { return bits(&CardFault::scanBits); }
    std::uint32_t infoBits() const;
    /// Drops what is kept. A fault that is still on goes on showing its bits.
    void forget();

private:
    std::uint32_t bits(std::uint32_t CardFault::*field) const;

    void tellObservers();

    mutable std::mutex m_mutex;
    std::map<std::string, bool> m_faults;
    std::map<int, std::function<void()>> m_observers;
    std::uint32_t m_kept = 0; ///< bits of the mark information word that outlast their fault
};

} // namespace sim
