// SPDX-License-Identifier: GPL-2.0-or-later
#include "engine/ccdserver.h"

#include "engine/marklog.h"
#include "engine/systemparam.h"

// The simulated machine has no camera: the link does not listen, and so no camera is ever connected.
struct CCDServer::Private {};

namespace {

std::unique_ptr<CCDServer>& holder() {
    static std::unique_ptr<CCDServer> server;
    return server;
}

void logAddress() {
    MarkLog::Instance()->ShowNote(QStringLiteral("camera link: not available on the simulated machine (address %1)")
                                      .arg(SystemParam::Instance()->GetStaticIP()));
}

} // namespace

CCDServer::CCDServer()
    : d(std::make_unique<Private>()) {}

CCDServer::~CCDServer() = default;

void CCDServer::InitCCDServer() {
    if (holder())
        return;
    holder().reset(new CCDServer);
    logAddress();
}

CCDServer* CCDServer::Instance() {
    return holder().get();
}

bool CCDServer::HasClient() const {
    return false;
}

void CCDServer::SetStaticIP() {
    logAddress();
}
