// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "simengine/importers/importbudget.h"
#include "simengine/importers/importresult.h"

#include <QByteArray>

namespace sim {

/// An import that gave nothing but the reason.
ImportResult failedImport(const QString& error);

/// The result, or the reason alone when the budget was spent.
ImportResult checkedImport(ImportResult result, const ImportBudget& budget);

/// Reads a file, at most ImportBudget::kMostBytes, and hands its bytes on. Errors name the file. What `read` throws is
/// an error too.
ImportResult importFile(const QString& path, const ImportOptions& options,
                        ImportResult (*read)(const QByteArray&, const ImportOptions&));

} // namespace sim
