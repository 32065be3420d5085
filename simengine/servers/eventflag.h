// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

namespace sim {

/// A flag that poll() and event loops wait for: its descriptor is readable while it is set. Any thread.
class EventFlag {
public:
    EventFlag();
    ~EventFlag();
    EventFlag(EventFlag const&) = delete;
    EventFlag& operator=(EventFlag const&) = delete;

    void set();
    void clear();
    int descriptor() const { return m_descriptor; }

private:
    int const m_descriptor;
};

} // namespace sim
