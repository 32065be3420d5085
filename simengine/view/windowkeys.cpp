// SPDX-License-Identifier: GPL-2.0-or-later
#include "simengine/view/windowkeys.h"

#include "simengine/view/frontendlink.h"
#include "simengine/view/runningjob.h"

#include <QApplication>
#include <QKeyEvent>
#include <QWidget>

namespace sim {

WindowKeys::WindowKeys(QWidget& view)
    : m_view(view) {
    qApp->installEventFilter(this);
}

bool WindowKeys::eventFilter(QObject* watched, QEvent* event) {
    if (event->type() != QEvent::KeyPress || !watched->isWidgetType())
        return false;
    auto& key = *static_cast<QKeyEvent*>(event);
    const bool direction = key.key() >= Qt::Key_Left && key.key() <= Qt::Key_Down;
    const bool here = static_cast<QWidget*>(watched)->window() == m_view.window();
    if (!direction || !here || m_view.isEnabled() || !m_view.isVisible() || !previewRuns())
        return false;
    return handDirectionKey(key);
}

} // namespace sim
