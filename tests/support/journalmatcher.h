// SPDX-License-Identifier: MIT
#pragma once

#include <QRegularExpression>
#include <QString>
#include <QStringList>
#include <QVector>

#include <initializer_list>
#include <string>
#include <utility>

namespace tests {

/// One recorded call of a machine.
struct JournalEntry {
    double timeMs = 0.0;
    QString name;
    QStringList arguments;
};

inline QString journalText(const QString& text) {
    return text;
}
inline QString journalText(const std::string& text) {
    return QString::fromStdString(text);
}
inline QString journalText(const char* text) {
    return QString::fromUtf8(text);
}

/// Turns any sequence of records into journal entries; `convert` makes one of one record.
template<typename Records, typename Convert>
QVector<JournalEntry> toJournal(const Records& records, Convert convert) {
    QVector<JournalEntry> entries;
    for (const auto& record : records)
        entries.append(convert(record));
    return entries;
}

/// The same for records whose members are called timeMs, name and arguments, the texts being QString or std::string.
template<typename Records>
QVector<JournalEntry> toJournal(const Records& records) {
    return toJournal(records, [](const auto& record) {
        JournalEntry entry;
        entry.timeMs = static_cast<double>(record.timeMs);
        entry.name = journalText(record.name);
        for (const auto& argument : record.arguments)
            entry.arguments.append(journalText(argument));
        return entry;
    });
}

/// What an argument must be. A text means exactly that text; a number any spelling of exactly that number.
class ArgumentPattern {
public:
    ArgumentPattern(const char* text)
        : m_kind(Kind::Text)
        , m_text(QString::fromUtf8(text)) {}
    ArgumentPattern(const QString& text)
        : m_kind(Kind::Text)
        , m_text(text) {}
    ArgumentPattern(int value)
        : ArgumentPattern(double(value), 0.0) {}
    ArgumentPattern(double value)
        : ArgumentPattern(value, 0.0) {}

    /// Anything, but one argument.
    static ArgumentPattern any();
    /// All arguments from here on, none as well. Only as the last pattern.
    static ArgumentPattern rest();
    /// A number at most `tolerance` away.
    static ArgumentPattern near(double value, double tolerance) { return ArgumentPattern(value, tolerance); }
    /// A text that the whole expression matches.
    static ArgumentPattern matching(const QString& expression);

    bool matches(const QString& argument) const;
    bool isRest() const { return m_kind == Kind::Rest; }
    /// As shown in a difference.
    QString toString() const;

private:
    enum class Kind { Text, Number, Expression, Any, Rest };

    explicit ArgumentPattern(Kind kind)
        : m_kind(kind) {}
    ArgumentPattern(double value, double tolerance)
        : m_kind(Kind::Number)
        , m_value(value)
        , m_tolerance(tolerance) {}

    Kind m_kind;
    QString m_text;
    double m_value = 0.0;
    double m_tolerance = 0.0;
};

/// A call that must be in the journal.
struct ExpectedCall {
    QString name;
    QVector<ArgumentPattern> arguments;

    bool matches(const JournalEntry& entry) const;
    QString toString() const;
};

/// call("SetOutputBit", 3, 1)
template<typename... Arguments>
ExpectedCall call(const char* name, Arguments&&... arguments) {
    return {QString::fromUtf8(name), {ArgumentPattern(std::forward<Arguments>(arguments))...}};
}

/// Whether a journal is what was expected, and if not, where it differs.
struct JournalMatch {
    bool ok = false;
    /// A line for each call: "  " found as expected, "- " expected and not there, "+ " there and not expected.
    QString difference;
};

/// Compares a journal with the calls expected: all of them, no others, in this order.
JournalMatch matchJournal(const QVector<JournalEntry>& journal, const QVector<ExpectedCall>& expected);

/// The entries with one of these names, in order.
QVector<JournalEntry> only(const QVector<JournalEntry>& journal, const QStringList& names);
/// The entries with none of these names, in order.
QVector<JournalEntry> without(const QVector<JournalEntry>& journal, const QStringList& names);

} // namespace tests

/// COMPARE_JOURNAL(journal, {call("OpenCard"), call("SetOutputBit", 3, 1)}): fails the test with the difference.
#define COMPARE_JOURNAL(journal, ...)                                                                                  \
    do {                                                                                                               \
        const tests::JournalMatch journalMatch = tests::matchJournal(journal, __VA_ARGS__);                            \
        QVERIFY2(journalMatch.ok, qPrintable(journalMatch.difference));                                                \
    } while (false)
