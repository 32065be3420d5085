// SPDX-License-Identifier: MIT
#include "shell/alarmhistorystore.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QSqlDatabase>
#include <QSqlError>
#include <QSqlQuery>
#include <QVariant>
#include <algorithm>
#include <atomic>
#include <sys/stat.h>

namespace tessera {

namespace {

/// Layout of the table; a file with a higher number is a newer program's.
constexpr int kVersion = 1;

/// Statements that every opening runs. The file stands on a board that can lose power at any time. Exclusive: a second
/// program on the same root must not number its alarms into this one's.
constexpr char const* kPreparation[] = {
    "PRAGMA locking_mode=EXCLUSIVE", "PRAGMA journal_mode=DELETE", "PRAGMA synchronous=EXTRA",
    "PRAGMA busy_timeout=200",       "PRAGMA cache_size=-512",
};

constexpr char kTable[] = "CREATE TABLE IF NOT EXISTS alarms (id INTEGER PRIMARY KEY, code TEXT NOT NULL, "
                          "text TEXT NOT NULL, first_out INTEGER NOT NULL, raised INTEGER NOT NULL, "
                          "cleared INTEGER NOT NULL, ended INTEGER NOT NULL, acknowledged INTEGER NOT NULL, "
                          "user TEXT NOT NULL)";

AlarmEnd endOf(int value) {
    return value >= static_cast<int>(AlarmEnd::Active) && value <= static_cast<int>(AlarmEnd::Crash)
               ? static_cast<AlarmEnd>(value)
               : AlarmEnd::Cleared;
}

/// A null string would be stored as NULL.
QString filled(QString const& text) {
    return text.isNull() ? QStringLiteral("") : text;
}

quint64 fileNumber(QString const& file) {
    struct stat info {};
    return ::stat(QFile::encodeName(file).constData(), &info) == 0 ? static_cast<quint64>(info.st_ino) : 0;
}

/// The reasons for which a database is not one any more.
bool tellsDamage(QString const& code) {
    constexpr int kCorrupt = 11;
    constexpr int kNotADatabase = 26;
    const int number = code.toInt() & 0xFF;
    return number == kCorrupt || number == kNotADatabase;
}

} // namespace

/// An open connection of its own for as long as the object lives.
class AlarmHistoryStore::Database {
public:
    explicit Database(QString const& file)
        : m_Name(QStringLiteral("tessera-alarms-%1").arg(++s_nCount))
        , m_Database(QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"), m_Name)) {
        m_Database.setDatabaseName(file);
        m_bOpen = m_Database.open();
    }
    ~Database() {
        m_Database.close();
        m_Database = QSqlDatabase();
        QSqlDatabase::removeDatabase(m_Name);
    }
    Database(Database const&) = delete;
    Database& operator=(Database const&) = delete;

    bool IsOpen() const { return m_bOpen; }
    QSqlDatabase& Get() { return m_Database; }

private:
    static inline std::atomic<int> s_nCount{0};
    QString m_Name;
    QSqlDatabase m_Database;
    bool m_bOpen = false;
};

AlarmHistoryStore::AlarmHistoryStore(QString file, qint64 startMs, int limit)
    : m_File(std::move(file))
    , m_nStartMs(startMs)
    , m_nLimit(std::max(1, limit)) {}

AlarmHistoryStore::~AlarmHistoryStore() = default;

/// A damaged file is put aside once; when the new one is no better, the disk is at fault.
bool AlarmHistoryStore::Open() {
    m_Error.clear();
    if (m_pDatabase && !m_bDamaged && IsSame())
        return true;
    for (bool again : {true, false}) {
        m_pDatabase.reset();
        m_bDamaged = false;
        if (!QDir().mkpath(QFileInfo(m_File).absolutePath()))
            return Fail(QStringLiteral("the folder cannot be made"));
        m_pDatabase = std::make_unique<Database>(m_File);
        if (m_pDatabase->IsOpen() && Prepare()) {
            m_nFile = fileNumber(m_File);
            return true;
        }
        if (!m_pDatabase->IsOpen())
            Fail(m_pDatabase->Get().lastError().text());
        m_pDatabase.reset();
        if (!m_bDamaged || !again || !SetAside())
            break;
    }
    return false;
}

bool AlarmHistoryStore::Prepare() {
    for (char const* statement : kPreparation) {
        if (!Run(statement))
            return false;
    }
    {
        QSqlQuery check(m_pDatabase->Get());
        check.prepare(QStringLiteral("PRAGMA quick_check(1)"));
        if (!Run(check))
            return false;
        if (!check.next() || check.value(0).toString() != QLatin1String("ok")) {
            m_bDamaged = true;
            return Fail(QStringLiteral("the file is damaged"));
        }
        QSqlQuery version(m_pDatabase->Get());
        version.prepare(QStringLiteral("PRAGMA user_version"));
        if (!Run(version) || !version.next())
            return false;
        if (version.value(0).toInt() > kVersion)
            return Fail(QStringLiteral("made by a newer program"));
    }
    if (!Run(kTable) || !Run("PRAGMA user_version=1"))
        return false;
    QSqlQuery newest(m_pDatabase->Get());
    newest.prepare(QStringLiteral("SELECT COALESCE(MAX(id), 0) FROM alarms"));
    if (!Run(newest) || !newest.next())
        return false;
    m_nBase = newest.value(0).toLongLong();
    newest.finish();
    return EndLeftOpen() && Drop();
}

bool AlarmHistoryStore::IsSame() const {
    const quint64 now = fileNumber(m_File);
    return now != 0 && now == m_nFile;
}

bool AlarmHistoryStore::SetAside() {
    const QString aside = m_File + QStringLiteral(".damaged");
    QFile::remove(aside);
    QFile::remove(m_File + QStringLiteral("-journal"));
    return QFile::rename(m_File, aside);
}

bool AlarmHistoryStore::EndLeftOpen() {
    QSqlQuery query(m_pDatabase->Get());
    query.prepare(QStringLiteral("UPDATE alarms SET ended = ?, cleared = ? WHERE ended = ?"));
    query.addBindValue(static_cast<int>(AlarmEnd::Crash));
    query.addBindValue(m_nStartMs);
    query.addBindValue(static_cast<int>(AlarmEnd::Active));
    return Run(query);
}

bool AlarmHistoryStore::Write(AlarmBatch const& batch) {
    if (!Open())
        return false;
    if (!m_pDatabase->Get().transaction())
        return Fail(m_pDatabase->Get().lastError().text());
    bool good = true;
    for (auto ack = batch.older.begin(); good && ack != batch.older.end(); ++ack)
        good = Acknowledge(*ack, false);
    good = good && (!batch.allOlder || Acknowledge(*batch.allOlder, true));
    for (auto entry = batch.entries.begin(); good && entry != batch.entries.end(); ++entry)
        good = Put(*entry);
    good = good && Drop();
    if (good && m_pDatabase->Get().commit())
        return true;
    if (good)
        Fail(m_pDatabase->Get().lastError().text());
    m_pDatabase->Get().rollback();
    return false;
}

bool AlarmHistoryStore::Read(qint64 below, int count, QVector<AlarmEntry>& entries) {
    entries.clear();
    if (!Open())
        return false;
    QSqlQuery query(m_pDatabase->Get());
    query.setForwardOnly(true);
    query.prepare(QStringLiteral("SELECT id, code, text, first_out, raised, cleared, ended, acknowledged, user "
                                 "FROM alarms WHERE id < ? ORDER BY id DESC LIMIT ?"));
    query.addBindValue(below + m_nBase);
    query.addBindValue(count);
    if (!Run(query))
        return false;
    while (query.next()) {
        AlarmEntry entry;
        entry.number = query.value(0).toLongLong() - m_nBase;
        entry.code = query.value(1).toString();
        entry.text = query.value(2).toString();
        entry.firstOut = query.value(3).toBool();
        entry.raisedMs = query.value(4).toLongLong();
        entry.clearedMs = query.value(5).toLongLong();
        entry.end = endOf(query.value(6).toInt());
        entry.acknowledgedMs = query.value(7).toLongLong();
        entry.acknowledgedBy = query.value(8).toString();
        entries.append(entry);
    }
    return !query.lastError().isValid() || Refuse(query);
}

bool AlarmHistoryStore::Put(AlarmEntry const& entry) {
    QSqlQuery query(m_pDatabase->Get());
    query.prepare(QStringLiteral("INSERT OR REPLACE INTO alarms VALUES (?, ?, ?, ?, ?, ?, ?, ?, ?)"));
    query.addBindValue(entry.number + m_nBase);
    query.addBindValue(filled(entry.code));
    query.addBindValue(filled(entry.text));
    query.addBindValue(entry.firstOut ? 1 : 0);
    query.addBindValue(entry.raisedMs);
    query.addBindValue(entry.clearedMs);
    query.addBindValue(static_cast<int>(entry.end));
    query.addBindValue(entry.acknowledgedMs);
    query.addBindValue(filled(entry.acknowledgedBy));
    return Run(query);
}

bool AlarmHistoryStore::Acknowledge(AlarmAcknowledge const& what, bool all) {
    QSqlQuery query(m_pDatabase->Get());
    query.prepare(all ? QStringLiteral("UPDATE alarms SET acknowledged = ?, user = ? WHERE id <= ? AND "
                                       "acknowledged = 0")
                      : QStringLiteral("UPDATE alarms SET acknowledged = ?, user = ? WHERE id = ? AND "
                                       "acknowledged = 0"));
    query.addBindValue(what.ms);
    query.addBindValue(filled(what.user));
    query.addBindValue(std::min<qint64>(what.number, 0) + m_nBase);
    return Run(query);
}

bool AlarmHistoryStore::Drop() {
    QSqlQuery count(m_pDatabase->Get());
    count.prepare(QStringLiteral("SELECT COUNT(*) FROM alarms"));
    if (!Run(count) || !count.next())
        return false;
    const qint64 excess = count.value(0).toLongLong() - m_nLimit;
    count.finish();
    if (excess <= 0)
        return true;
    QSqlQuery query(m_pDatabase->Get());
    query.prepare(
        QStringLiteral("DELETE FROM alarms WHERE id IN (SELECT id FROM alarms ORDER BY ended = 0, id LIMIT ?)"));
    query.addBindValue(excess);
    return Run(query);
}

bool AlarmHistoryStore::Run(char const* statement) {
    QSqlQuery query(m_pDatabase->Get());
    return query.prepare(QLatin1String(statement)) ? Run(query) : Refuse(query);
}

bool AlarmHistoryStore::Run(QSqlQuery& query) {
    return query.exec() || Refuse(query);
}

bool AlarmHistoryStore::Refuse(QSqlQuery const& query) {
    m_bDamaged = m_bDamaged || tellsDamage(query.lastError().nativeErrorCode());
    return Fail(query.lastError().text());
}

bool AlarmHistoryStore::Fail(QString const& reason) {
    m_Error = m_File + QStringLiteral(": ") + reason.simplified();
    return false;
}

} // namespace tessera
