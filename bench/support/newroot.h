// SPDX-License-Identifier: MIT
#pragma once

#include "shell/mainwindow.h"
#include "support/approot.h"

#include <QApplication>
#include <QDir>
#include <QTemporaryDir>
#include <cstdio>
#include <functional>

namespace bench {

/// The whole program of a benchmark of the front end: calls `run` with an application and with a new, empty root that
/// goes with it, whose folder it is given; ends the main window that it leaves. Returns what `run` returned, 1 when the
/// root cannot be made.
inline int runInNewRoot(int argc, char** argv, std::function<int(QString const&)> const& run) {
    const QTemporaryDir root;
    if (!root.isValid()) {
        std::fprintf(stderr, "no root can be made: %s\n", qPrintable(root.errorString()));
        return 1;
    }
    tessera::setApplicationRoot(root.path());
    QDir::setCurrent(root.path());
    QApplication application(argc, argv);
    QApplication::setQuitOnLastWindowClosed(false);
    const int code = run(root.path());
    if (MainWindow::Instance())
        MainWindow::ClearMainWnd();
    return code;
}

} // namespace bench
