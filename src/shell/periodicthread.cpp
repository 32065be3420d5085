// SPDX-License-Identifier: MIT
#include "shell/periodicthread.h"

#include "engine/marklog.h"

#include <chrono>

namespace tessera {

namespace {

/// A turn takes milliseconds; the bound is for one that hangs in a driver.
constexpr unsigned long kEndWaitMs = 10000;

} // namespace

PeriodicThread::PeriodicThread(int periodMs)
    : m_nPeriodMs(periodMs) {}

PeriodicThread::~PeriodicThread() {
    Finish();
}

void PeriodicThread::Finish() {
    SetFlag(m_bFinishing, true);
    if (!wait(kEndWaitMs)) {
        MarkLog::Instance()->ShowNote_Error(QStringLiteral("a background thread did not end when told"));
        terminate();
        wait();
    }
    SetFlag(m_bFinishing, false);
}

void PeriodicThread::SetEnd(bool end) {
    SetFlag(m_bEnd, end);
}

void PeriodicThread::SetFlag(bool& flag, bool on) {
    {
        const std::lock_guard<std::mutex> lock(m_Lock);
        flag = on;
    }
    m_Wake.notify_all();
}

void PeriodicThread::run() {
    std::unique_lock<std::mutex> lock(m_Lock);
    while (!m_bEnd && !m_bFinishing) {
        lock.unlock();
        Turn();
        lock.lock();
        m_Wake.wait_for(lock, std::chrono::milliseconds(m_nPeriodMs), [this] { return m_bEnd || m_bFinishing; });
    }
}

} // namespace tessera
