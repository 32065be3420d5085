// SPDX-License-Identifier: MIT
#include "support/archive.h"

#include <QFileInfo>
#include <QStorageInfo>

#include <algorithm>

namespace tessera {
namespace {

constexpr int longestEntryTold = 200; // characters

const char* faultText(ArchiveFault fault) {
    switch (fault) {
    case ArchiveFault::None:
        break;
    case ArchiveFault::Cancelled:
        return "cancelled";
    case ArchiveFault::SourceUnreadable:
        return "a file cannot be read";
    case ArchiveFault::NotWritten:
        return "the disk did not take all bytes";
    case ArchiveFault::NoSpace:
        return "not enough free space";
    case ArchiveFault::NotAnArchive:
        return "no zip archive that can be read";
    case ArchiveFault::Damaged:
        return "an entry is damaged";
    case ArchiveFault::BadName:
        return "an entry has a name that is refused";
    case ArchiveFault::DuplicateName:
        return "two entries have one name";
    case ArchiveFault::SpecialEntry:
        return "an entry is neither a file nor a folder";
    case ArchiveFault::Encrypted:
        return "an entry is encrypted";
    case ArchiveFault::TooManyEntries:
        return "too many entries";
    case ArchiveFault::TooLarge:
        return "too large when unpacked";
    }
    return "";
}

} // namespace

QString ArchiveResult::message() const {
    if (ok())
        return QString();
    const QString text = QStringLiteral("archive: ") + QLatin1String(faultText(m_fault));
    if (m_entry.isEmpty())
        return text;
    // A stranger's name must not break the log into lines of its own.
    QString entry = m_entry.left(longestEntryTold);
    for (QChar& c : entry) {
        if (!c.isPrint())
            c = QLatin1Char('?');
    }
    return text + QStringLiteral(": ") + entry;
}

ArchiveLimits ArchiveLimits::forFolder(const QString& folder) {
    QString existing = QFileInfo(folder).absoluteFilePath();
    while (!QFileInfo::exists(existing))
        existing = QFileInfo(existing).absolutePath();
    ArchiveLimits limits;
    limits.bytes = std::max<qint64>(QStorageInfo(existing).bytesAvailable() - archiveReserve, 0);
    return limits;
}

} // namespace tessera
