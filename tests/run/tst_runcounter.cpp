// SPDX-License-Identifier: MIT
#include "engine/languagemanager.h"
#include "tests/run/formfixture.h"
#include "tests/support/dialoganswerer.h"

#include <QCheckBox>
#include <QDir>
#include <QSignalSpy>
#include <QSpinBox>

using namespace tests;

/// The persistent count of passes.
class RunCounterTest : public QObject, private RunDialogFixture {
    Q_OBJECT

private slots:
    void initTestCase();
    void init() { begin(); }
    void cleanup() { end(); }

    void a_pass_counts_and_is_stored_at_once();
    void a_count_survives_the_program();
    void a_count_that_cannot_be_stored_is_told_once();
    void without_a_document_the_pass_counts();
    void selected_only_without_a_selection_counts_a_pass_without_marking();
    void counter_is_cleared_by_a_double_click_after_a_question();
    void counter_keeps_its_value_on_no();
    void double_click_during_a_run_does_nothing();
};

void RunCounterTest::initTestCase() {
    QVERIFY(m_Root.isValid());
}

void RunCounterTest::a_pass_counts_and_is_stored_at_once() {
    part<QCheckBox>("checkBoxLoopMark")->setChecked(true);
    part<QSpinBox>("spinBox")->setValue(1);
    machine().setSpeed(0.0);
    QSignalSpy passes(&dialog(), &Form_Marking::SendRunData);
    bool behind = false;
    connect(&dialog(), &Form_Marking::SendRunData, this, [&] { behind = behind || storedCount() != count(); });
    press("pushButtonStart");
    QTRY_VERIFY(passes.count() >= 5);
    dialog().StopMark();
    QTRY_VERIFY(idle());
    QVERIFY(!behind);
    QCOMPARE(count(), passes.count());
    QCOMPARE(storedCount(), count());
}

void RunCounterTest::a_count_survives_the_program() {
    machine().setSpeed(0.0);
    press("pushButtonStart");
    QTRY_VERIFY(idle());
    press("pushButtonStart");
    QTRY_COMPARE(count(), 2);
    QTRY_VERIFY(idle());
    m_Window.reset();
    m_Window = std::make_unique<RunningWindow>();
    QCOMPARE(count(), 2);
}

void RunCounterTest::a_count_that_cannot_be_stored_is_told_once() {
    // A directory in the file's place: no process can write it, whoever it runs as.
    QFile::remove(settingsFile());
    QVERIFY(QDir().mkpath(settingsFile()));
    machine().setSpeed(0.0);
    for (int pass = 1; pass <= 3; ++pass) {
        press("pushButtonStart");
        QTRY_COMPARE(count(), pass);
        QTRY_VERIFY(idle());
    }
    const auto* model = m_Window->statusList()->model();
    QCOMPARE(model->rowCount(), 1);
    QCOMPARE(model->index(0, 0).data().toString(), LanguageManager::GetLanText("运行计数保存失败"));
    QVERIFY(QDir().rmdir(settingsFile()));
    press("pushButtonStart");
    QTRY_COMPARE(count(), 4);
    QCOMPARE(storedCount(), 4);
    QTRY_VERIFY(idle());
}

void RunCounterTest::without_a_document_the_pass_counts() {
    (*m_Window)->CloseAllFile();
    machine().clearJournal();
    QSignalSpy passes(&dialog(), &Form_Marking::SendRunData);
    press("pushButtonStart");
    QTRY_COMPARE(passes.count(), 1);
    QTRY_VERIFY(idle());
    QCOMPARE(count(), 1);
    QCOMPARE(machineCalls("StartMark"), 0);
    QCOMPARE(machineCalls("SetMarkType"), 1);
    QCOMPARE(machineCalls("DownLayerPara"), 0);
}

void RunCounterTest::selected_only_without_a_selection_counts_a_pass_without_marking() {
    // A new point is selected; another document has none.
    m_Window->newDocument(0, QStringLiteral("empty"));
    part<QCheckBox>("checkBoxSelectMarking")->setChecked(true);
    part<QCheckBox>("checkBoxLoopMark")->setChecked(true);
    part<QSpinBox>("spinBox")->setValue(1);
    QVERIFY(dialog().IsMarkSelect());
    press("pushButtonStart");
    QTRY_COMPARE(count(), 1);
    QTRY_VERIFY(idle());
    QCOMPARE(machineCalls("StartMark"), 0);
    QCOMPARE(machineCalls("DownLayerPara"), 1);
}

void RunCounterTest::counter_is_cleared_by_a_double_click_after_a_question() {
    machine().setSpeed(0.0);
    press("pushButtonStart");
    QTRY_COMPARE(count(), 1);
    QTRY_VERIFY(idle());
    DialogAnswerer answerer;
    answerer.press(QMessageBox::Yes);
    QTest::mouseDClick(part<QLabel>("labelRunCnt"), Qt::LeftButton);
    QVERIFY(answerer.waitUntilAnswered());
    QCOMPARE(answerer.seen().at(0).title, QStringLiteral("提示"));
    QCOMPARE(answerer.seen().at(0).text, QStringLiteral("是否清空运行个数计数?"));
    QCOMPARE(count(), 0);
    QCOMPARE(storedCount(), 0);
}

void RunCounterTest::counter_keeps_its_value_on_no() {
    machine().setSpeed(0.0);
    press("pushButtonStart");
    QTRY_COMPARE(count(), 1);
    QTRY_VERIFY(idle());
    DialogAnswerer answerer;
    answerer.press(QMessageBox::No);
    QTest::mouseDClick(part<QLabel>("labelRunCnt"), Qt::LeftButton);
    QVERIFY(answerer.waitUntilAnswered());
    QCOMPARE(count(), 1);
    QCOMPARE(storedCount(), 1);
}

void RunCounterTest::double_click_during_a_run_does_nothing() {
    startSlowly();
    DialogAnswerer answerer;
    QTest::mouseDClick(part<QLabel>("labelRunCnt"), Qt::LeftButton);
    QVERIFY(answerer.seen().isEmpty());
    dialog().StopMark();
    QTRY_VERIFY(idle());
}

QTEST_MAIN(RunCounterTest)
#include "tst_runcounter.moc"
