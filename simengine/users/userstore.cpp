// SPDX-License-Identifier: GPL-2.0-or-later
#include "simengine/users/userstore.h"

#include "simengine/users/passwordhash.h"
#include "simengine/users/rights.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QSqlDatabase>
#include <QSqlQuery>
#include <QVariant>
#include <algorithm>
#include <atomic>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace sim {

namespace {

/// Statements that every opening runs. The database stands on a board that can lose power at any time.
constexpr char const* kPreparation[] = {
    "PRAGMA journal_mode=DELETE",
    "PRAGMA synchronous=EXTRA", // FULL, and the directory is synced behind the journal's removal
    "PRAGMA busy_timeout=3000",
    "PRAGMA secure_delete=ON",
    "CREATE TABLE IF NOT EXISTS users (name TEXT PRIMARY KEY NOT NULL, hash TEXT NOT NULL, "
    "administrator INTEGER NOT NULL, rights INTEGER NOT NULL)",
    "CREATE TABLE IF NOT EXISTS attempts (id INTEGER PRIMARY KEY CHECK (id = 0), wrong INTEGER NOT NULL, "
    "boot TEXT NOT NULL, ms INTEGER NOT NULL)",
};

/// Nobody else may put a file of theirs in the place of one in the folder.
bool guardFolder(QString const& folder) {
    QByteArray const name = QFile::encodeName(folder);
    struct stat info {};
    if (!QDir().mkpath(folder) || ::stat(name.constData(), &info) != 0)
        return false;
    mode_t const others = info.st_mode & (S_IWGRP | S_IWOTH);
    return others == 0 || ::chmod(name.constData(), (info.st_mode & 07777) & ~others) == 0;
}

/// A file that others may not read from its first moment on; one that came from elsewhere with another mode is closed
/// to them before it is used. The database gives its journal the same mode.
bool makePrivateFile(QString const& path) {
    if (!guardFolder(QFileInfo(path).absolutePath()))
        return false;
    int const file = ::open(QFile::encodeName(path).constData(), O_RDWR | O_CREAT | O_CLOEXEC | O_NOFOLLOW, 0600);
    if (file < 0)
        return false;
    bool const closed = ::fchmod(file, 0600) == 0;
    return ::close(file) == 0 && closed;
}

/// An open connection of its own for as long as the object lives.
class Connection {
public:
    explicit Connection(QString const& path)
        : m_name(QStringLiteral("tessera-users-%1").arg(++s_count)) {
        m_database = QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"), m_name);
        m_database.setDatabaseName(path);
        m_good = makePrivateFile(path) && m_database.open();
        for (char const* statement : kPreparation)
            m_good = m_good && QSqlQuery(m_database).exec(QLatin1String(statement));
    }
    ~Connection() {
        m_database.close();
        m_database = QSqlDatabase();
        QSqlDatabase::removeDatabase(m_name);
    }
    Connection(Connection const&) = delete;
    Connection& operator=(Connection const&) = delete;

    bool isGood() const { return m_good; }
    QSqlDatabase& database() { return m_database; }

private:
    static inline std::atomic<int> s_count{0};
    QString m_name;
    QSqlDatabase m_database;
    bool m_good = false;
};

bool isName(QString const& name) {
    auto const control = [](QChar c) { return c.unicode() < 0x20 || c.unicode() == 0x7F; };
    return !name.isEmpty() && name == name.trimmed() && name.size() <= kUserNameMax &&
           std::none_of(name.begin(), name.end(), control);
}

bool isPassword(QString const& password) {
    return password.size() >= kPasswordMin && password.size() <= kPasswordMax;
}

User readUser(QSqlQuery const& row) {
    User user;
    user.name = row.value(0).toString();
    user.administrator = row.value(1).toBool();
    user.rights = user.administrator ? static_cast<unsigned>(AllRights) : row.value(2).toUInt() & AllRights;
    return user;
}

/// Runs a statement with its values; the number of rows that it has changed, -1 when it failed.
int run(QSqlDatabase& database, char const* statement, QVariantList const& values) {
    QSqlQuery query(database);
    if (!query.prepare(QLatin1String(statement)))
        return -1;
    for (QVariant const& value : values)
        query.addBindValue(value);
    return query.exec() ? query.numRowsAffected() : -1;
}

/// A name that is there in any spelling of its letters is taken.
std::optional<bool> hasUser(QSqlDatabase& database, QString const& name) {
    QSqlQuery query(database);
    if (!query.exec(QStringLiteral("SELECT name FROM users")))
        return std::nullopt;
    while (query.next()) {
        if (query.value(0).toString().compare(name, Qt::CaseInsensitive) == 0)
            return true;
    }
    return false;
}

/// After a change: somebody must be left who manages users, unless nobody is left at all.
UserResult checkAdministrators(QSqlDatabase& database) {
    QSqlQuery query(database);
    if (!query.exec(QStringLiteral("SELECT COUNT(*), TOTAL(administrator <> 0) FROM users")) || !query.next())
        return UserResult::Failed;
    bool const headless = query.value(0).toInt() > 0 && query.value(1).toInt() == 0;
    return headless ? UserResult::LastAdministrator : UserResult::Done;
}

UserResult changed(int rows) {
    return rows < 0 ? UserResult::Failed : rows == 0 ? UserResult::UnknownUser : UserResult::Done;
}

} // namespace

std::optional<QVector<User>> UserStore::users() const {
    Connection connection(m_path);
    QSqlQuery query(connection.database());
    if (!connection.isGood() ||
        !query.exec(QStringLiteral("SELECT name, administrator, rights FROM users ORDER BY name")))
        return std::nullopt;
    QVector<User> users;
    while (query.next())
        users.append(readUser(query));
    return users;
}

std::optional<User> UserStore::check(QString const& name, QString const& password) const {
    // An unknown name costs a verification too, so that the time does not tell which names there are.
    static QByteArray const decoy = hashPassword(QStringLiteral("decoy"));
    if (password.size() > kPasswordMax)
        return std::nullopt;
    Connection connection(m_path);
    QSqlQuery query(connection.database());
    bool const asked =
        connection.isGood() &&
        query.prepare(QStringLiteral("SELECT name, administrator, rights, hash FROM users WHERE name=?"));
    query.addBindValue(name);
    if (!asked || !query.exec() || !query.next()) {
        verifyPassword(decoy, password);
        return std::nullopt;
    }
    if (!verifyPassword(query.value(3).toByteArray(), password))
        return std::nullopt;
    return readUser(query);
}

/// Does `work` in one transaction, which stands only when the result is Done.
UserResult UserStore::change(std::function<UserResult(QSqlDatabase&)> const& work) const {
    Connection connection(m_path);
    if (!connection.isGood() || !connection.database().transaction())
        return UserResult::Failed;
    UserResult result = work(connection.database());
    if (result == UserResult::Done)
        result = checkAdministrators(connection.database());
    if (result == UserResult::Done)
        return connection.database().commit() ? UserResult::Done : UserResult::Failed;
    connection.database().rollback();
    return result;
}

UserResult UserStore::add(User const& user, QString const& password) {
    if (!isName(user.name))
        return UserResult::NameMissing;
    if (!isPassword(password))
        return UserResult::PasswordLength;
    QByteArray const hash = hashPassword(password);
    if (hash.isEmpty())
        return UserResult::Failed;
    return change([&](QSqlDatabase& database) {
        std::optional<bool> const taken = hasUser(database, user.name);
        if (!taken)
            return UserResult::Failed;
        if (*taken)
            return UserResult::NameTaken;
        return changed(
            run(database, "INSERT INTO users (name, hash, administrator, rights) VALUES (?, ?, ?, ?)",
                {user.name, QString::fromLatin1(hash), user.administrator ? 1 : 0, user.rights & AllRights}));
    });
}

UserResult UserStore::setPassword(QString const& name, QString const& password) {
    if (!isPassword(password))
        return UserResult::PasswordLength;
    QByteArray const hash = hashPassword(password);
    if (hash.isEmpty())
        return UserResult::Failed;
    return change([&](QSqlDatabase& database) {
        return changed(run(database, "UPDATE users SET hash=? WHERE name=?", {QString::fromLatin1(hash), name}));
    });
}

UserResult UserStore::setRights(User const& user) {
    return change([&](QSqlDatabase& database) {
        return changed(run(database, "UPDATE users SET administrator=?, rights=? WHERE name=?",
                           {user.administrator ? 1 : 0, user.rights & AllRights, user.name}));
    });
}

UserResult UserStore::remove(QString const& name) {
    return change(
        [&](QSqlDatabase& database) { return changed(run(database, "DELETE FROM users WHERE name=?", {name})); });
}

std::optional<LoginAttempts> UserStore::attempts() const {
    Connection connection(m_path);
    QSqlQuery query(connection.database());
    if (!connection.isGood() || !query.exec(QStringLiteral("SELECT wrong, boot, ms FROM attempts")))
        return std::nullopt;
    LoginAttempts attempts;
    if (query.next()) {
        attempts.wrong = query.value(0).toInt();
        attempts.boot = query.value(1).toString();
        attempts.ms = query.value(2).toLongLong();
    }
    return attempts;
}

bool UserStore::setAttempts(LoginAttempts const& attempts) {
    Connection connection(m_path);
    return connection.isGood() &&
           run(connection.database(), "INSERT OR REPLACE INTO attempts (id, wrong, boot, ms) VALUES (0, ?, ?, ?)",
               {attempts.wrong, attempts.boot.isNull() ? QStringLiteral("") : attempts.boot, attempts.ms}) == 1;
}

char const* userResultKey(UserResult result) {
    switch (result) {
    case UserResult::Done:
        return "保存成功";
    case UserResult::NameMissing:
        return "请输入用户名";
    case UserResult::NameTaken:
        return "用户名已存在";
    case UserResult::PasswordLength:
        return "密码不能少于4个字符";
    case UserResult::UnknownUser:
        return "用户不存在";
    case UserResult::LastAdministrator:
        return "不能删除最后一个管理员";
    case UserResult::Failed:
        break;
    }
    return "保存失败";
}

} // namespace sim
