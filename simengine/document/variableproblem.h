// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include <QString>

namespace sim {

/// Why variables have no value now.
enum class VariableFault {
    None,
    BadTemplate,    ///< braces that do not match, an unknown variable, a wrong date format
    NoSerial,       ///< no serial number of this name
    SerialEnded,    ///< its last value is used up
    NoSource,       ///< no CSV source of this name
    SourceEnded,    ///< its last row is used up
    NoFile,         ///< missing, unreadable, outside the folder of the documents, or too large
    BadFile,        ///< not in its encoding, a quotation that does not end
    NoColumn,       ///< no column of this name or number
    NoShift,        ///< no shifts are defined
    BadDefinitions, ///< the file of the definitions is damaged
    NotWritten,     ///< the counters cannot be kept
    NotText,        ///< what the variables come to cannot be a text
    NotCode,        ///< what they come to cannot be a code
    MarkedBefore,   ///< a code that was marked in the last days
    NotLookedUp     ///< whether it was cannot be told
};

struct VariableProblem {
    VariableFault fault = VariableFault::None;
    QString detail; ///< what the fault is about

    bool ok() const { return fault == VariableFault::None; }
};

/// The problem as the operator reads it; empty without one. Any thread.
QString variableMessage(const VariableProblem& problem);

} // namespace sim
