// SPDX-License-Identifier: MIT
#include "commandline.h"
#include "console.h"
#include "launcher.h"
#include "support/version.h"

#include <QDir>

int main(int argc, char** argv) {
    QStringList arguments;
    for (int i = 1; i < argc; ++i)
        arguments.append(QString::fromLocal8Bit(argv[i]));
    tessera::CommandLineResult const parsed = tessera::parseCommandLine(arguments, QDir::currentPath());
    if (!parsed.error.isEmpty()) {
        tessera::Console::complain(parsed.error + QStringLiteral(" See --help."));
        return 2;
    }
    switch (parsed.value.action) {
    case tessera::CommandLine::Action::ShowHelp:
        tessera::Console::print(tessera::commandLineHelp());
        return 0;
    case tessera::CommandLine::Action::ShowVersion:
        tessera::Console::print(QStringLiteral("tessera %1\n").arg(tessera::version()));
        return 0;
    case tessera::CommandLine::Action::Run:
        break;
    }
    tessera::Launcher launcher(parsed.value);
    return launcher.run(argc, argv);
}
