// SPDX-License-Identifier: MIT
#pragma once

#include <chrono>
#include <condition_variable>
#include <cstddef>
#include <mutex>

namespace tessera {

/// Counts the tasks that a host's orders have started, so that a flood of orders does not pile them up and the end of
/// the program can wait for them. Any thread. Free of Qt.
class HostRuns {
public:
    /// Tasks that may be under way or wait for a thread of the pool.
    static constexpr std::size_t kMost = 64;

    /// False when there are as many as may be, or no more are to begin.
    bool Begin() {
        const std::lock_guard<std::mutex> lock(m_Lock);
        if (m_bClosed || m_nCount >= kMost)
            return false;
        ++m_nCount;
        return true;
    }
    void End() {
        {
            const std::lock_guard<std::mutex> lock(m_Lock);
            --m_nCount;
        }
        m_Ended.notify_all();
    }
    /// No more tasks from now on. Gives the number of those under way.
    std::size_t Close() {
        const std::lock_guard<std::mutex> lock(m_Lock);
        m_bClosed = true;
        return m_nCount;
    }
    /// False when the time was up before the last one ended.
    bool WaitForAll(std::chrono::milliseconds limit) {
        std::unique_lock<std::mutex> lock(m_Lock);
        return m_Ended.wait_for(lock, limit, [this] { return m_nCount == 0; });
    }

private:
    std::mutex m_Lock;
    std::condition_variable m_Ended;
    std::size_t m_nCount = 0;
    bool m_bClosed = false;
};

} // namespace tessera
