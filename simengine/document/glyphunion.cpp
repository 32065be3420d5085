// SPDX-License-Identifier: GPL-2.0-or-later
#include "simengine/document/glyphunion.h"

#include "simengine/document/contour.h"
#include "simengine/document/flatten.h"

#include <algorithm>
#include <cmath>
#include <map>
#include <numeric>
#include <polyclipping/clipper.hpp>

namespace sim {

namespace {

/// Steps of the clipping library's whole numbers in one tolerance.
constexpr double kStepsPerTolerance = 64.0;
/// Steps that an area may be off for each step of the contours' length: the corners lie on whole numbers.
constexpr double kAreaSlack = 2.0;

/// A letter in the whole numbers of the clipping library.
struct Polygons {
    ClipperLib::Paths paths;
    double area = 0.0;   ///< covered by winding
    double length = 0.0; ///< of the contours
};

double areaOf(const ClipperLib::Paths& paths) {
    double area = 0.0;
    for (const ClipperLib::Path& path : paths)
        area += ClipperLib::Area(path);
    return area;
}

ClipperLib::Paths united(const ClipperLib::Paths& paths, ClipperLib::PolyFillType fill) {
    ClipperLib::Paths result;
    ClipperLib::SimplifyPolygons(paths, result, fill);
    return result;
}

class GlyphUnion {
public:
    GlyphUnion(const std::vector<PlacedGlyph>& glyphs, double tolerance)
        : m_glyphs(glyphs)
        , m_tolerance(tolerance)
        , m_steps(kStepsPerTolerance / tolerance)
        , m_leader(glyphs.size()) {
        std::iota(m_leader.begin(), m_leader.end(), std::size_t(0));
    }

    std::vector<PathShape> run() {
        joinOverlapping();
        std::map<std::size_t, std::vector<std::size_t>> clusters;
        for (std::size_t i = 0; i < m_glyphs.size(); ++i)
            clusters[leaderOf(i)].push_back(i);
        std::vector<PathShape> outlines;
        for (const auto& cluster : clusters)
            outlines.push_back(cluster.second.size() == 1 ? single(cluster.first) : merged(cluster.second));
        return outlines;
    }

private:
    /// The first letter of those that were found to lie over each other.
    std::size_t leaderOf(std::size_t glyph) {
        while (m_leader[glyph] != glyph)
            glyph = m_leader[glyph] = m_leader[m_leader[glyph]];
        return glyph;
    }

    const Polygons& polygons(std::size_t glyph) {
        const PathShape* outline = m_glyphs[glyph].outline.get();
        const auto known = m_polygons.find(outline);
        if (known != m_polygons.end())
            return known->second;
        Polygons made;
        std::vector<FlatLine> lines;
        flattenShape(Shape(*outline), QTransform(), lines, m_tolerance);
        for (const FlatLine& line : lines) {
            ClipperLib::Path path;
            for (const QPointF& p : line.points)
                path.emplace_back(step(p.x()), step(p.y()));
            made.length += polylineLength(line.points) * m_steps;
            made.paths.push_back(std::move(path));
        }
        made.area = areaOf(united(made.paths, ClipperLib::pftNonZero));
        return m_polygons.emplace(outline, std::move(made)).first->second;
    }

    ClipperLib::Paths placed(std::size_t glyph) {
        ClipperLib::Paths paths = polygons(glyph).paths;
        const ClipperLib::IntPoint by(step(m_glyphs[glyph].place.x()), step(m_glyphs[glyph].place.y()));
        for (ClipperLib::Path& path : paths) {
            for (ClipperLib::IntPoint& p : path) {
                p.X += by.X;
                p.Y += by.Y;
            }
        }
        return paths;
    }

    ClipperLib::cInt step(double value) const { return ClipperLib::cInt(std::llround(value * m_steps)); }

    void joinOverlapping() {
        std::vector<Box> boxes;
        for (const PlacedGlyph& glyph : m_glyphs)
            boxes.push_back(
                shapeBounds(Shape(*glyph.outline), QTransform::fromTranslate(glyph.place.x(), glyph.place.y())));
        std::vector<std::size_t> order(m_glyphs.size());
        std::iota(order.begin(), order.end(), std::size_t(0));
        std::stable_sort(order.begin(), order.end(),
                         [&](std::size_t a, std::size_t b) { return boxes[a].minX < boxes[b].minX; });
        for (std::size_t i = 0; i < order.size(); ++i) {
            for (std::size_t j = i + 1; j < order.size() && boxes[order[j]].minX <= boxes[order[i]].maxX; ++j) {
                if (boxes[order[i]].intersects(boxes[order[j]]))
                    joinIfOverlapping(order[i], order[j]);
            }
        }
    }

    void joinIfOverlapping(std::size_t a, std::size_t b) {
        const std::size_t first = std::min(leaderOf(a), leaderOf(b));
        const std::size_t second = std::max(leaderOf(a), leaderOf(b));
        if (first == second)
            return;
        ClipperLib::Clipper clipper;
        clipper.AddPaths(placed(a), ClipperLib::ptSubject, true);
        clipper.AddPaths(placed(b), ClipperLib::ptClip, true);
        ClipperLib::Paths common;
        clipper.Execute(ClipperLib::ctIntersection, common, ClipperLib::pftNonZero, ClipperLib::pftNonZero);
        if (areaOf(common) > kAreaSlack * std::min(polygons(a).length, polygons(b).length))
            m_leader[second] = first;
    }

    /// Whether the odd-even fill of the letter is its winding fill.
    bool isSimple(std::size_t glyph) {
        const Polygons& own = polygons(glyph);
        const double oddEven = areaOf(united(own.paths, ClipperLib::pftEvenOdd));
        return std::abs(own.area - oddEven) <= kAreaSlack * own.length;
    }

    PathShape single(std::size_t glyph) {
        const PathShape* outline = m_glyphs[glyph].outline.get();
        auto known = m_singles.find(outline);
        if (known == m_singles.end()) {
            PathShape made = isSimple(glyph) ? *outline : pathOf(united(polygons(glyph).paths, ClipperLib::pftNonZero));
            known = m_singles.emplace(outline, std::move(made)).first;
        }
        const QPointF& place = m_glyphs[glyph].place;
        return mapPath(known->second, QTransform::fromTranslate(place.x(), place.y()));
    }

    PathShape merged(const std::vector<std::size_t>& glyphs) {
        ClipperLib::Paths all;
        for (std::size_t glyph : glyphs) {
            // each letter in one turning sense: contours of letters must not cancel each other out
            ClipperLib::Paths own = united(placed(glyph), ClipperLib::pftNonZero);
            all.insert(all.end(), own.begin(), own.end());
        }
        return pathOf(united(all, ClipperLib::pftNonZero));
    }

    PathShape pathOf(const ClipperLib::Paths& paths) const {
        PathShape path;
        for (const ClipperLib::Path& contour : paths) {
            QPolygonF points;
            for (const ClipperLib::IntPoint& p : contour)
                points.append(QPointF(double(p.X) / m_steps, double(p.Y) / m_steps));
            addPolyline(path, points, true);
        }
        return path;
    }

    const std::vector<PlacedGlyph>& m_glyphs;
    double m_tolerance;
    double m_steps;
    std::vector<std::size_t> m_leader;
    std::map<const PathShape*, Polygons> m_polygons;
    std::map<const PathShape*, PathShape> m_singles;
};

} // namespace

std::vector<PathShape> unitedGlyphs(const std::vector<PlacedGlyph>& glyphs, double tolerance) {
    return GlyphUnion(glyphs, tolerance).run();
}

} // namespace sim
