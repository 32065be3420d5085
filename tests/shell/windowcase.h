// SPDX-License-Identifier: MIT
#pragma once

#include "support/approot.h"
#include "tests/shell/windowfixture.h"

#include <QAction>
#include <QDir>
#include <QLabel>
#include <memory>

namespace tests {

/// What the tests of the main window share: one root for all cases, and in each case at most one window, made when the
/// case asks for it. Every case begins without documents.
class WindowCase {
protected:
    bool hasRoot() const { return m_Root.isValid(); }
    void beginCase() {
        resetMachine();
        machine().setHardwareBits(0);
    }
    void endCase() {
        m_Window.reset();
        QDir(tessera::rootPath(QStringLiteral("/MarkFile"))).removeRecursively();
    }
    /// Ends the window of before, if any, and makes a new one.
    void start(bool show = true) {
        m_Window.reset();
        m_Window = std::make_unique<RunningWindow>(show);
    }
    MainWindow& window() { return **m_Window; }
    QLabel* label(char const* name) { return m_Window->child<QLabel>(name); }
    QAction* action(char const* name) { return m_Window->child<QAction>(name); }

    TemporaryRoot m_Root;
    std::unique_ptr<RunningWindow> m_Window;
};

} // namespace tests
