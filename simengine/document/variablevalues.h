// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "simengine/document/variablecsv.h"
#include "simengine/document/variabletemplate.h"

#include <QHash>

namespace sim {

/// A counter as a pass has used it and as it stands after the pass.
template<class Counter>
struct CounterStep {
    Counter before;
    Counter after;
};

/// The counters that a pass moves on.
struct UsedVariables {
    QVector<CounterStep<SerialNumber>> serials;
    QVector<CounterStep<CsvSource>> sources;

    bool isEmpty() const { return serials.isEmpty() && sources.isEmpty(); }
};

/// The values of all variables at one moment: everything that asks gets the same ones, so that texts and codes of one
/// serial number agree. Belongs to one thread.
class VariableValues {
public:
    VariableValues(const VariableSet& set, const QDateTime& now)
        : m_set(set)
        , m_now(now) {}

    /// What a template comes to.
    QString text(const QString& pattern, VariableProblem& problem);
    const UsedVariables& used() const { return m_used; }
    const QDateTime& now() const { return m_now; }

    /// The template counts: it holds a serial number or a CSV column, so that each of its texts is meant once. Not
    /// while a serial number repeats a value that it is to repeat.
    bool isUnique(const QString& pattern) const;
    /// The template holds a date or a shift, whose text changes by itself.
    static bool followsClock(const QString& pattern);

private:
    /// The row of a source, or why there is none.
    struct TakenRow {
        CsvRow row;
        VariableProblem problem;
    };

    QString value(const TemplatePart& part, VariableProblem& problem);
    QString serialText(const QString& name, VariableProblem& problem);
    QString csvText(const TemplatePart& part, VariableProblem& problem);
    QString dateText(const TemplatePart& part, VariableProblem& problem) const;
    QString shiftText(VariableProblem& problem) const;

    VariableSet m_set;
    QDateTime m_now;
    UsedVariables m_used;
    QHash<QString, QString> m_serialTexts;
    QHash<QString, TakenRow> m_rows; ///< also those that cannot be read, which are not tried anew
};

} // namespace sim
