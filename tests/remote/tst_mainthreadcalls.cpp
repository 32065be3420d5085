// SPDX-License-Identifier: MIT
#include "remote/mainthreadcalls.h"

#include <QtTest>
#include <future>
#include <thread>

using tessera::MainThreadCalls;

/// Work that other threads have done on the main thread.
class MainThreadCallsTest : public QObject {
    Q_OBJECT

private slots:
    void on_the_main_thread_it_is_done_at_once();
    void from_another_thread_it_is_done_here_and_waited_for();
    void the_order_of_one_thread_is_kept();
    void closing_ends_the_wait_without_the_work();
    void when_closed_other_threads_are_refused();
    void work_that_closes_counts_as_done();
    void many_threads_at_once_with_a_close_in_between();

private:
    template<typename T>
    static bool ready(std::future<T> const& future) {
        return future.wait_for(std::chrono::seconds(0)) == std::future_status::ready;
    }
};

void MainThreadCallsTest::on_the_main_thread_it_is_done_at_once() {
    MainThreadCalls calls(this);
    bool done = false;
    QVERIFY(calls.Run([&done] { done = true; }));
    QVERIFY(done);
    calls.Close();
    done = false;
    QVERIFY(calls.Run([&done] { done = true; }));
    QVERIFY(done);
}

void MainThreadCallsTest::from_another_thread_it_is_done_here_and_waited_for() {
    MainThreadCalls calls(this);
    std::thread::id where;
    auto result =
        std::async(std::launch::async, [&] { return calls.Run([&] { where = std::this_thread::get_id(); }); });
    QTRY_VERIFY(ready(result));
    QVERIFY(result.get());
    QVERIFY(where == std::this_thread::get_id());
}

void MainThreadCallsTest::the_order_of_one_thread_is_kept() {
    MainThreadCalls calls(this);
    QVector<int> order;
    auto result = std::async(std::launch::async, [&] {
        for (int i = 0; i < 100; ++i)
            calls.Run([&order, i] { order.append(i); });
    });
    QTRY_VERIFY(ready(result));
    QCOMPARE(order.size(), 100);
    QVERIFY(std::is_sorted(order.begin(), order.end()));
}

void MainThreadCallsTest::closing_ends_the_wait_without_the_work() {
    MainThreadCalls calls(this);
    std::atomic<bool> done{false};
    auto result = std::async(std::launch::async, [&] { return calls.Run([&done] { done = true; }); });
    QVERIFY(result.wait_for(std::chrono::milliseconds(20)) == std::future_status::timeout);
    calls.Close();
    QVERIFY(!result.get());
    QCoreApplication::processEvents();
    QVERIFY(!done);
}

void MainThreadCallsTest::when_closed_other_threads_are_refused() {
    MainThreadCalls calls(this);
    calls.Close();
    QVERIFY(!std::async(std::launch::async, [&] { return calls.Run([] {}); }).get());
    calls.Open();
    auto result = std::async(std::launch::async, [&] { return calls.Run([] {}); });
    QTRY_VERIFY(ready(result));
    QVERIFY(result.get());
}

void MainThreadCallsTest::work_that_closes_counts_as_done() {
    MainThreadCalls calls(this);
    auto result = std::async(std::launch::async, [&] { return calls.Run([&] { calls.Close(); }); });
    QTRY_VERIFY(ready(result));
    QVERIFY(result.get());
}

void MainThreadCallsTest::many_threads_at_once_with_a_close_in_between() {
    MainThreadCalls calls(this);
    std::atomic<int> done{0};
    std::atomic<int> told{0};
    std::atomic<int> left{8};
    std::vector<std::thread> threads;
    for (int t = 0; t < 8; ++t) {
        threads.emplace_back([&] {
            for (int i = 0; i < 200; ++i)
                told += calls.Run([&done] { ++done; }) ? 1 : 0;
            --left;
        });
    }
    QTRY_VERIFY(done > 100);
    calls.Close();
    QTRY_COMPARE(left.load(), 0);
    for (std::thread& thread : threads)
        thread.join();
    QCOMPARE(told.load(), done.load());
}

QTEST_GUILESS_MAIN(MainThreadCallsTest)
#include "tst_mainthreadcalls.moc"
