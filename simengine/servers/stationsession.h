// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "simengine/servers/stationorder.h"

#include <optional>

namespace sim {

/// What one line of a station leads to.
struct SessionStep {
    QByteArray reply;                  ///< lines to send, or empty
    std::optional<StationOrder> order; ///< for the main thread
    bool proven = false;               ///< with this line the station has proved itself
    bool wrongProof = false;           ///< counts against its address
    QString fault;                     ///< for the log; empty when the line was good
    QString refusal;                   ///< not empty: the connection ends with this reason
};

/// One connection of the command server from its challenge on: what each line means, without sockets and clocks. The
/// nonce serves for the first line only, so a connection has one attempt. One thread.
class StationSession {
public:
    /// The line `badLines` that is refused ends the connection.
    StationSession(QByteArray const& key, int badLines);

    /// The line that goes out first.
    QByteArray challenge() const;
    /// Takes a line without its end, as LineReader gives it.
    SessionStep handle(QByteArray const& line);

    bool isProven() const { return m_proven; }
    /// The name that the station gave; empty before it has proved itself.
    QString const& station() const { return m_station; }

private:
    SessionStep prove(QByteArray const& line);

    QByteArray const m_key;
    QByteArray const m_nonce;
    int const m_badLineLimit;
    bool m_proven = false;
    QString m_station;
    qint64 m_line = 0;
    int m_badLines = 0;
};

} // namespace sim
