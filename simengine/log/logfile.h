// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include <QByteArray>
#include <QDateTime>
#include <QString>

namespace sim {

/// Kinds of log lines. Those that the boundary knows have its numbers; the rest are the engine's own.
enum class LogKind {
    Note = 0,
    Error = 1,
    LaserFailure = 3,
    Operator = 4,
    Debug = 5,
    ParamEdit = 7,
    Run = 9,
    OpenCard = 20,
    CloseCard = 21,
    MarkData = 22,
    Triger = 23
};

/// The machine's settings let this kind be written. Notes, errors and laser failures always are.
bool isLogged(LogKind kind);

/// One line of the log: time, kind, text, parted by tabs and ended by a line feed. Line breaks and tabs in the text
/// become \n, \r and \t, so that an entry stays a line.
QByteArray logLine(QDateTime const& time, LogKind kind, QString const& text);

/// The file of a day: "yyyy-MM-dd.log" in /日志文件.
QString logPath(QDate const& day);

/// From this size on a day's file takes no lines of the kind Debug any more, which hosts of the plant can have written
/// at the speed of their line; one line says so. All other kinds go on.
constexpr qint64 kLogDebugBytes = 64 * 1024 * 1024;

/// Appends one entry to the file of today if the settings let it be written. False when it should have been written and
/// could not be. Any thread and any process: an entry is one write at the end of the file.
bool writeLog(LogKind kind, QString const& text);

} // namespace sim
