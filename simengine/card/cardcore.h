// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "simengine/card/beamsplitter.h"
#include "simengine/card/carddevices.h"
#include "simengine/card/deviceclock.h"
#include "simengine/card/faults.h"
#include "simengine/card/flyencoder.h"
#include "simengine/card/headway.h"
#include "simengine/card/iobank.h"
#include "simengine/card/job.h"
#include "simengine/card/jobrunner.h"
#include "simengine/card/journal.h"
#include "simengine/card/penparams.h"
#include "simengine/card/timemodel.h"
#include "simengine/card/trace.h"

#include <atomic>
#include <condition_variable>
#include <cstdint>
#include <functional>
#include <mutex>
#include <optional>
#include <string>
#include <vector>

namespace sim {

/// The simulated marking card: registers, list buffer, worker, lines and status words.
///
/// Every call from any thread. With the card closed a call does nothing and gives 0, false or the idle state; inputs
/// and faults belong to the plant and are set all the same. Neither Qt nor the boundary is known here.
class CardCore {
public:
    CardCore();
    ~CardCore();
    CardCore(const CardCore&) = delete;
    CardCore& operator=(const CardCore&) = delete;

    /// False with the fault "card_open_fails". Opening an open card gives true and changes nothing.
    bool open();
    /// Stops a running job, whose caller then gets its result, and ends the worker.
    void close();
    /// Told on the closing thread before close() returns, when the card takes no call any more; null takes it off. May
    /// drive outputs, but not open or close.
    void setClosedListener(std::function<void()> listener);
    bool isOpen() const { return m_runner.isOpen(); }

    // What the next job is run with.
    void setKind(MarkKind kind) { m_kind.store(kind); }
    MarkKind kind() const { return m_kind.load(); }
    void setPens(const PenTable& pens);
    PenTable pens() const;
    void setPenChangeDelayMs(double ms) { m_penChangeDelayMs.store(ms); }
    void setBorder(const BorderSettings& border);
    /// With it a job that is run with loop repeats on the card until it is stopped.
    void setBufferLoop(bool on) { m_bufferLoop.store(on); }
    void setLoopDelayMs(double ms) { m_loopDelayMs.store(ms); }

    /// To be taken when a document begins to turn itself into a job: a stop from then on ends the job.
    JobRunner::Ticket arm() const;
    /// Runs a job of the kind that was set when the ticket was taken (the job's own is not looked at) and returns when
    /// it has ended. Refused when nothing could be run: card closed, nothing to mark, run state Stop when the ticket
    /// was taken, another job on the card, the fault "job_fails". Jobs that mark with the laser have the pen service
    /// called, see JobRunner::run; previews do not.
    RunResult run(Job job, bool loop, const JobRunner::Ticket& ticket, PenService penService = nullptr);
    RunResult run(Job job, bool loop) { return run(std::move(job), loop, arm()); }
    /// Time of one pass of a job by the pens and delays now set, from where the head stands.
    JobTime estimate(Job job) const;

    // Direct jobs. They run whatever the run state was before; a stop since the list was begun ends them unrun.
    void beginList();
    void addPolyline(int pen, std::vector<Point> points);
    /// A dwell below 0 means the pen's own point time.
    void addPoint(int pen, Point point, double dwellUs);
    /// Runs the list and empties it.
    RunResult endList(PenService penService = nullptr);

    void setState(RunState state);
    RunState state() const;
    void stop() { m_runner.stop(); }
    void pause() { m_runner.hold(); }
    void restart() { m_runner.release(); }
    bool waitSettled() { return m_runner.waitSettled(); }
    bool moveTo(Point target, double speed) { return m_runner.moveTo(target, speed); }
    std::optional<Point> restingPlace() const { return m_runner.restingPlace(); }
    /// The place is the commanded one, on the fly with the way that the head follows.
    HeadState head() const;

    /// 1 real time, above 1 faster, 0 as fast as possible. May be set before the card is opened.
    void setSpeed(double factor);
    double speed() const { return m_runner.speed(); }

    /// Ends a running job and takes the card out of service for its simulated time, on the calling thread: jobs, moves
    /// and what looks at isRebooting() are refused meanwhile, another reboot waits. `atEnd` is done while it still is;
    /// not, and false, when the card was closed.
    bool reboot(double ms, const std::function<void()>& atEnd = nullptr);
    bool isRebooting() const { return m_runner.isRebooting(); }
    /// Lets an operation of the card take its simulated time on the calling thread; false when the card was closed.
    bool waitSimulated(double ms);

    /// Exact time of the last job on the simulated clock, pauses left out; of its last complete pass when it repeats.
    JobTime lastTime() const { return m_runner.lastTime(); }
    double bufferRunTimeMs() const { return isOpen() ? lastTime().totalMs : 0.0; }
    JobRunner& runner() { return m_runner; }

    // Status words, see statuswords.h; 0 when closed.
    std::uint32_t markInfo() const;
    std::uint32_t scanState() const;
    std::uint32_t alarmWord() const;
    /// What the job on the card waits for: 0 nothing, 1 input, 2 motion module, 3 encoder, 4 mirrors.
    int waitCode() const;
    /// Clears the results of the last job, its time-out and its underrun from the mark information word. An alarm whose
    /// cause lasts stays; a job that goes on waiting for its input is given the whole alarm time again.
    void clearAlarm();

    std::uint32_t inputs() const { return isOpen() ? m_io.inputs() : 0; }
    std::uint32_t outputs() const { return isOpen() ? m_io.outputs() : 0; }
    /// False when closed, when there is no such output, and with the fault "outputs_stuck", which keeps the levels.
    bool setOutput(int bit, bool on) { return isOpen() && driveOutput(bit, on); }
    /// The same of a card that is being closed.
    bool driveOutput(int bit, bool on) { return !m_faults.isOn("outputs_stuck") && m_io.setOutput(bit, on); }
    /// The error line, apart from the 32 outputs.
    void setErrorOutput(bool on);
    bool errorOutput() const { return m_errorOutput.load(); }

    /// Switches a fault and lets it act on a running job; false for an unknown name.
    bool setFault(const std::string& name, bool on);
    void clearFaults();

    IoBank& io() { return m_io; }
    FaultBank& faults() { return m_faults; }
    CardDevices& devices() { return m_devices; }
    /// The time of what stands beside the card.
    const DeviceClock& deviceClock() const { return m_deviceClock; }
    FlyEncoder& encoder() { return m_encoder; }
    BeamSplitter& splitter() { return m_splitter; }
    /// The head behind the card and its corrections; a job keeps those with which it was started.
    HeadWay& headWay() { return m_headWay; }
    /// Where the spot is on the workpiece, without noise.
    Point spot() const;
    Journal& journal() { return m_journal; }
    Trace& trace() { return m_trace; }
    const Trace& trace() const { return m_trace; }

private:
    bool emits() const;
    RunResult runNow(Job job, bool loop, bool direct, const JobRunner::Ticket& ticket, PenService penService);
    void openList();
    PlanSettings planSettings() const;

    Trace m_trace;
    Journal m_journal;
    IoBank m_io;
    FaultBank m_faults;
    CardDevices m_devices;
    DeviceClock m_deviceClock;
    FlyEncoder m_encoder;
    BeamSplitter m_splitter;
    HeadWay m_headWay;
    std::atomic<MarkKind> m_kind{MarkKind::Laser};
    std::atomic<double> m_penChangeDelayMs{0.0};
    std::atomic<double> m_loopDelayMs{0.0};
    std::atomic<bool> m_bufferLoop{false};
    std::atomic<bool> m_errorOutput{false};
    std::atomic<std::uint64_t> m_clearedJob{0}; ///< results of jobs up to this number are not shown any more
    mutable std::mutex m_pensMutex;             ///< guards the two below
    PenTable m_pens{};
    BorderSettings m_border;
    std::mutex m_listMutex; ///< guards the three below
    std::vector<Stroke> m_list;
    JobRunner::Ticket m_listTicket;
    bool m_listOpen = false;
    std::mutex m_waitMutex; ///< guards the count of closings
    std::condition_variable m_waitChanged;
    std::uint64_t m_closings = 0;
    std::mutex m_listenerMutex; ///< guards the one below; held while it is told
    std::function<void()> m_closedListener;
    JobRunner m_runner; ///< last: its worker ends before the rest goes
};

/// The one simulated card of the process.
CardCore& simulatedCard();

} // namespace sim
