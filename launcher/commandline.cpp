// SPDX-License-Identifier: MIT
#include "commandline.h"

#include <QDir>
#include <QFileInfo>
#include <QRegularExpression>
#include <cmath>

namespace tessera {

namespace {

/// Where a command line's values go while it is read.
struct Reading {
    CommandLine value;
    QString directory;
    QString error;

    QString path(QString const& given) const { return QDir::cleanPath(QDir(directory).absoluteFilePath(given)); }
};

void readRoot(Reading& reading, QString const& given) {
    reading.value.root = reading.path(given);
}

void readSimSpeed(Reading& reading, QString const& given) {
    bool isNumber = false;
    double const speed = given.toDouble(&isNumber);
    if (isNumber && std::isfinite(speed) && speed >= 0)
        reading.value.simSpeed = speed;
    else
        reading.error = QStringLiteral("--sim-speed needs a number of 0 or above, not \"%1\".").arg(given);
}

void readFault(Reading& reading, QString const& given) {
    reading.value.faults.append(given);
}

void readOpen(Reading& reading, QString const& given) {
    // A bare name is that of a document below the root, which is not known yet.
    bool const bare = !given.contains(QLatin1Char('/')) && !QFileInfo::exists(reading.path(given));
    reading.value.open.append(bare ? given : reading.path(given));
}

void readImport(Reading& reading, QString const& given) {
    reading.value.import.append(reading.path(given));
}

void readMark(Reading& reading, QString const& given) {
    bool isNumber = false;
    int const passes = given.toInt(&isNumber);
    if (isNumber && passes >= 1)
        reading.value.mark = passes;
    else
        reading.error = QStringLiteral("--mark needs a whole number of 1 or above, not \"%1\".").arg(given);
}

void readTrace(Reading& reading, QString const& given) {
    QStringList const endings{QStringLiteral("svg"), QStringLiteral("csv"), QStringLiteral("png")};
    if (endings.contains(QFileInfo(given).suffix().toLower()))
        reading.value.traces.append(reading.path(given));
    else
        reading.error = QStringLiteral("--trace needs a file that ends in .svg, .csv or .png, not \"%1\".").arg(given);
}

void readScreenshot(Reading& reading, QString const& given) {
    if (QFileInfo(given).suffix().toLower() == QLatin1String("png"))
        reading.value.screenshot = reading.path(given);
    else
        reading.error = QStringLiteral("--screenshot needs a file that ends in .png, not \"%1\".").arg(given);
}

void readAutomation(Reading& reading, QString const& given) {
    reading.value.automation = reading.path(given);
}

void readLanguage(Reading& reading, QString const& given) {
    if (given == QLatin1String("zh_CN") || given == QLatin1String("en"))
        reading.value.language = given;
    else
        reading.error = QStringLiteral("--language is \"zh_CN\" or \"en\", not \"%1\".").arg(given);
}

void readSize(Reading& reading, QString const& given) {
    // Below the least the window has no room for its tool bars; the most is what a picture of it may reasonably take.
    constexpr QSize kLeast(800, 600);
    constexpr QSize kMost(8192, 8192);
    static QRegularExpression const pattern(QStringLiteral("\\A([0-9]{1,5})x([0-9]{1,5})\\z"));
    QRegularExpressionMatch const match = pattern.match(given);
    QSize const size(match.captured(1).toInt(), match.captured(2).toInt());
    if (match.hasMatch() && size.expandedTo(kLeast) == size && size.boundedTo(kMost) == size)
        reading.value.size = size;
    else
        reading.error =
            QStringLiteral("--size needs a width and height of 800x600 to 8192x8192, not \"%1\".").arg(given);
}

void readKeyboard(Reading& reading, QString const& given) {
    constexpr std::pair<char const*, KeyboardMode> kModes[] = {
        {"on", KeyboardMode::On}, {"off", KeyboardMode::Off}, {"auto", KeyboardMode::Auto}};
    for (auto const& [name, mode] : kModes) {
        if (given == QLatin1String(name)) {
            reading.value.keyboard = mode;
            return;
        }
    }
    reading.error = QStringLiteral("--keyboard is \"on\", \"off\" or \"auto\", not \"%1\".").arg(given);
}

/// One option. Exactly one of `read` and `flag` is set, or neither for an option that is only passed over.
struct Option {
    char const* name;
    char const* valueName; ///< null: takes no value
    bool repeatable;
    void (*read)(Reading&, QString const&);
    bool CommandLine::*flag;
    char const* help;
};

constexpr Option kOptions[] = {
    {"root", "DIR", false, readRoot, nullptr,
     "Keep settings, documents and logs below DIR; it is made if missing and becomes the\n"
     "current directory. Default: $TESSERA_ROOT, else the program's own directory."},
    {"sim-speed", "X", false, readSimSpeed, nullptr,
     "Let the simulated machine's time run X times as fast; 1 is real time, 0 as fast as\npossible."},
    {"fault", "NAME", true, readFault, nullptr,
     "Switch a fault of the simulated machine on before anything starts:\nlaser_no_ready, outputs_stuck and others."},
    {"open", "FILE", true, readOpen, nullptr, "Open a mark document, by path or by its name below MarkFile/."},
    {"import", "FILE", true, readImport, nullptr,
     "Import a drawing (SVG, DXF, PLT) into a new document below MarkFile/ and open it."},
    {"mark", "N", false, readMark, nullptr, "Run the active document N times, as by pressing Start in the run dialog."},
    {"trace", "FILE", true, readTrace, nullptr,
     "Write what the last job marked as .svg, .csv or .png, after the runs of --mark or else\nat the end."},
    {"screenshot", "FILE", false, readScreenshot, nullptr, "Write the screen as .png, after the runs of --mark."},
    {"report", nullptr, false, nullptr, &CommandLine::report, "Print a short report of the runs of --mark."},
    {"quit", nullptr, false, nullptr, &CommandLine::quit,
     "End the program when the above is done: exit code 0 when all went well."},
    {"panel", nullptr, false, nullptr, &CommandLine::panel, "Show the simulated machine's panel."},
    {"automation", "SOCKET", false, readAutomation, nullptr,
     "Open a local socket, for this user only, by which programs can drive this one."},
    {"language", "LANG", false, readLanguage, nullptr, "Choose the language for this and later starts: zh_CN or en."},
    {"size", "WxH", false, readSize, nullptr,
     "Give the main window W x H pixels, such as 1280x800, in place of the screen's."},
    {"keyboard", "MODE", false, readKeyboard, nullptr,
     "Use the keyboard on the screen: on, off or auto, which is when the machine has a touch\npanel or mouse and no "
     "keyboard. Default: auto."},
    {"version", nullptr, false, nullptr, nullptr, "Print the version."},
    {"help", nullptr, false, nullptr, nullptr, "Print this text."},
};

/// Options of the toolkit, which takes them off the command line itself; one dash or two.
struct ToolkitOption {
    char const* name;
    bool takesValue;
};
constexpr ToolkitOption kToolkitOptions[] = {
    {"platform", true},        {"platformpluginpath", true},
    {"platformtheme", true},   {"plugin", true},
    {"qwindowgeometry", true}, {"geometry", true},
    {"qwindowicon", true},     {"icon", true},
    {"qwindowtitle", true},    {"title", true},
    {"style", true},           {"stylesheet", true},
    {"display", true},         {"session", true},
    {"reverse", false},        {"nograb", false},
    {"dograb", false},         {"sync", false},
    {"widgetcount", false},
};

Option const* findOption(QString const& name) {
    for (Option const& option : kOptions) {
        if (name == QLatin1String(option.name))
            return &option;
    }
    return nullptr;
}

ToolkitOption const* findToolkitOption(QString const& argument) {
    QString const name = argument.mid(argument.startsWith(QLatin1String("--")) ? 2 : 1).section(QLatin1Char('='), 0, 0);
    for (ToolkitOption const& option : kToolkitOptions) {
        if (name == QLatin1String(option.name))
            return &option;
    }
    return nullptr;
}

/// Reads the option at `index`; a value that stands by itself moves `index` on.
void readOption(Reading& reading, QStringList const& arguments, int& index, QStringList& seen) {
    QString const argument = arguments.at(index);
    QString const name = argument.mid(2).section(QLatin1Char('='), 0, 0);
    bool const joined = argument.contains(QLatin1Char('='));
    Option const* option = argument.startsWith(QLatin1String("--")) ? findOption(name) : nullptr;
    if (!option) {
        reading.error = QStringLiteral("There is no option \"%1\".").arg(argument.section(QLatin1Char('='), 0, 0));
        return;
    }
    if (!option->repeatable && seen.contains(name)) {
        reading.error = QStringLiteral("--%1 is given twice.").arg(name);
        return;
    }
    seen.append(name);
    if (!option->valueName) {
        if (joined)
            reading.error = QStringLiteral("--%1 takes no value.").arg(name);
        else if (option->flag)
            reading.value.*option->flag = true;
        return;
    }
    QString const value = joined ? argument.section(QLatin1Char('='), 1) : arguments.value(index + 1);
    bool const missing = value.isEmpty() || (!joined && value.startsWith(QLatin1String("--")));
    if (missing) {
        reading.error = QStringLiteral("--%1 needs a value: --%1 %2.").arg(name, QLatin1String(option->valueName));
        return;
    }
    if (!joined)
        ++index;
    option->read(reading, value);
}

} // namespace

CommandLineResult parseCommandLine(QStringList const& arguments, QString const& directory) {
    Reading reading;
    reading.directory = directory;
    QStringList seen;
    for (int i = 0; i < arguments.size() && reading.error.isEmpty(); ++i) {
        QString const argument = arguments.at(i);
        if (!argument.startsWith(QLatin1Char('-')) || argument.size() < 2) {
            reading.error =
                QStringLiteral("\"%1\" is not an option; give a document by --open %1 or a drawing by --import %1.")
                    .arg(argument);
        } else if (ToolkitOption const* passed = findToolkitOption(argument)) {
            if (passed->takesValue && !argument.contains(QLatin1Char('=')))
                ++i;
        } else {
            readOption(reading, arguments, i, seen);
        }
    }
    if (seen.contains(QStringLiteral("version")))
        reading.value.action = CommandLine::Action::ShowVersion;
    if (seen.contains(QStringLiteral("help")))
        reading.value.action = CommandLine::Action::ShowHelp;
    return {reading.value, reading.error};
}

QString commandLineHelp() {
    QString text =
        QStringLiteral("Usage: tessera [OPTION]...\n\nThe operator front end of a laser marking machine.\n\n");
    for (Option const& option : kOptions) {
        QString name = QStringLiteral("  --%1").arg(QLatin1String(option.name));
        if (option.valueName)
            name += QLatin1Char(' ') + QLatin1String(option.valueName);
        if (option.repeatable)
            name += QLatin1String("...");
        QStringList const lines = QString::fromLatin1(option.help).split(QLatin1Char('\n'));
        text += name.leftJustified(24) + lines.first() + QLatin1Char('\n');
        for (int i = 1; i < lines.size(); ++i)
            text += QString(24, QLatin1Char(' ')) + lines.at(i) + QLatin1Char('\n');
    }
    text +=
        QStringLiteral("\nThe toolkit's options are taken too, such as -platform offscreen to run without a screen.\n"
                       "Exit code: 0 all went well, 1 something could not be done, 2 wrong arguments.\n");
    return text;
}

} // namespace tessera
