// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "engine/ccsserver.h"
#include "simengine/servers/linklimits.h"

namespace sim {
struct StationOrder;
}

/// How InitServer and CloseServer reach the server, and tests with shorter times. Main thread.
struct CCSServerAccess {
    /// True when it listens, also when it did so before. Not from within a command.
    static bool start(CCSServer& server, sim::LinkLimits const& limits);
    /// Harmless when it does not run, and from within a command.
    static void stop(CCSServer& server);
    /// The port that it listens at; 0 when it does not.
    static quint16 port(CCSServer const& server);

private:
    static void handleOne(CCSServer& server);
    static void tell(CCSServer& server, sim::StationOrder const& order);
};
