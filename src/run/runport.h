// SPDX-License-Identifier: MIT
#pragma once

#include "engine/marktypes.h"

namespace tessera {

/// What the dialog is told of a run. The order in which a worker reports is the order of the run.
enum class RunEvent {
    Started,        ///< a pass begins
    Resumed,        ///< a paused job goes on
    Paused,         ///< the job is held
    PassDone,       ///< a pass has ended, also one that marked nothing
    Ended,          ///< the run is over
    EndedToRedLoop, ///< a run triggered out of a red-light loop is over: the loop is to go on
};

/// Places of a triggered run that leave a line in the debug window.
enum class RunTrace { Triggered, BeforeFile, AfterFile, Ended };

/// State of a run at the place of a trace.
struct RunTraceData {
    MarkType type = MarkTypeLaser;
    bool loop = false;
    bool ok = false; ///< result of the last pass
    bool stop = false;
};

/// What a run needs of the machine and of those who watch it. The functions that name the card are called from the
/// worker and from the thread that gives an order, also at the same time; `event` likewise.
class RunPort {
public:
    virtual ~RunPort() = default;

    /// Starts the worker that calls RunLoop::run(). When a former run is still leaving it, waits for that first.
    virtual void startWorker() = 0;
    /// Gives the card the pause between two repeats, ms.
    virtual void loopMarkDelay(double ms) = 0;
    virtual void setMarkStatus(MarkStatus status) = 0;
    /// Stops the card; when it has returned nothing more is marked.
    virtual void stopMark() = 0;
    /// Returns when the card has settled after a stop.
    virtual void waitMarkStopped() = 0;
    /// The card repeats a looped job by itself.
    virtual bool bufferLoop() = 0;
    /// Marks the current document once, on the calling thread; false when there was nothing to run.
    virtual bool markFile(MarkType type, bool select, bool loop) = 0;
    virtual void event(RunEvent event) = 0;
    virtual void trace(RunTrace place, RunTraceData const& data) = 0;
};

} // namespace tessera
