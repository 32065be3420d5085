// SPDX-License-Identifier: MIT
#include "bench/host/wire.h"

#include <arpa/inet.h>
#include <cerrno>
#include <netinet/in.h>
#include <netinet/tcp.h>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

namespace bench {

namespace {

sockaddr_in addressOf(char const* text, std::uint16_t port) {
    sockaddr_in address = {};
    address.sin_family = AF_INET;
    address.sin_port = htons(port);
    ::inet_pton(AF_INET, text, &address.sin_addr);
    return address;
}

} // namespace

bool Wire::connect(std::uint16_t port, char const* from, int receiveBuffer) {
    close();
    m_descriptor = ::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
    if (m_descriptor < 0)
        return false;
    const int on = 1;
    ::setsockopt(m_descriptor, IPPROTO_TCP, TCP_NODELAY, &on, sizeof on);
    if (receiveBuffer > 0)
        ::setsockopt(m_descriptor, SOL_SOCKET, SO_RCVBUF, &receiveBuffer, sizeof receiveBuffer);
    // The port is chosen by connect(): bind() would look through all that were used a moment ago.
    ::setsockopt(m_descriptor, IPPROTO_IP, IP_BIND_ADDRESS_NO_PORT, &on, sizeof on);
    const sockaddr_in here = addressOf(from, 0);
    const sockaddr_in there = addressOf("127.0.0.1", port);
    if (::bind(m_descriptor, reinterpret_cast<sockaddr const*>(&here), sizeof here) == 0 &&
        ::connect(m_descriptor, reinterpret_cast<sockaddr const*>(&there), sizeof there) == 0)
        return true;
    close();
    return false;
}

bool Wire::waitFor(short events, int limitMs) const {
    pollfd state = {m_descriptor, events, 0};
    return m_descriptor >= 0 && ::poll(&state, 1, limitMs) > 0;
}

bool Wire::send(std::string const& bytes, int limitMs) {
    const Clock::time_point start = Clock::now();
    for (std::size_t done = 0; done < bytes.size();) {
        const ssize_t sent =
            ::send(m_descriptor, bytes.data() + done, bytes.size() - done, MSG_NOSIGNAL | MSG_DONTWAIT);
        if (sent < 0 && (errno != EAGAIN || msSince(start) > limitMs || !waitFor(POLLOUT, limitMs)))
            return false;
        done += sent > 0 ? std::size_t(sent) : 0;
    }
    return true;
}

std::string Wire::receive(int limitMs) {
    char buffer[65536];
    if (!waitFor(POLLIN, limitMs))
        return {};
    const ssize_t count = ::recv(m_descriptor, buffer, sizeof buffer, MSG_DONTWAIT);
    return count > 0 ? std::string(buffer, std::size_t(count)) : std::string();
}

std::string Wire::answer(int limitMs) {
    const Clock::time_point start = Clock::now();
    std::size_t end = m_rest.find(';');
    while (end == std::string::npos) {
        const int left = limitMs - int(msSince(start));
        const std::string more = left > 0 ? receive(left) : std::string();
        if (more.empty())
            return {};
        m_rest += more;
        end = m_rest.find(';');
    }
    std::string text = m_rest.substr(0, end + 1);
    m_rest.erase(0, end + 1);
    return text;
}

double Wire::ask(std::string const& question, std::string const& wanted, int limitMs) {
    const Clock::time_point start = Clock::now();
    if (!send(question, limitMs) || answer(limitMs) != wanted)
        return -1.0;
    return msSince(start);
}

void Wire::close() {
    if (m_descriptor >= 0)
        ::close(m_descriptor);
    m_descriptor = -1;
    m_rest.clear();
}

void Wire::reset() {
    const linger now = {1, 0};
    ::setsockopt(m_descriptor, SOL_SOCKET, SO_LINGER, &now, sizeof now);
    close();
}

void Wire::shutDown() {
    ::shutdown(m_descriptor, SHUT_RDWR);
}

} // namespace bench
