// SPDX-License-Identifier: MIT
#include "support/temporaryname.h"

#include <QFile>
#include <QList>

#include <atomic>
#include <cerrno>
#include <csignal>
#include <mutex>
#include <unistd.h>

namespace tessera {
namespace {

const char temporarySuffix[] = ".tessera-tmp";
constexpr int bootDigits = 8;
constexpr int startTimeField = 22; // of /proc/<pid>/stat, counted from 1
constexpr int longestEntry = 255;  // bytes in a directory entry

QByteArray readProcFile(const QString& path) {
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

QByteArray currentBoot() {
    QByteArray id = readProcFile(QStringLiteral("/proc/sys/kernel/random/boot_id")).left(bootDigits);
    for (const char c : id) {
        if (!isxdigit(static_cast<unsigned char>(c)))
            return QByteArray(bootDigits, '0');
    }
    return id.size() == bootDigits ? id : QByteArray(bootDigits, '0');
}

/// 0 when there is no such process or /proc does not tell.
unsigned long long processStartTime(qint64 processId) {
    const QByteArray stat = readProcFile(QStringLiteral("/proc/%1/stat").arg(processId));
    // The second field, the program's name in brackets, may itself hold blanks and brackets.
    const int nameEnd = stat.lastIndexOf(')');
    if (nameEnd < 0)
        return 0;
    const QList<QByteArray> fields = stat.mid(nameEnd + 2).split(' ');
    constexpr int index = startTimeField - 3;
    return fields.size() > index ? fields.at(index).toULongLong() : 0;
}

bool isDigits(const QByteArray& text) {
    for (const char c : text) {
        if (c < '0' || c > '9')
            return false;
    }
    return !text.isEmpty();
}

QByteArray cutBetweenCharacters(const QByteArray& name, int length) {
    if (name.size() <= length)
        return name;
    int end = length;
    while (end > 0 && (static_cast<unsigned char>(name.at(end)) & 0xC0u) == 0x80u)
        --end;
    return name.left(end);
}

} // namespace

TemporaryOwner currentTemporaryOwner() {
    static std::mutex mutex;
    static TemporaryOwner cached;
    const qint64 self = ::getpid();
    const std::lock_guard<std::mutex> lock(mutex);
    if (cached.processId != self) {
        cached.boot = currentBoot();
        cached.startTime = processStartTime(self);
        cached.processId = self;
    }
    return cached;
}

bool isTemporaryOwnerAlive(const TemporaryOwner& owner) {
    if (owner.boot != currentTemporaryOwner().boot)
        return false;
    if (::kill(static_cast<pid_t>(owner.processId), 0) != 0 && errno == ESRCH)
        return false;
    const unsigned long long startTime = processStartTime(owner.processId);
    // Without a start time on either side the number in use is all that is known: leave the file alone.
    return startTime == 0 || owner.startTime == 0 || startTime == owner.startTime;
}

QByteArray makeTemporaryName(const QByteArray& name) {
    static std::atomic<unsigned long long> counter{0};
    const TemporaryOwner owner = currentTemporaryOwner();
    const QByteArray tail = '.' + owner.boot + '-' + QByteArray::number(owner.processId) + '-' +
                            QByteArray::number(owner.startTime) + '-' +
                            QByteArray::number(counter.fetch_add(1, std::memory_order_relaxed)) + temporarySuffix;
    return '.' + cutBetweenCharacters(name, longestEntry - 1 - tail.size()) + tail;
}

bool parseTemporaryName(const QByteArray& name, TemporaryOwner& owner) {
    if (!name.startsWith('.') || !name.endsWith(temporarySuffix))
        return false;
    const QByteArray body = name.left(name.size() - static_cast<int>(sizeof temporarySuffix - 1));
    const int dot = body.lastIndexOf('.');
    if (dot < 1)
        return false;
    const QList<QByteArray> parts = body.mid(dot + 1).split('-');
    if (parts.size() != 4 || parts.at(0).size() != bootDigits)
        return false;
    if (!isDigits(parts.at(1)) || !isDigits(parts.at(2)) || !isDigits(parts.at(3)))
        return false;
    bool pidFits = false;
    const qint64 processId = parts.at(1).toInt(&pidFits);
    if (!pidFits || processId <= 0)
        return false;
    owner.boot = parts.at(0);
    owner.processId = processId;
    owner.startTime = parts.at(2).toULongLong();
    return true;
}

} // namespace tessera
