// SPDX-License-Identifier: MIT
#include "servers/stationclient.h"

#include <QCryptographicHash>
#include <QJsonArray>
#include <QJsonDocument>
#include <QMessageAuthenticationCode>
#include <arpa/inet.h>
#include <cerrno>
#include <chrono>
#include <netinet/in.h>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

namespace tests {

QByteArray const StationClient::kNonce(64, 'c');

namespace {

QByteArray hmac(QByteArray const& key, QByteArray const& message) {
    return QMessageAuthenticationCode::hash(message, key, QCryptographicHash::Sha256).toHex();
}

double scale() {
    bool good = false;
    double const given = qEnvironmentVariable("TESSERA_TIMEOUT_SCALE").toDouble(&good);
    return good && given > 0.0 ? given : 1.0;
}

QByteArray lineOf(QJsonObject const& object) {
    return QJsonDocument(object).toJson(QJsonDocument::Compact) + '\n';
}

} // namespace

bool StationClient::waitUntil(std::function<bool()> const& done, int ms) {
    using Clock = std::chrono::steady_clock;
    Clock::time_point const end = Clock::now() + std::chrono::milliseconds(static_cast<int>(ms * scale()));
    for (;;) {
        fill();
        if (done())
            return true;
        if (Clock::now() >= end)
            return false;
        if (pump)
            pump();
        pollfd one{m_socket, static_cast<short>(m_ended ? 0 : POLLIN), 0};
        ::poll(&one, 1, 1);
    }
}

void StationClient::fill() {
    char bytes[65536];
    while (m_socket >= 0 && !m_ended) {
        ssize_t const count = ::recv(m_socket, bytes, sizeof bytes, MSG_DONTWAIT);
        if (count > 0)
            m_in.append(bytes, static_cast<int>(count));
        else if (count == 0 || (errno != EAGAIN && errno != EINTR))
            m_ended = true;
        else
            return;
    }
}

bool StationClient::connectTo(quint16 port) {
    close();
    m_socket = ::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_port = htons(port);
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    return ::connect(m_socket, reinterpret_cast<sockaddr const*>(&address), sizeof address) == 0;
}

void StationClient::close() {
    if (m_socket >= 0)
        ::close(m_socket);
    m_socket = -1;
    m_ended = false;
    m_in.clear();
}

void StationClient::reset() {
    linger const now{1, 0};
    ::setsockopt(m_socket, SOL_SOCKET, SO_LINGER, &now, sizeof now);
    close();
}

bool StationClient::send(QByteArray const& bytes, int ms) {
    int sent = 0;
    bool broken = false;
    // What comes in is not looked at: a station may go on sending while it does not read.
    using Clock = std::chrono::steady_clock;
    Clock::time_point const end = Clock::now() + std::chrono::milliseconds(static_cast<int>(ms * scale()));
    while (sent < bytes.size() && !broken && Clock::now() < end) {
        ssize_t const count = ::send(m_socket, bytes.constData() + sent, static_cast<std::size_t>(bytes.size() - sent),
                                     MSG_NOSIGNAL | MSG_DONTWAIT);
        if (count > 0) {
            sent += static_cast<int>(count);
            continue;
        }
        broken = errno != EAGAIN && errno != EINTR;
        if (pump)
            pump();
        pollfd one{m_socket, POLLOUT, 0};
        ::poll(&one, 1, 1);
    }
    return sent == bytes.size();
}

QByteArray StationClient::line(int ms) {
    if (!waitUntil([this] { return m_in.contains('\n') || m_ended; }, ms) || !m_in.contains('\n'))
        return {};
    int const end = m_in.indexOf('\n');
    QByteArray const found = m_in.left(end);
    m_in.remove(0, end + 1);
    return found;
}

QJsonObject StationClient::message(int ms) {
    return QJsonDocument::fromJson(line(ms)).object();
}

bool StationClient::ended(int ms) {
    return waitUntil([this] { return m_ended; }, ms);
}

bool StationClient::takeChallenge() {
    QJsonObject const challenge = message();
    m_serverNonce = challenge.value("nonce").toString().toUtf8();
    return challenge.value("type").toString() == "challenge" && challenge.value("protocol").toInt() == 1 &&
           challenge.value("server").toString() == "tessera" && m_serverNonce.size() == 64;
}

bool StationClient::prove(QByteArray const& key, QString const& name) {
    if (!takeChallenge() || !send(proofLine(key, m_serverNonce, name)))
        return false;
    QJsonObject const welcome = message();
    return welcome.value("type").toString() == "welcome" &&
           welcome.value("mac").toString().toUtf8() == hmac(key, "tessera-server\n" + kNonce + '\n' + m_serverNonce);
}

QByteArray StationClient::proofLine(QByteArray const& key, QByteArray const& serverNonce, QString const& name) {
    QByteArray const message = "tessera-station\n" + serverNonce + '\n' + kNonce + '\n' + name.toUtf8();
    return lineOf({{"type", "proof"},
                   {"nonce", QString::fromLatin1(kNonce)},
                   {"station", name},
                   {"mac", QString::fromLatin1(hmac(key, message))}});
}

QByteArray StationClient::commandLine(QString const& name, QStringList const& args, int tag) {
    return lineOf({{"type", "cmd"}, {"name", name}, {"tag", tag}, {"args", QJsonArray::fromStringList(args)}});
}

} // namespace tests
