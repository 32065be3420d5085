// SPDX-License-Identifier: MIT
#include "multidoc/projectfile.h"

#include "support/approot.h"

#include <QTextStream>

namespace tessera {

namespace {

/// The machines run in a UTF-8 locale; told here, so that a name survives a program that was started without one.
void useCodec(QTextStream& stream) {
    stream.setCodec("UTF-8");
}

} // namespace

QString ProjectFolder() {
    return rootPath(QStringLiteral("/MarkFile/MultiDocMarkFile")) + QLatin1Char('/');
}

QString ProjectPath(QString const& name) {
    return ProjectFolder() + name + QStringLiteral(".mdf");
}

QString RecentProjectPath() {
    return ProjectFolder() + QStringLiteral("recent");
}

QByteArray WriteProject(QVector<TrigerDoc*> const& docs) {
    QByteArray bytes;
    QTextStream stream(&bytes, QIODevice::WriteOnly);
    useCodec(stream);
    stream << docs.size() << '\n';
    for (TrigerDoc const* doc : docs)
        stream << doc->m_FileName << '\n' << doc->m_nValue << '\n' << doc->m_nMask << '\n';
    stream.flush();
    return bytes;
}

QVector<TrigerDoc> ReadProject(QByteArray const& bytes) {
    QTextStream stream(bytes);
    useCodec(stream);
    const int count = stream.readLine().toInt();
    QVector<TrigerDoc> docs;
    while (docs.size() < count && !stream.atEnd()) {
        TrigerDoc doc;
        doc.m_FileName = stream.readLine();
        doc.m_nValue = stream.readLine().toUInt();
        doc.m_nMask = stream.readLine().toUInt();
        docs.append(doc);
    }
    if (count <= kMaxFilledDocs && docs.size() < count)
        docs.resize(count);
    return docs;
}

QByteArray WriteRecentProject(QString const& name) {
    return name.toUtf8() + '\n';
}

QString ReadRecentProject(QByteArray const& bytes) {
    QTextStream stream(bytes);
    useCodec(stream);
    return stream.readLine();
}

} // namespace tessera
