// SPDX-License-Identifier: MIT
#include "faultwalk.h"
#include "support/durablefile.h"

#include <QtTest>

#include <cerrno>

using tessera::DurableResult;
using tessera::DurableStep;
using tessera::writeFileDurably;
using tessera::writeFileKeepingTail;

Q_DECLARE_METATYPE(tessera::DurableStep)

namespace {

const QByteArray oldContent(5000, 'o');
const QByteArray newContent(3001, 'n');

void addStyles() {
    addFaultStyleColumns();
    addFailures();
    addFaultStyle("one short write", EIO, FaultShort);
    addFaultStyle("disk full in the middle of a write", ENOSPC, FaultFull);
}

/// A short write that is said to be short may be made good by writing the rest; every other fault must be reported.
bool mayBeMadeGood(const FaultStyle& style, const FaultStep& step) {
    return style.kind == FaultShort && step.failedOperation.startsWith("write ");
}

QString judge(const FaultStyle& style, const FaultStep& step, const DurableResult& result, const QByteArray& before,
              const QByteArray& after, const QByteArray& found) {
    if (!step.fired)
        return result && found == after ? QString() : "not saved without a fault: " + result.message();
    if (result)
        return found == after && mayBeMadeGood(style, step) ? QString() : "success in spite of the fault";
    if (result.message().isEmpty() || result.step() == DurableStep::None)
        return "a failure without a reason";
    if (result.error() != style.error)
        return QString("errno %1 is told").arg(result.error());
    const bool renamed = result.step() >= DurableStep::SyncDirectory;
    if (found != (renamed ? after : before))
        return QString("after \"%1\" the content is not the %2 one").arg(result.message(), renamed ? "new" : "old");
    return QString();
}

} // namespace

class TestDurableFileFaults : public ScratchTest {
    Q_OBJECT

private slots:
    void every_fault_of_a_replacement_is_reported_data() { addStyles(); }
    void every_fault_of_a_replacement_is_reported();
    void every_fault_of_a_new_file_is_reported_data() { addStyles(); }
    void every_fault_of_a_new_file_is_reported();
    void every_fault_of_new_directories_is_reported_data() { addStyles(); }
    void every_fault_of_new_directories_is_reported();
    void every_fault_through_a_link_is_reported_data() { addStyles(); }
    void every_fault_through_a_link_is_reported();
    void every_fault_of_a_save_that_keeps_a_tail_is_reported_data() { addStyles(); }
    void every_fault_of_a_save_that_keeps_a_tail_is_reported();
    void every_fault_of_a_copy_is_reported_data() { addStyles(); }
    void every_fault_of_a_copy_is_reported();
    void every_fault_tells_its_step_data();
    void every_fault_tells_its_step();
    void a_write_that_lies_about_its_length_is_found_out();
    void an_interrupted_call_is_made_again_data();
    void an_interrupted_call_is_made_again();
    void a_directory_that_cannot_be_synced_alone_is_synced_with_its_file_system();
    void the_steps_come_in_the_order_that_a_power_cut_needs();
    void the_library_works_from_the_environment();
};

void TestDurableFileFaults::every_fault_of_a_replacement_is_reported() {
    const FaultStyle style = fetchedFaultStyle();
    const QString file = path("a");
    DurableResult result;
    int steps = 0;
    const QString complaint = walkFaults(
        directory(), style, [&] { putContent(file, oldContent); }, [&] { result = writeFileDurably(file, newContent); },
        [&](const FaultStep& step) {
            if (everythingIn(directory()) != QStringList{"a"})
                return QString("something else is left: ") + everythingIn(directory()).join(' ');
            return judge(style, step, result, oldContent, newContent, contentOf(file));
        },
        steps);
    QVERIFY2(complaint.isEmpty(), qPrintable(complaint));
    QVERIFY2(steps >= 12, qPrintable(QString::number(steps)));
}

void TestDurableFileFaults::every_fault_of_a_new_file_is_reported() {
    const FaultStyle style = fetchedFaultStyle();
    const QString file = path("a");
    DurableResult result;
    int steps = 0;
    const QString complaint = walkFaults(
        directory(), style, [&] { QFile::remove(file); }, [&] { result = writeFileDurably(file, newContent); },
        [&](const FaultStep& step) {
            if (everythingIn(directory()).size() > (QFile::exists(file) ? 1 : 0))
                return QString("something else is left: ") + everythingIn(directory()).join(' ');
            return judge(style, step, result, "<no file>", newContent, contentOf(file));
        },
        steps);
    QVERIFY2(complaint.isEmpty(), qPrintable(complaint));
    QVERIFY2(steps >= 10, qPrintable(QString::number(steps)));
}

void TestDurableFileFaults::every_fault_of_new_directories_is_reported() {
    const FaultStyle style = fetchedFaultStyle();
    const QString file = path("x/y/a");
    DurableResult result;
    int steps = 0;
    const QString complaint = walkFaults(
        directory(), style, [&] { QDir(path("x")).removeRecursively(); },
        [&] { result = writeFileDurably(file, newContent); },
        [&](const FaultStep& step) {
            if (result.step() == DurableStep::MakeDirectory && everythingIn(path("x/y")) != QStringList())
                return QString("something is left");
            return judge(style, step, result, "<no file>", newContent, contentOf(file));
        },
        steps);
    QVERIFY2(complaint.isEmpty(), qPrintable(complaint));
    QVERIFY2(steps >= 20, qPrintable(QString::number(steps)));
}

void TestDurableFileFaults::every_fault_through_a_link_is_reported() {
    const FaultStyle style = fetchedFaultStyle();
    QVERIFY(QDir(directory()).mkdir("real"));
    QVERIFY(QFile::link(path("real/a"), path("link")));
    DurableResult result;
    int steps = 0;
    const QString complaint = walkFaults(
        directory(), style, [&] { putContent(path("real/a"), oldContent); },
        [&] { result = writeFileDurably(path("link"), newContent); },
        [&](const FaultStep& step) {
            if (QFile::symLinkTarget(path("link")) != path("real/a"))
                return QString("the link is not the same any more");
            if (everythingIn(path("real")) != QStringList{"a"})
                return QString("something else is left");
            return judge(style, step, result, oldContent, newContent, contentOf(path("real/a")));
        },
        steps);
    QVERIFY2(complaint.isEmpty(), qPrintable(complaint));
    QVERIFY2(steps >= 12, qPrintable(QString::number(steps)));
}

void TestDurableFileFaults::every_fault_of_a_save_that_keeps_a_tail_is_reported() {
    const FaultStyle style = fetchedFaultStyle();
    const QString file = path("a");
    const QByteArray whole = newContent + oldContent.mid(newContent.size());
    DurableResult result;
    int steps = 0;
    const QString complaint = walkFaults(
        directory(), style, [&] { putContent(file, oldContent); },
        [&] { result = writeFileKeepingTail(file, newContent); },
        [&](const FaultStep& step) {
            if (everythingIn(directory()) != QStringList{"a"})
                return QString("something else is left");
            return judge(style, step, result, oldContent, whole, contentOf(file));
        },
        steps);
    QVERIFY2(complaint.isEmpty(), qPrintable(complaint));
    QVERIFY2(steps >= 16, qPrintable(QString::number(steps)));
}

void TestDurableFileFaults::every_fault_of_a_copy_is_reported() {
    const FaultStyle style = fetchedFaultStyle();
    const QTemporaryDir elsewhere;
    const QString source = elsewhere.filePath("source");
    putContent(source, newContent);
    const QString file = path("a");
    DurableResult result;
    int steps = 0;
    const QString complaint = walkFaults(
        directory(), style, [&] { putContent(file, oldContent); },
        [&] { result = tessera::copyFileDurably(source, file); },
        [&](const FaultStep& step) {
            if (everythingIn(directory()) != QStringList{"a"})
                return QString("something else is left");
            return judge(style, step, result, oldContent, newContent, contentOf(file));
        },
        steps);
    QVERIFY2(complaint.isEmpty(), qPrintable(complaint));
    QVERIFY2(steps >= 12, qPrintable(QString::number(steps)));
}

void TestDurableFileFaults::every_fault_tells_its_step_data() {
    QTest::addColumn<uint>("operation");
    QTest::addColumn<int>("nth");
    QTest::addColumn<DurableStep>("step");
    QTest::addColumn<QString>("words");
    QTest::newRow("look at the target") << uint(FaultStat) << 1 << DurableStep::ResolveTarget
                                        << "find the file to replace failed";
    QTest::newRow("look at the directory")
        << uint(FaultStat) << 2 << DurableStep::MakeDirectory << "make the directory failed";
    QTest::newRow("open the directory") << uint(FaultOpen) << 1 << DurableStep::OpenDirectory
                                        << "open the directory failed";
    QTest::newRow("create") << uint(FaultOpen) << 2 << DurableStep::CreateTemporary
                            << "create the temporary file failed";
    QTest::newRow("owner") << uint(FaultAttributes) << 1 << DurableStep::SetAttributes
                           << "set the attributes of the temporary file failed";
    QTest::newRow("mode") << uint(FaultAttributes) << 2 << DurableStep::SetAttributes
                          << "set the attributes of the temporary file failed";
    QTest::newRow("write") << uint(FaultWrite) << 1 << DurableStep::Write << "write failed";
    QTest::newRow("length") << uint(FaultStat) << 3 << DurableStep::VerifyLength << "verify the length written failed";
    QTest::newRow("sync") << uint(FaultFsync) << 1 << DurableStep::SyncFile << "sync the file failed";
    QTest::newRow("close") << uint(FaultClose) << 1 << DurableStep::CloseFile << "close the file failed";
    QTest::newRow("rename") << uint(FaultRename) << 1 << DurableStep::Rename << "put the new file in place failed";
    QTest::newRow("sync of the directory")
        << uint(FaultFsync) << 2 << DurableStep::SyncDirectory << "sync the directory failed";
    QTest::newRow("close of the directory")
        << uint(FaultClose) << 2 << DurableStep::CloseDirectory << "close the directory failed";
}

void TestDurableFileFaults::every_fault_tells_its_step() {
    QFETCH(uint, operation);
    QFETCH(int, nth);
    QFETCH(DurableStep, step);
    QFETCH(QString, words);
    putContent(path("a"), oldContent);
    const FaultPlan plan = {nativeDirectory().constData(), operation, nth, EIO, FaultFails, false};
    faultio_arm(&plan);
    const DurableResult result = writeFileDurably(path("a"), newContent);
    QCOMPARE(faultio_disarm(), 1);
    QCOMPARE(result.step(), step);
    QCOMPARE(result.error(), EIO);
    QVERIFY2(result.message().contains(words), qPrintable(result.message()));
    QVERIFY2(result.message().endsWith("(Input/output error)"), qPrintable(result.message()));
}

void TestDurableFileFaults::a_write_that_lies_about_its_length_is_found_out() {
    putContent(path("a"), oldContent);
    const FaultPlan plan = {nativeDirectory().constData(), FaultWrite, 1, EIO, FaultLies, false};
    faultio_arm(&plan);
    const DurableResult result = writeFileDurably(path("a"), newContent);
    QCOMPARE(faultio_disarm(), 1);
    QCOMPARE(result.step(), DurableStep::VerifyLength);
    QVERIFY2(result.message().contains("1500 bytes instead of 3001"), qPrintable(result.message()));
    QCOMPARE(contentOf(path("a")), oldContent);
    QCOMPARE(everythingIn(directory()), QStringList{"a"});
}

void TestDurableFileFaults::an_interrupted_call_is_made_again_data() {
    QTest::addColumn<uint>("operation");
    QTest::addColumn<int>("nth");
    QTest::newRow("open of the directory") << uint(FaultOpen) << 1;
    QTest::newRow("creation") << uint(FaultOpen) << 2;
    QTest::newRow("write") << uint(FaultWrite) << 1;
    QTest::newRow("sync of the file") << uint(FaultFsync) << 1;
    QTest::newRow("close") << uint(FaultClose) << 1;
    QTest::newRow("sync of the directory") << uint(FaultFsync) << 2;
}

void TestDurableFileFaults::an_interrupted_call_is_made_again() {
    QFETCH(uint, operation);
    QFETCH(int, nth);
    putContent(path("a"), oldContent);
    const FaultPlan plan = {nativeDirectory().constData(), operation, nth, EINTR, FaultFails, false};
    faultio_arm(&plan);
    const DurableResult result = writeFileDurably(path("a"), newContent);
    QCOMPARE(faultio_disarm(), 1);
    QVERIFY2(result.ok(), qPrintable(result.message()));
    QCOMPARE(contentOf(path("a")), newContent);
    QCOMPARE(everythingIn(directory()), QStringList{"a"});
}

void TestDurableFileFaults::a_directory_that_cannot_be_synced_alone_is_synced_with_its_file_system() {
    const FaultPlan plan = {nativeDirectory().constData(), FaultFsync, 2, EINVAL, FaultFails, false};
    faultio_arm(&plan);
    const DurableResult result = writeFileDurably(path("a"), newContent);
    QCOMPARE(faultio_disarm(), 1);
    QVERIFY2(result.ok(), qPrintable(result.message()));
    QVERIFY(
        QByteArray(faultio_trace()).contains("fsync " + nativeDirectory() + " !\nsyncfs " + nativeDirectory() + "\n"));

    const FaultPlan both = {nativeDirectory().constData(), FaultFsync | FaultSyncfs, 2, EINVAL, FaultFails, true};
    faultio_arm(&both);
    const DurableResult failed = writeFileDurably(path("a"), newContent);
    QCOMPARE(faultio_disarm(), 2);
    QCOMPARE(failed.step(), DurableStep::SyncDirectory);
}

void TestDurableFileFaults::the_steps_come_in_the_order_that_a_power_cut_needs() {
    putContent(path("a"), oldContent);
    const FaultPlan plan = {nativeDirectory().constData(), FaultAll, 0, 0, FaultFails, false};
    faultio_arm(&plan);
    const DurableResult result = writeFileDurably(path("a"), newContent);
    faultio_disarm();
    QVERIFY(result);
    QString trace = QString::fromUtf8(faultio_trace());
    trace.replace(directory(), "DIR");
    trace.replace(QRegularExpression("DIR/\\.a\\.[0-9a-f]{8}-\\d+-\\d+-\\d+\\.tessera-tmp"), "TEMPORARY");
    // The old file was made a moment ago, so its time stamp may have to be stepped over.
    QStringList steps = trace.split('\n', Qt::SkipEmptyParts);
    steps.removeAll("attributes TEMPORARY");
    const QStringList expected = {"stat DIR/a",      "stat DIR",       "open DIR",        "open TEMPORARY",
                                  "write TEMPORARY", "stat TEMPORARY", "fsync TEMPORARY", "close TEMPORARY",
                                  "rename DIR/a",    "fsync DIR",      "close DIR"};
    QCOMPARE(steps, expected);
}

void TestDurableFileFaults::the_library_works_from_the_environment() {
    QProcess program;
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert("LC_ALL", "C");
    environment.insert("LD_PRELOAD", FAULTIO_LIBRARY);
    environment.insert("FAULTIO_DIRECTORIES", directory());
    environment.insert("FAULTIO_OPERATIONS", "fsync,write");
    environment.insert("FAULTIO_NTH", "1");
    environment.insert("FAULTIO_ERRNO", "ENOSPC");
    program.setProcessEnvironment(environment);
    program.setStandardOutputFile(path("b"));
    program.start("/bin/cat", QStringList()); // from a pipe; from file to file it would copy in the kernel
    program.write("some text");
    program.closeWriteChannel();
    QVERIFY(program.waitForFinished());
    QCOMPARE(program.exitCode(), 1);
    QCOMPARE(program.readAllStandardError(), QByteArray("/bin/cat: write error: No space left on device\n"));
    QCOMPARE(contentOf(path("b")), QByteArray());
}

QTEST_GUILESS_MAIN(TestDurableFileFaults)
#include "tst_durablefilefaults.moc"
