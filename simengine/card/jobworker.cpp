// SPDX-License-Identifier: GPL-2.0-or-later
// The worker's side of JobRunner.
#include "simengine/card/jobrunner.h"
#include "simengine/card/threadpolicy.h"

#include <algorithm>
#include <limits>
#include <memory>

namespace sim {

namespace {

/// The worker does not sleep for less: events nearer than this are done together at the next wake-up.
constexpr std::chrono::microseconds kBatchTime(250);
/// Above this factor, and without pace, the worker may never sleep; it must not do so above all other threads.
constexpr double kRealtimeFactor = 4.0;

} // namespace

void JobRunner::work() {
    nameTimedThread("sim-card");
    m_realtime = false;
    Lock lock(m_mutex);
    for (;;) {
        m_wake.wait(lock, [this] { return m_quit || m_job; });
        if (m_job)
            execute(lock);
        else
            return;
    }
}

void JobRunner::schedule() {
    const bool wanted = m_factor > 0.0 && m_factor <= kRealtimeFactor;
    if (wanted != m_realtime)
        m_realtime = setRealtime(wanted) ? wanted : m_realtime;
}

void JobRunner::execute(Lock& lock) {
    const Clock::time_point begin = Clock::now();
    const Point start = m_idle.at(begin);
    m_motion = {start, start, 0.0, 0.0, false, 0};
    m_motionUs = 0.0;
    m_passStartUs = 0.0;
    m_longestInputWait = {};
    m_clock.anchor(begin, 0.0, m_factor);
    m_activity = Activity::Running;
    const Job& job = *m_job;
    const JobSetup& setup = *m_setup;
    // The pens' curves are worked out here; others need not wait for that.
    lock.unlock();
    Executor executor(job, setup.pens, setup.plan, setup.loop, start, m_trace, setup.head, setup.fly);
    if (setup.penService)
        executor.haltAtPens();
    lock.lock();

    if (held() && !m_stop)
        holdLine(lock, executor);
    m_clock.anchor(Clock::now(), 0.0, m_factor);
    schedule();
    m_attention.store(m_stop, std::memory_order_relaxed);
    while (pace(lock, executor)) {
    }
    finish(executor);
}

void JobRunner::finish(Executor& executor) {
    m_lastOutcome = m_stop ? Outcome::Stopped : Outcome::Done;
    if (m_stop) {
        executor.stop();
        m_reaction.acted = Clock::now();
        m_reaction.passMs = executor.passMs();
    }
    publish(executor);
    m_lastTime = executor.time();
    m_lastTime.passes = executor.passes();
    *m_result = {m_lastOutcome, m_lastTime, m_stop ? m_stopOrders : m_ordersBefore};
    const Point end = executor.commanded();
    m_idle = {end, end, Clock::now(), 0.0, m_factor};
    m_activity = Activity::Idle;
    m_hold = false;
    m_stop = false;
    m_unheard = false;
    m_duePen.reset();
    m_job = nullptr;
    m_setup = nullptr;
    m_result = nullptr;
    m_changed.notify_all();
}

/// One turn of the worker: obeys what was asked, or executes up to now and sleeps until the next event. False when the
/// job is to end.
bool JobRunner::pace(Lock& lock, Executor& executor) {
    if (m_attention.load(std::memory_order_acquire))
        return obey(lock, executor);
    publish(executor);
    const SimClock clock = m_clock;
    lock.unlock();
    const Executor::Progress progress = executor.advance(clock.simAt(Clock::now()), m_attention);
    lock.lock();
    publish(executor);
    if (progress == Executor::Progress::Finished) {
        m_stop = false; // it was over before the stop came
        return false;
    }
    if (progress == Executor::Progress::PenDue)
        return awaitPen(lock, executor);
    if (progress == Executor::Progress::Caught) {
        const Clock::time_point due = m_clock.wallAt(executor.pieceEndUs(), Clock::now() + kBatchTime);
        m_wake.wait_until(lock, due, [this] { return m_attention.load(std::memory_order_relaxed); });
    }
    return true;
}

bool JobRunner::obey(Lock& lock, Executor& executor) {
    // The flag is still up: at most one piece more is done, so that a card which is late obeys as soon as any other.
    if (!m_clock.isUnpaced() &&
        executor.advance(m_clock.simAt(Clock::now()), m_attention) == Executor::Progress::Finished) {
        m_stop = false;
        return false;
    }
    m_attention.store(false, std::memory_order_relaxed);
    if (held() && !m_stop)
        holdLine(lock, executor);
    if (m_stop)
        return false;
    schedule();
    m_clock.anchor(Clock::now(), executor.nowUs(), m_factor);
    m_changed.notify_all(); // a hold that was taken back before it began
    return true;
}

/// Lets the caller's thread make the next pen ready, as long as it takes. False when the job is to end.
bool JobRunner::awaitPen(Lock& lock, Executor& executor) {
    m_duePen = executor.duePen();
    holdLine(lock, executor);
    if (m_stop)
        return false;
    executor.penReady();
    schedule();
    m_clock.anchor(Clock::now(), executor.nowUs(), m_factor);
    return true;
}

/// Holds the line where the head stands, until nothing holds the job and no pen is due.
void JobRunner::holdLine(Lock& lock, Executor& executor) {
    executor.cut();
    publish(executor);
    bool holding = false;
    while ((held() || m_duePen) && !m_stop) {
        if (held() && !holding) {
            m_reaction.acted = Clock::now();
            m_reaction.passMs = executor.passMs();
        }
        holding = held();
        m_activity = !holding                               ? Activity::Running
                     : m_state == RunState::Pause || m_hold ? Activity::Paused
                                                            : Activity::Waiting;
        noteInputWait(m_activity == Activity::Waiting && m_forInput);
        m_changed.notify_all();
        m_wake.wait(lock, [this] { return m_attention.load(std::memory_order_relaxed); });
        m_attention.store(false, std::memory_order_relaxed);
    }
    noteInputWait(false);
    m_activity = Activity::Running;
}

void JobRunner::noteInputWait(bool waits) {
    if (waits == m_inputWait)
        return;
    const Clock::time_point now = Clock::now();
    if (waits)
        m_inputWaitAt = now;
    else
        m_longestInputWait = std::max(m_longestInputWait, now - m_inputWaitAt);
    m_inputWait = waits;
}

void JobRunner::publish(const Executor& executor) {
    m_motion = executor.motion();
    m_motionUs = executor.nowUs();
    m_passStartUs = executor.nowUs() - executor.passMs() * 1000.0;
}

} // namespace sim
