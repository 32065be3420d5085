// SPDX-License-Identifier: MIT
#include "documentfiles.h"

#include "support/approot.h"

#include <QFile>
#include <QFileInfo>

namespace tessera {

namespace {

const QString kSuffix = QStringLiteral(".mkf");

bool holds(QString const& path, QByteArray const& content) {
    QFile file(path);
    return !content.isEmpty() && file.open(QIODevice::ReadOnly) && file.readAll() == content;
}

} // namespace

QString DocumentFiles::folder() {
    return rootPath(QStringLiteral("/MarkFile"));
}

QString DocumentFiles::existing(QString const& given) {
    if (QFileInfo(given).isAbsolute())
        return QFileInfo(given).isFile() ? given : QString();
    for (QString const& name : {given, given + kSuffix}) {
        QString const path = folder() + QLatin1Char('/') + name;
        if (QFileInfo(path).isFile())
            return path;
    }
    return QString();
}

QString DocumentFiles::openName(QString const& path) {
    QFileInfo const info(path);
    QString const name = info.fileName();
    bool const own = info.absolutePath() == QFileInfo(folder()).absoluteFilePath();
    bool const known = name == name.toLower() && name.endsWith(kSuffix) && name.size() > kSuffix.size();
    return own && known ? name.chopped(kSuffix.size()) : path;
}

QString DocumentFiles::importTarget(QString const& drawing, QByteArray const& content) {
    QString base = QFileInfo(drawing).completeBaseName().toLower();
    if (base.isEmpty())
        base = QStringLiteral("import");
    for (int number = 1;; ++number) {
        QString const suffix = number == 1 ? QString() : QStringLiteral("_%1").arg(number);
        QString const path = folder() + QLatin1Char('/') + base + suffix + kSuffix;
        // A dangling link counts as taken too.
        QFileInfo const info(path);
        if ((!info.exists() && !info.isSymLink()) || holds(path, content))
            return path;
    }
}

} // namespace tessera
