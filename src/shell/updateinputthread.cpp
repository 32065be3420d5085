// SPDX-License-Identifier: MIT
#include "shell/updateinputthread.h"

#include "shell/mainwindow.h"

namespace {

constexpr int kPollMs = 30;

} // namespace

UpdateInputThread::UpdateInputThread(MainWindow* window)
    : PeriodicThread(kPollMs)
    , m_pWindow(window) {}

UpdateInputThread::~UpdateInputThread() {
    Finish();
}

void UpdateInputThread::EndThread() {
    SetEnd(true);
}

void UpdateInputThread::Turn() {
    m_pWindow->timerUpDate();
}
