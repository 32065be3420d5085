// SPDX-License-Identifier: MIT
#include "automation/automationclient.h"

#include "automation/automationserver.h"

#include <QDebug>

namespace tessera {

namespace {

/// Bytes taken from the socket at once; what a client sends beyond waits in the kernel.
constexpr int kReadChunk = 64 * 1024;

} // namespace

AutomationClient::AutomationClient(QLocalSocket* socket, AutomationServer* server)
    : QObject(server)
    , m_socket(socket)
    , m_server(server)
    , m_lines(AutomationServer::kLongestLine) {
    m_socket->setParent(this);
    m_socket->setReadBufferSize(kReadChunk);
    connect(m_socket, &QLocalSocket::readyRead, this, &AutomationClient::readMore);
    connect(m_socket, &QLocalSocket::disconnected, this, &AutomationClient::finish);
    readMore();
}

AutomationClient::~AutomationClient() {
    // The socket reports its own end while it is deleted; by then there is nobody to tell.
    m_socket->disconnect(this);
}

void AutomationClient::readMore() {
    if (m_lines.hasLine()) {
        scheduleNext();
        return;
    }
    if (m_socket->bytesAvailable() > 0)
        m_lines.append(m_socket->read(kReadChunk));
    scheduleNext();
}

void AutomationClient::finish() {
    m_ended = true;
    readMore();
}

void AutomationClient::scheduleNext() {
    if (m_scheduled)
        return;
    if (!m_lines.hasLine() && m_socket->bytesAvailable() == 0) {
        if (m_ended)
            deleteLater();
        return;
    }
    m_scheduled = true;
    // Queued, so that it comes after what the last call left to be done, and also within a modal dialog that it opened.
    QMetaObject::invokeMethod(this, &AutomationClient::answerNext, Qt::QueuedConnection);
}

void AutomationClient::answerNext() {
    m_scheduled = false;
    if (!m_lines.hasLine()) {
        readMore();
        return;
    }
    LineSplitter::Line const line = m_lines.takeLine();
    if (line.tooLong) {
        RpcError const error{RpcInvalidRequest,
                             QStringLiteral("a line is at most %1 bytes long").arg(AutomationServer::kLongestLine),
                             QJsonValue(QJsonValue::Undefined)};
        send(JsonRpc::line(JsonRpc::errorAnswer(QJsonValue::Null, error)));
    } else {
        answerLine(line.text);
    }
    scheduleNext();
}

void AutomationClient::answerLine(QByteArray const& line) {
    RpcLine const parsed = JsonRpc::parse(line);
    QVector<std::function<void()>> afterwards;
    QJsonArray answers;
    for (RpcItem const& item : parsed.items) {
        QJsonObject const answer = answerItem(item, afterwards);
        if (!answer.isEmpty())
            answers.append(answer);
    }
    if (parsed.batch && !answers.isEmpty())
        send(JsonRpc::line(answers));
    else if (!answers.isEmpty())
        send(JsonRpc::line(answers.first().toObject()));
    // The server outlives its clients, and what was asked for is done even when the asker has gone meanwhile.
    for (std::function<void()> const& action : afterwards)
        QMetaObject::invokeMethod(m_server, action, Qt::QueuedConnection);
}

QJsonObject AutomationClient::answerItem(RpcItem const& item, QVector<std::function<void()>>& afterwards) {
    if (item.error)
        return JsonRpc::errorAnswer(item.request.id, *item.error);
    RpcReply const reply = m_server->call(item.request.method, item.request.params);
    if (reply.afterwards)
        afterwards.append(reply.afterwards);
    if (item.request.isNotification())
        return {};
    if (reply.error)
        return JsonRpc::errorAnswer(item.request.id, *reply.error);
    return JsonRpc::resultAnswer(item.request.id, reply.result);
}

void AutomationClient::send(QByteArray const& bytes) {
    if (m_socket->state() != QLocalSocket::ConnectedState)
        return;
    if (m_socket->bytesToWrite() > AutomationServer::kMostUnread) {
        qWarning("automation: a client that does not read its answers was disconnected");
        m_lines = LineSplitter(AutomationServer::kLongestLine);
        m_socket->abort();
        return;
    }
    m_socket->write(bytes);
    m_socket->flush();
}

} // namespace tessera
