// SPDX-License-Identifier: MIT
#pragma once

#include "shell/periodicthread.h"
#include "shell/pollpriority.h"

class MainWindow;

/// Gives the main window the beat of the input poll, every 30 ms. Made on the main thread, which it lends a real-time
/// priority from each beat until the poll is done, where the system grants it.
class UpdateInputThread : public tessera::PeriodicThread {
    Q_OBJECT
public:
    explicit UpdateInputThread(MainWindow* window);
    ~UpdateInputThread() override;
    /// Leaves word to end; does not wait. The thread may be started again afterwards.
    void EndThread();
    /// The window has handled a beat. Any thread.
    void PollDone() { m_Priority.GiveBack(); }

protected:
    void run() override;
    void Turn() override;

private:
    MainWindow* const m_pWindow;
    tessera::PollPriority m_Priority;
};
