// SPDX-License-Identifier: MIT
#pragma once

#include "shell/alarmentry.h"

#include <QByteArray>

namespace tessera {

/// How an entry stands, in the operator's language.
QString AlarmStateText(AlarmEntry const& entry);
/// Local time of day and date with ms; empty for 0.
QString AlarmTimeText(qint64 ms);
/// Who acknowledged, in words also for nobody; empty without an acknowledgement.
QString AlarmUserText(AlarmEntry const& entry);

/// Titles of a table of alarms in the operator's language, in the order of AlarmColumns.
enum AlarmColumn {
    AlarmColumnState,
    AlarmColumnFirstOut,
    AlarmColumnRaised,
    AlarmColumnText,
    AlarmColumnCleared,
    AlarmColumnAcknowledged,
    AlarmColumnUser,
    AlarmColumnCount
};
QString AlarmColumnTitle(int column);
/// Content of a cell in the operator's language.
QString AlarmCellText(AlarmEntry const& entry, int column);

/// One field of a table in text form: in quotes when it holds a comma, a quote or a line end, quotes doubled.
QString CsvField(QString const& text);
/// The entries in their order as a file that spreadsheets read: UTF-8 with its mark, titles in the first line, lines
/// ended by CR LF. Any thread.
QByteArray AlarmCsv(QVector<AlarmEntry> const& entries);

} // namespace tessera
