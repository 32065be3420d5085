// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "simengine/users/rights.h"
#include "simengine/users/userstore.h"

#include <QElapsedTimer>
#include <atomic>

namespace sim {

/// Wrong passwords in a row after which logins are refused for a while, and for how long.
constexpr int kLoginAttempts = 5;
constexpr int kLoginPauseMs = 30'000;

enum class LoginResult { Done, Wrong, TooMany };

/// Who works at the machine. has() from any thread, the rest on the main thread.
class Session {
public:
    explicit Session(UserStore& store)
        : m_store(store) {}

    LoginResult login(QString const& name, QString const& password);
    void logout();
    bool isLoggedIn() const { return !m_user.name.isEmpty(); }
    User const& user() const { return m_user; }
    /// The logged-in user's rights may have been changed in the store.
    void refresh();

    bool has(Right right) const { return (m_rights.load() & right) != 0; }

private:
    UserStore& m_store;
    User m_user;
    std::atomic<unsigned> m_rights{0};
    int m_wrong = 0;
    QElapsedTimer m_lastWrong;
};

/// The machine's users and its one session.
UserStore& userStore();
Session& session();

} // namespace sim
