// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include <QString>

namespace sim {

/// The administrator's keypad password. The front end compares it itself, so unlike a user's password it cannot be kept
/// as a hash: it stands in /ini/AdminPassword, which only the owner of the program may read. It guards dialogs of the
/// machine, not the data of users; it should not be the password of anybody's login.

/// Empty when none was set.
QString readAdminPassword();
/// Only digits fit, since the keypad has no more; empty takes the password away. False for another text or when the
/// file could not be written.
bool writeAdminPassword(QString const& digits);

} // namespace sim
