// SPDX-License-Identifier: MIT
// The command server as the front end sees it: settings, key, signals, answers, start and stop.
#include "engine/ccsserver.h"
#include "engine/marklog.h"
#include "servers/stationclient.h"
#include "simengine/card/cardcore.h"
#include "simengine/servers/ccsserveraccess.h"
#include "simengine/servers/commandserversettings.h"
#include "simengine/servers/documentuploads.h"
#include "support/approot.h"
#include "support/logtexts.h"
#include "support/temporaryroot.h"
#include "support/waitfor.h"

#include <QDir>
#include <QJsonArray>
#include <QSignalSpy>
#include <QTcpServer>
#include <QThread>
#include <QtTest>
#include <sys/stat.h>
#include <thread>
#include <unistd.h>

namespace {

int journalled(char const* name) {
    int count = 0;
    for (sim::JournalEntry const& entry : sim::simulatedCard().journal().since(0))
        count += entry.name == name ? 1 : 0;
    return count;
}

QByteArray const kSettings = "[server]\nport=0\n";
QByteArray const kKey(64, 'k');

} // namespace

class CommandServerTest : public QObject {
    Q_OBJECT

private:
    using Client = tests::StationClient;

    std::unique_ptr<tests::TemporaryRoot> m_root;
    CCSServer& m_server = *CCSServer::Instance();

    bool writeKey(QByteArray const& bytes, mode_t mode = 0600) {
        return m_root->write("/ini/CommandServer.key", bytes) &&
               ::chmod(QFile::encodeName(m_root->path("/ini/CommandServer.key")).constData(), mode) == 0;
    }
    /// Starts with the key kKey at a free port.
    bool start() { return m_root->write("/ini/CommandServer.ini", kSettings) && writeKey(kKey + '\n') && InitServer(); }
    static void pump(Client& client) {
        client.pump = [] { QCoreApplication::processEvents(); };
    }
    bool connectStation(Client& client, QByteArray const& key = kKey) {
        pump(client);
        return client.connectTo(CCSServerAccess::port(m_server)) && client.prove(key);
    }

private slots:
    void init() {
        m_root = std::make_unique<tests::TemporaryRoot>();
        QVERIFY(m_root->isValid());
    }
    void cleanup() {
        CloseServer();
        QCOMPARE(CCSServerAccess::port(m_server), quint16(0));
        m_root.reset();
    }

    void defaults_are_the_loopback_and_a_key_below_ini() {
        QString error;
        auto const settings = sim::commandServerSettings(error);
        QVERIFY(settings);
        QCOMPARE(settings->address, QString("127.0.0.1"));
        QCOMPARE(settings->port, quint16(7660));
        QCOMPARE(settings->keyFile, m_root->path("/ini/CommandServer.key"));
    }

    void settings_are_read_data() {
        QTest::addColumn<QByteArray>("ini");
        QTest::addColumn<QString>("address");
        QTest::addColumn<int>("port");
        QTest::addColumn<QString>("key");
        QTest::newRow("all") << QByteArray("[server]\naddress = 0.0.0.0\nport = 65535\nkey = /etc/station.key\n")
                             << "0.0.0.0" << 65535 << "/etc/station.key";
        QTest::newRow("relative key") << QByteArray("[server]\nkey=keys/a\n") << "127.0.0.1" << 7660 << "ROOT/keys/a";
        QTest::newRow("key below ini") << QByteArray("[server]\nkey=/ini/a\n") << "127.0.0.1" << 7660 << "ROOT/ini/a";
        QTest::newRow("other section") << QByteArray("[other]\nport=1\n") << "127.0.0.1" << 7660
                                       << "ROOT/ini/CommandServer.key";
        QTest::newRow("port too high") << QByteArray("[server]\nport=65536\n") << QString() << -1 << QString();
        QTest::newRow("port negative") << QByteArray("[server]\nport=-1\n") << QString() << -1 << QString();
        QTest::newRow("port no number") << QByteArray("[server]\nport=7660x\n") << QString() << -1 << QString();
        QTest::newRow("port empty") << QByteArray("[server]\nport=\n") << QString() << -1 << QString();
    }
    void settings_are_read() {
        QFETCH(QByteArray, ini);
        QFETCH(QString, address);
        QFETCH(int, port);
        QFETCH(QString, key);
        QVERIFY(m_root->write("/ini/CommandServer.ini", ini));
        QString error;
        auto const settings = sim::commandServerSettings(error);
        QCOMPARE(bool(settings), port >= 0);
        if (!settings) {
            QVERIFY(error.contains("is no port"));
            QVERIFY(!InitServer());
            QVERIFY(tests::logBytes().contains("is no port"));
            return;
        }
        QCOMPARE(settings->address, address);
        QCOMPARE(int(settings->port), port);
        QCOMPARE(settings->keyFile, key.replace("ROOT", m_root->path()));
    }

    void the_first_start_makes_a_key_for_its_owner_alone() {
        QVERIFY(m_root->write("/ini/CommandServer.ini", kSettings));
        QVERIFY(InitServer());
        QByteArray const file = m_root->read("/ini/CommandServer.key");
        QCOMPARE(file.size(), 65);
        QVERIFY(QRegularExpression("^[0-9a-f]{64}\n$").match(file).hasMatch());
        struct stat status {};
        QCOMPARE(::stat(QFile::encodeName(m_root->path("/ini/CommandServer.key")).constData(), &status), 0);
        QCOMPARE(int(status.st_mode & 07777), 0600);
        Client station;
        QVERIFY(connectStation(station, file.trimmed()));
        CloseServer();
        QVERIFY(InitServer());
        QCOMPARE(m_root->read("/ini/CommandServer.key"), file);
    }

    void an_empty_key_file_counts_as_missing() {
        QVERIFY(m_root->write("/ini/CommandServer.ini", kSettings));
        QVERIFY(writeKey(""));
        QVERIFY(InitServer());
        QCOMPARE(m_root->read("/ini/CommandServer.key").size(), 65);
    }

    void an_unsafe_or_useless_key_keeps_the_server_from_starting_data() {
        QTest::addColumn<QByteArray>("bytes");
        QTest::addColumn<int>("mode");
        QTest::addColumn<QByteArray>("logged");
        QByteArray const key(64, 'k');
        QTest::newRow("group reads") << key << 0640 << QByteArray("others may read or write the key (mode 640");
        QTest::newRow("others read") << key << 0604 << QByteArray("others may read");
        QTest::newRow("others write") << key << 0602 << QByteArray("others may read");
        QTest::newRow("short") << QByteArray(31, 'k') << 0600 << QByteArray("is no key of 32 to 1024 bytes");
        QTest::newRow("blank") << QByteArray("   \n") + key << 0600 << QByteArray("is no key");
        QTest::newRow("long") << QByteArray(1025, 'k') << 0600 << QByteArray("is no key");
    }
    void an_unsafe_or_useless_key_keeps_the_server_from_starting() {
        QFETCH(QByteArray, bytes);
        QFETCH(int, mode);
        QFETCH(QByteArray, logged);
        QVERIFY(m_root->write("/ini/CommandServer.ini", kSettings));
        QVERIFY(writeKey(bytes, static_cast<mode_t>(mode)));
        QVERIFY(!InitServer());
        QCOMPARE(CCSServerAccess::port(m_server), quint16(0));
        QVERIFY2(tests::logBytes().contains(logged), tests::logBytes());
        QCOMPARE(m_root->read("/ini/CommandServer.key"), bytes);
    }

    void a_folder_in_place_of_the_key_is_refused() {
        QVERIFY(m_root->write("/ini/CommandServer.ini", kSettings));
        QVERIFY(QDir().mkpath(m_root->path("/ini/CommandServer.key")));
        QVERIFY(!InitServer());
        QVERIFY(tests::logBytes().contains("not a regular file"));
    }

    void the_longest_and_the_shortest_key_serve_data() {
        QTest::addColumn<int>("size");
        QTest::newRow("shortest") << 32;
        QTest::newRow("longest") << 1024;
    }
    void the_longest_and_the_shortest_key_serve() {
        QFETCH(int, size);
        QVERIFY(m_root->write("/ini/CommandServer.ini", kSettings));
        QVERIFY(writeKey(QByteArray(size, 'k') + " \t\r\nsecond line\n"));
        QVERIFY(InitServer());
        Client station;
        QVERIFY(connectStation(station, QByteArray(size, 'k')));
    }

    void a_taken_port_is_told() {
        QTcpServer other;
        QVERIFY(other.listen(QHostAddress::LocalHost));
        QVERIFY(m_root->write("/ini/CommandServer.ini", "[server]\nport=" + QByteArray::number(other.serverPort())));
        QVERIFY(writeKey(kKey));
        QVERIFY(!InitServer());
        QVERIFY(tests::logBytes().contains("does not start: 127.0.0.1 port " + QByteArray::number(other.serverPort())));
    }

    void listening_beyond_the_loopback_is_logged() {
        QVERIFY(m_root->write("/ini/CommandServer.ini", "[server]\nport=0\naddress=0.0.0.0\n"));
        QVERIFY(writeKey(kKey));
        QVERIFY(InitServer());
        QVERIFY(tests::logBytes().contains("command server: is open to the network"));
        CloseServer();
        QVERIFY(start());
        QCOMPARE(tests::logBytes().count("is open to the network"), 1);
    }

    void a_second_start_changes_nothing() {
        QVERIFY(start());
        quint16 const port = CCSServerAccess::port(m_server);
        QVERIFY(InitServer());
        QCOMPARE(CCSServerAccess::port(m_server), port);
    }

    void a_command_comes_on_the_main_thread_and_its_answer_goes_back() {
        QVERIFY(start());
        Client station;
        QVERIFY(connectStation(station));
        QThread* thread = nullptr;
        CCSCmd got;
        int gotTag = 0;
        auto const connection = connect(&m_server, &CCSServer::SendSignals, this, [&](CCSCmd cmd, int tag) {
            thread = QThread::currentThread();
            got = cmd;
            gotTag = tag;
            cmd.Args = {"0", QString::fromUtf8("文档切换成功")};
            CCSServer::Instance()->WriteTcpMsg(cmd, tag);
        });
        QVERIFY(station.send("{\"type\":\"cmd\",\"id\":12,\"name\":\"SetCurDoc\",\"first\":3,\"second\":-4,"
                             "\"args\":[\"plate\"],\"tag\":7}\n"));
        QCOMPARE(station.line(),
                 QByteArray("{\"args\":[\"0\",\"文档切换成功\"],\"first\":3,\"id\":12,\"name\":\"SetCurDoc\","
                            "\"second\":-4,\"tag\":7,\"type\":\"answer\"}"));
        disconnect(connection);
        QCOMPARE(thread, QCoreApplication::instance()->thread());
        QCOMPARE(got.Id, 12);
        QCOMPARE(got.First, 3);
        QCOMPARE(got.Second, -4);
        QCOMPARE(got.Args, std::vector<QString>{"plate"});
        QCOMPARE(gotTag, 7);
        QVERIFY(tests::logBytes().contains("command server: 127.0.0.1 (line-3): SetCurDoc (tag 7), 1 arguments"));
        QVERIFY(tests::logBytes().contains("answered SetCurDoc (tag 7): 0, 文档切换成功"));
    }

    void answers_come_from_any_thread() {
        QVERIFY(start());
        Client station;
        QVERIFY(connectStation(station));
        CCSCmd cmd;
        cmd.Name = "RunManualStart";
        cmd.Args = {"0", "done"};
        std::thread([cmd] { CCSServer::Instance()->WriteTcpMsg(cmd, 5000); }).join();
        QCOMPARE(station.message().value("tag").toInt(), 5000);
    }

    void an_answer_goes_to_the_station_that_came_back() {
        QVERIFY(start());
        QSignalSpy commands(&m_server, &CCSServer::SendSignals);
        {
            Client station;
            QVERIFY(connectStation(station));
            QVERIFY(station.send(Client::commandLine("RunManualStart", {"0", "0"}, 41)));
            QTRY_COMPARE(commands.count(), 1);
        }
        QTRY_VERIFY(tests::logBytes().contains("has gone"));
        Client again;
        QVERIFY(connectStation(again));
        m_server.WriteTcpMsg(commands[0][0].value<CCSCmd>(), commands[0][1].toInt());
        QCOMPARE(again.message().value("tag").toInt(), 41);
    }

    void without_a_station_the_answer_is_journalled_and_logged() {
        sim::simulatedCard().journal().clear();
        CCSCmd cmd;
        cmd.Name = "SetCurDoc";
        m_server.WriteTcpMsg(cmd, 3);
        QVERIFY(start());
        m_server.WriteTcpMsg(cmd, 4);
        QVERIFY(tests::logBytes().contains("no station to answer SetCurDoc (tag 3)"));
        QVERIFY(tests::logBytes().contains("no station to answer SetCurDoc (tag 4)"));
        CloseServer();
        QCOMPARE(journalled("WriteTcpMsg"), 2);
        QCOMPARE(journalled("InitServer"), 1);
        QCOMPARE(journalled("CloseServer"), 1);
    }

    void an_answer_too_long_for_a_line_is_logged_and_not_sent() {
        QVERIFY(start());
        Client station;
        QVERIFY(connectStation(station));
        CCSCmd cmd;
        cmd.Name = "SyncFile";
        cmd.Args = {QString(1024 * 1024, 'x')};
        m_server.WriteTcpMsg(cmd, 1);
        QVERIFY(tests::logBytes().contains("the answer to SyncFile (tag 1) is too long to be sent"));
        QVERIFY(station.send("{\"type\":\"ping\",\"tag\":2}\n"));
        QCOMPARE(station.message().value("type").toString(), QString("pong"));
    }

    void other_events_are_handled_between_two_commands() {
        QVERIFY(start());
        QStringList seen;
        auto const connection = connect(&m_server, &CCSServer::SendSignals, this, [&](CCSCmd, int tag) {
            seen << QString::number(tag);
            QTimer::singleShot(0, this, [&seen, tag] { seen << "between"; });
        });
        Client station;
        QVERIFY(connectStation(station));
        QVERIFY(station.send(Client::commandLine("A", {}, 1) + Client::commandLine("B", {}, 2)));
        QTRY_COMPARE(seen.size(), 4);
        disconnect(connection);
        QCOMPARE(seen, (QStringList{"1", "between", "2", "between"}));
    }

    void a_command_may_close_the_server() {
        QVERIFY(start());
        int commands = 0;
        auto const connection = connect(&m_server, &CCSServer::SendSignals, this, [&](CCSCmd cmd, int tag) {
            ++commands;
            CloseServer();
            CCSServer::Instance()->WriteTcpMsg(cmd, tag);
        });
        Client station;
        QVERIFY(connectStation(station));
        QVERIFY(station.send(Client::commandLine("A", {}, 1) + Client::commandLine("B", {}, 2)));
        QCOMPARE(station.message().value("reason").toString(), QString("server closed"));
        QVERIFY(station.ended());
        QCOMPARE(commands, 1);
        disconnect(connection);
        QVERIFY(start());
        Client again;
        QVERIFY(connectStation(again));
    }

    void closing_without_a_start_is_harmless() {
        CloseServer();
        CloseServer();
    }

    void documents_are_put_in_pieces_and_forgotten_with_the_station() {
        QVERIFY(start());
        {
            Client station;
            QVERIFY(connectStation(station));
            QVERIFY(station.send("{\"type\":\"put\",\"name\":\"板\",\"offset\":0,\"data\":\"AAEC\"}\n"));
            QCOMPARE(station.line(), QByteArray("{\"name\":\"板\",\"size\":3,\"type\":\"stored\"}"));
            QVERIFY(station.send("{\"type\":\"put\",\"name\":\"板\",\"offset\":3,\"data\":\"Aw==\"}\n"));
            QCOMPARE(station.line(), QByteArray("{\"name\":\"板\",\"size\":4,\"type\":\"stored\"}"));
            QCOMPARE(sim::stationUploads().find("板"), QByteArray("\0\1\2\3", 4));
            QVERIFY(station.send("{\"type\":\"put\",\"name\":\"板\",\"offset\":3,\"data\":\"Aw==\"}\n"));
            QCOMPARE(
                station.line(),
                QByteArray("{\"line\":4,\"reason\":\"upload: offset 3, but 4 bytes are there\",\"type\":\"error\"}"));
            QCOMPARE(sim::stationUploads().find("板"), QByteArray("\0\1\2\3", 4));
            QVERIFY(tests::logBytes().contains("refused line 4: upload: offset 3"));
            QVERIFY(station.send("{\"type\":\"put\",\"name\":\"b\",\"offset\":0,\"data\":\"AAEC\"}\n"
                                 "{\"type\":\"drop\",\"name\":\"b\"}\n{\"type\":\"drop\",\"name\":\"b\"}\n"));
            QVERIFY(!station.line().isNull());
            QCOMPARE(station.line(), QByteArray("{\"name\":\"b\",\"type\":\"dropped\"}"));
            QCOMPARE(station.line(), QByteArray("{\"name\":\"b\",\"type\":\"dropped\"}"));
            QVERIFY(!sim::stationUploads().find("b"));
            QVERIFY(sim::stationUploads().find("板"));
        }
        QTRY_VERIFY(!sim::stationUploads().find("板"));
    }

    void uploads_are_bounded() {
        sim::DocumentUploads uploads;
        QString error;
        QByteArray const half(32 << 20, 'x');
        QCOMPARE(uploads.put("a", 0, half, error).value_or(-1), qint64(32 << 20));
        QCOMPARE(uploads.put("b", 0, half, error).value_or(-1), qint64(32 << 20));
        QVERIFY(!uploads.put("a", 32 << 20, "x", error));
        QVERIFY(error.contains("more than 67108864 bytes"));
        QCOMPARE(uploads.put("a", 0, half, error).value_or(-1), qint64(32 << 20)); // anew, in its own place
        uploads.drop("b");
        QCOMPARE(uploads.put("c", 0, half, error).value_or(-1), qint64(32 << 20));
        uploads.clear();
        for (int i = 0; i < 256; ++i)
            QVERIFY(uploads.put(QString::number(i), 0, "x", error));
        QVERIFY(!uploads.put("one more", 0, "x", error));
        QVERIFY(error.contains("more than 256 documents"));
        QVERIFY(uploads.put("255", 1, "x", error));
        QVERIFY(!uploads.find("one more"));
    }
};

QTEST_GUILESS_MAIN(CommandServerTest)
#include "tst_commandserver.moc"
