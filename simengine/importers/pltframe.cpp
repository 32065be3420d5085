// SPDX-License-Identifier: GPL-2.0-or-later
#include "simengine/importers/pltframe.h"

#include <cmath>

namespace sim {

namespace {

/// Corners of the frame of a plotter with an A4 sheet, units: what SC refers to in a file without IP.
constexpr QPointF kA4Lower(250.0, 596.0);
constexpr QPointF kA4Upper(10250.0, 7796.0);

/// Kinds of scaling in SC.
constexpr double kAnisotropic = 0.0;
constexpr double kIsotropic = 1.0;
constexpr double kPointFactor = 2.0;

} // namespace

void PltFrame::reset() {
    *this = PltFrame();
}

bool PltFrame::setFrame(const QVector<double>& corners) {
    if (corners.isEmpty()) {
        m_frameGiven = false;
        update();
        return true;
    }
    if (corners.size() != 2 && corners.size() != 4)
        return false;
    const QPointF p1(corners[0], corners[1]);
    // with P1 alone P2 moves along
    const QPointF before1 = m_frameGiven ? m_p1 : kA4Lower;
    const QPointF before2 = m_frameGiven ? m_p2 : kA4Upper;
    const QPointF p2 = corners.size() == 4 ? QPointF(corners[2], corners[3]) : p1 + before2 - before1;
    if (p1.x() == p2.x() || p1.y() == p2.y())
        return false;
    m_p1 = p1;
    m_p2 = p2;
    m_frameGiven = true;
    update();
    return true;
}

bool PltFrame::setScale(const QVector<double>& limits) {
    if (limits.isEmpty()) {
        m_scaled = false;
        update();
        return true;
    }
    const double kind = limits.size() > 4 ? limits[4] : kAnisotropic;
    if (limits.size() < 4 || (kind != kAnisotropic && kind != kIsotropic && kind != kPointFactor))
        return false;
    const bool factors = kind == kPointFactor;
    if (factors ? limits[1] == 0.0 || limits[3] == 0.0 : limits[0] == limits[1] || limits[2] == limits[3])
        return false;
    m_limits = limits;
    m_scaled = true;
    update();
    return true;
}

bool PltFrame::setRotation(const QVector<double>& degrees) {
    const double angle = degrees.isEmpty() ? 0.0 : degrees.first();
    if (!(std::abs(angle) <= 360.0) || std::fmod(angle, 90.0) != 0.0)
        return false;
    m_turn = (int(angle / 90.0) % 4 + 4) % 4;
    update();
    return true;
}

bool PltFrame::setWindow(const QVector<double>& corners) {
    m_window.reset();
    if (corners.isEmpty())
        return true;
    if (corners.size() != 4)
        return false;
    m_window = QRectF(m_toSheet.map(QPointF(corners[0], corners[1])), m_toSheet.map(QPointF(corners[2], corners[3])))
                   .normalized();
    return true;
}

QSizeF PltFrame::frameSize() const {
    const QPointF across = m_frameGiven ? m_p2 - m_p1 : kA4Upper - kA4Lower;
    return QSizeF(std::abs(across.x()), std::abs(across.y())) / kPltUnitsPerMm;
}

void PltFrame::update() {
    QTransform units;
    if (m_scaled) {
        const QPointF p1 = m_frameGiven ? m_p1 : kA4Lower;
        const QPointF p2 = m_frameGiven ? m_p2 : kA4Upper;
        const double kind = m_limits.size() > 4 ? m_limits[4] : kAnisotropic;
        double sx = kind == kPointFactor ? m_limits[1] : (p2.x() - p1.x()) / (m_limits[1] - m_limits[0]);
        double sy = kind == kPointFactor ? m_limits[3] : (p2.y() - p1.y()) / (m_limits[3] - m_limits[2]);
        QPointF rest;
        if (kind == kIsotropic) {
            const double s = std::min(std::abs(sx), std::abs(sy));
            sx = std::copysign(s, sx);
            sy = std::copysign(s, sy);
            // the part of the free space that lies to the left and below, percent
            const double left = m_limits.size() > 5 ? m_limits[5] : 50.0;
            const double below = m_limits.size() > 6 ? m_limits[6] : 50.0;
            rest = {(p2.x() - p1.x() - sx * (m_limits[1] - m_limits[0])) * left / 100.0,
                    (p2.y() - p1.y() - sy * (m_limits[3] - m_limits[2])) * below / 100.0};
        }
        units = QTransform(sx, 0, 0, sy, p1.x() + rest.x() - sx * m_limits[0], p1.y() + rest.y() - sy * m_limits[2]);
    }
    QTransform turn;
    for (int i = 0; i < m_turn; ++i)
        turn = turn * QTransform(0, 1, -1, 0, 0, 0);
    m_toSheet = units * turn * QTransform::fromScale(1.0 / kPltUnitsPerMm, 1.0 / kPltUnitsPerMm);
}

} // namespace sim
