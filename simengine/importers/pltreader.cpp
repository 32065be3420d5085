// SPDX-License-Identifier: GPL-2.0-or-later
#include "simengine/importers/pltreader.h"

#include <cmath>

namespace sim {

namespace {

constexpr char kEscape = '\x1b';

bool isLetter(char c) {
    return (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z');
}

bool isDigit(char c) {
    return c >= '0' && c <= '9';
}

bool isBlank(char c) {
    return c == ' ' || c == '\t' || c == '\r' || c == '\n' || c == '\0' || c == '\x03' || c == '\x1a';
}

char upper(char c) {
    return c >= 'a' && c <= 'z' ? char(c - 'a' + 'A') : c;
}

} // namespace

/// Device control: "ESC.x" with arguments up to a colon, "ESC%-1B" and others up to a capital letter, "ESCE".
bool PltReader::skipEscape() {
    if (peek() != kEscape)
        return false;
    ++m_at;
    const char kind = peek();
    if (kind == '.') {
        m_at += 2;
        while (more() && (isDigit(peek()) || peek() == ';'))
            ++m_at;
        if (peek() == ':')
            ++m_at;
        return true;
    }
    if (kind >= 'A' && kind <= 'Z') {
        ++m_at;
        return true;
    }
    while (more() && !(peek() >= 'A' && peek() <= 'Z') && peek() != kEscape && peek() != ';')
        ++m_at;
    if (more() && peek() != kEscape)
        ++m_at;
    return true;
}

void PltReader::skipJobLine() {
    while (more() && peek() != '\n')
        ++m_at;
}

QByteArray PltReader::command() {
    while (more()) {
        const char c = peek();
        if (!m_budget.step())
            break;
        if (skipEscape())
            continue;
        if (c == '@' && peek(1) == 'P' && peek(2) == 'J' && peek(3) == 'L') {
            skipJobLine();
            continue;
        }
        if (isLetter(c)) {
            // letters of a command may be parted by blanks
            int second = m_at + 1;
            while (second < m_bytes.size() && isBlank(m_bytes.at(second)))
                ++second;
            if (second < m_bytes.size() && isLetter(m_bytes.at(second))) {
                m_at = second + 1;
                const char name[] = {upper(c), upper(m_bytes.at(second))};
                return QByteArray(name, 2);
            }
        }
        if (!isBlank(c) && c != ';' && c != ',')
            ++m_stray;
        ++m_at;
    }
    return QByteArray();
}

/// Passes over the next number; where it begins, or -1 when there is none.
int PltReader::passNumber() {
    while (more() && (isBlank(peek()) || peek() == ','))
        ++m_at;
    const int begin = m_at;
    int at = m_at;
    const auto c = [&] { return at < m_bytes.size() ? m_bytes.at(at) : '\0'; };
    if (c() == '+' || c() == '-')
        ++at;
    const int digits = at;
    while (isDigit(c()))
        ++at;
    if (c() == '.') {
        ++at;
        while (isDigit(c()))
            ++at;
    }
    if (at == digits || (at == digits + 1 && m_bytes.at(digits) == '.'))
        return -1;
    m_at = at;
    return m_budget.step(at - begin) ? begin : -1;
}

std::optional<double> PltReader::number() {
    const int begin = passNumber();
    if (begin < 0)
        return std::nullopt;
    bool ok = false;
    const double value = QByteArray::fromRawData(m_bytes.constData() + begin, m_at - begin).toDouble(&ok);
    // digits without end make no number that a machine could reach
    return ok && std::isfinite(value) ? value : 1e300;
}

QVector<double> PltReader::numbers() {
    QVector<double> values;
    while (values.size() < kMostNumbers) {
        const auto value = number();
        if (!value)
            return values;
        values.append(*value);
    }
    while (passNumber() >= 0) {
    }
    return values;
}

QByteArray PltReader::text(char terminator) {
    const int end = m_bytes.indexOf(terminator, m_at);
    const int begin = m_at;
    m_cutOff = m_cutOff || end < 0;
    m_at = end < 0 ? m_bytes.size() : end + 1;
    return m_bytes.mid(begin, (end < 0 ? m_bytes.size() : end) - begin);
}

std::optional<char> PltReader::character() {
    if (!more() || peek() == ';')
        return std::nullopt;
    return m_bytes.at(m_at++);
}

std::optional<uchar> PltReader::encoded() {
    while (more()) {
        const uchar c = uchar(m_bytes.at(m_at));
        ++m_at;
        if (c == ';')
            return std::nullopt;
        // blanks and control characters, with and without the parity bit, mean nothing here
        if ((c & 0x7f) > 32 && (c & 0x7f) != 127)
            return c;
        if (c == 127 || c == 255)
            return c;
    }
    m_cutOff = true;
    return std::nullopt;
}

} // namespace sim
