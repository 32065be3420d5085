// SPDX-License-Identifier: MIT
// How a station proves that it has the key, and what becomes of who has not.
#include "servers/linkfixture.h"

#include <vector>

using ProofTest = LinkFixture;

TEST_F(ProofTest, the_right_key_is_welcomed_by_a_server_that_proves_itself_too) {
    start();
    Client station;
    ASSERT_TRUE(station.connectTo(link->port()));
    ASSERT_TRUE(station.prove(kKey));
    EXPECT_TRUE(waitLogged("127.0.0.1 (line-3): connected"));
    ASSERT_TRUE(station.send(Client::commandLine("SetCurDoc", {"plate"}, 7)));
    auto const taken = order();
    ASSERT_TRUE(taken);
    EXPECT_EQ(taken->command.Name, "SetCurDoc");
    EXPECT_EQ(taken->command.Args, std::vector<QString>{"plate"});
    EXPECT_EQ(taken->tag, 7);
    EXPECT_EQ(taken->from, "127.0.0.1 (line-3)");
}

TEST_F(ProofTest, each_connection_has_a_nonce_of_its_own) {
    start();
    QByteArray former;
    for (int i = 0; i < 20; ++i) {
        Client station;
        ASSERT_TRUE(station.connectTo(link->port()) && station.takeChallenge());
        EXPECT_NE(station.serverNonce(), former);
        former = station.serverNonce();
    }
}

TEST_F(ProofTest, a_wrong_key_is_refused_and_logged) {
    start();
    Client station;
    ASSERT_TRUE(station.connectTo(link->port()) && station.takeChallenge());
    QByteArray const proof = Client::proofLine(QByteArray(64, 'x'), station.serverNonce(), "line-3");
    ASSERT_TRUE(station.send(proof + Client::commandLine("RunManualStart", {"0", "0"})));
    EXPECT_EQ(reason(station), "wrong key");
    EXPECT_TRUE(station.ended());
    EXPECT_EQ(logged("127.0.0.1: refused: wrong key"), 1);
    EXPECT_TRUE(nothingOrdered());
}

TEST_F(ProofTest, a_proof_seen_on_the_wire_is_worth_nothing_on_another_connection) {
    start();
    Client station;
    ASSERT_TRUE(station.connectTo(link->port()) && station.takeChallenge());
    QByteArray const proof = Client::proofLine(kKey, station.serverNonce(), "line-3");
    ASSERT_TRUE(station.send(proof));
    ASSERT_EQ(station.message().value("type").toString(), "welcome");
    Client thief;
    ASSERT_TRUE(thief.connectTo(link->port()) && thief.takeChallenge());
    ASSERT_TRUE(thief.send(proof + Client::commandLine("RunManualStop")));
    EXPECT_EQ(reason(thief), "wrong key");
    EXPECT_TRUE(pingPasses(station)) << "the station has stayed the station";
    EXPECT_TRUE(nothingOrdered());
}

TEST_F(ProofTest, the_servers_own_proof_is_no_stations_proof) {
    start();
    Client station;
    ASSERT_TRUE(station.connectTo(link->port()) && station.takeChallenge());
    // What the server would answer to a station whose nonce is this one, taken for a station's mac.
    ASSERT_TRUE(station.send(Client::proofLine(kKey, station.serverNonce(), "line-3")));
    QString const mac = station.message().value("mac").toString();
    Client thief;
    ASSERT_TRUE(thief.connectTo(link->port()) && thief.takeChallenge());
    ASSERT_TRUE(thief.send("{\"type\":\"proof\",\"station\":\"line-3\",\"nonce\":\"" + Client::kNonce +
                           "\",\"mac\":\"" + mac.toLatin1() + "\"}\n"));
    EXPECT_EQ(reason(thief), "wrong key");
}

TEST_F(ProofTest, another_name_than_the_proved_one_is_refused) {
    start();
    Client station;
    ASSERT_TRUE(station.connectTo(link->port()) && station.takeChallenge());
    QByteArray proof = Client::proofLine(kKey, station.serverNonce(), "line-3");
    ASSERT_TRUE(station.send(proof.replace("line-3", "line-4")));
    EXPECT_EQ(reason(station), "wrong key");
}

TEST_F(ProofTest, a_nonce_serves_one_attempt) {
    start();
    Client station;
    ASSERT_TRUE(station.connectTo(link->port()) && station.takeChallenge());
    ASSERT_TRUE(station.send(Client::proofLine(QByteArray(64, 'x'), station.serverNonce(), "line-3") +
                             Client::proofLine(kKey, station.serverNonce(), "line-3")));
    EXPECT_EQ(reason(station), "wrong key");
    EXPECT_EQ(station.line(), QByteArray());
    EXPECT_TRUE(station.ended());
    EXPECT_EQ(logged("connected"), 0);
}

TEST_F(ProofTest, what_is_no_proof_ends_the_connection) {
    QByteArray const good = QByteArray(64, 'a');
    QByteArray const lines[] = {
        Client::commandLine("RunManualStart", {"0", "0"}),
        "{\"type\":\"ping\"}\n",
        "hello\n",
        "[]\n",
        "{\"type\":\"proof\"}\n",
        QByteArray("\0\0\0\n", 4),
        "{\"type\":\"proof\",\"station\":\"a\",\"nonce\":\"" + good + "\",\"mac\":\"" + good.left(63) + "\"}\n",
        "{\"type\":\"proof\",\"station\":\"a\",\"nonce\":\"" + good.toUpper() + "\",\"mac\":\"" + good + "\"}\n",
        "{\"type\":\"proof\",\"station\":\"\",\"nonce\":\"" + good + "\",\"mac\":\"" + good + "\"}\n",
        "{\"type\":\"proof\",\"station\":\"a\\nb\",\"nonce\":\"" + good + "\",\"mac\":\"" + good + "\"}\n",
        "{\"type\":\"proof\",\"station\":1,\"nonce\":\"" + good + "\",\"mac\":\"" + good + "\"}\n",
        QByteArray(5000, '{'),
    };
    start();
    for (QByteArray const& line : lines) {
        Client station;
        ASSERT_TRUE(station.connectTo(link->port()) && station.takeChallenge());
        ASSERT_TRUE(station.send(line));
        EXPECT_EQ(reason(station), "not a proof") << line.left(80).constData();
        EXPECT_TRUE(station.ended());
    }
    EXPECT_TRUE(nothingOrdered());
    EXPECT_EQ(logged("refused: not a proof"), 12);
}

TEST_F(ProofTest, who_is_silent_is_dropped_in_time) {
    sim::LinkLimits limits;
    limits.proofTime = std::chrono::milliseconds(50);
    start(limits);
    Client station;
    ASSERT_TRUE(station.connectTo(link->port()) && station.takeChallenge());
    ASSERT_TRUE(station.send("{\"type\":\"pro"));
    EXPECT_EQ(reason(station), "too late");
    EXPECT_TRUE(station.ended());
}

TEST_F(ProofTest, empty_lines_do_not_lengthen_the_time) {
    sim::LinkLimits limits;
    limits.proofTime = std::chrono::milliseconds(100);
    start(limits);
    Client station;
    ASSERT_TRUE(station.connectTo(link->port()) && station.takeChallenge());
    EXPECT_TRUE(waitFor([&] { return !station.send("\n\r\n", 100) || logged("too late") > 0; }));
    EXPECT_EQ(reason(station), "too late");
}

TEST_F(ProofTest, a_refused_one_that_does_not_go_is_closed) {
    sim::LinkLimits limits;
    limits.closingTime = std::chrono::milliseconds(50);
    start(limits);
    Client station;
    ASSERT_TRUE(station.connectTo(link->port()) && station.takeChallenge());
    ASSERT_TRUE(station.send("hello\n"));
    EXPECT_EQ(reason(station), "not a proof");
    // Our own side of the stream stays open; a closed socket answers further bytes with a reset.
    EXPECT_TRUE(waitFor([&] { return !station.send("more\n", 100); }));
}

TEST_F(ProofTest, five_wrong_proofs_close_the_door_for_a_while) {
    sim::LinkLimits limits;
    limits.guardTime = std::chrono::milliseconds(1500);
    start(limits);
    Client present;
    ASSERT_TRUE(present.connectTo(link->port()) && present.prove(kKey));
    for (int i = 0; i < 5; ++i) {
        Client stranger;
        ASSERT_TRUE(stranger.connectTo(link->port()) && stranger.takeChallenge());
        ASSERT_TRUE(stranger.send(Client::proofLine("guess", stranger.serverNonce(), "line-3")));
        ASSERT_EQ(reason(stranger), "wrong key");
    }
    Client late;
    ASSERT_TRUE(late.connectTo(link->port()));
    EXPECT_EQ(reason(late), "too many failed proofs");
    EXPECT_TRUE(late.ended());
    EXPECT_TRUE(pingPasses(present)) << "who is in stays in";
    EXPECT_TRUE(waitFor([&] {
        Client again;
        return again.connectTo(link->port()) && again.prove(kKey);
    }));
}

TEST_F(ProofTest, half_open_connections_do_not_keep_the_station_out) {
    start();
    std::vector<std::unique_ptr<Client>> silent;
    for (int i = 0; i < 300; ++i) {
        silent.push_back(std::make_unique<Client>());
        ASSERT_TRUE(silent.back()->connectTo(link->port()));
    }
    Client station;
    ASSERT_TRUE(station.connectTo(link->port()));
    ASSERT_TRUE(station.prove(kKey));
    EXPECT_TRUE(pingPasses(station));
    // All but the newest have been told to go, oldest first.
    ASSERT_TRUE(silent.front()->takeChallenge());
    EXPECT_EQ(reason(*silent.front()), "too many connections");
    EXPECT_TRUE(silent.front()->ended());
    EXPECT_TRUE(silent.back()->takeChallenge());
    EXPECT_LE(log().size(), 70) << "the log is not for strangers to fill";
    for (auto& one : silent)
        one->reset();
    EXPECT_TRUE(pingPasses(station));
}

TEST_F(ProofTest, lines_left_out_of_the_log_are_counted_in_it) {
    sim::LinkLimits limits;
    limits.logLines = 3;
    limits.logTime = std::chrono::milliseconds(300);
    start(limits);
    for (int i = 0; i < 10; ++i) {
        Client stranger;
        ASSERT_TRUE(stranger.connectTo(link->port()) && stranger.takeChallenge());
        ASSERT_TRUE(stranger.send("hello\n"));
        ASSERT_EQ(reason(stranger), "not a proof");
    }
    EXPECT_TRUE(waitLogged("more lines left out"));
    int written = 0;
    int leftOut = 0;
    for (QString const& line : log()) {
        if (line.contains("left out"))
            leftOut += line.section(' ', 0, 0).toInt();
        else
            ++written;
    }
    EXPECT_EQ(written + leftOut, 10);
}
