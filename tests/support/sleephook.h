// SPDX-License-Identifier: MIT
#pragma once

#include <chrono>
#include <functional>

namespace tests {

/// Takes the place of the sleeps of the thread that makes it: while it lives, QThread::msleep and the like call
/// `instead` with the time asked for and return at once. Waits for conditions and events sleep as ever. One for a
/// thread at a time; it ends on the thread that made it.
class SleepHook {
public:
    using Instead = std::function<void(std::chrono::nanoseconds)>;

    explicit SleepHook(Instead instead);
    ~SleepHook();
    SleepHook(SleepHook const&) = delete;
    SleepHook& operator=(SleepHook const&) = delete;

    void sleep(std::chrono::nanoseconds time) const { m_instead(time); }

private:
    Instead m_instead;
};

} // namespace tests
