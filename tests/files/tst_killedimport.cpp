// SPDX-License-Identifier: MIT
#include "files/markfilebackup.h"
#include "support/orphansweep.h"
#include "support/workcontrol.h"
#include "tests/files/stickfixture.h"
#include "tests/support/temporaryroot.h"

#include <QDeadlineTimer>
#include <QMap>
#include <QProcess>
#include <QRandomGenerator>
#include <QtTest>

using namespace tests;

namespace {

constexpr int kDocuments = 12;    // of each backup, beside those that both have
constexpr int kLongestLife = 700; // ms from the start of the first import to the kill

constexpr int kLongestWait = 60000; // ms until a document must have come over

using Files = QMap<QString, QByteArray>;

int numberOfKills() {
    return qMax(10, qEnvironmentVariableIntValue("TESSERA_KILLS"));
}

/// Every other kill waits for a document of the first backup, "one", to come over, so that imports are met under way on
/// any machine.
QString documentOfKill(int kill) {
    return kill % 2 == 0 ? QString("o%1.mkf").arg(kill / 2 % kDocuments) : QString();
}

/// What a backup holds, told by one letter: documents of its own and some that both backups have, projects, lists.
Files contentOf(char letter) {
    Files files;
    QByteArray list;
    for (int i = 0; i < kDocuments; ++i) {
        const QString own = QString("%1%2").arg(QLatin1Char(letter)).arg(i);
        const QString shared = QString("shared%1").arg(i);
        files.insert(own + ".mkf", QByteArray(10000 + 1000 * i, letter));
        files.insert(shared + ".mkf", QByteArray(60000 + (letter == 'o' ? 0 : 5000), letter));
        files.insert("MultiDocMarkFile/" + shared + ".mdf", QByteArray(500, letter));
        list += own.toUtf8() + '\n' + shared.toUtf8() + '\n';
    }
    files.insert("RecentFile.of", QByteArray::number(2 * kDocuments) + '\n' + list);
    files.insert("MultiDocMarkFile/recent", QByteArray("shared") + letter);
    return files;
}

/// What is on the machine before an import.
Files filesBefore() {
    return {{"own.mkf", QByteArray(50000, 'm')},
            {"shared0.mkf", QByteArray(70000, 'm')},
            {"MultiDocMarkFile/own.mdf", "mine"},
            {"MultiDocMarkFile/recent", "own"},
            {"RecentFile.of", "2\nown\nshared0\n"}};
}

/// What the kills met.
struct Counts {
    int untouched = 0;
    int within = 0;
    int orphans = 0;

    void add(bool asBefore, bool oneComplete) {
        untouched += asBefore ? 1 : 0;
        within += !asBefore && !oneComplete ? 1 : 0;
    }
    void tell() const {
        qInfo("%d kills: %d before the first file came over, %d while files of the first import came over, %d half "
              "files swept; no document lost or half written",
              numberOfKills(), untouched, within, orphans);
    }
};

} // namespace

/// Imports that end in the middle.
class KilledImportTest : public QObject {
    Q_OBJECT

private slots:
    void killed_import_loses_no_document_and_leaves_none_half();

private:
    bool put(Files const& files) {
        bool done = true;
        for (auto file = files.begin(); file != files.end(); ++file)
            done = m_Root.write("/MarkFile/" + file.key(), file.value()) && done;
        return done;
    }
    bool start(Files const& files) { return QDir(m_Root.path("/MarkFile")).removeRecursively() && put(files); }
    bool writeBackup(QString const& name, Files const& files) {
        tessera::WorkControl control;
        return start(files) && tessera::WriteMarkFileBackup(tessera::StickBackupFolder(), name, control).ok();
    }
    Files present() const {
        Files files;
        QDir const folder(m_Root.path("/MarkFile"));
        for (char const* below : {"", "MultiDocMarkFile/"}) {
            for (QString const& file : QDir(folder.filePath(below)).entryList(QDir::Files | QDir::Hidden))
                files.insert(below + file, m_Root.read("/MarkFile/" + (below + file)));
        }
        return files;
    }
    QByteArray killAt(QString const& document, int ms, QByteArray& errors) const;
    static QString fault(Files const& before, Files const& one, Files const& two, Files const& after);

    TemporaryRoot m_Root;
    Stick m_Stick;
};

/// The output up to the kill, which comes as soon as this document of the first import is there, or, without one, `ms`
/// after that import began: those moments are what is tested.
QByteArray KilledImportTest::killAt(QString const& document, int ms, QByteArray& errors) const {
    QProcess importer;
    importer.start(ENDLESS_IMPORTER, QStringList());
    QByteArray output;
    while (!output.contains('\n') && importer.waitForReadyRead())
        output += importer.readAllStandardOutput();
    const QString path = m_Root.path("/MarkFile/" + document);
    if (document.isEmpty()) {
        QTest::qSleep(ms);
    } else {
        const QDeadlineTimer deadline(kLongestWait);
        while (!QFileInfo::exists(path) && importer.state() == QProcess::Running && !deadline.hasExpired())
            importer.waitForReadyRead(1);
    }
    output += importer.readAllStandardOutput();
    importer.kill();
    importer.waitForFinished();
    errors = importer.readAllStandardError();
    return importer.exitStatus() == QProcess::CrashExit ? output + importer.readAllStandardOutput() : QByteArray();
}

/// What is wrong with the files that a kill left; empty when nothing is.
QString KilledImportTest::fault(Files const& before, Files const& one, Files const& two, Files const& after) {
    for (QString const& name : before.keys()) {
        if (!after.contains(name))
            return name + " is lost";
    }
    for (auto file = after.begin(); file != after.end(); ++file) {
        const QString& name = file.key();
        const bool known = (before.contains(name) && before.value(name) == file.value()) ||
                           (one.contains(name) && one.value(name) == file.value()) ||
                           (two.contains(name) && two.value(name) == file.value());
        if (!known)
            return QString("%1 is half written: %2 bytes").arg(name).arg(file.value().size());
    }
    const QList<QByteArray> list = after.value("RecentFile.of").split('\n');
    for (int i = 1; i <= list.first().toInt(); ++i) {
        if (!after.contains(QString::fromUtf8(list.value(i)) + ".mkf"))
            return "the list of open documents names one that is not there: " + list.value(i);
    }
    return QString();
}

void KilledImportTest::killed_import_loses_no_document_and_leaves_none_half() {
    const Files one = contentOf('o');
    const Files two = contentOf('t');
    QVERIFY(writeBackup("one", one) && writeBackup("two", two));
    const Files before = filesBefore();
    QRandomGenerator random(20240229);
    Counts counts;
    for (int i = 0; i < numberOfKills(); ++i) {
        QVERIFY(start(before));
        QByteArray errors;
        const QByteArray output = killAt(documentOfKill(i), 1 + random.bounded(kLongestLife), errors);
        counts.orphans += tessera::sweepOrphanedTemporaries(m_Root.path()).removed.filter(m_Root.path()).size();
        const Files after = present();
        // Each run removes what the one before it left behind.
        const QString left = m_Stick.temporaries().size() > 1 ? m_Stick.temporaries().join(' ') : QString();
        const QString wrong =
            output.startsWith("importing") ? fault(before, one, two, after) + left : "no import: " + errors;
        QVERIFY2(wrong.isEmpty(), qPrintable(QString("kill %1: %2").arg(i).arg(wrong)));
        counts.add(after == before, output.contains("one"));
    }
    counts.tell();
    QVERIFY2(counts.within > 0, "no kill met an import under way");
}

QTEST_MAIN(KilledImportTest)
#include "tst_killedimport.moc"
