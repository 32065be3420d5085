// SPDX-License-Identifier: MIT
#pragma once

#include "tests/support/bytestream.h"

#include <QString>

namespace tests {

/// A plain client of a TCP port on the loopback or of a local socket. Reads and writes are those of ByteStream: they
/// block the test, not the servers that live in its thread.
class SocketClient : public ByteStream {
public:
    /// Connects to 127.0.0.1; false with connectError() when nobody takes the call in time.
    bool connectTcp(quint16 port, int milliseconds = defaultWait);
    /// Connects to the local (Unix) socket at `path`.
    bool connectLocal(const QString& path, int milliseconds = defaultWait);

    /// Says that nothing more will be written; reading goes on.
    void finishWriting();
    /// Closes with a reset, as a host does whose power goes.
    void abort();

    /// Why the last connect failed.
    const QString& connectError() const { return m_connectError; }

private:
    bool connectTo(int family, const void* address, unsigned length, int milliseconds);

    QString m_connectError;
};

} // namespace tests
