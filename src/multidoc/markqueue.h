// SPDX-License-Identifier: MIT
#pragma once

#include <chrono>
#include <condition_variable>
#include <deque>
#include <functional>
#include <mutex>
#include <string>

class QRulerView;

namespace tessera {

/// A document that waits to be marked or is being marked; not owned.
struct WaitingDoc {
    QRulerView* view = nullptr;
    std::string name;
};

/// The documents of a multi-document run, as those who trigger and stop them and the worker that marks them share
/// them. Any thread. Free of Qt.
///
/// A stop is never lost: the card is set to run only together with the test that no stop has come since the document
/// was taken, so a stop that comes between two steps of the worker holds for the document that it has in hand.
class MarkQueue {
public:
    /// A run begins or ends. The documents that wait stay.
    void SetRunning(bool running);
    bool IsRunning() const;

    /// Appends unless a document of this name waits already; tells whether it did.
    bool Add(QRulerView* view, std::string const& name);
    /// Takes the oldest out and has it in hand. Waits up to `longest` for one, not beyond the end of the run; null when
    /// there is none.
    QRulerView* Take(std::chrono::milliseconds longest);
    void Clear();
    std::size_t Count() const;
    /// The run is on and has a document in hand or waiting.
    bool HasWork() const;

    /// Worker: calls `setRun` unless the document in hand was stopped or the run has ended; a stop that comes meanwhile
    /// waits, so that what it sets stands. Tells whether it was called.
    bool BeginUnlessStopped(std::function<void()> const& setRun);
    /// The document in hand is still to be marked.
    bool IsWanted() const;
    /// Worker: nothing is in hand any more.
    void Done();
    /// The document in hand is not to be marked, or not on; to be told before the card is stopped.
    void StopCurrent();
    /// Name of the document in hand, empty without one.
    std::string CurrentName() const;

    /// Takes the view out of those that wait. True when it is the one in hand, which is then stopped.
    bool Forget(QRulerView const* view);
    /// Returns when the view is not in hand any more.
    void WaitUntilDone(QRulerView const* view) const;

private:
    mutable std::mutex m_Lock;
    mutable std::condition_variable m_Changed;
    std::deque<WaitingDoc> m_Docs;
    WaitingDoc m_Current;
    bool m_bRunning = false;
    bool m_bStopped = false; ///< the document in hand
};

} // namespace tessera
