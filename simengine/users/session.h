// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "simengine/users/loginguard.h"
#include "simengine/users/rights.h"
#include "simengine/users/userstore.h"

#include <atomic>

namespace sim {

enum class LoginResult { Done, Wrong, TooMany };

/// Who works at the machine. has() from any thread, the rest on the main thread.
class Session {
public:
    explicit Session(UserStore& store, std::function<BootTime()> clock = bootTime)
        : m_store(store)
        , m_guard(store, std::move(clock)) {}

    LoginResult login(QString const& name, QString const& password);
    /// Looks at a password without a login; wrong ones count as those of logins do.
    LoginResult confirm(QString const& name, QString const& password);
    /// How long passwords are still refused, ms; 0 when the next one is looked at.
    int lockedMs() { return m_guard.lockedMs(); }
    void logout();
    bool isLoggedIn() const { return !m_user.name.isEmpty(); }
    User const& user() const { return m_user; }
    /// The logged-in user's rights may have been changed in the store.
    void refresh();

    bool has(Right right) const { return (m_rights.load() & right) != 0; }

private:
    LoginResult check(QString const& name, QString const& password, User& user);

    UserStore& m_store;
    LoginGuard m_guard;
    User m_user;
    std::atomic<unsigned> m_rights{0};
};

/// The machine's users and its one session.
UserStore& userStore();
Session& session();

} // namespace sim
