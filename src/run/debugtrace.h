// SPDX-License-Identifier: MIT
#pragma once

#include "engine/showdebuginfo.h"
#include "shell/mainwindow.h"

namespace tessera {

/// A line for the developer: into the debug window and its file, not into the operator's list. Any thread.
inline void ShowTrace(QString const& text) {
    ShowDebugInfo::Instance()->AddShowText(text, DebugInfoTrace);
    if (MainWindow* window = MainWindow::Instance())
        window->SaveDebugText(text);
}

} // namespace tessera
