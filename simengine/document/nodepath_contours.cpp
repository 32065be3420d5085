// SPDX-License-Identifier: GPL-2.0-or-later
// Edits of a path's nodes that change its contours, and the places on it.
#include "simengine/document/limits.h"
#include "simengine/document/nodepath.h"

#include <algorithm>
#include <cmath>

namespace sim {

namespace {

double distance(const QPointF& a, const QPointF& b) {
    return std::hypot(a.x() - b.x(), a.y() - b.y());
}

/// The stretch from `from` to `to`, between which nodes were taken out: a curve where one of them was.
void joinOver(PathNode& from, PathNode& to, bool curved, bool keepsOut, bool keepsIn) {
    from.curved = curved;
    if (!curved)
        return;
    if (!keepsOut)
        from.out = from.at + (to.at - from.at) / 3.0;
    if (!keepsIn)
        to.in = to.at - (to.at - from.at) / 3.0;
}

/// What is left of a contour; nothing when it draws no more.
std::optional<NodeContour> withoutSelected(const NodeContour& contour) {
    std::vector<int> kept;
    for (int i = 0; i < contour.count(); ++i) {
        if (!contour.nodes[size_t(i)].selected)
            kept.push_back(i);
    }
    if (int(kept.size()) == contour.count())
        return contour;
    if (kept.size() < 2)
        return std::nullopt;
    NodeContour left;
    left.closed = contour.closed;
    for (int i : kept)
        left.nodes.push_back(contour.nodes[size_t(i)]);
    for (size_t k = 0; k < kept.size(); ++k) {
        const bool last = k + 1 == kept.size();
        if (last && !contour.closed)
            break;
        const int from = kept[k];
        const int to = kept[last ? 0 : k + 1];
        if (contour.next(from) == to)
            continue;
        bool curved = false;
        for (int i = from; i != to; i = contour.next(i))
            curved = curved || contour.nodes[size_t(i)].curved;
        joinOver(left.nodes[k], left.nodes[last ? 0 : k + 1], curved, contour.nodes[size_t(from)].curved,
                 contour.curvedBefore(to));
    }
    if (!left.closed)
        left.nodes.back().curved = false;
    dropLostKinds(left);
    return left;
}

/// An open contour from the selected node on that it is given, once round.
void openAt(NodeContour& contour, int node) {
    std::rotate(contour.nodes.begin(), contour.nodes.begin() + node, contour.nodes.end());
    PathNode end = contour.nodes.front();
    end.curved = false;
    contour.nodes.push_back(end);
    contour.closed = false;
}

int firstSelected(const NodeContour& contour) {
    const auto found =
        std::find_if(contour.nodes.begin(), contour.nodes.end(), [](const PathNode& node) { return node.selected; });
    return found == contour.nodes.end() ? -1 : int(found - contour.nodes.begin());
}

bool partsAt(const NodeContour& contour, int i) {
    return contour.nodes[size_t(i)].selected && i > 0 && i + 1 < contour.count();
}

/// The segment that an opened contour loses.
int lostSegment(const NodeContour& contour) {
    int found = -1;
    for (int i = 0; i < contour.count(); ++i) {
        if (contour.nodes[size_t(i)].selected && contour.nodes[size_t(contour.next(i))].selected) {
            if (found >= 0)
                return contour.count() - 1;
            found = i;
        }
    }
    return found >= 0 ? found : contour.count() - 1;
}

void close(NodeContour& contour) {
    PathNode& first = contour.nodes.front();
    const PathNode& last = contour.nodes.back();
    if (contour.count() > 2 && distance(first.at, last.at) <= kJoinTolerance) {
        first.in = last.in + (first.at - last.at);
        first.selected = first.selected || last.selected;
        contour.nodes.pop_back();
    } else {
        contour.nodes.back().curved = false;
    }
    contour.closed = true;
}

void open(NodeContour& contour) {
    const int lost = lostSegment(contour);
    std::rotate(contour.nodes.begin(), contour.nodes.begin() + contour.next(lost), contour.nodes.end());
    contour.nodes.back().curved = false;
    contour.closed = false;
}

/// The parameter of the place on a segment that is nearest to `place`.
double nearestParameter(const CubicPoints& p, const QPointF& place) {
    constexpr int kSteps = 24;
    double best = 0.0;
    double bestDistance = distance(p.p0, place);
    for (int i = 1; i <= kSteps; ++i) {
        const double t = double(i) / kSteps;
        const double away = distance(p.at(t), place);
        if (away < bestDistance) {
            bestDistance = away;
            best = t;
        }
    }
    double low = std::max(0.0, best - 1.0 / kSteps);
    double high = std::min(1.0, best + 1.0 / kSteps);
    constexpr int kHalvings = 40;
    for (int i = 0; i < kHalvings; ++i) {
        const double third = (high - low) / 3.0;
        if (distance(p.at(low + third), place) < distance(p.at(high - third), place))
            high -= third;
        else
            low += third;
    }
    return (low + high) / 2.0;
}

/// The place lies within `reach` of the box around the segment's points, in which the segment lies.
bool mayReach(const CubicPoints& p, const QPointF& place, double reach) {
    const auto [lowX, highX] = std::minmax({p.p0.x(), p.p1.x(), p.p2.x(), p.p3.x()});
    const auto [lowY, highY] = std::minmax({p.p0.y(), p.p1.y(), p.p2.y(), p.p3.y()});
    return place.x() >= lowX - reach && place.x() <= highX + reach && place.y() >= lowY - reach &&
           place.y() <= highY + reach;
}

} // namespace

bool NodePath::removeSelected() {
    if (!anySelected())
        return false;
    std::vector<NodeContour> left;
    for (const NodeContour& contour : m_contours) {
        if (std::optional<NodeContour> rest = withoutSelected(contour))
            left.push_back(std::move(*rest));
    }
    m_contours = std::move(left);
    return true;
}

bool NodePath::breakSelected() {
    if (!canBreak())
        return false;
    std::vector<NodeContour> parted;
    for (NodeContour& contour : m_contours) {
        const int first = firstSelected(contour);
        if (contour.closed && first >= 0)
            openAt(contour, first);
        NodeContour part;
        for (int i = 0; i < contour.count(); ++i) {
            part.nodes.push_back(contour.nodes[size_t(i)]);
            if (!partsAt(contour, i))
                continue;
            part.nodes.back().curved = false;
            parted.push_back(std::move(part));
            part = NodeContour();
            part.nodes.push_back(contour.nodes[size_t(i)]);
        }
        part.closed = contour.closed;
        parted.push_back(std::move(part));
    }
    m_contours = std::move(parted);
    return true;
}

bool NodePath::setClosed(bool closed) {
    if (!(closed ? canClose() : canOpen()))
        return false;
    const bool all = !anySelected();
    for (NodeContour& contour : m_contours) {
        const bool meant = all || firstSelected(contour) >= 0;
        if (!meant || contour.closed == closed || contour.count() < 2)
            continue;
        if (closed)
            close(contour);
        else
            open(contour);
        dropLostKinds(contour);
    }
    return true;
}

bool NodePath::canInsertBetween() const {
    return std::any_of(m_contours.begin(), m_contours.end(), [](const NodeContour& contour) {
        for (int i = 0; i < contour.segmentCount(); ++i) {
            if (contour.nodes[size_t(i)].selected && contour.nodes[size_t(contour.next(i))].selected)
                return true;
        }
        return false;
    });
}

bool NodePath::canBreak() const {
    return std::any_of(m_contours.begin(), m_contours.end(), [](const NodeContour& contour) {
        if (contour.closed)
            return firstSelected(contour) >= 0;
        for (int i = 1; i + 1 < contour.count(); ++i) {
            if (contour.nodes[size_t(i)].selected)
                return true;
        }
        return false;
    });
}

bool NodePath::canClose() const {
    const bool all = !anySelected();
    return std::any_of(m_contours.begin(), m_contours.end(), [all](const NodeContour& contour) {
        return !contour.closed && contour.count() > 1 && (all || firstSelected(contour) >= 0);
    });
}

bool NodePath::canOpen() const {
    const bool all = !anySelected();
    return std::any_of(m_contours.begin(), m_contours.end(), [all](const NodeContour& contour) {
        return contour.closed && contour.count() > 1 && (all || firstSelected(contour) >= 0);
    });
}

std::optional<NodeRef> NodePath::nodeAt(const QPointF& place, double reach) const {
    std::optional<NodeRef> best;
    double bestDistance = reach;
    bool bestSelected = false;
    for (size_t c = 0; c < m_contours.size(); ++c) {
        const std::vector<PathNode>& nodes = m_contours[c].nodes;
        for (size_t i = 0; i < nodes.size(); ++i) {
            const double dx = std::abs(nodes[i].at.x() - place.x());
            const double dy = std::abs(nodes[i].at.y() - place.y());
            if (dx > bestDistance || dy > bestDistance)
                continue;
            const double away = std::hypot(dx, dy);
            if (away < bestDistance || (away == bestDistance && (!best || (nodes[i].selected && !bestSelected)))) {
                best = NodeRef{int(c), int(i)};
                bestDistance = away;
                bestSelected = nodes[i].selected;
            }
        }
    }
    return best;
}

std::optional<SegmentPlace> NodePath::segmentAt(const QPointF& place, double reach) const {
    std::optional<SegmentPlace> best;
    double bestDistance = reach;
    for (size_t c = 0; c < m_contours.size(); ++c) {
        for (int i = 0; i < m_contours[c].segmentCount(); ++i) {
            const CubicPoints p = segmentPoints(m_contours[c], i);
            if (!mayReach(p, place, bestDistance))
                continue;
            const double t = nearestParameter(p, place);
            const QPointF at = p.at(t);
            if (distance(at, place) <= bestDistance) {
                bestDistance = distance(at, place);
                best = SegmentPlace{{int(c), i}, t, at};
            }
        }
    }
    return best;
}

} // namespace sim
