// SPDX-License-Identifier: MIT
#include "shell/customwindow.h"

#include <QDir>
#include <QLibrary>

namespace tessera {

namespace {

using LoadFunction = QWidget* (*)(MainWindow*);

} // namespace

CustomWindow LoadCustomWindowFrom(QString const& folder, MainWindow* window) {
    CustomWindow result;
    result.report = QStringLiteral("GetCustom: ");
    const QDir dir(folder);
    for (QString const& name : dir.entryList(QDir::Files)) {
        if (!name.endsWith(QLatin1String(".so")))
            continue;
        // Going out of scope does not unload a library, so one that loaded stays.
        QLibrary library(dir.filePath(name));
        if (!library.load()) {
            result.report += name + QStringLiteral(" is load err(") + library.errorString() + QStringLiteral(");\n");
            library.unload();
            continue;
        }
        if (const auto load = reinterpret_cast<LoadFunction>(library.resolve("LoadCustomWindow")))
            result.widget = load(window);
        else
            result.report += name + QStringLiteral(" is loadwindow err;\n");
        break;
    }
    return result;
}

} // namespace tessera
