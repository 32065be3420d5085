// SPDX-License-Identifier: GPL-2.0-or-later
#include "simengine/document/jumpsort.h"

#include "simengine/document/joblines.h"
#include "simengine/document/limits.h"

#include <cmath>

namespace sim {

namespace {

struct Ends {
    QPointF first;
    QPointF last;
};

/// Entry points in square cells, so that the nearest one is found without a look at all of them.
class PointGrid {
public:
    PointGrid(const std::vector<Ends>& ends, const std::vector<int>& members)
        : m_ends(ends) {
        Box box;
        for (int index : members)
            box.add(ends[size_t(index)].first);
        m_origin = {box.minX, box.minY};
        const double extent = std::max({box.width(), box.height(), kJoinTolerance});
        m_side = std::max(1, int(std::sqrt(double(members.size()) / 2.0)));
        m_cell = extent / m_side;
        m_cells.resize(size_t(m_side) * size_t(m_side));
        for (int index : members)
            cellAt(column(ends[size_t(index)].first.x()), row(ends[size_t(index)].first.y())).push_back(index);
    }

    /// Takes out the member nearest to the place; there must be one left.
    int takeNearest(const QPointF& place) {
        const int cx = column(place.x());
        const int cy = row(place.y());
        int best = -1;
        double bestDistance = 0.0;
        for (int ring = 0; ring < m_side; ++ring) {
            // all that lies in this ring or beyond is at least this far away
            if (best >= 0 && ring > 0 && bestDistance < ringDistance(place, cx, cy, ring))
                break;
            searchRing(place, cx, cy, ring, best, bestDistance);
        }
        std::vector<int>& cell = cellAt(column(m_ends[size_t(best)].first.x()), row(m_ends[size_t(best)].first.y()));
        cell.erase(std::find(cell.begin(), cell.end(), best));
        return best;
    }

private:
    int column(double x) const { return clamped((x - m_origin.x()) / m_cell); }
    int row(double y) const { return clamped((y - m_origin.y()) / m_cell); }
    int clamped(double cell) const { return int(std::clamp(cell, 0.0, double(m_side - 1))); }
    std::vector<int>& cellAt(int x, int y) { return m_cells[size_t(y) * size_t(m_side) + size_t(x)]; }

    /// Least distance from the place to the cells that are `ring` or more columns or rows away from its own.
    double ringDistance(const QPointF& place, int cx, int cy, int ring) const {
        double distance = std::numeric_limits<double>::infinity();
        if (cx - ring >= 0)
            distance = std::min(distance, place.x() - (m_origin.x() + (cx - ring + 1) * m_cell));
        if (cx + ring < m_side)
            distance = std::min(distance, m_origin.x() + (cx + ring) * m_cell - place.x());
        if (cy - ring >= 0)
            distance = std::min(distance, place.y() - (m_origin.y() + (cy - ring + 1) * m_cell));
        if (cy + ring < m_side)
            distance = std::min(distance, m_origin.y() + (cy + ring) * m_cell - place.y());
        return distance;
    }

    void searchRing(const QPointF& place, int cx, int cy, int ring, int& best, double& bestDistance) {
        for (int y = std::max(0, cy - ring); y <= std::min(m_side - 1, cy + ring); ++y) {
            const bool edgeRow = y == cy - ring || y == cy + ring;
            const int step = edgeRow || ring == 0 ? 1 : 2 * ring;
            for (int x = cx - ring; x <= cx + ring; x += step) {
                if (x >= 0 && x < m_side)
                    searchCell(place, cellAt(x, y), best, bestDistance);
            }
        }
    }

    void searchCell(const QPointF& place, const std::vector<int>& cell, int& best, double& bestDistance) const {
        for (int index : cell) {
            const QPointF off = m_ends[size_t(index)].first - place;
            const double distance = std::hypot(off.x(), off.y());
            if (best < 0 || distance < bestDistance || (distance == bestDistance && index < best)) {
                best = index;
                bestDistance = distance;
            }
        }
    }

    const std::vector<Ends>& m_ends;
    QPointF m_origin;
    double m_cell = 1.0;
    int m_side = 1;
    std::vector<std::vector<int>> m_cells;
};

/// Length of all jumps of an order of the marked objects, mm.
double jumpLength(const std::vector<Ends>& ends, const std::vector<int>& order, const QPointF& start) {
    double length = 0.0;
    QPointF place = start;
    for (int index : order) {
        const QPointF jump = ends[size_t(index)].first - place;
        length += std::hypot(jump.x(), jump.y());
        place = ends[size_t(index)].last;
    }
    return length;
}

} // namespace

std::vector<int> jumpOrder(const ObjectList& objects, const QPointF& start) {
    std::vector<Ends> ends(objects.size());
    std::vector<int> marked;
    std::vector<int> silent;
    for (size_t i = 0; i < objects.size(); ++i) {
        const std::vector<JobLine> lines = jobLines(*objects[i]);
        if (lines.empty()) {
            silent.push_back(int(i));
        } else {
            ends[i] = {lines.front().points.first(), lines.back().points.last()};
            marked.push_back(int(i));
        }
    }
    std::vector<int> order;
    if (!marked.empty()) {
        PointGrid grid(ends, marked);
        QPointF place = start;
        for (size_t i = 0; i < marked.size(); ++i) {
            order.push_back(grid.takeNearest(place));
            place = ends[size_t(order.back())].last;
        }
        // Always going to what is nearest can leave far ones for the end: a better order than that is not spoilt.
        if (jumpLength(ends, marked, start) <= jumpLength(ends, order, start))
            order = marked;
    }
    order.insert(order.end(), silent.begin(), silent.end());
    return order;
}

} // namespace sim
