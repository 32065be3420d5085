// SPDX-License-Identifier: GPL-2.0-or-later
#include "simengine/users/autologout.h"

#include <QEvent>
#include <algorithm>
#include <limits>

namespace sim {

namespace {

bool isOperation(QEvent::Type type) {
    switch (type) {
    case QEvent::KeyPress:
    case QEvent::MouseButtonPress:
    case QEvent::MouseMove:
    case QEvent::Wheel:
    case QEvent::TouchBegin:
    case QEvent::TouchUpdate:
    case QEvent::TabletPress:
        return true;
    default:
        return false;
    }
}

} // namespace

AutoLogout::AutoLogout(QObject* application, std::function<void()> expired)
    : QObject(application)
    , m_expired(std::move(expired)) {
    m_timer.setSingleShot(true);
    connect(&m_timer, &QTimer::timeout, this, &AutoLogout::check);
    application->installEventFilter(this);
    m_sinceOperation.start();
}

void AutoLogout::setLimit(int seconds) {
    m_limitMs = std::clamp(seconds, 0, std::numeric_limits<int>::max() / 1000) * 1000;
    m_sinceOperation.start();
    if (m_limitMs > 0)
        m_timer.start(m_limitMs);
    else
        m_timer.stop();
}

bool AutoLogout::eventFilter(QObject* watched, QEvent* event) {
    if (isOperation(event->type()))
        m_sinceOperation.start();
    return QObject::eventFilter(watched, event);
}

/// The timer is not started anew with every movement of the mouse; it looks when it runs out and sleeps for the rest.
void AutoLogout::check() {
    qint64 const left = m_limitMs - m_sinceOperation.elapsed();
    if (left > 0) {
        m_timer.start(static_cast<int>(left));
        return;
    }
    m_sinceOperation.start();
    m_timer.start(m_limitMs);
    m_expired();
}

} // namespace sim
