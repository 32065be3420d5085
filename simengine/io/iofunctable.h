// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "engine/iofunclist.h"
#include "simengine/params/inifile.h"

#include <QVector>

namespace sim {

constexpr char kIOFunctionFile[] = "/ini/IOFunctions.ini";

/// The machine's functions with their default masks, all switched off. The order is that of the I/O dialog.
QVector<IOFuncList> defaultIOFunctions();

/// Takes what the file holds for each function of `functions`, by name, and appends functions that the file alone
/// knows. The last input word is not stored: it belongs to one run of the program.
void loadIOFunctions(QVector<IOFuncList>& functions, IniFile const& file);
bool storeIOFunctions(QVector<IOFuncList> const& functions, IniDocument& document);

} // namespace sim
