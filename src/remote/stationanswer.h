// SPDX-License-Identifier: MIT
#pragma once

#include "engine/ccscmd.h"

#include <QString>

namespace tessera {

class RemoteOrderLog;

/// Who sent the command that the command server tells of just now, as the log of remote orders names it. Main thread.
QString StationSender();
/// The command as one line: its name and its arguments.
QString StationOrder(CCSCmd const& cmd);
/// Answers a command of the controlling station with status and text and logs both. `received` is the command as it
/// came from `sender`. Any thread.
void AnswerStation(RemoteOrderLog& log, QString const& sender, CCSCmd received, int tag, bool good,
                   QString const& text);

} // namespace tessera
