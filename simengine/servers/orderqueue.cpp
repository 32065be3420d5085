// SPDX-License-Identifier: GPL-2.0-or-later
#include "simengine/servers/orderqueue.h"

namespace sim {

bool OrderQueue::hasRoom() {
    std::lock_guard<std::mutex> const guard(m_mutex);
    m_roomWanted = isFull();
    return !m_roomWanted;
}

void OrderQueue::push(StationOrder order) {
    std::lock_guard<std::mutex> const guard(m_mutex);
    if (order.kind == OrderKind::Ended && !m_orders.empty() && m_orders.back().kind == OrderKind::Ended)
        return;
    m_bytes += static_cast<std::size_t>(order.bytes);
    m_orders.push_back(std::move(order));
    if (m_orders.size() == 1)
        m_filled.set();
}

std::optional<StationOrder> OrderQueue::take(bool& room) {
    std::lock_guard<std::mutex> const guard(m_mutex);
    room = false;
    if (m_orders.empty())
        return std::nullopt;
    StationOrder order = std::move(m_orders.front());
    m_orders.pop_front();
    m_bytes -= static_cast<std::size_t>(order.bytes);
    if (m_orders.empty())
        m_filled.clear();
    room = m_roomWanted && !isFull();
    if (room)
        m_roomWanted = false;
    return order;
}

} // namespace sim
