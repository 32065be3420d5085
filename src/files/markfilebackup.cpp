// SPDX-License-Identifier: MIT
#include "files/markfilebackup.h"

#include "engine/filehelpers.h"
#include "engine/systemparam.h"
#include "support/approot.h"
#include "support/temporaryfolder.h"
#include "support/workcontrol.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <optional>
#include <sys/stat.h>
#include <unistd.h>

namespace tessera {
namespace {

/// Bytes. Each name in the list is looked for at every start, so a list that never ends would keep the program from it.
constexpr qint64 longestList = 256LL * 1024;

std::optional<dev_t> deviceOf(QString const& path) {
    struct stat status = {};
    if (::stat(QFile::encodeName(path).constData(), &status) != 0)
        return std::nullopt;
    return status.st_dev;
}

QString markFileFolder() {
    return rootPath(QStringLiteral("/MarkFile"));
}

} // namespace

QString StickBackupFolder() {
    QString path;
    if (!SystemParam::Instance()->GetUsbPath(path))
        return QString();
    path += QStringLiteral("/VZBackup");
    QDir().mkpath(path);
    return path;
}

ArchiveResult WriteMarkFileBackup(QString const& folder, QString const& name, WorkControl& control) {
    const std::optional<dev_t> stick = deviceOf(folder);
    const TemporaryFolder work;
    if (!stick || !work.isValid())
        return ArchiveResult(ArchiveFault::NotWritten, folder);
    const QString zip = work.filePath(name + QStringLiteral(".zip"));
    ArchiveResult packed = packFolder(zip, markFileFolder(), &control);
    if (!packed)
        return packed;
    control.makeFinal();
    const QString target = folder + QLatin1Char('/') + name + QLatin1String(backupExtension);
    const bool copied = deviceOf(folder) == stick && CopyFile(zip, target);
    ::sync();
    if (copied && deviceOf(target) == stick)
        return ArchiveResult();
    if (copied) // onto the disk below the stick that is gone
        QFile::remove(target);
    return ArchiveResult(ArchiveFault::NotWritten, target);
}

ArchiveResult UnpackMarkFileBackup(QString const& file, QString const& work, QString const& name,
                                   WorkControl& control) {
    const ArchiveLimits space = ArchiveLimits::forFolder(work);
    if (QFileInfo(file).size() > space.bytes)
        return ArchiveResult(ArchiveFault::TooLarge, file);
    const QString zip = work + QLatin1Char('/') + name + QStringLiteral(".zip");
    if (!CopyFile(file, zip))
        return ArchiveResult(QFileInfo(file).isReadable() ? ArchiveFault::NotWritten : ArchiveFault::SourceUnreadable,
                             file);
    return unpackArchive(zip, work + QLatin1Char('/') + name, ArchiveLimits::forFolder(work), &control);
}

bool ImportRecentLists(QString const& folder) {
    bool done = true;
    for (QString const& list : {QStringLiteral("/RecentFile.of"), QStringLiteral("/MultiDocMarkFile/recent")}) {
        const QFileInfo file(folder + list);
        if (file.exists())
            done = file.size() <= longestList && CopyFile(file.filePath(), markFileFolder() + list) && done;
    }
    return done;
}

} // namespace tessera
