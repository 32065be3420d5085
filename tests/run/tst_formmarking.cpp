// SPDX-License-Identifier: MIT
#include "engine/markcardinstance.h"
#include "tests/run/formfixture.h"
#include "tests/support/timeoutscale.h"

#include <QCheckBox>
#include <QDeadlineTimer>
#include <QDoubleSpinBox>
#include <QLabel>
#include <QPushButton>
#include <QRadioButton>
#include <QSpinBox>
#include <QTimer>

using namespace tests;

/// The run dialog and its worker on the simulated machine.
class FormMarkingTest : public QObject, private RunDialogFixture {
    Q_OBJECT

private slots:
    void initTestCase();
    void init() { begin(); }
    void cleanup() { end(); }

    void widgets_have_their_texts_and_limits();
    void size_is_fixed_with_and_without_axis_buttons();
    void one_run_in_its_order();
    void start_button_pauses_and_resumes();
    void pause_and_resume_in_their_order();
    void an_input_edge_does_not_pause_a_run();
    void a_stop_while_paused_ends_the_run();
    void stop_in_its_order();
    void loop_with_delay_0_marks_once_and_waits_for_a_stop();
    void card_loop_counts_once_after_the_stop();
    void a_change_of_document_between_passes_takes_effect();
    void an_alarm_refuses_start_and_input_but_not_the_preview();
    void selection_of_the_kind();
    void a_running_dialog_does_not_close();
    void keys_are_swallowed();
    void closing_the_program_during_a_run_ends_it();
    void a_restart_before_the_end_was_told_is_not_stopped();
    void run_time_is_shown_every_51_ms_and_after_a_resume_every_91();
    void a_pass_that_ended_before_its_start_was_handled_took_no_time();
    void the_run_time_can_be_renewed_by_the_debugger();
    void closing_a_document_that_is_marked_ends_the_run();
    void closing_another_document_lets_the_run_go_on();
};

void FormMarkingTest::initTestCase() {
    QVERIFY(m_Root.isValid());
}

void FormMarkingTest::widgets_have_their_texts_and_limits() {
    QCOMPARE(dialog().windowTitle(), QStringLiteral("运行框"));
    QCOMPARE(part<QLabel>("labelCount")->text(), QStringLiteral("执行次数"));
    QCOMPARE(part<QLabel>("labelTime")->text(), QStringLiteral("执行时间"));
    QCOMPARE(part<QRadioButton>("radioButtonRun")->text(), QStringLiteral("工作(F6)"));
    QVERIFY(part<QRadioButton>("radioButtonRun")->isChecked());
    QCOMPARE(part<QRadioButton>("radioButtonRedPre")->text(), QStringLiteral("红光预览(F7)"));
    QCOMPARE(part<QRadioButton>("radioButtonBox")->text(), QStringLiteral("边框预览"));
    QCOMPARE(part<QCheckBox>("checkBoxSelectMarking")->text(), QStringLiteral("选中工作"));
    QCOMPARE(part<QCheckBox>("checkBoxLoopMark")->text(), QStringLiteral("循环工作"));
    QCOMPARE(part<QLabel>("labelLoopDelay")->text(), QStringLiteral("循环间隔"));
    QCOMPARE(part<QSpinBox>("spinBox")->maximum(), 50000000);
    QCOMPARE(part<QSpinBox>("spinBox")->value(), 50);
    QCOMPARE(part<QPushButton>("pushButtonStart")->text(), QStringLiteral("开始(F6)"));
    QCOMPARE(part<QPushButton>("pushButtonStop")->text(), QStringLiteral("终止(F8)"));
    QCOMPARE(part<QPushButton>("pushButtonCancel")->text(), QStringLiteral("退出(Esc)"));
    QCOMPARE(status(), QStringLiteral("完成或终止运行..."));
    QCOMPARE(look(), QStringLiteral("background:gray"));
    const auto* step = part<QDoubleSpinBox>("doubleSpinBoxStep");
    QCOMPARE(step->minimum(), -99999.0);
    QCOMPARE(step->maximum(), 99999.0);
    QCOMPARE(step->singleStep(), 0.01);
    QVERIFY(part<QPushButton>("pushButtonStopAxis")->styleSheet().contains(QStringLiteral("red")));
}

void FormMarkingTest::size_is_fixed_with_and_without_axis_buttons() {
    dialog().ChangeFormSize();
    QCOMPARE(dialog().size(), QSize(385, 180));
    QVERIFY(!part<QPushButton>("pushButtonMoveUp")->isVisible());
    SystemParam::Instance()->SetMarkDebugMode(true);
    dialog().ChangeFormSize();
    QCOMPARE(dialog().size(), QSize(580, 180));
    QCOMPARE(dialog().minimumSize(), dialog().maximumSize());
    for (char const* name : {"pushButtonMoveUp", "pushButtonMoveDown", "pushButtonStopAxis"})
        QVERIFY(part<QPushButton>(name)->isVisible());
    QVERIFY(part<QDoubleSpinBox>("doubleSpinBoxStep")->isVisible());
}

/// The worker's calls in their order and the main thread's in theirs; how the two mix is up to the machine.
void FormMarkingTest::one_run_in_its_order() {
    machine().setSpeed(kSlow);
    press("pushButtonStart");
    QTRY_COMPARE(look(), QStringLiteral("background:green"));
    QCOMPARE(status(), QStringLiteral("运行开始..."));
    QCOMPARE(part<QPushButton>("pushButtonStart")->text(), QStringLiteral("暂停(F6)"));
    for (char const* name : {"radioButtonRun", "radioButtonRedPre", "radioButtonBox", "checkBoxLoopMark",
                             "checkBoxSelectMarking", "spinBox", "labelLoopDelay", "pushButtonCancel"})
        QVERIFY2(!part<QWidget>(name)->isEnabled(), name);
    QVERIFY(!m_Window->child<QWidget>("centralwidget")->isEnabled());
    QVERIFY(!m_Window->child<QWidget>("menuBar")->isEnabled());
    machine().setSpeed(0.0);
    QTRY_VERIFY(idle());
    QCOMPARE(status(), QStringLiteral("完成或终止运行..."));
    QCOMPARE(part<QPushButton>("pushButtonStart")->text(), QStringLiteral("开始(F6)"));
    QVERIFY(part<QWidget>("spinBox")->isEnabled());
    QVERIFY(m_Window->child<QWidget>("centralwidget")->isEnabled());

    const QVector<JournalEntry> journal = machineJournal();
    COMPARE_JOURNAL(without(journal, {"SetOutputBit"}),
                    {call("SetMarkStaus", 0), call("SetMarkType", 0),
                     call("DownLayerPara", 20, ArgumentPattern::rest()), call("StartMark", 0, 0),
                     call("SetMarkStaus", 2), call("SetMarkStaus", 2)});
    COMPARE_JOURNAL(only(journal, {"SetOutputBit"}), lamps(0, 1, 0) + lamps(0, 0, 1));
}

void FormMarkingTest::start_button_pauses_and_resumes() {
    startSlowly();
    press("pushButtonStart");
    QTRY_COMPARE(look(), QStringLiteral("background:yellow"));
    QCOMPARE(status(), QStringLiteral("用户暂停..."));
    QCOMPARE(part<QPushButton>("pushButtonStart")->text(), QStringLiteral("开始(F6)"));
    QTRY_COMPARE(machine().state().activity, sim::SimActivity::Paused);
    press("pushButtonStart");
    QTRY_COMPARE(look(), QStringLiteral("background:green"));
    QTRY_COMPARE(machine().state().activity, sim::SimActivity::Running);
    machine().setSpeed(0.0);
    QTRY_VERIFY(idle());
    QCOMPARE(count(), 1);
}

void FormMarkingTest::pause_and_resume_in_their_order() {
    startSlowly();
    machine().clearJournal();
    dialog().PauseMark();
    QTRY_COMPARE(look(), QStringLiteral("background:yellow"));
    COMPARE_JOURNAL(machineJournal(), QVector<ExpectedCall>{call("SetMarkStaus", 1)} + lamps(0, 1, 1) +
                                          QVector<ExpectedCall>{call("PauseMark")});
    machine().clearJournal();
    dialog().ReStartMark();
    QTRY_COMPARE(look(), QStringLiteral("background:green"));
    COMPARE_JOURNAL(machineJournal(), QVector<ExpectedCall>{call("SetMarkStaus", 0)} + lamps(0, 1, 0) +
                                          QVector<ExpectedCall>{call("SetMarkStaus", 0), call("RestartMark")});
    dialog().StopMark();
    QTRY_VERIFY(idle());
}

void FormMarkingTest::an_input_edge_does_not_pause_a_run() {
    startSlowly();
    machine().clearJournal();
    dialog().StartMark(false);
    // What the order to start may have posted is handled before the journal is read.
    QCoreApplication::processEvents();
    QVERIFY(machineJournal().isEmpty());
    QCOMPARE(look(), QStringLiteral("background:green"));
    press("pushButtonStart");
    QTRY_COMPARE(look(), QStringLiteral("background:yellow"));
    dialog().StartMark(false);
    QTRY_COMPARE(look(), QStringLiteral("background:green"));
    dialog().StopMark();
    QTRY_VERIFY(idle());
}

void FormMarkingTest::a_stop_while_paused_ends_the_run() {
    part<QCheckBox>("checkBoxLoopMark")->setChecked(true);
    startSlowly();
    dialog().PauseMark();
    QTRY_COMPARE(look(), QStringLiteral("background:yellow"));
    press("pushButtonStop");
    QTRY_VERIFY(idle());
    QCOMPARE(count(), 1);
    // The card is not left paused for the next job.
    machine().setSpeed(0.0);
    part<QCheckBox>("checkBoxLoopMark")->setChecked(false);
    press("pushButtonStart");
    QTRY_COMPARE(count(), 2);
    QTRY_VERIFY(idle());
}

void FormMarkingTest::stop_in_its_order() {
    startSlowly();
    machine().clearJournal();
    press("pushButtonStop");
    QTRY_VERIFY(idle());
    COMPARE_JOURNAL(machineJournal(), QVector<ExpectedCall>{call("StopMark"), call("SetMarkStaus", 2), call("StopMark"),
                                                            call("SetMarkStaus", 2), call("SetMarkStaus", 2)} +
                                          lamps(0, 0, 1));
    QCOMPARE(count(), 1);
}

void FormMarkingTest::loop_with_delay_0_marks_once_and_waits_for_a_stop() {
    part<QCheckBox>("checkBoxLoopMark")->setChecked(true);
    part<QSpinBox>("spinBox")->setValue(0);
    machine().setSpeed(0.0);
    press("pushButtonStart");
    QTRY_COMPARE(count(), 1);
    const QString shown = part<QLabel>("labelRunTime")->text();
    QVERIFY(!tests::waitFor([this] { return count() != 1 || idle(); }, 200));
    QCOMPARE(look(), QStringLiteral("background:green"));
    QCOMPARE(part<QLabel>("labelRunTime")->text(), shown);
    QVERIFY(dialog().IsRunning());
    press("pushButtonStop");
    QTRY_VERIFY(idle());
    QCOMPARE(count(), 1);
    QCOMPARE(machineCalls("StartMark"), 1);
}

void FormMarkingTest::card_loop_counts_once_after_the_stop() {
    SystemParam::Instance()->SetBufLoop(true);
    part<QCheckBox>("checkBoxLoopMark")->setChecked(true);
    part<QSpinBox>("spinBox")->setValue(1);
    press("pushButtonStart");
    QTRY_COMPARE(machine().state().activity, sim::SimActivity::Running);
    QVERIFY(!tests::waitFor([this] { return count() != 0; }, 100));
    dialog().StopMark();
    QTRY_VERIFY(idle());
    QCOMPARE(count(), 1);
    COMPARE_JOURNAL(only(machineJournal(), {"StartMark"}), {call("StartMark", 0, 1)});
    QCOMPARE(SystemParam::Instance()->GetLoopMarkDelay(), 1.0);
}

void FormMarkingTest::a_change_of_document_between_passes_takes_effect() {
    part<QCheckBox>("checkBoxLoopMark")->setChecked(true);
    part<QSpinBox>("spinBox")->setValue(20);
    machine().setSpeed(0.0);
    press("pushButtonStart");
    QTRY_VERIFY(count() >= 2);
    QRulerView* empty = m_Window->newDocument(0, QStringLiteral("other"));
    QCOMPARE((*m_Window)->GetActiveView(), empty);
    // Nothing to mark in it: the run ends by itself.
    QTRY_VERIFY(idle());
}

void FormMarkingTest::an_alarm_refuses_start_and_input_but_not_the_preview() {
    (*m_Window)->SetSafeAlarm(true, 128);
    press("pushButtonStart");
    dialog().StartMark(false);
    QVERIFY(!dialog().IsRunning());
    QVERIFY(machineJournal().isEmpty());
    const auto* model = m_Window->statusList()->model();
    QCOMPARE(model->rowCount(), 1);
    QCOMPARE(model->index(0, 0).data().toString(), QStringLiteral("急停"));
    machine().setSpeed(0.0);
    dialog().StartMarkPreview();
    QTRY_COMPARE(count(), 1);
    COMPARE_JOURNAL(only(machineJournal(), {"SetMarkType"}), {call("SetMarkType", 1)});
    QTRY_VERIFY(idle());
}

void FormMarkingTest::selection_of_the_kind() {
    dialog().SetRunSelection(1, true);
    QVERIFY(part<QRadioButton>("radioButtonRedPre")->isChecked());
    QVERIFY(part<QCheckBox>("checkBoxLoopMark")->isChecked());
    dialog().SetRunSelection(7, false);
    QVERIFY(part<QRadioButton>("radioButtonBox")->isChecked());
    QVERIFY(!part<QCheckBox>("checkBoxLoopMark")->isChecked());
    dialog().SetRunSelection(0, false);
    QVERIFY(part<QRadioButton>("radioButtonRun")->isChecked());
    QVERIFY(!dialog().IsRedView());
}

void FormMarkingTest::a_running_dialog_does_not_close() {
    startSlowly();
    QVERIFY(!dialog().close());
    dialog().reject();
    QVERIFY(dialog().isVisible());
    QCOMPARE((*m_Window)->MarkWindowIsVisible(), 1);
    dialog().StopMark();
    QTRY_VERIFY(idle());
    press("pushButtonCancel");
    QVERIFY(!dialog().isVisible());
    QCOMPARE((*m_Window)->MarkWindowIsVisible(), 0);
}

void FormMarkingTest::keys_are_swallowed() {
    for (Qt::Key key : {Qt::Key_Escape, Qt::Key_F6, Qt::Key_F8, Qt::Key_Return, Qt::Key_Space})
        QTest::keyClick(&dialog(), key);
    QVERIFY(dialog().isVisible());
    QVERIFY(!dialog().IsRunning());
}

void FormMarkingTest::closing_the_program_during_a_run_ends_it() {
    part<QCheckBox>("checkBoxLoopMark")->setChecked(true);
    startSlowly();
    m_Window.reset();
    QVERIFY(!MainWindow::Instance());
    QCOMPARE(MarkCardInstance::Instance()->GetMarkStatus(), MarkStatusStop);
    QCOMPARE(machine().state().activity, sim::SimActivity::Idle);
}

/// The message that a run has ended comes after the next run was started: it must not stop that.
void FormMarkingTest::a_restart_before_the_end_was_told_is_not_stopped() {
    machine().setSpeed(0.0);
    press("pushButtonStart");
    // Without the event loop: the worker ends, its messages wait.
    QDeadlineTimer patience(scaled(5000));
    while (dialog().IsRunning() && !patience.hasExpired())
        QThread::yieldCurrentThread();
    QVERIFY(!dialog().IsRunning());
    machine().setSpeed(kSlow);
    dialog().StartMark(false);
    QTRY_COMPARE(count(), 1);
    QTRY_COMPARE(machine().state().activity, sim::SimActivity::Running);
    QCOMPARE(MarkCardInstance::Instance()->GetMarkStatus(), MarkStatusRun);
    QTRY_COMPARE(look(), QStringLiteral("background:green"));
    dialog().StopMark();
    QTRY_VERIFY(idle());
}

void FormMarkingTest::run_time_is_shown_every_51_ms_and_after_a_resume_every_91() {
    auto* timer = part<QTimer>("displayTimer");
    const auto shown = [this] { return part<QLabel>("labelRunTime")->text(); };
    QVERIFY(!timer->isActive());
    startSlowly();
    QVERIFY(timer->isActive());
    QCOMPARE(timer->interval(), 51);
    QTRY_VERIFY(shown().toLongLong() > 0);
    press("pushButtonStart");
    QTRY_COMPARE(look(), QStringLiteral("background:yellow"));
    QVERIFY(!timer->isActive());
    const QString held = shown();
    QVERIFY(!tests::waitFor([&] { return shown() != held; }, 150));
    press("pushButtonStart");
    QTRY_COMPARE(look(), QStringLiteral("background:green"));
    QVERIFY(timer->isActive());
    QCOMPARE(timer->interval(), 91);
    QTRY_VERIFY(shown().toLongLong() > held.toLongLong());
    dialog().StopMark();
    QTRY_VERIFY(idle());
    QVERIFY(!timer->isActive());
}

/// The time of its end is the worker's; a short pass is over before the message of its start reaches the dialog.
void FormMarkingTest::a_pass_that_ended_before_its_start_was_handled_took_no_time() {
    const auto shown = [this] { return part<QLabel>("labelRunTime")->text(); };
    const auto pass = [this](int ms) {
        const bool started = QMetaObject::invokeMethod(&dialog(), "OnMarkStart", Qt::DirectConnection);
        return started && QMetaObject::invokeMethod(&dialog(), "OnMarkFinish", Qt::DirectConnection, Q_ARG(bool, true),
                                                    Q_ARG(QDateTime, QDateTime::currentDateTime().addMSecs(ms)));
    };
    QVERIFY(pass(5000));
    QVERIFY(shown().toLongLong() >= 5000);
    QVERIFY(pass(-3));
    QCOMPARE(shown(), QStringLiteral("0"));
    QVERIFY(QMetaObject::invokeMethod(&dialog(), "OnMarkFinishUI", Qt::DirectConnection));
}

void FormMarkingTest::the_run_time_can_be_renewed_by_the_debugger() {
    const auto renewals = [this] { return m_Root.read(QStringLiteral("/日志文件/Debug.txt")).count("UpdateTime:"); };
    const int before = renewals();
    UpdateTime(nullptr);
    UpdateTime(part<QLabel>("labelRunTime"));
    QCOMPARE(renewals(), before);
    startSlowly();
    part<QTimer>("displayTimer")->stop();
    const QString shown = part<QLabel>("labelRunTime")->text();
    QVERIFY(!tests::waitFor([&] { return part<QLabel>("labelRunTime")->text() != shown; }, 20));
    UpdateTime(&dialog());
    QVERIFY(part<QLabel>("labelRunTime")->text().toLongLong() > shown.toLongLong());
    QCOMPARE(renewals(), before + 1);
    dialog().StopMark();
    QTRY_VERIFY(idle());
}

/// The document was changed for another one during the pass.
void FormMarkingTest::closing_a_document_that_is_marked_ends_the_run() {
    const QString marked = (*m_Window)->GetActiveView()->GetFileName();
    startSlowly();
    QRulerView const* other = m_Window->newDocument(1, QStringLiteral("other"));
    QVERIFY(dialog().IsRunning());
    (*m_Window)->CloseFile(marked);
    QVERIFY(!dialog().IsRunning());
    QCOMPARE((*m_Window)->GetDocs().size(), 1);
    QCOMPARE((*m_Window)->GetActiveView(), other);
    QTRY_VERIFY(idle());
}

void FormMarkingTest::closing_another_document_lets_the_run_go_on() {
    QRulerView const* marked = (*m_Window)->GetActiveView();
    startSlowly();
    const QString other = m_Window->newDocument(1, QStringLiteral("other"))->GetFileName();
    QVERIFY((*m_Window)->SetCurDoc(0));
    QCOMPARE((*m_Window)->GetActiveView(), marked);
    (*m_Window)->CloseFile(other);
    QVERIFY(dialog().IsRunning());
    dialog().StopMark();
    QTRY_VERIFY(idle());
}

QTEST_MAIN(FormMarkingTest)
#include "tst_formmarking.moc"
