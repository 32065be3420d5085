// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "simengine/card/trace.h"
#include "simengine/simcontrol.h"

#include <QByteArray>
#include <QImage>
#include <QString>

namespace sim {

/// The trace as a drawing in mm, Y up: contours in the colours of their pens, the paler the less the laser's power,
/// pilot beam lines red and broken, mark points as dots, jumps thin and grey. The attribute data-power has the percent.
QByteArray traceSvg(const TraceSnapshot& rows);

/// The same drawing on white; width and height at most the given number of pixels, at least 1. Any thread.
QImage tracePicture(const TraceSnapshot& rows, int longerSide = 2000);

/// Most points of a drawing that is written; a head that bends long ways may give more than memory and viewers hold.
constexpr std::size_t kMostDrawnPoints = 10'000'000;
/// Points of the drawing, counted until there are more than that.
std::size_t drawnPoints(const TraceSnapshot& rows);

/// Writes the trace to a file; the ending .csv, .svg or .png, in any case, decides the form. Relative paths are taken
/// from the current directory. Else BadValue for another ending, TooLarge for a drawing of too many points, FileError,
/// each with a reason in error. Any thread.
SimOutcome writeTrace(const TraceSnapshot& rows, const QString& path, QString& error);

} // namespace sim
