// SPDX-License-Identifier: MIT
#include "shell/alarmhistorystore.h"
#include "shell/alarmhistorywriter.h"
#include "tests/support/temporaryroot.h"
#include "tests/support/waitfor.h"

#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QProcess>
#include <QRandomGenerator>
#include <QTemporaryDir>
#include <QtTest>
#include <csignal>
#include <limits>
#include <mutex>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

using namespace tessera;

namespace {

constexpr qint64 kStart = 5'000'000;
constexpr qint64 kNewest = std::numeric_limits<qint32>::max();
constexpr int kAll = 1'000'000;

AlarmEntry entry(qint64 number, AlarmEnd end = AlarmEnd::Cleared) {
    AlarmEntry made;
    made.number = number;
    made.code = QStringLiteral("door%1").arg(number % 5 + 1);
    made.text = QStringLiteral("安全门%1报警").arg(number % 5 + 1);
    made.firstOut = number % 3 == 0;
    made.raisedMs = 1000 + number;
    made.clearedMs = end == AlarmEnd::Active ? 0 : 2000 + number;
    made.end = end;
    return made;
}

AlarmBatch batchOf(QVector<AlarmEntry> const& entries) {
    AlarmBatch batch;
    for (AlarmEntry const& each : entries)
        batch.entries.insert(each.number, each);
    return batch;
}

AlarmBatch range(qint64 from, qint64 to) {
    AlarmBatch batch;
    for (qint64 number = from; number <= to; ++number)
        batch.entries.insert(number, entry(number));
    return batch;
}

/// Everything in the file as an opening finds it, newest first.
QVector<AlarmEntry> contentOf(QString const& file, int limit = kAlarmHistoryLimit) {
    AlarmHistoryStore store(file, kStart, limit);
    QVector<AlarmEntry> all;
    if (!store.Read(kNewest, kAll, all))
        qWarning("%s", qPrintable(store.Error()));
    return all;
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
class AlarmHistoryStoreTest : public QObject {
    Q_OBJECT

private slots:
    void init() {
        m_Folder = std::make_unique<QTemporaryDir>();
        QVERIFY(m_Folder->isValid());
        // Other users must get as far as the folder for the tests that take rights away.
        QCOMPARE(::chmod(QFile::encodeName(m_Folder->path()).constData(), 0755), 0);
        m_File = m_Folder->filePath(QStringLiteral("history/alarms.db"));
    }
    void cleanup() { m_Folder.reset(); }

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

    void the_writer_writes_what_it_is_given_and_at_its_end();
    void an_end_while_a_batch_is_written_loses_nothing();
    void the_writer_reads_what_waits_to_be_written();
    void the_writer_gives_callers_back_at_once_while_the_disk_refuses();
    void the_writer_tries_again_and_tells_both();
    void the_writer_exports_everything();
    void the_writer_acknowledges_earlier_runs();
    void the_writer_holds_no_more_than_the_limit();
    void a_writer_that_is_given_nothing_makes_no_file();

private:
    std::unique_ptr<QTemporaryDir> m_Folder;
    QString m_File;
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

void AlarmHistoryStoreTest::the_writer_writes_what_it_is_given_and_at_its_end() {
    {
        AlarmHistoryWriter writer(m_File, kStart);
        writer.Save({entry(1, AlarmEnd::Active), entry(2)});
        writer.Save({entry(1)});
        writer.WaitTried();
        writer.Save({entry(3)});
    }
    const QVector<AlarmEntry> all = contentOf(m_File);
    QCOMPARE(all.size(), 3);
    QCOMPARE(all.at(2).end, AlarmEnd::Cleared);
}

/// The end comes at all moments of a write: one after a longer wait each time, over more than a write takes.
void AlarmHistoryStoreTest::an_end_while_a_batch_is_written_loses_nothing() {
    for (int i = 0; i < 40; ++i) {
        const QString file = m_Folder->filePath(QStringLiteral("end%1/alarms.db").arg(i));
        {
            AlarmHistoryWriter writer(file, kStart);
            writer.Save({entry(1, AlarmEnd::Active)});
            QTest::qSleep(i / 2 + 1); // the moment is what is tested
            writer.Save({entry(1, AlarmEnd::ProgramEnd)});
        }
        const QVector<AlarmEntry> all = contentOf(file);
        QCOMPARE(all.size(), 1);
        QCOMPARE(all.at(0).end, AlarmEnd::ProgramEnd);
    }
}

void AlarmHistoryStoreTest::the_writer_reads_what_waits_to_be_written() {
    AlarmHistoryWriter writer(m_File, kStart);
    std::mutex lock;
    QVector<AlarmEntry> read;
    bool done = false;
    writer.Save({entry(1), entry(2)});
    writer.WaitTried();
    writer.Save({entry(3)});
    writer.Read(kNewest, 2, [&](QVector<AlarmEntry> const& entries, QString const& error) {
        const std::lock_guard<std::mutex> guard(lock);
        read = entries;
        done = error.isEmpty();
    });
    QVERIFY(tests::waitFor([&] {
        const std::lock_guard<std::mutex> guard(lock);
        return done;
    }));
    QCOMPARE(read, (QVector<AlarmEntry>{entry(3), entry(2)}));
}

void AlarmHistoryStoreTest::the_writer_gives_callers_back_at_once_while_the_disk_refuses() {
    QVERIFY(QDir().mkpath(m_Folder->path()));
    QFile blocked(m_Folder->filePath(QStringLiteral("history")));
    QVERIFY(blocked.open(QIODevice::WriteOnly));
    blocked.close();
    AlarmHistoryWriter writer(m_File, kStart);
    for (int i = 1; i <= 20'000; ++i)
        writer.Save({entry(i)});
    writer.WaitTried();
    QVERIFY(!QFile::exists(m_File));
    // The cause goes, and nothing that is still kept has been lost.
    QVERIFY(blocked.remove());
    writer.Save({entry(20'001)});
    writer.WaitTried();
    std::atomic<int> count{-1};
    writer.Read(kNewest, kAll, [&](QVector<AlarmEntry> const& entries, QString const&) { count = entries.size(); });
    QVERIFY(tests::waitFor([&] { return count == 10'000; }));
}

void AlarmHistoryStoreTest::the_writer_tries_again_and_tells_both() {
    QFile blocked(m_Folder->filePath(QStringLiteral("history")));
    QVERIFY(blocked.open(QIODevice::WriteOnly));
    blocked.close();
    std::mutex lock;
    QStringList told;
    AlarmHistoryWriter writer(m_File, kStart);
    writer.SetStateListener([&](QString const& error) {
        const std::lock_guard<std::mutex> guard(lock);
        told.append(error);
    });
    for (int i = 1; i <= 3; ++i) {
        writer.Save({entry(i)});
        writer.WaitTried();
    }
    {
        const std::lock_guard<std::mutex> guard(lock);
        QCOMPARE(told.size(), 1);
        QVERIFY(told.at(0).startsWith(m_File));
    }
    QVERIFY(blocked.remove());
    // Without another call: after its time it tries by itself.
    QVERIFY(tests::waitFor(
        [&] {
            const std::lock_guard<std::mutex> guard(lock);
            return told.size() == 2;
        },
        20'000));
    QVERIFY(told.at(1).isEmpty());
}

void AlarmHistoryStoreTest::the_writer_exports_everything() {
    AlarmHistoryWriter writer(m_File, kStart);
    writer.Save({entry(1), entry(2)});
    std::mutex lock;
    QStringList errors;
    const auto done = [&](QString const& error) {
        const std::lock_guard<std::mutex> guard(lock);
        errors.append(error);
    };
    const QString target = m_Folder->filePath(QStringLiteral("out/alarms.csv"));
    writer.Export(target, done);
    writer.Export(m_File + QStringLiteral("/no/folder.csv"), done);
    QVERIFY(tests::waitFor([&] {
        const std::lock_guard<std::mutex> guard(lock);
        return errors.size() == 2;
    }));
    QCOMPARE(errors.at(0), QString());
    QVERIFY(!errors.at(1).isEmpty());
    QFile file(target);
    QVERIFY(file.open(QIODevice::ReadOnly));
    const QList<QByteArray> lines = file.readAll().split('\n');
    QCOMPARE(lines.size(), 4);
    QVERIFY(lines.at(0).startsWith("\xEF\xBB\xBF"));
    QVERIFY(lines.at(1).contains("安全门3报警"));
    QVERIFY(lines.at(2).contains("安全门2报警"));
}

void AlarmHistoryStoreTest::the_writer_acknowledges_earlier_runs() {
    {
        AlarmHistoryStore store(m_File, kStart);
        QVERIFY(store.Write(range(1, 3)));
    }
    {
        AlarmHistoryWriter writer(m_File, kStart);
        writer.AcknowledgeOlder({-1, 10, QStringLiteral("li")});
        writer.AcknowledgeOlder({-1, 11, QStringLiteral("later")});
        writer.WaitTried();
        writer.AcknowledgeAllOlder({0, 20, QStringLiteral("wu")});
        writer.AcknowledgeAllOlder({0, 21, QStringLiteral("later")});
    }
    QStringList users;
    for (AlarmEntry const& each : contentOf(m_File))
        users.append(each.acknowledgedBy + QString::number(each.acknowledgedMs));
    QCOMPARE(users.join(QLatin1Char(' ')), QStringLiteral("wu20 li10 wu20"));
}

void AlarmHistoryStoreTest::the_writer_holds_no_more_than_the_limit() {
    AlarmHistoryWriter writer(m_File, kStart, 50);
    QVector<AlarmEntry> many;
    for (int i = 1; i <= 500; ++i)
        many.append(entry(i));
    writer.Save(many);
    writer.WaitTried();
    std::mutex lock;
    QVector<AlarmEntry> read;
    writer.Read(kNewest, kAll, [&](QVector<AlarmEntry> const& entries, QString const&) {
        const std::lock_guard<std::mutex> guard(lock);
        read = entries;
    });
    QVERIFY(tests::waitFor([&] {
        const std::lock_guard<std::mutex> guard(lock);
        return read.size() == 50;
    }));
    QCOMPARE(read.first().number, 500);
    QCOMPARE(read.last().number, 451);
}

void AlarmHistoryStoreTest::a_writer_that_is_given_nothing_makes_no_file() {
    { AlarmHistoryWriter writer(m_File, kStart); }
    QVERIFY(!QFile::exists(m_File));
    {
        AlarmHistoryWriter writer(m_File, kStart);
        writer.Begin();
        writer.Save({});
        writer.WaitTried();
    }
    QVERIFY(QFile::exists(m_File));
}

QTEST_GUILESS_MAIN(AlarmHistoryStoreTest)
#include "tst_alarmhistorystore.moc"
