// SPDX-License-Identifier: GPL-2.0-or-later
#include "simengine/servers/stationmessage.h"

#include "simengine/servers/keyproof.h"

#include <algorithm>
#include <limits>
#include <nlohmann/json.hpp>

namespace sim {

namespace {

// Not QJsonDocument: where an object has a member twice its reader keeps memory for good, and strangers could make it
// do so without end.
using Json = nlohmann::json;

QString wrong(char const* member) {
    return QStringLiteral("wrong or missing member: %1").arg(QLatin1String(member));
}

/// An object, or null.
Json objectOf(QByteArray const& line) {
    Json value = Json::parse(line.constData(), line.constData() + line.size(), nullptr, false);
    return value.is_object() ? value : Json();
}

/// Null when it is left out.
Json const& memberOf(Json const& object, char const* member) {
    static Json const none;
    auto const found = object.find(member);
    return found == object.end() ? none : *found;
}

bool isLeftOut(Json const& object, char const* member) {
    return object.find(member) == object.end();
}

/// Empty when it is no string.
QString textOf(Json const& value) {
    if (!value.is_string())
        return {};
    auto const& text = value.get_ref<std::string const&>();
    return QString::fromUtf8(text.data(), static_cast<int>(text.size()));
}

bool hasControl(QString const& text) {
    return std::any_of(text.begin(), text.end(), [](QChar c) { return c.category() == QChar::Other_Control; });
}

bool isName(QString const& text, int limit) {
    return !text.isEmpty() && text.size() <= limit && !hasControl(text);
}

/// A whole number of an int; a member that is left out is 0. Also one that is written with a fraction of nothing, as
/// some writers do.
bool readInt(Json const& object, char const* member, int& value) {
    if (isLeftOut(object, member))
        return true;
    Json const& given = memberOf(object, member);
    if (!given.is_number())
        return false;
    double const number = given.get<double>();
    if (!(number >= std::numeric_limits<int>::min() && number <= std::numeric_limits<int>::max()) ||
        number != static_cast<double>(static_cast<int>(number)))
        return false;
    value = static_cast<int>(number);
    return true;
}

bool readArguments(Json const& object, std::vector<QString>& arguments) {
    if (isLeftOut(object, "args"))
        return true;
    Json const& given = memberOf(object, "args");
    if (!given.is_array() || given.size() > static_cast<std::size_t>(kMaxArguments))
        return false;
    for (Json const& argument : given) {
        if (!argument.is_string())
            return false;
        arguments.push_back(textOf(argument));
    }
    return true;
}

StationRequest faulty(QString const& fault) {
    StationRequest request;
    request.fault = fault;
    return request;
}

StationRequest accepted(StationOrder order) {
    StationRequest request;
    request.order = std::move(order);
    return request;
}

StationRequest parseCommand(Json const& object) {
    StationOrder order;
    order.kind = OrderKind::Command;
    order.command.Name = textOf(memberOf(object, "name"));
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
    if (!readArguments(object, order.command.Args))
        return faulty(wrong("args"));
    return accepted(std::move(order));
}

StationRequest parsePut(Json const& object) {
    StationOrder order;
    order.kind = OrderKind::Put;
    order.name = textOf(memberOf(object, "name"));
    if (!isName(order.name, kMaxUploadName))
        return faulty(wrong("name"));
    int offset = 0;
    if (isLeftOut(object, "offset") || !readInt(object, "offset", offset) || offset < 0)
        return faulty(wrong("offset"));
    order.offset = offset;
    Json const& data = memberOf(object, "data");
    std::optional<QByteArray> const decoded = data.is_string() ? decodedBase64(textOf(data)) : std::nullopt;
    if (!decoded)
        return faulty(wrong("data"));
    order.data = *decoded;
    return accepted(std::move(order));
}

StationRequest parseDrop(Json const& object) {
    StationOrder order;
    order.kind = OrderKind::Drop;
    order.name = textOf(memberOf(object, "name"));
    return isName(order.name, kMaxUploadName) ? accepted(std::move(order)) : faulty(wrong("name"));
}

StationRequest parsePing(Json const& object) {
    int tag = 0;
    if (!readInt(object, "tag", tag))
        return faulty(wrong("tag"));
    StationRequest request;
    request.ping = tag;
    return request;
}

struct RequestRow {
    char const* type;
    StationRequest (*parse)(Json const&);
};

constexpr RequestRow kRequests[] = {
    {"cmd", parseCommand},
    {"put", parsePut},
    {"drop", parseDrop},
    {"ping", parsePing},
};

std::string utf8(QString const& text) {
    return text.toUtf8().toStdString();
}

QByteArray lineOf(Json const& object) {
    return QByteArray::fromStdString(object.dump(-1, ' ', false, Json::error_handler_t::replace)) + '\n';
}

} // namespace

std::optional<ProofMessage> parseProof(QByteArray const& line) {
    Json const object = objectOf(line);
    if (textOf(memberOf(object, "type")) != QLatin1String("proof"))
        return std::nullopt;
    ProofMessage proof;
    proof.nonce = textOf(memberOf(object, "nonce")).toUtf8();
    proof.mac = textOf(memberOf(object, "mac")).toUtf8();
    proof.station = textOf(memberOf(object, "station"));
    if (!isProofDigits(proof.nonce) || !isProofDigits(proof.mac) || !isName(proof.station, kMaxStationName))
        return std::nullopt;
    return proof;
}

StationRequest parseRequest(QByteArray const& line) {
    Json const object = objectOf(line);
    if (!object.is_object())
        return faulty(QStringLiteral("not a JSON object"));
    QString const type = textOf(memberOf(object, "type"));
    for (RequestRow const& row : kRequests) {
        if (type == QLatin1String(row.type))
            return row.parse(object);
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
    return lineOf({{"type", "challenge"}, {"server", "tessera"}, {"protocol", 1}, {"nonce", nonce.toStdString()}});
}

QByteArray welcomeLine(QByteArray const& mac) {
    return lineOf({{"type", "welcome"}, {"mac", mac.toStdString()}});
}

QByteArray refusedLine(QString const& reason) {
    return lineOf({{"type", "refused"}, {"reason", utf8(reason)}});
}

QByteArray answerLine(CCSCmd const& command, int tag) {
    Json arguments = Json::array();
    for (QString const& argument : command.Args)
        arguments.push_back(utf8(argument));
    return lineOf({{"type", "answer"},
                   {"id", command.Id},
                   {"name", utf8(command.Name)},
                   {"first", command.First},
                   {"second", command.Second},
                   {"args", arguments},
                   {"tag", tag}});
}

QByteArray storedLine(QString const& name, qint64 size) {
    return lineOf({{"type", "stored"}, {"name", utf8(name)}, {"size", static_cast<std::int64_t>(size)}});
}

QByteArray droppedLine(QString const& name) {
    return lineOf({{"type", "dropped"}, {"name", utf8(name)}});
}

QByteArray pongLine(int tag) {
    return lineOf({{"type", "pong"}, {"tag", tag}});
}

QByteArray errorLine(qint64 line, QString const& reason) {
    return lineOf({{"type", "error"}, {"line", static_cast<std::int64_t>(line)}, {"reason", utf8(reason)}});
}

} // namespace sim
