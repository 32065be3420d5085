// SPDX-License-Identifier: MIT
#include "scratchtest.h"
#include "support/durablefile.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QtTest>

#include <cerrno>
#include <csignal>
#include <fcntl.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <thread>
#include <unistd.h>
#include <vector>

using tessera::DurableResult;
using tessera::DurableStep;
using tessera::writeFileDurably;
using tessera::writeFileKeepingTail;

namespace {

mode_t modeOf(const QString& path) {
    struct stat status = {};
    return ::stat(QFile::encodeName(path).constData(), &status) == 0 ? status.st_mode & 07777u : 0;
}

qint64 modifiedMs(const QString& path) {
    return QFileInfo(path).lastModified().toMSecsSinceEpoch();
}

} // namespace

class TestDurableFile : public ScratchTest {
    Q_OBJECT

private slots:
    void a_new_file_is_written_data();
    void a_new_file_is_written();
    void an_old_file_is_replaced_whole();
    void a_new_file_obeys_the_umask();
    void the_mode_of_the_old_file_is_kept_data();
    void the_mode_of_the_old_file_is_kept();
    void missing_parent_directories_are_made();
    void a_file_in_the_place_of_a_parent_is_refused();
    void a_symbolic_link_stays_and_its_target_is_replaced();
    void a_relative_link_is_taken_from_its_own_directory();
    void a_link_to_nothing_creates_its_target();
    void a_loop_of_links_is_refused();
    void bad_targets_are_refused_data();
    void bad_targets_are_refused();
    void a_relative_path_is_taken_from_the_current_directory();
    void a_name_of_the_longest_length_is_written();
    void time_stamps_of_saves_in_a_row_all_differ();
    void a_clock_set_back_is_believed();
    void a_copy_is_the_source_byte_for_byte_data();
    void a_copy_is_the_source_byte_for_byte();
    void a_copy_of_what_is_no_file_is_refused();
    void a_shorter_text_keeps_the_old_tail_data();
    void a_shorter_text_keeps_the_old_tail();
    void threads_that_save_one_path_leave_one_whole_content();
    void threads_that_keep_tails_lose_none();
    void a_directory_that_cannot_be_written_is_reported();
    void a_write_cut_short_by_a_limit_is_reported_and_the_old_file_stays();
};

void TestDurableFile::a_new_file_is_written_data() {
    QTest::addColumn<QByteArray>("bytes");
    QTest::newRow("empty") << QByteArray("");
    QTest::newRow("one byte") << QByteArray("x");
    QTest::newRow("with zero bytes") << QByteArray("a\0b\0", 4);
    QTest::newRow("three megabytes") << QByteArray(3 * 1024 * 1024 + 7, 'm');
}

void TestDurableFile::a_new_file_is_written() {
    QFETCH(QByteArray, bytes);
    const DurableResult result = writeFileDurably(path("标刻.txt"), bytes);
    QVERIFY2(result.ok(), qPrintable(result.message()));
    QVERIFY(static_cast<bool>(result));
    QCOMPARE(result.step(), DurableStep::None);
    QCOMPARE(result.error(), 0);
    QCOMPARE(result.message(), QString());
    QCOMPARE(contentOf(path("标刻.txt")), bytes);
    QCOMPARE(everythingIn(directory()), QStringList{"标刻.txt"});
}

void TestDurableFile::an_old_file_is_replaced_whole() {
    putContent(path("a"), "a long old content");
    QVERIFY(writeFileDurably(path("a"), "new"));
    QCOMPARE(contentOf(path("a")), QByteArray("new"));
    QCOMPARE(everythingIn(directory()), QStringList{"a"});
}

void TestDurableFile::a_new_file_obeys_the_umask() {
    const mode_t before = ::umask(027);
    const DurableResult result = writeFileDurably(path("a"), "x");
    ::umask(before);
    QVERIFY(result);
    QCOMPARE(modeOf(path("a")), mode_t(0640));
}

void TestDurableFile::the_mode_of_the_old_file_is_kept_data() {
    QTest::addColumn<uint>("mode");
    QTest::newRow("owner only") << 0600u;
    QTest::newRow("wider than the umask") << 0666u;
    QTest::newRow("script") << 0755u;
    QTest::newRow("read only") << 0444u;
}

void TestDurableFile::the_mode_of_the_old_file_is_kept() {
    QFETCH(uint, mode);
    putContent(path("a"), "old");
    QCOMPARE(::chmod(QFile::encodeName(path("a")).constData(), mode), 0);
    QVERIFY(writeFileDurably(path("a"), "new"));
    QCOMPARE(modeOf(path("a")), mode_t(mode));
    QCOMPARE(contentOf(path("a")), QByteArray("new"));
}

void TestDurableFile::missing_parent_directories_are_made() {
    const QString deep = path("ini/ManualCarlib/深/a.txt");
    const DurableResult result = writeFileDurably(deep, "x");
    QVERIFY2(result.ok(), qPrintable(result.message()));
    QCOMPARE(contentOf(deep), QByteArray("x"));
}

void TestDurableFile::a_file_in_the_place_of_a_parent_is_refused() {
    putContent(path("ini"), "a file");
    const DurableResult result = writeFileDurably(path("ini/a.txt"), "x");
    QVERIFY(!result);
    QCOMPARE(result.error(), ENOTDIR);
    QCOMPARE(contentOf(path("ini")), QByteArray("a file"));
}

void TestDurableFile::a_symbolic_link_stays_and_its_target_is_replaced() {
    QVERIFY(QDir(directory()).mkpath("real"));
    putContent(path("real/file"), "old");
    QVERIFY(QFile::link(path("real/file"), path("second")));
    QVERIFY(QFile::link(path("second"), path("first")));
    QVERIFY(writeFileDurably(path("first"), "new"));
    QCOMPARE(contentOf(path("real/file")), QByteArray("new"));
    QVERIFY(!QFileInfo(path("real/file")).isSymLink());
    QCOMPARE(QFile::symLinkTarget(path("first")), path("second"));
    QCOMPARE(QFile::symLinkTarget(path("second")), path("real/file"));
    QCOMPARE(everythingIn(path("real")), QStringList{"file"});
}

void TestDurableFile::a_relative_link_is_taken_from_its_own_directory() {
    QVERIFY(QDir(directory()).mkpath("links"));
    putContent(path("file"), "old");
    QCOMPARE(::symlink("../file", QFile::encodeName(path("links/link")).constData()), 0);
    QVERIFY(writeFileDurably(path("links/link"), "new"));
    QCOMPARE(contentOf(path("file")), QByteArray("new"));
    QVERIFY(QFileInfo(path("links/link")).isSymLink());
}

void TestDurableFile::a_link_to_nothing_creates_its_target() {
    QVERIFY(QFile::link(path("later/file"), path("link")));
    QVERIFY(writeFileDurably(path("link"), "new"));
    QCOMPARE(contentOf(path("later/file")), QByteArray("new"));
    QVERIFY(QFileInfo(path("link")).isSymLink());
}

void TestDurableFile::a_loop_of_links_is_refused() {
    QVERIFY(QFile::link(path("b"), path("a")));
    QVERIFY(QFile::link(path("a"), path("b")));
    const DurableResult result = writeFileDurably(path("a"), "x");
    QCOMPARE(result.step(), DurableStep::ResolveTarget);
    QCOMPARE(result.error(), ELOOP);
}

void TestDurableFile::bad_targets_are_refused_data() {
    QTest::addColumn<QString>("target");
    QTest::addColumn<int>("error");
    QTest::newRow("empty path") << "" << EINVAL;
    QTest::newRow("path with a zero character") << QString(QStringLiteral("/tmp/a") + QChar(0) + "b") << EINVAL;
    QTest::newRow("directory") << "/tmp" << EISDIR;
    QTest::newRow("slash at the end") << "/tmp/" << EISDIR;
    QTest::newRow("parent directory") << "/tmp/.." << EISDIR;
    QTest::newRow("device") << "/dev/null" << EINVAL;
}

void TestDurableFile::bad_targets_are_refused() {
    QFETCH(QString, target);
    QFETCH(int, error);
    const DurableResult result = writeFileDurably(target, "x");
    QVERIFY(!result.ok());
    QCOMPARE(result.step(), DurableStep::ResolveTarget);
    QCOMPARE(result.error(), error);
    QCOMPARE(result.path(), target);
    QVERIFY2(result.message().startsWith("cannot save: find the file to replace failed for"),
             qPrintable(result.message()));
}

void TestDurableFile::a_relative_path_is_taken_from_the_current_directory() {
    const QString before = QDir::currentPath();
    QVERIFY(QDir::setCurrent(directory()));
    const DurableResult plain = writeFileDurably("a.txt", "plain");
    const DurableResult below = writeFileDurably("x/y/b.txt", "below");
    QVERIFY(QDir::setCurrent(before));
    QVERIFY2(plain.ok(), qPrintable(plain.message()));
    QVERIFY2(below.ok(), qPrintable(below.message()));
    QCOMPARE(contentOf(path("a.txt")), QByteArray("plain"));
    QCOMPARE(contentOf(path("x/y/b.txt")), QByteArray("below"));
}

void TestDurableFile::a_name_of_the_longest_length_is_written() {
    const QString chinese = QString(84, QChar(0x6807)) + "abc"; // 84 * 3 + 3 bytes
    QCOMPARE(QFile::encodeName(chinese).size(), 255);
    const DurableResult result = writeFileDurably(path(chinese), "x");
    QVERIFY2(result.ok(), qPrintable(result.message()));
    QCOMPARE(everythingIn(directory()), QStringList{chinese});
}

void TestDurableFile::time_stamps_of_saves_in_a_row_all_differ() {
    qint64 last = 0;
    for (int i = 0; i < 100; ++i) {
        QVERIFY(writeFileDurably(path("a"), QByteArray::number(i % 10)));
        const qint64 now = modifiedMs(path("a"));
        QVERIFY2(now > last, qPrintable(QString("save %1: %2 after %3").arg(i).arg(now).arg(last)));
        last = now;
    }
}

void TestDurableFile::a_clock_set_back_is_believed() {
    putContent(path("a"), "old");
    QFile file(path("a"));
    QVERIFY(file.open(QIODevice::ReadWrite));
    QVERIFY(file.setFileTime(QDateTime::currentDateTime().addDays(400), QFileDevice::FileModificationTime));
    file.close();
    QVERIFY(writeFileDurably(path("a"), "new"));
    QVERIFY(QFileInfo(path("a")).lastModified() < QDateTime::currentDateTime().addDays(1));
}

void TestDurableFile::a_copy_is_the_source_byte_for_byte_data() {
    QTest::addColumn<int>("size");
    QTest::addColumn<QString>("target");
    QTest::newRow("empty") << 0 << "new";
    QTest::newRow("one byte") << 1 << "new";
    QTest::newRow("one piece") << 1024 * 1024 << "new";
    QTest::newRow("several pieces") << 3 * 1024 * 1024 + 17 << "new";
    QTest::newRow("over an old file") << 5000 << "old";
    QTest::newRow("onto itself") << 5000 << "source";
}

void TestDurableFile::a_copy_is_the_source_byte_for_byte() {
    QFETCH(int, size);
    QFETCH(QString, target);
    QByteArray bytes(size, '\0');
    for (int i = 0; i < size; ++i)
        bytes[i] = static_cast<char>(i % 251);
    putContent(path("source"), bytes);
    putContent(path("old"), QByteArray(9000, 'o'));
    const DurableResult result = tessera::copyFileDurably(path("source"), path(target));
    QVERIFY2(result.ok(), qPrintable(result.message()));
    QVERIFY(contentOf(path(target)) == bytes);
    QVERIFY(contentOf(path("source")) == bytes);
}

void TestDurableFile::a_copy_of_what_is_no_file_is_refused() {
    putContent(path("a"), "old");
    QVERIFY(QDir(directory()).mkdir("folder"));
    QCOMPARE(::mkfifo(QFile::encodeName(path("pipe")).constData(), 0600), 0);
    for (const char* source : {"nothing", "folder", "pipe"}) {
        const DurableResult result = tessera::copyFileDurably(path(source), path("a"));
        QCOMPARE(result.step(), DurableStep::ReadSource);
        QVERIFY2(result.message().contains("read the file to be copied failed"), qPrintable(result.message()));
    }
    QCOMPARE(contentOf(path("a")), QByteArray("old"));
    QVERIFY(!tessera::copyFileDurably(path("a"), path("folder")).ok());
}

void TestDurableFile::a_shorter_text_keeps_the_old_tail_data() {
    QTest::addColumn<QByteArray>("old");
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<QByteArray>("whole");
    QTest::newRow("no old file") << QByteArray() << QByteArray("new") << QByteArray("new");
    QTest::newRow("longer") << QByteArray("2\na\nb\n") << QByteArray("3\na\nb\nc\n") << QByteArray("3\na\nb\nc\n");
    QTest::newRow("same length") << QByteArray("abc") << QByteArray("xyz") << QByteArray("xyz");
    QTest::newRow("shorter") << QByteArray("2\nfirst\nsecond\n") << QByteArray("1\nfirst\n")
                             << QByteArray("1\nfirst\nsecond\n");
    QTest::newRow("nothing new") << QByteArray("abc") << QByteArray("") << QByteArray("abc");
    QTest::newRow("long tail") << QByteArray(200000, 'o') << QByteArray("n")
                               << QByteArray("n") + QByteArray(199999, 'o');
}

void TestDurableFile::a_shorter_text_keeps_the_old_tail() {
    QFETCH(QByteArray, old);
    QFETCH(QByteArray, bytes);
    if (!old.isNull())
        putContent(path("a"), old);
    const DurableResult result = writeFileKeepingTail(path("a"), bytes);
    QVERIFY2(result.ok(), qPrintable(result.message()));
    QTEST(contentOf(path("a")), "whole");
    QCOMPARE(everythingIn(directory()), QStringList{"a"});
}

void TestDurableFile::threads_that_save_one_path_leave_one_whole_content() {
    std::vector<std::thread> savers;
    std::atomic<int> failures{0};
    for (int i = 0; i < 4; ++i) {
        savers.emplace_back([&, i] {
            for (int n = 0; n < 10; ++n) {
                if (!writeFileDurably(path("new/folder/a"), QByteArray(20000, static_cast<char>('a' + i))))
                    ++failures;
            }
        });
    }
    for (std::thread& saver : savers)
        saver.join();
    QCOMPARE(failures.load(), 0);
    const QByteArray content = contentOf(path("new/folder/a"));
    QCOMPARE(content.size(), 20000);
    QCOMPARE(content, QByteArray(20000, content.at(0)));
    QCOMPARE(everythingIn(path("new/folder")), QStringList{"a"});
}

void TestDurableFile::threads_that_keep_tails_lose_none() {
    putContent(path("a"), "0000tail");
    std::vector<std::thread> savers;
    for (int i = 0; i < 4; ++i) {
        savers.emplace_back([&, i] {
            for (int n = 0; n < 10; ++n)
                writeFileKeepingTail(path("a"), QByteArray(4, static_cast<char>('a' + i)));
        });
    }
    for (std::thread& saver : savers)
        saver.join();
    const QByteArray content = contentOf(path("a"));
    QCOMPARE(content, QByteArray(4, content.at(0)) + "tail");
}

void TestDurableFile::a_directory_that_cannot_be_written_is_reported() {
    const DurableResult result = writeFileDurably("/proc/self/a.txt", "x");
    QVERIFY(!result);
    QCOMPARE(result.step(), DurableStep::CreateTemporary);
    QVERIFY(result.error() != 0);
    QVERIFY2(result.message().contains("/proc/self/a.txt"), qPrintable(result.message()));
}

void TestDurableFile::a_write_cut_short_by_a_limit_is_reported_and_the_old_file_stays() {
    putContent(path("a"), "old");
    struct rlimit before = {};
    QCOMPARE(::getrlimit(RLIMIT_FSIZE, &before), 0);
    struct rlimit small = before;
    small.rlim_cur = 100000;
    const auto handler = ::signal(SIGXFSZ, SIG_IGN);
    QCOMPARE(::setrlimit(RLIMIT_FSIZE, &small), 0);
    const DurableResult result = writeFileDurably(path("a"), QByteArray(300000, 'n'));
    QCOMPARE(::setrlimit(RLIMIT_FSIZE, &before), 0);
    ::signal(SIGXFSZ, handler);
    QCOMPARE(result.step(), DurableStep::Write);
    QCOMPARE(result.error(), EFBIG);
    QCOMPARE(contentOf(path("a")), QByteArray("old"));
    QCOMPARE(everythingIn(directory()), QStringList{"a"});
}

QTEST_GUILESS_MAIN(TestDurableFile)
#include "tst_durablefile.moc"
