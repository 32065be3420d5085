// SPDX-License-Identifier: MIT
#pragma once

#include <QTcpServer>

namespace tessera {

/// Listens for the plant host. It takes one connection at a time, so that a storm of them leaves the event loop to
/// others, and goes on after a shortage of descriptors. A socket of it reads a little at a time for the same reason.
class HostListener : public QTcpServer {
    Q_OBJECT
public:
    /// Bytes that a socket reads ahead; what a host sends beyond waits in the system.
    static constexpr int kReadAhead = 1024;

    explicit HostListener(QObject* parent = nullptr);

protected:
    void incomingConnection(qintptr descriptor) override;

private:
    void OnAcceptError();
};

} // namespace tessera
