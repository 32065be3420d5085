// SPDX-License-Identifier: MIT
#pragma once

#include "hostoutcome.h"

#include <QByteArray>
#include <QTcpSocket>
#include <functional>

/// A connection of messages that end in one byte. Blocks; any one thread, no event loop needed.
class LineClient {
public:
    /// `show` gets what goes over the wire, sent or received; may be empty.
    LineClient(char end, std::function<void(bool sent, QByteArray const& message)> show);

    /// `timeoutMs` is for all calls from here on together; 0 for no end.
    HostOutcome connectTo(QString const& host, int port, int timeoutMs);
    /// With its end byte.
    HostOutcome send(QByteArray const& message);
    /// The next message, with its end byte.
    HostOutcome receive(QByteArray& message);
    /// From here on another time.
    void setTimeout(int timeoutMs);
    /// Why there is no connection.
    QString problem() const { return m_socket.errorString(); }

private:
    int timeLeft() const;
    HostOutcome failure() const;

    QTcpSocket m_socket;
    QByteArray m_received;
    char m_end;
    std::function<void(bool sent, QByteArray const& message)> m_show;
    qint64 m_deadline = -1; ///< below 0 none
};
