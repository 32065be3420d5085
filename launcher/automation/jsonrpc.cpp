// SPDX-License-Identifier: MIT
#include "automation/jsonrpc.h"

#include <QJsonDocument>
#include <QJsonParseError>

namespace tessera {

namespace {

RpcItem invalid(QJsonValue const& id, QString const& message) {
    RpcItem item;
    item.request.id = id;
    item.error = RpcError{RpcInvalidRequest, message, QJsonValue(QJsonValue::Undefined)};
    return item;
}

/// Reads one call. A malformed call is answered even when it bears no id, since its sender cannot know that it went
/// unheard.
RpcItem parseCall(QJsonValue const& value) {
    if (!value.isObject())
        return invalid(QJsonValue::Null, QStringLiteral("a request is an object"));
    QJsonObject const object = value.toObject();
    QJsonValue const id = object.value(QLatin1String("id"));
    if (!id.isUndefined() && !id.isNull() && !id.isString() && !id.isDouble())
        return invalid(QJsonValue::Null, QStringLiteral("\"id\" is a string, a number or null"));
    QJsonValue const answerId = id.isUndefined() ? QJsonValue(QJsonValue::Null) : id;
    if (object.value(QLatin1String("jsonrpc")) != QJsonValue(QStringLiteral("2.0")))
        return invalid(answerId, QStringLiteral("\"jsonrpc\" is \"2.0\""));
    QJsonValue const method = object.value(QLatin1String("method"));
    if (!method.isString() || method.toString().isEmpty())
        return invalid(answerId, QStringLiteral("\"method\" is the name of a method"));
    QJsonValue const params = object.value(QLatin1String("params"));
    if (!params.isUndefined() && !params.isObject() && !params.isArray())
        return invalid(answerId, QStringLiteral("\"params\" is an object or an array"));
    RpcItem item;
    item.request = RpcRequest{id, method.toString(), params};
    return item;
}

} // namespace

RpcLine JsonRpc::parse(QByteArray const& line) {
    RpcLine parsed;
    QJsonParseError error;
    QJsonDocument const document = QJsonDocument::fromJson(line, &error);
    if (document.isNull()) {
        RpcItem item;
        item.request.id = QJsonValue::Null;
        item.error = RpcError{RpcParseError,
                              QStringLiteral("not JSON: %1 at byte %2").arg(error.errorString()).arg(error.offset),
                              QJsonValue(QJsonValue::Undefined)};
        parsed.items.append(item);
        return parsed;
    }
    if (document.isObject()) {
        parsed.items.append(parseCall(document.object()));
        return parsed;
    }
    QJsonArray const calls = document.array();
    if (calls.isEmpty()) {
        parsed.items.append(invalid(QJsonValue::Null, QStringLiteral("a batch holds at least one request")));
        return parsed;
    }
    if (calls.size() > kMostBatchedCalls) {
        parsed.items.append(
            invalid(QJsonValue::Null, QStringLiteral("a batch holds at most %1 requests").arg(kMostBatchedCalls)));
        return parsed;
    }
    parsed.batch = true;
    for (QJsonValue const& call : calls)
        parsed.items.append(parseCall(call));
    return parsed;
}

QJsonObject JsonRpc::resultAnswer(QJsonValue const& id, QJsonValue const& result) {
    return {{QStringLiteral("jsonrpc"), QStringLiteral("2.0")},
            {QStringLiteral("id"), id},
            {QStringLiteral("result"), result.isUndefined() ? QJsonValue(QJsonValue::Null) : result}};
}

QJsonObject JsonRpc::errorAnswer(QJsonValue const& id, RpcError const& error) {
    QJsonObject told{{QStringLiteral("code"), error.code}, {QStringLiteral("message"), error.message}};
    if (!error.data.isUndefined())
        told.insert(QStringLiteral("data"), error.data);
    return {{QStringLiteral("jsonrpc"), QStringLiteral("2.0")},
            {QStringLiteral("id"), id.isUndefined() ? QJsonValue(QJsonValue::Null) : id},
            {QStringLiteral("error"), told}};
}

QByteArray JsonRpc::line(QJsonObject const& answer) {
    return QJsonDocument(answer).toJson(QJsonDocument::Compact) + '\n';
}

QByteArray JsonRpc::line(QJsonArray const& batch) {
    return QJsonDocument(batch).toJson(QJsonDocument::Compact) + '\n';
}

} // namespace tessera
