// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "simengine/servers/linereader.h"
#include "simengine/servers/stationsession.h"
#include "support/filedescriptor.h"

#include <chrono>
#include <string>

namespace sim {

/// A socket of the command server with what waits to go in and out. One thread.
class StationConnection {
public:
    using Time = std::chrono::steady_clock::time_point;

    enum class State {
        Waiting, ///< has not proved itself
        Proven,  ///< is the station
        Closing, ///< refused: takes the reason, then goes
        Gone     ///< closed
    };

    /// Takes the socket, which does not block. The session ends after `badLines` refused lines.
    StationConnection(int socket, std::string const& address, QByteArray const& key, int badLines);

    int socket() const { return m_socket.get(); }
    State state() const { return m_state; }
    std::string const& address() const { return m_address; }
    /// Address, and the station's name once it has proved itself, for the log.
    QString name() const;
    /// When a connection that waits or closes has had its time.
    Time deadline() const { return m_deadline; }
    bool hasDeadline() const { return m_state == State::Waiting || m_state == State::Closing; }
    /// Bytes that the socket has not taken yet.
    std::size_t waitingOut() const { return static_cast<std::size_t>(m_out.size()) - static_cast<std::size_t>(m_sent); }
    /// Bytes of a line that has not ended.
    int waitingIn() const { return m_reader.waiting(); }

    /// Queues the challenge, which is to be answered by `deadline`.
    void greet(Time deadline);
    /// The next whole line; nothing when there is none or when it is too long.
    std::optional<QByteArray> nextLine() { return m_reader.next(); }
    bool isTooLong() const { return m_reader.isTooLong(); }
    /// Takes a line; the reply is queued, and a proof makes the connection the station.
    SessionStep handle(QByteArray const& line);
    void queue(QByteArray const& bytes) { m_out += bytes; }

    enum class ReadResult { More, Nothing, Ended };
    /// One read of the socket.
    ReadResult read();
    /// Sends what the socket takes. False when it broke.
    bool write();
    /// Queues the reason and ends by `deadline` at the latest: what still comes in is forgotten.
    void refuse(QString const& reason, Time deadline);
    void close();

private:
    void finishWriting();

    tessera::FileDescriptor m_socket;
    std::string const m_address;
    StationSession m_session;
    LineReader m_reader;
    State m_state = State::Waiting;
    Time m_deadline{};
    QByteArray m_out;
    int m_sent = 0;
    bool m_finished = false; ///< our side of the stream has ended
};

} // namespace sim
