// SPDX-License-Identifier: MIT
#pragma once

#include "engine/ccscmd.h"
#include "remote/remoterun.h"

#include <QThread>
#include <atomic>
#include <memory>
#include <mutex>

class QRulerView;

namespace tessera {
class RemoteOrderLog;
}

/// Worker of the remote orders: marks the active document once on its own thread. The orders are written into its
/// public fields on the main thread while no run goes on; a run works with a copy that it takes at its start.
class ExternalMarkingThread : public QThread {
    Q_OBJECT
public:
    /// `log` outlives the thread.
    explicit ExternalMarkingThread(tessera::RemoteOrderLog& log, QObject* parent = nullptr);
    /// Stops the card and waits for a run that goes on.
    ~ExternalMarkingThread() override;

    /// Starts a run by the fields, unless one goes on. Waits until a run that has ended has told so. Main thread.
    void RunTrigger();
    /// Stops a run that goes on, shows the idle state and returns when the worker has left it. Main thread.
    void StopTrigger();
    /// Stops a run that goes on, without waiting for its end. Any thread.
    void OrderStop();
    /// Returns when no run goes on any more. Any thread but the worker.
    void Wait();
    /// The last run marked something, stopped or not.
    bool GetResult() const { return m_bResult; }

    /// From the order that starts a run until the card is free again. Any thread.
    bool IsActive() const;
    /// The run of the last RunTrigger, null before the first. Any thread.
    std::shared_ptr<tessera::RemoteRun> Run() const;
    /// The run works with this document: it must not be deleted before the run has ended. Ask when the view is not the
    /// active one any more.
    bool IsMarking(QRulerView const* view) const { return view && m_pMarkedView == view; }

    bool m_bOption = false; ///< second flag of MarkShapeContainer::StartMark
    int m_nMarkType = 0;    ///< as MarkType; any other value marks with the laser
    bool m_bNotify = false; ///< the end of the run is answered to the command server
    CCSCmd m_Cmd;           ///< the command to answer
    int m_nTag = 5000;      ///< and its tag
    QString m_Sender;       ///< who sent it, for the log

signals:
    void MarkStart();
    void MarkFinish();
    void EnableMarkAction(bool enable);

protected:
    void run() override;

private:
    /// What a run was ordered to do.
    struct Order {
        bool option = false;
        int markType = 0;
        bool notify = false;
        CCSCmd cmd;
        int tag = 0;
        QString sender;
        std::shared_ptr<tessera::RemoteRun> run;
    };

    bool MarkDocument(Order const& order);
    bool MarkView(QRulerView* view, bool option);

    tessera::RemoteOrderLog& m_Log;
    mutable std::mutex m_RunLock; ///< guards m_pRun
    std::shared_ptr<tessera::RemoteRun> m_pRun;
    Order m_Order; ///< of the run under way; written before the thread starts
    std::atomic<bool> m_bResult{false};
    std::atomic<QRulerView*> m_pMarkedView{nullptr};
};
