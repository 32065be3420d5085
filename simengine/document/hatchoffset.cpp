// SPDX-License-Identifier: GPL-2.0-or-later
#include "simengine/document/hatchoffset.h"

#include "simengine/document/box.h"
#include "simengine/document/limits.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <iterator>
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

/// Rows that a surface is guessed from.
constexpr int kSampleRows = 32;

/// Crossings that are held at a time: an outline of many millions of points may cross every row with each edge.
constexpr std::int64_t kMostCrossings = 1 << 20;

using RowCounts = std::array<std::int64_t, kSampleRows>;
using RowCrossings = std::array<std::vector<double>, kSampleRows>;

RowCounts countCrossings(std::vector<HatchContour> const& contours, RowGrid const& grid) {
    RowCounts counts{};
    for (HatchContour const& contour : contours) {
        for (std::size_t i = 0, last = contour.size() - 1; i < contour.size(); last = i++) {
            const auto [low, high] = std::minmax({grid.rowAt(contour[i].y()), grid.rowAt(contour[last].y())});
            for (std::int64_t row = low; row < high; ++row)
                ++counts[std::size_t(row)];
        }
    }
    return counts;
}

/// Takes the crossings of a row and gives how much of it lies inside, mm.
double insideOf(std::vector<double>& row) {
    std::sort(row.begin(), row.end());
    double width = 0.0;
    for (std::size_t i = 0; i + 1 < row.size(); i += 2)
        width += row[i + 1] - row[i];
    std::vector<double>().swap(row);
    return width;
}

/// Where the contours cross the rows from `first` to before `end`.
void collectCrossings(std::vector<HatchContour> const& contours, RowGrid const& grid, std::int64_t first,
                      std::int64_t end, RowCrossings& crossings) {
    for (HatchContour const& contour : contours) {
        for (std::size_t i = 0, last = contour.size() - 1; i < contour.size(); last = i++) {
            QPointF const& low = contour[contour[i].y() < contour[last].y() ? i : last];
            QPointF const& high = contour[contour[i].y() < contour[last].y() ? last : i];
            const std::int64_t stop = std::min(grid.rowAt(high.y()), end);
            for (std::int64_t row = std::max(grid.rowAt(low.y()), first); row < stop; ++row)
                crossings[std::size_t(row)].push_back(low.x() + (grid.y(row) - low.y()) * (high.x() - low.x()) /
                                                                    (high.y() - low.y()));
        }
    }
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

std::vector<HatchContour> HatchArea::inReach(std::vector<HatchContour> const& contours) {
    std::vector<HatchContour> reached;
    std::copy_if(contours.begin(), contours.end(), std::back_inserter(reached), isInReach);
    return reached;
}

double circumference(HatchContour const& contour) {
    double sum = 0.0;
    for (std::size_t i = 0, last = contour.size() - 1; i < contour.size(); last = i++)
        sum += std::hypot(contour[i].x() - contour[last].x(), contour[i].y() - contour[last].y());
    return sum;
}

double sampledSurface(std::vector<HatchContour> const& contours) {
    Box box;
    for (HatchContour const& contour : contours) {
        for (QPointF const& p : contour)
            box.add(p);
    }
    if (!box.isValid() || !(box.height() > 0.0))
        return 0.0;
    const RowGrid grid{box.minY + box.height() / (2 * kSampleRows), box.height() / kSampleRows, kSampleRows};
    const RowCounts counts = countCrossings(contours, grid);
    RowCrossings crossings;
    double widths = 0.0;
    for (std::int64_t first = 0, end = 0; first < kSampleRows; first = end) {
        std::int64_t held = counts[std::size_t(end++)];
        while (end < kSampleRows && held + counts[std::size_t(end)] <= kMostCrossings)
            held += counts[std::size_t(end++)];
        collectCrossings(contours, grid, first, end, crossings);
        for (std::int64_t i = first; i < end; ++i)
            widths += insideOf(crossings[std::size_t(i)]);
    }
    return widths * grid.pitch;
}

} // namespace sim
