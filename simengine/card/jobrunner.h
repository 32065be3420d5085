// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "simengine/card/executor.h"
#include "simengine/card/job.h"
#include "simengine/card/penparams.h"
#include "simengine/card/prioritylock.h"
#include "simengine/card/simclock.h"
#include "simengine/card/timemodel.h"
#include "simengine/card/trace.h"

#include <atomic>
#include <chrono>
#include <cstdint>
#include <functional>
#include <memory>
#include <mutex>
#include <optional>
#include <thread>

namespace sim {

/// Run state that the host sets and the card obeys.
enum class RunState { Run = 0, Pause = 1, Stop = 2 };

/// How a job ended.
enum class Outcome {
    Done,    ///< ended by itself
    Stopped, ///< begun and then stopped
    Refused, ///< nothing was run: no card, nothing to mark, another job on the card, run state Stop
};

/// What became of one job, as its caller gets it: by the time it looks, the card may have another job or none.
struct RunResult {
    Outcome outcome = Outcome::Refused;
    JobTime time; ///< as JobRunner::lastTime(); none of a job that was stopped before it began
    /// JobRunner::stopOrders() at its end; of a job that ended by itself at its beginning, since what was ordered after
    /// that did not end it.
    std::uint64_t stopOrders = 0;

    /// Something was run, or would have been but for a stop.
    explicit operator bool() const { return outcome != Outcome::Refused; }
};

enum class Activity { Idle, Running, Paused, Waiting };

/// Makes what stands beside the card ready for a pen, given as it was downloaded, and its number. Called on the thread
/// that runs the job, with no lock held; it may take its time and may call stop() and the like, but not run().
using PenService = std::function<void(int number, const PenParams& pen)>;

/// What a job needs to run besides its strokes. Copied or referenced for the length of the run.
struct JobSetup {
    PenTable pens{};
    PlanSettings plan;
    LoopSettings loop;
    std::shared_ptr<const HeadMap> head; ///< how commanded places are marked; null where they are told
    FlyMotion fly;                       ///< how head and product move on meanwhile
    /// Called before the first stroke of a pen, and before that of each other one; null where nothing needs it.
    PenService penService;
};

/// Where the head is now.
struct HeadState {
    Point at;
    bool laser = false;
    int pen = 0;
    double passMs = 0.0; ///< time on the clock of the pass
    Activity activity = Activity::Idle;
    MarkKind kind = MarkKind::Laser; ///< of the job on the card
};

/// When the card last obeyed a stop or a pause.
struct Reaction {
    std::chrono::steady_clock::time_point asked{};
    std::chrono::steady_clock::time_point acted{};
    double passMs = 0.0; ///< clock of the pass at that moment; no trace row is later
};

/// The card's worker thread and the run states that it obeys.
///
/// A job runs on the worker while its caller waits; every other call may come from any thread at any time. A stop or
/// pause wakes the worker, which ends the line at the exact place that the simulated clock has come to, and the call
/// returns only then. The worker sleeps to absolute deadlines and only when the next event is at least 0.25 ms away,
/// so tiny vectors are done in batches and lateness does not add up.
class JobRunner {
public:
    /// Taken before a job is prepared, so that a stop during the preparation is not lost.
    struct Ticket {
        std::uint64_t stops = 0;
        bool refused = false;
        /// That of the job, as it was ordered: what is set meanwhile is another job's.
        MarkKind kind = MarkKind::Laser;
    };

    explicit JobRunner(Trace& trace);
    ~JobRunner();
    JobRunner(const JobRunner&) = delete;
    JobRunner& operator=(const JobRunner&) = delete;

    /// Starts and ends the worker thread. close() stops a running job first. Both may be repeated.
    void open();
    void close();
    bool isOpen() const;

    /// Takes the card out of service until endReboot() is given the number: ends a running job, also on a card that is
    /// deaf to stops, and refuses jobs and moves. Waits for another's reboot to be over. 0 when closed; a closing ends
    /// it.
    std::uint64_t beginReboot();
    void endReboot(std::uint64_t number);
    bool isRebooting() const;

    /// Ticket for a document's job: refused when closed, out of service or the run state is Stop.
    Ticket arm() const;
    /// Ticket for a direct job, which runs whatever the run state was before.
    Ticket armDirect() const;
    /// Runs a job to its end on the worker and waits for it. With run state Pause the job waits before its first
    /// vector. A stop since the ticket was taken ends it before it began: Stopped. While the pen service works the job
    /// stands as in a pause, its clock too, and obeys stop and pause as ever; the call returns only when the service
    /// has returned, and a job that comes after the stop waits for that. What the service throws ends the job, whatever
    /// holds it or keeps it from hearing a stop, and is thrown on.
    RunResult run(const Job& job, const JobSetup& setup, const Ticket& ticket);

    /// Sets the run state; returns when a running job obeys it.
    void setState(RunState state);
    RunState state() const;
    /// Ends the running job. When it has returned, nothing more is marked. Without a job it is only noted for a job
    /// that is being prepared.
    void stop();
    /// Holds the running job until release(), whatever the run state; nothing without a job.
    void hold();
    void release();
    /// Lets jobs wait as for a signal from outside, on top of the other holds; `input` when that is an input.
    void setWaiting(bool on, bool input = false);
    /// Longest time in ms that the job on the card, or the last one, waited for an input without a break since
    /// forgetWaits(). Time of the wall at any speed: what gives the input is no part of the simulation.
    double longestInputWaitMs() const;
    void forgetWaits();
    /// Lets stops have no effect on a running job, as of a card that hangs; they are noted, and their calls return at
    /// once. With `on` false again a stop that was noted takes effect. A closing ends the job all the same.
    void setDeaf(bool on);
    /// Stops that were ordered so far. What an operator or a host orders once comes as several calls from several
    /// places: the calls within half a second of the first are one order, unless a job begins in between.
    std::uint64_t stopOrders() const;
    /// Waits until a stop is over. A stop comes as stop(), setState(Stop), stop(): the card has settled 10 ms after the
    /// last of the three, 0.5 s after a stop that is not followed up. False when that took longer than a second.
    bool waitSettled();

    /// Simulated seconds a second, 0 as fast as possible; a negative or invalid factor is ignored.
    void setSpeed(double factor);
    double speed() const;

    /// Moves the mirrors without laser at mm/s, in the background; false while a job runs, out of service or closed.
    bool moveTo(Point target, double speed);

    /// Where the mirrors stand, or come to stand when they are on their way; nothing while a job runs or closed.
    std::optional<Point> restingPlace() const;

    HeadState head() const;
    /// Accounts of the last job (of its last complete pass), kept until the next one ends.
    JobTime lastTime() const;
    Outcome lastOutcome() const;
    std::uint64_t jobs() const;
    /// Jobs without the one that is on the card.
    std::uint64_t endedJobs() const;
    Reaction lastReaction() const;

private:
    using Lock = std::unique_lock<PriorityMutex>;
    using Clock = std::chrono::steady_clock;

    /// A mirror move without a job.
    struct IdleMove {
        Point from;
        Point to;
        Clock::time_point start{};
        double us = 0.0;
        double factor = 1.0;
        Point at(Clock::time_point now) const;
    };

    void work();
    void execute(Lock& lock);
    bool pace(Lock& lock, Executor& executor);
    bool obey(Lock& lock, Executor& executor);
    void finish(Executor& executor);
    void holdLine(Lock& lock, Executor& executor);
    void noteInputWait(bool waits);
    void publish(const Executor& executor);
    void schedule();
    bool held() const { return m_state == RunState::Pause || m_hold || m_waiting; }
    void alert();
    bool awaitPen(Lock& lock, Executor& executor);
    void servePens(Lock& lock, const JobSetup& setup, std::uint64_t job);
    void awaitEnd(Lock& lock, std::uint64_t job);
    void awaitHold(Lock& lock);
    void requestStop(Lock& lock);
    void endJob(Lock& lock);
    void countOrder();
    bool onWorker() const { return std::this_thread::get_id() == m_thread.get_id(); }

    Trace& m_trace;
    mutable PriorityMutex m_mutex; ///< guards everything below but the attention flag
    PriorityCondition m_wake;      ///< for the worker
    PriorityCondition m_changed;   ///< for those who wait for it
    std::mutex m_openMutex;        ///< one opening or closing at a time; taken before m_mutex
    std::thread m_thread;
    std::atomic<bool> m_attention{false};
    bool m_open = false;
    bool m_quit = false;
    std::uint64_t m_reboot = 0; ///< the one that is under way
    std::uint64_t m_reboots = 0;

    RunState m_state = RunState::Stop;
    bool m_hold = false;
    bool m_waiting = false;
    bool m_forInput = false;           ///< what jobs wait for is an input
    bool m_inputWait = false;          ///< the job on the card waits for it now,
    Clock::time_point m_inputWaitAt{}; ///< since then
    Clock::duration m_longestInputWait{};
    bool m_stop = false;
    bool m_deaf = false;
    bool m_unheard = false;    ///< a stop of the job on the card has been noted only
    std::uint64_t m_stops = 0; ///< stops asked for so far
    Clock::time_point m_lastStop{};
    bool m_lastStopByState = false; ///< the last stop was the state's, so StopMark is still to follow
    std::uint64_t m_stopOrders = 0;
    std::uint64_t m_ordersBefore = 0;             ///< m_stopOrders when the job on the card began
    std::optional<Clock::time_point> m_orderedAt; ///< the last order, since the last job has begun
    double m_factor = 1.0;

    const Job* m_job = nullptr; ///< the job on the card
    const JobSetup* m_setup = nullptr;
    RunResult* m_result = nullptr; ///< of its caller
    std::uint64_t m_jobs = 0;      ///< number of the job on the card or of the last one
    std::optional<int> m_duePen;   ///< the job waits for its service
    bool m_serving = false;        ///< a caller of run() is in its pen service
    Activity m_activity = Activity::Idle;
    Outcome m_lastOutcome = Outcome::Done;
    SimClock m_clock;
    HeadMotion m_motion;
    double m_motionUs = 0.0; ///< job clock when m_motion was published
    double m_passStartUs = 0.0;
    IdleMove m_idle;
    JobTime m_lastTime;
    Reaction m_reaction;
    bool m_realtime = false; ///< worker only
};

} // namespace sim
