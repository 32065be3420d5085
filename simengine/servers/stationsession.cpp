// SPDX-License-Identifier: GPL-2.0-or-later
#include "simengine/servers/stationsession.h"

#include "simengine/servers/keyproof.h"
#include "simengine/servers/stationmessage.h"

namespace sim {

StationSession::StationSession(QByteArray const& key, int badLines)
    : m_key(key)
    , m_nonce(randomDigits())
    , m_badLineLimit(badLines) {}

QByteArray StationSession::challenge() const {
    return challengeLine(m_nonce);
}

SessionStep StationSession::handle(QByteArray const& line) {
    if (line.isEmpty())
        return {};
    ++m_line;
    if (!m_proven)
        return prove(line);
    SessionStep step;
    StationRequest request = parseRequest(line);
    if (request.order) {
        step.order = std::move(request.order);
        step.order->line = m_line;
        step.order->bytes = line.size();
    } else if (request.ping) {
        step.reply = pongLine(*request.ping);
    } else {
        step.fault = QStringLiteral("line %1: %2").arg(m_line).arg(request.fault);
        step.reply = errorLine(m_line, request.fault);
        if (++m_badLines >= m_badLineLimit)
            step.refusal = QStringLiteral("too many bad lines");
    }
    return step;
}

SessionStep StationSession::prove(QByteArray const& line) {
    SessionStep step;
    std::optional<ProofMessage> const proof = m_line == 1 ? parseProof(line) : std::nullopt;
    if (!proof) {
        step.refusal = QStringLiteral("not a proof");
    } else if (!isSameProof(proof->mac, stationProof(m_key, m_nonce, proof->nonce, proof->station))) {
        step.refusal = QStringLiteral("wrong key");
        step.wrongProof = true;
    } else {
        m_proven = true;
        m_station = proof->station;
        step.proven = true;
        step.reply = welcomeLine(serverProof(m_key, m_nonce, proof->nonce));
    }
    return step;
}

} // namespace sim
