// SPDX-License-Identifier: GPL-2.0-or-later
#include "simengine/document/contour.h"

#include <cmath>

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
    std::vector<Contour> joined;
    std::vector<bool> used(contours.size(), false);
    for (size_t i = 0; i < contours.size(); ++i) {
        if (used[i])
            continue;
        Contour chain = contours[i];
        bool turned = false;
        while (!chain.closed) {
            size_t best = contours.size();
            bool reverse = false;
            double bestDistance = tolerance;
            for (size_t j = i + 1; j < contours.size(); ++j) {
                if (used[j] || contours[j].closed)
                    continue;
                const double forward = distance(chain.end(), contours[j].start);
                const double backward = distance(chain.end(), contours[j].end());
                if (std::min(forward, backward) <= bestDistance &&
                    (best == contours.size() || std::min(forward, backward) < bestDistance)) {
                    best = j;
                    reverse = backward < forward;
                    bestDistance = std::min(forward, backward);
                }
            }
            if (best < contours.size()) {
                used[best] = true;
                append(chain, contours[best], reverse);
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
