// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "engine/standardcalibparam.h"

#include <QByteArray>

namespace sim {

/// The 20 lines of the record file, numbers with six significant digits.
QByteArray standardCalibText(StandardCalibParam const& record);

/// Reads the record from its file. False, and the record unchanged, without a file or when a line is not a number;
/// lines beyond the 20 are not looked at.
bool loadStandardCalib(StandardCalibParam& record);

} // namespace sim
