// SPDX-License-Identifier: GPL-2.0-or-later
#include "simengine/view/nodeicons.h"

#include <QPainter>
#include <QPainterPath>

namespace sim {

namespace {

constexpr QRgb kLine = 0xff31445a; ///< of the icons of the tool bars
constexpr QRgb kFaint = 0xff9aa5b0;
constexpr double kUnits = 24.0;

void node(QPainter& painter, double x, double y) {
    painter.save();
    painter.setBrush(QColor(Qt::white));
    painter.drawRect(QRectF(x - 2.5, y - 2.5, 5.0, 5.0));
    painter.restore();
}

void handles(QPainter& painter, const QPointF& a, const QPointF& middle, const QPointF& b) {
    painter.save();
    painter.setPen(QPen(QColor(kFaint), 1.4));
    painter.drawPolyline(QPolygonF({a, middle, b}));
    painter.setBrush(QColor(kLine));
    painter.setPen(Qt::NoPen);
    painter.drawEllipse(a, 2.0, 2.0);
    painter.drawEllipse(b, 2.0, 2.0);
    painter.restore();
}

void curve(QPainter& painter) {
    QPainterPath path(QPointF(4, 18));
    path.cubicTo(QPointF(6, 4), QPointF(18, 4), QPointF(20, 18));
    painter.drawPath(path);
}

void cross(QPainter& painter, double x, double y, bool upright) {
    painter.drawLine(QPointF(x - 3, y), QPointF(x + 3, y));
    if (upright)
        painter.drawLine(QPointF(x, y - 3), QPointF(x, y + 3));
}

void drawRing(QPainter& painter, bool closed) {
    painter.drawArc(QRectF(4.5, 4.5, 15, 15), closed ? 0 : 30 * 16, closed ? 360 * 16 : 300 * 16);
    if (closed)
        node(painter, 19.5, 12);
}

void draw(QPainter& painter, NodeIcon icon) {
    switch (icon) {
    case NodeIcon::Insert:
    case NodeIcon::Remove:
        painter.drawLine(QPointF(3, 18), QPointF(21, 18));
        node(painter, 12, 18);
        cross(painter, 12, 8, icon == NodeIcon::Insert);
        break;
    case NodeIcon::Corner:
        painter.drawPolyline(QPolygonF({QPointF(4, 19), QPointF(12, 7), QPointF(20, 19)}));
        node(painter, 12, 7);
        break;
    case NodeIcon::Smooth:
    case NodeIcon::Symmetric:
        curve(painter);
        handles(painter, {icon == NodeIcon::Smooth ? 7.0 : 3.0, 7.5}, {12, 7.5}, {21, 7.5});
        node(painter, 12, 7.5);
        break;
    case NodeIcon::Line:
        painter.drawLine(QPointF(5, 18), QPointF(19, 6));
        node(painter, 5, 18);
        node(painter, 19, 6);
        break;
    case NodeIcon::Curve:
        curve(painter);
        node(painter, 4, 18);
        node(painter, 20, 18);
        break;
    case NodeIcon::Break:
        painter.drawLine(QPointF(3, 15), QPointF(9, 9));
        painter.drawLine(QPointF(15, 15), QPointF(21, 9));
        node(painter, 9, 9);
        node(painter, 15, 15);
        break;
    case NodeIcon::Close:
    case NodeIcon::Open:
        drawRing(painter, icon == NodeIcon::Close);
        break;
    case NodeIcon::Adds:
        node(painter, 7, 7);
        node(painter, 17, 7);
        node(painter, 7, 17);
        cross(painter, 17, 17, true);
        break;
    case NodeIcon::Done:
        painter.drawPolyline(QPolygonF({QPointF(4, 13), QPointF(10, 19), QPointF(20, 6)}));
        break;
    case NodeIcon::Edit:
        curve(painter);
        node(painter, 4, 18);
        node(painter, 12, 7.5);
        node(painter, 20, 18);
        break;
    case NodeIcon::ToPath:
        painter.drawRect(QRectF(4, 9, 9, 9));
        painter.drawPolyline(QPolygonF({QPointF(15, 6), QPointF(20, 6), QPointF(20, 11)}));
        painter.drawLine(QPointF(13, 13), QPointF(20, 6));
        break;
    }
}

} // namespace

QIcon nodeIcon(NodeIcon icon) {
    QIcon made;
    for (const int side : {24, 48}) {
        QPixmap picture(side, side);
        picture.fill(Qt::transparent);
        QPainter painter(&picture);
        painter.setRenderHint(QPainter::Antialiasing);
        painter.scale(side / kUnits, side / kUnits);
        painter.setPen(QPen(QColor(kLine), 1.8, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
        draw(painter, icon);
        painter.end();
        made.addPixmap(picture);
    }
    return made;
}

} // namespace sim
