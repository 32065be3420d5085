// SPDX-License-Identifier: MIT
#pragma once

#include "support/approot.h"

#include <QByteArray>
#include <QDir>
#include <QFile>
#include <QStringList>

namespace tests {

/// The log of this root, all days, oldest first.
inline QByteArray logBytes() {
    QByteArray all;
    const QDir folder(tessera::rootPath(QStringLiteral("/日志文件")));
    for (QString const& name : folder.entryList({QStringLiteral("*.log")}, QDir::Files, QDir::Name)) {
        QFile file(folder.filePath(name));
        if (file.open(QIODevice::ReadOnly))
            all += file.readAll();
    }
    return all;
}

/// Texts of the log's entries of a kind ("run", "error"), oldest first.
inline QStringList logTexts(char const* kind) {
    QStringList texts;
    for (QString const& line : QString::fromUtf8(logBytes()).split(QLatin1Char('\n'), Qt::SkipEmptyParts)) {
        const QStringList columns = line.split(QLatin1Char('\t'));
        if (columns.value(1) == QLatin1String(kind))
            texts.append(columns.value(2));
    }
    return texts;
}

} // namespace tests
