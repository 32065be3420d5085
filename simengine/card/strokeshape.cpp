// SPDX-License-Identifier: GPL-2.0-or-later
#include "simengine/card/strokeshape.h"

#include "simengine/card/timemodel.h"

#include <algorithm>
#include <cmath>

namespace sim {

namespace {

/// Cuts that lie nearer together are one, mm. Far below a step of the head, far above the rounding of a sum of lengths.
constexpr double kNear = 1e-6;

} // namespace

StrokeShape::StrokeShape(const PenParams& pen, const PowerProfile& profile, bool wobble, const Point& first,
                         const Point& second)
    : m_profile(profile)
    , m_wobble(wobble)
    , m_radius(pen.wobbleDiameter / 2.0)
    , m_spacing(pen.wobbleSpacing)
    , m_power(pen.power) {
    // On the side of the line the beam turns fastest or slowest: so each half turn is half of a turn's length.
    m_phase = std::atan2(second.y - first.y, second.x - first.x) - M_PI / 2.0;
    for (; m_point < m_profile.size() && m_profile[m_point].x <= kNear; ++m_point)
        m_power = m_profile[m_point].power;
}

Point StrokeShape::onPath(const Point& centre) const {
    if (!m_wobble)
        return centre;
    const double turns = (m_doneMm + m_mm * m_share) / m_spacing;
    const double angle = m_phase + (turns - std::floor(turns)) * 2.0 * M_PI;
    return {centre.x + m_radius * std::cos(angle), centre.y + m_radius * std::sin(angle)};
}

void StrokeShape::beginVector(const Point& from, const Point& to, double mm) {
    m_doneMm += m_mm;
    m_from = from;
    m_to = to;
    m_mm = mm;
    m_share = 0.0;
    m_step = 0;
    m_steps = m_wobble ? std::max(1, static_cast<int>(std::ceil(mm / m_spacing * kVerticesPerTurn - 1e-9))) : 1;
}

StrokeShape::Cut StrokeShape::next() {
    if (m_stepped) {
        m_stepped = false;
        m_power = m_stepPower;
        return {m_share, onPath(between(m_from, m_to, m_share)), m_power};
    }
    const double stepShare = m_step + 1 >= m_steps ? 1.0 : static_cast<double>(m_step + 1) / m_steps;
    if (m_point < m_profile.size() && m_profile[m_point].x < m_doneMm + m_mm * stepShare - kNear) {
        m_share = std::clamp((m_profile[m_point].x - m_doneMm) / m_mm, m_share, stepShare);
    } else {
        m_share = stepShare;
        ++m_step;
    }
    m_power = takePowerAt(m_doneMm + m_mm * m_share);
    return {m_share, onPath(between(m_from, m_to, m_share)), m_power};
}

/// Power at a place not before the last one. Points of the profile there are taken; when they are a step, the power
/// before it is given and the one after it is kept for the next cut.
double StrokeShape::takePowerAt(double mm) {
    const int first = m_point;
    while (m_point < m_profile.size() && m_profile[m_point].x <= mm + kNear)
        ++m_point;
    if (m_point > first) {
        m_stepPower = m_profile[m_point - 1].power;
        m_stepped = m_stepPower != m_profile[first].power;
        return m_profile[first].power;
    }
    if (first == 0 || first == m_profile.size())
        return m_power;
    const WavePoint& a = m_profile[first - 1];
    const WavePoint& b = m_profile[first];
    return a.power + (b.power - a.power) * std::clamp((mm - a.x) / (b.x - a.x), 0.0, 1.0);
}

double StrokeShape::extraVertices(const PenParams& pen, double lengthMm) {
    return lengthMm / pen.wobbleSpacing * kVerticesPerTurn;
}

} // namespace sim
