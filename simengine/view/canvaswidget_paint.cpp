// SPDX-License-Identifier: GPL-2.0-or-later
#include "simengine/view/canvaswidget.h"

#include "simengine/view/gridpainter.h"
#include "simengine/view/selectionframe.h"
#include "simengine/view/viewsession.h"
#include "simengine/view/viewtheme.h"

#include <QBackingStore>
#include <QPaintEngine>
#include <QPainter>

namespace sim {

namespace {

/// Where a picture made for `from` lies in a view that shows `to`.
QRectF placedPicture(const ViewTransform& from, const ViewTransform& to) {
    const QSizeF size = from.viewport();
    return {to.toPixel(from.toMm({0.0, 0.0})), to.toPixel(from.toMm({size.width(), size.height()}))};
}

/// Objects that can be drawn within a frame are left out of the picture while they are dragged.
constexpr double kQuickScene = 14.0; // ms
/// What takes longer is left to the other thread: the main thread has the input poll to handle.
constexpr double kLongScene = 4.0; // ms

} // namespace

QPixmap CanvasWidget::emptyPixmap() const {
    const double ratio = devicePixelRatioF();
    QPixmap pixmap(size() * ratio);
    pixmap.setDevicePixelRatio(ratio);
    return pixmap;
}

void CanvasWidget::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    paintScene(painter);
    if (m_dragPreview)
        ScenePainter(m_scene, m_transform, m_baseColors).paintSelection(painter, *m_dragPreview);
    else
        paintSelectionLayer(painter);
    if (m_hover >= 0 && !m_scene.state()->selection.contains(m_hover)) {
        ScenePainter(m_scene, m_transform, m_baseColors).paintOutline(painter, m_hover, QColor(theme::kHover), 2.0);
    }
    painter.setRenderHint(QPainter::Antialiasing);
    paintFrame(painter);
    m_tool->paint(painter);
    paintReadout(painter);
}

void CanvasWidget::paintScene(QPainter& painter) {
    m_baseColors = m_session.penColors();
    const bool withSelection = !(m_dragPreview && m_sceneTime < kQuickScene);
    const bool sameContent = m_base.valid && m_base.state->objects == m_scene.state()->objects &&
                             m_base.withSelection == withSelection && m_base.colors == m_baseColors &&
                             m_base.pixmap.devicePixelRatio() == devicePixelRatioF();
    const bool usable = sameContent && (m_base.transform == m_transform || !m_fine);
    if (!usable) {
        const SceneOrder order = orderBase(withSelection);
        if (mayDrawLater(painter))
            m_drawer.draw(order);
        else
            takeBase(drawScene(m_scene, order));
    }
    showBase(painter);
}

void CanvasWidget::showBase(QPainter& painter) {
    if (m_base.transform == m_transform) {
        painter.drawPixmap(QPointF(0, 0), m_base.pixmap);
        return;
    }
    paintGrid(painter, m_transform, fieldMm());
    painter.drawPixmap(placedPicture(m_base.transform, m_transform), m_base.pixmap,
                       QRectF(QPointF(0, 0), QSizeF(m_base.pixmap.size())));
}

/// The window's own picture can wait for the other thread; one that was asked for must show what is there now.
bool CanvasWidget::mayDrawLater(const QPainter& painter) const {
    QBackingStore* store = window()->backingStore();
    return m_base.valid && m_sceneTime > kLongScene && m_base.pixmap.devicePixelRatio() == devicePixelRatioF() &&
           store && painter.paintEngine()->paintDevice() == store->paintDevice();
}

SceneOrder CanvasWidget::orderBase(bool withSelection) const {
    const double ratio = devicePixelRatioF();
    return {m_scene.state(), m_transform, m_baseColors, fieldMm(), withSelection, size() * ratio, ratio};
}

/// What has changed meanwhile is found at the next paint.
void CanvasWidget::takeBase(const ScenePicture& picture) {
    m_sceneTime = picture.workMs;
    m_base.pixmap = QPixmap::fromImage(picture.image, Qt::NoFormatConversion);
    m_base.transform = picture.order.transform;
    m_base.state = picture.order.state;
    m_base.colors = picture.order.colors;
    m_base.withSelection = picture.order.withSelection;
    m_base.valid = true;
}

void CanvasWidget::paintSelectionLayer(QPainter& painter) {
    if (m_scene.state()->selection.isEmpty()) {
        m_selection = Layer();
        return;
    }
    const bool sameContent = m_selection.valid && m_selection.state == m_scene.state() &&
                             m_selection.pixmap.devicePixelRatio() == devicePixelRatioF();
    if (!sameContent || (m_selection.transform != m_transform && m_fine))
        renderSelection();
    if (m_selection.transform == m_transform) {
        painter.drawPixmap(QPointF(0, 0), m_selection.pixmap);
    } else {
        painter.drawPixmap(placedPicture(m_selection.transform, m_transform), m_selection.pixmap,
                           QRectF(QPointF(0, 0), QSizeF(m_selection.pixmap.size())));
    }
}

void CanvasWidget::renderSelection() {
    QPixmap pixmap = emptyPixmap();
    pixmap.fill(Qt::transparent);
    {
        QPainter painter(&pixmap);
        ScenePainter(m_scene, m_transform, m_baseColors).paintSelection(painter);
    }
    m_selection.pixmap = pixmap;
    m_selection.transform = m_transform;
    m_selection.state = m_scene.state();
    m_selection.valid = true;
}

// The frame with its handles; while a gesture goes on, a thin box around what is moved.
void CanvasWidget::paintFrame(QPainter& painter) const {
    const DocumentState& state = *m_scene.state();
    if (m_session.operatorOnView() != OperatorSelect || state.selection.isEmpty())
        return;
    const Box box = selectionBounds(state);
    if (!box.isValid())
        return;
    QPen line(QColor(theme::kAccent), 1.0);
    line.setCosmetic(true);
    painter.setBrush(Qt::NoBrush);
    if (m_dragPreview) {
        const QPolygonF corners({QPointF(box.minX, box.minY), QPointF(box.maxX, box.minY), QPointF(box.maxX, box.maxY),
                                 QPointF(box.minX, box.maxY)});
        line.setDashPattern({4.0, 3.0});
        painter.setPen(line);
        painter.drawPolygon((*m_dragPreview * m_transform.matrix()).map(corners));
        return;
    }
    const SelectionFrame frame(box, m_transform);
    const QRectF rect(frame.rect().toAlignedRect());
    painter.setPen(line);
    painter.drawRect(rect.translated(0.5, 0.5));
    if (m_session.document().isReadOnly())
        return;
    painter.setBrush(QColor(theme::kCanvas));
    constexpr double kHalf = SelectionFrame::kHandleSize / 2.0;
    for (int i = 0; i < kScaleHandleCount; ++i) {
        const auto handle = static_cast<FrameHandle>(i);
        if (!frame.hasHandle(handle))
            continue;
        const QPointF at = frame.handlePos(handle).toPoint() + QPointF(0.5, 0.5);
        painter.drawRoundedRect(QRectF(at.x() - kHalf, at.y() - kHalf, 2 * kHalf, 2 * kHalf), 2.0, 2.0);
    }
    if (frame.hasHandle(FrameHandle::Rotate)) {
        const QPointF at = frame.handlePos(FrameHandle::Rotate).toPoint() + QPointF(0.5, 0.5);
        painter.drawLine(QPointF(at.x(), rect.top()), at);
        painter.drawEllipse(at, kHalf + 1.0, kHalf + 1.0);
        painter.setBrush(QColor(theme::kAccent));
        painter.drawEllipse(at, 2.0, 2.0);
    }
}

void CanvasWidget::paintReadout(QPainter& painter) const {
    const QString text = m_tool->readout();
    if (text.isEmpty())
        return;
    QFont font = painter.font();
    font.setPixelSize(13);
    painter.setFont(font);
    const QSizeF size = QSizeF(painter.fontMetrics().size(0, text)) + QSizeF(16, 8);
    QPointF corner = m_pointer + QPointF(18, 18);
    corner.setX(qBound(2.0, corner.x(), width() - size.width() - 2.0));
    corner.setY(qBound(2.0, corner.y(), height() - size.height() - 2.0));
    const QRectF rect(corner, size);
    painter.setPen(Qt::NoPen);
    painter.setBrush(QColor(30, 40, 50, 225));
    painter.drawRoundedRect(rect, 4.0, 4.0);
    painter.setPen(Qt::white);
    painter.drawText(rect, Qt::AlignCenter, text);
}

} // namespace sim
