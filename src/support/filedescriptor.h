// SPDX-License-Identifier: MIT
#pragma once

#include <cerrno>
#include <unistd.h>

namespace tessera {

/// Owns a POSIX file descriptor; closes it at the end of its life unless closeChecked() or release() came first.
class FileDescriptor {
public:
    explicit FileDescriptor(int descriptor = -1)
        : m_descriptor(descriptor) {}
    ~FileDescriptor() {
        if (m_descriptor >= 0)
            ::close(m_descriptor);
    }
    FileDescriptor(const FileDescriptor&) = delete;
    FileDescriptor& operator=(const FileDescriptor&) = delete;

    bool isOpen() const { return m_descriptor >= 0; }
    int get() const { return m_descriptor; }

    /// Closes and returns 0, or the errno value of a close that failed. Linux frees the number even when close() fails,
    /// so it is never tried twice; EINTR says nothing about the data and is no failure here.
    int closeChecked() {
        const int descriptor = release();
        if (descriptor < 0 || ::close(descriptor) == 0 || errno == EINTR)
            return 0;
        return errno;
    }

    int release() {
        const int descriptor = m_descriptor;
        m_descriptor = -1;
        return descriptor;
    }

private:
    int m_descriptor;
};

} // namespace tessera
