// SPDX-License-Identifier: MIT
#pragma once

#include "engine/ccdbufdata.h"
#include "engine/ccscmd.h"
#include "engine/layerdata.h"
#include "remote/externalmarkingthread.h"
#include "remote/mainthreadcalls.h"
#include "remote/remoteorderlog.h"

#include <QObject>
#include <QString>
#include <QVector>
#include <atomic>
#include <functional>
#include <memory>
#include <optional>
#include <vector>

class MainWindow;

/// What remote parties may order: the controlling station through the command server, a host through its own channel.
/// The one instance lives in the main thread. Main thread, except where an operation says otherwise.
class ExternalResponse : public QObject {
    Q_OBJECT
public:
    /// Made at the first call, on the main thread, and kept until the process ends. The commands of the command server
    /// are listened to when this is a marking station of the server kind then. Afterwards any thread.
    static ExternalResponse* Instance();
    ~ExternalResponse() override;

    /// Makes the open document of the file name `args[0]` the active one. `message` is the answer's text.
    bool SetCurDoc(std::vector<QString> args, QString& message);
    /// Makes the set of open documents equal to `args`: pairs for MainWindow::SyncFileData; none closes all.
    bool SyncFile(std::vector<QString> args, QString& message);

    /// Stops whatever runs and returns when a remote run has ended. It does not fail.
    void VZMarkStop();
    /// Runs document number `doc` with the offsets and returns when the run has ended; `message` is the answer's text.
    /// No offsets leave those of the last order in force. Any thread; on the main thread it blocks the window.
    bool VZSetOffset(int doc, QVector<CCDBufdata> offsets, QString& message);
    /// The same for the open document of this file name.
    bool VZSetOffset(QString name, QVector<CCDBufdata> offsets, QString& message);
    /// By number, for an order that came when Stops() was `stops`: a stop since then has ended it before it began, and
    /// it fails. Any thread.
    bool VZSetOffset(int doc, QVector<CCDBufdata> offsets, QString& message, unsigned int stops);
    /// How often VZMarkStop or StopRun was called. Any thread.
    unsigned int Stops() const { return m_nStops; }
    /// Starts such a run and returns; a refusal is told by MarkFinish(false, text), the end of the run is not told. Any
    /// thread.
    void VZSetOffset(int doc, QVector<CCDBufdata> offsets);
    void VZSetOffset(QString name, QVector<CCDBufdata> offsets);
    /// Copies pen `layer` of document number `doc`; false, and `out` as it was, when there is no such document or pen.
    /// Any thread.
    bool VZGetLayerParas(int doc, int layer, LayerData& out);
    /// Appends the report of the last run: 0 good or 1, then of the last pen that it marked with the power in percent,
    /// frequency in Hz, pulse width in us, speed in mm/s, and the time of the run in ms. False, with `out` replaced by
    /// a text, without an active document. Main thread.
    bool VZGetSendRunData(QString& out);

    /// "hh:mm:ss.zzz"; hours go on beyond 24. A minus stands before a negative time.
    static QString FormatHHMMSS3(long long milliseconds);

    /// Where every remote channel records its orders. Any thread.
    tessera::RemoteOrderLog& OrderLog() { return m_Log; }

    /// A remote run goes on, from its order until the card is free again. Any thread.
    bool IsRunning() const { return m_Thread.IsActive(); }
    /// A remote run works with this document. Ask when the view is not the active one any more.
    bool IsMarking(QRulerView const* view) const { return m_Thread.IsMarking(view); }
    /// Stops a remote run that goes on without waiting for its end. Any thread.
    void StopRun();
    /// Stops a remote run that goes on and returns when it has ended.
    void StopRunAndWait();
    /// The main window is there: orders from other threads are taken.
    void OpenOrders();
    /// The main window goes: a run is stopped and waited for, orders that wait for the main thread are refused, and so
    /// are later ones.
    void CloseOrders();

public slots:
    void OnSignalsHandle(CCSCmd cmd, int tag);
    void OnRunManualStart(CCSCmd cmd, int tag);

signals:
    void RunManualStart(CCSCmd cmd, int tag);
    void StandardBoxCalib(CCSCmd cmd, int tag);
    void ManualBoxCalib(CCSCmd cmd, int tag);
    void ManualHighBoxCalib(CCSCmd cmd, int tag);
    void EnableMarkAction(bool enable);
    /// A run that nobody waits for was refused.
    void MarkFinish(bool ok, QString message);

private slots:
    void OnEnableMarkAction(bool enable);
    void OnMarkStart();
    void OnMarkFinish();

private:
    using Activate = std::function<bool(MainWindow&)>;
    using Operation = bool (ExternalResponse::*)(std::vector<QString> args, QString& message);
    struct Command;

    ExternalResponse();

    static Command const kCommands[7];

    void AnswerStop(CCSCmd const& cmd, int tag);
    void AnswerOperation(Operation operation, CCSCmd const& cmd, int tag);
    void LogUnanswered(CCSCmd const& cmd);
    bool IsBusy() const;
    QString CheckStart(CCSCmd const& cmd) const;
    QString StartOffsetRun(Activate const& activate, QString const& unknown, QVector<CCDBufdata> const& offsets);
    bool RunWithOffsets(Activate const& activate, QString const& unknown, QVector<CCDBufdata> const& offsets,
                        QString& message, std::optional<unsigned int> stops = {});
    void RunWithOffsets(Activate const& activate, QString const& unknown, QVector<CCDBufdata> const& offsets);

    static ExternalResponse* m_pInstance;

    std::atomic<unsigned int> m_nStops{0};
    tessera::RemoteOrderLog m_Log;
    tessera::MainThreadCalls m_Calls{this};
    ExternalMarkingThread m_Thread{m_Log, this};
};
