// SPDX-License-Identifier: MIT
#include "shell/mainwindow.h"

#include <QLabel>

/// A custom window that tells from which file it came.
extern "C" Q_DECL_EXPORT QWidget* LoadCustomWindow(MainWindow* window) {
    auto* label = new QLabel(QStringLiteral("custom"), window);
    label->setObjectName(QStringLiteral("goodWindow"));
    return label;
}
