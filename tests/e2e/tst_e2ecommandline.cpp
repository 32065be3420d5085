// SPDX-License-Identifier: MIT
#include "e2e/tesseraprogram.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QImage>
#include <QRegularExpression>
#include <QtTest>
#include <csignal>

class TestE2ECommandLine : public QObject {
    Q_OBJECT

    std::unique_ptr<ProgramRoot> m_root;

    static QByteArray contentOf(QString const& path) {
        QFile file(path);
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    }
    /// The log tells that the card was opened, which comes before the laser is started.
    bool cardWasOpened() const {
        for (QFileInfo const& file : QDir(m_root->inside(QStringLiteral("日志文件"))).entryInfoList({"*.log"}))
            if (contentOf(file.filePath()).contains("card opened"))
                return true;
        return false;
    }
    static QString figure(QByteArray const& report, char const* name) {
        QRegularExpression const line(QStringLiteral("^%1: +(.*)$").arg(QLatin1String(name)),
                                      QRegularExpression::MultilineOption);
        return line.match(QString::fromUtf8(report)).captured(1);
    }

private slots:
    void init() {
        m_root = std::make_unique<ProgramRoot>();
        QVERIFY(m_root->isValid());
    }

    void help_and_version_need_neither_root_nor_screen() {
        for (char const* option : {"--help", "--version"}) {
            TesseraProgram program(*m_root);
            program.startPlain({QString::fromLatin1(option), "-platform", "nosuchplatform"});
            QVERIFY(program.waitEnd());
            QCOMPARE(program.exitCode(), 0);
            QVERIFY(program.output().contains(option == QByteArray("--help") ? "Usage: tessera" : "tessera "));
        }
    }

    void wrong_arguments_end_with_two_and_a_sentence_data() {
        QTest::addColumn<QStringList>("arguments");
        QTest::addColumn<QString>("sentence");
        QTest::newRow("unknown option") << QStringList("--foo") << "There is no option \"--foo\".";
        QTest::newRow("bad number") << QStringList({"--mark", "x"})
                                    << "--mark needs a whole number of 1 or above, not \"x\".";
        QTest::newRow("drawing not there")
            << QStringList({"--import", "/no/such.svg"}) << "There is no drawing \"/no/such.svg\".";
    }
    void wrong_arguments_end_with_two_and_a_sentence() {
        QFETCH(QStringList, arguments);
        QFETCH(QString, sentence);
        TesseraProgram program(*m_root);
        program.start(arguments);
        QVERIFY(program.waitEnd());
        QCOMPARE(program.exitCode(), 2);
        QVERIFY2(program.errors().contains(sentence.toUtf8()), program.errors().constData());
        QVERIFY(!QFileInfo::exists(m_root->path()));
    }

    void program_starts_and_quits() {
        TesseraProgram program(*m_root);
        program.start({"--quit"});
        QVERIFY(program.waitEnd());
        QCOMPARE(program.exitCode(), 0);
        QVERIFY(QFileInfo(m_root->path()).isDir());
    }

    void a_fault_is_on_before_anything_is_driven() {
        TesseraProgram program(*m_root);
        QVERIFY(program.startAutomated({"--fault", "outputs_stuck", "--fault", "card_alarm"}));
        QJsonObject const state = program.call("card.state").toObject();
        QVERIFY(state.value("open").toBool());
        QCOMPARE(state.value("outputs").toInt(-1), 0); // not even the lamp
    }

    void an_unknown_fault_is_told_with_those_that_there_are() {
        TesseraProgram program(*m_root);
        program.start({"--fault", "laser_sulks", "--quit"});
        QVERIFY(program.waitEnd());
        QCOMPARE(program.exitCode(), 1);
        QVERIFY2(program.errors().contains("The machine has no fault \"laser_sulks\"; it has axis1_driver, ") &&
                     program.errors().contains(" card_alarm, "),
                 program.errors().constData());
    }

    void root_is_for_one_instance() {
        TesseraProgram first(*m_root);
        QVERIFY(first.startAutomated({}));
        TesseraProgram second(*m_root);
        second.start({"--quit"});
        QVERIFY(second.waitEnd());
        QCOMPARE(second.exitCode(), 1);
        QVERIFY2(second.errors().contains("in use by another instance (process " +
                                          QByteArray::number(first.processId()) + ")"),
                 second.errors().constData());
        QVERIFY(first.isRunning());
    }

    void two_passes_are_marked_counted_and_reported() {
        TesseraProgram program(*m_root);
        program.start(
            {"--sim-speed", "0", "--import", sampleFile("gear-plate.svg"), "--mark", "2", "--report", "--quit"});
        QVERIFY(program.waitEnd());
        QVERIFY2(program.exitCode() == 0, program.errors().constData());
        QByteArray const report = program.output();
        QCOMPARE(figure(report, "document"), m_root->inside("MarkFile/gear-plate.mkf"));
        QCOMPARE(figure(report, "passes"), QStringLiteral("2 of 2"));
        QCOMPARE(figure(report, "counter"), QStringLiteral("2"));
        QVERIFY(figure(report, "objects").toInt() > 10);
        QVERIFY(figure(report, "vertices").toInt() > 1000);
        for (char const* length : {"marked length", "jumped length"}) {
            QVERIFY2(figure(report, length).endsWith(" mm"), report.constData());
            QVERIFY(figure(report, length).section(' ', 0, 0).toDouble() > 100.0);
        }
        double const estimated = figure(report, "estimated time").section(' ', 0, 0).toDouble();
        QVERIFY2(estimated > 1000.0, report.constData());
        // As fast as possible: the machine does not take the time that it reckons.
        QVERIFY2(figure(report, "actual time").section(' ', 0, 0).toDouble() < estimated, report.constData());
        QCOMPARE(m_root->counter(), 2);
        QVERIFY2(program.errors().contains("gear-plate.svg\n") && program.errors().contains(": 59\n"),
                 program.errors().constData());
        QVERIFY2(program.errors().contains("pass 1 of 2: ") && program.errors().contains("pass 2 of 2: "),
                 program.errors().constData());
    }

    void counter_goes_on_in_the_next_run() {
        for (int expected : {1, 2, 3}) {
            TesseraProgram program(*m_root);
            program.start({"--sim-speed", "0", "--import", sampleFile("name-plate.svg"), "--mark", "1", "--quit"});
            QVERIFY(program.waitEnd());
            QVERIFY2(program.exitCode() == 0, program.errors().constData());
            QCOMPARE(m_root->counter(), expected);
        }
        // The same drawing gives the same document: it is not stored thrice.
        QCOMPARE(QDir(m_root->inside("MarkFile")).entryList({"name-plate*.mkf"}).size(), 1);
    }

    void job_at_a_hundredfold_speed_takes_its_time() {
        TesseraProgram program(*m_root);
        program.start(
            {"--sim-speed", "100", "--import", sampleFile("gear-plate.svg"), "--mark", "1", "--report", "--quit"});
        QVERIFY(program.waitEnd());
        QVERIFY2(program.exitCode() == 0, program.errors().constData());
        auto const milliseconds = [&program](char const* name) {
            return figure(program.output(), name).section(' ', 0, 0).toDouble();
        };
        QVERIFY2(milliseconds("actual time") >= milliseconds("estimated time") / 100 - 1, program.output().constData());
        QVERIFY2(milliseconds("elapsed time") >= milliseconds("actual time"), program.output().constData());
    }

    void nothing_to_mark_is_a_failure_data() {
        QTest::addColumn<QString>("drawing");
        QTest::addColumn<QString>("message");
        QTest::newRow("no document") << ""
                                     << "There is no document to mark";
        QTest::newRow("drawing without outline") << "<svg xmlns=\"http://www.w3.org/2000/svg\"/>"
                                                 << "cannot be imported";
        QTest::newRow("no drawing at all") << "hello"
                                           << "cannot be imported";
    }
    void nothing_to_mark_is_a_failure() {
        QFETCH(QString, drawing);
        QFETCH(QString, message);
        QStringList arguments{"--sim-speed", "0", "--mark", "1", "--quit"};
        if (!drawing.isEmpty()) {
            QFile file(m_root->beside("drawing.svg"));
            QVERIFY(file.open(QIODevice::WriteOnly));
            file.write(drawing.toUtf8());
            arguments += {"--import", file.fileName()};
        }
        TesseraProgram program(*m_root);
        program.start(arguments);
        QVERIFY(program.waitEnd());
        QCOMPARE(program.exitCode(), 1);
        QVERIFY2(program.errors().contains(message.toUtf8()), program.errors().constData());
        QCOMPARE(m_root->counter(), 0);
    }

    void damaged_document_is_refused() {
        QVERIFY(QDir().mkpath(m_root->inside("MarkFile")));
        QFile file(m_root->inside("MarkFile/bad.mkf"));
        QVERIFY(file.open(QIODevice::WriteOnly));
        file.write("no mark document");
        file.close();
        for (QString const& name : {QStringLiteral("bad"), file.fileName(), QStringLiteral("missing")}) {
            TesseraProgram program(*m_root);
            program.start({"--open", name, "--quit"});
            QVERIFY(program.waitEnd());
            QCOMPARE(program.exitCode(), 1);
            QVERIFY2(program.errors().contains(name == "missing" ? "There is no document" : "is not a mark document"),
                     program.errors().constData());
        }
        QCOMPARE(contentOf(file.fileName()), QByteArray("no mark document"));
    }

    void import_never_overwrites_another_document() {
        QVERIFY(QDir().mkpath(m_root->inside("MarkFile")));
        QFile file(m_root->inside("MarkFile/gear-plate.mkf"));
        QVERIFY(file.open(QIODevice::WriteOnly));
        file.write("precious");
        file.close();
        TesseraProgram program(*m_root);
        program.start({"--import", sampleFile("gear-plate.svg"), "--quit"});
        QVERIFY(program.waitEnd());
        QVERIFY2(program.exitCode() == 0, program.errors().constData());
        QCOMPARE(contentOf(file.fileName()), QByteArray("precious"));
        QVERIFY(contentOf(m_root->inside("MarkFile/gear-plate_2.mkf")).size() > 1000);
    }

    void imported_document_is_opened_by_its_name() {
        {
            TesseraProgram program(*m_root);
            program.start({"--import", sampleFile("name-plate.svg"), "--quit"});
            QVERIFY(program.waitEnd());
            QVERIFY2(program.exitCode() == 0, program.errors().constData());
        }
        TesseraProgram program(*m_root);
        program.start({"--sim-speed", "0", "--open", "name-plate", "--mark", "1", "--quit"});
        QVERIFY(program.waitEnd());
        QVERIFY2(program.exitCode() == 0, program.errors().constData());
        QCOMPARE(m_root->counter(), 1);
    }

    void traces_and_screenshot_are_written() {
        TesseraProgram program(*m_root);
        program.start({"--sim-speed", "0", "--import", sampleFile("name-plate.svg"), "--mark", "1", "--trace",
                       m_root->beside("t.csv"), "--trace", m_root->beside("t.svg"), "--trace", m_root->beside("t.png"),
                       "--screenshot", m_root->beside("s.png"), "--quit"});
        QVERIFY(program.waitEnd());
        QVERIFY2(program.exitCode() == 0, program.errors().constData());
        QVERIFY(contentOf(m_root->beside("t.csv")).startsWith("time,x,y,laser,pen\n"));
        QVERIFY(contentOf(m_root->beside("t.svg")).contains("<polyline"));
        QVERIFY(!QImage(m_root->beside("t.png")).isNull());
        QVERIFY(QImage(m_root->beside("s.png")).width() > 300);
    }

    void trace_that_cannot_be_written_is_a_failure() {
        TesseraProgram program(*m_root);
        program.start({"--sim-speed", "0", "--import", sampleFile("name-plate.svg"), "--mark", "1", "--trace",
                       "/proc/none/t.csv", "--quit"});
        QVERIFY(program.waitEnd());
        QCOMPARE(program.exitCode(), 1);
        QCOMPARE(m_root->counter(), 1);
    }

    void stopped_pass_is_a_failure() {
        TesseraProgram program(*m_root);
        QVERIFY(program.startAutomated(
            {"--sim-speed", "0.01", "--import", sampleFile("gear-plate.svg"), "--mark", "2", "--quit"}));
        program.waitFor("card.state", {},
                        [](QJsonValue const& state) { return state.toObject().value("activity") == "running"; });
        program.call("ui.click", {{"object", "Form_Marking/pushButtonStop"}});
        QVERIFY(program.waitEnd());
        QCOMPARE(program.exitCode(), 1);
        QVERIFY2(program.errors().contains("Pass 1 of 2 was stopped"), program.errors().constData());
        // The pass that was stopped counts as the operator's would.
        QCOMPARE(m_root->counter(), 1);
    }

    /// The first pass ends well; its result must not stand for the second.
    void pass_that_the_card_refuses_is_a_failure() {
        TesseraProgram program(*m_root);
        QVERIFY(program.startAutomated(
            {"--sim-speed", "2", "--import", sampleFile("gear-plate.svg"), "--mark", "2", "--quit"}));
        program.waitFor("card.state", {}, [](QJsonValue const& state) {
            return state.toObject().value("activity") == QJsonValue("running");
        });
        QCOMPARE(program.call("card.fault", {{"name", "job_fails"}, {"on", true}}), QJsonValue(true));
        QVERIFY(program.waitEnd());
        QCOMPARE(program.exitCode(), 1);
        QByteArray const told = program.errors();
        QVERIFY2(told.contains("pass 1 of 2") && told.contains("Pass 2 of 2 was stopped or had nothing to mark."),
                 told.constData());
    }

    void signal_ends_the_program_cleanly_data() {
        QTest::addColumn<int>("number");
        QTest::newRow("SIGTERM") << SIGTERM;
        QTest::newRow("SIGINT") << SIGINT;
        QTest::newRow("SIGHUP") << SIGHUP;
    }
    void signal_ends_the_program_cleanly() {
        QFETCH(int, number);
        TesseraProgram program(*m_root);
        QVERIFY(program.startAutomated({}));
        QCOMPARE(::kill(pid_t(program.processId()), number), 0);
        QVERIFY(program.waitEnd());
        QCOMPARE(program.exitCode(), 0);
        QVERIFY(!QFileInfo::exists(m_root->socket()));
        QVERIFY(!QFileInfo::exists(m_root->inside(".tessera.lock")));
    }

    void signal_during_a_run_stops_it_and_ends_the_program() {
        TesseraProgram program(*m_root);
        QVERIFY(program.startAutomated(
            {"--sim-speed", "0.01", "--import", sampleFile("gear-plate.svg"), "--mark", "3", "--quit"}));
        program.waitFor("card.state", {},
                        [](QJsonValue const& state) { return state.toObject().value("activity") == "running"; });
        program.terminate();
        QVERIFY(program.waitEnd());
        QCOMPARE(program.exitCode(), 1);
        QVERIFY2(program.errors().contains("signal"), program.errors().constData());
        QVERIFY(m_root->counter() <= 1);
    }

    void signal_before_a_modal_dialog_ends_the_program_too() {
        TesseraProgram program(*m_root);
        QVERIFY(program.startAutomated({}));
        QVERIFY(!program.call("ui.trigger", {{"action", "actionSetLan"}}).isUndefined());
        QVERIFY(program.waitProperty("LanSelect", "visible", true));
        program.terminate();
        QVERIFY(program.waitEnd());
        QCOMPARE(program.exitCode(), 0);
    }

    /// The laser keeps the start waiting for ten seconds, tells that it is not ready, and the start goes on.
    void signal_while_the_laser_is_started_ends_the_program() {
        QVERIFY(QDir().mkpath(m_root->inside("ini")));
        for (auto const& [name, text] : {std::pair("ini/VZMarkPara.cfg", "[LASER]\nbYLS=2\n"),
                                         {"ini/MarkingParam.ini", "[Laser]\nMarkCardType=1\n"}}) {
            QFile file(m_root->inside(name));
            QVERIFY(file.open(QIODevice::WriteOnly) && file.write(text) > 0);
        }
        TesseraProgram program(*m_root);
        program.start({"--fault", "laser_no_ready"});
        QTRY_VERIFY(cardWasOpened());
        program.terminate();
        QVERIFY(program.waitEnd());
        QCOMPARE(program.exitCode(), 0);
    }

    void language_is_chosen_and_kept() {
        for (char const* option : {"--language", ""}) {
            TesseraProgram program(*m_root);
            QVERIFY(program.startAutomated(*option ? QStringList({option, "en"}) : QStringList()));
            QVERIFY(!program.call("ui.trigger", {{"action", "actionMark"}}).isUndefined());
            QVERIFY(program.waitProperty("Form_Marking", "visible", true));
            QVERIFY(program.get("Form_Marking/pushButtonStart", "text").toString().startsWith("Start"));
            program.call("app.quit");
            QVERIFY(program.waitEnd());
        }
    }
};

QTEST_GUILESS_MAIN(TestE2ECommandLine)
#include "tst_e2ecommandline.moc"
