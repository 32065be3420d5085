// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include <QByteArray>
#include <QHash>
#include <QString>
#include <optional>

namespace sim {

/// The documents that the station has put piece by piece, until its connection ends. Main thread.
class DocumentUploads {
public:
    static constexpr qint64 kMaxBytes = qint64(64) << 20; ///< of all together
    static constexpr int kMaxCount = 256;

    /// Adds a piece that begins at `offset`, 0 for a document anew, and gives its size then; nothing and the reason
    /// when the piece is refused, and what was there stays.
    std::optional<qint64> put(QString const& name, qint64 offset, QByteArray const& data, QString& error);
    void drop(QString const& name);
    void clear();
    /// What was put under a name.
    std::optional<QByteArray> find(QString const& name) const;

private:
    QHash<QString, QByteArray> m_documents;
    qint64 m_bytes = 0;
};

/// The uploads of the station of this machine. Main thread.
DocumentUploads& stationUploads();

} // namespace sim
