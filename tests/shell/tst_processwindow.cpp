// SPDX-License-Identifier: MIT
#include "shell/processwindow.h"
#include "tests/shell/xclient.h"
#include "tests/support/waitfor.h"

#include <QCoreApplication>
#include <QtTest>
#include <atomic>
#include <thread>
#include <unistd.h>

using tests::XClient;

namespace {

constexpr int kPid = 4711;
constexpr int kOtherPid = 4712;

} // namespace

/// Finding the windows of a process on a real X server.
class ProcessWindowTest : public QObject {
    Q_OBJECT

private slots:
    void a_process_without_a_window_gives_0();
    void no_server_gives_0();
    void the_window_of_a_process_is_found();
    void the_first_in_tree_order_is_given_and_all_are_kept();
    void the_list_begins_anew_with_every_call();
    void a_property_of_another_kind_is_no_match();
    void windows_that_vanish_meanwhile_end_nothing();
};

/// First in this file: without anybody having named the property, the server does not know it.
void ProcessWindowTest::a_process_without_a_window_gives_0() {
    XClient client;
    QVERIFY(client.isOpen());
    QCOMPARE(get_win_id_from_pid(kPid), 0UL);
    client.makeWindow(kOtherPid);
    QCOMPARE(get_win_id_from_pid(kPid), 0UL);
    QVERIFY(tessera::FoundWindows().empty());
}

void ProcessWindowTest::no_server_gives_0() {
    const QByteArray display = qgetenv("DISPLAY");
    for (char const* none : {"", ":6399", "no such host:1"}) {
        qputenv("DISPLAY", none);
        QCOMPARE(get_win_id_from_pid(getpid()), 0UL);
    }
    qputenv("DISPLAY", display);
}

void ProcessWindowTest::the_window_of_a_process_is_found() {
    XClient client;
    client.makeWindow(kOtherPid);
    const unsigned long window = client.makeWindow(kPid);
    QCOMPARE(get_win_id_from_pid(kPid), window);
    QCOMPARE(tessera::FoundWindows(), std::vector<unsigned long>{window});
}

void ProcessWindowTest::the_first_in_tree_order_is_given_and_all_are_kept() {
    XClient client;
    const unsigned long first = client.makeWindow(kPid);
    const unsigned long child = client.makeWindow(kPid, first);
    const unsigned long plain = client.makeWindow(0, first);
    const unsigned long grandchild = client.makeWindow(kPid, plain);
    const unsigned long second = client.makeWindow(kPid);
    QCOMPARE(get_win_id_from_pid(kPid), first);
    QCOMPARE(tessera::FoundWindows(), (std::vector<unsigned long>{first, child, grandchild, second}));
    search(second, client.display(), client.pidProperty(), kPid);
    QCOMPARE(tessera::FoundWindows(), (std::vector<unsigned long>{first, child, grandchild, second, second}));
}

void ProcessWindowTest::the_list_begins_anew_with_every_call() {
    XClient client;
    client.makeWindow(kPid);
    const unsigned long other = client.makeWindow(kOtherPid);
    QVERIFY(get_win_id_from_pid(kPid) != 0);
    QCOMPARE(get_win_id_from_pid(kOtherPid), other);
    QCOMPARE(tessera::FoundWindows(), std::vector<unsigned long>{other});
    QCOMPARE(get_win_id_from_pid(1), 0UL);
    QVERIFY(tessera::FoundWindows().empty());
}

void ProcessWindowTest::a_property_of_another_kind_is_no_match() {
    XClient client;
    client.setText(client.makeWindow(0), "4711");
    client.setBytes(client.makeWindow(0), kPid & 0xff);
    client.setEmpty(client.makeWindow(0));
    QCOMPARE(get_win_id_from_pid(kPid), 0UL);
    QCOMPARE(get_win_id_from_pid(kPid & 0xff), 0UL);
    QCOMPARE(get_win_id_from_pid(0), 0UL);
}

/// Another client makes and destroys windows as fast as it can while the tree is walked; each walk meets some of them
/// between being listed and being asked.
void ProcessWindowTest::windows_that_vanish_meanwhile_end_nothing() {
    std::atomic<bool> end{false};
    std::atomic<int> rounds{0};
    std::thread churn([&] {
        XClient client;
        while (!end) {
            std::vector<unsigned long> windows;
            for (int i = 0; i < 40; ++i)
                windows.push_back(client.makeWindow(kOtherPid));
            for (unsigned long window : windows)
                client.destroy(window);
            ++rounds;
        }
    });
    const bool churned = tests::waitFor([&] { return rounds > 2; });
    XClient client;
    const unsigned long window = client.makeWindow(kPid);
    int found = 0;
    for (int i = 0; i < 200; ++i)
        found += get_win_id_from_pid(kPid) == window ? 1 : 0;
    end = true;
    churn.join();
    QVERIFY(churned);
    QCOMPARE(found, 200);
}

QTEST_GUILESS_MAIN(ProcessWindowTest)
#include "tst_processwindow.moc"
