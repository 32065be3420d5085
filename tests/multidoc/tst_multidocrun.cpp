// SPDX-License-Identifier: MIT
#include "shell/alarmmask.h"
#include "tests/multidoc/multidocfixture.h"

#include <QCheckBox>

using namespace tests;

/// The run of a multi-document project: triggers, worker, stops and what the window shows.
class MultiDocRunTest : public QObject, private MultiDocFixture {
    Q_OBJECT

private slots:
    void init() {
        begin();
        dialog().SetCurMultiMarkFile(QStringLiteral("set"));
        addOpen(QStringLiteral("A"), 1, 1);
        addOpen(QStringLiteral("B"), 2, 2);
        window().ShowMultDocMarkWindow();
        QObject::connect(
            thread(), &MultiMarkThread::markstatusChange, this,
            [this](int status, QString const& name) {
                const std::lock_guard<std::mutex> lock(m_Lock);
                m_Told.append(QString::number(status) + name);
            },
            Qt::DirectConnection);
    }
    void cleanup() {
        end();
        m_Told.clear();
    }

    void without_a_run_changes_are_taken_over_and_queue_nothing();
    void a_run_opens_the_documents_and_locks_the_window();
    void a_document_makes_its_calls_in_order_data();
    void a_document_makes_its_calls_in_order();
    void an_input_that_is_held_at_the_start_does_not_fire();
    void of_two_equal_entries_the_earlier_runs();
    void a_document_that_runs_is_not_queued_and_another_once();
    void a_change_that_does_not_last_is_dropped();
    void an_alarm_holds_triggers_back();
    void a_document_that_cannot_be_opened_is_passed_over();
    void queued_documents_run_in_order();
    void a_manual_trigger_queues_the_entry_of_its_number();
    void a_manual_trigger_is_refused_data();
    void a_manual_trigger_is_refused();
    void the_stop_button_ends_the_run();
    void the_remote_stop_leaves_the_run_waiting();
    void the_delayed_stop_comes_a_second_later();
    void the_stop_key_stops_the_document();
    void a_stop_at_any_moment_is_not_lost();
    void an_end_at_any_moment_is_not_lost();
    void a_second_start_leaves_the_run_alone();
    void a_run_can_be_started_again();
    void status_and_colour_follow_the_run();
    void the_document_that_runs_is_the_current_row();
    void each_row_tells_its_last_run_and_its_runs();
    void run_data_is_told_at_the_start_and_after_each_document();
    void time_runs_while_a_document_is_marked();
    void dots_follow_the_status();
    void runs_are_counted_and_cleared_by_a_double_click();
    void a_double_click_during_a_document_is_passed_on();
    void the_window_does_not_close_during_a_run_but_the_ready_output_goes_off();
    void without_a_ready_output_closing_writes_none();
    void escape_closes_without_a_run_only();
    void the_start_of_the_program_can_start_a_run();
    void closing_the_marked_document_ends_it_first();
    void closing_a_waiting_document_takes_it_out();
    void the_end_of_the_program_ends_a_run();
    void inputs_of_the_machine_run_documents();

private:
    void addOpen(QString const& name, unsigned int value, unsigned int mask) {
        makeFile(name);
        add(name, value, mask);
    }
    static MultiMarkThread* thread() { return part<MultiMarkThread>(""); }
    QStringList told() {
        const std::lock_guard<std::mutex> lock(m_Lock);
        return m_Told;
    }
    /// The documents that were begun, in order.
    QStringList begun() {
        QStringList names;
        for (QString const& line : told()) {
            if (line.startsWith('1'))
                names.append(line.mid(1));
        }
        return names;
    }
    static bool statusIs(MultiMarkStatus status) { return dialog().GetMarkStatus() == status; }
    void run() {
        press("pushButtonRun");
        QTRY_VERIFY(statusIs(MultiMarkWaiting));
        machine().clearJournal();
    }
    void endRun() {
        machine().setSpeed(0.0);
        press("pushButtonStop");
        QTRY_VERIFY(statusIs(MultiMarkIdle));
    }
    /// Lets a document go on until it is stopped.
    void startSlowly(unsigned int word) {
        machine().setSpeed(kSlowRun);
        take(word);
        QTRY_VERIFY(statusIs(MultiMarkMarking));
        QTRY_COMPARE(machine().state().activity, sim::SimActivity::Running);
    }
    void letEnd() {
        machine().setSpeed(0.0);
        QTRY_VERIFY(statusIs(MultiMarkWaiting));
        QTRY_COMPARE(told().last(), QStringLiteral("0"));
        QCoreApplication::processEvents();
    }
    bool windowIsFree() { return m_Window->child<QWidget>("centralwidget")->isEnabled(); }
    /// The inputs as they are now have been seen.
    void waitForPolls() {
        QObject context;
        int polls = 0;
        QObject::connect(&window(), &MainWindow::TimerUpDate, &context, [&polls] { ++polls; });
        QTRY_VERIFY(polls >= 3);
    }
    static QString journalText() {
        QString text;
        for (JournalEntry const& entry : machineJournal())
            text += QStringLiteral("%1 %2(%3) ").arg(entry.timeMs).arg(entry.name, entry.arguments.join(','));
        return text;
    }
    static QColor statusColor() { return part<QLabel>("labelStatus")->palette().color(QPalette::WindowText); }

    std::mutex m_Lock;
    QStringList m_Told;
};

void MultiDocRunTest::without_a_run_changes_are_taken_over_and_queue_nothing() {
    take(1);
    take(3);
    QVERIFY(!thread()->GetMarkFile());
    QVERIFY(runJournal().isEmpty() && told().isEmpty());
    run();
    take(3);
    take(1);
    take(3);
    QTRY_COMPARE(begun(), QStringList{"B"});
    endRun();
}

void MultiDocRunTest::a_run_opens_the_documents_and_locks_the_window() {
    QVERIFY(!window().GetDoc(QStringLiteral("A")));
    part<QCheckBox>("checkBoxRed")->setChecked(false);
    run();
    QVERIFY(window().GetDoc(QStringLiteral("A")) && window().GetDoc(QStringLiteral("B")));
    const QStringList locked{"toolBarProject",     "listWidget",       "pushButtonAdd",
                             "pushButtonDel",      "pushButtonMoveUp", "pushButtonEdit",
                             "pushButtonMoveDown", "pushButtonRun",    "checkBoxRed"};
    for (QString const& name : locked)
        QVERIFY2(!dialog().findChild<QWidget*>(name)->isEnabled(), qPrintable(name));
    for (char const* name : {"pushButtonStop", "pushButtonStopMark", "pushButtonTriger0"})
        QVERIFY(part<QPushButton>(name)->isEnabled());
    QVERIFY(!windowIsFree());
    endRun();
    for (QString const& name : locked)
        QVERIFY2(dialog().findChild<QWidget*>(name)->isEnabled(), qPrintable(name));
    QVERIFY(!part<QPushButton>("pushButtonStop")->isEnabled());
    QVERIFY(windowIsFree());
}

void MultiDocRunTest::a_document_makes_its_calls_in_order_data() {
    QTest::addColumn<bool>("red");
    QTest::addColumn<int>("type");
    QTest::newRow("marking") << false << 0;
    QTest::newRow("red light") << true << 1;
}

void MultiDocRunTest::a_document_makes_its_calls_in_order() {
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

void MultiDocRunTest::an_input_that_is_held_at_the_start_does_not_fire() {
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

void MultiDocRunTest::of_two_equal_entries_the_earlier_runs() {
    addOpen(QStringLiteral("C"), 1, 1);
    run();
    take(1);
    take(0);
    take(1);
    QTRY_COMPARE(begun().size(), 2);
    endRun();
    QCOMPARE(begun(), (QStringList{"A", "A"}));
}

void MultiDocRunTest::a_document_that_runs_is_not_queued_and_another_once() {
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

void MultiDocRunTest::a_change_that_does_not_last_is_dropped() {
    run();
    machine().setInputs(0);
    dialog().InputChange(1);
    QVERIFY(!thread()->GetMarkFile());
    take(1);
    QTRY_COMPARE(begun(), QStringList{"A"});
    endRun();
}

void MultiDocRunTest::an_alarm_holds_triggers_back() {
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

void MultiDocRunTest::a_document_that_cannot_be_opened_is_passed_over() {
    add(QStringLiteral("gone"), 4, 4);
    run();
    QVERIFY(!window().GetDoc(QStringLiteral("gone")));
    take(4);
    take(0);
    take(1);
    QTRY_COMPARE(begun(), QStringList{"A"});
    endRun();
}

void MultiDocRunTest::queued_documents_run_in_order() {
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

void MultiDocRunTest::a_manual_trigger_queues_the_entry_of_its_number() {
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

void MultiDocRunTest::a_manual_trigger_is_refused_data() {
    QTest::addColumn<bool>("running");
    QTest::addColumn<int>("number");
    QTest::newRow("without a run") << false << 0;
    QTest::newRow("a number behind the list") << true << 3;
    QTest::newRow("a document that is not open") << true << 2;
}

void MultiDocRunTest::a_manual_trigger_is_refused() {
    QFETCH(bool, running);
    QFETCH(int, number);
    add(QStringLiteral("gone"), 4, 4);
    if (running)
        run();
    part<QSpinBox>("spinBoxTrigerIndex")->setValue(number);
    press("pushButtonTriger0");
    QVERIFY(!thread()->GetMarkFile());
    if (running)
        endRun();
    QVERIFY(begun().isEmpty());
}

void MultiDocRunTest::the_stop_button_ends_the_run() {
    run();
    startSlowly(1);
    machine().clearJournal();
    press("pushButtonStop");
    QVERIFY(!thread()->isRunning() && !thread()->GetRunning());
    COMPARE_JOURNAL(runJournal(), {call("StopMark"), call("SetMarkStaus", 2), call("SetMarkStaus", 2)});
    QVERIFY(windowIsFree());
    QTRY_VERIFY(statusIs(MultiMarkIdle));
    QCOMPARE(told(), (QStringList{"0", "1A", "0", "2"}));
}

void MultiDocRunTest::the_remote_stop_leaves_the_run_waiting() {
    run();
    startSlowly(1);
    take(3);
    dialog().StopMark();
    QTRY_VERIFY(statusIs(MultiMarkWaiting));
    machine().setSpeed(0.0);
    QVERIFY(thread()->isRunning() && thread()->GetRunning());
    QCOMPARE(card()->GetMarkStatus(), MarkStatusStop);
    take(1);
    take(3);
    QTRY_COMPARE(begun(), (QStringList{"A", "B"}));
    endRun();
}

void MultiDocRunTest::the_delayed_stop_comes_a_second_later() {
    run();
    startSlowly(1);
    QElapsedTimer time;
    time.start();
    press("pushButtonStopMark");
    QVERIFY(time.elapsed() < 900);
    QTRY_VERIFY(statusIs(MultiMarkWaiting));
    QVERIFY(time.elapsed() >= 1000);
    QVERIFY(thread()->isRunning());
    endRun();
}

void MultiDocRunTest::the_stop_key_stops_the_document() {
    run();
    startSlowly(1);
    QTest::keyClick(&window(), Qt::Key_F8);
    QTRY_VERIFY(statusIs(MultiMarkWaiting));
    QCOMPARE(machine().state().activity, sim::SimActivity::Idle);
    endRun();
}

/// A stop that was lost would hold the test for as long as the slow job takes.
void MultiDocRunTest::a_stop_at_any_moment_is_not_lost() {
    run();
    machine().setSpeed(kSlowRun);
    for (int i = 0; i < 60; ++i) {
        machine().clearJournal();
        part<QSpinBox>("spinBoxTrigerIndex")->setValue(i % 2);
        press("pushButtonTriger0");
        for (int spin = 0; spin < i * 100; ++spin)
            machine().journalEnd();
        dialog().StopMark();
        const bool stands = waitFor([this] {
            return told().last() == QLatin1String("0") && machine().state().status == 2 &&
                   machine().state().activity == sim::SimActivity::Idle;
        });
        QVERIFY2(stands, qPrintable(QStringLiteral("round %1: %2").arg(i).arg(journalText())));
        QCoreApplication::processEvents();
    }
    endRun();
}

void MultiDocRunTest::an_end_at_any_moment_is_not_lost() {
    for (int i = 0; i < 60; ++i) {
        press("pushButtonRun");
        QTRY_VERIFY(statusIs(MultiMarkWaiting));
        machine().setSpeed(kSlowRun);
        press("pushButtonTriger0");
        for (int spin = 0; spin < i * 100; ++spin)
            machine().journalEnd();
        press("pushButtonStop");
        QCOMPARE(machine().state().activity, sim::SimActivity::Idle);
        QCOMPARE(machine().state().status, 2);
        QTRY_VERIFY(statusIs(MultiMarkIdle));
    }
    for (int i = 0; i < 60; ++i) {
        press("pushButtonRun");
        press("pushButtonStop");
        QVERIFY(!thread()->isRunning());
    }
    QTRY_VERIFY(statusIs(MultiMarkIdle));
}

void MultiDocRunTest::a_second_start_leaves_the_run_alone() {
    run();
    startSlowly(1);
    take(3);
    dialog().StartMark();
    letEnd();
    QTRY_COMPARE(begun(), (QStringList{"A", "B"}));
    endRun();
}

void MultiDocRunTest::a_run_can_be_started_again() {
    for (int i = 1; i <= 3; ++i) {
        run();
        take(1);
        QTRY_COMPARE(begun().size(), i);
        endRun();
        take(0);
    }
}

void MultiDocRunTest::status_and_colour_follow_the_run() {
    QVERIFY(statusIs(MultiMarkIdle));
    QCOMPARE(statusColor(), QColor(Qt::black));
    run();
    for (QPalette::ColorGroup group : {QPalette::Active, QPalette::Inactive, QPalette::Disabled})
        QCOMPARE(part<QLabel>("labelStatus")->palette().color(group, QPalette::WindowText), QColor(Qt::yellow));
    startSlowly(1);
    QCOMPARE(statusColor(), QColor(Qt::red));
    QCOMPARE(card()->GetMarkStatus(), MarkStatusRun);
    letEnd();
    QCOMPARE(statusColor(), QColor(Qt::yellow));
    QCOMPARE(card()->GetMarkStatus(), MarkStatusStop);
    endRun();
    QCOMPARE(statusColor(), QColor(Qt::black));
}

void MultiDocRunTest::the_document_that_runs_is_the_current_row() {
    run();
    startSlowly(2);
    QCOMPARE(list()->currentRow(), 1);
    letEnd();
    endRun();
}

void MultiDocRunTest::each_row_tells_its_last_run_and_its_runs() {
    run();
    for (int i = 1; i <= 2; ++i) {
        take(2);
        QTRY_COMPARE(list()->item(1)->data(tessera::ProjectRunCount).toInt(), i);
        QTRY_VERIFY(list()->item(1)->data(tessera::ProjectLastRun).toString().endsWith(QLatin1String(" ms")));
        take(0);
    }
    QCOMPARE(list()->item(0)->data(tessera::ProjectRunCount).toInt(), 0);
    endRun();
    QCOMPARE(rows(), (QStringList{"A", "B"}));
    list()->setCurrentRow(1);
    press("pushButtonMoveUp");
    QCOMPARE(list()->item(0)->data(tessera::ProjectRunCount).toInt(), 2);
}

void MultiDocRunTest::run_data_is_told_at_the_start_and_after_each_document() {
    const QSignalSpy sent(&dialog(), &MultiDocMark::SendRunData);
    run();
    QCOMPARE(sent.count(), 1);
    startSlowly(1);
    letEnd();
    QCOMPARE(sent.count(), 2);
    startSlowly(3);
    endRun();
    QCOMPARE(sent.count(), 2);
}

void MultiDocRunTest::time_runs_while_a_document_is_marked() {
    run();
    startSlowly(1);
    QTRY_VERIFY(label("labelTime").toInt() >= 62);
    letEnd();
    const QString last = label("labelTime");
    startSlowly(3);
    QTRY_VERIFY(label("labelTime") != last && label("labelTime").toInt() < last.toInt() + 1000);
    endRun();
}

void MultiDocRunTest::dots_follow_the_status() {
    const auto shows = [](char const* text, int dots) {
        return label("labelStatus") == QString::fromUtf8(text) + QString(dots, '.');
    };
    for (int dots : {0, 1, 2, 3, 4, 5, 0, 1})
        QTRY_VERIFY(shows("空闲中", dots));
    run();
    QTRY_VERIFY(label("labelStatus").startsWith(QStringLiteral("等待中")));
    startSlowly(1);
    QTRY_VERIFY(label("labelStatus").startsWith(QStringLiteral("打标中")));
    endRun();
}

void MultiDocRunTest::runs_are_counted_and_cleared_by_a_double_click() {
    run();
    for (int i = 1; i <= 3; ++i) {
        take(1);
        QTRY_COMPARE(label("labelRunCount"), QString::number(i));
        QTRY_VERIFY(statusIs(MultiMarkWaiting));
        take(0);
    }
    auto* count = part<QLabel>("labelRunCount");
    DialogAnswerer answerer;
    answerer.press(QMessageBox::No).press(QMessageBox::Yes);
    QTest::mouseDClick(count, Qt::LeftButton);
    QCOMPARE(label("labelRunCount"), QStringLiteral("3"));
    QTest::mouseDClick(count, Qt::LeftButton);
    QCOMPARE(label("labelRunCount"), QStringLiteral("0"));
    QCOMPARE(answerer.titles(), (QStringList{"提示", "提示"}));
    QCOMPARE(answerer.texts().first(), QStringLiteral("是否将运行次数清零"));
    take(1);
    QTRY_COMPARE(label("labelRunCount"), QStringLiteral("1"));
    endRun();
}

void MultiDocRunTest::a_double_click_during_a_document_is_passed_on() {
    const DialogAnswerer answerer;
    run();
    startSlowly(1);
    QTest::mouseDClick(part<QLabel>("labelRunCount"), Qt::LeftButton);
    QTest::mouseClick(part<QLabel>("labelRunCount"), Qt::LeftButton);
    QVERIFY(answerer.seen().isEmpty());
    QCOMPARE(label("labelRunCount"), QStringLiteral("1"));
    endRun();
}

void MultiDocRunTest::the_window_does_not_close_during_a_run_but_the_ready_output_goes_off() {
    IOOutputSet::Instance()->SetEnableReadyOut(true);
    run();
    QVERIFY(!dialog().close());
    QVERIFY(dialog().isVisible());
    COMPARE_JOURNAL(only(machineJournal(), {"SetOutputBit"}), {call("SetOutputBit", kReady, 0)});
    endRun();
    machine().clearJournal();
    press("pushButtonClose");
    QVERIFY(!dialog().isVisible() && !dialog().IsShown());
    COMPARE_JOURNAL(only(machineJournal(), {"SetOutputBit"}), {call("SetOutputBit", kReady, 0)});
    QCOMPARE(window().MarkWindowIsVisible(), 0);
    window().ShowMultDocMarkWindow();
    QCOMPARE(window().MarkWindowIsVisible(), 2);
    QCOMPARE(rows(), (QStringList{"A", "B"}));
}

void MultiDocRunTest::without_a_ready_output_closing_writes_none() {
    QVERIFY(dialog().close());
    QCOMPARE(machineCalls("SetOutputBit"), 0);
}

void MultiDocRunTest::escape_closes_without_a_run_only() {
    run();
    QTest::keyClick(&dialog(), Qt::Key_Escape);
    QVERIFY(dialog().isVisible());
    endRun();
    QTest::keyClick(&dialog(), Qt::Key_Escape);
    QVERIFY(!dialog().isVisible());
}

void MultiDocRunTest::the_start_of_the_program_can_start_a_run() {
    writeProject(QStringLiteral("set"), "1\nB\n1\n1\n");
    SystemParam::Instance()->SetStartUpMark(2);
    start();
    window().StartUp();
    QCOMPARE(window().MarkWindowIsVisible(), 2);
    QTRY_VERIFY(statusIs(MultiMarkWaiting));
    QVERIFY(window().GetDoc(QStringLiteral("B")));
    press("pushButtonStop");
}

void MultiDocRunTest::closing_the_marked_document_ends_it_first() {
    run();
    startSlowly(1);
    take(3);
    machine().clearJournal();
    window().CloseFile(QStringLiteral("A"));
    QVERIFY(!window().GetDoc(QStringLiteral("A")));
    machine().setSpeed(0.0);
    // The run goes on with the one that waited.
    QTRY_COMPARE(begun(), (QStringList{"A", "B"}));
    QTRY_COMPARE(machineCalls("StartMark"), 1);
    QVERIFY(thread()->isRunning());
    endRun();
}

void MultiDocRunTest::closing_a_waiting_document_takes_it_out() {
    run();
    startSlowly(1);
    take(3);
    window().CloseFile(QStringLiteral("B"));
    letEnd();
    endRun();
    QCOMPARE(begun(), QStringList{"A"});
}

void MultiDocRunTest::the_end_of_the_program_ends_a_run() {
    run();
    startSlowly(1);
    take(3);
    m_Window.reset();
    QVERIFY(!MultiDocMark::Instance());
    QCOMPARE(machine().state().activity, sim::SimActivity::Idle);
}

void MultiDocRunTest::inputs_of_the_machine_run_documents() {
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

QTEST_MAIN(MultiDocRunTest)
#include "tst_multidocrun.moc"
