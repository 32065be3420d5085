// SPDX-License-Identifier: MIT
#include "remote/remoteorderlog.h"

#include "engine/marklog.h"
#include "support/approot.h"

#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <unistd.h>
#include <utility>

namespace tessera {

namespace {

/// Orders that come within this time go to the disk together.
constexpr std::chrono::milliseconds kGather{200};

/// One field of a line: at most `length` characters, with nothing in it that could end the field.
QString field(QString const& text, int length) {
    QString out;
    out.reserve(qMin(text.size(), length));
    for (QChar c : text.left(length)) {
        if (c == QLatin1Char('\\'))
            out += QStringLiteral("\\\\");
        else if (c.unicode() < 0x20 || (c.unicode() >= 0x7f && c.unicode() < 0xa0) || c.unicode() == 0x2028 ||
                 c.unicode() == 0x2029)
            out += QStringLiteral("\\x%1").arg(c.unicode(), 2, 16, QLatin1Char('0'));
        else
            out += c;
    }
    if (text.size() > length)
        out += QStringLiteral("…");
    return out;
}

QString timeText(std::chrono::system_clock::time_point time) {
    const auto ms = std::chrono::duration_cast<std::chrono::milliseconds>(time.time_since_epoch()).count();
    return QDateTime::fromMSecsSinceEpoch(ms).toString(QStringLiteral("yyyy-MM-dd hh:mm:ss.zzz"));
}

} // namespace

RemoteOrderLog::RemoteOrderLog(QString file, qint64 maxBytes)
    : m_File(std::move(file))
    , m_nMaxBytes(maxBytes) {}

RemoteOrderLog::~RemoteOrderLog() {
    Close();
}

void RemoteOrderLog::Add(QString const& address, QString const& order, QString const& result) {
    const std::lock_guard<std::mutex> lock(m_Lock);
    ++m_nAdded;
    if (m_Waiting.size() >= kMaxWaiting) {
        ++m_nLost;
        return;
    }
    // No more is kept in memory than will be written, and one character that tells that there was more.
    m_Waiting.push_back({std::chrono::system_clock::now(), address.left(kMaxAddress + 1), order.left(kMaxText + 1),
                         result.left(kMaxText + 1)});
    if (!m_bRunning) {
        m_bRunning = true;
        m_bEnd = false;
        m_Thread = std::thread([this] { Work(); });
    } else if (m_Waiting.size() == 1 || m_Waiting.size() == kMaxWaiting / 2) {
        m_Changed.notify_all();
    }
}

void RemoteOrderLog::Flush() {
    std::unique_lock<std::mutex> lock(m_Lock);
    const quint64 added = m_nAdded;
    while (m_bRunning && m_nWritten < added) {
        m_bHurry = true;
        m_Changed.notify_all();
        m_Changed.wait(lock);
    }
}

void RemoteOrderLog::Close() {
    const std::lock_guard<std::mutex> closing(m_CloseLock);
    std::thread thread;
    {
        const std::lock_guard<std::mutex> lock(m_Lock);
        if (!m_bRunning)
            return;
        m_bEnd = true;
        thread.swap(m_Thread);
    }
    m_Changed.notify_all();
    thread.join();
}

/// Ends only when nothing waits, and says so under the lock, so that an order that comes then starts the next thread.
void RemoteOrderLog::Work() {
    std::unique_lock<std::mutex> lock(m_Lock);
    while (true) {
        m_Changed.wait(lock, [this] { return m_bEnd || !m_Waiting.empty(); });
        if (m_Waiting.empty())
            break;
        m_Changed.wait_for(lock, kGather, [this] { return m_bEnd || m_bHurry || m_Waiting.size() >= kMaxWaiting / 2; });
        std::deque<Entry> entries;
        entries.swap(m_Waiting);
        const quint64 lost = std::exchange(m_nLost, 0);
        m_bHurry = false;
        lock.unlock();
        Write(entries, lost);
        lock.lock();
        m_nWritten += entries.size() + lost;
        m_Changed.notify_all();
    }
    m_bRunning = false;
    m_Changed.notify_all();
}

QByteArray RemoteOrderLog::Line(Entry const& entry) {
    const QChar tab = QLatin1Char('\t');
    return (timeText(entry.time) + tab + field(entry.address, kMaxAddress) + tab + field(entry.order, kMaxText) + tab +
            field(entry.result, kMaxText) + QLatin1Char('\n'))
        .toUtf8();
}

/// A file that cannot be written is told in the log once, until writing works again.
void RemoteOrderLog::Write(std::deque<Entry> const& entries, quint64 lost) {
    const QString path = rootPath(m_File);
    QDir().mkpath(QFileInfo(path).path());
    QByteArray lines;
    for (Entry const& entry : entries)
        lines += Line(entry);
    if (lost > 0)
        lines += Line({std::chrono::system_clock::now(), QString(), QString(),
                       QStringLiteral("%1 further orders not recorded").arg(lost)});
    // A single batch may be larger than the bound: then only its end is kept.
    if (lines.size() > m_nMaxBytes)
        lines = lines.mid(lines.indexOf('\n', lines.size() - static_cast<int>(m_nMaxBytes) - 1) + 1);
    if (QFileInfo(path).size() + lines.size() > m_nMaxBytes) {
        QFile::remove(path + QStringLiteral(".1"));
        QFile::rename(path, path + QStringLiteral(".1"));
    }
    QFile file(path);
    const bool ok = file.open(QIODevice::WriteOnly | QIODevice::Append | QIODevice::Unbuffered) &&
                    file.write(lines) == lines.size() && ::fdatasync(file.handle()) == 0;
    if (!ok && !m_bFailed)
        MarkLog::Instance()->ShowNote_Error(path + QStringLiteral(": not written: ") + file.errorString());
    m_bFailed = !ok;
}

} // namespace tessera
