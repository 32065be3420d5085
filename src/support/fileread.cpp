// SPDX-License-Identifier: MIT
#include "support/fileread.h"

#include "support/filedescriptor.h"

#include <fcntl.h>
#include <limits>
#include <sys/stat.h>

namespace tessera {

int readFileFrom(const QByteArray& path, qint64 offset, QByteArray& bytes) {
    FileDescriptor file(::open(path.constData(), O_RDONLY | O_CLOEXEC));
    if (!file.isOpen())
        return errno;
    struct stat status = {};
    if (::fstat(file.get(), &status) != 0)
        return errno;
    char buffer[65536];
    for (;;) {
        const ssize_t count = ::pread(file.get(), buffer, sizeof buffer, static_cast<off_t>(offset));
        if (count < 0 && errno == EINTR)
            continue;
        if (count < 0)
            return errno;
        if (count == 0)
            return offset < status.st_size ? EIO : file.closeChecked();
        if (bytes.size() > std::numeric_limits<int>::max() - static_cast<int>(sizeof buffer) - 64)
            return EFBIG;
        bytes.append(buffer, static_cast<int>(count));
        offset += count;
    }
}

} // namespace tessera
