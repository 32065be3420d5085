// SPDX-License-Identifier: MIT
#include "faultwalk.h"
#include "support/durablefile.h"
#include "support/orphansweep.h"
#include "support/settingscopy.h"
#include "support/temporaryname.h"

#include <QRegularExpression>
#include <QSet>
#include <QtTest>

#include <csignal>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>

using tessera::currentTemporaryOwner;
using tessera::isTemporaryOwnerAlive;
using tessera::makeTemporaryName;
using tessera::parseTemporaryName;
using tessera::sweepOrphanedTemporaries;
using tessera::SweepReport;
using tessera::TemporaryOwner;

namespace {

/// A process that waits until it is killed; it makes the temporary name in between, so it is the maker.
class Maker {
public:
    explicit Maker(const QByteArray& target) {
        int pipe[2] = {-1, -1};
        if (::pipe(pipe) != 0)
            qFatal("no pipe");
        m_process = ::fork();
        if (m_process == 0) {
            const QByteArray name = makeTemporaryName(target);
            if (::write(pipe[1], name.constData(), size_t(name.size())) != name.size())
                ::_exit(1);
            ::close(pipe[1]);
            for (;;)
                ::pause();
        }
        ::close(pipe[1]);
        char buffer[256];
        for (ssize_t count = 0; (count = ::read(pipe[0], buffer, sizeof buffer)) > 0;)
            m_name.append(buffer, int(count));
        ::close(pipe[0]);
    }
    ~Maker() { kill(); }
    Maker(const Maker&) = delete;
    Maker& operator=(const Maker&) = delete;

    void kill() {
        if (m_process <= 0)
            return;
        ::kill(m_process, SIGKILL);
        ::waitpid(m_process, nullptr, 0);
        m_process = 0;
    }

    pid_t process() const { return m_process; }
    const QByteArray& name() const { return m_name; }

private:
    pid_t m_process = 0;
    QByteArray m_name;
};

QByteArray nameOf(const QByteArray& boot, qint64 process, unsigned long long start) {
    return ".a.ini." + boot + '-' + QByteArray::number(process) + '-' + QByteArray::number(start) + "-0.tessera-tmp";
}

QByteArray otherBoot() {
    QByteArray boot = currentTemporaryOwner().boot;
    boot[0] = boot.at(0) == 'a' ? 'b' : 'a';
    return boot;
}

} // namespace

class TestOrphanSweep : public ScratchTest {
    Q_OBJECT

private slots:
    void a_name_tells_its_maker();
    void a_child_makes_names_of_its_own();
    void names_are_all_different_and_fit_data();
    void names_are_all_different_and_fit();
    void foreign_names_are_not_taken_for_ours_data();
    void foreign_names_are_not_taken_for_ours();
    void temporaries_of_killed_processes_go_and_those_of_living_stay();
    void a_temporary_of_an_earlier_boot_goes_even_if_its_number_lives();
    void a_temporary_of_an_earlier_process_with_a_living_number_goes();
    void our_own_temporaries_stay();
    void all_levels_are_swept_and_other_files_stay();
    void links_are_not_followed();
    void a_directory_with_such_a_name_stays();
    void the_depth_is_bounded();
    void a_missing_root_is_told();
    void private_settings_copies_of_killed_processes_go();
    void a_temporary_that_could_not_be_removed_goes_at_the_next_start();
    void saves_go_on_during_a_sweep();

private:
    using ScratchTest::path;
    QString path(const QByteArray& name) const { return path(QFile::decodeName(name)); }

    /// A sweep also takes the settings copies of any process that is gone, those of other tests too.
    QStringList removedHere(const SweepReport& report) const { return report.removed.filter(directory()); }
};

void TestOrphanSweep::a_name_tells_its_maker() {
    const QByteArray name = makeTemporaryName("标刻.ini");
    QVERIFY(name.startsWith(".标刻.ini."));
    QVERIFY(name.endsWith(".tessera-tmp"));
    TemporaryOwner owner;
    QVERIFY(parseTemporaryName(name, owner));
    QCOMPARE(owner.processId, qint64(::getpid()));
    QCOMPARE(owner.boot, contentOf("/proc/sys/kernel/random/boot_id").left(8));
    QVERIFY(owner.startTime > 0);
    QVERIFY(isTemporaryOwnerAlive(owner));
}

void TestOrphanSweep::a_child_makes_names_of_its_own() {
    currentTemporaryOwner();
    const Maker maker("a");
    TemporaryOwner owner;
    QVERIFY(parseTemporaryName(maker.name(), owner));
    QCOMPARE(owner.processId, qint64(maker.process()));
}

void TestOrphanSweep::names_are_all_different_and_fit_data() {
    QTest::addColumn<QByteArray>("target");
    QTest::newRow("short") << QByteArray("a");
    QTest::newRow("long") << QByteArray(255, 'x');
    QTest::newRow("long Chinese") << QString(85, QChar(0x6807)).toUtf8();
    QTest::newRow("long Chinese, cut elsewhere") << "x" + QString(84, QChar(0x6807)).toUtf8();
    QTest::newRow("with dots") << QByteArray(".a.b-1-2-3.tessera-tmp");
}

void TestOrphanSweep::names_are_all_different_and_fit() {
    QFETCH(QByteArray, target);
    QSet<QByteArray> names;
    for (int i = 0; i < 50; ++i) {
        const QByteArray name = makeTemporaryName(target);
        QVERIFY2(name.size() <= 255, name.constData());
        QCOMPARE(QString::fromUtf8(name).toUtf8(), name);
        QVERIFY(!QString::fromUtf8(name).contains(QChar::ReplacementCharacter));
        TemporaryOwner owner;
        QVERIFY(parseTemporaryName(name, owner));
        names.insert(name);
    }
    QCOMPARE(names.size(), 50);
}

void TestOrphanSweep::foreign_names_are_not_taken_for_ours_data() {
    QTest::addColumn<QByteArray>("name");
    QTest::newRow("plain") << QByteArray("Marking.ini");
    QTest::newRow("only the ending") << QByteArray(".tessera-tmp");
    QTest::newRow("no maker") << QByteArray(".a.ini.tessera-tmp");
    QTest::newRow("not hidden") << QByteArray("a.ini.0123abcd-1-2-3.tessera-tmp");
    QTest::newRow("short boot") << QByteArray(".a.ini.0123abc-1-2-3.tessera-tmp");
    QTest::newRow("letters for a process") << QByteArray(".a.ini.0123abcd-x-2-3.tessera-tmp");
    QTest::newRow("process zero") << QByteArray(".a.ini.0123abcd-0-2-3.tessera-tmp");
    QTest::newRow("process beyond all numbers") << QByteArray(".a.ini.0123abcd-99999999999-2-3.tessera-tmp");
    QTest::newRow("negative process") << QByteArray(".a.ini.0123abcd--1-2-3.tessera-tmp");
    QTest::newRow("a part too few") << QByteArray(".a.ini.0123abcd-1-2.tessera-tmp");
    QTest::newRow("a part too many") << QByteArray(".a.ini.0123abcd-1-2-3-4.tessera-tmp");
    QTest::newRow("other ending") << QByteArray(".a.ini.0123abcd-1-2-3.tmp");
}

void TestOrphanSweep::foreign_names_are_not_taken_for_ours() {
    QFETCH(QByteArray, name);
    TemporaryOwner owner;
    QVERIFY(!parseTemporaryName(name, owner));
    QCOMPARE(owner.processId, qint64(0));
    putContent(path(name), "foreign");
    sweepOrphanedTemporaries(directory());
    QVERIFY(QFile::exists(path(name)));
}

void TestOrphanSweep::temporaries_of_killed_processes_go_and_those_of_living_stay() {
    Maker killed("a.ini");
    const Maker living("a.ini");
    putContent(path(killed.name()), "half");
    putContent(path(living.name()), "half");
    QCOMPARE(removedHere(sweepOrphanedTemporaries(directory())), QStringList());
    killed.kill();
    const SweepReport report = sweepOrphanedTemporaries(directory());
    QCOMPARE(removedHere(report), QStringList{path(killed.name())});
    QCOMPARE(report.failures.filter(directory()), QStringList());
    QVERIFY(!report.bounded);
    QCOMPARE(everythingIn(directory()), QStringList{QFile::decodeName(living.name())});
}

void TestOrphanSweep::a_temporary_of_an_earlier_boot_goes_even_if_its_number_lives() {
    const TemporaryOwner self = currentTemporaryOwner();
    putContent(path(nameOf(otherBoot(), self.processId, self.startTime)), "half");
    QCOMPARE(removedHere(sweepOrphanedTemporaries(directory())).size(), 1);
    QCOMPARE(everythingIn(directory()), QStringList());
}

void TestOrphanSweep::a_temporary_of_an_earlier_process_with_a_living_number_goes() {
    const TemporaryOwner self = currentTemporaryOwner();
    putContent(path(nameOf(self.boot, self.processId, self.startTime + 1)), "half");
    QCOMPARE(removedHere(sweepOrphanedTemporaries(directory())).size(), 1);
    QCOMPARE(everythingIn(directory()), QStringList());
}

void TestOrphanSweep::our_own_temporaries_stay() {
    const QByteArray name = makeTemporaryName("a.ini");
    putContent(path(name), "being written");
    QCOMPARE(removedHere(sweepOrphanedTemporaries(directory())), QStringList());
    QVERIFY(QFile::exists(path(name)));
}

void TestOrphanSweep::all_levels_are_swept_and_other_files_stay() {
    const QByteArray name = nameOf(otherBoot(), 1, 1);
    QVERIFY(QDir(directory()).mkpath("ini/ManualCarlib/.hidden"));
    QStringList temporaries;
    for (const char* folder : {"", "ini/", "ini/ManualCarlib/", "ini/ManualCarlib/.hidden/"}) {
        temporaries.append(path(folder + name));
        putContent(temporaries.last(), "half");
        putContent(path(folder + QByteArray("Marking.ini")), "kept");
    }
    SweepReport report = sweepOrphanedTemporaries(directory());
    report.removed.sort();
    temporaries.sort();
    QCOMPARE(removedHere(report), temporaries);
    for (const char* folder : {"", "ini/", "ini/ManualCarlib/", "ini/ManualCarlib/.hidden/"})
        QCOMPARE(contentOf(path(folder + QByteArray("Marking.ini"))), QByteArray("kept"));
}

void TestOrphanSweep::links_are_not_followed() {
    const QTemporaryDir elsewhere;
    const QByteArray name = nameOf(otherBoot(), 1, 1);
    const QString outside = elsewhere.filePath(QFile::decodeName(name));
    putContent(outside, "outside");
    QVERIFY(QFile::link(elsewhere.path(), path(QByteArray("linked"))));
    QVERIFY(QFile::link(outside, path(name)));
    QCOMPARE(removedHere(sweepOrphanedTemporaries(directory())), QStringList());
    QCOMPARE(contentOf(outside), QByteArray("outside"));
    QVERIFY(QFileInfo(path(name)).isSymLink());
}

void TestOrphanSweep::a_directory_with_such_a_name_stays() {
    const QByteArray name = nameOf(otherBoot(), 1, 1);
    QVERIFY(QDir(directory()).mkdir(QFile::decodeName(name)));
    QCOMPARE(removedHere(sweepOrphanedTemporaries(directory())), QStringList());
    QVERIFY(QFileInfo(path(name)).isDir());
}

void TestOrphanSweep::the_depth_is_bounded() {
    const QByteArray name = nameOf(otherBoot(), 1, 1);
    QString folder = directory();
    QStringList temporaries;
    for (int level = 1; level <= 18; ++level) {
        temporaries.append(folder + "/" + QFile::decodeName(name));
        folder += "/d";
        QVERIFY(QDir().mkdir(folder));
    }
    for (const QString& temporary : temporaries)
        putContent(temporary, "half");
    const SweepReport report = sweepOrphanedTemporaries(directory());
    QVERIFY(report.bounded);
    QCOMPARE(removedHere(report).size(), 16);
    QVERIFY(QFile::exists(temporaries.at(16)));
}

void TestOrphanSweep::a_missing_root_is_told() {
    const SweepReport report = sweepOrphanedTemporaries(path(QByteArray("none")));
    QCOMPARE(report.failures.filter(directory()),
             QStringList{path(QByteArray("none")) + ": No such file or directory"});
    QCOMPARE(removedHere(report), QStringList());
}

void TestOrphanSweep::private_settings_copies_of_killed_processes_go() {
    const QDir base(tessera::SettingsCopy::baseDirectory());
    Maker killed("settings");
    const Maker living("settings");
    for (const QByteArray& name : {killed.name(), living.name()}) {
        QVERIFY(base.mkdir(QFile::decodeName(name)));
        putContent(base.filePath(QFile::decodeName(name)) + "/copy1.ini", "[General]\n");
    }
    killed.kill();
    const SweepReport report = sweepOrphanedTemporaries(directory());
    const bool livingStays = base.exists(QFile::decodeName(living.name()));
    QVERIFY(QDir(base.filePath(QFile::decodeName(living.name()))).removeRecursively());
    QVERIFY(report.removed.contains(base.filePath(QFile::decodeName(killed.name()))));
    QVERIFY(!base.exists(QFile::decodeName(killed.name())));
    QVERIFY(livingStays);
}

void TestOrphanSweep::a_temporary_that_could_not_be_removed_goes_at_the_next_start() {
    putContent(path(QByteArray("a.ini")), "old");
    const pid_t child = ::fork();
    if (child == 0) {
        const FaultPlan plan = {nativeDirectory().constData(), FaultFsync | FaultUnlink, 1, EIO, FaultFails, true};
        faultio_arm(&plan);
        const tessera::DurableResult result = tessera::writeFileDurably(path(QByteArray("a.ini")), "new");
        ::_exit(result.step() == tessera::DurableStep::SyncFile ? 0 : 1);
    }
    int status = 0;
    QCOMPARE(::waitpid(child, &status, 0), child);
    QVERIFY(WIFEXITED(status) && WEXITSTATUS(status) == 0);
    QCOMPARE(everythingIn(directory()).size(), 2);
    QCOMPARE(removedHere(sweepOrphanedTemporaries(directory())).size(), 1);
    QCOMPARE(everythingIn(directory()), QStringList{"a.ini"});
    QCOMPARE(contentOf(path(QByteArray("a.ini"))), QByteArray("old"));
}

void TestOrphanSweep::saves_go_on_during_a_sweep() {
    std::atomic<bool> stop{false};
    std::atomic<int> failures{0};
    std::atomic<int> saves{0};
    std::thread saver([&] {
        while (!stop) {
            if (!tessera::writeFileDurably(path(QByteArray("a.ini")), QByteArray(5000, 'x')))
                ++failures;
            ++saves;
        }
    });
    QStringList removed;
    while (saves < 30) {
        const SweepReport report = sweepOrphanedTemporaries(directory());
        removed += removedHere(report) + report.failures.filter(directory());
    }
    stop = true;
    saver.join();
    QCOMPARE(failures.load(), 0);
    QCOMPARE(removed, QStringList());
}

QTEST_GUILESS_MAIN(TestOrphanSweep)
#include "tst_orphansweep.moc"
