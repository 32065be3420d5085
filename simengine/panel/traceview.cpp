// SPDX-License-Identifier: GPL-2.0-or-later
#include "simengine/panel/traceview.h"

#include "engine/layerparamex.h"
#include "simengine/card/traceshade.h"
#include "simengine/panel/paneltheme.h"

#include <QPainter>
#include <algorithm>
#include <array>
#include <chrono>

namespace sim {

namespace {

/// Rows fetched and drawn at a time,
constexpr std::size_t kChunkRows = 2048;
/// until a frame's time is over.
constexpr std::chrono::milliseconds kFrameTime(10);

/// Pens in the colours of new documents, lightened to stand out from the dark field.
const std::array<QColor, kLayerCount>& penColors() {
    static const std::array<QColor, kLayerCount> colors = [] {
        std::array<QColor, kLayerCount> list;
        for (int i = 0; i < kLayerCount; ++i) {
            QColor color = LayerParamEx::GetDefultColor(i);
            if (!color.isValid())
                color = QColor::fromRgb(paneltheme::kText);
            color = color.toHsl();
            list[static_cast<std::size_t>(i)] =
                QColor::fromHsl(qMax(0, color.hslHue()), color.hslSaturation(), qMax(165, color.lightness()));
        }
        return list;
    }();
    return colors;
}

/// A pen's colour, the nearer to that of the field the less the power. Not transparent, or the ends of short vectors,
/// which lie over one another, would be brighter than a long line of the same power.
QColor shaded(const QColor& color, double power) {
    const QColor field = QColor::fromRgb(paneltheme::kTraceField);
    const double share = powerOpacity(power);
    const auto mix = [share](int from, int to) { return qRound(from + (to - from) * share); };
    return {mix(field.red(), color.red()), mix(field.green(), color.green()), mix(field.blue(), color.blue())};
}

void drawDot(QPainter& painter, const QPointF& at, const QColor& color) {
    painter.setPen(QPen(color, 1.0));
    painter.setBrush(color);
    painter.drawEllipse(at, 1.5, 1.5);
}

void drawLine(QPainter& painter, const QPointF& from, const QPointF& to, const QColor& color) {
    painter.setPen(QPen(color, 1.0));
    painter.drawLine(from, to);
}

} // namespace

TraceView::TraceView(const SimControl& machine, QWidget* parent)
    : QWidget(parent)
    , m_machine(machine) {
    setObjectName(QStringLiteral("traceView"));
    setAttribute(Qt::WA_OpaquePaintEvent);
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Expanding);
    setField(QRectF(-50, -50, 100, 100));
}

void TraceView::setField(const QRectF& mm) {
    if (m_field == mm || mm.isEmpty())
        return;
    m_field = mm;
    restart();
}

void TraceView::setShowJumps(bool on) {
    if (m_showJumps == on)
        return;
    m_showJumps = on;
    restart();
}

void TraceView::clear() {
    // The rows that are still to come of this pass begin behind those that the machine has now, at the last of them.
    const std::size_t size = m_machine.traceSize(m_pass);
    m_from = size > 0 ? size - 1 : 0;
    std::vector<SimTraceRow> rows;
    m_hasLast = m_machine.followTrace(m_pass, m_from, rows, 1) > 0;
    if (m_hasLast)
        m_last = rows.back();
    m_clearedAt = m_from;
    m_drawn = 0;
    m_picture.fill(Qt::transparent);
    update();
}

// The picture is made anew from the rows that the machine still has.
void TraceView::restart() {
    m_transform.setViewport(size());
    m_transform.fit(m_field, 12.0);
    const double ratio = devicePixelRatioF();
    m_picture = QImage(size() * ratio, QImage::Format_ARGB32_Premultiplied);
    m_picture.setDevicePixelRatio(ratio);
    m_picture.fill(Qt::transparent);
    m_from = m_clearedAt;
    m_drawn = 0;
    m_hasLast = false;
    update();
}

void TraceView::resizeEvent(QResizeEvent*) {
    restart();
}

void TraceView::follow(const SimCardState& state) {
    using Clock = std::chrono::steady_clock;
    const Clock::time_point end = Clock::now() + kFrameTime;
    const std::size_t drawn = m_drawn;
    const std::uint64_t pass = m_pass;
    std::vector<SimTraceRow> rows;
    do {
        const std::uint64_t before = m_pass;
        m_machine.followTrace(m_pass, m_from, rows, kChunkRows);
        if (m_pass != before) {
            m_clearedAt = 0;
            m_drawn = 0;
            m_hasLast = false;
            m_picture.fill(Qt::transparent);
        }
        draw(rows, rows.size() < kChunkRows);
    } while (rows.size() >= kChunkRows && Clock::now() < end);
    const bool moved = state.spotX != m_state.spotX || state.spotY != m_state.spotY || state.laser != m_state.laser;
    m_state = state;
    if (moved || m_drawn != drawn || m_pass != pass)
        update();
}

/// The edges of few rows are smoothed, not of many.
void TraceView::draw(const std::vector<SimTraceRow>& rows, bool smooth) {
    if (m_picture.isNull() || rows.empty())
        return;
    QPainter painter(&m_picture);
    painter.setRenderHint(QPainter::Antialiasing, smooth);
    for (const SimTraceRow& row : rows) {
        if (m_hasLast && (row.drawn || m_showJumps))
            drawWay(painter, row);
        m_last = row;
        m_hasLast = true;
    }
    m_drawn += rows.size();
}

void TraceView::drawWay(QPainter& painter, const SimTraceRow& row) {
    const QPointF to = m_transform.toPixel({row.x, row.y});
    const QPointF from = m_transform.toPixel({m_last.x, m_last.y});
    const bool still = m_last.x == row.x && m_last.y == row.y;
    if (!row.laser || !row.drawn) {
        const QColor color = QColor::fromRgb(row.drawn ? paneltheme::kTracePilot : paneltheme::kTraceJump);
        if (row.drawn && still)
            drawDot(painter, to, color);
        else
            drawLine(painter, from, to, color);
        return;
    }
    const QColor& color = penColors()[static_cast<std::size_t>(qBound(0, row.pen, kLayerCount - 1))];
    if (still) {
        // Not where the power is set anew within a line. A point with a curve shows its highest power.
        m_dotPower = m_last.laser ? std::max(m_dotPower, row.power) : row.power;
        if (!m_last.laser || row.ms > m_last.ms)
            drawDot(painter, to, shaded(color, m_dotPower));
        return;
    }
    m_dotPower = 0.0;
    QPointF begin = from;
    forEachShade(m_last.power, row.power, [&](double share, int percent) {
        const QPointF end = from + (to - from) * share;
        drawLine(painter, begin, end, shaded(color, percent));
        begin = end;
    });
}

void TraceView::paintField(QPainter& painter) const {
    painter.fillRect(rect(), QColor::fromRgb(paneltheme::kCard));
    const QRectF field(m_transform.toPixel({m_field.left(), m_field.bottom()}),
                       m_transform.toPixel({m_field.right(), m_field.top()}));
    const QRectF sharp = QRectF(field.toAlignedRect()).adjusted(0.5, 0.5, -0.5, -0.5);
    painter.setPen(QPen(QColor::fromRgb(paneltheme::kTraceEdge), 1.0));
    painter.setBrush(QColor::fromRgb(paneltheme::kTraceField));
    painter.drawRect(sharp);
    const QPointF center = m_transform.toPixel({0.0, 0.0}).toPoint() + QPointF(0.5, 0.5);
    painter.setPen(QPen(QColor::fromRgb(paneltheme::kEdge), 1.0));
    if (field.left() < center.x() && center.x() < field.right())
        painter.drawLine(QPointF(center.x(), sharp.top() + 1), QPointF(center.x(), sharp.bottom() - 1));
    if (field.top() < center.y() && center.y() < field.bottom())
        painter.drawLine(QPointF(sharp.left() + 1, center.y()), QPointF(sharp.right() - 1, center.y()));
}

void TraceView::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    paintField(painter);
    painter.drawImage(QPointF(0, 0), m_picture);
    if (!m_state.open)
        return;
    painter.setRenderHint(QPainter::Antialiasing);
    const QPointF head = m_transform.toPixel({m_state.spotX, m_state.spotY});
    painter.setPen(QPen(QColor::fromRgb(m_state.laser ? paneltheme::kRed : paneltheme::kHead), 1.5));
    painter.setBrush(Qt::NoBrush);
    painter.drawEllipse(head, 5, 5);
    painter.drawLine(head - QPointF(9, 0), head + QPointF(9, 0));
    painter.drawLine(head - QPointF(0, 9), head + QPointF(0, 9));
}

} // namespace sim
