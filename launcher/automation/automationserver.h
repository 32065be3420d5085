// SPDX-License-Identifier: MIT
#pragma once

#include "automation/rpcmethod.h"

#include <QLocalServer>
#include <QObject>
#include <QString>
#include <memory>
#include <vector>

namespace tessera {

/// The automation port: JSON-RPC 2.0 over a local socket that only the owner may open, one object a line. Serves
/// several clients; the calls of one client are answered in their order. Main thread.
class AutomationServer : public QObject {
    Q_OBJECT
public:
    /// Longest request line, bytes.
    static constexpr int kLongestLine = 1024 * 1024;
    /// Bytes of answers that a client may leave unread before it is disconnected.
    static constexpr qint64 kMostUnread = 4 * 1024 * 1024;
    static constexpr int kMostClients = 32;

    explicit AutomationServer(QObject* parent = nullptr);
    ~AutomationServer() override;

    void addFamily(std::unique_ptr<RpcMethodFamily> family);
    /// Opens the socket. False with `error` when the path is in use by a running server, is not a socket, is too long
    /// or cannot be made. The socket of a dead server is replaced.
    bool listen(QString const& path, QString& error);
    /// Closes the socket and all connections.
    void close();

    /// Answers one call; also used without a socket.
    RpcReply call(QString const& method, QJsonValue const& params);

private:
    void acceptClients();

    QLocalServer m_server;
    std::vector<std::unique_ptr<RpcMethodFamily>> m_families;
};

} // namespace tessera
