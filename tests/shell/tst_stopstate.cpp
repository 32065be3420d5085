// SPDX-License-Identifier: MIT
#include "run/stopwatcher.h"
#include "shell/alarmctrl.h"
#include "tests/shell/supervisionfixture.h"

#include <QElapsedTimer>
#include <QFile>
#include <QSignalSpy>
#include <thread>

using namespace tests;

Q_DECLARE_METATYPE(tessera::StopState)

namespace {

constexpr char const* kHangs = "stop_hangs";

} // namespace

/// What the operator sees between the command of a stop and the card's report that it stands, in the whole program.
class StopStateTest : public QObject, private SupervisionCase {
    Q_OBJECT

private slots:
    void initTestCase() {
        qRegisterMetaType<tessera::StopState>();
        QVERIFY(hasRoot());
    }
    void init() { beginSupervision(); }
    void cleanup() {
        machine().clearFaults();
        endSupervision();
    }

    void a_stop_that_is_obeyed_is_confirmed_and_leaves_nothing();
    void every_way_to_stop_shows_that_it_is_under_way_data();
    void every_way_to_stop_shows_that_it_is_under_way();
    void a_stop_that_is_not_confirmed_in_time_is_told_in_red_until_the_card_stands();
    void looking_for_the_confirmation_calls_nothing();
    void a_held_job_that_does_not_end_is_not_confirmed();
    void outputs_that_do_not_come_to_rest_are_told();
    void an_end_signal_that_lasts_is_no_fault();
    void a_stop_without_a_run_shows_nothing();
    void a_job_triggered_out_of_the_red_light_loop_ends_the_wait();
    void a_closed_card_ends_the_wait();
    void a_program_whose_card_hangs_ends();
    void the_run_lamp_is_believed_only_on_an_output_of_its_own_data();
    void the_run_lamp_is_believed_only_on_an_output_of_its_own();

private:
    QLabel* status() { return dialog().findChild<QLabel*>(QStringLiteral("labelStatus")); }
    bool idle() { return status()->styleSheet() == QLatin1String("background:gray"); }
    bool stopping() {
        return status()->text() == QStringLiteral("停止中...") &&
               status()->styleSheet() == QLatin1String("background:yellow") && bar()->isVisible() &&
               bar()->text() == QStringLiteral("停止中");
    }
    bool unconfirmed() {
        const QString text = QStringLiteral("停止未确认,请按硬件急停");
        return status()->text() == text && status()->styleSheet().startsWith(QLatin1String("background:red")) &&
               bar()->isVisible() && bar()->text() == QStringLiteral("停止未确认") &&
               bar()->styleSheet().contains(QLatin1String("red"));
    }
    QLabel* bar() { return label("labelStopState"); }
    static int logged(QString const& text) {
        int count = 0;
        const QDir folder(tessera::rootPath(QStringLiteral("/日志文件")));
        for (QString const& name : folder.entryList({QStringLiteral("*.log")}, QDir::Files)) {
            QFile file(folder.filePath(name));
            if (file.open(QIODevice::ReadOnly))
                count += QString::fromUtf8(file.readAll()).count(text);
        }
        return count;
    }
    void orderBy(QString const& way) {
        if (way == QLatin1String("button"))
            dialog().findChild<QPushButton*>(QStringLiteral("pushButtonStop"))->click();
        else if (way == QLatin1String("key"))
            QTest::keyClick(&window(), Qt::Key_F8);
        else if (way == QLatin1String("input") || way == QLatin1String("delayed input"))
            machine().setInput(InStop, true);
        else if (way == QLatin1String("emergency stop"))
            machine().setInput(InEmergency, true);
        else
            std::thread([] { MainWindow::Instance()->IOStopRun(); }).join();
    }
};

void StopStateTest::a_stop_that_is_obeyed_is_confirmed_and_leaves_nothing() {
    QVERIFY(startWithJob());
    QSignalSpy states(&dialog(), &Form_Marking::StopStateChanged);
    QVERIFY(bar()->isHidden());
    dialog().StopMark();
    QTRY_VERIFY(hasEnded() && idle());
    QCOMPARE(dialog().GetStopState(), tessera::StopState::None);
    QCOMPARE(states.size(), 2);
    QCOMPARE(states.at(0).at(0).value<tessera::StopState>(), tessera::StopState::Stopping);
    QCOMPARE(states.at(1).at(0).value<tessera::StopState>(), tessera::StopState::None);
    QCOMPARE(status()->text(), QStringLiteral("完成或终止运行..."));
    QVERIFY(bar()->isHidden());
    QCOMPARE(logged(QStringLiteral("停止未确认")), 0);
}

void StopStateTest::every_way_to_stop_shows_that_it_is_under_way_data() {
    QTest::addColumn<QString>("way");
    for (char const* way : {"button", "key", "input", "delayed input", "emergency stop", "another thread"})
        QTest::newRow(way) << QString::fromLatin1(way);
}

void StopStateTest::every_way_to_stop_shows_that_it_is_under_way() {
    QFETCH(QString, way);
    if (way == QLatin1String("delayed input")) {
        function(InStop).DelayEnable = true;
        function(InStop).DelayTime = 100;
    }
    QVERIFY(startWithJob());
    QVERIFY(machine().setFault(kHangs, true));
    orderBy(way);
    QTRY_VERIFY(stopping());
    QVERIFY(isRunning());
    QVERIFY(dialog().IsRunning());
    QVERIFY(machine().setFault(kHangs, false));
    QTRY_VERIFY(idle());
    QVERIFY(bar()->isHidden());
    QVERIFY(!isRunning());
    QCOMPARE(machineCalls("StopMark"), 2);
}

void StopStateTest::a_stop_that_is_not_confirmed_in_time_is_told_in_red_until_the_card_stands() {
    const int before = logged(QStringLiteral("停止未确认"));
    const int beforeConfirmed = logged(QStringLiteral("停止已确认"));
    QVERIFY(startWithJob());
    QVERIFY(machine().setFault(kHangs, true));
    QElapsedTimer time;
    time.start();
    dialog().StopMark();
    QVERIFY(stopping());
    QVERIFY(waitFor([this] { return unconfirmed(); }));
    QVERIFY2(time.elapsed() >= 2000, qPrintable(QString::number(time.elapsed())));
    QCOMPARE(logged(QStringLiteral("停止未确认")), before + 1);
    // It stays, whatever is pressed, and no new job begins.
    dialog().StopMark();
    dialog().StartMark(false);
    QVERIFY(polled());
    QVERIFY(unconfirmed());
    QVERIFY(!dialog().close());
    QVERIFY(machine().setFault(kHangs, false));
    QTRY_VERIFY(idle());
    QVERIFY(bar()->isHidden());
    QVERIFY(hasEnded());
    QCOMPARE(logged(QStringLiteral("停止未确认")), before + 1);
    QCOMPARE(logged(QStringLiteral("停止已确认")), beforeConfirmed + 1);
    QVERIFY(!isRunning());
}

void StopStateTest::looking_for_the_confirmation_calls_nothing() {
    QVERIFY(startWithJob());
    QVERIFY(machine().setFault(kHangs, true));
    machine().clearJournal();
    dialog().StopMark();
    QVERIFY(waitFor([this] { return unconfirmed(); }));
    COMPARE_JOURNAL(machineJournal(), {call("StopMark"), call("SetMarkStaus", 2), call("StopMark")});
}

void StopStateTest::a_held_job_that_does_not_end_is_not_confirmed() {
    QVERIFY(startWithJob());
    dialog().PauseMark();
    QTRY_VERIFY(isPaused());
    QVERIFY(machine().setFault(kHangs, true));
    dialog().StopMark();
    QVERIFY(waitFor([this] { return unconfirmed(); }));
    QVERIFY(machine().setFault(kHangs, false));
    QTRY_VERIFY(idle());
}

void StopStateTest::outputs_that_do_not_come_to_rest_are_told() {
    QVERIFY(startWithJob());
    QVERIFY(machine().setFault("outputs_stuck", true));
    dialog().StopMark();
    QTRY_VERIFY(hasEnded());
    QVERIFY(!isRunning());
    QVERIFY(stopping());
    QVERIFY(waitFor([this] { return unconfirmed(); }));
    QVERIFY(machine().setFault("outputs_stuck", false));
    IOOutputSet::Instance()->SetYellow(MarkCardInstance::Instance());
    QTRY_VERIFY(idle());
    QVERIFY(bar()->isHidden());
}

/// The plant's signal at the end of a stopped job, given for longer than a stop may take.
void StopStateTest::an_end_signal_that_lasts_is_no_fault() {
    IOOutputSet* outputs = IOOutputSet::Instance();
    outputs->SetEndSignal(true, 9, 1, 0, 2600, -1, 1, 0, false);
    outputs->m_bStopHasEndSig = true;
    QVERIFY(startWithJob());
    QSignalSpy stops(&dialog(), &Form_Marking::StopStateChanged);
    QElapsedTimer time;
    time.start();
    dialog().StopMark();
    machine().setSpeed(1.0); // of the signal
    QVERIFY(stopping());
    QVERIFY(waitFor([this] { return idle(); }));
    QVERIFY2(time.elapsed() >= 2500, qPrintable(QString::number(time.elapsed())));
    QCOMPARE(stops.size(), 2);
    QCOMPARE(stops.at(1).at(0).value<tessera::StopState>(), tessera::StopState::None);
    outputs->SetEndSignal(false, -1, 1, 0, 0, -1, 1, 0, false);
    outputs->m_bStopHasEndSig = false;
}

void StopStateTest::a_stop_without_a_run_shows_nothing() {
    QVERIFY(startWithDialog());
    QSignalSpy states(&dialog(), &Form_Marking::StopStateChanged);
    window().IOStopRun();
    QVERIFY(pulse(InStop));
    QVERIFY(states.isEmpty());
    QVERIFY(idle());
}

void StopStateTest::a_job_triggered_out_of_the_red_light_loop_ends_the_wait() {
    SystemParam::Instance()->SetEnableTriggerWhenRedLoop(true);
    QVERIFY(startWithDialog());
    machine().setSpeed(kSlowJob);
    dialog().StartMarkPreview(false, true, 0, MarkTypeRedPreview);
    QTRY_VERIFY(isRunning());
    QCOMPARE(machine().state().type, 1);
    window().IOStartRun();
    QTRY_VERIFY(isRunning() && machine().state().type == 0);
    QTRY_COMPARE(status()->styleSheet(), QStringLiteral("background:green"));
    QCOMPARE(dialog().GetStopState(), tessera::StopState::None);
    QVERIFY(bar()->isHidden());
}

void StopStateTest::a_closed_card_ends_the_wait() {
    QVERIFY(startWithJob());
    QVERIFY(machine().setFault(kHangs, true));
    dialog().StopMark();
    QVERIFY(stopping());
    MarkCardInstance::Instance()->CloseCard();
    QTRY_VERIFY(idle());
    QCOMPARE(dialog().GetStopState(), tessera::StopState::None);
}

void StopStateTest::a_program_whose_card_hangs_ends() {
    QVERIFY(startWithJob());
    QVERIFY(machine().setFault(kHangs, true));
    dialog().StopMark();
    QVERIFY(stopping());
    m_Window.reset();
    QVERIFY(!MainWindow::Instance());
    QVERIFY(!machine().state().open);
    QCOMPARE(machine().state().activity, sim::SimActivity::Idle);
}

void StopStateTest::the_run_lamp_is_believed_only_on_an_output_of_its_own_data() {
    QTest::addColumn<int>("green");
    QTest::addColumn<bool>("readsBack");
    QTest::newRow("an output of its own") << kGreen << false;
    QTest::newRow("none") << -1 << true;
    QTest::newRow("no such output") << 32 << true;
    QTest::newRow("shared with red") << kRed << true;
    QTest::newRow("shared with yellow") << kYellow << true;
    QTest::newRow("shared with the ready signal") << kReady << true;
}

/// The lamp is switched over behind the program's back.
void StopStateTest::the_run_lamp_is_believed_only_on_an_output_of_its_own() {
    QFETCH(int, green);
    start();
    IMarkCardBase* card = MarkCardInstance::Instance();
    IOOutputSet* outputs = IOOutputSet::Instance();
    outputs->SetLight(kRed, green, kYellow, -1);
    outputs->SetYellow(card);
    QVERIFY(tessera::RunLampReadsBack(*card, *outputs));
    if (green >= 0)
        card->SetOutputBit(green, 1);
    QTEST(tessera::RunLampReadsBack(*card, *outputs), "readsBack");
    outputs->SetOutputInv(true);
    outputs->SetYellow(card);
    QVERIFY(tessera::RunLampReadsBack(*card, *outputs));
}

QTEST_MAIN(StopStateTest)
#include "tst_stopstate.moc"
