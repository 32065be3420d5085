// SPDX-License-Identifier: GPL-2.0-or-later
#include "simengine/params/mediafolder.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

namespace sim {

namespace {

/// mountinfo writes blank, tab, line feed and backslash as \ooo.
QString mountName(QByteArray const& field) {
    QByteArray name;
    for (int i = 0; i < field.size(); ++i) {
        bool ok = false;
        int const code = field[i] == '\\' ? field.mid(i + 1, 3).toInt(&ok, 8) : 0;
        name += ok ? static_cast<char>(code) : field[i];
        if (ok)
            i += 3;
    }
    return QFile::decodeName(name);
}

} // namespace

QStringList mountPointsBelow(QByteArray const& mountInfo, QString const& root) {
    QStringList found;
    QString const prefix = root.endsWith(QLatin1Char('/')) ? root : root + QLatin1Char('/');
    for (QByteArray const& line : mountInfo.split('\n')) {
        QList<QByteArray> const fields = line.split(' ');
        if (fields.size() < 5)
            continue;
        QString const point = mountName(fields[4]);
        if (point.startsWith(prefix))
            found.append(point);
    }
    return found;
}

QString mediaFolder() {
    QStringList candidates;
    QString const other = qEnvironmentVariable("TESSERA_MEDIA_ROOT");
    if (other.isEmpty()) {
        QFile mounts(QStringLiteral("/proc/self/mountinfo"));
        if (mounts.open(QIODevice::ReadOnly))
            candidates = mountPointsBelow(mounts.readAll(), QStringLiteral("/media"));
    } else {
        QDir const root(other);
        for (QString const& name : root.entryList(QDir::Dirs | QDir::NoDotAndDotDot, QDir::Name))
            candidates.append(root.absoluteFilePath(name));
    }
    for (QString const& folder : candidates) {
        if (QFileInfo(folder).isWritable())
            return folder;
    }
    return candidates.value(0);
}

} // namespace sim
