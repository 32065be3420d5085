// SPDX-License-Identifier: MIT
#include "operatorpage.h"

#include "shell/mainwindow.h"

/// What the main window looks for in a library of the folder CustomWindow. The widget belongs to the main window, which
/// calls this once at its start.
extern "C" Q_DECL_EXPORT QWidget* LoadCustomWindow(MainWindow* window) {
    return new OperatorPage(*window);
}
