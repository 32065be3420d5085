// SPDX-License-Identifier: MIT
#include "automation/rpcmethod.h"

#include <QStringList>
#include <cmath>

namespace tessera {

namespace {

struct TypeText {
    RpcType type;
    char const* text;
};
constexpr TypeText kTypeTexts[] = {
    {RpcType::Text, "a text that is not empty"},
    {RpcType::Index, "a whole number from 0 to 2147483647"},
    {RpcType::Word, "a whole number from 0 to 4294967295"},
    {RpcType::Count, "a whole number from 0 to 9007199254740991"},
    {RpcType::Number, "a number"},
    {RpcType::Switch, "true or false"},
    {RpcType::Level, "true, false, 0 or 1"},
    {RpcType::Any, "a value"},
};

QString typeText(RpcType type) {
    for (TypeText const& entry : kTypeTexts) {
        if (entry.type == type)
            return QString::fromLatin1(entry.text);
    }
    return QString();
}

bool isWholeNumber(QJsonValue const& value, double highest) {
    if (!value.isDouble())
        return false;
    double const number = value.toDouble();
    return number >= 0 && number <= highest && std::floor(number) == number;
}

bool hasType(QJsonValue const& value, RpcType type) {
    switch (type) {
    case RpcType::Text:
        return value.isString() && !value.toString().isEmpty();
    case RpcType::Index:
        return isWholeNumber(value, 2147483647.0);
    case RpcType::Word:
        return isWholeNumber(value, 4294967295.0);
    case RpcType::Count:
        return isWholeNumber(value, 9007199254740991.0);
    case RpcType::Number:
        return value.isDouble() && std::isfinite(value.toDouble());
    case RpcType::Switch:
        return value.isBool();
    case RpcType::Level:
        return value.isBool() || isWholeNumber(value, 1.0);
    case RpcType::Any:
        return true;
    }
    return false;
}

RpcError invalidParams(QString const& message) {
    return RpcError{RpcInvalidParams, message, QJsonValue(QJsonValue::Undefined)};
}

QStringList namesOf(RpcParameters const& parameters) {
    QStringList names;
    for (RpcParameter const& parameter : parameters) {
        if (parameter.name)
            names.append(QLatin1String(parameter.name));
    }
    return names;
}

} // namespace

RpcMethodFamily::~RpcMethodFamily() = default;

CheckedParams CheckedParams::check(RpcParameters const& parameters, QJsonValue const& given) {
    CheckedParams checked;
    QStringList const names = namesOf(parameters);
    QJsonObject values = given.toObject();
    if (given.isArray()) {
        QJsonArray const positional = given.toArray();
        if (positional.size() > names.size()) {
            checked.error = invalidParams(
                QStringLiteral("%1 parameters given, at most %2 taken").arg(positional.size()).arg(names.size()));
            return checked;
        }
        for (int i = 0; i < positional.size(); ++i)
            values.insert(names.at(i), positional.at(i));
    }
    for (QString const& name : values.keys()) {
        if (!names.contains(name)) {
            QString const taken = names.isEmpty() ? QStringLiteral("none") : names.join(QStringLiteral(", "));
            checked.error = invalidParams(QStringLiteral("unknown parameter \"%1\"; taken: %2").arg(name, taken));
            return checked;
        }
    }
    for (RpcParameter const& parameter : parameters) {
        if (!parameter.name)
            break;
        QString const name = QLatin1String(parameter.name);
        if (!values.contains(name)) {
            if (!parameter.required)
                continue;
            checked.error = invalidParams(QStringLiteral("parameter \"%1\" is missing").arg(name));
            return checked;
        }
        if (!hasType(values.value(name), parameter.type)) {
            checked.error = invalidParams(QStringLiteral("\"%1\" is %2").arg(name, typeText(parameter.type)));
            return checked;
        }
        if (parameter.type == RpcType::Level && values.value(name).isDouble())
            values.insert(name, values.value(name).toDouble() != 0);
    }
    checked.values = values;
    return checked;
}

} // namespace tessera
