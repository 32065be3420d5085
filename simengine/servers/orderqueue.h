// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "simengine/servers/eventflag.h"
#include "simengine/servers/stationorder.h"

#include <deque>
#include <mutex>
#include <optional>

namespace sim {

/// Orders on their way from the connections to the main thread, bounded in number and bytes. Any thread.
class OrderQueue {
public:
    OrderQueue(std::size_t orders, std::size_t bytes)
        : m_maxOrders(orders)
        , m_maxBytes(bytes) {}

    /// One more order may be pushed. Asked by the one thread that pushes; when it is not so, `room` of the next take()
    /// tells that it is again.
    bool hasRoom();
    /// An order after hasRoom(), or an Ended, of which one behind the other counts once.
    void push(StationOrder order);
    /// `room` is set when hasRoom() was false before and is not now.
    std::optional<StationOrder> take(bool& room);
    /// Readable while there is something to take.
    int descriptor() const { return m_filled.descriptor(); }

private:
    bool isFull() const { return m_orders.size() >= m_maxOrders || m_bytes >= m_maxBytes; }

    std::size_t const m_maxOrders;
    std::size_t const m_maxBytes;
    EventFlag m_filled;
    std::mutex m_mutex; ///< guards all below
    std::deque<StationOrder> m_orders;
    std::size_t m_bytes = 0;
    bool m_roomWanted = false;
};

} // namespace sim
