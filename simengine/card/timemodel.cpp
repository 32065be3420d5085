// SPDX-License-Identifier: GPL-2.0-or-later
#include "simengine/card/timemodel.h"

#include "simengine/card/planner.h"

#include <array>
#include <cmath>

namespace sim {

double distanceMm(const Point& a, const Point& b) {
    return std::hypot(b.x - a.x, b.y - a.y);
}

Point between(const Point& a, const Point& b, double t) {
    if (t >= 1.0)
        return b;
    return {a.x + (b.x - a.x) * t, a.y + (b.y - a.y) * t};
}

double jumpDelayUs(const PenParams& pen, double distance) {
    if (distance >= pen.maxJumpDelayDist)
        return pen.maxJumpDelay;
    if (distance <= pen.minJumpDelayDist)
        return pen.minJumpDelay;
    const double share = (distance - pen.minJumpDelayDist) / (pen.maxJumpDelayDist - pen.minJumpDelayDist);
    return pen.minJumpDelay + (static_cast<double>(pen.maxJumpDelay) - pen.minJumpDelay) * share;
}

double jumpMoveUs(const PenParams& pen, double distance) {
    return distance / pen.jumpSpeed * 1e6;
}

double wobbleFactor(const PenParams& pen) {
    if (!pen.wobbleEnable)
        return 1.0;
    // A circle of radius r whose centre advances by 2 pi a in a turn: the arc length of one turn is the complete
    // elliptic integral 4 (a + r) E(k) with k = 2 sqrt(a r) / (a + r).
    const double r = pen.wobbleDiameter / 2.0;
    const double a = pen.wobbleSpacing / (2.0 * M_PI);
    const double k = 2.0 * std::sqrt(a * r) / (a + r);
    return 4.0 * (a + r) * std::comp_ellint_2(std::fmin(k, 1.0)) / pen.wobbleSpacing;
}

double markUs(const PenParams& pen, MarkKind kind, double distance) {
    if (kind != MarkKind::Laser)
        return distance / pen.redSpeed * 1e6;
    return distance * wobbleFactor(pen) / pen.markSpeed * 1e6;
}

JobTime estimate(const Job& job, const PenTable& pens, Point start, const PlanSettings& settings) {
    Planner planner(job, pens, settings, start);
    JobTime time;
    std::array<Piece, 256> chunk;
    while (const std::size_t count = planner.fill(chunk.data(), chunk.size())) {
        for (std::size_t i = 0; i < count; ++i)
            addPiece(time, chunk[i]);
    }
    return time;
}

} // namespace sim
