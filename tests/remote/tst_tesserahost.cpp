// SPDX-License-Identifier: MIT
#include "hostarguments.h"
#include "stationlink.h"
#include "tests/remote/hostfixture.h"
#include "textport.h"

#include <QProcess>
#include <QTcpServer>

using namespace tests;

/// The host of the command line, alone and against the whole program.
class TesseraHostTest : public QObject, private HostCase {
    Q_OBJECT

private slots:
    void initTestCase();
    void init();
    void cleanup();

    void a_command_line_is_understood_as_a_frame_data();
    void a_command_line_is_understood_as_a_frame();
    void a_command_line_is_understood_as_a_station_order_data();
    void a_command_line_is_understood_as_a_station_order();
    void a_wrong_command_line_is_told_data();
    void a_wrong_command_line_is_told();
    void the_proofs_are_those_of_the_documented_session();
    void a_key_is_the_first_line_of_its_file_data();
    void a_key_is_the_first_line_of_its_file();
    void orders_of_a_plant_host_end_with_their_exit_codes();
    void a_run_is_waited_for_to_its_end();
    void a_machine_that_does_not_answer_is_a_time_out();
    void no_machine_is_no_connection();
    void orders_of_a_station_end_with_their_exit_codes();
    void a_wrong_key_is_no_connection();

private:
    struct Ended {
        int code = -1;
        QString out;
        QString errors;
    };
    static Ended call(QStringList const& arguments) {
        QProcess process;
        process.start(QStringLiteral(TESSERA_HOST), arguments);
        if (!runUntil([&] { return process.state() == QProcess::NotRunning; }))
            return {};
        return {process.exitCode(), QString::fromUtf8(process.readAllStandardOutput()),
                QString::fromUtf8(process.readAllStandardError())};
    }
    Ended order(QStringList const& arguments) {
        return call(QStringList{QStringLiteral("--port"), QString::number(port())} + arguments);
    }
    /// The program as a station of the server kind.
    void startStation();
    Ended station(QStringList const& arguments) {
        return call(QStringList{QStringLiteral("--port"), QString::number(m_StationPort), QStringLiteral("--key-file"),
                                m_Root.path(QStringLiteral("/ini/CommandServer.key")), QStringLiteral("station")} +
                    arguments);
    }

    quint16 m_StationPort = 0;
};

/// Whether a station's commands are listened to is settled when the process makes its first window.
void TesseraHostTest::initTestCase() {
    QVERIFY(hasRoot());
    beginHost();
    startStation();
    endHost();
}

void TesseraHostTest::init() {
    beginHost();
    clearLog();
}

void TesseraHostTest::cleanup() {
    endHost();
}

void TesseraHostTest::startStation() {
    QTcpServer probe;
    QVERIFY(probe.listen(QHostAddress::LocalHost));
    m_StationPort = probe.serverPort();
    probe.close();
    QVERIFY(m_Root.write("/ini/CommandServer.ini", "[server]\nport=" + QByteArray::number(m_StationPort) + "\n"));
    SystemParam::Instance()->SetWorkMode(3);
    start();
    m_Window->newDocument(1, QStringLiteral("plate"));
    machine().setSpeed(0.0);
    QVERIFY(m_Root.exists(QStringLiteral("/ini/CommandServer.key")));
}

void TesseraHostTest::a_command_line_is_understood_as_a_frame_data() {
    QTest::addColumn<QStringList>("arguments");
    QTest::addColumn<QByteArray>("frame");
    QTest::newRow("layers") << QStringList{"layers", "1", "19"} << QByteArray("_VZGetLayerParas(1,19);");
    QTest::newRow("run") << QStringList{"run", "2"} << QByteArray("_VZSetOffset(2);");
    QTest::newRow("run with records") << QStringList{"run", "2", "1.5,-0.25", "3,1,90,4,5"}
                                      << QByteArray("_VZSetOffset(2%1.5,-0.25,0,0,0,0,0#3,1,90,4,5,0,0);");
    QTest::newRow("digits are kept") << QStringList{"run", "0", "0.123456789"}
                                     << QByteArray("_VZSetOffset(0%0.123456789,0,0,0,0,0,0);");
    QTest::newRow("stop") << QStringList{"stop"} << QByteArray("_VZMarkStop();");
    QTest::newRow("test") << QStringList{"test", "a b"} << QByteArray("_VZTest(a b);");
    QTest::newRow("raw") << QStringList{"raw", "x"} << QByteArray("x;");
    QTest::newRow("raw with its end") << QStringList{"raw", "x;y;"} << QByteArray("x;y;");
    QTest::newRow("options anywhere") << QStringList{"run", "--port", "6000", "1", "--verbose"}
                                      << QByteArray("_VZSetOffset(1);");
    QTest::newRow("text like an option") << QStringList{"test", "--", "--help"} << QByteArray("_VZTest(--help);");
}

void TesseraHostTest::a_command_line_is_understood_as_a_frame() {
    QFETCH(QStringList, arguments);
    const HostArguments understood = parseHostArguments(arguments);
    QCOMPARE(understood.error, QString());
    QTEST(TextPort::frame(understood), "frame");
}

void TesseraHostTest::a_command_line_is_understood_as_a_station_order_data() {
    QTest::addColumn<QStringList>("arguments");
    QTest::addColumn<QString>("order");
    QTest::addColumn<QStringList>("sent");
    QTest::addColumn<int>("uploads");
    QTest::newRow("start") << QStringList{"start"} << "RunManualStart" << QStringList{"0", "0"} << 0;
    QTest::newRow("start a preview") << QStringList{"start", "1", "1"} << "RunManualStart" << QStringList{"1", "1"}
                                     << 0;
    QTest::newRow("stop") << QStringList{"stop"} << "RunManualStop" << QStringList() << 0;
    QTest::newRow("setcurdoc") << QStringList{"setcurdoc", "plate"} << "SetCurDoc" << QStringList{"plate"} << 0;
    QTest::newRow("close all") << QStringList{"sync"} << "SyncFile" << QStringList() << 0;
    QTest::newRow("sync") << QStringList{"sync", "a=b", "c=@/tmp/d=e.mkf"} << "SyncFile"
                          << QStringList{"b", "a", "upload:c", "c"} << 1;
    QTest::newRow("other") << QStringList{"command", "X", "1", "2"} << "X" << QStringList{"1", "2"} << 0;
}

void TesseraHostTest::a_command_line_is_understood_as_a_station_order() {
    QFETCH(QStringList, arguments);
    const HostArguments understood = parseHostArguments(QStringList{"--key-file", "k", "station"} + arguments);
    QCOMPARE(understood.error, QString());
    QTEST(understood.order, "order");
    QTEST(understood.orderArguments, "sent");
    QTEST(int(understood.upload.size()), "uploads");
}

void TesseraHostTest::a_wrong_command_line_is_told_data() {
    QTest::addColumn<QStringList>("arguments");
    QTest::addColumn<QString>("sentence");
    QTest::newRow("nothing") << QStringList() << "The command is missing.";
    QTest::newRow("unknown") << QStringList{"go"} << "There is no command \"go\".";
    QTest::newRow("unknown option") << QStringList{"--fast", "stop"} << "There is no option \"--fast\".";
    QTest::newRow("no value") << QStringList{"stop", "--port"} << "--port needs a value.";
    QTest::newRow("port") << QStringList{"--port", "70000", "stop"}
                          << "--port needs a number from 1 to 65535, not \"70000\".";
    QTest::newRow("no layer") << QStringList{"layers", "0"} << "The layer is missing.";
    QTest::newRow("no number") << QStringList{"run", "x"} << "The document is a whole number, not \"x\".";
    QTest::newRow("record") << QStringList{"run", "0", "1,a"} << "\"a\" in \"1,a\" is no number.";
    QTest::newRow("not finite") << QStringList{"run", "0", "nan"} << "\"nan\" in \"nan\" is no number.";
    QTest::newRow("long record") << QStringList{"run", "0", "1,2,3,4,5,6"}
                                 << "\"1,2,3,4,5,6\" has more than 5 numbers.";
    QTest::newRow("too much") << QStringList{"stop", "now"} << "\"now\" is too much.";
    QTest::newRow("test that ends early") << QStringList{"test", "a;b"} << "A semicolon would end the frame: \"a;b\".";
    QTest::newRow("no key") << QStringList{"station", "stop"} << "The key is missing: give its file by --key-file.";
    QTest::newRow("no pair") << QStringList{"--key-file", "k", "station", "sync", "a"}
                             << "A document is NAME=SOURCE, not \"a\".";
    QTest::newRow("no order") << QStringList{"--key-file", "k", "station", "go"} << "A station has no order \"go\".";
}

void TesseraHostTest::a_wrong_command_line_is_told() {
    QFETCH(QStringList, arguments);
    QFETCH(QString, sentence);
    QCOMPARE(parseHostArguments(arguments).error, sentence);
    const Ended ended = call(arguments);
    QCOMPARE(ended.code, 2);
    QCOMPARE(ended.errors, QStringLiteral("tessera-host: ") + sentence + QStringLiteral(" See --help.\n"));
}

/// The figures stand in docs/protocols.md.
void TesseraHostTest::the_proofs_are_those_of_the_documented_session() {
    const QByteArray key = QByteArray("0123456789abcdef").repeated(4);
    const QByteArray server("6ccc1175eea8fa4885b746c73ef65285364983e59288753cb7e70d6bdd44e6ab");
    const QByteArray own("44fd8a7d701df0b6d40e2005b4e3397f8d906df131985b789b4fa60fd7aff61c");
    QCOMPARE(StationLink::proof(key, server, own, QStringLiteral("line-3")),
             QByteArray("60de857f9eeda21464b2468b450b19dfd80d6d37c8da5c76037fe75bcbae21dc"));
    QCOMPARE(StationLink::serverProof(key, server, own),
             QByteArray("91db9988c4b4bf72d9b0ae08f99b4a564cd1fe9e8daec57e2143174b936c6b2f"));
}

void TesseraHostTest::a_key_is_the_first_line_of_its_file_data() {
    QTest::addColumn<QByteArray>("content");
    QTest::addColumn<QByteArray>("key");
    const QByteArray good(32, 'k');
    QTest::newRow("plain") << good << good;
    QTest::newRow("line end and blanks") << good + " \t\r\n" << good;
    QTest::newRow("more lines") << good + "\nmore" << good;
    QTest::newRow("too short") << good.chopped(1) + "\n" << QByteArray();
    QTest::newRow("empty") << QByteArray() << QByteArray();
}

void TesseraHostTest::a_key_is_the_first_line_of_its_file() {
    QFETCH(QByteArray, content);
    QVERIFY(m_Root.write("/key", content));
    QTEST(StationLink::readKey(m_Root.path("/key")), "key");
    QCOMPARE(StationLink::readKey(m_Root.path("/nothing")), QByteArray());
}

void TesseraHostTest::orders_of_a_plant_host_end_with_their_exit_codes() {
    start();
    m_Window->newDocument();
    machine().setSpeed(0.0);
    Ended ended = order({"stop"});
    QCOMPARE(ended.code, 0);
    QCOMPARE(ended.out, QStringLiteral("终止运行成功\n"));
    ended = order({"layers", "0", "19"});
    QCOMPARE(ended.code, 0);
    QVERIFY2(ended.out.startsWith(QStringLiteral("1           mark count\n500         mark speed, mm/s\n")),
             qPrintable(ended.out));
    QCOMPARE(ended.out.count(QLatin1Char('\n')), 18);
    ended = order({"layers", "5", "0"});
    QCOMPARE(ended.code, 1);
    QCOMPARE(ended.errors, QStringLiteral("文档号超出范围\n"));
    ended = order({"--verbose", "raw", "_VZGetLayerParas(0);_VZMarkStop()"});
    QCOMPARE(ended.code, 0);
    QCOMPARE(ended.out, QStringLiteral("_VZGetLayerParas(1,有效数据长度错误);\n_VZMarkStop(0,终止运行成功);\n"));
    QVERIFY(ended.errors.startsWith(QStringLiteral("> _VZGetLayerParas(0);_VZMarkStop();\n< ")));
    QTest::ignoreMessage(QtDebugMsg, "接收指令: _VZTest(a)");
    QCOMPARE(order({"test", "a"}).code, 0);
}

void TesseraHostTest::a_run_is_waited_for_to_its_end() {
    start();
    m_Window->newDocument();
    machine().setSpeed(0.0);
    Ended ended = order({"run", "0", "1,2,3"});
    QCOMPARE(ended.code, 0);
    QCOMPARE(ended.out, QStringLiteral("文档执行成功\n"));
    ended = order({"run", "7"});
    QCOMPARE(ended.code, 1);
    QCOMPARE(ended.errors, QStringLiteral("文档号超出范围\n"));
}

void TesseraHostTest::a_machine_that_does_not_answer_is_a_time_out() {
    start();
    m_Window->newDocument();
    machine().setSpeed(kSlowJob);
    const Ended ended = order({"--timeout", "300", "run", "0"});
    QCOMPARE(ended.code, 4);
    QCOMPARE(ended.errors, QStringLiteral("tessera-host: No answer in time.\n"));
    QVERIFY(isRunning());
    QCOMPARE(order({"stop"}).code, 0);
    QVERIFY(!isRunning());
}

void TesseraHostTest::no_machine_is_no_connection() {
    QTcpServer probe;
    QVERIFY(probe.listen(QHostAddress::LocalHost));
    const QString free = QString::number(probe.serverPort());
    probe.close();
    const Ended ended = call({"--port", free, "stop"});
    QCOMPARE(ended.code, 3);
    QCOMPARE(ended.errors, QStringLiteral("tessera-host: No connection to 127.0.0.1: Connection refused\n"));
}

void TesseraHostTest::orders_of_a_station_end_with_their_exit_codes() {
    startStation();
    Ended ended = station({"start"});
    QVERIFY2(ended.code == 0, qPrintable(ended.errors));
    QCOMPARE(ended.out, QStringLiteral("文档执行成功\n"));
    QCOMPARE(station({"stop"}).out, QStringLiteral("终止运行成功\n"));
    ended = station({"setcurdoc", "nothing"});
    QCOMPARE(ended.code, 1);
    QCOMPARE(ended.errors, QStringLiteral("切换文档失败\n"));
    QVERIFY(m_Window->operator->()->GetActiveView()->SaveDoc());
    const QString copy = m_Root.path(QStringLiteral("/copy.mkf"));
    QVERIFY(QFile::copy(m_Root.path(QStringLiteral("/MarkFile/plate.mkf")), copy));
    ended = station({"sync", QStringLiteral("second=@") + copy, "plate=plate"});
    QVERIFY2(ended.code == 0, qPrintable(ended.errors));
    QCOMPARE(ended.out, QStringLiteral("文档同步成功\n"));
    QCOMPARE(window().GetDocs().size(), 2);
    QCOMPARE(station({"setcurdoc", "second"}).code, 0);
    QCOMPARE(station({"sync", "x=@/nowhere/at/all"}).code, 2);
    QCOMPARE(station({"sync"}).code, 0);
    QCOMPARE(window().GetDocs().size(), 0);
    QCOMPARE(station({"--timeout", "300", "command", "Unknown"}).code, 4);
}

void TesseraHostTest::a_wrong_key_is_no_connection() {
    startStation();
    QVERIFY(m_Root.write("/wrong", QByteArray(40, 'w')));
    const Ended ended =
        call({"--port", QString::number(m_StationPort), "--key-file", m_Root.path("/wrong"), "station", "stop"});
    QCOMPARE(ended.code, 3);
    QCOMPARE(ended.errors, QStringLiteral("tessera-host: No connection to 127.0.0.1: wrong key\n"));
}

QTEST_MAIN(TesseraHostTest)
#include "tst_tesserahost.moc"
