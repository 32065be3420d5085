// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "simengine/document/variableset.h"

#include <memory>
#include <mutex>
#include <optional>
#include <vector>

class QFile;

namespace sim {

/// The texts of the CSV files that were read last, so that a file is read and decoded once and not for each text, step
/// of a counter and open document that asks for a row of it. A file counts as the same while path, size and time of its
/// last change are. Any thread.
class CsvTexts {
public:
    static CsvTexts& instance();

    /// The file's text; null when it cannot be read, is too large or its bytes are not of the encoding.
    std::shared_ptr<const QString> text(QFile& file, CsvCoding coding);

private:
    CsvTexts() = default;

    /// Tells one state of a file from another.
    struct Stamp {
        quint64 device = 0;
        quint64 inode = 0;
        qint64 size = 0;
        qint64 seconds = 0;
        qint64 nanoseconds = 0;
        bool operator==(const Stamp& other) const;
    };
    struct Entry {
        QString path;
        CsvCoding coding = CsvCoding::Utf8;
        Stamp stamp;
        std::shared_ptr<const QString> text;
    };
    static std::optional<Stamp> stampOf(const QFile& file);
    static bool isOld(const Stamp& stamp);
    std::shared_ptr<const QString> find(const QString& path, CsvCoding coding, const Stamp& stamp);
    void keep(Entry entry);

    std::mutex m_mutex;           ///< guards the entries
    std::vector<Entry> m_entries; ///< the one that was asked for last at the end
};

} // namespace sim
