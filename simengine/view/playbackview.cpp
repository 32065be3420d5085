// SPDX-License-Identifier: GPL-2.0-or-later
#include "simengine/view/playbackview.h"

#include "simengine/document/box.h"
#include "simengine/view/viewtheme.h"

#include <QElapsedTimer>
#include <QMouseEvent>
#include <QPainter>
#include <QWheelEvent>
#include <cmath>
#include <limits>

namespace sim {

namespace {

constexpr double kMargin = 24.0; ///< px around the job when all of it is shown
/// Drawing at a time, ms: the main thread has the input poll to handle.
constexpr double kStepMs = 5.0;
/// Pieces between two looks at the clock.
constexpr int kPiecesAtATime = 256;
/// Jobs of more vertices are drawn without smoothing.
constexpr std::size_t kSmoothVertices = 20000;
constexpr QRgb kGhost = 0xffd3dae1;
constexpr QRgb kJump = 0xffb9c4cf;

Box extentOf(const Job& job) {
    Box box;
    for (const Stroke& stroke : job.strokes) {
        for (const Point& point : stroke.points) {
            if (std::isfinite(point.x) && std::isfinite(point.y))
                box.add(QPointF(point.x, point.y));
        }
    }
    return box;
}

} // namespace

/// Gathers lines of one colour that follow one another: drawn one by one their ends would show.
class PlaybackView::Pencil {
public:
    explicit Pencil(QPainter& painter)
        : m_painter(painter) {}
    ~Pencil() { flush(); }
    Pencil(const Pencil&) = delete;
    Pencil& operator=(const Pencil&) = delete;

    void line(const QPointF& from, const QPointF& to, const QColor& color) {
        if (m_points.isEmpty() || color != m_color || m_points.last() != from || m_points.size() >= kMost) {
            flush();
            m_color = color;
            m_points.append(from);
        }
        m_points.append(to);
    }
    void dot(const QPointF& at, const QColor& color) {
        flush();
        m_painter.setPen(Qt::NoPen);
        m_painter.setBrush(color);
        m_painter.drawEllipse(at, 2.0, 2.0);
    }

private:
    static constexpr int kMost = 1024;

    void flush() {
        if (m_points.isEmpty())
            return;
        m_painter.setPen(QPen(m_color, 0));
        m_painter.drawPolyline(m_points);
        m_points.clear();
    }

    QPainter& m_painter;
    QColor m_color;
    QPolygonF m_points;
};

PlaybackView::PlaybackView(QWidget* parent)
    : QWidget(parent)
    , m_field(-50.0, -50.0, 100.0, 100.0) {
    setObjectName(QStringLiteral("playbackView"));
    setAttribute(Qt::WA_OpaquePaintEvent);
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Expanding);
    m_work.setInterval(0);
    connect(&m_work, &QTimer::timeout, this, &PlaybackView::work);
}

PlaybackView::~PlaybackView() = default;

void PlaybackView::setTimeline(std::shared_ptr<const JobTimeline> timeline, const Colors& colors, bool invertX,
                               bool invertY) {
    m_now.reset();
    m_ghostAt.reset();
    m_markedAt.reset();
    m_timeline = std::move(timeline);
    m_colors = colors;
    for (QColor& color : m_colors)
        color = theme::onCanvas(color);
    m_invertX = invertX;
    m_invertY = invertY;
    m_us = 0.0;
    if (m_timeline)
        m_now.emplace(*m_timeline);
    const Box box = m_timeline ? extentOf(m_timeline->job().job) : Box();
    m_extent = QRectF();
    if (box.isValid())
        m_extent = QRectF(toDocument({box.minX, box.minY}), toDocument({box.maxX, box.maxY})).normalized();
    fit();
    restart();
}

void PlaybackView::setTime(double us) {
    if (m_us == us || !m_now)
        return;
    m_us = us;
    m_now->seek(us);
    if (us < m_drawnUs)
        restartMarked();
    m_drawnUs = us;
    m_markedDone = false;
    work();
}

void PlaybackView::setShowJumps(bool on) {
    if (m_showJumps == on)
        return;
    m_showJumps = on;
    restart();
}

void PlaybackView::setField(const QRectF& mm) {
    if (mm.isEmpty())
        return;
    m_field = mm;
    update();
}

void PlaybackView::fit() {
    ViewTransform transform = m_transform;
    const bool area = m_extent.width() > 0.0 || m_extent.height() > 0.0;
    transform.fit(area ? m_extent : m_field, kMargin);
    setView(transform);
}

void PlaybackView::zoom(double factor) {
    ViewTransform transform = m_transform;
    transform.zoomAbout(QPointF(width() / 2.0, height() / 2.0), factor);
    setView(transform);
}

void PlaybackView::setView(const ViewTransform& transform) {
    if (m_transform == transform)
        return;
    m_transform = transform;
    restart();
}

PlaybackMoment PlaybackView::moment() const {
    if (!m_now || !m_now->hasPiece())
        return {};
    // Done is dark: the last piece ends with the job.
    const bool over = m_us >= m_timeline->totalUs();
    return {toDocument(m_now->at(m_us)), m_now->piece().pen, m_now->piece().laser && !over};
}

QPointF PlaybackView::toDocument(const Point& machine) const {
    return {m_invertX ? -machine.x : machine.x, m_invertY ? -machine.y : machine.y};
}

QImage PlaybackView::emptyPicture() const {
    const double ratio = devicePixelRatioF();
    QImage picture((QSizeF(size()) * ratio).toSize(), QImage::Format_ARGB32_Premultiplied);
    picture.setDevicePixelRatio(ratio);
    picture.fill(Qt::transparent);
    return picture;
}

void PlaybackView::restart() {
    m_pictureView = m_transform;
    m_ghost = emptyPicture();
    m_ghostAt.reset();
    if (m_timeline)
        m_ghostAt.emplace(*m_timeline);
    m_ghostDone = !m_ghostAt || !m_ghostAt->hasPiece();
    restartMarked();
    work();
}

void PlaybackView::restartMarked() {
    m_marked = emptyPicture();
    m_markedAt.reset();
    if (m_timeline)
        m_markedAt.emplace(*m_timeline);
    m_markedEnd = !m_markedAt || !m_markedAt->hasPiece();
    m_markedDone = m_markedEnd;
    m_drawnUs = m_us;
}

/// The marked part goes first: it is what is looked at.
void PlaybackView::work() {
    QElapsedTimer clock;
    clock.start();
    if (!m_markedDone)
        m_markedDone = drawMarked(kStepMs);
    const double left = kStepMs - double(clock.nsecsElapsed()) / 1e6;
    if (!m_ghostDone && left > 0.0)
        m_ghostDone = drawGhost(left);
    if (isComplete())
        m_work.stop();
    else if (!m_work.isActive())
        m_work.start();
    update();
}

bool PlaybackView::drawGhost(double limitMs) {
    QElapsedTimer clock;
    clock.start();
    QPainter painter(&m_ghost);
    painter.setRenderHint(QPainter::Antialiasing, m_timeline->time().vertices <= kSmoothVertices);
    Pencil pencil(painter);
    JobTimeline::Reader& reader = *m_ghostAt;
    for (int i = 1;; ++i) {
        const Piece& piece = reader.piece();
        if (piece.kind == Piece::Kind::Mark) {
            const QPointF from = onPicture(reader.from());
            const QPointF to = onPicture(piece.to);
            if (from == to)
                pencil.dot(to, QColor(kGhost));
            else
                pencil.line(from, to, QColor(kGhost));
        }
        if (!reader.next())
            return true;
        reader.passRounds(std::numeric_limits<double>::infinity());
        if (i % kPiecesAtATime == 0 && double(clock.nsecsElapsed()) / 1e6 > limitMs)
            return false;
    }
}

bool PlaybackView::drawMarked(double limitMs) {
    QElapsedTimer clock;
    clock.start();
    QPainter painter(&m_marked);
    painter.setRenderHint(QPainter::Antialiasing, m_timeline->time().vertices <= kSmoothVertices);
    Pencil pencil(painter);
    JobTimeline::Reader& reader = *m_markedAt;
    for (int i = 1; !m_markedEnd && reader.endUs() <= m_us; ++i) {
        const Piece& piece = reader.piece();
        const bool marks = piece.kind == Piece::Kind::Mark;
        if (marks || (m_showJumps && piece.kind == Piece::Kind::Jump)) {
            const QColor& color = m_colors[piece.pen];
            const QPointF from = onPicture(reader.from());
            const QPointF to = onPicture(piece.to);
            if (from != to)
                pencil.line(from, to, marks ? color : QColor(kJump));
            else if (marks)
                pencil.dot(to, color);
        }
        m_markedEnd = !reader.next();
        if (!m_markedEnd)
            reader.passRounds(m_us);
        if (i % kPiecesAtATime == 0 && double(clock.nsecsElapsed()) / 1e6 > limitMs)
            return false;
    }
    return true;
}

void PlaybackView::paintField(QPainter& painter) const {
    painter.fillRect(rect(), QColor(theme::kSurround));
    const QRectF field(m_transform.toPixel({m_field.left(), m_field.bottom()}),
                       m_transform.toPixel({m_field.right(), m_field.top()}));
    painter.setPen(QPen(QColor(theme::kCanvasEdge), 0));
    painter.setBrush(QColor(theme::kCanvas));
    painter.drawRect(QRectF(field.toAlignedRect()).adjusted(0.5, 0.5, -0.5, -0.5));
}

void PlaybackView::paintHead(QPainter& painter) {
    if (!m_now || !m_now->hasPiece())
        return;
    painter.setRenderHint(QPainter::Antialiasing);
    const PlaybackMoment now = moment();
    const QPointF head = m_transform.toPixel(now.at);
    const Piece& piece = m_now->piece();
    // The piece that is under way is drawn as far as it has come.
    if (piece.kind == Piece::Kind::Mark || (m_showJumps && piece.kind == Piece::Kind::Jump)) {
        painter.setPen(QPen(piece.kind == Piece::Kind::Mark ? m_colors[piece.pen] : QColor(kJump), 0));
        painter.drawLine(m_transform.toPixel(toDocument(m_now->from())), head);
    }
    painter.setPen(QPen(QColor(theme::kRulerText), 1.5));
    painter.setBrush(now.laser ? QColor(theme::kPilot) : QColor(theme::kCanvas));
    painter.drawEllipse(head, 5.0, 5.0);
    painter.drawLine(head - QPointF(10, 0), head - QPointF(5, 0));
    painter.drawLine(head + QPointF(5, 0), head + QPointF(10, 0));
    painter.drawLine(head - QPointF(0, 10), head - QPointF(0, 5));
    painter.drawLine(head + QPointF(0, 5), head + QPointF(0, 10));
}

void PlaybackView::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    paintField(painter);
    const QPointF dragged = m_transform.toPixel({0.0, 0.0}) - m_pictureView.toPixel({0.0, 0.0});
    painter.drawImage(dragged, m_ghost);
    painter.drawImage(dragged, m_marked);
    paintHead(painter);
    painter.setRenderHint(QPainter::Antialiasing, false);
    painter.setPen(QPen(QColor(theme::kRulerEdge), 0));
    painter.setBrush(Qt::NoBrush);
    painter.drawRect(rect().adjusted(0, 0, -1, -1));
}

void PlaybackView::resizeEvent(QResizeEvent*) {
    m_transform.setViewport(size());
    fit();
    restart();
}

void PlaybackView::wheelEvent(QWheelEvent* event) {
    ViewTransform transform = m_transform;
    transform.zoomAbout(event->position(), std::pow(1.2, event->angleDelta().y() / 120.0));
    setView(transform);
}

void PlaybackView::mousePressEvent(QMouseEvent* event) {
    m_dragFrom = event->localPos();
}

void PlaybackView::mouseMoveEvent(QMouseEvent* event) {
    if (!m_dragFrom)
        return;
    m_transform.panBy(event->localPos() - *m_dragFrom);
    m_dragFrom = event->localPos();
    update();
}

/// The pictures are drawn anew where the view has come to rest.
void PlaybackView::mouseReleaseEvent(QMouseEvent*) {
    m_dragFrom.reset();
    if (m_pictureView != m_transform)
        restart();
}

void PlaybackView::mouseDoubleClickEvent(QMouseEvent*) {
    fit();
}

} // namespace sim
