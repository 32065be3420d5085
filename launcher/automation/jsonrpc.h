// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QJsonArray>
#include <QJsonObject>
#include <QJsonValue>
#include <QString>
#include <QVector>
#include <optional>

namespace tessera {

/// Error codes of the automation port. Those of -32700 to -32600 are JSON-RPC's own.
enum RpcErrorCode {
    RpcParseError = -32700,
    RpcInvalidRequest = -32600,
    RpcMethodNotFound = -32601,
    RpcInvalidParams = -32602,
    RpcObjectNotFound = -32001,  ///< no object of that name; data.candidates lists similar ones
    RpcObjectAmbiguous = -32002, ///< several objects of that name; data.candidates lists them
    RpcObjectNotUsable = -32003, ///< the object is disabled, hidden or behind a modal dialog
    RpcNoSimulator = -32004,     ///< the linked engine is not a simulated machine
    RpcFileError = -32005,       ///< a file could not be written
    RpcMachineRefused = -32006   ///< the simulated machine has not what was asked for
};

struct RpcError {
    int code = 0;
    QString message;
    QJsonValue data = QJsonValue(QJsonValue::Undefined); ///< left out of the answer when undefined
};

/// One call. `params` is an object, an array or undefined.
struct RpcRequest {
    QJsonValue id = QJsonValue(QJsonValue::Undefined);
    QString method;
    QJsonValue params = QJsonValue(QJsonValue::Undefined);
    /// Without an id the caller wants no answer, not even to an error.
    bool isNotification() const { return id.isUndefined(); }
};

/// One entry of a line: a call, or why the entry is none.
struct RpcItem {
    RpcRequest request;
    std::optional<RpcError> error;
};

/// A parsed line: one entry, or those of a batch in their order.
struct RpcLine {
    bool batch = false;
    QVector<RpcItem> items;
};

/// Most calls that one batch may hold.
constexpr int kMostBatchedCalls = 100;

/// The text side of JSON-RPC 2.0: lines to calls and results to lines. No state, any thread.
class JsonRpc {
public:
    /// Reads one line. Always gives at least one entry.
    static RpcLine parse(QByteArray const& line);
    static QJsonObject resultAnswer(QJsonValue const& id, QJsonValue const& result);
    /// `id` undefined, as for a line that could not be read, becomes null.
    static QJsonObject errorAnswer(QJsonValue const& id, RpcError const& error);
    /// One line with its line end.
    static QByteArray line(QJsonObject const& answer);
    static QByteArray line(QJsonArray const& batch);
};

} // namespace tessera
