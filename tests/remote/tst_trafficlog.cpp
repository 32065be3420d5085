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
    static QStringList missing() { return tests::logTexts("error"); }

private slots:
    void a_line_is_written_without_being_waited_for() {
        const tests::TemporaryRoot root;
        TrafficLog log;
        log.Add(QStringLiteral("a"));
        QVERIFY(tests::waitFor([&] { return written() == QStringList{"a"}; }));
        log.Add(QStringLiteral("b"));
        QVERIFY(tests::waitFor([&] { return written() == (QStringList{"a", "b"}); }));
    }

    void lines_that_may_not_wait_are_counted() {
        const tests::TemporaryRoot root;
        constexpr int kLines = 200;
        const QString large(TrafficLog::kMostWaiting / 4, QLatin1Char('x'));
        {
            TrafficLog log;
            for (int i = 0; i < kLines; ++i)
                log.Add(QString::number(i) + large);
        }
        int counted = written().size();
        for (QString const& line : missing())
            counted += line.section(QLatin1Char(' '), 2, 2).toInt();
        QCOMPARE(counted, kLines);
        int last = -1;
        for (QString const& line : written()) {
            const int number = line.leftRef(line.indexOf(QLatin1Char('x'))).toInt();
            QVERIFY(number > last);
            last = number;
        }
    }

    void a_line_longer_than_may_wait_is_counted() {
        const tests::TemporaryRoot root;
        TrafficLog log;
        log.Add(QString(TrafficLog::kMostWaiting + 1, QLatin1Char('x')));
        const QStringList told{"host port: 1 messages came too fast for the log"};
        QVERIFY(tests::waitFor([&] { return missing() == told; }));
        log.Add(QStringLiteral("a"));
        log.Close();
        QCOMPARE(missing(), told);
        QCOMPARE(written(), QStringList{"a"});
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
