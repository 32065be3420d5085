// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "simengine/document/variabledates.h"

#include <QDate>
#include <QStringList>

namespace sim {

/// What happens after the last value or row.
enum class CounterEnd { Stop = 0, Restart = 1 };

/// A serial number of the machine: how it counts, and where it stands.
struct SerialNumber {
    QString name;
    qint64 first = 1;
    qint64 last = 999999; ///< inclusive; below `first` with a step below 0
    qint64 step = 1;
    int digits = 6; ///< filled up with zeros, 0 to 18
    int radix = 10; ///< 2 to 36
    int repeat = 1; ///< marks of each value, 1 to 1 000 000
    CounterEnd atEnd = CounterEnd::Stop;
    bool daily = false; ///< the first mark of a day has the first value

    qint64 value = 1;   ///< of the next mark
    int marks = 0;      ///< that have had the value already
    bool ended = false; ///< the last value was marked as often as it may be
    QDate day;          ///< of the last mark; invalid before the first one

    /// The number as it stands on that day: set back when it counts daily. A clock that was set back does not.
    SerialNumber on(const QDate& today) const;
    /// After one more mark on that day.
    SerialNumber advanced(const QDate& today) const;
    /// The value in its radix and digits, in capital letters.
    QString text() const;

    bool operator==(const SerialNumber& other) const;
};

/// How the text of a CSV file is written.
enum class CsvCoding { Utf8 = 0, Gbk = 1 };

/// A CSV file whose rows are marked one after the other.
struct CsvSource {
    QString name;
    QString file; ///< below the folder of the documents, with "/" between folders
    QChar separator = QLatin1Char(',');
    CsvCoding coding = CsvCoding::Utf8; ///< UTF-8 with or without a byte order mark
    bool header = true;                 ///< the first row names the columns
    CounterEnd atEnd = CounterEnd::Stop;
    int row = 1; ///< of the next mark, from 1, the header not counted

    bool operator==(const CsvSource& other) const;
};

/// All variables of the machine.
struct VariableSet {
    QVector<SerialNumber> serials;
    QVector<CsvSource> sources;
    QVector<Shift> shifts;

    const SerialNumber* serial(const QString& name) const;
    const CsvSource* source(const QString& name) const;
    bool operator==(const VariableSet& other) const;
};

constexpr int kMostVariables = 1000;
constexpr int kMaxVariableName = 50;
constexpr qint64 kMostSerialValue = 999'999'999'999'999'999;
constexpr int kMostSerialDigits = 18;
constexpr int kMostSerialRepeat = 1'000'000;
constexpr int kMostCsvRow = 100'000'000;
constexpr int kMaxShiftCode = 20;

/// Why a definition cannot be, as a key of the operator's texts; null when it can.
const char* serialFault(const SerialNumber& serial);
const char* sourceFault(const CsvSource& source);
const char* shiftFault(const Shift& shift);
/// Of the whole: also names that occur twice and shifts that begin at one time.
const char* setFault(const VariableSet& set);

} // namespace sim
