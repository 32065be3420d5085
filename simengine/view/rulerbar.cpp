// SPDX-License-Identifier: GPL-2.0-or-later
#include "simengine/view/rulerbar.h"

#include "simengine/view/rulerscale.h"
#include "simengine/view/viewtheme.h"

#include <QPaintEvent>
#include <QPainter>
#include <cmath>

namespace sim {

RulerBar::RulerBar(Qt::Orientation orientation, QWidget* parent)
    : QWidget(parent)
    , m_orientation(orientation) {
    setAttribute(Qt::WA_OpaquePaintEvent);
    setObjectName(orientation == Qt::Horizontal ? QStringLiteral("rulerTop") : QStringLiteral("rulerLeft"));
}

void RulerBar::setTransform(const ViewTransform& transform) {
    if (m_transform == transform)
        return;
    m_transform = transform;
    update();
}

void RulerBar::setCursorMark(std::optional<double> pixel) {
    if (pixel)
        pixel = std::floor(*pixel);
    if (m_mark == pixel)
        return;
    if (m_mark)
        update(markRect(*m_mark));
    m_mark = pixel;
    if (m_mark)
        update(markRect(*m_mark));
}

QRect RulerBar::markRect(double pixel) const {
    const int at = static_cast<int>(pixel);
    return m_orientation == Qt::Horizontal ? QRect(at - 5, 0, 11, height()) : QRect(0, at - 5, width(), 11);
}

void RulerBar::paintEvent(QPaintEvent* event) {
    QPainter painter(this);
    painter.fillRect(event->rect(), QColor(theme::kRuler));
    paintTicks(painter);
    if (m_orientation == Qt::Horizontal)
        painter.fillRect(QRect(0, height() - 1, width(), 1), QColor(theme::kRulerEdge));
    else
        painter.fillRect(QRect(width() - 1, 0, 1, height()), QColor(theme::kRulerEdge));
    if (m_mark)
        paintMark(painter);
}

void RulerBar::paintTicks(QPainter& painter) const {
    const bool horizontal = m_orientation == Qt::Horizontal;
    const QRectF shown = m_transform.visibleMm();
    const RulerScale scale = rulerScale(m_transform.scale());
    // One step more on each side: a number is wider than its tick.
    const double from = (horizontal ? shown.left() : shown.top()) - scale.step;
    const double to = (horizontal ? shown.right() : shown.bottom()) + scale.step;
    QFont small = font();
    small.setPixelSize(11);
    painter.setFont(small);
    const bool half = scale.parts % 2 == 0;
    for (const RulerTick& tick : rulerTicks(scale, from, to)) {
        const bool middle = half && !tick.major && tick.index % (scale.parts / 2) == 0;
        const int length = tick.major ? kThickness : middle ? 8 : 5;
        const QPointF pixel = m_transform.toPixel({tick.mm, tick.mm});
        const int at = static_cast<int>(std::floor(horizontal ? pixel.x() : pixel.y()));
        const QRect line =
            horizontal ? QRect(at, height() - length, 1, length) : QRect(width() - length, at, length, 1);
        painter.fillRect(line, QColor(tick.major ? theme::kRulerEdge : theme::kRulerTick));
        if (!tick.major)
            continue;
        painter.setPen(QColor(theme::kRulerText));
        const QString label = rulerLabel(scale, tick.mm);
        if (horizontal) {
            painter.drawText(QRect(at + 4, 0, 200, 15), Qt::AlignLeft | Qt::AlignVCenter, label);
        } else {
            painter.save();
            painter.translate(0, at);
            painter.rotate(-90);
            painter.drawText(QRect(4, 0, 200, 15), Qt::AlignLeft | Qt::AlignVCenter, label);
            painter.restore();
        }
    }
}

void RulerBar::paintMark(QPainter& painter) const {
    const double at = *m_mark + 0.5;
    const double edge = kThickness - 1.0;
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.setBrush(QColor(theme::kAccent));
    QPolygonF arrow;
    if (m_orientation == Qt::Horizontal)
        arrow << QPointF(at - 4, edge - 7) << QPointF(at + 4, edge - 7) << QPointF(at, edge);
    else
        arrow << QPointF(edge - 7, at - 4) << QPointF(edge - 7, at + 4) << QPointF(edge, at);
    painter.drawPolygon(arrow);
}

} // namespace sim
