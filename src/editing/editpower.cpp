// SPDX-License-Identifier: MIT
#include "editing/editpower.h"

#include "editing/listpfedit.h"
#include "editing/powercurve.h"
#include "engine/layerdata.h"

#include <QMouseEvent>
#include <QPainter>
#include <QPainterPath>
#include <QTouchEvent>
#include <QWheelEvent>
#include <algorithm>
#include <cmath>

namespace {

constexpr int Margin = 40;           ///< px between the axes and the widget's edges
constexpr double kFullPower = 100.0; ///< percent
constexpr double kTickPixels = 44.0; ///< least distance of two ticks
constexpr int kMostTicks = 200;
constexpr int kTextHeight = 11;   ///< px, so that "100.0" has room beside the axis
constexpr double kFinger = 16.0;  ///< px within which a curve counts as under the pointer
constexpr double kFarPixel = 1e6; ///< what lies farther out is not drawn: the painter counts in 32 bits

// A curve whose scale has run over its limits draws nothing.
constexpr double kLeastScale = 1e-6;
constexpr double kMostScale = 1e6;

constexpr QRgb kHalfColors[] = {0xff1f5f9f, 0xffa0521f};
constexpr QRgb kGridColor = 0xffdbe2ea;

constexpr int kMaxZoom = 40;
constexpr int kMinZoom = -30;

bool drawable(QPointF const& place) {
    return std::abs(place.x()) < kFarPixel && std::abs(place.y()) < kFarPixel;
}

} // namespace

EditPower::EditPower(bool isLine, QPointF const* curve, QWidget* parent)
    : QWidget(parent)
    , IsLine(isLine) {
    setMouseTracking(true);
    setAttribute(Qt::WA_AcceptTouchEvents);
    Fill(curve);
}

void EditPower::Fill(QPointF const* points) {
    const int half = IsLine ? kWavePointCount / 2 : kWavePointCount;
    First.clear();
    Second.clear();
    for (int i = 0; i < kWavePointCount; ++i)
        (i < half ? First : Second).append(points[i]);
}

void EditPower::SetPFEdit(ListPFEdit* edit) {
    connect(edit, &ListPFEdit::PowerChanged, this, &EditPower::PowerChanged);
}

void EditPower::PowerChanged(QVector<QPointF>& points) {
    if (points.size() != kWavePointCount)
        return;
    Fill(points.constData());
    update();
}

double EditPower::GetLastPowerStart() const {
    for (int i = First.size() - 1; i >= 0; --i) {
        if (First[i].x() != 0.0)
            return First[i].y();
    }
    return 0.0;
}

QVector<QPointF> EditPower::GetPower() const {
    if (!IsLine)
        return First;
    QVector<QPointF> points = First + Second;
    points[0] = QPointF(0.0, 0.0);
    points[points.size() / 2] = QPointF(0.0, GetLastPowerStart());
    return points;
}

QPointF EditPower::GetPowerPoint(double x, double y, double sx, double sy) const {
    return {Margin + m_Pan.x() + sx * x, height() - Margin + m_Pan.y() - sy * y};
}

/// Pixels a unit of x and of y: at a scale of 1 the whole curve fills the room between the margins.
QPointF EditPower::Scales() const {
    double longest = 0.0;
    for (QVector<QPointF> const& half : {First, Second}) {
        for (QPointF const& point : half)
            longest = qMax(longest, point.x());
    }
    if (longest <= 0.0)
        longest = 1.0;
    return {Scale * qMax(1, width() - 2 * Margin) / longest, Scale * qMax(1, height() - 2 * Margin) / kFullPower};
}

QVector<QVector<QPointF>> EditPower::DrawnLines() const {
    const QPointF scales = Scales();
    const QVector<QPointF> points = GetPower();
    const int half = IsLine ? points.size() / 2 : points.size();
    QVector<QVector<QPointF>> lines;
    for (int at = 0; at < points.size(); at += half) {
        QVector<QPointF> line;
        for (QPointF const& point : tessera::drawnPoints(points.mid(at, half))) {
            const QPointF place = GetPowerPoint(point.x(), point.y(), scales.x(), scales.y());
            if (drawable(place))
                line.append(place);
        }
        lines.append(line);
    }
    return lines;
}

void EditPower::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.fillRect(rect(), Qt::white);
    painter.setRenderHint(QPainter::Antialiasing);
    QFont small = font();
    small.setPixelSize(kTextHeight);
    painter.setFont(small);
    const bool shown = Scale > kLeastScale && Scale < kMostScale;
    if (shown)
        DrawTicks(painter);
    DrawAxes(painter);
    DrawZeros(painter);
    if (shown)
        DrawPower(painter);
}

void EditPower::DrawAxes(QPainter& painter) const {
    painter.setPen(QPen(Qt::black, 1.0, Qt::SolidLine));
    painter.drawLine(Margin, Margin / 2, Margin, height() - Margin / 2);
    painter.drawLine(Margin / 2, height() - Margin, width() - Margin / 2, height() - Margin);
}

/// Grid lines at round values with the values beside the axes, wherever the curve was panned to.
void EditPower::DrawTicks(QPainter& painter) const {
    const QPointF scales = Scales();
    const QPointF origin = GetPowerPoint(0.0, 0.0, scales.x(), scales.y());
    const double stepX = tessera::tickStep(scales.x(), kTickPixels);
    const double stepY = tessera::tickStep(scales.y(), kTickPixels);
    const int bottom = height() - Margin;
    if (stepX > 0.0) {
        double value = std::ceil((Margin - origin.x()) / scales.x() / stepX) * stepX;
        for (int i = 0; i < kMostTicks; ++i, value += stepX) {
            const double x = origin.x() + value * scales.x();
            if (x > width() - Margin / 2)
                break;
            painter.setPen(QColor(kGridColor));
            painter.drawLine(QPointF(x, Margin / 2), QPointF(x, bottom));
            painter.setPen(Qt::black);
            painter.drawText(QRectF(x - 30, bottom + 2, 60, Margin / 2), Qt::AlignHCenter | Qt::AlignTop,
                             QString::asprintf("%.1f", value + 0.0));
        }
    }
    if (stepY > 0.0) {
        double value = std::ceil((origin.y() - bottom) / scales.y() / stepY) * stepY;
        for (int i = 0; i < kMostTicks; ++i, value += stepY) {
            const double y = origin.y() - value * scales.y();
            if (y < Margin / 2)
                break;
            painter.setPen(QColor(kGridColor));
            painter.drawLine(QPointF(Margin, y), QPointF(width() - Margin / 2, y));
            painter.setPen(Qt::black);
            painter.drawText(QRectF(0, y - 10, Margin - 3, 20), Qt::AlignRight | Qt::AlignVCenter,
                             QString::asprintf("%.1f", value + 0.0));
        }
    }
}

void EditPower::DrawZeros(QPainter& painter) const {
    const QPointF scales = Scales();
    const QPointF origin = GetPowerPoint(0.0, 0.0, scales.x(), scales.y());
    painter.setPen(QPen(Qt::black, 1.0, Qt::DashLine));
    if (drawable({origin.x(), 0.0}))
        painter.drawLine(QPointF(origin.x(), 0.0), QPointF(origin.x(), height()));
    if (drawable({0.0, origin.y()}))
        painter.drawLine(QPointF(0.0, origin.y()), QPointF(width(), origin.y()));
}

void EditPower::DrawPower(QPainter& painter) const {
    painter.setClipRect(QRect(QPoint(Margin / 2, Margin / 2), QPoint(width() - Margin / 2, height() - Margin / 2)));
    if (IsLine)
        DrawPowerLine(painter);
    else
        DrawPowerPoint(painter, true);
}

void EditPower::DrawPowerPoint(QPainter& painter, bool values) const {
    DrawHalf(painter, 0, values);
}

void EditPower::DrawPowerLine(QPainter& painter) const {
    // The one under the finger last, so that its values lie on top.
    const int last = m_Highlighted == 0 ? 0 : 1;
    DrawHalf(painter, 1 - last, m_Highlighted < 0);
    DrawHalf(painter, last, true);
}

void EditPower::DrawHalf(QPainter& painter, int half, bool values) const {
    const QVector<QPointF> line = DrawnLines().value(half);
    if (line.isEmpty())
        return;
    const bool strong = half == m_Highlighted;
    const QColor color(kHalfColors[half]);
    painter.setPen(QPen(color, strong ? 4.0 : 2.0));
    painter.drawPolyline(line.constData(), line.size());
    painter.setBrush(color);
    const double radius = strong ? 5.0 : 3.0;
    for (QPointF const& place : line)
        painter.drawEllipse(place, radius, radius);
    painter.setBrush(Qt::NoBrush);
    if (!values)
        return;
    const QPointF scales = Scales();
    const QPointF origin = GetPowerPoint(0.0, 0.0, scales.x(), scales.y());
    // Values that would run into each other are left out.
    double lastRight = -kFarPixel;
    for (QPointF const& place : line) {
        const QString value = QString::asprintf("%.1f", (origin.y() - place.y()) / scales.y());
        const double width = painter.fontMetrics().horizontalAdvance(value);
        if (place.x() - width / 2 < lastRight + 4.0)
            continue;
        painter.drawText(QPointF(place.x() - width / 2, place.y() - 8.0), value);
        lastRight = place.x() + width / 2;
    }
}

/// The zoom level is never counted, so that neither limit binds. Kept: a curve of microseconds in a table of seconds
/// needs more steps than the limits would give.
void EditPower::Enlarge(bool in) {
    if (in && ZoomLevel < kMaxZoom)
        Scale *= 10.0 / 9.0;
    else if (!in && ZoomLevel > kMinZoom)
        Scale *= 0.9;
}

void EditPower::wheelEvent(QWheelEvent* event) {
    Enlarge(event->angleDelta().y() >= 1);
    update();
    event->accept();
}

void EditPower::PanBy(QPoint const& offset) {
    m_Pan += offset;
    update();
}

void EditPower::mousePressEvent(QMouseEvent* event) {
    m_LastPlace = event->localPos().toPoint();
    Highlight(event->localPos());
}

void EditPower::mouseMoveEvent(QMouseEvent* event) {
    const QPoint place = event->localPos().toPoint();
    if (event->buttons() & Qt::MiddleButton)
        PanBy(place - m_LastPlace);
    m_LastPlace = place;
    Highlight(event->localPos());
}

void EditPower::leaveEvent(QEvent* event) {
    QWidget::leaveEvent(event);
    if (m_Highlighted >= 0) {
        m_Highlighted = -1;
        update();
    }
}

void EditPower::Highlight(QPointF const& place) {
    int found = -1;
    double nearest = kFinger;
    const QVector<QVector<QPointF>> lines = DrawnLines();
    for (int i = 0; i < lines.size(); ++i) {
        const double distance = tessera::distanceToLine(lines[i], place);
        if (distance <= nearest) {
            nearest = distance;
            found = i;
        }
    }
    if (found == m_Highlighted)
        return;
    m_Highlighted = found;
    update();
}

bool EditPower::event(QEvent* event) {
    switch (event->type()) {
    case QEvent::TouchBegin:
    case QEvent::TouchUpdate:
    case QEvent::TouchEnd:
    case QEvent::TouchCancel:
        Touch(static_cast<QTouchEvent*>(event));
        event->accept();
        return true;
    default:
        return QWidget::event(event);
    }
}

/// One finger pans, two zoom by the change of their distance. There is no middle button on a touch panel.
void EditPower::Touch(QTouchEvent* event) {
    QList<QTouchEvent::TouchPoint> fingers = event->touchPoints();
    fingers.erase(std::remove_if(fingers.begin(), fingers.end(),
                                 [](auto const& finger) { return finger.state() == Qt::TouchPointReleased; }),
                  fingers.end());
    // A finger that comes or goes begins anew: the next move counts from here.
    const bool goesOn = fingers.size() == m_Fingers;
    m_Fingers = fingers.size();
    if (fingers.size() == 1) {
        const QPoint place = fingers[0].pos().toPoint();
        if (goesOn)
            PanBy(place - m_LastPlace);
        else
            Highlight(fingers[0].pos());
        m_LastPlace = place;
    } else if (fingers.size() == 2) {
        const double distance = qMax(1.0, QLineF(fingers[0].pos(), fingers[1].pos()).length());
        if (goesOn) {
            Scale *= distance / m_FingerDistance;
            update();
        }
        m_FingerDistance = distance;
    }
}
