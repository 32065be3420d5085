// SPDX-License-Identifier: MIT
#pragma once

#include <QMetaType>
#include <QString>
#include <QVector>

namespace tessera {

/// How an alarm of the history came to its end. The values are stored.
enum class AlarmEnd {
    Active = 0,     ///< it is still there
    Cleared = 1,    ///< its cause has gone
    ProgramEnd = 2, ///< it was there when the program was ended
    Crash = 3,      ///< it was there when the program, or the computer, broke off; found at the next start
};

/// One alarm of the history. Times are wall clock, ms since 1970 in UTC, 0 for not yet; the order is the number's
/// alone, so that a clock that is set back moves nothing.
struct AlarmEntry {
    /// Rises with every alarm. 1 is the first of this run of the program; earlier runs have 0 and below.
    qint64 number = 0;
    QString code; ///< source, see AlarmSources
    QString text; ///< in the operator's language of the time
    bool firstOut = false;
    qint64 raisedMs = 0;
    qint64 clearedMs = 0;
    AlarmEnd end = AlarmEnd::Active;
    qint64 acknowledgedMs = 0;
    QString acknowledgedBy; ///< empty when nobody was logged in

    bool IsActive() const { return end == AlarmEnd::Active; }
    bool IsAcknowledged() const { return acknowledgedMs != 0; }
};

inline bool operator==(AlarmEntry const& a, AlarmEntry const& b) {
    return a.number == b.number && a.code == b.code && a.text == b.text && a.firstOut == b.firstOut &&
           a.raisedMs == b.raisedMs && a.clearedMs == b.clearedMs && a.end == b.end &&
           a.acknowledgedMs == b.acknowledgedMs && a.acknowledgedBy == b.acknowledgedBy;
}

/// Who acknowledged when.
struct AlarmAcknowledge {
    qint64 number = 0; ///< the alarm; with "all" every alarm up to it
    qint64 ms = 0;
    QString user;
};

/// Most alarms that the history keeps.
constexpr int kAlarmHistoryLimit = 10'000;

} // namespace tessera

Q_DECLARE_METATYPE(tessera::AlarmEntry)
