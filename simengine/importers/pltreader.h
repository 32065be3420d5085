// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "simengine/importers/importbudget.h"

#include <QByteArray>
#include <QVector>
#include <optional>

namespace sim {

/// Cuts a plotter file into its parts: commands of two letters, numbers, labels, encoded polylines. Whatever lies
/// between them is passed over; escape sequences and the lines of a print job's head too. The file ends early when the
/// budget is spent.
class PltReader {
public:
    /// Numbers that any command but those of lines and curves can take, and one more.
    static constexpr int kMostNumbers = 8;

    PltReader(const QByteArray& bytes, ImportBudget& budget)
        : m_bytes(bytes)
        , m_budget(budget) {}

    /// The next command, two capital letters; empty at the end.
    QByteArray command();
    /// The next number of the command; nothing at its end. A sign begins a number without a separator.
    std::optional<double> number();
    /// The numbers up to the next command; those beyond kMostNumbers are passed over.
    QVector<double> numbers();
    /// The text up to the terminator, which is passed over.
    QByteArray text(char terminator);
    /// The single character behind the command, for a terminator; nothing when there is none.
    std::optional<char> character();
    /// The next byte of an encoded polyline; nothing at its end.
    std::optional<uchar> encoded();

    /// Bytes that belong to nothing.
    int strayBytes() const { return m_stray; }
    /// The file ended inside a label or an encoded polyline.
    bool isCutOff() const { return m_cutOff; }

private:
    bool skipEscape();
    void skipJobLine();
    int passNumber();
    bool more() const { return m_at < m_bytes.size(); }
    char peek(int ahead = 0) const { return m_at + ahead < m_bytes.size() ? m_bytes.at(m_at + ahead) : '\0'; }

    const QByteArray& m_bytes;
    ImportBudget& m_budget;
    int m_at = 0;
    int m_stray = 0;
    bool m_cutOff = false;
};

} // namespace sim
