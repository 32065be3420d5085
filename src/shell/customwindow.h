// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

class MainWindow;
class QWidget;

namespace tessera {

/// What the search for a custom window gave.
struct CustomWindow {
    QWidget* widget = nullptr; ///< null when no library gave one
    QString report;            ///< for the log, also without an error
};

/// Loads the libraries "*.so" of a folder in the order of QDir::entryList. The first that loads ends the search; its
/// function `extern "C" QWidget* LoadCustomWindow(MainWindow*)` makes the window. That library stays loaded until the
/// process ends. Main thread.
CustomWindow LoadCustomWindowFrom(QString const& folder, MainWindow* window);

} // namespace tessera
