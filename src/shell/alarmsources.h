// SPDX-License-Identifier: MIT
#pragma once

#include <QString>
#include <QVector>

namespace tessera {

/// What the supervision knows of alarms at one moment.
struct AlarmSnapshot {
    unsigned int mask = 0;   ///< alarm mask of the inputs
    bool laser = false;      ///< the laser's fault lines tell an alarm
    QString laserText;       ///< its cause, may be empty
    bool fibreLatch = false; ///< the fibre laser's alarm was raised in this run of the program
    unsigned int system = 0; ///< system alarm word of the card
    unsigned int scan = 0;   ///< status word of the scan head
    unsigned int run = 0;    ///< status word of the run
    bool stopUnconfirmed = false;

    bool operator==(AlarmSnapshot const& other) const;
    bool operator!=(AlarmSnapshot const& other) const { return !(*this == other); }
};

/// An alarm that is there: what it comes from and what the operator reads.
struct ActiveAlarm {
    QString code;
    QString text;
};

/// The alarms of a snapshot in the order in which they are looked at; texts in the operator's language.
QVector<ActiveAlarm> ActiveAlarms(AlarmSnapshot const& snapshot);

/// Text of an alarm in the operator's language of now, `stored` for a source that has a text of its own each time.
QString AlarmText(QString const& code, QString const& stored);

} // namespace tessera
