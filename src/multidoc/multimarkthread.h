// SPDX-License-Identifier: MIT
#pragma once

#include "engine/marktypes.h"
#include "multidoc/markqueue.h"

#include <QString>
#include <QThread>
#include <atomic>

class QRulerView;

/// State of a multi-document run. The values are fixed.
enum MultiMarkStatus {
    MultiMarkWaiting = 0, ///< a run is on and waits for an input
    MultiMarkMarking = 1,
    MultiMarkIdle = 2 ///< no run is on
};

/// Worker of the multi-document run: marks the documents that are queued, one after the other. Orders may come from any
/// thread, but for StartRun, which belongs to the main thread.
class MultiMarkThread : public QThread {
    Q_OBJECT
public:
    explicit MultiMarkThread(QObject* parent = nullptr);
    /// Ends a run that goes on and waits for it.
    ~MultiMarkThread() override;

    /// Begins a run. It is on until EndThread; nothing when one is on or still leaving.
    void StartRun();
    /// Ends the run: the card is stopped and no document begins any more. Does not wait.
    void EndThread();
    /// Stops the document that is being marked; the run stays on.
    void StopMark();
    bool GetRunning() const { return m_Queue.IsRunning(); }
    /// A document is being marked or waits for it, also in the moment between two of them.
    bool HasWork() const { return m_Queue.HasWork(); }
    void SetMarkType(MarkType type) { m_MarkType = type; }

    /// Queues a document unless one of its name waits already or is seen being marked. Tells whether it did.
    bool AddMarkFile(QRulerView* view);
    /// Takes the oldest one out, null when there is none.
    QRulerView* GetMarkFile();
    void ClearMarkFile() { m_Queue.Clear(); }
    /// Marks it on the calling thread unless a stop has come since it was taken. Null does nothing.
    void MarkFile(QRulerView* view);

    /// The view is about to be deleted: it does not wait any more, and when it is being marked, that is stopped and has
    /// ended when the call returns. Main thread.
    void ForgetView(QRulerView const* view);

signals:
    void test(int value);
    /// A status of MultiMarkStatus, with the name of the document that is marked. To be connected queued.
    void markstatusChange(int status, QString name);

protected:
    void run() override;

private:
    void MarkTaken(QRulerView* view);

    std::atomic<MarkType> m_MarkType{MarkTypeLaser};
    tessera::MarkQueue m_Queue;
};
