// SPDX-License-Identifier: MIT
#include "tests/run/formfixture.h"

#include <QCheckBox>
#include <QRadioButton>
#include <QSignalSpy>
#include <QSpinBox>

using namespace tests;

/// Previews in red light and of the border, by the run dialog on the simulated machine.
class FormPreviewTest : public QObject, private RunDialogFixture {
    Q_OBJECT

private slots:
    void initTestCase();
    void init() { begin(); }
    void cleanup() { end(); }

    void border_preview_repeats_with_the_loop_box();
    void preview_waits_for_its_end();
    void preview_out_of_a_pause_lets_the_job_end();
    void preview_with_options_sets_the_boxes_and_does_not_wait();
    void a_triggered_run_returns_to_the_red_loop();
    void a_stop_of_the_triggered_run_goes_idle();
    void a_view_renews_a_running_preview_by_name();
};

void FormPreviewTest::initTestCase() {
    QVERIFY(m_Root.isValid());
}

void FormPreviewTest::border_preview_repeats_with_the_loop_box() {
    part<QRadioButton>("radioButtonBox")->setChecked(true);
    part<QCheckBox>("checkBoxLoopMark")->setChecked(true);
    part<QSpinBox>("spinBox")->setValue(2);
    QVERIFY(dialog().IsRedView());
    press("pushButtonStart");
    QTRY_VERIFY((*m_Window)->IsRedView());
    QTRY_VERIFY(count() >= 3);
    dialog().StopMark();
    QTRY_VERIFY(idle());
    QVERIFY(!(*m_Window)->IsRedView());
    for (JournalEntry const& entry : only(machineJournal(), {"SetMarkType"}))
        QCOMPARE(entry.arguments, QStringList{"2"});
    QVERIFY(machineCalls("StartMark") >= 3);
}

void FormPreviewTest::preview_waits_for_its_end() {
    dialog().StartMarkPreview();
    QVERIFY(!dialog().IsRunning());
    QVERIFY(part<QRadioButton>("radioButtonRedPre")->isChecked());
    QCOMPARE(machineCalls("StartMark"), 1);
    QTRY_VERIFY(idle());
}

/// The paused job goes on; the preview is not started, as an order to start only resumes.
void FormPreviewTest::preview_out_of_a_pause_lets_the_job_end() {
    startSlowly();
    dialog().PauseMark();
    QTRY_COMPARE(look(), QStringLiteral("background:yellow"));
    machine().setSpeed(0.0);
    machine().clearJournal();
    dialog().StartMarkPreview();
    QVERIFY(!dialog().IsRunning());
    COMPARE_JOURNAL(only(machineJournal(), {"StartMark", "RestartMark"}), {call("RestartMark")});
    QTRY_VERIFY(idle());
    QCOMPARE(count(), 1);
    QVERIFY(part<QRadioButton>("radioButtonRedPre")->isChecked());
}

void FormPreviewTest::preview_with_options_sets_the_boxes_and_does_not_wait() {
    machine().setSpeed(kSlow);
    dialog().StartMarkPreview(true, true, 10, MarkTypeRedPreview);
    QVERIFY(dialog().IsRunning());
    QVERIFY(part<QRadioButton>("radioButtonRedPre")->isChecked());
    QVERIFY(part<QCheckBox>("checkBoxSelectMarking")->isChecked());
    QVERIFY(part<QCheckBox>("checkBoxLoopMark")->isChecked());
    QCOMPARE(part<QSpinBox>("spinBox")->value(), 10);
    QTRY_VERIFY(dialog().IsRedLoopRun());
    dialog().StopMark();
    QTRY_VERIFY(idle());
    QVERIFY(!dialog().IsRedLoopRun());
}

void FormPreviewTest::a_triggered_run_returns_to_the_red_loop() {
    SystemParam::Instance()->SetEnableTriggerWhenRedLoop(true);
    machine().setSpeed(kSlow);
    dialog().StartMarkPreview(false, true, 1, MarkTypeRedPreview);
    QTRY_VERIFY(dialog().IsRedLoopRun());
    QTRY_COMPARE(machine().state().activity, sim::SimActivity::Running);
    machine().clearJournal();
    machine().setSpeed(0.0);
    (*m_Window)->IOStartRun();
    QTRY_VERIFY(part<QRadioButton>("radioButtonRedPre")->isChecked());
    QTRY_VERIFY(machineCalls("StartMark") >= 2);
    QVERIFY(part<QCheckBox>("checkBoxLoopMark")->isChecked());
    const QVector<JournalEntry> types = only(machineJournal(), {"SetMarkType"});
    QCOMPARE(types.at(0).arguments, QStringList{"0"});
    QCOMPARE(types.at(1).arguments, QStringList{"1"});
    QCOMPARE(look(), QStringLiteral("background:green"));
    dialog().StopMark();
    QTRY_VERIFY(idle());
}

void FormPreviewTest::a_stop_of_the_triggered_run_goes_idle() {
    SystemParam::Instance()->SetEnableTriggerWhenRedLoop(true);
    machine().setSpeed(kSlow);
    dialog().StartMarkPreview(false, true, 1, MarkTypeRedPreview);
    QTRY_VERIFY(dialog().IsRedLoopRun());
    (*m_Window)->IOStartRun();
    QTRY_VERIFY(machine().state().type == 0 && machine().state().activity == sim::SimActivity::Running);
    (*m_Window)->IOStopRun();
    QTRY_COMPARE(count(), 2);
    QTRY_VERIFY(idle());
    QVERIFY(part<QRadioButton>("radioButtonRun")->isChecked());
    QVERIFY(!tests::waitFor([this] { return dialog().IsRunning(); }, 100));
}

void FormPreviewTest::a_view_renews_a_running_preview_by_name() {
    part<QRadioButton>("radioButtonRedPre")->setChecked(true);
    startSlowly();
    machine().clearJournal();
    QSignalSpy passes(&dialog(), &Form_Marking::SendRunData);
    QVERIFY(QMetaObject::invokeMethod(&dialog(), "UpdateRedViewData", Qt::DirectConnection));
    QTRY_COMPARE(machineCalls("StartMark"), 1);
    COMPARE_JOURNAL(without(machineJournal(), {"IsMarkStop"}),
                    {call("StopMark"), call("SetMarkStaus", 2), call("StopMark"), call("SetMarkStaus", 0),
                     call("SetMarkType", 1), call("DownLayerPara", 20, ArgumentPattern::rest()),
                     call("StartMark", 0, 0)});
    QCOMPARE(passes.count(), 0);
    QCOMPARE(look(), QStringLiteral("background:green"));
    dialog().StopMark();
    QTRY_VERIFY(idle());
    QCOMPARE(count(), 1);
}

QTEST_MAIN(FormPreviewTest)
#include "tst_formpreview.moc"
