// SPDX-License-Identifier: MIT
#include "support/durablefile.h"

#include "support/durabledirectory.h"
#include "support/filedescriptor.h"
#include "support/fileread.h"
#include "support/temporaryname.h"

#include <QFile>

#include <climits>
#include <cstdio>
#include <fcntl.h>
#include <mutex>
#include <sys/stat.h>
#include <unistd.h>
#include <vector>

namespace tessera {
namespace {

constexpr int maximumLinks = 40; // as the kernel's own limit
constexpr int maximumNames = 100;
constexpr mode_t permissionBits = 07777;
constexpr mode_t newFileMode = 0666;
constexpr int copyChunk = 1024 * 1024; // bytes

/// Where a save goes once symbolic links are followed.
struct Target {
    QString path; // as the caller gave it, for messages
    QByteArray directory;
    QByteArray name;
    bool exists = false;
    struct stat old = {};
};

/// 0 or an errno value; the link's text in `target`, made relative to the link's own directory.
int readLink(const QByteArray& link, QByteArray& target) {
    QByteArray buffer(PATH_MAX, '\0');
    const ssize_t length = ::readlink(link.constData(), buffer.data(), static_cast<size_t>(buffer.size()));
    if (length < 0)
        return errno;
    buffer.truncate(static_cast<int>(length));
    target = buffer.startsWith('/') ? buffer : directoryOf(link) + '/' + buffer;
    return 0;
}

DurableResult resolveTarget(const QString& path, Target& target) {
    target.path = path;
    QByteArray native = QFile::encodeName(path);
    if (native.isEmpty() || native.contains('\0'))
        return DurableResult::failure(DurableStep::ResolveTarget, EINVAL, path);
    for (int links = 0;; ++links) {
        target.directory = directoryOf(native);
        target.name = native.mid(native.lastIndexOf('/') + 1);
        if (target.name.isEmpty() || target.name == "." || target.name == "..")
            return DurableResult::failure(DurableStep::ResolveTarget, EISDIR, path);
        if (::lstat(native.constData(), &target.old) != 0) {
            if (errno == ENOENT)
                return DurableResult();
            return DurableResult::failure(DurableStep::ResolveTarget, errno, path);
        }
        if (S_ISREG(target.old.st_mode)) {
            target.exists = true;
            return DurableResult();
        }
        if (!S_ISLNK(target.old.st_mode)) {
            const int error = S_ISDIR(target.old.st_mode) ? EISDIR : EINVAL;
            return DurableResult::failure(DurableStep::ResolveTarget, error, path,
                                          QStringLiteral("not a regular file"));
        }
        if (links == maximumLinks)
            return DurableResult::failure(DurableStep::ResolveTarget, ELOOP, path);
        if (const int error = readLink(QByteArray(native), native))
            return DurableResult::failure(DurableStep::ResolveTarget, error, path);
    }
}

/// What is to stand in the file: bytes in memory, or an open file that is read piece by piece.
struct Content {
    const QByteArray* bytes = nullptr;
    int source = -1;
    qint64 size = 0;
};

/// The temporary file beside the target; removed at the end of its life unless it has become the target.
class Temporary {
public:
    Temporary(int directory, const Target& target)
        : m_directory(directory)
        , m_target(target) {}
    ~Temporary() {
        if (m_created)
            ::unlinkat(m_directory, m_name.constData(), 0);
    }
    Temporary(const Temporary&) = delete;
    Temporary& operator=(const Temporary&) = delete;

    DurableResult create() {
        const mode_t mode = m_target.exists ? m_target.old.st_mode & permissionBits : newFileMode;
        for (int attempt = 0; attempt < maximumNames; ++attempt) {
            m_name = makeTemporaryName(m_target.name);
            m_file = ::openat(m_directory, m_name.constData(), O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC,
                              mode & 0777u);
            if (m_file >= 0) {
                m_created = true;
                return DurableResult();
            }
            if (errno != EEXIST && errno != EINTR)
                break;
        }
        return failed(DurableStep::CreateTemporary, errno);
    }

    DurableResult fill(const Content& content) {
        FileDescriptor file(m_file);
        m_file = -1;
        DurableResult result = takeAttributes(file.get());
        if (result)
            result = content.bytes ? writeAll(file.get(), *content.bytes) : copyAll(file.get(), content.source);
        if (result)
            result = verify(file.get(), content.size);
        if (!result)
            return result;
        if (const int error = syncDescriptor(file.get()))
            return failed(DurableStep::SyncFile, error);
        if (const int error = file.closeChecked())
            return failed(DurableStep::CloseFile, error);
        return result;
    }

    DurableResult becomeTarget() {
        if (::renameat(m_directory, m_name.constData(), m_directory, m_target.name.constData()) != 0)
            return failed(DurableStep::Rename, errno);
        m_created = false;
        return DurableResult();
    }

private:
    DurableResult failed(DurableStep step, int error, const QString& detail = QString()) const {
        return DurableResult::failure(step, error, m_target.path, detail);
    }

    DurableResult takeAttributes(int file) const {
        if (!m_target.exists)
            return DurableResult();
        // Only root may give a file away; for all others the new file is their own, as with any editor.
        if (::fchown(file, m_target.old.st_uid, m_target.old.st_gid) != 0 && errno != EPERM)
            return failed(DurableStep::SetAttributes, errno);
        if (::fchmod(file, m_target.old.st_mode & permissionBits) != 0)
            return failed(DurableStep::SetAttributes, errno);
        return DurableResult();
    }

    DurableResult writeAll(int file, const QByteArray& bytes) const {
        const char* next = bytes.constData();
        size_t left = static_cast<size_t>(bytes.size());
        while (left > 0) {
            const ssize_t written = ::write(file, next, left);
            if (written < 0 && errno == EINTR)
                continue;
            if (written < 0)
                return failed(DurableStep::Write, errno);
            if (written == 0)
                return failed(DurableStep::Write, EIO, QStringLiteral("nothing more was taken"));
            next += written;
            left -= static_cast<size_t>(written);
        }
        return DurableResult();
    }

    DurableResult copyAll(int file, int source) const {
        std::vector<char> bytes(copyChunk);
        for (;;) {
            const ssize_t count = ::read(source, bytes.data(), bytes.size());
            if (count < 0 && errno == EINTR)
                continue;
            if (count < 0)
                return failed(DurableStep::ReadSource, errno);
            if (count == 0)
                return DurableResult();
            const DurableResult written = writeAll(file, QByteArray::fromRawData(bytes.data(), int(count)));
            if (!written)
                return written;
        }
    }

    DurableResult verify(int file, qint64 expected) const {
        struct stat status = {};
        if (::fstat(file, &status) != 0)
            return failed(DurableStep::VerifyLength, errno);
        if (status.st_size != expected) {
            return failed(DurableStep::VerifyLength, 0,
                          QStringLiteral("%1 bytes instead of %2").arg(status.st_size).arg(expected));
        }
        return m_target.exists ? moveTimeForward(file, status.st_mtim) : DurableResult();
    }

    /// The kernel stamps files with a clock of some milliseconds' grain, so two saves can carry the same time.
    DurableResult moveTimeForward(int file, const timespec& now) const {
        constexpr qint64 clockSetBack = 10000; // ms; beyond this the clock was changed and its new time stands
        const timespec& before = m_target.old.st_mtim;
        const qint64 nowMs = static_cast<qint64>(now.tv_sec) * 1000 + now.tv_nsec / 1000000;
        const qint64 beforeMs = static_cast<qint64>(before.tv_sec) * 1000 + before.tv_nsec / 1000000;
        if (nowMs > beforeMs || beforeMs - nowMs > clockSetBack)
            return DurableResult();
        timespec times[2] = {};
        times[0].tv_nsec = UTIME_OMIT;
        times[1].tv_sec = static_cast<time_t>((beforeMs + 1) / 1000);
        times[1].tv_nsec = static_cast<long>((beforeMs + 1) % 1000 * 1000000);
        return ::futimens(file, times) == 0 ? DurableResult() : failed(DurableStep::SetAttributes, errno);
    }

    const int m_directory;
    const Target& m_target;
    QByteArray m_name;
    int m_file = -1;
    bool m_created = false;
};

DurableResult replaceTarget(const Target& target, const Content& content) {
    DurableResult result = ensureDirectory(target.directory);
    if (!result)
        return result;
    // Opened before anything is changed: once the new file has its name only the sync itself can still fail.
    FileDescriptor directory(openDirectory(target.directory));
    if (!directory.isOpen())
        return DurableResult::failure(DurableStep::OpenDirectory, errno, target.path);
    {
        Temporary temporary(directory.get(), target);
        result = temporary.create();
        if (result)
            result = temporary.fill(content);
        if (result)
            result = temporary.becomeTarget();
        if (!result)
            return result;
    }
    if (const int error = syncDirectory(directory.get()))
        return DurableResult::failure(DurableStep::SyncDirectory, error, target.path);
    if (const int error = directory.closeChecked())
        return DurableResult::failure(DurableStep::CloseDirectory, error, target.path);
    return result;
}

} // namespace

DurableResult writeFileDurably(const QString& path, const QByteArray& bytes) {
    Target target;
    const DurableResult resolved = resolveTarget(path, target);
    return resolved ? replaceTarget(target, Content{&bytes, -1, bytes.size()}) : resolved;
}

DurableResult copyFileDurably(const QString& source, const QString& path) {
    FileDescriptor file(::open(QFile::encodeName(source).constData(), O_RDONLY | O_NONBLOCK | O_CLOEXEC));
    struct stat status = {};
    if (!file.isOpen() || ::fstat(file.get(), &status) != 0)
        return DurableResult::failure(DurableStep::ReadSource, errno, source);
    if (!S_ISREG(status.st_mode))
        return DurableResult::failure(DurableStep::ReadSource, 0, source, QStringLiteral("not a regular file"));
    Target target;
    const DurableResult resolved = resolveTarget(path, target);
    return resolved ? replaceTarget(target, Content{nullptr, file.get(), status.st_size}) : resolved;
}

DurableResult writeFileKeepingTail(const QString& path, const QByteArray& bytes) {
    static std::mutex mutex;
    const std::lock_guard<std::mutex> lock(mutex);
    Target target;
    const DurableResult resolved = resolveTarget(path, target);
    if (!resolved)
        return resolved;
    QByteArray whole = bytes;
    if (target.exists && target.old.st_size > bytes.size()) {
        if (const int error = readFileFrom(target.directory + '/' + target.name, bytes.size(), whole))
            return DurableResult::failure(DurableStep::ReadOld, error, path);
    }
    return replaceTarget(target, Content{&whole, -1, whole.size()});
}

} // namespace tessera
