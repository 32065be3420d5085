// SPDX-License-Identifier: GPL-2.0-or-later
#include "engine/ccsserver.h"

#include "engine/marklog.h"

// The simulated machine has no controlling station: its command server never listens, so no command comes in and there
// is nobody to answer. InitServer says so; the front end runs on without the channel.
struct CCSServer::Private {};

CCSServer::CCSServer()
    : d(std::make_unique<Private>()) {}

CCSServer::~CCSServer() = default;

CCSServer* CCSServer::Instance() {
    static CCSServer instance;
    return &instance;
}

void CCSServer::WriteTcpMsg(CCSCmd cmd, int tag) {
    MarkLog::Instance()->ShowNode(
        NoteDebug, QStringLiteral("command server: no station to answer %1 (%2)").arg(cmd.Name).arg(tag));
}

bool InitServer() {
    MarkLog::Instance()->ShowNote_Error(QStringLiteral("command server: not available on the simulated machine"));
    return false;
}

void CloseServer() {}
