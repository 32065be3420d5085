// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QString>

namespace tessera {

/// A private directory, in memory where the machine has a memory file system, in which QSettings works on a copy of a
/// settings file. Its path is never used twice, so QSettings' own cache of files, which goes by path, never mixes two
/// copies. Removed with the object; the copies of killed processes go with sweepOrphanedTemporaries(). Internal to
/// src/support.
class SettingsCopy {
public:
    SettingsCopy();
    ~SettingsCopy();
    SettingsCopy(const SettingsCopy&) = delete;
    SettingsCopy& operator=(const SettingsCopy&) = delete;

    /// Writes `text` as the copy. 0 or an errno value.
    int store(const QByteArray& text);
    /// The path of the copy, for QSettings.
    QString path() const;
    /// Gives the copy a new path, for another QSettings that shall read the file itself. 0 or an errno value.
    int moveAside();
    /// Reads the copy. 0 or an errno value.
    int load(QByteArray& text) const;

    /// Where the private directories are made: "/dev/shm" if it can be written, else the temporary directory.
    static QString baseDirectory();

private:
    QString m_directory;
    int m_number = 1;
    int m_error = 0;
};

} // namespace tessera
