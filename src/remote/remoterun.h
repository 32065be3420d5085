// SPDX-License-Identifier: MIT
#pragma once

#include <condition_variable>
#include <functional>
#include <mutex>

namespace tessera {

/// One run on a remote order, as its worker and those who stop it or wait for it share it. Any thread. Free of Qt.
class RemoteRun {
public:
    /// Worker, first of all: calls `setRun` unless a stop has come already; a stop that comes meanwhile waits, so that
    /// what it sets stands. False after a stop.
    bool BeginUnlessStopped(std::function<void()> const& setRun);
    /// A stop was ordered; to be told before the card is stopped.
    void Stop();
    bool IsStopped() const;
    /// Worker: the marking is over, the card is free for the next order.
    void End(bool result);
    bool IsEnded() const;
    /// Worker, last of all: what is left to do after the end is done too.
    void Leave();
    bool HasLeft() const;
    /// Returns when the worker has left, with the result.
    bool Wait() const;

private:
    mutable std::mutex m_Lock;
    mutable std::condition_variable m_Left;
    bool m_bStopped = false;
    bool m_bEnded = false;
    bool m_bLeft = false;
    bool m_bResult = false;
};

} // namespace tessera
