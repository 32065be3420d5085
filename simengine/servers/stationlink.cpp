// SPDX-License-Identifier: GPL-2.0-or-later
#include "simengine/servers/stationlink.h"

#include "simengine/servers/listensocket.h"

#include <algorithm>
#include <csignal>

namespace sim {

namespace {

constexpr std::chrono::milliseconds kAcceptPause{100}; ///< when the process has no descriptor left
constexpr int kAcceptsATurn = 16;

/// Signals are the main thread's affair.
void blockSignals() {
    sigset_t all;
    ::sigfillset(&all);
    ::pthread_sigmask(SIG_SETMASK, &all, nullptr);
}

} // namespace

StationLink::StationLink(QByteArray const& key, LinkLimits const& limits, Log log)
    : m_key(key)
    , m_limits(limits)
    , m_log(std::move(log))
    , m_orders(limits.orders, limits.orderBytes)
    , m_guard(limits.wrongProofs, limits.guardTime)
    , m_logLimit(limits.logLines, limits.logTime) {}

StationLink::~StationLink() {
    stop();
}

bool StationLink::start(QString const& address, quint16 port, QString& error) {
    int const listener = openListener(address, port, m_port, error);
    if (listener < 0)
        return false;
    m_listener = std::make_unique<tessera::FileDescriptor>(listener);
    m_thread = std::thread([this] { run(); });
    return true;
}

void StationLink::stop() {
    if (!m_thread.joinable())
        return;
    m_stopping = true;
    m_wake.set();
    m_thread.join();
}

bool StationLink::send(QByteArray const& lines) {
    std::lock_guard<std::mutex> const guard(m_answerMutex);
    if (!m_hasStation)
        return false;
    if (static_cast<std::size_t>(m_answers.size()) + static_cast<std::size_t>(lines.size()) > m_limits.answerBytes)
        m_overflow = true;
    else
        m_answers.append(lines.constData(), lines.size()); // a copy: the caller's own may go at any time on its thread
    m_wake.set();
    return true;
}

std::optional<StationOrder> StationLink::takeOrder() {
    bool room = false;
    std::optional<StationOrder> order = m_orders.take(room);
    if (room)
        m_wake.set();
    return order;
}

void StationLink::run() {
    blockSignals();
    std::vector<pollfd> polled;
    while (!m_stopping) {
        wait(polled);
        m_now = std::chrono::steady_clock::now();
        m_wake.clear();
        sendAnswers();
        // Only what was polled: connections come at the end of the list, below.
        for (std::size_t i = 2; i < polled.size(); ++i)
            serve(*m_connections[i - 2], polled[i].revents);
        if (m_station && m_stalled)
            readLines(*m_station);
        expire();
        if (polled[1].revents != 0)
            acceptAll();
        for (auto const& connection : m_connections)
            flush(*connection);
        sweep();
        noteLeftOut();
    }
    sayGoodbye();
}

/// What a socket does not take at once is lost: the end of the program does not wait for a station.
void StationLink::sayGoodbye() {
    {
        std::lock_guard<std::mutex> const guard(m_answerMutex);
        m_hasStation = false;
    }
    for (auto const& connection : m_connections) {
        if (connection->state() != State::Closing)
            connection->refuse(QStringLiteral("server closed"), m_now);
        connection->write();
    }
    m_station = nullptr;
    m_connections.clear();
    m_listener.reset();
}

void StationLink::wait(std::vector<pollfd>& polled) const {
    bool const accepts = std::chrono::steady_clock::now() >= m_acceptAfter;
    polled.clear();
    polled.push_back({m_wake.descriptor(), POLLIN, 0});
    polled.push_back({accepts ? m_listener->get() : -1, POLLIN, 0});
    for (auto const& connection : m_connections) {
        bool const reads = connection.get() != m_station || !m_stalled;
        int const events = (reads ? POLLIN : 0) | (connection->waitingOut() > 0 ? POLLOUT : 0);
        polled.push_back({connection->socket(), static_cast<short>(events), 0});
    }
    if (::poll(polled.data(), polled.size(), waitMs()) < 0) {
        for (pollfd& one : polled)
            one.revents = 0;
    }
}

/// Until the next moment at which something is to be done without an event; -1 when there is none.
int StationLink::waitMs() const {
    using std::chrono::milliseconds;
    Time const now = std::chrono::steady_clock::now();
    Time next = Time::max();
    for (auto const& connection : m_connections) {
        if (connection->hasDeadline())
            next = std::min(next, connection->deadline());
    }
    if (m_acceptAfter > now)
        next = std::min(next, m_acceptAfter);
    if (m_logLimit.isHoldingBack())
        next = std::min(next, m_logLimit.windowEnd());
    if (next == Time::max())
        return -1;
    return next <= now ? 0 : static_cast<int>(std::chrono::ceil<milliseconds>(next - now).count());
}

void StationLink::serve(StationConnection& connection, short events) {
    if (events == 0 || connection.state() == State::Gone)
        return;
    if ((events & (POLLIN | POLLERR | POLLHUP)) == 0)
        return;
    // A stalled station is not read; only its end is heard of.
    StationConnection::ReadResult const result =
        &connection == m_station && m_stalled ? StationConnection::ReadResult::Ended : connection.read();
    if (connection.state() != State::Closing)
        readLines(connection);
    if (result != StationConnection::ReadResult::Ended || connection.state() == State::Gone)
        return;
    if (connection.waitingIn() > 0 && connection.state() != State::Closing)
        end(connection, QStringLiteral("went in the middle of a line"));
    else
        end(connection,
            connection.state() == State::Waiting ? QStringLiteral("went without a proof") : QStringLiteral("has gone"));
}

void StationLink::readLines(StationConnection& connection) {
    bool const isStation = &connection == m_station;
    if (isStation)
        m_stalled = false;
    while (connection.state() == State::Waiting || connection.state() == State::Proven) {
        if (connection.state() == State::Proven && !m_orders.hasRoom()) {
            m_stalled = true;
            return;
        }
        std::optional<QByteArray> const line = connection.nextLine();
        if (line)
            take(connection, connection.handle(*line));
        else if (connection.isTooLong())
            refuse(connection, connection.state() == State::Proven ? QStringLiteral("line too long")
                                                                   : QStringLiteral("not a proof"));
        else
            return;
    }
}

void StationLink::take(StationConnection& connection, SessionStep const& step) {
    if (step.wrongProof)
        m_guard.failed(connection.address(), m_now);
    if (!step.fault.isEmpty())
        note(true, QStringLiteral("%1: refused %2").arg(connection.name(), step.fault));
    if (step.proven)
        becomeStation(connection);
    if (step.order) {
        StationOrder order = *step.order;
        order.from = connection.name();
        m_orders.push(std::move(order));
    }
    if (!step.refusal.isEmpty())
        refuse(connection, step.refusal);
}

void StationLink::acceptAll() {
    for (int i = 0; i < kAcceptsATurn; ++i) {
        std::string address;
        bool exhausted = false;
        int const socket = acceptConnection(m_listener->get(), address, exhausted);
        if (exhausted)
            m_acceptAfter = m_now + kAcceptPause;
        if (socket < 0)
            return;
        accept(socket, address);
    }
}

void StationLink::accept(int socket, std::string const& address) {
    m_connections.push_back(std::make_unique<StationConnection>(socket, address, m_key, m_limits.badLines));
    StationConnection& connection = *m_connections.back();
    if (m_guard.isBlocked(address, m_now))
        refuse(connection, QStringLiteral("too many failed proofs"));
    else
        connection.greet(m_now + m_limits.proofTime);
    makeRoom();
}

/// Strangers who hold connections open must not keep the station out: the oldest of them gives way.
void StationLink::makeRoom() {
    auto const oldest = [this](State state) {
        StationConnection* first = nullptr;
        std::size_t count = 0;
        for (auto const& connection : m_connections) {
            if (connection->state() != state)
                continue;
            first = first ? first : connection.get();
            ++count;
        }
        return count > m_limits.connections ? first : nullptr;
    };
    if (StationConnection* const waiting = oldest(State::Waiting))
        refuse(*waiting, QStringLiteral("too many connections"));
    if (StationConnection* const closing = oldest(State::Closing)) {
        closing->write();
        closing->close();
    }
}

void StationLink::becomeStation(StationConnection& connection) {
    if (m_station)
        refuse(*m_station, QStringLiteral("another station has taken over"));
    m_station = &connection;
    m_stalled = false;
    note(false, QStringLiteral("%1: connected").arg(connection.name()));
    std::lock_guard<std::mutex> const guard(m_answerMutex);
    m_hasStation = true;
}

/// What is to be done when the station is no longer one, whatever becomes of its connection.
void StationLink::leave(StationConnection& connection) {
    if (&connection != m_station)
        return;
    m_station = nullptr;
    m_stalled = false;
    StationOrder ended;
    ended.kind = OrderKind::Ended;
    ended.from = connection.name();
    m_orders.push(std::move(ended));
    std::lock_guard<std::mutex> const guard(m_answerMutex);
    m_hasStation = false;
    m_overflow = false;
    m_answers.clear();
}

void StationLink::refuse(StationConnection& connection, QString const& reason) {
    note(true, QStringLiteral("%1: refused: %2").arg(connection.name(), reason));
    leave(connection);
    connection.refuse(reason, m_now + m_limits.closingTime);
}

void StationLink::end(StationConnection& connection, QString const& why) {
    if (connection.state() != State::Closing)
        note(connection.state() == State::Waiting, QStringLiteral("%1: %2").arg(connection.name(), why));
    leave(connection);
    connection.close();
}

void StationLink::sendAnswers() {
    QByteArray answers;
    bool overflow = false;
    {
        std::lock_guard<std::mutex> const guard(m_answerMutex);
        answers.swap(m_answers);
        overflow = m_overflow;
    }
    if (!m_station)
        return;
    m_station->queue(answers);
    if (overflow)
        end(*m_station, QStringLiteral("does not take its answers: closed"));
}

void StationLink::flush(StationConnection& connection) {
    if (connection.state() == State::Gone)
        return;
    if (!connection.write())
        end(connection, QStringLiteral("has gone"));
    else if (connection.waitingOut() > m_limits.answerBytes)
        end(connection, QStringLiteral("does not take its answers: closed"));
}

void StationLink::expire() {
    for (auto const& connection : m_connections) {
        if (!connection->hasDeadline() || m_now < connection->deadline())
            continue;
        if (connection->state() == State::Waiting)
            refuse(*connection, QStringLiteral("too late"));
        else
            connection->close();
    }
}

void StationLink::sweep() {
    m_connections.erase(std::remove_if(m_connections.begin(), m_connections.end(),
                                       [](auto const& connection) { return connection->state() == State::Gone; }),
                        m_connections.end());
}

void StationLink::note(bool error, QString const& text) {
    noteLeftOut();
    if (m_logLimit.allows(m_now))
        m_log(error, text);
}

void StationLink::noteLeftOut() {
    if (long long const count = m_logLimit.takeLeftOut(m_now))
        m_log(true, QStringLiteral("%1 more lines left out").arg(count));
}

} // namespace sim
