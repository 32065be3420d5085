// SPDX-License-Identifier: GPL-2.0-or-later
#include "simengine/card/threadpolicy.h"

#include <pthread.h>
#include <sched.h>
#include <sys/prctl.h>

namespace sim {

void nameTimedThread(const char* name) {
    // Both are comforts: without them the thread works the same.
    (void)pthread_setname_np(pthread_self(), name);
    (void)prctl(PR_SET_TIMERSLACK, 1000UL, 0UL, 0UL, 0UL);
}

bool setRealtime(bool on) {
    sched_param parameter{};
    parameter.sched_priority = on ? sched_get_priority_min(SCHED_FIFO) + 9 : 0;
    return pthread_setschedparam(pthread_self(), on ? SCHED_FIFO : SCHED_OTHER, &parameter) == 0;
}

} // namespace sim
