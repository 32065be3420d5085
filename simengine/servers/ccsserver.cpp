// SPDX-License-Identifier: GPL-2.0-or-later
#include "engine/ccsserver.h"

#include "engine/marklog.h"
#include "simengine/card/cardcore.h"
#include "simengine/servers/ccsserveraccess.h"
#include "simengine/servers/commandserversettings.h"
#include "simengine/servers/documentuploads.h"
#include "simengine/servers/stationlink.h"
#include "simengine/servers/stationmessage.h"

#include <QHostAddress>
#include <QSocketNotifier>
#include <shared_mutex>
#include <utility>

struct CCSServer::Private {
    std::unique_ptr<QSocketNotifier> notifier;
    std::shared_mutex mutex; ///< the link stays while it is held for reading; written on the main thread
    std::unique_ptr<sim::StationLink> link;
    QString sender; ///< of the command that is being told; main thread

    bool send(QByteArray const& lines) {
        std::shared_lock<std::shared_mutex> const lock(mutex);
        return link && link->send(lines);
    }
};

namespace {

void note(QString const& text) {
    MarkLog::Instance()->ShowNode(NoteDebug, QStringLiteral("command server: ") + text);
}

void noteError(QString const& text) {
    MarkLog::Instance()->ShowNote_Error(QStringLiteral("command server: ") + text);
}

void noteLink(bool error, QString const& text) {
    if (error)
        noteError(text);
    else
        MarkLog::Instance()->ShowNote(QStringLiteral("command server: ") + text);
}

/// What an operator who looks for the reason of an answer is told of it.
QString answerText(CCSCmd const& cmd, int tag) {
    QStringList arguments;
    for (QString const& argument : cmd.Args)
        arguments.append(sim::loggable(argument));
    return QStringLiteral("%1 (tag %2): %3")
        .arg(sim::loggable(cmd.Name))
        .arg(tag)
        .arg(arguments.join(QStringLiteral(", ")));
}

QByteArray putDocument(sim::StationOrder const& order) {
    QString error;
    std::optional<qint64> const size = sim::stationUploads().put(order.name, order.offset, order.data, error);
    if (size)
        return sim::storedLine(order.name, *size);
    noteError(QStringLiteral("%1: refused line %2: %3").arg(order.from).arg(order.line).arg(error));
    return sim::errorLine(order.line, error);
}

} // namespace

CCSServer::CCSServer()
    : d(std::make_unique<Private>()) {}

CCSServer::~CCSServer() = default;

CCSServer* CCSServer::Instance() {
    static CCSServer instance;
    return &instance;
}

// By value, as the boundary has it.
void CCSServer::WriteTcpMsg(CCSCmd cmd, int tag) { // NOLINT(performance-unnecessary-value-param)
    std::vector<sim::JournalValue> args = sim::journalArgs(tag, cmd.Id, cmd.Name.toStdString(), cmd.First, cmd.Second);
    for (QString const& arg : cmd.Args)
        args.emplace_back(arg.toStdString());
    sim::simulatedCard().journal().add("WriteTcpMsg", std::move(args));
    QByteArray const line = sim::answerLine(cmd, tag);
    if (line.size() > sim::kMaxLineBytes)
        noteError(
            QStringLiteral("the answer to %1 (tag %2) is too long to be sent").arg(sim::loggable(cmd.Name)).arg(tag));
    else if (d->send(line))
        note(QStringLiteral("answered ") + answerText(cmd, tag));
    else
        note(QStringLiteral("no station to answer ") + answerText(cmd, tag));
}

QString CCSServer::CommandSender() const {
    return d->sender;
}

bool CCSServerAccess::start(CCSServer& server, sim::LinkLimits const& limits) {
    if (server.d->link)
        return true;
    QString error;
    std::optional<sim::CommandServerSettings> const settings = sim::commandServerSettings(error);
    std::optional<QByteArray> const key = settings ? sim::commandServerKey(settings->keyFile, error) : std::nullopt;
    auto link = key ? std::make_unique<sim::StationLink>(*key, limits, noteLink) : nullptr;
    if (!link || !link->start(settings->address, settings->port, error)) {
        noteError(QStringLiteral("does not start: ") + error);
        return false;
    }
    noteLink(false, QStringLiteral("listens at %1 port %2").arg(settings->address).arg(link->port()));
    if (!QHostAddress(settings->address).isLoopback())
        noteLink(false, QStringLiteral("is open to the network"));
    server.d->notifier = std::make_unique<QSocketNotifier>(link->orderDescriptor(), QSocketNotifier::Read);
    QObject::connect(server.d->notifier.get(), &QSocketNotifier::activated, &server, [&server] { handleOne(server); });
    std::unique_lock<std::shared_mutex> const lock(server.d->mutex);
    server.d->link = std::move(link);
    return true;
}

void CCSServerAccess::stop(CCSServer& server) {
    // Kept, since a command that closes the server is a call of the notifier's.
    if (server.d->notifier)
        server.d->notifier->setEnabled(false);
    std::unique_ptr<sim::StationLink> link;
    {
        std::unique_lock<std::shared_mutex> const lock(server.d->mutex);
        link.swap(server.d->link);
    }
    link.reset();
    sim::stationUploads().clear();
}

quint16 CCSServerAccess::port(CCSServer const& server) {
    return server.d->link ? server.d->link->port() : quint16(0);
}

/// A command whose handling runs an event loop may be overtaken by the next one.
void CCSServerAccess::tell(CCSServer& server, sim::StationOrder const& order) {
    QString const outer = std::exchange(server.d->sender, order.from);
    emit server.SendSignals(order.command, order.tag);
    server.d->sender = outer;
}

/// One order a turn of the event loop, so that a row of them does not keep the input poll waiting.
void CCSServerAccess::handleOne(CCSServer& server) {
    std::optional<sim::StationOrder> const order = server.d->link ? server.d->link->takeOrder() : std::nullopt;
    if (!order)
        return;
    switch (order->kind) {
    case sim::OrderKind::Command:
        note(QStringLiteral("%1: %2 (tag %3), %4 arguments")
                 .arg(order->from, order->command.Name)
                 .arg(order->tag)
                 .arg(order->command.Args.size()));
        tell(server, *order);
        break;
    case sim::OrderKind::Put:
        server.d->send(putDocument(*order));
        break;
    case sim::OrderKind::Drop:
        sim::stationUploads().drop(order->name);
        server.d->send(sim::droppedLine(order->name));
        break;
    case sim::OrderKind::Ended:
        sim::stationUploads().clear();
        break;
    }
}

bool InitServer() {
    sim::simulatedCard().journal().add("InitServer");
    return CCSServerAccess::start(*CCSServer::Instance(), sim::LinkLimits());
}

void CloseServer() {
    sim::simulatedCard().journal().add("CloseServer");
    CCSServerAccess::stop(*CCSServer::Instance());
}
