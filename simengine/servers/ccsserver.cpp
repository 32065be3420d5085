// SPDX-License-Identifier: GPL-2.0-or-later
#include "engine/ccsserver.h"

#include "engine/marklog.h"
#include "simengine/card/cardcore.h"

// The simulated machine has no controlling station: its command server never listens, so no command comes in and there
// is nobody to answer. InitServer says so; the front end runs on without the channel. What would have been sent is in
// the machine's journal.
struct CCSServer::Private {};

CCSServer::CCSServer()
    : d(std::make_unique<Private>()) {}

CCSServer::~CCSServer() = default;

CCSServer* CCSServer::Instance() {
    static CCSServer instance;
    return &instance;
}

void CCSServer::WriteTcpMsg(CCSCmd cmd, int tag) {
    std::vector<sim::JournalValue> args = sim::journalArgs(tag, cmd.Id, cmd.Name.toStdString(), cmd.First, cmd.Second);
    for (QString const& arg : cmd.Args)
        args.emplace_back(arg.toStdString());
    sim::simulatedCard().journal().add("WriteTcpMsg", std::move(args));
    MarkLog::Instance()->ShowNode(
        NoteDebug, QStringLiteral("command server: no station to answer %1 (%2)").arg(cmd.Name).arg(tag));
}

bool InitServer() {
    sim::simulatedCard().journal().add("InitServer");
    MarkLog::Instance()->ShowNote_Error(QStringLiteral("command server: not available on the simulated machine"));
    return false;
}

void CloseServer() {
    sim::simulatedCard().journal().add("CloseServer");
}
