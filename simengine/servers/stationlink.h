// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "simengine/servers/attemptguard.h"
#include "simengine/servers/linklimits.h"
#include "simengine/servers/orderqueue.h"
#include "simengine/servers/stationconnection.h"
#include "support/loglimit.h"

#include <atomic>
#include <functional>
#include <memory>
#include <poll.h>
#include <thread>
#include <vector>

namespace sim {

/// The sockets of the command server on a thread of their own: takes connections, lets them prove themselves, hands
/// their orders over and sends the answers. One connection is the station: the newest that has proved itself.
class StationLink {
public:
    /// Called on the link's thread; `error` tells a refusal or a fault from a note.
    using Log = std::function<void(bool error, QString const& text)>;

    StationLink(QByteArray const& key, LinkLimits const& limits, Log log);
    ~StationLink();
    StationLink(StationLink const&) = delete;
    StationLink& operator=(StationLink const&) = delete;

    /// Listens at a numeric address; port 0 is any. False and the reason when that cannot be. Once.
    bool start(QString const& address, quint16 port, QString& error);
    /// The port that is listened at; 0 before start().
    quint16 port() const { return m_port; }
    /// Closes all connections and ends the thread. Nothing is logged and no order comes after it.
    void stop();

    /// Sends lines to the station. False without one. Never waits: a station that does not take its answers loses the
    /// connection. Any thread.
    bool send(QByteArray const& lines);
    /// Readable while there is an order to take.
    int orderDescriptor() const { return m_orders.descriptor(); }
    /// The next order; one thread.
    std::optional<StationOrder> takeOrder();

private:
    using Time = StationConnection::Time;
    using State = StationConnection::State;

    void run();
    void sayGoodbye();
    void wait(std::vector<pollfd>& polled) const;
    int waitMs() const;
    void serve(StationConnection& connection, short events);
    void readLines(StationConnection& connection);
    void take(StationConnection& connection, SessionStep const& step);
    void acceptAll();
    void accept(int socket, std::string const& address);
    void makeRoom();
    void becomeStation(StationConnection& connection);
    void leave(StationConnection& connection);
    void refuse(StationConnection& connection, QString const& reason);
    void end(StationConnection& connection, QString const& why);
    void sendAnswers();
    void flush(StationConnection& connection);
    void expire();
    void sweep();
    void note(bool error, QString const& text);
    void noteLeftOut();

    QByteArray const m_key;
    LinkLimits const m_limits;
    Log const m_log;
    std::unique_ptr<tessera::FileDescriptor> m_listener;
    quint16 m_port = 0;
    EventFlag m_wake;
    OrderQueue m_orders;
    std::atomic<bool> m_stopping{false};

    std::mutex m_answerMutex; ///< guards the three below
    QByteArray m_answers;
    bool m_hasStation = false;
    bool m_overflow = false; ///< the station did not take what was to be sent

    // Of the link's thread alone.
    Time m_now{};
    std::vector<std::unique_ptr<StationConnection>> m_connections; ///< oldest first
    StationConnection* m_station = nullptr;
    bool m_stalled = false; ///< lines of the station wait for room in the queue
    Time m_acceptAfter{};
    AttemptGuard m_guard;
    tessera::LogLimit m_logLimit;

    std::thread m_thread; ///< last: it uses all of the above
};

} // namespace sim
