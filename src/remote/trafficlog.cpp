// SPDX-License-Identifier: MIT
#include "remote/trafficlog.h"

#include "engine/marklog.h"

#include <chrono>
#include <utility>

namespace tessera {

namespace {

/// Lines that come within this time wake the thread once.
constexpr std::chrono::milliseconds kGather{2};

} // namespace

void TrafficLog::Add(QString line) {
    std::unique_lock<std::mutex> lock(m_Lock);
    while (m_Waiting.size() >= kMostWaiting) {
        lock.unlock();
        WriteOldest();
        lock.lock();
    }
    m_Waiting.push_back(std::move(line));
    if (!m_Thread.joinable())
        m_Thread = std::thread([this] { Work(); });
    if (std::exchange(m_bIdle, false))
        m_Changed.notify_all();
}

void TrafficLog::Close() {
    std::thread thread;
    {
        const std::lock_guard<std::mutex> lock(m_Lock);
        m_bEnd = true;
        thread.swap(m_Thread);
    }
    m_Changed.notify_all();
    if (thread.joinable())
        thread.join();
    while (WriteOldest()) {
    }
    const std::lock_guard<std::mutex> lock(m_Lock);
    m_bEnd = false;
}

void TrafficLog::Work() {
    std::unique_lock<std::mutex> lock(m_Lock);
    while (!m_bEnd) {
        m_bIdle = m_Waiting.empty();
        m_Changed.wait(lock, [this] { return m_bEnd || !m_Waiting.empty(); });
        m_bIdle = false;
        m_Changed.wait_for(lock, kGather, [this] { return m_bEnd; });
        lock.unlock();
        while (WriteOldest()) {
        }
        lock.lock();
    }
}

/// False when nothing waits.
bool TrafficLog::WriteOldest() {
    const std::lock_guard<std::mutex> writing(m_WriteLock);
    QString line;
    {
        const std::lock_guard<std::mutex> lock(m_Lock);
        if (m_Waiting.empty())
            return false;
        line = std::move(m_Waiting.front());
        m_Waiting.pop_front();
    }
    MarkLog::Instance()->ShowNode(NoteDebug, line);
    return true;
}

} // namespace tessera
