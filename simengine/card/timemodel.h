// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "simengine/card/job.h"
#include "simengine/card/penparams.h"

#include <cstddef>
#include <cstdint>

namespace sim {

/// Where the time of a job goes. All times ms, lengths mm along the commanded line (wobble turns not counted).
struct JobTime {
    double jumpMs = 0.0;  ///< movement without laser between strokes
    double markMs = 0.0;  ///< vectors, and the laser time of mark points
    double delayMs = 0.0; ///< all delays together
    double totalMs = 0.0; ///< sum of the three
    double markedMm = 0.0;
    double jumpedMm = 0.0;
    std::size_t vertices = 0; ///< vertices reached, one trace row each
    /// Strokes with wobble that the trace shows by their centre line, because the path would have had too many
    /// vertices.
    std::size_t centreLines = 0;
    std::uint64_t passes = 0; ///< complete passes of a job that was run
};

/// The line on which a border preview goes round a job. The values are those of the card's parameter file.
enum class BorderOutline {
    Rectangle = 0, ///< parallel to the axes, round all points
    Hull = 1,      ///< the convex hull of all points
};

struct BorderSettings {
    BorderOutline outline = BorderOutline::Rectangle;
    double speed = 0.0; ///< mm/s; 0 or less, or not a number, for the red-light speed of the first stroke's pen
};

/// What belongs to the whole card and not to a pen.
struct PlanSettings {
    double penChangeDelayMs = 0.0; ///< wait when a stroke has another pen than the one before, laser jobs only
    BorderSettings border;         ///< border previews only
};

double distanceMm(const Point& a, const Point& b);

/// The place at share t (0 to 1) of the way from a to b.
Point between(const Point& a, const Point& b, double t);

/// Settling time in µs after a jump of the given length: minJumpDelay up to minJumpDelayDist, maxJumpDelay from
/// maxJumpDelayDist on, linear between; the upper distance wins where they overlap. The pen is sanitized.
double jumpDelayUs(const PenParams& pen, double distance);

/// Movement time in µs of a jump, without its delay.
double jumpMoveUs(const PenParams& pen, double distance);

/// Length of beam path per mm of line: 1 without wobble, otherwise that of the trochoid which the beam draws when
/// circles of wobbleDiameter advance by wobbleSpacing a turn.
double wobbleFactor(const PenParams& pen);

/// Time in µs of one marked vector.
double markUs(const PenParams& pen, MarkKind kind, double distance);

/// The exact time of one pass of a job by the same walk that the card executes.
/// start: where the head stands before the job. Any thread.
JobTime estimate(const Job& job, const PenTable& pens, Point start = {}, const PlanSettings& settings = {});

} // namespace sim
