// SPDX-License-Identifier: MIT
// Why files are not saved with QSaveFile or QSettings alone: measured under the same faults as our own save.
#include "faultwalk.h"

#include <QSaveFile>
#include <QSettings>
#include <QtTest>

#include <cerrno>

namespace {

const QByteArray oldContent(5000, 'o');
const QByteArray newContent(3001, 'n');

bool saveWithQt(const QString& path) {
    QSaveFile file(path);
    return file.open(QIODevice::WriteOnly) && file.write(newContent) == newContent.size() && file.commit();
}

} // namespace

class TestQSaveFileWeakness : public ScratchTest {
    Q_OBJECT

private slots:
    void commit_is_content_with_a_failed_sync();
    void the_directory_is_never_synced();
    void a_write_cut_short_without_a_word_replaces_the_old_file();
    void table_of_unreported_faults_data();
    void table_of_unreported_faults();
    void qsettings_is_content_with_a_failed_sync();
};

void TestQSaveFileWeakness::commit_is_content_with_a_failed_sync() {
    putContent(path("a"), oldContent);
    const FaultPlan plan = {nativeDirectory().constData(), FaultFsync | FaultFdatasync, 1, EIO, FaultFails, true};
    faultio_arm(&plan);
    const bool saved = saveWithQt(path("a"));
    QVERIFY2(faultio_disarm() > 0, "it does sync");
    QVERIFY2(saved, "a failed sync is reported: our own save may have become needless");
}

void TestQSaveFileWeakness::the_directory_is_never_synced() {
    const FaultPlan plan = {nativeDirectory().constData(), FaultAll, 0, 0, FaultFails, false};
    faultio_arm(&plan);
    QVERIFY(saveWithQt(path("a")));
    faultio_disarm();
    const QStringList trace = QString::fromUtf8(faultio_trace()).split('\n');
    QVERIFY(!trace.filter(QRegularExpression("^rename .*/a$")).isEmpty());
    QVERIFY(!trace.contains("fsync " + directory()));
    QVERIFY(!trace.contains("fdatasync " + directory()));
}

void TestQSaveFileWeakness::a_write_cut_short_without_a_word_replaces_the_old_file() {
    putContent(path("a"), oldContent);
    const FaultPlan plan = {nativeDirectory().constData(), FaultWrite, 1, EIO, FaultLies, false};
    faultio_arm(&plan);
    const bool saved = saveWithQt(path("a"));
    QCOMPARE(faultio_disarm(), 1);
    QVERIFY(saved);
    QCOMPARE(contentOf(path("a")).size(), newContent.size() / 2);
}

void TestQSaveFileWeakness::table_of_unreported_faults_data() {
    addFaultStyleColumns();
    addFaultStyle("one input or output error", EIO, FaultFails);
    addFaultStyle("one short write", EIO, FaultShort);
    addFaultStyle("disk full in the middle of a write", ENOSPC, FaultFull);
}

void TestQSaveFileWeakness::table_of_unreported_faults() {
    const FaultStyle style = fetchedFaultStyle();
    QStringList unreported;
    bool saved = false;
    int steps = 0;
    const QString complaint = walkFaults(
        directory(), style, [&] { putContent(path("a"), oldContent); }, [&] { saved = saveWithQt(path("a")); },
        [&](const FaultStep& step) {
            const QByteArray found = contentOf(path("a"));
            if (step.fired && saved)
                unreported.append(step.failedOperation.section(' ', 0, 0) +
                                  (found == newContent ? "" : " (content lost)"));
            return QString();
        },
        steps);
    QVERIFY2(complaint.isEmpty(), qPrintable(complaint));
    qInfo("QSaveFile: %d operations, success in spite of a failed: %s", steps, qPrintable(unreported.join(", ")));
    QVERIFY2(unreported.filter("sync").size() == 1, qPrintable(unreported.join(", ")));
}

void TestQSaveFileWeakness::qsettings_is_content_with_a_failed_sync() {
    const FaultPlan plan = {nativeDirectory().constData(), FaultFsync | FaultFdatasync, 1, EIO, FaultFails, true};
    faultio_arm(&plan);
    QSettings settings(path("a.ini"), QSettings::IniFormat);
    settings.setValue("MarkCnt", 42);
    settings.sync();
    QVERIFY(faultio_disarm() > 0);
    QCOMPARE(settings.status(), QSettings::NoError);
}

QTEST_GUILESS_MAIN(TestQSaveFileWeakness)
#include "tst_qsavefileweakness.moc"
