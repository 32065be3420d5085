// SPDX-License-Identifier: MIT
#include "shell/pollpriority.h"

#include <sched.h>
#include <unistd.h>

namespace tessera {

namespace {

int realTimePriority(int aboveLeast) {
    return sched_getscheduler(0) == SCHED_OTHER ? sched_get_priority_min(SCHED_FIFO) + aboveLeast : 0;
}

bool schedule(pid_t thread, int policy, int priority) {
    sched_param parameter{};
    parameter.sched_priority = priority;
    return sched_setscheduler(thread, policy, &parameter) == 0;
}

} // namespace

PollPriority::PollPriority(int priority)
    : m_nThread(gettid())
    , m_nPriority(realTimePriority(priority)) {}

PollPriority::~PollPriority() {
    GiveBack();
}

void PollPriority::Lend(Clock::time_point now) {
    const std::lock_guard<std::mutex> lock(m_Lock);
    if (m_nPriority == 0 || m_bOverdue)
        return;
    if (!m_bLent) {
        m_bLent = schedule(m_nThread, SCHED_FIFO | SCHED_RESET_ON_FORK, m_nPriority);
        m_Since = now;
    } else if (now - m_Since >= kLongest) {
        TakeBack();
        m_bOverdue = true;
    }
}

void PollPriority::GiveBack() {
    const std::lock_guard<std::mutex> lock(m_Lock);
    m_bOverdue = false;
    if (m_bLent)
        TakeBack();
}

/// Without the right to it the mark that keeps the loan from being inherited stays; it then has nothing to keep.
void PollPriority::TakeBack() {
    if (!schedule(m_nThread, SCHED_OTHER, 0))
        schedule(m_nThread, SCHED_OTHER | SCHED_RESET_ON_FORK, 0);
    m_bLent = false;
}

} // namespace tessera
