// SPDX-License-Identifier: MIT
#include "run/runloop.h"

#include <chrono>
#include <utility>

namespace tessera {

RunLoop::RunLoop(RunPort& port)
    : m_Port(port) {}

void RunLoop::RunTriger(bool select, bool loop, int delay, MarkType type) {
    if (Begin(select, loop, delay, type, nullptr) || Resume())
        return;
    Pause();
}

void RunLoop::RunTrigerOnly(bool select, bool loop, int delay, MarkType type, bool redLoopTrigger) {
    if (!Begin(select, loop, delay, type, &redLoopTrigger))
        Resume();
}

void RunLoop::PauseTriger() {
    Pause();
}

void RunLoop::ReStartTriger() {
    Resume();
}

void RunLoop::StopTriger() {
    {
        const std::lock_guard<std::mutex> lock(m_Lock);
        m_bReturning = false;
        if (!m_bActive)
            return;
        StopCard();
        m_bStop = true;
        m_EnableTriggerWhenRedLoop = false;
    }
    m_Wake.notify_all();
}

/// A job with the laser is not cut off for new data: it may have taken the preview's place since the key was pressed.
void RunLoop::StopTrigerVirtual() {
    const std::lock_guard<std::mutex> lock(m_Lock);
    if (!m_bActive || m_MarkType == MarkTypeLaser)
        return;
    SetStopVirtual(true);
    StopCard();
}

bool RunLoop::TakeReturn() {
    const std::lock_guard<std::mutex> lock(m_Lock);
    return std::exchange(m_bReturning, false);
}

void RunLoop::SetStopVirtual(bool on) {
    const std::lock_guard<std::mutex> lock(m_StopLock);
    m_bStopVirtual = on;
}

bool RunLoop::IsStopVirtual() const {
    const std::lock_guard<std::mutex> lock(m_StopLock);
    return m_bStopVirtual;
}

void RunLoop::SetHoldUntilCounted(bool hold) {
    {
        const std::lock_guard<std::mutex> lock(m_Lock);
        m_bHoldUntilCounted = hold;
    }
    m_Wake.notify_all();
}

void RunLoop::PassCounted() {
    {
        const std::lock_guard<std::mutex> lock(m_Lock);
        m_bUncounted = false;
    }
    m_Wake.notify_all();
}

bool RunLoop::IsActive() const {
    const std::lock_guard<std::mutex> lock(m_Lock);
    return m_bActive;
}

bool RunLoop::IsPaused() const {
    const std::lock_guard<std::mutex> lock(m_Lock);
    return m_bActive && m_bPause && !m_bStop;
}

bool RunLoop::IsGoingOn() const {
    const std::lock_guard<std::mutex> lock(m_Lock);
    return m_bActive && !m_bPause && !m_bStop;
}

void RunLoop::run() {
    m_Port.loopMarkDelay(static_cast<double>(m_nDelay));
    if (m_EnableTriggerWhenRedLoop) {
        SetRunUnlessStopped();
        m_Port.trace(RunTrace::Triggered, TraceData(false));
    }
    bool ok = false;
    do {
        ok = RunPass();
    } while (NextPassWanted(ok));
    Finish(ok);
}

/// Starts a run when none is active and tells whether it did.
bool RunLoop::Begin(bool select, bool loop, int delay, MarkType type, bool const* redLoopTrigger) {
    {
        const std::lock_guard<std::mutex> lock(m_Lock);
        if (m_bActive)
            return false;
        m_bPause = false;
        m_bStop = false;
        m_bReturning = false;
        SetStopVirtual(false);
        m_bSelect = select;
        m_bLoop = loop;
        m_nDelay = delay;
        m_MarkType = type;
        if (redLoopTrigger)
            m_EnableTriggerWhenRedLoop = *redLoopTrigger;
        m_bUncounted = false;
        m_bActive = true;
    }
    m_Port.startWorker();
    return true;
}

/// Holds a run that goes on and tells whether it did.
bool RunLoop::Pause() {
    {
        const std::lock_guard<std::mutex> lock(m_Lock);
        if (!m_bActive || m_bPause)
            return false;
        if (m_bStop)
            return true;
        m_Port.setMarkStatus(MarkStatusPause);
        m_bPause = true;
    }
    m_Wake.notify_all();
    m_Port.event(RunEvent::Paused);
    return true;
}

/// Lets a paused run go on and tells whether one was paused.
bool RunLoop::Resume() {
    {
        const std::lock_guard<std::mutex> lock(m_Lock);
        if (!m_bActive || !m_bPause)
            return false;
        if (m_bStop)
            return true;
        m_Port.setMarkStatus(MarkStatusRun);
        m_bPause = false;
    }
    m_Wake.notify_all();
    m_Port.event(RunEvent::Resumed);
    return true;
}

/// The card is stopped on both sides of the change of state: the first call ends what it puts out now, the second what
/// the job handed over before it saw the new state.
void RunLoop::StopCard() {
    m_Port.stopMark();
    m_Port.setMarkStatus(MarkStatusStop);
    m_Port.stopMark();
}

/// A pause is waited out first.
bool RunLoop::SetRunUnlessStopped() {
    std::unique_lock<std::mutex> lock(m_Lock);
    m_Wake.wait(lock, [this] { return m_bStop || !m_bPause; });
    if (!m_bStop)
        m_Port.setMarkStatus(MarkStatusRun);
    return !m_bStop;
}

/// A pause that came after the last pass holds the next one back, and so does a pass that is not counted yet.
void RunLoop::BeginPass() {
    std::unique_lock<std::mutex> lock(m_Lock);
    m_Wake.wait(lock, [this] { return m_bStop || (!m_bPause && !(m_bHoldUntilCounted && m_bUncounted)); });
    if (!m_bStop)
        m_Port.setMarkStatus(MarkStatusRun);
}

/// An order to take new data that comes between two jobs makes the card refuse the second: it is run again too.
bool RunLoop::RunPass() {
    BeginPass();
    m_Port.event(RunEvent::Started);
    bool ok = MarkFileTraced();
    while (m_MarkType != MarkTypeLaser && IsStopVirtual()) {
        m_Port.waitMarkStopped();
        SetStopVirtual(false);
        m_Port.waitMarkStopped();
        if (!SetRunUnlessStopped())
            break;
        ok = MarkFileTraced();
    }
    {
        const std::lock_guard<std::mutex> lock(m_Lock);
        m_bUncounted = true;
        m_bLastPassMarked = ok && !m_bStop;
    }
    m_Port.event(RunEvent::PassDone);
    return ok;
}

bool RunLoop::MarkFileTraced() {
    const bool traced = m_EnableTriggerWhenRedLoop;
    if (traced)
        m_Port.trace(RunTrace::BeforeFile, TraceData(false));
    const bool ok = !m_bStop && m_Port.markFile(m_MarkType, m_bSelect, m_bLoop);
    if (traced)
        m_Port.trace(RunTrace::AfterFile, TraceData(ok));
    return ok;
}

bool RunLoop::NextPassWanted(bool ok) {
    if (!m_bLoop)
        return false;
    const bool bufferLoop = m_Port.bufferLoop();
    if (!bufferLoop) {
        WaitTime(m_nDelay);
        if (m_bStop)
            return false;
    }
    return ok && !bufferLoop;
}

/// Waits `ms` milliseconds without the time spent in pause, or until a stop. With 0 or less only a stop ends it: that
/// is what a loop delay of 0 means.
void RunLoop::WaitTime(int ms) {
    using Clock = std::chrono::steady_clock;
    std::unique_lock<std::mutex> lock(m_Lock);
    Clock::duration left = std::chrono::milliseconds(ms);
    while (!m_bStop) {
        if (m_bPause) {
            m_Wake.wait(lock, [this] { return !m_bPause || m_bStop; });
        } else if (ms <= 0) {
            m_Wake.wait(lock, [this] { return m_bPause || m_bStop; });
        } else {
            const Clock::time_point from = Clock::now();
            m_Wake.wait_until(lock, from + left, [this] { return m_bPause || m_bStop; });
            left -= Clock::now() - from;
            if (left <= Clock::duration::zero())
                return;
        }
    }
}

void RunLoop::Finish(bool ok) {
    RunTraceData data;
    bool triggered = false;
    {
        const std::lock_guard<std::mutex> lock(m_Lock);
        data = TraceData(ok);
        triggered = m_EnableTriggerWhenRedLoop.exchange(false);
        m_bReturning = triggered;
        m_bActive = false;
        m_Port.setMarkStatus(MarkStatusStop);
    }
    if (triggered)
        m_Port.trace(RunTrace::Ended, data);
    m_Port.event(triggered ? RunEvent::EndedToRedLoop : RunEvent::Ended);
}

RunTraceData RunLoop::TraceData(bool ok) const {
    return {m_MarkType, m_bLoop, ok, m_bStop};
}

} // namespace tessera
