// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include <QPointF>
#include <QRectF>
#include <QSizeF>
#include <QTransform>

namespace sim {

/// Map between the field (mm, y up) and a canvas (device-independent pixels, y down), the same scale in both axes.
class ViewTransform {
public:
    static constexpr double kMinScale = 0.02;    ///< px per mm: a field of 50 m on a small screen
    static constexpr double kMaxScale = 20000.0; ///< px per mm: a pixel is 50 nm, well below a step of the head

    double scale() const { return m_scale; }
    QSizeF viewport() const { return m_viewport; }
    QPointF center() const { return m_center; }

    QPointF toPixel(const QPointF& mm) const;
    QPointF toMm(const QPointF& pixel) const;
    /// toPixel() as a matrix, for geometry that is changed on the way to the screen.
    QTransform matrix() const;
    /// The part of the field that the viewport shows: left and top() are the smallest x and y.
    QRectF visibleMm() const;

    /// The place in the middle of the viewport stays there.
    void setViewport(const QSizeF& size);
    void setCenter(const QPointF& mm) { m_center = mm; }
    /// Multiplies the scale within its limits; the place under `pixel` stays under it.
    void zoomAbout(const QPointF& pixel, double factor);
    /// Moves the picture by `pixels`.
    void panBy(const QPointF& pixels);
    /// Shows the whole of `mm` with `margin` pixels around it. A rectangle without extent is only centred.
    void fit(const QRectF& mm, double margin);

    bool operator==(const ViewTransform& other) const;
    bool operator!=(const ViewTransform& other) const { return !(*this == other); }

private:
    double m_scale = 4.0;
    QPointF m_center;
    QSizeF m_viewport{1.0, 1.0};
};

} // namespace sim
