// SPDX-License-Identifier: GPL-2.0-or-later
#include "simengine/view/viewbaricons.h"

#include "simengine/view/viewtheme.h"

#include <QPainter>
#include <QPainterPath>

namespace sim {

namespace {

// All in a square of 24.

/// A magnet with its two poles down.
void drawMagnet(QPainter& painter) {
    QPainterPath path;
    path.moveTo(5, 20);
    path.lineTo(5, 11);
    path.arcTo(QRectF(5, 4, 14, 14), 180, -180);
    path.lineTo(19, 20);
    path.lineTo(14, 20);
    path.lineTo(14, 11);
    path.arcTo(QRectF(10, 9, 4, 4), 0, 180);
    path.lineTo(10, 20);
    path.closeSubpath();
    painter.drawPath(path);
    painter.drawLine(QLineF(5, 16, 10, 16));
    painter.drawLine(QLineF(14, 16, 19, 16));
}

/// Three sliders.
void drawSliders(QPainter& painter) {
    const double knobs[] = {15.0, 8.0, 13.0};
    for (int i = 0; i < 3; ++i) {
        const double y = 6.0 + 6.0 * i;
        painter.drawLine(QLineF(4, y, 20, y));
        painter.setBrush(QColor(theme::kCanvas));
        painter.drawEllipse(QPointF(knobs[i], y), 2.2, 2.2);
        painter.setBrush(Qt::NoBrush);
    }
}

/// A small square that grows along the diagonal.
void drawRatio(QPainter& painter) {
    painter.drawRect(QRectF(4, 11, 9, 9));
    painter.drawPolyline(QPolygonF({{9, 4}, {20, 4}, {20, 15}}));
    painter.drawLine(QLineF(14, 10, 19, 5));
}

/// Arrows along the axes.
void drawAxes(QPainter& painter) {
    painter.drawLine(QLineF(6, 3, 6, 18));
    painter.drawLine(QLineF(6, 18, 21, 18));
    painter.drawPolyline(QPolygonF({{3, 6}, {6, 3}, {9, 6}}));
    painter.drawPolyline(QPolygonF({{18, 15}, {21, 18}, {18, 21}}));
}

/// A film's arrow over the line of its time.
void drawPlayback(QPainter& painter) {
    painter.drawPolygon(QPolygonF({{8, 3}, {18, 9}, {8, 15}}));
    painter.drawLine(QLineF(3, 20, 21, 20));
    painter.setBrush(QColor(theme::kCanvas));
    painter.drawEllipse(QPointF(10, 20), 2.2, 2.2);
}

} // namespace

QIcon viewBarIcon(ViewBarIcon icon, int size) {
    constexpr int kSharp = 2; // device pixels to one, for dense screens
    QPixmap picture(size * kSharp, size * kSharp);
    picture.fill(Qt::transparent);
    QPainter painter(&picture);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.scale(size * kSharp / 24.0, size * kSharp / 24.0);
    painter.setPen(QPen(QColor(theme::kRulerText), 1.6, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    switch (icon) {
    case ViewBarIcon::Snap:
        drawMagnet(painter);
        break;
    case ViewBarIcon::Menu:
        drawSliders(painter);
        break;
    case ViewBarIcon::Ratio:
        drawRatio(painter);
        break;
    case ViewBarIcon::Axis:
        drawAxes(painter);
        break;
    case ViewBarIcon::Playback:
        drawPlayback(painter);
        break;
    }
    painter.end();
    picture.setDevicePixelRatio(kSharp);
    return QIcon(picture);
}

} // namespace sim
