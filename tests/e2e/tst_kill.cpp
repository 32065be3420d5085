// SPDX-License-Identifier: MIT
#include "e2e/tesseraprogram.h"
#include "engine/layerdata.h"
#include "engine/qrulerview.h"
#include "tests/support/temporaryroot.h"
#include "tests/support/timeoutscale.h"

#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QRandomGenerator>
#include <QThread>
#include <QtTest>
#include <algorithm>

namespace {

constexpr int kLongestKill = 2000; // ms: two starts of the program on a busy machine

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

/// The document can be read as a whole.
bool isWhole(QString const& path) {
    QRulerView view(nullptr);
    view.SetFileName(path);
    int objects = 0;
    int vertices = 0;
    bool const read = view.ReadDoc();
    view.GetDocStatistics(objects, vertices);
    return read && objects > 10;
}

} // namespace

/// The station loses its power at any moment: what the program has on the disk must be whole.
class TestKill : public QObject {
    Q_OBJECT

public:
    /// Qt Test gives a function five minutes, which many kills exceed.
    static void initMain() {
        int const limit = tests::scaled(std::max(300000, kills() * kLongestKill));
        qputenv("QTEST_FUNCTION_TIMEOUT", QByteArray::number(limit));
    }

private:
    tests::TemporaryRoot m_ownRoot;
    QRandomGenerator m_random{20240229};

    /// Lets the program go on for a random part of `longest` ms and kills it.
    void killWithin(TesseraProgram& program, int longest) {
        QThread::usleep(ulong(m_random.bounded(longest * 1000)));
        program.kill();
    }

private slots:
    void initTestCase() {
        LayerData::InitLayerData();
        QRulerView::Init();
    }

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
        int changed = 0;
        for (int i = 0; i < kills(); ++i) {
            TesseraProgram program(root);
            QStringList const arguments =
                i == 0 ? QStringList({"--import", sampleFile("gear-plate.svg")}) : QStringList({"--open", path});
            QVERIFY2(program.startAutomated(arguments), program.errors().constData());
            QVERIFY(program.waitProperty("actionSaveAll", "enabled", true));
            QByteArray const old = contentOf(path);
            QVERIFY(isWhole(path));
            // Every start mirrors the drawing, so that every save has something new to store.
            program.call("ui.key", {{"key", "Ctrl+A"}, {"object", "QRulerView"}});
            QVERIFY(program.waitProperty("actionmirrorLR", "enabled", true));
            program.call("ui.trigger", {{"action", "actionmirrorLR"}});
            program.call("ui.trigger", {{"action", "actionSaveAll"}});
            killWithin(program, 16);
            QByteArray const now = contentOf(path);
            QVERIFY2(isWhole(path), qPrintable(QStringLiteral("%1 bytes after %2").arg(now.size()).arg(old.size())));
            changed += now != old;
        }
        qInfo("%d of %d saves were through when the power went", changed, kills());
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
            killWithin(program, 600);
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

QTEST_MAIN(TestKill)
#include "tst_kill.moc"
