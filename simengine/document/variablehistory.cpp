// SPDX-License-Identifier: GPL-2.0-or-later
#include "simengine/document/variablehistory.h"

#include "support/approot.h"

#include <QDir>
#include <QFileInfo>
#include <QSqlDatabase>
#include <QSqlError>
#include <QSqlQuery>
#include <QVariant>
#include <atomic>

namespace sim::markedcodes {

namespace {

/// The database stands on a board that can lose power at any time.
constexpr const char* kPreparation[] = {
    "PRAGMA journal_mode=DELETE",
    "PRAGMA synchronous=EXTRA",
    "PRAGMA busy_timeout=3000",
    "CREATE TABLE IF NOT EXISTS marked (code TEXT PRIMARY KEY NOT NULL, seconds INTEGER NOT NULL)",
    "CREATE INDEX IF NOT EXISTS marked_seconds ON marked (seconds)",
};

QString databasePath() {
    return tessera::rootPath(QStringLiteral("/ini/MarkedCodes.db"));
}

/// An open connection of its own for as long as the object lives: connections belong to threads.
class Connection {
public:
    Connection()
        : m_name(QStringLiteral("tessera-codes-%1").arg(++s_count)) {
        m_database = QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"), m_name);
        m_database.setDatabaseName(databasePath());
        m_good = QDir().mkpath(QFileInfo(databasePath()).absolutePath()) && m_database.open();
        if (!m_good)
            m_fault = m_database.lastError().text();
        for (const char* statement : kPreparation)
            prepare(statement);
    }
    ~Connection() {
        m_database.close();
        m_database = QSqlDatabase();
        QSqlDatabase::removeDatabase(m_name);
    }
    Connection(const Connection&) = delete;
    Connection& operator=(const Connection&) = delete;

    bool isGood() const { return m_good; }
    const QString& fault() const { return m_fault; }
    QSqlDatabase& database() { return m_database; }

private:
    void prepare(const char* statement) {
        if (!m_good)
            return;
        QSqlQuery query(m_database);
        m_good = query.exec(QLatin1String(statement));
        if (!m_good)
            m_fault = query.lastError().text();
    }

    static inline std::atomic<int> s_count{0};
    QString m_name;
    QSqlDatabase m_database;
    bool m_good = false;
    QString m_fault;
};

QString told(const QString& fault) {
    return QStringLiteral("%1: %2").arg(databasePath(), fault);
}

bool run(QSqlDatabase& database, const char* statement, const QVariantList& values) {
    QSqlQuery query(database);
    if (!query.prepare(QLatin1String(statement)))
        return false;
    for (const QVariant& value : values)
        query.addBindValue(value);
    return query.exec();
}

} // namespace

Search findSince(const QStringList& codes, const QDateTime& since) {
    if (codes.isEmpty() || !QFileInfo::exists(databasePath()))
        return {};
    Connection connection;
    if (!connection.isGood())
        return {std::nullopt, told(connection.fault())};
    QSqlQuery query(connection.database());
    if (!query.prepare(QStringLiteral("SELECT seconds FROM marked WHERE code = ? AND seconds >= ?")))
        return {std::nullopt, told(query.lastError().text())};
    for (const QString& code : codes) {
        query.addBindValue(code);
        query.addBindValue(since.toSecsSinceEpoch());
        if (!query.exec())
            return {std::nullopt, told(query.lastError().text())};
        if (query.next())
            return {Earlier{code, QDateTime::fromSecsSinceEpoch(query.value(0).toLongLong())}, QString()};
        if (query.lastError().isValid())
            return {std::nullopt, told(query.lastError().text())};
        query.finish();
    }
    return {};
}

bool add(const QStringList& codes, const QDateTime& time, const QDateTime& oldest) {
    if (codes.isEmpty())
        return true;
    Connection connection;
    QSqlDatabase& database = connection.database();
    if (!connection.isGood() || !database.transaction())
        return false;
    bool good = run(database, "DELETE FROM marked WHERE seconds < ?", {oldest.toSecsSinceEpoch()});
    for (const QString& code : codes)
        good = good && run(database, "INSERT OR REPLACE INTO marked (code, seconds) VALUES (?, ?)",
                           {code, time.toSecsSinceEpoch()});
    if (good && database.commit())
        return true;
    database.rollback();
    return false;
}

} // namespace sim::markedcodes
