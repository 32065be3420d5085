// SPDX-License-Identifier: MIT
#pragma once

#include "engine/ccscmd.h"

#include <QString>

namespace tessera {

class RemoteOrderLog;

/// Who the orders of the command server come from, as the log of remote orders names them.
QString StationAddress(int tag);
/// The command as one line: its name and its arguments.
QString StationOrder(CCSCmd const& cmd);
/// Answers a command of the controlling station with status and text and logs both. `received` is the command as it
/// came. Any thread.
void AnswerStation(RemoteOrderLog& log, CCSCmd received, int tag, bool good, QString const& text);

} // namespace tessera
