// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include <QPolygonF>
#include <QRectF>
#include <QTransform>
#include <QVector>
#include <vector>

class QPainter;

namespace sim {

class DraftRaster;

/// Brings polylines from mm into a viewport: leaves out what cannot be seen, cuts what reaches far beyond the edge (a
/// painter's numbers end at strong zoom) and drops vertices closer than half a pixel to the one before. Lines along the
/// axes are put onto the middles of pixels, so that smoothing does not blur them.
class DeviceLines {
public:
    /// The painter takes that much longer for a pixel of a line along an axis than for one of a leaning line.
    static constexpr double kAxisEffort = 4.0;

    /// `toPixel`: from mm to the viewport, affine. `bounds`: the viewport in pixels with as much around it as pens
    /// reach.
    DeviceLines(const QTransform& toPixel, const QRectF& bounds);

    /// Appends the visible runs of one polyline. A single point gives nothing.
    void add(const QPolygonF& mm) { add(mm.constData(), mm.size()); }
    void add(const QPointF* points, int count);
    /// The same for a polyline whose bounds lie inside the viewport altogether.
    void addWhole(const QPolygonF& mm) { addWhole(mm.constData(), mm.size()); }
    void addWhole(const QPointF* points, int count);
    /// Adds a polyline in coordinates of its own, which `toMm` (affine) brings into the field. A closed one is given
    /// without its first point at the end.
    void addPlaced(const QPointF* points, int count, bool closed, const QTransform& toMm, bool whole);

    /// Pixel rectangle within which lines are kept.
    const QRectF& bounds() const { return m_bounds; }
    qint64 vertexCount() const { return static_cast<qint64>(m_points.size()); }
    /// What a painter has to smooth: px of line altogether, those of lines along an axis counted kAxisEffort times.
    double effort() const { return m_effort; }
    bool isEmpty() const { return m_points.empty(); }
    void clear();
    /// Draws what was added with the painter's pen.
    void paint(QPainter& painter) const;
    void paint(DraftRaster& raster) const;

    /// For tests: the runs in pixels.
    QVector<QPolygonF> runs() const;

private:
    void append(double x, double y) { m_points.emplace_back(x, y); }
    int size() const { return static_cast<int>(m_points.size()); }
    double pixelX(const QPointF& mm) const { return m_xx * mm.x() + m_xy * mm.y() + m_dx; }
    double pixelY(const QPointF& mm) const { return m_yx * mm.x() + m_yy * mm.y() + m_dy; }
    void endRun();
    /// Puts the last run onto the pixels and measures it.
    void finishRun();
    bool clip(double& x1, double& y1, double& x2, double& y2) const;

    void setTransform(const QTransform& toPixel);

    QTransform m_toPixel;
    QRectF m_bounds;
    double m_xx, m_xy, m_yx, m_yy, m_dx, m_dy; ///< pixel x is m_xx * x + m_xy * y + m_dx, y likewise
    std::vector<QPointF> m_points;
    std::vector<int> m_ends; ///< index behind the last point of each run
    int m_runStart = 0;
    double m_effort = 0.0;
};

} // namespace sim
