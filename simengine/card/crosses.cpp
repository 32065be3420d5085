// SPDX-License-Identifier: GPL-2.0-or-later
#include "simengine/card/crosses.h"

#include "simengine/card/headmap.h"
#include "simengine/card/markedrows.h"

#include <cmath>
#include <cstdint>
#include <map>
#include <optional>
#include <unordered_map>
#include <unordered_set>
#include <utility>

namespace sim {

namespace {

/// Commanded places that differ by less are one, mm.
constexpr double kSame = 1e-3;

/// A straight stroke with the laser: commanded ends, and rows of the trace on it.
struct Arm {
    Point from;
    Point to;
    std::size_t first; ///< the row of its jump
    std::size_t last;

    Point middle() const { return {(from.x + to.x) / 2.0, (from.y + to.y) / 2.0}; }
    double length() const { return distanceMm(from, to); }
};

bool isOnLine(const Point& a, const Point& b, const Point& p) {
    const double length = distanceMm(a, b);
    const double off = (b.x - a.x) * (p.y - a.y) - (b.y - a.y) * (p.x - a.x);
    const double along = (b.x - a.x) * (p.x - a.x) + (b.y - a.y) * (p.y - a.y);
    return std::fabs(off) <= kSame * length && along >= -kSame * length && along <= length * (length + kSame);
}

using Key = std::pair<long long, long long>;

Key keyOf(const Point& p) {
    return {std::llround(p.x / kSame), std::llround(p.y / kSame)};
}

/// Strokes of the trace; a stroke is a run of laser rows and the row before it.
template<typename Take>
void forEachStroke(const TraceSnapshot& rows, Take take) {
    for (std::size_t i = 1; i < rows.size();) {
        if (!rows[i].laser) {
            ++i;
            continue;
        }
        const std::size_t first = i - 1;
        while (i < rows.size() && rows[i].laser)
            ++i;
        take(first, i - 1);
    }
}

bool isStraight(const TraceSnapshot& rows, std::size_t first, std::size_t last) {
    for (std::size_t i = first + 1; i < last; ++i) {
        if (!isOnLine(rows[first].at, rows[last].at, rows[i].at))
            return false;
    }
    return distanceMm(rows[first].at, rows[last].at) > kSame;
}

bool isCross(const Arm& a, const Arm& b) {
    const double dot = (a.to.x - a.from.x) * (b.to.x - b.from.x) + (a.to.y - a.from.y) * (b.to.y - b.from.y);
    return std::fabs(dot) <= 1e-3 * a.length() * b.length() && distanceMm(a.middle(), b.middle()) <= 2.0 * kSame;
}

std::vector<Point> markedLine(const TraceSnapshot& rows, const Arm& arm) {
    std::vector<Point> line;
    forEachMarked(rows, arm.first, arm.last + 1, [&](const TraceRow& row, const Point&, bool vertex) {
        // What comes before the first vertex is the jump to it.
        if (vertex || !line.empty())
            line.push_back(row.at);
    });
    return line;
}

std::optional<Point> crossing(const Point& a, const Point& b, const Point& c, const Point& d) {
    const Point u{b.x - a.x, b.y - a.y};
    const Point v{d.x - c.x, d.y - c.y};
    const double det = u.x * v.y - u.y * v.x;
    if (det == 0.0)
        return std::nullopt;
    const double s = ((c.x - a.x) * v.y - (c.y - a.y) * v.x) / det;
    const double t = ((c.x - a.x) * u.y - (c.y - a.y) * u.x) / det;
    constexpr double kSlack = 1e-9;
    if (s < -kSlack || s > 1.0 + kSlack || t < -kSlack || t > 1.0 + kSlack)
        return std::nullopt;
    return Point{a.x + u.x * s, a.y + u.y * s};
}

std::optional<Point> crossing(const std::vector<Point>& one, const std::vector<Point>& other) {
    for (std::size_t i = 1; i < one.size(); ++i) {
        for (std::size_t j = 1; j < other.size(); ++j) {
            if (const auto point = crossing(one[i - 1], one[i], other[j - 1], other[j]))
                return point;
        }
    }
    return std::nullopt;
}

/// The 3 x 3 keys round one: rounding may put equal places into neighbouring keys.
template<typename Take>
void forEachNear(const Key& key, Take take) {
    for (long long dx = -1; dx <= 1; ++dx) {
        for (long long dy = -1; dy <= 1; ++dy)
            take(Key{key.first + dx, key.second + dy});
    }
}

struct KeyHash {
    std::size_t operator()(const Key& key) const {
        return static_cast<std::size_t>(
            mixedKey(static_cast<std::uint64_t>(key.first), static_cast<std::uint64_t>(key.second)));
    }
};

/// Directions of arms are told apart by steps of 0.1 mrad over half a turn.
constexpr int kHalfTurn = 31416;
/// Right angles are good to this many steps; the last one makes up for the rounding.
constexpr int kSlackSteps = 11;

int stepOf(const Arm& arm) {
    constexpr double kPi = 3.14159265358979323846;
    const double angle = std::atan2(arm.to.y - arm.from.y, arm.to.x - arm.from.x);
    return (static_cast<int>(std::floor(angle / kPi * kHalfTurn)) + 2 * kHalfTurn) % kHalfTurn;
}

/// Takes the arms in the order of marking. Of arms over one another the first is kept, so that a line marked a million
/// times, or a star of lines through one place, costs little more for each than a single one.
class CrossFinder {
public:
    explicit CrossFinder(const TraceSnapshot& rows)
        : m_rows(rows) {}

    std::vector<Point> find() {
        forEachStroke(m_rows, [this](std::size_t first, std::size_t last) {
            if (isStraight(m_rows, first, last))
                take({m_rows[first].at, m_rows[last].at, first, last});
        });
        std::vector<Point> places;
        for (const auto& [order, place] : m_found)
            places.push_back(place);
        return places;
    }

private:
    using Singles = std::map<int, Arm>; ///< by direction

    void take(const Arm& arm) {
        const Key key = keyOf(arm.middle());
        if (isDone(key))
            return;
        const std::optional<Arm> partner = partnerOf(arm, key);
        if (!partner) {
            m_single[key].emplace(stepOf(arm), arm);
            return;
        }
        if (const auto place = crossing(markedLine(m_rows, *partner), markedLine(m_rows, arm)))
            m_found.emplace(partner->first, *place);
        m_done.insert(key);
    }

    bool isDone(const Key& key) const {
        bool done = false;
        forEachNear(key, [&](const Key& near) { done = done || m_done.count(near) > 0; });
        return done;
    }

    /// The one that was marked first.
    std::optional<Arm> partnerOf(const Arm& arm, const Key& key) const {
        std::optional<Arm> partner;
        const int across = (stepOf(arm) + kHalfTurn / 2) % kHalfTurn;
        forEachNear(key, [&](const Key& near) {
            const auto singles = m_single.find(near);
            if (singles == m_single.end())
                return;
            for (const int middle : {across - kHalfTurn, across, across + kHalfTurn}) {
                const auto end = singles->second.upper_bound(middle + kSlackSteps);
                for (auto it = singles->second.lower_bound(middle - kSlackSteps); it != end; ++it) {
                    if (isCross(it->second, arm) && (!partner || it->second.first < partner->first))
                        partner = it->second;
                }
            }
        });
        return partner;
    }

    const TraceSnapshot& m_rows;
    std::unordered_map<Key, Singles, KeyHash> m_single; ///< arms without a partner so far, by their middle
    std::unordered_set<Key, KeyHash> m_done;            ///< middles of the crosses found
    std::map<std::size_t, Point> m_found;               ///< by the row of the first arm
};

/// On the fly a point becomes a short line when the head does not follow the product exactly; its middle is measured.
Point markedPoint(const TraceSnapshot& rows, std::size_t first, std::size_t last) {
    return between(markedVertex(rows, rows[first]), markedVertex(rows, rows[last]), 0.5);
}

std::vector<Point> pointsOf(const TraceSnapshot& rows) {
    std::vector<Point> points;
    std::unordered_set<Key, KeyHash> seen;
    forEachStroke(rows, [&](std::size_t first, std::size_t last) {
        const Point at = rows[first].at;
        const auto still = [&](std::size_t i) { return rows[i].at == at; };
        for (std::size_t i = first; i <= last; ++i) {
            if (!still(i))
                return;
        }
        if (seen.insert(keyOf(at)).second)
            points.push_back(markedPoint(rows, first, last));
    });
    return points;
}

} // namespace

std::vector<Point> markedFigures(const TraceSnapshot& rows) {
    std::vector<Point> crosses = CrossFinder(rows).find();
    return crosses.empty() ? pointsOf(rows) : crosses;
}

} // namespace sim
