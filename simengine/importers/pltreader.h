// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include <QByteArray>
#include <QVector>
#include <optional>

namespace sim {

/// Cuts a plotter file into its parts: commands of two letters, numbers, labels, encoded polylines. Whatever lies
/// between them is passed over; escape sequences and the lines of a print job's head too.
class PltReader {
public:
    explicit PltReader(const QByteArray& bytes)
        : m_bytes(bytes) {}

    /// The next command, two capital letters; empty at the end.
    QByteArray command();
    /// The next number of the command; nothing at its end. A sign begins a number without a separator.
    std::optional<double> number();
    /// All numbers up to the next command.
    QVector<double> numbers();
    /// The text up to the terminator, which is passed over.
    QByteArray text(char terminator);
    /// The single character behind the command, for a terminator; nothing when there is none.
    std::optional<char> character();
    /// The next byte of an encoded polyline; nothing at its end.
    std::optional<uchar> encoded();

    /// Place in the file, bytes.
    int at() const { return m_at; }
    /// Bytes that belong to nothing.
    int strayBytes() const { return m_stray; }
    /// The file ended inside a label or an encoded polyline.
    bool isCutOff() const { return m_cutOff; }

private:
    bool skipEscape();
    void skipJobLine();
    bool more() const { return m_at < m_bytes.size(); }
    char peek(int ahead = 0) const { return m_at + ahead < m_bytes.size() ? m_bytes.at(m_at + ahead) : '\0'; }

    const QByteArray& m_bytes;
    int m_at = 0;
    int m_stray = 0;
    bool m_cutOff = false;
};

} // namespace sim
