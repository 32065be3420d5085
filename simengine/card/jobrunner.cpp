// SPDX-License-Identifier: GPL-2.0-or-later
#include "simengine/card/jobrunner.h"

#include <algorithm>
#include <cmath>

namespace sim {

namespace {

/// A stop is StopMark, state Stop, StopMark; the card has settled this long after the last of them,
constexpr std::chrono::milliseconds kSettleTime(10);
/// or this long after a stop that is not followed up: the thread that stops may lose the processor in between.
constexpr std::chrono::milliseconds kFollowUpTime(500);
constexpr std::chrono::seconds kSettleLimit(1);

} // namespace

Point JobRunner::IdleMove::at(Clock::time_point now) const {
    const double passed = std::chrono::duration<double, std::micro>(now - start).count() * factor;
    return passed >= us || factor <= 0.0 ? to : between(from, to, passed / us);
}

JobRunner::JobRunner(Trace& trace)
    : m_trace(trace) {}

JobRunner::~JobRunner() {
    close();
}

void JobRunner::open() {
    const std::lock_guard<std::mutex> opening(m_openMutex);
    const Lock lock(m_mutex);
    if (m_open)
        return;
    m_quit = false;
    m_thread = std::thread([this] { work(); });
    m_open = true;
}

void JobRunner::close() {
    const std::lock_guard<std::mutex> opening(m_openMutex);
    Lock lock(m_mutex);
    if (!m_open)
        return;
    m_open = false;
    m_state = RunState::Stop;
    m_reboot = 0;
    requestStop(lock);
    m_quit = true;
    m_wake.notify_one();
    std::thread worker = std::move(m_thread);
    lock.unlock();
    worker.join();
}

bool JobRunner::isOpen() const {
    const Lock lock(m_mutex);
    return m_open;
}

std::uint64_t JobRunner::beginReboot() {
    Lock lock(m_mutex);
    m_changed.wait(lock, [this] { return !m_reboot || !m_open; });
    if (!m_open)
        return 0;
    const std::uint64_t number = m_reboot = ++m_reboots;
    requestStop(lock);
    return number;
}

void JobRunner::endReboot(std::uint64_t number) {
    const Lock lock(m_mutex);
    if (m_reboot == number)
        m_reboot = 0;
    m_changed.notify_all();
}

bool JobRunner::isRebooting() const {
    const Lock lock(m_mutex);
    return m_reboot != 0;
}

JobRunner::Ticket JobRunner::arm() const {
    const Lock lock(m_mutex);
    return {m_stops, !m_open || m_reboot || m_state == RunState::Stop};
}

JobRunner::Ticket JobRunner::armDirect() const {
    const Lock lock(m_mutex);
    return {m_stops, !m_open || m_reboot};
}

RunResult JobRunner::run(const Job& job, const JobSetup& setup, const Ticket& ticket) {
    if (ticket.refused || !Planner::hasWork(job))
        return {};
    Lock lock(m_mutex);
    if (!m_open || m_reboot || m_job || onWorker())
        return {};
    // A service that outlives its stopped job would undo what the one of this job does.
    m_changed.wait(lock, [this, &ticket] { return !m_serving || !m_open || m_stops != ticket.stops; });
    if (!m_open || m_reboot || m_job)
        return {};
    if (m_stops != ticket.stops)
        return {Outcome::Stopped, {}, m_stopOrders};
    Trace::Blocks old = m_trace.takeAll();
    m_job = &job;
    m_setup = &setup;
    RunResult result;
    m_result = &result;
    m_stop = false;
    m_unheard = false;
    m_hold = false;
    m_orderedAt.reset();
    m_ordersBefore = m_stopOrders;
    const std::uint64_t number = ++m_jobs;
    alert();
    lock.unlock();
    old.clear(); // beside the worker, which has the job now
    lock.lock();
    if (setup.penService)
        servePens(lock, setup, number);
    awaitEnd(lock, number);
    lock.unlock();
    m_trace.takeOld();
    return result;
}

/// On the thread of the job's caller, until the job ends. It may end within a service; then no other begins meanwhile.
void JobRunner::servePens(Lock& lock, const JobSetup& setup, std::uint64_t job) {
    const auto hasEnded = [this, job] { return !m_job || m_jobs != job; };
    for (;;) {
        m_changed.wait(lock, [this, hasEnded] { return hasEnded() || m_duePen; });
        if (hasEnded())
            return;
        const int pen = *m_duePen;
        m_serving = true;
        lock.unlock();
        try {
            setup.penService(pen, setup.pens[static_cast<std::size_t>(pen)]);
        } catch (...) {
            lock.lock();
            m_serving = false;
            m_changed.notify_all();
            // The worker has the job, which is the caller's, and must not mark with a pen that is not ready.
            if (!hasEnded())
                endJob(lock);
            throw;
        }
        lock.lock();
        m_serving = false;
        m_duePen.reset();
        m_changed.notify_all();
        alert();
    }
}

void JobRunner::setState(RunState state) {
    Lock lock(m_mutex);
    m_state = state;
    alert();
    if (state == RunState::Stop) {
        m_lastStopByState = true;
        countOrder();
        requestStop(lock);
    } else if (state == RunState::Pause)
        awaitHold(lock);
}

RunState JobRunner::state() const {
    const Lock lock(m_mutex);
    return m_state;
}

void JobRunner::stop() {
    Lock lock(m_mutex);
    m_lastStopByState = false;
    countOrder();
    requestStop(lock);
}

void JobRunner::countOrder() {
    const Clock::time_point now = Clock::now();
    if (m_orderedAt && now - *m_orderedAt < kFollowUpTime)
        return;
    ++m_stopOrders;
    m_orderedAt = now;
}

std::uint64_t JobRunner::stopOrders() const {
    const Lock lock(m_mutex);
    return m_stopOrders;
}

void JobRunner::requestStop(Lock& lock) {
    ++m_stops;
    m_lastStop = Clock::now();
    m_changed.notify_all(); // for who waits for the card to settle
    if (!m_job)
        return;
    if (m_deaf && m_open && !m_reboot) {
        m_unheard = true;
        return;
    }
    endJob(lock);
}

/// Ends the job on the card and waits until the worker has done with it.
void JobRunner::endJob(Lock& lock) {
    if (!m_stop) {
        m_stop = true;
        m_reaction.asked = Clock::now();
    }
    alert();
    awaitEnd(lock, m_jobs);
}

void JobRunner::hold() {
    Lock lock(m_mutex);
    if (!m_job)
        return;
    m_hold = true;
    alert();
    awaitHold(lock);
}

void JobRunner::release() {
    const Lock lock(m_mutex);
    m_hold = false;
    alert();
}

void JobRunner::setDeaf(bool on) {
    Lock lock(m_mutex);
    m_deaf = on;
    if (!on && m_unheard)
        requestStop(lock);
}

double JobRunner::longestInputWaitMs() const {
    const Lock lock(m_mutex);
    const Clock::duration now = m_inputWait ? Clock::now() - m_inputWaitAt : Clock::duration::zero();
    return std::chrono::duration<double, std::milli>(std::max(now, m_longestInputWait)).count();
}

void JobRunner::forgetWaits() {
    const Lock lock(m_mutex);
    m_longestInputWait = {};
    m_inputWaitAt = Clock::now();
}

void JobRunner::setWaiting(bool on, bool input) {
    Lock lock(m_mutex);
    m_waiting = on;
    m_forInput = input;
    alert();
    if (on)
        awaitHold(lock);
}

bool JobRunner::waitSettled() {
    Lock lock(m_mutex);
    const Clock::time_point limit = Clock::now() + kSettleLimit;
    // A job that is started between two of the calls would fall to the second.
    while (Clock::now() < limit) {
        const bool ending = (m_stop || m_unheard) && m_job && !onWorker();
        const bool complete = m_state == RunState::Stop && !m_lastStopByState;
        const Clock::time_point settled = m_lastStop + (complete ? kSettleTime : kFollowUpTime);
        if (!ending && (!m_open || m_stops == 0 || settled <= Clock::now()))
            return true;
        m_changed.wait_until(lock, ending ? limit : std::min(limit, settled));
    }
    return false;
}

void JobRunner::setSpeed(double factor) {
    if (!(factor >= 0.0) || !std::isfinite(factor))
        return;
    Lock lock(m_mutex);
    const Clock::time_point now = Clock::now();
    m_idle.from = m_idle.at(now);
    const double left = distanceMm(m_idle.from, m_idle.to);
    const double whole = std::chrono::duration<double, std::micro>(now - m_idle.start).count() * m_idle.factor;
    m_idle.us = left > 0.0 ? std::max(0.0, m_idle.us - whole) : 0.0;
    m_idle.start = now;
    m_idle.factor = factor;
    m_factor = factor;
    alert();
}

double JobRunner::speed() const {
    const Lock lock(m_mutex);
    return m_factor;
}

bool JobRunner::moveTo(Point target, double speed) {
    if (!std::isfinite(target.x) || !std::isfinite(target.y))
        return false;
    const double mmPerS = std::isnan(speed) ? kMinSpeed : std::clamp(speed, kMinSpeed, kMaxSpeed);
    const Lock lock(m_mutex);
    if (!m_open || m_reboot || m_job)
        return false;
    const Clock::time_point now = Clock::now();
    m_idle.from = m_idle.at(now);
    m_idle.to = target;
    m_idle.start = now;
    m_idle.us = distanceMm(m_idle.from, target) / mmPerS * 1e6;
    m_idle.factor = m_factor;
    return true;
}

std::optional<Point> JobRunner::restingPlace() const {
    const Lock lock(m_mutex);
    if (!m_open || m_job)
        return std::nullopt;
    return m_idle.to;
}

HeadState JobRunner::head() const {
    const Lock lock(m_mutex);
    HeadState head;
    head.activity = m_activity;
    if (m_activity == Activity::Idle) {
        head.at = m_idle.at(Clock::now());
        head.passMs = (m_motionUs - m_passStartUs) / 1000.0;
        return head;
    }
    if (m_job)
        head.kind = m_job->kind;
    double us = m_motionUs;
    if (m_activity == Activity::Running && !m_clock.isUnpaced())
        us = std::clamp(m_clock.simAt(Clock::now()), us, std::max(us, m_motion.endUs));
    head.at = m_motion.at(us);
    head.laser = m_activity == Activity::Running && m_motion.laser;
    head.pen = m_motion.pen;
    head.passMs = (us - m_passStartUs) / 1000.0;
    return head;
}

JobTime JobRunner::lastTime() const {
    const Lock lock(m_mutex);
    return m_lastTime;
}

Outcome JobRunner::lastOutcome() const {
    const Lock lock(m_mutex);
    return m_lastOutcome;
}

std::uint64_t JobRunner::jobs() const {
    const Lock lock(m_mutex);
    return m_jobs;
}

std::uint64_t JobRunner::endedJobs() const {
    const Lock lock(m_mutex);
    return m_jobs - (m_job ? 1 : 0);
}

Reaction JobRunner::lastReaction() const {
    const Lock lock(m_mutex);
    return m_reaction;
}

void JobRunner::alert() {
    m_attention.store(true, std::memory_order_release);
    m_wake.notify_one();
}

void JobRunner::awaitEnd(Lock& lock, std::uint64_t job) {
    if (onWorker())
        return;
    m_changed.wait(lock, [this, job] { return !m_job || m_jobs != job; });
}

void JobRunner::awaitHold(Lock& lock) {
    if (!m_job || onWorker())
        return;
    const auto holding = [this] { return m_activity == Activity::Paused || m_activity == Activity::Waiting; };
    if (!holding())
        m_reaction.asked = Clock::now();
    const std::uint64_t job = m_jobs;
    m_changed.wait(lock, [this, job, holding] { return !m_job || m_jobs != job || holding() || !held(); });
}

} // namespace sim
