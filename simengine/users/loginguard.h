// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "simengine/users/userstore.h"

#include <QString>
#include <functional>
#include <optional>

namespace sim {

/// Wrong passwords in a row after which no password is looked at for a while, and for how long.
constexpr int kLoginAttempts = 5;
constexpr int kLoginPauseMs = 30'000;

/// A moment on a clock that nobody sets: which start of the machine, and how long ago that was.
struct BootTime {
    QString boot;
    qint64 ms = 0;
};
BootTime bootTime();

/// Counts wrong passwords in a row. The count is in the user database, so that neither a new dialog nor a restart of
/// the program nor one of the machine begins it anew, and it goes by the time since the start of the machine, so that
/// setting the clock does not end a pause. Main thread.
class LoginGuard {
public:
    explicit LoginGuard(UserStore& store, std::function<BootTime()> clock = bootTime)
        : m_store(store)
        , m_clock(std::move(clock)) {}

    /// How long passwords are still refused, ms; 0 when the next one is looked at.
    int lockedMs();
    /// Counts an attempt as a wrong one. Call it before the password is looked at: who switches the program off in
    /// between has used the attempt up. False, with nothing counted, in a pause.
    bool begin();
    /// The attempt was a right one.
    void succeed();

private:
    LoginAttempts& attempts();

    UserStore& m_store;
    std::function<BootTime()> m_clock;
    std::optional<LoginAttempts> m_attempts;
};

} // namespace sim
