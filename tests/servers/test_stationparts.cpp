// SPDX-License-Identifier: MIT
// The small parts of the command server, each by itself.
#include "simengine/servers/attemptguard.h"
#include "simengine/servers/keyproof.h"
#include "simengine/servers/linereader.h"
#include "simengine/servers/orderqueue.h"
#include "simengine/servers/stationmessage.h"
#include "simengine/servers/stationsession.h"
#include "support/loglimit.h"

#include <gtest/gtest.h>

using namespace std::chrono_literals;

namespace {

std::vector<std::string> linesOf(sim::LineReader& reader, QByteArray const& bytes) {
    reader.append(bytes.constData(), bytes.size());
    std::vector<std::string> lines;
    while (std::optional<QByteArray> const line = reader.next())
        lines.push_back(line->toStdString());
    return lines;
}

} // namespace

TEST(LineReader, cuts_at_line_feeds_wherever_the_bytes_come_apart) {
    QByteArray const all = QByteArray("one\n\r\ntwo\r\nth\rree\n", 18) + QByteArray("a\0b\n", 4);
    std::vector<std::string> const expected{"one", "", "two", "th\rree", std::string("a\0b", 3)};
    for (int at = 0; at <= all.size(); ++at) {
        sim::LineReader reader(10);
        std::vector<std::string> lines = linesOf(reader, all.left(at));
        for (std::string const& line : linesOf(reader, all.mid(at)))
            lines.push_back(line);
        EXPECT_EQ(lines, expected) << at;
        EXPECT_EQ(reader.waiting(), 0);
    }
}

TEST(LineReader, a_line_at_the_limit_passes_and_one_byte_more_does_not) {
    sim::LineReader reader(4);
    EXPECT_EQ(linesOf(reader, "abcd\n"), std::vector<std::string>{"abcd"});
    EXPECT_EQ(linesOf(reader, "abcd"), std::vector<std::string>{});
    EXPECT_FALSE(reader.isTooLong());
    EXPECT_EQ(linesOf(reader, "e"), std::vector<std::string>{});
    EXPECT_TRUE(reader.isTooLong());
    EXPECT_EQ(linesOf(reader, "\nab\n"), std::vector<std::string>{}) << "nothing behind it counts";
    sim::LineReader whole(4);
    EXPECT_EQ(linesOf(whole, "ab\nabcde\nab\n"), std::vector<std::string>{"ab"});
    EXPECT_TRUE(whole.isTooLong());
}

TEST(LineReader, a_raised_limit_counts_for_what_waits) {
    sim::LineReader reader(3);
    reader.append("abc\nabcdef\n", 11);
    EXPECT_EQ(reader.next(), QByteArray("abc"));
    reader.setLimit(6);
    EXPECT_EQ(reader.next(), QByteArray("abcdef"));
}

TEST(AttemptGuard, blocks_an_address_until_its_failures_are_old) {
    sim::AttemptGuard guard(3, 60s);
    sim::AttemptGuard::Time const t0{};
    guard.failed("a", t0);
    guard.failed("a", t0 + 10s);
    EXPECT_FALSE(guard.isBlocked("a", t0 + 10s));
    guard.failed("a", t0 + 20s);
    EXPECT_TRUE(guard.isBlocked("a", t0 + 20s));
    EXPECT_FALSE(guard.isBlocked("b", t0 + 20s));
    EXPECT_TRUE(guard.isBlocked("a", t0 + 59s));
    EXPECT_FALSE(guard.isBlocked("a", t0 + 60s)) << "the first is a minute old";
    guard.failed("a", t0 + 61s);
    EXPECT_TRUE(guard.isBlocked("a", t0 + 61s));
    EXPECT_FALSE(guard.isBlocked("a", t0 + 200s));
    EXPECT_EQ(guard.size(), 0u);
}

TEST(AttemptGuard, remembers_a_bounded_number_of_addresses) {
    sim::AttemptGuard guard(1, 60s);
    sim::AttemptGuard::Time const t0{};
    for (int i = 0; i < 5000; ++i)
        guard.failed(std::to_string(i), t0 + std::chrono::milliseconds(i));
    EXPECT_EQ(guard.size(), sim::AttemptGuard::kMaxAddresses);
    EXPECT_TRUE(guard.isBlocked("4999", t0 + 5s));
    EXPECT_FALSE(guard.isBlocked("0", t0 + 5s)) << "the oldest was given up";
}

TEST(LogLimit, counts_what_it_leaves_out) {
    tessera::LogLimit limit(2, 10s);
    tessera::LogLimit::Time const t0{1h};
    EXPECT_TRUE(limit.allows(t0));
    EXPECT_TRUE(limit.allows(t0));
    EXPECT_FALSE(limit.allows(t0 + 1s));
    EXPECT_FALSE(limit.allows(t0 + 9s));
    EXPECT_TRUE(limit.isHoldingBack());
    EXPECT_EQ(limit.windowEnd(), t0 + 10s);
    EXPECT_EQ(limit.takeLeftOut(t0 + 9s), 0);
    EXPECT_EQ(limit.takeLeftOut(t0 + 10s), 2);
    EXPECT_FALSE(limit.isHoldingBack());
    EXPECT_EQ(limit.takeLeftOut(t0 + 10s), 0);
    EXPECT_TRUE(limit.allows(t0 + 10s));
}

TEST(KeyProof, agrees_with_another_program) {
    // The values were made with Python's hmac module.
    QByteArray const key(64, 'k');
    QByteArray const s(64, '5');
    QByteArray const c(64, 'c');
    EXPECT_EQ(sim::stationProof(key, s, c, QString::fromUtf8("线3")),
              QByteArray("3bfe0d5fceb42978d93162b85585dd0752c5347966040abba2ba4a6b4ac0054f"));
    EXPECT_EQ(sim::serverProof(key, s, c),
              QByteArray("2b1953246f14ed34e59e414eed7cbe7b84dfe46e764f83b67e2f155b3b4f7677"));
}

TEST(KeyProof, compares_whole_proofs_only) {
    QByteArray const a = sim::randomDigits();
    EXPECT_TRUE(sim::isProofDigits(a));
    EXPECT_TRUE(sim::isSameProof(a, a));
    QByteArray b = a;
    b[63] = b[63] == '0' ? '1' : '0';
    EXPECT_FALSE(sim::isSameProof(a, b));
    EXPECT_FALSE(sim::isSameProof(a, a.left(63)));
    EXPECT_FALSE(sim::isSameProof({}, {}));
    EXPECT_NE(sim::randomDigits(), a);
    EXPECT_FALSE(sim::isProofDigits(a.left(63)));
    EXPECT_FALSE(sim::isProofDigits(a.left(63) + 'G'));
}

TEST(OrderQueue, one_end_behind_the_other_counts_once) {
    sim::OrderQueue queue(2, 1000);
    sim::StationOrder ended;
    ended.kind = sim::OrderKind::Ended;
    for (int i = 0; i < 1000; ++i)
        queue.push(ended);
    bool room = false;
    EXPECT_TRUE(queue.take(room));
    EXPECT_FALSE(queue.take(room));
}

TEST(OrderQueue, tells_once_that_there_is_room_again) {
    sim::OrderQueue queue(1, 1000);
    EXPECT_TRUE(queue.hasRoom());
    queue.push({});
    EXPECT_FALSE(queue.hasRoom());
    bool room = false;
    EXPECT_TRUE(queue.take(room));
    EXPECT_TRUE(room);
    EXPECT_TRUE(queue.hasRoom());
    queue.push({});
    EXPECT_TRUE(queue.take(room));
    EXPECT_FALSE(room) << "nobody had asked for it";
}

TEST(StationMessage, an_answer_is_one_line_whatever_it_holds) {
    CCSCmd command;
    command.Id = 12;
    command.Name = "SetCurDoc";
    command.First = -1;
    command.Second = 2;
    command.Args = {"0", QString::fromUtf8("文档切换成功\n\"")};
    EXPECT_EQ(sim::answerLine(command, 7),
              QByteArray("{\"args\":[\"0\",\"文档切换成功\\n\\\"\"],\"first\":-1,\"id\":12,\"name\":\"SetCurDoc\","
                         "\"second\":2,\"tag\":7,\"type\":\"answer\"}\n"));
}

TEST(StationMessage, of_a_member_that_stands_twice_the_last_counts_and_nothing_leaks) {
    sim::StationRequest const request =
        sim::parseRequest("{\"type\":\"ping\",\"name\":\"A\",\"type\":\"cmd\",\"name\":\"B\"}");
    ASSERT_TRUE(request.order);
    EXPECT_EQ(request.order->command.Name, QString("B"));
}

TEST(StationMessage, whole_numbers_may_carry_a_fraction_of_nothing) {
    sim::StationRequest const request = sim::parseRequest("{\"type\":\"cmd\",\"name\":\"A\",\"tag\":7.0,\"id\":1e2}");
    ASSERT_TRUE(request.order);
    EXPECT_EQ(request.order->tag, 7);
    EXPECT_EQ(request.order->command.Id, 100);
}

TEST(StationMessage, what_a_log_holds_is_short_and_printable) {
    EXPECT_EQ(sim::loggable(QString("a\nb") + QChar(0) + QChar(0x1b) + QChar(0x202e)), QString("a?b???"));
    EXPECT_EQ(sim::loggable(QString(500, 'x')), QString(200, 'x'));
    EXPECT_EQ(sim::loggable(QString::fromUtf8("文档")), QString::fromUtf8("文档"));
}

TEST(StationMessage, the_servers_lines_are_as_documented) {
    EXPECT_EQ(sim::challengeLine("ab"),
              QByteArray("{\"nonce\":\"ab\",\"protocol\":1,\"server\":\"tessera\",\"type\":\"challenge\"}\n"));
    EXPECT_EQ(sim::welcomeLine("ab"), QByteArray("{\"mac\":\"ab\",\"type\":\"welcome\"}\n"));
    EXPECT_EQ(sim::refusedLine("wrong key"), QByteArray("{\"reason\":\"wrong key\",\"type\":\"refused\"}\n"));
    EXPECT_EQ(sim::storedLine("plate", 3072), QByteArray("{\"name\":\"plate\",\"size\":3072,\"type\":\"stored\"}\n"));
    EXPECT_EQ(sim::droppedLine("plate"), QByteArray("{\"name\":\"plate\",\"type\":\"dropped\"}\n"));
    EXPECT_EQ(sim::pongLine(1), QByteArray("{\"tag\":1,\"type\":\"pong\"}\n"));
    EXPECT_EQ(sim::errorLine(3, "x"), QByteArray("{\"line\":3,\"reason\":\"x\",\"type\":\"error\"}\n"));
}

TEST(StationSession, empty_lines_are_no_attempt_and_do_not_count) {
    QByteArray const key(32, 'k');
    sim::StationSession session(key, 16);
    QByteArray const challenge = session.challenge();
    QByteArray const nonce = challenge.mid(challenge.indexOf("nonce\":\"") + 8, 64);
    EXPECT_TRUE(session.handle("").reply.isEmpty());
    QByteArray const own(64, '0');
    sim::SessionStep const step = session.handle("{\"type\":\"proof\",\"station\":\"a\",\"nonce\":\"" + own +
                                                 "\",\"mac\":\"" + sim::stationProof(key, nonce, own, "a") + "\"}");
    EXPECT_TRUE(step.proven);
    EXPECT_EQ(session.station(), "a");
    EXPECT_TRUE(session.handle("").reply.isEmpty());
    EXPECT_EQ(session.handle("x").reply.left(10), QByteArray("{\"line\":2,"));
}
