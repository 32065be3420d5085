// SPDX-License-Identifier: GPL-2.0-or-later
#include "simengine/view/canvaswidget.h"

#include "simengine/view/gridpainter.h"
#include "simengine/view/selectionframe.h"
#include "simengine/view/viewsession.h"
#include "simengine/view/viewtheme.h"

#include <QBackingStore>
#include <QPaintEngine>
#include <QPainter>
#include <cmath>

namespace sim {

namespace {

/// Shows a picture made for `from` in a view that shows `to`. One that is only moved goes to whole pixels: that is a
/// copy, while half a pixel is a calculation for each.
void drawPlaced(QPainter& painter, const QPixmap& picture, const ViewTransform& from, const ViewTransform& to) {
    const QPointF corner = to.toPixel(from.toMm({0.0, 0.0}));
    if (from.scale() == to.scale() && from.viewport() == to.viewport()) {
        const double ratio = picture.devicePixelRatio();
        painter.drawPixmap(QPointF(std::round(corner.x() * ratio) / ratio, std::round(corner.y() * ratio) / ratio),
                           picture);
        return;
    }
    const QSizeF size = from.viewport();
    painter.drawPixmap(QRectF(corner, to.toPixel(from.toMm({size.width(), size.height()}))), picture,
                       QRectF(QPointF(0, 0), QSizeF(picture.size())));
}

/// Objects that can be drawn within a frame are left out of the picture while they are dragged.
constexpr double kQuickScene = 14.0; // ms
/// What takes longer is left to the other thread: the main thread has the input poll to handle.
constexpr double kLongScene = 2.0; // ms
/// Between two pictures by the other thread while the view moves: more of them would slow down the moving.
constexpr int kMovingPeriod = 80; // ms

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
    // Fades what is selected too: its colours would tell of marks that are not there yet.
    paintJob(painter);
    if (m_hover >= 0 && !m_scene.state()->selection.contains(m_hover)) {
        ScenePainter(m_scene, m_transform, m_baseColors).paintOutline(painter, m_hover, QColor(theme::kHover), 2.0);
    }
    painter.setRenderHint(QPainter::Antialiasing);
    paintFrame(painter);
    m_tool->paint(painter);
    m_snap.paint(painter, m_transform);
    paintReadout(painter);
}

void CanvasWidget::paintScene(QPainter& painter) {
    m_baseColors = m_session.penColors();
    const bool withSelection = !(m_dragPreview && m_sceneTime < kQuickScene);
    const bool sameContent = m_base.valid && m_base.state->objects == m_scene.state()->objects &&
                             m_base.withSelection == withSelection && m_base.colors == m_baseColors &&
                             m_base.pixmap.devicePixelRatio() == devicePixelRatioF();
    const bool exact = sameContent && m_base.transform == m_transform;
    // While the view moves, a picture now and then fills what has come in at the edges; the last one follows the rest.
    const bool later = !exact && mayDrawLater(painter);
    const bool soonEnough =
        sameContent && m_refine.isActive() && m_sinceOrder.isValid() && m_sinceOrder.elapsed() < kMovingPeriod;
    if (later && !soonEnough && !m_drawer.isBusy()) {
        m_sinceOrder.start();
        m_drawer.draw(orderBase(withSelection));
    }
    if (!later && !exact && !(sameContent && !m_fine))
        takeBase(drawScene(m_scene, orderBase(withSelection)));
    showBase(painter);
}

void CanvasWidget::paintJob(QPainter& painter) {
    if (!m_job.isActive())
        return;
    m_job.setView(m_transform, devicePixelRatioF(), m_baseColors);
    if (m_job.fadesObjects())
        painter.fillRect(rect(), QColor::fromRgba(theme::kFade));
    m_job.paint(painter);
}

void CanvasWidget::showBase(QPainter& painter) {
    if (m_base.transform == m_transform) {
        painter.drawPixmap(QPointF(0, 0), m_base.pixmap);
        return;
    }
    paintGrid(painter, m_transform, fieldMm());
    drawPlaced(painter, m_base.pixmap, m_base.transform, m_transform);
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
        drawPlaced(painter, m_selection.pixmap, m_selection.transform, m_transform);
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
    if (m_session.operatorOnView() != OperatorSelect || state.selection.isEmpty() || m_tool->hidesFrame())
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
    paintHandles(painter, frame);
}

// With a finger they are drawn in its size: what is to be hit is seen.
void CanvasWidget::paintHandles(QPainter& painter, const SelectionFrame& frame) const {
    const double half = (m_touched ? SelectionFrame::kTouchSize : SelectionFrame::kHandleSize) / 2.0;
    const auto place = [&frame](FrameHandle handle) { return frame.handlePos(handle).toPoint() + QPointF(0.5, 0.5); };
    const QRectF rect(frame.rect().toAlignedRect());
    painter.setBrush(QColor(theme::kCanvas));
    for (int i = 0; i < kScaleHandleCount; ++i) {
        const auto handle = static_cast<FrameHandle>(i);
        if (!frame.hasHandle(handle))
            continue;
        const QPointF at = place(handle);
        painter.drawRoundedRect(QRectF(at.x() - half, at.y() - half, 2 * half, 2 * half), 2.0, 2.0);
    }
    if (frame.hasHandle(FrameHandle::Rotate)) {
        const QPointF at = place(FrameHandle::Rotate);
        painter.drawLine(QPointF(at.x(), rect.top()), at);
        painter.drawEllipse(at, half + 1.0, half + 1.0);
        painter.setBrush(QColor(theme::kAccent));
        painter.drawEllipse(at, 2.0, 2.0);
        painter.setBrush(QColor(theme::kCanvas));
    }
    const QPointF at = place(FrameHandle::Move);
    painter.drawLine(QPointF(at.x(), rect.bottom()), at);
    painter.drawEllipse(at, half + 1.0, half + 1.0);
    const double arm = half - 1.0, tip = half / 3.0;
    for (int quarter = 0; quarter < 4; ++quarter) {
        const QTransform turned = QTransform::fromTranslate(at.x(), at.y()).rotate(90.0 * quarter);
        painter.drawLine(turned.map(QLineF(0, 0, arm, 0)));
        painter.drawPolyline(turned.map(QPolygonF({{arm - tip, -tip}, {arm, 0}, {arm - tip, tip}})));
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
