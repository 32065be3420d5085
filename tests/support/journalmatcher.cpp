// SPDX-License-Identifier: MIT
#include "tests/support/journalmatcher.h"

#include <cmath>

namespace tests {
namespace {

/// lengths[i][j]: how many calls the journal from i on and the expectation from j on have in common, in order.
QVector<QVector<int>> commonLengths(const QVector<JournalEntry>& journal, const QVector<ExpectedCall>& expected) {
    QVector<QVector<int>> lengths(journal.size() + 1, QVector<int>(expected.size() + 1, 0));
    for (int i = journal.size() - 1; i >= 0; --i) {
        for (int j = expected.size() - 1; j >= 0; --j) {
            lengths[i][j] = expected.at(j).matches(journal.at(i))
                                ? lengths.at(i + 1).at(j + 1) + 1
                                : qMax(lengths.at(i + 1).at(j), lengths.at(i).at(j + 1));
        }
    }
    return lengths;
}

QString entryText(const JournalEntry& entry) {
    return QStringLiteral("%1(%2)   at %3 ms")
        .arg(entry.name, entry.arguments.join(QStringLiteral(", ")))
        .arg(entry.timeMs, 0, 'f', 1);
}

} // namespace

ArgumentPattern ArgumentPattern::any() {
    return ArgumentPattern(Kind::Any);
}

ArgumentPattern ArgumentPattern::rest() {
    return ArgumentPattern(Kind::Rest);
}

ArgumentPattern ArgumentPattern::matching(const QString& expression) {
    ArgumentPattern pattern(Kind::Expression);
    pattern.m_text = expression;
    return pattern;
}

bool ArgumentPattern::matches(const QString& argument) const {
    switch (m_kind) {
    case Kind::Text:
        return argument == m_text;
    case Kind::Number: {
        bool isNumber = false;
        const double value = argument.toDouble(&isNumber);
        return isNumber && (value == m_value || std::fabs(value - m_value) <= m_tolerance);
    }
    case Kind::Expression:
        return QRegularExpression(QRegularExpression::anchoredPattern(m_text)).match(argument).hasMatch();
    case Kind::Any:
    case Kind::Rest:
        return true;
    }
    return false;
}

QString ArgumentPattern::toString() const {
    switch (m_kind) {
    case Kind::Text:
        return m_text;
    case Kind::Number:
        return m_tolerance == 0.0 ? QString::number(m_value, 'g', 15)
                                  : QStringLiteral("%1 +- %2").arg(m_value, 0, 'g', 15).arg(m_tolerance);
    case Kind::Expression:
        return QStringLiteral("/%1/").arg(m_text);
    case Kind::Any:
        return QStringLiteral("*");
    case Kind::Rest:
        return QStringLiteral("...");
    }
    return QString();
}

bool ExpectedCall::matches(const JournalEntry& entry) const {
    if (entry.name != name)
        return false;
    const bool open = !arguments.isEmpty() && arguments.last().isRest();
    const int fixed = open ? arguments.size() - 1 : arguments.size();
    if (entry.arguments.size() < fixed || (!open && entry.arguments.size() != fixed))
        return false;
    for (int i = 0; i < fixed; ++i) {
        if (!arguments.at(i).matches(entry.arguments.at(i)))
            return false;
    }
    return true;
}

QString ExpectedCall::toString() const {
    QStringList texts;
    for (const ArgumentPattern& argument : arguments)
        texts.append(argument.toString());
    return QStringLiteral("%1(%2)").arg(name, texts.join(QStringLiteral(", ")));
}

JournalMatch matchJournal(const QVector<JournalEntry>& journal, const QVector<ExpectedCall>& expected) {
    const QVector<QVector<int>> lengths = commonLengths(journal, expected);
    JournalMatch match;
    match.ok = journal.size() == expected.size() && lengths.at(0).at(0) == expected.size();
    QStringList lines{QStringLiteral("the journal is not as expected (- missing, + not expected):")};
    int i = 0;
    int j = 0;
    while (i < journal.size() || j < expected.size()) {
        const bool both = i < journal.size() && j < expected.size();
        if (both && expected.at(j).matches(journal.at(i))) {
            lines.append(QStringLiteral("  ") + entryText(journal.at(i++)));
            ++j;
        } else if (i == journal.size() || (both && lengths.at(i).at(j + 1) >= lengths.at(i + 1).at(j))) {
            lines.append(QStringLiteral("- ") + expected.at(j++).toString());
        } else {
            lines.append(QStringLiteral("+ ") + entryText(journal.at(i++)));
        }
    }
    match.difference = match.ok ? QString() : lines.join(QLatin1Char('\n'));
    return match;
}

QVector<JournalEntry> only(const QVector<JournalEntry>& journal, const QStringList& names) {
    QVector<JournalEntry> kept;
    for (const JournalEntry& entry : journal) {
        if (names.contains(entry.name))
            kept.append(entry);
    }
    return kept;
}

QVector<JournalEntry> without(const QVector<JournalEntry>& journal, const QStringList& names) {
    QVector<JournalEntry> kept;
    for (const JournalEntry& entry : journal) {
        if (!names.contains(entry.name))
            kept.append(entry);
    }
    return kept;
}

} // namespace tests
