// SPDX-License-Identifier: GPL-2.0-or-later
#include "simengine/log/logfile.h"

#include "engine/systemparam.h"
#include "support/approot.h"

#include <QDir>
#include <QFile>
#include <cerrno>
#include <fcntl.h>
#include <mutex>
#include <sys/stat.h>
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

/// The file that was written last stays open: finding it anew for every line would take longer than the line.
class OpenFile {
public:
    /// Appends to the file of this name. One write, so that lines of several threads and processes do not mix; what a
    /// full disk or a signal leaves over is written behind it.
    bool append(QByteArray const& path, QByteArray const& line) {
        const std::lock_guard<std::mutex> lock(m_lock);
        return (isOpen(path) || open(path)) && write(line);
    }

    /// The same for a line that a full file does without; `last` is written behind the line that fills it.
    bool appendWhileSmall(QByteArray const& path, QByteArray const& line, QByteArray const& last) {
        const std::lock_guard<std::mutex> lock(m_lock);
        if (!isOpen(path) && !open(path))
            return false;
        struct stat info = {};
        if (::fstat(m_file, &info) != 0)
            return false;
        if (info.st_size >= kLogDebugBytes)
            return true;
        return write(info.st_size + line.size() < kLogDebugBytes ? line : line + last);
    }

private:
    bool write(QByteArray const& line) {
        qint64 done = 0;
        while (done < line.size()) {
            ssize_t const count =
                ::write(m_file, line.constData() + done, static_cast<std::size_t>(line.size() - done));
            if (count < 0 && errno == EINTR)
                continue;
            if (count <= 0)
                break;
            done += count;
        }
        return done == line.size();
    }

    /// False too when the file was deleted or replaced meanwhile.
    bool isOpen(QByteArray const& path) const {
        struct stat open = {};
        struct stat named = {};
        return m_file >= 0 && m_path == path && ::fstat(m_file, &open) == 0 && ::stat(path.constData(), &named) == 0 &&
               open.st_ino == named.st_ino && open.st_dev == named.st_dev;
    }

    bool open(QByteArray const& path) {
        if (m_file >= 0)
            ::close(m_file);
        m_file = ::open(path.constData(), O_WRONLY | O_CREAT | O_APPEND | O_CLOEXEC, 0666);
        m_path = path;
        return m_file >= 0;
    }

    std::mutex m_lock;
    int m_file = -1;
    QByteArray m_path;
};

/// It stays open to the very end of the process, where something may still be logged.
OpenFile& openFile() {
    static auto* const file = new OpenFile;
    return *file;
}

} // namespace

bool isLogged(LogKind kind) {
    KindRow const& row = rowOf(kind);
    return !row.enabled || (SystemParam::Instance()->*row.enabled)();
}

namespace {

/// The line behind its time.
QByteArray entry(LogKind kind, QString const& text) {
    QString oneLine = text;
    oneLine.replace(QLatin1Char('\n'), QLatin1String("\\n"))
        .replace(QLatin1Char('\r'), QLatin1String("\\r"))
        .replace(QLatin1Char('\t'), QLatin1String("\\t"));
    return QByteArray(1, '\t') + rowOf(kind).name + '\t' + oneLine.toUtf8() + '\n';
}

/// What the lines of one second share: most are logged in that of the line before.
struct LoggedSecond {
    qint64 second = -1;
    QByteArray text;
    QDate day;
};

LoggedSecond const& loggedSecond(qint64 second) {
    thread_local LoggedSecond last;
    if (last.second != second) {
        QDateTime const time = QDateTime::fromMSecsSinceEpoch(second * 1000);
        last = {second, time.toString(QStringLiteral("yyyy-MM-dd HH:mm:ss.")).toUtf8(), time.date()};
    }
    return last;
}

} // namespace

QByteArray logLine(QDateTime const& time, LogKind kind, QString const& text) {
    return time.toString(QStringLiteral("yyyy-MM-dd HH:mm:ss.zzz")).toUtf8() + entry(kind, text);
}

QString logPath(QDate const& day) {
    return tessera::rootPath(QStringLiteral("/日志文件/")) + day.toString(Qt::ISODate) + QStringLiteral(".log");
}

bool writeLog(LogKind kind, QString const& text) {
    if (!isLogged(kind))
        return true;
    qint64 const now = QDateTime::currentMSecsSinceEpoch();
    LoggedSecond const& second = loggedSecond(now / 1000);
    QByteArray const name = QFile::encodeName(logPath(second.day));
    QByteArray const time = second.text + QByteArray::number(now % 1000).rightJustified(3, '0');
    QByteArray const line = time + entry(kind, text);
    auto const append = [&] {
        if (kind != LogKind::Debug)
            return openFile().append(name, line);
        return openFile().appendWhileSmall(
            name, line,
            time + entry(LogKind::Note, QStringLiteral("the log is full: no debug lines for the rest of the day")));
    };
    return append() || (QDir().mkpath(tessera::rootPath(QStringLiteral("/日志文件"))) && append());
}

} // namespace sim
