// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "simengine/document/variableproblem.h"

#include <vector>

namespace sim {

/// A piece of a template.
struct TemplatePart {
    enum class Kind { Literal, Serial, Date, ShiftDate, Shift, Csv };
    Kind kind = Kind::Literal;
    QString text;       ///< the literal, the name of a serial number or of a CSV source, the format of a date
    QString column;     ///< of a CSV source: a name, or "#" and a number from 1
    int offsetDays = 0; ///< of a date
};

/// Takes a template apart:
///
///     {serial:NAME}            the serial number NAME
///     {date:FORMAT}            the date and time, see formatDate(); {date+30:FORMAT} that many days later, or earlier
///     {shift}                  the code of the shift
///     {shiftdate:FORMAT}       the day on which the shift began; with an offset as of date
///     {csv:NAME:COLUMN}        a column of the CSV source NAME, by its name, or by number as #3
///     {{ and }}                the braces themselves
///
/// Names and formats stand as they are, with no escaping; none of them can hold a brace.
std::vector<TemplatePart> parseTemplate(const QString& text, VariableProblem& problem);

} // namespace sim
