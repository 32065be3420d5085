// SPDX-License-Identifier: MIT
#include "common/numbertool.h"

namespace toolmodules {

namespace {

constexpr int kAllDigits = 17; ///< bring every double back

ToolParameter parameter(ToolParameter::Kind kind, const char* name, double least, double most, double preset) {
    ToolParameter made;
    made.kind = kind;
    made.name = QString::fromUtf8(name);
    made.least = least;
    made.most = most;
    made.preset = preset;
    return made;
}

} // namespace

ToolParameter real(const char* name, const char* unit, double least, double most, double preset, int decimals) {
    ToolParameter made = parameter(ToolParameter::Real, name, least, most, preset);
    made.unit = QString::fromUtf8(unit);
    made.decimals = decimals;
    return made;
}

ToolParameter whole(const char* name, int least, int most, int preset) {
    return parameter(ToolParameter::Whole, name, least, most, preset);
}

ToolParameter toggle(const char* name, bool preset) {
    return parameter(ToolParameter::Switch, name, 0.0, 1.0, preset ? 1.0 : 0.0);
}

ToolParameter choice(const char* name, const QStringList& choices, int preset) {
    ToolParameter made = parameter(ToolParameter::Choice, name, 0.0, choices.size() - 1.0, preset);
    made.choices = choices;
    return made;
}

NumberTool::NumberTool(const char* className, std::vector<Number> numbers, bool open)
    : m_class(QString::fromLatin1(className))
    , m_numbers(std::move(numbers))
    , m_open(open) {}

QVector<ToolParameter> NumberTool::GetParameters() const {
    QVector<ToolParameter> table;
    for (const Number& number : m_numbers)
        table.append(number.shown);
    return table;
}

QByteArray NumberTool::WriteParameters(QVector<double> const& values) const {
    QByteArray bytes = m_class.toLatin1() + '\n';
    for (int i = 0; i < values.size(); ++i)
        bytes +=
            QByteArray(m_numbers.at(size_t(i)).key) + '=' + QByteArray::number(values.at(i), 'g', kAllDigits) + '\n';
    return bytes;
}

int NumberTool::indexOf(const QByteArray& key) const {
    for (size_t i = 0; i < m_numbers.size(); ++i) {
        if (key == m_numbers[i].key)
            return int(i);
    }
    return -1;
}

bool NumberTool::ReadParameters(QByteArray const& bytes, QVector<double>& values) const {
    const QList<QByteArray> lines = bytes.split('\n');
    if (lines.first() != m_class.toLatin1())
        return false;
    values.clear();
    for (const Number& number : m_numbers)
        values.append(number.shown.preset);
    for (int i = 1; i < lines.size(); ++i) {
        const int equals = lines.at(i).indexOf('=');
        const int index = equals > 0 ? indexOf(lines.at(i).left(equals)) : -1;
        if (index < 0)
            continue;
        bool number = false;
        const double value = lines.at(i).mid(equals + 1).toDouble(&number);
        if (!number)
            return false;
        values[index] = value;
    }
    return true;
}

} // namespace toolmodules
