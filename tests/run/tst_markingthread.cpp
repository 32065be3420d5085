// SPDX-License-Identifier: MIT
#include "engine/markcardinstance.h"
#include "engine/showdebuginfo.h"
#include "run/markingthread.h"
#include "tests/run/formfixture.h"

#include <QPushButton>

using namespace tests;

/// The worker of the run dialog, by itself: what it tells, in which order.
class MarkingThreadTest : public QObject, private RunDialogFixture {
    Q_OBJECT

private slots:
    void initTestCase();
    void init() { begin(); }
    void cleanup() { end(); }

    void a_run_tells_start_pass_and_end();
    void a_pause_and_a_resume_are_told();
    void a_loop_tells_every_pass_and_one_end();
    void a_triggered_run_tells_no_end_but_the_way_back();
    void a_triggered_run_leaves_its_traces();
    void the_trigger_flag_is_shown_in_the_debug_window();
    void a_stop_flag_of_previews_is_kept();

private:
    void follow(MarkingThread& thread) {
        m_Told.clear();
        const auto note = [this](char const* name) {
            return [this, name] { m_Told.append(QString::fromLatin1(name)); };
        };
        connect(&thread, &MarkingThread::markstart, this, note("markstart"), Qt::QueuedConnection);
        connect(&thread, &MarkingThread::markRestart, this, note("markRestart"), Qt::QueuedConnection);
        connect(&thread, &MarkingThread::markFinishUI, this, note("markFinishUI"), Qt::QueuedConnection);
        connect(&thread, &MarkingThread::markpause, this, note("markpause"), Qt::QueuedConnection);
        connect(&thread, &MarkingThread::markrunspecial, this, note("markrunspecial"), Qt::QueuedConnection);
        connect(
            &thread, &MarkingThread::markfinish, this,
            [this](bool ok, QDateTime const& time) {
                m_Told.append(QStringLiteral("markfinish %1").arg(ok));
                m_LastPass = time;
            },
            Qt::QueuedConnection);
    }

    QStringList m_Told;
    QDateTime m_LastPass;
};

void MarkingThreadTest::initTestCase() {
    QVERIFY(m_Root.isValid());
}

void MarkingThreadTest::a_run_tells_start_pass_and_end() {
    MarkingThread thread;
    follow(thread);
    machine().setSpeed(0.0);
    const QDateTime before = QDateTime::currentDateTime();
    thread.RunTriger(false, false, 30, MarkTypeLaser);
    QTRY_COMPARE(m_Told, (QStringList{"markstart", "markfinish 1", "markFinishUI"}));
    QVERIFY(m_LastPass >= before && m_LastPass <= QDateTime::currentDateTime());
    QCOMPARE(SystemParam::Instance()->GetLoopMarkDelay(), 30.0);
    QCOMPARE(MarkCardInstance::Instance()->GetMarkStatus(), MarkStatusStop);
}

void MarkingThreadTest::a_pause_and_a_resume_are_told() {
    MarkingThread thread;
    follow(thread);
    machine().setSpeed(kSlow);
    thread.RunTriger(false, false, 50, MarkTypeLaser);
    QTRY_COMPARE(m_Told, QStringList{"markstart"});
    thread.RunTriger(false, false, 50, MarkTypeLaser);
    thread.PauseTriger();
    thread.RunTrigerOnly(false, false, 50, MarkTypeLaser, false);
    thread.RunTrigerOnly(false, false, 50, MarkTypeLaser, false);
    thread.ReStartTriger();
    QTRY_COMPARE(m_Told, (QStringList{"markstart", "markpause", "markRestart"}));
    thread.StopTriger();
    QTRY_COMPARE(m_Told, (QStringList{"markstart", "markpause", "markRestart", "markfinish 1", "markFinishUI"}));
}

void MarkingThreadTest::a_loop_tells_every_pass_and_one_end() {
    MarkingThread thread;
    follow(thread);
    machine().setSpeed(0.0);
    thread.RunTriger(false, true, 1, MarkTypeLaser);
    QTRY_VERIFY(m_Told.size() >= 6);
    thread.StopTriger();
    QTRY_COMPARE(m_Told.last(), QStringLiteral("markFinishUI"));
    for (int i = 0; i + 1 < m_Told.size(); ++i)
        QCOMPARE(m_Told.at(i), i % 2 == 0 ? QStringLiteral("markstart") : QStringLiteral("markfinish 1"));
    QCOMPARE(m_Told.size() % 2, 1);
}

void MarkingThreadTest::a_triggered_run_tells_no_end_but_the_way_back() {
    MarkingThread thread;
    follow(thread);
    machine().setSpeed(0.0);
    thread.RunTrigerOnly(false, false, 50, MarkTypeLaser, true);
    QTRY_COMPARE(m_Told, (QStringList{"markstart", "markfinish 1", "markrunspecial"}));
    thread.disconnect(this);
    follow(thread);
    thread.RunTrigerOnly(false, false, 50, MarkTypeLaser, false);
    QTRY_COMPARE(m_Told, (QStringList{"markstart", "markfinish 1", "markFinishUI"}));
}

void MarkingThreadTest::a_triggered_run_leaves_its_traces() {
    MarkingThread thread;
    machine().setSpeed(0.0);
    const int before = debugLines().size();
    thread.RunTrigerOnly(false, false, 50, MarkTypeLaser, true);
    QTRY_COMPARE(debugLines().size(), before + 4);
    const QStringList lines = debugLines().mid(before);
    const QString stamp = QStringLiteral("\\d\\d:\\d\\d:\\d\\d\\.\\d\\d\\d:");
    QVERIFY2(lines.at(0).contains(QRegularExpression(stamp + QStringLiteral("红光循环时触发运行开始0$"))),
             qPrintable(lines.at(0)));
    for (int i : {1, 2})
        QVERIFY2(lines.at(i).contains(QRegularExpression(stamp)), qPrintable(lines.at(i)));
    QVERIFY2(lines.at(3).endsWith(QStringLiteral("0,0,1,0")), qPrintable(lines.at(3)));
    QVERIFY(m_Root.read(QStringLiteral("/日志文件/Debug.txt")).contains("\n0,0,1,0\n"));
}

void MarkingThreadTest::the_trigger_flag_is_shown_in_the_debug_window() {
    MarkingThread thread;
    thread.SetEnableTriggerWhenRedLoop(true);
    QVERIFY(debugLines().last().endsWith(QStringLiteral("m_EnableTriggerWhenRedLoop:1")));
    thread.SetEnableTriggerWhenRedLoop(false);
    QVERIFY(debugLines().last().endsWith(QStringLiteral("m_EnableTriggerWhenRedLoop:0")));
}

void MarkingThreadTest::a_stop_flag_of_previews_is_kept() {
    MarkingThread thread;
    QVERIFY(!thread.IsStopVirtual());
    thread.StopTrigerVirtual();
    QVERIFY(!thread.IsStopVirtual());
    thread.SetStopVirtual(true);
    QVERIFY(thread.IsStopVirtual());
    thread.SetStopVirtual(false);
    QVERIFY(!thread.IsStopVirtual());
}

QTEST_MAIN(MarkingThreadTest)
#include "tst_markingthread.moc"
