// SPDX-License-Identifier: MIT
#include "engine/glassparam.h"
#include "engine/iocheckedsys.h"
#include "run/form_marking.h"
#include "shell/alarmmask.h"
#include "tests/multidoc/multidocrunfixture.h"
#include "tests/support/timeoutscale.h"

#include <QSemaphore>
#include <atomic>

using namespace tests;

/// Start and end of a multi-document run and of its documents.
class MultiDocStopsTest : public QObject, private MultiDocRunFixture {
    Q_OBJECT

private slots:
    void init() { beginRuns(); }
    void cleanup() { endRuns(); }

    void the_stop_button_ends_the_run();
    void the_remote_stop_leaves_the_run_waiting();
    void the_delayed_stop_comes_a_second_later();
    void the_stop_key_stops_the_document();
    void a_pause_does_not_hold_a_document();
    void a_stop_before_a_document_has_begun_holds_for_it();
    void a_stop_between_two_documents_drops_the_second();
    void a_door_between_two_documents_drops_the_second();
    void a_run_whose_end_is_on_its_way_holds_the_project_back();
    void a_stop_at_any_moment_is_not_lost();
    void an_end_at_any_moment_is_not_lost();
    void a_second_start_leaves_the_run_alone();
    void a_run_can_be_started_again();
    void the_start_of_the_program_can_start_a_run();
    void closing_the_marked_document_ends_it_first();
    void closing_a_waiting_document_takes_it_out();
    void the_end_of_the_program_ends_a_run();
};

void MultiDocStopsTest::the_stop_button_ends_the_run() {
    run();
    startSlowly(1);
    machine().clearJournal();
    press("pushButtonStop");
    QVERIFY(!worker()->isRunning() && !worker()->GetRunning());
    COMPARE_JOURNAL(runJournal(), {call("StopMark"), call("SetMarkStaus", 2), call("SetMarkStaus", 2)});
    QVERIFY(windowIsFree());
    QTRY_VERIFY(statusIs(MultiMarkIdle));
    QCOMPARE(told(), (QStringList{"0", "1A", "0", "2"}));
}

void MultiDocStopsTest::the_remote_stop_leaves_the_run_waiting() {
    run();
    startSlowly(1);
    take(3);
    dialog().StopMark();
    QTRY_VERIFY(statusIs(MultiMarkWaiting));
    machine().setSpeed(0.0);
    QVERIFY(worker()->isRunning() && worker()->GetRunning());
    QCOMPARE(card()->GetMarkStatus(), MarkStatusStop);
    take(1);
    take(3);
    QTRY_COMPARE(begun(), (QStringList{"A", "B"}));
    endRun();
}

void MultiDocStopsTest::the_delayed_stop_comes_a_second_later() {
    run();
    startSlowly(1);
    QElapsedTimer time;
    time.start();
    press("pushButtonStopMark");
    QVERIFY(time.elapsed() < 900);
    QTRY_VERIFY(statusIs(MultiMarkWaiting));
    QVERIFY(time.elapsed() >= 1000);
    QVERIFY(worker()->isRunning());
    endRun();
}

void MultiDocStopsTest::the_stop_key_stops_the_document() {
    run();
    startSlowly(1);
    QTest::keyClick(&window(), Qt::Key_F8);
    QTRY_VERIFY(statusIs(MultiMarkWaiting));
    QCOMPARE(machine().state().activity, sim::SimActivity::Idle);
    endRun();
}

/// Kept: the pause is that of the run dialog. Who sets a door to hold has to know it.
void MultiDocStopsTest::a_pause_does_not_hold_a_document() {
    run();
    startSlowly(1);
    machine().clearJournal();
    window().IOPauseRun();
    QVERIFY(runJournal().isEmpty());
    QCOMPARE(machineCalls("PauseMark"), 0);
    QCOMPARE(machine().state().activity, sim::SimActivity::Running);
    window().IOStopRun();
    QTRY_VERIFY(statusIs(MultiMarkWaiting));
    endRun();
}

/// On the worker's own thread, between its taking the document and its setting the card to run.
void MultiDocStopsTest::a_stop_before_a_document_has_begun_holds_for_it() {
    run();
    machine().setSpeed(kSlowRun);
    QObject context;
    QObject::connect(
        worker(), &MultiMarkThread::markstatusChange, &context,
        [](int status, QString const&) {
            if (status == MultiMarkMarking)
                dialog().StopMark();
        },
        Qt::DirectConnection);
    take(1);
    QTRY_COMPARE(told(), (QStringList{"0", "1A", "0"}));
    COMPARE_JOURNAL(runJournal(), {call("StopMark"), call("SetMarkStaus", 2), call("SetMarkType", 0),
                                   call("DownLayerPara", 20, ArgumentPattern::rest()), call("SetMarkStaus", 2)});
    endRun();
}

/// One has ended, the next waits: the stop is for both, the run stays on.
void MultiDocStopsTest::a_stop_between_two_documents_drops_the_second() {
    run();
    startSlowly(1);
    take(3);
    machine().clearJournal();
    QObject context;
    QObject::connect(
        worker(), &MultiMarkThread::markstatusChange, &context,
        [](int status, QString const&) {
            if (status == MultiMarkWaiting)
                dialog().StopMark();
        },
        Qt::DirectConnection);
    machine().setSpeed(0.0);
    QTRY_COMPARE(told(), (QStringList{"0", "1A", "0"}));
    QTRY_COMPARE(machineCalls("StopMark"), 1);
    COMPARE_JOURNAL(runJournal(), {call("SetMarkStaus", 2), call("StopMark"), call("SetMarkStaus", 2)});
    QObject::disconnect(worker(), nullptr, &context, nullptr);
    take(1);
    take(3);
    QTRY_COMPARE(begun(), (QStringList{"A", "B"}));
    endRun();
}

/// The card is stopped for that moment, and "check in run only" is on.
void MultiDocStopsTest::a_door_between_two_documents_drops_the_second() {
    IOFuncList door;
    door.Name = QStringLiteral("机台安全门1");
    door.InputEnable = true;
    door.InputMask = door.InputValue = 1U << 12;
    IOCheckedSys::Instance()->SetIOFunctions({door});
    GlassParam::Instance()->SetCheckSafeInRun(true);
    GlassParam::Instance()->SetSafeTrigerType(SafeTrigerStop);
    SystemParam::Instance()->m_nResponseIO = 1;
    run();
    machine().setSpeed(kSlowRun);
    machine().setInput(0, true);
    QTRY_COMPARE(machine().state().activity, sim::SimActivity::Running);
    machine().setInput(1, true);
    waitForPolls();
    QSemaphore between;
    QSemaphore goOn;
    std::atomic<bool> first{true};
    QObject context;
    QObject::connect(
        worker(), &MultiMarkThread::markstatusChange, &context,
        [&](int status, QString const&) {
            if (status != MultiMarkWaiting || !first.exchange(false))
                return;
            between.release();
            goOn.acquire();
        },
        Qt::DirectConnection);
    machine().setSpeed(0.0);
    QTRY_COMPARE(between.available(), 1);
    QCOMPARE(card()->GetMarkStatus(), MarkStatusStop);
    machine().setInput(12, true);
    waitForPolls();
    goOn.release();
    QTRY_VERIFY(statusIs(MultiMarkWaiting));
    QVERIFY(window().GetSafeAlarm() & tessera::AlarmDoor1);
    QVERIFY(!dialog().HasWork());
    endRun();
    QCOMPARE(begun(), QStringList{"A"});
    GlassParam::Instance()->SetCheckSafeInRun(false);
    IOCheckedSys::Instance()->SetIOFunctions({});
}

/// Its end would unlock the window and stop the card for the project's documents.
void MultiDocStopsTest::a_run_whose_end_is_on_its_way_holds_the_project_back() {
    m_Window->newDocument();
    machine().setSpeed(kSlowRun);
    Form_Marking* form = Form_Marking::Instance();
    form->StartMarkPreview(false, false, 0, MarkTypeRedPreview);
    QTRY_COMPARE(machine().state().activity, sim::SimActivity::Running);
    QTRY_VERIFY(!windowIsFree());
    machine().setSpeed(0.0);
    QElapsedTimer time;
    time.start();
    while (form->IsRunning() && time.elapsed() < scaled(10000))
        QThread::msleep(1);
    QVERIFY(!form->IsRunning() && form->IsRunOn());
    dialog().StartMark();
    QVERIFY(!dialog().IsRunOn());
    QTRY_VERIFY(!form->IsRunOn());
    run();
    endRun();
}

/// A stop that was lost would hold the test for as long as the slow job takes.
void MultiDocStopsTest::a_stop_at_any_moment_is_not_lost() {
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
        QVERIFY2(stands, qPrintable(QStringLiteral("round %1: told %2, status %3, activity %4; %5")
                                        .arg(i)
                                        .arg(told().mid(told().size() - 4).join(' '))
                                        .arg(machine().state().status)
                                        .arg(int(machine().state().activity))
                                        .arg(journalText())));
        QCoreApplication::processEvents();
    }
    endRun();
}

void MultiDocStopsTest::an_end_at_any_moment_is_not_lost() {
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
        QVERIFY(!worker()->isRunning());
    }
    QTRY_VERIFY(statusIs(MultiMarkIdle));
}

void MultiDocStopsTest::a_second_start_leaves_the_run_alone() {
    run();
    startSlowly(1);
    take(3);
    dialog().StartMark();
    letEnd();
    QTRY_COMPARE(begun(), (QStringList{"A", "B"}));
    endRun();
}

void MultiDocStopsTest::a_run_can_be_started_again() {
    for (int i = 1; i <= 3; ++i) {
        run();
        take(1);
        QTRY_COMPARE(begun().size(), i);
        endRun();
        take(0);
    }
}

void MultiDocStopsTest::the_start_of_the_program_can_start_a_run() {
    writeProject(QStringLiteral("set"), "1\nB\n1\n1\n");
    SystemParam::Instance()->SetStartUpMark(2);
    start();
    window().StartUp();
    QCOMPARE(window().MarkWindowIsVisible(), 2);
    QTRY_VERIFY(statusIs(MultiMarkWaiting));
    QVERIFY(window().GetDoc(QStringLiteral("B")));
    press("pushButtonStop");
}

void MultiDocStopsTest::closing_the_marked_document_ends_it_first() {
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
    QVERIFY(worker()->isRunning());
    endRun();
}

void MultiDocStopsTest::closing_a_waiting_document_takes_it_out() {
    run();
    startSlowly(1);
    take(3);
    window().CloseFile(QStringLiteral("B"));
    letEnd();
    endRun();
    QCOMPARE(begun(), QStringList{"A"});
}

void MultiDocStopsTest::the_end_of_the_program_ends_a_run() {
    run();
    startSlowly(1);
    take(3);
    m_Window.reset();
    QVERIFY(!MultiDocMark::Instance());
    QCOMPARE(machine().state().activity, sim::SimActivity::Idle);
}

QTEST_MAIN(MultiDocStopsTest)
#include "tst_multidocstops.moc"
