// SPDX-License-Identifier: GPL-2.0-or-later
#include "simengine/document/contour.h"

#include <cmath>
#include <map>
#include <optional>

namespace sim {

namespace {

double distance(const QPointF& a, const QPointF& b) {
    return std::hypot(a.x() - b.x(), a.y() - b.y());
}

/// Appends `next`, turned round with `reverse`, to the end of `first`.
void append(Contour& first, const Contour& next, bool reverse) {
    const Contour directed = reverse ? next.reversed() : next;
    first.segments.insert(first.segments.end(), directed.segments.begin(), directed.segments.end());
}

void closeIfMet(Contour& contour, double tolerance) {
    if (contour.segments.size() < 2 || distance(contour.start, contour.end()) > tolerance)
        return;
    contour.closed = true;
    contour.segments.back().end = contour.start;
}

/// The ends of open contours that belong to no chain yet, found by their place.
class OpenEnds {
public:
    struct Found {
        size_t contour;
        bool atEnd; ///< the contour's end is what was found, so it is run through backwards
    };

    OpenEnds(const std::vector<Contour>& contours, double tolerance)
        : m_contours(contours)
        , m_tolerance(tolerance)
        , m_taken(contours.size(), false) {
        for (size_t i = 0; i < contours.size(); ++i) {
            if (contours[i].closed)
                continue;
            m_cells[cellOf(contours[i].start)].push_back({i, false});
            m_cells[cellOf(contours[i].end())].push_back({i, true});
        }
    }

    bool isTaken(size_t contour) const { return m_taken[contour]; }
    void take(size_t contour) { m_taken[contour] = true; }

    /// The nearest end within the tolerance; of equally near ones the first contour, and its start before its end.
    std::optional<Found> takeNearest(const QPointF& place) {
        std::optional<Found> best;
        double bestDistance = m_tolerance;
        const Cell middle = cellOf(place);
        for (qint64 dx = -1; dx <= 1; ++dx) {
            for (qint64 dy = -1; dy <= 1; ++dy) {
                const auto cell = m_cells.find({middle.first + dx, middle.second + dy});
                if (cell == m_cells.end())
                    continue;
                for (const Found& found : cell->second)
                    consider(found, place, best, bestDistance);
            }
        }
        if (best)
            take(best->contour);
        return best;
    }

private:
    using Cell = std::pair<qint64, qint64>;

    Cell cellOf(const QPointF& p) const {
        return {qint64(std::floor(p.x() / m_tolerance)), qint64(std::floor(p.y() / m_tolerance))};
    }

    void consider(const Found& found, const QPointF& place, std::optional<Found>& best, double& bestDistance) const {
        if (m_taken[found.contour])
            return;
        const Contour& contour = m_contours[found.contour];
        const double away = distance(place, found.atEnd ? contour.end() : contour.start);
        const auto rank = [](const Found& f) { return std::make_pair(f.contour, f.atEnd); };
        const bool nearer =
            best ? away < bestDistance || (away == bestDistance && rank(found) < rank(*best)) : away <= bestDistance;
        if (nearer) {
            best = found;
            bestDistance = away;
        }
    }

    const std::vector<Contour>& m_contours;
    double m_tolerance;
    std::vector<bool> m_taken;
    std::map<Cell, std::vector<Found>> m_cells;
};

} // namespace

Contour Contour::reversed() const {
    Contour turned;
    turned.start = end();
    turned.closed = closed;
    for (size_t i = segments.size(); i-- > 0;) {
        Segment segment = segments[i];
        std::swap(segment.handles[0], segment.handles[1]);
        segment.end = i == 0 ? start : segments[i - 1].end;
        turned.segments.push_back(segment);
    }
    return turned;
}

std::vector<Contour> contoursOf(const PathShape& path) {
    std::vector<Contour> contours;
    int next = 0;
    for (PathVerb verb : path.verbs) {
        switch (verb) {
        case PathVerb::Move:
            contours.push_back({path.points[next++], {}, false});
            break;
        case PathVerb::Line:
            contours.back().segments.push_back({false, {}, path.points[next++]});
            break;
        case PathVerb::Cubic:
            contours.back().segments.push_back(
                {true, {path.points[next], path.points[next + 1]}, path.points[next + 2]});
            next += 3;
            break;
        case PathVerb::Close:
            contours.back().closed = true;
            break;
        }
    }
    const auto empty = [](const Contour& contour) { return contour.segments.empty(); };
    contours.erase(std::remove_if(contours.begin(), contours.end(), empty), contours.end());
    return contours;
}

PathShape pathOf(const std::vector<Contour>& contours) {
    PathShape path;
    for (const Contour& contour : contours) {
        path.moveTo(contour.start);
        for (size_t i = 0; i < contour.segments.size(); ++i) {
            const Segment& segment = contour.segments[i];
            const bool last = i + 1 == contour.segments.size();
            if (segment.curved)
                path.cubicTo(segment.handles[0], segment.handles[1], segment.end);
            else if (!(last && i > 0 && contour.closed && segment.end == contour.start))
                path.lineTo(segment.end);
        }
        if (contour.closed)
            path.close();
    }
    return path;
}

std::vector<Contour> segmentsOf(const Contour& contour) {
    std::vector<Contour> pieces;
    QPointF start = contour.start;
    for (const Segment& segment : contour.segments) {
        pieces.push_back({start, {segment}, false});
        start = segment.end;
    }
    if (contour.closed && start != contour.start)
        pieces.push_back({start, {{false, {}, contour.start}}, false});
    return pieces;
}

std::vector<Contour> joinContours(std::vector<Contour> contours, double tolerance) {
    OpenEnds ends(contours, tolerance);
    std::vector<Contour> joined;
    for (size_t i = 0; i < contours.size(); ++i) {
        if (ends.isTaken(i))
            continue;
        ends.take(i);
        Contour chain = contours[i];
        bool turned = false;
        while (!chain.closed) {
            if (const auto next = ends.takeNearest(chain.end())) {
                append(chain, contours[next->contour], next->atEnd);
                continue;
            }
            closeIfMet(chain, tolerance);
            if (chain.closed || turned)
                break;
            // nothing more at its end: go on from its beginning
            chain = chain.reversed();
            turned = true;
        }
        // the chain keeps the direction of its first curve
        joined.push_back(turned && !chain.closed ? chain.reversed() : chain);
    }
    return joined;
}

Shape simplestShape(const PathShape& path) {
    if (path.contourCount() != 1 || path.verbs.contains(PathVerb::Cubic))
        return path;
    return PolylineShape{QPolygonF(path.points), path.verbs.last() == PathVerb::Close};
}

void addPolyline(PathShape& path, const QPolygonF& points, bool closed) {
    const bool repeats = closed && points.size() > 1 && points.first() == points.last();
    for (int i = 0; i < points.size() - (repeats ? 1 : 0); ++i) {
        if (i == 0)
            path.moveTo(points[i]);
        else
            path.lineTo(points[i]);
    }
    if (closed)
        path.close();
}

} // namespace sim
