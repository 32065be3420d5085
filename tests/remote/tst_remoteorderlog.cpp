// SPDX-License-Identifier: MIT
#include "remote/remoteorderlog.h"
#include "tests/support/temporaryroot.h"

#include <QDir>
#include <QFileInfo>
#include <QtTest>

using namespace tests;
using tessera::RemoteOrderLog;

namespace {

const QString kFile = QStringLiteral("/log/orders.txt");

} // namespace

/// The record of what remote parties ordered.
class RemoteOrderLogTest : public QObject {
    Q_OBJECT

private slots:
    void init() { m_Root = std::make_unique<TemporaryRoot>(); }
    void cleanup() { m_Root.reset(); }

    void nothing_is_made_before_the_first_order();
    void an_order_is_a_line_with_time_address_order_and_result();
    void what_could_forge_a_line_is_escaped_data();
    void what_could_forge_a_line_is_escaped();
    void long_texts_are_cut();
    void lines_are_appended_over_restarts();
    void a_full_file_becomes_the_former_one();
    void a_flood_takes_two_bounds_of_disk_at_most();
    void orders_beyond_the_room_are_counted();
    void a_batch_beyond_the_bound_keeps_its_end();
    void orders_of_many_threads_are_all_written_once();
    void an_order_after_the_close_is_written();
    void the_end_writes_what_waits();
    void a_file_that_cannot_be_written_is_told_once();

private:
    /// The fields of each line, without the time.
    QStringList lines(QString const& file = kFile) {
        QStringList all;
        for (QString const& line : QString::fromUtf8(m_Root->read(file)).split(QLatin1Char('\n'), Qt::SkipEmptyParts))
            all.append(line.section(QLatin1Char('\t'), 1));
        return all;
    }
    qint64 size(QString const& file) { return QFileInfo(m_Root->path(file)).size(); }

    std::unique_ptr<TemporaryRoot> m_Root;
};

void RemoteOrderLogTest::nothing_is_made_before_the_first_order() {
    {
        RemoteOrderLog log(kFile);
        log.Flush();
        log.Close();
    }
    QVERIFY(!m_Root->exists(QStringLiteral("/log")));
}

void RemoteOrderLogTest::an_order_is_a_line_with_time_address_order_and_result() {
    RemoteOrderLog log(kFile);
    const QDateTime before = QDateTime::currentDateTime();
    log.Add(QStringLiteral("10.0.0.9:5012"), QStringLiteral("_VZMarkStop()"), QStringLiteral("0,终止运行成功"));
    log.Flush();
    const QString text = QString::fromUtf8(m_Root->read(kFile));
    QVERIFY(text.endsWith(QLatin1Char('\n')));
    const QStringList fields = text.trimmed().split(QLatin1Char('\t'));
    QCOMPARE(fields.mid(1), (QStringList{"10.0.0.9:5012", "_VZMarkStop()", "0,终止运行成功"}));
    const QDateTime time = QDateTime::fromString(fields.first(), QStringLiteral("yyyy-MM-dd hh:mm:ss.zzz"));
    QVERIFY2(time >= before && time <= QDateTime::currentDateTime(), qPrintable(fields.first()));
}

void RemoteOrderLogTest::what_could_forge_a_line_is_escaped_data() {
    QTest::addColumn<QString>("order");
    QTest::addColumn<QString>("written");
    QTest::newRow("line feed") << "a\nb"
                               << "a\\x0ab";
    QTest::newRow("carriage return") << "a\rb"
                                     << "a\\x0db";
    QTest::newRow("tab") << "a\tb"
                         << "a\\x09b";
    QTest::newRow("zero") << QString(QChar(0)) << "\\x00";
    QTest::newRow("delete") << QString(QChar(0x7f)) << "\\x7f";
    QTest::newRow("next line") << QString(QChar(0x85)) << "\\x85";
    QTest::newRow("line separator") << QString(QChar(0x2028)) << "\\x2028";
    QTest::newRow("backslash") << "\\x0a"
                               << "\\\\x0a";
    QTest::newRow("Chinese stays") << "文档"
                                   << "文档";
}

void RemoteOrderLogTest::what_could_forge_a_line_is_escaped() {
    QFETCH(QString, order);
    QFETCH(QString, written);
    RemoteOrderLog log(kFile);
    log.Add(order, order, order);
    log.Flush();
    QCOMPARE(lines(), QStringList(written + QLatin1Char('\t') + written + QLatin1Char('\t') + written));
}

void RemoteOrderLogTest::long_texts_are_cut() {
    RemoteOrderLog log(kFile);
    log.Add(QString(129, QLatin1Char('a')), QString(512, QLatin1Char('o')), QString(2000000, QLatin1Char('r')));
    log.Flush();
    QCOMPARE(lines(), QStringList{QString(128, QLatin1Char('a')) + "…\t" + QString(512, QLatin1Char('o')) + "\t" +
                                  QString(512, QLatin1Char('r')) + "…"});
}

void RemoteOrderLogTest::lines_are_appended_over_restarts() {
    for (int i = 0; i < 3; ++i) {
        RemoteOrderLog log(kFile);
        log.Add(QString(), QString::number(i), QString());
    }
    QCOMPARE(lines(), (QStringList{"\t0\t", "\t1\t", "\t2\t"}));
}

void RemoteOrderLogTest::a_full_file_becomes_the_former_one() {
    RemoteOrderLog log(kFile, 200);
    for (int i = 0; i < 6; ++i) {
        log.Add(QString(), QString(60, QLatin1Char('a' + i)), QString());
        log.Flush();
    }
    const auto first = [this](QString const& file) {
        QStringList letters;
        for (QString const& line : lines(file))
            letters.append(line.mid(1, 1));
        return letters.join(QString());
    };
    // Two lines of 87 bytes fit.
    QCOMPARE(first(kFile), QStringLiteral("ef"));
    QCOMPARE(first(kFile + QStringLiteral(".1")), QStringLiteral("cd"));
    QCOMPARE(QDir(m_Root->path(QStringLiteral("/log"))).entryList(QDir::Files).size(), 2);
}

void RemoteOrderLogTest::a_flood_takes_two_bounds_of_disk_at_most() {
    constexpr qint64 bound = 20000;
    RemoteOrderLog log(kFile, bound);
    for (int i = 0; i < 100000; ++i) {
        log.Add(QStringLiteral("10.0.0.9:5012"), QStringLiteral("_VZGetLayerParas(%1,0)").arg(i), QString());
        if (i % 1000 == 0)
            log.Flush();
    }
    log.Flush();
    QVERIFY(size(kFile) <= bound);
    QVERIFY(size(kFile + QStringLiteral(".1")) <= bound);
    QVERIFY(size(kFile) + size(kFile + QStringLiteral(".1")) > bound);
    QVERIFY2(lines().last().contains(QStringLiteral("(99999,0)")), qPrintable(lines().last()));
}

void RemoteOrderLogTest::orders_beyond_the_room_are_counted() {
    RemoteOrderLog log(kFile, 100 * 1024 * 1024);
    quint64 total = 0;
    quint64 kept = 0;
    quint64 lost = 0;
    // Until some were lost, since the writing thread takes them away meanwhile.
    for (int round = 0; round < 50 && lost == 0; ++round) {
        for (std::size_t i = 0; i < 20 * RemoteOrderLog::kMaxWaiting; ++i, ++total)
            log.Add(QString(), QStringLiteral("o"), QString());
        log.Flush();
        kept = 0;
        for (QString const& line : lines()) {
            const QRegularExpressionMatch count =
                QRegularExpression(QStringLiteral("^\t\t(\\d+) further orders not recorded$")).match(line);
            if (count.hasMatch())
                lost += count.captured(1).toULongLong();
            else
                ++kept;
        }
    }
    QVERIFY(lost > 0);
    QCOMPARE(kept + lost, total);
}

void RemoteOrderLogTest::a_batch_beyond_the_bound_keeps_its_end() {
    RemoteOrderLog log(kFile, 100);
    for (int i = 0; i < 50; ++i)
        log.Add(QString(), QStringLiteral("%1").arg(i, 20), QString());
    log.Close();
    QCOMPARE(lines().last().trimmed(), QStringLiteral("49"));
    QVERIFY(size(kFile) <= 100);
    const QByteArray text = m_Root->read(kFile);
    QVERIFY2(text.startsWith("20"), "begins in the middle of a line");
}

void RemoteOrderLogTest::orders_of_many_threads_are_all_written_once() {
    RemoteOrderLog log(kFile);
    std::vector<std::thread> threads;
    for (int t = 0; t < 8; ++t) {
        threads.emplace_back([&log, t] {
            for (int i = 0; i < 100; ++i) {
                log.Add(QString(), QStringLiteral("%1-%2").arg(t).arg(i), QString());
                if (i % 10 == 0)
                    log.Flush();
                if (i % 33 == 0)
                    log.Close();
            }
        });
    }
    for (std::thread& thread : threads)
        thread.join();
    log.Flush();
    QStringList all = lines();
    QCOMPARE(all.size(), 800);
    QCOMPARE(all.removeDuplicates(), 0);
}

void RemoteOrderLogTest::an_order_after_the_close_is_written() {
    RemoteOrderLog log(kFile);
    log.Add(QString(), QStringLiteral("a"), QString());
    log.Close();
    QCOMPARE(lines(), QStringList{"\ta\t"});
    log.Add(QString(), QStringLiteral("b"), QString());
    log.Flush();
    QCOMPARE(lines(), (QStringList{"\ta\t", "\tb\t"}));
}

void RemoteOrderLogTest::the_end_writes_what_waits() {
    {
        RemoteOrderLog log(kFile);
        for (int i = 0; i < 1000; ++i)
            log.Add(QString(), QStringLiteral("a"), QString());
    }
    QCOMPARE(lines().size(), 1000);
}

void RemoteOrderLogTest::a_file_that_cannot_be_written_is_told_once() {
    QVERIFY(QDir().mkpath(m_Root->path(kFile)));
    RemoteOrderLog log(kFile);
    for (int i = 0; i < 3; ++i) {
        log.Add(QString(), QStringLiteral("a"), QString());
        log.Flush();
    }
    int told = 0;
    const QDir folder(m_Root->path(QStringLiteral("/日志文件")));
    for (QString const& name : folder.entryList(QDir::Files))
        told += QString::fromUtf8(m_Root->read(QStringLiteral("/日志文件/") + name))
                    .count(QStringLiteral("orders.txt: not written"));
    QCOMPARE(told, 1);
    QVERIFY(QDir(m_Root->path(kFile)).removeRecursively());
    log.Add(QString(), QStringLiteral("b"), QString());
    log.Flush();
    QCOMPARE(lines(), QStringList{"\tb\t"});
}

QTEST_GUILESS_MAIN(RemoteOrderLogTest)
#include "tst_remoteorderlog.moc"
