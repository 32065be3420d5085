// SPDX-License-Identifier: GPL-2.0-or-later
#include "engine/marklog.h"
#include "engine/marktool.h"
#include "simengine/document/mkfcodec.h"
#include "simengine/servers/pusheddocument.h"
#include "simengine/servers/stationmessage.h"
#include "simengine/view/marktoolaccess.h"
#include "simengine/view/nodebar.h"
#include "simengine/view/qrulerview_p.h"
#include "simengine/view/qrulerviewaccess.h"
#include "simengine/view/viewtheme.h"
#include "support/approot.h"

#include <QDir>
#include <QFileInfo>
#include <QKeyEvent>
#include <QPainter>
#include <QVBoxLayout>

namespace {

/// The square where the rulers meet.
class RulerCorner : public QWidget {
public:
    using QWidget::QWidget;

protected:
    void paintEvent(QPaintEvent*) override {
        QPainter painter(this);
        painter.fillRect(rect(), QColor(sim::theme::kRuler));
        painter.fillRect(QRect(0, height() - 1, width(), 1), QColor(sim::theme::kRulerEdge));
        painter.fillRect(QRect(width() - 1, 0, 1, height()), QColor(sim::theme::kRulerEdge));
        QFont small = font();
        small.setPixelSize(9);
        painter.setFont(small);
        painter.setPen(QColor(sim::theme::kRulerTick));
        painter.drawText(rect().adjusted(0, 0, -1, -1), Qt::AlignCenter, QStringLiteral("mm"));
    }
};

constexpr double kZoomStep = 1.25; ///< of the zoom buttons

/// A bare name means a document of this station.
QString pathOf(const QString& name) {
    if (name.isEmpty() || name.contains(QLatin1Char('/')))
        return name;
    const QString suffix = QStringLiteral(".mkf");
    const QString file = name.endsWith(suffix, Qt::CaseInsensitive) ? name : name + suffix;
    return tessera::rootPath(QStringLiteral("/MarkFile/") + file);
}

} // namespace

QRulerView::Private::Private(QRulerView& view)
    : q(view)
    , container(MarkShapeContainerAccess::make(
          session.document(), {[this](std::uint64_t pass, sim::MarkKind kind) { canvas->job().jobBegins(pass, kind); },
                               [this] { canvas->job().jobEnds(); }}))
    , windowKeys(view, [this](const QKeyEvent& event) { return handleConfirm(event); })
    , top(new sim::RulerBar(Qt::Horizontal, &view))
    , left(new sim::RulerBar(Qt::Vertical, &view))
    , canvas(new sim::CanvasWidget(session, &view))
    , bar(new sim::ViewBar(*canvas, &view))
    , listFrame(new QWidget(&view))
    , list(new VZListViewEx(listFrame))
    , shownState(session.state()) {
    listFrame->hide();
    auto* listLayout = new QVBoxLayout(listFrame);
    listLayout->setContentsMargins(0, 0, 0, 0);
    listLayout->addWidget(list);
    QRulerViewAccess::attach(*list, session);
    auto* corner = new RulerCorner(&view);
    corner->setGeometry(0, 0, sim::RulerBar::kThickness, sim::RulerBar::kThickness);
    QObject::connect(&session, &sim::ViewSession::changed, &view, [this] { showChange(); });
    QObject::connect(&session, &sim::ViewSession::operatorChanged, &view, &QRulerView::ChangeOperatorOnView);
    QObject::connect(canvas, &sim::CanvasWidget::transformChanged, &view, [this] { showTransform(); });
    QObject::connect(canvas, &sim::CanvasWidget::pointerMoved, &view, [this](QPointF mm, QPointF pixel) {
        top->setCursorMark(pixel.x());
        left->setCursorMark(pixel.y());
        emit q.MouseMoveEvent(mm, pixel.toPoint());
    });
    QObject::connect(canvas, &sim::CanvasWidget::pointerLeft, &view, [this] {
        top->setCursorMark(std::nullopt);
        left->setCursorMark(std::nullopt);
    });
    new sim::NodeBar(*canvas);
    QObject::connect(bar, &sim::ViewBar::playbackAsked, &view, [this] { openPlayback(); });
    showTransform();
}

// The list, wherever it was put, and the canvas look at the session, which must outlive them.
QRulerView::Private::~Private() {
    delete list;
    delete listFrame;
    delete playback; // looks at the session, and has the main window for its parent
    delete bar;
    delete canvas;
}

void QRulerView::Private::place() {
    constexpr int kRuler = sim::RulerBar::kThickness;
    const int width = qMax(0, q.width() - kRuler);
    const int height = qMax(0, q.height() - kRuler);
    top->setGeometry(kRuler, 0, width, kRuler);
    left->setGeometry(0, kRuler, kRuler, height);
    canvas->setGeometry(kRuler, kRuler, width, height);
    constexpr int kGap = 8;
    const QSize size = bar->sizeHint();
    bar->setGeometry(q.width() - size.width() - kGap, q.height() - size.height() - kGap, size.width(), size.height());
}

void QRulerView::Private::showTransform() {
    top->setTransform(canvas->viewTransform());
    left->setTransform(canvas->viewTransform());
}

void QRulerView::Private::showChange() {
    const sim::StatePtr state = session.state();
    const bool different = state->objects != shownState->objects || state->selection != shownState->selection;
    shownState = state;
    const bool redo = session.document().canRedo();
    const bool undo = session.document().canUndo();
    const bool steps = redo != shownRedo || undo != shownUndo;
    shownRedo = redo;
    shownUndo = undo;
    if (steps)
        emit q.RedoUnDo(redo, undo);
    if (!different)
        return;
    double x = 0.0, y = 0.0, width = 0.0, height = 0.0, angle = 0.0;
    q.GetSelectObjPos(x, y, width, height, angle);
    emit q.SelectChanged(x, y, width, height, angle, q.GetSelectedToolCnt(), q.GetSelectObjWorkType());
}

bool QRulerView::Private::edit(const std::function<sim::EditResult(const sim::DocumentState&)>& change) {
    canvas->cancelGesture();
    return session.document().edit(change);
}

void QRulerView::Private::setName(const QString& given) {
    session.document().setFileName(pathOf(given));
    const std::lock_guard<std::mutex> lock(nameMutex);
    name = given;
}

QString QRulerView::Private::givenName() const {
    const std::lock_guard<std::mutex> lock(nameMutex);
    return name;
}

bool QRulerView::Private::read() {
    canvas->cancelGesture();
    QString error;
    if (!sim::loadDocument(session.document(), &error)) {
        MarkLog::Instance()->ShowNote_Error(error);
        return false;
    }
    canvas->fitField();
    return true;
}

QRulerView::QRulerView(QWidget* parent)
    : QWidget(parent)
    , d(std::make_unique<Private>(*this)) {
    setObjectName(QStringLiteral("rulerView"));
    setFocusProxy(d->canvas);
    setMinimumSize(160, 120);
}

// At the program's end the open documents stay in the list of recent files: then nobody is told that they close.
QRulerView::~QRulerView() {
    if (m_bExitClear)
        emit SubWndClosed(GetFileName());
}

void QRulerView::Init() {
    qRegisterMetaType<OperatorOnView>("OperatorOnView");
}

void QRulerView::SetFileName(QString const& name) {
    d->setName(name);
}

QString QRulerView::GetFileName() const {
    return d->givenName();
}

bool QRulerView::ReadDoc() {
    return d->read();
}

bool QRulerView::ReadDoc(QString const& first, QString const& second) {
    d->canvas->cancelGesture();
    QString error;
    const std::optional<QString> path = sim::pushedPath(second, error);
    const std::optional<sim::DocumentContent> content = path ? sim::pushedContent(first, error) : std::nullopt;
    if (!content) {
        MarkLog::Instance()->ShowNote_Error(QStringLiteral("pushed document %1: %2").arg(sim::loggable(second), error));
        return false;
    }
    d->session.document().setContent(*content);
    d->canvas->fitField();
    d->setName(second);
    return true;
}

bool QRulerView::SaveDoc() {
    const QString directory = QFileInfo(d->session.document().fileName()).absolutePath();
    QString error;
    if (!QDir().mkpath(directory))
        error = directory;
    else if (sim::saveDocument(d->session.document(), &error))
        return true;
    MarkLog::Instance()->ShowNote_Error(GetFileName() + ": " + error);
    return false;
}

LayerParamEx* QRulerView::GetLayerParams() {
    return d->session.document().pens();
}

MarkShapeContainer* QRulerView::GetMarkTools() {
    return d->container.get();
}

void QRulerView::SetCallBackMirrorPt(void (*callback)(QPointF)) {
    d->session.mirrorCallback = callback;
}

QWidget* QRulerView::GetShowObjList() {
    return d->listFrame;
}

VZListViewEx* QRulerView::GetObjListView() {
    return d->list;
}

void QRulerView::SetOperatorOnView(OperatorOnView op) {
    d->session.setOperatorOnView(op);
}

OperatorOnView QRulerView::GetOperatorOnView() const {
    return d->session.operatorOnView();
}

void QRulerView::SetCurAddMarkTool(MarkTool* tool) {
    d->session.setAddMarkTool(std::unique_ptr<MarkTool>(tool));
}

void QRulerView::F6Pressed() {
    d->session.confirmTaughtPoint();
}

void QRulerView::Enlarge(bool in) {
    const QSize size = d->canvas->size();
    d->canvas->zoomAbout(QPointF(size.width() / 2.0, size.height() / 2.0), in ? kZoomStep : 1.0 / kZoomStep);
}

void QRulerView::ResetView() {
    d->canvas->fitField();
}

void QRulerView::ScaleSelectObjRegion() {
    const sim::Box box = sim::selectionBounds(*d->session.state());
    if (box.isValid())
        d->canvas->fitMm(QRectF(box.minX, box.minY, box.width(), box.height()));
}

// The keys stay in the list until the main thread moves by them: who queues a key only into an empty list never has
// more than one waiting, however long that thread is held up.
void QRulerView::OnKeyUpDonwEvent(int redView, bool selected) {
    Q_UNUSED(selected)
    {
        const QMutexLocker lock(&m_DirKeyLock);
        if (m_DirKeys.isEmpty() || d->moveDue)
            return;
        d->moveDue = true;
    }
    Private* view = d.get();
    QMetaObject::invokeMethod(
        this, [view, redView] { view->takeKeys(redView != 0); }, Qt::QueuedConnection);
}

void QRulerView::resizeEvent(QResizeEvent*) {
    d->place();
}

void QRulerView::keyPressEvent(QKeyEvent* event) {
    if (!d->handleKey(*event))
        QWidget::keyPressEvent(event);
}

bool QRulerView::event(QEvent* event) {
    return QWidget::event(event);
}

sim::ViewSession& QRulerViewAccess::session(QRulerView& view) {
    return view.d->session;
}

sim::CanvasWidget& QRulerViewAccess::canvas(QRulerView& view) {
    return *view.d->canvas;
}
