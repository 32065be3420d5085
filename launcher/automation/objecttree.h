// SPDX-License-Identifier: MIT
#pragma once

#include <QJsonArray>
#include <QJsonObject>
#include <QObject>
#include <QVector>

namespace tessera {

/// The widgets and actions below some objects, as JSON: name, class, path, visible, enabled, text, children. Main
/// thread.
class ObjectTree {
public:
    static QJsonArray describe(QVector<QObject*> const& objects);
    /// One object without its children.
    static QJsonObject describeAlone(QObject const* object);
};

} // namespace tessera
