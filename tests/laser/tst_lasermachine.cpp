// SPDX-License-Identifier: MIT
#include "engine/cardfunctions.h"
#include "engine/class_cardpara.h"
#include "engine/languagemanager.h"
#include "engine/markcardinstance.h"
#include "engine/markingmparam_vz.h"
#include "engine/profinifile.h"
#include "laser/lasersplash.h"
#include "laser/machinelaserport.h"
#include "laser/runlaserstart.h"
#include "tests/shell/windowcase.h"
#include "tests/support/dialoganswerer.h"

#include <QApplication>

using namespace tests;

namespace {

constexpr char kYlsNotice[] = "YLS激光等待Ready信号超时,请确认";
constexpr char kRdyNotice[] = "施恩激光器等待RDY_23超时,请确认";
constexpr char kEmissNotice[] = "施恩激光器等待EMISS_22超时,请确认";

/// The machine's lines and operator with time that passes fifty times as fast, as on the simulated clock.
class FastPort : public tessera::MachineLaserPort {
public:
    static constexpr int kFactor = 50;
    void Wait(int ms) override { tessera::MachineLaserPort::Wait(qMax(1, ms / kFactor)); }
};

/// A card that still reports open after it was closed.
class StillOpenPort : public FastPort {
public:
    bool IsOpen() override { return true; }
};

/// What the window of the start shows, collected whenever the program lets the screen be drawn.
class SplashReader : public QObject {
public:
    QStringList waits; ///< title, wait and window state as often as they change
    QStringList since;

    SplashReader() { qApp->installEventFilter(this); }
    bool eventFilter(QObject* watched, QEvent* event) override {
        auto* splash = qobject_cast<LaserSplash*>(watched);
        if (!splash || event->type() != QEvent::Paint)
            return false;
        const auto text = [splash](char const* name) {
            return splash->findChild<QLabel*>(QString::fromLatin1(name))->text();
        };
        const QString wait = text("labelTitle") + QStringLiteral(" | ") + text("labelWait");
        if (waits.isEmpty() || waits.last() != wait)
            waits << wait;
        since << text("labelSince");
        return false;
    }
};

RunLaserStart& laser() {
    return *RunLaserStart::Instance();
}

/// Outputs of the laser in the journal; the lamps of the window are on other lines.
QVector<JournalEntry> laserOutputs() {
    QVector<JournalEntry> found;
    for (JournalEntry const& entry : only(machineJournal(), {QStringLiteral("SetOutputBit")}))
        if (QStringList{"21", "23", "26", "29"}.contains(entry.arguments.value(0)))
            found << entry;
    return found;
}

bool splashIsThere() {
    for (QWidget const* widget : QApplication::topLevelWidgets())
        if (qobject_cast<LaserSplash const*>(widget))
            return true;
    return false;
}

} // namespace

/// The sequences on the machine: its lines answer, or are switched silent, as the main window comes and goes.
class LaserMachineTest : public QObject, private WindowCase {
    Q_OBJECT

private slots:
    void initTestCase();
    void init();
    void cleanup();

    void yls_answers_and_starts_without_a_notice();
    void yls_without_ready_tells_it_and_the_start_goes_on();
    void sn_answers_and_starts_without_a_notice();
    void sn_notices_by_the_lines_that_fail_data();
    void sn_notices_by_the_lines_that_fail();
    void ylr_pulse_lasts_its_time();
    void a_fault_that_goes_while_waiting_ends_the_wait();
    void the_fibre_is_enabled_after_the_lamps_and_before_the_axes();
    void exit_drives_nothing_on_a_closed_card();
    void exit_order_is_card_laser_axes();
    void no_card_no_start();
    void the_splash_tells_what_is_waited_for_and_since_when();
    void texts_of_the_splash();
    void notices_and_splash_in_english();
    void lasers_without_lines_leave_the_inputs_alone();
    void another_laser_is_there_when_the_card_rereads_its_parameters();
    void a_sequence_without_a_card_drives_nothing();

private:
    /// The machine gets this laser, and the settings are read anew.
    void fit(int type, int variant) {
        MarkingMParam_VZ::Instance()->SetMarkCardType(static_cast<MarkCardType>(type));
        XProfIniFile_CardCfg::Instance()->WriteInt("LASER", "bYLS", variant);
        laser().InitYLRParam();
        laser().SetPort(&m_Fast);
        machine().setSpeed(FastPort::kFactor);
    }
    /// The window started while the operator acknowledges these notices.
    void startAnswering(QStringList const& notices) {
        DialogAnswerer answerer;
        for (int i = 0; i < notices.size(); ++i)
            answerer.press(QStringLiteral("pushButtonOK"));
        start(false);
        QCOMPARE(answerer.texts(), notices);
        QCOMPARE(answerer.titles(), QStringList(notices.empty() ? QStringList() : m_Titles.mid(0, notices.size())));
    }

    const QStringList m_Titles = {"提示", "提示"};
    FastPort m_Fast;
};

void LaserMachineTest::initTestCase() {
    QVERIFY(hasRoot());
}

void LaserMachineTest::init() {
    beginCase();
    IOOutputSet::Instance()->SetLight(10, 11, 12, -1);
}

void LaserMachineTest::cleanup() {
    if (MarkCardInstance::Instance()->IsCardOpend())
        for (int line : {21, 23, 26, 29})
            MarkCardInstance::Instance()->SetOutputBit(line, 0);
    endCase();
    laser().SetPort(nullptr);
    laser().nFiberSoftwareEnable = 0;
    laser().nYlrSoftwareEnable = 0;
    laser().nOutb07 = 0;
    Class_CardPara::Instance()->HomeAtStart = false;
    fit(0, 0);
    LanguageManager::SetCurrentLan(QStringLiteral("zh_CN"));
}

void LaserMachineTest::yls_answers_and_starts_without_a_notice() {
    fit(1, 1);
    startAnswering({});
    COMPARE_JOURNAL(laserOutputs(), {call("SetOutputBit", 23, 1), call("SetOutputBit", 26, 1)});
    QCOMPARE(MarkCardInstance::Instance()->GetInputBit(22), 0);
    QVERIFY(!splashIsThere());
}

void LaserMachineTest::yls_without_ready_tells_it_and_the_start_goes_on() {
    fit(5, 1);
    QVERIFY(machine().setFault("laser_no_ready", true));
    startAnswering({kYlsNotice});
    COMPARE_JOURNAL(laserOutputs(), {call("SetOutputBit", 23, 1), call("SetOutputBit", 26, 1)});
    QVERIFY(MainWindow::Instance());
    QCOMPARE(MarkCardInstance::Instance()->GetOutputBit(23), 1);
    QCOMPARE(MarkCardInstance::Instance()->GetOutputBit(26), 1);
    QVERIFY(!splashIsThere());
}

void LaserMachineTest::sn_answers_and_starts_without_a_notice() {
    fit(1, 2);
    startAnswering({});
    COMPARE_JOURNAL(laserOutputs(), {call("SetOutputBit", 26, 1), call("SetOutputBit", 23, 1)});
    QCOMPARE(MarkCardInstance::Instance()->GetInput() >> 22 & 3U, 0U);
}

void LaserMachineTest::sn_notices_by_the_lines_that_fail_data() {
    QTest::addColumn<bool>("ready");
    QTest::addColumn<bool>("emission");
    QTest::addColumn<QStringList>("notices");
    QTest::newRow("RDY_23") << false << true << QStringList{kRdyNotice};
    QTest::newRow("EMISS_22") << true << false << QStringList{kEmissNotice};
    QTest::newRow("both") << false << false << QStringList{kRdyNotice, kEmissNotice};
}

void LaserMachineTest::sn_notices_by_the_lines_that_fail() {
    QFETCH(bool, ready);
    QFETCH(bool, emission);
    QFETCH(QStringList, notices);
    fit(5, 2);
    machine().setFault("laser_no_ready", !ready);
    machine().setFault("laser_no_emission", !emission);
    startAnswering(notices);
    COMPARE_JOURNAL(laserOutputs(), {call("SetOutputBit", 26, 1), call("SetOutputBit", 23, 1)});
}

/// Real waits: a wait is never shorter than told.
void LaserMachineTest::ylr_pulse_lasts_its_time() {
    fit(1, 0);
    laser().nOutb07 = 1;
    laser().nYlrSoftwareEnable = 1;
    laser().SetPort(nullptr);
    startAnswering({});
    const QVector<JournalEntry> outputs = laserOutputs();
    COMPARE_JOURNAL(outputs, {call("SetOutputBit", 23, 0), call("SetOutputBit", 26, 1), call("SetOutputBit", 26, 0),
                              call("SetOutputBit", 29, 0), call("SetOutputBit", 23, 1)});
    QVERIFY(outputs[2].timeMs - outputs[1].timeMs >= 2000.0);
    QVERIFY(outputs[3].timeMs - outputs[2].timeMs >= 200.0);
    QVERIFY(outputs[4].timeMs - outputs[3].timeMs >= 500.0);
    for (int i = 1; i < outputs.size(); ++i)
        qInfo("output %s := %s after %.1f ms", qPrintable(outputs[i].arguments[0]), qPrintable(outputs[i].arguments[1]),
              outputs[i].timeMs - outputs[i - 1].timeMs);
}

void LaserMachineTest::a_fault_that_goes_while_waiting_ends_the_wait() {
    fit(1, 1);
    machine().setFault("laser_no_ready", true);
    QTimer::singleShot(200, [] { machine().setFault("laser_no_ready", false); });
    startAnswering({});
    QCOMPARE(MarkCardInstance::Instance()->GetInputBit(22), 0);
}

void LaserMachineTest::the_fibre_is_enabled_after_the_lamps_and_before_the_axes() {
    laser().nFiberSoftwareEnable = 1;
    Class_CardPara* para = Class_CardPara::Instance();
    para->EnableMotion = true;
    para->AxisCount = 1;
    para->HomeAtStart = true;
    para->Home[0] = {true, true, 1};
    machine().setSpeed(0.0);
    start(false);
    COMPARE_JOURNAL(machineJournal(),
                    {call("VZ_SetFuncMessageDisp", 1), call("OpenCard"), call("InitMoveCard"), call("VZ_GetHdVer"),
                     call("SetOutputBit", 10, 0), call("SetOutputBit", 11, 0), call("SetOutputBit", 12, 1),
                     call("SetOutputBit", 21, 1), call("SearchHome", 0, 1, 0.0)});
}

void LaserMachineTest::exit_drives_nothing_on_a_closed_card() {
    laser().nFiberSoftwareEnable = 1;
    start(false);
    machine().clearJournal();
    m_Window->close();
    COMPARE_JOURNAL(machineJournal(), {call("CloseCard"), call("CloseMoveCard")});
}

void LaserMachineTest::exit_order_is_card_laser_axes() {
    StillOpenPort port;
    laser().nFiberSoftwareEnable = 1;
    start(false);
    laser().SetPort(&port);
    machine().clearJournal();
    m_Window->close();
    COMPARE_JOURNAL(machineJournal(), {call("CloseCard"), call("SetOutputBit", 21, 0), call("CloseMoveCard")});
    laser().SetPort(nullptr);
}

void LaserMachineTest::no_card_no_start() {
    fit(1, 1);
    laser().nFiberSoftwareEnable = 1;
    SystemParam::Instance()->SetSysMode(true);
    startAnswering({});
    COMPARE_JOURNAL(laserOutputs(), {});
    laser().ChangeYLRLaserType(1);
    COMPARE_JOURNAL(laserOutputs(), {});
}

void LaserMachineTest::the_splash_tells_what_is_waited_for_and_since_when() {
    fit(1, 1);
    machine().setFault("laser_no_ready", true);
    SplashReader reader;
    startAnswering({kYlsNotice});
    QCOMPARE(reader.waits, (QStringList{"激光器启动中 | 光闸使能生效", "激光器启动中 | 远程启动生效",
                                        "激光器启动中 | YLS激光Ready信号 (输入口 22)"}));
    QSet<QString> different;
    for (QString const& line : qAsConst(reader.since)) {
        static const QRegularExpression form(
            QStringLiteral("^自\\d\\d:\\d\\d:\\d\\d起,已等待\\d+\\.\\d秒,最长(1\\.00|0\\.10|30\\.10)秒$"));
        QVERIFY2(form.match(line).hasMatch(), qPrintable(line));
        different.insert(line);
    }
    QVERIFY2(different.size() >= 5, "the elapsed time goes on");
    QVERIFY(!splashIsThere());
}

void LaserMachineTest::texts_of_the_splash() {
    QCOMPARE(tessera::LaserWaitText("X", 22), QString("X (输入口 22)"));
    QCOMPARE(tessera::LaserWaitText("X", 0), QString("X (输入口 0)"));
    QCOMPARE(tessera::LaserWaitText("X", -1), QString("X"));
    QCOMPARE(tessera::LaserSinceText(QTime(8, 5, 2), 3240, 10050), QString("自08:05:02起,已等待3.2秒,最长10.05秒"));
    QCOMPARE(tessera::LaserSinceText(QTime(23, 59, 59), 0, 500), QString("自23:59:59起,已等待0.0秒,最长0.50秒"));
}

void LaserMachineTest::notices_and_splash_in_english() {
    QVERIFY(LanguageManager::SetCurrentLan(QStringLiteral("en")));
    QCOMPARE(tessera::LaserSinceText(QTime(8, 5, 2), 3240, 10050),
             QString("Since 08:05:02, waited 3.2 s of at most 10.05 s"));
    fit(1, 2);
    machine().setFault("laser_no_ready", true);
    SplashReader reader;
    DialogAnswerer answerer;
    answerer.press(QStringLiteral("pushButtonOK"));
    start(false);
    QCOMPARE(answerer.titles(), QStringList{"Notice"});
    QCOMPARE(answerer.texts(), QStringList{"The SN laser did not give RDY_23 in time. Please check."});
    QVERIFY(reader.waits.contains("The laser is being switched on | RDY_23 signal of the SN laser (input 23)"));
}

void LaserMachineTest::lasers_without_lines_leave_the_inputs_alone() {
    struct Fitted {
        int type;
        int variant;
    };
    for (Fitted fitted : {Fitted{0, 1}, {1, 0}, {1, 3}, {5, 4}, {2, 1}, {3, 2}, {4, 1}}) {
        fit(fitted.type, fitted.variant);
        start(false);
        QCOMPARE(MarkCardInstance::Instance()->GetInput(), 0U);
        QVERIFY(!splashIsThere());
        m_Window.reset();
    }
}

void LaserMachineTest::another_laser_is_there_when_the_card_rereads_its_parameters() {
    start(false);
    fit(1, 2);
    QCOMPARE(MarkCardInstance::Instance()->GetInput(), 0U);
    VZ_SetCardParaFile(m_Root.path("/ini/VZMarkPara.cfg").toLatin1());
    QCOMPARE(MarkCardInstance::Instance()->GetInput(), 3U << 22);
    machine().setInputs(1);
    QCOMPARE(MarkCardInstance::Instance()->GetInput(), (3U << 22) | 1U);
    fit(0, 0);
    VZ_SetCardParaFile(m_Root.path("/ini/VZMarkPara.cfg").toLatin1());
    QCOMPARE(MarkCardInstance::Instance()->GetInput(), 1U);
}

void LaserMachineTest::a_sequence_without_a_card_drives_nothing() {
    MarkCardInstance::SetMarkCardInstance(nullptr);
    machine().clearJournal();
    fit(1, 2);
    laser().RunLaser_Start();
    laser().RunLaser_End();
    laser().ChangeYLRLaserType(1);
    laser().RunLaserSN();
    COMPARE_JOURNAL(machineJournal(), {});
    start(false);
}

QTEST_MAIN(LaserMachineTest)
#include "tst_lasermachine.moc"
