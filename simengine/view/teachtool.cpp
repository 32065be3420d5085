// SPDX-License-Identifier: GPL-2.0-or-later
#include "simengine/view/teachtool.h"

#include "simengine/view/canvaswidget.h"
#include "simengine/view/viewsession.h"
#include "simengine/view/viewtheme.h"

#include <QPainter>

namespace sim {

void TeachTool::press(const CanvasPoint& point) {
    if (point.button == Qt::LeftButton)
        m_canvas.session().teach(point.mm);
    else if (point.button == Qt::RightButton)
        m_canvas.session().finishOperator();
}

void TeachTool::paint(QPainter& painter) const {
    const ViewTransform& transform = m_canvas.viewTransform();
    const ViewSession& session = m_canvas.session();
    painter.setBrush(QColor(theme::kCanvas));
    painter.setPen(QPen(QColor(theme::kAccent), 1.5));
    for (const QPointF& mm : session.confirmedPoints())
        painter.drawEllipse(transform.toPixel(mm), 4.0, 4.0);
    if (const auto taught = session.taughtPoint()) {
        const QPointF at = transform.toPixel(*taught);
        painter.setBrush(Qt::NoBrush);
        painter.drawEllipse(at, 9.0, 9.0);
        painter.drawLine(at - QPointF(14, 0), at + QPointF(14, 0));
        painter.drawLine(at - QPointF(0, 14), at + QPointF(0, 14));
    }
}

} // namespace sim
