// SPDX-License-Identifier: MIT
// Files with the suffix .svg through their importer, as bytes from anywhere. Texts need fonts, and those an
// application.
#include "importcheck.h"
#include "simengine/importers/svgimport.h"

#include <QByteArray>
#include <QGuiApplication>
#include <cstddef>
#include <cstdint>

// What the window system's plug-in and the font libraries keep until the process ends.
extern "C" char const* __lsan_default_suppressions() {
    return "leak:libqoffscreen\nleak:libQt5Gui\nleak:libharfbuzz\nleak:libfontconfig\nleak:libfreetype\n";
}

extern "C" int LLVMFuzzerInitialize(int*, char***) {
    qputenv("QT_QPA_PLATFORM", "offscreen");
    static int count = 1;
    static char name[] = "fuzz_svg";
    static char* arguments[] = {name, nullptr};
    // never destroyed: the process ends by itself, at whatever input
    static QGuiApplication* const application = new QGuiApplication(count, arguments);
    return application ? 0 : 1;
}

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size) {
    fuzz::checkImport(sim::importSvgData(QByteArray(reinterpret_cast<char const*>(data), int(size))));
    return 0;
}
