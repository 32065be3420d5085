// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "simengine/servers/stationorder.h"

#include <optional>

/// The messages of the command server, one JSON object a line; docs/protocols.md tells them. Any thread.
namespace sim {

constexpr int kMaxLineBytes = 1024 * 1024;
constexpr int kMaxProofLineBytes = 4096;
constexpr int kMaxStationName = 64;
constexpr int kMaxCommandName = 200;
constexpr int kMaxUploadName = 200;
constexpr int kMaxArguments = 4096;

/// How a station proves itself.
struct ProofMessage {
    QByteArray nonce;
    QByteArray mac;
    QString station;
};
std::optional<ProofMessage> parseProof(QByteArray const& line);

/// A line of a station that has proved itself: an order, a ping, or what is wrong with it.
struct StationRequest {
    std::optional<StationOrder> order;
    std::optional<int> ping;
    QString fault; ///< empty unless neither of the two is there
};
StationRequest parseRequest(QByteArray const& line);

/// The bytes that a padded base64 text stands for; nothing for any other text.
std::optional<QByteArray> decodedBase64(QString const& text);

/// A text that came from outside as a log may hold it: cut off at 200 characters, with no control character.
QString loggable(QString const& text);

/// What the server sends; each with its line feed.
QByteArray challengeLine(QByteArray const& nonce);
QByteArray welcomeLine(QByteArray const& mac);
QByteArray refusedLine(QString const& reason);
QByteArray answerLine(CCSCmd const& command, int tag);
QByteArray storedLine(QString const& name, qint64 size);
QByteArray droppedLine(QString const& name);
QByteArray pongLine(int tag);
QByteArray errorLine(qint64 line, QString const& reason);

} // namespace sim
