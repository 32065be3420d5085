// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "simengine/document/markobject.h"

namespace sim {

/// One line of an object as it is marked.
struct JobLine {
    int pen = 0;
    QPolygonF points;      ///< a single point is a mark point
    double dwellUs = -1.0; ///< of a mark point, µs; below 0 the pen's time
};

/// The lines of an object in marking order, in the field. Nothing for an object that does not work; within a group for
/// each child that does. The outline is left out where the object's hatch settings say so; the hatch comes after it, or
/// before it where they say so.
/// What was cancelled is not whole.
std::vector<JobLine> jobLines(const MarkObject& object, const Cancellation* cancellation = nullptr);

} // namespace sim
