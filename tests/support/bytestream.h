// SPDX-License-Identifier: MIT
#pragma once

#include "tests/support/waitfor.h"

#include <QByteArray>
#include <QString>

namespace tests {

/// Bytes to and from a descriptor, each call with a time-out in ms before the scale. Waits with waitFor(), so a server
/// in the test's own thread goes on meanwhile. What is not returned stays for the next call. One thread at a time.
class ByteStream {
public:
    /// Takes the descriptor over and makes it non-blocking; -1 for none.
    explicit ByteStream(int descriptor = -1);
    ~ByteStream();
    ByteStream(const ByteStream&) = delete;
    ByteStream& operator=(const ByteStream&) = delete;

    /// Closes what was there and takes another descriptor over.
    void reset(int descriptor);
    void close();
    bool isOpen() const { return m_descriptor >= 0; }
    int descriptor() const { return m_descriptor; }

    /// True when all bytes were taken.
    bool write(const QByteArray& bytes, int milliseconds = defaultWait);
    /// Exactly `count` bytes; null when they do not come in time or the other end is gone before.
    QByteArray read(int count, int milliseconds = defaultWait);
    /// All up to and with `terminator`; null when it does not come.
    QByteArray readUntil(const QByteArray& terminator, int milliseconds = defaultWait);
    /// A line without its line end ("\n" or "\r\n"), not null; null when no line end comes.
    QByteArray readLine(int milliseconds = defaultWait);
    /// What has come so far, without waiting.
    QByteArray readAvailable();
    /// True when the other end closes in time. What came before stays readable.
    bool waitForEnd(int milliseconds = defaultWait);

    /// Why the last call failed, with what had come; empty after success.
    const QString& errorString() const { return m_error; }

private:
    void fill();
    QByteArray take(int count);
    bool waitFull(const std::function<bool()>& enough, int milliseconds, const QString& what);

    int m_descriptor = -1;
    QByteArray m_buffer;
    bool m_ended = false;
    QString m_error;
};

} // namespace tests
