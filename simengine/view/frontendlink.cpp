// SPDX-License-Identifier: GPL-2.0-or-later
#include "simengine/view/frontendlink.h"

#include <QApplication>
#include <QKeyEvent>
#include <QWidget>

namespace sim {

namespace {

QWidget* findWidget(const char* className) {
    const QWidgetList widgets = QApplication::allWidgets();
    for (QWidget* widget : widgets) {
        if (widget->inherits(className))
            return widget;
    }
    return nullptr;
}

} // namespace

void renewPreview() {
    if (QWidget* form = findWidget("Form_Marking"))
        QMetaObject::invokeMethod(form, "UpdateRedViewData", Qt::DirectConnection);
}

bool handDirectionKey(QKeyEvent& event) {
    QWidget* window = findWidget("MainWindow");
    return window &&
           QMetaObject::invokeMethod(window, "HandDirEventOnRedView", Qt::DirectConnection, Q_ARG(QKeyEvent*, &event));
}

} // namespace sim
