// SPDX-License-Identifier: MIT
#include "automation/automationserver.h"

#include "automation/automationclient.h"

#include <QFileInfo>
#include <QLocalSocket>
#include <QStringList>
#include <sys/stat.h>
#include <sys/un.h>

namespace tessera {

namespace {

/// How long a server that still lives is given to accept, ms.
constexpr int kProbeTime = 1000;

bool isSocket(QString const& path) {
    struct stat status {};
    return ::lstat(QFile::encodeName(path).constData(), &status) == 0 && S_ISSOCK(status.st_mode);
}

bool exists(QString const& path) {
    struct stat status {};
    return ::lstat(QFile::encodeName(path).constData(), &status) == 0;
}

bool isAnswered(QString const& path) {
    QLocalSocket probe;
    probe.connectToServer(path);
    bool const connected = probe.waitForConnected(kProbeTime);
    // A full queue of a busy server is an answer too: only a refusal means that nobody listens.
    return connected || probe.error() != QLocalSocket::ConnectionRefusedError;
}

} // namespace

AutomationServer::AutomationServer(QObject* parent)
    : QObject(parent) {
    m_server.setSocketOptions(QLocalServer::UserAccessOption);
    m_server.setMaxPendingConnections(kMostClients);
    connect(&m_server, &QLocalServer::newConnection, this, &AutomationServer::acceptClients);
}

AutomationServer::~AutomationServer() {
    close();
}

void AutomationServer::addFamily(std::unique_ptr<RpcMethodFamily> family) {
    m_families.push_back(std::move(family));
}

bool AutomationServer::listen(QString const& path, QString& error) {
    QString const absolute = QFileInfo(path).absoluteFilePath();
    if (QFile::encodeName(absolute).size() >= int(sizeof(sockaddr_un::sun_path))) {
        error = QStringLiteral("the socket path \"%1\" is longer than %2 bytes")
                    .arg(absolute)
                    .arg(sizeof(sockaddr_un::sun_path) - 1);
        return false;
    }
    if (exists(absolute)) {
        if (!isSocket(absolute)) {
            error = QStringLiteral("\"%1\" exists and is not a socket").arg(absolute);
            return false;
        }
        if (isAnswered(absolute)) {
            error = QStringLiteral("the socket \"%1\" is in use by another program").arg(absolute);
            return false;
        }
        QLocalServer::removeServer(absolute);
    }
    if (m_server.listen(absolute))
        return true;
    error = QStringLiteral("cannot open the socket \"%1\": %2").arg(absolute, m_server.errorString());
    return false;
}

void AutomationServer::close() {
    m_server.close();
    qDeleteAll(findChildren<AutomationClient*>(QString(), Qt::FindDirectChildrenOnly));
}

void AutomationServer::acceptClients() {
    while (QLocalSocket* socket = m_server.nextPendingConnection()) {
        if (findChildren<AutomationClient*>(QString(), Qt::FindDirectChildrenOnly).size() >= kMostClients) {
            socket->abort();
            socket->deleteLater();
            continue;
        }
        new AutomationClient(socket, this);
    }
}

RpcReply AutomationServer::call(QString const& method, QJsonValue const& params) {
    RpcReply reply;
    QStringList names;
    for (std::unique_ptr<RpcMethodFamily> const& family : m_families) {
        if (family->call(method, params, reply))
            return reply;
        names += family->methodNames();
    }
    return RpcReply::failure(RpcMethodNotFound, QStringLiteral("no method \"%1\"").arg(method),
                             QJsonObject{{QStringLiteral("methods"), QJsonArray::fromStringList(names)}});
}

} // namespace tessera
