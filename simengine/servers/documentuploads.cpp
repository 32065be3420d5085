// SPDX-License-Identifier: GPL-2.0-or-later
#include "simengine/servers/documentuploads.h"

namespace sim {

std::optional<qint64> DocumentUploads::put(QString const& name, qint64 offset, QByteArray const& data, QString& error) {
    auto const found = m_documents.constFind(name);
    qint64 const present = found == m_documents.constEnd() ? 0 : found->size();
    if (offset != 0 && offset != present) {
        error = QStringLiteral("upload: offset %1, but %2 bytes are there").arg(offset).arg(present);
        return std::nullopt;
    }
    if (found == m_documents.constEnd() && m_documents.size() >= kMaxCount) {
        error = QStringLiteral("upload: more than %1 documents").arg(kMaxCount);
        return std::nullopt;
    }
    if (m_bytes - (present - offset) + data.size() > kMaxBytes) {
        error = QStringLiteral("upload: more than %1 bytes").arg(kMaxBytes);
        return std::nullopt;
    }
    QByteArray& document = m_documents[name];
    document.truncate(static_cast<int>(offset));
    document += data;
    m_bytes += document.size() - present;
    return document.size();
}

void DocumentUploads::drop(QString const& name) {
    m_bytes -= m_documents.take(name).size();
}

void DocumentUploads::clear() {
    m_documents.clear();
    m_bytes = 0;
}

std::optional<QByteArray> DocumentUploads::find(QString const& name) const {
    auto const found = m_documents.constFind(name);
    return found == m_documents.constEnd() ? std::nullopt : std::optional<QByteArray>(*found);
}

DocumentUploads& stationUploads() {
    static DocumentUploads uploads;
    return uploads;
}

} // namespace sim
