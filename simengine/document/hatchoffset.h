// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "simengine/document/hatchrows.h"

namespace sim {

/// The area within closed contours, moved inwards step by step. Inside is what an odd number of contours encloses.
class HatchArea {
public:
    explicit HatchArea(std::vector<HatchContour> const& contours);

    /// Those of the contours that can be of an area: none of their points lies out of all proportion.
    static std::vector<HatchContour> inReach(std::vector<HatchContour> const& contours);

    /// The area, its edge moved inwards by `distance` mm; outwards for a negative one. Corners stay sharp up to twice
    /// the distance. Exact to a millionth of a millimetre for each step.
    HatchArea inset(double distance) const;
    bool isEmpty() const { return m_contours.empty(); }
    /// Outlines of the area, counter-clockwise around it and clockwise around its holes.
    std::vector<HatchContour> const& contours() const { return m_contours; }

private:
    HatchArea() = default;

    std::vector<HatchContour> m_contours;
};

/// Length of a closed contour, mm.
double circumference(HatchContour const& contour);

/// Surface of the area within closed contours, mm², from the widths of at most 32 rows: a guess, exact where the widths
/// of the area grow and shrink evenly. No more than 32 crossings for each point are looked at, and few rows of them
/// are held at a time where there are many.
double sampledSurface(std::vector<HatchContour> const& contours);

} // namespace sim
