// SPDX-License-Identifier: MIT
#include "support/archive.h"
#include "support/workcontrol.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QVector>
#include <quazip/quazip.h>
#include <quazip/quazipfile.h>

namespace tessera {
namespace {

constexpr int chunk = 256 * 1024;                           // bytes
constexpr qint64 beyondPlainZip = 3LL * 1024 * 1024 * 1024; // bytes; above this the larger zip format is written
constexpr int mostPlainEntries = 60000;                     // likewise
constexpr int deepestFolder = 32;

struct Source {
    QString name; // in the archive; of a folder with "/" at its end
    QString path;
};

struct Sources {
    QVector<Source> entries;
    qint64 bytes = 0;
};

void collect(const QDir& folder, const QString& prefix, const QString& archive, int depth, Sources& sources) {
    for (const QFileInfo& file : folder.entryInfoList(QDir::Files, QDir::Name)) {
        if (file.absoluteFilePath() == archive)
            continue;
        // Of a link it is the file itself whose attributes are packed.
        sources.entries.append({prefix + file.fileName(), file.canonicalFilePath()});
        sources.bytes += file.size();
    }
    if (depth == deepestFolder)
        return;
    constexpr QDir::Filters folders = QDir::Dirs | QDir::NoDotAndDotDot | QDir::NoSymLinks;
    for (const QFileInfo& sub : folder.entryInfoList(folders, QDir::Name)) {
        const QString name = prefix + sub.fileName() + QLatin1Char('/');
        sources.entries.append({name, sub.absoluteFilePath()});
        collect(QDir(sub.absoluteFilePath()), name, archive, depth + 1, sources);
    }
}

/// Writes one archive; the limit is on its own length.
class Packer {
public:
    Packer(QuaZip& zip, const QFile& file, qint64 limit, WorkControl& control)
        : m_zip(zip)
        , m_file(file)
        , m_limit(limit)
        , m_control(control) {}

    ArchiveResult pack(const Source& source) {
        if (m_control.isCancelled())
            return ArchiveResult(ArchiveFault::Cancelled);
        QuaZipFile entry(&m_zip);
        if (source.name.endsWith(QLatin1Char('/'))) {
            if (!entry.open(QIODevice::WriteOnly, QuaZipNewInfo(source.name, source.path), nullptr, 0, 0))
                return failed(ArchiveFault::NotWritten, source);
        } else {
            QFile file(source.path);
            if (!file.open(QIODevice::ReadOnly))
                return failed(ArchiveFault::SourceUnreadable, source);
            if (!entry.open(QIODevice::WriteOnly, QuaZipNewInfo(source.name, source.path)))
                return failed(ArchiveFault::NotWritten, source);
            ArchiveResult result = copy(file, entry, source);
            if (!result)
                return result;
        }
        entry.close();
        return entry.getZipError() == ZIP_OK ? ArchiveResult() : failed(ArchiveFault::NotWritten, source);
    }

private:
    static ArchiveResult failed(ArchiveFault fault, const Source& source) { return ArchiveResult(fault, source.name); }

    ArchiveResult copy(QFile& from, QuaZipFile& to, const Source& source) {
        QByteArray bytes(chunk, '\0');
        for (;;) {
            const qint64 length = from.read(bytes.data(), chunk);
            if (length < 0)
                return failed(ArchiveFault::SourceUnreadable, source);
            if (length == 0)
                return ArchiveResult();
            if (to.write(bytes.constData(), length) != length)
                return failed(ArchiveFault::NotWritten, source);
            if (m_file.size() > m_limit)
                return failed(ArchiveFault::NoSpace, source);
            m_control.add(length);
            if (m_control.isCancelled())
                return ArchiveResult(ArchiveFault::Cancelled);
        }
    }

    QuaZip& m_zip;
    const QFile& m_file;
    const qint64 m_limit;
    WorkControl& m_control;
};

ArchiveResult packAll(QFile& file, const Sources& sources, qint64 limit, WorkControl& control) {
    QuaZip zip(&file);
    zip.setUtf8Enabled(true);
    zip.setZip64Enabled(sources.bytes > beyondPlainZip || sources.entries.size() > mostPlainEntries);
    if (!zip.open(QuaZip::mdCreate))
        return ArchiveResult(ArchiveFault::NotWritten);
    Packer packer(zip, file, limit, control);
    ArchiveResult result;
    for (const Source& source : sources.entries) {
        result = packer.pack(source);
        if (!result)
            break;
    }
    zip.close();
    if (result && zip.getZipError() != ZIP_OK)
        result = ArchiveResult(ArchiveFault::NotWritten);
    return result;
}

} // namespace

ArchiveResult packFolder(const QString& archive, const QString& folder, WorkControl* control) {
    WorkControl unwatched;
    WorkControl& watched = control ? *control : unwatched;
    const QString path = QFileInfo(archive).absoluteFilePath();
    if (!QFileInfo(folder).isDir() || !QFileInfo(folder).isReadable())
        return ArchiveResult(ArchiveFault::SourceUnreadable, folder);
    Sources sources;
    collect(QDir(folder), QString(), path, 1, sources);
    watched.setTotal(sources.bytes);
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly | QIODevice::Truncate))
        return ArchiveResult(ArchiveFault::NotWritten, path);
    ArchiveResult result = packAll(file, sources, ArchiveLimits::forFolder(path).bytes, watched);
    file.close();
    if (result && file.error() != QFileDevice::NoError)
        result = ArchiveResult(ArchiveFault::NotWritten, path);
    if (!result)
        file.remove();
    return result;
}

} // namespace tessera
