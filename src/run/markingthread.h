// SPDX-License-Identifier: MIT
#pragma once

#include "engine/marktypes.h"
#include "run/runloop.h"

#include <QDateTime>
#include <QThread>
#include <atomic>

class QRulerView;

/// Worker of the run dialog: marks the active document on its own thread. The orders come from the main thread; a stop
/// may come from any. The signals are to be connected queued, so that the order in which they were sent is kept
/// whichever thread sent them.
class MarkingThread : public QThread, private tessera::RunPort {
    Q_OBJECT
public:
    explicit MarkingThread(QObject* parent = nullptr);
    /// Stops the card and waits for a run that goes on.
    ~MarkingThread() override;

    /// Start button: starts, pauses or resumes. `delay` in ms between two repeats; at 0 or below only a stop ends the
    /// pause after the first pass.
    void RunTriger(bool select, bool loop, int delay, MarkType type);
    /// Input edge: starts or resumes; a run that goes on is left alone.
    void RunTrigerOnly(bool select, bool loop, int delay, MarkType type, bool redLoopTrigger);
    void PauseTriger();
    void ReStartTriger();
    void StopTriger();
    /// A running preview begins anew with changed data.
    void StopTrigerVirtual();
    void SetStopVirtual(bool on);
    bool IsStopVirtual() const;
    /// With it the next pass of a loop begins only when PassCounted() was called for the last one.
    void SetHoldUntilCounted(bool hold) { m_Run.SetHoldUntilCounted(hold); }
    void PassCounted() { m_Run.PassCounted(); }
    void SetEnableTriggerWhenRedLoop(bool on);

    /// After markrunspecial(): the red-light loop is still wanted. Asked once.
    bool TakeReturn() { return m_Run.TakeReturn(); }

    bool IsActive() const { return m_Run.IsActive(); }
    bool IsPaused() const { return m_Run.IsPaused(); }
    bool IsGoingOn() const { return m_Run.IsGoingOn(); }
    bool LastPassMarked() const { return m_Run.LastPassMarked(); }

    /// A pass works with this document: it must not be deleted before the pass has ended. Ask when the view is not the
    /// active one any more.
    bool IsMarking(QRulerView const* view) const { return view && m_pMarkedView == view; }

    /// Marks the active document once on the calling thread; false when there is none, or nothing to mark.
    bool MarkFile(MarkType type, bool select, bool loop);

signals:
    void markstart();
    void markRestart();
    void markFinishUI();
    void markpause();
    void markrunspecial();
    void markfinish(bool ok, QDateTime time);

protected:
    void run() override;

private:
    void startWorker() override;
    void loopMarkDelay(double ms) override;
    void setMarkStatus(MarkStatus status) override;
    void stopMark() override;
    void waitMarkStopped() override;
    bool bufferLoop() override;
    bool markFile(MarkType type, bool select, bool loop) override;
    void event(tessera::RunEvent event) override;
    void trace(tessera::RunTrace place, tessera::RunTraceData const& data) override;
    using QThread::event;

    bool MarkView(QRulerView* view, bool select, bool loop);

    std::atomic<QRulerView*> m_pMarkedView{nullptr};
    tessera::RunLoop m_Run;
};
