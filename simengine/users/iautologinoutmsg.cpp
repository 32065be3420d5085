// SPDX-License-Identifier: GPL-2.0-or-later
#include "engine/iautologinoutmsg.h"

namespace {

IAutoLoginOutMsg* g_logoutSink = nullptr;

} // namespace

IAutoLoginOutMsg::~IAutoLoginOutMsg() {
    if (g_logoutSink == this)
        g_logoutSink = nullptr;
}

void IAutoLoginOutMsg::SetInstance(IAutoLoginOutMsg* sink) {
    g_logoutSink = sink;
}

IAutoLoginOutMsg* IAutoLoginOutMsg::Instance() {
    return g_logoutSink;
}
