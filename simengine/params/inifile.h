// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "simengine/params/inidocument.h"

#include <QString>
#include <functional>
#include <mutex>

namespace sim {

/// An ini file on the disk and its parsed text. The file is read again when another has replaced or changed it.
/// Any thread.
class IniFile {
public:
    /// `path` is absolute.
    explicit IniFile(QString const& path)
        : m_path(path) {}
    QString const& path() const { return m_path; }

    std::optional<QString> value(QString const& section, QString const& key) const;
    /// Lets `edit` change the present text and writes it when that changed it, durably. False when `edit` gives false,
    /// when a file that is there cannot be read (it is then left alone) or when the new one cannot be written.
    bool change(std::function<bool(IniDocument&)> const& edit);

private:
    /// Tells one state of a file from another.
    struct Stamp {
        bool exists = false;
        quint64 device = 0;
        quint64 inode = 0;
        qint64 size = 0;
        qint64 seconds = 0;
        qint64 nanoseconds = 0;
        bool operator==(Stamp const& other) const;
    };

    bool refresh() const;

    QString const m_path;
    mutable std::mutex m_lock;
    mutable IniDocument m_document;
    mutable Stamp m_stamp;
    mutable bool m_fresh = false; ///< m_document is the text of m_stamp
};

} // namespace sim
