// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

namespace sim {

/// Names the calling thread and lets its timed waits end without the usual 50 µs of slack.
void nameTimedThread(const char* name);

/// Puts the calling thread under real-time scheduling (SCHED_FIFO, low priority), or back under the normal one.
/// False when the process may not; the thread then goes on as it is, only its wake-ups come later on a busy machine.
bool setRealtime(bool on);

} // namespace sim
