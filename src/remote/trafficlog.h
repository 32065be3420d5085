// SPDX-License-Identifier: MIT
#pragma once

#include <QString>
#include <condition_variable>
#include <mutex>
#include <thread>
#include <vector>

namespace tessera {

/// Writes what goes over a connection into the log as debug traffic, in its order and a few milliseconds later, on a
/// thread of its own: whoever answers a host waits neither for the disk nor for that thread. When more waits than may,
/// further lines are counted and the log tells how many are missing. Any thread.
class TrafficLog {
public:
    /// Characters that may wait.
    static constexpr int kMostWaiting = 2 * 1024 * 1024;

    TrafficLog() = default;
    /// Writes what waits.
    ~TrafficLog() { Close(); }
    TrafficLog(TrafficLog const&) = delete;
    TrafficLog& operator=(TrafficLog const&) = delete;

    /// The thread begins with the first line.
    void Add(QString line);
    /// Writes what waits and ends the thread; a later line begins another. One thread at a time.
    void Close();

private:
    struct Batch {
        std::vector<QString> lines;
        int characters = 0;
        int missing = 0; ///< lines that came behind these and were not kept

        bool IsEmpty() const { return lines.empty() && missing == 0; }
    };

    void Work();
    static void Write(Batch const& batch);

    std::mutex m_Lock;
    std::condition_variable m_Changed;
    Batch m_Waiting;
    bool m_bIdle = false; ///< the thread waits to be told of a line
    bool m_bEnd = false;
    std::thread m_Thread;
};

} // namespace tessera
