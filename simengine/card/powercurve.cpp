// SPDX-License-Identifier: GPL-2.0-or-later
#include "simengine/card/powercurve.h"

#include <algorithm>

namespace sim {

void PowerCurve::add(double x, double power) {
    if (static_cast<std::size_t>(m_count) == m_points.size())
        return;
    m_points[static_cast<std::size_t>(m_count)] = {std::max(x, length()), power};
    ++m_count;
}

double PowerCurve::at(double x) const {
    int next = 0;
    while (next < m_count && (*this)[next].x <= x)
        ++next;
    if (m_count == 0)
        return 0.0;
    if (next == 0 || next == m_count)
        return (*this)[next == 0 ? 0 : m_count - 1].power;
    const WavePoint& a = (*this)[next - 1];
    const WavePoint& b = (*this)[next];
    return a.power + (b.power - a.power) * (x - a.x) / (b.x - a.x);
}

PowerCurve pointCurve(const PenParams& pen) {
    PowerCurve curve;
    const WaveTable& rows = pen.pointWave;
    const auto first = std::find_if(rows.begin(), rows.end(), [](const WavePoint& row) { return row.x > 0.0; });
    if (first == rows.end())
        return curve;
    curve.add(0.0, first == rows.begin() ? first->power : rows[0].power);
    for (auto row = first; row != rows.end(); ++row) {
        if (row->x > 0.0)
            curve.add(row->x, row->power);
    }
    return curve;
}

LineRamps lineRamps(const PenParams& pen) {
    constexpr std::size_t kHalf = kWavePoints / 2;
    LineRamps ramps;
    const WaveTable& rows = pen.lineWave;
    double plateau = 0.0;
    ramps.in.add(0.0, 0.0);
    for (std::size_t i = 0; i < kHalf; ++i) {
        if (rows[i].x <= 0.0)
            continue;
        plateau = rows[i].power;
        if (i == 0)
            continue; // the ramp begins at (0, 0), also when the table's first row has an x
        ramps.in.add(rows[i].x, rows[i].power);
    }
    ramps.out.add(0.0, plateau);
    for (std::size_t i = kHalf + 1; i < kWavePoints; ++i) {
        if (rows[i].x > 0.0)
            ramps.out.add(rows[i].x, rows[i].power);
    }
    ramps.inUse = ramps.in.size() > 1 || ramps.out.size() > 1;
    return ramps;
}

PowerProfile::PowerProfile(const LineRamps& ramps, double mmPerX, double lengthMm) {
    if (!ramps.inUse || !(lengthMm > 0.0))
        return;
    const double whole = (ramps.in.length() + ramps.out.length()) * mmPerX;
    const double scale = whole > lengthMm ? lengthMm / whole : 1.0;
    for (int i = 0; i < ramps.in.size(); ++i)
        add(ramps.in[i].x * mmPerX * scale, ramps.in[i].power);
    const double outMm = ramps.out.length() * mmPerX * scale;
    for (int i = 0; i < ramps.out.size(); ++i)
        add(lengthMm - outMm + ramps.out[i].x * mmPerX * scale, ramps.out[i].power);
}

void PowerProfile::add(double mm, double power) {
    if (m_count > 0) {
        const WavePoint& last = m_points[static_cast<std::size_t>(m_count - 1)];
        mm = std::max(mm, last.x);
        if (mm == last.x && power == last.power)
            return;
    }
    m_points[static_cast<std::size_t>(m_count++)] = {mm, power};
}

} // namespace sim
