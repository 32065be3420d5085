// SPDX-License-Identifier: MIT
#include "faultwalk.h"
#include "support/durablesettings.h"
#include "support/settingscopy.h"

#include <QtTest>

#include <cerrno>

using tessera::DurableResult;
using tessera::DurableStep;
using tessera::writeSettingDurably;

namespace {

const QByteArray oldText("[General]\nMarkCnt=41\nOther=text\n\n[Calibration]\nKx=1.25\n");
const QByteArray newText("[General]\nMarkCnt=42\nOther=text\n\n[Calibration]\nKx=1.25\n");

} // namespace

class TestDurableSettingsFaults : public QObject {
    Q_OBJECT

private slots:
    void init();
    void cleanup();
    void no_fault_loses_a_value_or_passes_as_success_data();
    void no_fault_loses_a_value_or_passes_as_success();
    void faults_of_the_saved_file_are_all_reported_data();
    void faults_of_the_saved_file_are_all_reported();
    void a_file_that_cannot_be_read_is_not_taken_for_empty();

private:
    QString path(const QString& name) const { return m_directory->filePath(name); }
    void walk(const QString& directories, const FaultStyle& style, bool mustBeReported, int leastSteps);

    std::unique_ptr<QTemporaryDir> m_directory;
};

void TestDurableSettingsFaults::init() {
    m_directory = std::make_unique<QTemporaryDir>();
    QVERIFY(m_directory->isValid());
}

void TestDurableSettingsFaults::cleanup() {
    m_directory.reset();
}

/// The lock file and the private copy are not the settings: a fault there may be harmless. A read or look at the
/// private copy may also be made good by another. But success must mean that the new text is there, and a failure that
/// the old one is, or the new one whole when the rename was done.
void TestDurableSettingsFaults::walk(const QString& directories, const FaultStyle& style, bool mustBeReported,
                                     int leastSteps) {
    const QString file = path("Marking.ini");
    const QString base = tessera::SettingsCopy::baseDirectory();
    DurableResult result;
    int steps = 0;
    int reported = 0;
    const QString complaint = walkFaults(
        directories, style,
        [&] {
            putContent(file, oldText);
            QFile::remove(file + ".lock");
        },
        [&] { result = writeSettingDurably(file, "MarkCnt", 42); },
        [&](const FaultStep& step) -> QString {
            const QByteArray found = contentOf(file);
            reported += result ? 0 : 1;
            if (!step.fired && !result)
                return "not saved without a fault: " + result.message();
            if (result && found != newText)
                return "success, but the text is " + found;
            if (!result && found != (result.step() >= DurableStep::SyncDirectory ? newText : oldText))
                return result.message() + ", and the text is " + found;
            const bool ofLock = step.failedOperation.contains("Marking.ini.lock");
            if (step.fired && mustBeReported && !ofLock && result)
                return "success in spite of the fault";
            const QStringList left = QDir(m_directory->path()).entryList({"*.tessera-tmp"}, QDir::Files | QDir::Hidden);
            if (!left.isEmpty())
                return "left: " + left.join(' ');
            return QString();
        },
        steps);
    QVERIFY2(complaint.isEmpty(), qPrintable(complaint));
    QVERIFY2(steps >= leastSteps, qPrintable(QString::number(steps)));
    qInfo("%d operations failed in turn, %d reported, the others harmless", steps, reported);
}

void TestDurableSettingsFaults::no_fault_loses_a_value_or_passes_as_success_data() {
    QTest::addColumn<int>("error");
    QTest::addColumn<int>("kind");
    QTest::addColumn<bool>("sticky");
    QTest::newRow("one input or output error") << EIO << int(FaultFails) << false;
    QTest::newRow("input and output errors from there on") << EIO << int(FaultFails) << true;
    QTest::newRow("no space at one operation") << ENOSPC << int(FaultFails) << false;
    QTest::newRow("one short write") << EIO << int(FaultShort) << false;
    QTest::newRow("memory full in the middle of a write") << ENOSPC << int(FaultFull) << false;
    QTest::newRow("one operation that only pretends") << EIO << int(FaultLies) << false;
}

void TestDurableSettingsFaults::no_fault_loses_a_value_or_passes_as_success() {
    QFETCH(int, error);
    QFETCH(int, kind);
    QFETCH(bool, sticky);
    FaultStyle style;
    style.error = error;
    style.kind = FaultKind(kind);
    style.sticky = sticky;
    const QString everywhere = m_directory->path() + ":" + tessera::SettingsCopy::baseDirectory();
    if (kind == FaultLies) // a disk that loses a sync or a rename without a word leaves nothing to find it out by
        style.operations = FaultRead | FaultWrite;
    walk(everywhere, style, false, kind == FaultLies ? 8 : 30);
}

void TestDurableSettingsFaults::faults_of_the_saved_file_are_all_reported_data() {
    QTest::addColumn<int>("error");
    QTest::addColumn<bool>("sticky");
    QTest::newRow("one input or output error") << EIO << false;
    QTest::newRow("input and output errors from there on") << EIO << true;
    QTest::newRow("no space at one operation") << ENOSPC << false;
    QTest::newRow("no space from there on") << ENOSPC << true;
}

void TestDurableSettingsFaults::faults_of_the_saved_file_are_all_reported() {
    QFETCH(int, error);
    QFETCH(bool, sticky);
    FaultStyle style;
    style.error = error;
    style.sticky = sticky;
    walk(m_directory->path(), style, true, 15);
}

void TestDurableSettingsFaults::a_file_that_cannot_be_read_is_not_taken_for_empty() {
    const QString file = path("Marking.ini");
    putContent(file, oldText);
    const QByteArray directory = QFile::encodeName(m_directory->path());
    const FaultPlan plan = {directory.constData(), FaultRead, 1, EIO, FaultFails, true};
    faultio_arm(&plan);
    const DurableResult result = writeSettingDurably(file, "MarkCnt", 42);
    QVERIFY(faultio_disarm() > 0);
    QCOMPARE(result.step(), DurableStep::ReadOld);
    QCOMPARE(result.error(), EIO);
    QCOMPARE(contentOf(file), oldText);
}

QTEST_GUILESS_MAIN(TestDurableSettingsFaults)
#include "tst_durablesettingsfaults.moc"
