// SPDX-License-Identifier: MIT
#include "support/archiveentries.h"

#include <QFile>
#include <QStringList>

#include <algorithm>
#include <sys/stat.h>

namespace tessera {
namespace {

constexpr int longestComponent = 255; // bytes in a directory entry
constexpr int longestName = 2000;     // bytes; with the folder before it still below the system's 4096
constexpr int deepestName = 32;       // components
constexpr int stored = 0;
constexpr int deflated = 8;

bool isUnreadable(QChar c) {
    return c.category() == QChar::Other_Control || c == QChar::ReplacementCharacter;
}

bool isPlainComponent(const QString& component) {
    return !component.isEmpty() && component != QLatin1String(".") && component != QLatin1String("..") &&
           component.toUtf8().size() <= longestComponent;
}

bool startsWithDrive(const QString& name) {
    return name.size() > 2 && name.at(0).isLetter() && name.at(1) == QLatin1Char(':') && name.at(2) == QLatin1Char('/');
}

/// A file, a folder that is named as one, or an entry of a system that tells no modes.
bool isOrdinary(const ArchiveEntry& entry) {
    const quint32 kind = (entry.attributes >> 16) & S_IFMT;
    return kind == 0 || kind == (entry.isFolder() ? quint32(S_IFDIR) : quint32(S_IFREG));
}

} // namespace

bool isPlainEntryName(const QString& name) {
    if (!name.isValidUtf16() || std::any_of(name.begin(), name.end(), isUnreadable) ||
        name.toUtf8().size() > longestName)
        return false;
    QString path = name;
    path.replace(QLatin1Char('\\'), QLatin1Char('/'));
    if (startsWithDrive(path))
        return false;
    if (path.endsWith(QLatin1Char('/')))
        path.chop(1);
    const QStringList components = path.split(QLatin1Char('/'));
    return components.size() <= deepestName && std::all_of(components.begin(), components.end(), isPlainComponent);
}

ArchiveFault ArchiveJudge::judge(const ArchiveEntry& entry) {
    if (++m_entries > m_limits.entries)
        return ArchiveFault::TooManyEntries;
    if (!isPlainEntryName(entry.name))
        return ArchiveFault::BadName;
    if (!isOrdinary(entry))
        return ArchiveFault::SpecialEntry;
    if (entry.encrypted)
        return ArchiveFault::Encrypted;
    if (entry.method != stored && entry.method != deflated)
        return ArchiveFault::NotAnArchive;
    const auto limit = static_cast<quint64>(std::max<qint64>(m_limits.bytes, 0));
    if (entry.size > limit || m_bytes + entry.size > limit)
        return ArchiveFault::TooLarge;
    m_bytes += entry.size;
    const bool folder = entry.isFolder();
    const ArchiveFault fault = place(folder ? entry.name.chopped(1) : entry.name, folder);
    return fault == ArchiveFault::None && m_places > m_limits.entries ? ArchiveFault::TooManyEntries : fault;
}

/// A name may stand once, and what is a file cannot be a folder too.
ArchiveFault ArchiveJudge::place(const QString& path, bool folder) {
    if (m_files.contains(path) || m_folders.contains(path) || (!folder && m_parents.contains(path)))
        return ArchiveFault::DuplicateName;
    for (int end = path.indexOf(QLatin1Char('/')); end >= 0; end = path.indexOf(QLatin1Char('/'), end + 1)) {
        const QString parent = path.left(end);
        if (m_files.contains(parent))
            return ArchiveFault::DuplicateName;
        addFolder(parent, m_parents);
    }
    if (folder) {
        addFolder(path, m_folders);
        return ArchiveFault::None;
    }
    m_files.insert(path);
    ++m_places;
    return ArchiveFault::None;
}

/// A folder takes room on the disk as a file does, also one that is only named by what lies in it.
void ArchiveJudge::addFolder(const QString& path, QSet<QString>& folders) {
    m_places += m_folders.contains(path) || m_parents.contains(path) ? 0 : 1;
    folders.insert(path);
}

} // namespace tessera
