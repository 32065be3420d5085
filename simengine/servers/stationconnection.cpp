// SPDX-License-Identifier: GPL-2.0-or-later
#include "simengine/servers/stationconnection.h"

#include "simengine/servers/stationmessage.h"

#include <array>
#include <cerrno>
#include <sys/socket.h>

namespace sim {

namespace {

constexpr std::size_t kReadBytes = std::size_t{64} * 1024; ///< of one turn, so that no connection holds up the others

bool isOnlyNotNow(int error) {
    return error == EAGAIN || error == EWOULDBLOCK || error == EINTR;
}

} // namespace

StationConnection::StationConnection(int socket, std::string const& address, QByteArray const& key, int badLines)
    : m_socket(socket)
    , m_address(address)
    , m_session(key, badLines)
    , m_reader(kMaxProofLineBytes) {}

QString StationConnection::name() const {
    QString const address = QString::fromStdString(m_address);
    return m_session.isProven() ? QStringLiteral("%1 (%2)").arg(address, m_session.station()) : address;
}

void StationConnection::greet(Time deadline) {
    m_deadline = deadline;
    queue(m_session.challenge());
}

SessionStep StationConnection::handle(QByteArray const& line) {
    SessionStep step = m_session.handle(line);
    queue(step.reply);
    if (step.proven) {
        m_state = State::Proven;
        m_reader.setLimit(kMaxLineBytes);
    }
    return step;
}

StationConnection::ReadResult StationConnection::read() {
    std::array<char, kReadBytes> bytes;
    ssize_t const count = ::recv(m_socket.get(), bytes.data(), bytes.size(), 0);
    if (count < 0)
        return isOnlyNotNow(errno) ? ReadResult::Nothing : ReadResult::Ended;
    if (count == 0)
        return ReadResult::Ended;
    if (m_state != State::Closing)
        m_reader.append(bytes.data(), static_cast<int>(count));
    return ReadResult::More;
}

bool StationConnection::write() {
    while (m_sent < m_out.size()) {
        std::size_t const left = static_cast<std::size_t>(m_out.size() - m_sent);
        ssize_t const count = ::send(m_socket.get(), m_out.constData() + m_sent, left, MSG_NOSIGNAL);
        if (count < 0 && errno == EINTR)
            continue;
        if (count < 0)
            return isOnlyNotNow(errno);
        m_sent += static_cast<int>(count);
        if (m_sent * 2 >= m_out.size()) {
            m_out.remove(0, m_sent);
            m_sent = 0;
        }
    }
    if (m_state == State::Closing)
        finishWriting();
    return true;
}

/// With input unread a close would be a reset, which can take the reason away from under the other side's nose: so the
/// other side closes first.
void StationConnection::finishWriting() {
    if (!m_finished)
        ::shutdown(m_socket.get(), SHUT_WR);
    m_finished = true;
}

void StationConnection::refuse(QString const& reason, Time deadline) {
    queue(refusedLine(reason));
    m_state = State::Closing;
    m_deadline = deadline;
}

void StationConnection::close() {
    m_state = State::Gone;
    m_socket.closeChecked();
}

} // namespace sim
