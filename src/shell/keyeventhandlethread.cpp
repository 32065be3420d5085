// SPDX-License-Identifier: MIT
#include "shell/keyeventhandlethread.h"

#include "shell/mainwindow.h"

namespace {

constexpr int kPeriodMs = 10;

} // namespace

KeyEventHandleThread::KeyEventHandleThread(MainWindow* window)
    : PeriodicThread(kPeriodMs)
    , m_pWindow(window) {}

KeyEventHandleThread::~KeyEventHandleThread() {
    Finish();
}

void KeyEventHandleThread::Start() {
    Finish();
    SetEnd(false);
    start();
}

void KeyEventHandleThread::Stop() {
    SetEnd(true);
}

void KeyEventHandleThread::Turn() {
    m_pWindow->PassDirKeys();
}
