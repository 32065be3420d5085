// SPDX-License-Identifier: GPL-2.0-or-later
#include "simengine/document/pattern.h"

#include <cmath>

namespace sim {

namespace {

/// Points of one sine period.
constexpr int kSinePoints = 32;

/// One knot of a period: its place within the period and its offset in amplitudes.
struct Knot {
    double place;
    double offset;
};

std::vector<Knot> knotsOf(PatternType type) {
    switch (type) {
    case PatternType::Zigzag:
        return {{0.25, 1.0}, {0.75, -1.0}};
    case PatternType::Square:
        return {{0.0, 1.0}, {0.5, 1.0}, {0.5, -1.0}, {1.0, -1.0}};
    case PatternType::Sine:
        break;
    }
    std::vector<Knot> knots;
    for (int i = 0; i < kSinePoints; ++i) {
        const double place = double(i) / kSinePoints;
        knots.push_back({place, std::sin(2.0 * M_PI * place)});
    }
    return knots;
}

/// Walks a polyline and gives places and left-hand normals by length.
class Walker {
public:
    explicit Walker(const QPolygonF& points)
        : m_points(points) {}

    /// The place at `length` mm along, moved `offset` mm to the left. Lengths must not decrease from call to call.
    QPointF at(double length, double offset) {
        while (m_index + 2 < m_points.size() && m_passed + segmentLength() < length) {
            m_passed += segmentLength();
            ++m_index;
        }
        const QPointF a = m_points[m_index];
        const QPointF d = m_points[m_index + 1] - a;
        const double own = segmentLength();
        if (own == 0.0)
            return a;
        const QPointF along = d / own;
        const double t = std::min(std::max(0.0, length - m_passed), own);
        return a + along * t + QPointF(-along.y(), along.x()) * offset;
    }

private:
    double segmentLength() const {
        const QPointF d = m_points[m_index + 1] - m_points[m_index];
        return std::hypot(d.x(), d.y());
    }

    const QPolygonF& m_points;
    int m_index = 0;
    double m_passed = 0.0;
};

double periodsOf(const FlatLine& line, double length, double pitch) {
    return line.closed ? std::max(1.0, std::round(length / pitch)) : length / pitch;
}

} // namespace

bool isUsablePattern(const DissimilationParam& param) {
    return param.Type >= int(PatternType::Zigzag) && param.Type <= int(PatternType::Square) &&
           std::isfinite(param.Amplitude) && std::isfinite(param.Pitch) && param.Pitch > 0.0;
}

qint64 patternPointCount(const FlatLine& line, const DissimilationParam& param) {
    const double length = line.points.size() > 1 ? polylineLength(line.points) : 0.0;
    if (length < param.Pitch / 2.0)
        return 0;
    const double points = std::ceil(length / param.Pitch + 1.0) * double(knotsOf(PatternType(param.Type)).size()) + 2.0;
    return points > 1.0e15 ? qint64(1.0e15) : qint64(points);
}

QPolygonF patternAlong(const FlatLine& line, const DissimilationParam& param) {
    const double length = polylineLength(line.points);
    const double periods = periodsOf(line, length, param.Pitch);
    const double pitch = length / periods;
    const std::vector<Knot> knots = knotsOf(PatternType(param.Type));
    Walker walker(line.points);
    QPolygonF result;
    if (!line.closed)
        result.append(line.points.first());
    for (int period = 0; period < std::ceil(periods); ++period) {
        for (const Knot& knot : knots) {
            const double place = (period + knot.place) * pitch;
            // the last knot of the last period may come out a rounding beyond the end
            if (place <= length * (1.0 + 1.0e-12))
                result.append(walker.at(place, knot.offset * param.Amplitude));
        }
    }
    if (line.closed)
        result.append(result.first());
    else
        result.append(line.points.last());
    return result;
}

} // namespace sim
