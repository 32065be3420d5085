// SPDX-License-Identifier: MIT
#include "support/durabledirectory.h"

#include "support/filedescriptor.h"

#include <QFile>

#include <cerrno>
#include <fcntl.h>
#include <sys/stat.h>

namespace tessera {
namespace {

constexpr mode_t newDirectoryMode = 0777;

QByteArray withoutSlashesAtEnd(QByteArray path) {
    while (path.size() > 1 && path.endsWith('/'))
        path.chop(1);
    return path;
}

/// Makes the entry of a new directory durable. 0 or an errno value.
int syncEntryOf(const QByteArray& directory) {
    FileDescriptor parent(openDirectory(directoryOf(directory)));
    if (!parent.isOpen())
        return errno;
    const int error = syncDirectory(parent.get());
    const int closeError = parent.closeChecked();
    return error != 0 ? error : closeError;
}

} // namespace

QByteArray directoryOf(const QByteArray& path) {
    const int slash = path.lastIndexOf('/');
    if (slash < 0)
        return QByteArrayLiteral(".");
    return slash == 0 ? QByteArrayLiteral("/") : path.left(slash);
}

int openDirectory(const QByteArray& directory) {
    int descriptor = -1;
    do {
        descriptor = ::open(directory.constData(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    } while (descriptor < 0 && errno == EINTR);
    return descriptor;
}

int syncDescriptor(int descriptor) {
    while (::fsync(descriptor) != 0) {
        if (errno != EINTR)
            return errno;
    }
    return 0;
}

int syncDirectory(int descriptor) {
    const int error = syncDescriptor(descriptor);
    // Network mounts that cannot sync a directory by itself answer EINVAL: the whole file system then.
    if (error != EINVAL)
        return error;
    return ::syncfs(descriptor) == 0 ? 0 : errno;
}

DurableResult ensureDirectory(const QByteArray& givenDirectory) {
    const QByteArray directory = withoutSlashesAtEnd(givenDirectory);
    const auto failed = [&directory](int error) {
        return DurableResult::failure(DurableStep::MakeDirectory, error, QFile::decodeName(directory));
    };
    struct stat status = {};
    if (::stat(directory.constData(), &status) == 0)
        return S_ISDIR(status.st_mode) ? DurableResult() : failed(ENOTDIR);
    if (errno != ENOENT)
        return failed(errno);
    const DurableResult parent = ensureDirectory(directoryOf(directory));
    if (!parent)
        return parent;
    if (::mkdir(directory.constData(), newDirectoryMode) != 0)
        return errno == EEXIST ? DurableResult() : failed(errno);
    if (const int error = syncEntryOf(directory)) {
        // Left in place it would pass for a durable one at the next attempt.
        ::rmdir(directory.constData());
        return failed(error);
    }
    return DurableResult();
}

} // namespace tessera
