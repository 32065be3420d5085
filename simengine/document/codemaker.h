// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "simengine/document/shape.h"

#include <QSizeF>

namespace sim {

/// A code with what is marked of it, or why there is none.
struct MadeCode {
    CodeShape shape; ///< usable when `fault` is None
    CodeFault fault = CodeFault::None;
    QString detail;      ///< what a fault names
    int columns = 0;     ///< modules without the quiet zone
    int rows = 0;        ///< 1 of bar codes
    double module = 0.0; ///< width of a module, mm
    QSizeF size;         ///< without the quiet zone, mm

    bool ok() const { return fault == CodeFault::None; }
};

/// Encodes and lays out the code in its own coordinates: the lower left corner of its modules is 0, 0, so that the
/// quiet zone lies at coordinates below 0. `content` is what the entered text comes to, that text itself in a spec
/// without variables. Any thread.
MadeCode makeCode(const CodeSpec& spec, const QString& content);

/// Of a spec without variables.
inline MadeCode makeCode(const CodeSpec& spec) {
    return makeCode(spec, spec.text);
}

} // namespace sim
