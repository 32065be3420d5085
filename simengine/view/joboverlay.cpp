// SPDX-License-Identifier: GPL-2.0-or-later
#include "simengine/view/joboverlay.h"

#include "engine/systemparam.h"
#include "simengine/card/cardcore.h"
#include "simengine/view/devicelines.h"
#include "simengine/view/viewtheme.h"

#include <QPainter>

namespace sim {

namespace {

constexpr double kMargin = 8.0;           ///< px around the viewport that lines reach
constexpr double kSpotRadius = 5.0;       ///< px
constexpr std::size_t kRowsAtOnce = 2048; ///< drawn between two looks at the time
/// A second line beside the first makes marked parts two pixels wide.
constexpr double kWider = 0.75;

} // namespace

JobOverlay::JobOverlay(QObject* parent)
    : QObject(parent) {
    m_look.setInterval(kPeriod);
    m_linger.setSingleShot(true);
    m_linger.setInterval(kLinger);
    connect(&m_look, &QTimer::timeout, this, &JobOverlay::follow);
    connect(&m_linger, &QTimer::timeout, this, &JobOverlay::clearWhenDrawn);
}

void JobOverlay::jobBegins(std::uint64_t pass, MarkKind kind) {
    QMetaObject::invokeMethod(
        this, [this, pass, kind] { begin(pass, kind); }, Qt::QueuedConnection);
}

void JobOverlay::jobEnds() {
    QMetaObject::invokeMethod(
        this, [this] { end(); }, Qt::QueuedConnection);
}

void JobOverlay::begin(std::uint64_t pass, MarkKind kind) {
    m_linger.stop();
    m_phase = Phase::Running;
    m_kind = kind;
    m_passBefore = m_pass = pass;
    const SystemParam* system = SystemParam::Instance();
    m_signX = system->InvertX() ? -1.0 : 1.0;
    m_signY = system->InvertY() ? -1.0 : 1.0;
    m_spot.reset();
    restart();
    m_look.start();
    emit changed(QRect());
}

// What was marked since the last look is drawn while the picture lingers.
void JobOverlay::end() {
    if (m_phase != Phase::Running)
        return;
    m_phase = Phase::Lingering;
    m_linger.start();
    follow();
}

void JobOverlay::clearWhenDrawn() {
    const TraceSnapshot rows = simulatedCard().trace().snapshot();
    const bool own = m_kind == MarkKind::Laser && m_pass != m_passBefore && rows.pass() == m_pass;
    if (own && m_next < rows.size())
        m_linger.start();
    else
        clear();
}

void JobOverlay::clear() {
    m_look.stop();
    m_phase = Phase::Idle;
    m_raster.reset();
    m_spot.reset();
    m_lastMarked.reset();
    m_next = 0;
    emit changed(QRect());
}

void JobOverlay::restart() {
    m_raster.reset();
    m_rasterPen = -1;
    m_next = 0;
    m_lastMarked.reset();
    m_dirty = QRectF();
}

void JobOverlay::setView(const ViewTransform& transform, double devicePixelRatio, const PenColors& colors) {
    const bool same = m_transform == transform && m_ratio == devicePixelRatio && m_colors == colors;
    if (same)
        return;
    m_transform = transform;
    m_ratio = devicePixelRatio;
    m_colors = colors;
    restart();
    follow();
}

void JobOverlay::follow() {
    if (m_phase == Phase::Idle)
        return;
    const TraceSnapshot rows = simulatedCard().trace().snapshot();
    if (rows.pass() == m_passBefore)
        return;
    if (rows.pass() != m_pass) {
        m_pass = rows.pass();
        restart();
        emit changed(QRect());
    }
    QElapsedTimer time;
    time.start();
    if (m_kind == MarkKind::Laser) {
        while (m_next < rows.size() && double(time.nsecsElapsed()) < kMostMs * 1e6)
            m_next = draw(rows, m_next, std::min(rows.size(), m_next + kRowsAtOnce));
    }
    moveSpot();
    if (!m_dirty.isEmpty())
        emit changed(m_dirty.toAlignedRect().adjusted(-2, -2, 2, 2));
    m_dirty = QRectF();
}

// Draws the ways to the rows from..to and gives the next row: the last one of a stroke that goes on is its beginning.
std::size_t JobOverlay::draw(const TraceSnapshot& rows, std::size_t from, std::size_t to) {
    if (!m_raster) {
        m_raster = std::make_unique<DraftRaster>(m_transform.viewport(), m_ratio);
        m_rasterPen = -1;
    }
    QVector<QPointF> run;
    int pen = 0;
    if (m_lastMarked)
        run.append(*m_lastMarked);
    for (std::size_t i = from; i < to; ++i) {
        const TraceRow& row = rows[i];
        if (row.drawn && row.pen != pen && run.size() > 1) {
            drawRun(run, pen);
            run = {run.last()};
        }
        if (!row.drawn) {
            drawRun(run, pen);
            run.clear();
        }
        run.append(onDocument(row.at));
        pen = row.pen;
    }
    drawRun(run, pen);
    m_lastMarked = run.isEmpty() ? m_lastMarked : std::optional(run.last());
    return to;
}

void JobOverlay::drawRun(const QVector<QPointF>& run, int pen) {
    if (run.size() < 2)
        return;
    if (m_rasterPen != pen) {
        m_raster->setColor(theme::onCanvas(m_colors[static_cast<std::size_t>(pen) % m_colors.size()]));
        m_rasterPen = pen;
    }
    const QRectF bounds = QRectF(QPointF(0, 0), m_transform.viewport()).adjusted(-kMargin, -kMargin, kMargin, kMargin);
    for (const double beside : {0.0, kWider}) {
        DeviceLines lines(m_transform.matrix() * QTransform::fromTranslate(beside, beside), bounds);
        lines.add(run.constData(), run.size());
        lines.paint(*m_raster);
    }
    const QRectF around = m_transform.matrix().map(QPolygonF(run)).boundingRect().adjusted(-1, -1, 1, 1);
    m_dirty |= around & bounds;
    // a mark point: the beam came and stayed
    if (run.size() == 2 && run.first() == run.last() && bounds.contains(around.center())) {
        for (const QPointF& by : {QPointF(-1, 0), QPointF(1, 0), QPointF(0, -1), QPointF(0, 1)})
            m_raster->dot(around.center() + by);
        m_dirty |= around.adjusted(-2, -2, 2, 2);
    }
}

void JobOverlay::moveSpot() {
    const auto note = [this] {
        if (!m_spot)
            return;
        m_dirty |= QRectF(spotRect(*m_spot));
        if (m_spotMarks && m_lastMarked)
            m_dirty |= QRectF(QRectF(m_transform.toPixel(*m_lastMarked), m_transform.toPixel(*m_spot)).normalized())
                           .adjusted(-2, -2, 2, 2) &
                       QRectF(QPointF(0, 0), m_transform.viewport());
    };
    note();
    if (m_phase == Phase::Running) {
        const HeadState head = simulatedCard().head();
        m_spot = onDocument(head.at);
        m_spotMarks = head.laser;
        m_spotPen = head.pen;
    } else {
        m_spot.reset();
    }
    note();
}

QRect JobOverlay::spotRect(const QPointF& mm) const {
    constexpr double kReach = 2.0 * kSpotRadius + 3.0;
    const QPointF at = m_transform.toPixel(mm);
    const QRectF around(at - QPointF(kReach, kReach), QSizeF(2 * kReach, 2 * kReach));
    return (around & QRectF(QPointF(0, 0), m_transform.viewport())).toAlignedRect();
}

void JobOverlay::paint(QPainter& painter) const {
    if (m_raster)
        painter.drawImage(QPointF(0, 0), m_raster->image());
    if (m_spot)
        paintSpot(painter);
}

void JobOverlay::paintSpot(QPainter& painter) const {
    const QPointF at = m_transform.toPixel(*m_spot);
    const QRectF near = QRectF(QPointF(0, 0), m_transform.viewport()).adjusted(-30, -30, 30, 30);
    if (!near.contains(at))
        return;
    const bool pilot = m_kind != MarkKind::Laser;
    const QColor color = pilot ? QColor(theme::kPilot)
                               : theme::onCanvas(m_colors[static_cast<std::size_t>(m_spotPen) % m_colors.size()]);
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    if (m_spotMarks && m_lastMarked) {
        painter.setPen(QPen(color, 2.0));
        const QPointF from = m_transform.toPixel(*m_lastMarked);
        if (near.contains(from))
            painter.drawLine(from, at);
    }
    const bool shines = pilot || m_spotMarks;
    painter.setPen(QPen(Qt::white, 2.0));
    painter.setBrush(shines ? color : QColor(theme::kNotWorking));
    painter.drawEllipse(at, kSpotRadius, kSpotRadius);
    painter.setBrush(Qt::NoBrush);
    painter.setPen(QPen(shines ? color : QColor(theme::kNotWorking), 1.5));
    painter.drawEllipse(at, 2.0 * kSpotRadius, 2.0 * kSpotRadius);
    painter.restore();
}

} // namespace sim
