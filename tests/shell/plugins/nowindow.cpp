// SPDX-License-Identifier: MIT
#include <QWidget>

class MainWindow;

/// Gives no window.
extern "C" Q_DECL_EXPORT QWidget* LoadCustomWindow(MainWindow*) {
    return nullptr;
}
