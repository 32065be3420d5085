// SPDX-License-Identifier: MIT
#pragma once

#include "support/supportglobal.h"

#include <QString>

namespace tessera {

class WorkControl;

/// Why a zip archive was not written or not read.
enum class ArchiveFault {
    None,
    Cancelled,
    SourceUnreadable, ///< a file to be packed could not be read
    NotWritten,       ///< the disk took the archive, or what came out of it, not whole
    NoSpace,          ///< packing: fewer than archiveReserve bytes would be left on the disk
    NotAnArchive,     ///< missing, cut short, no zip archive, or packed in a way that is not read
    Damaged,          ///< an entry's bytes are not those that were packed
    BadName,          ///< an entry would lie outside of the folder, or can have no such name
    DuplicateName,    ///< two entries have one name, or one is the folder of another
    SpecialEntry,     ///< an entry is a symbolic link, a device, a pipe or a socket
    Encrypted,
    TooManyEntries,
    TooLarge ///< unpacked it is larger than allowed
};

/// What came of packing or unpacking. A plain value.
class TESSERA_SUPPORT_EXPORT ArchiveResult {
public:
    ArchiveResult() = default;
    /// `entry` is the entry or file concerned, which may be empty.
    explicit ArchiveResult(ArchiveFault fault, const QString& entry = QString())
        : m_fault(fault)
        , m_entry(entry) {}

    bool ok() const { return m_fault == ArchiveFault::None; }
    explicit operator bool() const { return ok(); }
    ArchiveFault fault() const { return m_fault; }
    const QString& entry() const { return m_entry; }
    /// One English line for the log; empty on success.
    QString message() const;

private:
    ArchiveFault m_fault = ArchiveFault::None;
    QString m_entry;
};

/// Bytes that stay free on a disk onto which something is packed or unpacked: the program itself needs room there.
constexpr qint64 archiveReserve = 200LL * 1000 * 1000;

/// How much may come out of an archive.
struct TESSERA_SUPPORT_EXPORT ArchiveLimits {
    qint64 bytes = 0;
    int entries = 50000; ///< files and folders, whether these have entries of their own or not
    /// As many bytes as the file system that `folder` lies on, or is to lie on, has free less archiveReserve.
    static ArchiveLimits forFolder(const QString& folder);
};

/// Packs the files and subfolders of `folder` into the new zip archive `archive`, with names relative to the folder.
/// Hidden files, temporaries of saves among them, and links to folders stay out; a link to a file is packed as the
/// file. `control`, which may be null, counts bytes and can cancel. On failure there is no archive. Blocks; any thread.
TESSERA_SUPPORT_EXPORT ArchiveResult packFolder(const QString& archive, const QString& folder, WorkControl* control);

/// Unpacks a zip archive, which is taken for hostile, into `folder`, which must not exist and is made. All entries are
/// judged before the first byte is written, and the limit on bytes is held against what is written and not only
/// against what the archive tells. Nothing outside of the folder is touched. Modes, owners and times are not taken
/// over. On failure there is no folder. Blocks; any thread.
TESSERA_SUPPORT_EXPORT ArchiveResult unpackArchive(const QString& archive, const QString& folder,
                                                   const ArchiveLimits& limits, WorkControl* control);

} // namespace tessera
