// SPDX-License-Identifier: GPL-2.0-or-later
#include "engine/ccdserver.h"

#include "engine/marklog.h"
#include "engine/systemparam.h"
#include "simengine/servers/listensocket.h"
#include "simengine/servers/stationmessage.h"

#include <QCoreApplication>
#include <QHostAddress>
#include <QPointer>
#include <QTcpServer>
#include <QTcpSocket>

// What a camera and its machine have to say to each other is an affair of the two. The simulated machine has no use for
// pictures: it takes the connection, so that the operator sees whether the camera is there, and forgets what it sends.
struct CCDServer::Private {
    QString address; ///< as it was set
    QPointer<QTcpServer> listener;
    QPointer<QTcpSocket> camera;

    void listen();
    void takeCameras();
    void dropCamera();
};

namespace {

constexpr quint16 kDefaultPort = 7661;
constexpr int kReadBytes = 64 * 1024;

std::unique_ptr<CCDServer>& holder() {
    static std::unique_ptr<CCDServer> server;
    return server;
}

void note(QString const& text) {
    MarkLog::Instance()->ShowNote(QStringLiteral("camera link: ") + text);
}

void noteError(QString const& text) {
    MarkLog::Instance()->ShowNote_Error(QStringLiteral("camera link: ") + text);
}

struct ListenAddress {
    QHostAddress host;
    quint16 port = kDefaultPort;
};

/// A numeric IPv4 address, ":" and a port behind it when it is not the usual one.
bool parse(QString const& text, ListenAddress& address) {
    QString const trimmed = text.trimmed();
    if (trimmed.contains(QLatin1Char(':'))) {
        bool good = false;
        address.port = trimmed.section(QLatin1Char(':'), 1).toUShort(&good);
        if (!good)
            return false;
    }
    return address.host.setAddress(trimmed.section(QLatin1Char(':'), 0, 0)) &&
           address.host.protocol() == QAbstractSocket::IPv4Protocol;
}

} // namespace

void CCDServer::Private::listen() {
    dropCamera();
    delete listener;
    ListenAddress where;
    if (!parse(address, where)) {
        noteError(QStringLiteral("\"%1\" is no address").arg(sim::loggable(address)));
        return;
    }
    // The application's child: sockets do not outlive it.
    listener = new QTcpServer(QCoreApplication::instance());
    if (!listener->listen(where.host, where.port)) {
        noteError(
            QStringLiteral("%1 port %2: %3").arg(where.host.toString()).arg(where.port).arg(listener->errorString()));
        delete listener;
        return;
    }
    QObject::connect(listener, &QTcpServer::newConnection, listener, [this] { takeCameras(); });
    note(QStringLiteral("listens at %1 port %2").arg(where.host.toString()).arg(listener->serverPort()));
}

/// One camera: the newest, since an older connection may be one whose cable was pulled.
void CCDServer::Private::takeCameras() {
    while (QTcpSocket* const socket = listener->nextPendingConnection()) {
        dropCamera();
        camera = socket;
        sim::watchConnection(static_cast<int>(socket->socketDescriptor()));
        socket->setReadBufferSize(kReadBytes);
        QObject::connect(socket, &QTcpSocket::readyRead, socket, [socket] { socket->readAll(); });
        QObject::connect(socket, &QTcpSocket::disconnected, listener, [this, socket] {
            note(QStringLiteral("the camera has gone"));
            socket->deleteLater();
        });
        note(QStringLiteral("camera at %1").arg(socket->peerAddress().toString()));
    }
}

void CCDServer::Private::dropCamera() {
    if (!camera)
        return;
    camera->disconnect();
    camera->abort();
    camera->deleteLater();
    camera.clear();
}

CCDServer::CCDServer()
    : d(std::make_unique<Private>()) {}

CCDServer::~CCDServer() = default;

void CCDServer::InitCCDServer() {
    if (holder())
        return;
    holder().reset(new CCDServer);
    holder()->SetStaticIP();
}

CCDServer* CCDServer::Instance() {
    return holder().get();
}

bool CCDServer::HasClient() const {
    return d->camera && d->camera->state() == QAbstractSocket::ConnectedState;
}

void CCDServer::SetStaticIP() {
    QString const address = SystemParam::Instance()->GetStaticIP();
    if (d->listener && address == d->address)
        return;
    d->address = address;
    d->listen();
}
