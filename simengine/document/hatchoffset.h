// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "simengine/document/hatchrows.h"

namespace sim {

/// The area within closed contours, moved inwards step by step. Inside is what an odd number of contours encloses.
class HatchArea {
public:
    explicit HatchArea(std::vector<HatchContour> const& contours);

    /// The area, its edge moved inwards by `distance` mm; outwards for a negative one. Corners stay sharp up to twice
    /// the distance. Exact to a millionth of a millimetre for each step.
    HatchArea inset(double distance) const;
    bool isEmpty() const { return m_contours.empty(); }
    /// Outlines of the area, counter-clockwise around it and clockwise around its holes.
    std::vector<HatchContour> const& contours() const { return m_contours; }
    /// mm²; of the outlines' whole length, mm.
    double surface() const;
    double circumference() const;

private:
    HatchArea() = default;

    std::vector<HatchContour> m_contours;
};

} // namespace sim
