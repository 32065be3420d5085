// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "simengine/card/job.h"
#include "simengine/card/penparams.h"
#include "simengine/card/powercurve.h"

#include <cstddef>

namespace sim {

/// Cuts the vectors of one stroke where its shape asks for it: at the points of the power profile, and where the wobble
/// turns on. Power and wobble run on from vector to vector. A plain value without memory of its own; not thread-safe.
class StrokeShape {
public:
    /// Vertices of the path for each turn of the wobble. With 32 the chords are 0.2 % shorter than the circle.
    static constexpr int kVerticesPerTurn = 32;

    /// The next place on the way along a vector.
    struct Cut {
        double share = 1.0; ///< of the vector that lies behind
        Point at;           ///< on the path that the beam takes
        double power = 0.0; ///< percent of the laser's full power
    };

    StrokeShape() = default;
    /// Begins a stroke. profile: its power, empty for the steady one of the pen; wobble: circles with the measures of
    /// the sanitized pen, beginning on the right hand of the stroke's first direction.
    StrokeShape(const PenParams& pen, const PowerProfile& profile, bool wobble, const Point& first,
                const Point& second);

    /// False for a stroke whose vectors need no cuts.
    bool isShaped() const { return m_profile.size() > 0 || m_wobble; }
    bool hasWobble() const { return m_wobble; }
    /// Power at the place reached.
    double power() const { return m_power; }
    /// Where the beam is when the centre of the circles is at the given place of the stroke reached so far.
    Point onPath(const Point& centre) const;

    void beginVector(const Point& from, const Point& to, double mm);
    /// Goes on to the next cut; the last one of the vector has share 1.
    Cut next();
    bool vectorDone() const { return m_share >= 1.0 && !m_stepped; }

    /// How many vertices more than without wobble a stroke of that length gets, about.
    static double extraVertices(const PenParams& pen, double lengthMm);

private:
    double takePowerAt(double mm);

    PowerProfile m_profile;
    bool m_wobble = false;
    double m_radius = 0.0;
    double m_spacing = 1.0;
    double m_phase = 0.0; ///< of the circle at the stroke's beginning, rad
    Point m_from;
    Point m_to;
    double m_doneMm = 0.0; ///< of the stroke before the vector
    double m_mm = 0.0;     ///< length of the vector
    double m_share = 1.0;
    int m_step = 0; ///< wobble steps of the vector done
    int m_steps = 1;
    int m_point = 0; ///< next point of the profile
    double m_power = 0.0;
    double m_stepPower = 0.0; ///< power after a step of the profile, with m_stepped
    bool m_stepped = false;
};

} // namespace sim
