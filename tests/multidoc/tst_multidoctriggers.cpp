// SPDX-License-Identifier: MIT
#include "engine/iocheckedsys.h"
#include "engine/marktypes.h"
#include "shell/alarmmask.h"
#include "tests/multidoc/multidocrunfixture.h"
#include "tests/support/logtexts.h"
#include "tests/support/sleephook.h"

#include <QCheckBox>
#include <QRegularExpression>
#include <limits>
#include <vector>

using namespace tests;

/// Which documents a multi-document run marks, and what it calls at the card for each.
class MultiDocTriggersTest : public QObject, private MultiDocRunFixture {
    Q_OBJECT

private slots:
    void init() { beginRuns(); }
    void cleanup() { endRuns(); }

    void without_a_run_changes_are_taken_over_and_queue_nothing();
    void a_document_makes_its_calls_in_order_data();
    void a_document_makes_its_calls_in_order();
    void an_input_that_is_held_at_the_start_does_not_fire();
    void a_change_in_the_first_moment_of_a_run_counts();
    void a_change_behind_the_end_of_a_run_is_not_told_as_a_trigger();
    void of_two_equal_entries_the_earlier_runs();
    void a_document_that_runs_is_not_queued_and_another_once();
    void a_change_that_does_not_last_is_dropped();
    void contacts_have_ten_milliseconds_to_settle();
    void a_change_during_the_wait_for_the_contacts_data();
    void a_change_during_the_wait_for_the_contacts();
    void nothing_waits_without_a_change_or_with_an_alarm();
    void changes_and_triggers_are_logged_as_run_events();
    void an_alarm_holds_triggers_back();
    void a_pattern_taken_during_an_alarm_starts_when_that_goes();
    void an_alarm_during_a_multi_document_run_is_written_once();
    void a_document_that_cannot_be_opened_is_passed_over();
    void queued_documents_run_in_order();
    void a_manual_trigger_queues_the_entry_of_its_number();
    void a_manual_trigger_is_refused_data();
    void a_manual_trigger_is_refused();
    void inputs_of_the_machine_run_documents();
};

void MultiDocTriggersTest::without_a_run_changes_are_taken_over_and_queue_nothing() {
    take(1);
    take(3);
    QVERIFY(!worker()->GetMarkFile());
    QVERIFY(runJournal().isEmpty() && told().isEmpty());
    run();
    take(3);
    take(1);
    take(3);
    QTRY_COMPARE(begun(), QStringList{"B"});
    endRun();
}

void MultiDocTriggersTest::a_document_makes_its_calls_in_order_data() {
    QTest::addColumn<bool>("red");
    QTest::addColumn<int>("type");
    QTest::newRow("marking") << false << 0;
    QTest::newRow("red light") << true << 1;
}

void MultiDocTriggersTest::a_document_makes_its_calls_in_order() {
    QFETCH(bool, red);
    QFETCH(int, type);
    part<QCheckBox>("checkBoxRed")->setChecked(red);
    run();
    take(1);
    QTRY_COMPARE(told(), (QStringList{"0", "1A", "0"}));
    COMPARE_JOURNAL(runJournal(), {call("SetMarkStaus", 0), call("SetMarkType", type),
                                   call("DownLayerPara", 20, ArgumentPattern::rest()), call("StartMark", 0, 0),
                                   call("SetMarkStaus", 2)});
    machine().clearJournal();
    endRun();
    COMPARE_JOURNAL(runJournal(), {call("StopMark"), call("SetMarkStaus", 2)});
    QCOMPARE(told(), (QStringList{"0", "1A", "0", "2"}));
}

void MultiDocTriggersTest::an_input_that_is_held_at_the_start_does_not_fire() {
    machine().setInputs(1);
    run();
    take(1);
    take(5);
    take(4);
    QVERIFY(begun().isEmpty());
    take(5);
    QTRY_COMPARE(begun(), QStringList{"A"});
    endRun();
}

/// The worker's first message waits in the main thread until the start is over, and so may a poll.
void MultiDocTriggersTest::a_change_in_the_first_moment_of_a_run_counts() {
    press("pushButtonRun");
    take(1);
    QTRY_COMPARE(begun(), QStringList{"A"});
    QTRY_VERIFY(statusIs(MultiMarkWaiting));
    endRun();
}

void MultiDocTriggersTest::a_change_behind_the_end_of_a_run_is_not_told_as_a_trigger() {
    run();
    press("pushButtonStop");
    take(1);
    QVERIFY(!statusIs(MultiMarkIdle)); // its message is still to come
    QVERIFY(!worker()->GetMarkFile());
    QTRY_VERIFY(statusIs(MultiMarkIdle));
    QVERIFY(begun().isEmpty());
}

void MultiDocTriggersTest::of_two_equal_entries_the_earlier_runs() {
    addOpen(QStringLiteral("C"), 1, 1);
    run();
    take(1);
    take(0);
    take(1);
    QTRY_COMPARE(begun().size(), 2);
    endRun();
    QCOMPARE(begun(), (QStringList{"A", "A"}));
}

void MultiDocTriggersTest::a_document_that_runs_is_not_queued_and_another_once() {
    run();
    startSlowly(1);
    take(0);
    take(1);
    take(3);
    take(1);
    take(3);
    letEnd();
    QTRY_COMPARE(told().size(), 5);
    QCOMPARE(begun(), (QStringList{"A", "B"}));
    QCOMPARE(machineCalls("StartMark"), 2);
    endRun();
}

void MultiDocTriggersTest::a_change_that_does_not_last_is_dropped() {
    run();
    machine().setInputs(0);
    dialog().InputChange(1);
    QVERIFY(!worker()->GetMarkFile());
    take(1);
    QTRY_COMPARE(begun(), QStringList{"A"});
    endRun();
}

/// Ten milliseconds are asked for, and they pass.
void MultiDocTriggersTest::contacts_have_ten_milliseconds_to_settle() {
    run();
    std::vector<std::chrono::nanoseconds> asked;
    {
        const SleepHook hook([&asked](std::chrono::nanoseconds time) { asked.push_back(time); });
        take(1);
    }
    QVERIFY(asked == std::vector<std::chrono::nanoseconds>{std::chrono::milliseconds(10)});
    qint64 shortest = std::numeric_limits<qint64>::max();
    for (unsigned int word : {0, 1, 0, 1, 0}) {
        QElapsedTimer time;
        time.start();
        take(word);
        shortest = qMin(shortest, time.nsecsElapsed());
    }
    QVERIFY2(shortest >= 10000000 && shortest < 25000000, qPrintable(QString::number(shortest)));
    endRun();
}

void MultiDocTriggersTest::a_change_during_the_wait_for_the_contacts_data() {
    QTest::addColumn<QVector<unsigned int>>("meanwhile");
    QTest::addColumn<bool>("stands");
    QTest::newRow("back again") << QVector<unsigned int>{0} << false;
    QTest::newRow("on to another pattern") << QVector<unsigned int>{2} << false;
    QTest::newRow("another input beside it") << QVector<unsigned int>{5} << false;
    QTest::newRow("bounced and come to rest") << QVector<unsigned int>{0, 1, 3, 1} << true;
}

/// A word that does not stand is no change: the same word counts as one when it comes again.
void MultiDocTriggersTest::a_change_during_the_wait_for_the_contacts() {
    QFETCH(QVector<unsigned int>, meanwhile);
    QFETCH(bool, stands);
    const auto triggered = [] { return logTexts("run").filter(QStringLiteral("MultDocMark Triger File: ")).size(); };
    SystemParam::Instance()->SetSaveRunningLog(true);
    run();
    const int before = triggered();
    machine().setInputs(1);
    {
        const SleepHook hook([&meanwhile](std::chrono::nanoseconds) {
            for (unsigned int word : qAsConst(meanwhile))
                machine().setInputs(word);
        });
        dialog().InputChange(1);
    }
    QCOMPARE(triggered() - before, stands ? 1 : 0);
    take(1);
    QCOMPARE(triggered() - before, 1);
    QTRY_COMPARE(begun(), QStringList{"A"});
    endRun();
    QCOMPARE(begun(), QStringList{"A"});
}

void MultiDocTriggersTest::nothing_waits_without_a_change_or_with_an_alarm() {
    run();
    take(4);
    int waits = 0;
    const SleepHook hook([&waits](std::chrono::nanoseconds) { ++waits; });
    take(4);
    QCOMPARE(waits, 0);
    window().SetSafeAlarm(true, tessera::AlarmCurtain);
    take(1);
    QCOMPARE(waits, 0);
    window().SetSafeAlarm(false, tessera::AlarmCurtain);
    take(1);
    QCOMPARE(waits, 1);
    QTRY_COMPARE(begun(), QStringList{"A"});
    endRun();
}

/// Level 9; plants read these lines, the words as signed numbers.
void MultiDocTriggersTest::changes_and_triggers_are_logged_as_run_events() {
    const auto lines = [] { return logTexts("run").filter(QRegularExpression(QStringLiteral("^MultDocMark "))); };
    QCOMPARE(int(NoteRun), 9);
    SystemParam::Instance()->SetSaveRunningLog(true);
    addOpen(QStringLiteral("Plate C"), 0xffffffffU, 0x80000400U);
    add(QStringLiteral("gone"), 0, 0x10);
    QStringList wanted = lines();
    const auto tell = [&](unsigned int word, QStringList const& more) {
        take(word);
        wanted += more;
        QCOMPARE(lines(), wanted);
    };
    // Without a run a change is told and starts nothing.
    tell(0x5fc, {"MultDocMark Triger File Input:Last->0,Input->5FC"});
    machine().setInputs(0x10);
    run();
    tell(0x15, {"MultDocMark Triger File Input:Last->10,Input->15", "MultDocMark Triger File: 0,1,0,1,16,21,1,1,A"});
    tell(0x15, {});
    tell(0x80000415U, {"MultDocMark Triger File Input:Last->15,Input->80000415",
                       "MultDocMark Triger File: 2,-2147482624,0,-2147482624,21,-2147482603,-2147482624,-1,Plate C"});
    // A document that is not open starts nothing and is not told.
    tell(0x05, {"MultDocMark Triger File Input:Last->80000415,Input->5"});
    QTRY_COMPARE(begun(), (QStringList{"A", "Plate C"}));
    SystemParam::Instance()->SetSaveRunningLog(false);
    tell(0x07, {});
    SystemParam::Instance()->SetSaveRunningLog(true);
    endRun();
}

void MultiDocTriggersTest::an_alarm_holds_triggers_back() {
    run();
    window().SetSafeAlarm(true, tessera::AlarmCurtain);
    take(1);
    part<QSpinBox>("spinBoxTrigerIndex")->setValue(1);
    press("pushButtonTriger0");
    QVERIFY(begun().isEmpty());
    window().SetSafeAlarm(false, tessera::AlarmCurtain);
    take(1);
    QTRY_COMPARE(begun(), QStringList{"A"});
    endRun();
}

/// Each poll asks for the alarms while the changed inputs are not taken over. The light curtain is at input 12.
void MultiDocTriggersTest::an_alarm_during_a_multi_document_run_is_written_once() {
    IOFuncList curtain;
    curtain.Name = QStringLiteral("安全光栅");
    curtain.InputEnable = true;
    curtain.InputMask = curtain.InputValue = 1U << 12;
    IOCheckedSys::Instance()->SetIOFunctions({curtain});
    window().SetSafeAlarm(true, tessera::AlarmCurtain);
    const QString text = window().GetAlarmInfos().value(0);
    QVERIFY(!text.isEmpty());
    window().SetSafeAlarm(false, tessera::AlarmCurtain);
    window().ClearTextSub();
    const auto written = [&] { return m_Root.read(QStringLiteral("/日志文件/Debug.txt")).count(text.toUtf8()); };
    const int before = written();
    SystemParam::Instance()->m_nResponseIO = 1;
    run();
    waitForPolls();
    machine().setInput(12, true);
    QListWidget* shown = m_Window->statusList();
    for (int times = 1; times <= 2; ++times) {
        QTRY_COMPARE(shown->count(), 1);
        waitForPolls();
        waitForPolls();
        QCOMPARE(shown->item(0)->text(), text);
        QCOMPARE(written(), before + times);
        window().ClearTextSub();
    }
    machine().setInput(12, false);
    endRun();
    IOCheckedSys::Instance()->SetIOFunctions({});
}

/// By the machine's own poll: nobody presses anything. The light curtain is at input 12.
void MultiDocTriggersTest::a_pattern_taken_during_an_alarm_starts_when_that_goes() {
    IOFuncList curtain;
    curtain.Name = QStringLiteral("安全光栅");
    curtain.InputEnable = true;
    curtain.InputMask = curtain.InputValue = 1U << 12;
    IOCheckedSys::Instance()->SetIOFunctions({curtain});
    SystemParam::Instance()->m_nResponseIO = 1;
    run();
    waitForPolls();
    machine().setInput(12, true);
    QTRY_VERIFY(!window().CheckAlarmStatus());
    machine().setInput(0, true);
    waitForPolls();
    QVERIFY(begun().isEmpty());
    machine().setInput(12, false);
    QTRY_COMPARE(begun(), QStringList{"A"});
    IOCheckedSys::Instance()->SetIOFunctions({});
    endRun();
}

void MultiDocTriggersTest::a_document_that_cannot_be_opened_is_passed_over() {
    add(QStringLiteral("gone"), 4, 4);
    run();
    QVERIFY(!window().GetDoc(QStringLiteral("gone")));
    take(4);
    take(0);
    take(1);
    QTRY_COMPARE(begun(), QStringList{"A"});
    endRun();
}

void MultiDocTriggersTest::queued_documents_run_in_order() {
    QStringList wanted{"A"};
    unsigned int mask = 4;
    for (char const* name : {"C", "D", "E", "F", "G"}) {
        addOpen(QLatin1String(name), mask, mask);
        mask <<= 1;
    }
    run();
    startSlowly(1);
    for (unsigned int bit : {4, 2, 6, 3, 5, 4, 2}) {
        take(1U | 1U << bit);
        take(1);
    }
    for (char const* name : {"E", "C", "G", "D", "F"})
        wanted.append(QLatin1String(name));
    letEnd();
    QTRY_COMPARE(begun(), wanted);
    endRun();
    QCOMPARE(begun(), wanted);
    QCOMPARE(machineCalls("StartMark"), wanted.size());
}

void MultiDocTriggersTest::a_manual_trigger_queues_the_entry_of_its_number() {
    run();
    part<QSpinBox>("spinBoxTrigerIndex")->setValue(1);
    press("pushButtonTriger0");
    QTRY_COMPARE(begun(), QStringList{"B"});
    QTRY_COMPARE(told().last(), QStringLiteral("0"));
    // These two were never given a task.
    press("pushButtonTriger1");
    press("pushButton_3");
    endRun();
    QCOMPARE(begun(), QStringList{"B"});
}

void MultiDocTriggersTest::a_manual_trigger_is_refused_data() {
    QTest::addColumn<bool>("running");
    QTest::addColumn<int>("number");
    QTest::newRow("without a run") << false << 0;
    QTest::newRow("a number behind the list") << true << 3;
    QTest::newRow("a document that is not open") << true << 2;
}

void MultiDocTriggersTest::a_manual_trigger_is_refused() {
    QFETCH(bool, running);
    QFETCH(int, number);
    add(QStringLiteral("gone"), 4, 4);
    if (running)
        run();
    part<QSpinBox>("spinBoxTrigerIndex")->setValue(number);
    press("pushButtonTriger0");
    QVERIFY(!worker()->GetMarkFile());
    if (running)
        endRun();
    QVERIFY(begun().isEmpty());
}

void MultiDocTriggersTest::inputs_of_the_machine_run_documents() {
    SystemParam::Instance()->m_nResponseIO = 1;
    run();
    QStringList wanted;
    for (int i = 0; i < 10; ++i) {
        const int bit = i % 3 == 0 ? 1 : 0;
        wanted.append(bit == 0 ? QStringLiteral("A") : QStringLiteral("B"));
        machine().setInput(bit, true);
        QTRY_COMPARE(begun(), wanted);
        QTRY_VERIFY(statusIs(MultiMarkWaiting));
        machine().setInput(bit, false);
        waitForPolls();
    }
    QCOMPARE(machineCalls("StartMark"), 10);
    // While the window is not the marking window nothing is watched.
    endRun();
    QVERIFY(dialog().close());
    machine().setInput(0, true);
    waitForPolls();
    QCOMPARE(begun(), wanted);
}

QTEST_MAIN(MultiDocTriggersTest)
#include "tst_multidoctriggers.moc"
