// SPDX-License-Identifier: MIT
#pragma once

#include <ctime>

namespace bench {

/// ms of work of the calling thread so far: what other programs take of the machine meanwhile is not counted.
inline double threadMs() {
    timespec time{};
    ::clock_gettime(CLOCK_THREAD_CPUTIME_ID, &time);
    return static_cast<double>(time.tv_sec) * 1e3 + static_cast<double>(time.tv_nsec) / 1e6;
}

} // namespace bench
