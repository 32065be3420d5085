// SPDX-License-Identifier: GPL-2.0-or-later
#include "engine/filehelpers.h"

#include "support/durablefile.h"

#include <QFileInfo>

bool CopyFile(QString const& source, QString const& target) {
    if (target.isEmpty())
        return false;
    return tessera::copyFileDurably(source, QFileInfo(target).absoluteFilePath()).ok();
}

QStringList ListFiles(QDir const& dir, bool withExtension) {
    QStringList names = dir.entryList(QDir::Files);
    if (!withExtension) {
        for (QString& name : names)
            name = QFileInfo(name).completeBaseName();
    }
    return names;
}

void GetFileExtInPath(QString const& path, QString const& extension, QSet<QString>& names) {
    for (QString const& name : QDir(path).entryList(QDir::Files)) {
        if (name.size() > extension.size() && name.endsWith(extension, Qt::CaseInsensitive))
            names.insert(name.left(name.size() - extension.size()));
    }
}
