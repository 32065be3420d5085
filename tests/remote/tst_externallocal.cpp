// SPDX-License-Identifier: MIT
#include "multidoc/multidocmark.h"
#include "tests/remote/remotefixture.h"

#include <QPushButton>
#include <QSignalSpy>

using namespace tests;

/// A station that is not of the server kind: what is there all the same. What is listened to is decided when the first
/// window is made.
class ExternalLocalTest : public QObject, private RemoteFixture {
    Q_OBJECT

private slots:
    void init() {
        // Else the documents of the test before are opened again.
        QDir(m_Root.path(QStringLiteral("/MarkFile"))).removeRecursively();
        resetMachine();
        machine().setSpeed(0.0);
    }
    void cleanup() {
        machine().setSpeed(0.0);
        m_Window.reset();
    }

    void the_server_is_not_started_in_other_modes_data();
    void the_server_is_not_started_in_other_modes();
    void a_host_runs_and_stops_documents();
    void a_stop_of_a_local_run_makes_no_calls_for_the_remote_run_before_it();
    void a_remote_run_leaves_the_window_locked_for_a_project();
};

void ExternalLocalTest::the_server_is_not_started_in_other_modes_data() {
    QTest::addColumn<bool>("console");
    QTest::addColumn<int>("mode");
    QTest::newRow("normal") << false << 0;
    QTest::newRow("mode 2") << false << 2;
    QTest::newRow("mode 4") << false << 4;
    QTest::newRow("console in the server's mode") << true << 3;
}

void ExternalLocalTest::the_server_is_not_started_in_other_modes() {
    QFETCH(bool, console);
    QFETCH(int, mode);
    SystemParam::Instance()->SetSysMode(console);
    SystemParam::Instance()->SetWorkMode(mode);
    m_Window = std::make_unique<RunningWindow>();
    order(QStringLiteral("RunManualStop"));
    m_Window.reset();
    QCOMPARE(only(machineJournal(), {"InitServer", "CloseServer", "WriteTcpMsg"}).size(), 0);
}

void ExternalLocalTest::a_host_runs_and_stops_documents() {
    m_Window = std::make_unique<RunningWindow>();
    m_Window->newDocument();
    QCOMPARE(hostOrder(0), std::make_pair(true, QStringLiteral("文档执行成功")));
    machine().setSpeed(kSlowRun);
    auto reply = hostOrderLater(0);
    QTRY_COMPARE(machine().state().activity, sim::SimActivity::Running);
    response().VZMarkStop();
    QTRY_VERIFY(isReady(reply));
    QCOMPARE(machine().state().status, 2);
}

/// A remote run that has ended must not be stopped again in what is the local run's time.
void ExternalLocalTest::a_stop_of_a_local_run_makes_no_calls_for_the_remote_run_before_it() {
    m_Window = std::make_unique<RunningWindow>();
    m_Window->newDocument();
    QCOMPARE(hostOrder(0), std::make_pair(true, QStringLiteral("文档执行成功")));
    window().ShowNormalMarkWindow();
    machine().setSpeed(kSlowRun);
    Form_Marking::Instance()->findChild<QPushButton*>(QStringLiteral("pushButtonStart"))->click();
    QTRY_COMPARE(machine().state().activity, sim::SimActivity::Running);
    machine().clearJournal();
    window().IOStopRun();
    QTRY_VERIFY(!Form_Marking::Instance()->IsRunning());
    QTRY_COMPARE(only(machineJournal(), {"SetMarkStaus"}).size(), 3);
    // Three calls of the stop, then one of the worker and one of the dialog.
    COMPARE_JOURNAL(only(machineJournal(), {"StopMark", "SetMarkStaus", "SetMarkType", "StartMark"}),
                    {call("StopMark"), call("SetMarkStaus", 2), call("StopMark"), call("SetMarkStaus", 2),
                     call("SetMarkStaus", 2)});
}

void ExternalLocalTest::a_remote_run_leaves_the_window_locked_for_a_project() {
    m_Window = std::make_unique<RunningWindow>();
    m_Window->newDocument();
    MultiDocMark* project = MultiDocMark::Instance();
    window().ShowMultDocMarkWindow();
    project->StartMark();
    QVERIFY(project->IsRunOn() && !windowIsFree());
    QSignalSpy ended(&response(), &ExternalResponse::EnableMarkAction);
    QCOMPARE(hostOrder(0), std::make_pair(true, QStringLiteral("文档执行成功")));
    QTRY_VERIFY(!ended.isEmpty() && ended.last().first().toBool());
    QCoreApplication::processEvents();
    QVERIFY(!windowIsFree());
    project->findChild<QPushButton*>(QStringLiteral("pushButtonStop"))->click();
    QVERIFY(windowIsFree());
}

QTEST_MAIN(ExternalLocalTest)
#include "tst_externallocal.moc"
