// SPDX-License-Identifier: MIT
#include "tests/support/bytestream.h"

#include <cerrno>
#include <fcntl.h>
#include <sys/socket.h>
#include <system_error>
#include <unistd.h>

namespace tests {
namespace {

QString reason(int error) {
    return QString::fromStdString(std::generic_category().message(error));
}

/// A socket whose other end is gone must not end the test by a signal.
ssize_t writeSome(int descriptor, const char* bytes, int count) {
    const ssize_t sent = ::send(descriptor, bytes, static_cast<size_t>(count), MSG_NOSIGNAL);
    if (sent < 0 && errno == ENOTSOCK)
        return ::write(descriptor, bytes, static_cast<size_t>(count));
    return sent;
}

bool isPassing(int error) {
    return error == EAGAIN || error == EINTR;
}

} // namespace

ByteStream::ByteStream(int descriptor) {
    reset(descriptor);
}

ByteStream::~ByteStream() {
    close();
}

void ByteStream::reset(int descriptor) {
    close();
    m_descriptor = descriptor;
    m_buffer.clear();
    m_ended = false;
    m_error.clear();
    if (descriptor >= 0)
        ::fcntl(descriptor, F_SETFL, ::fcntl(descriptor, F_GETFL) | O_NONBLOCK);
}

void ByteStream::close() {
    if (m_descriptor >= 0)
        ::close(m_descriptor);
    m_descriptor = -1;
}

bool ByteStream::write(const QByteArray& bytes, int milliseconds) {
    int done = 0;
    int error = isOpen() ? 0 : EBADF;
    const bool finished = waitFor(
        [&] {
            while (error == 0 && done < bytes.size()) {
                const ssize_t count = writeSome(m_descriptor, bytes.constData() + done, bytes.size() - done);
                if (count >= 0)
                    done += static_cast<int>(count);
                else if (isPassing(errno))
                    return false;
                else
                    error = errno;
            }
            return true;
        },
        milliseconds);
    m_error.clear();
    if (error != 0)
        m_error = QStringLiteral("write: %1").arg(reason(error));
    else if (!finished)
        m_error = QStringLiteral("only %1 of %2 bytes were taken in time").arg(done).arg(bytes.size());
    return m_error.isEmpty();
}

void ByteStream::fill() {
    char part[4096];
    while (isOpen() && !m_ended) {
        const ssize_t count = ::read(m_descriptor, part, sizeof part);
        if (count > 0)
            m_buffer.append(part, static_cast<int>(count));
        else if (count < 0 && isPassing(errno))
            return;
        else
            m_ended = true; // a pty whose slave is closed answers with EIO
    }
}

QByteArray ByteStream::take(int count) {
    const QByteArray bytes = m_buffer.left(count);
    m_buffer.remove(0, count);
    return bytes.isNull() ? QByteArray("") : bytes;
}

bool ByteStream::waitFull(const std::function<bool()>& enough, int milliseconds, const QString& what) {
    bool got = false;
    waitFor(
        [&] {
            fill();
            got = enough();
            return got || m_ended || !isOpen();
        },
        milliseconds);
    m_error.clear();
    if (!got) {
        const QString why = m_ended ? QStringLiteral("the other end is closed")
                                    : (isOpen() ? QStringLiteral("time is up") : QStringLiteral("not open"));
        m_error = QStringLiteral("%1 did not come, %2; so far: \"%3\"")
                      .arg(what, why, QString::fromLatin1(m_buffer.toPercentEncoding(" ;,()=")));
    }
    return got;
}

QByteArray ByteStream::read(int count, int milliseconds) {
    const bool got =
        waitFull([&] { return m_buffer.size() >= count; }, milliseconds, QStringLiteral("%1 bytes").arg(count));
    return got ? take(count) : QByteArray();
}

QByteArray ByteStream::readUntil(const QByteArray& terminator, int milliseconds) {
    const bool got = waitFull([&] { return m_buffer.contains(terminator); }, milliseconds,
                              QStringLiteral("\"%1\"").arg(QString::fromLatin1(terminator.toPercentEncoding(";"))));
    return got ? take(m_buffer.indexOf(terminator) + terminator.size()) : QByteArray();
}

QByteArray ByteStream::readLine(int milliseconds) {
    QByteArray line = readUntil("\n", milliseconds);
    if (line.isNull())
        return line;
    line.chop(line.endsWith("\r\n") ? 2 : 1);
    return line;
}

QByteArray ByteStream::readAvailable() {
    fill();
    return take(m_buffer.size());
}

bool ByteStream::waitForEnd(int milliseconds) {
    return waitFull([this] { return m_ended; }, milliseconds, QStringLiteral("the end"));
}

} // namespace tests
