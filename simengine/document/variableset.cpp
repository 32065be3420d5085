// SPDX-License-Identifier: GPL-2.0-or-later
#include "simengine/document/variableset.h"

#include <algorithm>
#include <tuple>

namespace sim {

namespace {

template<class Value>
bool within(Value value, Value least, Value most) {
    return value >= least && value <= most;
}

/// Names stand in templates, in which these have a meaning.
bool isName(const QString& name) {
    const auto refused = [](QChar c) {
        return c == QLatin1Char('{') || c == QLatin1Char('}') || c == QLatin1Char(':') || !c.isPrint();
    };
    return !name.isEmpty() && name.size() <= kMaxVariableName && name == name.trimmed() &&
           std::none_of(name.begin(), name.end(), refused);
}

QString inRadix(qint64 value, int radix, int digits) {
    return QString::number(value, radix).toUpper().rightJustified(digits, QLatin1Char('0'));
}

template<class Item>
const Item* named(const QVector<Item>& items, const QString& name) {
    const auto found = std::find_if(items.begin(), items.end(), [&](const Item& item) { return item.name == name; });
    return found == items.end() ? nullptr : found;
}

template<class Item>
bool hasDoubleName(const QVector<Item>& items) {
    return std::any_of(items.begin(), items.end(), [&](const Item& item) { return named(items, item.name) != &item; });
}

bool isFilePath(const QString& file) {
    if (file.isEmpty() || file.size() > 1000)
        return false;
    const QStringList parts = file.split(QLatin1Char('/'));
    return std::all_of(parts.begin(), parts.end(), [](const QString& part) {
        const bool printable = std::all_of(part.begin(), part.end(), [](QChar c) { return c.isPrint(); });
        return !part.isEmpty() && part != QLatin1String(".") && part != QLatin1String("..") && printable;
    });
}

} // namespace

SerialNumber SerialNumber::on(const QDate& today) const {
    SerialNumber now = *this;
    if (daily && day.isValid() && day < today) {
        now.value = first;
        now.marks = 0;
        now.ended = false;
    }
    return now;
}

SerialNumber SerialNumber::advanced(const QDate& today) const {
    SerialNumber next = on(today);
    next.day = day.isValid() ? std::max(day, today) : today;
    if (++next.marks < repeat)
        return next;
    next.marks = 0;
    const bool past = step > 0 ? next.value > last - step : next.value < last - step;
    if (!past)
        next.value += step;
    else if (atEnd == CounterEnd::Restart)
        next.value = first;
    else
        next.ended = true;
    return next;
}

QString SerialNumber::text() const {
    return inRadix(value, radix, digits);
}

bool SerialNumber::operator==(const SerialNumber& other) const {
    const auto all = [](const SerialNumber& s) {
        return std::tie(s.name, s.first, s.last, s.step, s.digits, s.radix, s.repeat, s.atEnd, s.daily, s.value,
                        s.marks, s.ended, s.day);
    };
    return all(*this) == all(other);
}

bool CsvSource::operator==(const CsvSource& other) const {
    const auto all = [](const CsvSource& s) {
        return std::tie(s.name, s.file, s.separator, s.coding, s.header, s.atEnd, s.row);
    };
    return all(*this) == all(other);
}

const SerialNumber* VariableSet::serial(const QString& name) const {
    return named(serials, name);
}

const CsvSource* VariableSet::source(const QString& name) const {
    return named(sources, name);
}

bool VariableSet::operator==(const VariableSet& other) const {
    return serials == other.serials && sources == other.sources && shifts == other.shifts;
}

const char* serialFault(const SerialNumber& s) {
    if (!isName(s.name))
        return "名称为空或含有不可用字符";
    if (!within<qint64>(s.first, 0, kMostSerialValue) || !within<qint64>(s.last, 0, kMostSerialValue) ||
        !within<qint64>(s.step, -kMostSerialValue, kMostSerialValue) || s.step == 0)
        return "序列号范围错误";
    if (s.step > 0 ? s.first > s.last : s.first < s.last)
        return "序列号范围错误";
    if (!within<qint64>(s.value, std::min(s.first, s.last), std::max(s.first, s.last)))
        return "当前值不在序列号范围内";
    if (!within(s.digits, 0, kMostSerialDigits) || !within(s.radix, 2, 36))
        return "序列号位数或进制错误";
    if (s.digits > 0 && inRadix(std::max(s.first, s.last), s.radix, 0).size() > s.digits)
        return "最大值超过序列号位数";
    const bool counts = within(s.repeat, 1, kMostSerialRepeat) && within(s.marks, 0, s.repeat - 1);
    return counts && within(int(s.atEnd), 0, 1) ? nullptr : "重复次数错误";
}

const char* sourceFault(const CsvSource& s) {
    if (!isName(s.name))
        return "名称为空或含有不可用字符";
    if (!isFilePath(s.file))
        return "CSV文件名不可用";
    const bool separates =
        s.separator == QLatin1Char('\t') || (s.separator.isPrint() && !s.separator.isLetterOrNumber());
    if (!separates || s.separator == QLatin1Char('"') || s.separator == QLatin1Char(' '))
        return "分隔符不可用";
    const bool sound = within(s.row, 1, kMostCsvRow) && within(int(s.coding), 0, 1) && within(int(s.atEnd), 0, 1);
    return sound ? nullptr : "CSV行号错误";
}

const char* shiftFault(const Shift& shift) {
    const bool printable = std::all_of(shift.code.begin(), shift.code.end(), [](QChar c) { return c.isPrint(); });
    return shift.begin.isValid() && !shift.code.isEmpty() && shift.code.size() <= kMaxShiftCode && printable
               ? nullptr
               : "班次时间或代码错误";
}

const char* setFault(const VariableSet& set) {
    if (set.serials.size() > kMostVariables || set.sources.size() > kMostVariables ||
        set.shifts.size() > kMostVariables)
        return "变量过多";
    for (const SerialNumber& serial : set.serials) {
        if (const char* fault = serialFault(serial))
            return fault;
    }
    for (const CsvSource& source : set.sources) {
        if (const char* fault = sourceFault(source))
            return fault;
    }
    QVector<QTime> begins;
    for (const Shift& shift : set.shifts) {
        if (const char* fault = shiftFault(shift))
            return fault;
        if (begins.contains(shift.begin))
            return "班次开始时间重复";
        begins.append(shift.begin);
    }
    return hasDoubleName(set.serials) || hasDoubleName(set.sources) ? "名称重复" : nullptr;
}

} // namespace sim
