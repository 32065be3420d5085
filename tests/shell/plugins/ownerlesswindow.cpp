// SPDX-License-Identifier: MIT
#include <QLabel>

class MainWindow;

/// A custom window that nobody owns.
extern "C" Q_DECL_EXPORT QWidget* LoadCustomWindow(MainWindow*) {
    auto* label = new QLabel(QStringLiteral("ownerless"));
    label->setObjectName(QStringLiteral("ownerlessWindow"));
    return label;
}
