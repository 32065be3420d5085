// SPDX-License-Identifier: GPL-2.0-or-later
#include "simengine/log/logfile.h"

#include "engine/systemparam.h"
#include "support/approot.h"

#include <QDir>
#include <QFile>
#include <cerrno>
#include <fcntl.h>
#include <unistd.h>

namespace sim {

namespace {

struct KindRow {
    LogKind kind;
    char const* name;
    bool (SystemParam::*enabled)() const; ///< null: always written
};

constexpr KindRow kKinds[] = {
    {LogKind::Note, "note", nullptr},
    {LogKind::Error, "error", nullptr},
    {LogKind::LaserFailure, "laser", nullptr},
    {LogKind::Operator, "operator", &SystemParam::GetSaveOperator},
    {LogKind::Debug, "debug", &SystemParam::GetSaveDebug},
    {LogKind::ParamEdit, "param", &SystemParam::GetSaveChangeParam},
    {LogKind::Run, "run", &SystemParam::GetSaveRunningLog},
    {LogKind::OpenCard, "opencard", &SystemParam::GetSaveOpenCard},
    {LogKind::CloseCard, "closecard", &SystemParam::GetSaveCloseCard},
    {LogKind::MarkData, "markdata", &SystemParam::GetSaveMarkData},
    {LogKind::Triger, "triger", &SystemParam::GetSaveTriger},
};

/// A number that no kind has is a note.
KindRow const& rowOf(LogKind kind) {
    for (KindRow const& row : kKinds) {
        if (row.kind == kind)
            return row;
    }
    return kKinds[0];
}

int openForAppend(QByteArray const& path) {
    return ::open(path.constData(), O_WRONLY | O_CREAT | O_APPEND | O_CLOEXEC, 0666);
}

/// One write, so that lines of several threads and processes do not mix. What a full disk or a signal leaves over is
/// written behind it.
bool appendLine(QByteArray const& path, QByteArray const& line) {
    int const file = openForAppend(path);
    if (file < 0)
        return false;
    qint64 done = 0;
    while (done < line.size()) {
        ssize_t const count = ::write(file, line.constData() + done, static_cast<std::size_t>(line.size() - done));
        if (count < 0 && errno == EINTR)
            continue;
        if (count <= 0)
            break;
        done += count;
    }
    return ::close(file) == 0 && done == line.size();
}

} // namespace

bool isLogged(LogKind kind) {
    KindRow const& row = rowOf(kind);
    return !row.enabled || (SystemParam::Instance()->*row.enabled)();
}

QByteArray logLine(QDateTime const& time, LogKind kind, QString const& text) {
    QString oneLine = text;
    oneLine.replace(QLatin1Char('\n'), QLatin1String("\\n"))
        .replace(QLatin1Char('\r'), QLatin1String("\\r"))
        .replace(QLatin1Char('\t'), QLatin1String("\\t"));
    return time.toString(QStringLiteral("yyyy-MM-dd HH:mm:ss.zzz")).toUtf8() + '\t' + rowOf(kind).name + '\t' +
           oneLine.toUtf8() + '\n';
}

QString logPath(QDate const& day) {
    return tessera::rootPath(QStringLiteral("/日志文件/")) + day.toString(QStringLiteral("yyyy-MM-dd")) +
           QStringLiteral(".log");
}

bool writeLog(LogKind kind, QString const& text) {
    if (!isLogged(kind))
        return true;
    QDateTime const now = QDateTime::currentDateTime();
    QString const path = logPath(now.date());
    QByteArray const name = QFile::encodeName(path);
    QByteArray const line = logLine(now, kind, text);
    if (appendLine(name, line))
        return true;
    return QDir().mkpath(tessera::rootPath(QStringLiteral("/日志文件"))) && appendLine(name, line);
}

} // namespace sim
