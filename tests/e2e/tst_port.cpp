// SPDX-License-Identifier: MIT
#include "e2e/tesseraprogram.h"
#include "support/waitfor.h"

#include <QFileInfo>
#include <QImage>
#include <QJsonDocument>
#include <QtTest>
#include <cmath>

/// The automation port of the running program.
class TestPort : public QObject {
    Q_OBJECT

    std::unique_ptr<ProgramRoot> m_root;
    std::unique_ptr<TesseraProgram> m_program;

    QJsonObject raw(QByteArray const& line) {
        QLocalSocket& socket = m_program->socket();
        socket.write(line);
        while (!socket.canReadLine() && socket.waitForReadyRead(longWait()))
            ;
        return QJsonDocument::fromJson(socket.readLine()).object();
    }
    int errorOf(char const* method, QJsonObject const& params) {
        m_program->call(QLatin1String(method), params);
        return m_program->lastError().value("code").toInt();
    }

private slots:
    void initTestCase() {
        m_root = std::make_unique<ProgramRoot>();
        m_program = std::make_unique<TesseraProgram>(*m_root);
        QVERIFY(m_program->startAutomated({"--sim-speed", "0", "--import", sampleFile("name-plate.svg")}));
        QVERIFY(m_program->waitProperty("actionSort", "enabled", true));
    }
    void cleanupTestCase() {
        m_program->call("app.quit");
        QVERIFY(m_program->waitEnd());
        QCOMPARE(m_program->exitCode(), 0);
        m_program.reset();
        m_root.reset();
    }

    void port_is_off_unless_asked_for() {
        ProgramRoot root;
        TesseraProgram program(root);
        program.start({"--quit"});
        QVERIFY(program.waitEnd());
        QVERIFY(!QFileInfo::exists(root.socket()));
    }

    void port_is_for_the_owner_only() {
        QCOMPARE(int(QFileInfo(m_root->socket()).permissions() &
                     (QFile::ReadGroup | QFile::WriteGroup | QFile::ReadOther | QFile::WriteOther)),
                 0);
    }

    void bad_lines_are_answered_and_the_connection_stays_data() {
        QTest::addColumn<QByteArray>("line");
        QTest::addColumn<int>("code");
        QTest::newRow("no JSON") << QByteArray("{]\n") << -32700;
        QTest::newRow("no request") << QByteArray("{\"a\":1}\n") << -32600;
        QTest::newRow("unknown method") << QByteArray(R"({"jsonrpc":"2.0","id":1,"method":"ui.explode"})"
                                                      "\n")
                                        << -32601;
        QTest::newRow("missing parameter") << QByteArray(R"({"jsonrpc":"2.0","id":1,"method":"ui.click"})"
                                                         "\n")
                                           << -32602;
        QTest::newRow("oversized") << QByteArray(3 * 1024 * 1024, 'x') + "\n" << -32600;
    }
    void bad_lines_are_answered_and_the_connection_stays() {
        QFETCH(QByteArray, line);
        QTEST(raw(line).value("error").toObject().value("code").toInt(), "code");
        QCOMPARE(m_program->get("MainWindow", "windowTitle"), QJsonValue("VZ Tessera"));
    }

    void request_in_pieces_is_answered() {
        QByteArray const line = R"({"jsonrpc":"2.0","id":99,"method":"card.state"})"
                                "\n";
        for (int i = 0; i < line.size(); i += 7) {
            m_program->socket().write(line.mid(i, 7));
            m_program->socket().waitForBytesWritten();
        }
        QCOMPARE(raw(QByteArray()).value("id"), QJsonValue(99));
    }

    void unknown_and_ambiguous_objects_list_candidates() {
        QCOMPARE(errorOf("ui.click", {{"object", "pushButtonStrat"}}), -32001);
        QVERIFY(!m_program->lastError().value("data").toObject().value("candidates").toArray().isEmpty());
        QCOMPARE(errorOf("ui.click", {{"object", "QPushButton"}}), -32002);
        QJsonArray const candidates = m_program->lastError().value("data").toObject().value("candidates").toArray();
        QVERIFY(candidates.size() > 1);
        // Each candidate is a path that finds exactly one object.
        for (QJsonValue const& path : candidates)
            QVERIFY2(!m_program->call("ui.get", {{"object", path}, {"property", "enabled"}}).isUndefined(),
                     qPrintable(path.toString()));
    }

    void hidden_button_is_refused() {
        QCOMPARE(errorOf("ui.click", {{"object", "Form_Marking/pushButtonStart"}}), -32003);
    }

    void tree_holds_the_window_and_the_run_dialog() {
        QJsonArray const tree = m_program->call("ui.tree").toArray();
        QByteArray const text = QJsonDocument(tree).toJson();
        for (char const* name : {"\"MainWindow\"", "\"Form_Marking\"", "\"pushButtonStart\"", "\"actionMark\""})
            QVERIFY2(text.contains(name), name);
        QJsonArray const dialog = m_program->call("ui.tree", {{"object", "Form_Marking"}}).toArray();
        QCOMPARE(dialog.size(), 1);
        QCOMPARE(dialog.first().toObject().value("visible"), QJsonValue(false));
    }

    void screenshot_shows_the_window() {
        QString const file = m_root->beside("shot.png");
        QJsonObject const told = m_program->call("ui.screenshot", {{"file", file}}).toObject();
        QImage const image(file);
        QVERIFY(!image.isNull());
        QCOMPARE(told.value("width").toInt(), image.width());
        QCOMPARE(errorOf("ui.screenshot", {{"file", "/proc/none/x.png"}}), -32005);
    }

    void machine_methods_check_their_parameters_data() {
        QTest::addColumn<QString>("method");
        QTest::addColumn<QByteArray>("params");
        auto row = [](char const* name, char const* method, char const* params) {
            QTest::newRow(name) << QString::fromLatin1(method) << QByteArray(params);
        };
        row("bit too high", "card.setInput", R"({"bit":32,"value":1})");
        row("bit negative", "card.setInput", R"({"bit":-1,"value":1})");
        row("value missing", "card.setInput", R"({"bit":1})");
        row("word too large", "card.setInputs", R"({"word":4294967296})");
        row("word negative", "card.setInputs", R"({"word":-1})");
        row("since negative", "card.journal", R"({"since":-1})");
        row("since fraction", "card.journal", R"({"since":1.5})");
        row("since beyond all numbers", "card.journal", R"({"since":1e300})");
        row("unknown fault", "card.fault", R"({"name":"no such fault","on":true})");
        row("fault without switch", "card.fault", R"({"name":"x"})");
        row("unknown distortion", "head.set", R"({"wobble":1})");
        row("address of the flash without a size", "card.flash", R"({"file":"f.bin","address":5})");
        row("device beyond its limits", "card.device", R"({"name":"belt_speed","value":10001})");
        row("device that is only read", "card.device", R"({"name":"splitter_path","value":1})");
        row("value of a device as text", "card.device", R"({"name":"belt_speed","value":"fast"})");
        row("distortion text", "head.set", R"({"scaleX":"wide"})");
        row("distortion out of its limits", "head.set", R"({"barrel":0.6})");
        row("mirror that stands still", "head.set", R"({"rotation":1,"scaleY":0})");
        row("head read with a parameter", "head.get", R"({"scaleX":1})");
        row("commanded no switch", "card.trace", R"({"file":"t.csv","commanded":"yes"})");
        row("trace without file", "card.trace", R"({})");
        row("part of the flash without its size", "card.flash", R"({"file":"f.bin","address":8388608})");
        row("quit with parameter", "app.quit", R"({"now":true})");
    }
    void machine_methods_check_their_parameters() {
        QFETCH(QString, method);
        QFETCH(QByteArray, params);
        QJsonValue const before = m_program->call("card.state");
        m_program->call(method, QJsonDocument::fromJson(params).object());
        QCOMPARE(m_program->lastError().value("code").toInt(), -32602);
        QCOMPARE(m_program->call("card.state"), before);
    }

    void head_is_set_read_and_measured() {
        QJsonObject head = m_program->call("head.set", {{"barrel", 0.03}, {"noise", 0.005}, {"seed", 7}}).toObject();
        QCOMPARE(head.size(), 15);
        QCOMPARE(head.value("barrel"), QJsonValue(0.03));
        QCOMPARE(head.value("scaleX"), QJsonValue(1));
        head.insert("gridCorrection", false);
        QCOMPARE(m_program->call("head.get").toObject(), head);
        QCOMPARE(errorOf("head.set", {{"rotation", 5}, {"noise", -1}}), -32602);
        QCOMPARE(m_program->call("head.get").toObject(), head);
        // The document's job has no crosses; the same code as for a machine without a head.
        QCOMPARE(errorOf("head.measure", {{"file", "m.txt"}}), -32006);
        QVERIFY(!m_program->call("head.set", {{"barrel", 0}, {"noise", 0}, {"seed", 0}}).isNull());
    }

    void faults_and_devices_are_told_by_name() {
        QVERIFY(m_program->call("card.fault", {{"name", "encoder_stopped"}, {"on", true}}) == QJsonValue(true));
        QCOMPARE(m_program->call("card.faults").toObject().value("encoder_stopped"), QJsonValue(true));
        QVERIFY(m_program->call("card.fault", {{"name", "encoder_stopped"}, {"on", false}}) == QJsonValue(true));
        QCOMPARE(m_program->call("card.faults").toObject().value("encoder_stopped"), QJsonValue(false));
        QJsonObject const belt{{"belt_speed", 12.5}};
        QCOMPARE(m_program->call("card.device", {{"name", "belt_speed"}, {"value", 12.5}}).toObject(), belt);
        QCOMPARE(m_program->call("card.device").toObject().value("belt_speed"), QJsonValue(12.5));
        m_program->call("card.device", {{"name", "belt_speed"}, {"value", 0}});
        QCOMPARE(errorOf("card.device", {{"name", "no such device"}}), -32006);
        QCOMPARE(errorOf("card.flash", {{"file", "f.bin"}}), -32006);
    }

    void trace_with_another_ending_is_an_error() {
        QCOMPARE(errorOf("card.trace", {{"file", m_root->beside("t.pdf")}}), -32005);
        QVERIFY(!QFileInfo::exists(m_root->beside("t.pdf")));
    }

    void inputs_come_and_go() {
        QCOMPARE(m_program->call("card.setInputs", {{"word", 4294967295.0}}), QJsonValue(4294967295.0));
        QCOMPARE(m_program->call("card.setInput", {{"bit", 31}, {"value", false}}), QJsonValue(2147483647.0));
        QCOMPARE(m_program->call("card.setInputs", {{"word", 0}}), QJsonValue(0));
    }

    void journal_goes_on_from_a_sequence_number() {
        m_program->call("card.clearJournal");
        m_program->call("ui.trigger", {{"action", "actionMark"}});
        QVERIFY(m_program->waitProperty("Form_Marking", "visible", true));
        m_program->call("ui.click", {{"object", "Form_Marking/pushButtonStart"}});
        QVERIFY(m_program->waitProperty("Form_Marking/labelRunCnt", "text", "1"));
        QVERIFY(m_program->waitProperty("Form_Marking/pushButtonCancel", "enabled", true));
        QJsonArray const all = m_program->journal({"StartMark"});
        QCOMPARE(all.size(), 1);
        double const seq = all.first().toObject().value("seq").toDouble();
        QVERIFY(all.first().toObject().value("ms").toDouble() > 0);
        for (QJsonValue const& later : m_program->call("card.journal", {{"since", seq}}).toArray()) {
            QVERIFY(later.toObject().value("seq").toDouble() > seq);
            QVERIFY(later.toObject().value("name") != "StartMark");
        }
        QVERIFY(m_program->call("ui.click", {{"object", "Form_Marking/pushButtonCancel"}}) == QJsonValue(true));
        QVERIFY(m_program->waitProperty("Form_Marking", "visible", false));
    }

    void runs_are_told_with_their_estimates() {
        QJsonArray runs;
        QVERIFY(tests::waitFor([&] {
            runs = m_program->call("card.runTimes", {{"limit", 5}}).toArray();
            return !runs.isEmpty();
        }));
        QCOMPARE(runs.size(), 1); // the run of the journal's test
        QJsonObject const run = runs.first().toObject();
        QCOMPARE(run.value("whole"), QJsonValue(true));
        double const actual = m_program->call("card.state").toObject().value("runTime").toDouble();
        QCOMPARE(run.value("actual").toDouble(), actual);
        QVERIFY(std::abs(run.value("estimate").toDouble() / actual - 1.0) < 1e-6);
        QVERIFY(m_program->call("card.runTimes", {{"document", "/no such document.mkf"}}).toArray().isEmpty());
        QCOMPARE(errorOf("card.runTimes", {{"limit", "many"}}), -32602);
    }

    void second_client_is_served() {
        QLocalSocket second;
        second.connectToServer(m_root->socket());
        QVERIFY(second.waitForConnected(longWait()));
        second.write("{\"jsonrpc\":\"2.0\",\"id\":\"b\",\"method\":\"card.state\"}\n");
        while (!second.canReadLine() && second.waitForReadyRead(longWait()))
            ;
        QCOMPARE(QJsonDocument::fromJson(second.readLine()).object().value("id"), QJsonValue("b"));
    }
};

QTEST_GUILESS_MAIN(TestPort)
#include "tst_port.moc"
