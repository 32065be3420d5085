// SPDX-License-Identifier: MIT
#include "contentlift.h"

#include "typingfield.h"

#include <QEvent>
#include <QLayout>
#include <QMainWindow>
#include <QScreen>
#include <algorithm>

namespace tessera {

namespace {

constexpr int kGap = 8; ///< between a field and the keyboard, pixels

} // namespace

int liftFor(QRect const& field, QRect const& keyboard, QRect const& screen) {
    bool const beside = field.right() < keyboard.left() || field.left() > keyboard.right();
    if (keyboard.isEmpty() || beside)
        return 0;
    int const needed = field.bottom() + kGap - keyboard.top() + 1;
    int const room = field.top() - screen.top();
    return std::max(0, std::min(needed, room));
}

void ContentLift::keepClear(QWidget* field, QRect const& keyboard) {
    QWidget* window = field->window();
    if (window != m_window) {
        restore();
        take(window);
    }
    QRect const unshifted = typingArea(field).translated(0, shift());
    shiftTo(liftFor(unshifted, keyboard, window->screen()->geometry()));
}

void ContentLift::restore() {
    if (!m_window)
        return;
    shiftTo(0);
    m_window->removeEventFilter(this);
    m_window = nullptr;
}

/// The window's layout has put the contents to their places anew.
bool ContentLift::eventFilter(QObject* watched, QEvent* event) {
    bool const laidOut = event->type() == QEvent::LayoutRequest || event->type() == QEvent::Resize;
    if (laidOut && m_inside && m_window == watched && m_window->layout()) {
        int const shift = m_shift;
        m_shift = 0;
        // The layout has seen the event before; where it had nothing to do the contents still stand shifted.
        m_window->layout()->invalidate();
        m_window->layout()->activate();
        shiftTo(shift);
    }
    return false;
}

void ContentLift::take(QWidget* window) {
    m_window = window;
    m_shift = 0;
    m_inside = qobject_cast<QMainWindow*>(window) || window->isFullScreen() || window->isMaximized();
    m_place = window->pos();
    m_window->installEventFilter(this);
}

int ContentLift::shift() const {
    return m_inside ? m_shift : m_place.y() - m_window->y();
}

void ContentLift::shiftTo(int shift) {
    if (!m_inside) {
        if (m_window->pos() != m_place - QPoint(0, shift))
            m_window->move(m_place - QPoint(0, shift));
        return;
    }
    for (QObject* child : m_window->children()) {
        auto* widget = qobject_cast<QWidget*>(child);
        if (widget && !widget->isWindow() && shift != m_shift)
            widget->move(widget->pos() - QPoint(0, shift - m_shift));
    }
    m_shift = shift;
}

} // namespace tessera
