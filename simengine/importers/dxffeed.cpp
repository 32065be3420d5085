// SPDX-License-Identifier: GPL-2.0-or-later
#include "simengine/importers/dxffeed.h"

#include <algorithm>
#include <cstdlib>

namespace sim {

namespace {

/// Bytes of one line at most; the reading library's own limit is 1024 with the end.
constexpr int kLongestLine = 1000;

struct CountCode {
    const char* entity;
    int code;
};

/// Where a file tells the length of a table.
constexpr CountCode kCounts[] = {
    {"LWPOLYLINE", 90}, {"SPLINE", 72}, {"SPLINE", 73}, {"SPLINE", 74}, {"LEADER", 76},
};

bool isReal(int code) {
    return (code >= 10 && code <= 59) || (code >= 140 && code <= 149) || (code >= 210 && code <= 239);
}

/// Handles, owners, class names, data of other programs.
bool isNeedless(int code) {
    return code == 5 || code == 100 || code == 102 || code == 105 || (code >= 320 && code <= 369) ||
           (code >= 390 && code <= 399) || (code >= 1000 && code <= 1071) || code == 310 || code == 160;
}

/// A number as files write it: no "nan", no "inf", no words.
bool isNumber(const char* p, int size) {
    bool digits = false;
    for (int i = 0; i < size; ++i) {
        const char c = p[i];
        if (c >= '0' && c <= '9')
            digits = true;
        else if (c != '.' && c != '-' && c != '+' && c != 'e' && c != 'E' && c != ',')
            return false;
    }
    return digits;
}

} // namespace

DxfFeed::DxfFeed(const QByteArray& bytes, ImportResult& result, ImportBudget& budget,
                 std::function<bool(int, const char*, int)> pair)
    : m_bytes(bytes)
    , m_result(result)
    , m_budget(budget)
    , m_pair(std::move(pair)) {
    if (m_bytes.startsWith("\xef\xbb\xbf"))
        m_at = 3;
}

bool DxfFeed::takeLine(Line& line) {
    if (m_at >= m_bytes.size())
        return false;
    const char* data = m_bytes.constData();
    int end = m_at;
    while (end < m_bytes.size() && data[end] != '\n' && data[end] != '\r')
        ++end;
    int next = end + 1;
    if (end + 1 < m_bytes.size() && data[end] == '\r' && data[end + 1] == '\n')
        ++next;
    int begin = m_at;
    while (begin < end && (data[begin] == ' ' || data[begin] == '\t'))
        ++begin;
    while (end > begin && (data[end - 1] == ' ' || data[end - 1] == '\t'))
        --end;
    line = {data + begin, end - begin};
    m_at = next;
    return true;
}

void DxfFeed::checkEntity(const Line& value) {
    m_entity = QByteArray(value.begin, std::min(value.size, 40));
    m_end = m_end || m_entity == "EOF";
    m_budget.elements();
}

/// Lengths that are wrong, or in all of them together longer than the file, are those of a damaged file.
bool DxfFeed::checkCount(int code, const Line& value) {
    for (const CountCode& count : kCounts) {
        if (code != count.code || m_entity != count.entity)
            continue;
        const qint64 number = std::strtoll(QByteArray(value.begin, std::min(value.size, 30)).constData(), nullptr, 10);
        // more than any file could hold is enough to be refused
        m_counted += std::max<qint64>(0, std::min<qint64>(number, ImportBudget::kMostBytes));
        if (number < 0 || m_counted > m_bytes.size() / 4 + 16) {
            m_budget.fail(Note::BadNumber);
            return false;
        }
    }
    return true;
}

bool DxfFeed::takePair() {
    Line codeLine{};
    Line value{};
    if (!takeLine(codeLine))
        return false;
    if (!takeLine(value)) {
        m_cutOff = m_cutOff || codeLine.size > 0;
        return false;
    }
    int code = 0;
    if (codeLine.size == 0 || codeLine.size > 6) {
        m_budget.fail(Note::XmlFault);
        return false;
    }
    for (int i = 0; i < codeLine.size; ++i) {
        const char c = codeLine.begin[i];
        if (c == '-' && i == 0)
            continue;
        if (c < '0' || c > '9') {
            m_budget.fail(Note::XmlFault);
            return false;
        }
        code = code * 10 + (c - '0');
    }
    if (codeLine.begin[0] == '-' || isNeedless(code))
        return true;
    if (code == 0)
        checkEntity(value);
    else if (isReal(code) && !isNumber(value.begin, value.size)) {
        m_result.skip(QString::fromLatin1(m_entity), noteText(Note::BadNumber));
        return m_budget.step();
    } else if (!checkCount(code, value))
        return false;
    if (m_pair(code, value.begin, std::min(value.size, kLongestLine)))
        return m_budget.step();
    if (value.size > kLongestLine)
        m_result.convert(QString::fromLatin1(m_entity), noteText(Note::CutOff));
    m_value.assign(value.begin, size_t(std::min(value.size, kLongestLine)));
    // the library would take an embedded zero for the end of the line
    std::replace(m_value.begin(), m_value.end(), '\0', '?');
    m_buffer.assign(codeLine.begin, size_t(codeLine.size));
    m_buffer += '\n';
    m_buffer += m_value;
    m_buffer += '\n';
    return m_budget.step();
}

DxfFeed::int_type DxfFeed::underflow() {
    m_buffer.clear();
    while (m_buffer.empty() && m_budget.ok() && takePair()) {
    }
    if (m_buffer.empty() || !m_budget.ok())
        return traits_type::eof();
    setg(&m_buffer[0], &m_buffer[0], &m_buffer[0] + m_buffer.size());
    return traits_type::to_int_type(m_buffer[0]);
}

} // namespace sim
