// SPDX-License-Identifier: MIT
#include "run/delayedstop.h"

#include <utility>

namespace tessera {

namespace {

/// A thread that waits keeps the object it waits on, however the main window goes meanwhile.
struct CurrentStop {
    std::mutex lock;
    std::shared_ptr<DelayedStop> stop;
};

CurrentStop& currentStop() {
    static CurrentStop current;
    return current;
}

} // namespace

DelayedStop::DelayedStop(std::function<void()> stop)
    : m_Stop(std::move(stop)) {}

DelayedStop::~DelayedStop() {
    End();
}

void DelayedStop::End() {
    {
        std::unique_lock<std::mutex> lock(m_Lock);
        m_bEnd = true;
        m_Wake.notify_all();
        m_Wake.wait(lock, [this] { return m_nWaiters == 0; });
    }
    if (m_Thread.joinable())
        m_Thread.join();
}

void DelayedStop::Order(int ms) {
    const std::lock_guard<std::mutex> lock(m_Lock);
    m_Times.insert(Clock::now() + std::chrono::milliseconds(ms));
    if (!m_Thread.joinable())
        m_Thread = std::thread([this] { Work(); });
    m_Wake.notify_all();
}

void DelayedStop::StopAfter(int ms) {
    const auto time = Clock::now() + std::chrono::milliseconds(ms);
    std::unique_lock<std::mutex> lock(m_Lock);
    ++m_nWaiters;
    if (!m_Wake.wait_until(lock, time, [this] { return m_bEnd; })) {
        lock.unlock();
        m_Stop();
        lock.lock();
    }
    --m_nWaiters;
    m_Wake.notify_all();
}

void DelayedStop::SetCurrent(std::shared_ptr<DelayedStop> current) {
    CurrentStop& holder = currentStop();
    const std::lock_guard<std::mutex> lock(holder.lock);
    holder.stop.swap(current);
}

std::shared_ptr<DelayedStop> DelayedStop::Current() {
    CurrentStop& holder = currentStop();
    const std::lock_guard<std::mutex> lock(holder.lock);
    return holder.stop;
}

void DelayedStop::Work() {
    std::unique_lock<std::mutex> lock(m_Lock);
    while (!m_bEnd) {
        if (m_Times.empty()) {
            m_Wake.wait(lock);
            continue;
        }
        const Clock::time_point next = *m_Times.begin();
        if (Clock::now() < next) {
            m_Wake.wait_until(lock, next);
            continue;
        }
        m_Times.erase(m_Times.begin());
        lock.unlock();
        m_Stop();
        lock.lock();
    }
}

} // namespace tessera

void StopWithDelay(int ms) {
    if (const std::shared_ptr<tessera::DelayedStop> stop = tessera::DelayedStop::Current())
        stop->StopAfter(ms);
}

void StopWithDelay1(int ms) {
    StopWithDelay(ms);
}
