// SPDX-License-Identifier: MIT
#include "commandline.h"

#include <QTemporaryDir>
#include <QtTest>

using tessera::CommandLine;
using tessera::KeyboardMode;
using tessera::parseCommandLine;

class TestCommandLine : public QObject {
    Q_OBJECT
private slots:
    void nothing_given_starts_the_window() {
        auto const result = parseCommandLine({}, QStringLiteral("/base"));
        QCOMPARE(result.error, QString());
        QVERIFY(result.value.action == CommandLine::Action::Run);
        QCOMPARE(result.value.root, QString());
        QVERIFY(!result.value.simSpeed.has_value());
        QCOMPARE(result.value.mark, 0);
        QVERIFY(result.value.size.isEmpty());
        QVERIFY(!result.value.quit && !result.value.panel && !result.value.report);
    }

    void everything_given_is_taken() {
        QTemporaryDir directory;
        auto const result = parseCommandLine(
            {"--root", "r",        "--sim-speed=2.5", "--open", "a/b.mkf",  "--open",       "Plate", "--import",
             "x.svg",  "--import", "/abs/y.dxf",      "--mark", "3",        "--trace",      "t.svg", "--trace=t.CSV",
             "--quit", "--panel",  "--automation",    "s.sock", "--report", "--screenshot", "p.png", "--language",
             "en",     "--size",   "1280x800"},
            directory.path());
        QCOMPARE(result.error, QString());
        CommandLine const& value = result.value;
        QCOMPARE(value.root, directory.path() + "/r");
        QCOMPARE(*value.simSpeed, 2.5);
        QCOMPARE(value.open, QStringList({directory.path() + "/a/b.mkf", "Plate"}));
        QCOMPARE(value.import, QStringList({directory.path() + "/x.svg", "/abs/y.dxf"}));
        QCOMPARE(value.mark, 3);
        QCOMPARE(value.traces, QStringList({directory.path() + "/t.svg", directory.path() + "/t.CSV"}));
        QCOMPARE(value.automation, directory.path() + "/s.sock");
        QCOMPARE(value.screenshot, directory.path() + "/p.png");
        QCOMPARE(value.language, QStringLiteral("en"));
        QCOMPARE(value.size, QSize(1280, 800));
        QVERIFY(value.quit && value.panel && value.report);
    }

    void faults_are_taken_in_their_order() {
        auto const result = parseCommandLine({"--fault", "laser_no_ready", "--fault=card_alarm"}, "/");
        QCOMPARE(result.error, QString());
        QCOMPARE(result.value.faults, QStringList({"laser_no_ready", "card_alarm"}));
    }

    void bare_name_of_a_file_that_is_there_is_that_file() {
        QTemporaryDir directory;
        QFile file(directory.filePath("Plate"));
        QVERIFY(file.open(QIODevice::WriteOnly));
        auto const result = parseCommandLine({"--open", "Plate"}, directory.path());
        QCOMPARE(result.value.open, QStringList(directory.filePath("Plate")));
    }

    void wrong_arguments_are_one_clear_sentence_data() {
        QTest::addColumn<QStringList>("arguments");
        QTest::addColumn<QString>("error");
        auto row = [](char const* name, QStringList const& arguments, char const* error) {
            QTest::newRow(name) << arguments << QString::fromLatin1(error);
        };
        row("unknown option", {"--foo"}, "There is no option \"--foo\".");
        row("unknown option with value", {"--foo=1"}, "There is no option \"--foo\".");
        row("one dash", {"-root", "x"}, "There is no option \"-root\".");
        row("file without option", {"a.svg"},
            "\"a.svg\" is not an option; give a document by --open a.svg or a drawing by --import a.svg.");
        row("lone dash", {"-"}, "\"-\" is not an option; give a document by --open - or a drawing by --import -.");
        row("root missing", {"--root"}, "--root needs a value: --root DIR.");
        row("root empty", {"--root="}, "--root needs a value: --root DIR.");
        row("root eats no option", {"--root", "--quit"}, "--root needs a value: --root DIR.");
        row("root twice", {"--root", "a", "--root", "b"}, "--root is given twice.");
        row("flag with value", {"--quit=1"}, "--quit takes no value.");
        row("flag twice", {"--quit", "--quit"}, "--quit is given twice.");
        row("speed negative", {"--sim-speed", "-1"}, "--sim-speed needs a number of 0 or above, not \"-1\".");
        row("speed text", {"--sim-speed", "fast"}, "--sim-speed needs a number of 0 or above, not \"fast\".");
        row("speed infinite", {"--sim-speed", "inf"}, "--sim-speed needs a number of 0 or above, not \"inf\".");
        row("speed nan", {"--sim-speed", "nan"}, "--sim-speed needs a number of 0 or above, not \"nan\".");
        row("mark zero", {"--mark", "0"}, "--mark needs a whole number of 1 or above, not \"0\".");
        row("mark negative", {"--mark", "-3"}, "--mark needs a whole number of 1 or above, not \"-3\".");
        row("mark fraction", {"--mark", "1.5"}, "--mark needs a whole number of 1 or above, not \"1.5\".");
        row("mark too large", {"--mark", "9999999999"},
            "--mark needs a whole number of 1 or above, not \"9999999999\".");
        row("trace ending", {"--trace", "t.pdf"},
            "--trace needs a file that ends in .svg, .csv or .png, not \"t.pdf\".");
        row("screenshot ending", {"--screenshot", "t.jpg"},
            "--screenshot needs a file that ends in .png, not \"t.jpg\".");
        row("language", {"--language", "de"}, "--language is \"zh_CN\" or \"en\", not \"de\".");
        for (char const* size : {"1280", "1280x", "x800", "1280x800x2", "-1280x800", "1280X800", " 1280x800", "799x800",
                                 "1280x599", "8193x800", "1280x8193", "99999999999x800", "1280x800\n"}) {
            QString const error =
                QStringLiteral("--size needs a width and height of 800x600 to 8192x8192, not \"%1\".");
            QTest::addRow("size %s", size) << QStringList{"--size", size} << error.arg(QLatin1String(size));
        }
        for (char const* mode : {"ON", "yes", "1"}) {
            QString const error = QStringLiteral("--keyboard is \"on\", \"off\" or \"auto\", not \"%1\".");
            QTest::addRow("keyboard %s", mode) << QStringList{"--keyboard", mode} << error.arg(QLatin1String(mode));
        }
        row("keyboard missing", {"--keyboard"}, "--keyboard needs a value: --keyboard MODE.");
        row("keyboard twice", {"--keyboard", "on", "--keyboard=off"}, "--keyboard is given twice.");
        row("automation missing", {"--automation"}, "--automation needs a value: --automation SOCKET.");
        row("first error counts", {"--mark", "x", "--foo"}, "--mark needs a whole number of 1 or above, not \"x\".");
    }
    void wrong_arguments_are_one_clear_sentence() {
        QFETCH(QStringList, arguments);
        QFETCH(QString, error);
        QCOMPARE(parseCommandLine(arguments, QStringLiteral("/base")).error, error);
    }

    void options_of_the_toolkit_pass_data() {
        QTest::addColumn<QStringList>("arguments");
        QTest::newRow("platform") << QStringList({"-platform", "offscreen", "--quit"});
        QTest::newRow("two dashes") << QStringList({"--platform", "offscreen", "--quit"});
        QTest::newRow("joined") << QStringList({"-platform=offscreen", "--quit"});
        QTest::newRow("style last") << QStringList({"--quit", "-style", "fusion"});
        QTest::newRow("flag") << QStringList({"-reverse", "--quit"});
    }
    void options_of_the_toolkit_pass() {
        QFETCH(QStringList, arguments);
        auto const result = parseCommandLine(arguments, QStringLiteral("/base"));
        QCOMPARE(result.error, QString());
        QVERIFY(result.value.quit);
    }

    void keyboard_modes() {
        QVERIFY(parseCommandLine({}, "/").value.keyboard == KeyboardMode::Auto);
        QVERIFY(parseCommandLine({"--keyboard", "on"}, "/").value.keyboard == KeyboardMode::On);
        QVERIFY(parseCommandLine({"--keyboard=off"}, "/").value.keyboard == KeyboardMode::Off);
        QVERIFY(parseCommandLine({"--keyboard", "auto"}, "/").value.keyboard == KeyboardMode::Auto);
    }

    void least_and_largest_size_are_taken() {
        QCOMPARE(parseCommandLine({"--size", "800x600"}, "/").value.size, QSize(800, 600));
        QCOMPARE(parseCommandLine({"--size=8192x8192"}, "/").value.size, QSize(8192, 8192));
    }

    void help_and_version_are_told_apart() {
        QVERIFY(parseCommandLine({"--version"}, "/").value.action == CommandLine::Action::ShowVersion);
        QVERIFY(parseCommandLine({"--help"}, "/").value.action == CommandLine::Action::ShowHelp);
        QVERIFY(parseCommandLine({"--version", "--help"}, "/").value.action == CommandLine::Action::ShowHelp);
    }

    void help_names_every_option() {
        QString const help = tessera::commandLineHelp();
        for (char const* option :
             {"--root DIR", "--sim-speed X", "--fault NAME...", "--open FILE...", "--import FILE...", "--mark N",
              "--trace FILE...", "--screenshot FILE", "--report", "--quit", "--panel", "--automation SOCKET",
              "--language LANG", "--size WxH", "--keyboard MODE", "--version", "--help"})
            QVERIFY2(help.contains(QLatin1String(option)), option);
        for (QString const& line : help.split('\n'))
            QVERIFY2(line.size() <= 110, qPrintable(line));
    }
};

QTEST_GUILESS_MAIN(TestCommandLine)
#include "tst_commandline.moc"
