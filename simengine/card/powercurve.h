// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "simengine/card/penparams.h"

#include <array>

namespace sim {

/// A power curve as the card executes it: points of rising or equal x, straight between them; two points at one x are
/// a step. A plain value of fixed size, so that the worker needs no memory for it.
class PowerCurve {
public:
    /// Adds a point; an x below the one before is raised to it, because time does not run back. Points past the size
    /// of a table and one more are left out.
    void add(double x, double power);

    bool isEmpty() const { return m_count == 0; }
    int size() const { return m_count; }
    const WavePoint& operator[](int i) const { return m_points[static_cast<std::size_t>(i)]; }
    /// x of the last point, 0 without points.
    double length() const { return isEmpty() ? 0.0 : (*this)[m_count - 1].x; }
    /// Power at an x: before the first point that of the first, behind the last that of the last; at a step the power
    /// after it. 0 without points.
    double at(double x) const;

private:
    std::array<WavePoint, kWavePoints + 1> m_points{};
    int m_count = 0;
};

/// The curve of a mark point, x in ms from 0 on. Rows whose x is not above 0 are not in use, except for the first row,
/// which may set the power to begin with. Empty when no row has an x above 0: then there is no curve.
PowerCurve pointCurve(const PenParams& pen);

/// The two ramps of a line, both from x = 0 on, in ms or mm by PenParams::lineWaveByDistance.
struct LineRamps {
    PowerCurve in;      ///< begins with (0, 0)
    PowerCurve out;     ///< begins with (0, plateau)
    bool inUse = false; ///< false when only the two beginnings are left: then there is no curve

    /// Power between the ramps, where the ramp-in ends and the ramp-out begins.
    double plateau() const { return out.isEmpty() ? 0.0 : out[0].power; }
};

/// The halves of the table as ramp-in and ramp-out: the ramp-in begins at power 0 and the ramp-out with the power of
/// the ramp-in's last row in use, whatever the table has there; 0 when no row of the ramp-in is in use.
LineRamps lineRamps(const PenParams& pen);

/// The power along one stroke, x in mm from its first vertex to its last: ramp-in, plateau, ramp-out. When the stroke
/// is shorter than both ramps they are shortened in the same ratio. mmPerX: length of line for one unit of the ramps'
/// x. A stroke of no length has an empty profile.
class PowerProfile {
public:
    PowerProfile() = default;
    PowerProfile(const LineRamps& ramps, double mmPerX, double lengthMm);

    int size() const { return m_count; }
    const WavePoint& operator[](int i) const { return m_points[static_cast<std::size_t>(i)]; }

private:
    void add(double mm, double power);

    std::array<WavePoint, kWavePoints + 2> m_points{};
    int m_count = 0;
};

} // namespace sim
