// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include <QString>
#include <QVector>
#include <functional>
#include <optional>

class QSqlDatabase;

namespace sim {

/// Longest user name, characters.
constexpr int kUserNameMax = 64;

struct User {
    QString name;
    bool administrator = false; ///< has all rights and manages users
    unsigned rights = 0;        ///< Right
};

/// Wrong passwords in a row, and when the last one was: see LoginGuard.
struct LoginAttempts {
    int wrong = 0;
    QString boot;  ///< which start of the machine
    qint64 ms = 0; ///< since then
};

enum class UserResult {
    Done,
    NameMissing, ///< empty, too long, or with a control character
    NameTaken,
    PasswordLength,
    UnknownUser,
    LastAdministrator, ///< the change would leave nobody to manage users
    Failed             ///< the database could not be read or written
};

/// The users in the database /ini/Users.db, which only the owner of the program may read, as the journal beside it, and
/// in whose folder only the owner may write. Passwords are there as
/// argon2id hashes alone. Every call opens and closes the database, and what it has changed is on the disk when it
/// returns. Needs an application object. Main thread.
class UserStore {
public:
    /// `path` is absolute.
    explicit UserStore(QString const& path)
        : m_path(path) {}

    /// In order of their names; nothing when the database cannot be read.
    std::optional<QVector<User>> users() const;
    /// The user when name and password belong together; nothing otherwise, for an unknown name as slowly.
    std::optional<User> check(QString const& name, QString const& password) const;

    UserResult add(User const& user, QString const& password);
    UserResult setPassword(QString const& name, QString const& password);
    UserResult setRights(User const& user);
    UserResult remove(QString const& name);

    /// Nothing when the database cannot be read.
    std::optional<LoginAttempts> attempts() const;
    /// False when they could not be written.
    bool setAttempts(LoginAttempts const& attempts);

private:
    UserResult change(std::function<UserResult(QSqlDatabase&)> const& work) const;

    QString m_path;
};

/// Text of what went wrong for the operator; the key of "保存成功" for Done.
char const* userResultKey(UserResult result);

} // namespace sim
