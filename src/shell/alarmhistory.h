// SPDX-License-Identifier: MIT
#pragma once

#include "shell/alarmentry.h"
#include "shell/alarmsources.h"

#include <QMap>
#include <QSet>
#include <deque>
#include <optional>

namespace tessera {

/// The alarms of this run of the program, oldest first. A plain value: knows no disk, no window and no clock. Every
/// time given is ms since 1970.
///
/// The alarm that comes while none is there is the first-out of what follows: it is mostly the cause, and those behind
/// it are its consequences. Of several in one look the first in the order of the sources has the mark.
class AlarmHistory {
public:
    /// `limit` of 1 or more: with more entries the oldest that is over goes. Only when all are active, the oldest.
    explicit AlarmHistory(int limit = kAlarmHistoryLimit);

    /// Takes what is active: raises what has come, ends what has gone. Returns the entries that have changed,
    /// oldest first, each as it is now.
    QVector<AlarmEntry> Update(QVector<ActiveAlarm> const& active, qint64 nowMs);
    /// The program ends: so do all active alarms, marked so.
    QVector<AlarmEntry> EndAll(qint64 nowMs);
    /// Nothing for a number that is not here or is acknowledged already. An active alarm stays active.
    std::optional<AlarmEntry> Acknowledge(qint64 number, QString const& user, qint64 nowMs);
    /// Returns the entries that have changed, oldest first.
    QVector<AlarmEntry> AcknowledgeAll(QString const& user, qint64 nowMs);

    std::deque<AlarmEntry> const& Entries() const { return m_Entries; }
    int ActiveCount() const { return m_Active.size(); }
    bool IsActive(QString const& code) const { return m_Active.contains(code); }
    int Limit() const { return m_nLimit; }
    /// Number of the newest entry, 0 before the first.
    qint64 LastNumber() const { return m_nLast; }

private:
    AlarmEntry* Find(qint64 number);
    AlarmEntry* End(QString const& code, AlarmEnd end, qint64 nowMs);
    void Trim();
    QString Shared(QString const& text);

    int m_nLimit;
    qint64 m_nLast = 0;
    std::deque<AlarmEntry> m_Entries; ///< by number
    QMap<QString, qint64> m_Active;   ///< source, number
    QSet<QString> m_Texts;            ///< one copy of what thousands of entries have in common
};

} // namespace tessera
