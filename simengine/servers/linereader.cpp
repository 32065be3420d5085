// SPDX-License-Identifier: GPL-2.0-or-later
#include "simengine/servers/linereader.h"

namespace sim {

void LineReader::append(char const* bytes, int count) {
    m_bytes.append(bytes, count);
}

std::optional<QByteArray> LineReader::next() {
    if (m_tooLong)
        return std::nullopt;
    int const end = m_bytes.indexOf('\n', m_seen);
    int const length = (end < 0 ? m_bytes.size() : end) - m_begin;
    if (length > m_limit) {
        m_tooLong = true;
        return std::nullopt;
    }
    if (end < 0) {
        m_seen = m_bytes.size();
        return std::nullopt;
    }
    QByteArray line = m_bytes.mid(m_begin, length);
    if (line.endsWith('\r'))
        line.chop(1);
    m_begin = m_seen = end + 1;
    forget();
    return line;
}

/// What was given goes when it is at least half of all, so that each byte moves once on the average.
void LineReader::forget() {
    if (m_begin * 2 < m_bytes.size())
        return;
    m_bytes.remove(0, m_begin);
    m_seen -= m_begin;
    m_begin = 0;
}

} // namespace sim
