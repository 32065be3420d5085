// SPDX-License-Identifier: GPL-2.0-or-later
#include "simengine/params/inifile.h"

#include "support/durablefile.h"

#include <QFile>
#include <cerrno>
#include <sys/stat.h>

namespace sim {

namespace {

/// Two objects for one path in one process must not write over each other's keys.
std::mutex& changeLock() {
    static std::mutex lock;
    return lock;
}

} // namespace

bool IniFile::Stamp::operator==(Stamp const& other) const {
    return exists == other.exists && device == other.device && inode == other.inode && size == other.size &&
           seconds == other.seconds && nanoseconds == other.nanoseconds;
}

/// False when the file is there and cannot be read. The stamp is taken before the text, so that a change between the
/// two is seen the next time.
bool IniFile::refresh() const {
    struct stat info {};
    Stamp now;
    if (::stat(QFile::encodeName(m_path).constData(), &info) == 0) {
        now = {true,
               static_cast<quint64>(info.st_dev),
               static_cast<quint64>(info.st_ino),
               static_cast<qint64>(info.st_size),
               static_cast<qint64>(info.st_mtim.tv_sec),
               static_cast<qint64>(info.st_mtim.tv_nsec)};
    } else if (errno != ENOENT && errno != ENOTDIR) {
        m_fresh = false;
        return false;
    }
    if (m_fresh && now == m_stamp)
        return true;
    m_fresh = false;
    m_document = IniDocument();
    if (now.exists) {
        QFile file(m_path);
        if (!file.open(QIODevice::ReadOnly))
            return false;
        QByteArray const bytes = file.readAll();
        if (file.error() != QFileDevice::NoError)
            return false;
        m_document = IniDocument::parse(bytes);
    }
    m_stamp = now;
    m_fresh = true;
    return true;
}

std::optional<QString> IniFile::value(QString const& section, QString const& key) const {
    std::lock_guard<std::mutex> guard(m_lock);
    if (!refresh())
        return std::nullopt;
    return m_document.value(section, key);
}

bool IniFile::change(std::function<bool(IniDocument&)> const& edit) {
    std::lock_guard<std::mutex> writers(changeLock());
    std::lock_guard<std::mutex> guard(m_lock);
    if (!refresh())
        return false;
    IniDocument edited = m_document;
    if (!edit(edited))
        return false;
    QByteArray const bytes = edited.bytes();
    if (m_stamp.exists && bytes == m_document.bytes())
        return true;
    m_fresh = false;
    return tessera::writeFileDurably(m_path, bytes).ok();
}

} // namespace sim
