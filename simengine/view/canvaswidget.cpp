// SPDX-License-Identifier: GPL-2.0-or-later
#include "simengine/view/canvaswidget.h"

#include "engine/systemparam.h"
#include "simengine/view/toolfactory.h"
#include "simengine/view/viewsession.h"

#include <QEvent>
#include <QKeyEvent>
#include <utility>

namespace sim {

namespace {

constexpr double kFitMargin = 24.0; ///< px around the field when all of it is shown
/// The fine picture follows this long after the last zoom or pan, ms.
constexpr int kRefineDelay = 90;

} // namespace

CanvasWidget::CanvasWidget(ViewSession& session, QWidget* parent)
    : QWidget(parent)
    , m_session(session)
    , m_tool(makeCanvasTool(session.operatorOnView(), *this))
    , m_toolOperator(session.operatorOnView()) {
    setObjectName(QStringLiteral("canvas"));
    setAttribute(Qt::WA_OpaquePaintEvent);
    setAttribute(Qt::WA_AcceptTouchEvents);
    setMouseTracking(true);
    setFocusPolicy(Qt::StrongFocus);
    setMinimumSize(80, 80);
    m_refine.setSingleShot(true);
    m_refine.setInterval(kRefineDelay);
    connect(&m_refine, &QTimer::timeout, this, &CanvasWidget::refine);
    connect(&m_drawer, &SceneDrawer::drawn, this, [this](const ScenePicture& picture) {
        takeBase(picture);
        update();
    });
    connect(&m_job, &JobOverlay::changed, this, [this](const QRect& pixels) {
        if (pixels.isEmpty())
            update();
        else
            update(pixels);
    });
    connect(&session, &ViewSession::changed, this, &CanvasWidget::documentChanged);
    connect(&session, &ViewSession::addMarkToolChanged, this, &CanvasWidget::renewTool);
    connect(&session, &ViewSession::overlayChanged, this, [this] {
        chooseTool();
        update();
    });
    m_scene.setState(session.state());
    updateCursor();
}

CanvasWidget::~CanvasWidget() = default;

QRectF CanvasWidget::fieldMm() const {
    const QRectF field = SystemParam::Instance()->GetCanvasRect();
    // A field that was never set up has no size; the view needs one to fit to.
    return field.width() > 0.0 && field.height() > 0.0 ? field : QRectF(-50.0, -50.0, 100.0, 100.0);
}

void CanvasWidget::setViewTransform(const ViewTransform& transform) {
    m_followsField = false;
    applyTransform(transform);
}

void CanvasWidget::applyTransform(const ViewTransform& transform) {
    if (m_transform == transform)
        return;
    m_transform = transform;
    // A picture that took longer than a frame to draw is stretched while the view moves.
    constexpr double kFrame = 14.0;
    m_fine = m_sceneTime < kFrame;
    m_refine.start();
    emit transformChanged();
    update();
}

void CanvasWidget::refine() {
    m_fine = true;
    update();
}

void CanvasWidget::zoomAbout(const QPointF& pixel, double factor) {
    ViewTransform transform = m_transform;
    transform.zoomAbout(pixel, factor);
    setViewTransform(transform);
}

void CanvasWidget::fitField() {
    fitMm(fieldMm());
    m_followsField = true;
}

void CanvasWidget::fitMm(const QRectF& mm) {
    ViewTransform transform = m_transform;
    transform.fit(mm, kFitMargin);
    setViewTransform(transform);
}

void CanvasWidget::resizeEvent(QResizeEvent*) {
    ViewTransform transform = m_transform;
    transform.setViewport(size());
    // The first layouts give sizes that do not last; the field stays fitted until the operator has moved the view.
    if (m_followsField)
        transform.fit(fieldMm(), kFitMargin);
    applyTransform(transform);
    m_fine = true;
}

void CanvasWidget::documentChanged() {
    const StatePtr before = m_scene.state();
    const StatePtr after = m_session.state();
    if (before->objects != after->objects) {
        cancelGesture();
        m_hover = -1;
    }
    m_scene.setState(after);
    m_fine = true;
    m_tool->documentChanged();
    update();
}

void CanvasWidget::chooseTool() {
    if (m_toolOperator != m_session.operatorOnView())
        renewTool();
}

void CanvasWidget::renewTool() {
    m_toolOperator = m_session.operatorOnView();
    useTool(makeCanvasTool(m_toolOperator, *this));
}

void CanvasWidget::useTool(std::unique_ptr<CanvasTool> tool) {
    m_tool->cancel();
    m_snap.clear();
    setDragPreview(std::nullopt);
    m_hover = -1;
    // The switch may come from within the old tool, which stays until the next one.
    m_formerTool = std::exchange(m_tool, std::move(tool));
    updateCursor();
    emit toolChanged();
}

void CanvasWidget::endTool(const CanvasTool& tool) {
    if (m_tool.get() == &tool)
        renewTool();
}

void CanvasWidget::setDragPreview(const std::optional<QTransform>& moved) {
    m_dragPreview = moved;
    update();
}

void CanvasWidget::setHover(int index) {
    if (m_hover == index)
        return;
    m_hover = index;
    update();
}

bool CanvasWidget::cancelGesture() {
    const bool cancelled = m_tool->cancel();
    m_snap.clear();
    setDragPreview(std::nullopt);
    if (cancelled)
        update();
    return cancelled;
}

bool CanvasWidget::handleKey(const QKeyEvent& event) {
    if (m_tool->key(event)) {
        update();
        return true;
    }
    if (event.key() != Qt::Key_Escape)
        return false;
    if (cancelGesture())
        return true;
    if (m_session.operatorOnView() != OperatorSelect) {
        m_session.finishOperator();
        return true;
    }
    if (m_session.state()->selection.isEmpty())
        return false;
    m_session.document().select({});
    return true;
}

void CanvasWidget::updateCursor() {
    if (m_panFrom)
        setCursor(Qt::ClosedHandCursor);
    else if (m_spaceHeld)
        setCursor(Qt::OpenHandCursor);
    else
        setCursor(m_tool->cursor());
}

void CanvasWidget::changeEvent(QEvent* event) {
    QWidget::changeEvent(event);
    if (event->type() == QEvent::EnabledChange)
        cancelGesture();
}

} // namespace sim
