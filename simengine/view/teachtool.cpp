// SPDX-License-Identifier: GPL-2.0-or-later
#include "simengine/view/teachtool.h"

#include "simengine/card/cardlink.h"
#include "simengine/view/canvaswidget.h"
#include "simengine/view/viewsession.h"
#include "simengine/view/viewtheme.h"

#include <QPainter>

namespace sim {

namespace {

constexpr int kFollowMs = 40;

bool teaches(OperatorOnView op) {
    return op == OperatorTeach || op == OperatorTeachCircle || op == OperatorTeachArc;
}

} // namespace

TeachTool::TeachTool(CanvasWidget& canvas)
    : CanvasTool(canvas) {
    QObject::connect(&m_follow, &QTimer::timeout, [this] { follow(); });
    m_follow.start(kFollowMs);
    follow();
}

void TeachTool::press(const CanvasPoint& point) {
    if (point.button == Qt::LeftButton) {
        m_canvas.session().teach(point.mm);
        follow();
    } else if (point.button == Qt::RightButton) {
        m_canvas.session().finishOperator();
    }
}

/// A tool that was put away may live on until the next one is.
void TeachTool::follow() {
    if (!teaches(m_canvas.session().operatorOnView())) {
        m_follow.stop();
        return;
    }
    const std::optional<QPointF> now = pilotSpot();
    const std::optional<QPointF> place = m_canvas.session().placeToConfirm();
    if (now == m_spot && place == m_place)
        return;
    m_spot = now;
    m_place = place;
    m_canvas.update();
}

void TeachTool::paint(QPainter& painter) const {
    const ViewTransform& transform = m_canvas.viewTransform();
    const ViewSession& session = m_canvas.session();
    painter.setBrush(QColor(theme::kCanvas));
    painter.setPen(QPen(QColor(theme::kAccent), 1.5));
    for (const QPointF& mm : session.confirmedPoints())
        painter.drawEllipse(transform.toPixel(mm), 4.0, 4.0);
    if (m_place) {
        const QPointF at = transform.toPixel(*m_place);
        painter.setBrush(Qt::NoBrush);
        painter.drawEllipse(at, 9.0, 9.0);
        painter.drawLine(at - QPointF(14, 0), at + QPointF(14, 0));
        painter.drawLine(at - QPointF(0, 14), at + QPointF(0, 14));
    }
    if (m_spot)
        paintSpot(painter, transform.toPixel(*m_spot));
}

/// The dot of the pilot beam and where it is, kept within the canvas.
void TeachTool::paintSpot(QPainter& painter, const QPointF& at) const {
    QColor halo(theme::kPilot);
    halo.setAlpha(70);
    painter.setPen(Qt::NoPen);
    painter.setBrush(halo);
    painter.drawEllipse(at, 8.0, 8.0);
    painter.setBrush(QColor(theme::kPilot));
    painter.drawEllipse(at, 3.5, 3.5);
    const QString text = QStringLiteral("%1, %2").arg(m_spot->x(), 0, 'f', 3).arg(m_spot->y(), 0, 'f', 3);
    const QFontMetrics metrics = painter.fontMetrics();
    QRectF box(0.0, 0.0, metrics.horizontalAdvance(text) + 10.0, metrics.height() + 4.0);
    box.moveTopLeft(at + QPointF(14.0, 10.0));
    box.moveRight(std::min(box.right(), m_canvas.width() - 2.0));
    box.moveBottom(std::min(box.bottom(), m_canvas.height() - 2.0));
    QColor ground(theme::kCanvas);
    ground.setAlpha(220);
    painter.setBrush(ground);
    painter.drawRoundedRect(box, 3.0, 3.0);
    painter.setPen(QColor(theme::kRulerText));
    painter.drawText(box, Qt::AlignCenter, text);
}

} // namespace sim
