// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include <chrono>
#include <mutex>

#include <pthread.h>

namespace sim {

/// A mutex whose holder runs at the priority of the highest thread that waits for it.
///
/// The card's worker has real-time priority where it may; its callers have not. With a plain mutex a busy machine can
/// take the processor away from a caller that holds the lock and so hold up the worker for many milliseconds. Works
/// with std::unique_lock and std::lock_guard.
class PriorityMutex {
public:
    PriorityMutex();
    ~PriorityMutex();
    PriorityMutex(const PriorityMutex&) = delete;
    PriorityMutex& operator=(const PriorityMutex&) = delete;

    void lock();
    bool try_lock();
    void unlock();

private:
    friend class PriorityCondition;
    pthread_mutex_t m_mutex;
};

/// Condition variable for a PriorityMutex; deadlines are on the steady clock.
class PriorityCondition {
public:
    using Lock = std::unique_lock<PriorityMutex>;

    PriorityCondition();
    ~PriorityCondition();
    PriorityCondition(const PriorityCondition&) = delete;
    PriorityCondition& operator=(const PriorityCondition&) = delete;

    void notify_one();
    void notify_all();
    void wait(Lock& lock);
    /// May return earlier without a reason.
    void wait_until(Lock& lock, std::chrono::steady_clock::time_point deadline);

    template<typename Predicate>
    void wait(Lock& lock, Predicate done) {
        while (!done())
            wait(lock);
    }
    /// False when the deadline has passed and the predicate does not hold.
    template<typename Predicate>
    bool wait_until(Lock& lock, std::chrono::steady_clock::time_point deadline, Predicate done) {
        while (!done()) {
            if (std::chrono::steady_clock::now() >= deadline)
                return false;
            wait_until(lock, deadline);
        }
        return true;
    }

private:
    pthread_cond_t m_condition;
};

} // namespace sim
