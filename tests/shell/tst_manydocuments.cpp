// SPDX-License-Identifier: MIT
#include "tests/shell/documentsfixture.h"
#include "tests/support/processstatus.h"

#include <malloc.h>

using namespace tests;

namespace {

constexpr int kDocuments = 500;
constexpr int kAtOnce = 25;
constexpr int kWarmUp = 200;
/// What the process may hold more at the end than at the beginning. A sanitizer keeps freed memory to itself for a
/// while.
#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
constexpr long kMostGrowthKb = 512 * 1024;
#else
constexpr long kMostGrowthKb = 5 * 1024;
#endif

/// Thousands of files are written here, each of them synced. What is tested does not need them on a disk: the root of
/// this program lies in memory where the system offers that.
[[maybe_unused]] const bool kRootInMemory = [] {
    const QFileInfo memory(QStringLiteral("/dev/shm"));
    return memory.isDir() && memory.isWritable() && qputenv("TMPDIR", "/dev/shm");
}();

/// Memory of this process's own in the RAM, kB, without the pages of libraries, which come as they are first used. What
/// the allocator only keeps for later goes back first.
long residentKb() {
    malloc_trim(0);
    return processStatus("RssAnon:");
}

} // namespace

/// Many documents in one run of the program.
class ManyDocumentsTest : public QObject, protected DocumentsFixture {
    Q_OBJECT

private slots:
    void init() { begin(); }
    void cleanup() { end(); }

    void five_hundred_open_at_once_stay_matched();
    void five_hundred_opened_and_closed_give_their_memory_back();

private:
    static QString nameOf(int i) { return QStringLiteral("document-%1").arg(i, 3, 10, QLatin1Char('0')); }
    /// Stores all documents; copies are quicker to make than to save.
    void makeFiles() {
        makeFile(nameOf(0));
        for (int i = 1; i < kDocuments; ++i)
            QVERIFY(QFile::copy(file(qPrintable(nameOf(0))), file(qPrintable(nameOf(i)))));
    }
    /// Opens documents `from` to `to` less one, draws into each, moves rows, closes them all.
    void openAndClose(int from, int to);
};

void ManyDocumentsTest::openAndClose(int from, int to) {
    for (int i = from; i < to; ++i) {
        window().OpenFile(nameOf(i));
        QCOMPARE(activeName(), nameOf(i));
        for (int point = 0; point < 50; ++point)
            window().GetActiveView()->AddMarkPoint(QPointF(point, i % 50));
    }
    QTest::keyClick(rows(), Qt::Key_Up);
    QCoreApplication::processEvents();
    window().CloseAllFile();
    QVERIFY(window().GetDocs().isEmpty());
    QCOMPARE(rows()->count(), 0);
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    QCoreApplication::processEvents();
}

void ManyDocumentsTest::five_hundred_open_at_once_stay_matched() {
    makeFiles();
    for (int i = 0; i < kDocuments; ++i)
        window().OpenFile(nameOf(i));
    QCOMPARE(window().GetDocs().size(), kDocuments);
    QCOMPARE(rowNames(), openNames());
    for (int i = 0; i < kDocuments; i += 61) {
        rows()->setCurrentRow(i);
        QCOMPARE(activeName(), nameOf(i));
    }
    QVERIFY(recent().startsWith("500\ndocument-000\n"));
    start();
    QCOMPARE(window().GetDocs().size(), kDocuments);
    QCOMPARE(rowNames(), openNames());
    QCOMPARE(activeName(), nameOf(kDocuments - 1));
    window().CloseAllFile();
    QVERIFY(window().GetDocs().isEmpty());
}

void ManyDocumentsTest::five_hundred_opened_and_closed_give_their_memory_back() {
    makeFiles();
    // The first ones fill what the program keeps: fonts, pictures, the style, the window of the log.
    for (int i = 0; i < kWarmUp; i += kAtOnce)
        openAndClose(i, i + kAtOnce);
    const long before = residentKb();
    QVERIFY(before > 0);
    for (int i = 0; i < kDocuments; i += kAtOnce)
        openAndClose(i, i + kAtOnce);
    const long after = residentKb();
    qInfo("%d documents: %ld kB before, %ld kB after", kDocuments, before, after);
    QVERIFY2(after - before < kMostGrowthKb, qPrintable(QStringLiteral("%1 kB more").arg(after - before)));
}

QTEST_MAIN(ManyDocumentsTest)
#include "tst_manydocuments.moc"
