// SPDX-License-Identifier: MIT
#include "tests/support/sleephook.h"

#include <cerrno>
#include <ctime>
#include <utility>

namespace {

thread_local tests::SleepHook const* current = nullptr;

} // namespace

namespace tests {

SleepHook::SleepHook(Instead instead)
    : m_instead(std::move(instead)) {
    current = this;
}

SleepHook::~SleepHook() {
    current = nullptr;
}

} // namespace tests

/// Found before the C library's by Qt and the standard library.
extern "C" __attribute__((visibility("default"))) int nanosleep(timespec const* time, timespec* left) {
    if (current) {
        current->sleep(std::chrono::seconds(time->tv_sec) + std::chrono::nanoseconds(time->tv_nsec));
        return 0;
    }
    const int error = ::clock_nanosleep(CLOCK_MONOTONIC, 0, time, left);
    if (error == 0)
        return 0;
    errno = error;
    return -1;
}
