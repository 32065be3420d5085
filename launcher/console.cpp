// SPDX-License-Identifier: MIT
#include "console.h"

#include <cstdio>

namespace tessera {

void Console::print(QString const& text) {
    std::fputs(text.toLocal8Bit().constData(), stdout);
    std::fflush(stdout);
}

void Console::tell(QString const& text) {
    std::fputs(text.toLocal8Bit().constData(), stderr);
    std::fflush(stderr);
}

void Console::complain(QString const& sentence) {
    std::fprintf(stderr, "tessera: %s\n", sentence.toLocal8Bit().constData());
    std::fflush(stderr);
}

} // namespace tessera
