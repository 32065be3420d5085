// SPDX-License-Identifier: MIT
#include "e2e/tesseraprogram.h"

#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QRandomGenerator>
#include <QThread>
#include <QtTest>

namespace {

/// Kills of one run of this test; the long form is asked for by TESSERA_KILLS=1000.
int kills() {
    int const wanted = qEnvironmentVariableIntValue("TESSERA_KILLS");
    return wanted > 0 ? wanted : 8;
}

QByteArray contentOf(QString const& path) {
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

QStringList temporaries(QString const& folder) {
    QStringList found;
    for (QFileInfo const& entry :
         QDir(folder).entryInfoList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot, QDir::Name)) {
        if (entry.isDir() && !entry.isSymLink())
            found += temporaries(entry.absoluteFilePath());
        else if (entry.fileName().endsWith(QLatin1String(".tessera-tmp")))
            found.append(entry.absoluteFilePath());
    }
    return found;
}

} // namespace

/// The station loses its power at any moment: what the program has on the disk must be whole.
class TestKill : public QObject {
    Q_OBJECT

    QRandomGenerator m_random{20240229};

    /// Lets the program go on for a random part of `longest` ms and kills it.
    void killWithin(TesseraProgram& program, int longest) {
        QThread::usleep(ulong(m_random.bounded(longest * 1000)));
        program.kill();
    }

private slots:
    void killed_during_runs_the_counter_is_at_most_one_pass_behind() {
        ProgramRoot root;
        int lowest = 0;
        for (int i = 0; i < kills(); ++i) {
            TesseraProgram program(root);
            QVERIFY2(program.startAutomated({"--sim-speed", "0", "--import", sampleFile("name-plate.svg")}),
                     program.errors().constData());
            QVERIFY(root.counter() >= lowest);
            program.call("ui.trigger", {{"action", "actionMark"}});
            program.waitFor("ui.get", {{"object", "Form_Marking"}, {"property", "visible"}},
                            [](QJsonValue const& visible) { return visible == true; });
            QCOMPARE(program.get("Form_Marking/labelRunCnt", "text").toString().toInt(), root.counter());
            program.call("ui.set", {{"object", "Form_Marking/spinBox"}, {"property", "value"}, {"value", 1}});
            program.call("ui.set",
                         {{"object", "Form_Marking/checkBoxLoopMark"}, {"property", "checked"}, {"value", true}});
            program.call("ui.click", {{"object", "Form_Marking/pushButtonStart"}});
            // The counter that the operator has seen is the least that must be there afterwards.
            QElapsedTimer time;
            time.start();
            int const span = m_random.bounded(300);
            int shown = root.counter();
            while (time.elapsed() < span)
                shown = program.get("Form_Marking/labelRunCnt", "text").toString().toInt();
            killWithin(program, 5);
            int const stored = root.counter();
            QVERIFY2(stored >= shown - 1, qPrintable(QStringLiteral("%1 stored, %2 shown").arg(stored).arg(shown)));
            QVERIFY(stored >= lowest);
            lowest = stored;
        }
        QVERIFY(lowest > 0);
    }

    void killed_during_saves_every_document_is_old_or_new() {
        ProgramRoot root;
        QString const path = root.inside("MarkFile/gear-plate.mkf");
        for (int i = 0; i < kills(); ++i) {
            TesseraProgram program(root);
            QStringList const arguments =
                i == 0 ? QStringList({"--import", sampleFile("gear-plate.svg")}) : QStringList({"--open", path});
            QVERIFY2(program.startAutomated(arguments), program.errors().constData());
            QVERIFY(program.waitProperty("actionSaveAll", "enabled", true));
            QByteArray const old = contentOf(path);
            QVERIFY(old.size() > 1000);
            // Each click on "turn" changes the document; the save that follows is what the kill meets.
            program.call("ui.trigger", {{"action", "actionSort"}});
            program.call("ui.trigger", {{"action", "actionSaveAll"}});
            killWithin(program, 40);
            QVERIFY(contentOf(path).size() > 1000);
        }
        // A last start in peace reads the document, and no temporary is left.
        TesseraProgram program(root);
        program.start({"--sim-speed", "0", "--open", path, "--mark", "1", "--quit"});
        QVERIFY(program.waitEnd());
        QVERIFY2(program.exitCode() == 0, program.errors().constData());
        QCOMPARE(temporaries(root.path()), QStringList());
    }

    void killed_at_any_moment_of_its_life_the_program_starts_again() {
        ProgramRoot root;
        for (int i = 0; i < kills(); ++i) {
            TesseraProgram program(root);
            program.start({"--sim-speed", "0", "--import", sampleFile("name-plate.svg"), "--mark", "3", "--language",
                           i % 2 ? "en" : "zh_CN", "--quit"});
            killWithin(program, 1500);
            int const counted = root.counter();
            TesseraProgram again(root);
            again.start({"--sim-speed", "0", "--import", sampleFile("name-plate.svg"), "--mark", "1", "--quit"});
            QVERIFY(again.waitEnd());
            QVERIFY2(again.exitCode() == 0, again.errors().constData());
            QCOMPARE(root.counter(), counted + 1);
            QCOMPARE(temporaries(root.path()), QStringList());
        }
    }
};

QTEST_GUILESS_MAIN(TestKill)
#include "tst_kill.moc"
