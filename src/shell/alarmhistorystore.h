// SPDX-License-Identifier: MIT
#pragma once

#include "shell/alarmentry.h"

#include <QMap>
#include <QString>
#include <memory>
#include <optional>

class QSqlQuery;

namespace tessera {

/// What is to be written. Single acknowledgements come before that of all; writing a batch twice does no harm.
struct AlarmBatch {
    QMap<qint64, AlarmEntry> entries;         ///< of this run, by number
    QMap<qint64, AlarmAcknowledge> older;     ///< entries of earlier runs that were acknowledged, by number
    std::optional<AlarmAcknowledge> allOlder; ///< all of earlier runs

    bool IsEmpty() const { return entries.isEmpty() && older.isEmpty() && !allOlder; }
};

/// The alarm history on the disk, a database. Every call may wait for the disk; an object belongs to the thread that
/// makes the first call, and must be deleted there. What Write() has reported as done survives a kill and a power cut.
///
/// The file is this program's alone while it is open. A damaged file is put aside under the name with ".damaged" behind
/// it and a new one begun.
class AlarmHistoryStore {
public:
    /// `startMs` is the time at which entries that a crash left open are ended.
    AlarmHistoryStore(QString file, qint64 startMs, int limit = kAlarmHistoryLimit);
    ~AlarmHistoryStore();
    AlarmHistoryStore(AlarmHistoryStore const&) = delete;
    AlarmHistoryStore& operator=(AlarmHistoryStore const&) = delete;

    /// Opens the file, or makes it, and ends what a crash left open. Nothing when it is open. A file that has been
    /// taken away or replaced since is opened anew.
    bool Open();
    /// Writes all of it or nothing, and drops what is above the limit: the oldest entries that are over.
    bool Write(AlarmBatch const& batch);
    /// Up to `count` entries with a number below `below`, newest first.
    bool Read(qint64 below, int count, QVector<AlarmEntry>& entries);
    /// Why the last call failed, one line for the log.
    QString const& Error() const { return m_Error; }

private:
    class Database;

    bool Prepare();
    bool IsSame() const;
    bool SetAside();
    bool EndLeftOpen();
    bool Put(AlarmEntry const& entry);
    bool Acknowledge(AlarmAcknowledge const& what, bool all);
    bool Drop();
    bool Run(QSqlQuery& query);
    bool Run(char const* statement);
    bool Refuse(QSqlQuery const& query);
    bool Fail(QString const& reason);

    QString const m_File;
    qint64 const m_nStartMs;
    int const m_nLimit;
    std::unique_ptr<Database> m_pDatabase;
    qint64 m_nBase = 0;  ///< identifier of the newest entry of earlier runs
    quint64 m_nFile = 0; ///< which file is open: inode
    bool m_bDamaged = false;
    QString m_Error;
};

} // namespace tessera
