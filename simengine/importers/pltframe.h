// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include <QPointF>
#include <QRectF>
#include <QTransform>
#include <QVector>
#include <optional>

namespace sim {

/// Plotter units to the millimetre: 1016 to the inch.
constexpr double kPltUnitsPerMm = 40.0;

/// How the numbers of a plotter file come to lie on the sheet: the frame P1 and P2 (IP, IR), the user's units (SC), the
/// turn of the sheet (RO) and the window (IW).
class PltFrame {
public:
    void reset();
    /// Arguments of the commands; false when they cannot be.
    bool setFrame(const QVector<double>& corners);
    bool setScale(const QVector<double>& limits);
    bool setRotation(const QVector<double>& degrees);
    bool setWindow(const QVector<double>& corners);

    /// The file's coordinates to mm on the sheet, y upwards.
    const QTransform& toSheet() const { return m_toSheet; }
    /// The window in mm on the sheet; nothing while there is none.
    const std::optional<QRectF>& window() const { return m_window; }
    /// SC stands, but no IP came before it.
    bool isFrameAssumed() const { return m_scaled && !m_frameGiven; }
    /// From P1 to P2, mm.
    QSizeF frameSize() const;

private:
    void update();

    QPointF m_p1;
    QPointF m_p2;
    bool m_frameGiven = false;
    bool m_scaled = false;
    QVector<double> m_limits;
    int m_turn = 0; ///< quarters
    QTransform m_toSheet = QTransform::fromScale(1.0 / kPltUnitsPerMm, 1.0 / kPltUnitsPerMm);
    std::optional<QRectF> m_window;
};

} // namespace sim
