// SPDX-License-Identifier: MIT
#include "scratchtest.h"
#include "support/durablesettings.h"
#include "support/orphansweep.h"
#include "support/settingscopy.h"

#include <QDir>
#include <QFile>
#include <QProcess>
#include <QRandomGenerator>
#include <QSettings>
#include <QTemporaryDir>
#include <QtTest>

namespace {

constexpr int longestLife = 25; // ms of saving before the kill

int numberOfKills() {
    return qMax(50, qEnvironmentVariableIntValue("TESSERA_KILLS"));
}

QStringList temporariesIn(const QString& directory) {
    return QDir(directory).entryList({"*.tessera-tmp"}, QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot);
}

QStringList settingsCopiesOf(qint64 process) {
    return QDir(tessera::SettingsCopy::baseDirectory())
        .entryList({QString(".settings.*-%1-*.tessera-tmp").arg(process)},
                   QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot);
}

/// What a process that saved without end left when it was killed at a random moment.
struct KilledRun {
    qint64 process = 0;
    QByteArray output;
    QByteArray errors;
    bool killed = false;
};

/// The moment is random within `longestLife` after the first save; that is what is tested, nothing is waited for.
KilledRun runAndKill(const QString& kind, const QString& path, QRandomGenerator& random) {
    KilledRun run;
    QProcess saver;
    saver.start(ENDLESS_SAVER, {kind, path});
    if (!saver.waitForStarted())
        return run;
    run.process = saver.processId();
    while (!run.output.contains('\n') && saver.waitForReadyRead())
        run.output += saver.readAllStandardOutput();
    QTest::qSleep(1 + random.bounded(longestLife));
    saver.kill();
    saver.waitForFinished();
    run.output += saver.readAllStandardOutput();
    run.errors = saver.readAllStandardError();
    run.killed = saver.exitStatus() == QProcess::CrashExit;
    return run;
}

} // namespace

class TestKilledSaves : public QObject {
    Q_OBJECT

private slots:
    void a_killed_save_leaves_a_whole_file_and_a_sweep_leaves_nothing_else();
    void a_killed_counter_never_goes_back();
};

void TestKilledSaves::a_killed_save_leaves_a_whole_file_and_a_sweep_leaves_nothing_else() {
    const QTemporaryDir directory;
    const QString path = directory.filePath("document.mkf");
    const QByteArray contents[2] = {QByteArray(300000, 'A'), QByteArray(170001, 'B')};
    QRandomGenerator random(20240229);
    int orphans = 0;
    int found[2] = {0, 0};
    for (int i = 0; i < numberOfKills(); ++i) {
        const KilledRun run = runAndKill("file", path, random);
        QVERIFY2(run.killed, run.errors.constData());
        const QByteArray content = contentOf(path);
        QVERIFY2(content == contents[0] || content == contents[1],
                 qPrintable(QString("kill %1: %2 bytes").arg(i).arg(content.size())));
        ++found[content == contents[1] ? 1 : 0];
        const int left = temporariesIn(directory.path()).size();
        const tessera::SweepReport report = tessera::sweepOrphanedTemporaries(directory.path());
        // Besides, it takes the settings copies of any process that is gone.
        QCOMPARE(report.removed.filter(directory.path()).size(), left);
        QCOMPARE(temporariesIn(directory.path()), QStringList());
        orphans += left;
    }
    qInfo("%d kills: %d with the one content, %d with the other, %d temporaries swept", numberOfKills(), found[0],
          found[1], orphans);
    QVERIFY2(orphans > 0, "no kill met a save under way");
}

void TestKilledSaves::a_killed_counter_never_goes_back() {
    const QTemporaryDir directory;
    const QString path = directory.filePath("Marking.ini");
    QVERIFY(tessera::writeSettingDurably(path, "Other", "kept"));
    QRandomGenerator random(29022024);
    for (int i = 0; i < numberOfKills(); ++i) {
        const KilledRun run = runAndKill("settings", path, random);
        QVERIFY2(run.killed, run.errors.constData());
        const QList<QByteArray> told = run.output.split('\n');
        QVERIFY(told.size() >= 2);
        const int last = told.at(told.size() - 2).toInt(); // what follows the last line end is cut off
        const int kept = tessera::readSetting(path, "MarkCnt", -1).toInt();
        QVERIFY2(kept == last || kept == last + 1,
                 qPrintable(QString("kill %1: %2 told, %3 kept").arg(i).arg(last).arg(kept)));
        QCOMPARE(tessera::readSetting(path, "Other").toString(), QStringLiteral("kept"));
        tessera::sweepOrphanedTemporaries(directory.path());
        QCOMPARE(temporariesIn(directory.path()), QStringList());
        QCOMPARE(settingsCopiesOf(run.process), QStringList());
    }
}

QTEST_GUILESS_MAIN(TestKilledSaves)
#include "tst_killedsaves.moc"
