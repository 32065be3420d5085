// SPDX-License-Identifier: GPL-2.0-or-later
#include "simengine/servers/pusheddocument.h"

#include "simengine/document/contained.h"
#include "simengine/document/mkfcodec.h"
#include "simengine/servers/documentuploads.h"
#include "simengine/servers/stationmessage.h"
#include "support/approot.h"
#include "support/filename.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

namespace sim {

namespace {

const QString kSuffix = QStringLiteral(".mkf");
const QString kInline = QStringLiteral("data:");
const QString kUpload = QStringLiteral("upload:");

bool isFileName(QString const& name) {
    return tessera::fileNameFault(name, QString(), tessera::FileNamePlace::Machine) == tessera::FileNameFault::None &&
           !name.contains(QLatin1Char('\\')) && !name.contains(QLatin1Char(':'));
}

/// No link on the way leads out of the folder. What is not there yet cannot.
bool staysInside(QString const& folder, QString const& path) {
    QString const real = QFileInfo(folder).canonicalFilePath();
    if (real.isEmpty())
        return !QFileInfo(folder).isSymLink();
    QFileInfo info(path);
    while (!info.exists()) {
        if (info.isSymLink())
            return false;
        info = QFileInfo(info.absolutePath());
    }
    QString const target = info.canonicalFilePath();
    return target == real || target.startsWith(real + QLatin1Char('/'));
}

std::optional<QByteArray> fileBytes(QString const& path, QString& error) {
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        error = QStringLiteral("%1: %2").arg(path, file.errorString());
    else if (file.size() > kMaxMkfBytes)
        error = QStringLiteral("%1: the file is too large").arg(path);
    else
        return file.readAll();
    return std::nullopt;
}

std::optional<QByteArray> inlineBytes(QString const& base64, QString& error) {
    std::optional<QByteArray> bytes = decodedBase64(base64);
    if (!bytes)
        error = QStringLiteral("the content is not base64");
    return bytes;
}

std::optional<QByteArray> uploadedBytes(QString const& name, QString& error) {
    std::optional<QByteArray> bytes = stationUploads().find(name);
    if (!bytes)
        error = QStringLiteral("nothing was put as \"%1\"").arg(loggable(name));
    return bytes;
}

std::optional<QByteArray> pushedBytes(QString const& first, QString& error) {
    if (first.startsWith(kInline))
        return inlineBytes(first.mid(kInline.size()), error);
    if (first.startsWith(kUpload))
        return uploadedBytes(first.mid(kUpload.size()), error);
    std::optional<QString> const path = pushedPath(first, error);
    return path ? fileBytes(*path, error) : std::nullopt;
}

} // namespace

std::optional<DocumentContent> pushedContent(QString const& first, QString& error) {
    std::optional<DocumentContent> content;
    bool const done = contained(error, [&] {
        std::optional<QByteArray> const bytes = pushedBytes(first, error);
        if (bytes)
            content = decodeMkf(*bytes, &error);
    });
    return done ? std::move(content) : std::nullopt;
}

std::optional<QString> pushedPath(QString const& name, QString& error) {
    QString const folder = tessera::rootPath(QStringLiteral("/MarkFile"));
    QString inside = name;
    bool good = true;
    if (name.contains(QLatin1Char('/'))) {
        good = name.startsWith(folder + QLatin1Char('/')) && name.endsWith(kSuffix, Qt::CaseInsensitive);
        inside = name.mid(folder.size() + 1);
    } else if (!name.endsWith(kSuffix, Qt::CaseInsensitive)) {
        inside += kSuffix;
    }
    for (QString const& part : inside.split(QLatin1Char('/')))
        good = good && isFileName(part);
    QString const path = folder + QLatin1Char('/') + inside;
    if (good && staysInside(folder, path))
        return path;
    error = QStringLiteral("no name of a document in %1").arg(folder);
    return std::nullopt;
}

} // namespace sim
