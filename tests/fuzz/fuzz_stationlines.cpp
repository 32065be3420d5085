// SPDX-License-Identifier: MIT
// What a controlling station sends, in any pieces, through the cutting of lines and the reading of messages, before and
// behind its proof. The first byte of an input says how it is cut into reads, the second whether the station has proved
// itself. Beside the faults that the sanitizers find it checks that
//   - lines come out as a plain split of the bytes gives them, whatever the pieces,
//   - without a proof there is never an order, and the first line ends the connection,
//   - with one every line is an order, a ping or a fault, and an order has what its kind needs,
//   - what the server says is one JSON object a line.
#include "simengine/servers/keyproof.h"
#include "simengine/servers/linereader.h"
#include "simengine/servers/stationmessage.h"
#include "simengine/servers/stationsession.h"

#include <QJsonDocument>
#include <QJsonObject>
#include <cstddef>
#include <cstdint>
#include <cstdlib>

using namespace sim;

namespace {

constexpr int kLimit = 200;
QByteArray const kKey(64, 'k');

void require(bool holds) {
    if (!holds)
        std::abort();
}

void checkReply(QByteArray const& reply) {
    require(reply.endsWith('\n') && reply.count('\n') == 1);
    require(QJsonDocument::fromJson(reply).isObject());
}

void checkOrder(StationOrder const& order) {
    require(order.line > 1 && order.kind != OrderKind::Ended);
    if (order.kind == OrderKind::Command) {
        require(!order.command.Name.isEmpty() && order.command.Name.size() <= kMaxCommandName);
        require(order.command.Args.size() <= std::size_t(kMaxArguments));
        checkReply(answerLine(order.command, order.tag));
    } else {
        require(!order.name.isEmpty() && order.name.size() <= kMaxUploadName);
        require(order.offset >= 0);
        checkReply(storedLine(order.name, order.offset));
    }
}

void checkProven(StationSession& session, QByteArray const& line) {
    SessionStep const step = session.handle(line);
    require(!step.proven && !step.wrongProof);
    if (line.isEmpty()) {
        require(step.reply.isEmpty() && !step.order && step.fault.isEmpty());
        return;
    }
    require(bool(step.order) == step.reply.isEmpty());
    if (step.order)
        checkOrder(*step.order);
    else
        checkReply(step.reply);
    require(!step.order || step.fault.isEmpty());
    require(step.refusal.isEmpty() || !step.fault.isEmpty());
    require(loggable(step.fault).size() <= 200);
}

void checkUnproven(StationSession& session, QByteArray const& line) {
    SessionStep const step = session.handle(line);
    require(!step.order && !step.proven && step.reply.isEmpty());
    require(line.isEmpty() == step.refusal.isEmpty());
}

void prove(StationSession& session) {
    QByteArray const nonce =
        QJsonDocument::fromJson(session.challenge()).object().value(QStringLiteral("nonce")).toString().toLatin1();
    QByteArray const own(kProofDigits, '0');
    QByteArray const mac = stationProof(kKey, nonce, own, QStringLiteral("fuzz"));
    require(
        session.handle("{\"type\":\"proof\",\"station\":\"fuzz\",\"nonce\":\"" + own + "\",\"mac\":\"" + mac + "\"}")
            .proven);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size) {
    if (size < 2)
        return 0;
    int const step = data[0] + 1;
    bool const proven = (data[1] & 1) != 0;
    QByteArray const input(reinterpret_cast<char const*>(data) + 2, int(size) - 2);
    StationSession session(kKey, 1'000'000);
    if (proven)
        prove(session);
    LineReader reader(kLimit);
    QList<QByteArray> lines;
    for (int at = 0; at < input.size(); at += step) {
        QByteArray const piece = input.mid(at, step);
        reader.append(piece.constData(), piece.size());
        while (std::optional<QByteArray> const line = reader.next())
            lines.append(*line);
    }
    QList<QByteArray> expected = input.split('\n');
    QByteArray const rest = expected.takeLast();
    bool tooLong = false;
    for (int i = 0; i < expected.size() && !tooLong; ++i) {
        tooLong = expected[i].size() > kLimit;
        if (expected[i].endsWith('\r'))
            expected[i].chop(1);
        if (!tooLong)
            require(i < lines.size() && lines[i] == expected[i]);
        else
            require(lines.size() == i);
    }
    require(tooLong || lines.size() == expected.size());
    require(reader.isTooLong() == (tooLong || rest.size() > kLimit));
    for (QByteArray const& line : qAsConst(lines)) {
        if (proven)
            checkProven(session, line);
        else
            checkUnproven(session, line);
    }
    return 0;
}
