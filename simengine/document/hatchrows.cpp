// SPDX-License-Identifier: GPL-2.0-or-later
#include "simengine/document/hatchrows.h"

#include "simengine/document/limits.h"

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

/// Rows that are counted; so many are never made, and a sum of one edge more stays a number.
constexpr double kMostRows = 1.0e15;

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

/// An edge and the row in which it begins.
struct Start {
    std::int64_t row = 0;
    std::uint32_t edge = 0;
};

/// An edge that crosses rows, from its lower end.
struct Edge {
    std::int64_t endRow = 0; ///< behind the last
    QPointF low;
    double slope = 0.0; ///< dx/dy
    double minX = 0.0;
    double maxX = 0.0;
    std::uint32_t contour = 0;
    std::uint32_t index = 0;
};

/// The edges that cross the current row, ordered by where they cross it. From one row to the next that order hardly
/// changes, so that putting it right again costs next to nothing.
class Sweep {
public:
    explicit Sweep(HatchRows const& rows) {
        m_edges.reserve(rows.edgeCount());
        m_starts.reserve(rows.edgeCount());
        for (std::size_t c = 0; c < rows.contours().size(); ++c)
            addContour(rows, c);
        // Where edges begin in one place, their order here decides which of them ends a stretch, and so where stretches
        // are joined: another way of sorting gives other joints.
        std::sort(m_starts.begin(), m_starts.end(), [](Start const& a, Start const& b) { return a.row < b.row; });
    }

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

    /// The row of a vertex is the same for both edges that meet in it, so that every row has an even number of
    /// crossings.
    void addContour(HatchRows const& rows, std::size_t c) {
        HatchContour const& contour = rows.contours()[c];
        if (contour.size() < 3)
            return;
        for (std::size_t i = 0; i < contour.size(); ++i) {
            const std::size_t next = i + 1 == contour.size() ? 0 : i + 1;
            const std::int64_t row = rows.rowOf(c, i);
            const std::int64_t nextRow = rows.rowOf(c, next);
            if (row == nextRow)
                continue;
            QPointF const& low = contour[row < nextRow ? i : next];
            QPointF const& high = contour[row < nextRow ? next : i];
            Edge edge;
            edge.endRow = std::max(row, nextRow);
            edge.low = low;
            edge.slope = (high.x() - low.x()) / (high.y() - low.y());
            edge.minX = std::min(low.x(), high.x());
            edge.maxX = std::max(low.x(), high.x());
            edge.contour = std::uint32_t(c);
            edge.index = std::uint32_t(i);
            m_starts.push_back({std::min(row, nextRow), std::uint32_t(m_edges.size())});
            m_edges.push_back(edge);
        }
    }

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

    std::vector<Edge> m_edges;
    std::vector<Start> m_starts;
    std::size_t m_next = 0;
    std::vector<Crossing> m_active;
};

} // namespace

std::int64_t RowGrid::rowAt(double y) const {
    const double row = std::ceil((y - first) / pitch);
    return row <= 0.0 ? 0 : row >= double(count) ? count : std::int64_t(row);
}

HatchRows::HatchRows(std::vector<HatchContour> const& contours, double pitch)
    : m_contours(contours)
    , m_grid(rowGridFor(contours, pitch)) {
    placeVertices();
}

void HatchRows::placeVertices() {
    std::size_t vertices = 0;
    m_firsts.reserve(m_contours.size());
    for (HatchContour const& contour : m_contours) {
        m_firsts.push_back(vertices);
        vertices += contour.size();
    }
    m_rows.reserve(vertices);
    for (HatchContour const& contour : m_contours) {
        const std::size_t first = m_rows.size();
        for (QPointF const& p : contour)
            m_rows.push_back(m_grid.rowAt(p.y()));
        if (contour.size() < 3)
            continue;
        std::int64_t last = m_rows.back();
        for (std::size_t i = first; i < m_rows.size(); ++i) {
            m_crossings = std::min<std::int64_t>(m_crossings + std::abs(m_rows[i] - last), kMostHatchCount);
            m_edges += m_rows[i] != last ? 1 : 0;
            last = m_rows[i];
        }
    }
}

void HatchRows::scan(std::function<void(std::vector<RowStretch> const&)> const& take,
                     Cancellation const* cancellation) const {
    if (m_grid.count <= 0)
        return;
    Sweep sweep(*this);
    std::vector<RowStretch> stretches;
    for (std::int64_t row = 0; row < m_grid.count && !sweep.isDone() && goesOn(cancellation); ++row) {
        row = sweep.nextRow(row);
        sweep.moveTo(row, m_grid.y(row));
        sweep.stretches(row, stretches);
        if (!stretches.empty())
            take(stretches);
    }
}

} // namespace sim
