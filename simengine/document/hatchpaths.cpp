// SPDX-License-Identifier: GPL-2.0-or-later
#include "simengine/document/hatchpaths.h"

#include <algorithm>
#include <optional>

namespace sim {

namespace {

/// Vertices of the outline between two rows that a joint may pass by.
constexpr int kJointVertices = 256;

/// How far a joint may run outside a hollow outline, as part of the pitch.
constexpr double kJointSlack = 0.1;

/// A vertex by the row above it.
struct PlacedVertex {
    std::int64_t row = 0;
    std::uint32_t contour = 0;
    std::uint32_t vertex = 0;
};

struct RowLess {
    bool operator()(PlacedVertex const& a, std::int64_t row) const { return a.row < row; }
    bool operator()(std::int64_t row, PlacedVertex const& a) const { return row < a.row; }
};

double side(QPointF const& a, QPointF const& b, QPointF const& p) {
    return (b.x() - a.x()) * (p.y() - a.y()) - (b.y() - a.y()) * (p.x() - a.x());
}

bool cross(QPointF const& a, QPointF const& b, QPointF const& c, QPointF const& d) {
    return side(a, b, c) * side(a, b, d) <= 0.0 && side(c, d, a) * side(c, d, b) <= 0.0;
}

/// Decides whether the end of one stretch may be joined to an end in the next row with the laser on: the outline leads
/// from the one to the other between the two rows, and nothing else of it comes in between. An outline that crosses the
/// joint without a corner between the rows would have cut one of the stretches.
class Joints {
public:
    explicit Joints(HatchRows const& rows)
        : m_rows(rows)
        , m_contours(rows.contours())
        , m_grid(rows.grid()) {
        for (std::size_t c = 0; c < m_contours.size(); ++c) {
            for (std::size_t v = 0; v < m_contours[c].size(); ++v)
                m_vertices.push_back({rows.rowOf(c, v), std::uint32_t(c), std::uint32_t(v)});
        }
        std::sort(m_vertices.begin(), m_vertices.end(),
                  [](PlacedVertex const& a, PlacedVertex const& b) { return a.row < b.row; });
    }

    /// `from` lies in row `row`, `to` in the one above; `rightSide`: the area lies to the left of both.
    bool follows(RowEnd const& from, RowEnd const& to, std::int64_t row, bool rightSide) const {
        if (from.contour != to.contour)
            return false;
        return walks(from, to, row, rightSide, 1) || (from.edge != to.edge && walks(from, to, row, rightSide, -1));
    }

private:
    /// Along the outline from one end to the other, between the two rows all the way and never inwards of the joint.
    bool walks(RowEnd const& from, RowEnd const& to, std::int64_t row, bool rightSide, int step) const {
        HatchContour const& contour = m_contours[from.contour];
        const std::size_t count = contour.size();
        std::size_t edge = from.edge;
        int passed = 0;
        for (; edge != to.edge; ++passed) {
            // forwards the edge's end comes next, backwards its start
            const std::size_t vertex = step > 0 ? (edge + 1) % count : edge;
            if (passed == kJointVertices || m_rows.rowOf(from.contour, vertex) != row + 1 ||
                dent(contour[vertex], from, to, row, rightSide))
                return false;
            edge = step > 0 ? (edge + 1) % count : (edge + count - 1) % count;
        }
        return isFree(from, to, row, step > 0 ? from.edge : to.edge, std::size_t(passed));
    }

    bool dent(QPointF const& p, RowEnd const& from, RowEnd const& to, std::int64_t row, bool rightSide) const {
        const double part = (p.y() - m_grid.y(row)) / m_grid.pitch;
        const double inwards = (from.x + part * (to.x - from.x) - p.x()) * (rightSide ? 1.0 : -1.0);
        return inwards > kJointSlack * m_grid.pitch;
    }

    /// No corner between the rows has an edge across the joint, but for the `passed` + 1 edges from `first` on along
    /// which the joint leads.
    bool isFree(RowEnd const& from, RowEnd const& to, std::int64_t row, std::size_t first, std::size_t passed) const {
        const QPointF a(from.x, m_grid.y(row));
        const QPointF b(to.x, m_grid.y(row + 1));
        const auto blocks = [&](std::uint32_t c, std::size_t edge) {
            HatchContour const& contour = m_contours[c];
            if (c == from.contour && (edge + contour.size() - first) % contour.size() <= passed)
                return false;
            return cross(a, b, contour[edge], contour[(edge + 1) % contour.size()]);
        };
        const auto [begin, end] = std::equal_range(m_vertices.begin(), m_vertices.end(), row + 1, RowLess());
        return std::none_of(begin, end, [&](PlacedVertex const& v) {
            const std::size_t count = m_contours[v.contour].size();
            return blocks(v.contour, v.vertex) || blocks(v.contour, (v.vertex + count - 1) % count);
        });
    }

    HatchRows const& m_rows;
    std::vector<HatchContour> const& m_contours;
    RowGrid const& m_grid;
    std::vector<PlacedVertex> m_vertices;
};

/// Lays stretches one behind the other into lines.
class Pen {
public:
    /// Without `joints` nothing is joined.
    Pen(RowGrid const& grid, Joints const* joints, PackedLines& lines)
        : m_grid(grid)
        , m_joints(joints)
        , m_lines(lines) {}

    void draw(RowStretch const& stretch, bool backwards, bool join) {
        const double y = m_grid.y(stretch.row);
        RowEnd const& begin = backwards ? stretch.right : stretch.left;
        RowEnd const& end = backwards ? stretch.left : stretch.right;
        if (m_open && !(join && m_joints && stretch.row == m_row + 1 && m_backwards != backwards &&
                        m_joints->follows(m_end, begin, m_row, backwards)))
            finish();
        m_lines.addPoint({begin.x, y});
        m_lines.addPoint({end.x, y});
        m_open = true;
        m_end = end;
        m_row = stretch.row;
        m_backwards = backwards;
    }

    void finish() {
        if (m_open)
            m_lines.endLine();
        m_open = false;
    }

private:
    RowGrid const& m_grid;
    Joints const* m_joints;
    PackedLines& m_lines;
    bool m_open = false;
    bool m_backwards = false;
    RowEnd m_end;
    std::int64_t m_row = 0;
};

void drawRows(HatchRows const& rows, FillType type, Pen& pen, Cancellation const* cancellation) {
    const auto draw = [&](std::vector<RowStretch> const& row) {
        if (type != FillType::OneWay && row.front().row % 2 != 0)
            std::for_each(row.rbegin(), row.rend(), [&](RowStretch const& s) { pen.draw(s, true, true); });
        else
            std::for_each(row.begin(), row.end(), [&](RowStretch const& s) { pen.draw(s, false, true); });
    };
    rows.scan(draw, cancellation);
    pen.finish();
}

bool overlap(RowStretch const& a, RowStretch const& b) {
    return a.left.x < b.right.x && b.left.x < a.right.x;
}

/// Puts each stretch to the section of the one below it, when both have no other neighbour; otherwise a new one begins.
class Sections {
public:
    void add(std::vector<RowStretch> const& row) {
        std::vector<std::size_t> numbers(row.size());
        const bool adjacent = !m_last.empty() && m_last.front().row + 1 == row.front().row;
        for (std::size_t i = 0; i < row.size(); ++i) {
            const std::size_t below = adjacent ? onlyNeighbour(row[i], m_last) : kNone;
            const bool goesOn = below != kNone && onlyNeighbour(m_last[below], row) == i;
            if (!goesOn)
                m_sections.emplace_back();
            numbers[i] = goesOn ? m_numbers[below] : m_sections.size() - 1;
            m_sections[numbers[i]].push_back(row[i]);
        }
        m_last = row;
        m_numbers = std::move(numbers);
    }

    std::vector<std::vector<RowStretch>> const& all() const { return m_sections; }

private:
    static constexpr std::size_t kNone = std::size_t(-1);

    /// The one stretch of a row that overlaps; the stretches stand from left to right.
    static std::size_t onlyNeighbour(RowStretch const& stretch, std::vector<RowStretch> const& row) {
        const auto first = std::partition_point(row.begin(), row.end(),
                                                [&](RowStretch const& s) { return s.right.x <= stretch.left.x; });
        if (first == row.end() || !overlap(*first, stretch))
            return kNone;
        if (first + 1 != row.end() && overlap(first[1], stretch))
            return kNone;
        return std::size_t(first - row.begin());
    }

    std::vector<std::vector<RowStretch>> m_sections;
    std::vector<RowStretch> m_last;
    std::vector<std::size_t> m_numbers; ///< sections of m_last
};

void drawSections(HatchRows const& rows, Pen& pen, Cancellation const* cancellation) {
    Sections sections;
    rows.scan([&](std::vector<RowStretch> const& row) { sections.add(row); }, cancellation);
    for (std::vector<RowStretch> const& section : sections.all()) {
        if (!goesOn(cancellation))
            break;
        for (std::size_t i = 0; i < section.size(); ++i)
            pen.draw(section[i], i % 2 != 0, i > 0);
    }
    pen.finish();
}

} // namespace

PackedLines hatchPaths(HatchRows const& rows, FillType type, Cancellation const* cancellation) {
    PackedLines lines;
    const auto stretches = std::size_t(rows.stretchCount());
    lines.reserve(stretches, 2 * stretches);
    std::optional<Joints> joints;
    if (type == FillType::Serpentine || type == FillType::Sections)
        joints.emplace(rows);
    Pen pen(rows.grid(), joints ? &*joints : nullptr, lines);
    if (type == FillType::Sections)
        drawSections(rows, pen, cancellation);
    else
        drawRows(rows, type, pen, cancellation);
    return lines;
}

} // namespace sim
