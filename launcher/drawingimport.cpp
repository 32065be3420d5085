// SPDX-License-Identifier: MIT
#include "drawingimport.h"

#include "documentfiles.h"
#include "engine/qrulerview.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

namespace tessera {

namespace {

/// What the document holds as a file; empty when it cannot be stored.
QByteArray storedContent(QRulerView& view) {
    QTemporaryDir directory;
    QString const path = directory.filePath(QStringLiteral("import.mkf"));
    view.SetFileName(path);
    QFile file(path);
    if (!directory.isValid() || !view.SaveDoc() || !file.open(QIODevice::ReadOnly))
        return QByteArray();
    return file.readAll();
}

} // namespace

QString DrawingImport::import(QString const& drawing, QString& report, QString& error) {
    QRulerView view(nullptr);
    if (!view.ImportVectorFile(drawing, report)) {
        error = QStringLiteral("\"%1\" cannot be imported: %2").arg(drawing, report);
        return QString();
    }
    QString const target = DocumentFiles::importTarget(drawing, storedContent(view));
    view.SetFileName(target);
    if (QFile::exists(target))
        return target;
    if (!QDir().mkpath(DocumentFiles::folder()) || !view.SaveDoc()) {
        error = QStringLiteral("The document \"%1\" cannot be written.").arg(target);
        return QString();
    }
    return target;
}

} // namespace tessera
