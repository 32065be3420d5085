// SPDX-License-Identifier: GPL-2.0-or-later
#include "simengine/view/windowkeys.h"

#include "simengine/view/frontendlink.h"
#include "simengine/view/runningjob.h"

#include <QApplication>
#include <QKeyEvent>
#include <QWidget>
#include <utility>

namespace sim {

WindowKeys::WindowKeys(QWidget& view, Take take)
    : m_view(view)
    , m_take(std::move(take)) {
    qApp->installEventFilter(this);
}

bool WindowKeys::eventFilter(QObject* watched, QEvent* event) {
    if (event->type() != QEvent::KeyPress || !watched->isWidgetType())
        return false;
    auto& key = *static_cast<QKeyEvent*>(event);
    const bool here = static_cast<QWidget*>(watched)->window() == m_view.window();
    if (!here || !m_view.isVisible())
        return false;
    if (m_view.isEnabled())
        return m_take(key);
    const bool direction = key.key() >= Qt::Key_Left && key.key() <= Qt::Key_Down;
    return direction && previewRuns() && handDirectionKey(key);
}

} // namespace sim
