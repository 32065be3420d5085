// SPDX-License-Identifier: GPL-2.0-or-later
#include "simengine/view/polylinetool.h"

#include "simengine/view/anglestep.h"
#include "simengine/view/canvaswidget.h"
#include "simengine/view/viewsession.h"
#include "simengine/view/viewtheme.h"

#include <QKeyEvent>
#include <QLineF>
#include <QPainter>
#include <QtMath>

namespace sim {

namespace {

constexpr double kCloseReach = 10.0; ///< px around the first point that close the line
constexpr double kSamePoint = 1.0;   ///< px within which a press repeats the point before

} // namespace

QPointF PolylineTool::snapped(const CanvasPoint& point) const {
    if (m_points.isEmpty() || !(point.modifiers & Qt::ShiftModifier))
        return point.mm;
    return m_points.last() + toAngleStep(point.mm - m_points.last());
}

bool PolylineTool::closes(const QPointF& pixel) const {
    return m_points.size() >= 3 &&
           QLineF(m_canvas.viewTransform().toPixel(m_points.first()), pixel).length() <= kCloseReach;
}

void PolylineTool::press(const CanvasPoint& point) {
    if (point.button == Qt::RightButton) {
        if (m_points.isEmpty())
            m_canvas.session().finishOperator();
        else
            finish(false);
        return;
    }
    if (point.button != Qt::LeftButton || m_canvas.session().document().isReadOnly())
        return;
    m_current = point;
    if (closes(point.pixel)) {
        finish(true);
        return;
    }
    const QPointF place = snapped(point);
    const ViewTransform& transform = m_canvas.viewTransform();
    if (m_points.isEmpty() ||
        QLineF(transform.toPixel(m_points.last()), transform.toPixel(place)).length() > kSamePoint)
        m_points.append(place);
}

void PolylineTool::move(const CanvasPoint& point) {
    if (m_points.isEmpty())
        return;
    m_current = point;
    m_canvas.update();
}

// The press before it has added the point already.
void PolylineTool::doubleClick(const CanvasPoint& point) {
    if (point.button == Qt::LeftButton)
        finish(false);
}

bool PolylineTool::key(const QKeyEvent& event) {
    if (m_points.isEmpty())
        return false;
    switch (event.key()) {
    case Qt::Key_Return:
    case Qt::Key_Enter:
        finish(false);
        return true;
    case Qt::Key_Backspace:
        m_points.removeLast();
        return true;
    default:
        return false;
    }
}

bool PolylineTool::cancel() {
    const bool going = !m_points.isEmpty();
    m_points.clear();
    return going;
}

void PolylineTool::finish(bool closed) {
    PolylineShape shape;
    shape.points.swap(m_points);
    shape.closed = closed;
    if (shape.points.size() >= 2)
        m_canvas.session().addShape(shape);
}

void PolylineTool::paint(QPainter& painter) const {
    if (m_points.isEmpty())
        return;
    const ViewTransform& transform = m_canvas.viewTransform();
    QPolygonF line = transform.matrix().map(m_points);
    const bool closing = closes(m_current.pixel);
    painter.setBrush(Qt::NoBrush);
    painter.setPen(QPen(QColor(theme::kAccent), 1.5));
    painter.drawPolyline(line);
    QPen next(QColor(theme::kAccent), 1.0);
    next.setDashPattern({4.0, 3.0});
    painter.setPen(next);
    painter.drawLine(line.last(), closing ? line.first() : transform.toPixel(snapped(m_current)));
    painter.setPen(QPen(QColor(theme::kAccent), 1.0));
    for (int i = 0; i < line.size(); ++i) {
        const bool marked = i == 0 && closing;
        painter.setBrush(marked ? QColor(theme::kAccent) : QColor(theme::kCanvas));
        const double half = marked ? 5.0 : 3.0;
        painter.drawRect(QRectF(line[i].x() - half, line[i].y() - half, 2 * half, 2 * half));
    }
}

QString PolylineTool::readout() const {
    if (m_points.isEmpty())
        return {};
    const QPointF span = snapped(m_current) - m_points.last();
    return QStringLiteral("%1 mm  %2°")
        .arg(std::hypot(span.x(), span.y()), 0, 'f', 3)
        .arg(qRadiansToDegrees(std::atan2(span.y(), span.x())), 0, 'f', 1);
}

} // namespace sim
