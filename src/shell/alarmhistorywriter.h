// SPDX-License-Identifier: MIT
#pragma once

#include "shell/alarmhistorystore.h"

#include <QVector>
#include <condition_variable>
#include <deque>
#include <functional>
#include <mutex>
#include <thread>

namespace tessera {

/// Keeps the alarm history on the disk without anybody waiting for it: a thread of its own writes in batches, a few in
/// a second at most, and reads what is asked. What cannot be written stays here and is tried again; of more than the
/// history's limit the oldest go. The thread, and with it the database, comes up with the first call.
///
/// Calls from any thread return at once; the functions given are called on the object's thread.
class AlarmHistoryWriter {
public:
    using Entries = QVector<AlarmEntry>;
    /// Error is empty on success.
    using ReadDone = std::function<void(Entries const& entries, QString const& error)>;
    using ExportDone = std::function<void(QString const& error)>;

    AlarmHistoryWriter(QString file, qint64 startMs, int limit = kAlarmHistoryLimit);
    /// Makes a last attempt to write what waits, then ends; functions of reads that wait are not called.
    ~AlarmHistoryWriter();
    AlarmHistoryWriter(AlarmHistoryWriter const&) = delete;
    AlarmHistoryWriter& operator=(AlarmHistoryWriter const&) = delete;

    /// Called whenever writing begins to fail, with the reason, and with an empty text when it works again. To be set
    /// before any other call.
    void SetStateListener(std::function<void(QString const& error)> listener) { m_Listener = std::move(listener); }

    /// Brings the thread up, so that what an earlier run left open is ended.
    void Begin();
    void Save(Entries const& entries);
    /// One alarm of an earlier run.
    void AcknowledgeOlder(AlarmAcknowledge const& what);
    /// All alarms of earlier runs.
    void AcknowledgeAllOlder(AlarmAcknowledge const& what);
    /// Up to `count` entries below `below`, newest first.
    void Read(qint64 below, int count, ReadDone done);
    /// Writes the whole history, newest first, to a file for spreadsheets, whole or not at all.
    void Export(QString const& file, ExportDone done);

    /// Waits until all that was given so far is on the disk, or has been tried; for tests and for who must know.
    void WaitTried();

private:
    using Task = std::function<void(AlarmHistoryStore& store)>;

    void Start();
    void Work();
    void Post(Task task);
    void WriteBatch(AlarmHistoryStore& store, std::unique_lock<std::mutex>& lock);
    void PutBack(AlarmBatch const& batch);
    void Tell(QString const& error);

    QString const m_File;
    qint64 const m_nStartMs;
    int const m_nLimit;
    std::function<void(QString const& error)> m_Listener;
    std::mutex m_Lock;
    std::condition_variable m_Wake;  ///< for the thread
    std::condition_variable m_Tried; ///< for WaitTried
    AlarmBatch m_Batch;
    std::deque<Task> m_Tasks;
    bool m_bEnd = false;
    bool m_bHurry = false; ///< write now, whatever the pace
    quint64 m_nGiven = 0;  ///< calls that gave something to write
    quint64 m_nTried = 0;  ///< of them, those whose part has been tried
    QString m_Error;       ///< thread only
    std::thread m_Thread;
};

} // namespace tessera
