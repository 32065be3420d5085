// SPDX-License-Identifier: GPL-2.0-or-later
#include "simengine/document/hatchrows.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace sim {

namespace {

/// Edges that begin in one row from which on sorting is quicker than putting each in its place.
constexpr std::size_t kManyNewEdges = 32;

/// A stretch shorter than this marks nothing, mm.
constexpr double kShortestStretch = 1.0e-6;

/// Part of a pitch by which the height of an area may fall short of a further row, so that 10 mm at 0.1 mm are 100
/// rows.
constexpr double kRowSlack = 1.0e-9;

/// Rows that are counted; so many are never made.
constexpr double kMostRows = 1.0e15;

/// An edge that crosses rows, lower end first.
struct Edge {
    std::int64_t firstRow = 0;
    std::int64_t endRow = 0; ///< behind the last
    QPointF low;
    double slope = 0.0; ///< dx/dy
    double minX = 0.0;
    double maxX = 0.0;
    std::uint32_t contour = 0;
    std::uint32_t index = 0;
};

/// Each vertex is put to its row once, so that the edges that meet in it agree and every row has an even number of
/// crossings.
std::vector<Edge> crossingEdges(std::vector<HatchContour> const& contours, RowGrid const& grid) {
    std::vector<Edge> edges;
    std::vector<std::int64_t> rows;
    for (std::size_t c = 0; c < contours.size(); ++c) {
        HatchContour const& contour = contours[c];
        if (contour.size() < 3)
            continue;
        rows.resize(contour.size());
        std::transform(contour.begin(), contour.end(), rows.begin(),
                       [&grid](QPointF const& p) { return grid.rowAt(p.y()); });
        for (std::size_t i = 0; i < contour.size(); ++i) {
            const std::size_t next = i + 1 == contour.size() ? 0 : i + 1;
            if (rows[i] == rows[next])
                continue;
            const bool up = rows[i] < rows[next];
            QPointF const& low = contour[up ? i : next];
            QPointF const& high = contour[up ? next : i];
            Edge edge;
            edge.firstRow = std::min(rows[i], rows[next]);
            edge.endRow = std::max(rows[i], rows[next]);
            edge.low = low;
            edge.slope = (high.x() - low.x()) / (high.y() - low.y());
            edge.minX = std::min(low.x(), high.x());
            edge.maxX = std::max(low.x(), high.x());
            edge.contour = std::uint32_t(c);
            edge.index = std::uint32_t(i);
            edges.push_back(edge);
        }
    }
    return edges;
}

struct Start {
    std::int64_t row = 0;
    std::uint32_t edge = 0;
};

/// The edges by the row in which they begin.
std::vector<Start> startsOf(std::vector<Edge> const& edges) {
    std::vector<Start> starts(edges.size());
    for (std::size_t i = 0; i < edges.size(); ++i)
        starts[i] = {edges[i].firstRow, std::uint32_t(i)};
    std::sort(starts.begin(), starts.end(), [](Start const& a, Start const& b) { return a.row < b.row; });
    return starts;
}

/// The edges that cross the current row, ordered by where they cross it. From one row to the next that order hardly
/// changes, so that putting it right again costs next to nothing.
class Sweep {
public:
    explicit Sweep(std::vector<Edge> const& edges)
        : m_edges(edges)
        , m_starts(startsOf(edges)) {}

    bool isDone() const { return m_active.empty() && m_next == m_starts.size(); }
    /// The next row that something crosses, from `row` on.
    std::int64_t nextRow(std::int64_t row) const {
        return m_active.empty() ? std::max(row, m_starts[m_next].row) : row;
    }

    void moveTo(std::int64_t row, double y) {
        m_active.erase(std::remove_if(m_active.begin(), m_active.end(),
                                      [&](Crossing const& c) { return m_edges[c.edge].endRow <= row; }),
                       m_active.end());
        const std::size_t kept = m_active.size();
        for (; m_next < m_starts.size() && m_starts[m_next].row <= row; ++m_next)
            m_active.push_back({0.0, m_starts[m_next].edge});
        for (Crossing& crossing : m_active) {
            Edge const& edge = m_edges[crossing.edge];
            const double x = edge.low.x() + (y - edge.low.y()) * edge.slope;
            crossing.x = std::min(std::max(x, edge.minX), edge.maxX);
        }
        if (m_active.size() - kept > kManyNewEdges)
            std::sort(m_active.begin(), m_active.end(), [](Crossing const& a, Crossing const& b) { return a.x < b.x; });
        else
            order();
    }

    /// Replaces `stretches` by those of the row.
    void stretches(std::int64_t row, std::vector<RowStretch>& stretches) const {
        stretches.clear();
        for (std::size_t i = 0; i + 1 < m_active.size(); i += 2) {
            if (m_active[i + 1].x - m_active[i].x >= kShortestStretch)
                stretches.push_back({row, end(m_active[i]), end(m_active[i + 1])});
        }
    }

private:
    struct Crossing {
        double x = 0.0;
        std::uint32_t edge = 0;
    };

    RowEnd end(Crossing const& crossing) const {
        Edge const& edge = m_edges[crossing.edge];
        return {crossing.x, edge.contour, edge.index};
    }

    void order() {
        for (std::size_t i = 1; i < m_active.size(); ++i) {
            const Crossing moved = m_active[i];
            std::size_t to = i;
            for (; to > 0 && m_active[to - 1].x > moved.x; --to)
                m_active[to] = m_active[to - 1];
            m_active[to] = moved;
        }
    }

    std::vector<Edge> const& m_edges;
    std::vector<Start> m_starts;
    std::size_t m_next = 0;
    std::vector<Crossing> m_active;
};

} // namespace

std::int64_t RowGrid::rowAt(double y) const {
    const double row = std::ceil((y - first) / pitch);
    return row <= 0.0 ? 0 : row >= double(count) ? count : std::int64_t(row);
}

RowGrid rowGridFor(std::vector<HatchContour> const& contours, double pitch) {
    double low = std::numeric_limits<double>::infinity();
    double high = -low;
    for (HatchContour const& contour : contours) {
        for (QPointF const& p : contour) {
            low = std::min(low, p.y());
            high = std::max(high, p.y());
        }
    }
    RowGrid grid;
    grid.pitch = pitch;
    if (!(high > low) || !(pitch > 0.0))
        return grid;
    const double rows = std::min(std::floor((high - low) / pitch + kRowSlack), kMostRows);
    grid.count = std::max<std::int64_t>(1, std::int64_t(rows));
    grid.first = (low + high - pitch * double(grid.count - 1)) / 2.0;
    return grid;
}

std::int64_t countRowStretches(std::vector<HatchContour> const& contours, RowGrid const& grid) {
    std::int64_t crossings = 0;
    for (HatchContour const& contour : contours) {
        if (contour.size() < 3)
            continue;
        std::int64_t last = grid.rowAt(contour.back().y());
        for (QPointF const& p : contour) {
            const std::int64_t row = grid.rowAt(p.y());
            crossings += std::abs(row - last);
            last = row;
        }
    }
    return crossings / 2;
}

void scanRows(std::vector<HatchContour> const& contours, RowGrid const& grid,
              std::function<void(std::vector<RowStretch> const&)> const& take) {
    if (grid.count <= 0)
        return;
    const std::vector<Edge> edges = crossingEdges(contours, grid);
    Sweep sweep(edges);
    std::vector<RowStretch> stretches;
    for (std::int64_t row = 0; row < grid.count && !sweep.isDone(); ++row) {
        row = sweep.nextRow(row);
        sweep.moveTo(row, grid.y(row));
        sweep.stretches(row, stretches);
        if (!stretches.empty())
            take(stretches);
    }
}

} // namespace sim
