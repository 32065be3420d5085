// SPDX-License-Identifier: GPL-2.0-or-later
#include "simengine/servers/listensocket.h"

#include <arpa/inet.h>
#include <cerrno>
#include <cstring>
#include <netdb.h>
#include <netinet/in.h>
#include <netinet/tcp.h>
#include <sys/socket.h>
#include <unistd.h>

namespace sim {

namespace {

constexpr int kBacklog = 128;
// A station whose power or cable goes sends no end: it is gone a minute later at the latest.
constexpr int kKeepIdleSeconds = 30;
constexpr int kKeepIntervalSeconds = 10;
constexpr int kKeepProbes = 3;
constexpr int kUnackedMs = 30'000;

struct SocketAddress {
    sockaddr_storage storage{};
    socklen_t length = 0;
    sockaddr* get() { return reinterpret_cast<sockaddr*>(&storage); }
};

bool parseAddress(QString const& text, quint16 port, SocketAddress& address) {
    QByteArray const name = text.toLatin1();
    sockaddr_in v4{};
    sockaddr_in6 v6{};
    if (::inet_pton(AF_INET, name.constData(), &v4.sin_addr) == 1) {
        v4.sin_family = AF_INET;
        v4.sin_port = htons(port);
        std::memcpy(&address.storage, &v4, sizeof v4);
        address.length = sizeof v4;
        return true;
    }
    if (::inet_pton(AF_INET6, name.constData(), &v6.sin6_addr) == 1) {
        v6.sin6_family = AF_INET6;
        v6.sin6_port = htons(port);
        std::memcpy(&address.storage, &v6, sizeof v6);
        address.length = sizeof v6;
        return true;
    }
    return false;
}

void setOption(int socket, int level, int option, int value) {
    // Comfort only: a system without the option has the connection all the same.
    (void)::setsockopt(socket, level, option, &value, sizeof value);
}

quint16 portOf(int socket) {
    SocketAddress address;
    address.length = sizeof address.storage;
    if (::getsockname(socket, address.get(), &address.length) != 0)
        return 0;
    if (address.storage.ss_family == AF_INET6)
        return ntohs(reinterpret_cast<sockaddr_in6 const*>(&address.storage)->sin6_port);
    return ntohs(reinterpret_cast<sockaddr_in const*>(&address.storage)->sin_port);
}

std::string addressText(SocketAddress& address) {
    char text[NI_MAXHOST] = {};
    if (::getnameinfo(address.get(), address.length, text, sizeof text, nullptr, 0, NI_NUMERICHOST) != 0)
        return "?";
    return text;
}

} // namespace

int openListener(QString const& address, quint16 port, quint16& bound, QString& error) {
    SocketAddress where;
    if (!parseAddress(address, port, where)) {
        error = QStringLiteral("\"%1\" is no numeric address").arg(address);
        return -1;
    }
    int const socket = ::socket(where.storage.ss_family, SOCK_STREAM | SOCK_NONBLOCK | SOCK_CLOEXEC, 0);
    // So that a restart does not wait for the connections of the program before.
    setOption(socket, SOL_SOCKET, SO_REUSEADDR, 1);
    if (socket >= 0 && ::bind(socket, where.get(), where.length) == 0 && ::listen(socket, kBacklog) == 0) {
        bound = portOf(socket);
        return socket;
    }
    error = QStringLiteral("%1 port %2: %3").arg(address).arg(port).arg(qt_error_string(errno));
    if (socket >= 0)
        ::close(socket);
    return -1;
}

int acceptConnection(int listener, std::string& address, bool& exhausted) {
    SocketAddress from;
    int socket = -1;
    do {
        from.length = sizeof from.storage;
        socket = ::accept4(listener, from.get(), &from.length, SOCK_NONBLOCK | SOCK_CLOEXEC);
    } while (socket < 0 && (errno == EINTR || errno == ECONNABORTED));
    if (socket < 0) {
        exhausted = errno != EAGAIN && errno != EWOULDBLOCK;
        return -1;
    }
    address = addressText(from);
    watchConnection(socket);
    return socket;
}

void watchConnection(int socket) {
    setOption(socket, IPPROTO_TCP, TCP_NODELAY, 1);
    setOption(socket, SOL_SOCKET, SO_KEEPALIVE, 1);
    setOption(socket, IPPROTO_TCP, TCP_KEEPIDLE, kKeepIdleSeconds);
    setOption(socket, IPPROTO_TCP, TCP_KEEPINTVL, kKeepIntervalSeconds);
    setOption(socket, IPPROTO_TCP, TCP_KEEPCNT, kKeepProbes);
    setOption(socket, IPPROTO_TCP, TCP_USER_TIMEOUT, kUnackedMs);
}

} // namespace sim
