// SPDX-License-Identifier: MIT
#pragma once

#include <condition_variable>
#include <functional>
#include <memory>
#include <mutex>
#include <vector>

class QObject;

namespace tessera {

/// Lets other threads have work done on the main thread and wait for it. Unlike a blocking connection the wait ends
/// when the main thread will not come to the work any more.
class MainThreadCalls {
public:
    /// Open at construction. `context` lives in the main thread and outlives this object.
    explicit MainThreadCalls(QObject* context);
    ~MainThreadCalls();
    MainThreadCalls(MainThreadCalls const&) = delete;
    MainThreadCalls& operator=(MainThreadCalls const&) = delete;

    /// Does `work` on the main thread and returns true when it is done; at once when this is the main thread. False
    /// when it was not done and never will be. `work` must not throw. Any thread.
    bool Run(std::function<void()> work);
    /// Work is accepted from now on. Main thread.
    void Open();
    /// Work that has not begun is dropped, and so is all that comes later from other threads. Main thread.
    void Close();

private:
    struct Call;

    void Do(Call& call);

    QObject* const m_pContext;
    std::mutex m_Lock;
    std::condition_variable m_Changed;
    std::vector<std::shared_ptr<Call>> m_Waiting; ///< not begun
    bool m_bOpen = true;
};

} // namespace tessera
