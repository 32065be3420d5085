// SPDX-License-Identifier: MIT
#include "remote/hostlistener.h"

#include "engine/marklog.h"

#include <QTcpSocket>
#include <QTimer>
#include <memory>

namespace tessera {

namespace {

/// ms until accepting is tried again after it failed.
constexpr int kAcceptPause = 200;

} // namespace

HostListener::HostListener(QObject* parent)
    : QTcpServer(parent) {
    setMaxPendingConnections(1);
    connect(this, &QTcpServer::acceptError, this, &HostListener::OnAcceptError);
}

void HostListener::incomingConnection(qintptr descriptor) {
    auto socket = std::make_unique<QTcpSocket>(this);
    socket->setReadBufferSize(kReadAhead);
    if (!socket->setSocketDescriptor(descriptor))
        return;
    // Hosts wait for each answer; one that is held back for a fuller packet costs them 40 ms.
    socket->setSocketOption(QAbstractSocket::LowDelayOption, 1);
    addPendingConnection(socket.release());
}

/// Qt stops accepting for good when the system has no descriptor left.
void HostListener::OnAcceptError() {
    MarkLog::Instance()->ShowNote_Error(QStringLiteral("host port: no connection taken: ") + errorString());
    QTimer::singleShot(kAcceptPause, this, [this] { resumeAccepting(); });
}

} // namespace tessera
