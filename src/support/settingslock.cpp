// SPDX-License-Identifier: MIT
#include "support/settingslock.h"

#include "support/filedescriptor.h"

#include <QElapsedTimer>
#include <QFile>

#include <cerrno>
#include <cstdlib>
#include <ctime>
#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>

namespace tessera {
namespace {

constexpr int longestWait = 10000; // ms; QSettings holds the lock for one write of a small file
constexpr int oneTry = 250;        // ms; QLockFile looks ever more seldom within one try, up to every 5 s
constexpr int tornLockAge = 2;     // s; between making the lock file and filling it lie a few system calls

const char lockSuffix[] = ".lock";

} // namespace

SettingsLock::SettingsLock(const QString& path)
    : m_path(path)
    , m_lock(path + QLatin1String(lockSuffix)) {
    // QLockFile's age limit of 30 s stays as it is. A holder gives its lock up in two steps, first the kernel's lock,
    // then the file by its name: a waiter that took the file away in between would have its own new one deleted. So a
    // lock that names its holder must not be judged by a shorter age than any save can last.
}

DurableResult SettingsLock::take() {
    QElapsedTimer timer;
    timer.start();
    for (;;) {
        if (m_lock.tryLock(oneTry))
            return DurableResult();
        if (m_lock.error() != QLockFile::LockFailedError) {
            return DurableResult::failure(DurableStep::LockFile, EIO, m_path,
                                          QStringLiteral("the lock file cannot be made"));
        }
        if (timer.hasExpired(longestWait)) {
            return DurableResult::failure(DurableStep::LockFile, EWOULDBLOCK, m_path,
                                          QStringLiteral("another writer does not release it"));
        }
        removeTornLock();
    }
}

/// A writer killed between making the lock file and filling it, or a power cut soon after, leaves one that names
/// nobody. To QLockFile it counts as held until it is 30 s old. No holder can lose it here: whoever fills it has locked
/// it in the kernel before, and until this function lets that lock go nobody else may delete the file.
void SettingsLock::removeTornLock() {
    qint64 process = 0;
    QString host;
    QString program;
    if (m_lock.getLockInfo(&process, &host, &program))
        return;
    const QByteArray name = QFile::encodeName(m_path) + lockSuffix;
    FileDescriptor file(::open(name.constData(), O_RDWR | O_NOFOLLOW | O_CLOEXEC));
    struct stat status = {};
    if (!file.isOpen() || ::flock(file.get(), LOCK_EX | LOCK_NB) != 0 || ::fstat(file.get(), &status) != 0)
        return;
    const bool isOld = std::llabs(static_cast<long long>(::time(nullptr) - status.st_mtime)) >= tornLockAge;
    // Without a name left it was taken away in the meantime, and the name may be another writer's lock by now. Named
    // still, it is asked again: it may have been filled since.
    if (status.st_nlink > 0 && isOld && !m_lock.getLockInfo(&process, &host, &program))
        ::unlink(name.constData());
}

} // namespace tessera
