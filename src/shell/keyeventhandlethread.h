// SPDX-License-Identifier: MIT
#pragma once

#include "shell/periodicthread.h"

class MainWindow;

/// Passes pending direction keys on to the active document view, every 10 ms.
class KeyEventHandleThread : public tessera::PeriodicThread {
    Q_OBJECT
public:
    explicit KeyEventHandleThread(MainWindow* window);
    ~KeyEventHandleThread() override;
    void Start();
    /// Leaves word to end; does not wait.
    void Stop();

protected:
    void Turn() override;

private:
    MainWindow* const m_pWindow;
};
