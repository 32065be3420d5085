// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "simengine/document/codespec.h"

#include <vector>

namespace sim {

/// The modules of a code without its quiet zone. A bar code has one row.
struct CodeSymbol {
    int columns = 0;
    int rows = 0; ///< from the top
    std::vector<bool> modules;

    bool isDark(int column, int row) const { return modules[size_t(row) * size_t(columns) + size_t(column)]; }
};

/// Encodes `content`, not the text of `spec`. What hinders it comes back, and `detail` names it. `spec` must be one
/// that codeSpecFault() takes. Any thread.
CodeFault encodeSymbol(const CodeSpec& spec, const QString& content, CodeSymbol& symbol, QString* detail = nullptr);

} // namespace sim
