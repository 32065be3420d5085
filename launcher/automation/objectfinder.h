// SPDX-License-Identifier: MIT
#pragma once

#include <QObject>
#include <QString>
#include <QStringList>
#include <QVector>

namespace tessera {

/// Finds the program's objects by name. A path is names joined by "/"; each is an object name or a class name. The last
/// names the object, those before it some of its ancestors in their order. An object name goes before a class name.
/// "name[n]" is the n-th, from 0, among equally named children of one parent. Main thread.
class ObjectFinder {
public:
    struct Found {
        QObject* object = nullptr; ///< null when unknown or ambiguous
        bool ambiguous = false;
        QStringList candidates; ///< full paths: those that match when ambiguous, similar ones when unknown
    };

    /// Looks below the windows of the program.
    static Found find(QString const& path);
    /// Looks below `roots`, for which nothing above them counts.
    static Found find(QString const& path, QVector<QObject*> const& roots);
    /// Path from the root, which find() takes for exactly this object.
    static QString fullPath(QObject const* object);
    /// The windows without a parent, the main window before the others.
    static QVector<QObject*> windows();
    /// Object name, or class name when it has none.
    static QString nameOf(QObject const* object);
};

} // namespace tessera
