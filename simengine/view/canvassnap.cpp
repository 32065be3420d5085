// SPDX-License-Identifier: GPL-2.0-or-later
#include "simengine/view/canvassnap.h"

#include "simengine/view/gridpainter.h"
#include "simengine/view/viewtheme.h"

#include <QPainter>

namespace sim {

namespace {

constexpr double kFingerShare = 1.5;

/// Corners of what stands for a kind of target; the place of a guide has none.
void paintMark(QPainter& painter, SnapKind kind, const QPointF& at) {
    constexpr double kHalf = 5.0;
    const QRectF box(at - QPointF(kHalf, kHalf), QSizeF(2 * kHalf, 2 * kHalf));
    switch (kind) {
    case SnapKind::End:
        painter.drawRect(box);
        break;
    case SnapKind::Middle:
        painter.drawPolygon(QPolygonF({box.bottomLeft(), box.bottomRight(), {at.x(), box.top()}}));
        break;
    case SnapKind::Center:
        painter.drawEllipse(box);
        break;
    case SnapKind::Bounds:
        painter.drawPolygon(
            QPolygonF({{at.x(), box.top()}, {box.right(), at.y()}, {at.x(), box.bottom()}, {box.left(), at.y()}}));
        break;
    case SnapKind::Guide:
    case SnapKind::Grid:
        painter.drawLine(box.topLeft(), box.bottomRight());
        painter.drawLine(box.topRight(), box.bottomLeft());
        break;
    }
}

} // namespace

QPointF CanvasSnap::correction(SnapQuery query, const ViewTransform& transform, const StatePtr& state, Targets targets,
                               bool touch) {
    m_hints.clear();
    if (!m_settings.on)
        return {};
    collect(transform, state, targets);
    query.reach = m_settings.pixels * (touch ? kFingerShare : 1.0) / transform.scale();
    query.gridStep = gridScale(transform.scale()).minorStep();
    SnapResult result = snap(query, m_targets, m_settings);
    m_hints = std::move(result.hints);
    return result.by;
}

void CanvasSnap::collect(const ViewTransform& transform, const StatePtr& state, Targets targets) {
    if (m_state == state && m_which == targets && m_transform == transform)
        return;
    const Selection& selection = state->selection;
    m_targets = snapTargets(*state, transform.visibleMm(),
                            [&](int index) { return targets == Targets::Unselected && selection.contains(index); });
    m_state = state;
    m_which = targets;
    m_transform = transform;
}

void CanvasSnap::paint(QPainter& painter, const ViewTransform& transform) const {
    for (const SnapHint& hint : m_hints) {
        painter.setBrush(Qt::NoBrush);
        if (!hint.guide.isNull()) {
            QPen line(QColor(theme::kSnap), 1.0);
            line.setDashPattern({6.0, 3.0});
            painter.setPen(line);
            const QRectF near = QRectF(QPointF(0, 0), transform.viewport()).adjusted(-20, -20, 20, 20);
            const auto within = [&near](const QPointF& p) {
                return QPointF(qBound(near.left(), p.x(), near.right()), qBound(near.top(), p.y(), near.bottom()));
            };
            painter.drawLine(within(transform.toPixel(hint.guide.p1())), within(transform.toPixel(hint.guide.p2())));
        }
        painter.setPen(QPen(QColor(theme::kSnap), 2.0));
        paintMark(painter, hint.kind, transform.toPixel(hint.at));
    }
}

} // namespace sim
