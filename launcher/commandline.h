// SPDX-License-Identifier: MIT
#pragma once

#include "inputdevices.h"

#include <QSize>
#include <QString>
#include <QStringList>
#include <optional>

namespace tessera {

/// What the program was asked for. Paths are absolute, but for the names of documents in `open`.
struct CommandLine {
    enum class Action { Run, ShowHelp, ShowVersion };
    Action action = Action::Run;
    QString root;                   ///< empty: the default application root
    std::optional<double> simSpeed; ///< factor on the simulated machine's time, 0 as fast as possible
    QStringList faults;             ///< of the simulated machine, on from the start
    QStringList open;
    QStringList import;
    int mark = 0; ///< passes to run, 0 none
    QStringList traces;
    QString screenshot;
    QString automation; ///< path of the socket, empty: off
    QString language;
    QSize size;                                 ///< of the main window in pixels, empty: the screen's
    KeyboardMode keyboard = KeyboardMode::Auto; ///< of the keyboard on the screen
    bool quit = false;
    bool panel = false;
    bool report = false;
};

/// The outcome of reading a command line: `error` is one sentence for the user, empty when it was understood.
struct CommandLineResult {
    CommandLine value;
    QString error;
};

/// Reads the arguments without the program's name. Relative paths are taken from `directory`. The toolkit's own options
/// (-platform and the like) pass. Needs no application object.
CommandLineResult parseCommandLine(QStringList const& arguments, QString const& directory);

/// Text of --help.
QString commandLineHelp();

} // namespace tessera
