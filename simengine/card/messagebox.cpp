// SPDX-License-Identifier: GPL-2.0-or-later
#include "engine/cardfunctions.h"
#include "engine/languagemanager.h"
#include "engine/marklog.h"

#include <QApplication>
#include <QMessageBox>
#include <QThread>

#include <algorithm>

namespace {

bool hasWindow() {
    auto const windows = QApplication::topLevelWidgets();
    return std::any_of(windows.begin(), windows.end(), [](QWidget const* window) { return window->isVisible(); });
}

void log(QString const& text, int kind) {
    if (kind == 0)
        MarkLog::Instance()->ShowNote(text);
    else
        MarkLog::Instance()->ShowNote_Error(text);
}

/// Main thread. The box is modal but does not hold up its caller, which may be the start of the program.
void show(QString const& text, int kind) {
    if (!hasWindow()) {
        log(text, kind);
        return;
    }
    auto* box = new QMessageBox(kind == 0 ? QMessageBox::Information : QMessageBox::Warning,
                                LanguageManager::GetLanText(kind == 0 ? "提示" : "错误"), text, QMessageBox::Ok,
                                QApplication::activeWindow());
    box->setAttribute(Qt::WA_DeleteOnClose);
    box->open();
}

} // namespace

void MessageBox(char const* text, int kind) {
    QString const message = QString::fromUtf8(text);
    QCoreApplication* application = QCoreApplication::instance();
    if (!qobject_cast<QApplication*>(application)) {
        log(message, kind);
        return;
    }
    if (QThread::currentThread() == application->thread())
        show(message, kind);
    else
        QMetaObject::invokeMethod(
            application, [message, kind] { show(message, kind); }, Qt::QueuedConnection);
}
