// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "engine/dissimilationparam.h"
#include "simengine/document/flatten.h"

namespace sim {

/// The shapes of a pattern, values of DissimilationParam::Type.
enum class PatternType { Zigzag = 0, Sine = 1, Square = 2 };

/// A known type, a finite amplitude and a finite pitch above 0.
bool isUsablePattern(const DissimilationParam& param);

/// Points that patternAlong() gives, at least; 0 for a line shorter than half a period or a single point.
qint64 patternPointCount(const FlatLine& line, const DissimilationParam& param);

/// The line with the pattern laid along it, `Amplitude` to each side, beginning to the left. A closed line gets a whole
/// number of periods and ends with its first point.
QPolygonF patternAlong(const FlatLine& line, const DissimilationParam& param);

} // namespace sim
