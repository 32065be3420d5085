// SPDX-License-Identifier: MIT
#include "support/archive.h"
#include "support/archiveentries.h"
#include "support/workcontrol.h"

#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <QMap>
#include <QProcess>
#include <QRandomGenerator>
#include <QStorageInfo>
#include <QTemporaryDir>
#include <QtTest>
#include <quazip/JlCompress.h>

#include <csignal>
#include <sys/resource.h>
#include <sys/stat.h>
#include <thread>

using tessera::ArchiveFault;
using tessera::ArchiveLimits;
using tessera::ArchiveResult;

Q_DECLARE_METATYPE(ArchiveFault)

namespace {

constexpr qint64 megabyte = 1000000;

using Tree = QMap<QString, QByteArray>;

/// Path below `folder` and content of all that lies there; folders end in "/", links tell where they lead.
Tree treeOf(const QString& folder) {
    Tree tree;
    QDirIterator walk(folder, QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot,
                      QDirIterator::Subdirectories);
    while (walk.hasNext()) {
        const QString path = walk.next();
        const QString name = QDir(folder).relativeFilePath(path);
        const QFileInfo info(path);
        QFile file(path);
        if (info.isSymLink())
            tree.insert(name, "-> " + info.symLinkTarget().toUtf8());
        else if (info.isDir())
            tree.insert(name + '/', QByteArray());
        else
            tree.insert(name, file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("(unreadable)"));
    }
    return tree;
}

bool put(const QString& path, const QByteArray& bytes) {
    QDir().mkpath(QFileInfo(path).absolutePath());
    QFile file(path);
    return file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size();
}

/// No file may grow beyond `bytes` while the object lives: a write past it fails as on a full disk.
class FullDisk {
public:
    explicit FullDisk(rlim_t bytes) {
        std::signal(SIGXFSZ, SIG_IGN);
        getrlimit(RLIMIT_FSIZE, &m_former);
        rlimit limit = m_former;
        limit.rlim_cur = bytes;
        setrlimit(RLIMIT_FSIZE, &limit);
    }
    ~FullDisk() { setrlimit(RLIMIT_FSIZE, &m_former); }
    FullDisk(const FullDisk&) = delete;
    FullDisk& operator=(const FullDisk&) = delete;

private:
    rlimit m_former = {};
};

} // namespace

/// Packing and unpacking, with archives that a stranger made.
class ArchiveTest : public QObject {
    Q_OBJECT

private slots:
    void initTestCase();
    void init();

    void hostile_archive_is_refused_and_touches_nothing_data();
    void hostile_archive_is_refused_and_touches_nothing();
    void bomb_is_stopped_by_what_is_written();
    void entries_are_counted();
    void folders_are_counted_like_entries();
    void limit_is_the_free_space_less_the_reserve();
    void whole_archive_is_unpacked();
    void archive_without_entries_gives_an_empty_folder();
    void archive_of_the_library_itself_is_unpacked();
    void present_folder_is_not_unpacked_into_data();
    void present_folder_is_not_unpacked_into();
    void changed_bytes_never_reach_beyond_the_folder();
    void packed_folder_comes_back_byte_for_byte();
    void packed_archive_is_read_by_others();
    void hidden_files_and_links_to_folders_stay_out();
    void archive_does_not_pack_itself();
    void missing_folder_is_not_packed();
    void full_disk_leaves_nothing();
    void cancelled_packing_leaves_no_archive();
    void cancelled_unpacking_leaves_no_folder();
    void bytes_are_counted_for_the_display();
    void each_fault_has_a_message();
    void names_of_entries_data();
    void names_of_entries();

private:
    QString hostile(const QString& name) const { return m_Hostile.filePath(name + ".zip"); }
    QString target() const { return m_Place->filePath("target"); }
    ArchiveResult unpack(const QString& archive, qint64 bytes = 100 * megabyte, int entries = 1000) const {
        return tessera::unpackArchive(archive, target(), ArchiveLimits{bytes, entries}, nullptr);
    }

    QTemporaryDir m_Hostile;
    std::unique_ptr<QTemporaryDir> m_Place;
};

void ArchiveTest::initTestCase() {
    QVERIFY(m_Hostile.isValid());
    QProcess python;
    python.start(PYTHON_PROGRAM, {MAKE_ARCHIVES, m_Hostile.path()});
    QVERIFY(python.waitForFinished(60000));
    QVERIFY2(python.exitCode() == 0, python.readAllStandardError().constData());
}

void ArchiveTest::init() {
    m_Place = std::make_unique<QTemporaryDir>();
    QVERIFY(m_Place->isValid());
}

void ArchiveTest::hostile_archive_is_refused_and_touches_nothing_data() {
    QTest::addColumn<ArchiveFault>("fault");
    auto rows = [](ArchiveFault fault, std::initializer_list<char const*> names) {
        for (char const* name : names)
            QTest::newRow(name) << fault;
    };
    rows(ArchiveFault::BadName, {"name up",
                                 "name up within",
                                 "name up at the end",
                                 "name up alone",
                                 "name folder up",
                                 "name absolute",
                                 "name backslashes",
                                 "name backslashes within",
                                 "name absolute with backslash",
                                 "name drive",
                                 "name drive with backslash",
                                 "name empty component",
                                 "name dot",
                                 "name dot alone",
                                 "name line end",
                                 "name component too long",
                                 "name name too long",
                                 "name too deep",
                                 "name empty",
                                 "name not UTF-8"});
    rows(ArchiveFault::SpecialEntry, {"link to a file", "link to a folder", "link named as a folder", "pipe", "socket",
                                      "block device", "character device", "folder without its slash"});
    rows(ArchiveFault::DuplicateName,
         {"same name", "same folder", "file then folder", "folder then file", "file then empty folder"});
    rows(ArchiveFault::Encrypted, {"encrypted", "encrypted in its directory only"});
    rows(ArchiveFault::TooLarge, {"bomb", "bomb in pieces", "overlapping", "tells 4 GB"});
    rows(ArchiveFault::NotAnArchive,
         {"no bytes", "text", "first half", "without its last bytes", "directory overwritten", "more entries told",
          "unknown method", "bzip2", "lzma", "no such file"});
    rows(ArchiveFault::Damaged, {"local header overwritten", "packed bytes changed", "wrong checksum",
                                 "tells more than there is", "bomb that tells small", "bomb that tells nothing"});
}

void ArchiveTest::hostile_archive_is_refused_and_touches_nothing() {
    QFETCH(ArchiveFault, fault);
    QVERIFY(put(m_Place->filePath("neighbour"), "kept"));
    const Tree before = treeOf(m_Place->path());
    const Tree archives = treeOf(m_Hostile.path());
    const ArchiveResult result = unpack(hostile(QTest::currentDataTag()), megabyte);
    QVERIFY2(result.fault() == fault, qPrintable(result.message()));
    QCOMPARE(treeOf(m_Place->path()), before);
    QCOMPARE(treeOf(m_Hostile.path()), archives);
    QVERIFY(!QFileInfo::exists("/tmp/tessera-evil"));
    QVERIFY(!QFileInfo::exists("/tmp/evil"));
}

void ArchiveTest::bomb_is_stopped_by_what_is_written() {
    tessera::WorkControl control;
    const ArchiveResult result =
        tessera::unpackArchive(hostile("bomb that tells small"), target(), ArchiveLimits{megabyte, 10}, &control);
    QVERIFY(!result);
    QVERIFY2(control.done() <= megabyte, qPrintable(QString::number(control.done())));
    QVERIFY(unpack(hostile("bomb"), 50 * megabyte).ok());
    QCOMPARE(QFileInfo(target() + "/a").size(), 50 * megabyte);
    QDir(target()).removeRecursively();
    QCOMPARE(unpack(hostile("bomb"), 50 * megabyte - 1).fault(), ArchiveFault::TooLarge);
    QCOMPARE(unpack(hostile("plain"), 0).fault(), ArchiveFault::TooLarge);
    QCOMPARE(unpack(hostile("plain"), -1).fault(), ArchiveFault::TooLarge);
}

void ArchiveTest::entries_are_counted() {
    QCOMPARE(unpack(hostile("eleven entries"), megabyte, 10).fault(), ArchiveFault::TooManyEntries);
    QVERIFY(!QFileInfo::exists(target()));
    QVERIFY(unpack(hostile("eleven entries"), megabyte, 11).ok());
    QCOMPARE(ArchiveLimits().entries, 50000);
}

void ArchiveTest::folders_are_counted_like_entries() {
    const QString deep = hostile("three files in nine folders each");
    QCOMPARE(unpack(deep, megabyte, 29).fault(), ArchiveFault::TooManyEntries);
    QVERIFY(!QFileInfo::exists(target()));
    QVERIFY(unpack(deep, megabyte, 30).ok());
    QVERIFY(QDir(target()).removeRecursively());
    // One that has an entry of its own beside what lies in it counts once.
    QCOMPARE(unpack(hostile("whole"), megabyte, 9).fault(), ArchiveFault::TooManyEntries);
    QVERIFY(unpack(hostile("whole"), megabyte, 10).ok());
}

void ArchiveTest::limit_is_the_free_space_less_the_reserve() {
    const qint64 space = QStorageInfo(m_Place->path()).bytesAvailable() - 200 * megabyte;
    for (const QString& folder : {m_Place->path(), m_Place->filePath("not/there/as yet")}) {
        const qint64 limit = ArchiveLimits::forFolder(folder).bytes;
        // Others write on the same disk meanwhile.
        QVERIFY2(qAbs(limit - qMax<qint64>(space, 0)) < 500 * megabyte, qPrintable(QString::number(limit)));
    }
    QCOMPARE(ArchiveLimits::forFolder("/proc").bytes, 0);
}

void ArchiveTest::whole_archive_is_unpacked() {
    const ArchiveResult result = unpack(hostile("whole"));
    QVERIFY2(result.ok(), qPrintable(result.message()));
    const Tree tree = {{"top.mkf", QByteArray("top").repeated(1000)},
                       {"MultiDocMarkFile/", ""},
                       {"MultiDocMarkFile/set.mdf", "set"},
                       {"齿轮.mkf", "gear"},
                       {"without/", ""},
                       {"without/own/", ""},
                       {"without/own/folder.mkf", "deep"},
                       {"empty.mkf", ""},
                       {"a\\b.mkf", "backslash"},
                       {"only/", ""}};
    QCOMPARE(treeOf(target()), tree);
    struct stat status = {};
    QCOMPARE(::stat(QFile::encodeName(target()).constData(), &status), 0);
    QCOMPARE(int(status.st_mode & 0777), 0700);
}

void ArchiveTest::archive_without_entries_gives_an_empty_folder() {
    const ArchiveResult result = unpack(hostile("no entries"));
    QVERIFY2(result.ok(), qPrintable(result.message()));
    QCOMPARE(treeOf(target()), Tree());
    QVERIFY(QDir(m_Place->path()).mkdir("empty"));
    QVERIFY(QDir(target()).removeRecursively());
    QVERIFY(tessera::packFolder(m_Place->filePath("a.zip"), m_Place->filePath("empty"), nullptr).ok());
    QVERIFY(unpack(m_Place->filePath("a.zip")).ok());
    QCOMPARE(treeOf(target()), Tree());
}

void ArchiveTest::archive_of_the_library_itself_is_unpacked() {
    const QString folder = m_Place->filePath("MarkFile");
    QVERIFY(put(folder + "/a.mkf", QByteArray(100000, 'a')));
    QVERIFY(put(folder + "/MultiDocMarkFile/a.mdf", "project"));
    const QString archive = m_Place->filePath("a.zip");
    QVERIFY(JlCompress::compressDir(archive, folder, true));
    const ArchiveResult result = unpack(archive);
    QVERIFY2(result.ok(), qPrintable(result.message()));
    QCOMPARE(treeOf(target()), treeOf(folder));
}

void ArchiveTest::present_folder_is_not_unpacked_into_data() {
    QTest::addColumn<QString>("present");
    QTest::newRow("folder") << "folder";
    QTest::newRow("file") << "file";
    QTest::newRow("link to a folder") << "link";
}

void ArchiveTest::present_folder_is_not_unpacked_into() {
    QFETCH(QString, present);
    QDir place(m_Place->path());
    QVERIFY(place.mkdir("elsewhere"));
    if (present == "folder")
        QVERIFY(put(target() + "/mine", "kept"));
    else if (present == "file")
        QVERIFY(put(target(), "kept"));
    else
        QVERIFY(QFile::link(place.filePath("elsewhere"), target()));
    const Tree before = treeOf(place.path());
    QCOMPARE(unpack(hostile("whole")).fault(), ArchiveFault::NotWritten);
    QCOMPARE(treeOf(place.path()), before);
}

void ArchiveTest::changed_bytes_never_reach_beyond_the_folder() {
    QFile file(hostile("whole"));
    QVERIFY(file.open(QIODevice::ReadOnly));
    const QByteArray good = file.readAll();
    QRandomGenerator random(20240229);
    const QString archive = m_Place->filePath("changed.zip");
    int refused = 0;
    for (int i = 0; i < 1000; ++i) {
        QByteArray bytes = good;
        for (int change = random.bounded(1, 4); change > 0; --change)
            bytes[random.bounded(bytes.size())] = static_cast<char>(random.bounded(256));
        if (random.bounded(4) == 0)
            bytes.truncate(random.bounded(bytes.size()));
        QVERIFY(put(archive, bytes));
        const bool done = unpack(archive, megabyte).ok();
        refused += done ? 0 : 1;
        QCOMPARE(QFileInfo::exists(target()), done);
        QDir(target()).removeRecursively();
        QCOMPARE(treeOf(m_Place->path()).keys(), QStringList("changed.zip"));
    }
    QVERIFY2(refused > 500, qPrintable(QString::number(refused)));
}

void ArchiveTest::packed_folder_comes_back_byte_for_byte() {
    const QString folder = m_Place->filePath("MarkFile");
    QRandomGenerator random(1);
    QByteArray noise(700001, '\0');
    for (char& c : noise)
        c = static_cast<char>(random.bounded(256));
    QVERIFY(put(folder + "/noise.mkf", noise));
    QVERIFY(put(folder + "/RecentFile.of", "1\nnoise\n"));
    QVERIFY(put(folder + "/齿轮 1.mkf", "gear"));
    QVERIFY(put(folder + "/空/leer.mkf", ""));
    QVERIFY(put(folder + "/MultiDocMarkFile/set.mdf", "set"));
    QVERIFY(QDir(folder).mkpath("none"));
    const QString archive = m_Place->filePath("a.zip");
    const ArchiveResult packed = tessera::packFolder(archive, folder, nullptr);
    QVERIFY2(packed.ok(), qPrintable(packed.message()));
    const ArchiveResult unpacked = unpack(archive);
    QVERIFY2(unpacked.ok(), qPrintable(unpacked.message()));
    QCOMPARE(treeOf(target()), treeOf(folder));
}

void ArchiveTest::packed_archive_is_read_by_others() {
    const QString folder = m_Place->filePath("MarkFile");
    QVERIFY(put(folder + "/齿轮.mkf", QByteArray(5000, 'g')));
    QVERIFY(put(folder + "/MultiDocMarkFile/set.mdf", "set"));
    const QString archive = m_Place->filePath("a.zip");
    QVERIFY(tessera::packFolder(archive, folder, nullptr).ok());
    QVERIFY(QDir(m_Place->path()).mkdir("other"));
    QProcess python;
    python.start(PYTHON_PROGRAM, {"-m", "zipfile", "-e", archive, m_Place->filePath("other")});
    QVERIFY(python.waitForFinished(30000));
    QVERIFY2(python.exitCode() == 0, python.readAllStandardError().constData());
    QCOMPARE(treeOf(m_Place->filePath("other")), treeOf(folder));
    QVERIFY(!JlCompress::extractDir(archive, m_Place->filePath("third")).isEmpty());
    QCOMPARE(treeOf(m_Place->filePath("third")), treeOf(folder));
}

void ArchiveTest::hidden_files_and_links_to_folders_stay_out() {
    const QString folder = m_Place->filePath("MarkFile");
    QVERIFY(put(folder + "/a.mkf", "a"));
    QVERIFY(put(folder + "/.a.mkf.0-1-1-1.tessera-tmp", "half"));
    QVERIFY(put(m_Place->filePath("outside/b.mkf"), "b"));
    QVERIFY(QFile::link(m_Place->filePath("outside"), folder + "/elsewhere"));
    QVERIFY(QFile::link("..", folder + "/up"));
    QVERIFY(QFile::link(m_Place->filePath("outside/b.mkf"), folder + "/b.mkf"));
    const QString archive = m_Place->filePath("a.zip");
    QVERIFY(tessera::packFolder(archive, folder, nullptr).ok());
    const ArchiveResult result = unpack(archive);
    QVERIFY2(result.ok(), qPrintable(result.message()));
    QCOMPARE(treeOf(target()), (Tree{{"a.mkf", "a"}, {"b.mkf", "b"}}));
}

void ArchiveTest::archive_does_not_pack_itself() {
    QVERIFY(put(m_Place->filePath("a.mkf"), "a"));
    const QString archive = m_Place->filePath("a.zip");
    QVERIFY(put(archive, "an older one"));
    QVERIFY(tessera::packFolder(archive, m_Place->path(), nullptr).ok());
    QVERIFY(unpack(archive).ok());
    QCOMPARE(treeOf(target()).keys(), QStringList("a.mkf"));
}

void ArchiveTest::missing_folder_is_not_packed() {
    const QString archive = m_Place->filePath("a.zip");
    QCOMPARE(tessera::packFolder(archive, m_Place->filePath("nothing"), nullptr).fault(),
             ArchiveFault::SourceUnreadable);
    QVERIFY(!QFileInfo::exists(archive));
    QCOMPARE(tessera::packFolder(m_Place->filePath("nowhere/a.zip"), m_Place->path(), nullptr).fault(),
             ArchiveFault::NotWritten);
}

void ArchiveTest::full_disk_leaves_nothing() {
    const QString folder = m_Place->filePath("MarkFile");
    QByteArray noise(3 * megabyte, '\0');
    QRandomGenerator random(2);
    for (char& c : noise)
        c = static_cast<char>(random.bounded(256));
    QVERIFY(put(folder + "/noise.mkf", noise));
    const QString archive = m_Place->filePath("a.zip");
    {
        const FullDisk full(megabyte);
        const ArchiveResult result = tessera::packFolder(archive, folder, nullptr);
        QVERIFY2(result.fault() == ArchiveFault::NotWritten, qPrintable(result.message()));
    }
    QVERIFY(!QFileInfo::exists(archive));
    QVERIFY(tessera::packFolder(archive, folder, nullptr).ok());
    {
        const FullDisk full(megabyte);
        QCOMPARE(unpack(archive).fault(), ArchiveFault::NotWritten);
    }
    QVERIFY(!QFileInfo::exists(target()));
}

void ArchiveTest::cancelled_packing_leaves_no_archive() {
    const QString folder = m_Place->filePath("MarkFile");
    for (int i = 0; i < 20; ++i)
        QVERIFY(put(folder + QString("/%1.mkf").arg(i), QByteArray(500000, 'a')));
    const QString archive = m_Place->filePath("a.zip");
    tessera::WorkControl control;
    ArchiveResult result;
    std::thread worker([&] { result = tessera::packFolder(archive, folder, &control); });
    QTRY_VERIFY(control.done() > 0);
    control.cancel();
    worker.join();
    // The last byte may have been packed before the order came.
    if (!result.ok())
        QCOMPARE(result.fault(), ArchiveFault::Cancelled);
    QCOMPARE(QFileInfo::exists(archive), result.ok());
    control.cancel();
    QCOMPARE(tessera::packFolder(archive, folder, &control).fault(), ArchiveFault::Cancelled);
    QVERIFY(!QFileInfo::exists(archive));
}

void ArchiveTest::cancelled_unpacking_leaves_no_folder() {
    tessera::WorkControl control;
    ArchiveResult result;
    std::thread worker([&] {
        result = tessera::unpackArchive(hostile("bomb"), target(), ArchiveLimits{100 * megabyte, 10}, &control);
    });
    QTRY_VERIFY(control.done() > 0);
    control.cancel();
    worker.join();
    if (!result.ok())
        QCOMPARE(result.fault(), ArchiveFault::Cancelled);
    QCOMPARE(QFileInfo::exists(target()), result.ok());
    QDir(target()).removeRecursively();
    QCOMPARE(tessera::unpackArchive(hostile("whole"), target(), ArchiveLimits{megabyte, 10}, &control).fault(),
             ArchiveFault::Cancelled);
    QVERIFY(!QFileInfo::exists(target()));
}

void ArchiveTest::bytes_are_counted_for_the_display() {
    const QString folder = m_Place->filePath("MarkFile");
    QVERIFY(put(folder + "/a.mkf", QByteArray(500000, 'a')));
    QVERIFY(put(folder + "/sub/b.mkf", QByteArray(12345, 'b')));
    tessera::WorkControl control;
    const QString archive = m_Place->filePath("a.zip");
    QVERIFY(tessera::packFolder(archive, folder, &control).ok());
    QCOMPARE(control.total(), 512345);
    QCOMPARE(control.done(), 512345);
    QVERIFY(tessera::unpackArchive(archive, target(), ArchiveLimits{megabyte, 10}, &control).ok());
    QCOMPARE(control.total(), 512345);
    QCOMPARE(control.done(), 512345);
}

void ArchiveTest::each_fault_has_a_message() {
    QSet<QString> messages;
    for (int fault = int(ArchiveFault::Cancelled); fault <= int(ArchiveFault::TooLarge); ++fault) {
        const QString message = ArchiveResult(ArchiveFault(fault), "name").message();
        QVERIFY(message.startsWith("archive: ") && message.endsWith(": name"));
        messages.insert(message);
    }
    QCOMPARE(messages.size(), int(ArchiveFault::TooLarge));
    QCOMPARE(ArchiveResult().message(), QString());
    const QString message = ArchiveResult(ArchiveFault::BadName, "a\nb" + QString(1000, QLatin1Char('c'))).message();
    QVERIFY(message.contains("a?b") && message.size() < 300);
}

void ArchiveTest::names_of_entries_data() {
    QTest::addColumn<QString>("name");
    QTest::addColumn<bool>("plain");
    QTest::newRow("file") << "a.mkf" << true;
    QTest::newRow("folder") << "a/" << true;
    QTest::newRow("deep") << "a/b/c.mkf" << true;
    QTest::newRow("deepest") << QString("d/").repeated(31) + "d" << true;
    QTest::newRow("too deep") << QString("d/").repeated(32) + "d" << false;
    QTest::newRow("three dots") << "..." << true;
    QTest::newRow("dots within") << "a..b" << true;
    QTest::newRow("hidden") << ".a" << true;
    QTest::newRow("colon") << "a:b" << true;
    QTest::newRow("longest component") << QString(255, QLatin1Char('n')) << true;
    QTest::newRow("component too long") << QString(256, QLatin1Char('n')) << false;
    QTest::newRow("two slashes at the end") << "a//" << false;
    QTest::newRow("slash alone") << "/" << false;
    QTest::newRow("up behind a folder") << "a/../b" << false;
    QTest::newRow("replaced character") << QString(QChar(0xfffd)) << false;
}

void ArchiveTest::names_of_entries() {
    QFETCH(QString, name);
    QFETCH(bool, plain);
    QCOMPARE(tessera::isPlainEntryName(name), plain);
}

QTEST_GUILESS_MAIN(ArchiveTest)
#include "tst_archive.moc"
