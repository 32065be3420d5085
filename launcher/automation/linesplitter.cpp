// SPDX-License-Identifier: MIT
#include "automation/linesplitter.h"

namespace tessera {

void LineSplitter::append(QByteArray const& bytes) {
    int begin = 0;
    for (int end = bytes.indexOf('\n'); end >= 0; end = bytes.indexOf('\n', begin)) {
        appendPart(bytes.mid(begin, end - begin));
        if (!m_skipping && !m_partial.trimmed().isEmpty())
            m_lines.enqueue({m_partial, false});
        m_partial.clear();
        m_skipping = false;
        begin = end + 1;
    }
    appendPart(bytes.mid(begin));
}

void LineSplitter::appendPart(QByteArray const& part) {
    if (m_skipping)
        return;
    if (m_partial.size() + part.size() > m_longestLine) {
        m_skipping = true;
        m_partial.clear();
        m_lines.enqueue({QByteArray(), true});
        return;
    }
    m_partial.append(part);
}

} // namespace tessera
