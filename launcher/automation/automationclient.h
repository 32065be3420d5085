// SPDX-License-Identifier: MIT
#pragma once

#include "automation/jsonrpc.h"
#include "automation/linesplitter.h"

#include <QJsonArray>
#include <QLocalSocket>
#include <QObject>
#include <functional>

namespace tessera {

class AutomationServer;

/// One connection of the automation port. Reads no further while calls wait, so that a client that floods the port is
/// held up by its own socket. What a client has sent whole before it hangs up is still done; then the object deletes
/// itself. Main thread.
class AutomationClient : public QObject {
    Q_OBJECT
public:
    /// Takes ownership of the connected socket.
    AutomationClient(QLocalSocket* socket, AutomationServer* server);
    ~AutomationClient() override;

private:
    void readMore();
    void finish();
    void scheduleNext();
    void answerNext();
    /// Answers one line; what is to be done after the answer is queued behind it.
    void answerLine(QByteArray const& line);
    /// Null object when the entry wants no answer.
    QJsonObject answerItem(RpcItem const& item, QVector<std::function<void()>>& afterwards);
    void send(QByteArray const& bytes);

    QLocalSocket* m_socket;
    AutomationServer* m_server;
    LineSplitter m_lines;
    bool m_scheduled = false;
    bool m_ended = false; ///< the connection is no more; what came in whole is still to be done
};

} // namespace tessera
