// SPDX-License-Identifier: MIT
#include "tests/support/socketclient.h"

#include <QFile>

#include <arpa/inet.h>
#include <cerrno>
#include <cstring>
#include <netinet/in.h>
#include <poll.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <system_error>

namespace tests {

bool SocketClient::connectTcp(quint16 port, int milliseconds) {
    sockaddr_in address = {};
    address.sin_family = AF_INET;
    address.sin_port = htons(port);
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    return connectTo(AF_INET, &address, sizeof address, milliseconds);
}

bool SocketClient::connectLocal(const QString& path, int milliseconds) {
    sockaddr_un address = {};
    address.sun_family = AF_UNIX;
    const QByteArray native = QFile::encodeName(path);
    if (native.size() >= static_cast<int>(sizeof address.sun_path)) {
        m_connectError = QStringLiteral("the path of the socket is too long");
        return false;
    }
    std::memcpy(address.sun_path, native.constData(), static_cast<size_t>(native.size()));
    return connectTo(AF_UNIX, &address, sizeof address, milliseconds);
}

bool SocketClient::connectTo(int family, const void* address, unsigned length, int milliseconds) {
    int error = ETIMEDOUT;
    bool pending = false;
    const bool connected = waitFor(
        [&] {
            if (!pending) {
                // A server that is just starting refuses; a refused socket is used up, so each call has its own.
                reset(::socket(family, SOCK_STREAM | SOCK_CLOEXEC, 0));
                if (::connect(descriptor(), static_cast<const sockaddr*>(address), length) == 0)
                    return true;
                error = errno;
                pending = error == EINPROGRESS;
            }
            pollfd state = {descriptor(), POLLOUT, 0};
            if (!pending || ::poll(&state, 1, 0) <= 0)
                return false;
            pending = false;
            socklen_t size = sizeof error;
            return ::getsockopt(descriptor(), SOL_SOCKET, SO_ERROR, &error, &size) == 0 && error == 0;
        },
        milliseconds);
    m_connectError = connected ? QString() : QString::fromStdString(std::generic_category().message(error));
    if (!connected)
        close();
    return connected;
}

void SocketClient::finishWriting() {
    ::shutdown(descriptor(), SHUT_WR);
}

void SocketClient::abort() {
    const linger now = {1, 0};
    ::setsockopt(descriptor(), SOL_SOCKET, SO_LINGER, &now, sizeof now);
    close();
}

} // namespace tests
