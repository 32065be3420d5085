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

class TestDurableSettingsFaults : public ScratchTest {
    Q_OBJECT

private slots:
    void no_fault_loses_a_value_or_passes_as_success_data();
    void no_fault_loses_a_value_or_passes_as_success();
    void faults_of_the_saved_file_are_all_reported_data();
    void faults_of_the_saved_file_are_all_reported();
    void a_file_that_cannot_be_read_is_not_taken_for_empty();

private:
    void walk(const QString& directories, const FaultStyle& style, bool mustBeReported, int leastSteps);
};

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
            const QStringList left = QDir(directory()).entryList({"*.tessera-tmp"}, QDir::Files | QDir::Hidden);
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
    addFaultStyleColumns();
    addFailures();
    addFaultStyle("one short write", EIO, FaultShort);
    addFaultStyle("memory full in the middle of a write", ENOSPC, FaultFull);
    addFaultStyle("one operation that only pretends", EIO, FaultLies);
}

void TestDurableSettingsFaults::no_fault_loses_a_value_or_passes_as_success() {
    FaultStyle style = fetchedFaultStyle();
    const QString everywhere = directory() + ":" + tessera::SettingsCopy::baseDirectory();
    if (style.kind == FaultLies) // a disk that loses a sync or a rename without a word leaves nothing to find it out by
        style.operations = FaultRead | FaultWrite;
    walk(everywhere, style, false, style.kind == FaultLies ? 8 : 30);
}

void TestDurableSettingsFaults::faults_of_the_saved_file_are_all_reported_data() {
    addFaultStyleColumns();
    addFailures();
}

void TestDurableSettingsFaults::faults_of_the_saved_file_are_all_reported() {
    walk(directory(), fetchedFaultStyle(), true, 15);
}

void TestDurableSettingsFaults::a_file_that_cannot_be_read_is_not_taken_for_empty() {
    const QString file = path("Marking.ini");
    putContent(file, oldText);
    const FaultPlan plan = {nativeDirectory().constData(), FaultRead, 1, EIO, FaultFails, true};
    faultio_arm(&plan);
    const DurableResult result = writeSettingDurably(file, "MarkCnt", 42);
    QVERIFY(faultio_disarm() > 0);
    QCOMPARE(result.step(), DurableStep::ReadOld);
    QCOMPARE(result.error(), EIO);
    QCOMPARE(contentOf(file), oldText);
}

QTEST_GUILESS_MAIN(TestDurableSettingsFaults)
#include "tst_durablesettingsfaults.moc"
