// SPDX-License-Identifier: GPL-2.0-or-later
#include "simengine/view/canvaswidget.h"

#include "simengine/view/viewsession.h"

#include <QGuiApplication>
#include <QKeyEvent>
#include <QLineF>
#include <QMouseEvent>
#include <QStyleHints>
#include <QTouchEvent>
#include <QWheelEvent>
#include <algorithm>
#include <cmath>

namespace sim {

namespace {

/// Zoom of one notch of a wheel.
constexpr double kWheelFactor = 1.2;
constexpr double kWheelNotch = 120.0;    ///< eighths of a degree
constexpr double kTapReach = 10.0;       ///< px that a finger may slip in a tap
constexpr double kDoubleTapReach = 24.0; ///< px between two taps at one place

} // namespace

CanvasPoint CanvasWidget::canvasPoint(const QPointF& pixel, Qt::MouseButton button, bool held, bool touch,
                                      Qt::KeyboardModifiers modifiers) {
    m_touched = touch;
    CanvasPoint point{pixel, m_transform.toMm(pixel), button, held, touch, modifiers};
    if (!m_tool->snaps())
        return point;
    if (m_locksAxis)
        point.modifiers |= Qt::ShiftModifier;
    const bool shown = !m_snap.hints().empty();
    m_snap.clear();
    // Alt leaves a place as it is. The right button ends something and places nothing.
    if (!(modifiers & Qt::AltModifier) && button != Qt::RightButton) {
        SnapQuery query;
        query.places = {point.mm};
        point.mm += m_snap.correction(query, m_transform, m_session.state(), CanvasSnap::Targets::All, touch);
        point.pixel = m_snap.hints().empty() ? pixel : m_transform.toPixel(point.mm);
    }
    if (shown || !m_snap.hints().empty())
        update();
    return point;
}

void CanvasWidget::wheelEvent(QWheelEvent* event) {
    const double notches = event->angleDelta().y() / kWheelNotch;
    if (notches != 0.0) {
        zoomAbout(event->position(), std::pow(kWheelFactor, notches));
    }
    event->accept();
}

void CanvasWidget::mousePressEvent(QMouseEvent* event) {
    setFocus(Qt::MouseFocusReason);
    const bool pans = event->button() == Qt::MiddleButton || (m_spaceHeld && event->button() == Qt::LeftButton);
    if (pans) {
        m_panFrom = event->localPos();
        m_panButton = event->button();
        updateCursor();
        return;
    }
    m_tool->press(
        canvasPoint(event->localPos(), event->button(), event->buttons() & Qt::LeftButton, false, event->modifiers()));
    updateCursor();
    update();
}

void CanvasWidget::mouseMoveEvent(QMouseEvent* event) {
    m_pointer = event->localPos();
    emit pointerMoved(m_transform.toMm(m_pointer), m_pointer);
    if (m_panFrom) {
        ViewTransform transform = m_transform;
        transform.panBy(m_pointer - *m_panFrom);
        m_panFrom = m_pointer;
        setViewTransform(transform);
        return;
    }
    m_tool->move(canvasPoint(m_pointer, Qt::NoButton, event->buttons() & Qt::LeftButton, false, event->modifiers()));
    updateCursor();
}

void CanvasWidget::mouseReleaseEvent(QMouseEvent* event) {
    if (m_panFrom) {
        if (event->button() == m_panButton) {
            m_panFrom.reset();
            updateCursor();
        }
        return;
    }
    m_tool->release(canvasPoint(event->localPos(), event->button(), false, false, event->modifiers()));
    updateCursor();
    update();
}

void CanvasWidget::mouseDoubleClickEvent(QMouseEvent* event) {
    if (event->button() == Qt::MiddleButton) {
        fitField();
        return;
    }
    m_tool->doubleClick(canvasPoint(event->localPos(), event->button(), false, false, event->modifiers()));
    update();
}

void CanvasWidget::keyPressEvent(QKeyEvent* event) {
    if (event->key() == Qt::Key_Space) {
        if (!event->isAutoRepeat()) {
            m_spaceHeld = true;
            updateCursor();
        }
        return;
    }
    QWidget::keyPressEvent(event);
}

void CanvasWidget::keyReleaseEvent(QKeyEvent* event) {
    if (event->key() == Qt::Key_Space && !event->isAutoRepeat()) {
        m_spaceHeld = false;
        updateCursor();
        return;
    }
    QWidget::keyReleaseEvent(event);
}

void CanvasWidget::focusOutEvent(QFocusEvent* event) {
    m_spaceHeld = false;
    updateCursor();
    QWidget::focusOutEvent(event);
}

void CanvasWidget::leaveEvent(QEvent*) {
    m_tool->leave();
    m_snap.clear();
    update();
    setHover(-1);
    emit pointerLeft();
}

bool CanvasWidget::event(QEvent* event) {
    switch (event->type()) {
    case QEvent::TouchBegin:
    case QEvent::TouchUpdate:
    case QEvent::TouchEnd:
    case QEvent::TouchCancel:
        return touchEvent(static_cast<QTouchEvent*>(event));
    default:
        return QWidget::event(event);
    }
}

// One finger does what the left button does; a second one ends that without a trace and moves the view.
bool CanvasWidget::touchEvent(QTouchEvent* event) {
    event->accept();
    const auto& points = event->touchPoints();
    if (event->type() == QEvent::TouchCancel) {
        cancelGesture();
        m_pinch.reset();
        m_touchGesture = false;
        return true;
    }
    if (const std::optional<Pinch> pinch = pinchOf(*event)) {
        if (m_touchGesture)
            cancelGesture();
        m_touchGesture = false;
        movePinch(*pinch);
        return true;
    }
    // A finger that is left over from a pinch does nothing until it is lifted.
    if (m_pinch) {
        if (event->type() == QEvent::TouchEnd)
            m_pinch.reset();
        return true;
    }
    const QPointF place = points.isEmpty() ? m_pointer : points.first().pos();
    oneFinger(*event, place);
    m_pointer = place;
    update();
    return true;
}

void CanvasWidget::oneFinger(const QTouchEvent& event, const QPointF& place) {
    if (event.type() == QEvent::TouchBegin) {
        setFocus(Qt::MouseFocusReason);
        m_touchGesture = !takeSecondTap(place);
        m_touchStart = place;
        if (m_touchGesture)
            m_tool->press(canvasPoint(place, Qt::LeftButton, true, true, event.modifiers()));
        else
            m_tool->doubleClick(canvasPoint(place, Qt::LeftButton, false, true, event.modifiers()));
    } else if (m_touchGesture && event.type() == QEvent::TouchUpdate) {
        emit pointerMoved(m_transform.toMm(place), place);
        m_tool->move(canvasPoint(place, Qt::NoButton, true, true, event.modifiers()));
    } else if (m_touchGesture && event.type() == QEvent::TouchEnd) {
        m_touchGesture = false;
        m_tool->release(canvasPoint(place, Qt::LeftButton, false, true, event.modifiers()));
        setHover(-1);
        if (QLineF(m_touchStart, place).length() < kTapReach) {
            m_tapAge.start();
            m_tapPlace = place;
        }
    }
}

// As with a mouse, the second of two quick taps at one place is no press but a double click.
bool CanvasWidget::takeSecondTap(const QPointF& place) {
    const bool second = m_tapAge.isValid() && QLineF(m_tapPlace, place).length() < kDoubleTapReach &&
                        m_tapAge.elapsed() < QGuiApplication::styleHints()->mouseDoubleClickInterval();
    m_tapAge.invalidate();
    return second;
}

// The two fingers that have been down the longest of those that are.
std::optional<CanvasWidget::Pinch> CanvasWidget::pinchOf(const QTouchEvent& event) {
    QList<QTouchEvent::TouchPoint> down;
    for (const QTouchEvent::TouchPoint& point : event.touchPoints()) {
        if (point.state() != Qt::TouchPointReleased)
            down.append(point);
    }
    if (down.size() < 2)
        return std::nullopt;
    std::sort(down.begin(), down.end(), [](const auto& a, const auto& b) { return a.id() < b.id(); });
    const QPointF a = down[0].pos();
    const QPointF b = down[1].pos();
    return Pinch{down[0].id(), down[1].id(), (a + b) / 2.0, QLineF(a, b).length()};
}

void CanvasWidget::movePinch(const Pinch& pinch) {
    constexpr double kLeastDistance = 10.0; // px, fingers that meet give no ratio
    const bool sameFingers = m_pinch && m_pinch->first == pinch.first && m_pinch->second == pinch.second;
    if (sameFingers) {
        ViewTransform transform = m_transform;
        transform.panBy(pinch.center - m_pinch->center);
        const bool apart = pinch.distance > kLeastDistance && m_pinch->distance > kLeastDistance;
        if (apart && pinch.distance != m_pinch->distance)
            transform.zoomAbout(pinch.center, pinch.distance / m_pinch->distance);
        setViewTransform(transform);
    }
    m_pinch = pinch;
}

} // namespace sim
