// SPDX-License-Identifier: GPL-2.0-or-later
#include "simengine/servers/stationmessage.h"

#include "simengine/servers/keyproof.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <algorithm>
#include <limits>

namespace sim {

namespace {

/// The lines are read by people in logs and transcripts, so that the type of a fault names the member.
QString wrong(char const* member) {
    return QStringLiteral("wrong or missing member: %1").arg(QLatin1String(member));
}

std::optional<QJsonObject> objectOf(QByteArray const& line, QString& fault) {
    QJsonParseError error;
    QJsonDocument const document = QJsonDocument::fromJson(line, &error);
    if (error.error != QJsonParseError::NoError) {
        fault = QStringLiteral("not JSON: %1").arg(error.errorString());
        return std::nullopt;
    }
    if (!document.isObject()) {
        fault = QStringLiteral("not a JSON object");
        return std::nullopt;
    }
    return document.object();
}

bool hasControl(QString const& text) {
    return std::any_of(text.begin(), text.end(), [](QChar c) { return c.category() == QChar::Other_Control; });
}

bool isName(QString const& text, int limit) {
    return !text.isEmpty() && text.size() <= limit && !hasControl(text);
}

/// A whole number from `low` to `high`; a member that is left out is 0.
bool readWhole(QJsonObject const& object, char const* member, double low, double high, qint64& value) {
    QJsonValue const given = object.value(QLatin1String(member));
    if (given.isUndefined())
        return true;
    double const number = given.toDouble(std::numeric_limits<double>::quiet_NaN());
    if (!(number >= low && number <= high) || number != static_cast<double>(static_cast<qint64>(number)))
        return false;
    value = static_cast<qint64>(number);
    return true;
}

bool readInt(QJsonObject const& object, char const* member, int& value) {
    qint64 whole = 0;
    if (!readWhole(object, member, std::numeric_limits<int>::min(), std::numeric_limits<int>::max(), whole))
        return false;
    value = static_cast<int>(whole);
    return true;
}

bool readArguments(QJsonValue const& given, std::vector<QString>& arguments) {
    if (given.isUndefined())
        return true;
    QJsonArray const array = given.toArray();
    if (!given.isArray() || array.size() > kMaxArguments)
        return false;
    for (QJsonValue const& argument : array) {
        if (!argument.isString())
            return false;
        arguments.push_back(argument.toString());
    }
    return true;
}

StationRequest faulty(QString const& fault) {
    StationRequest request;
    request.fault = fault;
    return request;
}

StationRequest accepted(StationOrder const& order) {
    StationRequest request;
    request.order = order;
    return request;
}

StationRequest parseCommand(QJsonObject const& object) {
    StationOrder order;
    order.kind = OrderKind::Command;
    order.command.Name = object.value(QLatin1String("name")).toString();
    if (!isName(order.command.Name, kMaxCommandName))
        return faulty(wrong("name"));
    struct Field {
        char const* member;
        int* value;
    };
    for (Field const& field : {Field{"id", &order.command.Id}, Field{"first", &order.command.First},
                               Field{"second", &order.command.Second}, Field{"tag", &order.tag}}) {
        if (!readInt(object, field.member, *field.value))
            return faulty(wrong(field.member));
    }
    if (!readArguments(object.value(QLatin1String("args")), order.command.Args))
        return faulty(wrong("args"));
    return accepted(order);
}

StationRequest parsePut(QJsonObject const& object) {
    StationOrder order;
    order.kind = OrderKind::Put;
    order.name = object.value(QLatin1String("name")).toString();
    if (!isName(order.name, kMaxUploadName))
        return faulty(wrong("name"));
    constexpr double kMaxOffset = std::numeric_limits<int>::max();
    if (object.value(QLatin1String("offset")).isUndefined() ||
        !readWhole(object, "offset", 0.0, kMaxOffset, order.offset))
        return faulty(wrong("offset"));
    QJsonValue const data = object.value(QLatin1String("data"));
    std::optional<QByteArray> const decoded = decodedBase64(data.toString());
    if (!data.isString() || !decoded)
        return faulty(wrong("data"));
    order.data = *decoded;
    return accepted(order);
}

StationRequest parseDrop(QJsonObject const& object) {
    StationOrder order;
    order.kind = OrderKind::Drop;
    order.name = object.value(QLatin1String("name")).toString();
    return isName(order.name, kMaxUploadName) ? accepted(order) : faulty(wrong("name"));
}

StationRequest parsePing(QJsonObject const& object) {
    int tag = 0;
    if (!readInt(object, "tag", tag))
        return faulty(wrong("tag"));
    StationRequest request;
    request.ping = tag;
    return request;
}

struct RequestRow {
    char const* type;
    StationRequest (*parse)(QJsonObject const&);
};

constexpr RequestRow kRequests[] = {
    {"cmd", parseCommand},
    {"put", parsePut},
    {"drop", parseDrop},
    {"ping", parsePing},
};

QByteArray lineOf(char const* type, QJsonObject object) {
    object.insert(QStringLiteral("type"), QLatin1String(type));
    return QJsonDocument(object).toJson(QJsonDocument::Compact) + '\n';
}

} // namespace

std::optional<ProofMessage> parseProof(QByteArray const& line) {
    QString fault;
    std::optional<QJsonObject> const object = objectOf(line, fault);
    if (!object || object->value(QLatin1String("type")).toString() != QLatin1String("proof"))
        return std::nullopt;
    ProofMessage proof;
    proof.nonce = object->value(QLatin1String("nonce")).toString().toUtf8();
    proof.mac = object->value(QLatin1String("mac")).toString().toUtf8();
    proof.station = object->value(QLatin1String("station")).toString();
    if (!isProofDigits(proof.nonce) || !isProofDigits(proof.mac) || !isName(proof.station, kMaxStationName))
        return std::nullopt;
    return proof;
}

StationRequest parseRequest(QByteArray const& line) {
    QString fault;
    std::optional<QJsonObject> const object = objectOf(line, fault);
    if (!object)
        return faulty(fault);
    QString const type = object->value(QLatin1String("type")).toString();
    for (RequestRow const& row : kRequests) {
        if (type == QLatin1String(row.type))
            return row.parse(*object);
    }
    return faulty(wrong("type"));
}

std::optional<QByteArray> decodedBase64(QString const& text) {
    // Qt takes text without its padding, which is what text cut short looks like.
    if (text.size() % 4 != 0)
        return std::nullopt;
    auto const decoded = QByteArray::fromBase64Encoding(text.toLatin1(), QByteArray::AbortOnBase64DecodingErrors);
    return decoded ? std::optional<QByteArray>(*decoded) : std::nullopt;
}

QString loggable(QString const& text) {
    constexpr int kCharacters = 200;
    QString shown = text.left(kCharacters);
    for (QChar& c : shown) {
        if (c.category() == QChar::Other_Control || c.category() == QChar::Other_Format)
            c = QLatin1Char('?');
    }
    return shown;
}

QByteArray challengeLine(QByteArray const& nonce) {
    return lineOf("challenge", {{QStringLiteral("server"), QStringLiteral("tessera")},
                                {QStringLiteral("protocol"), 1},
                                {QStringLiteral("nonce"), QString::fromLatin1(nonce)}});
}

QByteArray welcomeLine(QByteArray const& mac) {
    return lineOf("welcome", {{QStringLiteral("mac"), QString::fromLatin1(mac)}});
}

QByteArray refusedLine(QString const& reason) {
    return lineOf("refused", {{QStringLiteral("reason"), reason}});
}

QByteArray answerLine(CCSCmd const& command, int tag) {
    QJsonArray arguments;
    for (QString const& argument : command.Args)
        arguments.append(argument);
    return lineOf("answer", {{QStringLiteral("id"), command.Id},
                             {QStringLiteral("name"), command.Name},
                             {QStringLiteral("first"), command.First},
                             {QStringLiteral("second"), command.Second},
                             {QStringLiteral("args"), arguments},
                             {QStringLiteral("tag"), tag}});
}

QByteArray storedLine(QString const& name, qint64 size) {
    return lineOf("stored", {{QStringLiteral("name"), name}, {QStringLiteral("size"), size}});
}

QByteArray droppedLine(QString const& name) {
    return lineOf("dropped", {{QStringLiteral("name"), name}});
}

QByteArray pongLine(int tag) {
    return lineOf("pong", {{QStringLiteral("tag"), tag}});
}

QByteArray errorLine(qint64 line, QString const& reason) {
    return lineOf("error", {{QStringLiteral("line"), line}, {QStringLiteral("reason"), reason}});
}

} // namespace sim
