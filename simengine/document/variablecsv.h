// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "simengine/document/variableproblem.h"
#include "simengine/document/variableset.h"

#include <vector>

namespace sim {

/// Bytes of a CSV file, at most.
constexpr qint64 kMaxCsvBytes = 64 * 1024 * 1024;

/// The row of a CSV file that is to be marked.
struct CsvRow {
    QStringList header; ///< empty when the file has none
    QStringList fields;
    int row = 1; ///< the one that was taken, 1 where the source begins again at its end
};

/// Reads the current row. A row is a line that holds more than blanks; fields may stand in quotation marks, within
/// which two of them are one and line ends belong to the field. A file that has not changed is not read again. Any
/// thread.
CsvRow readCsvRow(const CsvSource& source, VariableProblem& problem);

/// The field of a column that is named, or numbered from 1 as "#3".
QString csvField(const CsvSource& source, const CsvRow& row, const QString& column, VariableProblem& problem);

} // namespace sim
