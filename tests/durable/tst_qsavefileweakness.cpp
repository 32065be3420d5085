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

class TestQSaveFileWeakness : public QObject {
    Q_OBJECT

private slots:
    void init();
    void cleanup();
    void commit_is_content_with_a_failed_sync();
    void the_directory_is_never_synced();
    void a_write_cut_short_without_a_word_replaces_the_old_file();
    void table_of_unreported_faults_data();
    void table_of_unreported_faults();
    void qsettings_is_content_with_a_failed_sync();

private:
    QString path(const QString& name) const { return m_directory->filePath(name); }

    std::unique_ptr<QTemporaryDir> m_directory;
    QByteArray m_native;
};

void TestQSaveFileWeakness::init() {
    m_directory = std::make_unique<QTemporaryDir>();
    QVERIFY(m_directory->isValid());
    m_native = QFile::encodeName(m_directory->path());
}

void TestQSaveFileWeakness::cleanup() {
    m_directory.reset();
}

void TestQSaveFileWeakness::commit_is_content_with_a_failed_sync() {
    putContent(path("a"), oldContent);
    const FaultPlan plan = {m_native.constData(), FaultFsync | FaultFdatasync, 1, EIO, FaultFails, true};
    faultio_arm(&plan);
    const bool saved = saveWithQt(path("a"));
    QVERIFY2(faultio_disarm() > 0, "it does sync");
    QVERIFY2(saved, "a failed sync is reported: our own save may have become needless");
}

void TestQSaveFileWeakness::the_directory_is_never_synced() {
    const FaultPlan plan = {m_native.constData(), FaultAll, 0, 0, FaultFails, false};
    faultio_arm(&plan);
    QVERIFY(saveWithQt(path("a")));
    faultio_disarm();
    const QStringList trace = QString::fromUtf8(faultio_trace()).split('\n');
    QVERIFY(!trace.filter(QRegularExpression("^rename .*/a$")).isEmpty());
    QVERIFY(!trace.contains("fsync " + m_directory->path()));
    QVERIFY(!trace.contains("fdatasync " + m_directory->path()));
}

void TestQSaveFileWeakness::a_write_cut_short_without_a_word_replaces_the_old_file() {
    putContent(path("a"), oldContent);
    const FaultPlan plan = {m_native.constData(), FaultWrite, 1, EIO, FaultLies, false};
    faultio_arm(&plan);
    const bool saved = saveWithQt(path("a"));
    QCOMPARE(faultio_disarm(), 1);
    QVERIFY(saved);
    QCOMPARE(contentOf(path("a")).size(), newContent.size() / 2);
}

void TestQSaveFileWeakness::table_of_unreported_faults_data() {
    QTest::addColumn<int>("error");
    QTest::addColumn<int>("kind");
    QTest::newRow("one input or output error") << EIO << int(FaultFails);
    QTest::newRow("one short write") << EIO << int(FaultShort);
    QTest::newRow("disk full in the middle of a write") << ENOSPC << int(FaultFull);
}

void TestQSaveFileWeakness::table_of_unreported_faults() {
    QFETCH(int, error);
    QFETCH(int, kind);
    FaultStyle style;
    style.error = error;
    style.kind = FaultKind(kind);
    QStringList unreported;
    bool saved = false;
    int steps = 0;
    const QString complaint = walkFaults(
        m_directory->path(), style, [&] { putContent(path("a"), oldContent); }, [&] { saved = saveWithQt(path("a")); },
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
    const QByteArray directory = m_native;
    const FaultPlan plan = {directory.constData(), FaultFsync | FaultFdatasync, 1, EIO, FaultFails, true};
    faultio_arm(&plan);
    QSettings settings(path("a.ini"), QSettings::IniFormat);
    settings.setValue("MarkCnt", 42);
    settings.sync();
    QVERIFY(faultio_disarm() > 0);
    QCOMPARE(settings.status(), QSettings::NoError);
}

QTEST_GUILESS_MAIN(TestQSaveFileWeakness)
#include "tst_qsavefileweakness.moc"
