// SPDX-License-Identifier: MIT
#include "bench/host/references.h"

#include <QTcpServer>
#include <QTcpSocket>
#include <QThread>
#include <arpa/inet.h>
#include <future>
#include <netinet/in.h>
#include <netinet/tcp.h>
#include <set>
#include <sys/epoll.h>
#include <sys/eventfd.h>
#include <sys/socket.h>
#include <unistd.h>

namespace bench {

namespace {

void serveQt(QTcpServer* server, QByteArray const& answer) {
    QTcpSocket* socket = server->nextPendingConnection();
    socket->setSocketOption(QAbstractSocket::LowDelayOption, 1);
    QObject::connect(socket, &QIODevice::readyRead, socket, [socket, answer] {
        for (int questions = socket->readAll().count(';'); questions > 0; --questions) {
            socket->write(answer);
            socket->flush();
        }
    });
    QObject::connect(socket, &QAbstractSocket::disconnected, socket, &QObject::deleteLater);
}

void watch(int poll, int descriptor) {
    epoll_event event = {};
    event.events = EPOLLIN;
    event.data.fd = descriptor;
    ::epoll_ctl(poll, EPOLL_CTL_ADD, descriptor, &event);
}

} // namespace

/// The server and its sockets live and die in the thread.
class QtReference::Thread : public QThread {
public:
    explicit Thread(QByteArray answer)
        : m_answer(std::move(answer)) {}
    ~Thread() override {
        quit();
        wait();
    }
    std::uint16_t begin() {
        start();
        return m_port.get_future().get();
    }

protected:
    void run() override {
        QTcpServer server;
        QObject::connect(&server, &QTcpServer::newConnection, &server, [&] { serveQt(&server, m_answer); });
        server.listen(QHostAddress::LocalHost);
        m_port.set_value(server.serverPort());
        exec();
    }

private:
    QByteArray m_answer;
    std::promise<std::uint16_t> m_port;
};

QtReference::QtReference(QByteArray answer)
    : m_thread(std::make_unique<Thread>(std::move(answer)))
    , m_port(m_thread->begin()) {}

QtReference::~QtReference() = default;

EpollReference::EpollReference(QByteArray answer)
    : m_answer(std::move(answer))
    , m_listener(::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0))
    , m_end(::eventfd(0, EFD_CLOEXEC)) {
    sockaddr_in address = {};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    auto* plain = reinterpret_cast<sockaddr*>(&address);
    socklen_t size = sizeof address;
    if (::bind(m_listener, plain, size) == 0 && ::listen(m_listener, 16) == 0 &&
        ::getsockname(m_listener, plain, &size) == 0)
        m_port = ntohs(address.sin_port);
    m_thread = std::thread([this] { serve(); });
}

EpollReference::~EpollReference() {
    const std::uint64_t one = 1;
    if (::write(m_end, &one, sizeof one) == sizeof one)
        m_thread.join();
    ::close(m_end);
    ::close(m_listener);
}

void EpollReference::serve() {
    const int poll = ::epoll_create1(EPOLL_CLOEXEC);
    std::set<int> clients;
    watch(poll, m_listener);
    watch(poll, m_end);
    epoll_event event = {};
    while (::epoll_wait(poll, &event, 1, -1) > 0 && event.data.fd != m_end) {
        const int ready = event.data.fd;
        if (ready == m_listener) {
            const int client = ::accept4(m_listener, nullptr, nullptr, SOCK_CLOEXEC);
            const int on = 1;
            ::setsockopt(client, IPPROTO_TCP, TCP_NODELAY, &on, sizeof on);
            watch(poll, client);
            clients.insert(client);
            continue;
        }
        char buffer[4096];
        const ssize_t count = ::recv(ready, buffer, sizeof buffer, 0);
        for (ssize_t i = 0; i < count; ++i) {
            if (buffer[i] == ';')
                ::send(ready, m_answer.constData(), std::size_t(m_answer.size()), MSG_NOSIGNAL);
        }
        if (count <= 0) {
            clients.erase(ready);
            ::close(ready);
        }
    }
    for (int client : clients)
        ::close(client);
    ::close(poll);
}

} // namespace bench
