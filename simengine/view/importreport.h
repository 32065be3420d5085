// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "simengine/importers/importresult.h"

namespace sim {

/// What came of an import as the operator reads it: the objects by kind, the page, and a line for each thing that was
/// left out.
QString importReport(const ImportResult& drawing);

} // namespace sim
