// SPDX-License-Identifier: MIT
// Orders and answers of the station, with several threads at work.
#include "servers/linkfixture.h"

#include <atomic>
#include <fstream>
#include <set>
#include <string>
#include <thread>

using StationLinkTest = LinkFixture;

namespace {

/// Descriptors and threads of this process.
int countOf(char const* folder) {
    int count = 0;
    for (int i = 0; i < 1024; ++i)
        count += ::access((std::string(folder) + std::to_string(i)).c_str(), F_OK) == 0 ? 1 : 0;
    return count;
}

/// The kernel lists its addresses of this kind, ::1 as 31 zeros and a one.
bool hasLocalIpv6() {
    std::ifstream addresses("/proc/net/if_inet6");
    std::string line;
    while (std::getline(addresses, line)) {
        if (line.rfind(std::string(31, '0') + '1', 0) == 0)
            return true;
    }
    return false;
}

} // namespace

TEST_F(StationLinkTest, orders_keep_their_order_through_a_full_queue) {
    start();
    Client station;
    ASSERT_TRUE(station.connectTo(link->port()) && station.prove(kKey));
    constexpr int kCommands = 20'000;
    std::thread sender([&] {
        QByteArray all;
        for (int i = 0; i < kCommands; ++i)
            all += Client::commandLine("SetCurDoc", {"plate"}, i);
        EXPECT_TRUE(station.send(all, 60'000));
    });
    // The queue is full before the first is taken.
    EXPECT_TRUE(waitFor([&] { return !nothingOrdered(); }));
    int inOrder = 0;
    for (int i = 0; i < kCommands; ++i) {
        auto const taken = order();
        if (!taken || taken->tag != i)
            break;
        ++inOrder;
    }
    sender.join();
    EXPECT_EQ(inOrder, kCommands);
    EXPECT_TRUE(nothingOrdered());
    EXPECT_TRUE(pingPasses(station));
}

TEST_F(StationLinkTest, a_station_is_not_read_while_its_orders_wait) {
    sim::LinkLimits limits;
    limits.orders = 4;
    start(limits);
    Client station;
    ASSERT_TRUE(station.connectTo(link->port()) && station.prove(kKey));
    // Much more than the buffers of the sockets: it is not taken while nobody takes the orders.
    QByteArray const line = Client::commandLine("SyncFile", {QString(100'000, 'x')});
    EXPECT_FALSE(station.send(line.repeated(400), 1000));
    for (int i = 0; i < 4; ++i)
        ASSERT_TRUE(order());
    EXPECT_TRUE(order()) << "reading goes on";
}

TEST_F(StationLinkTest, large_orders_are_bounded_by_their_bytes) {
    sim::LinkLimits limits;
    limits.orderBytes = 1;
    start(limits);
    Client station;
    ASSERT_TRUE(station.connectTo(link->port()) && station.prove(kKey));
    ASSERT_TRUE(station.send(Client::commandLine("A", {}, 1) + Client::commandLine("B", {}, 2)));
    auto const first = order();
    ASSERT_TRUE(first);
    auto const second = order();
    ASSERT_TRUE(second);
    EXPECT_EQ(second->tag, 2);
}

TEST_F(StationLinkTest, answers_of_several_threads_are_whole_lines) {
    start();
    Client station;
    ASSERT_TRUE(station.connectTo(link->port()) && station.prove(kKey));
    constexpr int kThreads = 4;
    constexpr int kAnswers = 500;
    std::vector<std::thread> threads;
    for (int t = 0; t < kThreads; ++t) {
        threads.emplace_back([this, t] {
            for (int i = 0; i < kAnswers; ++i)
                EXPECT_TRUE(link->send(QByteArray::number(t * kAnswers + i) + QByteArray(100, '.') + '\n'));
        });
    }
    std::set<int> seen;
    for (int i = 0; i < kThreads * kAnswers; ++i) {
        QByteArray const line = station.line();
        ASSERT_TRUE(line.endsWith(QByteArray(100, '.'))) << line.constData();
        seen.insert(line.left(line.indexOf('.')).toInt());
    }
    for (std::thread& thread : threads)
        thread.join();
    EXPECT_EQ(seen.size(), std::size_t(kThreads * kAnswers));
}

TEST_F(StationLinkTest, a_station_that_never_reads_blocks_nobody_and_is_dropped) {
    start();
    Client station;
    ASSERT_TRUE(station.connectTo(link->port()) && station.prove(kKey));
    QByteArray const answer = QByteArray(10'000, 'a') + '\n';
    int sent = 0;
    // The kernel's buffers and 4 MiB of ours: far below this many.
    while (sent < 100'000 && link->send(answer))
        ++sent;
    EXPECT_LT(sent, 100'000);
    EXPECT_TRUE(waitLogged("does not take its answers: closed"));
    EXPECT_FALSE(link->send("late\n"));
    Client next;
    ASSERT_TRUE(next.connectTo(link->port()));
    EXPECT_TRUE(next.prove(kKey));
}

TEST_F(StationLinkTest, pings_without_end_that_nobody_reads_the_answers_of_end_the_connection) {
    sim::LinkLimits limits;
    limits.answerBytes = 65536; // the answers are a few bytes each
    start(limits);
    Client station;
    ASSERT_TRUE(station.connectTo(link->port()) && station.prove(kKey));
    QByteArray const pings = QByteArray("{\"type\":\"ping\"}\n").repeated(10'000);
    // a busy link takes its time to read; a send ends at once when it has closed
    EXPECT_TRUE(waitFor([&] { return !station.send(pings, 60'000) || logged("does not take its answers") > 0; }));
    EXPECT_TRUE(waitLogged("does not take its answers: closed"));
}

TEST_F(StationLinkTest, the_newest_station_takes_over) {
    sim::LinkLimits limits;
    limits.closingTime = std::chrono::milliseconds(200);
    start(limits);
    Client first;
    ASSERT_TRUE(first.connectTo(link->port()) && first.prove(kKey, "one"));
    Client second;
    ASSERT_TRUE(second.connectTo(link->port()) && second.prove(kKey, "two"));
    EXPECT_EQ(reason(first), "another station has taken over");
    EXPECT_TRUE(first.ended());
    auto const taken = order();
    ASSERT_TRUE(taken);
    EXPECT_EQ(taken->kind, sim::OrderKind::Ended);
    ASSERT_TRUE(link->send("for the newest\n"));
    EXPECT_EQ(second.line(), "for the newest");
    EXPECT_TRUE(waitFor([&] { return !first.send(Client::commandLine("RunManualStart"), 100); }));
    EXPECT_TRUE(pingPasses(second));
    EXPECT_TRUE(nothingOrdered()) << "the older one commands no more";
}

TEST_F(StationLinkTest, who_has_not_the_key_displaces_nobody) {
    start();
    Client station;
    ASSERT_TRUE(station.connectTo(link->port()) && station.prove(kKey));
    Client stranger;
    ASSERT_TRUE(stranger.connectTo(link->port()) && stranger.takeChallenge());
    ASSERT_TRUE(stranger.send(Client::proofLine("guess", stranger.serverNonce(), "line-3")));
    EXPECT_EQ(reason(stranger), "wrong key");
    EXPECT_TRUE(pingPasses(station));
}

TEST_F(StationLinkTest, without_a_station_nothing_is_sent_or_kept) {
    start();
    EXPECT_FALSE(link->send("early\n"));
    Client waiting;
    ASSERT_TRUE(waiting.connectTo(link->port()) && waiting.takeChallenge());
    EXPECT_FALSE(link->send("early\n"));
    Client station;
    ASSERT_TRUE(station.connectTo(link->port()) && station.prove(kKey));
    ASSERT_TRUE(link->send("now\n"));
    EXPECT_EQ(station.line(), "now");
}

TEST_F(StationLinkTest, stop_tells_everybody_and_leaves_nothing) {
    int const descriptors = countOf("/proc/self/fd/");
    {
        start();
        Client waiting;
        ASSERT_TRUE(waiting.connectTo(link->port()) && waiting.takeChallenge());
        Client station;
        ASSERT_TRUE(station.connectTo(link->port()) && station.prove(kKey));
        link->stop();
        EXPECT_EQ(reason(station), "server closed");
        EXPECT_TRUE(station.ended());
        EXPECT_EQ(reason(waiting), "server closed");
        EXPECT_FALSE(Client().connectTo(link->port()));
        EXPECT_FALSE(link->send("late\n"));
        link->stop();
        link.reset();
    }
    EXPECT_EQ(countOf("/proc/self/fd/"), descriptors);
}

TEST_F(StationLinkTest, stations_come_and_go_while_others_answer) {
    start();
    std::atomic<bool> done{false};
    std::thread answers([&] {
        while (!done)
            link->send("answer\n");
    });
    std::thread orders([&] {
        while (!done)
            link->takeOrder();
    });
    for (int i = 0; i < 50; ++i) {
        Client station;
        ASSERT_TRUE(station.connectTo(link->port()));
        ASSERT_TRUE(station.prove(kKey));
        ASSERT_TRUE(station.send(Client::commandLine("SetCurDoc", {"plate"}, i)));
        EXPECT_EQ(station.line(), "answer");
        if (i % 2)
            station.reset();
    }
    done = true;
    answers.join();
    orders.join();
}

TEST_F(StationLinkTest, an_address_that_cannot_be_is_told) {
    struct {
        char const* address;
        char const* part;
    } const rows[] = {{"localhost", "no numeric address"},
                      {"", "no numeric address"},
                      {"127.0.0.1.1", "no numeric address"},
                      {"192.0.2.1", "192.0.2.1 port 0"}};
    for (auto const& row : rows) {
        sim::StationLink other(kKey, {}, [](bool, QString const&) {});
        QString error;
        EXPECT_FALSE(other.start(QString::fromLatin1(row.address), 0, error));
        EXPECT_TRUE(error.contains(QLatin1String(row.part))) << qPrintable(error);
    }
    start();
    sim::StationLink other(kKey, {}, [](bool, QString const&) {});
    QString error;
    EXPECT_FALSE(other.start("127.0.0.1", link->port(), error)) << "the port is taken";
    EXPECT_FALSE(error.isEmpty());
}

/// Where the machine has no such address it says so and listens nowhere.
TEST_F(StationLinkTest, it_listens_at_an_ipv6_address_too) {
    link = std::make_unique<sim::StationLink>(kKey, sim::LinkLimits(), [](bool, QString const&) {});
    bool const hasAddress = hasLocalIpv6();
    QString error;
    EXPECT_EQ(link->start("::1", 0, error), hasAddress);
    EXPECT_EQ(error.isEmpty(), hasAddress) << qPrintable(error);
    EXPECT_EQ(link->port() != 0, hasAddress);
}
