// SPDX-License-Identifier: MIT
#include "shell/recentfile.h"

#include <QStringList>

namespace tessera {

QVector<QString> ReadRecentList(QByteArray const& bytes) {
    const QStringList lines = QString::fromUtf8(bytes).split(QLatin1Char('\n'));
    const int count = lines.first().trimmed().toInt();
    QVector<QString> paths;
    for (int i = 1; i <= count && i < lines.size(); ++i)
        paths.append(lines.at(i).trimmed().toLower());
    return paths;
}

QByteArray WriteRecentList(QVector<QString> const& paths) {
    QByteArray bytes = QByteArray::number(paths.size()) + '\n';
    for (QString const& path : paths)
        bytes += path.toUtf8() + '\n';
    return bytes;
}

} // namespace tessera
