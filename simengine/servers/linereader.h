// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include <QByteArray>
#include <optional>

namespace sim {

/// Cuts a stream of bytes into lines of a limited length. A plain value.
class LineReader {
public:
    /// `limit` is in bytes, without the line feed.
    explicit LineReader(int limit)
        : m_limit(limit) {}

    /// Counts for the lines that next() has not given yet.
    void setLimit(int limit) { m_limit = limit; }
    void append(char const* bytes, int count);
    /// The next whole line without its line end, LF or CR LF. Nothing when there is none, or when it is too long: it
    /// then stays so for good.
    std::optional<QByteArray> next();
    bool isTooLong() const { return m_tooLong; }
    /// Bytes that wait, of whole lines and of one that is not whole.
    int waiting() const { return m_bytes.size() - m_begin; }

private:
    void forget();

    int m_limit;
    QByteArray m_bytes;
    int m_begin = 0; ///< of what next() has not given
    int m_seen = 0;  ///< no line feed between m_begin and here
    bool m_tooLong = false;
};

} // namespace sim
