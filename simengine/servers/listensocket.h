// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include <QString>
#include <string>

namespace sim {

/// A listening socket that does not block, at a numeric IPv4 or IPv6 address; port 0 is any, and `bound` is the one in
/// use. -1 and the reason when it cannot be. Any thread.
int openListener(QString const& address, quint16 port, quint16& bound, QString& error);

/// The next connection and the numeric address that it comes from; -1 when there is none. `exhausted` tells that there
/// may be one that the process has no means to take now.
int acceptConnection(int listener, std::string& address, bool& exhausted);

/// Lets the system find out within a minute that the other side's power or cable is gone, and sends small lines at
/// once.
void watchConnection(int socket);

} // namespace sim
