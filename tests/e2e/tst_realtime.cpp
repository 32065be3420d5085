// SPDX-License-Identifier: MIT
#include "e2e/tesseraprogram.h"
#include "tests/support/timeoutscale.h"

#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QtTest>

#include <linux/capability.h>
#include <pthread.h>
#include <sched.h>
#include <sys/prctl.h>
#include <sys/resource.h>
#include <sys/types.h>
#include <thread>

namespace {

/// How the system schedules a thread.
struct Scheduling {
    int policy = -1;
    int priority = -1;
};

/// Of the thread of this name in a process; -1 when there is not exactly one. The system cuts names to 15 characters.
Scheduling schedulingOf(qint64 process, char const* name) {
    Scheduling found;
    int count = 0;
    QDir const tasks(QStringLiteral("/proc/%1/task").arg(process));
    for (QString const& task : tasks.entryList(QDir::Dirs | QDir::NoDotAndDotDot)) {
        QFile file(tasks.filePath(task + QStringLiteral("/comm")));
        if (!file.open(QIODevice::ReadOnly) || file.readAll().trimmed() != QByteArray(name).left(15))
            continue;
        ++count;
        sched_param parameter{};
        if (::sched_getparam(pid_t(task.toInt()), &parameter) == 0)
            found = {::sched_getscheduler(pid_t(task.toInt())), parameter.sched_priority};
    }
    return count == 1 ? found : Scheduling();
}

/// Whether the system lets a thread of ours have real-time scheduling of this priority: asked of the system itself, as
/// it depends on capabilities, limits and the control group.
bool mayHave(int priority) {
    bool may = false;
    std::thread([&may, priority] {
        sched_param parameter{};
        parameter.sched_priority = priority;
        may = ::pthread_setschedparam(pthread_self(), SCHED_FIFO, &parameter) == 0;
    }).join();
    return may;
}

/// Takes the right to real-time scheduling from the programs that are started from now on; false when it cannot.
bool giveUpRealTime() {
    rlimit const none{0, 0};
    if (::setrlimit(RLIMIT_RTPRIO, &none) != 0)
        return false;
    // Without the right to change the bounding set there is no capability in it to be gained by starting a program.
    return ::prctl(PR_CAPBSET_DROP, CAP_SYS_NICE, 0, 0, 0) == 0 || !mayHave(::sched_get_priority_min(SCHED_FIFO));
}

} // namespace

/// What is timed runs before what is not, where the station's program may ask for that.
class TestRealTime : public QObject {
    Q_OBJECT

    /// The priorities that the threads ask for.
    int const m_input = ::sched_get_priority_min(SCHED_FIFO) + 5;
    int const m_card = ::sched_get_priority_min(SCHED_FIFO) + 9;

    static constexpr char kInputThread[] = "UpdateInputThread";
    static constexpr char kCardThread[] = "sim-card";

    /// A program with a run under way.
    static bool startRun(TesseraProgram& program) {
        if (!program.startAutomated({"--sim-speed", "0.01", "--import", sampleFile("gear-plate.svg")}) ||
            !program.waitProperty("actionMark", "enabled", true))
            return false;
        program.call("ui.trigger", {{"action", "actionMark"}});
        program.waitProperty("Form_Marking", "visible", true);
        program.call("ui.click", {{"object", "Form_Marking/pushButtonStart"}});
        QJsonValue const state = program.waitFor("card.state", {}, [](QJsonValue const& now) {
            return now.toObject().value("activity") == QJsonValue("running");
        });
        return state.toObject().value("activity") == QJsonValue("running");
    }

private slots:
    void input_poll_and_card_are_scheduled_in_real_time_where_the_program_may() {
        ProgramRoot root;
        TesseraProgram program(root);
        QVERIFY2(startRun(program), program.errors().constData());
        qint64 const process = program.processId();
        bool const inputMay = mayHave(m_input);
        bool const cardMay = mayHave(m_card);
        qInfo("the input poll %s ask for real-time scheduling here, the card %s", inputMay ? "may" : "may not",
              cardMay ? "may" : "may not");
        QTRY_COMPARE(schedulingOf(process, kInputThread).policy, inputMay ? SCHED_FIFO : SCHED_OTHER);
        QCOMPARE(schedulingOf(process, kInputThread).priority, inputMay ? m_input : 0);
        QTRY_COMPARE(schedulingOf(process, kCardThread).policy, cardMay ? SCHED_FIFO : SCHED_OTHER);
        QCOMPARE(schedulingOf(process, kCardThread).priority, cardMay ? m_card : 0);
        // The card's worker comes before the beat, and both before the window, which is lent less for the poll alone.
        int lent = 0;
        int own = 0;
        QElapsedTimer time;
        time.start();
        while ((own == 0 || (lent == 0 && inputMay)) && !time.hasExpired(tests::scaled(5000))) {
            sched_param window{};
            QCOMPARE(::sched_getparam(pid_t(process), &window), 0);
            QVERIFY2(window.sched_priority < m_input, qPrintable(QString::number(window.sched_priority)));
            ++(window.sched_priority > 0 ? lent : own);
        }
        QVERIFY(own > 0);
        QCOMPARE(lent > 0, inputMay);
    }

    /// The last function: what it gives up does not come back.
    void without_the_right_they_run_as_any_thread() {
        QVERIFY(giveUpRealTime());
        ProgramRoot root;
        TesseraProgram program(root);
        QVERIFY2(startRun(program), program.errors().constData());
        qint64 const process = program.processId();
        QTRY_COMPARE(schedulingOf(process, kInputThread).policy, SCHED_OTHER);
        QTRY_COMPARE(schedulingOf(process, kCardThread).policy, SCHED_OTHER);
        program.call("ui.click", {{"object", "Form_Marking/pushButtonStop"}});
        QVERIFY(program.waitProperty("Form_Marking/pushButtonCancel", "enabled", true));
        QCOMPARE(root.counter(), 1);
    }
};

QTEST_GUILESS_MAIN(TestRealTime)
#include "tst_realtime.moc"
