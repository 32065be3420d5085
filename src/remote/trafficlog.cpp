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
    const std::lock_guard<std::mutex> lock(m_Lock);
    if (m_Waiting.missing > 0 || m_Waiting.characters + line.size() > kMostWaiting) {
        ++m_Waiting.missing;
    } else {
        m_Waiting.characters += line.size();
        m_Waiting.lines.push_back(std::move(line));
    }
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
    const std::lock_guard<std::mutex> lock(m_Lock);
    Write(std::exchange(m_Waiting, {}));
    m_bEnd = false;
}

void TrafficLog::Work() {
    std::unique_lock<std::mutex> lock(m_Lock);
    while (!m_bEnd) {
        m_bIdle = m_Waiting.IsEmpty();
        m_Changed.wait(lock, [this] { return m_bEnd || !m_Waiting.IsEmpty(); });
        m_bIdle = false;
        m_Changed.wait_for(lock, kGather, [this] { return m_bEnd; });
        const Batch batch = std::exchange(m_Waiting, {});
        lock.unlock();
        Write(batch);
        lock.lock();
    }
}

void TrafficLog::Write(Batch const& batch) {
    for (QString const& line : batch.lines)
        MarkLog::Instance()->ShowNode(NoteDebug, line);
    if (batch.missing > 0)
        MarkLog::Instance()->ShowNote_Error(
            QStringLiteral("host port: %1 messages came too fast for the log").arg(batch.missing));
}

} // namespace tessera
