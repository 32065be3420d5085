// SPDX-License-Identifier: GPL-2.0-or-later
#include "simengine/view/placetools.h"

#include "engine/languagemanager.h"
#include "engine/marklog.h"
#include "simengine/view/canvaswidget.h"
#include "simengine/view/viewsession.h"
#include "simengine/view/viewtheme.h"

#include <QLineF>
#include <QPainter>
#include <cmath>

namespace sim {

namespace {

/// A drag shorter than this is a press, px.
constexpr double kDragStart = 4.0;

double away(const CanvasPoint& a, const CanvasPoint& b) {
    return QLineF(a.pixel, b.pixel).length();
}

} // namespace

void PointTool::press(const CanvasPoint& point) {
    if (point.button == Qt::RightButton)
        m_canvas.session().finishOperator();
    else if (point.button == Qt::LeftButton)
        m_canvas.session().addShape(PointShape{point.mm, -1.0});
}

void BoxTool::press(const CanvasPoint& point) {
    if (point.button == Qt::RightButton) {
        if (!cancel())
            m_canvas.session().finishOperator();
        return;
    }
    if (point.button != Qt::LeftButton)
        return;
    m_current = point;
    if (m_first)
        finish();
    else
        m_first = point;
}

void BoxTool::move(const CanvasPoint& point) {
    if (!m_first)
        return;
    m_current = point;
    m_canvas.update();
}

void BoxTool::release(const CanvasPoint& point) {
    if (!m_first || point.button != Qt::LeftButton)
        return;
    m_current = point;
    // A press without a drag: the next press gives the other corner.
    if (away(*m_first, point) >= kDragStart)
        finish();
}

bool BoxTool::cancel() {
    const bool going = m_first.has_value();
    m_first.reset();
    return going;
}

QRectF BoxTool::rectMm() const {
    QPointF span = m_current.mm - m_first->mm;
    if (m_makes == Makes::Rect && (m_current.modifiers & Qt::ShiftModifier)) {
        const double side = std::max(std::abs(span.x()), std::abs(span.y()));
        span = {std::copysign(side, span.x()), std::copysign(side, span.y())};
    }
    const bool centered = m_makes == Makes::Rect && (m_current.modifiers & Qt::ControlModifier);
    const QPointF start = centered ? m_first->mm - span : m_first->mm;
    return QRectF(start, m_first->mm + span).normalized();
}

double BoxTool::radiusMm() const {
    return QLineF(m_first->mm, m_current.mm).length();
}

void BoxTool::finish() {
    const bool tooSmall = away(*m_first, m_current) < kDragStart;
    const QRectF rect = rectMm();
    const CircleShape circle{m_first->mm, radiusMm(), 0.0, false};
    m_first.reset();
    if (tooSmall)
        return;
    // What follows may end this tool; nothing of it is touched afterwards.
    ViewSession& session = m_canvas.session();
    if (m_makes == Makes::Zoom) {
        m_canvas.fitMm(rect);
        session.finishOperator();
    } else if (m_makes == Makes::Rect) {
        session.addShape(RectShape{rect});
    } else {
        session.addShape(circle);
    }
}

void BoxTool::paint(QPainter& painter) const {
    if (!m_first)
        return;
    const QTransform toPixel = m_canvas.viewTransform().matrix();
    QPen pen(QColor(theme::kAccent), 1.5);
    if (m_makes == Makes::Zoom)
        pen.setDashPattern({4.0, 3.0});
    painter.setPen(pen);
    painter.setBrush(QColor::fromRgba(theme::kAccentSoft));
    if (m_makes == Makes::Circle) {
        const double radius = radiusMm() * m_canvas.viewTransform().scale();
        painter.drawEllipse(m_first->pixel, radius, radius);
        painter.drawLine(m_first->pixel, m_current.pixel);
    } else {
        painter.drawRect(toPixel.mapRect(rectMm()));
    }
}

QString BoxTool::readout() const {
    if (!m_first || m_makes == Makes::Zoom)
        return {};
    if (m_makes == Makes::Circle)
        return QStringLiteral("R %1 mm").arg(radiusMm(), 0, 'f', 3);
    const QRectF rect = rectMm();
    return QStringLiteral("%1 × %2 mm").arg(rect.width(), 0, 'f', 3).arg(rect.height(), 0, 'f', 3);
}

void RefusedTool::press(const CanvasPoint& point) {
    ViewSession& session = m_canvas.session();
    if (point.button == Qt::RightButton) {
        session.finishOperator();
        return;
    }
    if (point.button != Qt::LeftButton)
        return;
    MarkLog::Instance()->ShowNode(NoteOperator, LanguageManager::GetLanText("文档没有该工具的对象"));
}

} // namespace sim
