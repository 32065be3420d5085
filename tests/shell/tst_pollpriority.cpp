// SPDX-License-Identifier: MIT
#include "shell/pollpriority.h"

#include <QtTest>
#include <functional>
#include <linux/capability.h>
#include <sched.h>
#include <sys/resource.h>
#include <sys/syscall.h>
#include <thread>
#include <unistd.h>

using tessera::PollPriority;
using namespace std::chrono_literals;

namespace {

constexpr int kAboveLeast = 4;

struct Scheduling {
    int policy = -1; ///< without the mark that keeps it from being inherited
    int priority = -1;
    bool operator==(Scheduling const& other) const { return policy == other.policy && priority == other.priority; }
};

Scheduling now() {
    sched_param parameter{};
    sched_getparam(0, &parameter);
    return {sched_getscheduler(0) & ~SCHED_RESET_ON_FORK, parameter.sched_priority};
}

Scheduling lent() {
    return {SCHED_FIFO, sched_get_priority_min(SCHED_FIFO) + kAboveLeast};
}

constexpr Scheduling kUsual{SCHED_OTHER, 0};

bool take(int policy, int priority) {
    sched_param parameter{};
    parameter.sched_priority = priority;
    return sched_setscheduler(0, policy, &parameter) == 0;
}

/// Runs on a thread of its own, whose scheduling and rights end with it.
void onThread(std::function<void()> const& work) {
    std::thread(work).join();
}

/// Takes the right to real-time scheduling from the calling thread; what the user's limits grant, from the process for
/// as long as the object lives.
class WithoutRealTime {
public:
    WithoutRealTime() {
        getrlimit(RLIMIT_RTPRIO, &m_Limit);
        rlimit none = m_Limit;
        none.rlim_cur = 0;
        // Nobody without the right gets a higher priority than the thread has.
        m_bGone = setrlimit(RLIMIT_RTPRIO, &none) == 0 && dropCapabilities() &&
                  !take(SCHED_FIFO, sched_get_priority_max(SCHED_FIFO));
    }
    ~WithoutRealTime() { setrlimit(RLIMIT_RTPRIO, &m_Limit); }
    WithoutRealTime(WithoutRealTime const&) = delete;
    WithoutRealTime& operator=(WithoutRealTime const&) = delete;
    bool IsGone() const { return m_bGone; }

private:
    static bool dropCapabilities() {
        __user_cap_header_struct header{_LINUX_CAPABILITY_VERSION_3, 0};
        __user_cap_data_struct data[2]{};
        if (syscall(SYS_capget, &header, data) != 0)
            return false;
        for (__user_cap_data_struct& part : data)
            part.effective = part.permitted = part.inheritable = 0;
        return syscall(SYS_capset, &header, data) == 0;
    }

    rlimit m_Limit{};
    bool m_bGone = false;
};

} // namespace

/// The priority that the poll's thread has from a beat to the end of the poll.
class PollPriorityTest : public QObject {
    Q_OBJECT

private slots:
    void initTestCase();
    void a_loan_lasts_until_the_poll_is_done();
    void beats_behind_the_first_lend_nothing_more();
    void a_poll_that_does_not_come_ends_the_loan_until_one_has_come();
    void another_thread_lends_and_takes_back();
    void what_is_lent_at_the_end_is_taken_back();
    void threads_that_are_started_during_a_loan_do_not_inherit_it();
    void a_thread_with_a_scheduling_of_its_own_is_left_alone_data();
    void a_thread_with_a_scheduling_of_its_own_is_left_alone();
    void without_the_right_nothing_is_changed();
    void a_right_that_is_lost_during_a_loan_still_lets_it_be_taken_back();

private:
    bool m_bMay = false;
};

void PollPriorityTest::initTestCase() {
    onThread([this] { m_bMay = take(SCHED_FIFO, lent().priority); });
    qInfo("this process %s have real-time scheduling", m_bMay ? "may" : "may not");
    QCOMPARE(now(), kUsual);
}

void PollPriorityTest::a_loan_lasts_until_the_poll_is_done() {
    PollPriority priority(kAboveLeast);
    for (int i = 0; i < 3; ++i) {
        QCOMPARE(now(), kUsual);
        priority.Lend();
        QCOMPARE(now(), m_bMay ? lent() : kUsual);
        priority.GiveBack();
    }
    QCOMPARE(now(), kUsual);
    priority.GiveBack();
    QCOMPARE(now(), kUsual);
}

void PollPriorityTest::beats_behind_the_first_lend_nothing_more() {
    PollPriority priority(kAboveLeast);
    const PollPriority::Clock::time_point begin = PollPriority::Clock::now();
    priority.Lend(begin);
    priority.Lend(begin + 30ms);
    QCOMPARE(now(), m_bMay ? lent() : kUsual);
    priority.GiveBack();
    QCOMPARE(now(), kUsual);
}

void PollPriorityTest::a_poll_that_does_not_come_ends_the_loan_until_one_has_come() {
    PollPriority priority(kAboveLeast);
    const PollPriority::Clock::time_point begin = PollPriority::Clock::now();
    priority.Lend(begin);
    priority.Lend(begin + PollPriority::kLongest - 1ms);
    QCOMPARE(now(), m_bMay ? lent() : kUsual);
    priority.Lend(begin + PollPriority::kLongest);
    QCOMPARE(now(), kUsual);
    priority.Lend(begin + 10 * PollPriority::kLongest);
    QCOMPARE(now(), kUsual);
    priority.GiveBack();
    priority.Lend(begin + 11 * PollPriority::kLongest);
    QCOMPARE(now(), m_bMay ? lent() : kUsual);
}

void PollPriorityTest::another_thread_lends_and_takes_back() {
    QCOMPARE(now(), kUsual);
    PollPriority priority(kAboveLeast);
    const PollPriority::Clock::time_point begin = PollPriority::Clock::now();
    onThread([&] {
        priority.Lend(begin);
        QCOMPARE(now(), kUsual);
    });
    QCOMPARE(now(), m_bMay ? lent() : kUsual);
    onThread([&] { priority.Lend(begin + PollPriority::kLongest); });
    QCOMPARE(now(), kUsual);
}

void PollPriorityTest::what_is_lent_at_the_end_is_taken_back() {
    {
        PollPriority priority(kAboveLeast);
        priority.Lend();
    }
    QCOMPARE(now(), kUsual);
}

void PollPriorityTest::threads_that_are_started_during_a_loan_do_not_inherit_it() {
    PollPriority priority(kAboveLeast);
    priority.Lend();
    Scheduling child;
    onThread([&child] { child = now(); });
    QCOMPARE(child, kUsual);
}

/// Everyone may have the one for batches; the real-time one needs the right, and without it there is none to leave
/// alone.
void PollPriorityTest::a_thread_with_a_scheduling_of_its_own_is_left_alone_data() {
    QTest::addColumn<int>("policy");
    QTest::addColumn<int>("priority");
    QTest::newRow("real time") << SCHED_RR << lent().priority;
    QTest::newRow("batch") << SCHED_BATCH << 0;
}

void PollPriorityTest::a_thread_with_a_scheduling_of_its_own_is_left_alone() {
    QFETCH(int, policy);
    QFETCH(int, priority);
    onThread([=] {
        const bool may = m_bMay || policy == SCHED_BATCH;
        QCOMPARE(take(policy, priority), may);
        const Scheduling own = may ? Scheduling{policy, priority} : kUsual;
        QCOMPARE(now(), own);
        {
            PollPriority lender(kAboveLeast);
            lender.Lend();
            QCOMPARE(now(), own);
            lender.GiveBack();
            QCOMPARE(now(), own);
        }
        QCOMPARE(now(), own);
    });
}

void PollPriorityTest::without_the_right_nothing_is_changed() {
    onThread([] {
        const WithoutRealTime without;
        QVERIFY(without.IsGone());
        PollPriority priority(kAboveLeast);
        priority.Lend();
        QCOMPARE(now(), kUsual);
        priority.GiveBack();
        QCOMPARE(now(), kUsual);
    });
}

void PollPriorityTest::a_right_that_is_lost_during_a_loan_still_lets_it_be_taken_back() {
    onThread([this] {
        PollPriority priority(kAboveLeast);
        priority.Lend();
        QCOMPARE(now(), m_bMay ? lent() : kUsual);
        const WithoutRealTime without;
        QVERIFY(without.IsGone());
        priority.GiveBack();
        QCOMPARE(now(), kUsual);
    });
}

QTEST_GUILESS_MAIN(PollPriorityTest)
#include "tst_pollpriority.moc"
