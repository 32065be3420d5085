// SPDX-License-Identifier: MIT
#include "automation/automationserver.h"
#include "ctlarguments.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QProcess>
#include <QTemporaryDir>
#include <QtTest>

using namespace tessera;

namespace {

/// A counter that rises by one with each question.
class CountMethods : public RpcMethodTable<CountMethods> {
public:
    static std::array<Row, 2> const& methods() {
        static std::array<Row, 2> const rows{{
            {"count.next", {}, &CountMethods::next},
            {"count.echo", {{{"value", RpcType::Any, true}}}, &CountMethods::echo},
        }};
        return rows;
    }

private:
    RpcReply next(QJsonObject const&) { return RpcReply::value(QJsonObject{{"n", ++m_count}, {"name", "five"}}); }
    RpcReply echo(QJsonObject const& params) { return RpcReply::value(params.value("value")); }
    int m_count = 0;
};

} // namespace

class TestTesseraCtl : public QObject {
    Q_OBJECT

    QTemporaryDir m_directory;
    std::unique_ptr<AutomationServer> m_server;

    struct Outcome {
        int code = -1;
        QByteArray out;
        QByteArray err;
    };
    static Outcome run(QStringList const& arguments) {
        QProcess process;
        process.start(QStringLiteral(TESSERA_CTL_PROGRAM), arguments);
        if (!QTest::qWaitFor([&] { return process.state() == QProcess::NotRunning; }, 30000))
            return {};
        return {process.exitCode(), process.readAllStandardOutput(), process.readAllStandardError()};
    }
    Outcome ask(QStringList const& arguments) {
        return run(QStringList{"--socket", m_directory.filePath("s")} + arguments);
    }

private slots:
    void init() {
        m_server = std::make_unique<AutomationServer>();
        m_server->addFamily(std::make_unique<CountMethods>());
        QString error;
        QVERIFY2(m_server->listen(m_directory.filePath("s"), error), qPrintable(error));
    }
    void cleanup() { m_server.reset(); }

    void values_are_json_or_text_data() {
        QTest::addColumn<QString>("text");
        QTest::addColumn<QJsonValue>("value");
        QTest::newRow("number") << "5" << QJsonValue(5);
        QTest::newRow("negative fraction") << "-1.5" << QJsonValue(-1.5);
        QTest::newRow("true") << "true" << QJsonValue(true);
        QTest::newRow("null") << "null" << QJsonValue(QJsonValue::Null);
        QTest::newRow("quoted") << "\"5\"" << QJsonValue("5");
        QTest::newRow("name") << "Form_Marking/pushButtonStart" << QJsonValue("Form_Marking/pushButtonStart");
        QTest::newRow("comma") << "1,2" << QJsonValue("1,2");
        QTest::newRow("empty") << "" << QJsonValue("");
        QTest::newRow("object") << "{\"x\":1}" << QJsonValue(QJsonObject{{"x", 1}});
        QTest::newRow("Chinese") << QStringLiteral("运行") << QJsonValue(QStringLiteral("运行"));
    }
    void values_are_json_or_text() {
        QFETCH(QString, text);
        QTEST(ctlValue(text), "value");
    }

    void arguments_are_read() {
        CtlArguments const all = parseCtlArguments(
            {"--timeout", "50", "--until", "n=3", "--until", "a=b", "--indent", "m.x", "k=1", "t=text"}, "default");
        QCOMPARE(all.error, QString());
        QCOMPARE(all.socket, QStringLiteral("default"));
        QCOMPARE(all.method, QStringLiteral("m.x"));
        QCOMPARE(all.timeout, 50);
        QVERIFY(all.indented);
        QCOMPARE(all.until.size(), 2);
        QCOMPARE(all.params, QJsonValue(QJsonObject{{"k", 1}, {"t", "text"}}));
        QCOMPARE(parseCtlArguments({"m", "[1,2]"}, "s").params, QJsonValue(QJsonArray{1, 2}));
        QVERIFY(parseCtlArguments({"m"}, "s").params.isUndefined());
    }

    void wrong_arguments_are_told_data() {
        QTest::addColumn<QStringList>("arguments");
        QTest::newRow("none") << QStringList();
        QTest::newRow("unknown option") << QStringList({"--foo", "m"});
        QTest::newRow("option without value") << QStringList({"m", "--timeout"});
        QTest::newRow("timeout text") << QStringList({"--timeout", "x", "m"});
        QTest::newRow("timeout zero") << QStringList({"--timeout", "0", "m"});
        QTest::newRow("until without value") << QStringList({"--until", "x", "m"});
        QTest::newRow("parameter without value") << QStringList({"m", "x"});
        QTest::newRow("twice") << QStringList({"m", "x=1", "x=2"});
        QTest::newRow("bad JSON") << QStringList({"m", "{x"});
        QTest::newRow("JSON and pair") << QStringList({"m", "{\"a\":1}", "x=2"});
        QTest::newRow("pair and JSON") << QStringList({"m", "x=2", "{\"a\":1}"});
    }
    void wrong_arguments_are_told() {
        QFETCH(QStringList, arguments);
        QVERIFY(!parseCtlArguments(arguments, "s").error.isEmpty());
        Outcome const outcome = ask(arguments);
        QCOMPARE(outcome.code, 2);
        QVERIFY(outcome.err.startsWith("tessera-ctl: "));
        QVERIFY(outcome.out.isEmpty());
    }

    void socket_is_needed() { QVERIFY(parseCtlArguments({"m"}, QString()).error.contains("socket")); }

    void result_is_printed() {
        Outcome const outcome = ask({"count.echo", QStringLiteral("value=运行")});
        QCOMPARE(outcome.code, 0);
        QCOMPARE(outcome.out, QByteArray("\"运行\"\n"));
        QCOMPARE(ask({"count.echo", "value={\"a\":[1,2]}"}).out, QByteArray("{\"a\":[1,2]}\n"));
        QCOMPARE(ask({"count.echo", "[null]"}).out, QByteArray("null\n"));
        QVERIFY(ask({"--indent", "count.echo", "value={\"a\":1}"}).out.contains("\n    \"a\": 1"));
    }

    void error_answer_is_exit_code_one() {
        Outcome const outcome = ask({"count.nothing"});
        QCOMPARE(outcome.code, 1);
        QVERIFY(outcome.out.isEmpty());
        QCOMPARE(QJsonDocument::fromJson(outcome.err).object().value("code"), QJsonValue(int(RpcMethodNotFound)));
    }

    void until_asks_again() {
        Outcome const outcome = ask({"--until", "n=5", "--until", "name=five", "count.next"});
        QCOMPARE(outcome.code, 0);
        QCOMPARE(QJsonDocument::fromJson(outcome.out).object().value("n"), QJsonValue(5));
    }

    void until_gives_up_after_the_time_out() {
        QCOMPARE(ask({"--timeout", "200", "--until", "n=-1", "count.next"}).code, 4);
    }

    void nobody_there_is_exit_code_three() {
        Outcome const outcome = run({"--socket", m_directory.filePath("none"), "m"});
        QCOMPARE(outcome.code, 3);
        QVERIFY(outcome.err.contains("No connection"));
    }

    void help_is_printed() {
        Outcome const outcome = run({"--help"});
        QCOMPARE(outcome.code, 0);
        QVERIFY(outcome.out.contains("--socket SOCKET"));
    }
};

QTEST_GUILESS_MAIN(TestTesseraCtl)
#include "tst_tesseractl.moc"
