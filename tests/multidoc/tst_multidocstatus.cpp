// SPDX-License-Identifier: MIT
#include "engine/ccdbufdata.h"
#include "remote/externalresponse.h"
#include "run/form_marking.h"
#include "run/redlooppreview.h"
#include "tests/multidoc/multidocrunfixture.h"
#include "tests/support/timeoutscale.h"

#include <QCheckBox>
#include <algorithm>
#include <vector>

using namespace tests;

/// What the window of a multi-document run shows and when it closes.
class MultiDocStatusTest : public QObject, private MultiDocRunFixture {
    Q_OBJECT

private slots:
    void init() { beginRuns(); }
    void cleanup() { endRuns(); }

    void a_run_opens_the_documents_and_locks_the_window();
    void status_and_colour_follow_the_run();
    void the_document_that_runs_is_the_current_row();
    void each_row_tells_its_last_run_and_its_runs();
    void run_data_is_told_at_the_start_and_after_each_document();
    void time_runs_while_a_document_is_marked();
    void the_time_moves_every_31_milliseconds();
    void dots_follow_the_status();
    void the_dots_move_every_half_second();
    void runs_are_counted_and_cleared_by_a_double_click();
    void a_double_click_during_a_document_is_passed_on();
    void the_window_does_not_close_during_a_run_but_the_ready_output_goes_off();
    void without_a_ready_output_closing_writes_none();
    void escape_closes_without_a_run_only();
    void escape_leaves_the_ready_output_on();
    void run_button_does_nothing_during_the_arrows_loop();
    void run_button_does_nothing_during_a_remote_run();

private:
    struct Change {
        double ms;
        QString text;
    };
    /// The next changes of a label, with their times; fewer when they do not come.
    static std::vector<Change> changesOf(char const* name, std::size_t count) {
        std::vector<Change> changes;
        QElapsedTimer time;
        time.start();
        QString last = label(name);
        while (changes.size() < count && time.elapsed() < scaled(20000)) {
            QCoreApplication::processEvents(QEventLoop::AllEvents | QEventLoop::WaitForMoreEvents, 1);
            if (label(name) == last)
                continue;
            last = label(name);
            changes.push_back({double(time.nsecsElapsed()) / 1e6, last});
        }
        return changes;
    }
    static bool jobRuns(int type) {
        const sim::SimCardState state = machine().state();
        return state.type == type && state.activity == sim::SimActivity::Running;
    }
    static double middle(std::vector<double> values) {
        std::sort(values.begin(), values.end());
        return values.at(values.size() / 2);
    }
};

void MultiDocStatusTest::a_run_opens_the_documents_and_locks_the_window() {
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

void MultiDocStatusTest::status_and_colour_follow_the_run() {
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

void MultiDocStatusTest::the_document_that_runs_is_the_current_row() {
    run();
    startSlowly(2);
    QCOMPARE(list()->currentRow(), 1);
    letEnd();
    endRun();
}

void MultiDocStatusTest::each_row_tells_its_last_run_and_its_runs() {
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

void MultiDocStatusTest::run_data_is_told_at_the_start_and_after_each_document() {
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

void MultiDocStatusTest::time_runs_while_a_document_is_marked() {
    run();
    startSlowly(1);
    QTRY_VERIFY(label("labelTime").toInt() >= 62);
    letEnd();
    const QString last = label("labelTime");
    startSlowly(3);
    QTRY_VERIFY(label("labelTime") != last && label("labelTime").toInt() < last.toInt() + 1000);
    endRun();
}

/// The label tells itself how long it took from one to the next.
void MultiDocStatusTest::the_time_moves_every_31_milliseconds() {
    const auto timerIsOn = [] {
        const QList<QTimer*> timers = dialog().findChildren<QTimer*>();
        return std::any_of(timers.begin(), timers.end(),
                           [](QTimer const* timer) { return timer->isActive() && timer->interval() == 31; });
    };
    run();
    QVERIFY(!timerIsOn());
    startSlowly(1);
    QVERIFY(timerIsOn());
    std::vector<Change> shown = changesOf("labelTime", 41);
    QCOMPARE(shown.size(), 41U);
    const double told = shown.back().text.toDouble() - shown.front().text.toDouble();
    const double passed = shown.back().ms - shown.front().ms;
    QVERIFY2(qAbs(told - passed) < 150, qPrintable(QStringLiteral("%1 of %2").arg(told).arg(passed)));
    // Never faster; a loaded machine may be slower.
    QVERIFY2(told >= 40 * 29 && told <= 40 * 90, qPrintable(QString::number(told)));
    letEnd();
    QVERIFY(!timerIsOn());
    endRun();
}

void MultiDocStatusTest::dots_follow_the_status() {
    QVERIFY(label("labelStatus").startsWith(QStringLiteral("空闲中")));
    run();
    QTRY_VERIFY(label("labelStatus").startsWith(QStringLiteral("等待中")));
    startSlowly(1);
    QTRY_VERIFY(label("labelStatus").startsWith(QStringLiteral("打标中")));
    endRun();
}

/// None to five, and from the start again.
void MultiDocStatusTest::the_dots_move_every_half_second() {
    const std::vector<Change> shown = changesOf("labelStatus", 9);
    QCOMPARE(shown.size(), 9U);
    std::vector<double> steps;
    const int first = shown.front().text.count('.');
    for (std::size_t i = 0; i < shown.size(); ++i) {
        QCOMPARE(shown[i].text, QStringLiteral("空闲中") + QString((first + int(i)) % 6, '.'));
        if (i > 0)
            steps.push_back(shown[i].ms - shown[i - 1].ms);
    }
    const double step = middle(steps);
    QVERIFY2(step >= 450 && step <= 600, qPrintable(QString::number(step)));
}

void MultiDocStatusTest::runs_are_counted_and_cleared_by_a_double_click() {
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

void MultiDocStatusTest::a_double_click_during_a_document_is_passed_on() {
    const DialogAnswerer answerer;
    run();
    startSlowly(1);
    QTest::mouseDClick(part<QLabel>("labelRunCount"), Qt::LeftButton);
    QTest::mouseClick(part<QLabel>("labelRunCount"), Qt::LeftButton);
    QVERIFY(answerer.seen().isEmpty());
    QCOMPARE(label("labelRunCount"), QStringLiteral("1"));
    endRun();
}

void MultiDocStatusTest::the_window_does_not_close_during_a_run_but_the_ready_output_goes_off() {
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

void MultiDocStatusTest::without_a_ready_output_closing_writes_none() {
    QVERIFY(dialog().close());
    QCOMPARE(machineCalls("SetOutputBit"), 0);
}

void MultiDocStatusTest::escape_closes_without_a_run_only() {
    run();
    QTest::keyClick(&dialog(), Qt::Key_Escape);
    QVERIFY(dialog().isVisible());
    endRun();
    QTest::keyClick(&dialog(), Qt::Key_Escape);
    QVERIFY(!dialog().isVisible());
}

/// Esc hides the window without closing it.
void MultiDocStatusTest::escape_leaves_the_ready_output_on() {
    IOOutputSet::Instance()->SetEnableReadyOut(true);
    machine().clearJournal();
    QTest::keyClick(&dialog(), Qt::Key_Escape);
    QVERIFY(!dialog().isVisible() && !dialog().IsShown());
    QCOMPARE(machineCalls("SetOutputBit"), 0);
}

/// Else the laser of a triggered document and the loop's red light would meet at the card.
void MultiDocStatusTest::run_button_does_nothing_during_the_arrows_loop() {
    m_Window->newDocument();
    machine().setSpeed(kSlowRun);
    m_Window->child<QAction>("actionRedLoopPreview")->trigger();
    auto* arrows = window().findChild<RedLoopPreview*>();
    QVERIFY(arrows);
    QTRY_VERIFY(jobRuns(1));
    QCOMPARE(window().MarkWindowIsVisible(), 2);
    machine().clearJournal();
    press("pushButtonRun");
    QVERIFY(!worker()->isRunning() && part<QPushButton>("pushButtonRun")->isEnabled());
    QVERIFY(!window().GetDoc(QStringLiteral("A")));
    take(1);
    QVERIFY(!worker()->GetMarkFile());
    QVERIFY(runJournal().isEmpty() && told().isEmpty() && jobRuns(1));
    take(0);
    arrows->close();
    QTRY_VERIFY(!Form_Marking::Instance()->IsRunning());
    run();
    endRun();
}

void MultiDocStatusTest::run_button_does_nothing_during_a_remote_run() {
    m_Window->newDocument();
    machine().setSpeed(kSlowRun);
    ExternalResponse* remote = ExternalResponse::Instance();
    remote->VZSetOffset(0, {});
    QTRY_VERIFY(jobRuns(0));
    machine().clearJournal();
    press("pushButtonRun");
    QVERIFY(!worker()->isRunning() && !window().GetDoc(QStringLiteral("A")));
    QVERIFY(runJournal().isEmpty() && told().isEmpty() && jobRuns(0));
    remote->StopRunAndWait();
    QTRY_VERIFY(!remote->IsRunning());
    run();
    endRun();
}

QTEST_MAIN(MultiDocStatusTest)
#include "tst_multidocstatus.moc"
