// SPDX-License-Identifier: MIT
#pragma once

#include "automation/jsonrpc.h"

#include <QJsonObject>
#include <QString>
#include <array>
#include <functional>
#include <optional>

namespace tessera {

/// What a method gives back.
struct RpcReply {
    QJsonValue result;
    std::optional<RpcError> error;
    /// Done after the answer has been sent: what may open a modal dialog and so would hold the answer up.
    std::function<void()> afterwards;

    static RpcReply value(QJsonValue const& result) { return {result, std::nullopt, nullptr}; }
    static RpcReply done(std::function<void()> afterwards) { return {QJsonValue(true), std::nullopt, afterwards}; }
    static RpcReply failure(int code, QString const& message,
                            QJsonValue const& data = QJsonValue(QJsonValue::Undefined)) {
        return {QJsonValue(), RpcError{code, message, data}, nullptr};
    }
};

enum class RpcType {
    Text,   ///< a string that is not empty
    Index,  ///< a whole number, 0 to 2147483647
    Word,   ///< a whole number, 0 to 4294967295
    Count,  ///< a whole number of 0 or above that a JSON number holds exactly
    Number, ///< any finite number
    Switch, ///< true or false
    Level,  ///< true, false, 0 or 1; handed on as true or false
    Any
};

struct RpcParameter {
    char const* name = nullptr; ///< null ends the list
    RpcType type = RpcType::Any;
    bool required = false;
};

constexpr int kMaxRpcParameters = 16;
using RpcParameters = std::array<RpcParameter, kMaxRpcParameters>;

/// Checks the parameters of a call against a method's list and gives them by name; positional ones are taken in the
/// list's order. Unknown, missing and wrongly typed parameters are an error.
struct CheckedParams {
    QJsonObject values;
    std::optional<RpcError> error;
    static CheckedParams check(RpcParameters const& parameters, QJsonValue const& given);
};

/// A family of methods, such as "ui.". Main thread.
class RpcMethodFamily {
public:
    virtual ~RpcMethodFamily();
    /// Gives false when the family has no method of that name.
    virtual bool call(QString const& method, QJsonValue const& params, RpcReply& reply) = 0;
    virtual QStringList methodNames() const = 0;
};

/// A family whose methods are the rows of a table: name, parameters, member function of `Family`.
template<typename Family>
class RpcMethodTable : public RpcMethodFamily {
public:
    struct Row {
        char const* name;
        RpcParameters parameters;
        RpcReply (Family::*call)(QJsonObject const& params);
    };

    bool call(QString const& method, QJsonValue const& params, RpcReply& reply) override {
        for (Row const& row : Family::methods()) {
            if (method != QLatin1String(row.name))
                continue;
            CheckedParams const checked = CheckedParams::check(row.parameters, params);
            if (checked.error)
                reply = RpcReply{QJsonValue(), checked.error, nullptr};
            else
                reply = (static_cast<Family*>(this)->*row.call)(checked.values);
            return true;
        }
        return false;
    }

    QStringList methodNames() const override {
        QStringList names;
        for (Row const& row : Family::methods())
            names.append(QLatin1String(row.name));
        return names;
    }
};

} // namespace tessera
