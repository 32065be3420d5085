// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include <QStringRef>
#include <QTransform>
#include <optional>

namespace sim {

/// Reads numbers out of an attribute, parted by blanks and commas or by nothing at all ("1.5.5-2").
class SvgNumbers {
public:
    explicit SvgNumbers(const QStringRef& text)
        : m_at(text.constData())
        , m_end(text.constData() + text.size()) {}

    /// The next number; nothing when something else or the end follows. Never NaN or infinite.
    std::optional<double> number();
    /// A single 0 or 1, which need not be parted from what follows.
    std::optional<bool> flag();
    /// The next character that is neither blank nor comma, which stays; 0 at the end.
    ushort peek();
    void skip() { ++m_at; }
    bool atEnd() { return peek() == 0; }

private:
    std::optional<double> longNumber();

    const QChar* m_at;
    const QChar* m_end;
};

/// The list of a transform, as an attribute or a style has it, applied from the last to the first. Nothing when it is
/// wrong or not finite.
std::optional<QTransform> parseSvgTransform(const QStringRef& text);

} // namespace sim
