// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include <QImage>
#include <QPolygonF>
#include <vector>

namespace sim {

/// Draws very many lines of one pixel without smoothing, far quicker than a painter does. Lines that fall onto pixels
/// that one drawn a moment ago covers from end to end, as those of a fine hatch do, are drawn once.
class DraftRaster {
public:
    /// A transparent picture of `size` device-independent pixels.
    DraftRaster(const QSizeF& size, double devicePixelRatio);

    /// Opaque colour of what follows.
    void setColor(const QColor& color);
    /// Coordinates in device-independent pixels, at most 30000 device pixels outside the picture.
    void polyline(const QPointF* points, int count);
    void dot(const QPointF& at);
    const QImage& image() const { return m_image; }

private:
    void line(int x1, int y1, int x2, int y2);
    bool seen(int x1, int y1, int x2, int y2);

    double m_ratio;
    QImage m_image;
    QRgb* m_bits;
    int m_stride; ///< pixels from row to row
    QRgb m_color = 0xff000000u;
    std::vector<quint64> m_recent; ///< lines drawn lately, by a hash of their ends
};

} // namespace sim
