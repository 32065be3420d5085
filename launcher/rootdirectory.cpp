// SPDX-License-Identifier: MIT
#include "rootdirectory.h"

#include "support/approot.h"
#include "support/orphansweep.h"

#include <QDebug>
#include <QDir>
#include <QFileInfo>

namespace tessera {

namespace {

QString lockProblem(QLockFile const& lock, QString const& path) {
    if (lock.error() != QLockFile::LockFailedError)
        return QStringLiteral("The root \"%1\" cannot be written.").arg(path);
    qint64 process = 0;
    QString host;
    QString program;
    lock.getLockInfo(&process, &host, &program);
    return QStringLiteral("The root \"%1\" is in use by another instance (process %2).").arg(path).arg(process);
}

} // namespace

RootDirectory::RootDirectory() = default;
RootDirectory::~RootDirectory() = default;

bool RootDirectory::take(QString const& directory, QString& error) {
    if (!directory.isEmpty())
        setApplicationRoot(directory);
    QString const path = applicationRoot();
    if (!QDir().mkpath(path) || !QFileInfo(path).isDir()) {
        error = QStringLiteral("The root \"%1\" cannot be made.").arg(path);
        return false;
    }
    auto lock = std::make_unique<QLockFile>(path + QStringLiteral("/.tessera.lock"));
    // The lock of a process that runs never goes stale by age; that of a dead one is taken over at once.
    lock->setStaleLockTime(0);
    if (!lock->tryLock(0)) {
        error = lockProblem(*lock, path);
        return false;
    }
    // The grid files are read and written relative to the root.
    if (!QDir::setCurrent(path)) {
        error = QStringLiteral("The root \"%1\" cannot be entered.").arg(path);
        return false;
    }
    m_path = path;
    m_lock = std::move(lock);
    for (QString const& failure : sweepOrphanedTemporaries(path).failures)
        qWarning("%s", qPrintable(failure));
    return true;
}

} // namespace tessera
