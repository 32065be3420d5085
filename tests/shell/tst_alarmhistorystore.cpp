// SPDX-License-Identifier: MIT
#include "tests/shell/alarmhistorycase.h"

#include <QDir>
#include <QProcess>
#include <QRandomGenerator>
#include <csignal>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

using namespace tessera;
using namespace tests;

namespace {

AlarmBatch batchOf(QVector<AlarmEntry> const& entries) {
    AlarmBatch batch;
    for (AlarmEntry const& each : entries)
        batch.entries.insert(each.number, each);
    return batch;
}

/// The database was broken off within a write: its journal has not been ended.
bool hasOpenJournal(QString const& file) {
    QFile journal(file + QStringLiteral("-journal"));
    return journal.open(QIODevice::ReadOnly) && journal.read(4) == QByteArray("\xD9\xD5\x05\xF9", 4);
}

/// No file of this process may grow beyond a length: the disk is full.
class FullDisk {
public:
    explicit FullDisk(qint64 bytes) {
        m_Former = std::signal(SIGXFSZ, SIG_IGN);
        ::getrlimit(RLIMIT_FSIZE, &m_Limit);
        struct rlimit low = m_Limit;
        low.rlim_cur = static_cast<rlim_t>(bytes);
        m_bSet = ::setrlimit(RLIMIT_FSIZE, &low) == 0;
    }
    ~FullDisk() {
        ::setrlimit(RLIMIT_FSIZE, &m_Limit);
        std::signal(SIGXFSZ, m_Former);
    }
    bool IsSet() const { return m_bSet; }

private:
    struct rlimit m_Limit {};
    void (*m_Former)(int) = nullptr;
    bool m_bSet = false;
};

/// A folder in which this process can make and change nothing, an administrator's process neither.
class LockedFolder {
public:
    explicit LockedFolder(QString const& folder)
        : m_Folder(QFile::encodeName(folder)) {
        m_bLocked = ::chmod(m_Folder.constData(), 0555) == 0;
        if (::geteuid() == 0)
            m_bLocked = m_bLocked && ::seteuid(65534) == 0;
    }
    ~LockedFolder() {
        if (::geteuid() != ::getuid() && ::seteuid(::getuid()) != 0)
            qFatal("the user cannot be restored");
        ::chmod(m_Folder.constData(), 0755);
    }
    bool IsLocked() const { return m_bLocked; }

private:
    QByteArray m_Folder;
    bool m_bLocked = false;
};

} // namespace

/// The history on the disk: whole after whatever happens to it.
class AlarmHistoryStoreTest : public QObject, private AlarmHistoryCase {
    Q_OBJECT

private slots:
    void init() {
        begin();
        // Other users must get as far as the folder for the tests that take rights away.
        QCOMPARE(::chmod(QFile::encodeName(m_Folder->path()).constData(), 0755), 0);
    }
    void cleanup() { end(); }

    void what_is_written_is_read_back_newest_first();
    void a_new_run_numbers_behind_the_old_ones();
    void an_entry_that_changes_is_replaced();
    void pages_follow_one_another_without_gap_or_overlap();
    void what_a_crash_left_open_is_ended_at_the_next_start_and_says_so();
    void acknowledgements_of_earlier_runs_are_kept();
    void twelve_thousand_leave_the_newest_ten_thousand();
    void an_active_entry_outlives_the_limit();
    void a_damaged_file_is_put_aside_and_a_new_one_begun_data();
    void a_damaged_file_is_put_aside_and_a_new_one_begun();
    void a_file_of_a_newer_program_is_left_alone();
    void a_second_program_is_refused();
    void a_file_that_is_taken_away_is_made_anew();
    void a_full_disk_refuses_the_batch_whole_and_works_again_later();
    void a_folder_that_cannot_be_written_is_told();
    void a_kill_at_any_moment_loses_nothing_that_was_reported();
};

void AlarmHistoryStoreTest::what_is_written_is_read_back_newest_first() {
    AlarmEntry full = entry(2, AlarmEnd::ProgramEnd);
    full.acknowledgedMs = 99;
    full.acknowledgedBy = QStringLiteral("O'Neill \"x\" 李");
    {
        AlarmHistoryStore store(m_File, kStart);
        QVERIFY2(store.Write(batchOf({entry(1), full, entry(3)})), qPrintable(store.Error()));
        QVector<AlarmEntry> all;
        QVERIFY(store.Read(kNewest, kAll, all));
        QCOMPARE(all, (QVector<AlarmEntry>{entry(3), full, entry(1)}));
    }
    full.number = -1;
    const QVector<AlarmEntry> later = contentOf(m_File);
    QCOMPARE(later.size(), 3);
    QCOMPARE(later.at(1), full);
}

void AlarmHistoryStoreTest::a_new_run_numbers_behind_the_old_ones() {
    {
        AlarmHistoryStore store(m_File, kStart);
        QVERIFY(store.Write(range(1, 3)));
    }
    AlarmHistoryStore store(m_File, kStart);
    QVERIFY(store.Write(range(1, 2)));
    QVector<AlarmEntry> all;
    QVERIFY(store.Read(kNewest, kAll, all));
    QVector<qint64> numbers;
    for (AlarmEntry const& each : all)
        numbers.append(each.number);
    QCOMPARE(numbers, (QVector<qint64>{2, 1, 0, -1, -2}));
    QCOMPARE(all.at(0).raisedMs, 1002);
    QCOMPARE(all.at(2).raisedMs, 1003);
}

void AlarmHistoryStoreTest::an_entry_that_changes_is_replaced() {
    AlarmHistoryStore store(m_File, kStart);
    QVERIFY(store.Write(batchOf({entry(1, AlarmEnd::Active)})));
    QVERIFY(store.Write(batchOf({entry(1)})));
    QVERIFY(store.Write(batchOf({entry(1)})));
    QVector<AlarmEntry> all;
    QVERIFY(store.Read(kNewest, kAll, all));
    QCOMPARE(all, QVector<AlarmEntry>{entry(1)});
}

void AlarmHistoryStoreTest::pages_follow_one_another_without_gap_or_overlap() {
    AlarmHistoryStore store(m_File, kStart);
    QVERIFY(store.Write(range(1, 25)));
    qint64 below = kNewest;
    qint64 expected = 25;
    QVector<AlarmEntry> page;
    for (int size : {10, 10, 5, 0}) {
        QVERIFY(store.Read(below, 10, page));
        QCOMPARE(page.size(), size);
        for (AlarmEntry const& each : page)
            QCOMPARE(each.number, expected--);
        below = page.isEmpty() ? below : page.last().number;
    }
    QCOMPARE(expected, 0);
}

void AlarmHistoryStoreTest::what_a_crash_left_open_is_ended_at_the_next_start_and_says_so() {
    {
        AlarmHistoryStore store(m_File, kStart);
        QVERIFY(store.Write(batchOf({entry(1), entry(2, AlarmEnd::Active), entry(3, AlarmEnd::ProgramEnd)})));
    }
    const QVector<AlarmEntry> all = contentOf(m_File);
    QCOMPARE(all.at(0).end, AlarmEnd::ProgramEnd);
    QCOMPARE(all.at(1).end, AlarmEnd::Crash);
    QCOMPARE(all.at(1).clearedMs, kStart);
    QCOMPARE(all.at(2).end, AlarmEnd::Cleared);
    // And in the start after that it is left as it is.
    AlarmHistoryStore again(m_File, kStart + 1);
    QVector<AlarmEntry> later;
    QVERIFY(again.Read(kNewest, kAll, later));
    QCOMPARE(later.at(1).clearedMs, kStart);
}

void AlarmHistoryStoreTest::acknowledgements_of_earlier_runs_are_kept() {
    {
        AlarmHistoryStore store(m_File, kStart);
        QVERIFY(store.Write(range(1, 4)));
    }
    AlarmHistoryStore store(m_File, kStart);
    AlarmBatch one = range(1, 1);
    one.older.insert(-1, {-1, 10, QStringLiteral("li")});
    QVERIFY2(store.Write(one), qPrintable(store.Error()));
    AlarmBatch all;
    all.allOlder = AlarmAcknowledge{0, 20, QStringLiteral("wu")};
    QVERIFY(store.Write(all));
    QVector<AlarmEntry> entries;
    QVERIFY(store.Read(kNewest, kAll, entries));
    QStringList users;
    for (AlarmEntry const& each : entries)
        users.append(each.acknowledgedBy + QString::number(each.acknowledgedMs));
    QCOMPARE(users.join(QLatin1Char(' ')), QStringLiteral("0 wu20 li10 wu20 wu20"));
}

void AlarmHistoryStoreTest::twelve_thousand_leave_the_newest_ten_thousand() {
    {
        AlarmHistoryStore store(m_File, kStart);
        for (qint64 from = 1; from <= 12'000; from += 500)
            QVERIFY2(store.Write(range(from, from + 499)), qPrintable(store.Error()));
        QVector<AlarmEntry> all;
        QVERIFY(store.Read(kNewest, kAll, all));
        QCOMPARE(all.size(), 10'000);
        QCOMPARE(all.first(), entry(12'000));
        QCOMPARE(all.last(), entry(2'001));
    }
    QCOMPARE(contentOf(m_File).size(), 10'000);
    QVERIFY(QFile(m_File).size() < 4'000'000);
    // A limit that was lowered since holds from the opening on.
    QCOMPARE(contentOf(m_File, 100).size(), 100);
}

void AlarmHistoryStoreTest::an_active_entry_outlives_the_limit() {
    AlarmHistoryStore store(m_File, kStart, 10);
    QVERIFY(store.Write(batchOf({entry(1, AlarmEnd::Active)})));
    QVERIFY(store.Write(range(2, 30)));
    QVector<AlarmEntry> all;
    QVERIFY(store.Read(kNewest, kAll, all));
    QCOMPARE(all.size(), 10);
    QCOMPARE(all.last(), entry(1, AlarmEnd::Active));
    QCOMPARE(all.at(8).number, 22);
}

void AlarmHistoryStoreTest::a_damaged_file_is_put_aside_and_a_new_one_begun_data() {
    QTest::addColumn<int>("from");
    QTest::addColumn<int>("length");
    QTest::newRow("no database") << 0 << 4096;
    QTest::newRow("the first bytes") << 0 << 16;
    QTest::newRow("pages of the table") << 4096 << 60'000;
}

void AlarmHistoryStoreTest::a_damaged_file_is_put_aside_and_a_new_one_begun() {
    QFETCH(int, from);
    QFETCH(int, length);
    {
        AlarmHistoryStore store(m_File, kStart);
        QVERIFY(store.Write(range(1, 2000)));
    }
    QFile file(m_File);
    QVERIFY(file.open(QIODevice::ReadWrite));
    QVERIFY(file.size() > from + length);
    file.seek(from);
    file.write(QByteArray(length, '\x5A'));
    file.close();
    const QByteArray damaged = [this] {
        QFile read(m_File);
        return read.open(QIODevice::ReadOnly) ? read.readAll() : QByteArray();
    }();
    AlarmHistoryStore store(m_File, kStart);
    QVERIFY2(store.Write(range(1, 5)), qPrintable(store.Error()));
    QVector<AlarmEntry> all;
    QVERIFY(store.Read(kNewest, kAll, all));
    QCOMPARE(all.size(), 5);
    QFile aside(m_File + QStringLiteral(".damaged"));
    QVERIFY(aside.open(QIODevice::ReadOnly));
    QVERIFY(aside.readAll() == damaged);
}

void AlarmHistoryStoreTest::a_file_of_a_newer_program_is_left_alone() {
    {
        AlarmHistoryStore store(m_File, kStart);
        QVERIFY(store.Write(range(1, 5)));
    }
    QFile file(m_File);
    QVERIFY(file.open(QIODevice::ReadWrite));
    file.seek(63); // the last byte of the version of the layout
    QCOMPARE(file.read(1), QByteArray(1, '\1'));
    file.seek(63);
    file.write(QByteArray(1, '\2'));
    file.close();
    AlarmHistoryStore store(m_File, kStart);
    QVERIFY(!store.Write(range(1, 1)));
    QVERIFY2(store.Error().endsWith(QStringLiteral("made by a newer program")), qPrintable(store.Error()));
    QVERIFY(!QFile::exists(m_File + QStringLiteral(".damaged")));
}

void AlarmHistoryStoreTest::a_second_program_is_refused() {
    AlarmHistoryStore first(m_File, kStart);
    QVERIFY(first.Write(range(1, 3)));
    AlarmHistoryStore second(m_File, kStart);
    QVERIFY(!second.Write(range(1, 3)));
    QVERIFY2(second.Error().contains(QStringLiteral("locked")), qPrintable(second.Error()));
    QVERIFY(first.Write(range(4, 4)));
}

void AlarmHistoryStoreTest::a_file_that_is_taken_away_is_made_anew() {
    AlarmHistoryStore store(m_File, kStart);
    QVERIFY(store.Write(range(1, 3)));
    QVERIFY(QDir(m_Folder->filePath(QStringLiteral("history"))).removeRecursively());
    QVERIFY2(store.Write(range(4, 5)), qPrintable(store.Error()));
    QVector<AlarmEntry> all;
    QVERIFY(store.Read(kNewest, kAll, all));
    QCOMPARE(all, (QVector<AlarmEntry>{entry(5), entry(4)}));
}

void AlarmHistoryStoreTest::a_full_disk_refuses_the_batch_whole_and_works_again_later() {
    AlarmHistoryStore store(m_File, kStart);
    QVERIFY(store.Write(range(1, 10)));
    QVector<AlarmEntry> all;
    {
        const FullDisk full(QFile(m_File).size() + 8192);
        QVERIFY(full.IsSet());
        QVERIFY(!store.Write(range(11, 3000)));
        QVERIFY(!store.Error().isEmpty());
        QVERIFY2(store.Read(kNewest, kAll, all), qPrintable(store.Error()));
        QCOMPARE(all.size(), 10);
    }
    QVERIFY2(store.Write(range(11, 3000)), qPrintable(store.Error()));
    QVERIFY(store.Read(kNewest, kAll, all));
    QCOMPARE(all.size(), 3000);
}

void AlarmHistoryStoreTest::a_folder_that_cannot_be_written_is_told() {
    const QString folder = m_Folder->filePath(QStringLiteral("history"));
    QVERIFY(QDir().mkpath(folder));
    {
        const LockedFolder locked(folder);
        QVERIFY(locked.IsLocked());
        AlarmHistoryStore store(m_File, kStart);
        QVERIFY(!store.Write(range(1, 3)));
        QVERIFY2(store.Error().startsWith(m_File), qPrintable(store.Error()));
        QVERIFY(!QFile::exists(m_File));
    }
    {
        AlarmHistoryStore store(m_File, kStart);
        QVERIFY(store.Write(range(1, 3)));
    }
    // A file that is there and cannot be changed.
    QCOMPARE(::chmod(QFile::encodeName(m_File).constData(), 0444), 0);
    {
        const LockedFolder locked(folder);
        AlarmHistoryStore store(m_File, kStart);
        QVERIFY(!store.Write(range(1, 3)));
        QVERIFY(!QFile::exists(m_File + QStringLiteral(".damaged")));
    }
    QCOMPARE(::chmod(QFile::encodeName(m_File).constData(), 0644), 0);
    QCOMPARE(contentOf(m_File).size(), 3);
}

/// The limit of the killed program is 300, so that many kills meet the dropping of old entries too.
void AlarmHistoryStoreTest::a_kill_at_any_moment_loses_nothing_that_was_reported() {
    constexpr int kKills = 40;
    QRandomGenerator random(20261121);
    int met = 0;
    for (int i = 0; i < kKills; ++i) {
        const QString file = m_Folder->filePath(QStringLiteral("kill%1/alarms.db").arg(i));
        QProcess program;
        program.start(ENDLESS_ALARMS, {file});
        QVERIFY(program.waitForStarted());
        QByteArray told;
        while (!told.contains('\n') && program.waitForReadyRead())
            told += program.readAllStandardOutput();
        // The moment is what is tested; nothing is waited for.
        QTest::qSleep(1 + random.bounded(i % 8 == 0 ? 900 : 60));
        program.kill();
        program.waitForFinished();
        told += program.readAllStandardOutput();
        QVERIFY2(program.exitStatus() == QProcess::CrashExit, program.readAllStandardError().constData());
        const qint64 last = told.left(told.lastIndexOf('\n')).split('\n').last().toLongLong();
        met += hasOpenJournal(file) ? 1 : 0;
        AlarmHistoryStore store(file, kStart, 300);
        QVector<AlarmEntry> all;
        QVERIFY2(store.Read(kNewest, kAll, all), qPrintable(store.Error()));
        QVERIFY(!QFile::exists(file + QStringLiteral(".damaged")));
        const qint64 newest = all.first().raisedMs;
        QVERIFY2(newest == last || newest == last + 1,
                 qPrintable(QStringLiteral("kill %1: %2 told, %3 kept").arg(i).arg(last).arg(newest)));
        QCOMPARE(all.size(), int(std::min<qint64>(newest, 300)));
        for (int row = 0; row + 1 < all.size(); ++row) {
            QCOMPARE(all.at(row).end, row == 0 ? AlarmEnd::Crash : AlarmEnd::Cleared);
            QCOMPARE(all.at(row).raisedMs, newest - row);
        }
        QCOMPARE(all.last().code, QStringLiteral("stays"));
        QCOMPARE(all.last().end, AlarmEnd::Crash);
        QCOMPARE(all.last().clearedMs, kStart);
    }
    qInfo("%d kills, %d within a write", kKills, met);
    QVERIFY2(met > 0, "no kill met a write under way");
}

QTEST_GUILESS_MAIN(AlarmHistoryStoreTest)
#include "tst_alarmhistorystore.moc"
