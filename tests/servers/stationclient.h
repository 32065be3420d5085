// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QJsonObject>
#include <QString>
#include <functional>

namespace tests {

/// A controlling station as docs/protocols.md tells it, with nothing of the server's own code: its socket, its lines
/// and its HMAC are its own. Calls wait at most their time times the time-out scale, and call `pump` meanwhile, so that
/// a test may go on with its event loop. One thread at a time.
class StationClient {
public:
    static constexpr int kWait = 5000; ///< ms

    StationClient() = default;
    ~StationClient() { close(); }
    StationClient(StationClient const&) = delete;
    StationClient& operator=(StationClient const&) = delete;

    std::function<void()> pump;

    bool connectTo(quint16 port);
    void close();
    /// Goes as a machine does whose power fails: a reset, no end of the stream.
    void reset();
    /// All of it; false when the socket broke or the other side does not take it in time.
    bool send(QByteArray const& bytes, int ms = kWait);
    /// The next line without its line feed; null when none comes.
    QByteArray line(int ms = kWait);
    /// The next line as an object; empty when none comes or it is none.
    QJsonObject message(int ms = kWait);
    /// The other side has ended the stream or reset it; lines that came before are dropped.
    bool ended(int ms = kWait);

    /// Takes the challenge into serverNonce().
    bool takeChallenge();
    QByteArray const& serverNonce() const { return m_serverNonce; }
    /// Challenge, proof, welcome; true when the server has proved itself as well.
    bool prove(QByteArray const& key, QString const& name = QStringLiteral("line-3"));

    static QByteArray const kNonce; ///< the station's own in all tests
    static QByteArray proofLine(QByteArray const& key, QByteArray const& serverNonce, QString const& name);
    static QByteArray commandLine(QString const& name, QStringList const& args = {}, int tag = 0);

private:
    bool waitUntil(std::function<bool()> const& done, int ms);
    void fill();

    int m_socket = -1;
    bool m_ended = false;
    QByteArray m_in;
    QByteArray m_serverNonce;
};

} // namespace tests
