// SPDX-License-Identifier: MIT
#include "files/searchfiles.h"

#include <QDir>
#include <QFileInfo>
#include <QSet>

namespace {

/// `seen` holds the real paths of the folders looked through: links could lead round in a circle.
bool search(QString const& folder, QString const& name, QString& path, QSet<QString>& seen) {
    const QString real = QFileInfo(folder).canonicalFilePath();
    if (real.isEmpty() || seen.contains(real))
        return false;
    seen.insert(real);
    for (QFileInfo const& entry : QDir(folder).entryInfoList(QDir::Dirs | QDir::Files, QDir::DirsLast)) {
        if (entry.isFile()) {
            if (entry.fileName() != name)
                continue;
            path = entry.filePath();
            return true;
        }
        if (entry.fileName() == QLatin1String(".") || entry.fileName() == QLatin1String(".."))
            continue;
        if (search(entry.filePath(), name, path, seen))
            return true;
    }
    return false;
}

} // namespace

bool SearchFiles(QString folder, QString name, QString& path) {
    QSet<QString> seen;
    return search(folder, name, path, seen);
}
