// SPDX-License-Identifier: MIT
#include "stationlink.h"

#include <QCryptographicHash>
#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QMessageAuthenticationCode>
#include <QRandomGenerator>
#include <array>

namespace {

constexpr int kDefaultPort = 7660;
constexpr int kPatienceMs = 10000;
constexpr int kShortestKey = 32;
/// Bytes of a document in one line; its base64 stays well below the longest line.
constexpr int kPiece = 512 * 1024;

QByteArray mac(QByteArray const& key, QByteArray const& text) {
    return QMessageAuthenticationCode::hash(text, key, QCryptographicHash::Sha256).toHex();
}

QByteArray drawNonce() {
    std::array<quint32, 8> words{};
    QRandomGenerator::system()->fillRange(words.data(), int(words.size()));
    return QByteArray(reinterpret_cast<char const*>(words.data()), sizeof words).toHex();
}

} // namespace

QByteArray StationLink::readKey(QString const& name) {
    QFile file(name);
    if (!file.open(QIODevice::ReadOnly))
        return QByteArray();
    QByteArray key = file.readLine();
    while (!key.isEmpty() && QByteArray(" \t\r\n").contains(key.back()))
        key.chop(1);
    return key.size() >= kShortestKey ? key : QByteArray();
}

QByteArray StationLink::proof(QByteArray const& key, QByteArray const& serverNonce, QByteArray const& ownNonce,
                              QString const& station) {
    return mac(key, "tessera-station\n" + serverNonce + '\n' + ownNonce + '\n' + station.toUtf8());
}

QByteArray StationLink::serverProof(QByteArray const& key, QByteArray const& serverNonce, QByteArray const& ownNonce) {
    return mac(key, "tessera-server\n" + ownNonce + '\n' + serverNonce);
}

HostResult StationLink::run(HostArguments const& arguments) {
    QByteArray const key = readKey(arguments.keyFile);
    if (key.isEmpty())
        return {HostOutcome::WrongArguments,
                QStringLiteral("%1 holds no key of at least %2 bytes.").arg(arguments.keyFile).arg(kShortestKey)};
    int const timeout = arguments.timeout > 0 ? arguments.timeout : kPatienceMs;
    HostResult result{m_client.connectTo(arguments.host, arguments.port > 0 ? arguments.port : kDefaultPort, timeout),
                      {}};
    if (result.outcome == HostOutcome::Done)
        result = prove(key, arguments.station);
    for (auto const& [name, file] : arguments.upload) {
        if (result.outcome == HostOutcome::Done)
            result = put(name, file);
    }
    return result.outcome == HostOutcome::Done ? order(arguments) : result;
}

HostResult StationLink::prove(QByteArray const& key, QString const& station) {
    QJsonObject message;
    HostResult result = receive(QStringLiteral("challenge"), message);
    if (result.outcome != HostOutcome::Done)
        return result;
    QByteArray const serverNonce = message.value(QLatin1String("nonce")).toString().toLatin1();
    QByteArray const nonce = drawNonce();
    result = send({{QStringLiteral("type"), QStringLiteral("proof")},
                   {QStringLiteral("nonce"), QString::fromLatin1(nonce)},
                   {QStringLiteral("station"), station},
                   {QStringLiteral("mac"), QString::fromLatin1(proof(key, serverNonce, nonce, station))}});
    if (result.outcome == HostOutcome::Done)
        result = receive(QStringLiteral("welcome"), message);
    if (result.outcome != HostOutcome::Done)
        return result;
    if (message.value(QLatin1String("mac")).toString().toLatin1() != serverProof(key, serverNonce, nonce))
        return {HostOutcome::NoConnection, QStringLiteral("The other side does not have the key.")};
    return {};
}

HostResult StationLink::put(QString const& name, QString const& fileName) {
    QFile file(fileName);
    if (!file.open(QIODevice::ReadOnly))
        return {HostOutcome::WrongArguments, fileName + QStringLiteral(": ") + file.errorString()};
    qint64 offset = 0;
    do {
        QByteArray const piece = file.read(kPiece);
        HostResult result = send({{QStringLiteral("type"), QStringLiteral("put")},
                                  {QStringLiteral("name"), name},
                                  {QStringLiteral("offset"), offset},
                                  {QStringLiteral("data"), QString::fromLatin1(piece.toBase64())}});
        QJsonObject message;
        if (result.outcome == HostOutcome::Done)
            result = receive(QStringLiteral("stored"), message);
        if (result.outcome != HostOutcome::Done)
            return result;
        offset += piece.size();
    } while (!file.atEnd());
    return {};
}

/// The tag tells this order's answer from one that a run of another station has left.
HostResult StationLink::order(HostArguments const& arguments) {
    int const tag = QRandomGenerator::system()->bounded(1, 0x7fffffff);
    HostResult result = send({{QStringLiteral("type"), QStringLiteral("cmd")},
                              {QStringLiteral("name"), arguments.order},
                              {QStringLiteral("tag"), tag},
                              {QStringLiteral("args"), QJsonArray::fromStringList(arguments.orderArguments)}});
    if (arguments.timeout == 0 && arguments.order == QLatin1String("RunManualStart"))
        m_client.setTimeout(0);
    QJsonObject message;
    while (result.outcome == HostOutcome::Done && message.value(QLatin1String("tag")).toInt() != tag)
        result = receive(QStringLiteral("answer"), message);
    if (result.outcome != HostOutcome::Done)
        return result;
    QJsonArray const answer = message.value(QLatin1String("args")).toArray();
    bool const good = answer.at(0).toString() == QLatin1String("0");
    return {good ? HostOutcome::Done : HostOutcome::Refused, answer.at(1).toString()};
}

HostResult StationLink::send(QJsonObject const& message) {
    return {m_client.send(QJsonDocument(message).toJson(QJsonDocument::Compact) + '\n'), {}};
}

HostResult StationLink::receive(QString const& type, QJsonObject& message) {
    for (;;) {
        QByteArray line;
        HostOutcome const outcome = m_client.receive(line);
        if (outcome != HostOutcome::Done)
            return {outcome, {}};
        message = QJsonDocument::fromJson(line).object();
        QString const came = message.value(QLatin1String("type")).toString();
        QString const reason = message.value(QLatin1String("reason")).toString();
        if (came == type)
            return {};
        if (came == QLatin1String("refused"))
            return {HostOutcome::NoConnection, reason};
        if (came == QLatin1String("error"))
            return {HostOutcome::Refused, reason};
    }
}
