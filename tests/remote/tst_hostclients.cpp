// SPDX-License-Identifier: MIT
#include "tests/remote/hostfixture.h"

#include <QTcpServer>
#include <QTcpSocket>
#include <arpa/inet.h>
#include <cerrno>
#include <netinet/in.h>
#include <poll.h>
#include <sys/socket.h>
#include <thread>
#include <unistd.h>

using namespace tests;

/// Hosts that come, go, send rubbish and do not read; and the end of the program under their orders.
class HostClientsTest : public QObject, private HostCase {
    Q_OBJECT

private slots:
    void initTestCase();
    void init();
    void cleanup();

    void the_port_listens_from_the_start_to_the_end_of_the_window();
    void the_instance_is_made_once();
    void it_listens_in_every_mode();
    void a_port_that_is_taken_gives_a_silent_server();
    void a_new_connection_closes_the_older_one_without_a_word();
    void a_pending_reply_goes_to_the_newer_client();
    void half_a_frame_stays_for_the_next_client();
    void a_client_that_closes_is_forgotten();
    void what_a_client_sent_before_it_closed_is_done();
    void a_client_that_resets_in_mid_command_leaves_the_port_in_order();
    void a_client_that_sends_only_part_of_its_order_can_stay();
    void many_connections_leave_no_socket_behind();
    void bytes_behind_a_zero_are_lost_with_their_read();
    void a_mebibyte_without_a_semicolon_is_dropped_and_told();
    void a_client_that_does_not_read_is_disconnected();
    void a_client_that_does_not_read_cannot_hold_up_a_stop();
    void a_write_without_a_client_is_good();
    void a_write_from_another_thread_reaches_the_client();
    void a_write_from_another_thread_ends_with_the_window();
    void a_host_that_is_not_on_the_list_is_refused_and_takes_nothing_over();
    void a_refused_host_that_tries_on_does_not_fill_the_log();
    void the_number_of_refused_hosts_left_out_is_told_though_no_more_come();
    void it_listens_where_it_is_told();
    void a_bad_entry_is_logged_and_opens_nothing();
    void orders_beyond_the_tasks_that_may_wait_are_refused();
    void the_window_ends_during_a_run_that_a_host_ordered();

private:
    static int openSockets() {
        int count = 0;
        for (QFileInfo const& one : QDir(QStringLiteral("/proc/self/fd")).entryInfoList(QDir::Files | QDir::System))
            count += one.symLinkTarget().contains(QStringLiteral("socket:[")) ? 1 : 0;
        return count;
    }
    /// A thread of this process waits for something.
    static bool isAsleep(pid_t thread) {
        QFile file(QStringLiteral("/proc/self/task/%1/stat").arg(thread));
        return file.open(QIODevice::ReadOnly) && file.readAll().contains(") S ");
    }
    static bool connectsTo(char const* address, quint16 to);
    /// The system takes little for the host, so that what it does not read piles up in the program.
    void keepBuffersSmall() {
        const int small = 4096;
        QCOMPARE(::setsockopt(host().descriptor(), SOL_SOCKET, SO_RCVBUF, &small, sizeof small), 0);
    }
    static void sendAll(int descriptor, QByteArray const& bytes);
};

void HostClientsTest::initTestCase() {
    QVERIFY(hasRoot());
}

void HostClientsTest::init() {
    beginHost();
    clearLog();
}

void HostClientsTest::cleanup() {
    endHost();
}

bool HostClientsTest::connectsTo(char const* address, quint16 to) {
    QTcpSocket socket;
    socket.connectToHost(QString::fromLatin1(address), to);
    return socket.waitForConnected(1000);
}

/// Until all is sent or the other end does not want more. Any thread.
void HostClientsTest::sendAll(int descriptor, QByteArray const& bytes) {
    for (qint64 done = 0; done < bytes.size();) {
        const ssize_t sent =
            ::send(descriptor, bytes.constData() + done, std::size_t(bytes.size() - done), MSG_NOSIGNAL);
        if (sent < 0 && errno != EAGAIN)
            return;
        pollfd writable = {descriptor, POLLOUT, 0};
        if (sent < 0 && ::poll(&writable, 1, -1) < 0)
            return;
        done += qMax<qint64>(sent, 0);
    }
}

void HostClientsTest::the_port_listens_from_the_start_to_the_end_of_the_window() {
    QVERIFY(!HostResponseTcp::Instance());
    start();
    const quint16 used = port();
    QVERIFY(used != 0);
    QVERIFY(connectsTo("127.0.0.1", used));
    m_Window.reset();
    QVERIFY(!HostResponseTcp::Instance());
    QVERIFY(!connectsTo("127.0.0.1", used));
}

void HostClientsTest::the_instance_is_made_once() {
    start();
    HostResponseTcp const* first = HostResponseTcp::Instance();
    HostResponseTcp::InitHostResponseTcp();
    QCOMPARE(HostResponseTcp::Instance(), first);
}

void HostClientsTest::it_listens_in_every_mode() {
    for (int mode = 0; mode < 3; ++mode) {
        SystemParam::Instance()->SetWorkMode(mode);
        start();
        connectHost();
        QVERIFY(isQuiet());
    }
    SystemParam::Instance()->SetWorkMode(0);
    SystemParam::Instance()->SetSysMode(true);
    start();
    connectHost();
    QVERIFY(isQuiet());
}

void HostClientsTest::a_port_that_is_taken_gives_a_silent_server() {
    QTcpServer other;
    QVERIFY(other.listen(QHostAddress::AnyIPv4));
    SystemParam::Instance()->SetScribePort(other.serverPort());
    clearLog();
    start();
    QVERIFY(HostResponseTcp::Instance());
    QCOMPARE(port(), quint16(0));
    QVERIFY(!log().contains(QStringLiteral("host port")));
    for (int unusable : {-1, 65536}) {
        SystemParam::Instance()->SetScribePort(unusable);
        start();
        QCOMPARE(port(), quint16(0));
    }
}

void HostClientsTest::a_new_connection_closes_the_older_one_without_a_word() {
    startWithHost();
    const std::unique_ptr<SocketClient> older = std::move(m_Host);
    connectHost();
    QVERIFY(older->waitForEnd());
    QCOMPARE(older->readAvailable(), QByteArray());
    QVERIFY(isQuiet());
}

void HostClientsTest::a_pending_reply_goes_to_the_newer_client() {
    startWithHost();
    QVERIFY(startRun());
    const std::unique_ptr<SocketClient> older = std::move(m_Host);
    connectHost();
    machine().setSpeed(0.0);
    QCOMPARE(answer(), runReply(kRunDoneGbk, "0"));
    QVERIFY(older->waitForEnd());
    QCOMPARE(older->readAvailable(), QByteArray());
}

void HostClientsTest::half_a_frame_stays_for_the_next_client() {
    startWithHost();
    QVERIFY(host().write("_VZMarkSt"));
    QVERIFY(waitFor([this] { return log().contains(QStringLiteral("_VZMarkSt")); }));
    m_Host->close();
    connectHost();
    QCOMPARE(ask("op();"), stopReply());
}

void HostClientsTest::a_client_that_closes_is_forgotten() {
    startWithHost();
    QVERIFY(isQuiet());
    m_Host->close();
    const int before = openSockets();
    QVERIFY(waitFor([&] { return openSockets() < before; }));
    // Nobody is there to be sent to, which is no failure.
    QVERIFY(HostResponseTcp::Instance()->WriteData(QStringLiteral("x")));
    connectHost();
    QVERIFY(isQuiet());
}

void HostClientsTest::what_a_client_sent_before_it_closed_is_done() {
    startWithHost();
    QVERIFY(startRun());
    QVERIFY(host().write("_VZMarkStop();"));
    host().finishWriting();
    QVERIFY(waitFor([] { return !isRunning(); }));
    QVERIFY(host().waitForEnd());
}

void HostClientsTest::a_client_that_resets_in_mid_command_leaves_the_port_in_order() {
    startWithHost();
    for (int i = 0; i < 20; ++i) {
        QVERIFY(host().write("_VZGetLayerParas(0,0);_VZGetLay"));
        host().abort();
        connectHost();
    }
    // What was left of the last command stands before this one, which still holds its prefix.
    QCOMPARE(ask("_VZMarkStop();"), stopReply());
    QVERIFY(isQuiet());
}

void HostClientsTest::a_client_that_sends_only_part_of_its_order_can_stay() {
    startWithHost();
    for (char byte : QByteArray("_VZMarkStop()")) {
        QVERIFY(host().write(QByteArray(1, byte)));
        QCoreApplication::processEvents();
    }
    QCOMPARE(host().readAvailable(), QByteArray());
    QCOMPARE(ask(";"), stopReply());
}

void HostClientsTest::many_connections_leave_no_socket_behind() {
    startWithHost();
    QVERIFY(isQuiet());
    const int before = openSockets();
    QVERIFY(before >= 3);
    std::vector<std::unique_ptr<SocketClient>> older;
    for (int i = 0; i < 200; ++i) {
        older.push_back(std::move(m_Host));
        connectHost();
    }
    QVERIFY(isQuiet());
    for (std::unique_ptr<SocketClient> const& client : older)
        QVERIFY(client->waitForEnd());
    older.clear();
    QVERIFY(waitFor([&] { return openSockets() <= before; }));
}

void HostClientsTest::bytes_behind_a_zero_are_lost_with_their_read() {
    startWithHost();
    QVERIFY(host().write(QByteArray("_VZMarkStop()\0;_VZMarkStop();", 29)));
    QVERIFY(waitFor([this] { return log().contains(QStringLiteral("Tcp接收消息---_VZMarkStop()\n")); }));
    QCOMPARE(ask(";"), stopReply());
    QVERIFY(isQuiet());
}

void HostClientsTest::a_mebibyte_without_a_semicolon_is_dropped_and_told() {
    startWithHost();
    QVERIFY(host().write(QByteArray((1 << 20) + 1, 'x')));
    const QString told = QStringLiteral("\terror\thost port: 1048577 characters without a semicolon dropped, last from "
                                        "127.0.0.1:");
    QVERIFY(runUntil([&] { return log().contains(told); }));
    QVERIFY(host().write(";"));
    QVERIFY(isQuiet());
    QCOMPARE(ask("_VZMarkStop();"), stopReply());
}

void HostClientsTest::a_client_that_does_not_read_is_disconnected() {
    startWithHost();
    keepBuffersSmall();
    SystemParam::Instance()->SetSaveDebug(false);
    const std::unique_ptr<SocketClient> mute = std::move(m_Host);
    // More answers than the program and the system keep together.
    std::thread asking([&] { sendAll(mute->descriptor(), QByteArray("_VZGetLayerParas(0,0);").repeated(300000)); });
    const bool told =
        runUntil([this] { return log().contains(QStringLiteral("does not read its answers, disconnected")); });
    ::shutdown(mute->descriptor(), SHUT_RDWR);
    asking.join();
    SystemParam::Instance()->SetSaveDebug(true);
    QVERIFY(told);
    // Nothing of it is in the way of the next but the last question, if it was cut in two.
    m_Host = std::make_unique<SocketClient>();
    QVERIFY(m_Host->connectTcp(port()));
    const QByteArray first = ask(";_VZMarkStop();");
    QCOMPARE(first.startsWith("_VZGetLayerParas(") ? answer() : first, stopReply());
}

void HostClientsTest::a_client_that_does_not_read_cannot_hold_up_a_stop() {
    startWithHost();
    QVERIFY(startRun());
    keepBuffersSmall();
    QVERIFY(host().write(QByteArray("_VZGetLayerParas(0,0);").repeated(10000) + "_VZMarkStop();"));
    QVERIFY(runUntil([] { return !isRunning(); }));
}

void HostClientsTest::a_write_without_a_client_is_good() {
    start();
    QVERIFY(HostResponseTcp::Instance()->WriteData(QStringLiteral("x")));
    QCOMPARE(HostResponseTcp::Instance()->ReadAll(), QByteArray());
}

void HostClientsTest::a_write_from_another_thread_reaches_the_client() {
    startWithHost();
    std::atomic<int> written{-1};
    std::thread other(
        [&] { written = HostResponseTcp::Instance()->WriteData(QStringLiteral("文档执行成功;")) ? 1 : 0; });
    const QByteArray got = answer();
    const bool told = waitFor([&] { return written >= 0; });
    other.join();
    QVERIFY(told);
    QCOMPARE(int(written), 1);
    QCOMPARE(got, QByteArray(kRunDoneGbk) + ';');
}

void HostClientsTest::a_write_from_another_thread_ends_with_the_window() {
    startWithHost();
    HostResponseTcp* server = HostResponseTcp::Instance();
    std::atomic<pid_t> writer{0};
    std::atomic<int> written{-1};
    std::thread other([&] {
        writer = ::gettid();
        written = server->WriteData(QStringLiteral("x")) ? 1 : 0;
    });
    // The main thread does not come to it any more: it looks at no events before the end.
    while (writer == 0 || !isAsleep(writer))
        std::this_thread::yield();
    server->disconnect();
    m_Window.reset();
    other.join();
    QCOMPARE(int(written), 0);
}

void HostClientsTest::a_host_that_is_not_on_the_list_is_refused_and_takes_nothing_over() {
    QVERIFY(m_Root.write("/ini/HostTcp.ini", "[Host]\nAllow=127.0.0.1\n"));
    startWithHost();
    QTcpSocket stranger;
    QVERIFY(stranger.bind(QHostAddress(QStringLiteral("127.0.0.2"))));
    stranger.connectToHost(QStringLiteral("127.0.0.1"), port());
    QVERIFY(stranger.waitForConnected());
    stranger.write("_VZMarkStop();");
    QVERIFY(waitFor([&] { return stranger.state() == QAbstractSocket::UnconnectedState; }));
    QVERIFY(log().contains(QStringLiteral("\terror\thost port: refused by HostTcp.ini: 127.0.0.2:")));
    QVERIFY(!log().contains(QStringLiteral("新客户端---127.0.0.2")));
    QVERIFY(isQuiet());
    QVERIFY(!log().contains(QStringLiteral("_VZMarkStop();")));
}

void HostClientsTest::a_refused_host_that_tries_on_does_not_fill_the_log() {
    QVERIFY(m_Root.write("/ini/HostTcp.ini", "[Host]\nAllow=127.0.0.1\n"));
    startWithHost();
    for (int i = 0; i < 100; ++i) {
        QTcpSocket stranger;
        QVERIFY(stranger.bind(QHostAddress(QStringLiteral("127.0.0.2"))));
        stranger.connectToHost(QStringLiteral("127.0.0.1"), port());
        QVERIFY(stranger.waitForConnected());
        QVERIFY(waitFor([&] { return stranger.state() == QAbstractSocket::UnconnectedState; }));
    }
    QCOMPARE(log().count(QStringLiteral("host port: refused by HostTcp.ini: ")), 20);
}

void HostClientsTest::the_number_of_refused_hosts_left_out_is_told_though_no_more_come() {
    QVERIFY(m_Root.write("/ini/HostTcp.ini", "[Host]\nAllow=127.0.0.1\n"));
    const auto usual = std::exchange(HostResponseTcp::m_RefusedTime, std::chrono::milliseconds(tests::scaled(5000)));
    startWithHost();
    HostResponseTcp::m_RefusedTime = usual;
    QCOMPARE(usual, std::chrono::milliseconds(60'000));
    for (int i = 0; i < 23; ++i) {
        QTcpSocket stranger;
        QVERIFY(stranger.bind(QHostAddress(QStringLiteral("127.0.0.2"))));
        stranger.connectToHost(QStringLiteral("127.0.0.1"), port());
        QVERIFY(stranger.waitForConnected());
        QVERIFY(waitFor([&] { return stranger.state() == QAbstractSocket::UnconnectedState; }));
    }
    QVERIFY(waitFor([&] { return log().contains(QStringLiteral("\terror\thost port: 3 more hosts refused")); }));
    QCOMPARE(log().count(QStringLiteral("host port: refused by HostTcp.ini: ")), 20);
}

void HostClientsTest::it_listens_where_it_is_told() {
    QVERIFY(m_Root.write("/ini/HostTcp.ini", "[Host]\nBind=127.0.0.3\n"));
    start();
    QVERIFY(connectsTo("127.0.0.3", port()));
    QVERIFY(!connectsTo("127.0.0.1", port()));
}

void HostClientsTest::a_bad_entry_is_logged_and_opens_nothing() {
    QVERIFY(m_Root.write("/ini/HostTcp.ini", "[Host]\nBind=everywhere\nAllow=plc\n"));
    start();
    QVERIFY(log().contains(QStringLiteral("\terror\tHostTcp.ini: Bind: \"everywhere\" is no IPv4 address")));
    QVERIFY(log().contains(
        QStringLiteral("\terror\tHostTcp.ini: Allow: \"plc\" is no IPv4 address or subnet and admits nobody")));
    QVERIFY(!connectsTo("127.0.0.3", port()));
    QTcpSocket host;
    host.connectToHost(QStringLiteral("127.0.0.1"), port());
    QVERIFY(host.waitForConnected());
    QVERIFY(waitFor([&] { return host.state() == QAbstractSocket::UnconnectedState; }));
}

void HostClientsTest::orders_beyond_the_tasks_that_may_wait_are_refused() {
    startWithHost();
    QVERIFY(startRun());
    QByteArray orders;
    constexpr int kOrders = 2000;
    for (int i = 0; i < kOrders; ++i)
        orders += "_VZSetOffset(0);";
    QVERIFY(host().write(orders));
    for (int i = 0; i < kOrders; ++i)
        QCOMPARE(answer(), runReply(kBusyGbk));
    QVERIFY(isRunning());
}

void HostClientsTest::the_window_ends_during_a_run_that_a_host_ordered() {
    startWithHost();
    QVERIFY(startRun());
    QVERIFY(host().write("_VZSetOffset(0);_VZSetOffset(0);_VZGetLayerP"));
    m_Window.reset();
    QVERIFY(!isRunning());
    QVERIFY(!log().contains(QStringLiteral("did not end after a stop")));
    QVERIFY(host().waitForEnd());
}

QTEST_MAIN(HostClientsTest)
#include "tst_hostclients.moc"
