// SPDX-License-Identifier: MIT
#include "scratchtest.h"
#include "support/durablesettings.h"
#include "support/settingscopy.h"

#include <QDir>
#include <QFile>
#include <QLockFile>
#include <QPoint>
#include <QProcess>
#include <QSettings>
#include <QTextCodec>
#include <QtTest>

#include <atomic>
#include <cerrno>
#include <chrono>
#include <cmath>
#include <fcntl.h>
#include <future>
#include <limits>
#include <sys/file.h>
#include <thread>
#include <unistd.h>
#include <vector>

using tessera::changeSettingsDurably;
using tessera::DurableResult;
using tessera::DurableStep;
using tessera::readSetting;
using tessera::writeSettingDurably;
using tessera::writeSettingsDurably;

struct TypeWithoutText {
    int value;
};
Q_DECLARE_METATYPE(TypeWithoutText)

namespace {

/// Of this process; others may be saving at the same time.
QStringList settingsCopies() {
    return QDir(tessera::SettingsCopy::baseDirectory())
        .entryList({QString(".settings.*-%1-*.tessera-tmp").arg(QCoreApplication::applicationPid())},
                   QDir::Dirs | QDir::Hidden | QDir::NoDotAndDotDot);
}

} // namespace

class TestDurableSettings : public ScratchTest {
    Q_OBJECT

private slots:
    void a_counter_is_written_as_qsettings_writes_it();
    void missing_directories_are_made();
    void other_keys_are_kept();
    void several_values_go_in_one_save();
    void values_come_back_data();
    void values_come_back();
    void a_value_that_does_not_come_back_is_refused_and_the_file_stays();
    void a_removed_key_is_gone_and_the_others_stay();
    void an_array_is_written_in_one_save();
    void a_codec_keeps_text_that_others_read();
    void unreadable_lines_are_kept_in_a_copy();
    void a_reader_sees_every_save_at_once();
    void a_living_qsettings_sees_saves_and_does_not_undo_them();
    void qsettings_writers_and_durable_writers_lose_nothing();
    void threads_that_set_different_keys_lose_none();
    void threads_may_read_while_others_save();
    void an_edit_may_read_other_settings();
    void a_missing_key_or_file_gives_the_fallback();
    void reading_creates_nothing();
    void a_directory_in_the_place_of_the_file_is_reported();
    void an_empty_path_is_refused();
    void a_torn_lock_file_of_a_killed_writer_blocks_nobody_data();
    void a_torn_lock_file_of_a_killed_writer_blocks_nobody();
    void a_torn_lock_file_that_is_being_filled_is_left_alone();
    void a_lock_that_is_being_given_up_is_left_alone();
    void the_lock_of_a_living_writer_is_respected();
    void no_private_copy_is_left();
    void a_counter_saved_many_times();

private:
    bool saveWaitsUntil(const std::function<void()>& release);
};

void TestDurableSettings::a_counter_is_written_as_qsettings_writes_it() {
    QVERIFY(writeSettingDurably(path("Marking.ini"), "MarkCnt", 41));
    QVERIFY(writeSettingDurably(path("Marking.ini"), "MarkCnt", 42));
    QCOMPARE(contentOf(path("Marking.ini")), QByteArray("[General]\nMarkCnt=42\n"));
    QCOMPARE(readSetting(path("Marking.ini"), "MarkCnt", 0).toInt(), 42);
    QCOMPARE(QSettings(path("Marking.ini"), QSettings::IniFormat).value("MarkCnt").toInt(), 42);
    QCOMPARE(everythingIn(directory()), QStringList{"Marking.ini"});
}

void TestDurableSettings::missing_directories_are_made() {
    const DurableResult result = writeSettingDurably(path("ini/sub/Marking.ini"), "MarkCnt", 1);
    QVERIFY2(result.ok(), qPrintable(result.message()));
    QCOMPARE(readSetting(path("ini/sub/Marking.ini"), "MarkCnt").toInt(), 1);
}

void TestDurableSettings::other_keys_are_kept() {
    putContent(path("a.ini"), "[Zeta]\nb=2\na=1\n\n[Alpha]\ntext=\"x; y\"\n");
    QVERIFY(writeSettingDurably(path("a.ini"), "Zeta/c", 3));
    QCOMPARE(contentOf(path("a.ini")), QByteArray("[Alpha]\ntext=\"x; y\"\n\n[Zeta]\na=1\nb=2\nc=3\n"));
    QVERIFY(writeSettingDurably(path("a.ini"), "Zeta/b", "new"));
    QCOMPARE(contentOf(path("a.ini")), QByteArray("[Alpha]\ntext=\"x; y\"\n\n[Zeta]\na=1\nb=new\nc=3\n"));
}

void TestDurableSettings::several_values_go_in_one_save() {
    QVERIFY(writeSettingsDurably(path("a.ini"), {{"Calibration/Kx", 1.25}, {"Calibration/Ky", 2.5}, {"n", 7}}));
    QCOMPARE(contentOf(path("a.ini")), QByteArray("[General]\nn=7\n\n[Calibration]\nKx=1.25\nKy=2.5\n"));
}

void TestDurableSettings::values_come_back_data() {
    QTest::addColumn<QVariant>("value");
    QTest::newRow("integer") << QVariant(-7);
    QTest::newRow("largest integer") << QVariant(std::numeric_limits<qlonglong>::max());
    QTest::newRow("double") << QVariant(0.1);
    QTest::newRow("double of all digits") << QVariant(1.0 / 3.0);
    QTest::newRow("not a number") << QVariant(std::nan(""));
    QTest::newRow("float") << QVariant(0.1F);
    QTest::newRow("bool") << QVariant(true);
    QTest::newRow("Chinese text") << QVariant(QStringLiteral("红光预览"));
    QTest::newRow("text with separators") << QVariant(QStringLiteral("a,b;c=\"d\"\\\n"));
    QTest::newRow("empty text") << QVariant(QString());
    QTest::newRow("text that looks like a type") << QVariant(QStringLiteral("@Point(1 2)"));
    QTest::newRow("list") << QVariant(QStringList{"a", "b,c"});
    QTest::newRow("list of one") << QVariant(QStringList{"a"});
    QTest::newRow("empty list") << QVariant(QStringList());
    QTest::newRow("list of numbers") << QVariant(QVariantList{1, 2, 3});
    QTest::newRow("bytes") << QVariant(QByteArray("\0\xff\x80", 3));
    QTest::newRow("point") << QVariant(QPoint(3, -4));
    QTest::newRow("date and time") << QVariant(QDateTime(QDate(2024, 2, 29), QTime(23, 59, 58, 7)));
}

void TestDurableSettings::values_come_back() {
    QFETCH(QVariant, value);
    const DurableResult result = writeSettingDurably(path("a.ini"), "section/key", value);
    QVERIFY2(result.ok(), qPrintable(result.message()));
    const QVariant read = readSetting(path("a.ini"), "section/key");
    if (value.type() == QVariant::StringList || value.type() == QVariant::List)
        QCOMPARE(read.toStringList(), value.toStringList());
    else if (value.canConvert<QString>())
        QCOMPARE(read.toString(), value.toString());
    else
        QCOMPARE(read, value);
}

void TestDurableSettings::a_value_that_does_not_come_back_is_refused_and_the_file_stays() {
    putContent(path("a.ini"), "[General]\nold=1\n");
    QTest::ignoreMessage(QtWarningMsg, QRegularExpression("^QVariant::save: unable to save type 'TypeWithoutText'"));
    QTest::ignoreMessage(QtWarningMsg, QRegularExpression("^QVariant::load: unable to load type"));
    const DurableResult result = writeSettingDurably(path("a.ini"), "key", QVariant::fromValue(TypeWithoutText{5}));
    QVERIFY(!result);
    QCOMPARE(result.step(), DurableStep::ProveText);
    QVERIFY2(result.message().contains("the value of \"key\" does not come back"), qPrintable(result.message()));
    QCOMPARE(contentOf(path("a.ini")), QByteArray("[General]\nold=1\n"));
    QCOMPARE(everythingIn(directory()), QStringList{"a.ini"});
}

void TestDurableSettings::a_removed_key_is_gone_and_the_others_stay() {
    putContent(path("a.ini"), "[A]\nx=1\ny=2\n\n[B]\nz=3\n");
    QVERIFY(changeSettingsDurably(path("a.ini"), [](QSettings& settings) { settings.remove("A/x"); }));
    QCOMPARE(contentOf(path("a.ini")), QByteArray("[A]\ny=2\n\n[B]\nz=3\n"));
    QVERIFY(changeSettingsDurably(path("a.ini"), [](QSettings& settings) { settings.clear(); }));
    QCOMPARE(contentOf(path("a.ini")), QByteArray());
}

void TestDurableSettings::an_array_is_written_in_one_save() {
    const auto writeArray = [](QSettings& settings) {
        settings.beginWriteArray("Pos", 2);
        for (int i = 0; i < 2; ++i) {
            settings.setArrayIndex(i);
            settings.setValue("x", i * 10);
        }
        settings.endArray();
    };
    QVERIFY(changeSettingsDurably(path("a.ini"), writeArray));
    QCOMPARE(contentOf(path("a.ini")), QByteArray("[Pos]\n1\\x=0\n2\\x=10\nsize=2\n"));
}

void TestDurableSettings::a_codec_keeps_text_that_others_read() {
    QTextCodec* const utf8 = QTextCodec::codecForName("UTF-8");
    putContent(path("IOName.ini"), QStringLiteral("[Input]\nIn0=运行\n").toUtf8());
    QVERIFY(writeSettingDurably(path("IOName.ini"), "Input/In1", QStringLiteral("急停"), utf8));
    QCOMPARE(QString::fromUtf8(contentOf(path("IOName.ini"))), QStringLiteral("[Input]\nIn0=运行\nIn1=急停\n"));
    QCOMPARE(readSetting(path("IOName.ini"), "Input/In0", "", utf8).toString(), QStringLiteral("运行"));
}

void TestDurableSettings::unreadable_lines_are_kept_in_a_copy() {
    const QByteArray torn("[General]\nMarkCnt=5\nOther=7\nMarkC");
    putContent(path("Marking.ini"), torn);
    const DurableResult result = writeSettingDurably(path("Marking.ini"), "MarkCnt", 6);
    QVERIFY2(result.ok(), qPrintable(result.message()));
    QCOMPARE(contentOf(path("Marking.ini")), QByteArray("[General]\nMarkCnt=6\nOther=7\n"));
    QCOMPARE(contentOf(path("Marking.ini.damaged")), torn);
    QVERIFY(writeSettingDurably(path("Marking.ini"), "MarkCnt", 7));
    QCOMPARE(contentOf(path("Marking.ini.damaged")), torn);
}

void TestDurableSettings::a_reader_sees_every_save_at_once() {
    for (int i = 10; i < 110; ++i) { // every file as long as the one before but for the last ten
        QVERIFY(writeSettingDurably(path("a.ini"), "n", i));
        QCOMPARE(readSetting(path("a.ini"), "n").toInt(), i);
        QCOMPARE(QSettings(path("a.ini"), QSettings::IniFormat).value("n").toInt(), i);
    }
}

void TestDurableSettings::a_living_qsettings_sees_saves_and_does_not_undo_them() {
    QSettings living(path("a.ini"), QSettings::IniFormat);
    for (int i = 100; i < 200; ++i) {
        QVERIFY(writeSettingDurably(path("a.ini"), "mine", i));
        living.sync();
        QCOMPARE(living.value("mine").toInt(), i);
        QVERIFY(writeSettingDurably(path("a.ini"), "mine", i + 500));
        living.setValue("theirs", i);
        living.sync();
        QCOMPARE(readSetting(path("a.ini"), "mine").toInt(), i + 500);
        QCOMPARE(readSetting(path("a.ini"), "theirs").toInt(), i);
    }
}

void TestDurableSettings::qsettings_writers_and_durable_writers_lose_nothing() {
    constexpr int rounds = 30;
    int failures = 0;
    QProcess other;
    other.start(ENDLESS_SAVER, {"plain", path("a.ini")});
    QVERIFY(other.waitForStarted());
    for (int i = 1; i <= rounds; ++i) {
        if (!writeSettingDurably(path("a.ini"), QString("mine/%1").arg(i), i))
            ++failures;
    }
    QVERIFY(other.waitForFinished());
    QCOMPARE(other.exitCode(), 0);
    QCOMPARE(failures, 0);
    for (int i = 1; i <= rounds; ++i) {
        QCOMPARE(readSetting(path("a.ini"), QString("mine/%1").arg(i)).toInt(), i);
        QCOMPARE(readSetting(path("a.ini"), QString("theirs/%1").arg(i)).toInt(), i);
    }
}

void TestDurableSettings::threads_that_set_different_keys_lose_none() {
    std::atomic<int> failures{0};
    std::vector<std::thread> writers;
    for (int t = 0; t < 4; ++t) {
        writers.emplace_back([&, t] {
            for (int i = 0; i < 20; ++i) {
                if (!writeSettingDurably(path("a.ini"), QString("t%1/k%2").arg(t).arg(i), i))
                    ++failures;
            }
        });
    }
    for (std::thread& writer : writers)
        writer.join();
    QCOMPARE(failures.load(), 0);
    QCOMPARE(QSettings(path("a.ini"), QSettings::IniFormat).allKeys().size(), 80);
}

void TestDurableSettings::threads_may_read_while_others_save() {
    QVERIFY(writeSettingDurably(path("a.ini"), "n", 0));
    std::atomic<bool> stop{false};
    std::atomic<int> backward{0};
    std::thread reader([&] {
        for (int last = 0; !stop;) {
            const int now = readSetting(path("a.ini"), "n", -1).toInt();
            backward += now < last ? 1 : 0;
            last = now;
        }
    });
    int failures = 0;
    for (int i = 1; i <= 50; ++i)
        failures += writeSettingDurably(path("a.ini"), "n", i) ? 0 : 1;
    stop = true;
    reader.join();
    QCOMPARE(failures, 0);
    QCOMPARE(backward.load(), 0);
}

void TestDurableSettings::an_edit_may_read_other_settings() {
    QVERIFY(writeSettingDurably(path("b.ini"), "source", 5));
    const auto copy = [this](QSettings& settings) { settings.setValue("n", readSetting(path("b.ini"), "source")); };
    QVERIFY(changeSettingsDurably(path("a.ini"), copy));
    QCOMPARE(readSetting(path("a.ini"), "n").toInt(), 5);
}

void TestDurableSettings::a_missing_key_or_file_gives_the_fallback() {
    QCOMPARE(readSetting(path("none.ini"), "MarkCnt", 5).toInt(), 5);
    putContent(path("a.ini"), "[General]\nx=1\n");
    QCOMPARE(readSetting(path("a.ini"), "MarkCnt", 6).toInt(), 6);
    QVERIFY(!readSetting(path("a.ini"), "MarkCnt").isValid());
}

void TestDurableSettings::reading_creates_nothing() {
    readSetting(path("sub/none.ini"), "MarkCnt", 5);
    QCOMPARE(everythingIn(directory()), QStringList());
}

void TestDurableSettings::a_directory_in_the_place_of_the_file_is_reported() {
    QVERIFY(QDir(directory()).mkdir("a.ini"));
    const DurableResult result = writeSettingDurably(path("a.ini"), "x", 1);
    QVERIFY(!result);
    QCOMPARE(result.error(), EISDIR);
    QCOMPARE(everythingIn(directory()), QStringList{"a.ini"});
}

void TestDurableSettings::an_empty_path_is_refused() {
    const DurableResult result = writeSettingDurably(QString(), "x", 1);
    QCOMPARE(result.step(), DurableStep::ResolveTarget);
    QCOMPARE(result.error(), EINVAL);
}

void TestDurableSettings::a_torn_lock_file_of_a_killed_writer_blocks_nobody_data() {
    QTest::addColumn<QByteArray>("content");
    QTest::newRow("made and not filled") << QByteArray();
    QTest::newRow("zeros after a power cut") << QByteArray(81, '\0');
    QTest::newRow("number cut off") << QByteArray("\n");
}

void TestDurableSettings::a_torn_lock_file_of_a_killed_writer_blocks_nobody() {
    QFETCH(QByteArray, content);
    putContent(path("a.ini.lock"), content);
    const DurableResult result = writeSettingDurably(path("a.ini"), "n", 7);
    QVERIFY2(result.ok(), qPrintable(result.message()));
    QCOMPARE(readSetting(path("a.ini"), "n").toInt(), 7);
    QCOMPARE(everythingIn(directory()), QStringList{"a.ini"});
}

/// Whether a save of n = 2 is still waiting after the time in which it would have taken a torn lock away. Then
/// `release` is called and the save must end well.
bool TestDurableSettings::saveWaitsUntil(const std::function<void()>& release) {
    QFile file(path("a.ini.lock"));
    const bool aged = file.open(QIODevice::ReadWrite) &&
                      file.setFileTime(QDateTime::currentDateTime().addSecs(-20), QFileDevice::FileModificationTime);
    file.close();
    std::future<DurableResult> save =
        std::async(std::launch::async, [this] { return writeSettingDurably(path("a.ini"), "n", 2); });
    const bool waited = save.wait_for(std::chrono::milliseconds(1500)) == std::future_status::timeout;
    const bool untouched = !QFile::exists(path("a.ini")) && QFile::exists(path("a.ini.lock"));
    release();
    const DurableResult result = save.get();
    return aged && waited && untouched && result && readSetting(path("a.ini"), "n").toInt() == 2;
}

void TestDurableSettings::a_torn_lock_file_that_is_being_filled_is_left_alone() {
    putContent(path("a.ini.lock"), QByteArray());
    const int descriptor = ::open(QFile::encodeName(path("a.ini.lock")).constData(), O_RDWR | O_CLOEXEC);
    QCOMPARE(::flock(descriptor, LOCK_EX | LOCK_NB), 0);
    QVERIFY(saveWaitsUntil([descriptor] { ::close(descriptor); }));
}

void TestDurableSettings::a_lock_that_is_being_given_up_is_left_alone() {
    // The kernel's lock is free already and the file, which names a living writer, is about to be deleted by its name.
    QByteArray content;
    {
        QLockFile lock(path("a.ini.lock"));
        QVERIFY(lock.lock());
        content = contentOf(path("a.ini.lock"));
    }
    QVERIFY(content.startsWith(QByteArray::number(QCoreApplication::applicationPid()) + '\n'));
    putContent(path("a.ini.lock"), content);
    QVERIFY(saveWaitsUntil([this] { QFile::remove(path("a.ini.lock")); }));
}

void TestDurableSettings::the_lock_of_a_living_writer_is_respected() {
    QLockFile lock(path("a.ini.lock"));
    QVERIFY(lock.lock());
    QVERIFY(saveWaitsUntil([&lock] { lock.unlock(); }));
}

void TestDurableSettings::no_private_copy_is_left() {
    QStringList during;
    const auto edit = [&during](QSettings& settings) {
        during = settingsCopies();
        settings.setValue("x", 1);
    };
    QVERIFY(changeSettingsDurably(path("a.ini"), edit));
    QCOMPARE(during.size(), 1);
    QCOMPARE(settingsCopies(), QStringList());
}

void TestDurableSettings::a_counter_saved_many_times() {
    const int saves = qMax(300, qEnvironmentVariableIntValue("TESSERA_SAVES"));
    QElapsedTimer timer;
    timer.start();
    for (int i = 1; i <= saves; ++i) {
        if (!writeSettingDurably(path("Marking.ini"), "MarkCnt", i))
            QFAIL("a save failed");
    }
    qInfo("%d saves of a counter: %.3f ms each", saves, double(timer.elapsed()) / saves);
    QCOMPARE(readSetting(path("Marking.ini"), "MarkCnt").toInt(), saves);
}

QTEST_GUILESS_MAIN(TestDurableSettings)
#include "tst_durablesettings.moc"
