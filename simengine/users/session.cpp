// SPDX-License-Identifier: GPL-2.0-or-later
#include "simengine/users/session.h"

#include "engine/marklog.h"
#include "support/approot.h"

namespace sim {

LoginResult Session::check(QString const& name, QString const& password, User& user) {
    if (!m_guard.begin())
        return LoginResult::TooMany;
    std::optional<User> const found = m_store.check(name, password);
    if (!found)
        return LoginResult::Wrong;
    m_guard.succeed();
    user = *found;
    return LoginResult::Done;
}

LoginResult Session::login(QString const& name, QString const& password) {
    User user;
    LoginResult const result = check(name, password, user);
    if (result == LoginResult::Wrong)
        MarkLog::Instance()->ShowNode(NoteOperator, QStringLiteral("login refused: %1").arg(name));
    if (result != LoginResult::Done)
        return result;
    m_user = user;
    m_rights = user.rights;
    MarkLog::Instance()->ShowNode(NoteOperator, QStringLiteral("login: %1").arg(user.name));
    return result;
}

LoginResult Session::confirm(QString const& name, QString const& password) {
    User user;
    LoginResult const result = check(name, password, user);
    if (result == LoginResult::Wrong)
        MarkLog::Instance()->ShowNode(NoteOperator, QStringLiteral("password refused: %1").arg(name));
    return result;
}

void Session::logout() {
    if (isLoggedIn())
        MarkLog::Instance()->ShowNode(NoteOperator, QStringLiteral("logout: %1").arg(m_user.name));
    m_user = User();
    m_rights = 0;
}

void Session::refresh() {
    if (!isLoggedIn())
        return;
    std::optional<QVector<User>> const users = m_store.users();
    if (!users)
        return;
    for (User const& user : *users) {
        if (user.name == m_user.name) {
            m_user = user;
            m_rights = user.rights;
            return;
        }
    }
    logout();
}

UserStore& userStore() {
    static UserStore store(tessera::rootPath(QStringLiteral("/ini/Users.db")));
    return store;
}

Session& session() {
    static Session instance(userStore());
    return instance;
}

} // namespace sim
