// SPDX-License-Identifier: MIT
#pragma once

#include "shell/periodicthread.h"

class MainWindow;

/// Gives the main window the beat of the input poll, every 30 ms.
class UpdateInputThread : public tessera::PeriodicThread {
    Q_OBJECT
public:
    explicit UpdateInputThread(MainWindow* window);
    ~UpdateInputThread() override;
    /// Leaves word to end; does not wait. The thread may be started again afterwards.
    void EndThread();

protected:
    void run() override;
    void Turn() override;

private:
    MainWindow* const m_pWindow;
};
