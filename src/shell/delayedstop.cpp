// SPDX-License-Identifier: MIT
#include "shell/delayedstop.h"

#include "shell/mainwindow.h"

namespace tessera {

DelayedStop::DelayedStop(std::function<void()> stop)
    : m_Stop(std::move(stop)) {}

DelayedStop::~DelayedStop() {
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
    if (MainWindow* window = MainWindow::Instance())
        window->StopRunAfter(ms);
}

void StopWithDelay1(int ms) {
    StopWithDelay(ms);
}
