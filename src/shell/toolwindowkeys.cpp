// SPDX-License-Identifier: MIT
#include "shell/toolwindowkeys.h"

#include "multidoc/multidocmark.h"
#include "run/formteaching.h"
#include "run/redlooppreview.h"
#include "shell/mainwindow.h"

#include <QApplication>
#include <QKeyEvent>

namespace tessera {

namespace {

bool isToolWindow(QWidget const* window) {
    return qobject_cast<MultiDocMark const*>(window) || qobject_cast<FormTeaching const*>(window) ||
           qobject_cast<RedLoopPreview const*>(window);
}

} // namespace

ToolWindowKeys::ToolWindowKeys(MainWindow& window)
    : QObject(&window)
    , m_Window(window) {
    qApp->installEventFilter(this);
}

/// Where the arrow keys would only move the focus or a row of buttons they are the preview's while it runs.
bool ToolWindowKeys::eventFilter(QObject* watched, QEvent* event) {
    if (event->type() != QEvent::KeyPress || !watched->isWidgetType())
        return false;
    auto* key = static_cast<QKeyEvent*>(event);
    const bool function = key->key() >= Qt::Key_F5 && key->key() <= Qt::Key_F8;
    const bool direction = key->key() >= Qt::Key_Left && key->key() <= Qt::Key_Down;
    if ((!function && !direction) || !isToolWindow(static_cast<QWidget*>(watched)->window()))
        return false;
    if (function) {
        QCoreApplication::sendEvent(&m_Window, event);
        return true;
    }
    if (!m_Window.IsRedView())
        return false;
    m_Window.HandDirEventOnRedView(key);
    return true;
}

} // namespace tessera
