// SPDX-License-Identifier: MIT
#pragma once

#include <QObject>

class MainWindow;

namespace tessera {

/// Hands on the keys that an operator presses while a tool window of the main window is in front: a key ends at the
/// window in which it was pressed, and the operator looks at the machine, not at which window is active. Function keys
/// F5 to F8 go to the main window, direction keys to the running preview while there is one. Everything else, and all
/// keys of the other dialogs, stays where it was pressed. Belongs to the main window. Main thread.
class ToolWindowKeys : public QObject {
public:
    explicit ToolWindowKeys(MainWindow& window);

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    MainWindow& m_Window;
};

} // namespace tessera
