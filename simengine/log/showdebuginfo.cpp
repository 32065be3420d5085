// SPDX-License-Identifier: GPL-2.0-or-later
#include "engine/showdebuginfo.h"

#include "simengine/log/debugwindow.h"

#include <QApplication>
#include <QThread>
#include <mutex>

struct ShowDebugInfo::Private {
    std::mutex lock; ///< the window may go while another thread adds a line
    std::unique_ptr<sim::DebugWindow> window;

    void makeWindow();
    static void dropWindow();
};

// The window needs an application and must be gone before it: the application object calls dropWindow first of all when
// it is destroyed.
void ShowDebugInfo::Private::makeWindow() {
    auto* application = qobject_cast<QApplication*>(QCoreApplication::instance());
    if (!application || QThread::currentThread() != application->thread())
        return;
    std::lock_guard<std::mutex> guard(lock);
    if (window)
        return;
    window = std::make_unique<sim::DebugWindow>();
    qAddPostRoutine(&Private::dropWindow);
}

void ShowDebugInfo::Private::dropWindow() {
    Private& self = *ShowDebugInfo::Instance()->d;
    std::lock_guard<std::mutex> guard(self.lock);
    self.window.reset();
}

ShowDebugInfo::ShowDebugInfo()
    : d(std::make_unique<Private>()) {}

ShowDebugInfo::~ShowDebugInfo() = default;

ShowDebugInfo* ShowDebugInfo::Instance() {
    static ShowDebugInfo instance;
    instance.d->makeWindow();
    return &instance;
}

void ShowDebugInfo::AddShowText(QString const& text, DebugInfoType type) {
    std::lock_guard<std::mutex> guard(d->lock);
    if (d->window)
        d->window->addLine(text, type);
}

void ShowDebugInfo::ShowWindow() {
    if (d->window)
        d->window->bringUp();
}
