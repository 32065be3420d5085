// SPDX-License-Identifier: MIT
// What a station that has proved itself may send, and what it may not.
#include "servers/linkfixture.h"

#include <QJsonArray>

class LinesTest : public LinkFixture {
protected:
    void connectStation(sim::LinkLimits const& limits = {}) {
        start(limits);
        ASSERT_TRUE(station.connectTo(link->port()));
        ASSERT_TRUE(station.prove(kKey));
    }

    Client station;
};

TEST_F(LinesTest, a_command_carries_all_its_fields) {
    connectStation();
    ASSERT_TRUE(station.send("{\"type\":\"cmd\",\"id\":2147483647,\"name\":\"SyncFile\",\"first\":-2147483648,"
                             "\"second\":3,\"tag\":-1,\"args\":[\"\",\"文档\",\"a\\nb\"],\"more\":{}}\r\n"));
    auto const taken = order();
    ASSERT_TRUE(taken);
    EXPECT_EQ(taken->kind, sim::OrderKind::Command);
    EXPECT_EQ(taken->command.Id, 2147483647);
    EXPECT_EQ(taken->command.First, -2147483647 - 1);
    EXPECT_EQ(taken->command.Second, 3);
    EXPECT_EQ(taken->tag, -1);
    EXPECT_EQ(taken->command.Args, (std::vector<QString>{"", QString::fromUtf8("文档"), "a\nb"}));
    EXPECT_EQ(taken->line, 2);
}

TEST_F(LinesTest, members_left_out_are_zero_and_empty) {
    connectStation();
    ASSERT_TRUE(station.send("{\"type\":\"cmd\",\"name\":\"RunManualStop\"}\n"));
    auto const taken = order();
    ASSERT_TRUE(taken);
    EXPECT_EQ(taken->command.Id, 0);
    EXPECT_EQ(taken->command.First, 0);
    EXPECT_EQ(taken->command.Second, 0);
    EXPECT_EQ(taken->tag, 0);
    EXPECT_TRUE(taken->command.Args.empty());
}

TEST_F(LinesTest, a_command_may_come_byte_by_byte) {
    connectStation();
    for (char const byte : Client::commandLine("SetCurDoc", {"plate"}, 9))
        ASSERT_TRUE(station.send(QByteArray(1, byte)));
    auto const taken = order();
    ASSERT_TRUE(taken);
    EXPECT_EQ(taken->tag, 9);
}

TEST_F(LinesTest, a_command_may_be_split_at_every_byte) {
    connectStation();
    QByteArray const line = Client::commandLine("SetCurDoc", {QString::fromUtf8("板")}, 9);
    for (int at = 1; at < line.size(); ++at) {
        ASSERT_TRUE(station.send(line.left(at)));
        ASSERT_TRUE(station.send(line.mid(at)));
        auto const taken = order();
        ASSERT_TRUE(taken) << at;
        EXPECT_EQ(taken->command.Args.front(), QString::fromUtf8("板"));
    }
}

TEST_F(LinesTest, faulty_lines_are_refused_with_their_number_and_change_nothing) {
    sim::LinkLimits limits;
    limits.badLines = 1000;
    connectStation(limits);
    QByteArray const lines[] = {
        "{\"type\":\"cmd\",\"name\":\"RunManualSt{\"type\":\"cmd\",\"name\":\"RunManualStop\"}",
        "{\"type\":\"cmd\",\"name\":\"RunManualStop\"}{\"type\":\"cmd\",\"name\":\"RunManualStop\"}",
        "{\"type\":\"cmd\",\"name\":\"RunManualStop\"",
        "\"name\":\"RunManualStop\"}",
        "null",
        "[{\"type\":\"cmd\",\"name\":\"RunManualStop\"}]",
        "{\"name\":\"RunManualStop\"}",
        "{\"type\":\"Cmd\",\"name\":\"RunManualStop\"}",
        "{\"type\":\"proof\"}",
        "{\"type\":\"cmd\"}",
        "{\"type\":\"cmd\",\"name\":\"\"}",
        "{\"type\":\"cmd\",\"name\":7}",
        "{\"type\":\"cmd\",\"name\":\"Run\\u001bManualStop\"}",
        "{\"type\":\"cmd\",\"name\":\"" + QByteArray(201, 'n') + "\"}",
        "{\"type\":\"cmd\",\"name\":\"RunManualStop\",\"tag\":1.5}",
        "{\"type\":\"cmd\",\"name\":\"RunManualStop\",\"tag\":\"1\"}",
        "{\"type\":\"cmd\",\"name\":\"RunManualStop\",\"tag\":null}",
        "{\"type\":\"cmd\",\"name\":\"RunManualStop\",\"id\":2147483648}",
        "{\"type\":\"cmd\",\"name\":\"RunManualStop\",\"first\":-2147483649}",
        "{\"type\":\"cmd\",\"name\":\"RunManualStop\",\"second\":1e99}",
        "{\"type\":\"cmd\",\"name\":\"RunManualStop\",\"args\":\"0\"}",
        "{\"type\":\"cmd\",\"name\":\"RunManualStop\",\"args\":[0]}",
        "{\"type\":\"cmd\",\"name\":\"RunManualStop\",\"args\":[\"a\",null]}",
        "{\"type\":\"cmd\",\"name\":\"RunManualStop\",\"args\":[" + QByteArray("\"\",").repeated(4096) + "\"\"]}",
        "{\"type\":\"cmd\",\"name\":\"\xff\xfe\"}",
        QByteArray("{\"type\":\"cmd\",\0\"name\":\"RunManualStop\"}", 39),
        "{\"type\":\"cmd\",\"name\":\"RunManualStop\",\"args\":" + QByteArray(5000, '[') + QByteArray(5000, ']') + "}",
        "{\"type\":\"put\",\"name\":\"a\",\"offset\":0}",
        "{\"type\":\"put\",\"name\":\"a\",\"data\":\"AAAA\"}",
        "{\"type\":\"put\",\"name\":\"a\",\"offset\":0,\"data\":\"A*==\"}",
        "{\"type\":\"put\",\"name\":\"a\",\"offset\":0,\"data\":\"AAA\"}",
        "{\"type\":\"put\",\"name\":\"a\",\"offset\":-1,\"data\":\"AAAA\"}",
        "{\"type\":\"put\",\"name\":\"\",\"offset\":0,\"data\":\"AAAA\"}",
        "{\"type\":\"put\",\"name\":\"a\\u0000b\",\"offset\":0,\"data\":\"AAAA\"}",
        "{\"type\":\"put\",\"name\":\"" + QByteArray(201, 'n') + "\",\"offset\":0,\"data\":\"AAAA\"}",
        "{\"type\":\"drop\"}",
        "{\"type\":\"ping\",\"tag\":0.5}",
    };
    int number = 1;
    for (QByteArray const& line : lines) {
        ASSERT_TRUE(station.send(line + '\n'));
        EXPECT_EQ(errorLine(station), ++number) << line.left(80).constData();
    }
    EXPECT_EQ(logged("127.0.0.1 (line-3): refused line"), number - 1);
    EXPECT_TRUE(nothingOrdered());
    EXPECT_TRUE(pingPasses(station)) << "the connection has stayed";
}

TEST_F(LinesTest, the_sixteenth_bad_line_ends_the_connection) {
    connectStation();
    for (int i = 0; i < 16; ++i)
        ASSERT_TRUE(station.send("nonsense\n"));
    ASSERT_TRUE(station.send(Client::commandLine("RunManualStop")));
    for (int i = 0; i < 16; ++i)
        EXPECT_EQ(errorLine(station), i + 2);
    EXPECT_EQ(reason(station), "too many bad lines");
    EXPECT_TRUE(station.ended());
    auto const taken = order();
    ASSERT_TRUE(taken);
    EXPECT_EQ(taken->kind, sim::OrderKind::Ended) << "and not the command behind them";
}

TEST_F(LinesTest, a_line_cut_short_by_the_end_of_the_connection_is_dropped) {
    connectStation();
    ASSERT_TRUE(station.send("{\"type\":\"cmd\",\"name\":\"RunManualStop\"}"));
    station.close();
    EXPECT_TRUE(waitLogged("went in the middle of a line"));
    auto const taken = order();
    ASSERT_TRUE(taken);
    EXPECT_EQ(taken->kind, sim::OrderKind::Ended);
}

TEST_F(LinesTest, a_reset_in_the_middle_of_a_line_drops_it) {
    connectStation();
    ASSERT_TRUE(station.send("{\"type\":\"cmd\",\"name\":\"RunManualSt"));
    station.reset();
    auto const taken = order();
    ASSERT_TRUE(taken);
    EXPECT_EQ(taken->kind, sim::OrderKind::Ended);
}

TEST_F(LinesTest, whole_lines_before_the_end_of_the_connection_count) {
    connectStation();
    ASSERT_TRUE(station.send(Client::commandLine("RunManualStop", {}, 4)));
    station.close();
    auto const taken = order();
    ASSERT_TRUE(taken);
    EXPECT_EQ(taken->tag, 4);
    auto const after = order();
    ASSERT_TRUE(after);
    EXPECT_EQ(after->kind, sim::OrderKind::Ended);
}

TEST_F(LinesTest, a_line_of_the_full_length_is_taken) {
    connectStation();
    QByteArray const head = "{\"type\":\"cmd\",\"name\":\"SyncFile\",\"args\":[\"";
    QByteArray const tail = "\"]}";
    ASSERT_TRUE(station.send(head + QByteArray(1024 * 1024 - head.size() - tail.size(), 'x') + tail + '\n'));
    auto const taken = order();
    ASSERT_TRUE(taken);
    EXPECT_EQ(taken->command.Args.front().size(), 1024 * 1024 - head.size() - tail.size());
}

TEST_F(LinesTest, a_line_one_byte_longer_ends_the_connection) {
    connectStation();
    QByteArray const head = "{\"type\":\"cmd\",\"name\":\"SyncFile\",\"args\":[\"";
    QByteArray const tail = "\"]}";
    station.send(head + QByteArray(1024 * 1024 + 1 - head.size() - tail.size(), 'x') + tail + '\n');
    EXPECT_EQ(reason(station), "line too long");
    EXPECT_TRUE(station.ended());
    EXPECT_EQ(logged("refused: line too long"), 1);
    auto const taken = order();
    ASSERT_TRUE(taken);
    EXPECT_EQ(taken->kind, sim::OrderKind::Ended);
}

TEST_F(LinesTest, a_line_without_an_end_does_not_grow_the_memory) {
    connectStation();
    // Far more than the socket's buffers hold: taking it all would be seen.
    EXPECT_FALSE(station.send(QByteArray(64 * 1024 * 1024, ' '), 1000) && pingPasses(station));
    EXPECT_TRUE(waitLogged("refused: line too long"));
}
