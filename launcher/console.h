// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

namespace tessera {

/// The console that the program was started from. Main thread.
class Console {
public:
    /// Plain text on the standard output.
    static void print(QString const& text);
    /// Plain text on the standard error output: what is told beside the figures that the standard output has.
    static void tell(QString const& text);
    /// One sentence on the standard error output, after the program's name.
    static void complain(QString const& sentence);
};

} // namespace tessera
