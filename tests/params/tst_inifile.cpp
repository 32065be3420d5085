// SPDX-License-Identifier: MIT
#include "engine/profinifile.h"
#include "simengine/params/inidocument.h"
#include "support/approot.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QTemporaryDir>
#include <QtTest>
#include <cmath>
#include <limits>
#include <sys/stat.h>

using sim::IniDocument;

namespace {

quint64 inodeOf(QString const& path) {
    struct stat info {};
    return ::stat(QFile::encodeName(path).constData(), &info) == 0 ? static_cast<quint64>(info.st_ino) : 0;
}

} // namespace

class TestIniFile : public QObject {
    Q_OBJECT

private:
    QTemporaryDir m_root;

    QString path(char const* name) const { return m_root.filePath(QString::fromLatin1(name)); }

    static void put(QString const& path, QByteArray const& bytes) {
        QFile file(path);
        QVERIFY(file.open(QIODevice::WriteOnly | QIODevice::Truncate));
        QCOMPARE(file.write(bytes), static_cast<qint64>(bytes.size()));
    }

    static QByteArray bytes(QString const& path) {
        QFile file(path);
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("(missing)");
    }

private slots:
    void initTestCase() {
        QVERIFY(m_root.isValid());
        tessera::setApplicationRoot(m_root.path());
    }

    void comments_order_and_unknown_lines_stay_byte_for_byte() {
        QByteArray const before =
            "; machine 7\n[LASER]\r\n bYLS =  1 \n# by hand\nnonsense line\n\n[Main]\nX=\xff\xfe\n";
        IniDocument document = IniDocument::parse(before);
        QCOMPARE(document.bytes(), before);
        QVERIFY(document.setValue("LASER", "bYLS", "2"));
        QVERIFY(document.setValue("LASER", "OSS_TYPE", "3"));
        QVERIFY(document.setValue("New", "Key", "v"));
        QByteArray const after = "; machine 7\n[LASER]\r\n bYLS =  2\n# by hand\nnonsense line\nOSS_TYPE=3\n\n[Main]\n"
                                 "X=\xff\xfe\n\n[New]\nKey=v\n";
        QCOMPARE(document.bytes(), after);
    }

    void line_ends_and_byte_order_mark_of_the_file_are_taken_over() {
        IniDocument document = IniDocument::parse("\xEF\xBB\xBF[A]\r\nk=1\r\n");
        QCOMPARE(document.value("A", "k").value(), QString("1"));
        QVERIFY(document.setValue("A", "l", "2"));
        QCOMPARE(document.bytes(), QByteArray("\xEF\xBB\xBF[A]\r\nk=1\r\nl=2\r\n"));
    }

    void a_last_line_without_line_end_gets_one_when_a_key_follows() {
        IniDocument document = IniDocument::parse("[A]\nk=1");
        QCOMPARE(document.bytes(), QByteArray("[A]\nk=1"));
        QVERIFY(document.setValue("A", "l", "2"));
        QCOMPARE(document.bytes(), QByteArray("[A]\nk=1\nl=2\n"));
    }

    void the_first_of_two_equal_keys_counts_and_a_section_may_come_twice() {
        IniDocument document = IniDocument::parse("[A]\nk=1\n[B]\nk=2\n[A]\nk=3\nm=4\n");
        QCOMPARE(document.value("A", "k").value(), QString("1"));
        QCOMPARE(document.value("A", "m").value(), QString("4"));
        QVERIFY(!document.value("a", "k").has_value());
    }

    void values_come_back_as_they_were_written_data() {
        QTest::addColumn<QString>("value");
        QTest::newRow("empty") << QString("");
        QTest::newRow("chinese") << QString::fromUtf8("安全门 1");
        QTest::newRow("blanks") << QString("  two  ");
        QTest::newRow("quotes") << QString("\"quoted\"");
        QTest::newRow("one quote") << QString("\"");
        QTest::newRow("lines") << QString("a\nb\r\n\tc");
        QTest::newRow("control") << QString("a\x01\x7f"
                                            "b");
        QTest::newRow("backslashes") << QString("C:\\new\\x41");
        QTest::newRow("quoted backslashes") << QString(" \\n \\ ");
        QTest::newRow("equals and semicolon") << QString("a=b;c#d[e]");
        QTest::newRow("beyond the plane") << QString::fromUtf8("\xF0\x9D\x84\x9E");
        QTest::newRow("wide blank") << QString::fromUtf8("\xE3\x80\x80x");
    }

    void values_come_back_as_they_were_written() {
        QFETCH(QString, value);
        ProfIniFile file(path("roundtrip.ini"));
        QVERIFY(file.Write("S", "k", value));
        QCOMPARE(file.Read("S", "k", "default"), value);
        QCOMPARE(ProfIniFile(path("roundtrip.ini")).Read("S", "k", "default"), value);
    }

    void names_that_cannot_stand_in_the_file_are_refused_data() {
        QTest::addColumn<QString>("section");
        QTest::addColumn<QString>("key");
        QTest::newRow("empty key") << "S"
                                   << "";
        QTest::newRow("equals") << "S"
                                << "a=b";
        QTest::newRow("comment") << "S"
                                 << ";a";
        QTest::newRow("hash") << "S"
                              << "#a";
        QTest::newRow("section as key") << "S"
                                        << "[a]";
        QTest::newRow("blank") << "S"
                               << " a";
        QTest::newRow("line feed") << "S"
                                   << "a\nb";
        QTest::newRow("bracket in section") << "S]"
                                            << "a";
        QTest::newRow("line feed in section") << "S\n"
                                              << "a";
    }

    void names_that_cannot_stand_in_the_file_are_refused() {
        QFETCH(QString, section);
        QFETCH(QString, key);
        ProfIniFile file(path("names.ini"));
        QVERIFY(!file.Write(section, key, "v"));
        QVERIFY(!QFileInfo::exists(path("names.ini")));
    }

    void numbers_data() {
        QTest::addColumn<QByteArray>("text");
        QTest::addColumn<int>("whole");
        QTest::addColumn<double>("real");
        QTest::newRow("plain") << QByteArray("42") << 42 << 42.0;
        QTest::newRow("sign and blanks") << QByteArray(" -7 ") << -7 << -7.0;
        QTest::newRow("fraction") << QByteArray("3.9") << 3 << 3.9;
        QTest::newRow("exponent") << QByteArray("1e3") << 1000 << 1000.0;
        QTest::newRow("comma") << QByteArray("3,5") << -1 << -1.0;
        QTest::newRow("word") << QByteArray("on") << -1 << -1.0;
        QTest::newRow("empty") << QByteArray("") << -1 << -1.0;
        QTest::newRow("tail") << QByteArray("5mm") << -1 << -1.0;
        QTest::newRow("beyond int") << QByteArray("3000000000") << -1 << 3e9;
        QTest::newRow("nan") << QByteArray("nan") << -1 << -1.0;
        QTest::newRow("inf") << QByteArray("inf") << -1 << -1.0;
    }

    void numbers() {
        QFETCH(QByteArray, text);
        QFETCH(int, whole);
        QFETCH(double, real);
        put(path("numbers.ini"), "[S]\nk=" + text + "\n");
        ProfIniFile file(path("numbers.ini"));
        QCOMPARE(file.ReadInt("S", "k", -1), whole);
        QCOMPARE(file.ReadDouble("S", "k", -1.0), real);
    }

    void doubles_come_back_exactly() {
        ProfIniFile file(path("doubles.ini"));
        double const values[] = {0.1, 5368627.2, -1.0 / 3.0, 1e-300, std::numeric_limits<double>::max(), 0.0};
        for (double value : values) {
            QVERIFY(file.WriteDouble("S", "k", value));
            QCOMPARE(file.ReadDouble("S", "k", -5.0), value);
        }
        QVERIFY(file.WriteDouble("S", "k", 0.1));
        QCOMPARE(bytes(path("doubles.ini")), QByteArray("[S]\nk=0.1\n"));
    }

    void numbers_do_not_follow_the_locale() {
        QLocale const before;
        QLocale::setDefault(QLocale(QLocale::German));
        ProfIniFile file(path("locale.ini"));
        QVERIFY(file.WriteDouble("S", "k", 1234.5));
        QLocale::setDefault(before);
        QCOMPARE(bytes(path("locale.ini")), QByteArray("[S]\nk=1234.5\n"));
    }

    void a_missing_file_or_key_gives_the_default() {
        ProfIniFile file(path("missing.ini"));
        QCOMPARE(file.Read("S", "k", "d"), QString("d"));
        QCOMPARE(file.ReadInt("S", "k", 5), 5);
        QCOMPARE(file.ReadDouble("S", "k", 2.5), 2.5);
        QVERIFY(!QFileInfo::exists(path("missing.ini")));
    }

    void a_change_by_another_is_seen() {
        put(path("other.ini"), "[S]\nk=1\n");
        ProfIniFile file(path("other.ini"));
        QCOMPARE(file.ReadInt("S", "k", 0), 1);
        ProfIniFile other(path("other.ini"));
        QVERIFY(other.WriteInt("S", "k", 2));
        QCOMPARE(file.ReadInt("S", "k", 0), 2);
        QVERIFY(other.WriteInt("S", "l", 3));
        QVERIFY(file.WriteInt("S", "k", 4));
        QCOMPARE(other.ReadInt("S", "l", 0), 3);
        QVERIFY(QFile::remove(path("other.ini")));
        QCOMPARE(file.ReadInt("S", "k", 0), 0);
    }

    void a_write_replaces_the_file_and_leaves_nothing_beside_it() {
        QTemporaryDir folder;
        QString const name = folder.filePath("replaced.ini");
        put(name, "[S]\nk=1\n");
        quint64 const before = inodeOf(name);
        QVERIFY(ProfIniFile(name).WriteInt("S", "k", 2));
        QVERIFY(inodeOf(name) != before);
        QCOMPARE(QDir(folder.path()).entryList(QDir::Files | QDir::Hidden), QStringList{"replaced.ini"});
    }

    void a_value_that_is_there_already_is_not_written_again() {
        QString const name = path("same.ini");
        put(name, "[S]\nk=1\n");
        quint64 const before = inodeOf(name);
        QVERIFY(ProfIniFile(name).WriteInt("S", "k", 1));
        QCOMPARE(inodeOf(name), before);
    }

    void a_file_that_cannot_be_read_is_not_replaced() {
        QVERIFY(QDir(m_root.path()).mkpath("folder.ini/inside"));
        ProfIniFile file(path("folder.ini"));
        QCOMPARE(file.Read("S", "k", "d"), QString("d"));
        QVERIFY(!file.Write("S", "k", "v"));
        QVERIFY(QFileInfo(path("folder.ini/inside")).isDir());
    }

    void parent_folders_are_made() {
        QString const name = path("a/b/deep.ini");
        QVERIFY(ProfIniFile(name).Write("S", "k", "v"));
        QCOMPARE(bytes(name), QByteArray("[S]\nk=v\n"));
    }

    void relative_paths_are_below_the_root() {
        QCOMPARE(ProfIniFile("ini/rel.ini").GetPath(), tessera::rootPath("/ini/rel.ini"));
        QCOMPARE(ProfIniFile("/tmp/abs.ini").GetPath(), QString("/tmp/abs.ini"));
    }

    void the_shared_objects_have_their_files() {
        QCOMPARE(XProfIniFile_CardCfg::Instance()->GetPath(), tessera::rootPath("/ini/VZMarkPara.cfg"));
        QCOMPARE(XProfIniFile_VZBOXINI::Instance()->GetPath(), tessera::rootPath("/ini/Demarcate.ini"));
        QCOMPARE(XProfIniFile_GlassPara::Instance()->GetPath(), tessera::rootPath("/ini/GlassSystemPara.ini"));
        QCOMPARE(XProfIniFile_CardCfg::Instance(), XProfIniFile_CardCfg::Instance());
    }
};

QTEST_GUILESS_MAIN(TestIniFile)
#include "tst_inifile.moc"
