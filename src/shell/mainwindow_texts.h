// SPDX-License-Identifier: MIT
#pragma once

#include <QAction>
#include <QMenu>
#include <QVector>

class Ui_MainWindow;

namespace tessera {

/// An action of the main window: the key of its text and its picture below ":/Icon/Res/".
struct ActionEntry {
    QAction* Ui_MainWindow::*action;
    char const* key;
    char const* icon;
};

struct MenuEntry {
    QMenu* Ui_MainWindow::*menu;
    char const* key;
};

QVector<ActionEntry> const& ActionEntries();
QVector<MenuEntry> const& MenuEntries();

} // namespace tessera
