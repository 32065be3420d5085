// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "simengine/card/cardcore.h"
#include "simengine/simcontrol.h"

#include <QString>
#include <string>
#include <vector>

namespace sim {

/// The places of a measurement as its file has them: "x,y" a line, six significant digits.
QByteArray measurementText(std::vector<Point> const& places);

/// Measures the calibration figures of the card's last job with the noise of the head's instrument and writes the file,
/// relative names from the current directory. What is not done has a reason in `error`. Any thread.
SimOutcome measureFigures(CardCore& card, QString const& file, std::string& error);

} // namespace sim
