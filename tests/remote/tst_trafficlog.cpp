// SPDX-License-Identifier: MIT
#include "remote/trafficlog.h"
#include "tests/support/logtexts.h"
#include "tests/support/temporaryroot.h"
#include "tests/support/waitfor.h"

#include <QtTest>
#include <thread>

using tessera::TrafficLog;

class TestTrafficLog : public QObject {
    Q_OBJECT

private:
    static QStringList written() { return tests::logTexts("debug"); }

private slots:
    void a_line_is_written_without_being_waited_for() {
        const tests::TemporaryRoot root;
        TrafficLog log;
        log.Add(QStringLiteral("a"));
        QVERIFY(tests::waitFor([&] { return written() == QStringList{"a"}; }));
        log.Add(QStringLiteral("b"));
        QVERIFY(tests::waitFor([&] { return written() == (QStringList{"a", "b"}); }));
    }

    void more_lines_than_may_wait_are_all_written_in_their_order() {
        const tests::TemporaryRoot root;
        constexpr int kLines = 3 * int(TrafficLog::kMostWaiting);
        {
            TrafficLog log;
            for (int i = 0; i < kLines; ++i)
                log.Add(QString::number(i));
        }
        const QStringList lines = written();
        QCOMPARE(lines.size(), kLines);
        for (int i = 0; i < kLines; ++i)
            QCOMPARE(lines.at(i), QString::number(i));
    }

    void each_of_several_threads_keeps_its_order() {
        const tests::TemporaryRoot root;
        constexpr int kThreads = 4;
        constexpr int kLines = 3000;
        {
            TrafficLog log;
            std::vector<std::thread> threads;
            for (int thread = 0; thread < kThreads; ++thread) {
                threads.emplace_back([&log, thread] {
                    for (int i = 0; i < kLines; ++i)
                        log.Add(QStringLiteral("%1 %2").arg(thread).arg(i));
                });
            }
            for (std::thread& thread : threads)
                thread.join();
        }
        int next[kThreads] = {};
        for (QString const& line : written()) {
            const QStringList numbers = line.split(QLatin1Char(' '));
            QCOMPARE(numbers.at(1).toInt(), next[numbers.at(0).toInt()]++);
        }
        for (int count : next)
            QCOMPARE(count, kLines);
    }

    void after_its_end_a_line_begins_it_anew() {
        const tests::TemporaryRoot root;
        TrafficLog log;
        log.Close();
        log.Add(QStringLiteral("a"));
        log.Close();
        QCOMPARE(written(), QStringList{"a"});
        log.Add(QStringLiteral("b"));
        log.Close();
        QCOMPARE(written().size(), 2);
    }
};

QTEST_GUILESS_MAIN(TestTrafficLog)
#include "tst_trafficlog.moc"
