// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QQueue>

namespace tessera {

/// Cuts a byte stream into lines and bounds their length. A line that grows too long is told once, as soon as it does,
/// and dropped up to its end; the lines after it come as usual.
class LineSplitter {
public:
    explicit LineSplitter(int longestLine)
        : m_longestLine(longestLine) {}

    struct Line {
        QByteArray text; ///< without its line end; empty when too long
        bool tooLong = false;
    };

    void append(QByteArray const& bytes);
    bool hasLine() const { return !m_lines.isEmpty(); }
    Line takeLine() { return m_lines.dequeue(); }

private:
    void appendPart(QByteArray const& part);

    int m_longestLine;
    QByteArray m_partial;
    bool m_skipping = false; ///< inside a line that was told to be too long
    QQueue<Line> m_lines;
};

} // namespace tessera
