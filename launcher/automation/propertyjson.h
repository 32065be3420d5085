// SPDX-License-Identifier: MIT
#pragma once

#include <QJsonValue>
#include <QObject>
#include <QString>
#include <QVariant>

namespace tessera {

/// Qt properties as JSON values. Enumerations are given by their key and taken by key or number; points, sizes and
/// rectangles are objects of numbers; colours, fonts, dates and key sequences are texts. Main thread.
class PropertyJson {
public:
    /// A property's value; false with `error` when there is no such property or its type has no JSON form.
    static bool read(QObject const* object, QString const& property, QJsonValue& value, QString& error);
    /// The variant that setProperty() takes; false with `error` when the property is unknown or read-only or the value
    /// does not fit its type.
    static bool prepare(QObject const* object, QString const& property, QJsonValue const& given, QVariant& value,
                        QString& error);
};

} // namespace tessera
