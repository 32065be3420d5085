// SPDX-License-Identifier: MIT
#pragma once

#include "shell/alarmhistory.h"
#include "shell/alarmhistorywriter.h"

#include <QObject>
#include <functional>

namespace tessera {

/// The alarm history of the running program: looks at snapshots, keeps the entries and has them written. Nothing here
/// waits for the disk. Main thread.
class AlarmRecorder : public QObject {
    Q_OBJECT
public:
    using Clock = std::function<qint64()>;
    using ReadDone = std::function<void(QVector<AlarmEntry> const& older, QString const& error)>;
    using ExportDone = std::function<void(QString const& error)>;

    /// `now` gives the wall clock in ms since 1970.
    explicit AlarmRecorder(QString const& file, QObject* parent = nullptr, Clock now = Clock(),
                           int limit = kAlarmHistoryLimit);
    /// Ends what is active and writes what waits.
    ~AlarmRecorder() override;

    /// Where the history of the program lies.
    static QString File();

    /// Takes what is active now; cheap while nothing changes.
    void Look(AlarmSnapshot const& snapshot);
    AlarmSnapshot const& LastLook() const { return m_Snapshot; }
    AlarmHistory const& History() const { return m_History; }
    /// Acknowledges alarms, also of earlier runs; those that are acknowledged stay as they are.
    void Acknowledge(QVector<qint64> const& numbers, QString const& user);
    void AcknowledgeAll(QString const& user);

    /// Asks for up to `count` entries of earlier runs with a number below `below`, newest first. `done` comes later on
    /// the main thread, unless `context` or this is gone by then.
    void ReadOlder(qint64 below, int count, QObject* context, ReadDone done);
    /// Writes everything to a file for spreadsheets; `done` as above, with the reason when it failed.
    void Export(QString const& file, QObject* context, ExportDone done);
    /// Lets what an earlier run left open be ended.
    void Begin() { m_Writer.Begin(); }
    /// Why the history cannot be stored, empty when it can.
    QString const& StoreError() const { return m_StoreError; }
    /// For tests: all that was given so far is on the disk or has been tried.
    void WaitTried() { m_Writer.WaitTried(); }

signals:
    /// Entries that are new or have changed, oldest first.
    void Changed(QVector<tessera::AlarmEntry> const& entries);
    /// Alarms of earlier runs that were acknowledged: one, or with `all` all that were not.
    void OlderAcknowledged(tessera::AlarmAcknowledge const& what, bool all);
    /// Storing has begun to fail, or works again with an empty text.
    void StoreStateChanged(QString const& error);

private:
    void Take(QVector<AlarmEntry> const& changed);
    void OnStoreState(QString const& error);

    Clock m_Now;
    AlarmHistory m_History;
    AlarmSnapshot m_Snapshot;
    QString m_StoreError;
    AlarmHistoryWriter m_Writer; ///< last: its thread ends before what it tells goes
};

} // namespace tessera
