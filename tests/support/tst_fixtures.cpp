// SPDX-License-Identifier: MIT
// The fixtures that need no widgets: root, waiting, sockets, pty, journal.
#include "support/approot.h"
#include "tests/support/journalmatcher.h"
#include "tests/support/ptypair.h"
#include "tests/support/sleephook.h"
#include "tests/support/socketclient.h"
#include "tests/support/temporaryroot.h"
#include "tests/support/timeoutscale.h"
#include "tests/support/waitfor.h"

#include <QDir>
#include <QLocalServer>
#include <QLocalSocket>
#include <QPointer>
#include <QTcpServer>
#include <QTcpSocket>
#include <QTimer>
#include <QtTest>

#include <atomic>
#include <fcntl.h>
#include <thread>
#include <unistd.h>

using namespace tests;

namespace {

struct SimulatorRecord {
    long timeMs;
    std::string name;
    std::vector<std::string> arguments;
};

} // namespace

class TestFixtures : public QObject {
    Q_OBJECT

private slots:
    void the_scale_comes_from_the_environment_data();
    void the_scale_comes_from_the_environment();
    void a_root_is_fresh_and_goes_away();
    void a_root_puts_back_what_was_before();
    void a_root_copies_samples_and_keeps_files();
    void waiting_handles_events_and_ends_early();
    void waiting_deletes_what_is_deleted_later();
    void waiting_gives_up();
    void waiting_works_in_another_thread();
    void a_hook_takes_the_place_of_its_threads_sleeps();
    void a_client_talks_to_a_server_in_the_same_thread();
    void a_client_talks_to_a_local_server();
    void a_client_tells_why_it_cannot_connect();
    void a_client_waits_for_a_server_that_comes_late();
    void a_client_sees_the_end_and_time_out();
    void a_reset_is_seen_by_the_server();
    void a_pty_carries_all_bytes_both_ways();
    void a_pty_shows_when_its_user_closes();
    void a_pty_hangs_up();
    void a_journal_as_expected_matches();
    void argument_patterns_match_data();
    void argument_patterns_match();
    void a_difference_names_what_is_missing_and_what_is_too_much();
    void a_wrong_order_does_not_match();
    void a_journal_is_narrowed_to_names();
};

void TestFixtures::the_scale_comes_from_the_environment_data() {
    QTest::addColumn<QByteArray>("value");
    QTest::addColumn<int>("wait");
    QTest::newRow("double") << QByteArray("2") << 200;
    QTest::newRow("half") << QByteArray("0.5") << 50;
    QTest::newRow("at least a millisecond") << QByteArray("0.001") << 1;
}

void TestFixtures::the_scale_comes_from_the_environment() {
    QFETCH(QByteArray, value);
    const QByteArray before = qgetenv("TESSERA_TIMEOUT_SCALE");
    qputenv("TESSERA_TIMEOUT_SCALE", value);
    const int wait = scaled(100);
    double withoutNumber = 0.0;
    for (const char* wrong : {"", "fast", "0", "-3", "1e9"}) {
        qputenv("TESSERA_TIMEOUT_SCALE", wrong);
        withoutNumber = qMax(withoutNumber, timeoutScale());
    }
    qunsetenv("TESSERA_TIMEOUT_SCALE");
    const double builtIn = timeoutScale();
    if (!before.isNull())
        qputenv("TESSERA_TIMEOUT_SCALE", before);
    QTEST(wait, "wait");
    QVERIFY(builtIn >= 1.0);
    QCOMPARE(withoutNumber, builtIn);
}

void TestFixtures::a_root_is_fresh_and_goes_away() {
    QString root;
    {
        const TemporaryRoot temporary;
        QVERIFY(temporary.isValid());
        root = temporary.path();
        QCOMPARE(tessera::applicationRoot(), root);
        QCOMPARE(tessera::rootPath("/ini/Marking.ini"), temporary.path("/ini/Marking.ini"));
        QCOMPARE(QDir::currentPath(), root);
        QCOMPARE(qEnvironmentVariable("TESSERA_ROOT"), root);
        QVERIFY(QDir(root).isEmpty());
        QVERIFY(QDir(root).mkpath("a/b"));
    }
    QVERIFY(!QFileInfo::exists(root));
}

void TestFixtures::a_root_puts_back_what_was_before() {
    const QString directory = QDir::currentPath();
    const QString application = tessera::applicationRoot();
    {
        const TemporaryRoot outer;
        {
            const TemporaryRoot inner;
            QVERIFY(inner.path() != outer.path());
            QCOMPARE(tessera::applicationRoot(), inner.path());
        }
        QCOMPARE(tessera::applicationRoot(), outer.path());
        QCOMPARE(QDir::currentPath(), outer.path());
    }
    QCOMPARE(tessera::applicationRoot(), application);
    QCOMPARE(QDir::currentPath(), directory);
}

void TestFixtures::a_root_copies_samples_and_keeps_files() {
    TemporaryRoot root(QVector<SampleFile>{{"CMakeLists.txt", "/MarkFile/深/sample.txt"}});
    QVERIFY(root.isValid());
    QFile source(sourcePath("CMakeLists.txt"));
    QVERIFY(source.open(QIODevice::ReadOnly));
    QCOMPARE(root.read("MarkFile/深/sample.txt"), source.readAll());
    QVERIFY(root.write("/ini/empty.ini", ""));
    QVERIFY(!root.read("/ini/empty.ini").isNull());
    QVERIFY(root.read("/ini/empty.ini").isEmpty());
    QVERIFY(root.read("/ini/none.ini").isNull());
    QVERIFY(root.exists("/ini") && !root.exists("/ini/none.ini"));
}

void TestFixtures::waiting_handles_events_and_ends_early() {
    bool done = false;
    QTimer::singleShot(20, this, [&done] { done = true; });
    QElapsedTimer timer;
    timer.start();
    QVERIFY(waitFor([&done] { return done; }, 60000));
    QVERIFY(timer.elapsed() < 30000);
}

void TestFixtures::waiting_deletes_what_is_deleted_later() {
    QPointer<QObject> object(new QObject);
    object->deleteLater();
    QVERIFY(waitFor([&object] { return object.isNull(); }));
}

void TestFixtures::waiting_gives_up() {
    QElapsedTimer timer;
    timer.start();
    QVERIFY(!waitFor([] { return false; }, 20));
    QVERIFY(timer.elapsed() >= scaled(20));
}

void TestFixtures::waiting_works_in_another_thread() {
    std::atomic<bool> flag{false};
    std::atomic<int> seen{0};
    std::thread waiter([&] {
        seen = waitFor([&] { return flag.load(); }) ? 1 : 0;
        seen += waitFor([] { return false; }, 5) ? 10 : 0;
    });
    flag = true;
    waiter.join();
    QCOMPARE(seen.load(), 1);
}

void TestFixtures::a_hook_takes_the_place_of_its_threads_sleeps() {
    std::vector<std::chrono::nanoseconds> asked;
    QElapsedTimer time;
    {
        const SleepHook hook([&asked](std::chrono::nanoseconds sleep) { asked.push_back(sleep); });
        time.start();
        QThread::msleep(60000);
        QThread::usleep(7);
        std::this_thread::sleep_for(std::chrono::hours(1));
        QVERIFY(time.elapsed() < 30000);
        time.restart();
        std::thread([] { std::this_thread::sleep_for(std::chrono::milliseconds(20)); }).join();
        QVERIFY(time.elapsed() >= 20);
    }
    using namespace std::chrono_literals;
    QVERIFY(asked == (std::vector<std::chrono::nanoseconds>{60s, 7us, 1h}));
    time.restart();
    QThread::msleep(20);
    QVERIFY(time.elapsed() >= 20);
}

void TestFixtures::a_client_talks_to_a_server_in_the_same_thread() {
    QTcpServer server;
    QVERIFY(server.listen(QHostAddress::LocalHost));
    connect(&server, &QTcpServer::newConnection, &server, [&server] {
        QTcpSocket* const socket = server.nextPendingConnection();
        connect(socket, &QTcpSocket::readyRead, socket, [socket] { socket->write(socket->readAll().toUpper()); });
    });
    SocketClient client;
    QVERIFY2(client.connectTcp(server.serverPort()), qPrintable(client.connectError()));
    QVERIFY2(client.write("one;two;line\r\nlast\n\nabcdef"), qPrintable(client.errorString()));
    QCOMPARE(client.readUntil(";"), QByteArray("ONE;"));
    QCOMPARE(client.readUntil(";"), QByteArray("TWO;"));
    QCOMPARE(client.readLine(), QByteArray("LINE"));
    QCOMPARE(client.readLine(), QByteArray("LAST"));
    const QByteArray empty = client.readLine();
    QVERIFY(!empty.isNull() && empty.isEmpty());
    QCOMPARE(client.read(4), QByteArray("ABCD"));
    QCOMPARE(client.read(2), QByteArray("EF"));
    QCOMPARE(client.readAvailable(), QByteArray());

    const QByteArray large(2000000, 'x');
    std::thread writer([&client, &large] { client.write(large); });
    writer.join();
    QCOMPARE(client.read(large.size()), large.toUpper());
}

void TestFixtures::a_client_talks_to_a_local_server() {
    const TemporaryRoot root;
    QLocalServer server;
    QVERIFY(server.listen(root.path("/socket")));
    SocketClient client;
    QVERIFY2(client.connectLocal(root.path("/socket")), qPrintable(client.connectError()));
    QVERIFY(waitFor([&server] { return server.hasPendingConnections(); }));
    QLocalSocket* const socket = server.nextPendingConnection();
    socket->write("{\"id\":1}\n");
    QCOMPARE(client.readLine(), QByteArray("{\"id\":1}"));
    client.write("bye");
    client.finishWriting();
    QVERIFY(waitFor([socket] { return socket->state() == QLocalSocket::UnconnectedState; }));
    QCOMPARE(socket->readAll(), QByteArray("bye"));
}

void TestFixtures::a_client_tells_why_it_cannot_connect() {
    SocketClient client;
    QVERIFY(!client.connectLocal("/nowhere/socket", 20));
    QCOMPARE(client.connectError(), QString("No such file or directory"));
    QVERIFY(!client.isOpen());
    QVERIFY(!client.connectLocal("/" + QString(200, 'x'), 20));
    QCOMPARE(client.connectError(), QString("the path of the socket is too long"));
    QVERIFY(!client.write("x", 20));
    QVERIFY(client.errorString().startsWith("write: "));
    quint16 port = 0;
    {
        QTcpServer server;
        QVERIFY(server.listen(QHostAddress::LocalHost));
        port = server.serverPort();
    }
    QVERIFY(!client.connectTcp(port, 20));
    QCOMPARE(client.connectError(), QString("Connection refused"));
}

void TestFixtures::a_client_waits_for_a_server_that_comes_late() {
    const TemporaryRoot root;
    QLocalServer server;
    QTimer::singleShot(50, &server, [&] { server.listen(root.path("/late")); });
    SocketClient client;
    QVERIFY2(client.connectLocal(root.path("/late")), qPrintable(client.connectError()));
}

void TestFixtures::a_client_sees_the_end_and_time_out() {
    QTcpServer server;
    QVERIFY(server.listen(QHostAddress::LocalHost));
    SocketClient client;
    QVERIFY(client.connectTcp(server.serverPort()));
    QVERIFY(waitFor([&server] { return server.hasPendingConnections(); }));
    QTcpSocket* const socket = server.nextPendingConnection();
    socket->write("half");
    QVERIFY(client.readUntil(";", 50).isNull());
    QCOMPARE(client.errorString(), QString("\";\" did not come, time is up; so far: \"half\""));
    QVERIFY(!client.waitForEnd(20));
    socket->disconnectFromHost();
    QVERIFY(client.waitForEnd());
    QVERIFY(client.read(5, 20).isNull());
    QVERIFY2(client.errorString().contains("the other end is closed"), qPrintable(client.errorString()));
    QCOMPARE(client.read(4), QByteArray("half"));
}

void TestFixtures::a_reset_is_seen_by_the_server() {
    QTcpServer server;
    QVERIFY(server.listen(QHostAddress::LocalHost));
    SocketClient client;
    QVERIFY(client.connectTcp(server.serverPort()));
    QVERIFY(waitFor([&server] { return server.hasPendingConnections(); }));
    QTcpSocket* const socket = server.nextPendingConnection();
    client.abort();
    QVERIFY(waitFor([socket] { return socket->state() == QAbstractSocket::UnconnectedState; }));
    QVERIFY(socket->errorString().contains("reset") || socket->error() == QAbstractSocket::RemoteHostClosedError);
}

void TestFixtures::a_pty_carries_all_bytes_both_ways() {
    QByteArray all;
    for (int i = 0; i < 256; ++i)
        all.append(char(i));
    PtyPair pty;
    QVERIFY(pty.isOpen());
    ByteStream device(::open(pty.slavePath().toLocal8Bit().constData(), O_RDWR | O_NOCTTY | O_CLOEXEC));
    QVERIFY(device.isOpen());
    QVERIFY(pty.write(all));
    QCOMPARE(device.read(256), all);
    QVERIFY(device.write(all));
    QCOMPARE(pty.read(256), all);
    QCOMPARE(pty.readAvailable(), QByteArray()); // no echo
}

void TestFixtures::a_pty_shows_when_its_user_closes() {
    PtyPair pty;
    ByteStream device(::open(pty.slavePath().toLocal8Bit().constData(), O_RDWR | O_NOCTTY | O_CLOEXEC));
    QVERIFY(device.write("last"));
    device.close();
    QVERIFY(!pty.waitForEnd(20)); // held open, as a line is
    pty.releaseSlave();
    QVERIFY(pty.waitForEnd());
    QCOMPARE(pty.read(4), QByteArray("last"));
}

void TestFixtures::a_pty_hangs_up() {
    PtyPair pty;
    ByteStream device(::open(pty.slavePath().toLocal8Bit().constData(), O_RDWR | O_NOCTTY | O_CLOEXEC));
    QVERIFY(device.isOpen());
    pty.hangUp();
    QVERIFY(device.waitForEnd());
    QVERIFY(!device.write("x", 20));
}

void TestFixtures::a_journal_as_expected_matches() {
    const std::vector<SimulatorRecord> records = {
        {3, "OpenCard", {}}, {7, "SetOutputBit", {"3", "1"}}, {9, "DownLayerPara", {"0", "1500.5", "红光"}}};
    const QVector<JournalEntry> journal = toJournal(records);
    COMPARE_JOURNAL(journal, {call("OpenCard"), call("SetOutputBit", 3, 1),
                              call("DownLayerPara", ArgumentPattern::any(), ArgumentPattern::near(1500, 1), "红光")});
    QVERIFY(matchJournal({}, {}).ok);
    QCOMPARE(matchJournal({}, {}).difference, QString());
}

void TestFixtures::argument_patterns_match_data() {
    QTest::addColumn<QString>("kind");
    QTest::addColumn<QStringList>("arguments");
    QTest::addColumn<bool>("matches");
    QTest::newRow("text") << "text" << QStringList{"abc"} << true;
    QTest::newRow("other text") << "text" << QStringList{"abcd"} << false;
    QTest::newRow("no argument for a text") << "text" << QStringList{} << false;
    QTest::newRow("one argument too many") << "text" << QStringList{"abc", "d"} << false;
    QTest::newRow("number in another spelling") << "number" << QStringList{"1.50"} << true;
    QTest::newRow("other number") << "number" << QStringList{"1.5000001"} << false;
    QTest::newRow("text for a number") << "number" << QStringList{"x"} << false;
    QTest::newRow("near enough") << "near" << QStringList{"1.58"} << true;
    QTest::newRow("too far") << "near" << QStringList{"1.61"} << false;
    QTest::newRow("whole expression") << "expression" << QStringList{"a12"} << true;
    QTest::newRow("part of an expression") << "expression" << QStringList{"a12b"} << false;
    QTest::newRow("any") << "any" << QStringList{"x"} << true;
    QTest::newRow("any is not none") << "any" << QStringList{} << false;
    QTest::newRow("rest") << "rest" << QStringList{"x", "y"} << true;
    QTest::newRow("rest may be none") << "rest" << QStringList{} << true;
}

void TestFixtures::argument_patterns_match() {
    QFETCH(QString, kind);
    QFETCH(QStringList, arguments);
    const QHash<QString, ExpectedCall> calls = {
        {"text", call("f", "abc")},
        {"number", call("f", 1.5)},
        {"near", call("f", ArgumentPattern::near(1.5, 0.1))},
        {"expression", call("f", ArgumentPattern::matching("a[0-9]+"))},
        {"any", call("f", ArgumentPattern::any())},
        {"rest", call("f", ArgumentPattern::rest())},
    };
    JournalEntry entry;
    entry.name = "f";
    entry.arguments = arguments;
    QTEST(matchJournal({entry}, {calls.value(kind)}).ok, "matches");
    entry.name = "g";
    QVERIFY(!matchJournal({entry}, {calls.value(kind)}).ok);
}

void TestFixtures::a_difference_names_what_is_missing_and_what_is_too_much() {
    const QVector<JournalEntry> journal = {{1, "a", {}}, {2.5, "x", {"9", "y"}}, {4, "c", {"1"}}};
    const JournalMatch match = matchJournal(journal, {call("a"), call("b", 2, ArgumentPattern::any()), call("c", 1)});
    QVERIFY(!match.ok);
    QCOMPARE(match.difference, QString("the journal is not as expected (- missing, + not expected):\n"
                                       "  a()   at 1.0 ms\n"
                                       "- b(2, *)\n"
                                       "+ x(9, y)   at 2.5 ms\n"
                                       "  c(1)   at 4.0 ms"));
}

void TestFixtures::a_wrong_order_does_not_match() {
    const QVector<JournalEntry> journal = {{1, "b", {}}, {2, "a", {}}};
    QVERIFY(!matchJournal(journal, {call("a"), call("b")}).ok);
    QVERIFY(!matchJournal(journal, {call("b")}).ok);
    QVERIFY(!matchJournal({}, {call("b")}).ok);
    QVERIFY(matchJournal(journal, {call("b"), call("a")}).ok);
}

void TestFixtures::a_journal_is_narrowed_to_names() {
    const QVector<JournalEntry> journal = {{1, "a", {}}, {2, "b", {}}, {3, "a", {"1"}}};
    COMPARE_JOURNAL(only(journal, {"a"}), {call("a"), call("a", 1)});
    COMPARE_JOURNAL(without(journal, {"a"}), {call("b")});
}

QTEST_GUILESS_MAIN(TestFixtures)
#include "tst_fixtures.moc"
