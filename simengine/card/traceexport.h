// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "simengine/card/trace.h"

#include <QByteArray>
#include <QImage>
#include <QString>

namespace sim {

/// The trace as a drawing in mm, Y up: contours in the colours of their pens, the paler the less the laser's power,
/// pilot beam lines red and broken, mark points as dots, jumps thin and grey. The attribute data-power has the percent.
QByteArray traceSvg(const TraceSnapshot& rows);

/// The same drawing on white; width and height at most the given number of pixels, at least 1. Any thread.
QImage tracePicture(const TraceSnapshot& rows, int longerSide = 2000);

/// Writes the trace to a file; the ending .csv, .svg or .png, in any case, decides the form. Relative paths are taken
/// from the current directory. False with a reason in error.
bool writeTrace(const TraceSnapshot& rows, const QString& path, QString& error);

} // namespace sim
