// SPDX-License-Identifier: MIT
#include "shell/alarmhistorywriter.h"
#include "tests/shell/alarmhistorycase.h"
#include "tests/support/waitfor.h"

#include <QDir>
#include <atomic>
#include <mutex>

using namespace tessera;
using namespace tests;

/// The thread that keeps the history: nothing that it is given is lost, and its callers wait for no disk.
class AlarmHistoryWriterTest : public QObject, private AlarmHistoryCase {
    Q_OBJECT

private slots:
    void init() { begin(); }
    void cleanup() { end(); }

    void the_writer_writes_what_it_is_given_and_at_its_end();
    void an_end_while_a_batch_is_written_loses_nothing();
    void the_writer_reads_what_waits_to_be_written();
    void the_writer_gives_callers_back_at_once_while_the_disk_refuses();
    void the_writer_tries_again_and_tells_both();
    void the_writer_exports_everything();
    void the_writer_acknowledges_earlier_runs();
    void the_writer_holds_no_more_than_the_limit();
    void a_writer_that_is_given_nothing_makes_no_file();
};

void AlarmHistoryWriterTest::the_writer_writes_what_it_is_given_and_at_its_end() {
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
void AlarmHistoryWriterTest::an_end_while_a_batch_is_written_loses_nothing() {
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

void AlarmHistoryWriterTest::the_writer_reads_what_waits_to_be_written() {
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
    QVERIFY(waitFor([&] {
        const std::lock_guard<std::mutex> guard(lock);
        return done;
    }));
    QCOMPARE(read, (QVector<AlarmEntry>{entry(3), entry(2)}));
}

void AlarmHistoryWriterTest::the_writer_gives_callers_back_at_once_while_the_disk_refuses() {
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
    QVERIFY(waitFor([&] { return count == 10'000; }));
}

void AlarmHistoryWriterTest::the_writer_tries_again_and_tells_both() {
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
    QVERIFY(waitFor(
        [&] {
            const std::lock_guard<std::mutex> guard(lock);
            return told.size() == 2;
        },
        20'000));
    QVERIFY(told.at(1).isEmpty());
}

void AlarmHistoryWriterTest::the_writer_exports_everything() {
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
    QVERIFY(waitFor([&] {
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

void AlarmHistoryWriterTest::the_writer_acknowledges_earlier_runs() {
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

void AlarmHistoryWriterTest::the_writer_holds_no_more_than_the_limit() {
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
    QVERIFY(waitFor([&] {
        const std::lock_guard<std::mutex> guard(lock);
        return read.size() == 50;
    }));
    QCOMPARE(read.first().number, 500);
    QCOMPARE(read.last().number, 451);
}

void AlarmHistoryWriterTest::a_writer_that_is_given_nothing_makes_no_file() {
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

QTEST_GUILESS_MAIN(AlarmHistoryWriterTest)
#include "tst_alarmhistorywriter.moc"
