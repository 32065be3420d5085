// SPDX-License-Identifier: GPL-2.0-or-later
#include "simengine/view/gridpainter.h"

#include "simengine/view/viewtheme.h"

#include <QPainter>
#include <cmath>

namespace sim {

namespace {

/// Fills of one device pixel's width: exact under every device pixel ratio, unlike lines.
class CrispLines {
public:
    explicit CrispLines(QPainter& painter)
        : m_painter(painter)
        , m_ratio(painter.device()->devicePixelRatioF()) {}

    void vertical(double x, double top, double bottom, QRgb color) {
        m_painter.fillRect(QRectF(snapped(x), top, 1.0 / m_ratio, bottom - top), QColor::fromRgba(color));
    }
    void horizontal(double y, double left, double right, QRgb color) {
        m_painter.fillRect(QRectF(left, snapped(y), right - left, 1.0 / m_ratio), QColor::fromRgba(color));
    }
    double snapped(double value) const { return std::floor(value * m_ratio) / m_ratio; }

private:
    QPainter& m_painter;
    double m_ratio;
};

} // namespace

RulerScale gridScale(double pixelsPerMm) {
    return rulerScale(pixelsPerMm, 72.0, 9.0);
}

void paintGrid(QPainter& painter, const ViewTransform& transform, const QRectF& canvasMm) {
    const QRectF viewport(QPointF(0, 0), transform.viewport());
    painter.fillRect(viewport, QColor(theme::kSurround));
    const QRectF canvas(transform.toPixel({canvasMm.left(), canvasMm.bottom()}),
                        transform.toPixel({canvasMm.right(), canvasMm.top()}));
    CrispLines lines(painter);
    const QRectF shown = canvas & viewport;
    if (!shown.isEmpty()) {
        const double left = lines.snapped(shown.left()), right = lines.snapped(shown.right());
        const double top = lines.snapped(shown.top()), bottom = lines.snapped(shown.bottom());
        painter.fillRect(QRectF(left, top, right - left, bottom - top), QColor(theme::kCanvas));
        const RulerScale scale = gridScale(transform.scale());
        const QRectF mm(transform.toMm({left, bottom}), transform.toMm({right, top}));
        const auto xs = rulerTicks(scale, mm.left(), mm.right());
        const auto ys = rulerTicks(scale, mm.top(), mm.bottom());
        for (const bool major : {false, true}) {
            const QRgb color = major ? theme::kGridMajor : theme::kGridMinor;
            for (const RulerTick& tick : xs) {
                if (tick.major == major)
                    lines.vertical(transform.toPixel({tick.mm, 0.0}).x(), top, bottom, color);
            }
            for (const RulerTick& tick : ys) {
                if (tick.major == major)
                    lines.horizontal(transform.toPixel({0.0, tick.mm}).y(), left, right, color);
            }
        }
        const QPointF center = transform.toPixel({0.0, 0.0});
        if (center.x() >= left && center.x() < right)
            lines.vertical(center.x(), top, bottom, theme::kAxis);
        if (center.y() >= top && center.y() < bottom)
            lines.horizontal(center.y(), left, right, theme::kAxis);
    }
    const QRectF frame = viewport.adjusted(-2, -2, 2, 2) & canvas;
    if (frame.isEmpty())
        return;
    lines.vertical(frame.left(), frame.top(), frame.bottom(), theme::kCanvasEdge);
    lines.vertical(frame.right(), frame.top(), frame.bottom(), theme::kCanvasEdge);
    lines.horizontal(frame.top(), frame.left(), frame.right(), theme::kCanvasEdge);
    lines.horizontal(frame.bottom(), frame.left(), frame.right(), theme::kCanvasEdge);
}

} // namespace sim
