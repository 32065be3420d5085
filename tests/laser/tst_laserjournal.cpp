// SPDX-License-Identifier: MIT
#include "engine/markcardinstance.h"
#include "engine/markingmparam_vz.h"
#include "engine/profinifile.h"
#include "engine/vzmarkcard.h"
#include "laser/machinelaserport.h"
#include "laser/runlaserstart.h"
#include "simengine/simcontrol.h"
#include "tests/support/temporaryroot.h"

#include <QElapsedTimer>
#include <QtTest>

namespace {

/// A call of a sequence and when it came.
struct Timed {
    QString what;
    double ms;
};

/// The machine's lines in real time, with an operator who acknowledges at once.
class TimedPort : public tessera::MachineLaserPort {
public:
    QVector<Timed> calls;
    QElapsedTimer clock;

    void SetOutput(int line, int value) override {
        add(QStringLiteral("output %1 := %2").arg(line).arg(value));
        tessera::MachineLaserPort::SetOutput(line, value);
    }
    void Notice(char const* text) override { add(QString::fromUtf8(text)); }
    void add(QString const& what) { calls.append({what, static_cast<double>(clock.nsecsElapsed()) / 1e6}); }
};

} // namespace

/// All sequences on the machine in real time: prints their journals and holds that no wait was shorter than told.
class LaserJournalTest : public QObject {
    Q_OBJECT

private slots:
    void initTestCase();
    void cleanup();
    void sequence_in_real_time_data();
    void sequence_in_real_time();
    void sequence_without_its_options_in_real_time_data();
    void sequence_without_its_options_in_real_time();
    void change_of_the_laser_type_in_real_time_data();
    void change_of_the_laser_type_in_real_time();

private:
    static void startAndEnd(QStringList const& calls, QVector<int> const& gaps);
    static void compare(TimedPort const& port, QStringList const& calls, QVector<int> const& gaps);
    tests::TemporaryRoot m_Root;
};

void LaserJournalTest::initTestCase() {
    QVERIFY(m_Root.isValid());
    MarkCardInstance::SetMarkCardInstance(new VZMarkCard);
}

void LaserJournalTest::cleanup() {
    RunLaserStart::Instance()->SetPort(nullptr);
    for (int line : {21, 23, 26, 29})
        MarkCardInstance::Instance()->SetOutputBit(line, 0);
    MarkCardInstance::Instance()->CloseCard();
    tessera_sim_control()->clearFaults();
}

/// `gaps` are the shortest times in ms between one call and the next, the first from the start of the sequence.
void LaserJournalTest::sequence_in_real_time_data() {
    QTest::addColumn<int>("type");
    QTest::addColumn<int>("variant");
    QTest::addColumn<QStringList>("faults");
    QTest::addColumn<QStringList>("calls");
    QTest::addColumn<QVector<int>>("gaps");
    const QStringList ready = {"laser_no_ready"};
    const QStringList emission = {"laser_no_emission"};
    const QString rdy = QStringLiteral("施恩激光器等待RDY_23超时,请确认");
    const QString emiss = QStringLiteral("施恩激光器等待EMISS_22超时,请确认");
    const QString end = QStringLiteral("end of the start");
    const QStringList off = {"output 23 := 0", "output 26 := 0", "end of the end"};
    const auto row = [](char const* name, int type, int variant, QStringList const& faults, QStringList const& calls,
                        QVector<int> const& gaps) {
        QTest::newRow(name) << type << variant << faults << calls << gaps;
    };
    row("FILBER", 0, 0, {}, {"output 21 := 1", end, "output 21 := 0", "end of the end"}, {0, 0, 0, 0});
    const QStringList ylr = {"output 23 := 0", "output 26 := 1", "output 26 := 0",
                             "output 29 := 1", "output 23 := 1", end,
                             "output 23 := 0", "end of the end"};
    row("YLR", 1, 0, {}, ylr, {0, 0, 2000, 200, 500, 0, 0, 0});
    row("YLM", 5, 0, {}, ylr, {0, 0, 2000, 200, 500, 0, 0, 0});
    const QStringList yls = {"output 23 := 1", "output 26 := 1"};
    row("YLS, answered", 1, 1, {}, yls + QStringList{end} + off, {0, 1000, 2500, 0, 1000, 0});
    row("YLS, timed out", 1, 1, ready, yls + QStringList{QStringLiteral("YLS激光等待Ready信号超时,请确认"), end} + off,
        {0, 1000, 30200, 0, 0, 1000, 0});
    const QStringList sn = {"output 26 := 1", "output 23 := 1"};
    row("SN, answered", 1, 2, {}, sn + QStringList{end} + off, {0, 1500, 500, 0, 1000, 0});
    row("SN, RDY_23 timed out", 1, 2, ready, QStringList{"output 26 := 1", rdy, "output 23 := 1", end} + off,
        {0, 10050, 0, 500, 0, 1000, 0});
    row("SN, EMISS_22 timed out", 1, 2, emission, sn + QStringList{emiss, end} + off, {0, 1500, 10050, 0, 0, 1000, 0});
    row("SN, both timed out", 1, 2, ready + emission,
        QStringList{"output 26 := 1", rdy, "output 23 := 1", emiss, end} + off, {0, 10050, 0, 10050, 0, 0, 1000, 0});
    row("YLM as YLS, answered", 5, 1, {}, yls + QStringList{end} + off, {0, 1000, 2500, 0, 1000, 0});
    row("YLM as SN, answered", 5, 2, {}, sn + QStringList{end} + off, {0, 1500, 500, 0, 1000, 0});
    row("third YLR variant", 1, 3, {}, {end, "end of the end"}, {0, 0});
    row("fourth YLR variant", 1, 4, {}, {end, "end of the end"}, {0, 0});
    row("third YLM variant", 5, 3, {}, {end, "end of the end"}, {0, 0});
    row("fourth YLM variant", 5, 4, {}, {end, "end of the end"}, {0, 0});
    row("YAG", 2, 0, {}, {end, "end of the end"}, {0, 0});
    row("SPI", 3, 0, {}, {end, "end of the end"}, {0, 0});
    row("EP", 4, 0, {}, {end, "end of the end"}, {0, 0});
}

void LaserJournalTest::sequence_in_real_time() {
    QFETCH(int, type);
    QFETCH(int, variant);
    QFETCH(QStringList, faults);
    QFETCH(QStringList, calls);
    QFETCH(QVector<int>, gaps);
    MarkingMParam_VZ::Instance()->SetMarkCardType(static_cast<MarkCardType>(type));
    XProfIniFile_CardCfg::Instance()->WriteInt("LASER", "bYLS", variant);
    RunLaserStart* laser = RunLaserStart::Instance();
    laser->bYLS = variant;
    laser->nOutb07 = laser->nYlrSoftwareEnable = laser->nYlrLaserType = laser->nFiberSoftwareEnable = 1;
    for (QString const& fault : qAsConst(faults))
        QVERIFY(tessera_sim_control()->setFault(fault.toStdString(), true));
    MarkCardInstance::Instance()->OpenCard();
    startAndEnd(calls, gaps);
}

/// Runs the start and then the end of the laser as it is set.
void LaserJournalTest::startAndEnd(QStringList const& calls, QVector<int> const& gaps) {
    RunLaserStart* laser = RunLaserStart::Instance();
    TimedPort port;
    laser->SetPort(&port);
    port.clock.start();
    laser->RunLaser_Start();
    port.add(QStringLiteral("end of the start"));
    laser->RunLaser_End();
    port.add(QStringLiteral("end of the end"));
    compare(port, calls, gaps);
}

/// Prints the journal; no gap may be shorter than told.
void LaserJournalTest::compare(TimedPort const& port, QStringList const& calls, QVector<int> const& gaps) {
    QStringList found;
    double before = 0.0;
    for (int i = 0; i < port.calls.size(); ++i) {
        Timed const& call = port.calls.at(i);
        qInfo("%9.1f ms  +%8.1f  %s", call.ms, call.ms - before, qPrintable(call.what));
        if (i < gaps.size())
            QVERIFY2(call.ms - before >= gaps.at(i), qPrintable(call.what));
        before = call.ms;
        found << call.what;
    }
    QCOMPARE(found, calls);
}

void LaserJournalTest::sequence_without_its_options_in_real_time_data() {
    QTest::addColumn<int>("type");
    QTest::addColumn<int>("remoteStart");
    QTest::addColumn<int>("software");
    QTest::addColumn<QStringList>("calls");
    QTest::addColumn<QVector<int>>("gaps");
    const QString end = QStringLiteral("end of the start");
    QTest::newRow("FILBER without software control")
        << 0 << 1 << 0 << QStringList{end, "end of the end"} << QVector<int>{0, 0};
    QTest::newRow("YLR without remote start")
        << 1 << 0 << 1
        << QStringList{"output 23 := 0", "output 29 := 1", "output 23 := 1", end, "output 23 := 0", "end of the end"}
        << QVector<int>{0, 200, 500, 0, 0, 0};
    QTest::newRow("YLR without software control")
        << 1 << 1 << 0 << QStringList{"output 26 := 1", "output 26 := 0", "output 29 := 1", end, "end of the end"}
        << QVector<int>{0, 2000, 200, 0, 0};
    QTest::newRow("YLM without either") << 5 << 0 << 0 << QStringList{"output 29 := 1", end, "end of the end"}
                                        << QVector<int>{200, 0, 0};
}

void LaserJournalTest::sequence_without_its_options_in_real_time() {
    QFETCH(int, type);
    QFETCH(int, remoteStart);
    QFETCH(int, software);
    QFETCH(QStringList, calls);
    QFETCH(QVector<int>, gaps);
    MarkingMParam_VZ::Instance()->SetMarkCardType(static_cast<MarkCardType>(type));
    RunLaserStart* laser = RunLaserStart::Instance();
    laser->bYLS = 0;
    laser->nYlrLaserType = 1;
    laser->nOutb07 = remoteStart;
    laser->nYlrSoftwareEnable = laser->nFiberSoftwareEnable = software;
    MarkCardInstance::Instance()->OpenCard();
    startAndEnd(calls, gaps);
}

void LaserJournalTest::change_of_the_laser_type_in_real_time_data() {
    QTest::addColumn<int>("type");
    QTest::newRow("CW") << 0;
    QTest::newRow("QCW") << 1;
}

void LaserJournalTest::change_of_the_laser_type_in_real_time() {
    QFETCH(int, type);
    RunLaserStart* laser = RunLaserStart::Instance();
    laser->nYlrSoftwareEnable = 0;
    MarkCardInstance::Instance()->OpenCard();
    TimedPort port;
    laser->SetPort(&port);
    port.clock.start();
    laser->ChangeYLRLaserType(type);
    port.add(QStringLiteral("end of the change"));
    compare(port,
            {"output 23 := 0", QStringLiteral("output 29 := %1").arg(type), "output 23 := 1", "end of the change"},
            {0, 200, 500, 0});
}

QTEST_MAIN(LaserJournalTest)
#include "tst_laserjournal.moc"
