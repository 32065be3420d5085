// SPDX-License-Identifier: MIT
#include "support/archive.h"
#include "support/archiveentries.h"
#include "support/workcontrol.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <quazip/quazip.h>
#include <quazip/quazipfile.h>

#include <sys/stat.h>

namespace tessera {
namespace {

constexpr int chunk = 256 * 1024; // bytes

bool readEntry(const QuaZip& zip, ArchiveEntry& entry) {
    QuaZipFileInfo64 info;
    if (!zip.getCurrentFileInfo(&info))
        return false;
    entry.name = info.name;
    entry.encrypted = info.isEncrypted();
    entry.method = info.method;
    entry.attributes = info.externalAttr;
    entry.size = info.uncompressedSize;
    return true;
}

/// The library does not find the end record of an archive without entries, which is all there is of it.
bool isEmptyArchive(const QString& path) {
    const QByteArray end = QByteArrayLiteral("PK\x05\x06") + QByteArray(18, '\0');
    QFile file(path);
    return file.size() == end.size() && file.open(QIODevice::ReadOnly) && file.readAll() == end;
}

class Unpacker {
public:
    Unpacker(const QString& archive, const QString& folder, const ArchiveLimits& limits, WorkControl& control)
        : m_archive(archive)
        , m_zip(archive)
        , m_folder(folder)
        , m_limits(limits)
        , m_control(control) {}

    ArchiveResult run() {
        if (isEmptyArchive(m_archive))
            return ArchiveResult();
        m_zip.setFileNameCodec("UTF-8");
        if (!m_zip.open(QuaZip::mdUnzip))
            return ArchiveResult(ArchiveFault::NotAnArchive);
        ArchiveResult judged = judgeAll();
        return judged ? writeAll() : judged;
    }

private:
    /// Calls `visit` with each entry, in the order of the archive's directory.
    template<typename Visit>
    ArchiveResult walk(Visit visit) {
        bool more = m_zip.goToFirstFile();
        if (!more)
            return ArchiveResult(ArchiveFault::NotAnArchive);
        for (; more; more = m_zip.goToNextFile()) {
            if (m_control.isCancelled())
                return ArchiveResult(ArchiveFault::Cancelled);
            ArchiveEntry entry;
            if (!readEntry(m_zip, entry))
                return ArchiveResult(ArchiveFault::NotAnArchive);
            ArchiveResult result = visit(entry);
            if (!result)
                return result;
        }
        return m_zip.getZipError() == UNZ_OK ? ArchiveResult() : ArchiveResult(ArchiveFault::NotAnArchive);
    }

    ArchiveResult judgeAll() {
        ArchiveJudge judge(m_limits);
        ArchiveResult result = walk([&judge](const ArchiveEntry& entry) {
            const ArchiveFault fault = judge.judge(entry);
            return fault == ArchiveFault::None ? ArchiveResult() : ArchiveResult(fault, entry.name);
        });
        m_control.setTotal(judge.bytes());
        return result;
    }

    ArchiveResult writeAll() {
        // Judged again: the archive may lie where others can write.
        ArchiveJudge judge(m_limits);
        return walk([this, &judge](const ArchiveEntry& entry) {
            const ArchiveFault fault = judge.judge(entry);
            return fault == ArchiveFault::None ? write(entry) : ArchiveResult(fault, entry.name);
        });
    }

    ArchiveResult write(const ArchiveEntry& entry) {
        const QString path = m_folder + QLatin1Char('/') + entry.name;
        const QString parent = entry.isFolder() ? path : QFileInfo(path).absolutePath();
        if (!QDir().mkpath(parent))
            return ArchiveResult(ArchiveFault::NotWritten, entry.name);
        if (entry.isFolder())
            return ArchiveResult();
        QuaZipFile packed(&m_zip);
        if (!packed.open(QIODevice::ReadOnly))
            return ArchiveResult(ArchiveFault::Damaged, entry.name);
        QFile file(path);
        if (!file.open(QIODevice::WriteOnly | QIODevice::NewOnly | QIODevice::Unbuffered))
            return ArchiveResult(ArchiveFault::NotWritten, entry.name);
        ArchiveResult result = copy(packed, file, entry);
        if (!result)
            return result;
        packed.close(); // compares the checksum
        return packed.getZipError() == UNZ_OK ? ArchiveResult() : ArchiveResult(ArchiveFault::Damaged, entry.name);
    }

    ArchiveResult copy(QuaZipFile& from, QFile& to, const ArchiveEntry& entry) {
        QByteArray bytes(chunk, '\0');
        quint64 whole = 0;
        for (;;) {
            const qint64 length = from.read(bytes.data(), chunk);
            if (length < 0)
                return ArchiveResult(ArchiveFault::Damaged, entry.name);
            if (length == 0)
                return ArchiveResult(whole == entry.size ? ArchiveFault::None : ArchiveFault::Damaged, entry.name);
            whole += static_cast<quint64>(length);
            m_written += length;
            if (m_written > m_limits.bytes)
                return ArchiveResult(ArchiveFault::TooLarge, entry.name);
            if (to.write(bytes.constData(), length) != length)
                return ArchiveResult(ArchiveFault::NotWritten, entry.name);
            m_control.add(length);
            if (m_control.isCancelled())
                return ArchiveResult(ArchiveFault::Cancelled);
        }
    }

    const QString m_archive;
    QuaZip m_zip;
    const QString m_folder;
    const ArchiveLimits m_limits;
    WorkControl& m_control;
    qint64 m_written = 0;
};

} // namespace

ArchiveResult unpackArchive(const QString& archive, const QString& folder, const ArchiveLimits& limits,
                            WorkControl* control) {
    WorkControl unwatched;
    const QString target = QFileInfo(folder).absoluteFilePath();
    // Fails for anything that is there already, a link that leads elsewhere among it.
    if (::mkdir(QFile::encodeName(target).constData(), 0700) != 0)
        return ArchiveResult(ArchiveFault::NotWritten, folder);
    ArchiveResult result = Unpacker(archive, target, limits, control ? *control : unwatched).run();
    if (!result)
        QDir(target).removeRecursively();
    return result;
}

} // namespace tessera
