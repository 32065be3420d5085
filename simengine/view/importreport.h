// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "simengine/importers/importresult.h"

namespace sim {

/// What came of an import as the operator reads it: the objects by kind, the page, the file's unit, and a line for each
/// kind of thing that was changed or left out, with its number and the reason.
QString importReport(const ImportResult& drawing);

/// The report cut to what fits a dialog; the log has all of it.
QString shownReport(const QString& report);

} // namespace sim
