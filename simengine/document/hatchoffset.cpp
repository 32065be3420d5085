// SPDX-License-Identifier: GPL-2.0-or-later
#include "simengine/document/hatchoffset.h"

#include "simengine/document/limits.h"

#include <cmath>
#include <polyclipping/clipper.hpp>

namespace sim {

namespace {

/// Steps of the clipping library's whole numbers in a millimetre.
constexpr double kSteps = 1.0e6;

/// How far a sharp corner may reach, in distances.
constexpr double kMiterLimit = 2.0;

/// The clipping library throws at coordinates near the end of its numbers. No object reaches so far, but the inner
/// points of a curve whose transform is out of all proportion may.
bool isInReach(HatchContour const& contour) {
    constexpr double kReach = 4.0 * kMaxCoordinate;
    for (QPointF const& p : contour) {
        if (!(std::abs(p.x()) <= kReach && std::abs(p.y()) <= kReach))
            return false;
    }
    return true;
}

ClipperLib::Paths toPaths(std::vector<HatchContour> const& contours) {
    ClipperLib::Paths paths;
    for (HatchContour const& contour : contours) {
        if (!isInReach(contour))
            continue;
        ClipperLib::Path path;
        path.reserve(contour.size());
        for (QPointF const& p : contour)
            path.emplace_back(ClipperLib::cInt(std::llround(p.x() * kSteps)),
                              ClipperLib::cInt(std::llround(p.y() * kSteps)));
        paths.push_back(std::move(path));
    }
    return paths;
}

std::vector<HatchContour> toContours(ClipperLib::Paths const& paths) {
    std::vector<HatchContour> contours;
    for (ClipperLib::Path const& path : paths) {
        if (path.size() < 3)
            continue;
        HatchContour contour;
        contour.reserve(path.size());
        for (ClipperLib::IntPoint const& p : path)
            contour.emplace_back(double(p.X) / kSteps, double(p.Y) / kSteps);
        contours.push_back(std::move(contour));
    }
    return contours;
}

/// Twice the surface of a contour, positive counter-clockwise.
double turnedSurface(HatchContour const& contour) {
    double sum = 0.0;
    for (std::size_t i = 0, last = contour.size() - 1; i < contour.size(); last = i++)
        sum += contour[last].x() * contour[i].y() - contour[i].x() * contour[last].y();
    return sum;
}

} // namespace

HatchArea::HatchArea(std::vector<HatchContour> const& contours) {
    ClipperLib::Paths simple;
    ClipperLib::SimplifyPolygons(toPaths(contours), simple, ClipperLib::pftEvenOdd);
    m_contours = toContours(simple);
}

HatchArea HatchArea::inset(double distance) const {
    ClipperLib::ClipperOffset offset(kMiterLimit);
    offset.AddPaths(toPaths(m_contours), ClipperLib::jtMiter, ClipperLib::etClosedPolygon);
    ClipperLib::Paths result;
    offset.Execute(result, -distance * kSteps);
    HatchArea area;
    area.m_contours = toContours(result);
    return area;
}

double HatchArea::surface() const {
    double sum = 0.0;
    for (HatchContour const& contour : m_contours)
        sum += turnedSurface(contour);
    return sum / 2.0;
}

double HatchArea::circumference() const {
    double sum = 0.0;
    for (HatchContour const& contour : m_contours) {
        for (std::size_t i = 0, last = contour.size() - 1; i < contour.size(); last = i++)
            sum += std::hypot(contour[i].x() - contour[last].x(), contour[i].y() - contour[last].y());
    }
    return sum;
}

} // namespace sim
