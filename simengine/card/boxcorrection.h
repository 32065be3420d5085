// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "simengine/card/job.h"

#include <array>

namespace sim {

/// The analogue correction of the head: what the box calibration record makes of a commanded place before the mirrors
/// get it. A plain value; the default changes nothing.
struct BoxCorrection {
    struct Mirror {
        double scale = 1.0;
        double barrel = 0.0;        ///< share of growth at the field's edge
        double parallelogram = 0.0; ///< mm a mm of the other mirror's way
        double trapezoid = 0.0;     ///< share of growth at that edge of the field to which the other mirror counts up
    };
    /// A straight line for the pilot beam alone.
    struct Light {
        double scale = 1.0;
        double offset = 0.0; ///< mm
    };

    double halfField = 55.0; ///< mm; where barrel and trapezoid have the shares told. 0 or less: they are not in use
    double offsetX = 0.0;    ///< mm
    double offsetY = 0.0;
    double angle = 0.0; ///< degrees, counter-clockwise
    bool mirror1IsX = true;
    bool mirror1Reverse = false;
    bool mirror2Reverse = false;
    std::array<Mirror, 2> mirrors;
    std::array<Light, 2> light; ///< X, Y

    /// Numbers that are not finite are taken as those of the default.
    BoxCorrection sanitized() const;
    bool isNeutral() const;
    bool isStraight() const; ///< straight lines stay straight

    /// What mirror 1 (x) and mirror 2 (y) are sent for a commanded place, mm. Turn, shift, the pilot beam's own line,
    /// and then of each mirror barrel, trapezoid, parallelogram and scale, and its inversion. Held to +-10 000 mm,
    /// where the position registers end.
    Point mirrorsFor(Point commanded, bool pilot) const;

private:
    double driven(const Mirror& mirror, double own, double other) const;
};

} // namespace sim
