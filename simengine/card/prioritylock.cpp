// SPDX-License-Identifier: GPL-2.0-or-later
#include "simengine/card/prioritylock.h"

#include <algorithm>
#include <cerrno>
#include <system_error>

#include <time.h>

namespace sim {

namespace {

void check(int result, const char* what) {
    if (result != 0)
        throw std::system_error(result, std::generic_category(), what);
}

} // namespace

PriorityMutex::PriorityMutex() {
    pthread_mutexattr_t attributes;
    check(pthread_mutexattr_init(&attributes), "mutex attributes");
    // A system without inheritance has a plain mutex: right all the same, only later when the machine is busy.
    (void)pthread_mutexattr_setprotocol(&attributes, PTHREAD_PRIO_INHERIT);
    int result = pthread_mutex_init(&m_mutex, &attributes);
    if (result == ENOTSUP)
        result = pthread_mutex_init(&m_mutex, nullptr);
    pthread_mutexattr_destroy(&attributes);
    check(result, "mutex");
}

PriorityMutex::~PriorityMutex() {
    pthread_mutex_destroy(&m_mutex);
}

void PriorityMutex::lock() {
    check(pthread_mutex_lock(&m_mutex), "mutex lock");
}

bool PriorityMutex::try_lock() {
    return pthread_mutex_trylock(&m_mutex) == 0;
}

void PriorityMutex::unlock() {
    pthread_mutex_unlock(&m_mutex);
}

PriorityCondition::PriorityCondition() {
    pthread_condattr_t attributes;
    check(pthread_condattr_init(&attributes), "condition attributes");
    int result = pthread_condattr_setclock(&attributes, CLOCK_MONOTONIC);
    if (result == 0)
        result = pthread_cond_init(&m_condition, &attributes);
    pthread_condattr_destroy(&attributes);
    check(result, "condition");
}

PriorityCondition::~PriorityCondition() {
    pthread_cond_destroy(&m_condition);
}

void PriorityCondition::notify_one() {
    pthread_cond_signal(&m_condition);
}

void PriorityCondition::notify_all() {
    pthread_cond_broadcast(&m_condition);
}

void PriorityCondition::wait(Lock& lock) {
    check(pthread_cond_wait(&m_condition, &lock.mutex()->m_mutex), "condition wait");
}

void PriorityCondition::wait_until(Lock& lock, std::chrono::steady_clock::time_point deadline) {
    using namespace std::chrono;
    const nanoseconds since = std::max(duration_cast<nanoseconds>(deadline.time_since_epoch()), nanoseconds(0));
    const seconds whole = duration_cast<seconds>(since);
    timespec time{};
    time.tv_sec = static_cast<time_t>(whole.count());
    time.tv_nsec = static_cast<long>((since - whole).count());
    const int result = pthread_cond_timedwait(&m_condition, &lock.mutex()->m_mutex, &time);
    if (result != ETIMEDOUT)
        check(result, "condition wait");
}

} // namespace sim
