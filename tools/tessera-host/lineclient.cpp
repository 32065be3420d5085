// SPDX-License-Identifier: MIT
#include "lineclient.h"

#include <QDeadlineTimer>
#include <algorithm>

namespace {

qint64 now() {
    return QDeadlineTimer::current(Qt::PreciseTimer).deadline();
}

} // namespace

LineClient::LineClient(char end, std::function<void(bool sent, QByteArray const& message)> show)
    : m_end(end)
    , m_show(std::move(show)) {}

void LineClient::setTimeout(int timeoutMs) {
    m_deadline = timeoutMs > 0 ? now() + timeoutMs : -1;
}

/// As the socket's waiting functions take it: below 0 for no end.
int LineClient::timeLeft() const {
    return m_deadline < 0 ? -1 : int(std::max<qint64>(0, m_deadline - now()));
}

HostOutcome LineClient::failure() const {
    return timeLeft() == 0 ? HostOutcome::TimeOut : HostOutcome::NoConnection;
}

HostOutcome LineClient::connectTo(QString const& host, int port, int timeoutMs) {
    setTimeout(timeoutMs);
    m_socket.connectToHost(host, quint16(port));
    return m_socket.waitForConnected(timeLeft()) ? HostOutcome::Done : failure();
}

HostOutcome LineClient::send(QByteArray const& message) {
    if (m_show)
        m_show(true, message);
    m_socket.write(message);
    while (m_socket.bytesToWrite() > 0) {
        if (!m_socket.waitForBytesWritten(timeLeft()))
            return failure();
    }
    return HostOutcome::Done;
}

HostOutcome LineClient::receive(QByteArray& message) {
    int end = m_received.indexOf(m_end);
    while (end < 0) {
        if (m_socket.bytesAvailable() == 0 && !m_socket.waitForReadyRead(timeLeft()))
            return failure();
        m_received += m_socket.readAll();
        end = m_received.indexOf(m_end);
    }
    message = m_received.left(end + 1);
    m_received.remove(0, end + 1);
    if (m_show)
        m_show(false, message);
    return HostOutcome::Done;
}
