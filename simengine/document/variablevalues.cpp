// SPDX-License-Identifier: GPL-2.0-or-later
#include "simengine/document/variablevalues.h"

#include <algorithm>

namespace sim {

QString VariableValues::text(const QString& pattern, VariableProblem& problem) {
    QString result;
    for (const TemplatePart& part : parseTemplate(pattern, problem)) {
        if (!problem.ok())
            break;
        result += value(part, problem);
    }
    return problem.ok() ? result : QString();
}

QString VariableValues::value(const TemplatePart& part, VariableProblem& problem) {
    switch (part.kind) {
    case TemplatePart::Kind::Literal:
        break;
    case TemplatePart::Kind::Serial:
        return serialText(part.text, problem);
    case TemplatePart::Kind::Date:
    case TemplatePart::Kind::ShiftDate:
        return dateText(part, problem);
    case TemplatePart::Kind::Shift:
        return shiftText(problem);
    case TemplatePart::Kind::Csv:
        return csvText(part, problem);
    }
    return part.text;
}

QString VariableValues::serialText(const QString& name, VariableProblem& problem) {
    const auto known = m_serialTexts.constFind(name);
    if (known != m_serialTexts.constEnd())
        return *known;
    const SerialNumber* serial = m_set.serial(name);
    if (!serial) {
        problem = {VariableFault::NoSerial, name};
        return QString();
    }
    const SerialNumber now = serial->on(m_now.date());
    if (now.ended) {
        problem = {VariableFault::SerialEnded, QStringLiteral("%1 (%2)").arg(name, now.text())};
        return QString();
    }
    m_used.serials.append({*serial, serial->advanced(m_now.date())});
    return *m_serialTexts.insert(name, now.text());
}

QString VariableValues::csvText(const TemplatePart& part, VariableProblem& problem) {
    const CsvSource* source = m_set.source(part.text);
    if (!source) {
        problem = {VariableFault::NoSource, part.text};
        return QString();
    }
    auto taken = m_rows.constFind(part.text);
    if (taken == m_rows.constEnd()) {
        TakenRow read;
        read.row = readCsvRow(*source, read.problem);
        if (read.problem.ok()) {
            CsvSource after = *source;
            after.row = std::min(read.row.row + 1, kMostCsvRow);
            m_used.sources.append({*source, after});
        }
        taken = m_rows.insert(part.text, read);
    }
    problem = taken->problem;
    return problem.ok() ? csvField(*source, taken->row, part.column, problem) : QString();
}

QString VariableValues::dateText(const TemplatePart& part, VariableProblem& problem) const {
    QDateTime time = m_now;
    if (part.kind == TemplatePart::Kind::ShiftDate) {
        QDate began;
        if (shiftAt(m_set.shifts, m_now, &began) < 0) {
            problem = {VariableFault::NoShift, QString()};
            return QString();
        }
        time.setDate(began);
    }
    const std::optional<QString> text = formatDate(time.addDays(part.offsetDays), part.text);
    if (!text)
        problem = {VariableFault::BadTemplate, part.text};
    return text.value_or(QString());
}

QString VariableValues::shiftText(VariableProblem& problem) const {
    const int shift = shiftAt(m_set.shifts, m_now);
    if (shift >= 0)
        return m_set.shifts.at(shift).code;
    problem = {VariableFault::NoShift, QString()};
    return QString();
}

bool VariableValues::isUnique(const QString& pattern) const {
    VariableProblem problem;
    bool counts = false;
    for (const TemplatePart& part : parseTemplate(pattern, problem)) {
        if (part.kind == TemplatePart::Kind::Serial) {
            const SerialNumber* serial = m_set.serial(part.text);
            if (serial && serial->on(m_now.date()).marks > 0)
                return false;
            counts = true;
        }
        counts = counts || part.kind == TemplatePart::Kind::Csv;
    }
    return counts;
}

bool VariableValues::followsClock(const QString& pattern) {
    VariableProblem problem;
    const std::vector<TemplatePart> parts = parseTemplate(pattern, problem);
    return std::any_of(parts.begin(), parts.end(), [](const TemplatePart& part) {
        return part.kind == TemplatePart::Kind::Date || part.kind == TemplatePart::Kind::ShiftDate ||
               part.kind == TemplatePart::Kind::Shift;
    });
}

} // namespace sim
