// SPDX-License-Identifier: GPL-2.0-or-later
#include "simengine/params/inidocument.h"

#include <QLocale>
#include <algorithm>
#include <cmath>
#include <limits>

namespace sim {

namespace {

constexpr char kByteOrderMark[] = "\xEF\xBB\xBF";

bool hasControl(QString const& text) {
    return std::any_of(text.begin(), text.end(), [](QChar c) { return c.unicode() < 0x20 || c.unicode() == 0x7F; });
}

bool isPlainName(QString const& name) {
    return !hasControl(name) && name == name.trimmed();
}

QByteArray entryKey(QByteArray const& section, QByteArray const& key) {
    return section + '\n' + key;
}

QByteArray encodeValue(QString const& value) {
    bool const plain = !hasControl(value) && value == value.trimmed() && !value.startsWith(QLatin1Char('"'));
    if (plain)
        return value.toUtf8();
    QByteArray out = "\"";
    for (char c : value.toUtf8()) {
        switch (c) {
        case '\n':
            out += "\\n";
            break;
        case '\r':
            out += "\\r";
            break;
        case '\t':
            out += "\\t";
            break;
        case '"':
            out += "\\\"";
            break;
        case '\\':
            out += "\\\\";
            break;
        default:
            if (static_cast<unsigned char>(c) < 0x20 || c == 0x7F)
                out += "\\x" + QByteArray(1, c).toHex();
            else
                out += c;
        }
    }
    return out + '"';
}

/// Reads one escape that begins behind the backslash at `at`, and moves `at` to its last character.
char decodeEscape(QByteArray const& raw, int& at) {
    char const c = raw[++at];
    if (c == 'n')
        return '\n';
    if (c == 'r')
        return '\r';
    if (c == 't')
        return '\t';
    if (c == 'x' && at + 2 < raw.size()) {
        bool ok = false;
        int const code = raw.mid(at + 1, 2).toInt(&ok, 16);
        if (ok) {
            at += 2;
            return static_cast<char>(code);
        }
    }
    return c;
}

QString decodeValue(QByteArray const& raw) {
    if (raw.size() < 2 || !raw.startsWith('"') || !raw.endsWith('"'))
        return QString::fromUtf8(raw);
    QByteArray out;
    for (int i = 1; i < raw.size() - 1; ++i)
        out += raw[i] == '\\' && i + 1 < raw.size() - 1 ? decodeEscape(raw, i) : raw[i];
    return QString::fromUtf8(out);
}

} // namespace

bool IniDocument::isSectionName(QString const& name) {
    return isPlainName(name) && !name.contains(QLatin1Char(']'));
}

bool IniDocument::isKeyName(QString const& name) {
    return !name.isEmpty() && isPlainName(name) && !name.contains(QLatin1Char('=')) &&
           !name.startsWith(QLatin1Char('[')) && !name.startsWith(QLatin1Char(';')) &&
           !name.startsWith(QLatin1Char('#'));
}

IniDocument::Line IniDocument::readLine(QByteArray const& text, QByteArray& section) {
    Line line;
    line.text = text;
    QByteArray const trimmed = text.trimmed();
    if (trimmed.startsWith('[') && trimmed.endsWith(']')) {
        section = trimmed.mid(1, trimmed.size() - 2).trimmed();
    } else if (!trimmed.isEmpty() && trimmed[0] != ';' && trimmed[0] != '#') {
        int const equals = text.indexOf('=');
        if (equals > 0) {
            line.key = text.left(equals).trimmed();
            line.valueOffset = equals + 1;
            while (line.valueOffset < text.size() && (text[line.valueOffset] == ' ' || text[line.valueOffset] == '\t'))
                ++line.valueOffset;
        }
    }
    line.section = section;
    return line;
}

IniDocument IniDocument::parse(QByteArray const& bytes) {
    IniDocument document;
    QByteArray section;
    document.m_byteOrderMark = bytes.startsWith(kByteOrderMark);
    int from = document.m_byteOrderMark ? 3 : 0;
    while (from < bytes.size()) {
        int const feed = bytes.indexOf('\n', from);
        int const next = feed < 0 ? bytes.size() : feed + 1;
        int end = feed < 0 ? next : feed;
        if (feed > from && bytes[feed - 1] == '\r')
            --end;
        Line line = readLine(bytes.mid(from, end - from), section);
        line.end = bytes.mid(end, next - end);
        document.m_lines.push_back(std::move(line));
        from = next;
    }
    document.index();
    return document;
}

QByteArray IniDocument::bytes() const {
    QByteArray out = m_byteOrderMark ? QByteArray(kByteOrderMark) : QByteArray();
    for (Line const& line : m_lines)
        out += line.text + line.end;
    return out;
}

/// The line end of the file's first line, which new lines get too.
QByteArray IniDocument::lineEnd() const {
    return m_lines.empty() || m_lines.front().end.isEmpty() ? QByteArray("\n") : m_lines.front().end;
}

void IniDocument::index() {
    m_index.clear();
    for (std::size_t i = 0; i < m_lines.size(); ++i) {
        if (m_lines[i].key.isEmpty())
            continue;
        QByteArray const key = entryKey(m_lines[i].section, m_lines[i].key);
        if (!m_index.contains(key))
            m_index.insert(key, i);
    }
}

std::optional<QString> IniDocument::value(QString const& section, QString const& key) const {
    auto const found = m_index.constFind(entryKey(section.toUtf8(), key.toUtf8()));
    if (found == m_index.constEnd())
        return std::nullopt;
    Line const& line = m_lines[found.value()];
    return decodeValue(line.text.mid(line.valueOffset).trimmed());
}

bool IniDocument::setValue(QString const& section, QString const& key, QString const& value) {
    if (!isSectionName(section) || !isKeyName(key))
        return false;
    QByteArray const sectionBytes = section.toUtf8();
    QByteArray const keyBytes = key.toUtf8();
    auto const found = m_index.constFind(entryKey(sectionBytes, keyBytes));
    if (found != m_index.constEnd()) {
        Line& line = m_lines[found.value()];
        line.text = line.text.left(line.valueOffset) + encodeValue(value);
        return true;
    }
    Line line;
    line.section = sectionBytes;
    line.key = keyBytes;
    line.text = keyBytes + '=' + encodeValue(value);
    line.end = lineEnd();
    line.valueOffset = keyBytes.size() + 1;
    append(sectionBytes, std::move(line));
    return true;
}

/// Puts an entry behind the last one of its section; a section that is not there yet comes to the end of the file, and
/// entries without a section to its beginning.
void IniDocument::append(QByteArray const& section, Line line) {
    if (!m_lines.empty() && m_lines.back().end.isEmpty())
        m_lines.back().end = lineEnd();
    auto place = m_lines.end();
    bool found = false;
    for (auto it = m_lines.begin(); it != m_lines.end(); ++it) {
        if (it->section == section && !it->text.trimmed().isEmpty()) {
            place = it + 1;
            found = true;
        }
    }
    if (found) {
        m_lines.insert(place, std::move(line));
    } else if (section.isEmpty()) {
        m_lines.insert(m_lines.begin(), std::move(line));
    } else {
        QByteArray const end = line.end;
        if (!m_lines.empty() && !m_lines.back().text.trimmed().isEmpty())
            m_lines.push_back({QByteArray(), end, m_lines.back().section, QByteArray(), 0});
        m_lines.push_back({'[' + section + ']', end, section, QByteArray(), 0});
        m_lines.push_back(std::move(line));
    }
    index();
}

QString iniNumber(double value) {
    return QString::number(value, 'g', QLocale::FloatingPointShortest);
}

std::optional<double> iniDouble(QString const& text) {
    bool ok = false;
    double const value = text.trimmed().toDouble(&ok);
    if (!ok || !std::isfinite(value))
        return std::nullopt;
    return value;
}

std::optional<int> iniInt(QString const& text) {
    bool ok = false;
    int const whole = text.trimmed().toInt(&ok, 10);
    if (ok)
        return whole;
    std::optional<double> const number = iniDouble(text);
    if (!number)
        return std::nullopt;
    double const cut = std::trunc(*number);
    if (cut < std::numeric_limits<int>::min() || cut > std::numeric_limits<int>::max())
        return std::nullopt;
    return static_cast<int>(cut);
}

} // namespace sim
