// SPDX-License-Identifier: MIT
#pragma once

#include "support/archive.h"

#include <QSet>
#include <QString>

namespace tessera {

/// What the directory of an archive tells of one entry. A plain value.
struct ArchiveEntry {
    QString name; ///< a folder's ends in "/"
    bool encrypted = false;
    int method = 0;         ///< 0 stored, 8 deflated
    quint32 attributes = 0; ///< the upper half is a Unix mode, or 0
    quint64 size = 0;       ///< bytes unpacked

    bool isFolder() const { return name.endsWith(QLatin1Char('/')); }
};

/// Judges the entries of one archive, one after the other in their order. Internal to src/support.
class ArchiveJudge {
public:
    explicit ArchiveJudge(const ArchiveLimits& limits)
        : m_limits(limits) {}

    /// None when the entry may be unpacked beside those before it.
    ArchiveFault judge(const ArchiveEntry& entry);
    /// Bytes that the entries so far tell they have.
    qint64 bytes() const { return static_cast<qint64>(m_bytes); }

private:
    ArchiveFault place(const QString& path, bool folder);
    void addFolder(const QString& path, QSet<QString>& folders);

    const ArchiveLimits m_limits;
    int m_entries = 0;
    int m_places = 0; // files and folders that come of them
    quint64 m_bytes = 0;
    QSet<QString> m_files;
    QSet<QString> m_folders; // with an entry of their own
    QSet<QString> m_parents; // of other entries
};

/// False for a name that would lead out of the folder it is unpacked into, or that no file can have: empty, absolute,
/// with an empty, "." or ".." component, with control or unreadable characters, too long or too deep. Backslashes are
/// looked at as if they were slashes.
TESSERA_SUPPORT_EXPORT bool isPlainEntryName(const QString& name);

} // namespace tessera
