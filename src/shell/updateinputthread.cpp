// SPDX-License-Identifier: MIT
#include "shell/updateinputthread.h"

#include "shell/mainwindow.h"

#include <pthread.h>
#include <sched.h>

namespace {

constexpr int kPollMs = 30;
/// Below the card's worker, above everything that is not timed.
constexpr int kPollPriority = 5;
/// Of the main thread while a poll is wanted: the beat must come through a frame that is being drawn.
constexpr int kWindowPriority = 4;

/// A door must be seen in time on a busy board too. Where the process may not ask for it the poll runs as it is.
void askForRealTime() {
    sched_param parameter{};
    parameter.sched_priority = sched_get_priority_min(SCHED_FIFO) + kPollPriority;
    (void)pthread_setschedparam(pthread_self(), SCHED_FIFO, &parameter);
}

} // namespace

UpdateInputThread::UpdateInputThread(MainWindow* window)
    : PeriodicThread(kPollMs)
    , m_pWindow(window)
    , m_Priority(kWindowPriority) {}

UpdateInputThread::~UpdateInputThread() {
    Finish();
}

void UpdateInputThread::EndThread() {
    SetEnd(true);
}

/// A start takes back a word to end that came before it.
void UpdateInputThread::run() {
    askForRealTime();
    SetEnd(false);
    PeriodicThread::run();
}

void UpdateInputThread::Turn() {
    m_Priority.Lend();
    m_pWindow->timerUpDate();
}
