// SPDX-License-Identifier: MIT
#pragma once

#include <QString>
#include <condition_variable>
#include <cstddef>
#include <deque>
#include <mutex>
#include <thread>

namespace tessera {

/// Writes what goes over a connection into the log as debug traffic, in its order and a few milliseconds later, on a
/// thread of its own: a host that asks often does not wait for the disk. When more waits than may, whoever adds a line
/// writes an older one first, so that nothing is lost and memory stays bounded. Any thread.
class TrafficLog {
public:
    /// Lines that may wait.
    static constexpr std::size_t kMostWaiting = 4096;

    TrafficLog() = default;
    /// Writes what waits.
    ~TrafficLog() { Close(); }
    TrafficLog(TrafficLog const&) = delete;
    TrafficLog& operator=(TrafficLog const&) = delete;

    /// The thread begins with the first line.
    void Add(QString line);
    /// Writes what waits and ends the thread; a later line begins another.
    void Close();

private:
    void Work();
    bool WriteOldest();

    std::mutex m_WriteLock; ///< keeps the order of the lines; taken before m_Lock
    std::mutex m_Lock;
    std::condition_variable m_Changed;
    std::deque<QString> m_Waiting;
    bool m_bIdle = false; ///< the thread waits to be told of a line
    bool m_bEnd = false;
    std::thread m_Thread;
};

} // namespace tessera
