// SPDX-License-Identifier: MIT
#pragma once

#include "run/runport.h"

#include <atomic>
#include <condition_variable>
#include <mutex>

namespace tessera {

/// One document marked once or again and again: pause, stop, the pause between repeats, the restart of a preview with
/// new data. Free of Qt. run() belongs to the worker; every other operation may be called from any thread.
///
/// A stop or pause is never lost: the card is set to run only together with the test that neither is wanted, so an
/// order that comes between two passes holds for the next.
class RunLoop {
public:
    explicit RunLoop(RunPort& port);

    /// Start button: starts; pauses a run that runs; resumes one that is paused. `delay` in ms between two repeats.
    void RunTriger(bool select, bool loop, int delay, MarkType type);
    /// Input: starts; resumes a paused run; leaves a run that runs alone.
    void RunTrigerOnly(bool select, bool loop, int delay, MarkType type, bool redLoopTrigger);
    void PauseTriger();
    void ReStartTriger();
    /// Stops the card and ends the run after the pass under way, one triggered out of a red-light loop too.
    void StopTriger();
    /// Stops the card so that the preview under way begins anew with changed data.
    void StopTrigerVirtual();
    void SetStopVirtual(bool on);
    bool IsStopVirtual() const;
    /// With it the next pass of a loop begins only when PassCounted() was called for the last one: passes that end
    /// faster than they are counted would otherwise pile up in front of the operator's orders. Off at construction.
    void SetHoldUntilCounted(bool hold);
    /// The last pass has been counted.
    void PassCounted();
    void SetEnableTriggerWhenRedLoop(bool on) { m_EnableTriggerWhenRedLoop = on; }

    /// Whether the way back to the red-light loop is still wanted that EndedToRedLoop told of: neither a stop nor
    /// another run has come since. Asked once.
    bool TakeReturn();

    /// From the order that starts a run to the moment the worker has decided to end it.
    bool IsActive() const;
    /// A run is paused and not being stopped.
    bool IsPaused() const;
    /// A run goes on: neither ended nor being stopped nor paused.
    bool IsGoingOn() const;
    /// The last pass that has ended was marked whole as far as this run knows: there was something to mark and nobody
    /// had ordered a stop. A stop given to the card alone is not seen here. False before the first.
    bool LastPassMarked() const { return m_bLastPassMarked; }

    /// The run; worker thread.
    void run();

private:
    bool Begin(bool select, bool loop, int delay, MarkType type, bool const* redLoopTrigger);
    bool Pause();
    bool Resume();
    void StopCard();
    bool SetRunUnlessStopped();
    void BeginPass();
    bool RunPass();
    bool MarkFileTraced();
    bool NextPassWanted(bool ok);
    void WaitTime(int ms);
    void Finish(bool ok);
    RunTraceData TraceData(bool ok) const;

    RunPort& m_Port;
    /// Guards the six flags below against the worker's test and set; it may be held during a call to the card, never
    /// while a job runs or an event is reported.
    mutable std::mutex m_Lock;
    std::condition_variable m_Wake;
    bool m_bActive = false;
    bool m_bHoldUntilCounted = false;
    bool m_bUncounted = false; ///< a pass has ended and not been counted yet
    bool m_bReturning = false; ///< the job triggered out of a red-light loop has ended, and the loop is not back yet
    std::atomic<bool> m_bPause{false};
    std::atomic<bool> m_bStop{false};
    std::atomic<bool> m_bSelect{false};
    std::atomic<bool> m_bLoop{false};
    std::atomic<int> m_nDelay{50};
    std::atomic<MarkType> m_MarkType{MarkTypeLaser};
    std::atomic<bool> m_EnableTriggerWhenRedLoop{false};
    std::atomic<bool> m_bLastPassMarked{false};
    mutable std::mutex m_StopLock;
    bool m_bStopVirtual = false;
};

} // namespace tessera
